// SPDX-License-Identifier: MIT
// The files of the gateway: JSON that starts with "format" and "version".
#pragma once

#include "model/check.h"
#include "model/json.h"

namespace simulated_gateway {

constexpr char kScenarioFormat[] = "simulated gateway scenario";
constexpr char kStateFormat[] = "simulated gateway state";

// Checks the head and removes it.
void take_head(Json &document, const std::string &format);
Json make_head(const std::string &format);

// The value in a document without its head.
template <class Struct> Struct read_checked(const Json &document)
{
    Struct value = read_struct<Struct>(document, "");
    check(value);
    return value;
}

// Reads and checks a document. The Error for an invalid one starts with the file's name.
template <class Struct>
Struct read_document(const std::string &file, std::string_view text, const char *format)
{
    try {
        Json document = parse_json(text);
        take_head(document, format);
        return read_checked<Struct>(document);
    } catch (const Error &error) {
        throw Error(file + ": " + error.what());
    }
}

} // namespace simulated_gateway

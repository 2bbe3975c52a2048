// The files of the gateway: JSON that opens with "format" and "version".
#pragma once

#include "model_check.h"
#include "model_json.h"

namespace simulated_gateway {

constexpr char kScenarioFormat[] = "simulated gateway scenario";
constexpr char kStateFormat[] = "simulated gateway state";

// Checks the head and takes it out.
void take_head(Json &document, const std::string &format);
Json make_head(const std::string &format);

// Reads and checks a document; the Error of one that does not hold opens with the file's name.
template <class Struct>
Struct read_document(const std::string &file, std::string_view text, const char *format)
{
    try {
        Json document = parse_json(text);
        take_head(document, format);
        Struct value = read_struct<Struct>(document, "");
        check(value);
        return value;
    } catch (const Error &error) {
        throw Error(file + ": " + error.what());
    }
}

template <class Struct> std::string write_document(const Struct &value, const char *format)
{
    Json document = make_head(format);
    document.update(write_struct(value));
    return document.dump(4) + "\n";
}

} // namespace simulated_gateway

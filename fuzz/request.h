// SPDX-License-Identifier: MIT
// The request in an input: a command's name, a line feed, and its object as JSON.
#pragma once

#include <cjson/cJSON.h>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace fuzz {

struct DeleteJson {
    void operator()(cJSON *json) const { cJSON_Delete(json); }
};
using Json = std::unique_ptr<cJSON, DeleteJson>;

// On one line. Ends the process when there is nothing to print, or no memory for it.
std::string print(const cJSON *json);

struct Request {
    std::string command;
    Json object;           // null when no JSON follows the name
    std::string_view rest; // of the input, after the object and one line feed
};

Request parse_request(std::string_view input);
std::string print_request(const Request &request);

// Input bytes as text, and vice versa.
inline std::string_view text_of(const uint8_t *data, size_t size)
{
    return {reinterpret_cast<const char *>(data), size};
}

// Runs a command, or a function that the agent calls directly. The process ends when the resulting
// object cannot be printed or parsed again, or when the plug-in does not distinguish its commands
// from other names.
void run_command(const std::string &command, cJSON *object);

// The same check for the object of another function.
void check_reply(const std::string &function, const cJSON *object);

} // namespace fuzz

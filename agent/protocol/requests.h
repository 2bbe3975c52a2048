// SPDX-License-Identifier: MIT
// Parsing of requests. The trees are cJSON's, like those of the plug-in: they preserve the order of
// keys and duplicate keys.
#pragma once

#include "protocol/json.h"
#include "protocol/json_text.h"

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace agent {

// The text is not a valid request; what() gives the place and the error.
class BadRequest : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// A request cannot be carried out now; what() says why.
class Busy : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Parses the text as a JSON object. Throws BadRequest.
Json parse_object(std::string_view text);

// An object without members.
Json new_object();

// An object of strings from words of the form KEY=VALUE, in their order. Throws BadRequest.
Json object_from_words(std::span<const std::string> words);

// A notice that the plug-in is to push to the app.
struct Notice {
    std::string plugin_name;
    std::string text;
};

// What a line can control of the simulated gateway.
constexpr std::string_view kControls[] = {"faults", "scenario", "clock", "trace", "show"};

// One line that serve reads: {"id": ANY, "command": "NAME", "params": {…}}, or instead of a command
// {"id": ANY, "notice": {"plugin_name": TEXT, "text": TEXT}},
// {"id": ANY, "report": "NAME", "params": {…}}, {"id": ANY, "control": {NAME: ANY}} or
// {"id": ANY, "hello": {}}.
struct Call {
    // Unparsed parts of the line, so that no number loses a digit.
    std::string_view id = "null";
    std::string_view params_text = "{}";
    std::string command;
    Json params;
    std::optional<Notice> notice;
    std::optional<std::string> report;
    Json control; // exactly one of kControls, with a value of its type
    bool is_hello = false;
    std::string error; // what is wrong with the call; empty if it is valid
};

// The line must outlive the result. Throws BadRequest for a line that is not a JSON object, which
// has no id to put into an answer.
Call parse_call(std::string_view line);

} // namespace agent

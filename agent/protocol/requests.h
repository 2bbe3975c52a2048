// SPDX-License-Identifier: MIT
// Requests as they come in, and replies as they go out. The trees are cJSON's, as the plug-in's own
// are: they keep the order of keys, and keys that stand twice.
#pragma once

#include "protocol/json.h"
#include "protocol/json_text.h"

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace agent {

// A text that is no request; what() says where and what is wrong.
class BadRequest : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The JSON object that the text is. Throws BadRequest.
Json parse_object(std::string_view text);

// An object without members.
Json new_object();

// An object of texts from words of the form KEY=VALUE, in their order. Throws BadRequest.
Json object_from_words(std::span<const std::string> words);

// What the plug-in is asked to push to the app.
struct Notice {
    std::string plugin_name;
    std::string text;
};

// One line that serve reads: {"id": ANY, "command": "NAME", "params": {…}}, or instead of a command
// {"id": ANY, "notice": {"plugin_name": TEXT, "text": TEXT}},
// {"id": ANY, "report": "NAME", "params": {…}} or {"id": ANY, "hello": {}}.
struct Call {
    // Texts of the line itself, so that no number loses a digit.
    std::string_view id = "null";
    std::string_view params_text = "{}";
    std::string command;
    Json params;
    std::optional<Notice> notice;
    std::optional<std::string> report;
    bool is_hello = false;
    std::string error; // what is wrong with the call; empty when nothing is
};

// The line has to outlive what is made of it. Throws BadRequest for a line that is no JSON object:
// it has no id to answer to.
Call parse_call(std::string_view line);

} // namespace agent

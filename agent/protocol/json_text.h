// Trees of cJSON's as texts.
#pragma once

#include <cjson/cJSON.h>

#include <string>
#include <string_view>

namespace agent {

// How a reply is written.
struct Form {
    bool indented = false;  // or on one line
    bool raw_bytes = false; // texts as the plug-in left them, or as UTF-8
};

std::string print(const cJSON *item, const Form &form = {});

// The text as a JSON text, in quotes.
std::string quoted(std::string_view text);

} // namespace agent

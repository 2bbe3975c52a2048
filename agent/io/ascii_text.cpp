// SPDX-License-Identifier: MIT
// Texts in builds without encoding support: anything but printable ASCII is shown as bytes.
#include "io/text.h"

#include <algorithm>
#include <cstdio>

namespace agent {

namespace {

bool is_printable(char byte)
{
    return byte >= 0x20 && byte < 0x7f;
}

std::string escaped(std::string_view bytes)
{
    std::string text;
    for (const char byte : bytes) {
        if (is_printable(byte)) {
            text += byte;
        } else {
            char escape[8];
            snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(byte));
            text += escape;
        }
    }
    return text;
}

} // namespace

bool is_valid_utf8(std::string_view text)
{
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

std::string to_utf8(std::string_view text)
{
    return is_valid_utf8(text) ? std::string(text) : escaped(text);
}

std::string one_line(std::string_view bytes, size_t max_bytes)
{
    std::string line = escaped(bytes.substr(0, max_bytes));
    if (bytes.size() > max_bytes) {
        line += " [" + std::to_string(bytes.size() - max_bytes) + " more bytes]";
    }
    return line;
}

std::string in_quotes(std::string_view bytes)
{
    std::string line = "\"";
    for (const char byte : bytes) {
        line += byte == '"' || byte == '\\' ? "\\" : "";
        line += escaped({&byte, 1});
    }
    return line + '"';
}

std::string json_for_terminal(std::string_view json)
{
    std::string shown;
    for (const char byte : json) { // print() leaves ASCII alone
        shown += byte == 0x7f ? "\\u007f" : std::string(1, byte);
    }
    return shown;
}

size_t columns_of(std::string_view utf8_text)
{
    return utf8_text.size();
}

} // namespace agent

// SPDX-License-Identifier: MIT
#include "system/text.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utf8.h>

namespace linux_gateway {

std::string printable(std::string_view text)
{
    std::string valid;
    utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid));
    std::string out;
    for (auto at = valid.begin(); at != valid.end();) {
        const auto start = at;
        const uint32_t letter = utf8::unchecked::next(at);
        const bool is_control = letter < 0x20 || (letter >= 0x7f && letter < 0xa0);
        const bool changes_direction =
            (letter >= 0x200b && letter <= 0x200f) || (letter >= 0x2028 && letter <= 0x202e) ||
            (letter >= 0x2066 && letter <= 0x2069) || letter == 0x61c || letter == 0xfeff;
        if (!is_control && !changes_direction) {
            out.append(start, at);
        }
    }
    return out;
}

std::string in_quotes(std::string_view text)
{
    return '"' + printable(text) + '"';
}

std::string_view whole_characters(std::string_view text)
{
    // At most three bytes of a character may be there without the rest.
    for (size_t cut = 1; cut <= std::min<size_t>(3, text.size()); ++cut) {
        const auto byte = static_cast<uint8_t>(text[text.size() - cut]);
        if ((byte & 0xc0) == 0x80) {
            continue;
        }
        const size_t length = byte >= 0xf0 ? 4 : byte >= 0xe0 ? 3 : byte >= 0xc0 ? 2 : 1;
        return length > cut ? text.substr(0, text.size() - cut) : text;
    }
    return text;
}

std::string_view trimmed(std::string_view text)
{
    constexpr char blanks[] = " \t\r\n";
    const size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    for (size_t end = text.find(separator); end != std::string_view::npos;
         end = text.find(separator)) {
        parts.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    parts.push_back(text);
    return parts;
}

std::vector<std::string_view> words_of(std::string_view text)
{
    constexpr char blanks[] = " \t";
    std::vector<std::string_view> words;
    for (size_t start = text.find_first_not_of(blanks); start != std::string_view::npos;
         start = text.find_first_not_of(blanks)) {
        text.remove_prefix(start);
        const size_t end = std::min(text.find_first_of(blanks), text.size());
        words.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return words;
}

} // namespace linux_gateway

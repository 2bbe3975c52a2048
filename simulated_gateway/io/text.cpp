// SPDX-License-Identifier: MIT
#include "io/text.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <utf8.h>
#include <utility>
#include <vector>

namespace simulated_gateway {
namespace {

void append_byte(std::string &out, char byte)
{
    constexpr char digits[] = "0123456789abcdef";
    const auto value = static_cast<uint8_t>(byte);
    out += "\\x";
    out += digits[value >> 4];
    out += digits[value & 15];
}

bool is_control(uint32_t letter)
{
    return letter < 0x20 || (letter >= 0x7f && letter < 0xa0);
}

// Control characters, those that change the writing direction, and those without width.
bool is_invisible(uint32_t letter)
{
    constexpr std::pair<uint32_t, uint32_t> ranges[] = {
        {0x00ad, 0x00ad}, {0x034f, 0x034f}, {0x061c, 0x061c}, {0x180e, 0x180e}, {0x200b, 0x200f},
        {0x2028, 0x202e}, {0x2060, 0x206f}, {0xfeff, 0xfeff}, {0xfff9, 0xfffb}, {0xe0000, 0xe007f},
    };
    return is_control(letter) || std::ranges::any_of(ranges, [&](const auto &range) {
               return letter >= range.first && letter <= range.second;
           });
}

void append_escaped(std::string &out, std::string_view text, bool escape_quotes)
{
    for (auto at = text.begin(); at != text.end();) {
        const auto start = at;
        bool plain = false;
        try {
            plain = !is_invisible(utf8::next(at, text.end()));
        } catch (const utf8::exception &) {
            at = start + 1;
        }
        if (*start == '\n') {
            out += "\\n";
        } else if (escape_quotes && (*start == '"' || *start == '\\')) {
            out += {'\\', *start};
        } else if (plain) {
            out.append(start, at);
        } else {
            std::for_each(start, at, [&](char byte) { append_byte(out, byte); });
        }
    }
}

// Whether the text ends within its first character.
bool is_cut_character(std::string_view text)
{
    try {
        auto at = text.begin();
        utf8::next(at, text.end());
    } catch (const utf8::not_enough_room &) {
        return true;
    } catch (const utf8::exception &) {
    }
    return false;
}

// Levenshtein distance: the characters to insert, delete or replace.
size_t distance(std::string_view left, std::string_view right)
{
    std::vector<size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < left.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i + 1;
        for (size_t j = 0; j < right.size(); ++j) {
            const size_t replaced = diagonal + (left[i] == right[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

} // namespace

bool is_plain(std::string_view text)
{
    if (!utf8::is_valid(text.begin(), text.end())) {
        return false;
    }
    for (auto at = text.begin(); at != text.end();) {
        if (is_control(utf8::unchecked::next(at))) {
            return false;
        }
    }
    return true;
}

std::string printable(std::string_view text)
{
    std::string out;
    append_escaped(out, text, false);
    return out;
}

std::string in_quotes(std::string_view text)
{
    std::string out = "\"";
    append_escaped(out, text, true);
    return out + '"';
}

std::string_view whole_characters(std::string_view text)
{
    constexpr size_t longest_letter = 4;
    for (size_t length = 1; length <= std::min(longest_letter - 1, text.size()); ++length) {
        const std::string_view end = text.substr(text.size() - length);
        const auto first = static_cast<uint8_t>(end.front());
        const bool continues = (first & 0xc0) == 0x80;
        if (!continues) {
            return is_cut_character(end) ? text.substr(0, text.size() - length) : text;
        }
    }
    return text;
}

std::string did_you_mean(std::string_view name, std::span<const std::string_view> candidates)
{
    const auto distance_to = [&](std::string_view candidate) {
        return distance(name, candidate);
    };
    const auto best = std::ranges::min_element(candidates, {}, distance_to);
    if (best == candidates.end() || distance_to(*best) * 2 > best->size()) {
        return {};
    }
    return "; did you mean " + std::string(*best) + "?";
}

} // namespace simulated_gateway

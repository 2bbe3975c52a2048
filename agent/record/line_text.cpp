// SPDX-License-Identifier: MIT
#include "record/line_text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utf8.h>

namespace agent::record {

namespace {

constexpr char kDigits[] = "0123456789abcdef";

bool is_plain(char letter)
{
    const auto byte = static_cast<unsigned char>(letter);
    return byte >= 0x20 && byte < 0x80 && byte != '"' && byte != '\\';
}

// Whether all eight bytes are plain.
bool are_plain(const char *bytes)
{
    constexpr uint64_t kOnes = 0x0101010101010101;
    constexpr uint64_t kHigh = kOnes * 0x80;
    uint64_t word = 0;
    memcpy(&word, bytes, sizeof word);
    const uint64_t quote = (word ^ kOnes * '"') - kOnes;
    const uint64_t backslash = (word ^ kOnes * '\\') - kOnes;
    return ((word | (word - kOnes * 0x20) | quote | backslash) & kHigh) == 0;
}

// The number of plain bytes at the beginning of the text.
size_t plain_length(std::string_view text)
{
    size_t at = 0;
    while (at + sizeof(uint64_t) <= text.size() && are_plain(text.data() + at)) {
        at += sizeof(uint64_t);
    }
    while (at < text.size() && is_plain(text[at])) {
        ++at;
    }
    return at;
}

bool is_ascii(char letter)
{
    return static_cast<unsigned char>(letter) < 0x80;
}

} // namespace

bool is_utf8(std::string_view text)
{
    constexpr uint64_t kHigh = 0x8080808080808080;
    const char *at = text.data();
    const char *const end = at + text.size();
    while (at < end) {
        uint64_t word = 0;
        if (end - at >= static_cast<ptrdiff_t>(sizeof word)) {
            memcpy(&word, at, sizeof word);
            if ((word & kHigh) == 0) {
                at += sizeof word;
                continue;
            }
        }
        const char *const begin = std::find_if_not(at, end, is_ascii);
        at = std::find_if(begin, end, is_ascii);
        if (!utf8::is_valid(begin, at)) {
            return false;
        }
    }
    return true;
}

LineText::~LineText()
{
    free(memory_);
}

void LineText::grow(size_t size)
{
    constexpr size_t kLeast = 4096;
    const size_t wanted = std::max({kLeast, 2 * size_, used_ + size});
    auto *memory = static_cast<char *>(realloc(memory_, wanted));
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    memory_ = memory;
    size_ = wanted;
}

void LineText::add_number(double number)
{
    constexpr double kExact = 9007199254740992; // above it, not every whole number is a double
    if (std::isinf(number)) {
        add(number < 0 ? "-1e999" : "1e999");
    } else if (std::isnan(number)) {
        add("null");
    } else if (std::abs(number) <= kExact && number == std::trunc(number) &&
               !(number == 0 && std::signbit(number))) {
        add_number(static_cast<int64_t>(number));
    } else {
        constexpr size_t kLongest = 32;
        char *const begin = room(kLongest);
        used_ += static_cast<size_t>(std::to_chars(begin, begin + kLongest, number).ptr - begin);
    }
}

void LineText::add_hex(std::string_view bytes)
{
    char *to = room(2 * bytes.size() + 1);
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        *to++ = kDigits[value / 16];
        *to++ = kDigits[value % 16];
    }
    used_ += 2 * bytes.size();
}

void LineText::add_quoted(std::string_view text)
{
    add('"');
    while (!text.empty()) {
        const size_t plain = plain_length(text);
        add(text.substr(0, plain));
        text.remove_prefix(plain);
        if (text.empty()) {
            break;
        }
        const char letter = text.front();
        text.remove_prefix(1);
        if (static_cast<unsigned char>(letter) >= 0x80) {
            add(letter);
            continue;
        }
        add('\\');
        switch (letter) {
        case '\n':
            add('n');
            break;
        case '\r':
            add('r');
            break;
        case '\t':
            add('t');
            break;
        case '"':
        case '\\':
            add(letter);
            break;
        default:
            add("u00");
            add_hex({&letter, 1});
        }
    }
    add('"');
}

void LineText::add_text(std::string_view text)
{
    const size_t plain = plain_length(text);
    const std::string_view rest = text.substr(plain);
    if (rest.find('\0') != std::string_view::npos || !is_utf8(rest)) {
        add("{\"hex\":\"");
        add_hex(text);
        add("\"}");
    } else {
        add_quoted(text);
    }
}

void LineText::add_name(std::string_view name)
{
    if (used_ > 0 && memory_[used_ - 1] != '{') {
        add(',');
    }
    char *to = room(name.size() + 3);
    *to++ = '"';
    memcpy(to, name.data(), name.size());
    to += name.size();
    *to++ = '"';
    *to = ':';
    used_ += name.size() + 3;
}

} // namespace agent::record

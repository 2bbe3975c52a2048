// SPDX-License-Identifier: MIT
// Texts of any encoding, in builds with encoding support.
#include "io/text.h"

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cwchar>
#include <iconv.h>
#include <iterator>
#include <utf8.h>

namespace agent {

namespace {

std::string escape(char32_t control)
{
    switch (control) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        char text[12];
        snprintf(text, sizeof(text), "\\x%02x", static_cast<unsigned>(control));
        return text;
    }
}

struct Range {
    char32_t first;
    char32_t last;
};

// Characters that are not visible.
constexpr Range kUnseen[] = {
    {0x0000, 0x001f},   // controls
    {0x007f, 0x009f},   // controls: terminals interpret them like those above
    {0x00ad, 0x00ad},   // zero width
    {0x034f, 0x034f},   // zero width
    {0x061c, 0x061c},   // direction of writing
    {0x180e, 0x180e},   // zero width
    {0x200b, 0x200f},   // zero width, and direction of writing
    {0x2028, 0x202e},   // ends of lines, and direction of writing
    {0x2060, 0x206f},   // zero width, and direction of writing
    {0xfeff, 0xfeff},   // zero width
    {0xfff9, 0xfffb},   // zero width
    {0xe0000, 0xe007f}, // zero width
};

bool is_unseen(char32_t character)
{
    return std::ranges::any_of(kUnseen, [&](const Range &range) {
        return character >= range.first && character <= range.last;
    });
}

// The longest prefix of the text of at most max_bytes that splits no character.
std::string_view beginning(std::string_view text, size_t max_bytes)
{
    if (text.size() <= max_bytes) {
        return text;
    }
    size_t end = max_bytes;
    while (end > 0 && (text[end] & 0xc0) == 0x80) { // inside a character
        --end;
    }
    return text.substr(0, end);
}

std::string replace_invalid(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    utf8::replace_invalid(bytes.begin(), bytes.end(), std::back_inserter(text));
    return text;
}

// Also true if the last character is incomplete: texts are truncated to a field's size in bytes.
bool is_utf8(std::string_view text)
{
    auto at = utf8::find_invalid(text.begin(), text.end());
    try {
        utf8::next(at, text.end());
        return false;
    } catch (const utf8::not_enough_room &) {
        return true;
    } catch (const utf8::exception &) {
        return false;
    }
}

std::string from_gbk(std::string_view text)
{
    constexpr std::string_view kReplacement = "\ufffd";
    std::string in(text);
    std::string out(text.size() * kReplacement.size(), '\0'); // an upper bound for each byte
    iconv_t converter = iconv_open("UTF-8", "GBK");
    // NOLINTNEXTLINE(performance-no-int-to-ptr): iconv_open() answers so
    if (converter == reinterpret_cast<iconv_t>(-1)) {
        return replace_invalid(text); // the C library was installed without GBK
    }
    char *from = in.data();
    size_t left = in.size();
    char *to = out.data();
    size_t room = out.size();
    while (iconv(converter, &from, &left, &to, &room) == static_cast<size_t>(-1)) {
        ++from;
        --left;
        to = std::copy(kReplacement.begin(), kReplacement.end(), to);
        room -= kReplacement.size();
    }
    iconv_close(converter);
    out.resize(out.size() - room);
    return out;
}

} // namespace

// Nearly every text is ASCII, which is much faster to check.
bool is_valid_utf8(std::string_view text)
{
    unsigned char bits = 0;
    for (const char byte : text) {
        bits |= static_cast<unsigned char>(byte);
    }
    return bits < 0x80 || utf8::is_valid(text);
}

std::string to_utf8(std::string_view text)
{
    return is_utf8(text) ? replace_invalid(text) : from_gbk(text);
}

std::string one_line(std::string_view bytes, size_t max_bytes)
{
    const std::string_view kept = beginning(bytes, max_bytes);
    const std::string text = replace_invalid(kept);
    std::string line;
    for (auto at = text.begin(); at != text.end();) {
        const auto start = at;
        const char32_t character = utf8::unchecked::next(at);
        if (is_unseen(character)) {
            line += escape(character);
        } else {
            line.append(start, at);
        }
    }
    if (kept.size() < bytes.size()) {
        line += " [" + std::to_string(bytes.size() - kept.size()) + " more bytes]";
    }
    return line;
}

std::string in_quotes(std::string_view bytes)
{
    std::string line = "\"";
    while (!bytes.empty()) {
        const auto *const valid = utf8::find_invalid(bytes.begin(), bytes.end());
        std::string plain;
        for (const char letter : std::string_view(bytes.begin(), valid)) {
            plain += letter == '"' || letter == '\\' ? std::string{'\\', letter}
                                                     : std::string(1, letter);
        }
        line += one_line(plain, plain.size());
        if (valid != bytes.end()) {
            line += escape(static_cast<unsigned char>(*valid));
        }
        bytes =
            valid == bytes.end() ? std::string_view() : std::string_view(valid + 1, bytes.end());
    }
    return line + '"';
}

std::string json_for_terminal(std::string_view json)
{
    std::string shown;
    for (auto at = json.begin(); at != json.end();) {
        const auto start = at;
        const char32_t character = utf8::unchecked::next(at);
        // Within strings JSON has already escaped ASCII controls; elsewhere they are line ends and
        // tabs.
        if (character < ' ' || !is_unseen(character)) {
            shown.append(start, at);
            continue;
        }
        std::u16string units;
        utf8::utf8to16(start, at, std::back_inserter(units));
        for (const char16_t unit : units) {
            char text[8];
            snprintf(text, sizeof(text), "\\u%04x", static_cast<unsigned>(unit));
            shown += text;
        }
    }
    return shown;
}

size_t columns_of(std::string_view utf8_text)
{
    // The C library provides the widths only in a UTF-8 locale.
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const locale_t before = locale != nullptr ? uselocale(locale) : nullptr;
    size_t columns = 0;
    const std::string text = replace_invalid(utf8_text);
    for (auto at = text.begin(); at != text.end();) {
        const int width = wcwidth(static_cast<wchar_t>(utf8::unchecked::next(at)));
        columns += width < 0 ? 1 : static_cast<size_t>(width);
    }
    if (before != nullptr) {
        uselocale(before);
    }
    return columns;
}

} // namespace agent

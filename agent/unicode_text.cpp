// Texts of any encoding, with what knows them.
#include "text.h"

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
        char text[8];
        snprintf(text, sizeof(text), "\\x%02x", static_cast<unsigned>(control));
        return text;
    }
}

// Terminals obey the second range as they obey the first. The others turn the direction of writing,
// and so what a line seems to say.
bool is_control(char32_t character)
{
    return character < 0x20 || (character >= 0x7f && character < 0xa0) || character == 0x061c ||
           character == 0x200e || character == 0x200f ||
           (character >= 0x2028 && character <= 0x202e) ||
           (character >= 0x2066 && character <= 0x2069);
}

// The longest beginning of the text that is no longer than max_bytes and cuts no character.
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

// Also when the last character lacks its end: texts are cut to the width of a field by bytes.
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
    std::string out(text.size() * kReplacement.size(), '\0'); // no byte becomes more
    iconv_t converter = iconv_open("UTF-8", "GBK");
    // NOLINTNEXTLINE(performance-no-int-to-ptr): iconv_open() answers so
    if (converter == reinterpret_cast<iconv_t>(-1)) {
        return replace_invalid(text); // a C library that has been installed without GBK
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

bool is_valid_utf8(std::string_view text)
{
    return utf8::is_valid(text);
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
        if (is_control(character)) {
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

size_t columns_of(std::string_view utf8_text)
{
    // The C library knows the widths, but tells them only in a locale of UTF-8.
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

// SPDX-License-Identifier: MIT
#include "protocol/log_format.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

// Formats come from callers of the log, which the compiler checks through the format attribute.
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

namespace agent {

namespace {

// A width or precision passed as an argument could request gigabytes of padding.
constexpr int kMaxWidth = 1000;
constexpr size_t kMaxUnknownText = 64UL * 1024;

// Literal text of the format, then a conversion; the last piece may have no conversion.
struct Piece {
    std::string literal;
    std::string flags;
    std::string width;     // digits, "*", or none
    std::string precision; // digits, "*", or none
    bool has_precision = false;
    std::string length;
    char conversion = '\0';
};

// A va_list is an array for some compilers and cannot be passed by reference directly.
struct Arguments {
    va_list list;
};

std::string take_while(std::string_view &rest, std::string_view letters)
{
    const size_t length = std::min(rest.find_first_not_of(letters), rest.size());
    std::string taken(rest.substr(0, length));
    rest.remove_prefix(length);
    return taken;
}

bool is_understood(const Piece &piece)
{
    const std::string_view lengths_of_integers[] = {"", "hh", "h", "l", "ll", "j", "z", "t"};
    switch (piece.conversion) {
    case 'd':
    case 'i':
    case 'u':
    case 'o':
    case 'x':
    case 'X':
        return std::find(std::begin(lengths_of_integers), std::end(lengths_of_integers),
                         piece.length) != std::end(lengths_of_integers);
    case 'f':
    case 'F':
    case 'e':
    case 'E':
    case 'g':
    case 'G':
    case 'a':
    case 'A':
        return piece.length.empty() || piece.length == "L";
    case 'c':
    case 's':
    case 'p':
        return piece.length.empty();
    default:
        return false;
    }
}

// Nothing for an unsupported format.
std::optional<std::vector<Piece>> pieces_of(std::string_view rest)
{
    std::vector<Piece> pieces(1);
    while (!rest.empty()) {
        Piece &piece = pieces.back();
        const size_t percent = std::min(rest.find('%'), rest.size());
        piece.literal += rest.substr(0, percent);
        rest.remove_prefix(percent);
        if (rest.starts_with("%%")) {
            piece.literal += '%';
            rest.remove_prefix(2);
        } else if (!rest.empty()) {
            rest.remove_prefix(1);
            piece.flags = take_while(rest, "-+ #0");
            piece.width = take_while(rest, "0123456789*");
            if (rest.starts_with('.')) {
                rest.remove_prefix(1);
                piece.precision = take_while(rest, "0123456789*");
                piece.has_precision = true;
            }
            piece.length = take_while(rest, "hljztLq");
            piece.conversion = rest.empty() ? '\0' : rest.front();
            if (!is_understood(piece)) {
                return std::nullopt;
            }
            rest.remove_prefix(1);
            pieces.emplace_back();
        }
    }
    return pieces;
}

template <class Value> std::string formatted(const std::string &format, Value value)
{
    const int length = snprintf(nullptr, 0, format.c_str(), value);
    std::string text(static_cast<size_t>(std::max(length, 0)) + 1, '\0');
    snprintf(text.data(), text.size(), format.c_str(), value);
    text.pop_back();
    return text;
}

intmax_t signed_argument(const std::string &length, Arguments &arguments)
{
    if (length == "hh") {
        return static_cast<signed char>(va_arg(arguments.list, int));
    }
    if (length == "h") {
        return static_cast<short>(va_arg(arguments.list, int));
    }
    if (length == "l") {
        return va_arg(arguments.list, long);
    }
    if (length == "ll") {
        return va_arg(arguments.list, long long);
    }
    if (length == "j") {
        return va_arg(arguments.list, intmax_t);
    }
    if (length == "z" || length == "t") {
        return va_arg(arguments.list, ptrdiff_t);
    }
    return va_arg(arguments.list, int);
}

uintmax_t unsigned_argument(const std::string &length, Arguments &arguments)
{
    if (length == "hh") {
        return static_cast<unsigned char>(va_arg(arguments.list, unsigned));
    }
    if (length == "h") {
        return static_cast<unsigned short>(va_arg(arguments.list, unsigned));
    }
    if (length == "l") {
        return va_arg(arguments.list, unsigned long);
    }
    if (length == "ll") {
        return va_arg(arguments.list, unsigned long long);
    }
    if (length == "j") {
        return va_arg(arguments.list, uintmax_t);
    }
    if (length == "z" || length == "t") {
        return va_arg(arguments.list, size_t);
    }
    return va_arg(arguments.list, unsigned);
}

// The bytes of a string argument: with a precision, it need not be NUL-terminated.
std::string_view text_argument(const Piece &piece, Arguments &arguments)
{
    const char *text = va_arg(arguments.list, const char *);
    if (text == nullptr) {
        return "(null)";
    }
    if (!piece.has_precision) {
        return text;
    }
    return {text, strnlen(text, strtoul(piece.precision.c_str(), nullptr, 10))};
}

std::string padded(const Piece &piece, const std::string &text)
{
    const size_t width = strtoul(piece.width.c_str(), nullptr, 10);
    const std::string blanks(width > text.size() ? width - text.size() : 0, ' ');
    return piece.flags.find('-') != std::string::npos ? text + blanks : blanks + text;
}

// Replaces asterisks by their arguments, as printf does.
void resolve_asterisks(Piece &piece, Arguments &arguments)
{
    if (piece.width == "*") {
        const int width = std::clamp(va_arg(arguments.list, int), -kMaxWidth, kMaxWidth);
        piece.flags += width < 0 ? "-" : "";
        piece.width = std::to_string(std::abs(width));
    }
    if (piece.precision == "*") {
        const int precision = va_arg(arguments.list, int);
        const int limit = piece.conversion == 's' ? INT_MAX : kMaxWidth;
        piece.has_precision = precision >= 0;
        piece.precision = std::to_string(std::min(precision, limit));
    }
}

std::string render(Piece piece, Arguments &arguments, const SecretMask *mask)
{
    resolve_asterisks(piece, arguments);
    std::string format = "%";
    format += piece.flags + piece.width;
    if (piece.has_precision) {
        format += '.' + piece.precision;
    }
    const std::string conversion(1, piece.conversion);
    switch (piece.conversion) {
    case 's': {
        const std::string_view text = text_argument(piece, arguments);
        return padded(piece, mask == nullptr ? std::string(text) : mask_json(text, *mask));
    }
    case 'd':
    case 'i':
        return formatted(format + "j" + conversion, signed_argument(piece.length, arguments));
    case 'u':
    case 'o':
    case 'x':
    case 'X':
        return formatted(format + "j" + conversion, unsigned_argument(piece.length, arguments));
    case 'c':
        return formatted(format + conversion, va_arg(arguments.list, int));
    case 'p':
        return formatted(format + conversion, va_arg(arguments.list, void *));
    default:
        return piece.length == "L"
                   ? formatted(format + "L" + conversion, va_arg(arguments.list, long double))
                   : formatted(format + conversion, va_arg(arguments.list, double));
    }
}

bool names_a_secret(std::string_view format)
{
    for (size_t end = 1; end <= format.size(); ++end) {
        if (labels_a_secret(format.substr(0, end))) {
            return true;
        }
    }
    return false;
}

std::string render_unknown(const SecretMask *mask, const char *format, va_list arguments)
{
    if (mask != nullptr && names_a_secret(format)) {
        return std::string(format) + " (arguments withheld)";
    }
    std::string text(kMaxUnknownText, '\0');
    vsnprintf(text.data(), text.size(), format, arguments);
    text.resize(strlen(text.c_str()));
    return mask == nullptr ? text : mask_json(text, *mask);
}

} // namespace

std::string format_log_text(bool show_secrets, const char *format, va_list arguments)
{
    return format_log_text(show_secrets ? nullptr : &stars(), format, arguments);
}

std::string format_log_text(const SecretMask *mask, const char *format, va_list arguments)
{
    const std::optional<std::vector<Piece>> pieces = pieces_of(format);
    if (!pieces) {
        return render_unknown(mask, format, arguments);
    }
    Arguments copy;
    va_copy(copy.list, arguments);
    std::string text;
    for (const Piece &piece : *pieces) {
        text += piece.literal;
        if (piece.conversion != '\0') {
            // The argument is rendered even when it is not shown: this advances to the next
            // argument.
            const std::string value = render(piece, copy, mask);
            text += mask != nullptr && labels_a_secret(text) ? mask->text(value) : value;
        }
    }
    va_end(copy.list);
    return text;
}

} // namespace agent

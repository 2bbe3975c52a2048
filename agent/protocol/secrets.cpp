// SPDX-License-Identifier: MIT
#include "protocol/secrets.h"

#include "io/text.h"
#include "protocol/protocol.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <sys/prctl.h>
#include <utility>
#include <vector>

namespace agent {

namespace {

constexpr std::array<std::string_view, 5> kSecretEndings = {"password", "passwd", "pwd",
                                                            "passphrase", "psk"};

bool is_word_letter(char letter)
{
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || letter == '_';
}

bool names_a_secret(const Description &part)
{
    bool found = is_secret_name(part["key"].text());
    for (const Description &inner : part) {
        found = found || names_a_secret(inner);
    }
    return found;
}

size_t after_space(std::string_view text, size_t at)
{
    return std::min(text.find_first_not_of(kSpace, at), text.size());
}

size_t end_of_value(std::string_view text, size_t begin)
{
    size_t depth = 0;
    for (size_t at = begin; at < text.size(); ++at) {
        const char mark = text[at];
        if (mark == '"') {
            at = end_of_string(text, at) - 1;
        } else if (mark == '{' || mark == '[') {
            ++depth;
        } else if (depth > 0 && (mark == '}' || mark == ']')) {
            --depth;
        } else if (depth == 0 && std::string_view(",}] \t\r\n").find(mark) != std::string::npos) {
            return at;
        } else {
            continue; // inside a number or a literal
        }
        if (depth == 0) {
            return std::min(at + 1, text.size());
        }
    }
    return text.size();
}

// The text of a JSON string without its quotes.
struct StringText {
    std::string text;
    std::vector<size_t> places; // of its bytes in the string, and the string's end
};

// The character at the backslash, and the number of bytes that stand for it. Those that are not
// ASCII, and invalid ones, are left as they are: no secret name has one.
std::pair<char, size_t> escaped_character(std::string_view text, size_t backslash)
{
    constexpr std::string_view names = "bfnrt";
    constexpr std::string_view meanings = "\b\f\n\r\t";
    const char name = text[backslash + 1];
    const size_t at = names.find(name);
    if (at != std::string_view::npos) {
        return {meanings[at], 2};
    }
    if (name != 'u') {
        return {name, 2};
    }
    const std::string_view digits = text.substr(backslash + 2, 4);
    unsigned value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    const bool is_ascii =
        error == std::errc() && end == digits.data() + 4 && value > 0 && value < 0x80;
    return is_ascii ? std::pair(static_cast<char>(value), size_t{6}) : std::pair('\\', size_t{1});
}

StringText text_of_string(std::string_view string)
{
    StringText plain;
    for (size_t at = 0; at < string.size();) {
        const bool is_escaped = string[at] == '\\' && at + 1 < string.size();
        const auto [character, length] =
            is_escaped ? escaped_character(string, at) : std::pair(string[at], size_t{1});
        plain.text += character;
        plain.places.push_back(at);
        at += length;
    }
    plain.places.push_back(string.size());
    return plain;
}

// JSON as a part of a JSON string.
std::string in_json_string(std::string_view json)
{
    std::string string;
    for (const char mark : json) {
        string += mark == '"' || mark == '\\' ? "\\" : "";
        string += mark >= 0 && mark < ' ' ? ' ' : mark; // only between its strings
    }
    return string;
}

struct MaskedPart {
    size_t begin;
    size_t end;
    std::string mask;
};

// Each level of strings within strings at least doubles the backslashes, so the depth is small.
std::vector<MaskedPart> masked_parts(std::string_view text, const SecretMask &mask)
{
    std::vector<MaskedPart> parts;
    size_t at = 0;
    while (at < text.size()) {
        const size_t quote = text.find('"', at);
        if (quote == std::string_view::npos) {
            break;
        }
        at = end_of_string(text, quote);
        const size_t begin = quote + 1;
        const bool is_whole = at > begin && text[at - 1] == '"';
        const std::string_view string = text.substr(begin, at - begin - (is_whole ? 1 : 0));
        StringText plain;
        if (string.find('\\') != std::string_view::npos) {
            plain = text_of_string(string);
        }
        const std::string_view name = plain.text.empty() ? string : std::string_view(plain.text);
        const size_t colon = after_space(text, at);
        if (colon < text.size() && text[colon] == ':' && is_secret_name(name)) {
            const size_t value = after_space(text, colon + 1);
            at = end_of_value(text, value);
            parts.push_back({value, at, mask.json(text.substr(value, at - value))});
            continue;
        }
        for (const MaskedPart &part : masked_parts(plain.text, mask)) {
            parts.push_back({begin + plain.places[part.begin], begin + plain.places[part.end],
                             in_json_string(part.mask)});
        }
    }
    return parts;
}

class Stars : public SecretMask {
  public:
    std::string text(std::string_view) const override { return kMask; }
    std::string json(std::string_view) const override { return std::string("\"") + kMask + '"'; }
};

} // namespace

const SecretMask &stars()
{
    static const Stars mask;
    return mask;
}

bool is_secret_name(std::string_view name)
{
    const std::string lower = lower_case(name);
    return std::any_of(kSecretEndings.begin(), kSecretEndings.end(),
                       [&](std::string_view ending) { return lower.ends_with(ending); }) ||
           secret_keys().contains(lower);
}

bool may_reply_secrets(std::string_view command)
{
    const Description *description = find_description(command);
    return description == nullptr || names_a_secret((*description)["replies"]);
}

bool labels_a_secret(std::string_view text)
{
    size_t end = text.size();
    while (end > 0 && !is_word_letter(text[end - 1])) {
        --end;
    }
    size_t begin = end;
    while (begin > 0 && is_word_letter(text[begin - 1])) {
        --begin;
    }
    return is_secret_name(text.substr(begin, end - begin));
}

void forbid_core_dumps()
{
    prctl(PR_SET_DUMPABLE, 0);
}

std::string mask_json(std::string_view text, const SecretMask &mask)
{
    std::string shown;
    size_t at = 0;
    for (const MaskedPart &part : masked_parts(text, mask)) {
        shown += text.substr(at, part.begin - at);
        shown += part.mask;
        at = part.end;
    }
    shown += text.substr(at);
    return shown;
}

std::string mask_address(std::string_view address, const SecretMask &mask)
{
    const size_t scheme = address.find("://");
    const size_t begin = scheme == std::string_view::npos ? 0 : scheme + 3;
    const size_t at = address.rfind('@');
    const size_t colon = address.find(':', begin);
    std::string shown;
    std::string_view rest = address;
    if (at != std::string_view::npos && colon < at) {
        shown = address.substr(0, colon + 1);
        shown += mask.text(address.substr(colon + 1, at - colon - 1));
        rest = address.substr(at);
    }
    bool in_query = false;
    for (size_t next = 0; next < rest.size();) {
        const char mark = rest[next++];
        shown += mark;
        in_query = in_query || mark == '?';
        if (mark == '#' || (mark == '=' && in_query)) {
            const size_t end =
                std::min(mark == '#' ? rest.size() : rest.find_first_of("&#", next), rest.size());
            shown += end > next ? mask.text(rest.substr(next, end - next)) : "";
            next = end;
        }
    }
    return shown;
}

} // namespace agent

// SPDX-License-Identifier: MIT
#include "protocol/secrets.h"

#include "io/text.h"
#include "protocol/protocol.h"

#include <algorithm>
#include <array>
#include <sys/prctl.h>

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
    while (at < text.size()) {
        const size_t quote = std::min(text.find('"', at), text.size());
        const size_t end = quote < text.size() ? end_of_string(text, quote) : quote;
        shown += text.substr(at, end - at);
        at = end;
        const size_t colon = after_space(text, end);
        if (colon == text.size() || text[colon] != ':' || quote + 1 >= end ||
            !is_secret_name(text.substr(quote + 1, end - quote - 2))) {
            continue;
        }
        const size_t value = after_space(text, colon + 1);
        at = end_of_value(text, value);
        shown += text.substr(end, value - end);
        shown += mask.json(text.substr(value, at - value));
    }
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

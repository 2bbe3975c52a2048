// SPDX-License-Identifier: MIT
#include "system/mac.h"

#include <algorithm>

namespace linux_gateway {

static std::optional<uint8_t> digit_of(char letter)
{
    if (letter >= '0' && letter <= '9') {
        return static_cast<uint8_t>(letter - '0');
    }
    const char lower = static_cast<char>(letter | 0x20);
    if (lower >= 'a' && lower <= 'f') {
        return static_cast<uint8_t>(lower - 'a' + 10);
    }
    return std::nullopt;
}

std::optional<Mac> parse_mac(std::string_view text)
{
    constexpr size_t bare = 12;
    constexpr size_t separated = 17;
    if (text.size() != bare && text.size() != separated) {
        return std::nullopt;
    }
    const size_t step = text.size() == bare ? 2 : 3;
    Mac mac;
    for (size_t i = 0; i < mac.bytes.size(); ++i) {
        const std::optional<uint8_t> high = digit_of(text[i * step]);
        const std::optional<uint8_t> low = digit_of(text[i * step + 1]);
        if (!high || !low) {
            return std::nullopt;
        }
        if (step == 3 && i > 0) {
            const char separator = text[i * step - 1];
            if ((separator != ':' && separator != '-') || separator != text[2]) {
                return std::nullopt;
            }
        }
        mac.bytes[i] = static_cast<uint8_t>(*high << 4 | *low);
    }
    return mac;
}

std::optional<Mac> mac_of(std::span<const uint8_t> bytes)
{
    Mac mac;
    if (bytes.size() != mac.bytes.size()) {
        return std::nullopt;
    }
    std::ranges::copy(bytes, mac.bytes.begin());
    return mac == Mac{} ? std::nullopt : std::optional(mac);
}

std::string to_identifier(const Mac &mac)
{
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (const uint8_t byte : mac.bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0xf];
    }
    return text;
}

std::string to_text(const Mac &mac)
{
    std::string text = to_identifier(mac);
    for (size_t i = 10; i > 0; i -= 2) {
        text.insert(i, 1, ':');
    }
    return text;
}

} // namespace linux_gateway

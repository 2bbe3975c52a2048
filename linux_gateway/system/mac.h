// SPDX-License-Identifier: MIT
// A MAC address.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace linux_gateway {

struct Mac {
    std::array<uint8_t, 6> bytes = {};

    bool is_multicast() const { return (bytes[0] & 1) != 0; }
    auto operator<=>(const Mac &) const = default;
};

// Reads "3C:6A:D2:10:4F:20", with colons, dashes or nothing between the bytes, in any case.
std::optional<Mac> parse_mac(std::string_view text);
// Empty unless there are six bytes, not all of them zero.
std::optional<Mac> mac_of(std::span<const uint8_t> bytes);

// "3C:6A:D2:10:4F:20"
std::string to_text(const Mac &mac);
// "3C6AD2104F20"
std::string to_identifier(const Mac &mac);

} // namespace linux_gateway

// SPDX-License-Identifier: MIT
// The names of a fleet's gateways on the broker, computed alike by the fleet and by its driver.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace agent::fleet {

constexpr char kDefaultPrefix[] = "home";
constexpr uint32_t kLastNumber = 99'999'999;

// PREFIX-NUMBER, such as "home-17". The number is counted across all fleets on the broker.
inline std::string gateway_id(std::string_view prefix, uint32_t number)
{
    return std::string(prefix) + "-" + std::to_string(number);
}

} // namespace agent::fleet

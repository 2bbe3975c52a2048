// SPDX-License-Identifier: MIT
// Patterns of subscriptions and rules.
#pragma once

#include <string_view>

namespace agent::service {

// Whether the text matches: * stands for any characters, ? for one. The time is bounded by the
// product of the two lengths for any pattern.
bool matches(std::string_view pattern, std::string_view text);

} // namespace agent::service

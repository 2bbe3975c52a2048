// SPDX-License-Identifier: MIT
// Patterns as they stand in subscriptions.
#pragma once

#include <string_view>

namespace agent::service {

// Whether the text fits: * stands for any characters, ? for one. Takes no longer than the product
// of the two lengths, whatever the pattern.
bool matches(std::string_view pattern, std::string_view text);

} // namespace agent::service

// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace agent::service {

// As gzip writes it.
std::string gzip(std::string_view text);

} // namespace agent::service

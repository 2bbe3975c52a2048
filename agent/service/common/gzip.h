// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace agent::service {

// The text compressed in the format of gzip.
std::string gzip(std::string_view text);

} // namespace agent::service

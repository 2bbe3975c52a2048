// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace agent::service {

// The text compressed in the format of gzip.
std::string gzip(std::string_view text);

// Nothing if the text is not valid, or has more than max_bytes once it is decompressed.
std::optional<std::string> gunzip(std::string_view packed, size_t max_bytes);

} // namespace agent::service

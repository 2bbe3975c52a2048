// SPDX-License-Identifier: MIT
// A line ends a request to the worker, so no text of a client may contain the end of one.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace agent::service {

// The JSON object on one line; nothing if the text is none.
std::optional<std::string> one_line_object(std::string_view text);

} // namespace agent::service

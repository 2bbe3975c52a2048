// SPDX-License-Identifier: MIT
// The report as a page with curves, which needs no other file.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace agent::fleet::platform {

// json: the report. Nothing, and a message on standard error, if the page's template is not
// installed.
std::optional<std::string> page_of(std::string_view json);

} // namespace agent::fleet::platform

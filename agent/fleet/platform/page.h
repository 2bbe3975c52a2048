// SPDX-License-Identifier: MIT
// The report as a page with curves, which needs no other file.
#pragma once

#include <string>
#include <string_view>

namespace agent::fleet::platform {

// Throws WrongUsage if it is not installed: before a run, which may take hours.
std::string page_template();

// json: the report.
std::string page_of(std::string page_template, std::string_view json);

} // namespace agent::fleet::platform

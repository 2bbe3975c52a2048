// SPDX-License-Identifier: MIT
// The values of the rich device.
#pragma once

#include "rich_device.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace rich_device {

// The value of a field, or of a text argument: one that leads to further calls where it matters,
// otherwise the name itself.
std::string text_for(std::string_view name, const Home &home);

// A parameter of the tree, which contains a main router and two child routers.
std::string parameter(std::string_view path);

// The width of a text argument whose size is not passed.
size_t width_for(std::string_view function);

// The value of a number argument, and the function's result.
int32_t number_for(std::string_view function);
int32_t result_for(std::string_view function);

} // namespace rich_device

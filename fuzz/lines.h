// SPDX-License-Identifier: MIT
// Inputs that consist of lines. Programs that link this have an LLVMFuzzerCustomCrossOver() for
// them.
#pragma once

#include "parts.h"

#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

// The first 16 lines of the input.
std::vector<std::string> lines_of(std::string_view input);
std::string text_of(const std::vector<std::string> &lines);

} // namespace fuzz

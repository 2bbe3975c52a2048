// SPDX-License-Identifier: MIT
// Inputs that consist of lines.
#pragma once

#include "mutator.h"

#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

// The first 16 lines of the input.
std::vector<std::string> lines_of(std::string_view input);
std::string text_of(const std::vector<std::string> &lines);

// Repeats a line, removes one, or swaps two. There has to be at least one.
void change_order(std::vector<std::string> &lines, Mutator &mutator);

// The start of one input and the end of another.
std::vector<std::string> spliced(std::string_view first, std::string_view second, Mutator &mutator);

} // namespace fuzz

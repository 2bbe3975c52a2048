// Inputs that have something on each line.
#pragma once

#include "mutator.h"

#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

// The first 16 of the input.
std::vector<std::string> lines_of(std::string_view input);
std::string text_of(const std::vector<std::string> &lines);

// Puts a line in a second time, takes one out, or exchanges two. There has to be one.
void change_order(std::vector<std::string> &lines, Mutator &mutator);

// The beginning of one input and the end of another.
std::vector<std::string> spliced(std::string_view first, std::string_view second, Mutator &mutator);

} // namespace fuzz

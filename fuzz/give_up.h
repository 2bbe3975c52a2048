// SPDX-License-Identifier: MIT
// The end of a fuzzer that has found something.
#pragma once

#include <string>
#include <string_view>

namespace fuzz {

// From now on give_up() writes to what is standard error at this moment: the agent's log fills
// standard error, and tools/fuzz.sh has libFuzzer discard it.
void keep_error_output();

// Ends the process with the reason and the text that shows it.
[[noreturn]] void give_up(const std::string &why, std::string_view text = "");

} // namespace fuzz

// SPDX-License-Identifier: MIT
// Checks of the simulated gateway that have to succeed after any input.
#pragma once

#include <string>

namespace fuzz {

// Stops the clock of every gateway that is opened from now on.
void stop_clock();

// Ends the process with the reason.
[[noreturn]] void give_up(const std::string &why);

// Ends the process when the open gateway does not reply to queries with success.
void check_home();

} // namespace fuzz

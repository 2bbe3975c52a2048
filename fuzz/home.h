// SPDX-License-Identifier: MIT
// The simulated gateway in a fuzzer: its clock, a network on which no server responds, and checks
// that have to succeed after any input.
#pragma once

namespace fuzz {

// Stops the clock of every gateway that is opened from now on.
void stop_clock();

// Ends the process when the open gateway does not reply to queries with success.
void check_home();

} // namespace fuzz

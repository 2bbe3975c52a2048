// The simulated gateway as it has to be, whatever has been done to it.
#pragma once

#include <string>

namespace fuzz {

// The clock of every gateway that is opened stands still from here on.
void stop_clock();

// Ends the process with the reason.
[[noreturn]] void give_up(const std::string &why);

// Ends the process when the open gateway does not answer queries with success.
void check_home();

} // namespace fuzz

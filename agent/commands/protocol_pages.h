// hgagent list and describe: the protocol, for people.
#pragma once

#include <string>

namespace agent {

// Prints name and summary of the commands whose names contain the pattern or, where it has * ? or
// [, match it; upper or lower case is the same. Result: the exit status.
int run_list(const std::string &pattern);

// The same of the events.
int run_list_of_events(const std::string &pattern);

// Prints everything that is described of one command or event. Result: the exit status.
int run_describe(const std::string &name);

} // namespace agent

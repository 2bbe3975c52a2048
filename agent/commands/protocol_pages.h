// hgagent list and describe: the protocol, for people.
#pragma once

#include <string>

namespace agent {

// Prints name and summary of the commands whose names contain the pattern or, where it has * ? or
// [, match it; upper or lower case is the same. Result: the exit status.
int run_list(const std::string &pattern);

// Prints everything that is described of one command. Result: the exit status.
int run_describe(const std::string &command);

} // namespace agent

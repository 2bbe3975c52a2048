// SPDX-License-Identifier: MIT
// Plays a recording against the plug-in: the recording takes the place of the device library and of
// the host's services.
#pragma once

#include <string>

namespace agent::record {

struct ReplayOptions {
    std::string file;
    std::string plugin; // empty: the installed one
    bool shows_all = false;
};

// Prints differences, and a line with what was played. Result: the exit status. Throws HostError.
int run_replay(const ReplayOptions &options);

} // namespace agent::record

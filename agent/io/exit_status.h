// SPDX-License-Identifier: MIT
// The agent's exit status.
#pragma once

namespace agent {

enum ExitStatus {
    kSuccess = 0,
    kCommandFailed = 1,  // the reply's "Status" is not "0"; refused, failed, nothing found
    kWrongUsage = 2,     // also a request that is not a JSON object
    kUnknownCommand = 3, // no such command, report or event
    kCannotLoad = 4,     // a library cannot be loaded, or the simulated gateway cannot be opened
    kCannotWrite = 5,    // standard input or output failed, or a file of requests or results
    kOutOfMemory = 6,    // before there was a request to answer
    kSignalled = 128,    // plus the number of the signal that ended the work
};

} // namespace agent

// SPDX-License-Identifier: MIT
// hgagent conformance: tests a device library against what the plug-in relies on.
#pragma once

#include "host/options.h"

#include <cstdint>
#include <string>
#include <vector>

namespace agent {

struct ConformanceOptions {
    bool allow_writes = false;
    std::vector<std::string> commands; // empty: all whose effect can be undone
    int32_t patience = 60;             // seconds for one check
    std::string junit;                 // file; empty: none
};

// Runs the checks, any of which a faulty library may crash or hang, and prints the results. Result:
// the exit status.
int run_conformance(const HostOptions &host, const ConformanceOptions &options);

} // namespace agent

// SPDX-License-Identifier: MIT
// The host agent's services for unit tests: the log is kept for the test to read. The other
// services and system() are recorded and programmed as the device's functions are, so that one
// list shows the order of all calls.
#pragma once

#include "smart_router_service/host_agent.h"

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace recording_host {

struct LogLine {
    int32_t level;
    std::string text;

    bool operator==(const LogLine &) const = default;
};

inline void PrintTo(const LogLine &line, std::ostream *out)
{
    *out << "level " << line.level << ": \"" << line.text << '"';
}

// The lines since the last reset, in order. A line of a module other than the plug-in's own fails
// the running test.
std::vector<LogLine> log_lines();

void reset();

} // namespace recording_host

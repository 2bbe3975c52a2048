// SPDX-License-Identifier: MIT
// The process in which the checks run. If the library crashes or hangs, the process ends and the
// next check gets a new one.
#pragma once

#include "conformance/report.h"
#include "host/options.h"
#include "io/streams.h"

#include <chrono>
#include <functional>
#include <vector>

namespace agent {

// Runs the checks in order, and passes on the result of each. After a signal the current check is
// the last one. patience is the time limit of one check. Throws HostError when the libraries cannot
// be loaded.
void run_checks(const std::vector<Check> &checks, const HostOptions &host,
                std::chrono::seconds patience, const StopSignals &stop,
                const std::function<void(const Check &, CheckResult)> &take);

} // namespace agent

// SPDX-License-Identifier: MIT
// The process in which the checks run. A library that crashes or hangs takes it along; the next
// check gets another one.
#pragma once

#include "conformance/report.h"
#include "host/options.h"
#include "io/streams.h"

#include <chrono>
#include <functional>
#include <vector>

namespace agent {

// Runs the checks in their order, and hands over the result of each. After a signal the check at
// hand is the last one. Patience is for one check. Throws HostError when the libraries cannot be
// brought up.
void run_checks(const std::vector<Check> &checks, const HostOptions &host,
                std::chrono::seconds patience, const StopSignals &stop,
                const std::function<void(const Check &, CheckResult)> &take);

} // namespace agent

// The process in which the checks run. A library that crashes or hangs takes it along; the next
// check gets another one.
#pragma once

#include "commands/options.h"
#include "conformance/result.h"
#include "io/streams.h"

#include <functional>
#include <vector>

namespace agent {

// Runs the checks in their order, and hands over the result of each. After a signal the check at
// hand is the last one. Throws HostError when the libraries cannot be brought up.
void run_checks(const std::vector<Check> &checks, const Options &options, const StopSignals &stop,
                const std::function<void(const Check &, CheckResult)> &take);

} // namespace agent

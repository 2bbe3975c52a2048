// A check of a device library, and what came of it.
#pragma once

#include "protocol/protocol.h"

#include <string>
#include <vector>

namespace agent {

// The check that all functions are there.
constexpr char kFunctions[] = "functions";

// What is checked: a command, a report, or the functions as such.
struct Check {
    std::string name;
    std::string subject;
    const Description *command = nullptr;
    std::string report = {}; // its name
};

enum class Verdict { kPassed, kFailed, kNotSupported, kSkipped };

struct CheckResult {
    Verdict verdict = Verdict::kPassed;
    std::vector<std::string> details;       // one line each
    std::vector<std::string> names = {};    // what the table only counts, unless all is wanted
    std::vector<std::string> warnings = {}; // one line each; no part of the verdict
};

} // namespace agent

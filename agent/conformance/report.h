// SPDX-License-Identifier: MIT
// The checks of a device library and their results: as a table, and in JUnit's format.
#pragma once

#include "protocol/protocol.h"

#include <string>
#include <utility>
#include <vector>

namespace agent {

// The check that all functions are present.
constexpr char kFunctions[] = "functions";

// What is checked: a command, a report, or the presence of the functions.
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
    std::vector<std::string> names = {};    // the table shows only their number unless verbose
    std::vector<std::string> warnings = {}; // one line each; they do not affect the verdict
};

using CheckResults = std::vector<std::pair<Check, CheckResult>>;

// The verdict as shown to people.
const char *word_for(Verdict verdict);

size_t count_of(const CheckResults &results, Verdict verdict);

// Rows of a table and a line with the totals, without a trailing line end. verbose: with all names
// that are otherwise only counted.
std::string table_of(const CheckResults &results, bool verbose);

// A JUnit XML document for the named library.
std::string junit_of(const CheckResults &results, const std::string &library);

} // namespace agent

// SPDX-License-Identifier: MIT
// The checks of a device library and their results: as a table, and in JUnit's format.
#pragma once

#include "protocol/protocol.h"

#include <string>
#include <utility>
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

using CheckResults = std::vector<std::pair<Check, CheckResult>>;

// As people are told of it.
const char *word_for(Verdict verdict);

size_t count_of(const CheckResults &results, Verdict verdict);

// Rows of a table and a line with the sums, without the last line's end. verbose: with all names
// that are otherwise only counted.
std::string table_of(const CheckResults &results, bool verbose);

// An XML document for the library with the name.
std::string junit_of(const CheckResults &results, const std::string &library);

} // namespace agent

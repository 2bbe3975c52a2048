// What came of the checks of a device library: as a table, and in JUnit's format.
#pragma once

#include "conformance/result.h"

#include <string>
#include <utility>
#include <vector>

namespace agent {

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

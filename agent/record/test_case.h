// SPDX-License-Identifier: MIT
// A part of a recording as a test case.
#pragma once

#include <cstddef>
#include <string>

namespace agent::record {

struct TestCaseOptions {
    std::string file;
    size_t command = 0; // its number, from 1; 0 for all
};

// Prints the test case. Result: the exit status.
int run_make_test(const TestCaseOptions &options);

} // namespace agent::record

// SPDX-License-Identifier: MIT
// Golden files: the expected output of the agent, kept next to the tests in the folder golden.
#pragma once

#include <string>

// Expects the text to be the content of the file. With the environment variable RENEW_GOLDEN_FILES
// it is written to the file instead, and the test is skipped: a person has to review the change.
void expect_golden(const std::string &file, const std::string &text);

// Golden files: what the agent is known to print, kept beside the tests in the folder golden.
#pragma once

#include <string>

// Expects the text to be the content of the file. With the environment variable RENEW_GOLDEN_FILES
// it becomes the content instead, and the test is skipped: what has changed is for a person to see.
void expect_golden(const std::string &file, const std::string &text);

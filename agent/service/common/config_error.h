// SPDX-License-Identifier: MIT
// Validation errors of a configuration or a policy: each with its file, line and key.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace agent::service {

// A text from a file, for a message: in quotes, on one line, truncated if long.
std::string in_message(std::string_view text);

struct ConfigProblem {
    std::string file; // or "command line"
    size_t line = 0;  // 0: none
    std::string key;  // as in "limits.queue"; may be empty
    std::string text; // a sentence without its full stop

    // "FILE:LINE: KEY: TEXT", on one line regardless of their contents.
    std::string message() const;
};

// what() lists all problems, one per line, by file and line.
class ConfigError : public std::runtime_error {
  public:
    explicit ConfigError(std::vector<ConfigProblem> problems);
    const std::vector<ConfigProblem> &problems() const { return problems_; }

  private:
    std::vector<ConfigProblem> problems_;
};

// Writes each problem to standard error. Result: the exit status.
int report_problems(const ConfigError &wrong);

} // namespace agent::service

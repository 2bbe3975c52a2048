// SPDX-License-Identifier: MIT
// The previously typed lines, in a file of the user.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace agent {

// The path of the history: below $XDG_STATE_HOME, otherwise below the home directory. Empty when
// there is neither.
std::string history_path();

class ShellHistory {
  public:
    // Opens the file, or creates it, readable by the user only. Throws std::runtime_error.
    explicit ShellHistory(const std::string &path);
    ~ShellHistory();
    ShellHistory(const ShellHistory &) = delete;
    ShellHistory &operator=(const ShellHistory &) = delete;

    // The last lines, the oldest first.
    const std::vector<std::string> &lines() const { return lines_; }

    // Appends a line, which must not contain secrets. Several shells may do so at once. Throws
    // std::runtime_error.
    void add(std::string_view line);

  private:
    void load();

    std::string path_;
    int descriptor_;
    std::vector<std::string> lines_;
};

} // namespace agent

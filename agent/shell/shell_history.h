// SPDX-License-Identifier: MIT
// The lines that were typed before, in a file of the user's own.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace agent {

// Where the history lies: below $XDG_STATE_HOME, else below the home folder. Empty when there is
// neither.
std::string history_path();

class ShellHistory {
  public:
    // Opens the file, or makes it, readable for its user alone. Throws std::runtime_error.
    explicit ShellHistory(const std::string &path);
    ~ShellHistory();
    ShellHistory(const ShellHistory &) = delete;
    ShellHistory &operator=(const ShellHistory &) = delete;

    // The last lines, the oldest first.
    const std::vector<std::string> &lines() const { return lines_; }

    // Appends a line, which is not to have any secrets. Several shells may do so at once. Throws
    // std::runtime_error.
    void add(std::string_view line);

  private:
    void load();

    std::string path_;
    int descriptor_;
    std::vector<std::string> lines_;
};

} // namespace agent

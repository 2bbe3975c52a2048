// SPDX-License-Identifier: MIT
// Standard error: lines, and on a terminal a table below them that is drawn again and again.
#pragma once

#include <string>
#include <vector>

namespace agent::fleet {

class Screen {
  public:
    explicit Screen(std::string title);

    void print(const std::string &text);
    // On a terminal only.
    void show(const std::vector<std::string> &table);
    void clear();

  private:
    const std::string title_;
    const bool is_terminal_;
    std::vector<std::string> table_;
    size_t drawn_ = 0; // lines
};

} // namespace agent::fleet

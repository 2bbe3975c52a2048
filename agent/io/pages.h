// SPDX-License-Identifier: MIT
// Pages for people, on standard output.
#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace agent {

// Rows of aligned cells. A row may have fewer cells than others.
class Table {
  public:
    void row(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }
    bool empty() const { return rows_.empty(); }

    void print(std::ostream &out, const std::string &indent) const;

  private:
    std::vector<std::vector<std::string>> rows_;
};

// Writes the page to standard output. Result: the exit status.
int show(const std::string &page);

} // namespace agent

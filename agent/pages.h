// Pages for people, on standard output.
#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace agent {

// Rows of two columns: what something is, and what is to be said of it.
class Table {
  public:
    void row(const std::string &left, const std::string &right) { rows_.emplace_back(left, right); }
    bool empty() const { return rows_.empty(); }

    void print(std::ostream &out, const std::string &indent) const;

  private:
    std::vector<std::pair<std::string, std::string>> rows_;
};

// Writes the page to standard output. Result: the exit status.
int show(const std::string &page);

} // namespace agent

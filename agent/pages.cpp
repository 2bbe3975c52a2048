#include "pages.h"

#include "exit_status.h"
#include "text.h"

#include <algorithm>
#include <iostream>

namespace agent {

void Table::print(std::ostream &out, const std::string &indent) const
{
    size_t width = 0;
    for (const auto &[left, right] : rows_) {
        width = std::max(width, left.size());
    }
    for (const auto &[left, right] : rows_) {
        out << indent << left;
        if (!right.empty()) {
            out << std::string(width - left.size() + 2, ' ') << right;
        }
        out << '\n';
    }
}

int show(const std::string &page)
{
    std::cout << page << std::flush;
    if (!std::cout) {
        complain("cannot write to standard output");
        return kCannotWrite;
    }
    return kSuccess;
}

} // namespace agent

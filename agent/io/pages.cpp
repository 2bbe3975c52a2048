// SPDX-License-Identifier: MIT
#include "io/pages.h"

#include "io/exit_status.h"
#include "io/text.h"

#include <algorithm>
#include <iostream>

namespace agent {

namespace {

constexpr size_t kGap = 2;

} // namespace

void Table::print(std::ostream &out, const std::string &indent) const
{
    std::vector<size_t> widths;
    for (const auto &cells : rows_) {
        widths.resize(std::max(widths.size(), cells.size()));
        for (size_t at = 0; at < cells.size(); ++at) {
            widths[at] = std::max(widths[at], columns_of(cells[at]));
        }
    }
    for (const auto &cells : rows_) {
        out << indent;
        size_t missing = 0; // spaces before the next cell
        for (size_t at = 0; at < cells.size(); ++at) {
            if (!cells[at].empty()) {
                out << std::string(missing, ' ') << cells[at];
                missing = 0;
            }
            missing += widths[at] - columns_of(cells[at]) + kGap;
        }
        out << '\n';
    }
}

int show(const std::string &page)
{
    const bool was_writable = static_cast<bool>(std::cout);
    std::cout << page << std::flush;
    if (!std::cout) {
        if (was_writable) { // reported once, however many pages follow
            print_error("cannot write to standard output");
        }
        return kCannotWrite;
    }
    return kSuccess;
}

} // namespace agent

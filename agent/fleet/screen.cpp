// SPDX-License-Identifier: MIT
#include "fleet/screen.h"

#include "io/error_output.h"
#include "io/text.h"

#include <unistd.h>
#include <utility>

namespace agent::fleet {

Screen::Screen(std::string title)
    : title_(std::move(title)), is_terminal_(isatty(STDERR_FILENO) == 1)
{
    print(title_);
}

void Screen::print(const std::string &text)
{
    clear();
    print_notice(text);
    if (!table_.empty()) {
        show(std::vector<std::string>(table_));
    }
}

void Screen::show(const std::vector<std::string> &table)
{
    if (!is_terminal_) {
        return;
    }
    clear();
    table_ = table;
    std::string text;
    for (const std::string &line : table_) {
        text += (text.empty() ? "" : "\n") + line;
    }
    write_error_line(text);
    drawn_ = table_.size();
}

void Screen::clear()
{
    if (drawn_ > 0) {
        // Up by so many lines, and everything below is erased.
        write_error_text("\x1b[" + std::to_string(std::exchange(drawn_, 0)) + "A\r\x1b[J");
    }
}

} // namespace agent::fleet

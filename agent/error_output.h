// Standard error: lines from any thread, and at most one status line that stands below them all.
#pragma once

#include <string>

namespace agent {

// Writes the text and a line end, whole.
void write_error_line(const std::string &text);

// Replaces the status line; an empty text takes it away. For a terminal only.
void set_status_line(const std::string &text);

// Keeps the status line away while something else is written to the same terminal.
class WithoutStatusLine {
  public:
    WithoutStatusLine();
    ~WithoutStatusLine();
    WithoutStatusLine(const WithoutStatusLine &) = delete;
    WithoutStatusLine &operator=(const WithoutStatusLine &) = delete;
};

} // namespace agent

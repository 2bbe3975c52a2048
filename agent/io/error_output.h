// SPDX-License-Identifier: MIT
// Standard error: lines from any thread, and at most one status line that stands below them all.
// Nobody waits for its reader: line_output.h says what becomes of lines that are not read.
#pragma once

#include <string>
#include <string_view>

namespace agent {

// To be called once, before other threads write. Without it a write may wait when another process
// fills the pipe at the same time.
void open_error_output();

// Writes the text and a line end, whole. Allocates nothing.
void write_error_line(std::string_view text);

// Replaces the status line; an empty text takes it away. For a terminal only.
void set_status_line(std::string text);

// The descriptor to poll for room while there are lines that have not been written yet, else -1;
// and what is to be called when there is some.
int unwritten_error_output();
void write_more_error_output();

// Writes the rest, as long as the reader takes some of it every second.
void finish_error_output();

// Keeps the status line away while something else is written to the same terminal.
class WithoutStatusLine {
  public:
    WithoutStatusLine();
    ~WithoutStatusLine();
    WithoutStatusLine(const WithoutStatusLine &) = delete;
    WithoutStatusLine &operator=(const WithoutStatusLine &) = delete;
};

} // namespace agent

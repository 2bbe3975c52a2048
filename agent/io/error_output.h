// SPDX-License-Identifier: MIT
// Standard error: lines from any thread, and at most one status line below them. Writing never
// blocks: line_output.h describes what happens to lines that are not read.
#pragma once

#include <string>
#include <string_view>

namespace agent {

// Must be called once, before other threads write. Without it a write may block when another
// process fills the pipe at the same time.
void open_error_output();

// From now on nothing that a library prints to standard error can block either: what a pipe or
// terminal has no room for is lost. A socket may still block, since this process cannot open it
// again.
void keep_prints_from_blocking();

// The journal's levels.
enum class Level {
    kCritical = 2,
    kError = 3,
    kNotice = 5,
    kInfo = 6,
    kDebug = 7,
};

// Writes the text and a line end as one line. Does not allocate. The level is written for the
// journal only.
void write_error_line(std::string_view text, Level level = Level::kInfo);

// Writes the text as it is, for a terminal.
void write_error_text(std::string_view text);

// From now on each line begins with it, after the level: a process of many says which one it is.
void set_line_prefix(std::string prefix);

// Whether standard error is the journal's, which reads levels such as "<3>" at the beginning of
// lines. Known since open_error_output().
bool is_journal();

// "<3>" for the journal, otherwise an empty text.
std::string_view level_prefix(Level level);

// Replaces the status line; an empty text removes it. For a terminal only.
void set_status_line(std::string text);

// The descriptor to poll for writability while there is pending output, otherwise -1; and the
// function to call when it is writable.
int unwritten_error_output();
void write_more_error_output();

// Writes the pending output, as long as the reader takes some of it every second.
void finish_error_output();

// Hides the status line while something else is written to the same terminal.
class WithoutStatusLine {
  public:
    WithoutStatusLine();
    ~WithoutStatusLine();
    WithoutStatusLine(const WithoutStatusLine &) = delete;
    WithoutStatusLine &operator=(const WithoutStatusLine &) = delete;
};

} // namespace agent

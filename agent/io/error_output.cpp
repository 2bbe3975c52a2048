// SPDX-License-Identifier: MIT
#include "io/error_output.h"

#include "line_output.h"

#include <cstdlib>
#include <mutex>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace agent {

namespace {

constexpr char kEraseLine[] = "\r\x1b[K";

std::mutex mutex;
line_output::LineOutput output(PROGRAM_NAME, STDERR_FILENO);
std::string status;
std::string line_prefix;
bool is_hidden = false;

bool writes_to_journal = false;

// The journal's service manager names the file in the environment, which descendants with another
// standard error inherit.
bool find_journal()
{
    const char *named = getenv("JOURNAL_STREAM"); // NOLINT(concurrency-mt-unsafe): before threads
    struct stat info = {};
    return named != nullptr && fstat(STDERR_FILENO, &info) == 0 &&
           named == std::to_string(info.st_dev) + ":" + std::to_string(info.st_ino);
}

// The content of the terminal's last line.
std::string_view shown()
{
    return is_hidden ? std::string_view() : status;
}

// The characters that erase it.
std::string_view erasure()
{
    return shown().empty() ? "" : kEraseLine;
}

void hide(bool hidden)
{
    const std::lock_guard lock(mutex);
    const std::string_view before = erasure();
    is_hidden = hidden;
    output.write({before, shown()});
}

} // namespace

void open_error_output()
{
    writes_to_journal = find_journal();
    const int own = line_output::own_descriptor(STDERR_FILENO);
    if (own >= 0) {
        output.use(own);
    }
}

void keep_prints_from_blocking()
{
    dup2(output.descriptor(), STDERR_FILENO);
}

int unwritten_error_output()
{
    const std::lock_guard lock(mutex);
    return output.has_backlog() ? output.descriptor() : -1;
}

void write_more_error_output()
{
    const std::lock_guard lock(mutex);
    output.flush();
}

void finish_error_output()
{
    const std::lock_guard lock(mutex);
    output.finish();
}

bool is_journal()
{
    return writes_to_journal;
}

std::string_view level_prefix(Level level)
{
    static constexpr std::string_view kPrefixes = "<0><1><2><3><4><5><6><7>";
    return is_journal() ? kPrefixes.substr(3 * static_cast<size_t>(level), 3) : "";
}

void write_error_line(std::string_view text, Level level)
{
    const std::lock_guard lock(mutex);
    output.write({erasure(), level_prefix(level), line_prefix, text, "\n", shown()});
}

void write_error_text(std::string_view text)
{
    const std::lock_guard lock(mutex);
    output.write({text});
}

void set_line_prefix(std::string prefix)
{
    const std::lock_guard lock(mutex);
    line_prefix = std::move(prefix);
}

void set_status_line(std::string text)
{
    const std::lock_guard lock(mutex);
    const std::string_view before = erasure();
    status = std::move(text);
    output.write({before, shown()});
}

WithoutStatusLine::WithoutStatusLine()
{
    hide(true);
}

WithoutStatusLine::~WithoutStatusLine()
{
    hide(false);
}

} // namespace agent

// SPDX-License-Identifier: MIT
#include "io/error_output.h"

#include "line_output.h"

#include <mutex>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace agent {

namespace {

constexpr char kEraseLine[] = "\r\x1b[K";

std::mutex mutex;
line_output::LineOutput output(PROGRAM_NAME, STDERR_FILENO);
std::string status;
bool is_hidden = false;

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

void write_error_line(std::string_view text)
{
    const std::lock_guard lock(mutex);
    output.write({erasure(), text, "\n", shown()});
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

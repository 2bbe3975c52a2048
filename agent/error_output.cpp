#include "error_output.h"

#include <cstdio>
#include <mutex>

namespace agent {

namespace {

constexpr char kEraseLine[] = "\r\x1b[K";

std::mutex mutex;
std::string status;
bool is_hidden = false;

// What stands on the terminal's last line.
std::string shown()
{
    return is_hidden ? "" : status;
}

// What takes it away.
std::string erasure()
{
    return shown().empty() ? "" : kEraseLine;
}

void hide(bool hidden)
{
    const std::lock_guard lock(mutex);
    const std::string before = erasure();
    is_hidden = hidden;
    fputs((before + shown()).c_str(), stderr);
}

} // namespace

void write_error_line(const std::string &text)
{
    const std::lock_guard lock(mutex);
    fputs((erasure() + text + '\n' + shown()).c_str(), stderr);
}

void set_status_line(const std::string &text)
{
    const std::lock_guard lock(mutex);
    const std::string before = erasure();
    status = text;
    fputs((before + shown()).c_str(), stderr);
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

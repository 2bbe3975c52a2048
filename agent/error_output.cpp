#include "error_output.h"

#include <cstdio>
#include <mutex>

namespace agent {

namespace {

constexpr char kEraseLine[] = "\r\x1b[K";

std::mutex mutex;
std::string status;

// What takes the status line away, if there is one.
const char *erasure()
{
    return status.empty() ? "" : kEraseLine;
}

} // namespace

void write_error_line(const std::string &text)
{
    const std::lock_guard lock(mutex);
    fputs((erasure() + text + '\n' + status).c_str(), stderr);
}

void set_status_line(const std::string &text)
{
    const std::lock_guard lock(mutex);
    fputs((erasure() + text).c_str(), stderr);
    status = text;
}

} // namespace agent

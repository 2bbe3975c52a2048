#include "recording_host.h"

#include "smart_router_service/host_agent.h"

#include <cstdarg>
#include <cstdio>
#include <gtest/gtest.h>
#include <mutex>

namespace recording_host {

namespace {

std::mutex mutex;
std::vector<LogLine> recorded;

} // namespace

std::vector<LogLine> log_lines()
{
    const std::lock_guard lock(mutex);
    return recorded;
}

void reset()
{
    const std::lock_guard lock(mutex);
    recorded.clear();
}

} // namespace recording_host

void ts_mod_log_printf(const char *module, int32_t level, const char *format, ...)
{
    EXPECT_STREQ(module, "libtsiotAgtd");
    va_list arguments;
    va_start(arguments, format);
    char *text = nullptr;
    const int length = vasprintf(&text, format, arguments);
    va_end(arguments);
    ASSERT_GE(length, 0);
    const std::lock_guard lock(recording_host::mutex);
    recording_host::recorded.push_back({level, std::string(text, static_cast<size_t>(length))});
    free(text);
}

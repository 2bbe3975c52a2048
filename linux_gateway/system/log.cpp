// SPDX-License-Identifier: MIT
#include "system/log.h"

#include "smart_router_service/host_agent.h"

#include <cstdio>

// Weak, so that programs without such a log can load the library.
extern "C" __attribute__((weak)) void ts_mod_log_printf(const char *module, int32_t level,
                                                        const char *format, ...);

namespace linux_gateway {

static void log_line(int32_t level, const std::string &text)
{
    constexpr char module[] = "liblinux_gateway";
    if (ts_mod_log_printf != nullptr) {
        ts_mod_log_printf(module, level, "%s", text.c_str());
    } else {
        std::fprintf(stderr, "%s: %s\n", module, text.c_str());
    }
}

void log_error(const std::string &text)
{
    constexpr int32_t error = 3;
    log_line(error, text);
}

void log_info(const std::string &text)
{
    constexpr int32_t info = 6;
    log_line(info, text);
}

} // namespace linux_gateway

// SPDX-License-Identifier: MIT
// The agent's log: lines on standard error, "<LEVEL> MODULE: TEXT" each.
#pragma once

#include <cstdarg>
#include <cstdint>

namespace agent {

constexpr int32_t kLogError = 3;
constexpr int32_t kLogInfo = 6;

struct LogSettings {
    int32_t level = kLogError; // lines of a higher level are dropped
    bool show_secrets = false;
};

// Must be called before other threads log.
void set_log(const LogSettings &settings);

// Writes one line of a library atomically with respect to other writers. The text of a line is
// truncated to 4096 bytes; line ends and control characters in it are escaped, so that an argument
// cannot forge a line.
void log_arguments(const char *module, int32_t level, const char *format, va_list arguments);

// The number of errors that libraries have logged, including those not shown.
unsigned long errors_of_libraries();

// Writes a line in the name of the agent.
__attribute__((format(printf, 2, 3))) void log_line(int32_t level, const char *format, ...);

} // namespace agent

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

// To be called before other threads log.
void set_log(const LogSettings &settings);

// Writes one line of a library, whole, whoever else writes at the same time. The text of a line is
// cut at 4096 bytes; line ends and control characters inside it become escapes, so that an argument
// cannot forge a line.
void log_arguments(const char *module, int32_t level, const char *format, va_list arguments);

// How many errors libraries have logged, also those that are not shown.
unsigned long errors_of_libraries();

// Writes a line of the agent itself.
__attribute__((format(printf, 2, 3))) void log_line(int32_t level, const char *format, ...);

} // namespace agent

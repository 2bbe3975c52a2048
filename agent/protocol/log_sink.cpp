// SPDX-License-Identifier: MIT
#include "protocol/log_sink.h"

#include "io/error_output.h"
#include "io/text.h"
#include "protocol/log_format.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <string>

namespace agent {

namespace {

LogSettings settings;
std::atomic<unsigned long> library_errors = 0;

// Trailing line ends are removed: the line gets its own.
std::string_view without_line_end(std::string_view text)
{
    for (const char end : {'\n', '\r'}) {
        if (text.ends_with(end)) {
            text.remove_suffix(1);
        }
    }
    return text;
}

void write_message(const char *module, int32_t level, const char *format, va_list arguments)
{
    if (level > settings.level) {
        return;
    }
    try {
        const std::string text = format_log_text(settings.show_secrets, format, arguments);
        std::string line = is_journal() ? "" : "<" + std::to_string(level) + "> ";
        line += one_line(module);
        line += ": ";
        line += one_line(without_line_end(text));
        constexpr auto kLast = static_cast<int32_t>(Level::kDebug);
        write_error_line(line, static_cast<Level>(std::clamp(level, 0, kLast)));
    } catch (const std::exception &) {
        // Exceptions must not reach the callers, and a lost line is no reason to end the agent.
    }
}

} // namespace

void set_log(const LogSettings &wanted)
{
    settings = wanted;
}

void log_arguments(const char *module, int32_t level, const char *format, va_list arguments)
{
    if (level <= kLogError) {
        ++library_errors;
    }
    write_message(module, level, format, arguments);
}

unsigned long errors_of_libraries()
{
    return library_errors;
}

void log_line(int32_t level, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    write_message(PROGRAM_NAME, level, format, arguments);
    va_end(arguments);
}

} // namespace agent

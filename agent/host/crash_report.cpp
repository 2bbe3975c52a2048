// SPDX-License-Identifier: MIT
#include "host/crash_report.h"

#include "io/error_output.h"

#include <array>
#include <csignal>
#include <cstring>
#include <execinfo.h>
#include <string_view>
#include <unistd.h>

namespace agent {

namespace {

constexpr int kMostCalls = 64;

// An overflowed stack has no room for the handler.
std::array<char, 64UL * 1024> handler_stack;

void (*work_at_crash)() = nullptr;

void write_text(std::string_view text)
{
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
}

// A signal handler: it must not allocate. The signal's default action follows.
void report(int number)
{
    const char *name = sigdescr_np(number);
    write_text(level_prefix(Level::kCritical));
    write_text(PROGRAM_NAME ": crashed: ");
    write_text(name != nullptr ? name : "signal");
    write_text("; the calls that led here, the last one first:\n");
    std::array<void *, kMostCalls> calls = {};
    backtrace_symbols_fd(calls.data(), backtrace(calls.data(), kMostCalls), STDERR_FILENO);
    if (work_at_crash != nullptr) {
        work_at_crash();
    }
}

} // namespace

void at_crash(void (*work)())
{
    work_at_crash = work;
}

void report_crashes()
{
    // The first call of backtrace() loads a library and allocates, which the handler must not do.
    std::array<void *, 1> call = {};
    backtrace(call.data(), 1);

    stack_t stack = {};
    stack.ss_sp = handler_stack.data();
    stack.ss_size = handler_stack.size();
    sigaltstack(&stack, nullptr);
    for (const int number : {SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV}) {
        struct sigaction action = {};
        sigaction(number, nullptr, &action);
        if (action.sa_handler == SIG_DFL) { // otherwise a sanitizer reports it
            action.sa_handler = report;
            action.sa_flags = static_cast<int>(SA_RESETHAND | SA_ONSTACK);
            sigaction(number, &action, nullptr);
        }
    }
}

} // namespace agent

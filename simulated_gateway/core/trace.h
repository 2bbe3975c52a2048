// SPDX-License-Identifier: MIT
// The trace: one line for every device call.
#pragma once

#include "core/arguments.h"
#include "io/files.h"
#include "line_output.h"

#include <chrono>
#include <deque>
#include <initializer_list>
#include <mutex>
#include <string>

namespace simulated_gateway {

class Trace {
  public:
    Trace() = default;
    ~Trace(); // writes what is still buffered, as long as there is a reader
    Trace(const Trace &) = delete;
    Trace &operator=(const Trace &) = delete;

    // Appends to the file from now on; "-" is standard error. Throws an Error.
    void open(const std::string &file, bool show_secrets);
    bool is_on() const { return file_.is_open(); }

    struct Call {
        const char *function; // its name, with static storage duration
        std::initializer_list<Argument> arguments;
        bool filled; // whether the body completed, so that the reply records are valid
        int32_t result;
        std::chrono::microseconds duration;
        std::string note; // further information about the call; may be empty
    };
    // Write a line that starts with the gateway's uptime in seconds; nothing without a file. The
    // call itself has already been executed: if a line cannot be written, only the line is lost. A
    // pipe whose reader is slow does not block the caller.
    void call(int64_t uptime, const Call &call) noexcept;
    // The line of a call, as it would be written; secrets are always masked.
    static std::string masked_line(int64_t uptime, const Call &call);
    void event(int64_t uptime, const char *text, const char *note = "") noexcept;

    // The last lines of the trace, even without a file, but without the arguments of the calls.
    std::string recent();

  private:
    struct Entry {
        int64_t uptime;
        const char *function; // null for an event
        int32_t result;
        std::chrono::microseconds duration;
        std::string note; // of an event, its text
    };

    static std::string line_of(const Entry &entry, const std::string &arguments = {});
    static size_t length_of(const Entry &entry);
    static std::string arguments_of(const Call &call, bool show_secrets);
    void write(const std::string &text);
    void remember(const Entry &entry);

    FileDescriptor file_;
    bool show_secrets_ = false;
    std::mutex mutex_; // guards what is below
    line_output::LineOutput output_{"trace", -1};
    std::deque<Entry> recent_; // formatted as lines on request
    size_t recent_size_ = 0;   // total length of the lines
};

} // namespace simulated_gateway

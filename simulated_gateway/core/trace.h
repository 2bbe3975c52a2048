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
    ~Trace(); // writes what has not been written yet, as long as somebody reads it
    Trace(const Trace &) = delete;
    Trace &operator=(const Trace &) = delete;

    // Appends to the file from now on; "-" is standard error. Throws an Error.
    void open(const std::string &file, bool show_secrets);
    bool is_on() const { return file_.is_open(); }

    struct Call {
        const char *function;
        std::initializer_list<Argument> arguments;
        bool filled; // whether the body ran to its end, so that the records for the reply hold
        int32_t result;
        std::chrono::microseconds duration;
        std::string note; // what else is to be said of the call; may be empty
    };
    // Write a line, which opens with the gateway's uptime in seconds; nothing without a file. What
    // was done is done: a line that cannot be written is lost, and nothing else. Nobody waits for
    // the reader of a pipe.
    void call(int64_t uptime, const Call &call) noexcept;
    void event(int64_t uptime, const char *text, const char *note = "") noexcept;

    // The last lines of any trace, also of one without a file, with the calls' arguments left out.
    std::string recent();

  private:
    std::string arguments_of(const Call &call) const;
    static std::string outcome_of(const Call &call);
    void write(int64_t uptime, const std::string &text);
    void remember(int64_t uptime, const std::string &text);

    FileDescriptor file_;
    bool show_secrets_ = false;
    std::mutex mutex_; // guards what is below
    line_output::LineOutput output_{"trace", -1};
    std::deque<std::string> recent_; // made printable when somebody asks for them
    size_t recent_size_ = 0;
};

} // namespace simulated_gateway

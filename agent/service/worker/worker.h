// SPDX-License-Identifier: MIT
// The interface of what runs the commands: a process or thread with the plug-in. It uses the lines
// of `serve --events`.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace agent::service {

// Why a worker could not be started.
class WorkerError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// How a worker ended.
struct WorkerEnd {
    std::string text; // "was killed by signal 6 (Aborted)"
    std::optional<int> signal;
    std::optional<int> exit_status;
};

class WorkerListener {
  public:
    virtual void on_worker_line(std::string_view line) = 0;
    // It wrote a line that is too long, or no longer reads lines.
    virtual void on_worker_fault(const std::string &fault) = 0;
    // It has ended, and all its output has been passed on: it may be started again.
    virtual void on_worker_end(const WorkerEnd &end) = 0;

  protected:
    ~WorkerListener() = default;
};

class Worker {
  public:
    virtual ~Worker() = default;

    // Starts it, also again after it has ended. Throws WorkerError.
    virtual void start(WorkerListener &listener) = 0;
    virtual void send(std::string_view line) = 0;
    // In increasing severity: lets it end by itself once it has answered; ends it as by SIGTERM;
    // ends it at once.
    virtual void finish() = 0;
    virtual void terminate() = 0;
    virtual void kill() = 0;
    virtual bool can_be_killed() const { return true; }
};

// The longest line that a worker may write. The longest reply, a mesh filled to its limits, takes a
// quarter of a megabyte.
constexpr size_t kMaxWorkerLine = 16UL * 1024 * 1024;

} // namespace agent::service

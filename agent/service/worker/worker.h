// SPDX-License-Identifier: MIT
// What runs the commands: one process or thread with the plug-in in it, whatever form it has. It
// speaks the lines of `serve --events`.
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
    // What it wrote is no line of a bounded length, or it takes no more lines.
    virtual void on_worker_fault(const std::string &fault) = 0;
    // It has ended, and all that it wrote has been handed out: another one may be started.
    virtual void on_worker_end(const WorkerEnd &end) = 0;

  protected:
    ~WorkerListener() = default;
};

class Worker {
  public:
    virtual ~Worker() = default;

    // Starts it, also anew after its end. Throws WorkerError.
    virtual void start(WorkerListener &listener) = 0;
    virtual void send(std::string_view line) = 0;
    // Lets it end by itself once it has answered; then as a signal asks for it; then at once.
    virtual void finish() = 0;
    virtual void terminate() = 0;
    virtual void kill() = 0;
    virtual bool can_be_killed() const { return true; }
};

// The longest line that a worker may write. The longest reply, a mesh with everything in it, takes
// a quarter of a megabyte.
constexpr size_t kMaxWorkerLine = 16UL * 1024 * 1024;

} // namespace agent::service

// SPDX-License-Identifier: MIT
// Keeps a worker running: starts it, gives it one command at a time with a time limit, and restarts
// it when it hangs or has ended.
#pragma once

#include "service/common/request.h"
#include "service/worker/worker.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace agent::service {

struct WorkerTimes {
    std::chrono::milliseconds start{30'000};
    // The time limit of a background worker of the plug-in while an overdue command waits for it.
    std::chrono::milliseconds background{1'800'000};
    std::chrono::milliseconds back_off{10'000}; // the first time; then doubled each time
    std::chrono::milliseconds finish{10'000};   // for an orderly end when the service stops
    std::chrono::milliseconds kill{5'000};      // for the end of a killed process
};

class SupervisorListener {
  public:
    // The running command's answer.
    virtual void on_answer(std::string_view line) = 0;
    // The running command will get no answer.
    virtual void on_no_answer(Code code, const std::string &text) = 0;
    virtual void on_event(std::string_view name, std::string_view line) = 0;
    // is_idle() or refusal() has changed.
    virtual void on_change() = 0;
    // Its first start failed; exit_status is the worker's, or -1.
    virtual void on_no_worker(const std::string &reason, int exit_status) = 0;
    // After stop(): the worker has ended.
    virtual void on_stopped() = 0;

  protected:
    ~SupervisorListener() = default;
};

class Supervisor : WorkerListener {
  public:
    Supervisor(boost::asio::io_context &loop, std::unique_ptr<Worker> worker,
               SupervisorListener &listener);

    void set_times(const WorkerTimes &times) { times_ = times; }
    void start();
    void stop();     // in order
    void stop_now(); // at once

    // Whether a command may be sent.
    bool is_idle() const { return state_ == State::kIdle; }
    // Why commands should be refused instead of waiting; empty when they may wait.
    const std::string &refusal() const { return refusal_; }
    void run(const Request &request, std::chrono::milliseconds time);

  private:
    enum class State {
        kNone,     // not started, or stopped
        kStarting, // waiting for its first answer
        kIdle,
        kRunning,
        kOverdue,    // the command's client has been answered; waiting for a background worker
        kEnding,     // killed, waiting for its end
        kBackingOff, // it has crashed too often
        kStopping,
    };
    using Clock = std::chrono::steady_clock;

    void on_worker_line(std::string_view line) override;
    void on_worker_fault(const std::string &fault) override;
    void on_worker_end(const WorkerEnd &end) override;

    void start_worker();
    void take_answer(std::string_view line);
    void take_event(std::string_view line);
    void kill_worker();
    void end_command(Code code, const std::string &text);
    void raise(std::string_view name, const std::string &data);
    void count_crash(const std::string &known);
    void start_again();
    void set_deadline(Clock::time_point deadline);
    void arm(Clock::time_point deadline);
    void on_deadline();
    void on_late_start();
    void on_overdue_command();

    std::unique_ptr<Worker> worker_;
    SupervisorListener &listener_;
    WorkerTimes times_;
    State state_ = State::kNone;
    bool has_run_ = false;       // it has been ready at least once
    bool is_late_ = false;       // it was not ready in time, and has not been since
    bool is_known_bad_ = false;  // it is being killed because of a fault
    bool is_terminated_ = false; // SIGTERM was sent because it did not end by itself
    std::string refusal_;
    std::string id_;          // of the running command
    std::string command_;     // its name
    bool has_client_ = false; // that waits for its answer
    std::chrono::milliseconds time_{0};
    std::map<std::string, Clock::time_point, std::less<>> background_; // with their start times
    std::deque<Clock::time_point> crashes_;                            // of the last minute
    uint64_t crash_count_ = 0;
    uint64_t starts_ = 0;
    std::chrono::milliseconds back_off_{0};
    boost::asio::steady_timer timer_;
    std::optional<Clock::time_point> deadline_;
    std::optional<Clock::time_point> armed_;
    Clock::time_point second_began_;
    size_t events_in_second_ = 0;
};

} // namespace agent::service

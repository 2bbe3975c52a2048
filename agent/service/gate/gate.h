// SPDX-License-Identifier: MIT
// Between the ways in and the worker: who may ask for what, whose turn it is, and who is told of
// events. It knows neither how requests come in nor what the plug-in does with them.
#pragma once

#include "service/common/request.h"
#include "service/gate/audit.h"
#include "service/gate/policy.h"
#include "service/gate/rate_limit.h"
#include "service/worker/supervisor.h"

#include <boost/asio/io_context.hpp>

#include <chrono>
#include <deque>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace agent::service {

struct Answer {
    std::string_view line; // without its end
    Code code;
};

// What a way in has for each of its clients.
class Client {
  public:
    // In the order of the requests.
    virtual void on_answer(const Answer &answer) = 0;
    virtual void on_event(std::string_view line) = 0;
    // Whether it has room for another answer; once it has again, the way in calls Gate::resume().
    virtual bool has_room() const = 0;
    // Gate::is_full() is false again.
    virtual void on_less_full() = 0;

  protected:
    ~Client() = default;
};

struct GateOptions {
    size_t queue = 16;             // requests of a connection that wait for their turn
    std::chrono::seconds time{30}; // of a command of which the protocol says nothing else
    Policy policy = Policy::for_owner_only();
    std::string audit; // file; empty: none
};

class Session;

class Gate : SupervisorListener {
  public:
    struct Hooks {
        std::function<void(const std::string &reason, int exit_status)> on_no_worker;
        std::function<void()> on_ready;
        std::function<void()> on_stopped;
    };

    Gate(boost::asio::io_context &loop, std::unique_ptr<Worker> worker, Hooks hooks);
    ~Gate();

    // Also while it is at work. Result: what is wrong with the audit's file, else empty.
    std::string set_options(GateOptions options);
    Supervisor &supervisor() { return supervisor_; }

    // The client stays until close(); its requests that have not begun by then never do.
    Session *open(std::shared_ptr<const Identity> who, Client &client);
    void close(Session *session);
    void submit(Session &session, Request request);
    // A line that the way in had no room for, in its turn.
    void refuse(Session &session, Code code, std::string answer);
    void resume(Session &session);
    // Whether the way in should let the client's next requests wait.
    static bool is_full(const Session &session);
    static bool is_answered(const Session &session);
    static bool is_idle(const Session &session); // that, and there is nothing to be told of

    void start() { supervisor_.start(); }
    // Lets the running command come to its end; all others are refused.
    void stop();

  private:
    using Clock = std::chrono::steady_clock;

    void on_answer(std::string_view line) override;
    void on_no_answer(Code code, const std::string &text) override;
    void on_event(std::string_view name, std::string_view line) override;
    void on_change() override;
    void on_no_worker(const std::string &reason, int exit_status) override;
    void on_stopped() override;

    void take(Session &session, Request request, Policy::Verdict verdict);
    void refuse(Session &session, const Request &request, const Policy::Verdict &verdict, Code code,
                std::string_view text);
    void answer_control(Session &session, const Request &request);
    void audit(const Session &session, const Request &request, const Policy::Verdict &verdict,
               Code code, std::string_view answer, std::chrono::microseconds waited,
               std::chrono::microseconds worked);
    void tell_refusal(const Session &session, const Request &request, const std::string &rule);
    std::chrono::milliseconds time_of(const Request &request) const;
    void refuse_waiting(Code code, const std::string &text);
    void line_up(Session &session);
    void give_next();
    void finish(std::string_view line, Code code);
    static void flush(Session &session);

    Hooks hooks_;
    GateOptions options_;
    RateLimiter rates_;
    AuditLog audit_;
    // What the protocol says, of the commands that may take long.
    std::map<std::string, std::chrono::seconds, std::less<>> times_;
    const std::string epoch_;
    std::list<std::unique_ptr<Session>> sessions_;
    std::deque<Session *> turns_; // those that have requests waiting, each once
    Session *running_ = nullptr;  // whose request the worker has; null also when that one has gone
    bool is_stopping_ = false;
    bool is_rebooting_ = false;
    Supervisor supervisor_;
};

} // namespace agent::service

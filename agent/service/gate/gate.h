// SPDX-License-Identifier: MIT
// Between the transports and the worker: authorisation, scheduling of requests, and delivery of
// events. It is independent of the transport and of what the plug-in does with a request.
#pragma once

#include "service/common/request.h"
#include "service/gate/answer_cache.h"
#include "service/gate/audit.h"
#include "service/gate/metrics.h"
#include "service/gate/policy.h"
#include "service/gate/rate_limit.h"
#include "service/gate/refusals.h"
#include "service/worker/supervisor.h"

#include <boost/asio/io_context.hpp>

#include <chrono>
#include <cstdint>
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
    // An answer to a repetition that waited with its first request in the same session, and so
    // follows the answer to that. A transport whose clients expect one answer drops it.
    bool is_duplicate = false;
};

// Implemented by a transport for each of its clients.
class Client {
  public:
    // Called in the order of the requests.
    virtual void on_answer(const Answer &answer) = 0;
    virtual void on_event(std::string_view line) = 0;
    // Whether it has room for another answer; when it has room again, the transport calls
    // Gate::resume().
    virtual bool has_room() const = 0;
    // Gate::is_full() is false again.
    virtual void on_less_full() = 0;

  protected:
    ~Client() = default;
};

struct GateOptions {
    size_t queue = 16;             // waiting requests of a connection
    std::chrono::seconds time{30}; // for a command without a time in the protocol
    Policy policy = Policy::for_owner_only();
    std::string audit; // file; empty: none
    AnswerCache::Limits answers;
};

class Session;

class Gate final : SupervisorListener {
  public:
    struct Hooks {
        std::function<void(const std::string &reason, int exit_status)> on_no_worker;
        std::function<void()> on_ready;
        std::function<void()> on_stopped;
    };

    Gate(boost::asio::io_context &loop, std::unique_ptr<Worker> worker, Hooks hooks);
    ~Gate();

    // May be called while the gate is running. Result: what is wrong with the audit's file,
    // otherwise empty.
    std::string set_options(GateOptions options);
    Supervisor &supervisor() { return supervisor_; }
    const Policy &policy() const { return options_.policy; }
    // Differs after each start.
    const std::string &epoch() const { return epoch_; }
    // In the text format of Prometheus.
    std::string metrics() const;

    // The client must live until close(), which drops its requests that have not been started.
    Session *open(std::shared_ptr<const Identity> who, Client &client);
    void close(Session *session);
    void submit(Session &session, Request request);
    // Answers, in its turn, a line that was too long for the transport.
    void refuse(Session &session, Code code, std::string answer);
    void resume(Session &session);
    // For requests that a transport answers itself. Result: false if the client's role has sent too
    // many.
    bool take_token(const Identity &who);
    // Subscribes to all events. The policy is checked for each of them; denied ones are omitted.
    static void follow_events(Session &session);
    // Whether the transport should stop reading the client's requests.
    static bool is_full(const Session &session);
    static bool is_answered(const Session &session);
    static bool is_idle(const Session &session); // all answered, and no subscriptions

    const AnswerCache &answers() const { return answers_; }
    // The requests that were recognised as repetitions.
    uint64_t repetitions() const { return repetitions_; }

    void start() { supervisor_.start(); }
    // Lets the running command end; all others are refused.
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
    bool may_change(const Request &request) const;
    bool take_repetition(Session &session, Request &request, Policy::Verdict &verdict);
    bool begin_answer(const Request &request);
    void settle(const std::string &key, std::string_view answer, Code code);
    void answer_repetitions(const std::string &key, std::string_view answer, Code code);
    Session *pass_on(const std::string &key);
    void drop_expired(Session &session);
    void refuse(Session &session, const Request &request, const Policy::Verdict &verdict, Code code,
                std::string_view text);
    void answer_control(Session &session, const Request &request);
    void audit(const Session &session, const Request &request, const Policy::Verdict &verdict,
               std::string_view code, std::string_view answer, std::chrono::microseconds waited,
               std::chrono::microseconds worked, bool is_repetition = false);
    void report_refusal(const Session &session, const Request &request, const std::string &rule);
    std::chrono::milliseconds time_of(const Request &request) const;
    void refuse_waiting(Code code, const std::string &text);
    void line_up(Session &session);
    void give_next();
    void finish(std::string_view line, Code code);
    void finish(Session &session, std::string_view line, Code code);
    static void flush(Session &session);

    Hooks hooks_;
    GateOptions options_;
    RateLimiter rates_;
    RefusalEvents refusals_;
    AuditLog audit_;
    Metrics metrics_;
    // The times in the protocol of the commands that may take long.
    std::map<std::string, std::chrono::seconds, std::less<>> times_;
    std::vector<std::string> queries_; // the commands that change nothing, sorted
    const std::string epoch_;
    AnswerCache answers_;
    uint64_t repetitions_ = 0;
    size_t waiting_repetitions_ = 0; // entries that wait for the answer to another one
    std::list<std::unique_ptr<Session>> sessions_;
    std::deque<Session *> turns_; // the sessions with waiting requests, each once
    Session *running_ = nullptr;  // whose request is running; null once its client has left
    std::string running_id_;
    std::string running_key_; // its repeat_key
    bool is_stopping_ = false;
    bool is_rebooting_ = false;
    Supervisor supervisor_;
};

} // namespace agent::service

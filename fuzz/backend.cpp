// SPDX-License-Identifier: MIT
#include "backend.h"

#include "protocol/protocol.h"
#include "protocol/requests.h"

#include <chrono>
#include <optional>
#include <utility>

namespace fuzz {

namespace {

using namespace agent::service;

constexpr char kReady[] = R"({"id":"ready","result":0,"reply":{}})";
constexpr char kEvent[] = R"({"event":"notice","data":{"plugin_name":"agent","text":"{}"}})";
// No machine is so slow.
constexpr std::chrono::hours kNever(1000);

} // namespace

// An id may be a number of any size: not every parser takes it.
void check_object(std::string_view text)
{
    if (text.find_first_of("\r\n") != std::string_view::npos) {
        give_up("more than one line", text);
    }
    try {
        agent::parse_call(text);
    } catch (const agent::BadRequest &problem) {
        give_up(problem.what(), text);
    }
}

// Takes apart what it is given like the agent's own worker, and answers each request with success.
class Backend::FakeWorker : public Worker {
  public:
    explicit FakeWorker(std::vector<Given> &given) : given_(given) {}

    void start(WorkerListener &listener) override { listener_ = &listener; }

    void send(std::string_view line) override
    {
        if (waiting_) {
            give_up("a second request before the answer to the first one", line);
        }
        if (line.find('\n') != std::string_view::npos) {
            give_up("a request on more than one line", line);
        }
        waiting_ = answer_to(line);
    }

    void finish() override {}
    void terminate() override {}
    void kill() override { give_up("the gate does not accept an answer", last_); }

    // Result: whether there was something to answer.
    bool answer()
    {
        if (!waiting_) {
            return false;
        }
        last_ = *std::exchange(waiting_, std::nullopt);
        if (given_.size() % 2 == 1) {
            listener_->on_worker_line(kEvent);
        }
        listener_->on_worker_line(last_);
        return true;
    }

  private:
    std::string answer_to(std::string_view line)
    {
        if (!std::exchange(is_asked_, true)) { // whether it is ready
            return kReady;
        }
        Given &given = given_.emplace_back();
        given.line = line;
        try {
            const agent::Call call = agent::parse_call(line);
            given.command = call.command;
            given.is_valid = call.error.empty();
            return given.is_valid ? R"({"id":)" + std::string(call.id) +
                                        R"(,"result":0,"reply":{"Status":"0"}})"
                                  : error_answer(call.id, Code::kBadRequest, call.error);
        } catch (const agent::BadRequest &problem) {
            return error_answer("null", Code::kBadRequest, problem.what());
        }
    }

    WorkerListener *listener_ = nullptr;
    std::vector<Given> &given_;
    bool is_asked_ = false;
    std::optional<std::string> waiting_; // the answer
    std::string last_;
};

std::unique_ptr<Worker> Backend::make_worker()
{
    auto worker = std::make_unique<FakeWorker>(given_);
    worker_ = worker.get();
    return worker;
}

Backend::Backend(const std::string &policy) : gate_(loop_, make_worker(), {})
{
    GateOptions options;
    options.time = kNever;
    if (!policy.empty()) {
        options.policy = Policy::parse(policy, "policy.toml");
    }
    gate_.set_options(std::move(options));
    WorkerTimes times;
    times.start = kNever;
    gate_.supervisor().set_times(times);
    gate_.start();
    settle();
}

Backend::~Backend() = default;

void Backend::settle()
{
    do {
        loop_.restart();
        loop_.poll();
    } while (!holds_ && worker_->answer());
}

void Backend::check_only_queries() const
{
    for (const Given &given : given_) {
        if (given.is_valid && !given.command.empty() && agent::may_change(given.command)) {
            give_up("a client that may only ask changes something", given.line);
        }
    }
}

} // namespace fuzz

// SPDX-License-Identifier: MIT
#include "service/gate/gate.h"

#include "io/text.h"
#include "protocol/json_text.h"
#include "protocol/protocol.h"
#include "protocol/secrets.h"
#include "service/gate/pattern.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <random>
#include <utility>

namespace agent::service {

namespace {

using std::chrono::milliseconds;

// Answers that wait for those of a client's earlier requests. A client that keeps sending without
// reading answers is no longer read from.
constexpr size_t kMostEntries = 64;
constexpr size_t kMostSubscriptions = 32;
constexpr size_t kMostPattern = 128;
constexpr size_t kMostName = 128; // of one that is shown: clients may choose a longer one

// Clients without a role, who share a limit: all that they send is denied.
const std::string kStrangers = "a client without a role";
constexpr RateLimit kStrangersLimit = {20, 40};

// Only in the audit: the client has disconnected.
constexpr std::string_view kNotRun = "not-run";

constexpr char kRebooting[] = "the gateway reboots";
constexpr char kStopping[] = "the service stops";

bool is_stranger(const Policy::Verdict &verdict)
{
    return !verdict.allowed && verdict.role.empty();
}

// Whose tokens the client takes.
const std::string &limited_role(const Policy::Verdict &verdict)
{
    return is_stranger(verdict) ? kStrangers : verdict.role;
}

std::string random_epoch()
{
    std::random_device device;
    char text[17];
    snprintf(text, sizeof(text), "%08x%08x", device(), device());
    return text;
}

std::chrono::microseconds between(std::chrono::steady_clock::time_point begin,
                                  std::chrono::steady_clock::time_point end)
{
    return std::chrono::duration_cast<std::chrono::microseconds>(end - begin);
}

std::string_view behind(std::string_view line, std::string_view mark)
{
    const size_t at = line.find(mark);
    return at == std::string_view::npos ? "" : line.substr(at + mark.size());
}

// The result in an answer's line, found without parsing all of it.
std::optional<int32_t> result_in(std::string_view line)
{
    const std::string_view text = behind(line, R"("result":)");
    int32_t result = 0;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), result);
    return problem == std::errc() && end != text.data() ? std::optional(result) : std::nullopt;
}

// Whether the request was given to the worker, so that it may have been executed. The worker
// refuses some requests itself: while the gateway reboots, or without memory.
bool may_be_executed(Code code)
{
    return code == Code::kNone || code == Code::kTimeout || code == Code::kOutcomeUnknown;
}

constexpr std::string_view kAnswerBegin = R"({"id":)";

// What follows the id in an answer. The worker answers a line that it could not read without it.
std::string_view behind_id(std::string_view answer, std::string_view id)
{
    std::string_view rest = behind(answer, kAnswerBegin);
    const std::string_view given = rest.starts_with(id) ? id : "null";
    return rest.substr(std::min(given.size(), rest.size()));
}

std::string with_id(std::string_view id, std::string_view rest)
{
    return std::string(kAnswerBegin) + std::string(id) + std::string(rest);
}

// What makes a request the same as an earlier one.
std::string contents_of(const Request &request)
{
    return request.name + '\n' + std::string(request.params());
}

bool is_answered_here(const Request &request)
{
    return request.subject == Subject::kSubscription ||
           (request.subject == Subject::kControl && request.name == kHello);
}

std::string_view status_in(std::string_view line)
{
    const std::string_view text = behind(line, R"("Status":")");
    return text.substr(0, std::min(text.find('"'), text.size()));
}

} // namespace

// The state of a client: its requests in order, and its subscriptions.
class Session {
  public:
    Session(std::shared_ptr<const Identity> identity, Client &way_in)
        : who(std::move(identity)), client(&way_in)
    {
    }

    struct Entry {
        Request request;
        bool is_waiting = true;     // for its turn
        bool is_repetition = false; // of a request whose answer it gets
        bool is_duplicate = false;  // a repetition of one of the same session
        bool is_answered = false;
        std::string answer;
        Code code = Code::kNone;
        Policy::Verdict verdict;
        std::chrono::steady_clock::time_point arrived;
        std::chrono::steady_clock::time_point begun;
    };

    std::shared_ptr<const Identity> who;
    Client *client;
    std::deque<Entry> entries; // answered ones are removed at the front
    size_t waiting = 0;
    bool is_lined_up = false;
    bool was_full = false;
    std::vector<std::string> subscriptions;
};

namespace {

// The running request is the one of its session that waits for nothing and is not answered.
Session::Entry &running_entry(Session &session)
{
    return *std::ranges::find_if(session.entries, [](const Session::Entry &one) {
        return !one.is_waiting && !one.is_repetition && !one.is_answered;
    });
}

void answer(Session::Entry &entry, Code code, std::string text)
{
    entry.is_waiting = false;
    entry.is_repetition = false;
    entry.is_answered = true;
    entry.answer = std::move(text);
    entry.code = code;
}

} // namespace

Gate::Gate(boost::asio::io_context &loop, std::unique_ptr<Worker> worker, Hooks hooks)
    : hooks_(std::move(hooks)), epoch_(random_epoch()), supervisor_(loop, std::move(worker), *this)
{
    for (const Description &description : descriptions()) {
        if (description.contains("seconds")) {
            const std::string command = description["command"].text();
            times_.emplace(command, seconds_of(command));
        }
        if (description["effect"] == "none") {
            queries_.push_back(description["command"].text());
        }
    }
}

std::string Gate::set_options(GateOptions options)
{
    options_ = std::move(options);
    auto limits = options_.policy.limits();
    limits.emplace(kStrangers, kStrangersLimit);
    rates_.set_limits(limits, Clock::now());
    answers_.set_limits(options_.answers);
    return audit_.open(options_.audit);
}

Gate::~Gate() = default;

Session *Gate::open(std::shared_ptr<const Identity> who, Client &client)
{
    sessions_.push_back(std::make_unique<Session>(std::move(who), client));
    return sessions_.back().get();
}

void Gate::close(Session *session)
{
    std::erase(turns_, session);
    // The requests of a client that leaves are audited as well: its running command is still
    // carried out, and one that waits never is.
    const auto now = Clock::now();
    for (const Session::Entry &entry : session->entries) {
        if (!entry.is_answered) {
            const bool is_waiting = entry.is_waiting || entry.is_repetition;
            const auto begun = is_waiting ? now : entry.begun;
            audit(*session, entry.request, entry.verdict,
                  is_waiting ? kNotRun : name_of(Code::kOutcomeUnknown), "",
                  between(entry.arrived, begun), between(begun, now), entry.is_repetition);
        }
    }
    if (running_ == session) {
        running_ = nullptr;
    }
    std::vector<std::string> keys;
    for (const Session::Entry &entry : session->entries) {
        waiting_repetitions_ -= entry.is_repetition ? 1 : 0;
        if (entry.is_waiting && !entry.request.repeat_key.empty()) {
            keys.push_back(entry.request.repeat_key);
        }
    }
    std::erase_if(sessions_, [&](const auto &one) { return one.get() == session; });
    if (!keys.empty()) {
        std::ranges::for_each(keys, [this](const std::string &key) { pass_on(key); });
        give_next();
    }
}

void Gate::follow_events(Session &session)
{
    session.subscriptions = {"*"};
}

bool Gate::is_full(const Session &session)
{
    return session.entries.size() >= kMostEntries;
}

bool Gate::is_answered(const Session &session)
{
    return session.entries.empty();
}

bool Gate::is_idle(const Session &session)
{
    return is_answered(session) && session.subscriptions.empty();
}

void Gate::refuse(Session &session, Code code, std::string answer)
{
    service::answer(session.entries.emplace_back(), code, std::move(answer));
    flush(session);
}

bool Gate::take_token(const Identity &who)
{
    return rates_.take(limited_role(options_.policy.decide(who, Subject::kControl, kHello)),
                       Clock::now());
}

void Gate::submit(Session &session, Request request)
{
    if (request.code != Code::kNone) {
        refuse(session, request, {}, request.code, request.error);
        return;
    }
    Policy::Verdict verdict = options_.policy.decide(*session.who, request.subject, request.name);
    verdict.sees_secrets = verdict.sees_secrets && !request.hide_secrets;
    if (!request.repeat_key.empty()) {
        // A key of one transport means nothing in another; a query simply runs again.
        request.repeat_key =
            may_change(request) ? session.who->way_in + '\n' + request.repeat_key : "";
    }
    // A denied request takes a token as well: each is written to the audit.
    if (!rates_.take(limited_role(verdict), Clock::now())) {
        refuse(session, request, verdict, Code::kRateLimited,
               (is_stranger(verdict) ? kStrangers : "the role \"" + verdict.role + "\"") +
                   " has sent too many requests");
    } else if (!verdict.allowed) {
        report_refusal(session, request, verdict.rule);
        refuse(session, request, verdict, Code::kDenied,
               "the policy does not allow " + one_line(request.name, kMostName) + " to " +
                   session.who->name);
    } else if (is_answered_here(request)) {
        answer_control(session, request);
    } else if (!request.epoch.empty() && request.epoch != epoch_ && may_change(request)) {
        refuse(session, request, verdict, Code::kOutcomeUnknown,
               "the service has started again, and does not know whether the request was executed");
    } else if (take_repetition(session, request, verdict)) {
        return;
    } else if (is_stopping_) {
        refuse(session, request, verdict, Code::kBusy, kStopping);
    } else if (is_rebooting_) {
        refuse(session, request, verdict, Code::kRebooting, kRebooting);
    } else if (!supervisor_.refusal().empty()) {
        refuse(session, request, verdict, Code::kBusy, supervisor_.refusal());
    } else if (session.waiting >= options_.queue) {
        refuse(session, request, verdict, Code::kBusy,
               std::to_string(options_.queue) + " requests are waiting already");
    } else if (!begin_answer(request)) {
        refuse(session, request, verdict, Code::kBusy,
               "there is no room to keep the answer; the kept ones expire after ten minutes");
    } else {
        take(session, std::move(request), std::move(verdict));
    }
}

void Gate::take(Session &session, Request request, Policy::Verdict verdict)
{
    Session::Entry &entry = session.entries.emplace_back();
    entry.request = std::move(request);
    entry.verdict = std::move(verdict);
    entry.arrived = Clock::now();
    ++session.waiting;
    line_up(session);
    give_next();
}

bool Gate::may_change(const Request &request) const
{
    return request.subject == Subject::kNotice ||
           (request.subject == Subject::kCommand &&
            !std::ranges::binary_search(queries_, request.name));
}

// Result: whether the request repeats an earlier one, and is dealt with.
bool Gate::take_repetition(Session &session, Request &request, Policy::Verdict &verdict)
{
    if (request.repeat_key.empty()) {
        return false;
    }
    AnswerCache::Entry first;
    const auto now = Clock::now();
    if (!answers_.find(request.repeat_key, contents_of(request), now, first)) {
        return false;
    }
    if (!first.is_same_request) {
        refuse(session, request, verdict, Code::kBadRequest,
               "an earlier request has the same key for repetitions, and is a different one");
        return true;
    }
    ++repetitions_;
    if (first.is_answered) {
        const std::string answer = with_id(request.id, first.answer);
        audit(session, request, verdict, name_of(first.code), answer, {}, {}, true);
        refuse(session, first.code, answer);
        return true;
    }
    const bool is_duplicate = std::ranges::any_of(session.entries, [&](const auto &entry) {
        return !entry.is_answered && entry.request.repeat_key == request.repeat_key;
    });
    Session::Entry &entry = session.entries.emplace_back();
    entry.request = std::move(request);
    entry.verdict = std::move(verdict);
    entry.is_waiting = false;
    entry.is_repetition = true;
    entry.is_duplicate = is_duplicate;
    entry.arrived = now;
    ++waiting_repetitions_;
    return true;
}

// Result: whether there is room for the answer, if it has to be kept.
bool Gate::begin_answer(const Request &request)
{
    return request.repeat_key.empty() ||
           answers_.begin(request.repeat_key, contents_of(request), Clock::now());
}

// The running request has its answer, without the id: for later repetitions and those that wait.
void Gate::settle(const std::string &key, std::string_view answer, Code code)
{
    if (may_be_executed(code)) {
        // Masked for everybody: a refused setting's reply repeats its parameters.
        answers_.keep(key, mask_json(answer), code, Clock::now());
    } else {
        answers_.forget(key);
    }
}

void Gate::answer_repetitions(const std::string &key, std::string_view answer, Code code)
{
    if (waiting_repetitions_ == 0) {
        return;
    }
    for (const auto &session : sessions_) {
        for (Session::Entry &entry : session->entries) {
            if (entry.is_repetition && entry.request.repeat_key == key) {
                std::string line = with_id(entry.request.id, answer);
                audit(*session, entry.request, entry.verdict, name_of(code), line,
                      between(entry.arrived, Clock::now()), {}, true);
                --waiting_repetitions_;
                service::answer(entry, code,
                                entry.verdict.sees_secrets ? std::move(line) : mask_json(line));
            }
        }
        flush(*session);
    }
}

// The request with the key will not be executed: its first repetition takes its place. Result: the
// repetition's session, or null.
Session *Gate::pass_on(const std::string &key)
{
    for (const auto &session : sessions_) {
        for (Session::Entry &entry : session->entries) {
            if (entry.is_repetition && entry.request.repeat_key == key) {
                entry.is_repetition = false;
                entry.is_duplicate = false;
                entry.is_waiting = true;
                --waiting_repetitions_;
                ++session->waiting;
                line_up(*session);
                return session.get();
            }
        }
    }
    answers_.forget(key);
    return nullptr;
}

void Gate::refuse(Session &session, const Request &request, const Policy::Verdict &verdict,
                  Code code, std::string_view text)
{
    const std::string_view rule = code == Code::kDenied ? verdict.rule : std::string_view();
    audit(session, request, verdict, name_of(code), "", {}, {});
    refuse(session, code, error_answer(request.id, code, text, rule));
}

void Gate::report_refusal(const Session &session, const Request &request, const std::string &rule)
{
    const Identity &who = *session.who;
    const auto omitted = refusals_.take(who.way_in + ' ' + who.name, Clock::now());
    if (!omitted) {
        return;
    }
    on_event("policy.refused",
             R"({"event":"policy.refused","data":{"who":)" + agent::quoted(who.name) +
                 R"(,"way_in":)" + agent::quoted(who.way_in) + R"(,"name":)" +
                 agent::quoted(one_line(request.name, kMostName)) + R"(,"rule":)" +
                 agent::quoted(rule) +
                 (*omitted > 0 ? R"(,"omitted":)" + std::to_string(*omitted) : "") + "}}");
}

void Gate::audit(const Session &session, const Request &request, const Policy::Verdict &verdict,
                 std::string_view code, std::string_view answer, std::chrono::microseconds waited,
                 std::chrono::microseconds worked, bool is_repetition)
{
    const bool has_result = code.empty();
    metrics_.count(request.subject, request.name, code,
                   has_result ? result_in(answer) : std::nullopt, waited + worked);
    if (options_.audit.empty()) {
        return;
    }
    audit_.write({*session.who, verdict.role, request.subject, request.name, request.params(), code,
                  verdict.rule, has_result ? result_in(answer) : std::nullopt,
                  has_result ? status_in(answer) : std::string_view(), is_repetition, waited,
                  worked},
                 std::chrono::system_clock::now());
    const std::string problem = audit_.take_problem();
    if (!problem.empty()) {
        print_error(problem);
    }
}

milliseconds Gate::time_of(const Request &request) const
{
    const auto found = times_.find(request.name);
    return found != times_.end() && request.subject == Subject::kCommand
               ? std::max(found->second, options_.time)
               : options_.time;
}

void Gate::answer_control(Session &session, const Request &request)
{
    const std::string begin = R"({"id":)" + request.id + R"(,"result":0)";
    if (request.subject == Subject::kControl) {
        refuse(session, Code::kNone,
               begin + R"(,"reply":{"protocol":")" + kProtocolVersion +
                   R"(","service":")" HGAGENT_VERSION R"(","epoch":")" + epoch_ + "\"}}");
        return;
    }
    auto &patterns = session.subscriptions;
    if (request.is_unsubscribe) {
        std::erase(patterns, request.name);
    } else if (request.name.empty() || request.name.size() > kMostPattern ||
               patterns.size() >= kMostSubscriptions) {
        refuse(session, Code::kBadRequest,
               error_answer(request.id, Code::kBadRequest,
                            "a pattern has 1 to 128 bytes, and there may be 32 of them"));
        return;
    } else if (std::ranges::find(patterns, request.name) == patterns.end()) {
        patterns.push_back(request.name);
    }
    refuse(session, Code::kNone, begin + "}");
}

void Gate::line_up(Session &session)
{
    if (!session.is_lined_up && session.waiting > 0 && session.client->has_room()) {
        session.is_lined_up = true;
        turns_.push_back(&session);
    }
}

void Gate::resume(Session &session)
{
    line_up(session);
    give_next();
}

void Gate::give_next()
{
    while (!turns_.empty() && supervisor_.is_idle() && !is_rebooting_ && !is_stopping_) {
        Session &session = *turns_.front();
        turns_.pop_front();
        session.is_lined_up = false;
        Session::Entry &next = *std::ranges::find_if(session.entries, &Session::Entry::is_waiting);
        next.is_waiting = false;
        next.begun = Clock::now();
        --session.waiting;
        line_up(session);
        if (next.request.expires && *next.request.expires <= next.begun) {
            drop_expired(session);
            continue;
        }
        running_ = &session;
        running_id_ = next.request.id;
        running_key_ = next.request.repeat_key;
        supervisor_.run(next.request, time_of(next.request));
    }
}

void Gate::drop_expired(Session &session)
{
    Session::Entry &entry = running_entry(session);
    audit(session, entry.request, entry.verdict, name_of(Code::kTimeout), "",
          between(entry.arrived, entry.begun), {});
    answer(entry, Code::kTimeout,
           error_answer(entry.request.id, Code::kTimeout,
                        "the request has expired before its turn, and is not executed"));
    if (!entry.request.repeat_key.empty()) {
        // The client gets the answer of its repetition instead.
        entry.is_duplicate = pass_on(std::string(entry.request.repeat_key)) == &session;
    }
    flush(session);
}

void Gate::finish(std::string_view line, Code code)
{
    const std::string key = std::exchange(running_key_, {});
    const std::string kept(key.empty() ? std::string_view() : behind_id(line, running_id_));
    if (!key.empty()) {
        settle(key, kept, code);
    }
    if (Session *session = std::exchange(running_, nullptr)) {
        finish(*session, line, code);
    }
    if (!key.empty()) {
        answer_repetitions(key, kept, code);
    }
}

void Gate::finish(Session &session, std::string_view line, Code code)
{
    Session::Entry &entry = running_entry(session);
    audit(session, entry.request, entry.verdict, name_of(code), line,
          between(entry.arrived, entry.begun), between(entry.begun, Clock::now()));
    // Replies are parsed here only, and for repetitions: to mask them for clients that may not see
    // secrets.
    std::string masked;
    if (!entry.verdict.sees_secrets) {
        masked = mask_json(line);
        line = masked;
    }
    if (session.entries.size() == 1) { // the usual case; the answer need not be kept
        session.entries.pop_front();
        session.client->on_answer({line, code});
        return;
    }
    answer(entry, code, std::string(line));
    flush(session);
}

// Delivers the answers up to the first unanswered request.
void Gate::flush(Session &session)
{
    const bool was_full = is_full(session);
    while (!session.entries.empty() && session.entries.front().is_answered) {
        const Session::Entry entry = std::move(session.entries.front());
        session.entries.pop_front();
        session.client->on_answer({entry.answer, entry.code, entry.is_duplicate});
    }
    if (was_full && !is_full(session)) {
        session.client->on_less_full();
    }
}

void Gate::on_answer(std::string_view line)
{
    finish(line, code_in(line));
}

void Gate::on_no_answer(Code code, const std::string &text)
{
    finish(error_answer(running_id_, code, text), code);
}

void Gate::refuse_waiting(Code code, const std::string &text)
{
    for (Session *session : std::exchange(turns_, {})) {
        session->is_lined_up = false;
    }
    for (const auto &session : sessions_) {
        for (Session::Entry &entry : session->entries) {
            const std::string &key = entry.request.repeat_key;
            if (entry.is_waiting || (entry.is_repetition && key != running_key_)) {
                audit(*session, entry.request, entry.verdict, name_of(code), "",
                      between(entry.arrived, Clock::now()), {}, entry.is_repetition);
                waiting_repetitions_ -= entry.is_repetition ? 1 : 0;
                answers_.forget(key);
                answer(entry, code, error_answer(entry.request.id, code, text));
            }
        }
        session->waiting = 0;
        flush(*session);
    }
}

void Gate::on_event(std::string_view name, std::string_view line)
{
    if (name == "reboot.begun") {
        is_rebooting_ = true;
        refuse_waiting(Code::kRebooting, kRebooting);
    } else if (name == "reboot.ended" || name == "worker.started") {
        is_rebooting_ = false;
    }
    if (name == "worker.started") {
        metrics_.count_worker();
    }
    for (const auto &session : sessions_) {
        if (!std::ranges::any_of(session->subscriptions, [&](const std::string &pattern) {
                return matches(pattern, name);
            })) {
            continue;
        }
        // A wide pattern may match an event that another rule denies.
        const auto verdict = options_.policy.decide(*session->who, Subject::kSubscription, name);
        if (verdict.allowed) {
            session->client->on_event(verdict.sees_secrets ? line : mask_json(line));
        }
    }
    if (name == "worker.started" && hooks_.on_ready) {
        std::exchange(hooks_.on_ready, nullptr)();
    }
}

void Gate::on_change()
{
    if (!supervisor_.refusal().empty()) {
        refuse_waiting(Code::kBusy, supervisor_.refusal());
    }
    give_next();
}

void Gate::on_no_worker(const std::string &reason, int exit_status)
{
    hooks_.on_no_worker(reason, exit_status);
}

std::string Gate::metrics() const
{
    std::map<std::string, size_t, std::less<>> clients;
    size_t waiting = 0;
    for (const auto &session : sessions_) {
        ++clients[session->who->way_in];
        waiting += session->waiting;
    }
    return metrics_.text({clients, waiting, supervisor_.is_idle()});
}

void Gate::stop()
{
    is_stopping_ = true;
    refuse_waiting(Code::kBusy, kStopping);
    supervisor_.stop();
}

void Gate::on_stopped()
{
    hooks_.on_stopped();
}

} // namespace agent::service

// SPDX-License-Identifier: MIT
#include "fleet/platform/drive.h"

#include "fleet/plan.h"
#include "protocol/described_reply.h"
#include "protocol/json_text.h"
#include "protocol/reply.h"

#include <boost/asio/post.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace agent::fleet::platform {

namespace {

constexpr size_t kMostVisits = 200; // gateways whose settings are read at the same time
constexpr int kMostAttempts = 10;   // to read one setting of a faulty gateway
constexpr std::chrono::seconds kAttemptPause(1);
constexpr size_t kMostOpen = 200'000;
constexpr int kMostDraws = 50; // of gateways, for one whose setting is not being changed
constexpr std::chrono::milliseconds kDrainPause(50);
// A weak gateway may never answer, and the end of the run must not wait for it.
constexpr std::chrono::seconds kWeakTimeout(5);
// Answers are kept for ten minutes.
constexpr std::chrono::minutes kKept(9);
constexpr int kAskedAgain = 16; // one of so many confirmed changes
constexpr std::chrono::milliseconds kLeastInterval(1000);
constexpr int kMostIntervals = 1200;

std::vector<double> weights_of(const Mix &mix)
{
    std::vector<double> weights;
    for (const MixEntry &entry : mix) {
        weights.push_back(entry.weight);
    }
    return weights;
}

bool is_known_as_not_executed(const std::string &code)
{
    return code == "denied" || code == "bad-request" || code == "too-large" || code == "not-sent";
}

} // namespace

Drive::Drive(DriveOptions options)
    : Run(options.platform, {},
          std::max<std::chrono::milliseconds>(kLeastInterval, options.time / kMostIntervals)),
      options_(std::move(options)), ledger_(options_.mix, options_.platform.ids.size()),
      random_(options_.platform.seed), timer_(loop())
{
    const std::vector<double> weights = weights_of(options_.mix);
    entry_ = std::discrete_distribution<size_t>(weights.begin(), weights.end());
    planned_ = static_cast<uint64_t>(
        std::llround(options_.rate * static_cast<double>(options_.time.count())));
}

void Drive::begin()
{
    set_phase("reading");
    gather(
        present(),
        [this](GatewayNumber gateway, Reading &reading) { return read_first(gateway, reading); },
        [this] { begin_load(); });
}

// ---- Reading settings ---------------------------------------------------------------------------

void Drive::gather(std::vector<GatewayNumber> gateways,
                   std::function<bool(GatewayNumber, Reading &)> visit, std::function<void()> done)
{
    gathering_ = {std::move(gateways), 0, 0, std::move(visit), std::move(done)};
    visit_next();
}

void Drive::visit_next()
{
    while (gathering_.open < kMostVisits && gathering_.next < gathering_.gateways.size()) {
        ++gathering_.open;
        auto visit = std::make_shared<Visit>();
        visit->gateway = gathering_.gateways[gathering_.next++];
        // Later, since a visit may end at once and begin the next one.
        boost::asio::post(loop(), [this, visit] { continue_visit(visit); });
    }
    if (gathering_.open == 0) {
        const auto done = std::exchange(gathering_.done, nullptr);
        if (done) {
            done();
        }
    }
}

void Drive::continue_visit(const std::shared_ptr<Visit> &visit)
{
    if (!gathering_.visit(visit->gateway, visit->reading)) {
        ask_for(visit, *visit->reading.missing());
        return;
    }
    --gathering_.open;
    visit_next();
}

void Drive::ask_for(const std::shared_ptr<Visit> &visit, const Reading::Query &query)
{
    Request request;
    request.gateway = visit->gateway;
    request.command = query.command;
    request.params = query.params;
    request.intended = Clock::now();
    request.done = [this, visit, query](const Request &, Outcome outcome) {
        const bool good =
            outcome.kind == Outcome::Kind::kReply && status_of(outcome.reply.get()) == kSuccess;
        if (!good && outcome.kind != Outcome::Kind::kNoAnswer &&
            ++visit->attempts < kMostAttempts) {
            after(kAttemptPause, [this, visit, query] { ask_for(visit, query); });
            return;
        }
        visit->attempts = 0;
        visit->reading.add(query, good ? std::move(outcome.reply) : nullptr);
        continue_visit(visit);
    };
    platform().ask(std::move(request));
}

bool Drive::read_first(GatewayNumber gateway, Reading &reading)
{
    if (is_weak(gateway)) {
        return true; // it might never answer
    }
    std::vector<std::pair<size_t, Json>> settings;
    for (size_t entry = 0; entry < options_.mix.size(); ++entry) {
        if (options_.mix[entry].is_setting) {
            settings.emplace_back(entry, reading.setting(options_.mix[entry], nullptr));
            if (reading.missing()) {
                return false;
            }
        }
    }
    for (const auto &[entry, setting] : settings) {
        ledger_.begin(gateway, entry, setting.get());
    }
    return true;
}

// ---- Load ---------------------------------------------------------------------------------------

void Drive::begin_load()
{
    set_phase("load");
    load_begin_ = Clock::now();
    send_due();
}

// Requests are sent when their time has come, regardless of how many are open, and their time
// counts from then: a gateway or a broker that stands still delays all that should have been asked
// meanwhile.
void Drive::send_due()
{
    const auto intended = [this](uint64_t number) {
        return load_begin_ +
               std::chrono::duration_cast<Clock::duration>(
                   std::chrono::duration<double>(static_cast<double>(number) / options_.rate));
    };
    while (sent_ < planned_ && intended(sent_) <= Clock::now()) {
        send_one(intended(sent_++));
    }
    if (sent_ == planned_) {
        set_phase("draining");
        drain();
        return;
    }
    timer_.expires_at(intended(sent_));
    timer_.async_wait([this](const boost::system::error_code &problem) {
        if (!problem) {
            send_due();
        }
    });
}

GatewayNumber Drive::any_gateway()
{
    return present()[std::uniform_int_distribution<size_t>(0, present().size() - 1)(random_)];
}

void Drive::send_one(Clock::time_point intended)
{
    const size_t entry = entry_(random_);
    const MixEntry &what = options_.mix[entry];
    GatewayNumber gateway = any_gateway();
    if (platform().open() >= kMostOpen) {
        statistics().count(what.command, Ending::kDropped, "", {});
        return;
    }
    if (!what.is_setting) {
        send_query(gateway, entry, intended);
        return;
    }
    for (int draw = 0; draw < kMostDraws && !ledger_.is_free(gateway, entry); ++draw) {
        gateway = any_gateway();
    }
    if (ledger_.is_free(gateway, entry)) {
        send_change(gateway, entry, intended);
    } else {
        ++held_back_;
    }
}

void Drive::send_query(GatewayNumber gateway, size_t entry, Clock::time_point intended)
{
    const MixEntry &what = options_.mix[entry];
    Request request;
    request.gateway = gateway;
    request.command = what.command;
    request.params = what.params;
    request.is_change = what.is_change;
    request.intended = intended;
    if (is_weak(gateway)) {
        request.timeout = std::min<Clock::duration>(kWeakTimeout, options_.platform.timeout);
    }
    request.done = [this, entry, versions = versions_of(gateway)](const Request &asked,
                                                                  Outcome outcome) {
        const MixEntry &one = options_.mix[entry];
        const Ending ending = judge(one, asked, outcome);
        statistics().count(one.command, ending, outcome.code, outcome.time);
        if (ending == Ending::kSuccess) {
            compare_on_the_way(asked.gateway, one.command, std::move(outcome.reply), versions);
        }
    };
    platform().ask(std::move(request));
}

void Drive::send_change(GatewayNumber gateway, size_t entry, Clock::time_point intended)
{
    const MixEntry &what = options_.mix[entry];
    Ledger::Change change = ledger_.change(gateway, entry, platform().gateways()[gateway].id);
    Request request;
    request.gateway = gateway;
    request.command = what.command;
    request.params = std::move(change.params);
    request.is_change = true;
    request.intended = intended;
    auto number = std::make_shared<uint64_t>(0);
    request.done = [this, entry, number, value = std::move(change.value)](const Request &asked,
                                                                          Outcome outcome) {
        const MixEntry &one = options_.mix[entry];
        const Ending ending = judge(one, asked, outcome);
        statistics().count(one.command, ending, outcome.code, outcome.time);
        Ledger::Confirmed confirmed{*number,         asked.params, asked.epoch,
                                    outcome.payload, value,        Clock::now()};
        const Ledger::End end =
            ending == Ending::kSuccess ? Ledger::End::kConfirmed
            : ending == Ending::kFailure ||
                    (ending == Ending::kError && is_known_as_not_executed(outcome.code))
                ? Ledger::End::kRefused
                : Ledger::End::kUnknown;
        const Ledger::Confirmed before =
            ledger_.end(asked.gateway, entry, end, std::move(confirmed));
        if (before.number != 0 && ledger_.counts().confirmed % kAskedAgain == 0) {
            ask_again(asked.gateway, entry, before);
        }
    };
    *number = platform().ask(std::move(request));
}

// Asks once more for a change that was confirmed before the present one: the gateway has to give
// the answer that it has kept. If it executes the change again, the setting has the older value.
void Drive::ask_again(GatewayNumber gateway, size_t entry, const Ledger::Confirmed &before)
{
    if (Clock::now() - before.time > kKept ||
        platform().gateways()[gateway].epoch != before.epoch) {
        return;
    }
    ledger_.repeat(gateway, entry, before.value);
    Request request;
    request.gateway = gateway;
    request.command = options_.mix[entry].command;
    request.params = before.params;
    request.is_change = true;
    request.intended = Clock::now();
    request.repeats = before.number;
    request.epoch = before.epoch;
    request.done = [this, entry, payload = before.payload](const Request &asked,
                                                           const Outcome &outcome) {
        if (outcome.kind == Outcome::Kind::kReply && outcome.payload != payload) {
            ++different_;
            add_problem(asked, "asked again: the answer is not the one of the first time");
        }
        check_repetition(asked.gateway, entry, std::make_shared<Reading>());
    };
    platform().ask(std::move(request));
}

// Reads the setting, and compares it.
void Drive::check_repetition(GatewayNumber gateway, size_t entry,
                             const std::shared_ptr<Reading> &reading)
{
    const Json base(cJSON_Parse(ledger_.base(gateway, entry).c_str()));
    const Json setting = reading->setting(options_.mix[entry], base.get());
    if (!reading->missing()) {
        ledger_.release(gateway, entry);
        if (setting != nullptr) {
            compare_now(gateway, entry, setting.get());
        }
        return;
    }
    Request request;
    request.gateway = gateway;
    request.command = reading->missing()->command;
    request.params = reading->missing()->params;
    request.intended = Clock::now();
    request.done = [this, entry, reading](const Request &asked, Outcome outcome) {
        const bool good =
            outcome.kind == Outcome::Kind::kReply && status_of(outcome.reply.get()) == kSuccess;
        reading->add({asked.command, asked.params}, good ? std::move(outcome.reply) : nullptr);
        check_repetition(asked.gateway, entry, reading);
    };
    platform().ask(std::move(request));
}

bool Drive::is_weak(GatewayNumber gateway) const
{
    return options_.has_churn &&
           weakness_of(options_.platform.seed, options_.first + gateway).library !=
               Weakness::Library::kWorks;
}

void Drive::add_problem(const Request &request, const std::string &text)
{
    statistics().add_problem(platform().gateways()[request.gateway].id + ": " + request.command +
                             ": " + text);
}

Ending Drive::judge(const MixEntry &entry, const Request &request, const Outcome &outcome)
{
    if (!is_weak(request.gateway)) {
        return judge_answer(entry, request, outcome);
    }
    return outcome.kind == Outcome::Kind::kReply && status_of(outcome.reply.get()) == kSuccess
               ? Ending::kSuccess
               : Ending::kWeak;
}

Ending Drive::judge_answer(const MixEntry &entry, const Request &request, const Outcome &outcome)
{
    const auto invalid = [&](const std::string &why) {
        add_problem(request, why);
        return Ending::kInvalid;
    };
    switch (outcome.kind) {
    case Outcome::Kind::kNoAnswer:
        add_problem(request, "no answer, sent " + std::to_string(outcome.sent) + " times");
        return Ending::kUnanswered;
    case Outcome::Kind::kInvalid:
        return invalid(outcome.text);
    case Outcome::Kind::kError:
        if (outcome.code == "outcome-unknown" || outcome.code == "timeout") {
            return Ending::kUnknown;
        }
        return outcome.code.empty() ? invalid("an error without a code: " + outcome.text)
                                    : Ending::kError;
    case Outcome::Kind::kReply:
        break;
    }
    if (outcome.result != 0) {
        return invalid("the result is " + std::to_string(outcome.result));
    }
    const Json sent(cJSON_Parse(request.params.c_str()));
    if (const std::string why = undescribed(entry.tree.get(), sent.get(), outcome.reply.get());
        !why.empty()) {
        return invalid(why);
    }
    return status_of(outcome.reply.get()) == kSuccess ? Ending::kSuccess : Ending::kFailure;
}

// ---- Comparing ----------------------------------------------------------------------------------

std::vector<uint32_t> Drive::versions_of(GatewayNumber gateway) const
{
    std::vector<uint32_t> versions;
    for (size_t entry = 0; entry < options_.mix.size(); ++entry) {
        versions.push_back(ledger_.version(gateway, entry));
    }
    return versions;
}

// A query of the load shows settings as well: those that no change has met since it was sent have
// to be as the ledger says.
void Drive::compare_on_the_way(GatewayNumber gateway, const std::string &command, Json reply,
                               const std::vector<uint32_t> &versions)
{
    Reading reading;
    bool is_added = false;
    for (size_t entry = 0; entry < options_.mix.size(); ++entry) {
        const MixEntry &what = options_.mix[entry];
        if (!what.is_setting || versions[entry] == 0 ||
            ledger_.version(gateway, entry) != versions[entry] ||
            what.description["read_back"]["command"] != command) {
            continue;
        }
        if (!std::exchange(is_added, true)) {
            reading.add({command, "{}"}, std::move(reply));
        }
        const Json base(cJSON_Parse(ledger_.base(gateway, entry).c_str()));
        const Json setting = reading.setting(what, base.get());
        if (setting == nullptr) {
            continue; // of an element that this reply does not have
        }
        compare_now(gateway, entry, setting.get());
    }
}

void Drive::compare_now(GatewayNumber gateway, size_t entry, const cJSON *setting)
{
    ++ledger_.counts().compared;
    std::string text;
    if (ledger_.compare(gateway, entry, setting, &text) != Ledger::Verdict::kAsSet) {
        statistics().add_problem(platform().gateways()[gateway].id + ": " + text);
    }
}

// ---- The end ------------------------------------------------------------------------------------

void Drive::drain()
{
    if (platform().open() > 0) {
        after(kDrainPause, [this] { drain(); });
        return;
    }
    read_back();
}

void Drive::read_back()
{
    set_phase("checking");
    std::vector<GatewayNumber> touched;
    for (const GatewayNumber gateway : present()) {
        if (ledger_.is_touched(gateway)) {
            touched.push_back(gateway);
        }
    }
    gather(
        std::move(touched),
        [this](GatewayNumber gateway, Reading &reading) { return read_last(gateway, reading); },
        [this] {
            is_complete_ = true;
            end();
        });
}

bool Drive::read_last(GatewayNumber gateway, Reading &reading)
{
    std::vector<std::pair<size_t, Json>> settings;
    for (size_t entry = 0; entry < options_.mix.size(); ++entry) {
        if (ledger_.is_touched(gateway, entry)) {
            const Json base(cJSON_Parse(ledger_.base(gateway, entry).c_str()));
            settings.emplace_back(entry, reading.setting(options_.mix[entry], base.get()));
            if (reading.missing()) {
                return false;
            }
        }
    }
    for (const auto &[entry, setting] : settings) {
        std::string text;
        const Ledger::Verdict verdict = ledger_.compare(gateway, entry, setting.get(), &text);
        ledger_.counts().as_set += verdict == Ledger::Verdict::kAsSet ? 1 : 0;
        if (verdict == Ledger::Verdict::kUnread) {
            ++ledger_.counts().unread;
            text = options_.mix[entry].command + ": what is in force cannot be read";
        }
        if (!text.empty()) {
            statistics().add_problem(platform().gateways()[gateway].id + ": " + text);
        }
    }
    return true;
}

// ---- The report ---------------------------------------------------------------------------------

bool Drive::is_good() const
{
    const Ledger::Counts &ledger = ledger_.counts();
    const Statistics &all = statistics();
    return is_complete_ && missing() == 0 && all.requests() + held_back_ == planned_ &&
           ledger.lost == 0 && ledger.twice == 0 && ledger.unread == 0 && different_ == 0 &&
           all.count_of(Ending::kInvalid) == 0 && all.count_of(Ending::kUnanswered) == 0 &&
           all.count_of(Ending::kError) == 0 && all.count_of(Ending::kDropped) == 0;
}

nlohmann::ordered_json Drive::report()
{
    nlohmann::ordered_json json;
    json["kind"] = "drive";
    json["version"] = HGAGENT_VERSION;
    json["rate"] = options_.rate;
    json["seconds"] = options_.time.count();
    json["seed"] = options_.platform.seed;
    json["complete"] = is_complete_;
    json["planned"] = planned_;
    json["held_back"] = held_back_;
    json["other_answers"] = different_;
    json["ledger"] = to_json(ledger_.counts());
    return json;
}

std::vector<std::string> Drive::summary() const
{
    const Statistics &all = statistics();
    const Ledger::Counts &ledger = ledger_.counts();
    const auto number = [](uint64_t count) {
        return std::to_string(count);
    };
    const auto of = [&](Ending ending) {
        return number(all.count_of(ending));
    };
    char times[128];
    const auto milliseconds = [&](double share) {
        return std::chrono::duration<double, std::milli>(all.times().percentile(share)).count();
    };
    snprintf(times, sizeof(times), "%.2f, 90 %% %.2f, 99 %% %.2f, 99.9 %% %.2f", milliseconds(50),
             milliseconds(90), milliseconds(99), milliseconds(99.9));
    std::vector<std::string> lines = {
        "requests: " + number(planned_) + " planned; " + of(Ending::kSuccess) + " succeeded, " +
            of(Ending::kFailure) + " failed on the device, " + of(Ending::kError) + " refused, " +
            of(Ending::kUnknown) + " of unknown outcome, " + of(Ending::kInvalid) + " invalid, " +
            of(Ending::kUnanswered) + " unanswered, " + of(Ending::kDropped) + " not sent, " +
            of(Ending::kWeak) + " by gateways with a given fault, " + number(held_back_) +
            " held back",
        "milliseconds from the intended time: 50 % " + std::string(times),
        "gateways: " + number(present().size()) + " driven, " + number(missing()) + " missing, " +
            number(platform().restarted()) + " restarted; " +
            number(platform().counts().repetitions) + " repetitions, " +
            number(platform().counts().interruptions) + " interruptions of connections",
        "ledger: " + number(ledger.confirmed) + " changes confirmed of " + number(ledger.touched) +
            " settings, " + number(ledger.refused) + " refused, " + number(ledger.unknown) +
            " of unknown outcome; " + number(ledger.compared) + " compared on the way, " +
            number(ledger.repeated) + " asked again; at the end " + number(ledger.as_set) +
            " as set, " + number(ledger.unread) + " not read; lost " + number(ledger.lost) +
            ", executed twice " + number(ledger.twice + different_)};
    lines.emplace_back(!is_complete_ ? "ended early"
                       : is_good()   ? "nothing lost, nothing executed twice"
                                     : "not as it should be");
    return lines;
}

} // namespace agent::fleet::platform

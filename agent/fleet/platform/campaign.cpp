// SPDX-License-Identifier: MIT
#include "fleet/platform/campaign.h"

#include "io/text.h"
#include "protocol/json_text.h"
#include "protocol/reply.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace agent::fleet::platform {

namespace {

constexpr char kStart[] = "PLATEFORM_UPDATE_IMMEDIATE";
constexpr char kVersion[] = "HG_GET_UPDATE_STATUS";
constexpr std::string_view kUpdateFailed = "update.failed";
constexpr std::string_view kUpdateSucceeded = "update.succeeded";
constexpr std::chrono::seconds kVersionPause(2); // between two questions for the version
constexpr std::chrono::seconds kCampaignInterval(1);
constexpr double kPercent = 100;
constexpr size_t kMostReason = 200;
constexpr size_t kMostReasons = 50;

} // namespace

Campaign::Campaign(CampaignOptions options)
    : Run(options.platform, {std::string(kUpdateFailed), std::string(kUpdateSucceeded)},
          kCampaignInterval),
      options_(std::move(options)), updates_(options_.platform.ids.size())
{
}

void Campaign::begin()
{
    order_ = present();
    std::mt19937_64 random(options_.platform.seed);
    std::ranges::shuffle(order_, random);
    begin_wave();
}

void Campaign::begin_wave()
{
    const double percent = options_.waves[waves_.size()];
    wave_end_ = std::clamp(
        static_cast<size_t>(std::ceil(static_cast<double>(order_.size()) * percent / kPercent)),
        wave_end_, order_.size());
    waves_.push_back({percent, wave_end_ - next_});
    wave_begin_ = Clock::now();
    set_phase("wave " + std::to_string(waves_.size()));
    print_notice("wave " + std::to_string(waves_.size()) + ": " +
                 std::to_string(waves_.back().gateways) + " gateways");
    if (next_ == wave_end_) {
        end_wave(); // too few gateways for a separate wave
    } else {
        start_due();
    }
}

void Campaign::start_due()
{
    // A wave that fails is not made larger.
    if (is_too_bad(waves_.back())) {
        waves_.back().gateways -= wave_end_ - next_;
        wave_end_ = next_;
        if (waves_.back().open() == 0) {
            end_wave();
        }
        return;
    }
    start(order_[next_++]);
    if (next_ < wave_end_) {
        after(std::chrono::duration_cast<Clock::duration>(
                  std::chrono::duration<double>(1 / options_.rate)),
              [this] { start_due(); });
    }
}

void Campaign::start(GatewayNumber gateway)
{
    Update &update = updates_[gateway];
    update = {Stage::kStarting, waves_.size() - 1, false, Clock::now(), ""};
    Request request;
    request.gateway = gateway;
    request.command = kStart;
    request.params = R"({"Image":{"Version":)" + agent::quoted(options_.version) +
                     R"(,"UpdateUrl":)" + agent::quoted(options_.url) + "}}";
    request.is_change = true;
    request.intended = update.begun;
    request.done = [this](const Request &asked, const Outcome &outcome) {
        const bool good =
            outcome.kind == Outcome::Kind::kReply && status_of(outcome.reply.get()) == kSuccess;
        // A gateway that has restarted meanwhile may have updated.
        const bool is_unknown = outcome.kind == Outcome::Kind::kNoAnswer ||
                                outcome.code == "outcome-unknown" || outcome.code == "timeout";
        const Ending ending = good                                      ? Ending::kSuccess
                              : is_unknown                              ? Ending::kUnknown
                              : outcome.kind == Outcome::Kind::kError   ? Ending::kError
                              : outcome.kind == Outcome::Kind::kInvalid ? Ending::kInvalid
                                                                        : Ending::kFailure;
        statistics().count(kStart, ending, outcome.code, outcome.time);
        if (updates_[asked.gateway].stage != Stage::kStarting) {
            return; // the event was faster
        }
        if (good || is_unknown) {
            updates_[asked.gateway].stage = Stage::kUpdating;
            after(kVersionPause, [this, gateway = asked.gateway] { look_at(gateway); });
        } else {
            const std::string reason = outcome.kind == Outcome::Kind::kReply
                                           ? string_at(outcome.reply.get(), "FailReason")
                                           : outcome.text;
            fail(asked.gateway, "refused: " + reason);
        }
    };
    platform().ask(std::move(request));
}

void Campaign::on_event(GatewayNumber gateway, std::string_view name, std::string_view data)
{
    Update &update = updates_[gateway];
    if (update.stage != Stage::kStarting && update.stage != Stage::kUpdating) {
        return;
    }
    if (name == kUpdateSucceeded) {
        update.is_flashed = true;
    } else if (name == kUpdateFailed) {
        const Json parsed(cJSON_ParseWithLength(data.data(), data.size()));
        fail(gateway, string_at(parsed.get(), "reason"));
    }
}

// Events can be lost with the gateway's power: the version that runs decides.
void Campaign::look_at(GatewayNumber gateway)
{
    if (updates_[gateway].stage != Stage::kUpdating) {
        return;
    }
    if (Clock::now() - updates_[gateway].begun > options_.time) {
        fail(gateway, std::string("the version does not run in time") +
                          (updates_[gateway].is_flashed ? ", although it is flashed" : ""));
        return;
    }
    Request request;
    request.gateway = gateway;
    request.command = kVersion;
    request.intended = Clock::now();
    request.done = [this](const Request &asked, const Outcome &outcome) {
        if (updates_[asked.gateway].stage != Stage::kUpdating) {
            return;
        }
        if (outcome.kind == Outcome::Kind::kReply &&
            string_at(outcome.reply.get(), "FWVersion") == options_.version) {
            succeed(asked.gateway);
        } else {
            after(kVersionPause, [this, gateway = asked.gateway] { look_at(gateway); });
        }
    };
    platform().ask(std::move(request));
}

void Campaign::succeed(GatewayNumber gateway)
{
    updates_[gateway].stage = Stage::kUpdated;
    Wave &wave = waves_[updates_[gateway].wave];
    ++wave.updated;
    if (next_ == wave_end_ && wave.open() == 0) {
        end_wave();
    }
}

void Campaign::fail(GatewayNumber gateway, const std::string &reason)
{
    Update &update = updates_[gateway];
    update.stage = Stage::kFailed;
    update.reason = one_line(reason, kMostReason);
    if (reasons_.size() < kMostReasons || reasons_.contains(update.reason)) {
        ++reasons_[update.reason];
    }
    Wave &wave = waves_[update.wave];
    ++wave.failed;
    if (next_ == wave_end_ && wave.open() == 0) {
        end_wave();
    }
}

bool Campaign::is_too_bad(const Wave &wave) const
{
    return static_cast<double>(wave.failed) * kPercent >
           options_.stop_at * static_cast<double>(wave.gateways);
}

// Later: the reason for the end may be an answer, whose callback continues.
void Campaign::end_wave()
{
    after(Clock::duration(0), [this] {
        Wave &wave = waves_.back();
        wave.seconds = std::chrono::duration<double>(Clock::now() - wave_begin_).count();
        print_notice("wave " + std::to_string(waves_.size()) + ": " + std::to_string(wave.updated) +
                     " updated, " + std::to_string(wave.failed) + " failed");
        if (is_too_bad(wave)) {
            is_stopped_ = true;
            end();
        } else if (waves_.size() == options_.waves.size()) {
            is_complete_ = true;
            end();
        } else {
            begin_wave();
        }
    });
}

// ---- The report ---------------------------------------------------------------------------------

bool Campaign::is_good() const
{
    return is_complete_ && missing() == 0;
}

nlohmann::ordered_json Campaign::report()
{
    nlohmann::ordered_json json;
    json["kind"] = "campaign";
    json["version"] = HGAGENT_VERSION;
    json["firmware"] = options_.version;
    json["seed"] = options_.platform.seed;
    json["complete"] = is_complete_;
    json["stopped"] = is_stopped_;
    json["stop_at_percent"] = options_.stop_at;
    json["waves"] = nlohmann::ordered_json::array();
    for (const Wave &wave : waves_) {
        json["waves"].push_back({{"percent", wave.percent},
                                 {"gateways", wave.gateways},
                                 {"updated", wave.updated},
                                 {"failed", wave.failed},
                                 {"seconds", wave.seconds}});
    }
    json["not_started"] = order_.size() - next_;
    json["reasons"] = reasons_;
    for (GatewayNumber number = 0; number < updates_.size(); ++number) {
        if (updates_[number].stage == Stage::kFailed) {
            statistics().add_problem(platform().gateways()[number].id + ": " +
                                     updates_[number].reason);
        }
    }
    return json;
}

std::vector<std::string> Campaign::summary() const
{
    std::vector<std::string> lines;
    size_t updated = 0;
    for (size_t at = 0; at < waves_.size(); ++at) {
        const Wave &wave = waves_[at];
        char text[160];
        snprintf(text, sizeof(text),
                 "wave %zu, up to %g %%: %zu gateways, %zu updated, %zu failed, %.0f s", at + 1,
                 wave.percent, wave.gateways, wave.updated, wave.failed, wave.seconds);
        lines.emplace_back(text);
        updated += wave.updated;
    }
    for (const auto &[reason, count] : reasons_) {
        lines.push_back((count == 1 ? "once" : std::to_string(count) + " times") + ": " + reason);
    }
    lines.push_back(std::to_string(updated) + " of " + std::to_string(order_.size()) +
                    " gateways run " + options_.version +
                    (is_stopped_    ? "; stopped, since too many have failed"
                     : is_complete_ ? ""
                                    : "; ended early"));
    return lines;
}

} // namespace agent::fleet::platform

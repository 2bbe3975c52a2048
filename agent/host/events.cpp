// SPDX-License-Identifier: MIT
#include "host/events.h"

#include "io/text.h"
#include "protocol/json_text.h"
#include "protocol/log_sink.h"
#include "simulated_gateway/simulated_gateway.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace agent {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kWorkerPause(50); // no descriptor signals a free lock

// Exceptions must not reach the callers in the device library.
template <class Work> void without_exceptions(Work work)
{
    try {
        work();
    } catch (const std::exception &problem) {
        log_line(kLogError, "an event is lost: %s", problem.what());
    }
}

} // namespace

Events::Events(const PluginHost &host, Report report)
    : report_(std::move(report)), workers_(host),
      on_reboot_(reinterpret_cast<decltype(&simulated_gateway_on_reboot)>(
          host.device_symbol("simulated_gateway_on_reboot")))
{
    if (report_) {
        on_update_ = reinterpret_cast<decltype(&simulated_gateway_on_update)>(
            host.device_symbol("simulated_gateway_on_update"));
    }
    if (on_update_ != nullptr) {
        on_update_(receive_update, this);
    }
    if (on_reboot_ != nullptr) {
        on_reboot_(receive_reboot, this);
    }
}

Events::~Events()
{
    if (on_update_ != nullptr) {
        on_update_(nullptr, nullptr);
    }
    if (on_reboot_ != nullptr) {
        on_reboot_(nullptr, nullptr);
    }
}

void Events::report(const char *event, const std::string &data) const
{
    if (report_) {
        report_(event, data);
    }
}

void Events::receive_update(const char *version, const char *reason, void *events)
{
    without_exceptions([&] {
        auto *self = static_cast<Events *>(events);
        if (reason != nullptr) {
            self->report("update.failed", "{\"reason\":" + agent::quoted(one_line(reason)) + "}");
        } else {
            self->report(
                "update.succeeded",
                "{\"version\":" + agent::quoted(one_line(version != nullptr ? version : "")) + "}");
        }
    });
}

void Events::receive_reboot(int32_t seconds, void *events)
{
    without_exceptions([&] { static_cast<Events *>(events)->begin_reboot(seconds); });
}

void Events::begin_reboot(int32_t seconds)
{
    const std::lock_guard lock(mutex_);
    const bool goes_on = reboot_end_.has_value(); // a reboot during a reboot extends it
    if (!goes_on) {
        report("reboot.begun", "{\"seconds\":" + std::to_string(seconds) + "}");
    }
    if (seconds > 0) {
        reboot_end_ = std::max(reboot_end_.value_or(Clock::time_point()),
                               Clock::now() + std::chrono::seconds(seconds));
    } else if (!goes_on) {
        report("reboot.ended", "{}");
    }
}

bool Events::is_rebooting()
{
    const std::lock_guard lock(mutex_);
    if (reboot_end_ && Clock::now() >= *reboot_end_) {
        reboot_end_.reset();
        report("reboot.ended", "{}");
    }
    return reboot_end_.has_value();
}

void Events::poll()
{
    is_rebooting();
    if (!report_) {
        return;
    }
    workers_.poll([&](const char *worker, bool is_running) {
        report(is_running ? "background.started" : "background.ended",
               "{\"worker\":" + agent::quoted(worker) + "}");
    });
}

std::optional<milliseconds> Events::next_poll() const
{
    if (!report_) {
        return std::nullopt;
    }
    std::optional<milliseconds> next;
    if (workers_.any_running()) {
        next = kWorkerPause;
    }
    const std::lock_guard lock(mutex_);
    if (reboot_end_) {
        const milliseconds left = std::max(
            milliseconds::zero(), std::chrono::ceil<milliseconds>(*reboot_end_ - Clock::now()));
        next = std::min(next.value_or(left), left);
    }
    return next;
}

} // namespace agent

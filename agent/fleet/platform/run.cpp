// SPDX-License-Identifier: MIT
#include "fleet/platform/run.h"

#include "fleet/platform/page.h"
#include "io/error_output.h"
#include "io/text.h"

#include <boost/asio/post.hpp>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <unistd.h>

namespace agent::fleet::platform {

namespace {

constexpr std::chrono::milliseconds kGatewaysPause(100);
constexpr std::chrono::seconds kAskAgain(5);  // for the states of gateways that are waited for
constexpr std::chrono::seconds kRowPause(10); // between rows, unless they are on a terminal
constexpr size_t kRowsWithHead = 20;

std::vector<WatchedProcess> with_driver(std::vector<WatchedProcess> watched)
{
    watched.insert(watched.begin(), {"driver", getpid()});
    return watched;
}

} // namespace

Run::Run(PlatformOptions options, const std::vector<std::string> &events,
         std::chrono::milliseconds interval)
    : options_(std::move(options)), interval_(interval), watch_(with_driver(options_.watched)),
      platform_(loop_, options_, events, *this), signals_(loop_, SIGINT, SIGTERM),
      interval_timer_(loop_)
{
}

int Run::run()
{
    signals_.async_wait([this](const boost::system::error_code &problem, int signal) {
        if (!problem) {
            end();
            status_ = kSignalled + signal;
        }
    });
    schedule_interval();
    platform_.start();
    loop_.run();
    if (has_begun_) {
        write_report();
    }
    return status_;
}

void Run::after(Clock::duration time, std::function<void()> then)
{
    auto timer = std::make_shared<boost::asio::steady_timer>(loop_, time);
    timer->async_wait([this, timer, then = std::move(then)](const boost::system::error_code &) {
        if (!has_ended_) {
            then();
        }
    });
}

void Run::end()
{
    if (!std::exchange(has_ended_, true)) {
        signals_.cancel();
        interval_timer_.cancel();
        statistics_.end_interval(phase_, platform_, watch_.uses());
        // libmosquitto may be the caller.
        boost::asio::post(loop_, [this] {
            platform_.stop();
            loop_.stop(); // regardless of timers
        });
    }
}

void Run::on_connected(const std::string &broker)
{
    print_notice("connected to " + broker);
    if (!std::exchange(has_connected_, true)) {
        await_gateways(Clock::now() + options_.wait);
        ask_for_states_again();
    }
}

void Run::on_interruption(const std::string &why)
{
    print_error(why);
}

void Run::on_no_broker(const std::string &why)
{
    if (!has_ended_) {
        print_error(why);
        status_ = kCannotLoad;
        has_ended_ = true;
        loop_.stop();
    }
}

void Run::ask_for_states_again()
{
    after(kAskAgain, [this] {
        if (!has_begun_) {
            platform_.ask_for_states();
            ask_for_states_again();
        }
    });
}

void Run::await_gateways(Clock::time_point until)
{
    if (platform_.known() < options_.ids.size() && Clock::now() < until) {
        after(kGatewaysPause, [this, until] { await_gateways(until); });
        return;
    }
    for (GatewayNumber number = 0; number < platform_.gateways().size(); ++number) {
        if (!platform_.gateways()[number].epoch.empty()) {
            present_.push_back(number);
        }
    }
    const std::string all = std::to_string(options_.ids.size());
    if (present_.empty()) {
        print_error("none of " + all + " gateways has announced itself, such as " + options_.root +
                    "/" + options_.ids.front());
        status_ = kCommandFailed;
        end();
        return;
    }
    print_notice(std::to_string(present_.size()) + " of " + all + " gateways are up");
    has_begun_ = true;
    begin();
}

// ---- Intervals ----------------------------------------------------------------------------------

void Run::schedule_interval()
{
    interval_timer_.expires_after(interval_);
    interval_timer_.async_wait([this](const boost::system::error_code &problem) {
        if (!problem) {
            statistics_.end_interval(phase_, platform_, watch_.uses());
            show_interval();
            write_metrics();
            schedule_interval();
        }
    });
}

void Run::show_interval()
{
    const auto now = Clock::now();
    if (!output_.is_terminal()) {
        if (now < next_row_) {
            return;
        }
        next_row_ = now + kRowPause;
    }
    if (rows_++ % kRowsWithHead == 0) {
        write_line(statistics_.table_head());
    }
    write_line(statistics_.table_row());
}

void Run::write_line(const std::string &line)
{
    if (!output_.write_line(line)) {
        status_ = kCannotWrite;
        end();
    }
}

// ---- Files --------------------------------------------------------------------------------------

// Replaces the file, so that a reader sees the old text or the new one.
bool Run::write_file(const std::string &path, const std::string &text)
{
    const std::string part = path + ".part";
    std::ofstream file(part, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (!file || rename(part.c_str(), path.c_str()) != 0) {
        print_error("cannot write " + path);
        status_ = std::max<int>(status_, kCannotWrite);
        return false;
    }
    return true;
}

void Run::write_metrics()
{
    if (!options_.metrics.empty() &&
        !write_file(options_.metrics, statistics_.metrics(platform_))) {
        end();
    }
}

void Run::write_report()
{
    nlohmann::ordered_json json = report();
    const bool good = is_good();
    json["good"] = good;
    json["gateways"] = {{"given", options_.ids.size()},
                        {"missing", missing()},
                        {"up_at_the_end", platform_.up()},
                        {"restarted", platform_.restarted()}};
    const PlatformCounts &counts = platform_.counts();
    json["broker"] = {{"interruptions", counts.interruptions},
                      {"repetitions", counts.repetitions},
                      {"late_answers", counts.late},
                      {"refusals", counts.refusals}};
    json.update(statistics_.to_json());
    write_line(statistics_.table_row());
    for (const std::string &line : summary()) {
        write_line(line);
    }
    for (const std::string &problem : statistics_.problems()) {
        print_error(problem);
    }
    write_metrics();
    // A text of a device may be of any encoding.
    const std::string text =
        json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    if (!options_.json.empty()) {
        write_file(options_.json, text + "\n");
    }
    if (!options_.page.empty()) {
        write_file(options_.page, page_of(options_.page_template, text));
    }
    if (!good && status_ == kSuccess) {
        status_ = kCommandFailed;
    }
}

} // namespace agent::fleet::platform

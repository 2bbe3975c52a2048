// SPDX-License-Identifier: MIT
// What the runs of the platform's side have in common: the loop, the broker, the table, the report.
#pragma once

#include "fleet/platform/platform.h"
#include "fleet/platform/process_watch.h"
#include "fleet/platform/statistics.h"
#include "io/exit_status.h"
#include "io/streams.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>

#include <functional>
#include <string>
#include <vector>

namespace agent::fleet::platform {

class Run : protected PlatformListener {
  public:
    // Result: the exit status.
    int run();

  protected:
    // interval: of the curves.
    Run(PlatformOptions options, const std::vector<std::string> &events,
        std::chrono::milliseconds interval);
    ~Run() = default;

    // The gateways have been waited for: those that were there may be asked.
    virtual void begin() = 0;
    // Also after a signal. Result: the report without its curves and counts.
    virtual nlohmann::ordered_json report() = 0;
    virtual bool is_good() const = 0;
    // What is written at the end, a line each.
    virtual std::vector<std::string> summary() const = 0;

    void set_phase(const std::string &phase) { phase_ = phase; }
    void end();
    const PlatformOptions &options() const { return options_; }
    boost::asio::io_context &loop() { return loop_; }
    Platform &platform() { return platform_; }
    const Platform &platform() const { return platform_; }
    Statistics &statistics() { return statistics_; }
    const Statistics &statistics() const { return statistics_; }
    const std::vector<GatewayNumber> &present() const { return present_; }
    size_t missing() const { return options_.ids.size() - present_.size(); }
    // Calls after a time; the run outlives it.
    void after(Clock::duration time, std::function<void()> then);

  private:
    void on_connected(const std::string &broker) override;
    void on_interruption(const std::string &why) override;
    void on_no_broker(const std::string &why) override;
    void on_event(GatewayNumber, std::string_view, std::string_view) override {}

    void await_gateways(Clock::time_point until);
    void ask_for_states_again();
    void schedule_interval();
    void show_interval();
    void write_metrics();
    void write_report();
    bool write_file(const std::string &path, const std::string &text);
    void write_line(const std::string &line);

    const PlatformOptions options_;
    const std::chrono::milliseconds interval_;
    boost::asio::io_context loop_{1};
    ReplyOutput output_;
    Statistics statistics_;
    ProcessWatch watch_;
    Platform platform_;
    boost::asio::signal_set signals_;
    boost::asio::steady_timer interval_timer_;
    std::string phase_ = "waiting";
    std::vector<GatewayNumber> present_;
    bool has_begun_ = false;
    bool has_connected_ = false;
    bool has_ended_ = false;
    size_t rows_ = 0;
    Clock::time_point next_row_;
    int status_ = kSuccess;
};

} // namespace agent::fleet::platform

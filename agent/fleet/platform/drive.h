// SPDX-License-Identifier: MIT
// hgagent fleet drive: load on the gateways of a fleet, and the check that nothing is lost or done
// twice.
#pragma once

#include "fleet/platform/ledger.h"
#include "fleet/platform/mix.h"
#include "fleet/platform/run.h"

#include <functional>
#include <random>
#include <string>
#include <vector>

namespace agent::fleet::platform {

struct DriveOptions {
    PlatformOptions platform;
    double rate = 0;             // requests per second
    std::chrono::seconds time{}; // of the load
    Mix mix;
    // The fleet runs with --churn and the same seed: the gateways that its plan gives a faulty
    // library are asked, but not blamed.
    bool has_churn = false;
    uint32_t first = 1; // number of the first gateway
};

class Drive : public Run {
  public:
    explicit Drive(DriveOptions options);

  private:
    // Reads gateways' settings, some gateways at a time.
    struct Gathering {
        std::vector<GatewayNumber> gateways;
        size_t next = 0;
        size_t open = 0;
        // Uses the replies of one gateway. Result: whether it needs no further one.
        std::function<bool(GatewayNumber gateway, Reading &reading)> visit;
        std::function<void()> done;
    };
    struct Visit {
        GatewayNumber gateway = 0;
        Reading reading;
        int attempts = 0;
    };

    void begin() override;
    nlohmann::ordered_json report() override;
    bool is_good() const override;
    std::vector<std::string> summary() const override;

    void gather(std::vector<GatewayNumber> gateways,
                std::function<bool(GatewayNumber, Reading &)> visit, std::function<void()> done);
    void visit_next();
    void continue_visit(const std::shared_ptr<Visit> &visit);
    void ask_for(const std::shared_ptr<Visit> &visit, const Reading::Query &query);

    bool read_first(GatewayNumber gateway, Reading &reading);
    void begin_load();
    void send_due();
    void send_one(Clock::time_point intended);
    void send_change(GatewayNumber gateway, size_t entry, Clock::time_point intended);
    void send_query(GatewayNumber gateway, size_t entry, Clock::time_point intended);
    Ending judge(const MixEntry &entry, const Request &request, const Outcome &outcome);
    void ask_again(GatewayNumber gateway, size_t entry, const Ledger::Confirmed &before);
    void check_repetition(GatewayNumber gateway, size_t entry,
                          const std::shared_ptr<Reading> &reading);
    void compare_now(GatewayNumber gateway, size_t entry, const cJSON *setting);
    void compare_on_the_way(GatewayNumber gateway, const std::string &command, Json reply,
                            const std::vector<uint32_t> &versions);
    std::vector<uint32_t> versions_of(GatewayNumber gateway) const;
    void drain();
    void read_back();
    bool read_last(GatewayNumber gateway, Reading &reading);
    GatewayNumber any_gateway();
    bool is_weak(GatewayNumber gateway) const;
    Ending judge_answer(const MixEntry &entry, const Request &request, const Outcome &outcome);
    void add_problem(const Request &request, const std::string &text);

    const DriveOptions options_;
    Ledger ledger_;
    Gathering gathering_;
    std::mt19937_64 random_;
    std::discrete_distribution<size_t> entry_;
    boost::asio::steady_timer timer_;
    Clock::time_point load_begin_;
    uint64_t planned_ = 0; // requests of the whole load
    uint64_t sent_ = 0;    // requests of the load whose time has come
    uint64_t held_back_ = 0;
    uint64_t different_ = 0; // answers to a request asked again
    bool is_complete_ = false;
};

} // namespace agent::fleet::platform

// SPDX-License-Identifier: MIT
// hgagent fleet campaign: a firmware update in waves, which stops when too many gateways fail.
#pragma once

#include "fleet/platform/run.h"

#include <map>
#include <random>
#include <string>
#include <vector>

namespace agent::fleet::platform {

struct CampaignOptions {
    PlatformOptions platform;
    std::string url;             // of the image
    std::string version;         // that runs when a gateway has updated
    std::vector<double> waves;   // percent of the gateways, each wave with those before it
    double stop_at = 5;          // percent of a wave that fails
    double rate = 10;            // gateways started per second
    std::chrono::seconds time{}; // within which a gateway has to run the version
};

class Campaign : public Run {
  public:
    explicit Campaign(CampaignOptions options);

  private:
    enum class Stage { kNotStarted, kStarting, kUpdating, kUpdated, kFailed };
    struct Update {
        Stage stage = Stage::kNotStarted;
        size_t wave = 0;
        bool is_flashed = false;
        Clock::time_point begun;
        std::string reason; // of a failure
    };
    struct Wave {
        double percent = 0;
        size_t gateways = 0;
        size_t updated = 0;
        size_t failed = 0;
        double seconds = 0; // how long it took
        size_t open() const { return gateways - updated - failed; }
    };

    void on_event(GatewayNumber gateway, std::string_view name, std::string_view data) override;
    void begin() override;
    nlohmann::ordered_json report() override;
    bool is_good() const override;
    std::vector<std::string> summary() const override;

    void begin_wave();
    void start_due();
    void start(GatewayNumber gateway);
    void look_at(GatewayNumber gateway);
    void succeed(GatewayNumber gateway);
    void fail(GatewayNumber gateway, const std::string &reason);
    void end_wave();
    bool is_too_bad(const Wave &wave) const;

    const CampaignOptions options_;
    std::vector<GatewayNumber> order_;
    std::vector<Update> updates_; // by gateway
    std::vector<Wave> waves_;     // those begun
    size_t next_ = 0;             // in the order, the first that has not been started
    size_t wave_end_ = 0;         // in the order, of the wave
    Clock::time_point wave_begin_;
    std::map<std::string, uint64_t> reasons_;
    bool is_stopped_ = false;
    bool is_complete_ = false;
};

} // namespace agent::fleet::platform

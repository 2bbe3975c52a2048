// SPDX-License-Identifier: MIT
// What is drawn from the fleet's seed: each gateway's home and weaknesses, and when which fault
// comes. Everything is a function of the seed and the number, so that a fleet comes back the same,
// and the platform's side can compute what to expect.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace agent::fleet {

// Scenarios with weights.
class Mix {
  public:
    // "three_storey_house=3,single_router". Throws std::invalid_argument, which says what is wrong.
    explicit Mix(std::string_view text);

    std::vector<std::string> scenarios() const;
    const std::string &scenario_of(uint64_t seed, uint32_t number) const;

  private:
    struct Part {
        std::string scenario;
        uint64_t weight = 1;
    };
    std::vector<Part> parts_;
    uint64_t sum_ = 0;
};

// Faults that a gateway always has, with --churn.
struct Weakness {
    // What its device library does in one of the functions.
    enum class Library { kWorks, kHangs, kCrashes, kAnswersRubbish };
    Library library = Library::kWorks;
    std::string function; // the function
    bool flash_fails = false;

    // In the form of the simulated gateway's fault plan.
    std::vector<std::string> faults() const;
};
Weakness weakness_of(uint64_t seed, uint32_t number);

// Faults that come, with --churn. The time is since the fleet's start.
using Time = std::chrono::milliseconds;
struct PowerLoss {
    Time time{0};
    Time off{0}; // until it starts again
    uint32_t number = 0;
};
// Those of the minute for the numbers, by time.
std::vector<PowerLoss> power_losses(uint64_t seed, uint32_t first, uint32_t count, uint32_t minute);

// When connections are cut: one wave in each of these intervals.
constexpr std::chrono::minutes kWaveInterval{5};
Time wave_time(uint64_t seed, uint32_t wave);
// Whether the wave takes the gateway's connection.
bool is_cut(uint64_t seed, uint32_t number, uint32_t wave);

// From 0 to 1, for what is not part of the plan, such as the jitter of a restart.
double random_fraction(uint64_t seed, uint64_t number, uint64_t count);

} // namespace agent::fleet

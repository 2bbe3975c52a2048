// SPDX-License-Identifier: MIT
// Counters of the gate, in the text format of Prometheus.
#pragma once

#include "service/common/request.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace agent::service {

class Metrics {
  public:
    // For each request that has been answered or refused.
    // code: why there is no result, otherwise empty.
    void count(Subject subject, std::string_view name, std::string_view code,
               std::optional<int32_t> result, std::chrono::microseconds time);
    // A worker has started.
    void count_worker() { ++workers_; }

    // What is counted by others.
    struct State {
        std::map<std::string, size_t, std::less<>> clients; // by transport
        size_t waiting = 0;
        bool is_idle = false;
    };
    std::string text(const State &state) const;

  private:
    static constexpr std::array<double, 6> kBounds = {0.001, 0.01, 0.1, 1, 10, 60}; // seconds

    struct Histogram {
        std::array<uint64_t, kBounds.size()> buckets = {}; // each with those before it
        uint64_t count = 0;
        std::chrono::microseconds sum{0};
    };

    template <class Value> using ByText = std::map<std::string, Value, std::less<>>;

    ByText<ByText<Histogram>> requests_; // by name and by result
    ByText<uint64_t> refusals_;          // by code
    uint64_t workers_ = 0;
};

} // namespace agent::service

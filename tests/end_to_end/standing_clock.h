// SPDX-License-Identifier: MIT
// Stops the clocks of an agent and of its simulated gateway at the same time.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

// Guard: the clocks of agents that are started are stopped at the time of the examples in the
// protocol's description.
class StandingClock {
  public:
    StandingClock()
    {
        setenv("SIMULATED_GATEWAY_TIME", "1767225600", 1);
        setenv("LD_PRELOAD", STANDING_CLOCK, 1);
        // By default the address sanitizer has to be the first library. The second option is the
        // one that all agents get by default, which they do not get if the variable is set.
        setenv(
            "ASAN_OPTIONS",
            (options_.value_or("intercept_tls_get_addr=0") + ":verify_asan_link_order=0").c_str(),
            1);
    }
    ~StandingClock()
    {
        unsetenv("SIMULATED_GATEWAY_TIME");
        unsetenv("LD_PRELOAD");
        if (options_) {
            setenv("ASAN_OPTIONS", options_->c_str(), 1);
        } else {
            unsetenv("ASAN_OPTIONS");
        }
    }
    StandingClock(const StandingClock &) = delete;
    StandingClock &operator=(const StandingClock &) = delete;

  private:
    static std::optional<std::string> given_options()
    {
        const char *options = getenv("ASAN_OPTIONS");
        return options != nullptr ? std::optional<std::string>(options) : std::nullopt;
    }

    const std::optional<std::string> options_ = given_options();
};

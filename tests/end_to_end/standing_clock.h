// The clocks of an agent and of its simulated gateway, standing at the same time.
#pragma once

#include <cstdlib>
#include <string>

// While it lives, agents that are started have their clocks stand, at the time of the examples in
// the protocol's description.
class StandingClock {
  public:
    StandingClock()
    {
        setenv("SIMULATED_GATEWAY_TIME", "1767225600", 1);
        setenv("LD_PRELOAD", STANDING_CLOCK, 1);
        // The address sanitizer wants to be the first library otherwise.
        setenv("ASAN_OPTIONS", (options_ + ":verify_asan_link_order=0").c_str(), 1);
    }
    ~StandingClock()
    {
        unsetenv("SIMULATED_GATEWAY_TIME");
        unsetenv("LD_PRELOAD");
        setenv("ASAN_OPTIONS", options_.c_str(), 1);
    }
    StandingClock(const StandingClock &) = delete;
    StandingClock &operator=(const StandingClock &) = delete;

  private:
    const std::string options_ = getenv("ASAN_OPTIONS") != nullptr ? getenv("ASAN_OPTIONS") : "";
};

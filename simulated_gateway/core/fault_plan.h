// The fault plan: which device calls fail instead of doing their work.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace simulated_gateway {

struct Fault {
    int32_t result = 0;
    std::optional<int64_t> calls_left; // nothing: every call from now on
    std::chrono::milliseconds delay{0};
};

class FaultPlan {
  public:
    // Adds "FUNCTION=RESULT[*COUNT][@DELAYms]", behind what is planned for the function already.
    // Throws an Error that quotes it.
    void add(std::string_view text);

    // What the function's next call has to answer; nothing when it may do its work.
    std::optional<Fault> next(std::string_view function);

  private:
    std::map<std::string, std::deque<Fault>, std::less<>> faults_;
};

} // namespace simulated_gateway

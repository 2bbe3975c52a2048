// SPDX-License-Identifier: MIT
// The fault plan: which device calls fail instead of being executed.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simulated_gateway {

struct Fault {
    // What the call does: it only returns the result, or fills what it should fill with random
    // bytes and returns 0, or aborts the process.
    enum class Kind { kResult, kRubbish, kCrash };
    Kind kind = Kind::kResult;
    int32_t result = 0;
    std::optional<int64_t> calls_left; // without a value: every call from now on
    std::chrono::milliseconds delay{0};
};

class FaultPlan {
  public:
    // Adds "FUNCTION=RESULT[*COUNT][@DELAYms]", where the result is a number, "rubbish" or "crash",
    // after the faults already planned for the function.
    // Throws an Error that quotes it.
    void add(std::string_view text);

    // The faults that are left, in the same form, in the order of the functions' names.
    std::vector<std::string> texts() const;
    // The functions that can fail.
    static std::vector<std::string_view> functions();

    // The planned result of the function's next call; nothing if the call is to be executed.
    std::optional<Fault> next(std::string_view function);

  private:
    std::map<std::string, std::deque<Fault>, std::less<>> faults_;
};

} // namespace simulated_gateway

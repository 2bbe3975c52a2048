// SPDX-License-Identifier: MIT
// What a gateway's process reports to the fleet, in memory that both share: thousands of pipes
// would cost more than all that is said.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace agent::fleet {

// A text of one process for another. The reader may get a mix of two texts.
template <size_t size> class SharedText {
  public:
    void set(std::string_view text)
    {
        const size_t length = text.copy(text_.data(), size - 1);
        text_[length] = '\0';
    }
    std::string get() const { return {text_.data(), strnlen(text_.data(), size)}; }

  private:
    std::array<char, size> text_ = {};
};

struct Slot {
    enum class Phase : uint32_t {
        kStarting,   // its process has not opened the home yet
        kConnecting, // has no connection
        kUp,
    };
    std::atomic<Phase> phase = Phase::kStarting;
    std::atomic<uint32_t> connections = 0; // made
    std::atomic<uint32_t> losses = 0;      // of connections
    std::atomic<uint32_t> takeovers = 0;   // of them: by another client with the same name
    std::atomic<uint64_t> requests = 0;
    // While a command is running: when it has to be finished, in milliseconds of the steady clock.
    std::atomic<int64_t> busy_until = 0;
    SharedText<48> command;  // that is running
    SharedText<160> problem; // why it has no connection, or why it has ended
};

inline int64_t steady_milliseconds()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace agent::fleet

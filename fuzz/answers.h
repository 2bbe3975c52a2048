// SPDX-License-Identifier: MIT
// The source of the steered device's results: the bytes of the input, one after the other. After
// their end all bytes are 0, with which the device works and returns plausible values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace fuzz {

class Answers {
  public:
    void begin(std::string_view bytes)
    {
        bytes_ = bytes;
        calls_ = 0;
        words_ = 0;
    }

    uint8_t byte()
    {
        if (bytes_.empty()) {
            return 0;
        }
        const auto first = static_cast<uint8_t>(bytes_.front());
        bytes_.remove_prefix(1);
        return first;
    }

    int32_t number()
    {
        uint32_t number = 0;
        for (int at = 0; at < 4; ++at) {
            number = number << 8 | byte();
        }
        return static_cast<int32_t>(number);
    }

    std::string_view text(size_t size)
    {
        const std::string_view taken = bytes_.substr(0, size);
        bytes_.remove_prefix(taken.size());
        return taken;
    }

    // Counted from the start of the input, so that plausible values differ from each other.
    size_t next_call() { return calls_++; }
    size_t next_word() { return words_++; }

  private:
    std::string_view bytes_;
    size_t calls_ = 0;
    size_t words_ = 0;
};

// Those of the current input. Only one thread calls device functions here (workers.cpp).
Answers &answers();

} // namespace fuzz

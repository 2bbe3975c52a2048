// SPDX-License-Identifier: MIT
// The arguments of device calls as a recording has them.
#pragma once

#include "host/device_layer.h"
#include "record/line_text.h"
#include "record/pseudonyms.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace agent::record {

// Takes the arguments of one call before and after it.
class ArgumentsText {
  public:
    // Memory that calls use one after the other.
    struct Memory {
        LineText texts;
        LineText bytes;
    };

    // Without pseudonyms, secrets are shown.
    ArgumentsText(const DeviceCall &call, const Pseudonyms *pseudonyms, Memory &memory);

    // Adds the member "arguments", if there are any, after the call.
    void add_to(LineText &line) const;

  private:
    static constexpr size_t kMost = [] {
        size_t most = 0;
        for (const device_layout::Function &function : device_layout::kFunctions) {
            most = std::max(most, function.arguments.size());
        }
        return most;
    }();

    struct Part {
        size_t begin = 0;
        size_t size = 0;
    };
    struct Before {
        Part bytes; // of a number and of a record; empty if all are zero
        Part text;  // the value; empty if all is zero or empty
    };

    void take(size_t at);
    void add_argument(LineText &line, size_t at) const;
    void add_value(LineText &line, size_t at, bool success) const;
    bool is_changed(size_t at) const;

    const DeviceCall &call_;
    const Pseudonyms *pseudonyms_;
    Memory &memory_;
    std::array<Before, kMost> before_ = {};
};

} // namespace agent::record

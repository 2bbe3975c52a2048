// SPDX-License-Identifier: MIT
// Completion of a line of the shell.
#pragma once

#include "protocol/description.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

// The values that exist on the gateway, by the part "found_in" of a key's description.
using KnownValues = std::function<std::vector<std::string>(const Description &found_in)>;

struct Completion {
    size_t begin = 0;                    // the text from here to the end is replaced
    std::string text;                    // by this, unless it is empty
    std::vector<std::string> candidates; // the possible texts as shown to the user
};

// Completes the end of the text, which is the line up to the cursor.
Completion complete(std::string_view text, const KnownValues &known_values);

// The texts of a reply that the part "found_in" refers to, without those that cannot be shown or
// typed.
std::vector<std::string> values_in_reply(const cJSON *reply, const Description &found_in);

} // namespace agent

// SPDX-License-Identifier: MIT
// What the driver sends: commands with weights, from a file in TOML.
#pragma once

#include "protocol/description.h"
#include "protocol/json.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace agent::fleet::platform {

struct MixEntry {
    std::string command;
    double weight = 1;
    Description description;
    Json tree; // the description on its own

    // Of a query, or of a command without a ledger.
    std::string params = "{}";
    bool is_change = false;

    // Of a setting, which the ledger keeps: the key that is changed, and its values in turn.
    bool is_setting = false;
    std::string key;
    std::vector<std::string> values;

    // The value of a gateway's change with this number.
    std::string value(std::string_view gateway, uint32_t sequence) const;
};

using Mix = std::vector<MixEntry>;

// Throws service::ConfigError.
Mix parse_mix(std::string_view text, const std::string &file);
Mix read_mix(const std::string &path);
// The one that is used unless a file is given.
std::string_view default_mix();

} // namespace agent::fleet::platform

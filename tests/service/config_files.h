// SPDX-License-Identifier: MIT
// Helpers for the tests of files.
#pragma once

#include "service/common/config_error.h"

#include <functional>
#include <string>

namespace agent::service {

// The problems that reading reports, one per line; empty when there are none.
inline std::string problems_of(const std::function<void()> &read)
{
    try {
        read();
    } catch (const ConfigError &wrong) {
        return wrong.what();
    }
    return "";
}

} // namespace agent::service

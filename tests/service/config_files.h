// SPDX-License-Identifier: MIT
// What the tests of files have in common.
#pragma once

#include "service/common/config_error.h"

#include <functional>
#include <string>

namespace agent::service {

// The problems that reading tells, a line each; empty when it tells none.
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

// SPDX-License-Identifier: MIT
// Why something cannot be done: one sentence that says what and why.
#pragma once

#include <stdexcept>

namespace linux_gateway {

class Error : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace linux_gateway

// SPDX-License-Identifier: MIT
// Puts rules into the kernel and keeps them there.
#pragma once

#include "enforcement/rules.h"

#include <string>

namespace linux_gateway {

class Enforcement {
  public:
    // Replaces the rules in force. Returns the reason if they cannot be applied, in which case the
    // previous ones stay; empty on success.
    std::string apply(const Rules &rules);
    // Ends the threads. The rules stay in the kernel.
    void stop();

  private:
    Rules rules_;
};

} // namespace linux_gateway

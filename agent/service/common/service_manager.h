// SPDX-License-Identifier: MIT
// systemd, where it has started us. Its library is loaded only then: no other start pays for it.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace agent::service {

class ServiceManager {
  public:
    ServiceManager();

    // "READY=1" and the like; does nothing where nobody listens.
    void notify(const std::string &state) const;
    // The sockets that were handed over.
    std::vector<int> take_sockets() const;
    // How often it wants to hear that we are alive; zero: not at all.
    std::chrono::microseconds watchdog() const;

  private:
    void *library_ = nullptr;
};

} // namespace agent::service

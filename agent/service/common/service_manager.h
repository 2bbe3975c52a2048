// SPDX-License-Identifier: MIT
// Communication with systemd if it has started this process. Its library is loaded only then, so
// that other starts do not pay for it.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace agent::service {

class ServiceManager {
  public:
    ServiceManager();

    // Sends "READY=1" and the like; does nothing without systemd.
    void notify(const std::string &state) const;
    // The sockets passed by systemd.
    std::vector<int> take_sockets() const;
    // The watchdog's timeout; zero: no watchdog.
    std::chrono::microseconds watchdog() const;

  private:
    void *library_ = nullptr;
};

} // namespace agent::service

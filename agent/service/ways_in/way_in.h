// SPDX-License-Identifier: MIT
// The interface of every transport, for the service that starts and ends it. It passes requests to
// the gate through Gate::open() and Gate::submit().
#pragma once

#include <functional>

namespace agent::service {

class WayIn {
  public:
    WayIn() = default;
    virtual ~WayIn() = default;
    WayIn(const WayIn &) = delete;
    WayIn &operator=(const WayIn &) = delete;

    // Accepts no more clients and no more requests.
    virtual void stop_accepting() = 0;
    // Closes each connection once its answers are written, and calls back when none is left.
    virtual void on_empty(std::function<void()> done) = 0;
};

} // namespace agent::service

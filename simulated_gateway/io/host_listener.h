// SPDX-License-Identifier: MIT
// A function of the host's that is notified of something.
#pragma once

#include <mutex>

namespace simulated_gateway {

// Report takes the facts and, behind them, the context.
template <class Report> class HostListener {
  public:
    void set(Report report, void *context)
    {
        const std::lock_guard lock(mutex_);
        report_ = report;
        context_ = context;
    }

    template <class... Facts> void notify(Facts... facts)
    {
        const std::lock_guard lock(mutex_);
        if (report_ != nullptr) {
            report_(facts..., context_);
        }
    }

  private:
    std::mutex mutex_; // held while the host is notified
    Report report_ = nullptr;
    void *context_ = nullptr;
};

} // namespace simulated_gateway

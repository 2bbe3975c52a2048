// SPDX-License-Identifier: MIT
// The terminal's signals and requests to terminate, through a descriptor to poll.
#pragma once

namespace agent {

// Must be constructed before any thread is started.
class ShellSignals {
  public:
    ShellSignals();
    ~ShellSignals();
    ShellSignals(const ShellSignals &) = delete;
    ShellSignals &operator=(const ShellSignals &) = delete;

    int descriptor() const { return descriptor_; }

    // The next signal that has arrived: SIGINT, SIGTERM, SIGWINCH or SIGCONT; 0 when there is none.
    int take() const;

  private:
    int descriptor_;
};

} // namespace agent

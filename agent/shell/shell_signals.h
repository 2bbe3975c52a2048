// SPDX-License-Identifier: MIT
// The signals that a terminal sends, and an orderly end, as something to be polled.
#pragma once

namespace agent {

// To be made before any thread is.
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

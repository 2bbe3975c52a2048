// SPDX-License-Identifier: MIT
// Stand-ins for the programs that a reboot runs.
#pragma once

#include <string>

// Guard: PATH names only a folder with stand-ins for sync and reboot, so that no shell can find the
// machine's. Each stand-in creates a file when it runs.
class RebootPrograms {
  public:
    RebootPrograms();
    ~RebootPrograms();
    RebootPrograms(const RebootPrograms &) = delete;
    RebootPrograms &operator=(const RebootPrograms &) = delete;

    // Whether a shell would run them. To be checked before anything that may reboot: some shells
    // have a built-in reboot.
    bool are_found() const;
    bool were_run() const;

  private:
    std::string folder_;
    std::string path_;
};

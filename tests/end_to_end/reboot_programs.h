// Stand-ins for the programs that a reboot runs.
#pragma once

#include <string>

// While it lives, PATH holds a folder with stand-ins for sync and reboot and nothing else, so that
// no shell can find those of the machine. The stand-ins leave a file each.
class RebootPrograms {
  public:
    RebootPrograms();
    ~RebootPrograms();
    RebootPrograms(const RebootPrograms &) = delete;
    RebootPrograms &operator=(const RebootPrograms &) = delete;

    // Whether they are what a shell would run. To be asked before anything that may reboot: some
    // shells have a reboot of their own.
    bool are_found() const;
    bool were_run() const;

  private:
    std::string folder_;
    std::string path_;
};

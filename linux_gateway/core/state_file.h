// SPDX-License-Identifier: MIT
// The file that the state is in. A reader finds the old or the new state, whenever the process is
// killed.
#pragma once

#include "core/state.h"
#include "system/files.h"

#include <string>

namespace linux_gateway {

class StateFile {
  public:
    // Locks the file for this process, unless another one has. Throws an Error if its folder cannot
    // be written.
    explicit StateFile(std::string path);

    bool is_ours() const { return is_ours_; }
    // Locks the file once the process that has locked it has ended. Whether it is ours now.
    bool lock();
    void unlock();

    // An empty state if there is no file yet. A damaged file is renamed, and logged. Throws an
    // Error if the file cannot be read: the next write() would replace it.
    State read() const;
    // Throws an Error; then the old state is in the file.
    void write(const State &state) const;

  private:
    std::string path_;
    FileDescriptor lock_;
    bool is_ours_ = false;
};

} // namespace linux_gateway

// SPDX-License-Identifier: MIT
// The file that keeps the gateway's state between runs.
#pragma once

#include "io/files.h"
#include "model/model.h"

#include <optional>
#include <string>

namespace simulated_gateway {

class StateFile {
  public:
    // Locks the state for the lifetime of the object. Throws an Error, also if another process has
    // the lock.
    explicit StateFile(const std::string &path);

    // Nothing if there is no file yet. Throws an Error if the file is invalid; it names the copy if
    // that is valid.
    std::optional<State> load();

    // The absolute path, with links resolved.
    const std::string &path() const { return path_; }

    // Replaces the file and its copy, each atomically. If it throws an Error, the old state is
    // still in place.
    void save(const State &state);

  private:
    std::string copy_path() const { return path_ + ".good"; }
    bool copy_holds() const;
    FileDescriptor locked(FileDescriptor file) const;

    std::string name_; // as the host gave it
    // The host may change its working directory, and two names of one file have to share a lock.
    std::string path_;
    FileDescriptor lock_;
    FileDescriptor file_; // locked as well: a hard link to it has a separate lock file
};

} // namespace simulated_gateway

// The file that keeps the gateway's state between runs.
#pragma once

#include "io/files.h"
#include "model/model.h"

#include <optional>
#include <string>

namespace simulated_gateway {

class StateFile {
  public:
    // Locks the state for as long as the object lives. Throws an Error, also when another process
    // holds the lock.
    explicit StateFile(const std::string &path);

    // Nothing when there is no file yet. Throws an Error when the file does not hold; it names the
    // copy where that does.
    std::optional<State> load();

    // Where it is: absolute and without links.
    const std::string &path() const { return path_; }

    // Replaces the file and its copy, each whole. Throws an Error, and then the old state is in
    // place.
    void save(const State &state);

  private:
    std::string copy_path() const { return path_ + ".good"; }
    bool copy_holds() const;
    FileDescriptor locked(FileDescriptor file) const;

    std::string name_; // as the host gave it
    // The host may change its folder, and two names for one file have to share a lock.
    std::string path_;
    FileDescriptor lock_;
    FileDescriptor file_; // locked as well: a hard link to it has a lock file of its own
};

} // namespace simulated_gateway

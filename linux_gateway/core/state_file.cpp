// SPDX-License-Identifier: MIT
#include "core/state_file.h"

#include "system/error.h"
#include "system/log.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <utility>

namespace linux_gateway {

constexpr size_t kMostStateBytes = 4 << 20;

StateFile::StateFile(std::string path) : path_(std::move(path))
{
    // A file of its own: the state itself is replaced at each change, and its lock with it.
    create_folder_of(path_);
    const std::string name = path_ + ".lock";
    constexpr mode_t owner_only = 0600;
    lock_ =
        FileDescriptor(open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, owner_only));
    if (lock_.get() < 0) {
        throw_file_error("cannot open", name);
    }
    lock();
}

bool StateFile::lock()
{
    is_ours_ = flock(lock_.get(), LOCK_EX | LOCK_NB) == 0;
    if (!is_ours_ && errno != EWOULDBLOCK) {
        throw_file_error("cannot lock", path_ + ".lock");
    }
    return is_ours_;
}

void StateFile::unlock()
{
    flock(lock_.get(), LOCK_UN);
    is_ours_ = false;
}

State StateFile::read() const
{
    const std::optional<std::string> text = read_file_unless_missing(path_, kMostStateBytes);
    if (!text) {
        return {};
    }
    try {
        return read_state(*text);
    } catch (const Error &error) {
        if (!is_ours_) {
            throw Error("the state file " + path_ + " is damaged: " + error.what());
        }
        const std::string aside = path_ + ".damaged";
        if (rename(path_.c_str(), aside.c_str()) != 0) {
            throw_file_error("cannot rename", path_);
        }
        log_error("the state file " + path_ + " is damaged: " + error.what() + "; it is kept as " +
                  aside + ", and all settings are lost");
        return {};
    }
}

void StateFile::write(const State &state) const
{
    replace_file(path_, to_json(state));
}

} // namespace linux_gateway

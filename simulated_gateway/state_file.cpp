#include "state_file.h"

#include "document.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>

namespace simulated_gateway {
namespace {

std::string real_path(const std::string &path)
{
    std::error_code failure;
    std::filesystem::path real = std::filesystem::absolute(path, failure);
    if (!failure) {
        real = std::filesystem::weakly_canonical(real, failure);
    }
    if (failure) {
        throw Error(path + ": " + failure.message());
    }
    return real.string();
}

} // namespace

StateFile::StateFile(const std::string &path) : name_(path), path_(real_path(path))
{
    // The lock has a file of its own, because the state's file is another one after every change.
    // It stays behind: removing it would let two processes lock two files of the same name.
    const std::string lock_path = path_ + ".lock";
    lock_ = FileDescriptor(open(lock_path.c_str(),
                                O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                                S_IRUSR | S_IWUSR));
    if (!lock_.is_open()) {
        refuse_file(lock_path);
    }
    if (flock(lock_.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) {
            throw Error(name_ + ": is in use by another gateway");
        }
        refuse_file(lock_path);
    }
}

std::optional<State> StateFile::load() const
{
    // A link to nowhere is there, but not a missing file: saving would put a file in its place.
    std::error_code failure;
    if (symlink_status(std::filesystem::path(path_), failure).type() ==
        std::filesystem::file_type::not_found) {
        return std::nullopt;
    }
    return read_document<State>(name_, read_file(path_), kStateFormat);
}

void StateFile::save(const State &state) const
{
    replace_file(path_, write_document(state, kStateFormat));
}

} // namespace simulated_gateway

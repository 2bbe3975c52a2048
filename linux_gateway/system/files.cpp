// SPDX-License-Identifier: MIT
#include "system/files.h"

#include "system/error.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace linux_gateway {
namespace {

// A file that exceeds the limit of the process's files raises SIGXFSZ, which would end the process.
class WithoutSizeSignal {
  public:
    WithoutSizeSignal()
    {
        sigemptyset(&signals_);
        sigaddset(&signals_, SIGXFSZ);
        pthread_sigmask(SIG_BLOCK, &signals_, &before_);
    }
    ~WithoutSizeSignal()
    {
        const int saved_errno = errno;
        if (sigismember(&before_, SIGXFSZ) == 0) {
            constexpr timespec at_once = {};
            sigtimedwait(&signals_, nullptr, &at_once);
        }
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
        errno = saved_errno;
    }
    WithoutSizeSignal(const WithoutSizeSignal &) = delete;
    WithoutSizeSignal &operator=(const WithoutSizeSignal &) = delete;

  private:
    sigset_t signals_;
    sigset_t before_;
};

bool write_all(int fd, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = write(fd, text.data(), text.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        text.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

std::string folder_of(const std::string &path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace

FileDescriptor::~FileDescriptor()
{
    if (fd_ >= 0) {
        close(fd_);
    }
}

FileDescriptor &FileDescriptor::operator=(FileDescriptor &&other) noexcept
{
    std::swap(fd_, other.fd_);
    return *this;
}

std::optional<std::string> read_file_if_there(const std::string &path, size_t most_bytes)
{
    // Without O_NONBLOCK, a named pipe in the place of the file would stop the gateway.
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (file.get() < 0 || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    std::string text;
    char part[16384];
    while (text.size() < most_bytes) {
        const ssize_t count =
            read(file.get(), part, std::min(sizeof(part), most_bytes - text.size()));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        text.append(part, static_cast<size_t>(count));
    }
    return text;
}

std::optional<std::string> read_file_unless_missing(const std::string &path, size_t most_bytes)
{
    struct stat status = {};
    std::optional<std::string> text = read_file_if_there(path, most_bytes);
    if (!text && lstat(path.c_str(), &status) == 0) {
        throw Error("cannot read " + path);
    }
    return text;
}

void replace_file(const std::string &path, std::string_view text)
{
    const WithoutSizeSignal guard;
    const std::string temporary = path + ".new";
    constexpr mode_t owner_only = 0600;
    const auto fail = [&](const char *what) {
        const int saved_errno = errno;
        unlink(temporary.c_str());
        errno = saved_errno;
        throw_file_error(what, path);
    };
    // One may be left from a process that was killed, or be something else, such as a named pipe.
    unlink(temporary.c_str());
    {
        const FileDescriptor file(
            open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, owner_only));
        if (file.get() < 0 || !write_all(file.get(), text) || fsync(file.get()) != 0) {
            fail("cannot write");
        }
    }
    if (rename(temporary.c_str(), path.c_str()) != 0) {
        fail("cannot replace");
    }
    // The new name is only certain to survive a power failure with its folder on the disk. A
    // failure does not undo the change, which every reader sees already.
    const FileDescriptor folder(open(folder_of(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.get() >= 0) {
        fsync(folder.get());
    }
}

void create_folder_of(const std::string &path)
{
    constexpr mode_t owner_only = 0700;
    mkdir(folder_of(path).c_str(), owner_only); // opening the file will say why it is not there
}

void throw_file_error(const char *what, const std::string &path)
{
    throw Error(std::string(what) + ' ' + path + ": " + std::generic_category().message(errno));
}

} // namespace linux_gateway

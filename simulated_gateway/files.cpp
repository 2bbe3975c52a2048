#include "files.h"

#include "text.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace simulated_gateway {
namespace {

constexpr size_t kLargestFile = 4U << 20;

// Keeps from the thread what a failing write raises besides its result: SIGPIPE where nobody reads
// a pipe, SIGXFSZ where a file grows beyond its limit. Either would end the host's process.
class WithoutWriteSignals {
  public:
    WithoutWriteSignals()
    {
        sigset_t pending;
        sigpending(&pending);
        sigemptyset(&raised_);
        for (const int signal : {SIGPIPE, SIGXFSZ}) {
            if (sigismember(&pending, signal) == 0) {
                sigaddset(&raised_, signal);
            }
        }
        pthread_sigmask(SIG_BLOCK, &raised_, &before_);
    }
    ~WithoutWriteSignals()
    {
        const int reason = errno;
        const timespec at_once = {};
        while (sigtimedwait(&raised_, nullptr, &at_once) > 0) {
        }
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
        errno = reason;
    }
    WithoutWriteSignals(const WithoutWriteSignals &) = delete;
    WithoutWriteSignals &operator=(const WithoutWriteSignals &) = delete;

  private:
    sigset_t raised_; // by our writes, if at all: these were not pending before
    sigset_t before_;
};

std::string folder_of(const std::string &path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

} // namespace

FileDescriptor::~FileDescriptor()
{
    if (is_open()) {
        close(fd_);
    }
}

FileDescriptor &FileDescriptor::operator=(FileDescriptor &&other) noexcept
{
    std::swap(fd_, other.fd_);
    return *this;
}

void refuse_file(const std::string &path)
{
    throw Error(path + ": " + std::generic_category().message(errno));
}

std::string read_file(const std::string &path)
{
    // Without O_NONBLOCK a pipe in the file's place would make us wait for its writer.
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat info = {};
    if (!file.is_open() || fstat(file.get(), &info) != 0) {
        refuse_file(path);
    }
    if (!S_ISREG(info.st_mode)) {
        throw Error(path + ": is no regular file");
    }
    std::string text;
    char block[16384];
    for (;;) {
        const ssize_t length = read(file.get(), block, sizeof(block));
        if (length == 0) {
            return text;
        }
        if (length < 0 && errno != EINTR) {
            refuse_file(path);
        }
        if (length > 0) {
            text.append(block, static_cast<size_t>(length));
        }
        if (text.size() > kLargestFile) {
            throw Error(path + ": is longer than " + std::to_string(kLargestFile) + " bytes");
        }
    }
}

void replace_file(const std::string &path, std::string_view text)
{
    // One fixed name: what a killed process left there is overwritten by the next.
    const std::string temporary = path + ".tmp";
    FileDescriptor file(open(temporary.c_str(),
                             O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                             S_IRUSR | S_IWUSR));
    const FileDescriptor folder(open(folder_of(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!file.is_open() || !folder.is_open()) {
        refuse_file(temporary);
    }
    if (!write_all(file.get(), text) || fsync(file.get()) != 0 ||
        rename(temporary.c_str(), path.c_str()) != 0) {
        const int reason = errno;
        unlink(temporary.c_str());
        errno = reason;
        refuse_file(path);
    }
    // The new text is in place already; where a file system cannot sync a folder, it has to do.
    fsync(folder.get());
}

bool write_all(int fd, std::string_view text)
{
    const WithoutWriteSignals without_signals;
    while (!text.empty()) {
        const ssize_t written = write(fd, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        if (written > 0) {
            text.remove_prefix(static_cast<size_t>(written));
        }
    }
    return true;
}

} // namespace simulated_gateway

// SPDX-License-Identifier: MIT
#include "io/files.h"

#include "io/text.h"

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

std::string folder_of(const std::string &path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

} // namespace

WithoutWriteSignals::WithoutWriteSignals()
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

WithoutWriteSignals::~WithoutWriteSignals()
{
    const int reason = errno;
    const timespec at_once = {};
    while (sigtimedwait(&raised_, nullptr, &at_once) > 0) {
    }
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    errno = reason;
}

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

void read_file(const std::string &path, const std::function<void(std::string_view)> &take)
{
    // Without O_NONBLOCK opening a named pipe would block until it has a writer.
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat info = {};
    if (!file.is_open() || fstat(file.get(), &info) != 0) {
        refuse_file(path);
    }
    if (!S_ISREG(info.st_mode)) {
        throw Error(path + ": is not a regular file");
    }
    char block[16384];
    for (;;) {
        const ssize_t length = read(file.get(), block, sizeof(block));
        if (length == 0) {
            return;
        }
        if (length < 0 && errno != EINTR) {
            refuse_file(path);
        }
        if (length > 0) {
            take({block, static_cast<size_t>(length)});
        }
    }
}

std::string read_file(const std::string &path)
{
    std::string text;
    read_file(path, [&](std::string_view block) {
        text.append(block);
        if (text.size() > kLargestFile) {
            throw Error(path + ": is longer than " + std::to_string(kLargestFile) + " bytes");
        }
    });
    return text;
}

// One fixed temporary name: the file of a killed process is overwritten by the next.
NewFile::NewFile(std::string path)
    : path_(std::move(path)), temporary_(path_ + ".tmp"),
      file_(open(temporary_.c_str(),
                 O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                 S_IRUSR | S_IWUSR)),
      folder_(open(folder_of(path_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    if (!file_.is_open() || !folder_.is_open()) {
        refuse_file(temporary_);
    }
}

NewFile::NewFile(NewFile &&other) noexcept
    : path_(std::move(other.path_)), temporary_(std::exchange(other.temporary_, {})),
      file_(std::move(other.file_)), folder_(std::move(other.folder_))
{
}

NewFile::~NewFile()
{
    if (!temporary_.empty()) {
        unlink(temporary_.c_str());
    }
}

void NewFile::write(std::string_view text)
{
    if (!write_all(file_.get(), text)) {
        refuse_file(path_);
    }
}

void NewFile::sync()
{
    if (fsync(file_.get()) != 0) {
        refuse_file(path_);
    }
}

FileDescriptor NewFile::duplicate() const
{
    FileDescriptor copy(fcntl(file_.get(), F_DUPFD_CLOEXEC, 0));
    if (!copy.is_open()) {
        refuse_file(path_);
    }
    return copy;
}

void NewFile::replace()
{
    sync();
    if (rename(temporary_.c_str(), path_.c_str()) != 0) {
        refuse_file(path_);
    }
    temporary_.clear();
    // The new file is already in place; if a file system cannot sync a folder, nothing more can be
    // done.
    fsync(folder_.get());
}

void replace_file(const std::string &path, std::string_view text)
{
    NewFile file(path);
    file.write(text);
    file.replace();
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

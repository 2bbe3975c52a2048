// SPDX-License-Identifier: MIT
// Files: read completely up to a limit, replaced completely or not at all.
#pragma once

#include <csignal>
#include <functional>
#include <string>
#include <string_view>

namespace simulated_gateway {

// Owns a file descriptor.
class FileDescriptor {
  public:
    explicit FileDescriptor(int fd = -1) : fd_(fd) {}
    ~FileDescriptor();
    FileDescriptor(FileDescriptor &&other) noexcept : fd_(other.fd_) { other.fd_ = -1; }
    FileDescriptor &operator=(FileDescriptor &&other) noexcept;

    int get() const { return fd_; }
    bool is_open() const { return fd_ >= 0; }

  private:
    int fd_;
};

// Suppresses in this thread the signals that a failing write raises: SIGPIPE if the reader is gone,
// SIGXFSZ if a file exceeds its size limit. Either would terminate the host's process.
class WithoutWriteSignals {
  public:
    WithoutWriteSignals();
    ~WithoutWriteSignals();
    WithoutWriteSignals(const WithoutWriteSignals &) = delete;
    WithoutWriteSignals &operator=(const WithoutWriteSignals &) = delete;

  private:
    sigset_t raised_; // not pending before: if they become so, our writes raised them
    sigset_t before_;
};

// Reads a regular file from start to end. Throws an Error that names the file.
void read_file(const std::string &path, const std::function<void(std::string_view)> &take);

// The text of a regular file of at most 4 MiB. Throws an Error that names the file.
std::string read_file(const std::string &path);

// A file that is written under a temporary name and then replaces another: a reader finds either
// the old or the new content, even if the process is killed. All functions throw an Error.
class NewFile {
  public:
    explicit NewFile(std::string path);
    ~NewFile();
    NewFile(NewFile &&other) noexcept;
    NewFile &operator=(NewFile &&) = delete;

    void write(std::string_view text);
    // Flushes what has been written to the disk.
    void sync();
    // Another descriptor of the file, which stays open when this object ends. They share a lock.
    FileDescriptor duplicate() const;
    // Syncs the file and renames it to its path.
    void replace();

  private:
    std::string path_;
    std::string temporary_;
    FileDescriptor file_;
    FileDescriptor folder_;
};

// Replaces the content of the file. If it throws an Error, the old content is still in place.
void replace_file(const std::string &path, std::string_view text);

// Writes everything to the descriptor, without raising a signal. Returns false on failure, with
// errno set.
bool write_all(int fd, std::string_view text);

// Throws an Error with the file's name and the text of errno.
[[noreturn]] void refuse_file(const std::string &path);

} // namespace simulated_gateway

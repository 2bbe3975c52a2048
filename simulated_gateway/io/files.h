// Files: read whole within a bound, replaced whole or not at all.
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

// Keeps from the thread what a failing write raises besides its result: SIGPIPE where nobody reads
// any more, SIGXFSZ where a file grows beyond its limit. Either would end the host's process.
class WithoutWriteSignals {
  public:
    WithoutWriteSignals();
    ~WithoutWriteSignals();
    WithoutWriteSignals(const WithoutWriteSignals &) = delete;
    WithoutWriteSignals &operator=(const WithoutWriteSignals &) = delete;

  private:
    sigset_t raised_; // by our writes, if at all: these were not pending before
    sigset_t before_;
};

// Reads a regular file from its start to its end. Throws an Error that names the file.
void read_file(const std::string &path, const std::function<void(std::string_view)> &take);

// The text of a regular file of at most 4 MiB. Throws an Error that names the file.
std::string read_file(const std::string &path);

// A file that is written aside and then put in the place of another: whoever reads that one,
// whenever the process is killed, finds the old content or the new. All throw an Error.
class NewFile {
  public:
    explicit NewFile(std::string path);
    ~NewFile();
    NewFile(NewFile &&other) noexcept;
    NewFile &operator=(NewFile &&) = delete;

    void write(std::string_view text);
    // What is written goes to the disk.
    void sync();
    // Another descriptor of the file, which stays open when this object ends. They share a lock.
    FileDescriptor duplicate() const;
    // Syncs it, and puts it in its place.
    void replace();

  private:
    std::string path_;
    std::string temporary_;
    FileDescriptor file_;
    FileDescriptor folder_;
};

// Puts a new text in the place of the file. Throws an Error, and then the old text is in place.
void replace_file(const std::string &path, std::string_view text);

// Writes to the descriptor until all is written. No signal is
// raised by it. Result: false on failure, with errno set.
bool write_all(int fd, std::string_view text);

// Throws an Error: the file and what errno says.
[[noreturn]] void refuse_file(const std::string &path);

} // namespace simulated_gateway

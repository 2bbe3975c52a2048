// Files: read whole within a bound, replaced whole or not at all.
#pragma once

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

// The text of a regular file of at most 4 MiB. Throws an Error that names the file.
std::string read_file(const std::string &path);

// Puts a new text in the place of the file: whoever reads it, whenever the process is killed, finds
// the old text or the new one. Throws an Error, and then the old text is in place.
void replace_file(const std::string &path, std::string_view text);

// Writes to the descriptor until all is written. No signal is
// raised by it. Result: false on failure, with errno set.
bool write_all(int fd, std::string_view text);

// Throws an Error: the file and what errno says.
[[noreturn]] void refuse_file(const std::string &path);

} // namespace simulated_gateway

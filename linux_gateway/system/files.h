// SPDX-License-Identifier: MIT
// Files: read up to a limit, replaced completely or not at all.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace linux_gateway {

// Closes a file descriptor at the end of its lifetime.
class FileDescriptor {
  public:
    explicit FileDescriptor(int fd = -1) : fd_(fd) {}
    ~FileDescriptor();
    FileDescriptor(FileDescriptor &&other) noexcept : fd_(other.fd_) { other.fd_ = -1; }
    FileDescriptor &operator=(FileDescriptor &&other) noexcept;

    int get() const { return fd_; }

  private:
    int fd_;
};

// The start of a regular file, at most so many bytes. Nothing if there is no file, or if it cannot
// be read.
std::optional<std::string> read_file_if_there(const std::string &path, size_t most_bytes);
// The same, but throws an Error if there is something that cannot be read.
std::optional<std::string> read_file_unless_missing(const std::string &path, size_t most_bytes);

// Replaces the content of the file: in a new file, synced and renamed. Throws an Error; then the
// old content is in place.
void replace_file(const std::string &path, std::string_view text);

// Creates the folder that the file is in, unless there is one; not those above it.
void create_folder_of(const std::string &path);

// Throws an Error: what, the path and the text of errno.
[[noreturn]] void throw_file_error(const char *what, const std::string &path);

} // namespace linux_gateway

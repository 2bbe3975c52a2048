// SPDX-License-Identifier: MIT
// Files and folders of a fuzzer.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace fuzz {

// A file in memory.
class MemoryFile {
  public:
    explicit MemoryFile(const char *name);
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    // Replaces the content. The next read() or write() is at its start.
    void put(std::string_view bytes) const;
    std::string content() const;

    int descriptor() const { return descriptor_; }
    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

  private:
    int descriptor_;
};

// A folder, in memory if possible, since each input writes files. It is removed with the object.
class Folder {
  public:
    explicit Folder(const std::string &name);
    ~Folder();
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    const std::filesystem::path &path() const { return path_; }

    // Removes what is in it. Result: how many files and folders there were.
    size_t clear() const;

  private:
    std::filesystem::path path_;
};

} // namespace fuzz

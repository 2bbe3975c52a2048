// SPDX-License-Identifier: MIT
#include "files.h"

#include "give_up.h"

#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace fuzz {

MemoryFile::MemoryFile(const char *name) : descriptor_(memfd_create(name, MFD_CLOEXEC))
{
    if (descriptor_ < 0) {
        give_up("no file in memory");
    }
}

void MemoryFile::put(std::string_view bytes) const
{
    if (ftruncate(descriptor_, 0) != 0 ||
        pwrite(descriptor_, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()) ||
        lseek(descriptor_, 0, SEEK_SET) != 0) {
        give_up("no file in memory");
    }
}

std::string MemoryFile::content() const
{
    std::string bytes(static_cast<size_t>(lseek(descriptor_, 0, SEEK_END)), '\0');
    if (pread(descriptor_, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        give_up("no file in memory");
    }
    return bytes;
}

Folder::Folder(const std::string &name)
{
    const fs::path memory = "/dev/shm";
    std::string path =
        (fs::exists(memory) ? memory : fs::temp_directory_path()) / (name + ".XXXXXX");
    if (mkdtemp(path.data()) == nullptr) {
        give_up("no folder", path);
    }
    path_ = path;
}

Folder::~Folder()
{
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

size_t Folder::clear() const
{
    size_t count = 0;
    for (const fs::directory_entry &entry : fs::directory_iterator(path_)) {
        fs::remove_all(entry.path());
        ++count;
    }
    return count;
}

} // namespace fuzz

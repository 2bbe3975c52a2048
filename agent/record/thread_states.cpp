// SPDX-License-Identifier: MIT
#include "record/thread_states.h"

#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace agent::record {

namespace {

constexpr char kThreads[] = "/proc/self/task";

// The letter behind the name in brackets, which may contain any character. A thread that has just
// ended cannot be read and counts as blocked.
char state_of(const char *thread)
{
    const std::string file = std::string(kThreads) + "/" + thread + "/stat";
    const int opened = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (opened < 0) {
        return 'X';
    }
    char text[512] = "";
    const ssize_t size = read(opened, text, sizeof text - 1);
    close(opened);
    const char *bracket = size > 0 ? strrchr(text, ')') : nullptr;
    return bracket != nullptr && bracket[1] == ' ' ? bracket[2] : 'X';
}

struct CloseFolder {
    void operator()(DIR *folder) const { closedir(folder); }
};

} // namespace

size_t count_of_threads()
{
    // The directory has a subdirectory for each thread, and each subdirectory adds a link.
    struct stat threads = {};
    return stat(kThreads, &threads) == 0 ? threads.st_nlink - 2 : 0;
}

bool are_others_blocked()
{
    const std::unique_ptr<DIR, CloseFolder> folder(opendir(kThreads));
    const std::string own = std::to_string(syscall(SYS_gettid));
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread reads this stream
    while (const dirent *entry = folder != nullptr ? readdir(folder.get()) : nullptr) {
        if (entry->d_name[0] == '.' || entry->d_name == own) {
            continue;
        }
        const char state = state_of(entry->d_name);
        if (state == 'R' || state == 'D') {
            return false;
        }
    }
    return true;
}

} // namespace agent::record

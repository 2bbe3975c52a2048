// SPDX-License-Identifier: MIT
#include "shell/shell_history.h"

#include "io/text.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace agent {

namespace {

constexpr size_t kMostLines = 1000;
constexpr size_t kMostBytes = 4096;
constexpr off_t kMostOfFile = 1024L * 1024; // beyond it, the oldest lines are dropped

[[noreturn]] void fail(const std::string &path, int reason)
{
    throw std::runtime_error("cannot keep the history in " + path + ": " +
                             std::generic_category().message(reason));
}

// Creates the parent directories of the file, accessible to the user only.
void make_folders(const std::filesystem::path &folder)
{
    std::error_code problem;
    if (folder.empty() || std::filesystem::is_directory(folder, problem)) {
        return;
    }
    make_folders(folder.parent_path());
    mkdir(folder.c_str(), S_IRWXU); // errors show when the file is opened
}

void write_all(int descriptor, const std::string &path, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            fail(path, errno);
        }
        text.remove_prefix(written > 0 ? static_cast<size_t>(written) : 0);
    }
}

} // namespace

std::string history_path()
{
    // NOLINTBEGIN(concurrency-mt-unsafe): nothing changes the environment
    const char *state = getenv("XDG_STATE_HOME");
    if (state != nullptr && state[0] == '/') {
        return std::string(state) + "/hgagent/history";
    }
    const char *home = getenv("HOME");
    if (home != nullptr && home[0] == '/') {
        return std::string(home) + "/.local/state/hgagent/history";
    }
    // NOLINTEND(concurrency-mt-unsafe)
    return "";
}

ShellHistory::ShellHistory(const std::string &path) : path_(path)
{
    make_folders(std::filesystem::path(path).parent_path());
    // Opening a pipe in its place would block the shell.
    descriptor_ =
        open(path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (descriptor_ < 0) {
        fail(path, errno);
    }
    struct stat file = {};
    if (fstat(descriptor_, &file) != 0 || !S_ISREG(file.st_mode)) {
        close(descriptor_);
        fail(path, EINVAL);
    }
    if ((file.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
        fchmod(descriptor_, S_IRUSR | S_IWUSR);
    }
    load();
}

ShellHistory::~ShellHistory()
{
    close(descriptor_);
}

void ShellHistory::load()
{
    struct stat file = {};
    fstat(descriptor_, &file);
    const off_t begin = file.st_size > kMostOfFile ? file.st_size - kMostOfFile : 0;
    std::string text(static_cast<size_t>(file.st_size - begin), '\0');
    const ssize_t size = pread(descriptor_, text.data(), text.size(), begin);
    text.resize(size > 0 ? static_cast<size_t>(size) : 0);
    size_t at = begin == 0 ? 0 : text.find('\n') + 1;
    while (at < text.size()) {
        const size_t end = std::min(text.find('\n', at), text.size());
        const std::string line = text.substr(at, end - at);
        if (!line.empty() && line.size() <= kMostBytes && is_valid_utf8(line) &&
            line.find('\0') == std::string::npos) {
            lines_.push_back(line);
        }
        at = end + 1;
    }
    if (lines_.size() > kMostLines) {
        lines_.erase(lines_.begin(), lines_.end() - kMostLines);
    }
    if (begin > 0) {
        std::string kept;
        for (const std::string &line : lines_) {
            kept += line + "\n";
        }
        if (ftruncate(descriptor_, 0) == 0) {
            write_all(descriptor_, path_, kept);
        }
    }
}

void ShellHistory::add(std::string_view line)
{
    if (!line.empty() && line.size() <= kMostBytes) {
        write_all(descriptor_, path_, std::string(line) + "\n");
    }
}

} // namespace agent

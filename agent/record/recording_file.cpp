// SPDX-License-Identifier: MIT
#include "record/recording_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <stdexcept>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace agent::record {

namespace {

// The smallest page of any Linux: the boundaries of larger ones are also boundaries of these.
constexpr size_t kPage = 4096;
constexpr std::string_view kPadding = "{}";
constexpr size_t kLeastPadding = kPadding.size() + 1;
constexpr std::string_view kBegin = R"({"recording":1,)";

} // namespace

RecordingFile::RecordingFile(std::string path, uint64_t limit)
    : path_(std::move(path)), limit_(limit)
{
    // Exceeding the file size limit must not end the process. An agent may have a handler.
    struct sigaction action = {};
    if (sigaction(SIGXFSZ, nullptr, &action) == 0 && action.sa_handler == SIG_DFL) {
        signal(SIGXFSZ, SIG_IGN);
    }
    open_file();
}

RecordingFile::~RecordingFile()
{
    flush();
    close_file();
}

void RecordingFile::open_file()
{
    // Without O_NONBLOCK, opening a pipe would block until it has a reader.
    file_ = open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR);
    struct stat status = {};
    if (file_ < 0 || fstat(file_, &status) != 0) {
        const int error = errno;
        close_file();
        throw std::system_error(error, std::generic_category(), path_);
    }
    if (!S_ISREG(status.st_mode) || flock(file_, LOCK_EX | LOCK_NB) != 0) {
        close_file();
        throw std::runtime_error(path_ + (S_ISREG(status.st_mode)
                                              ? ": another process records into this file"
                                              : ": not a regular file"));
    }
    written_ = static_cast<uint64_t>(status.st_size);
    if (!is_recording()) {
        close_file();
        throw std::runtime_error(path_ +
                                 ": not a recording of this version, so nothing is appended");
    }
    cut_incomplete_line();
}

void RecordingFile::close_file()
{
    if (file_ >= 0) {
        close(file_);
        file_ = -1;
    }
}

// Another file, named by mistake, would lose its last line. One that was cut before its first line
// is complete may be continued, also one of zeros, which a power failure leaves.
bool RecordingFile::is_recording() const
{
    std::array<char, kBegin.size()> begin = {};
    const ssize_t length = pread(file_, begin.data(), begin.size(), 0);
    const std::string_view found(begin.data(), length > 0 ? static_cast<size_t>(length) : 0);
    return kBegin.starts_with(found) || found.front() == '\0';
}

// A file system that was full, or a machine that lost its power, may have left one.
void RecordingFile::cut_incomplete_line()
{
    uint64_t end = written_;
    std::array<char, kPage> block = {};
    while (end > 0) {
        const size_t size = std::min<uint64_t>(end, block.size());
        const ssize_t length = pread(file_, block.data(), size, static_cast<off_t>(end - size));
        if (length != static_cast<ssize_t>(size)) {
            return;
        }
        const size_t line_end = std::string_view(block.data(), size).rfind('\n');
        end -= size;
        if (line_end != std::string_view::npos) {
            end += line_end + 1;
            break;
        }
    }
    if (end != written_ && ftruncate(file_, static_cast<off_t>(end)) == 0) {
        written_ = end;
    }
}

void RecordingFile::add(std::string_view begin, std::string_view rest)
{
    const size_t length = begin.size() + rest.size() + 1;
    const size_t gap = kPage - size() % kPage;
    if (length > gap && length <= kPage && gap < kPage) {
        fill_page(gap);
    }
    pending_.add(begin);
    pending_.add(rest);
    pending_.add('\n');
}

void RecordingFile::fill_page(size_t gap)
{
    if (pending_.size() > 0) {
        pending_.cut(pending_.size() - 1); // the blanks are part of the last line
    } else if (gap >= kLeastPadding) {
        pending_.add(kPadding);
        gap -= kPadding.size() + 1;
    } else {
        return;
    }
    static const std::string blanks(kPage, ' ');
    pending_.add(std::string_view(blanks).substr(0, gap));
    pending_.add('\n');
}

bool RecordingFile::flush()
{
    if (file_ < 0 || pending_.size() == 0) {
        return file_ >= 0;
    }
    const size_t gap = kPage - size() % kPage;
    if (gap < kLeastPadding) {
        fill_page(gap);
    }
    const std::string_view text = pending_.text();
    ssize_t written = 0;
    do {
        written = pwrite(file_, text.data(), text.size(), static_cast<off_t>(written_));
    } while (written < 0 && errno == EINTR);
    if (written != static_cast<ssize_t>(text.size())) {
        const int error = written < 0 ? errno : ENOSPC;
        [[maybe_unused]] const int cut = ftruncate(file_, static_cast<off_t>(written_));
        return fail(std::generic_category().message(error));
    }
    written_ += text.size();
    pending_.cut(0);
    return true;
}

void RecordingFile::flush_after_crash() const
{
    const std::string_view text = pending_.text();
    [[maybe_unused]] const ssize_t written =
        file_ < 0 ? 0 : pwrite(file_, text.data(), text.size(), static_cast<off_t>(written_));
}

bool RecordingFile::rotate()
{
    if (!flush()) {
        return false;
    }
    const std::string former = path_ + ".1";
    if (rename(path_.c_str(), former.c_str()) != 0) {
        return fail(std::generic_category().message(errno));
    }
    close_file();
    try {
        open_file();
    } catch (const std::runtime_error &problem) {
        return fail(problem.what());
    }
    return true;
}

bool RecordingFile::fail(const std::string &problem)
{
    close_file();
    pending_.cut(0);
    problem_ = path_ + ": " + problem;
    return false;
}

} // namespace agent::record

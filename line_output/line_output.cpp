// SPDX-License-Identifier: MIT
#include "line_output.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace line_output {

namespace {

constexpr int kPatience = 1000; // milliseconds
constexpr size_t kMaxReport = 200;

bool is_ready(int descriptor, int timeout)
{
    pollfd ready = {descriptor, POLLOUT, 0};
    int count = 0;
    do {
        count = poll(&ready, 1, timeout);
    } while (count < 0 && errno == EINTR);
    return count > 0;
}

// The next line, or the first part of it that a pipe accepts atomically.
std::string_view portion_of(std::string_view text)
{
    const size_t end = text.find('\n');
    const size_t length = end == std::string_view::npos ? text.size() : end + 1;
    return text.substr(0, std::min<size_t>(length, PIPE_BUF));
}

} // namespace

int own_descriptor(int descriptor)
{
    struct stat info = {};
    if (fstat(descriptor, &info) == 0 && (S_ISFIFO(info.st_mode) || S_ISCHR(info.st_mode))) {
        char path[32];
        snprintf(path, sizeof(path), "/proc/self/fd/%d", descriptor);
        const int own = open(path, O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
        if (own >= 0) {
            return own;
        }
    }
    return fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
}

void LineOutput::use(int descriptor)
{
    struct stat info = {};
    descriptor_ = descriptor;
    const bool is_known = fstat(descriptor, &info) == 0;
    is_socket_ = is_known && S_ISSOCK(info.st_mode);
    is_file_ = is_known && S_ISREG(info.st_mode);
}

void LineOutput::write(std::initializer_list<std::string_view> pieces)
{
    flush();
    size_t size = 0;
    for (const std::string_view piece : pieces) {
        size += piece.size();
    }
    // After the first dropped text, all texts are dropped until a line about them can be written in
    // their place. A file has no reader to wait for, and accepts a line of any length.
    if (lost_ > 0 || (!is_file_ && size > buffer_.size() - (end_ - begin_))) {
        ++lost_;
        return;
    }
    for (std::string_view piece : pieces) {
        while (piece.size() > buffer_.size() - (end_ - begin_)) {
            const size_t room = buffer_.size() - (end_ - begin_);
            append(piece.substr(0, room));
            piece.remove_prefix(room);
            flush();
        }
        append(piece);
    }
    flush();
}

void LineOutput::append(std::string_view piece)
{
    if (piece.size() > buffer_.size() - end_) {
        memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
        end_ -= begin_;
        begin_ = 0;
    }
    std::copy(piece.begin(), piece.end(), buffer_.begin() + static_cast<ptrdiff_t>(end_));
    end_ += piece.size();
}

void LineOutput::flush()
{
    write_kept();
    if (lost_ > 0 && !has_backlog()) {
        report_lost();
    }
}

void LineOutput::write_kept()
{
    while (has_backlog()) {
        const std::string_view kept(buffer_.data() + begin_, end_ - begin_);
        const std::string_view portion = portion_of(kept);
        ssize_t written = -1;
        if (is_socket_) {
            written =
                send(descriptor_, portion.data(), portion.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        } else if (is_ready(descriptor_, 0)) {
            written = ::write(descriptor_, portion.data(), portion.size());
        } else {
            return;
        }
        if (written > 0) {
            begin_ += static_cast<size_t>(written);
            in_line_ = portion[static_cast<size_t>(written) - 1] != '\n';
        } else if (written < 0 && errno == EAGAIN) {
            return;
        } else if (written == 0 || errno != EINTR) { // the reader is gone, or the disk is full
            lost_ += static_cast<uint64_t>(std::count(kept.begin(), kept.end(), '\n'));
            begin_ = end_;
        }
    }
    begin_ = 0;
    end_ = 0;
}

void LineOutput::report_lost()
{
    const uint64_t lost = lost_;
    char report[kMaxReport];
    snprintf(report, sizeof(report),
             "%s%.*s: %llu lines are missing here: they could not be written in time\n",
             in_line_ ? "\n" : "", static_cast<int>(name_.size()), name_.data(),
             static_cast<unsigned long long>(lost));
    lost_ = 0;
    append(report);
    write_kept();
    if (lost_ > 0) { // still no room; the report itself must not be counted
        lost_ = lost;
    }
}

void LineOutput::finish()
{
    flush();
    while (has_backlog() && is_ready(descriptor_, kPatience)) {
        const size_t before = end_ - begin_;
        flush();
        if (end_ - begin_ == before) {
            return;
        }
    }
}

} // namespace line_output

// SPDX-License-Identifier: MIT
#include "io/streams.h"

#include "io/error_output.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <linux/fs.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace agent {

namespace {

constexpr size_t kReadSize = 64UL * 1024;
constexpr size_t kMostLine = PTRDIFF_MAX / 2; // more than fits into memory

constexpr char kStandardInput[] = "standard input";

[[noreturn]] void fail(const std::string &what)
{
    const int reason = errno;
    throw StreamError(what + ": " + std::generic_category().message(reason));
}

// Like read(), but continues after a handled signal.
size_t read_some(int descriptor, const std::string &name, char *to, size_t size)
{
    ssize_t count = 0;
    do {
        count = read(descriptor, to, size);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        fail("cannot read " + name);
    }
    return static_cast<size_t>(count);
}

} // namespace

void secure_standard_streams()
{
    for (int wanted = STDIN_FILENO; wanted <= STDERR_FILENO; ++wanted) {
        if (fcntl(wanted, F_GETFD) < 0) {
            // Opened in the opposite mode: reading and writing fail as on a closed descriptor.
            const int opened = open("/dev/null", wanted == STDIN_FILENO ? O_WRONLY : O_RDONLY);
            if (opened != wanted) {
                fail("cannot open /dev/null");
            }
        }
    }
    signal(SIGPIPE, SIG_IGN);
    signal(SIGXFSZ, SIG_IGN);
}

StopSignals::StopSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    descriptor_ = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    if (descriptor_ < 0) {
        fail("cannot wait for signals");
    }
}

StopSignals::~StopSignals()
{
    close(descriptor_);
}

int StopSignals::arrived() const
{
    // The signal stays pending, so that it wakes every waiting thread.
    sigset_t pending;
    sigemptyset(&pending);
    sigpending(&pending);
    for (const int signal : {SIGINT, SIGTERM}) {
        if (sigismember(&pending, signal) == 1) {
            return signal;
        }
    }
    return 0;
}

StopSignals::Wait StopSignals::wait_for(int descriptor, short events,
                                        std::chrono::milliseconds time) const
{
    for (;;) {
        std::array<pollfd, 3> all = {pollfd{descriptor, events, 0}, pollfd{descriptor_, POLLIN, 0},
                                     pollfd{unwritten_error_output(), POLLOUT, 0}};
        const int ready = poll(all.data(), all.size(), static_cast<int>(time.count()));
        if (ready == 0) {
            return Wait::kTime;
        }
        if (ready < 0) {
            if (errno != EINTR) {
                fail("cannot wait for input or output");
            }
            continue;
        }
        if (all[2].revents != 0) {
            write_more_error_output();
        }
        if (all[1].revents != 0) {
            seen_ = true;
        }
        if (all[0].revents != 0 || all[1].revents != 0) {
            return all[0].revents != 0 ? Wait::kReady : Wait::kSignal;
        }
    }
}

void StopSignals::wait(std::chrono::milliseconds time) const
{
    pollfd signals = {descriptor_, POLLIN, 0};
    write_more_error_output();
    if (poll(&signals, 1, static_cast<int>(time.count())) < 0 && errno != EINTR) {
        fail("cannot wait for signals");
    }
}

LineReader::LineReader(const StopSignals &stop, size_t max_line)
    : stop_(stop), max_line_(max_line),
      buffer_(std::make_unique_for_overwrite<char[]>(std::min(max_line, kMostLine) + kReadSize))
{
}

LineReader::~LineReader()
{
    explicit_bzero(buffer_.get(), end_);
}

// Wipes the line that was returned last, which may contain passwords.
void LineReader::forget()
{
    explicit_bzero(buffer_.get() + given_, begin_ - given_);
    given_ = begin_;
}

// Waits for input and appends it to the buffer.
StopSignals::Wait LineReader::fill(std::chrono::milliseconds time)
{
    const StopSignals::Wait waited = stop_.wait_for(STDIN_FILENO, POLLIN, time);
    if (waited != StopSignals::Wait::kReady) {
        return waited;
    }
    if (begin_ > 0) {
        const size_t kept = end_ - begin_;
        memmove(buffer_.get(), buffer_.get() + begin_, kept);
        explicit_bzero(buffer_.get() + std::max(begin_, kept), end_ - std::max(begin_, kept));
        begin_ = 0;
        given_ = 0;
        end_ = kept;
    }
    const size_t count = read_some(STDIN_FILENO, kStandardInput, buffer_.get() + end_, kReadSize);
    end_ += count;
    ended_ = count == 0;
    return waited;
}

LineReader::Result LineReader::next(std::string_view &line, std::chrono::milliseconds time)
{
    size_t searched = 0; // bytes of the line known to contain no line end
    bool has_waited = false;
    forget();
    while (!stop_.seen()) {
        const std::string_view unread(buffer_.get() + begin_, end_ - begin_);
        const size_t length = std::min(unread.find('\n', searched), unread.size());
        const bool has_end = length < unread.size();
        const bool started = too_long_ || length > 0;
        too_long_ = too_long_ || length > max_line_;
        if (has_end || (ended_ && started)) {
            // A signal during the previous line; a wait has seen it already.
            if (!has_waited && stop_.arrived() != 0) {
                break;
            }
            const bool too_long = std::exchange(too_long_, false);
            line = too_long ? "" : unread.substr(0, length);
            begin_ += length + (has_end ? 1 : 0);
            return too_long ? Result::kTooLong : Result::kLine;
        }
        if (ended_) {
            return Result::kEnd;
        }
        if (too_long_) {
            begin_ += length;
            forget();
        }
        searched = end_ - begin_;
        const StopSignals::Wait waited = fill(time);
        has_waited = true;
        if (waited == StopSignals::Wait::kTime) {
            return Result::kNothing;
        }
        if (waited == StopSignals::Wait::kSignal) {
            break;
        }
    }
    return Result::kStopped;
}

ReplyOutput::ReplyOutput() : descriptor_(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1))
{
    if (descriptor_ < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {
        fail("cannot keep standard output for replies");
    }
}

ReplyOutput::~ReplyOutput()
{
    close(descriptor_);
}

bool ReplyOutput::is_terminal() const
{
    return isatty(descriptor_) != 0;
}

namespace {

size_t size_of(std::initializer_list<std::string_view> pieces)
{
    size_t size = 0;
    for (const std::string_view piece : pieces) {
        size += piece.size();
    }
    return size;
}

// The parts of pieces for one write.
struct Portion {
    std::array<iovec, 8> parts;
    int count = 0;
};

// The next bytes of the pieces from the place on.
Portion portion_of(std::initializer_list<std::string_view> pieces, size_t place, size_t room)
{
    Portion portion;
    for (const std::string_view piece : pieces) {
        const size_t skipped = std::min(place, piece.size());
        const size_t length = std::min(piece.size() - skipped, room);
        place -= skipped;
        if (length > 0 && static_cast<size_t>(portion.count) < portion.parts.size()) {
            // writev() takes constant data through a non-const pointer
            portion.parts[static_cast<size_t>(portion.count++)] = {
                const_cast<char *>(piece.data()) + skipped, length};
            room -= length;
        }
    }
    return portion;
}

// Writes as much as there is room for, without blocking, regardless of the flags of the descriptor,
// which belong to other processes as well. By its number, since not every C library has the
// function.
ssize_t write_now(int descriptor, const Portion &portion)
{
    constexpr long kNoPlace = -1;
    return syscall(SYS_pwritev2, descriptor, portion.parts.data(), portion.count, kNoPlace,
                   kNoPlace, RWF_NOWAIT);
}

} // namespace

bool ReplyOutput::write_line(std::string_view text, const StopSignals *stop)
{
    return write({text, "\n"}, stop);
}

bool ReplyOutput::write(std::initializer_list<std::string_view> pieces, const StopSignals *stop)
{
    const size_t size = size_of(pieces);
    size_t done = 0;
    const std::lock_guard lock(mutex_);
    bool must_wait = !can_write_now_;
    while (done < size) {
        given_up_ =
            given_up_ || (must_wait && stop != nullptr && !stop->wait_for(descriptor_, POLLOUT));
        if (given_up_) {
            return false;
        }
        ssize_t written = -1;
        if (must_wait) {
            // No more than a writable pipe accepts without blocking.
            const Portion portion = portion_of(pieces, done, PIPE_BUF);
            written = writev(descriptor_, portion.parts.data(), portion.count);
        } else {
            written = write_now(descriptor_, portion_of(pieces, done, size));
            must_wait = true;
            if (written < 0 && errno != EPIPE) {
                can_write_now_ = errno == EAGAIN || errno == EINTR;
                continue;
            }
        }
        if (written >= 0) {
            done += static_cast<size_t>(written);
        } else if (errno == EPIPE || errno == EBADF) {
            return false;
        } else if (errno != EINTR && errno != EAGAIN) {
            fail("cannot write to standard output");
        }
    }
    return true;
}

namespace {

std::string read_all(int descriptor, const std::string &name, size_t max_bytes)
{
    std::string text;
    size_t count = 0;
    do {
        const size_t used = text.size();
        text.resize(used + kReadSize);
        count = read_some(descriptor, name, text.data() + used, kReadSize);
        text.resize(used + count);
        if (text.size() > max_bytes) {
            throw StreamError(name + " is longer than " + std::to_string(max_bytes) + " bytes");
        }
    } while (count > 0);
    return text;
}

} // namespace

std::string read_all_input(size_t max_bytes)
{
    return read_all(STDIN_FILENO, kStandardInput, max_bytes);
}

std::string read_all_of(const std::string &path, size_t max_bytes)
{
    struct File {
        explicit File(const std::string &path)
            : descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC))
        {
        }
        ~File() { close(descriptor); }
        File(const File &) = delete;
        File &operator=(const File &) = delete;
        const int descriptor;
    };
    const File file(path);
    if (file.descriptor < 0) {
        fail("cannot open " + path);
    }
    return read_all(file.descriptor, path, max_bytes);
}

} // namespace agent

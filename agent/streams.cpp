#include "streams.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/signalfd.h>
#include <system_error>
#include <unistd.h>

namespace agent {

namespace {

constexpr size_t kReadSize = 64UL * 1024;

[[noreturn]] void fail(const char *what)
{
    throw StreamError(std::string(what) + ": " + std::generic_category().message(errno));
}

// As read(), but goes on after a signal that somebody handles.
size_t read_input(char *to, size_t size)
{
    ssize_t count = 0;
    do {
        count = read(STDIN_FILENO, to, size);
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        fail("cannot read standard input");
    }
    return static_cast<size_t>(count);
}

} // namespace

void secure_standard_streams()
{
    for (int wanted = STDIN_FILENO; wanted <= STDERR_FILENO; ++wanted) {
        if (fcntl(wanted, F_GETFD) < 0) {
            // Opened the wrong way round: reading and writing fail as they do when it is closed.
            const int opened = open("/dev/null", wanted == STDIN_FILENO ? O_WRONLY : O_RDONLY);
            if (opened != wanted) {
                fail("cannot open /dev/null");
            }
        }
    }
    signal(SIGPIPE, SIG_IGN);
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
    // It is never taken, so that it wakes every thread that waits.
    sigset_t pending;
    sigpending(&pending);
    for (const int signal : {SIGINT, SIGTERM}) {
        if (sigismember(&pending, signal) == 1) {
            return signal;
        }
    }
    return 0;
}

bool StopSignals::wait_for(int descriptor, short events) const
{
    std::array<pollfd, 2> both = {pollfd{descriptor, events, 0}, pollfd{descriptor_, POLLIN, 0}};
    while (poll(both.data(), both.size(), -1) < 0) {
        if (errno != EINTR) {
            fail("cannot wait for input or output");
        }
    }
    if (both[1].revents != 0) {
        seen_ = true;
    }
    return both[0].revents != 0;
}

void StopSignals::wait(std::chrono::milliseconds time) const
{
    pollfd signals = {descriptor_, POLLIN, 0};
    if (poll(&signals, 1, static_cast<int>(time.count())) < 0 && errno != EINTR) {
        fail("cannot wait for signals");
    }
}

// Adds what there is to read to the buffer. Result: false when a signal came first.
bool LineReader::fill()
{
    if (!stop_.wait_for(STDIN_FILENO, POLLIN)) {
        return false;
    }
    buffer_.erase(0, begin_);
    begin_ = 0;
    std::array<char, kReadSize> bytes; // not zeroed, which would cost more than answering a request
    const size_t count = read_input(bytes.data(), bytes.size());
    buffer_.append(bytes.data(), count);
    ended_ = count == 0;
    return true;
}

LineReader::Result LineReader::next(std::string &line)
{
    bool too_long = false;
    size_t searched = 0; // bytes of the line that hold no line end
    while (!stop_.seen()) {
        const size_t end = std::min(buffer_.find('\n', begin_ + searched), buffer_.size());
        const bool has_end = end < buffer_.size();
        const bool started = too_long || end > begin_;
        too_long = too_long || end - begin_ > max_line_;
        if (has_end || (ended_ && started)) {
            line = too_long ? "" : buffer_.substr(begin_, end - begin_);
            begin_ = has_end ? end + 1 : end;
            return too_long ? Result::kTooLong : Result::kLine;
        }
        if (ended_) {
            return Result::kEnd;
        }
        begin_ = too_long ? end : begin_;
        searched = end - begin_;
        if (!fill()) {
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

bool ReplyOutput::write_line(std::string text, const StopSignals *stop)
{
    text += '\n';
    std::string_view rest = text;
    const std::lock_guard lock(mutex_);
    while (!rest.empty()) {
        given_up_ = given_up_ || (stop != nullptr && !stop->wait_for(descriptor_, POLLOUT));
        if (given_up_) {
            return false;
        }
        // A pipe that is ready takes so much without waiting; more could wait for ever.
        const ssize_t written =
            write(descriptor_, rest.data(), std::min<size_t>(rest.size(), PIPE_BUF));
        if (written >= 0) {
            rest.remove_prefix(static_cast<size_t>(written));
        } else if (errno == EPIPE || errno == EBADF) {
            return false;
        } else if (errno != EINTR && errno != EAGAIN) {
            fail("cannot write to standard output");
        }
    }
    return true;
}

std::string read_all_input(size_t max_bytes)
{
    std::string text;
    size_t count = 0;
    do {
        const size_t used = text.size();
        text.resize(used + kReadSize);
        count = read_input(text.data() + used, kReadSize);
        text.resize(used + count);
        if (text.size() > max_bytes) {
            throw StreamError("standard input is longer than " + std::to_string(max_bytes) +
                              " bytes");
        }
    } while (count > 0);
    return text;
}

} // namespace agent

// SPDX-License-Identifier: MIT
// Standard input and output: lines of bounded length in, whole lines out, and an orderly end on a
// signal.
#pragma once

#include <atomic>
#include <chrono>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>

namespace agent {

// Standard input or output failed; what() says how.
class StreamError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Makes sure that descriptors 0 to 2 are in use: a file that is opened later must not become the
// standard output of a process that was started without one. Also makes a write to a closed pipe,
// or beyond the file size limit, fail instead of ending the process.
void secure_standard_streams();

// The signals SIGTERM and SIGINT, blocked until a wait. Must be constructed before any thread is
// started; afterwards every thread may check and wait.
class StopSignals {
  public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals &) = delete;
    StopSignals &operator=(const StopSignals &) = delete;

    // The signal that arrived, or 0.
    int arrived() const;

    // Waits until the descriptor is ready for the poll() events, or until a signal arrives;
    // meanwhile, pending output to standard error is written. Result: whether the descriptor is
    // ready.
    bool wait_for(int descriptor, short events) const
    {
        return wait_for(descriptor, events, kForEver) == Wait::kReady;
    }
    // The same with a timeout.
    enum class Wait { kReady, kSignal, kTime };
    static constexpr std::chrono::milliseconds kForEver{-1};
    Wait wait_for(int descriptor, short events, std::chrono::milliseconds time) const;

    // Whether a signal had arrived by the last wait. Costs nothing, unlike arrived().
    bool seen() const { return seen_; }

    // Waits for a signal, with a timeout.
    void wait(std::chrono::milliseconds time) const;

  private:
    int descriptor_;
    mutable std::atomic<bool> seen_ = false;
};

// Reads lines from standard input. A line that is too long is skipped and not kept. Memory for the
// longest line is allocated at the start, so that reading needs no memory later.
class LineReader {
  public:
    enum class Result { kLine, kTooLong, kEnd, kStopped, kNothing };

    LineReader(const StopSignals &stop, size_t max_line);
    ~LineReader();
    LineReader(const LineReader &) = delete;
    LineReader &operator=(const LineReader &) = delete;

    // On kLine, line is the line without its end; the last line need not have one. The next call
    // wipes it from memory. kNothing: no line arrived within the time. Throws StreamError.
    Result next(std::string_view &line, std::chrono::milliseconds time = StopSignals::kForEver);

  private:
    StopSignals::Wait fill(std::chrono::milliseconds time);
    void forget();

    const StopSignals &stop_;
    const size_t max_line_;
    const std::unique_ptr<char[]> buffer_;
    size_t given_ = 0;      // start of the line that was returned last
    size_t begin_ = 0;      // start of the next line
    size_t end_ = 0;        // end of what has been read
    bool too_long_ = false; // the current line is too long
    bool ended_ = false;
};

// Standard output, reserved for replies: from now on, output of libraries goes to standard error,
// so that it cannot mix with replies. Several threads may write; each line is written whole.
class ReplyOutput {
  public:
    ReplyOutput();
    ~ReplyOutput();
    ReplyOutput(const ReplyOutput &) = delete;
    ReplyOutput &operator=(const ReplyOutput &) = delete;

    bool is_terminal() const;

    // Writes the text and a line end. Result: false when the reader is gone. Throws StreamError.
    // With signals, gives up and returns false when one arrives while the output blocks; no further
    // line is written then, since this one may have been written in part.
    bool write_line(std::string_view text, const StopSignals *stop = nullptr);
    // The same for the pieces of a line with its end. Neither function allocates.
    bool write(std::initializer_list<std::string_view> pieces, const StopSignals *stop);

  private:
    int descriptor_;
    std::mutex mutex_;
    bool given_up_ = false;
    bool can_write_now_ = true; // until the system refuses to write without blocking
};

// Reads all of standard input. Throws StreamError, also when it is longer than max_bytes.
std::string read_all_input(size_t max_bytes);
// The same for a file, which may be a pipe.
std::string read_all_of(const std::string &path, size_t max_bytes);

} // namespace agent

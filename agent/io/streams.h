// SPDX-License-Identifier: MIT
// Standard input and output: lines of bounded length in, whole lines out, and an end when a signal
// asks for it.
#pragma once

#include <atomic>
#include <chrono>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace agent {

// Standard input or output failed; what() says how.
class StreamError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Makes sure that descriptors 0 to 2 are taken: a file that is opened later must not become the
// standard output of a process that was started without one. Also lets writing to a closed pipe, or
// to a file that may not grow, fail instead of ending the process.
void secure_standard_streams();

// The signals SIGTERM and SIGINT, held back until somebody waits. To be made before any thread is;
// then every thread may ask and wait.
class StopSignals {
  public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals &) = delete;
    StopSignals &operator=(const StopSignals &) = delete;

    // The signal that arrived, or 0.
    int arrived() const;

    // Waits until the descriptor is ready for the poll() events, or until a signal arrives; what
    // has not been written to standard error is, meanwhile. Result: whether the descriptor is
    // ready.
    bool wait_for(int descriptor, short events) const
    {
        return wait_for(descriptor, events, kForEver) == Wait::kReady;
    }
    // The same, but waits no longer than the time.
    enum class Wait { kReady, kSignal, kTime };
    static constexpr std::chrono::milliseconds kForEver{-1};
    Wait wait_for(int descriptor, short events, std::chrono::milliseconds time) const;

    // Whether a signal had arrived when somebody last waited. Costs nothing, unlike arrived().
    bool seen() const { return seen_; }

    // Waits for a signal, but no longer than the time.
    void wait(std::chrono::milliseconds time) const;

  private:
    int descriptor_;
    mutable std::atomic<bool> seen_ = false;
};

// Reads lines from standard input. A line that is too long is passed over without being kept. Room
// for the longest line is allocated at the start, so that reading needs no memory later on.
class LineReader {
  public:
    enum class Result { kLine, kTooLong, kEnd, kStopped, kNothing };

    LineReader(const StopSignals &stop, size_t max_line);
    ~LineReader();
    LineReader(const LineReader &) = delete;
    LineReader &operator=(const LineReader &) = delete;

    // On kLine, line is the line without its end; the last one need not have any. It is wiped from
    // memory by the next call. kNothing: there is none yet, and none came for so long. Throws
    // StreamError.
    Result next(std::string_view &line, std::chrono::milliseconds time = StopSignals::kForEver);

  private:
    StopSignals::Wait fill(std::chrono::milliseconds time);
    void forget();

    const StopSignals &stop_;
    const size_t max_line_;
    const std::unique_ptr<char[]> buffer_;
    size_t given_ = 0;      // where the line starts that has been handed out
    size_t begin_ = 0;      // where the next line starts
    size_t end_ = 0;        // of what has been read
    bool too_long_ = false; // the line that is being read
    bool ended_ = false;
};

// Standard output, kept for replies: what a library prints goes to standard error from here on, so
// that it cannot get between them. Several threads may write: each line comes out whole.
class ReplyOutput {
  public:
    ReplyOutput();
    ~ReplyOutput();
    ReplyOutput(const ReplyOutput &) = delete;
    ReplyOutput &operator=(const ReplyOutput &) = delete;

    bool is_terminal() const;

    // Writes the text and a line end. Result: false when nobody reads any more. Throws StreamError.
    // With signals, gives up and returns false when one arrives while nobody reads; no further line
    // is written then, since a part of this one may stand there.
    bool write_line(std::string_view text, const StopSignals *stop = nullptr);
    // The same for the pieces of a line with its end. Neither allocates anything.
    bool write(std::initializer_list<std::string_view> pieces, const StopSignals *stop);

  private:
    int descriptor_;
    std::mutex mutex_;
    bool given_up_ = false;
};

// All of standard input. Throws StreamError, also when it is longer than max_bytes.
std::string read_all_input(size_t max_bytes);
// The same of a file, which may be a pipe.
std::string read_all_of(const std::string &path, size_t max_bytes);

} // namespace agent

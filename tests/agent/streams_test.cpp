// SPDX-License-Identifier: MIT
// Standard output, and the signals that interrupt waiting for it.
#include "io/streams.h"

#include "captured_output.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <thread>
#include <unistd.h>

namespace streams_test {

// Guard: redirects standard output, and the agent's output with it, to a pipe.
class Pipe {
  public:
    Pipe() : before_(dup(STDOUT_FILENO))
    {
        fflush(stdout);
        EXPECT_EQ(pipe2(ends_, O_CLOEXEC | O_NONBLOCK), 0);
        dup2(ends_[1], STDOUT_FILENO);
        output_ = std::make_unique<agent::ReplyOutput>();
    }
    ~Pipe()
    {
        dup2(before_, STDOUT_FILENO);
        close(before_);
        close(ends_[0]);
        close(ends_[1]);
    }
    Pipe(const Pipe &) = delete;
    Pipe &operator=(const Pipe &) = delete;

    agent::ReplyOutput &output() { return *output_; }
    int reader() const { return ends_[0]; }
    // What has been written and not been read yet.
    std::string content() const
    {
        std::string content;
        char bytes[4096];
        for (ssize_t count = 0; (count = read(ends_[0], bytes, sizeof(bytes))) > 0;) {
            content.append(bytes, static_cast<size_t>(count));
        }
        return content;
    }

  private:
    int before_;
    int ends_[2] = {-1, -1};
    std::unique_ptr<agent::ReplyOutput> output_;
};

// Guard: blocks SIGTERM for the process.
class PendingSignal {
  public:
    PendingSignal() { kill(getpid(), SIGTERM); }
    ~PendingSignal()
    {
        sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGTERM);
        int taken = 0;
        sigwait(&signals, &taken);
    }
    PendingSignal(const PendingSignal &) = delete;
    PendingSignal &operator=(const PendingSignal &) = delete;
};

TEST(ReplyOutput, WritesWholeLinesFromManyThreads)
{
    constexpr int kThreads = 4;
    constexpr int kLines = 500;
    CapturedOutput captured;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&captured, thread] {
            const std::string line(9000, static_cast<char>('a' + thread)); // not written atomically
            for (int count = 0; count < kLines; ++count) {
                EXPECT_TRUE(captured.output().write_line(line));
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    const std::vector<std::string> lines = captured.lines();
    EXPECT_EQ(lines.size(), static_cast<size_t>(kThreads * kLines));
    for (const std::string &line : lines) {
        EXPECT_EQ(line, std::string(9000, line.front()));
    }
}

TEST(ReplyOutput, WritesPiecesOfAnyNumberAndLength)
{
    const agent::StopSignals stop;
    Pipe pipe;
    const std::string page(4096, 'p');
    std::string more; // without repetition
    for (int count = 0; count < 1500; ++count) {
        more += std::to_string(count) + " ";
    }
    EXPECT_TRUE(pipe.output().write(
        {"", page, "", more, "1", "2", "3", "4", "5", "6", "7", "8", "9", "", "\n"}, &stop));
    EXPECT_EQ(pipe.content(), page + more + "123456789\n");
}

TEST(ReplyOutput, WritesNothingAfterATruncatedLine)
{
    const agent::StopSignals stop;
    Pipe pipe;
    EXPECT_TRUE(pipe.output().write_line("whole", &stop));
    const PendingSignal signal;
    EXPECT_FALSE(pipe.output().write_line(std::string(1000000, 'x'), &stop));
    const std::string content = pipe.content();
    EXPECT_TRUE(content.starts_with("whole\nxxx"));
    EXPECT_LT(content.size(), 1000000U);

    EXPECT_FALSE(pipe.output().write_line("next", &stop));
    EXPECT_FALSE(pipe.output().write_line("next"));
    EXPECT_EQ(pipe.content(), "");
}

TEST(ReplyOutput, StillWritesWhenASignalHasArrived)
{
    const agent::StopSignals stop;
    Pipe pipe;
    const PendingSignal signal;
    EXPECT_TRUE(pipe.output().write_line("whole", &stop));
    EXPECT_EQ(pipe.content(), "whole\n");
}

TEST(StopSignals, WakeEveryThread)
{
    const agent::StopSignals stop;
    const Pipe pipe;
    EXPECT_EQ(stop.arrived(), 0);
    const auto wait = [&] {
        EXPECT_FALSE(stop.wait_for(pipe.reader(), POLLIN));
    };
    std::thread one(wait);
    std::thread other(wait);
    const PendingSignal signal;
    one.join();
    other.join();
    EXPECT_EQ(stop.arrived(), SIGTERM);
}

// Guard: redirects standard input to a pipe.
class InputPipe {
  public:
    InputPipe() : before_(dup(STDIN_FILENO))
    {
        EXPECT_EQ(pipe2(ends_, O_CLOEXEC), 0);
        dup2(ends_[0], STDIN_FILENO);
    }
    ~InputPipe()
    {
        dup2(before_, STDIN_FILENO);
        close(before_);
        close(ends_[0]);
        close(ends_[1]);
    }
    InputPipe(const InputPipe &) = delete;
    InputPipe &operator=(const InputPipe &) = delete;

    void send(std::string_view text) const
    {
        EXPECT_EQ(write(ends_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

  private:
    int before_;
    int ends_[2] = {-1, -1};
};

TEST(LineReader, ReturnsWhenNoLineHasArrived)
{
    using Result = agent::LineReader::Result;
    constexpr std::chrono::milliseconds kShort(1);
    const agent::StopSignals stop;
    const InputPipe input;
    agent::LineReader reader(stop, 5);
    std::string_view line;
    EXPECT_EQ(reader.next(line, kShort), Result::kNothing);
    input.send("ab");
    while (reader.next(line, kShort) != Result::kNothing) {
    }
    input.send("cde\n12345");
    EXPECT_EQ(reader.next(line, kShort), Result::kLine);
    EXPECT_EQ(line, "abcde");
    EXPECT_EQ(reader.next(line, kShort), Result::kNothing);
    input.send("678"); // too long from here on, even after the read part was dropped
    EXPECT_EQ(reader.next(line, kShort), Result::kNothing);
    input.send("9\nnext\n");
    EXPECT_EQ(reader.next(line, kShort), Result::kTooLong);
    EXPECT_EQ(reader.next(line, kShort), Result::kLine);
    EXPECT_EQ(line, "next");
    const PendingSignal signal;
    EXPECT_EQ(reader.next(line, agent::StopSignals::kForEver), Result::kStopped);
}

} // namespace streams_test

// The log's lines on standard error.
#include "log_sink.h"

#include <gmock/gmock.h>

#include <sstream>
#include <string>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

// Standard error, kept in a file for as long as this lives.
class Captured {
  public:
    Captured() : file_(memfd_create("log", 0)), before_(dup(STDERR_FILENO))
    {
        dup2(file_, STDERR_FILENO);
    }
    ~Captured()
    {
        dup2(before_, STDERR_FILENO);
        close(before_);
        close(file_);
    }
    std::vector<std::string> lines() const
    {
        std::string content(static_cast<size_t>(lseek(file_, 0, SEEK_END)), '\0');
        const ssize_t count = pread(file_, content.data(), content.size(), 0);
        EXPECT_EQ(count, static_cast<ssize_t>(content.size()));
        std::vector<std::string> lines;
        std::istringstream stream(content);
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(line);
        }
        return lines;
    }

  private:
    int file_;
    int before_;
};

} // namespace

TEST(LogSink, WritesOneLineForEachCall)
{
    const Captured error;
    agent::log_line(3, "no end");
    agent::log_line(3, "an end\n");
    agent::log_line(0, "another end\r\n");
    agent::log_line(-1, "two ends\n\n");
    agent::log_line(3, "%s", "");
    agent::log_line(4, "too detailed");
    EXPECT_THAT(error.lines(), testing::ElementsAre("<3> hgagent: no end", "<3> hgagent: an end",
                                                    "<0> hgagent: another end",
                                                    "<-1> hgagent: two ends\\n", "<3> hgagent: "));
}

TEST(LogSink, WritesWholeLinesFromManyThreads)
{
    constexpr int kThreads = 8;
    constexpr int kLines = 500;
    const Captured error;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread] {
            const std::string text(300, static_cast<char>('a' + thread));
            for (int line = 0; line < kLines; ++line) {
                agent::log_line(3, "%s", text.c_str());
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    const std::vector<std::string> lines = error.lines();
    EXPECT_EQ(lines.size(), static_cast<size_t>(kThreads * kLines));
    for (const std::string &line : lines) {
        EXPECT_EQ(line, "<3> hgagent: " + std::string(300, line.back()));
    }
}

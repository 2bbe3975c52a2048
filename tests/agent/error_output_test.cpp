// SPDX-License-Identifier: MIT
// Lines on standard error, and the status line below them.
#include "io/error_output.h"

#include "captured_error.h"

#include <string>
#include <thread>
#include <vector>

TEST(ErrorOutput, KeepsTheStatusLineBelowTheLines)
{
    const CapturedError error;
    agent::write_error_line("before");
    agent::set_status_line("one");
    agent::set_status_line("two");
    agent::write_error_line("line");
    agent::set_status_line("");
    agent::set_status_line("");
    agent::write_error_line("after");
    EXPECT_EQ(error.text(), "before\n"
                            "one"
                            "\r\x1b[Ktwo"
                            "\r\x1b[Kline\ntwo"
                            "\r\x1b[K"
                            "after\n");
}

TEST(ErrorOutput, HidesTheStatusLine)
{
    const CapturedError error;
    agent::set_status_line("one");
    {
        const agent::WithoutStatusLine hidden;
        agent::write_error_line("line");
        agent::set_status_line("two");
    }
    agent::set_status_line("");
    {
        const agent::WithoutStatusLine hidden;
    }
    EXPECT_EQ(error.text(), "one"
                            "\r\x1b[Kline\ntwo"
                            "\r\x1b[K");
}

TEST(ErrorOutput, WritesWholeLinesFromManyThreads)
{
    constexpr int kLines = 500;
    const std::string text(300, 'x');
    const CapturedError error;
    std::thread other([&] {
        for (int line = 0; line < kLines; ++line) {
            agent::set_status_line(std::to_string(line));
        }
        agent::set_status_line("");
    });
    for (int line = 0; line < kLines; ++line) {
        agent::write_error_line(text);
    }
    other.join();
    int whole = 0;
    for (const std::string &line : error.lines()) {
        whole += line.ends_with(text) ? 1 : 0;
    }
    EXPECT_EQ(whole, kLines);
}

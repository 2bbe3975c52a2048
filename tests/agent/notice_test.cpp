// SPDX-License-Identifier: MIT
// What happens to the notices that libraries send.
#include "host/notice_receiver.h"

#include "captured_error.h"
#include "captured_output.h"
#include "protocol/json_text.h"
#include "smart_router_service/host_agent.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <new>
#include <thread>

using agent::Json;
using agent::NoticeReceiver;

TEST(Notices, GoToTheirReceiver)
{
    std::vector<std::string> received;
    const NoticeReceiver receiver(0, [&](const Json &notice) {
        received.push_back(agent::print(notice.get()));
        return true;
    });
    EXPECT_EQ(kaa_device_notice("{\n\t\"b\":\t1,\n\t\"a\":\t\"\\n\"\n}"), 0);
    EXPECT_EQ(kaa_device_notice("no \"JSON\""), 0);
    EXPECT_EQ(kaa_device_notice("{} {}"), 0);
    EXPECT_EQ(kaa_device_notice(""), 0);
    EXPECT_EQ(kaa_device_notice("{\"a\":\"\xd6\xd0\"}"), 0); // GBK
    EXPECT_THAT(received, testing::ElementsAre(R"({"b":1,"a":"\n"})", R"("no \"JSON\"")",
                                               R"("{} {}")", R"("")", "{\"a\":\"\u4e2d\"}"));
    EXPECT_NE(kaa_device_notice(nullptr), 0);
    EXPECT_EQ(received.size(), 5U);
}

TEST(Notices, AreRefusedWithoutAReceiver)
{
    const CapturedError error;
    EXPECT_EQ(kaa_device_notice("{}"), -1);
    {
        const NoticeReceiver receiver(0, [](const Json &) { return true; });
        EXPECT_EQ(kaa_device_notice("{}"), 0);
    }
    EXPECT_EQ(kaa_device_notice("{}"), -1);
    EXPECT_EQ(error.lines(), std::vector<std::string>(2, "<3> hgagent: nobody receives notices"));
}

TEST(Notices, AreRefusedWhenTheyAreNotPassedOn)
{
    const CapturedError error;
    {
        const NoticeReceiver receiver(0, [](const Json &) { return false; });
        EXPECT_EQ(kaa_device_notice("{}"), -1);
    }
    {
        const NoticeReceiver receiver(0, [](const Json &) -> bool { throw std::bad_alloc(); });
        EXPECT_EQ(kaa_device_notice("{}"), -1);
    }
    EXPECT_THAT(error.lines(), testing::ElementsAre("<3> hgagent: a notice is lost: " +
                                                    std::string(std::bad_alloc().what())));
}

TEST(Notices, CanBeRefusedWithAnyResult)
{
    bool passed_on = false;
    const NoticeReceiver receiver(-7, [&](const Json &) { return passed_on = true; });
    EXPECT_EQ(kaa_device_notice("{}"), -7);
    EXPECT_FALSE(passed_on);
}

TEST(Notices, FromManyThreadsDoNotSplitOtherLines)
{
    constexpr int kThreads = 8;
    constexpr int kLines = 200;
    CapturedOutput captured;
    const NoticeReceiver receiver(0, [&](const Json &notice) {
        return captured.output().write_line(agent::print(notice.get()));
    });
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread] {
            const std::string text = '"' + std::string(9000, static_cast<char>('a' + thread)) + '"';
            for (int line = 0; line < kLines; ++line) {
                EXPECT_EQ(kaa_device_notice(text.c_str()), 0);
            }
        });
    }
    const std::string answer(9000, '1');
    for (int line = 0; line < kThreads * kLines; ++line) {
        EXPECT_TRUE(captured.output().write_line(answer));
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    const std::vector<std::string> lines = captured.lines();
    EXPECT_EQ(lines.size(), static_cast<size_t>(2 * kThreads * kLines));
    EXPECT_EQ(std::count(lines.begin(), lines.end(), answer), kThreads * kLines);
    for (const std::string &line : lines) {
        if (line != answer) {
            EXPECT_EQ(line, '"' + std::string(9000, line[1]) + '"');
        }
    }
}

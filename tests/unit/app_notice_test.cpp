// SPDX-License-Identifier: MIT
#include "clock_control.h"
#include "failing_memory.h"
#include "handler_test.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <thread>

namespace app_notice_test {

constexpr time_t kMoment = 1736240703; // 2025-01-07 09:05:03 UTC
const std::string kNul(1, '\0');

// An envelope as it is sent.
std::string envelope(const std::string &plugin, const std::string &time, const std::string &md5,
                     const std::string &mac, const std::string &message)
{
    return "{\n\t\"RPCMethod\":\t\"Push\",\n\t\"Plugin_Name\":\t\"" + plugin +
           "\",\n\t\"time\":\t\"" + time + "\",\n\t\"MD5\":\t\"" + md5 + "\",\n\t\"mac\":\t\"" +
           mac + "\",\n\t\"Message\":\t\"" + message + "\"\n}";
}

class AppNoticeTest : public HandlerTest {
  protected:
    AppNoticeTest()
    {
        when<base64_encode>(
            [](const char *text) { return strdup((std::string("base64 of ") + text).c_str()); });
        when<getmd5>([](const char *, char *out) { strcpy(out, "a digest"); });
        writes<devapi_get_iotagtd_device_mac>("3c:6a:d2:10:4f:20");
        when<mac_form_translate>([](const char *, int32_t, char *out) { strcpy(out, "3C6AD2"); });
    }

    // Each text that the host has given is released once, with the host's own function.
    static void expect_released(const std::string &text, long times = 1)
    {
        const Calls calls = recording_device::calls();
        EXPECT_EQ(std::count(calls.begin(), calls.end(), Call{"free_str_buf", {text}}), times);
    }

    // The other calls, in order.
    static Calls calls()
    {
        Calls calls = recording_device::calls();
        std::erase_if(calls, [](const Call &call) { return call.function == "free_str_buf"; });
        return calls;
    }

    // The text that reached the agent; empty when none did.
    static std::string sent()
    {
        const Calls made = calls();
        return !made.empty() && made.back().function == "kaa_device_notice"
                   ? made.back().arguments[0]
                   : "";
    }

    ClockControl clock{kMoment};
};

TEST_F(AppNoticeTest, IsWrappedAndSent)
{
    const std::string text =
        envelope("guard", "20250107090503", "a digest", "3C6AD2", "base64 of hello");
    when<kaa_device_notice>([](const char *) {
        EXPECT_EQ(recording_host::log_lines().size(), 1u) << "logged before it is sent";
        return 0;
    });
    EXPECT_EQ(json_msg_notice_to_app("hello", "guard"), 0);
    EXPECT_EQ(calls(), (Calls{{"base64_encode", {"hello"}},
                              {"getmd5", {"base64 of hello", kNul}},
                              {"devapi_get_iotagtd_device_mac", {kNul, "32"}},
                              {"mac_form_translate", {"3c:6a:d2:10:4f:20", "1", kNul}},
                              {"kaa_device_notice", {text}}}));
    expect_released("base64 of hello");
    EXPECT_EQ(recording_host::log_lines(), (LogLines{{7, "notice to app:\n" + text + "\n"}}));
}

TEST_F(AppNoticeTest, MayBeEmpty)
{
    EXPECT_EQ(json_msg_notice_to_app("", ""), 0);
    EXPECT_EQ(sent(), envelope("", "20250107090503", "a digest", "3C6AD2", "base64 of "));
}

TEST_F(AppNoticeTest, MayHaveAnyContentAndLength)
{
    const std::string message(1 << 20, 'x');
    EXPECT_EQ(json_msg_notice_to_app(message.c_str(), "a\"b\\c\n%s%n\xc4\xe3\x01"), 0);
    EXPECT_EQ(calls()[0], (Call{"base64_encode", {message}}));
    EXPECT_EQ(sent(), envelope("a\\\"b\\\\c\\n%s%n\xc4\xe3\\u0001", "20250107090503", "a digest",
                               "3C6AD2", "base64 of " + message));
    EXPECT_EQ(recording_host::log_lines()[0].text, "notice to app:\n" + sent() + "\n");
    expect_released("base64 of " + message);
}

TEST_F(AppNoticeTest, HasTheLocalTime)
{
    const struct {
        time_t moment;
        const char *zone;
        const char *text;
    } moments[] = {
        {kMoment, "CST-8", "20250107170503"},
        {kMoment, "EST5", "20250107040503"},
        {0, "UTC0", "19700101000000"},
        {-2, "UTC0", "19691231235958"},
        {1735689599, "UTC0", "20241231235959"},
        {INT32_MAX, "UTC0", "20380119031407"},
#if __SIZEOF_LONG__ == 8
        {253402300800, "UTC0", "100000101000000"},
        {67767976233532799, "UTC0", "21474836471231235959"},
        {67768036191676799, "UTC0", "21474855471231235959"},
#endif
    };
    for (const auto &one : moments) {
        const ClockControl at(one.moment, one.zone);
        EXPECT_EQ(json_msg_notice_to_app("hello", "guard"), 0);
        EXPECT_EQ(sent(), envelope("guard", one.text, "a digest", "3C6AD2", "base64 of hello"));
    }
}

TEST_F(AppNoticeTest, FollowsTheRouterToAnotherTimeZone)
{
    for (const auto &[zone, text] :
         {std::pair("CST-8", "20250107170503"), std::pair("EST5", "20250107040503")}) {
        setenv("TZ", zone, 1);
        EXPECT_EQ(json_msg_notice_to_app("hello", "guard"), 0);
        EXPECT_EQ(sent(), envelope("guard", text, "a digest", "3C6AD2", "base64 of hello"));
    }
}

TEST_F(AppNoticeTest, IsRefusedWithoutATextOrAName)
{
    for (const auto &[message, name] : {std::pair<const char *, const char *>(nullptr, "guard"),
                                        {"hello", nullptr},
                                        {nullptr, nullptr}}) {
        recording_host::reset();
        EXPECT_EQ(json_msg_notice_to_app(message, name), -1);
        EXPECT_EQ(recording_host::log_lines(),
                  (LogLines{{3, "json_msg_notice_to_app:param is null\n"}}));
    }
    EXPECT_EQ(recording_device::calls(), Calls());
}

TEST_F(AppNoticeTest, IsNotSentWithoutItsBody)
{
    when<base64_encode>([](const char *) { return nullptr; });
    EXPECT_EQ(json_msg_notice_to_app("hello", "guard"), -1);
    EXPECT_EQ(calls(), (Calls{{"base64_encode", {"hello"}}}));
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{3, "json_msg_notice_to_app:base64_encode err\n"}}));
}

TEST_F(AppNoticeTest, IsNotSentWithoutItsTime)
{
    const Calls expected = {{"base64_encode", {"hello"}}, {"getmd5", {"base64 of hello", kNul}}};
    const LogLines lines = {{3, "json_msg_notice_to_app:get time err\n"}};
    clock.fail_time();
    EXPECT_EQ(json_msg_notice_to_app("hello", "guard"), -1);
    EXPECT_EQ(calls(), expected);
    EXPECT_EQ(recording_host::log_lines(), lines);
    expect_released("base64 of hello");

    ClockControl local(kMoment);
    local.fail_local_time();
    recording_host::reset();
    EXPECT_EQ(json_msg_notice_to_app("hello", "guard"), -1);
    EXPECT_EQ(recording_host::log_lines(), lines);
    EXPECT_EQ(calls().size(), 2 * expected.size());
    expect_released("base64 of hello", 2);
}

TEST_F(AppNoticeTest, IsSentWithTheMacThatAFailedCallLeft)
{
    when<mac_form_translate>([](const char *in, int32_t, char *out) {
        sprintf(out, "made of '%s'", in); // what a host makes of it
    });
    for (const int32_t result : {1, -1, 5, INT_MIN}) {
        when<devapi_get_iotagtd_device_mac>([result](char *, int32_t) { return result; });
        EXPECT_EQ(json_msg_notice_to_app("hello", "guard"), 0);
        EXPECT_EQ(sent(),
                  envelope("guard", "20250107090503", "a digest", "made of ''", "base64 of hello"));
        writes<devapi_get_iotagtd_device_mac>("left behind", result);
        EXPECT_EQ(json_msg_notice_to_app("hello", "guard"), 0);
        EXPECT_EQ(sent(), envelope("guard", "20250107090503", "a digest", "made of 'left behind'",
                                   "base64 of hello"));
    }
}

TEST_F(AppNoticeTest, GivesTheHostZeroedBuffers)
{
    when<getmd5>(
        [](const char *, char *out) { EXPECT_EQ(std::string(out, 64), std::string(64, '\0')); });
    when<devapi_get_iotagtd_device_mac>([](char *mac, int32_t) {
        EXPECT_EQ(std::string(mac, 32), std::string(32, '\0'));
        return 0;
    });
    when<mac_form_translate>([](const char *, int32_t, char *out) {
        EXPECT_EQ(std::string(out, 32), std::string(32, '\0'));
    });
    EXPECT_EQ(json_msg_notice_to_app("hello", "guard"), 0);
    EXPECT_EQ(sent(), envelope("guard", "20250107090503", "", "", "base64 of hello"));
}

TEST_F(AppNoticeTest, ReadsNoFurtherThanItsBuffers)
{
    when<getmd5>([](const char *, char *out) { memset(out, '5', 64); });
    when<devapi_get_iotagtd_device_mac>([](char *mac, int32_t size) {
        memset(mac, 'm', static_cast<size_t>(size));
        return 0;
    });
    when<mac_form_translate>([](const char *in, int32_t, char *out) {
        EXPECT_EQ(in, std::string(31, 'm'));
        memset(out, 'M', 32);
    });
    EXPECT_EQ(json_msg_notice_to_app("hello", "guard"), 0);
    EXPECT_EQ(sent(), envelope("guard", "20250107090503", std::string(64, '5'),
                               std::string(32, 'M'), "base64 of hello"));
}

TEST_F(AppNoticeTest, MayBeRefusedByTheAgent)
{
    for (const int32_t result : {1, -1, 5, INT_MIN}) {
        recording_host::reset();
        when<kaa_device_notice>([result](const char *) { return result; });
        EXPECT_EQ(json_msg_notice_to_app("hello", "guard"), result);
        EXPECT_EQ(recording_host::log_lines(), (LogLines{{7, "notice to app:\n" + sent() + "\n"},
                                                         {3, "kaa_device_notice failed!!!\n"}}));
    }
    expect_released("base64 of hello", 4);
}

TEST_F(AppNoticeTest, IsNotSentWithoutMemory)
{
    size_t allocations[2] = {};
    for (const auto how : {FailingMemory::Fail::kOnce, FailingMemory::Fail::kLastingly}) {
        for (size_t first = 0;; ++first) {
            recording_host::reset();
            const size_t before = recording_device::calls().size();
            bool failed;
            int32_t result;
            {
                const FailingMemory memory(first, how);
                result = json_msg_notice_to_app("hello", "guard");
                failed = memory.has_failed();
            }
            if (!failed) {
                EXPECT_EQ(result, 0);
                allocations[how == FailingMemory::Fail::kLastingly] = first;
                break;
            }
            EXPECT_EQ(result, -1) << "allocation " << first;
            EXPECT_EQ(recording_host::log_lines(),
                      (LogLines{{3, "json_msg_notice_to_app:create json err\n"}}));
            EXPECT_EQ(sent(), "");
            EXPECT_EQ(recording_device::calls().size(), before + 5);
        }
    }
    EXPECT_EQ(allocations[0], allocations[1]);
    EXPECT_GE(allocations[0], 14u) << "two for each key, and the printed text";
    expect_released("base64 of hello", static_cast<long>(2 * allocations[0] + 2));
}

TEST_F(AppNoticeTest, MayBeSentByAnyThread)
{
    constexpr int kThreads = 4;
    constexpr int kNotices = 100;
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back([name = std::to_string(number)] {
            for (int round = 0; round < kNotices; ++round) {
                EXPECT_EQ(json_msg_notice_to_app(name.c_str(), name.c_str()), 0);
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    const Calls made = calls();
    for (int number = 0; number < kThreads; ++number) {
        const std::string name = std::to_string(number);
        const Call notice = {
            "kaa_device_notice",
            {envelope(name, "20250107090503", "a digest", "3C6AD2", "base64 of " + name)}};
        EXPECT_EQ(std::count(made.begin(), made.end(), notice), kNotices);
    }
}

} // namespace app_notice_test

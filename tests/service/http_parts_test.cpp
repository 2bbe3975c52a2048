// SPDX-License-Identifier: MIT
// Parts of the HTTP transport that depend on the time, and the metrics.
#include "service/gate/metrics.h"
#include "service/ways_in/http/login_limiter.h"
#include "service/ways_in/http/login_sessions.h"

#include <gmock/gmock.h>

namespace agent::service {

namespace {

using std::chrono::hours;
using std::chrono::seconds;
using testing::HasSubstr;
using testing::Not;

constexpr TokenBucket::Time kBegin{hours(1000)};

std::shared_ptr<const Identity> somebody()
{
    return std::make_shared<const Identity>();
}

int logins(LoginLimiter &limiter, const std::string &address, TokenBucket::Time now)
{
    int count = 0;
    while (limiter.take(address, now)) {
        ++count;
    }
    return count;
}

} // namespace

TEST(LoginSessions, EndWhenTheyAreNotUsed)
{
    LoginSessions sessions;
    sessions.set_idle_time(seconds(100));
    const std::string value = sessions.open(somebody(), kBegin);
    EXPECT_NE(sessions.find(value, kBegin + seconds(99)), nullptr);
    EXPECT_NE(sessions.find(value, kBegin + seconds(198)), nullptr);
    EXPECT_EQ(sessions.find(value, kBegin + seconds(298)), nullptr);
    EXPECT_EQ(sessions.size(), 0U);
}

TEST(LoginSessions, EndAfterAWeek)
{
    LoginSessions sessions;
    sessions.set_idle_time(hours(24 * 30));
    const std::string value = sessions.open(somebody(), kBegin);
    const std::string id = sessions.find(value, kBegin)->id;
    EXPECT_TRUE(sessions.touch(id, kBegin + hours(24 * 7) - seconds(1)));
    EXPECT_FALSE(sessions.touch(id, kBegin + hours(24 * 7)));
}

TEST(LoginSessions, TheOneThatWasUsedLeastRecentlyMakesRoom)
{
    LoginSessions sessions;
    sessions.set_idle_time(hours(1));
    const std::string first = sessions.open(somebody(), kBegin);
    const std::string second = sessions.open(somebody(), kBegin + seconds(1));
    for (int count = 2; count < 64; ++count) {
        sessions.open(somebody(), kBegin + seconds(2));
    }
    EXPECT_NE(sessions.find(first, kBegin + seconds(3)), nullptr);
    sessions.open(somebody(), kBegin + seconds(4));
    EXPECT_EQ(sessions.size(), 64U);
    EXPECT_NE(sessions.find(first, kBegin + seconds(4)), nullptr);
    EXPECT_EQ(sessions.find(second, kBegin + seconds(4)), nullptr);
}

TEST(LoginLimiter, LimitsEachAddress)
{
    LoginLimiter limiter;
    EXPECT_EQ(logins(limiter, "192.0.2.1", kBegin), 5);
    EXPECT_EQ(logins(limiter, "192.0.2.2", kBegin), 5);
    EXPECT_EQ(logins(limiter, "192.0.2.1", kBegin + seconds(4)), 0);
    EXPECT_EQ(logins(limiter, "192.0.2.1", kBegin + seconds(5)), 1);
}

TEST(LoginLimiter, LimitsAllTogether)
{
    LoginLimiter limiter;
    int all = 0;
    for (int host = 1; host <= 100; ++host) {
        all += logins(limiter, "192.0.2." + std::to_string(host), kBegin);
    }
    EXPECT_EQ(all, 20);
    EXPECT_EQ(logins(limiter, "192.0.2.200", kBegin + seconds(1)), 2);
}

TEST(LoginLimiter, TakesANetworkOfIpv6ForOneHost)
{
    LoginLimiter limiter;
    EXPECT_EQ(logins(limiter, "2001:db8::1", kBegin), 5);
    EXPECT_EQ(logins(limiter, "2001:db8::ffff:2", kBegin), 0);
    EXPECT_EQ(logins(limiter, "2001:db8:0:1::1", kBegin), 5);
}

TEST(Metrics, CountsByCommandAndResult)
{
    Metrics metrics;
    metrics.count(Subject::kCommand, "GET_SN_INFO", "", 0, std::chrono::milliseconds(5));
    metrics.count(Subject::kCommand, "GET_SN_INFO", "", 0, std::chrono::milliseconds(500));
    metrics.count(Subject::kCommand, "GET_SN_INFO", "", -1, seconds(2));
    metrics.count(Subject::kCommand, "GET_SN_INFO", "timeout", std::nullopt, seconds(100));
    const std::string text = metrics.text({});
    const std::string begin = "hgagent_request_duration_seconds";
    const std::string labels = R"({command="GET_SN_INFO",result="success")";
    EXPECT_THAT(text, HasSubstr("\n" + begin + "_bucket" + labels +
                                R"(,le="0.001"} 0)"
                                "\n" +
                                begin + "_bucket" + labels +
                                R"(,le="0.01"} 1)"
                                "\n" +
                                begin + "_bucket" + labels +
                                R"(,le="0.1"} 1)"
                                "\n" +
                                begin + "_bucket" + labels +
                                R"(,le="1"} 2)"
                                "\n" +
                                begin + "_bucket" + labels +
                                R"(,le="10"} 2)"
                                "\n" +
                                begin + "_bucket" + labels +
                                R"(,le="60"} 2)"
                                "\n" +
                                begin + "_bucket" + labels +
                                R"(,le="+Inf"} 2)"
                                "\n" +
                                begin + "_sum" + labels + "} 0.505\n" + begin + "_count" + labels +
                                "} 2\n"));
    EXPECT_THAT(text, HasSubstr(R"(_count{command="GET_SN_INFO",result="failure"} 1)"));
    EXPECT_THAT(text, HasSubstr(R"(_bucket{command="GET_SN_INFO",result="timeout",le="60"} 0)"));
}

TEST(Metrics, KnowsOnlyNamesOfTheProtocol)
{
    Metrics metrics;
    metrics.count(Subject::kCommand, "x\"} 1\n", "", -3, seconds(0));
    metrics.count(Subject::kReport, "x", "", 0, seconds(0));
    metrics.count(Subject::kNotice, "x", "", 0, seconds(0));
    const std::string text = metrics.text({});
    EXPECT_THAT(text, HasSubstr(R"(_count{command="other",result="failure"} 1)"));
    EXPECT_THAT(text, HasSubstr(R"(_count{command="other",result="success"} 1)"));
    EXPECT_THAT(text, HasSubstr(R"(_count{command="notice",result="success"} 1)"));
    EXPECT_THAT(text, Not(HasSubstr("\"x")));
}

TEST(Metrics, CountsRefusalsRestartsAndTheState)
{
    Metrics metrics;
    metrics.count(Subject::kCommand, "GET_SN_INFO", "denied", std::nullopt, seconds(0));
    metrics.count(Subject::kCommand, "x", "denied", std::nullopt, seconds(0));
    metrics.count_worker();
    EXPECT_THAT(metrics.text({}), HasSubstr("\nhgagent_worker_restarts_total 0\n"));
    metrics.count_worker();
    const std::string text = metrics.text({{{"http", 3}}, 7, true});
    EXPECT_THAT(text, HasSubstr("\nhgagent_refusals_total{code=\"denied\"} 2\n"));
    EXPECT_THAT(text, HasSubstr("\nhgagent_worker_restarts_total 1\n"));
    EXPECT_THAT(text, HasSubstr("\nhgagent_queue_length 7\n"));
    EXPECT_THAT(text, HasSubstr("\nhgagent_clients{transport=\"http\"} 3\n"));
    EXPECT_THAT(text, HasSubstr("\nhgagent_worker_idle 1\n"));
    EXPECT_THAT(text, Not(HasSubstr("_count{")));
}

} // namespace agent::service

// SPDX-License-Identifier: MIT
// Commands for child routers, and their effects.
#include "gateway_test.h"

#include <gmock/gmock.h>

using testing::Contains;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

namespace child_router_relay_test {

constexpr char kFloor[] = R"({"DeviceID":"3C6AD2228140"})";
constexpr char kAttic[] = R"({"DeviceID":"3C6AD2228180"})"; // attached to the first floor
constexpr char kNotSent[] = "{\"Status\":\"1\",\"FailReason\":\"send json to child err\"}\n";
constexpr int64_t kRestart = 45;

class ChildRouters : public GatewayTest {
  protected:
    std::vector<std::string> topology() const
    {
        return lines_of(run_agent({"--state", state_, "topology", "--ascii"}).output);
    }
    std::string devices_of_attic() const { return reply("GET_CHILD_ROUTER_AD_BASE_INFO", kAttic); }
};

TEST_F(ChildRouters, TakeAName)
{
    EXPECT_EQ(reply("SET_CHILD_ROUTER_HG_BASE_INFO", R"({"DeviceID":"3C6AD2228140","Name":"Den"})"),
              kDone);
    EXPECT_THAT(topology(), Contains(MatchesRegex("`= Den +cable")));
    EXPECT_EQ(reply("CHILD_HG_LOCAL_RECOVERY", R"({"DeviceID":"3C6AD2228140","Recovery":"1"})"),
              "{\"Recovery\":\"1\",\"Status\":\"0\"}\n");
    EXPECT_THAT(topology(), Contains(MatchesRegex(".= First floor +cable +offline")));
}

TEST_F(ChildRouters, Restart)
{
    EXPECT_EQ(reply("RP_CHILD_HG_REBOOT", kFloor), kDone);
    const std::vector<std::string> restarting = topology();
    EXPECT_THAT(restarting, Contains(MatchesRegex("\\|= First floor +cable +offline")));
    EXPECT_THAT(restarting, Contains(MatchesRegex("`= Attic +5GHz +offline")));
    EXPECT_THAT(restarting, Contains(MatchesRegex(".+office-nas +cable +offline")));
    EXPECT_EQ(reply("RP_CHILD_HG_REBOOT", kFloor), kNotSent);
    EXPECT_THAT(devices_of_attic(), HasSubstr(R"("FailReason":"sendto tslink or retinfo fail")"));

    set_time(kStart + kRestart);
    const std::vector<std::string> restarted = topology();
    EXPECT_THAT(restarted, Contains(MatchesRegex("`= First floor +cable")));
    EXPECT_THAT(restarted, Contains(MatchesRegex("   `= Attic +5GHz +-[0-9]+ dBm")));
    EXPECT_THAT(devices_of_attic(), HasSubstr("\"BaseInfo\":[{"));
}

TEST_F(ChildRouters, ReportTheirDevices)
{
    EXPECT_THAT(
        devices_of_attic(),
        MatchesRegex(R"(\{"DeviceID":"3C6AD2228180","BaseInfo":\[\{.+\}\],"Status":"0"\}.)"));
    EXPECT_EQ(reply("SET_CHILD_ROUTERAD_BASE_INFO",
                    R"({"DeviceID":"3C6AD2228180","Mac":"70:F0:88:2C:A6:93","DevType":"Console",)"
                    R"("ByName":"Games","AccessEnable":"0"})"),
              kDone);
    EXPECT_THAT(devices_of_attic(), HasSubstr(R"("Name":"game-console","ByName":"Games")"));
    EXPECT_THAT(topology(), Contains(MatchesRegex(".+`- Games +5GHz +-[0-9]+ dBm +blocked")));
    EXPECT_THAT(topology(), Not(Contains(HasSubstr("game-console"))));
}

TEST_F(ChildRouters, AreUnreachableWhileTheyAreOff)
{
    const std::string off = R"({"DeviceID":"A86E849A0430"})"; // the summer house
    const auto in_short_report = [](const std::string &command, const std::string &request) {
        return call(command, request, {"--scenario", "short_report"}).output;
    };
    EXPECT_EQ(in_short_report("RP_CHILD_HG_REBOOT", off), kNotSent);
    EXPECT_EQ(in_short_report("SET_CHILD_ROUTER_HG_BASE_INFO",
                              R"({"DeviceID":"A86E849A0430","Name":"Shed"})"),
              "{\"Status\":\"1\",\"FailReason\":\"set childrouter info failed\"}\n");
    EXPECT_THAT(in_short_report("GET_CHILD_ROUTER_AD_BASE_INFO", off),
                HasSubstr(R"("FailReason":"sendto tslink or retinfo fail")"));
}

TEST_F(ChildRouters, MustBeKnown)
{
    EXPECT_EQ(reply("RP_CHILD_HG_REBOOT", R"({"DeviceID":"nobody"})"), kNotSent);
    EXPECT_EQ(reply("RP_CHILD_HG_REBOOT"),
              "{\"Status\":\"1\",\"FailReason\":\"DeviceID Not Found\"}\n");
}

} // namespace child_router_relay_test

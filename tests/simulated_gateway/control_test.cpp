// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

#include <cstdlib>

namespace {

using ControlTest = GatewayTest;

TEST_F(ControlTest, OpensWithoutOptions)
{
    EXPECT_EQ(simulated_gateway_open(nullptr, nullptr, 0), 0);
    EXPECT_EQ(mac(), "3C:6A:D2:10:4F:20");
}

TEST_F(ControlTest, IsOpenOnlyOnce)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(open({}), "the gateway is open already");
    close();
    EXPECT_EQ(open({}), "");
}

TEST_F(ControlTest, CutsTheErrorToItsSpace)
{
    SimulatedGatewayOptions options = {};
    options.scenario = "castle";
    char error[16];
    EXPECT_EQ(simulated_gateway_open(&options, error, sizeof(error)), -1);
    EXPECT_STREQ(error, "there is no sce");
    EXPECT_EQ(simulated_gateway_open(&options, error, 0), -1);
    EXPECT_EQ(simulated_gateway_open(&options, nullptr, 16), -1);
}

TEST_F(ControlTest, AnEmptyOptionIsAnError)
{
    SimulatedGatewayOptions options = {};
    options.state_file = "";
    char error[64] = "";
    EXPECT_EQ(simulated_gateway_open(&options, error, sizeof(error)), -1);
    EXPECT_STREQ(error, "state file: is empty");
}

TEST_F(ControlTest, ClosingAndPowerCyclingAClosedGatewayDoNothing)
{
    close();
    simulated_gateway_power_cycle();
    EXPECT_EQ(open({}), "");
}

TEST_F(ControlTest, AHostThatDoesNotOpenGetsTheGatewayOfTheEnvironment)
{
    nlohmann::json home = house();
    home["identity"]["device_type"] = "FROM-FILE";
    setenv("SIMULATED_GATEWAY_SCENARIO", write("home.json", home.dump()).c_str(), 1);
    setenv("SIMULATED_GATEWAY_STATE", path("state").c_str(), 1);
    setenv("SIMULATED_GATEWAY_FAULTS", "devapi_get_sn_info=9*1,devapi_get_system_info=-3", 1);
    setenv("SIMULATED_GATEWAY_TRACE", path("trace").c_str(), 1);
    setenv("SIMULATED_GATEWAY_SHOW_SECRETS", "1", 1);
    EXPECT_EQ(call(), 9);
    const SnInfo info = reported_by(devapi_get_sn_info);
    EXPECT_STREQ(info.DeviceType, "FROM-FILE");
    SystemInfo system = {};
    EXPECT_EQ(devapi_get_system_info(&system), -3);
    EXPECT_EQ(lines(path("trace")).size(), 3u);
    EXPECT_EQ(json_of(path("state")).at("scenario"), "home");
}

TEST_F(ControlTest, AnOptionOverridesTheEnvironment)
{
    setenv("SIMULATED_GATEWAY_SCENARIO", "castle", 1);
    setenv("SIMULATED_GATEWAY_FAULTS", "devapi_get_sn_info=-1", 1);
    EXPECT_EQ(open({.scenario = "three_storey_house", .faults = {"devapi_get_system_info=-1"}}),
              "");
    EXPECT_EQ(call(), 0);
}

TEST_F(ControlTest, AnInvalidEnvironmentIsReportedOnceAndFailsEveryCall)
{
    setenv("SIMULATED_GATEWAY_FAULTS", "devapi_get_sn_info=-1,", 1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(call(), -1);
    SystemInfo system = {};
    EXPECT_EQ(devapi_get_system_info(&system), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "simulated gateway: fault \"\": has to be FUNCTION=RESULT[*COUNT][@DELAYms]\n");

    unsetenv("SIMULATED_GATEWAY_FAULTS");
    EXPECT_EQ(call(), -1);
    EXPECT_EQ(open({}), "");
    EXPECT_EQ(call(), 0);
}

TEST_F(ControlTest, TheClockOfTheEnvironmentStandsStill)
{
    setenv("SIMULATED_GATEWAY_TIME", "1767225600", 1);
    EXPECT_EQ(open({.state_file = path("state")}), "");
    EXPECT_EQ(json_of(path("state")).at("boot_time"), 1767225600);
    simulated_gateway_power_cycle();
    EXPECT_EQ(json_of(path("state")).at("boot_time"), 1767225600);

    unsetenv("SIMULATED_GATEWAY_TIME");
    EXPECT_EQ(reopen({.state_file = path("state")}), "");
    simulated_gateway_power_cycle();
    EXPECT_NE(json_of(path("state")).at("boot_time"), 1767225600);
}

TEST_F(ControlTest, AnInvalidTimeIsAnError)
{
    for (const char *time : {"now", "-1", "1.5", "12 ", "99999999999999999999"}) {
        setenv("SIMULATED_GATEWAY_TIME", time, 1);
        EXPECT_EQ(open({}), "SIMULATED_GATEWAY_TIME: \"" + std::string(time) +
                                "\" is no number of seconds since 1970");
    }
}

TEST_F(ControlTest, SecretsAreShownForOneOnly)
{
    setenv("SIMULATED_GATEWAY_SHOW_SECRETS", "yes", 1);
    EXPECT_EQ(open({}), "SIMULATED_GATEWAY_SHOW_SECRETS: \"yes\" is neither 0 nor 1");
    setenv("SIMULATED_GATEWAY_SHOW_SECRETS", "", 1);
    EXPECT_EQ(open({}), "");
}

} // namespace

// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

namespace {

using RoamingTest = GatewayTest;

TEST_F(RoamingTest, StationControlAndFastRoamingAreKept)
{
    ASSERT_EQ(open({.state_file = path("state")}), "");
    const auto station_control = [] {
        int32_t state = -1;
        EXPECT_EQ(devapi_get_wifi_stactrl(&state), 0);
        return state;
    };
    const auto fast_roaming = [] {
        char enable[8] = {};
        EXPECT_EQ(devapi_get_wifi_fastroaming_enable(enable), 0);
        return std::string(enable);
    };
    EXPECT_EQ(station_control(), 1);
    EXPECT_EQ(fast_roaming(), "0");
    EXPECT_EQ(devapi_set_wifi_stactrl("0"), 0);
    EXPECT_EQ(devapi_set_wifi_fastroaming("1"), 0);
    ASSERT_EQ(reopen({.state_file = path("state")}), "");
    EXPECT_EQ(station_control(), 0);
    EXPECT_EQ(fast_roaming(), "1");

    EXPECT_EQ(devapi_set_wifi_fastroaming(""), 0); // an empty value
    for (const char *text : {"", "2", "on", "11"}) {
        EXPECT_EQ(devapi_set_wifi_stactrl(text), -1);
    }
    EXPECT_EQ(devapi_set_wifi_fastroaming("yes"), -1);
    EXPECT_EQ(station_control(), 0);
    EXPECT_EQ(fast_roaming(), "1");
}

TEST_F(RoamingTest, TheMeshIsOnOrOff)
{
    ASSERT_EQ(open({}), "");
    int32_t enable = 0;
    EXPECT_EQ(devapi_get_Multi_Ap_enable(&enable), 0);
    EXPECT_EQ(enable, 1);
    nlohmann::json home = house();
    home["mesh"]["enabled"] = home["mesh"]["link_layer_up"] = false;
    ASSERT_EQ(reopen({.scenario = write("home.json", home.dump())}), "");
    EXPECT_EQ(devapi_get_Multi_Ap_enable(&enable), 0);
    EXPECT_EQ(enable, 0);
}

TEST_F(RoamingTest, NullsAreRefused)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(devapi_get_wifi_stactrl(nullptr), -1);
    EXPECT_EQ(devapi_get_wifi_fastroaming_enable(nullptr), -1);
    EXPECT_EQ(devapi_get_Multi_Ap_enable(nullptr), -1);
    EXPECT_EQ(devapi_set_wifi_stactrl(nullptr), -1);
    EXPECT_EQ(devapi_set_wifi_fastroaming(nullptr), -1);
}

} // namespace

// SPDX-License-Identifier: MIT
// The switch of the mesh, pairing and the LEDs.
#include "gateway_test.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

namespace mesh_control_test {

constexpr char kOn[] = R"({"MeshEnable":"1","MeshMode":"2"})";
constexpr char kOff[] = R"({"MeshEnable":"0","MeshMode":"2"})";
constexpr int64_t kBusy = 5; // seconds after a change
constexpr int64_t kPairing = 60;

std::string failed(const std::string &reason)
{
    return R"({"Status":"1","FailReason":")" + reason + "\"}\n";
}

class MeshControl : public GatewayTest {
  protected:
    std::string drawing() const
    {
        return run_agent({"--state", state_, "topology", "--ascii"}).output;
    }
};

TEST_F(MeshControl, IsBusyAfterAChange)
{
    EXPECT_EQ(reply("SET_MESH_STATUS", kOff), kDone);
    EXPECT_EQ(reply("SET_MESH_STATUS", kOn), failed("MESH_BUSY_0"));
    set_time(kStart + kBusy - 1);
    EXPECT_EQ(reply("SET_MESH_STATUS", kOn), failed("MESH_BUSY_0"));
    set_time(kStart + kBusy);
    EXPECT_EQ(reply("SET_MESH_STATUS", kOn), kDone);
}

TEST_F(MeshControl, IsBusyWhileRoutersArePaired)
{
    EXPECT_EQ(reply("SET_MESH_PAIR", R"({"Enable":"1","Time":"60"})"), kDone);
    EXPECT_EQ(reply("SET_MESH_STATUS", kOff), failed("MESH_BUSY_1"));
    set_time(kStart + kPairing);
    EXPECT_EQ(reply("SET_MESH_STATUS", kOff), kDone);
}

TEST_F(MeshControl, RemovesTheChildRouters)
{
    EXPECT_THAT(drawing(), HasSubstr("= Attic"));
    expect_kept("SET_MESH_STATUS", kOff, "GET_MESH_STATUS", R"("MeshEnable":"0")");
    EXPECT_THAT(drawing(), Not(HasSubstr("= ")));
    EXPECT_THAT(drawing(), HasSubstr("- game-console "));
}

TEST_F(MeshControl, LightsTheLeds)
{
    const std::string leds = R"("LedSwitch":"1","LedCoLor":"BLUE","LedLight":"20")";
    expect_kept("SET_LED_STATUS", "{" + leds + "}", "GET_LED_STATUS", leds);
    EXPECT_THAT(reply("GET_TSLINK_TOPOLOGY_INFO"), HasSubstr(R"("LedLight":"20","LedSwitch":"1")"));
    EXPECT_THAT(reply("SET_LED_STATUS", R"({"LedSwitch":"1","LedCoLor":"BLUE","LedLight":"101"})"),
                HasSubstr(R"("Status":"1")"));
    EXPECT_THAT(reply("GET_LED_STATUS"), HasSubstr(leds));
}

} // namespace mesh_control_test

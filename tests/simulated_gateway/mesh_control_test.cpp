// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

namespace {

class MeshControlTest : public HouseTest {
  protected:
    static std::string mesh()
    {
        const MeshStatus status = reported_by(devapi_get_mesh_status);
        return std::string(status.MeshEnable) + " " + status.MeshMode;
    }
    static int32_t set_mesh(const std::string &enable, const std::string &mode)
    {
        return set_by(devapi_set_mesh_status, {{"MeshEnable", enable}, {"MeshMode", mode}});
    }
    static int32_t pair(const std::string &enable, const std::string &time)
    {
        return set_by(devapi_set_pair_status, {{"Enable", enable}, {"Time", time}});
    }
    static int32_t wps(const std::string &radio, const std::string &action)
    {
        return set_by(devapi_set_wps_state, {{"Radio", radio}, {"Action", action}});
    }
    static std::string leds()
    {
        const LedInfo info = reported_by(devapi_get_led_info);
        return std::string(info.LedSwitch) + " " + info.LedCoLor + " " + info.LedLight;
    }
    static int32_t child_routers() { return reported_by(devapi_get_childrouter_list).count; }
    static std::string link_layer() { return reported_by(devapi_get_sn_info).tslinkstatus; }
    static int32_t configuration() { return reported_by(devapi_get_tslink_config); }
    int64_t heartbeat() const
    {
        return json_of(path("state"))["home"]["mesh_control"]["heartbeat_seconds"];
    }
};

TEST_F(MeshControlTest, TheMeshGoesOffWithItsLinkLayerAndComesBack)
{
    EXPECT_EQ(mesh(), "1 2");
    EXPECT_EQ(child_routers(), 2);
    EXPECT_EQ(set_mesh("0", "2"), 0);
    EXPECT_EQ(mesh(), "0 2");
    EXPECT_EQ(child_routers(), 0);
    EXPECT_EQ(link_layer(), "0");
    EXPECT_EQ(devapi_get_mesh_type(), 0);
    EXPECT_EQ(reported_by(devapi_get_Multi_Ap_enable), 0);

    ASSERT_EQ(open_when(kTime + 5), "");
    EXPECT_EQ(mesh(), "0 2");
    EXPECT_EQ(devapi_setup_mesh(1), 0);
    EXPECT_EQ(mesh(), "1 2");
    EXPECT_EQ(child_routers(), 2);
    EXPECT_EQ(link_layer(), "1");
    ASSERT_EQ(open_when(kTime + 10), "");
    EXPECT_EQ(devapi_setup_mesh(0), 0);
    EXPECT_EQ(mesh(), "0 2");
}

TEST_F(MeshControlTest, AMeshWithoutItsLinkLayerStaysDownUntilSwitched)
{
    ASSERT_EQ(open_home(house({{"/mesh/link_layer_up", false}})), "");
    EXPECT_EQ(devapi_setup_mesh(1), 0);
    EXPECT_EQ(link_layer(), "0");
}

TEST_F(MeshControlTest, InAStarAllChildRoutersAreAttachedToTheMainRouter)
{
    const ChildRouterList list = reported_by(devapi_get_childrouter_list);
    ChildRouterInfo attic = {};
    ASSERT_EQ(devapi_get_childrouter_info(&attic, list.identifiers[1]), 0);
    EXPECT_STREQ(attic.ParentMac, "3C:6A:D2:22:81:40");
    EXPECT_EQ(set_mesh("1", "1"), 0);
    EXPECT_EQ(mesh(), "1 1");
    EXPECT_EQ(devapi_get_mesh_type(), 1);
    ASSERT_EQ(devapi_get_childrouter_info(&attic, list.identifiers[1]), 0);
    EXPECT_STREQ(attic.ParentMac, "3C:6A:D2:10:4F:20");
}

TEST_F(MeshControlTest, AfterAChangeItIsBusyForSomeSeconds)
{
    EXPECT_EQ(set_mesh("1", "2"), 0); // nothing changes
    EXPECT_EQ(set_mesh("1", "1"), 0);
    EXPECT_EQ(set_mesh("1", "2"), MESH_BUSY_0);
    EXPECT_EQ(devapi_setup_mesh(0), MESH_BUSY_0);
    EXPECT_EQ(mesh(), "1 1");
    ASSERT_EQ(open_when(kTime + 4), "");
    EXPECT_EQ(set_mesh("0", "1"), MESH_BUSY_0);
    ASSERT_EQ(open_when(kTime + 5), "");
    EXPECT_EQ(set_mesh("0", "1"), 0);
    EXPECT_EQ(mesh(), "0 1");
    simulated_gateway_power_cycle();
    EXPECT_EQ(set_mesh("1", "1"), 0);
}

TEST_F(MeshControlTest, DuringPairingTheMeshCannotBeSwitched)
{
    EXPECT_EQ(pair("1", "60"), 0);
    EXPECT_EQ(set_mesh("0", "2"), MESH_BUSY_1);
    EXPECT_EQ(devapi_setup_mesh(0), MESH_BUSY_1);
    ASSERT_EQ(open_when(kTime + 59), "");
    EXPECT_EQ(set_mesh("0", "2"), MESH_BUSY_1);
    EXPECT_EQ(mesh(), "1 2");
    ASSERT_EQ(open_when(kTime + 60), "");
    EXPECT_EQ(set_mesh("0", "2"), 0);
}

TEST_F(MeshControlTest, PairingEndsByRequestOrByABoot)
{
    EXPECT_EQ(pair("1", "3600"), 0);
    EXPECT_EQ(pair("0", ""), 0);
    EXPECT_EQ(set_mesh("1", "2"), 0);
    EXPECT_EQ(pair("1", "1"), 0);
    EXPECT_EQ(set_mesh("1", "2"), MESH_BUSY_1);
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_EQ(set_mesh("1", "2"), 0);
    EXPECT_EQ(pair("0", "x"), 0);
}

TEST_F(MeshControlTest, WrongPairingsAreRefused)
{
    for (const char *time : {"0", "3601", "-1", "", "1m", "NULL"}) {
        EXPECT_EQ(pair("1", time), -1) << time;
    }
    EXPECT_EQ(reason(), "Time is not a number");
    EXPECT_EQ(reason(pair("on", "60")), R"(Enable "on" is none of "0", "1")");
    EXPECT_EQ(set_mesh("0", "2"), 0);
    EXPECT_EQ(reason(pair("1", "60")), "the mesh is off");
}

TEST_F(MeshControlTest, ARouterWithoutPairingRefusesIt)
{
    ASSERT_EQ(open_at(kTime, {.scenario = "single_router"}), "");
    EXPECT_EQ(pair("1", "60"), MESH_PAIRING_NOT_SUPPORTED);
    EXPECT_EQ(pair("0", ""), MESH_PAIRING_NOT_SUPPORTED);
}

TEST_F(MeshControlTest, WrongMeshStatusIsRefused)
{
    EXPECT_EQ(set_mesh("2", "1"), -1);
    EXPECT_EQ(set_mesh("", "1"), -1);
    EXPECT_EQ(set_mesh("1", ""), -1);
    EXPECT_EQ(set_mesh("1", "0"), -1);
    EXPECT_EQ(reason(set_mesh("1", "3")), "MeshMode 3 is none of 1, 2");
    EXPECT_EQ(devapi_setup_mesh(2), -1);
    EXPECT_EQ(devapi_setup_mesh(-1), -1);
    MeshStatus status = {};
    std::memset(&status, '1', sizeof(status));
    EXPECT_EQ(devapi_set_mesh_status(&status), -1);
    EXPECT_EQ(mesh(), "1 2");
}

TEST_F(MeshControlTest, EachRadioHasItsWps)
{
    EXPECT_EQ(wps("5GHz", "1"), 0);
    EXPECT_EQ(reason(wps("5GHz", "1")), "WPS is under way on 5GHz");
    EXPECT_EQ(wps("2.4GHz", "1"), 0);
    EXPECT_EQ(wps("5GHz", "0"), 0);
    EXPECT_EQ(wps("5GHz", "0"), 0);
    EXPECT_EQ(wps("5GHz", "1"), 0);
    ASSERT_EQ(open_when(kTime + 119), "");
    EXPECT_EQ(wps("2.4GHz", "1"), -1);
    ASSERT_EQ(open_when(kTime + 120), "");
    EXPECT_EQ(wps("2.4GHz", "1"), 0);
}

TEST_F(MeshControlTest, WpsNeedsItsSwitchAndARadio)
{
    EXPECT_EQ(wps("5GHz", "1"), 0);
    EXPECT_EQ(devapi_set_wps_enable(0), 0);
    EXPECT_EQ(reason(wps("5GHz", "1")), "WPS is off");
    EXPECT_EQ(devapi_set_wps_enable(1), 0);
    EXPECT_EQ(wps("5GHz", "1"), 0); // switching WPS off has ended the first

    ASSERT_EQ(open_home(house({{"/radios/0/enabled", false}})), "");
    EXPECT_EQ(reason(wps("2.4GHz", "1")), "the radio of 2.4GHz is off");
    EXPECT_EQ(wps("2.4GHz", "0"), 0);
    for (const char *radio : {"", "6GHz", "5ghz", "2.4", "all"}) {
        EXPECT_EQ(wps(radio, "1"), -1) << radio;
    }
    EXPECT_EQ(reason(), R"(Radio "all" is none of "2.4GHz", "5GHz")");
    for (const char *action : {"", "2", "start"}) {
        EXPECT_EQ(wps("5GHz", action), -1) << action;
    }
}

TEST_F(MeshControlTest, TheHeartbeatIsANumberOfSeconds)
{
    EXPECT_EQ(heartbeat(), 300);
    EXPECT_EQ(devapi_set_kaa_heartbeat("10"), 0);
    EXPECT_EQ(heartbeat(), 10);
    EXPECT_EQ(devapi_set_kaa_heartbeat("86400"), 0);
    for (const char *wrong : {"", "9", "86401", "-60", "60s", " 60", "6e1", "1.5"}) {
        EXPECT_EQ(devapi_set_kaa_heartbeat(wrong), -1) << wrong;
    }
    EXPECT_EQ(reason(), "heartbeat is not a number");
    EXPECT_EQ(devapi_set_kaa_heartbeat(std::string(1 << 20, '6').c_str()), -1);
    EXPECT_EQ(heartbeat(), 86400);
}

TEST_F(MeshControlTest, TheLedsAreThoseOfTheBaseInformation)
{
    EXPECT_EQ(leds(), "1 WHITE 60");
    EXPECT_STREQ(base().LedLight, "60");
    EXPECT_EQ(devapi_set_sta_led("0", "BLUE", "0"), 0);
    EXPECT_EQ(leds(), "0 BLUE 0");
    EXPECT_STREQ(base().LedSwitch, "0");
    EXPECT_STREQ(base().LedLight, "0");
    EXPECT_EQ(devapi_set_sta_led("1", "ORANGE", "100"), 0);
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(leds(), "1 ORANGE 100");
    EXPECT_STREQ(base().LedSwitch, "1");
}

TEST_F(MeshControlTest, WrongLedSettingsChangeNothing)
{
    EXPECT_EQ(devapi_set_sta_led("2", "BLUE", "10"), -1);
    EXPECT_EQ(devapi_set_sta_led("", "BLUE", "10"), -1);
    EXPECT_EQ(reason(devapi_set_sta_led("0", "PINK", "10")),
              R"(colour "PINK" is none of "WHITE", "BLUE", "GREEN", "ORANGE", "RED")");
    EXPECT_EQ(devapi_set_sta_led("0", "blue", "10"), -1);
    EXPECT_EQ(devapi_set_sta_led("0", "BLUE", "101"), -1);
    EXPECT_EQ(devapi_set_sta_led("0", "BLUE", "-1"), -1);
    EXPECT_EQ(devapi_set_sta_led("0", "BLUE", "bright"), -1);
    EXPECT_EQ(devapi_set_sta_led("0", std::string(1 << 20, 'B').c_str(), "10"), -1);
    EXPECT_EQ(leds(), "1 WHITE 60");

    ASSERT_EQ(open_home(house({{"/identity/led", false}})), "");
    EXPECT_EQ(reason(devapi_set_sta_led("0", "BLUE", "10")), "the router has no LEDs");
}

TEST_F(MeshControlTest, TheInitialConfigurationIsThatOfTheBaseInformation)
{
    EXPECT_EQ(configuration(), 1);
    EXPECT_EQ(devapi_set_sta_tslink_config("0"), 0);
    EXPECT_EQ(configuration(), 0);
    EXPECT_STREQ(base().ConfiguerStatus, "0");
    for (const char *wrong : {"", "2", "-1", "true", "01"}) {
        EXPECT_EQ(devapi_set_sta_tslink_config(wrong), -1) << wrong;
    }
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(configuration(), 0);
    EXPECT_EQ(devapi_set_sta_tslink_config("1"), 0);
    EXPECT_STREQ(base().ConfiguerStatus, "1");
}

} // namespace

// SPDX-License-Identifier: MIT
#include "services_fixture.h"

namespace {

class MeshControlTest : public ServicesTest {
  protected:
    static std::string mesh()
    {
        MeshStatus status = {};
        EXPECT_EQ(devapi_get_mesh_status(&status), 0);
        return std::string(status.MeshEnable) + " " + status.MeshMode;
    }
    static int32_t set_mesh(const std::string &enable, const std::string &mode)
    {
        MeshStatus status = {};
        set(status.MeshEnable, enable);
        set(status.MeshMode, mode);
        return devapi_set_mesh_status(&status);
    }
    static int32_t pair(const std::string &enable, const std::string &time)
    {
        PairStatus status = {};
        set(status.Enable, enable);
        set(status.Time, time);
        return devapi_set_pair_status(&status);
    }
    static int32_t wps(const std::string &radio, const std::string &action)
    {
        WpsState state = {};
        set(state.Radio, radio);
        set(state.Action, action);
        return devapi_set_wps_state(&state);
    }
    static std::string leds()
    {
        LedInfo info = {};
        EXPECT_EQ(devapi_get_led_info(&info), 0);
        return std::string(info.LedSwitch) + " " + info.LedCoLor + " " + info.LedLight;
    }
    static HgBaseInfo base()
    {
        HgBaseInfo info = {};
        EXPECT_EQ(devapi_get_hg_base_info(&info), 0);
        return info;
    }
    static int32_t child_routers()
    {
        ChildRouterList list = {};
        EXPECT_EQ(devapi_get_childrouter_list(&list), 0);
        return list.count;
    }
    static std::string link_layer()
    {
        SnInfo info = {};
        EXPECT_EQ(devapi_get_sn_info(&info), 0);
        return info.tslinkstatus;
    }
    static int32_t configuration()
    {
        int32_t state = -1;
        EXPECT_EQ(devapi_get_tslink_config(&state), 0);
        return state;
    }
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
    int32_t enabled = -1;
    EXPECT_EQ(devapi_get_Multi_Ap_enable(&enabled), 0);
    EXPECT_EQ(enabled, 0);

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
    nlohmann::json home = house();
    home["mesh"]["link_layer_up"] = false;
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(devapi_setup_mesh(1), 0);
    EXPECT_EQ(link_layer(), "0");
}

TEST_F(MeshControlTest, InAStarAllChildRoutersAreAttachedToTheMainRouter)
{
    ChildRouterList list = {};
    ASSERT_EQ(devapi_get_childrouter_list(&list), 0);
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
    EXPECT_EQ(pair("on", "60"), -1);
    EXPECT_EQ(reason(), R"(Enable "on" is none of "0", "1")");
    EXPECT_EQ(set_mesh("0", "2"), 0);
    EXPECT_EQ(pair("1", "60"), -1);
    EXPECT_EQ(reason(), "the mesh is off");
    EXPECT_EQ(devapi_set_pair_status(nullptr), -1);
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
    EXPECT_EQ(set_mesh("1", "3"), -1);
    EXPECT_EQ(reason(), "MeshMode 3 is none of 1, 2");
    EXPECT_EQ(devapi_setup_mesh(2), -1);
    EXPECT_EQ(devapi_setup_mesh(-1), -1);
    MeshStatus status = {};
    std::memset(&status, '1', sizeof(status));
    EXPECT_EQ(devapi_set_mesh_status(&status), -1);
    EXPECT_EQ(devapi_set_mesh_status(nullptr), -1);
    EXPECT_EQ(devapi_get_mesh_status(nullptr), -1);
    EXPECT_EQ(mesh(), "1 2");
}

TEST_F(MeshControlTest, EachRadioHasItsWps)
{
    EXPECT_EQ(wps("5GHz", "1"), 0);
    EXPECT_EQ(wps("5GHz", "1"), -1);
    EXPECT_EQ(reason(), "WPS is under way on 5GHz");
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
    EXPECT_EQ(wps("5GHz", "1"), -1);
    EXPECT_EQ(reason(), "WPS is off");
    EXPECT_EQ(devapi_set_wps_enable(1), 0);
    EXPECT_EQ(wps("5GHz", "1"), 0); // switching WPS off has ended the first

    nlohmann::json home = house();
    home["radios"][0]["enabled"] = false;
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(wps("2.4GHz", "1"), -1);
    EXPECT_EQ(reason(), "the radio of 2.4GHz is off");
    EXPECT_EQ(wps("2.4GHz", "0"), 0);
    for (const char *radio : {"", "6GHz", "5ghz", "2.4", "all"}) {
        EXPECT_EQ(wps(radio, "1"), -1) << radio;
    }
    EXPECT_EQ(reason(), R"(Radio "all" is none of "2.4GHz", "5GHz")");
    for (const char *action : {"", "2", "start"}) {
        EXPECT_EQ(wps("5GHz", action), -1) << action;
    }
    EXPECT_EQ(devapi_set_wps_state(nullptr), -1);
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
    EXPECT_EQ(devapi_set_kaa_heartbeat(nullptr), -1);
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
    EXPECT_EQ(devapi_set_sta_led("0", "PINK", "10"), -1);
    EXPECT_EQ(reason(), R"(colour "PINK" is none of "WHITE", "BLUE", "GREEN", "ORANGE", "RED")");
    EXPECT_EQ(devapi_set_sta_led("0", "blue", "10"), -1);
    EXPECT_EQ(devapi_set_sta_led("0", "BLUE", "101"), -1);
    EXPECT_EQ(devapi_set_sta_led("0", "BLUE", "-1"), -1);
    EXPECT_EQ(devapi_set_sta_led("0", "BLUE", "bright"), -1);
    EXPECT_EQ(devapi_set_sta_led("0", std::string(1 << 20, 'B').c_str(), "10"), -1);
    EXPECT_EQ(devapi_set_sta_led(nullptr, "BLUE", "10"), -1);
    EXPECT_EQ(devapi_set_sta_led("0", nullptr, "10"), -1);
    EXPECT_EQ(devapi_set_sta_led("0", "BLUE", nullptr), -1);
    EXPECT_EQ(devapi_get_led_info(nullptr), -1);
    EXPECT_EQ(leds(), "1 WHITE 60");

    nlohmann::json home = house();
    home["identity"]["led"] = false;
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(devapi_set_sta_led("0", "BLUE", "10"), -1);
    EXPECT_EQ(reason(), "the router has no LEDs");
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
    EXPECT_EQ(devapi_set_sta_tslink_config(nullptr), -1);
    EXPECT_EQ(devapi_get_tslink_config(nullptr), -1);
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(configuration(), 0);
    EXPECT_EQ(devapi_set_sta_tslink_config("1"), 0);
    EXPECT_STREQ(base().ConfiguerStatus, "1");
}

TEST_F(MeshControlTest, AnInvalidScenarioIsRefused)
{
    EXPECT_EQ(error_with("/mesh_control/heartbeat_seconds", 9),
              "/mesh_control/heartbeat_seconds: 9 is not within 10 to 86400");
    EXPECT_EQ(error_with("/leds/colour", "NULL"),
              R"(/leds/colour: "NULL" is none of "WHITE", "BLUE", "GREEN", "ORANGE", "RED")");
}

} // namespace

// SPDX-License-Identifier: MIT
#include "services_fixture.h"

#include <chrono>

namespace {

class ServiceSwitchesTest : public ServicesTest {
  protected:
    static std::string mode()
    {
        MultiserviceMode mode = {};
        EXPECT_EQ(devapi_get_ap_multiservice_mode(&mode), 0);
        return mode.Mode;
    }
    static int32_t set_mode(const std::string &text)
    {
        MultiserviceMode mode = {};
        set(mode.Mode, text);
        return devapi_set_ap_multiservice_mode(&mode);
    }
    static std::string upnp()
    {
        UpnpState state = {};
        EXPECT_EQ(devapi_get_upnp_state(&state), 0);
        return state.Enable;
    }
    static int32_t set_upnp(const std::string &text)
    {
        UpnpState state = {};
        set(state.Enable, text);
        return devapi_set_upnp_state(&state);
    }
    static std::string alg()
    {
        AlgAbility ability = {};
        EXPECT_EQ(devapi_get_ap_alg_ability(&ability), 0);
        return std::string(ability.PPTP) + ability.FTP + ability.IPSEC + ability.L2TP +
               ability.RTSP + ability.H323 + ability.SIP;
    }
    static int32_t wps()
    {
        int32_t enable = -1;
        EXPECT_EQ(devapi_get_wps_enable(&enable), 0);
        return enable;
    }
    static std::string configuration_service()
    {
        char status[8] = {};
        EXPECT_EQ(devapi_get_tsconf_status(status, sizeof(status)), 0);
        return status;
    }
    static std::string rates(const SpeedTest &test)
    {
        return std::string(test.DownBandWidth) + " " + test.UpBandWidth + " " + test.Delay;
    }
};

TEST_F(ServiceSwitchesTest, TheMultiserviceModeIsKept)
{
    EXPECT_EQ(mode(), "NONE");
    for (const char *wanted : {"SSID", "VLAN"}) {
        EXPECT_EQ(set_mode(wanted), 0);
        ASSERT_EQ(reopen({.state_file = path("state"), .trace = path("trace")}), "");
        EXPECT_EQ(mode(), wanted);
    }
    for (const char *wrong : {"", "ssid", "1", "NULL", "VLANS"}) {
        EXPECT_EQ(set_mode(wrong), -1) << wrong;
    }
    EXPECT_EQ(reason(), R"(Mode "VLANS" is none of "NONE", "SSID", "VLAN")");
    EXPECT_EQ(mode(), "VLAN");
}

TEST_F(ServiceSwitchesTest, OnlyARouterThatBindsVlansSeparatesServicesByVlan)
{
    nlohmann::json home = house();
    home["identity"]["vlan_binding"] = false;
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(set_mode("VLAN"), -1);
    EXPECT_EQ(reason(), "/home/service_switches/multiservice_mode: the router binds no VLANs");
    EXPECT_EQ(set_mode("SSID"), 0);
}

TEST_F(ServiceSwitchesTest, EachProtocolHasItsSwitch)
{
    EXPECT_EQ(alg(), "1111111");
    char(AlgAbility::*switches[])[8] = {&AlgAbility::PPTP, &AlgAbility::FTP,  &AlgAbility::IPSEC,
                                        &AlgAbility::L2TP, &AlgAbility::RTSP, &AlgAbility::H323,
                                        &AlgAbility::SIP};
    for (size_t off = 0; off < std::size(switches); ++off) {
        AlgAbility ability = {};
        std::string expected;
        for (size_t at = 0; at < std::size(switches); ++at) {
            set(ability.*switches[at], at == off ? "0" : "1");
            expected += at == off ? '0' : '1';
        }
        EXPECT_EQ(devapi_set_ap_alg_ability(&ability), 0);
        EXPECT_EQ(alg(), expected);
        // One invalid switch, and none is set.
        set(ability.*switches[off], "on");
        set(ability.*switches[(off + 1) % std::size(switches)], "0");
        EXPECT_EQ(devapi_set_ap_alg_ability(&ability), -1);
        EXPECT_EQ(alg(), expected);
    }
    ASSERT_EQ(reopen({.state_file = path("state")}), "");
    EXPECT_EQ(alg(), "1111110");
}

TEST_F(ServiceSwitchesTest, UpnpIsSwitched)
{
    EXPECT_EQ(upnp(), "1");
    EXPECT_EQ(set_upnp("0"), 0);
    EXPECT_EQ(set_upnp(""), -1);
    EXPECT_EQ(set_upnp("2"), -1);
    ASSERT_EQ(reopen({.state_file = path("state")}), "");
    EXPECT_EQ(upnp(), "0");
    EXPECT_EQ(set_upnp("1"), 0);
    EXPECT_EQ(upnp(), "1");
}

TEST_F(ServiceSwitchesTest, WpsIsOnOrOff)
{
    EXPECT_EQ(wps(), 1);
    EXPECT_EQ(devapi_set_wps_enable(0), 0);
    for (const int32_t wrong : {-1, 2, 9'999'999, INT32_MIN}) {
        EXPECT_EQ(devapi_set_wps_enable(wrong), -1);
    }
    ASSERT_EQ(reopen({.state_file = path("state")}), "");
    EXPECT_EQ(wps(), 0);
    EXPECT_EQ(devapi_set_wps_enable(1), 0);
    EXPECT_EQ(wps(), 1);
}

TEST_F(ServiceSwitchesTest, TheConfigurationServiceWaitsForTheInternet)
{
    EXPECT_EQ(configuration_service(), "RUNNING");
    ASSERT_EQ(open_home(house_without_wan()), "");
    EXPECT_EQ(configuration_service(), "WAITING");
    nlohmann::json home = house();
    home["service_switches"]["configuration_service"] = false;
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(configuration_service(), "STOPPED");
}

TEST_F(ServiceSwitchesTest, ItsStatusIsNotCut)
{
    char status[8] = "before";
    for (const int32_t size : {7, 1, 0, -1, INT32_MIN}) {
        EXPECT_EQ(devapi_get_tsconf_status(status, size), -1);
        EXPECT_STREQ(status, "before");
    }
    EXPECT_EQ(reason(), "there is no room for the status");
}

TEST_F(ServiceSwitchesTest, ASpeedTestMeasuresTheUnusedBandwidth)
{
    SpeedTest test = {};
    ASSERT_EQ(devapi_speedtest_request(&test), 0);
    HgBaseInfo base = {};
    ASSERT_EQ(devapi_get_hg_base_info(&base), 0);
    EXPECT_EQ(std::stoi(test.DownBandWidth) + std::stoi(base.DownSpeed), 250'000);
    EXPECT_EQ(std::stoi(test.UpBandWidth) + std::stoi(base.UpSpeed), 40'000);
    EXPECT_GT(std::stoi(test.Delay), 0);

    nlohmann::json home = house();
    home["line"] = {{"up_kbps", 1}, {"down_kbps", 9'999'999}};
    ASSERT_EQ(open_home(home), "");
    test = {};
    ASSERT_EQ(devapi_speedtest_request(&test), 0);
    EXPECT_STREQ(test.UpBandWidth, "0");
    EXPECT_EQ(std::strlen(test.DownBandWidth), 7u);
}

TEST_F(ServiceSwitchesTest, ThereIsNoSpeedTestWithoutAConnection)
{
    ASSERT_EQ(open_home(house_without_wan()), "");
    SpeedTest test = {};
    EXPECT_EQ(devapi_speedtest_request(&test), -1);
    EXPECT_EQ(reason(), "the WAN is not connected");
    EXPECT_EQ(rates(test), "  ");
}

TEST_F(ServiceSwitchesTest, WithARunningClockASpeedTestTakesTime)
{
    unsetenv("SIMULATED_GATEWAY_TIME");
    ASSERT_EQ(reopen({.trace = path("trace")}), "");
    SpeedTest test = {};
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(devapi_speedtest_request(&test), 0);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500));
    EXPECT_NE(rates(test), "  ");
}

TEST_F(ServiceSwitchesTest, NullIsRefused)
{
    EXPECT_EQ(devapi_get_ap_multiservice_mode(nullptr), -1);
    EXPECT_EQ(devapi_set_ap_multiservice_mode(nullptr), -1);
    EXPECT_EQ(devapi_speedtest_request(nullptr), -1);
    EXPECT_EQ(devapi_get_ap_alg_ability(nullptr), -1);
    EXPECT_EQ(devapi_set_ap_alg_ability(nullptr), -1);
    EXPECT_EQ(devapi_get_upnp_state(nullptr), -1);
    EXPECT_EQ(devapi_set_upnp_state(nullptr), -1);
    EXPECT_EQ(devapi_get_tsconf_status(nullptr, 8), -1);
    EXPECT_EQ(devapi_get_wps_enable(nullptr), -1);
}

TEST_F(ServiceSwitchesTest, UnterminatedTextsAreRefused)
{
    MultiserviceMode mode = {};
    fill_completely(mode.Mode, 'V');
    EXPECT_EQ(devapi_set_ap_multiservice_mode(&mode), -1);
    AlgAbility ability = {};
    std::memset(&ability, '1', sizeof(ability));
    EXPECT_EQ(devapi_set_ap_alg_ability(&ability), -1);
    UpnpState upnp = {};
    fill_completely(upnp.Enable, '1');
    EXPECT_EQ(devapi_set_upnp_state(&upnp), -1);
}

TEST_F(ServiceSwitchesTest, AnInvalidScenarioIsRefused)
{
    EXPECT_EQ(error_with("/service_switches/multiservice_mode", "ROUTE"),
              R"(/service_switches/multiservice_mode: "ROUTE" is none of "NONE", "SSID", "VLAN")");
    EXPECT_EQ(error_with("/line/up_kbps", 0), "/line/up_kbps: 0 is not within 1 to 9999999");
    EXPECT_EQ(error_with("/line/down_kbps", 10'000'000),
              "/line/down_kbps: 10000000 is not within 1 to 9999999");
}

} // namespace

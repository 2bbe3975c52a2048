// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

#include <chrono>

namespace {

class ServiceSwitchesTest : public HouseTest {
  protected:
    static std::string mode() { return reported_by(devapi_get_ap_multiservice_mode).Mode; }
    static int32_t set_mode(const std::string &text)
    {
        return set_by(devapi_set_ap_multiservice_mode, {{"Mode", text}});
    }
    static std::string upnp() { return reported_by(devapi_get_upnp_state).Enable; }
    static int32_t set_upnp(const std::string &text)
    {
        return set_by(devapi_set_upnp_state, {{"Enable", text}});
    }
    static int32_t wps() { return reported_by(devapi_get_wps_enable); }
    static std::string configuration_service()
    {
        char status[8] = {};
        EXPECT_EQ(devapi_get_tsconf_status(status, sizeof(status)), 0);
        return status;
    }
};

TEST_F(ServiceSwitchesTest, TheMultiserviceModeIsKept)
{
    EXPECT_EQ(mode(), "NONE");
    for (const char *wanted : {"SSID", "VLAN"}) {
        EXPECT_EQ(set_mode(wanted), 0);
        ASSERT_EQ(open_when(kTime), "");
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
    ASSERT_EQ(open_home(house({{"/identity/vlan_binding", false}})), "");
    EXPECT_EQ(reason(set_mode("VLAN")),
              "/home/service_switches/multiservice_mode: the router binds no VLANs");
    EXPECT_EQ(set_mode("SSID"), 0);
}

TEST_F(ServiceSwitchesTest, EachProtocolHasItsSwitch)
{
    const Fields on = {{"PPTP", "1"}, {"FTP", "1"},  {"IPSEC", "1"}, {"L2TP", "1"},
                       {"RTSP", "1"}, {"H323", "1"}, {"SIP", "1"}};
    const auto reported = [&] {
        return like(on, reported_by(devapi_get_ap_alg_ability));
    };
    for (const auto &[protocol, enable] : on) {
        Fields others = on;
        others[protocol] = "0";
        EXPECT_EQ(set_by(devapi_set_ap_alg_ability, others), 0);
        EXPECT_EQ(reported(), others);
        // One invalid switch, and none is set.
        Fields wrong = on;
        wrong[protocol] = "on";
        EXPECT_EQ(set_by(devapi_set_ap_alg_ability, wrong), -1);
        EXPECT_EQ(reported(), others);
    }
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_NE(reported(), on);
}

TEST_F(ServiceSwitchesTest, UpnpIsSwitched)
{
    EXPECT_EQ(upnp(), "1");
    EXPECT_EQ(set_upnp("0"), 0);
    EXPECT_EQ(set_upnp(""), -1);
    EXPECT_EQ(set_upnp("2"), -1);
    ASSERT_EQ(open_when(kTime), "");
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
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(wps(), 0);
    EXPECT_EQ(devapi_set_wps_enable(1), 0);
    EXPECT_EQ(wps(), 1);
}

TEST_F(ServiceSwitchesTest, TheConfigurationServiceWaitsForTheInternet)
{
    EXPECT_EQ(configuration_service(), "RUNNING");
    ASSERT_EQ(open_home(house_without_wan()), "");
    EXPECT_EQ(configuration_service(), "WAITING");
    ASSERT_EQ(open_home(house({{"/service_switches/configuration_service", false}})), "");
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
    const SpeedTest test = reported_by(devapi_speedtest_request);
    EXPECT_EQ(std::stoi(test.DownBandWidth) + std::stoi(base().DownSpeed), 250'000);
    EXPECT_EQ(std::stoi(test.UpBandWidth) + std::stoi(base().UpSpeed), 40'000);
    EXPECT_GT(std::stoi(test.Delay), 0);

    ASSERT_EQ(open_home(house({{"/line", {{"up_kbps", 1}, {"down_kbps", 9'999'999}}}})), "");
    const SpeedTest uneven = reported_by(devapi_speedtest_request);
    EXPECT_STREQ(uneven.UpBandWidth, "0");
    EXPECT_EQ(std::strlen(uneven.DownBandWidth), 7u);
}

TEST_F(ServiceSwitchesTest, ThereIsNoSpeedTestWithoutAConnection)
{
    ASSERT_EQ(open_home(house_without_wan()), "");
    SpeedTest test = {};
    EXPECT_EQ(reason(devapi_speedtest_request(&test)), "the WAN is not connected");
    EXPECT_STREQ(test.DownBandWidth, "");
}

TEST_F(ServiceSwitchesTest, WithARunningClockASpeedTestTakesTime)
{
    unsetenv("SIMULATED_GATEWAY_TIME");
    ASSERT_EQ(reopen({.trace = path("trace")}), "");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_STRNE(reported_by(devapi_speedtest_request).DownBandWidth, "");
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500));
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

} // namespace

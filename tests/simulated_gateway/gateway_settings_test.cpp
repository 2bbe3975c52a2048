// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

namespace {

class GatewaySettingsTest : public GatewayTest {
  protected:
    static HgBaseInfo base()
    {
        HgBaseInfo info = {};
        EXPECT_EQ(devapi_get_hg_base_info(&info), 0);
        return info;
    }
    static WanIpInfo wan()
    {
        WanIpInfo info = {};
        EXPECT_EQ(devapi_get_wan_ip_info(&info), 0);
        return info;
    }
    static HomePageInfo home_page()
    {
        HomePageInfo info = {};
        EXPECT_EQ(devapi_get_home_page_info(&info), 0);
        return info;
    }
    static int32_t rename(const std::string &name)
    {
        HgBaseInfo info = {};
        set(info.Name, name);
        return devapi_set_hg_base_info(&info);
    }

    static std::string pppoe()
    {
        PppoeInfo info = {};
        EXPECT_EQ(devapi_get_hg_pppoe_info(&info), 0);
        return std::string(info.Account) + " " + info.Password + " " + info.Enable;
    }
    static std::string set_pppoe(const std::string &account, const std::string &password,
                                 const std::string &enable)
    {
        PppoeSetting setting = {};
        set(setting.info.Account, account);
        set(setting.info.Password, password);
        set(setting.info.Enable, enable);
        const int32_t result = devapi_set_hg_pppoe_info(&setting);
        EXPECT_EQ(result, setting.FailReason[0] == '\0' ? 0 : -1);
        return setting.FailReason;
    }

    std::string open_with(const std::string &pointer, const nlohmann::json &value)
    {
        nlohmann::json home = house();
        home[nlohmann::json::json_pointer(pointer)] = value;
        return open_at(kTime,
                       {.scenario = write("home.json", home.dump()), .trace = path("trace")});
    }
    std::string open_without_wan(const std::string &fault)
    {
        nlohmann::json wan = house().at("wan");
        wan["connected"] = false;
        wan["fault"] = fault;
        return open_with("/wan", wan);
    }
};

TEST_F(GatewaySettingsTest, BaseInformationIsThatOfTheHome)
{
    ASSERT_EQ(open_at(kTime, {}), "");
    const HgBaseInfo info = base();
    EXPECT_STREQ(info.Name, "Lindenhof");
    EXPECT_STREQ(info.Mac, "3C:6A:D2:10:4F:20");
    EXPECT_STREQ(info.NetStatus, "1");
    EXPECT_STREQ(info.WiFiStatus1, "1");
    EXPECT_STREQ(info.WiFiStatus2, "1");
    EXPECT_STREQ(info.SSID1, "Lindenhof");
    EXPECT_STREQ(info.SSID2, "Lindenhof-5G");
    EXPECT_STREQ(info.Wlan0Mac, "3C:6A:D2:10:4F:21");
    EXPECT_STREQ(info.Wlan1Mac, "3C:6A:D2:10:4F:25");
    EXPECT_STREQ(info.ip, "192.168.1.1");
    EXPECT_STREQ(info.HWVersion, "V1.2");
    EXPECT_STREQ(info.FWVersion, "V2.4.1");
    EXPECT_STREQ(info.FWDATA, "2025-11-18");
    EXPECT_STREQ(info.DeviceType, "HGU-AX3000");
    EXPECT_STREQ(info.AreaCode, "NORTH-07");
    EXPECT_STREQ(info.AddressType, "Dynamic");
    EXPECT_STREQ(info.QQGameAcceleratorEnable, "1");
    EXPECT_STREQ(info.QosAcceleratorEnable, "0");
    EXPECT_STREQ(info.FireWallEnable, "1");
    EXPECT_STREQ(info.LedLight, "60");
    EXPECT_STREQ(info.LedSwitch, "1");
    EXPECT_STREQ(info.WanLinkMode, "PPPoE");
    EXPECT_STREQ(info.ConfiguerStatus, "1");
}

TEST_F(GatewaySettingsTest, AHomeWithoutRadiosReportsNone)
{
    nlohmann::json home = house();
    home["radios"] = home["ssids"] = home["guest_networks"] = nlohmann::json::array();
    home["hosts"] = nlohmann::json::array();
    ASSERT_EQ(open({.scenario = write("home.json", home.dump())}), "");
    const HgBaseInfo info = base();
    EXPECT_STREQ(info.WiFiStatus1, "NULL");
    EXPECT_STREQ(info.SSID2, "NULL");
    EXPECT_STREQ(info.Wlan1Mac, "NULL");
}

TEST_F(GatewaySettingsTest, TheHomePageShowsTheSameAsTheBaseInformation)
{
    ASSERT_EQ(open_at(kTime, {}), "");
    const HgBaseInfo info = base();
    const HomePageInfo page = home_page();
    EXPECT_STREQ(page.Devname, info.Name);
    EXPECT_STREQ(page.UploadSpeed, info.UpSpeed);
    EXPECT_STREQ(page.DownloadSpeed, info.DownSpeed);
    EXPECT_STREQ(page.CpuRate, info.Cpu);
    EXPECT_STREQ(page.MemRate, info.Memory);
    EXPECT_STREQ(page.GameSpeed, "1");
    EXPECT_STREQ(page.GamePort, "2");
    EXPECT_STREQ(page.GameBand, "5GHz");
    EXPECT_GE(std::stoi(page.CpuTemperature), 50);
    EXPECT_LE(std::stoi(page.CpuTemperature), 58);
}

TEST_F(GatewaySettingsTest, UptimeRuns)
{
    ASSERT_EQ(open_at(kTime, {.state_file = path("state")}), "");
    EXPECT_STREQ(base().UpTime, "0");
    ASSERT_EQ(open_at(kTime + 3700, {.state_file = path("state")}), "");
    EXPECT_STREQ(base().UpTime, "3700");
    EXPECT_STREQ(base().WanUptime, "3700");
    ASSERT_EQ(open_at(kTime - 5, {.state_file = path("state")}), "");
    EXPECT_STREQ(base().UpTime, "0");
}

TEST_F(GatewaySettingsTest, MeasurementsVaryByTimeAndSeedOnly)
{
    const auto measured = [&](int64_t time, int64_t seed) {
        nlohmann::json home = house();
        home["ordinary_day"]["seed"] = seed;
        EXPECT_EQ(open_at(time, {.scenario = write("home.json", home.dump())}), "");
        const HgBaseInfo info = base();
        return std::string(info.UpSpeed) + " " + info.DownSpeed + " " + info.Cpu + " " +
               info.Memory;
    };
    const std::string first = measured(kTime, 7);
    EXPECT_EQ(measured(kTime, 7), first);
    EXPECT_EQ(measured(kTime + 4, 7), first);
    EXPECT_NE(measured(kTime + 5, 7), first);
    EXPECT_NE(measured(kTime, 8), first);
}

TEST_F(GatewaySettingsTest, MeasurementsStayInATypicalRange)
{
    std::string last;
    int changes = 0;
    for (int slot = 0; slot < 100; ++slot) {
        ASSERT_EQ(open_at(kTime + int64_t{5} * slot, {}), "");
        const HgBaseInfo info = base();
        EXPECT_GE(std::stoi(info.UpSpeed), 1800 * 6 / 10);
        EXPECT_LE(std::stoi(info.UpSpeed), 1800 * 14 / 10);
        EXPECT_GE(std::stoi(info.DownSpeed), 14500 * 6 / 10);
        EXPECT_LE(std::stoi(info.DownSpeed), 14500 * 14 / 10);
        EXPECT_GE(std::stoi(info.Cpu), 22 * 7 / 10);
        EXPECT_LE(std::stoi(info.Cpu), 22 * 13 / 10);
        EXPECT_GE(std::stoi(info.Memory), 45);
        EXPECT_LE(std::stoi(info.Memory), 51);
        changes += last == info.DownSpeed ? 0 : 1;
        last = info.DownSpeed;
    }
    EXPECT_GT(changes, 90);
}

TEST_F(GatewaySettingsTest, ANewNameIsReportedAndKept)
{
    ASSERT_EQ(open({.state_file = path("state")}), "");
    EXPECT_EQ(rename("Haus am See"), 0);
    EXPECT_STREQ(base().Name, "Haus am See");
    EXPECT_STREQ(home_page().Devname, "Haus am See");
    ASSERT_EQ(reopen({.state_file = path("state")}), "");
    EXPECT_STREQ(base().Name, "Haus am See");
    EXPECT_STREQ(base().Mac, "3C:6A:D2:10:4F:20");
}

TEST_F(GatewaySettingsTest, ANameOfFullWidthIsReportedWhole)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(rename(std::string(63, 'n')), 0);
    EXPECT_EQ(base().Name, std::string(63, 'n'));
}

TEST_F(GatewaySettingsTest, ANameCutWithinACharacterDropsThePartialCharacter)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(rename(std::string(62, 'n') + "ü"), 0);
    EXPECT_EQ(base().Name, std::string(62, 'n'));
    EXPECT_EQ(rename(std::string(60, 'n') + "🏠"), 0);
    EXPECT_EQ(base().Name, std::string(60, 'n'));
}

TEST_F(GatewaySettingsTest, AnInvalidNameIsRefused)
{
    ASSERT_EQ(open({.trace = path("trace")}), "");
    EXPECT_EQ(rename(""), -1);
    EXPECT_EQ(reason(), "Name is empty");
    for (const char *name : {"a\xff"
                             "b",
                             "\x80", "line\nbreak", "\x1b[2J"}) {
        EXPECT_EQ(rename(name), -1);
        EXPECT_EQ(reason(), "Name contains control characters or is not UTF-8");
    }
    HgBaseInfo info = {};
    fill_completely(info.Name, 'n');
    info.Mac[0] = 'x';
    EXPECT_EQ(devapi_set_hg_base_info(&info), -1);
    EXPECT_EQ(reason(), "Name is longer than 63 bytes");
    EXPECT_STREQ(base().Name, "Lindenhof");
}

TEST_F(GatewaySettingsTest, AWanWithoutAConnectionHasNoAddressesAndNoRates)
{
    ASSERT_EQ(open_with("/wan/secondary_dns", ""), "");
    EXPECT_STREQ(wan().ip, "100.72.18.203");
    EXPECT_STREQ(wan().Dns, "100.64.0.53");
    EXPECT_STREQ(wan().WanGateWay, "100.72.0.1");
    EXPECT_STREQ(wan().ConnectionState, "Connected");
    ASSERT_EQ(open_without_wan("LINK_DOWN"), "");
    EXPECT_STREQ(wan().ip, "NULL");
    EXPECT_STREQ(wan().Dns, "NULL");
    EXPECT_STREQ(wan().WanGateWay, "NULL");
    EXPECT_STREQ(wan().ConnectionState, "Disconnected");
    EXPECT_STREQ(base().NetStatus, "0");
    EXPECT_STREQ(base().UpSpeed, "0");
    EXPECT_STREQ(base().DownSpeed, "0");
    EXPECT_STREQ(base().WanUptime, "0");
}

TEST_F(GatewaySettingsTest, APppoeAccountIsReportedAndKept)
{
    ASSERT_EQ(open({.state_file = path("state")}), "");
    EXPECT_EQ(pppoe(), "k4471902@fibre.example Lh7-pq2-Vw9 1");
    EXPECT_EQ(set_pppoe("smith", "s3cret", "1"), "");
    ASSERT_EQ(reopen({.state_file = path("state")}), "");
    EXPECT_EQ(pppoe(), "smith s3cret 1");
}

TEST_F(GatewaySettingsTest, PppoeSwitchedOffKeepsTheAccountAndUsesDhcp)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(set_pppoe("", "", "0"), "");
    EXPECT_EQ(pppoe(), "k4471902@fibre.example Lh7-pq2-Vw9 0");
    EXPECT_STREQ(base().WanLinkMode, "DHCP");
    EXPECT_EQ(set_pppoe("NULL", "NULL", "0"), "");
    EXPECT_EQ(pppoe(), "k4471902@fibre.example Lh7-pq2-Vw9 0");
    EXPECT_EQ(set_pppoe("smith", "s3cret", "0"), "");
    EXPECT_EQ(pppoe(), "smith s3cret 0");
    EXPECT_EQ(set_pppoe("smith", "s3cret", "1"), "");
    EXPECT_STREQ(base().WanLinkMode, "PPPoE");
}

TEST_F(GatewaySettingsTest, PppoeReconnectsTheWan)
{
    ASSERT_EQ(open_at(kTime, {.state_file = path("state")}), "");
    ASSERT_EQ(open_at(kTime + 1000, {.state_file = path("state")}), "");
    EXPECT_EQ(set_pppoe("smith", "s3cret", "1"), "");
    ASSERT_EQ(open_at(kTime + 1060, {.state_file = path("state")}), "");
    EXPECT_STREQ(base().WanUptime, "60");
    EXPECT_STREQ(base().UpTime, "1060");

    ASSERT_EQ(open_without_wan("AUTH_FAILED"), "");
    EXPECT_EQ(set_pppoe("smith", "s3cret", "1"), "");
    EXPECT_STREQ(base().NetStatus, "1");
    ASSERT_EQ(open_without_wan("LINK_DOWN"), "");
    EXPECT_EQ(set_pppoe("smith", "s3cret", "1"), "");
    EXPECT_STREQ(base().NetStatus, "0");
}

TEST_F(GatewaySettingsTest, AnInvalidPppoeAccountIsRefusedWithAReason)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(set_pppoe("", "s3cret", "1"), "Account is empty");
    EXPECT_EQ(set_pppoe("smith", "", "1"), "Password is empty");
    EXPECT_EQ(set_pppoe("NULL", "s3cret", "1"), "Account is empty");
    EXPECT_EQ(set_pppoe("smith", "NULL", "1"), "Password is empty");
    EXPECT_EQ(set_pppoe("smith", "s3cret", "yes"), "Enable \"yes\" is none of \"0\", \"1\"");
    EXPECT_EQ(set_pppoe("smi\xffth", "s3cret", "1"),
              "Account contains control characters or is not UTF-8");
    EXPECT_EQ(set_pppoe("smith", "s3\ncret", "0"),
              "Password contains control characters or is not UTF-8");
    PppoeSetting setting = {};
    set(setting.info.Account, "smith");
    fill_completely(setting.info.Password, '1');
    set(setting.info.Enable, "1");
    EXPECT_EQ(devapi_set_hg_pppoe_info(&setting), -1);
    EXPECT_STREQ(setting.FailReason, "Password is longer than 63 bytes");
    EXPECT_EQ(pppoe(), "k4471902@fibre.example Lh7-pq2-Vw9 1");
    EXPECT_EQ(set_pppoe(std::string(63, 'a'), std::string(63, 'p'), "1"), "");
    EXPECT_EQ(pppoe(), std::string(63, 'a') + " " + std::string(63, 'p') + " 1");
}

TEST_F(GatewaySettingsTest, TheTraceMasksThePasswordAndShowsTheReason)
{
    ASSERT_EQ(open({.trace = path("trace")}), "");
    set_pppoe("", "s3cret", "1");
    EXPECT_NE(lines(path("trace"))
                  .back()
                  .find("devapi_set_hg_pppoe_info(setting={Account=\"\", Password=***, "
                        "Enable=\"1\", FailReason=\"Account is empty\"}) = -1 in "),
              std::string::npos);
    pppoe();
    EXPECT_EQ(read(path("trace")).find("s3cret"), std::string::npos);
    EXPECT_EQ(read(path("trace")).find("Lh7-pq2-Vw9"), std::string::npos);
}

TEST_F(GatewaySettingsTest, NullRecordsAreFailedCalls)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(devapi_get_hg_base_info(nullptr), -1);
    EXPECT_EQ(devapi_set_hg_base_info(nullptr), -1);
    EXPECT_EQ(devapi_get_home_page_info(nullptr), -1);
    EXPECT_EQ(devapi_get_wan_ip_info(nullptr), -1);
    EXPECT_EQ(devapi_get_hg_pppoe_info(nullptr), -1);
    EXPECT_EQ(devapi_set_hg_pppoe_info(nullptr), -1);
}

} // namespace

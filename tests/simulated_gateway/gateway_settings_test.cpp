// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

namespace {

class GatewaySettingsTest : public HouseTest {
  protected:
    static WanIpInfo wan() { return reported_by(devapi_get_wan_ip_info); }
    static HomePageInfo home_page() { return reported_by(devapi_get_home_page_info); }
    static int32_t rename(const std::string &name)
    {
        return set_by(devapi_set_hg_base_info, {{"Name", name}});
    }

    static std::string pppoe()
    {
        const PppoeInfo info = reported_by(devapi_get_hg_pppoe_info);
        return std::string(info.Account) + " " + info.Password + " " + info.Enable;
    }
    static std::string set_pppoe(const std::string &account, const std::string &password,
                                 const std::string &enable)
    {
        return fail_reason(devapi_set_hg_pppoe_info,
                           record_with<PppoeSetting>(
                               {{"Account", account}, {"Password", password}, {"Enable", enable}}));
    }
};

TEST_F(GatewaySettingsTest, AHomeWithoutRadiosReportsNone)
{
    ASSERT_EQ(open_home(house_without_radios()), "");
    EXPECT_STREQ(base().WiFiStatus1, "NULL");
    EXPECT_STREQ(base().SSID2, "NULL");
    EXPECT_STREQ(base().Wlan1Mac, "NULL");
}

TEST_F(GatewaySettingsTest, TheHomePageShowsTheSameAsTheBaseInformation)
{
    const HgBaseInfo info = base();
    const HomePageInfo page = home_page();
    EXPECT_STREQ(page.Devname, info.Name);
    EXPECT_STREQ(page.UploadSpeed, info.UpSpeed);
    EXPECT_STREQ(page.DownloadSpeed, info.DownSpeed);
    EXPECT_STREQ(page.CpuRate, info.Cpu);
    EXPECT_STREQ(page.MemRate, info.Memory);
    EXPECT_GE(std::stoi(page.CpuTemperature), 50);
    EXPECT_LE(std::stoi(page.CpuTemperature), 58);
}

TEST_F(GatewaySettingsTest, UptimeRuns)
{
    EXPECT_STREQ(base().UpTime, "0");
    ASSERT_EQ(open_when(kTime + 3700), "");
    EXPECT_STREQ(base().UpTime, "3700");
    EXPECT_STREQ(base().WanUptime, "3700");
    ASSERT_EQ(open_when(kTime - 5), "");
    EXPECT_STREQ(base().UpTime, "0");
}

TEST_F(GatewaySettingsTest, MeasurementsVaryByTimeAndSeedOnly)
{
    const auto measured = [&](int64_t time, int64_t seed) {
        EXPECT_EQ(open_home(house({{"/ordinary_day/seed", seed}}), time), "");
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
    EXPECT_EQ(rename("Haus am See"), 0);
    EXPECT_STREQ(base().Name, "Haus am See");
    EXPECT_STREQ(home_page().Devname, "Haus am See");
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_STREQ(base().Name, "Haus am See");
    EXPECT_STREQ(base().Mac, "3C:6A:D2:10:4F:20");
}

TEST_F(GatewaySettingsTest, ANameCutWithinACharacterDropsThePartialCharacter)
{
    EXPECT_EQ(rename(std::string(63, 'n')), 0);
    EXPECT_EQ(base().Name, std::string(63, 'n'));
    EXPECT_EQ(rename(std::string(62, 'n') + "ü"), 0);
    EXPECT_EQ(base().Name, std::string(62, 'n'));
}

TEST_F(GatewaySettingsTest, AnInvalidNameIsRefused)
{
    EXPECT_EQ(reason(rename("")), "Name is empty");
    for (const char *name : {"a\xff"
                             "b",
                             "\x80", "line\nbreak", "\x1b[2J"}) {
        EXPECT_EQ(reason(rename(name)), "Name contains control characters or is not UTF-8");
    }
    HgBaseInfo info = {};
    fill_completely(info.Name, 'n');
    info.Mac[0] = 'x';
    EXPECT_EQ(reason(devapi_set_hg_base_info(&info)), "Name is longer than 63 bytes");
    EXPECT_STREQ(base().Name, "Lindenhof");
}

TEST_F(GatewaySettingsTest, AWanWithoutAConnectionHasNoAddressesAndNoRates)
{
    ASSERT_EQ(open_home(house({{"/wan/secondary_dns", ""}})), "");
    EXPECT_STREQ(wan().ip, "100.72.18.203");
    EXPECT_STREQ(wan().Dns, "100.64.0.53");
    EXPECT_STREQ(wan().WanGateWay, "100.72.0.1");
    EXPECT_STREQ(wan().ConnectionState, "Connected");
    ASSERT_EQ(open_home(house_without_wan()), "");
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
    EXPECT_EQ(pppoe(), "k4471902@fibre.example Lh7-pq2-Vw9 1");
    EXPECT_EQ(set_pppoe("smith", "s3cret", "1"), "");
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(pppoe(), "smith s3cret 1");
}

TEST_F(GatewaySettingsTest, PppoeSwitchedOffKeepsTheAccountAndUsesDhcp)
{
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
    ASSERT_EQ(open_when(kTime + 1000), "");
    EXPECT_EQ(set_pppoe("smith", "s3cret", "1"), "");
    ASSERT_EQ(open_when(kTime + 1060), "");
    EXPECT_STREQ(base().WanUptime, "60");
    EXPECT_STREQ(base().UpTime, "1060");

    ASSERT_EQ(open_home(house_without_wan("AUTH_FAILED")), "");
    EXPECT_EQ(set_pppoe("smith", "s3cret", "1"), "");
    EXPECT_STREQ(base().NetStatus, "1");
    ASSERT_EQ(open_home(house_without_wan()), "");
    EXPECT_EQ(set_pppoe("smith", "s3cret", "1"), "");
    EXPECT_STREQ(base().NetStatus, "0");
}

TEST_F(GatewaySettingsTest, AnInvalidPppoeAccountIsRefusedWithAReason)
{
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
    set_pppoe("", "s3cret", "1");
    EXPECT_THAT(last_line(),
                HasSubstr("devapi_set_hg_pppoe_info(setting={Account=\"\", Password=***, "
                          "Enable=\"1\", FailReason=\"Account is empty\"}) = -1 in "));
    pppoe();
    EXPECT_THAT(read(path("trace")), Not(HasSubstr("s3cret")));
    EXPECT_THAT(read(path("trace")), Not(HasSubstr("Lh7-pq2-Vw9")));
}

} // namespace

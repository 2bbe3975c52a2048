// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

namespace {

class AdministrationTest : public HouseTest {
  protected:
    static std::string admin()
    {
        const LoginInfo info = reported_by(devapi_get_admin_info);
        return std::string(info.Name) + " " + info.Password;
    }
    static int32_t set_admin(const std::string &type, const std::string &name,
                             const std::string &password)
    {
        return set_by(devapi_set_admin_info,
                      {{"Type", type}, {"Name", name}, {"Password", password}});
    }
    static std::string web_login()
    {
        const LoginInfo info = reported_by(devapi_get_web_login_info);
        return std::string(info.WebLoginType) + " " + info.Password + " " + info.WebLoginIp;
    }
    static int32_t set_web_login(const std::string &type, const std::string &password)
    {
        return set_by(devapi_set_web_login_info, {{"WebLoginType", type}, {"Password", password}});
    }
    static int32_t set_web_login_type(const std::string &type)
    {
        return set_by(devapi_set_web_login_type, {{"WebLoginType", type}});
    }
    static std::string reboot_schedule()
    {
        const RebootInfo info = reported_by(devapi_get_reboot_info);
        return std::string(info.GatewayRebootEnable) + " " + info.Time + " " + info.DaysOfWeek;
    }
    static int32_t set_reboot_schedule(const std::string &enable, const std::string &time,
                                       const std::string &days)
    {
        return set_by(devapi_set_reboot_info,
                      {{"GatewayRebootEnable", enable}, {"Time", time}, {"DaysOfWeek", days}});
    }
    static std::string sleep()
    {
        const HgSleepInfo info = reported_by(devapi_get_hg_sleep_info);
        return std::string(info.GatewaySleepEnable) + info.WiFiSleepEnable + info.LedSleepEnable +
               " " + info.StartTime + " " + info.EndTime;
    }
    static int32_t set_sleep(const std::string &gateway, const std::string &wifi,
                             const std::string &leds, const std::string &start,
                             const std::string &end)
    {
        return set_by(devapi_set_hg_sleep_info, {{"GatewaySleepEnable", gateway},
                                                 {"WiFiSleepEnable", wifi},
                                                 {"LedSleepEnable", leds},
                                                 {"StartTime", start},
                                                 {"EndTime", end}});
    }
};

TEST_F(AdministrationTest, ARebootIsReportedToTheHost)
{
    std::vector<int32_t> reported;
    simulated_gateway_on_reboot(
        [](int32_t seconds, void *all) {
            static_cast<std::vector<int32_t> *>(all)->push_back(seconds);
        },
        &reported);
    unsetenv("SIMULATED_GATEWAY_TIME");
    ASSERT_EQ(reopen({.faults = {"devapi_reboot=-1*1"}, .reboot_seconds = 45}), "");
    EXPECT_EQ(reported, std::vector<int32_t>()) << "it was switched on";
    EXPECT_EQ(devapi_reboot(), -1);
    EXPECT_EQ(reported, std::vector<int32_t>()) << "it has refused";
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_EQ(devapi_recovery(), 0);
    simulated_gateway_power_cycle();
    EXPECT_EQ(call(), 0);
    EXPECT_EQ(reported, std::vector<int32_t>(3, 45));
    close();
    simulated_gateway_power_cycle();
    EXPECT_EQ(reported.size(), 3U) << "it is closed";

    ASSERT_EQ(open({.reboot_seconds = -1}), "");
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_EQ(reported.back(), 0);
    close();
    ASSERT_EQ(open_at(kTime, {.reboot_seconds = 45}), "");
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_EQ(reported.back(), 0) << "its clock is stopped";
    EXPECT_EQ(reported.size(), 5U);
    simulated_gateway_on_reboot(nullptr, nullptr);
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_EQ(reported.size(), 5U);
}

TEST_F(AdministrationTest, TheAdministratorIsReportedAndKept)
{
    EXPECT_EQ(set_admin("2", std::string(127, 'n'), std::string(127, 'p')), 0);
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(admin(), std::string(127, 'n') + " " + std::string(127, 'p'));
    EXPECT_EQ(json_of(path("state"))["home"]["administration"]["admin_type"], "2");
    EXPECT_EQ(web_login(), "1 kirschbluete-11 192.168.1.1");
}

TEST_F(AdministrationTest, AnInvalidAdministratorIsRefused)
{
    EXPECT_EQ(reason(set_admin("3", "root", "secret")), "Type \"3\" is none of \"1\", \"2\"");
    EXPECT_EQ(reason(set_admin("1", "", "secret")), "Name is empty");
    EXPECT_EQ(reason(set_admin("1", "root", "")), "Password is empty");
    EXPECT_EQ(reason(set_admin("1",
                               "ro\xc3"
                               "ot",
                               "secret")),
              "Name contains control characters or is not UTF-8");
    LoginInfo filled = {};
    set(filled.Type, "1");
    fill_completely(filled.Name, 'n');
    set(filled.Password, "secret");
    EXPECT_EQ(reason(devapi_set_admin_info(&filled)), "Name is longer than 127 bytes");
    EXPECT_EQ(admin(), "admin zaun-und-tor-58");
}

TEST_F(AdministrationTest, TheWebLoginIsReportedAndKept)
{
    EXPECT_EQ(set_web_login("0", "battery staple"), 0);
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(web_login(), "0 battery staple 192.168.1.1");
    EXPECT_EQ(set_web_login_type("1"), 0);
    EXPECT_EQ(web_login(), "1 battery staple 192.168.1.1");
    EXPECT_EQ(admin(), "admin zaun-und-tor-58");
}

TEST_F(AdministrationTest, TheWebLoginIsAtTheAddressOfTheLan)
{
    EXPECT_EQ(set_by(devapi_set_lan_ip_info, {{"GatewayLanIP", "10.0.0.1"},
                                              {"SubnetMask", "255.255.255.0"},
                                              {"StartIp", "10.0.0.20"},
                                              {"EndIp", "10.0.0.99"}}),
              0);
    EXPECT_EQ(web_login(), "1 kirschbluete-11 10.0.0.1");
}

TEST_F(AdministrationTest, AnInvalidWebLoginIsRefused)
{
    for (const char *type : {"", "2", "web"}) {
        const std::string expected =
            "WebLoginType \"" + std::string(type) + "\" is none of \"0\", \"1\"";
        EXPECT_EQ(reason(set_web_login_type(type)), expected);
        EXPECT_EQ(reason(set_web_login(type, "secret")), expected);
    }
    EXPECT_EQ(reason(set_web_login("0", "")), "Password is empty");
    LoginInfo filled = {};
    fill_completely(filled.WebLoginType, '1');
    EXPECT_EQ(devapi_set_web_login_type(&filled), -1);
    EXPECT_EQ(web_login(), "1 kirschbluete-11 192.168.1.1");
}

TEST_F(AdministrationTest, TheTraceMasksPasswords)
{
    set_admin("1", "root", "top-secret");
    admin();
    web_login();
    EXPECT_EQ(lines(path("trace")).size(), 3u);
    for (const char *secret : {"top-secret", "kirschbluete-11"}) {
        EXPECT_THAT(read(path("trace")), Not(HasSubstr(secret)));
    }
}

TEST_F(AdministrationTest, TheRebootScheduleIsReportedAndKept)
{
    EXPECT_EQ(set_reboot_schedule("1", "23:59", "1,2,3,4,5,6,7"), 0);
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(reboot_schedule(), "1 23:59 1,2,3,4,5,6,7");
    EXPECT_EQ(set_reboot_schedule("0", "", ""), 0);
    EXPECT_EQ(reboot_schedule(), "0 NULL NULL");
    EXPECT_EQ(set_reboot_schedule("0", "04:30", "1,4"), 0);
    EXPECT_EQ(set_reboot_schedule("0", "NULL", "NULL"), 0) << reason();
    EXPECT_EQ(reboot_schedule(), "0 NULL NULL");
}

TEST_F(AdministrationTest, AnInvalidRebootScheduleIsRefused)
{
    const struct {
        const char *enable, *time, *days, *reason;
    } schedules[] = {
        {"on", "04:30", "1", "GatewayRebootEnable \"on\" is none of \"0\", \"1\""},
        {"1", "24:00", "1", "/home/reboot_schedule/time: \"24:00\" is not a time like \"04:30\""},
        {"1", "04:60", "1", "/home/reboot_schedule/time: \"04:60\" is not a time like \"04:30\""},
        {"0", "4:30", "1", "/home/reboot_schedule/time: \"4:30\" is not a time like \"04:30\""},
        {"1", "04:30", "8",
         "/home/reboot_schedule/days: \"8\" is not a list of days like \"1,3,7\""},
        {"1", "04:30", "1;2",
         "/home/reboot_schedule/days: \"1;2\" is not a list of days like \"1,3,7\""},
        {"1", "", "1", "/home/reboot_schedule: needs time and days"},
        {"1", "NULL", "1", "/home/reboot_schedule: needs time and days"},
        {"1", "04:30", "", "/home/reboot_schedule: needs time and days"},
    };
    for (const auto &schedule : schedules) {
        EXPECT_EQ(reason(set_reboot_schedule(schedule.enable, schedule.time, schedule.days)),
                  schedule.reason);
    }
    RebootInfo filled = {};
    set(filled.GatewayRebootEnable, "1");
    set(filled.Time, "04:30");
    fill_completely(filled.DaysOfWeek, '1');
    EXPECT_EQ(reason(devapi_set_reboot_info(&filled)),
              "/home/reboot_schedule/days: \"1111111111111111\" is not a list of days like "
              "\"1,3,7\"");
    EXPECT_EQ(reboot_schedule(), "1 04:30 1,4");
}

TEST_F(AdministrationTest, TheSleepIsReportedAndKept)
{
    EXPECT_EQ(set_sleep("1", "1", "0", "00:00", "05:15"), 0);
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(sleep(), "110 00:00 05:15");
    EXPECT_EQ(set_sleep("0", "0", "0", "", ""), 0);
    EXPECT_EQ(sleep(), "000 NULL NULL");
    EXPECT_EQ(set_sleep("0", "0", "0", "22:30", "06:30"), 0);
    EXPECT_EQ(set_sleep("0", "0", "0", "NULL", "NULL"), 0) << reason();
    EXPECT_EQ(sleep(), "000 NULL NULL");
}

TEST_F(AdministrationTest, AnInvalidSleepIsRefused)
{
    const struct {
        const char *gateway, *wifi, *leds, *start, *end, *reason;
    } sleeps[] = {
        {"2", "0", "0", "23:00", "06:00", "GatewaySleepEnable \"2\" is none of \"0\", \"1\""},
        {"0", "x", "0", "23:00", "06:00", "WiFiSleepEnable \"x\" is none of \"0\", \"1\""},
        {"0", "0", "", "23:00", "06:00", "LedSleepEnable \"\" is none of \"0\", \"1\""},
        {"1", "0", "0", "25:00", "06:00",
         "/home/sleep/start: \"25:00\" is not a time like \"04:30\""},
        {"0", "0", "0", "23:00", "6", "/home/sleep/end: \"6\" is not a time like \"04:30\""},
        {"1", "0", "0", "", "06:00", "/home/sleep: needs a start and a different end"},
        {"0", "1", "0", "23:00", "", "/home/sleep: needs a start and a different end"},
        {"0", "0", "1", "23:00", "23:00", "/home/sleep: needs a start and a different end"},
    };
    for (const auto &wanted : sleeps) {
        EXPECT_EQ(
            reason(set_sleep(wanted.gateway, wanted.wifi, wanted.leds, wanted.start, wanted.end)),
            wanted.reason);
    }
    EXPECT_EQ(sleep(), "001 22:30 06:30");
}

TEST_F(AdministrationTest, ARebootResetsTheUptimeAndKeepsTheSettings)
{
    EXPECT_EQ(set_admin("1", "root", "secret"), 0);
    ASSERT_EQ(open_when(kTime + 500), "");
    EXPECT_STREQ(base().UpTime, "500");
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_STREQ(base().UpTime, "0");
    EXPECT_EQ(json_of(path("state")).at("boot_count"), 2);
    ASSERT_EQ(open_when(kTime + 530), "");
    EXPECT_STREQ(base().UpTime, "30");
    EXPECT_EQ(admin(), "root secret");
}

TEST_F(AdministrationTest, FactoryRecoveryRestoresTheScenario)
{
    const nlohmann::json made = json_of(path("state"));
    EXPECT_EQ(set_admin("1", "root", "secret"), 0);
    EXPECT_EQ(set_sleep("1", "1", "1", "01:00", "02:00"), 0);
    ASSERT_EQ(open_when(kTime + 500), "");
    EXPECT_NE(json_of(path("state")).at("home"), made.at("home"));
    EXPECT_EQ(devapi_recovery(), 0);
    EXPECT_STREQ(base().UpTime, "0");
    EXPECT_EQ(json_of(path("state")).at("home"), made.at("home"));
    EXPECT_EQ(json_of(path("state")).at("factory"), made.at("factory"));
    EXPECT_EQ(json_of(path("state")).at("boot_count"), 2);
    ASSERT_EQ(open_when(kTime + 501), "");
    EXPECT_EQ(admin(), "admin zaun-und-tor-58");
}

} // namespace

// SPDX-License-Identifier: MIT
// The update schedule of the router, and the upload of its log.
#include "firmware_fixture.h"

#include <thread>

namespace {

class FirmwareMaintenanceTest : public FirmwareTest {
  protected:
    void SetUp() override { ASSERT_EQ(open_at(kTime, options()), ""); }

    static std::string kept()
    {
        const UpdateSchedule kept = reported_by(devapi_get_update_schedule);
        return std::string(kept.Enable) + " " + kept.StartHour + ":" + kept.StartMinute + " " +
               kept.EndHour + ":" + kept.EndMinute;
    }
    static int32_t set_schedule(const Fields &fields)
    {
        return set_by(devapi_set_update_schedule, fields);
    }
    // From one to two, or with other values.
    std::string schedule_refusal(Fields fields) const
    {
        fields.insert({{"Enable", "1"},
                       {"StartHour", "1"},
                       {"StartMinute", "0"},
                       {"EndHour", "2"},
                       {"EndMinute", "0"}});
        return reason(set_schedule(fields));
    }

    static constexpr char kMac[] = "3C6AD2104F20";
    static int32_t send(const std::string &address, const std::string &type = "system",
                        const std::string &mac = kMac)
    {
        return devapi_get_hg_log(address.c_str(), type.c_str(), mac.c_str());
    }
    // An upload that has to fail. Result: the reason.
    std::string log_refusal(const std::string &address, const std::string &type = "system",
                            const std::string &mac = kMac) const
    {
        EXPECT_EQ(send(address, type, mac), -1) << address.substr(0, 200);
        return reason();
    }
};

// ---- Update schedule ---------------------------------------------------------------------------

TEST_F(FirmwareMaintenanceTest, AScheduleIsReportedAndKept)
{
    EXPECT_EQ(set_schedule({{"Enable", "1"},
                            {"StartHour", "23"},
                            {"StartMinute", "59"},
                            {"EndHour", "0"},
                            {"EndMinute", "0"}}),
              0);
    ASSERT_EQ(reopen(options()), "");
    EXPECT_EQ(kept(), "1 23:59 0:0");
    EXPECT_EQ(set_schedule({{"Enable", "0"},
                            {"StartHour", "03"},
                            {"StartMinute", "05"},
                            {"EndHour", "9"},
                            {"EndMinute", "07"}}),
              0);
    EXPECT_EQ(kept(), "0 3:5 9:7");
    EXPECT_EQ(devapi_recovery(), 0);
    EXPECT_EQ(kept(), "1 2:0 4:0");
}

TEST_F(FirmwareMaintenanceTest, AHomeWithoutAScheduleHasNone)
{
    ASSERT_EQ(reopen({.scenario = "single_router", .trace = path("trace")}), "");
    EXPECT_EQ(kept(), "0 NULL:NULL NULL:NULL");

    UpdateSchedule before = {};
    EXPECT_EQ(devapi_get_update_schedule(&before), 0);
    EXPECT_EQ(set_schedule({{"Enable", "1"},
                            {"StartHour", "2"},
                            {"StartMinute", "0"},
                            {"EndHour", "4"},
                            {"EndMinute", "0"}}),
              0);
    EXPECT_EQ(devapi_set_update_schedule(&before), 0) << reason();
    EXPECT_EQ(kept(), "0 NULL:NULL NULL:NULL");
    EXPECT_EQ(set_schedule({{"Enable", "0"}}), 0) << reason();
    EXPECT_EQ(schedule_refusal({{"StartHour", "NULL"}, {"StartMinute", "NULL"}}),
              "/home/update_schedule: needs a start and a different end");
}

TEST_F(FirmwareMaintenanceTest, AnInvalidScheduleIsRefused)
{
    const struct {
        const char *field, *value, *reason;
    } refusals[] = {
        {"Enable", "2", "Enable \"2\" is none of \"0\", \"1\""},
        {"Enable", "", "Enable \"\" is none of \"0\", \"1\""},
        {"StartHour", "24", "StartHour 24 is not within 0 to 23"},
        {"StartMinute", "60", "StartMinute 60 is not within 0 to 59"},
        {"EndHour", "-1", "EndHour -1 is not within 0 to 23"},
        {"EndMinute", "60", "EndMinute 60 is not within 0 to 59"},
        {"StartHour", "", "StartHour is not a number"},
        {"EndHour", "NULL", "EndHour is not a number"},
        {"EndMinute", "3 ", "EndMinute is not a number"},
        {"EndHour", "1", "/home/update_schedule: needs a start and a different end"},
    };
    for (const auto &[field, value, why] : refusals) {
        EXPECT_EQ(schedule_refusal({{field, value}}), why);
    }
    EXPECT_EQ(schedule_refusal({{"Enable", "0"}, {"EndMinute", "60"}}),
              "EndMinute 60 is not within 0 to 59");
    auto overfull = record_with<UpdateSchedule>(
        {{"Enable", "1"}, {"StartHour", "1"}, {"StartMinute", "0"}, {"EndHour", "2"}});
    fill_completely(overfull.EndMinute, '1');
    EXPECT_EQ(reason(devapi_set_update_schedule(&overfull)),
              "EndMinute 11111111 is not within 0 to 59");
    EXPECT_EQ(kept(), "1 2:0 4:0");
}

// ---- Log upload --------------------------------------------------------------------------------

TEST_F(FirmwareMaintenanceTest, TheLogDescribesTheRouterAndItsCalls)
{
    reported_by(devapi_get_system_info);
    simulated_gateway_power_cycle();
    EXPECT_EQ(devapi_get_sn_info(nullptr), -1);
    ASSERT_EQ(send(server_.address("log.txt")), 0) << reason();
    ASSERT_EQ(server_.uploads().size(), 1u);
    EXPECT_EQ(server_.uploads()[0].path, "/log.txt");
    const std::string log = server_.uploads()[0].body;
    EXPECT_EQ(log.find("log: system\ntime: 20260101T000000Z\n"
                       "router: HGU-AX3000 3C:6A:D2:10:4F:20\n"
                       "hardware: V1.2\nfirmware: V2.4.1 of 2025-11-18\n"
                       "uptime: 0 s\nboots: 2\nwan: Connected\nload: cpu "),
              0u)
        << log;
    EXPECT_THAT(log, HasSubstr("\nchild routers active: 2\n\n"));
    const size_t first = log.find("[0] devapi_get_system_info = 0 in ");
    const size_t second = log.find("\n[0] power cycle\n");
    const size_t third = log.find("\n[0] devapi_get_sn_info = -1 in ");
    EXPECT_LT(first, second);
    EXPECT_LT(second, third);
    EXPECT_EQ(log.substr(log.size() - 24), "us, an argument is null\n");
}

TEST_F(FirmwareMaintenanceTest, TheLogHasNoSecretsEvenIfTheTraceShowsThem)
{
    ASSERT_EQ(reopen(options({.show_secrets = true})), "");
    const LoginInfo login = reported_by(devapi_get_admin_info);
    std::string address = server_.address("log.txt");
    address.insert(std::string("http://").size(), "anna:geheim-77@");
    EXPECT_EQ(send(address), 0);
    EXPECT_EQ(send(address), 0);
    EXPECT_THAT(read(path("trace")), HasSubstr(login.Password));
    ASSERT_EQ(server_.uploads().size(), 2u);
    const std::string log = server_.uploads()[1].body;
    EXPECT_THAT(log, HasSubstr("devapi_get_hg_log = 0"));
    EXPECT_THAT(log, Not(HasSubstr(login.Password)));
    EXPECT_THAT(log, Not(HasSubstr("geheim")));
    ASSERT_EQ(reopen(options()), "");
    std::filesystem::remove(path("trace"));
    ASSERT_EQ(reopen(options()), "");
    EXPECT_EQ(send(address), 0);
    EXPECT_THAT(read(path("trace")), Not(HasSubstr("geheim")));
}

TEST_F(FirmwareMaintenanceTest, TheLogIsBounded)
{
    ASSERT_EQ(reopen({.faults = {"devapi_get_hg_base_info=-1"}}), "");
    EXPECT_EQ(call(), 0);
    for (int call = 0; call < 3000; ++call) {
        HgBaseInfo info = {};
        EXPECT_EQ(devapi_get_hg_base_info(&info), -1);
    }
    ASSERT_EQ(send(server_.address("log.txt")), 0);
    const std::string log = server_.uploads().at(0).body;
    EXPECT_GT(log.size(), 60'000u);
    EXPECT_LT(log.size(), 70'000u);
    EXPECT_THAT(log, Not(HasSubstr("devapi_get_sn_info")));
}

TEST_F(FirmwareMaintenanceTest, AFolderGetsASeparateFileForEachLog)
{
    EXPECT_EQ(send(server_.address("logs/")), 0);
    EXPECT_EQ(send(server_.address(""), "../../etc/passwd?x=#%"), 0);
    EXPECT_EQ(send(server_.address("logs/"), "Wörter"), 0);
    ASSERT_EQ(server_.uploads().size(), 3u);
    EXPECT_EQ(server_.uploads()[0].path, "/logs/3C6AD2104F20_system_20260101T000000Z.log");
    EXPECT_EQ(server_.uploads()[1].path,
              "/3C6AD2104F20_______etc_passwd_x____20260101T000000Z.log");
    EXPECT_EQ(server_.uploads()[2].path, "/logs/3C6AD2104F20_W__rter_20260101T000000Z.log");
}

TEST_F(FirmwareMaintenanceTest, RedirectsAreFollowedWithTheWholeLog)
{
    EXPECT_EQ(send(server_.address("redirect/redirect/log.txt")), 0) << reason();
    ASSERT_EQ(server_.uploads().size(), 1u);
    EXPECT_EQ(server_.uploads()[0].path, "/log.txt");
    EXPECT_EQ(server_.uploads()[0].body.find("log: system\n"), 0u);
    EXPECT_EQ(server_.requests().size(), 3u);
}

TEST_F(FirmwareMaintenanceTest, HttpsServersHaveToBeTrusted)
{
    const HttpServer secure(path(""), HttpServer::Protocol::kHttps);
    EXPECT_THAT(log_refusal(secure.address("log.txt")), HasSubstr("certificate"));
    EXPECT_TRUE(secure.uploads().empty());
    set_limit("CA_FILE", secure.ca_file());
    ASSERT_EQ(reopen(options()), "");
    EXPECT_EQ(send(secure.address("log.txt")), 0) << reason();
    EXPECT_EQ(secure.uploads().size(), 1u);
}

TEST_F(FirmwareMaintenanceTest, AnUnsuccessfulAnswerIsAFailure)
{
    for (const char *status : {"200", "201", "204"}) {
        EXPECT_EQ(send(server_.address(std::string("status/") + status)), 0) << reason();
    }
    for (const char *status : {"304", "401", "403", "404", "405", "500", "507"}) {
        EXPECT_EQ(log_refusal(server_.address(std::string("status/") + status)),
                  std::string("the server answers with HTTP status ") + status);
    }
    EXPECT_FALSE(log_refusal(server_.address("cut/log.txt")).empty());
    EXPECT_EQ(log_refusal(server_.address("chatter/log.txt")), "the server's response is too long");
    EXPECT_FALSE(log_refusal("http://127.0.0.1:1/log.txt").empty());
}

TEST_F(FirmwareMaintenanceTest, OnlyWebAddressesAreAccepted)
{
    const std::string bad = "the address is invalid: ";
    EXPECT_EQ(log_refusal(""), "the address is empty");
    EXPECT_EQ(log_refusal("file://" + path("log.txt")), bad + "its scheme is none of http, https");
    EXPECT_EQ(log_refusal("ftp://127.0.0.1/log.txt"), bad + "its scheme is none of http, https");
    EXPECT_EQ(log_refusal("; rm -rf /").find(bad), 0u);
    EXPECT_EQ(log_refusal("http://127.0.0.1/" + std::string(1 << 20, 'a')),
              "the address is longer than 2047 bytes");
    EXPECT_EQ(log_refusal("http://127.0.0.1/\n"),
              "the address contains control characters or is not UTF-8");
    EXPECT_FALSE(std::filesystem::exists(path("log.txt")));
}

TEST_F(FirmwareMaintenanceTest, AnInvalidTypeOrAddressIsRefused)
{
    const std::string address = server_.address("logs/");
    EXPECT_EQ(log_refusal(address, ""), "log_type is empty");
    EXPECT_EQ(log_refusal(address, std::string(64, 'a')), "log_type is longer than 63 bytes");
    EXPECT_EQ(log_refusal(address, "a\nb"), "log_type contains control characters or is not UTF-8");
    EXPECT_EQ(log_refusal(address, "system", "../.."), "mac \"../..\" is not a MAC address");
    EXPECT_TRUE(server_.requests().empty());
}

TEST_F(FirmwareMaintenanceTest, ASilentServerIsGivenUp)
{
    set_limit("STALL_TIMEOUT", "1");
    ASSERT_EQ(reopen(options()), "");
    EXPECT_EQ(log_refusal(server_.address("hang/log.txt")).find("Operation too slow"), 0u)
        << reason();
    server_.release();
}

TEST_F(FirmwareMaintenanceTest, OtherCallsGoOnMeanwhileAndAClosedGatewayGivesUp)
{
    int32_t result = 0;
    std::thread sender(
        [&result, address = server_.address("hang/log.txt")] { result = send(address); });
    while (server_.requests().empty()) {
        std::this_thread::yield();
    }
    EXPECT_EQ(call(), 0);
    simulated_gateway_close();
    sender.join();
    EXPECT_EQ(result, -1);
    EXPECT_THAT(read(path("trace")), HasSubstr("= -1 in "));
    EXPECT_THAT(read(path("trace")), HasSubstr(" us, the gateway was closed"));
    server_.release();
}

} // namespace

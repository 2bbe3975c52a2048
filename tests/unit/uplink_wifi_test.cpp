// SPDX-License-Identifier: MIT
#include "handler_test.h"
#include "memory_sweep.h"
#include "request.h"

#include <cstring>

namespace uplink_wifi_test {

constexpr char kCommand[] = "SET_UPLINK_WIFI_INFO";

const Request kUplink({{"SSID", R"("street")"},
                       {"PWD", R"("secret")"},
                       {"ENCRYPT", R"("WPA2")"},
                       {"WPACypher", R"("TKIP")"},
                       {"WPA2Cypher", R"("AES")"},
                       {"Band", R"("5G")"}});

const LogLine kRefused = {3, "some object is NULL !\n"};

void device_returns(int32_t result)
{
    when<devapi_set_uplink_wifi_info>([result](UplinkWifiInfo *info) {
        strcpy(info->SSID, "joined");
        return result;
    });
}

class SetUplinkWifiInfo : public HandlerTest {};

TEST_F(SetUplinkWifiInfo, JoinsTheNetworkAndReportsItsName)
{
    device_returns(0);
    EXPECT_EQ(run(kCommand, kUplink.with("Other", "[1]").json()),
              R"({"Other":[1],"Status":"0","ConnectedSSID":"joined"})");
    const UplinkWifiInfo expected = {"street", "secret", "WPA2", "TKIP", "AES", "5G"};
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_set_uplink_wifi_info", {contents(&expected)}}}));
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{3, "ssid = street,pwd = secret,encrypt = WPA2, cypher1 = TKIP,"
                            " cypher2 = AES, band = 5G\r\n"}}));
}

TEST_F(SetUplinkWifiInfo, ReportsTheRequestedName)
{
    EXPECT_EQ(run(kCommand, kUplink.json()), R"({"Status":"0","ConnectedSSID":"street"})");
    EXPECT_EQ(run(kCommand, kUplink.with("SSID", quoted(text_of_length(64))).json()),
              R"({"Status":"0","ConnectedSSID":")" + text_of_length(63) + "\"}");
    when<devapi_set_uplink_wifi_info>([](UplinkWifiInfo *info) {
        memset(info, 'x', sizeof *info);
        return 0;
    });
    EXPECT_EQ(run(kCommand, kUplink.json()),
              R"({"Status":"0","ConnectedSSID":")" + std::string(64, 'x') + "\"}");
    when<devapi_set_uplink_wifi_info>([](UplinkWifiInfo *info) {
        info->SSID[0] = '\0';
        return 0;
    });
    EXPECT_EQ(run(kCommand, kUplink.json()), R"({"Status":"0","ConnectedSSID":""})");
}

TEST_F(SetUplinkWifiInfo, HasAReplyForEachResult)
{
    const std::pair<int32_t, std::string> replies[] = {
        {-1, "{" + failure("SET_UPLINK_WIFI_INFO_FAIL") + "}"},
        {-2, R"({"Status":"2","FailReason":"SOMEONE_USING_REPEATER"})"},
        {5, "{}"},
        {1, "{}"},
        {2, "{}"},
        {-3, "{}"},
        {INT32_MIN, "{}"},
        {INT32_MAX, "{}"},
    };
    for (const auto &[result, reply] : replies) {
        device_returns(result);
        EXPECT_EQ(run(kCommand, kUplink.json()), reply) << result;
    }
    EXPECT_EQ(recording_host::log_lines().size(), std::size(replies)) << "the values only";
}

TEST_F(SetUplinkWifiInfo, CutsItsTextsButNotTheLog)
{
    for (const size_t length : {63u, 64u, 127u, 128u, 100000u}) {
        const std::string text = text_of_length(length);
        Request request({});
        for (const auto &[key, json] : kUplink.keys()) {
            request = request.with(key, quoted(text));
        }
        recording_host::reset();
        EXPECT_EQ(run(kCommand, request.json()),
                  R"({"Status":"0","ConnectedSSID":")" + text.substr(0, 63) + "\"}");
        UplinkWifiInfo expected = {};
        for (char *field : {expected.SSID, expected.PWD, expected.ENCRYPT, expected.WPACypher,
                            expected.WPA2Cypher}) {
            text.copy(field, 63);
        }
        text.copy(expected.Band, 127);
        EXPECT_EQ(recording_device::calls().back().arguments[0], contents(&expected)) << length;
        EXPECT_EQ(recording_host::log_lines().at(0).text,
                  "ssid = " + text + ",pwd = " + text + ",encrypt = " + text +
                      ", cypher1 = " + text + ", cypher2 = " + text + ", band = " + text + "\r\n");
    }
}

TEST_F(SetUplinkWifiInfo, LogsEachAbsentKey)
{
    const std::pair<const char *, const char *> lines[] = {
        {"SSID", "can not find SSID object!\n"},
        {"PWD", "can not find PWD object!\n"},
        {"ENCRYPT", "can not find ENCRYPT object!\n"},
        {"WPACypher", "can not find Cypher1 object!\n"},
        {"WPA2Cypher", "can not find Cypher2 object!\n"},
        {"Band", "can not find Band object!\n"},
    };
    LogLines all;
    for (const auto &[key, line] : lines) {
        recording_host::reset();
        const Request request = kUplink.without(key);
        EXPECT_EQ(run(kCommand, request.json()), request.followed_by(failure("json node null")));
        EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, line}, kRefused}));
        all.push_back({3, line});
    }
    all.push_back(kRefused);
    recording_host::reset();
    EXPECT_EQ(run(kCommand), "{" + failure("json node null") + "}");
    EXPECT_EQ(recording_host::log_lines(), all);
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(SetUplinkWifiInfo, ChecksAbsenceFirst)
{
    const Request request = kUplink.with("SSID", "7").without("Band");
    EXPECT_EQ(run(kCommand, request.json()), request.followed_by(failure("json node null")));
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{3, "can not find Band object!\n"}, kRefused}));
}

// A missing reply would suggest that the device had another result.
TEST_F(SetUplinkWifiInfo, FailsWithoutMemoryForTheThirdStatus)
{
    const size_t allocations = sweep_memory(
        kCommand, kUplink.json(),
        [] { when<devapi_set_uplink_wifi_info>([](UplinkWifiInfo *) { return -2; }); },
        [](const std::string &object, FailingMemory::Fail how) {
            EXPECT_EQ(object, how == FailingMemory::Fail::kOnce
                                  ? "{" + failure("SET_UPLINK_WIFI_INFO_FAIL") + "}"
                                  : "{}");
        });
    EXPECT_EQ(allocations, 6u);
}

} // namespace uplink_wifi_test

// SPDX-License-Identifier: MIT
#include "handler_test.h"
#include "request.h"

#include <cstring>

namespace guest_wifi_test {

class SetHgGuestSsid : public HandlerTest {};
class GetHgGuestSsid : public HandlerTest {};

// ---- SET_HG_GUEST_SSID -------------------------------------------------------------------------

const Request kGuest({{"Enable", R"("1")"},
                      {"SSID", R"("guests")"},
                      {"Band", R"("2.4G")"},
                      {"PWD", R"("welcome1")"},
                      {"ENCRYPT", R"("WPA2")"}});
const Request kGuestWithOptions = kGuest.with("ContinueTime", R"("2")")
                                      .with("HourTime", R"("3")")
                                      .with("Mode", R"("m")")
                                      .with("AdvertisementEnable", R"("a")");

GuestWifiInfo set_record(const char *days = "-1", const char *hours = "-1", const char *end = "-1")
{
    GuestWifiInfo record = {"", "", "1",        "guests", "2.4G", "",   "",
                            "", "", "welcome1", "WPA2",   "-1",   "-1", ""};
    strcpy(record.ContinueTime, days);
    strcpy(record.HourTime, hours);
    strcpy(record.EndTimestamp, end);
    return record;
}

std::string last_record()
{
    return recording_device::calls().back().arguments[0];
}

TEST_F(SetHgGuestSsid, MarksWhatItIsNotGiven)
{
    const Request request = kGuest.with("RadioEnable", R"("1")").with("Remainingtime", R"("1")");
    EXPECT_EQ(run("SET_HG_GUEST_SSID", request.json()),
              R"({"RadioEnable":"1","Remainingtime":"1","Status":"0"})");
    const GuestWifiInfo expected = set_record();
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_set_guest_wifi_info", {contents(&expected)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SetHgGuestSsid, TakesItsOptionsAndComputesTheEndItself)
{
    EXPECT_EQ(run("SET_HG_GUEST_SSID", kGuestWithOptions.with("EndTimestamp", R"("7")").json()),
              R"({"Status":"0"})");
    GuestWifiInfo expected = set_record("2", "3", "183600");
    strcpy(expected.Mode, "m");
    strcpy(expected.AdvertisementEnable, "a");
    EXPECT_EQ(last_record(), contents(&expected));
}

struct OpeningTime {
    const char *days; // null where it is not given
    const char *hours;
    const char *end;
};

TEST_F(SetHgGuestSsid, ComputesTheOpeningTimeInSeconds)
{
    const OpeningTime times[] = {
        // The four signs, and the two zeroes.
        {"2", "3", "183600"},
        {"1", nullptr, "86400"},
        {"1", "-5", "86400"},
        {"0", "2", "7200"},
        {"0", "0", "0"},
        {"0", "-1", "4294963696"},
        {"0", nullptr, "4294963696"},
        {"-1", "2", "4294888096"},
        {nullptr, "2", "4294888096"},
        {nullptr, "0", "4294880896"},
        {"-2", "1", "4294798096"},
        {nullptr, nullptr, "-1"},
        {"-1", "-1", "-1"},
        {"-7", "-3", "-1"},
        {"5", "0", "432000"},
        // Texts are read as far as they are numbers.
        {"", "", "0"},
        {"abc", "1", "3600"},
        {"1 day", "2 hours", "93600"},
        {" 1", "+1", "90000"},
        // The sum wraps at 32 bits.
        {"49710", "6", "4294965600"},
        {"49710", "7", "1904"},
        {"49711", "0", "63104"},
        {"9999999", "0", "711487104"},
        {"0", "9999999", "1640258032"},
        {"-999999", "9999999", "1139690352"},
        // Only seven characters count.
        {"00000012", "1", "90000"},
        {"99999999999", "-1", "711487104"},
    };
    for (const OpeningTime &time : times) {
        Request request = kGuest;
        if (time.days != nullptr) {
            request = request.with("ContinueTime", quoted(time.days));
        }
        if (time.hours != nullptr) {
            request = request.with("HourTime", quoted(time.hours));
        }
        EXPECT_EQ(run("SET_HG_GUEST_SSID", request.json()), R"({"Status":"0"})");
        const GuestWifiInfo expected = set_record(
            std::string(time.days != nullptr ? time.days : "-1").substr(0, 7).c_str(),
            std::string(time.hours != nullptr ? time.hours : "-1").substr(0, 7).c_str(), time.end);
        EXPECT_EQ(last_record(), contents(&expected))
            << request.json() << ": " << last_record().substr(124, 16);
    }
}

TEST_F(SetHgGuestSsid, AnOptionWithoutTextIsNotUsed)
{
    const GuestWifiInfo expected = set_record();
    for (const std::string &json : kNoTexts) {
        // The times are removed nevertheless, the other two are not.
        const std::string stays = R"("Mode":)" + json + R"(,"AdvertisementEnable":)" + json;
        const std::string goes =
            R"("ContinueTime":)" + json + R"(,"HourTime":)" + json + R"(,"EndTimestamp":)" + json;
        EXPECT_EQ(
            run("SET_HG_GUEST_SSID", "{" + stays + "," + goes + "," + kGuest.json().substr(1)),
            "{" + stays + R"(,"Status":"0"})");
        EXPECT_EQ(last_record(), contents(&expected)) << json;
    }
}

TEST_F(SetHgGuestSsid, IsRefusedWithoutOneOfItsKeys)
{
    for (const auto &[key, json] : kGuest.keys()) {
        for (const Request &request :
             kGuestWithOptions.with("EndTimestamp", R"("7")").without_text(key)) {
            recording_host::reset();
            EXPECT_EQ(run("SET_HG_GUEST_SSID", request.json()),
                      request.followed_by(failure("parse guest ssid failed")));
            EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "string is null.\n"}}));
        }
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(SetHgGuestSsid, HasAReasonForARadioThatIsOff)
{
    when<devapi_set_guest_wifi_info>([](const GuestWifiInfo *) { return -2; });
    EXPECT_EQ(run("SET_HG_GUEST_SSID", kGuest.json()),
              "{" + failure("radio enable is closed,need to open") + "}");
}

TEST_F(SetHgGuestSsid, RemovesTheKeysBeforeTheDeviceIsCalled)
{
    for (const int32_t result : {0, -1}) {
        const Json object = parse(kGuestWithOptions.with("Other", "{}").json());
        when<devapi_set_guest_wifi_info>([&](const GuestWifiInfo *) {
            EXPECT_EQ(print(object.get()), R"({"Other":{}})");
            return result;
        });
        EXPECT_EQ(hg_process_json_cmd("SET_HG_GUEST_SSID", object.get()), 0);
    }
    EXPECT_EQ(recording_device::called_functions(), Names(2, "devapi_set_guest_wifi_info"));
}

TEST_F(SetHgGuestSsid, LogsWhatIsNotAnObject)
{
    EXPECT_EQ(hg_process_json_cmd("SET_HG_GUEST_SSID", nullptr), 0);
    EXPECT_EQ(hg_process_json_cmd("SET_HG_GUEST_SSID", parse("[" + kGuest.json() + "]").get()), 0);
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{3, "param is null.\n"}, {3, "string is null.\n"}}));
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(GetHgGuestSsid, DoesNotAskTheDeviceWithoutAnObject)
{
    EXPECT_EQ(hg_process_json_cmd("GET_HG_GUEST_SSID", nullptr), 0);
    EXPECT_EQ(hg_process_json_cmd("GET_HG_GUEST_SSID", parse("[" + kGuest.json() + "]").get()), 0);
    EXPECT_TRUE(recording_device::calls().empty());
}

} // namespace guest_wifi_test

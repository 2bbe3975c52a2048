// SPDX-License-Identifier: MIT
// Access points on the channels, the check of the links, and the signal of a station.
#include "handler_test.h"
#include "request.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstring>

namespace link_checks_test {

constexpr int32_t kAllButMinusOne[] = {0, 1, 2, -2, 1000, INT32_MIN, INT32_MAX};

class GetScanChannelCount : public HandlerTest {};
class LinkCheck : public HandlerTest {};
class GetStaRssi : public HandlerTest {};

// ---- GET_SCAN_CHANNEL_COUNT --------------------------------------------------------------------

constexpr char kCount[] = "GET_SCAN_CHANNEL_COUNT";

struct Band {
    std::vector<int> channels;
    std::vector<int32_t> access_points;
};

std::string elements_of(const Band &band)
{
    std::string elements;
    for (size_t at = 0; at < band.channels.size(); ++at) {
        elements += (elements.empty() ? R"({"Name":")" : R"(,{"Name":")") +
                    std::to_string(band.channels[at]) + R"(","Count":)" +
                    std::to_string(band.access_points[at]) + "}";
    }
    return "[" + elements + "]";
}

std::string counts_reply(const Band &at_24g, const Band &at_5g)
{
    return R"({"List24g":)" + elements_of(at_24g) + R"(,"List58g":)" + elements_of(at_5g) +
           R"(,"Status":"0"})";
}

// As many channels as a band has room for, each with a different number of access points.
Band band_from(int first)
{
    Band band;
    for (int at = 0; at < 64; ++at) {
        band.channels.push_back(first + at);
        band.access_points.push_back(1000 * first + at);
    }
    return band;
}

Band first_of(const Band &band, size_t count)
{
    return {
        {band.channels.begin(), band.channels.begin() + static_cast<ptrdiff_t>(count)},
        {band.access_points.begin(), band.access_points.begin() + static_cast<ptrdiff_t>(count)}};
}

void bands_are(const Band &at_24g, int32_t count_24g, const Band &at_5g, int32_t count_5g,
               int32_t list_result = 0, int32_t count_result = 0)
{
    when<devapi_get_all_wifi_channel_list>([=](WifiChannelList *list) {
        list->count_24g = count_24g;
        list->count_5g = count_5g;
        std::copy(at_24g.channels.begin(), at_24g.channels.end(), list->channels_24g);
        std::copy(at_5g.channels.begin(), at_5g.channels.end(), list->channels_5g);
        return list_result;
    });
    when<devapi_get_channel_ap_num>([=](const WifiChannelList *, ChannelApNum *counts) {
        std::copy(at_24g.access_points.begin(), at_24g.access_points.end(), counts->counts_24g);
        std::copy(at_5g.access_points.begin(), at_5g.access_points.end(), counts->counts_5g);
        return count_result;
    });
}

TEST_F(GetScanChannelCount, CountsTheAccessPointsOnEachChannel)
{
    const Band at_24g = {{1, 6, 11}, {4, 0, 12}};
    const Band at_5g = {{36, 165}, {3, 1}};
    bands_are(at_24g, 3, at_5g, 2);
    EXPECT_EQ(run(kCount, R"({"List24g":"kept","Name":7})"),
              R"({"List24g":"kept","Name":7,"List24g":[{"Name":"1","Count":4},)"
              R"({"Name":"6","Count":0},{"Name":"11","Count":12}],)"
              R"("List58g":[{"Name":"36","Count":3},{"Name":"165","Count":1}],"Status":"0"})");
    WifiChannelList list = {3, 2, {1, 6, 11}, {36, 165}};
    const std::string none(sizeof(WifiChannelList), '\0');
    const std::string no_counts(sizeof(ChannelApNum), '\0');
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_all_wifi_channel_list", {none}},
                     {"devapi_get_channel_ap_num", {contents(&list), no_counts}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetScanChannelCount, ReportsSixtyFourChannelsOfABandAtMost)
{
    const Band at_24g = band_from(1);
    const Band at_5g = band_from(100);
    for (const int32_t count : {0, 1, 63, 64, 65, 1000, INT32_MAX, -1, INT32_MIN}) {
        const size_t reported = count < 0 ? 0 : static_cast<size_t>(std::min(count, 64));
        bands_are(at_24g, count, at_5g, 2);
        EXPECT_EQ(run(kCount), counts_reply(first_of(at_24g, reported), first_of(at_5g, 2)));
        bands_are(at_24g, 2, at_5g, count);
        EXPECT_EQ(run(kCount), counts_reply(first_of(at_24g, 2), first_of(at_5g, reported)));
    }
}

TEST_F(GetScanChannelCount, ChannelsAndCountsMayBeAnyNumber)
{
    const Band band = {{0, -1, INT16_MIN, INT16_MAX}, {-1, INT32_MIN, INT32_MAX, 0}};
    bands_are(band, 4, band, 4);
    EXPECT_EQ(run(kCount), counts_reply(band, band));
}

TEST_F(GetScanChannelCount, MakesBothCallsEvenIfTheFirstFails)
{
    const Band band = {{7}, {8}};
    for (const auto &[list, count] : {std::pair(-1, 0), std::pair(0, -1), std::pair(-1, -1)}) {
        recording_device::reset();
        bands_are(band, 1, band, 1, list, count);
        EXPECT_EQ(run(kCount, R"({"Other":1})"),
                  R"({"Other":1,)" + failure("Get Wifi channel error") + "}");
        ASSERT_EQ(recording_device::called_functions(),
                  (Names{"devapi_get_all_wifi_channel_list", "devapi_get_channel_ap_num"}));
        const WifiChannelList sent =
            recording_device::record<WifiChannelList>(recording_device::calls()[1]);
        EXPECT_EQ(sent.count_24g, 1); // as the call has left it
        EXPECT_EQ(sent.channels_5g[0], 7);
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

// ---- LINK_CHECK --------------------------------------------------------------------------------

constexpr char kCheck[] = "LINK_CHECK";

const LinkInfo kLink = {"on24",   "chan24",      "check24",     "on58", "check58",
                        "chan58", "192.168.1.1", "100.72.18.2", "dns",  "reserved"};

std::string link_reply(const std::string &ping)
{
    return R"({"LanIP":"192.168.1.1","WanIp":"100.72.18.2","DnsCheck":"dns","DhcpCheck":"dns",)"
           R"("PingCheck":)" +
           quoted(ping) +
           R"(,"Wifi24Enable":"on24","Wifi24Channel":"chan24","Wifi24ChannelCheck":"check24",)"
           R"("Wifi58Enable":"on58","Wifi58Channel":"chan58","Wifi58ChannelCheck":"check58",)"
           R"("Status":"0"})";
}

void ping_gives(int32_t result)
{
    when<devapi_get_ping_check>([result](const char *) { return result; });
}

TEST_F(LinkCheck, ReportsTheLinksAndTheTargetOfThePing)
{
    writes<devapi_get_link_info>(kLink);
    const std::string reply = run(kCheck);
    const auto calls = recording_device::calls();
    ASSERT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_link_info", "devapi_get_ping_check"}));
    EXPECT_EQ(calls[0].arguments[0], std::string(sizeof(LinkInfo), '\0'));
    const std::string target = calls[1].arguments[0];
    in_addr address;
    EXPECT_EQ(inet_pton(AF_INET, target.c_str(), &address), 1) << target;
    EXPECT_EQ(reply, link_reply(target));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(LinkCheck, APingWithoutAnswerIsReportedAsEmpty)
{
    writes<devapi_get_link_info>(kLink);
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN, INT32_MAX}) {
        ping_gives(result);
        EXPECT_EQ(run(kCheck), link_reply("")) << result;
    }
}

TEST_F(LinkCheck, ALinkRecordOfAnyResultButMinusOneIsReported)
{
    ping_gives(-1);
    for (const int32_t result : kAllButMinusOne) {
        writes<devapi_get_link_info>(kLink, result);
        EXPECT_EQ(run(kCheck), link_reply("")) << result;
    }
}

TEST_F(LinkCheck, ReportsTheRecordThatAFailedCallLeft)
{
    for (const int32_t result : {-1, 1, 1000, INT32_MIN}) {
        writes<devapi_get_link_info>(kLink, result);
        ping_gives(-1);
        EXPECT_EQ(run(kCheck), link_reply(""));
    }
    writes<devapi_get_link_info>(LinkInfo(), -1);
    EXPECT_EQ(run(kCheck, R"({"LanIP":7})"),
              R"({"LanIP":7,"LanIP":"","WanIp":"","DnsCheck":"","DhcpCheck":"","PingCheck":"",)"
              R"("Wifi24Enable":"","Wifi24Channel":"","Wifi24ChannelCheck":"","Wifi58Enable":"",)"
              R"("Wifi58Channel":"","Wifi58ChannelCheck":"","Status":"0"})");
}

// ---- GET_STA_RSSI ------------------------------------------------------------------------------

constexpr char kSignal[] = "GET_STA_RSSI";
const Request kStation = Request({}).with("IP", R"("192.168.1.23")");

TEST_F(GetStaRssi, ReportsTheSignalAsANumber)
{
    for (const int32_t dbm : {-57, 0, 1, INT32_MIN, INT32_MAX}) {
        writes<devapi_get_sta_rssi_by_ip>(dbm);
        EXPECT_EQ(run(kSignal, kStation.with("Dbm", "1").json()),
                  kStation.with("Dbm", "1")
                      .followed_by(R"("Dbm":)" + std::to_string(dbm) + R"(,"Status":"0")"));
    }
    EXPECT_EQ(recording_device::calls().at(0).arguments[0], "192.168.1.23");
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetStaRssi, PassesTheAddressUncut)
{
    for (const size_t length : {0u, 1u, 31u, 32u, 100000u}) {
        const std::string text = text_of_length(length);
        EXPECT_EQ(run(kSignal, kStation.with("IP", quoted(text)).json()),
                  kStation.with("IP", quoted(text)).followed_by(R"("Dbm":0,"Status":"0")"));
        EXPECT_EQ(recording_device::calls().back().arguments[0], text);
    }
    run(kSignal, R"({"ip":"first","IP":"second"})");
    EXPECT_EQ(recording_device::calls().back().arguments[0], "first");
}

} // namespace link_checks_test

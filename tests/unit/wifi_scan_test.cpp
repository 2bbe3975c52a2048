// What the radios hear, and the channels that they may use. Entries that are not freed are found by
// the address sanitizer.
#include "handler_test.h"
#include "request.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace wifi_scan_test {

using recording_device::Call;
using recording_device::when;

class WifiScanTest : public HandlerTest {};

// ---- GET_SCAN_WIFI_SSIDLIST --------------------------------------------------------------------

ScanEntry *found(const std::string &name)
{
    auto *entry = static_cast<ScanEntry *>(malloc(sizeof(ScanEntry)));
    *entry = {"", "-50", "WPA2", "TKIP", "AES", "5G", "0"};
    strcpy(entry->SSID, name.c_str());
    return entry;
}

std::string network(const std::string &name)
{
    return R"({"SSID":")" + name +
           R"(","PowerLevel":"-50","ENCRYPT":"WPA2","WPACypher":"TKIP","WPA2Cypher":"AES",)"
           R"("Band":"5G","Connected":"0"})";
}

// A scan that finds a network for each of the slots; its name is the slot's number.
void scan_finds(const std::vector<size_t> &slots, int32_t result = 0)
{
    when<devapi_get_scan_ssid>([=](ScanResult *scan) {
        scan->reserved0 = -1;
        for (const size_t slot : slots) {
            scan->entries[slot] = found(std::to_string(slot));
        }
        return result;
    });
}

std::vector<size_t> slots_up_to(size_t end)
{
    std::vector<size_t> slots;
    for (size_t slot = 0; slot < end; ++slot) {
        slots.push_back(slot);
    }
    return slots;
}

std::string scan_reply(const std::vector<size_t> &slots)
{
    std::string networks;
    for (const size_t slot : slots) {
        networks += (networks.empty() ? "" : ",") + network(std::to_string(slot));
    }
    return R"({"SSIDList":[)" + networks + R"(],"Status":"0"})";
}

TEST_F(WifiScanTest, AsksForAScanOnce)
{
    EXPECT_EQ(run("GET_SCAN_WIFI_SSIDLIST", R"({"SSIDList":"kept"})"),
              R"({"SSIDList":"kept","SSIDList":[],"Status":"0"})");
    EXPECT_EQ(
        recording_device::calls(),
        (std::vector<Call>{{"devapi_get_scan_ssid", {std::string(sizeof(ScanResult), '\0')}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(WifiScanTest, ReportsTheFirstTwentySlots)
{
    for (const size_t count : {1u, 19u, 20u, 21u, 25u, 60u}) {
        scan_finds(slots_up_to(count));
        EXPECT_EQ(run("GET_SCAN_WIFI_SSIDLIST"),
                  scan_reply(slots_up_to(std::min<size_t>(count, 20))))
            << count;
    }
}

TEST_F(WifiScanTest, PassesOverEmptySlots)
{
    scan_finds({1, 3, 18, 19});
    EXPECT_EQ(run("GET_SCAN_WIFI_SSIDLIST"), scan_reply({1, 3, 18, 19}));
    scan_finds({20, 59});
    EXPECT_EQ(run("GET_SCAN_WIFI_SSIDLIST"), scan_reply({}));
}

TEST_F(WifiScanTest, AFailedScanMayHandOverMemory)
{
    for (const int32_t result : {-1, 1, -2, 1000}) {
        for (const size_t count : {0u, 3u, 60u}) {
            scan_finds(slots_up_to(count), result);
            EXPECT_EQ(run("GET_SCAN_WIFI_SSIDLIST"), "{" + failure("get scan rssi failed") + "}");
        }
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

// ---- GET_SCAN_CHANNEL_POWER --------------------------------------------------------------------

// A scan that hands over so many entries and says that there are count.
void powers_are(size_t entries, int32_t count, int32_t result = 0)
{
    when<devapi_scan_channel_power>([=](ChannelPowerResult *power) {
        power->count = count;
        power->entries = static_cast<ChannelPower *>(calloc(entries, sizeof(ChannelPower)));
        for (size_t at = 0; at < entries; ++at) {
            snprintf(power->entries[at].name, sizeof power->entries[at].name, "n%zu", at);
            snprintf(power->entries[at].dbpower, sizeof power->entries[at].dbpower, "-%zu", at);
        }
        return result;
    });
}

TEST_F(WifiScanTest, ReportsThePowerOfEachNetwork)
{
    powers_are(3, 2);
    EXPECT_EQ(run("GET_SCAN_CHANNEL_POWER", R"({"SSIDList":"kept"})"),
              R"({"SSIDList":"kept","SSIDList":[{"name":"n0","dbpower":"-0"},)"
              R"({"name":"n1","dbpower":"-1"}],"Status":"0"})");
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{
                  {"devapi_scan_channel_power", {std::string(sizeof(ChannelPowerResult), '\0')}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(WifiScanTest, ReportsAnyNumberOfPowers)
{
    powers_are(1000, 1000);
    const Json object = parse(run("GET_SCAN_CHANNEL_POWER"));
    EXPECT_EQ(cJSON_GetArraySize(object->child), 1000);
}

TEST_F(WifiScanTest, ReportsNoPowersThatAreNotThere)
{
    for (const int32_t count : {0, -1, INT32_MIN}) {
        powers_are(2, count);
        EXPECT_EQ(run("GET_SCAN_CHANNEL_POWER"), R"({"SSIDList":[],"Status":"0"})") << count;
    }
    when<devapi_scan_channel_power>([](ChannelPowerResult *power) {
        power->count = 5;
        return 0;
    });
    EXPECT_EQ(run("GET_SCAN_CHANNEL_POWER"), R"({"SSIDList":[],"Status":"0"})");
}

// ---- GET_WIFI_CHANNEL_LIST ---------------------------------------------------------------------

// A device with the channels 1, 2, 3 … at 2.4 GHz and 100, 101, 102 … at 5 GHz.
void channels_are(int32_t count_24g, int32_t count_5g, int32_t result = 0)
{
    when<devapi_get_all_wifi_channel_list>([=](WifiChannelList *list) {
        list->count_24g = count_24g;
        list->count_5g = count_5g;
        for (int16_t at = 0; at < 64; ++at) {
            list->channels_24g[at] = static_cast<int16_t>(1 + at);
            list->channels_5g[at] = static_cast<int16_t>(100 + at);
        }
        return result;
    });
}

std::string channel_reply(int count_24g, int count_5g)
{
    const auto names = [](int first, int count) {
        std::string text;
        for (int at = 0; at < count; ++at) {
            text += (at > 0 ? "," : "") + (R"({"Name":")" + std::to_string(first + at) + "\"}");
        }
        return text;
    };
    return R"({"List24g":[)" + names(1, count_24g) + R"(],"List58g":[)" + names(100, count_5g) +
           R"(],"Status":"0"})";
}

TEST_F(WifiScanTest, ReportsTheChannelsOfBothBands)
{
    channels_are(13, 5);
    EXPECT_EQ(run("GET_WIFI_CHANNEL_LIST"), channel_reply(13, 5));
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_get_all_wifi_channel_list", {std::string(264, '\0')}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(WifiScanTest, CountsOfChannelsAreHeldToTheirArrays)
{
    const std::pair<int32_t, int> counts[] = {{0, 0},   {-1, 0},  {INT32_MIN, 0}, {1, 1},
                                              {64, 64}, {65, 64}, {1000, 64},     {INT32_MAX, 64}};
    for (const auto &[count, reported] : counts) {
        channels_are(count, 0);
        EXPECT_EQ(run("GET_WIFI_CHANNEL_LIST"), channel_reply(reported, 0)) << count;
        channels_are(0, count);
        EXPECT_EQ(run("GET_WIFI_CHANNEL_LIST"), channel_reply(0, reported)) << count;
    }
}

TEST_F(WifiScanTest, AChannelMayBeAnyNumber)
{
    when<devapi_get_all_wifi_channel_list>([](WifiChannelList *list) {
        list->count_24g = 2;
        list->channels_24g[0] = INT16_MIN;
        list->channels_24g[1] = INT16_MAX;
        return 0;
    });
    EXPECT_EQ(run("GET_WIFI_CHANNEL_LIST", R"({"List58g":1})"),
              R"({"List58g":1,"List24g":[{"Name":"-32768"},{"Name":"32767"}],"List58g":[],)"
              R"("Status":"0"})");
}

// ---- All of them -------------------------------------------------------------------------------

} // namespace wifi_scan_test

// SPDX-License-Identifier: MIT
// Parental control: its switch, the notices and the table of devices. The periods are tested in
// green_net_periods_test.cpp.
#include "failing_memory.h"
#include "handler_test.h"
#include "memory_sweep.h"
#include "request.h"

#include <algorithm>
#include <cstring>
#include <map>

namespace green_net_test {

class GetGreennetEnable : public HandlerTest {};
class SetGreennetNotifyEnable : public HandlerTest {};

// ---- GET_GREENNET_ENABLE -----------------------------------------------------------------------

constexpr char kGetSwitch[] = "GET_GREENNET_ENABLE";

TEST_F(GetGreennetEnable, LogsASwitchThatCannotBeRead)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        recording_host::reset();
        when<devapi_get_greennet_enable>([result](char *enable) {
            EXPECT_EQ(std::string(enable, 256), std::string(256, '\0'));
            strcpy(enable, "1");
            return result;
        });
        EXPECT_EQ(run(kGetSwitch, R"({"Enable":"x"})"),
                  R"({"Enable":"x",)" + failure("get green net enable failed") + "}");
        EXPECT_EQ(recording_host::log_lines(),
                  (LogLines{{3, "json_get_green_net_enable: 1612 get green net enable "
                                "failed! ret = " +
                                    std::to_string(result) + "\n"}}));
    }
}

// ---- SET_GREENNET_NOTIFY_ENABLE ----------------------------------------------------------------

constexpr char kNotify[] = "SET_GREENNET_NOTIFY_ENABLE";
const Request kNotifyRequest({{"NotifyEnable", R"("1")"}, {"Mac", R"("AA:BB")"}});

TEST_F(SetGreennetNotifyEnable, SwitchesTheNoticesOfADevice)
{
    writes<devapi_get_greennet_index_by_mac>(12, 1);
    EXPECT_EQ(run(kNotify, kNotifyRequest.with("Name", R"("kept")").json()),
              R"({"Name":"kept","Status":"0"})");
    const int32_t none = 0;
    const GreenHostInfo expected = {"12", "AA:BB", "", "1", "", ""};
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_greennet_index_by_mac", {"AA:BB", contents(&none)}},
                     {"devapi_set_green_net_notify", {contents(&expected)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SetGreennetNotifyEnable, NeedsADeviceOfTheTable)
{
    for (const int32_t result : {0, -1, 2, -2, 1000, INT32_MIN}) {
        recording_device::reset();
        writes<devapi_get_greennet_index_by_mac>(3, result);
        EXPECT_EQ(run(kNotify, kNotifyRequest.json()),
                  "{" + failure("get host index failed.") + "}")
            << result;
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_greennet_index_by_mac"});
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SetGreennetNotifyEnable, CutsItsTexts)
{
    const std::pair<int32_t, const char *> indexes[] = {{0, "0"},
                                                        {-5, "-5"},
                                                        {64, "64"},
                                                        {999999, "999999"},
                                                        {1234567, "123456"},
                                                        {INT32_MAX, "214748"},
                                                        {INT32_MIN, "-21474"}};
    for (const auto &[index, text] : indexes) {
        writes<devapi_get_greennet_index_by_mac>(index, 1);
        for (const size_t length : {0u, 7u, 8u, 63u, 64u, 10000u}) {
            const std::string value = text_of_length(length);
            EXPECT_EQ(run(kNotify, R"({"Mac":)" + quoted(value) + R"(,"NotifyEnable":)" +
                                       quoted(value) + "}"),
                      R"({"Status":"0"})");
            GreenHostInfo expected = {};
            strcpy(expected.HostIndex, text);
            value.copy(expected.Mac, 63);
            value.copy(expected.NotifyEnable, 7);
            const auto calls = recording_device::calls();
            EXPECT_EQ(calls.back().arguments[0], contents(&expected));
            EXPECT_EQ(calls[calls.size() - 2].arguments[0], value.substr(0, 63));
        }
    }
}

} // namespace green_net_test

namespace green_net_list_test {

constexpr char kCommand[] = "GET_GREENNET_DEVICE_LIST";

class GetGreennetDeviceList : public HandlerTest {};

using Indexes = std::vector<int32_t>;

bool contains(const Indexes &indexes, int32_t index)
{
    return std::find(indexes.begin(), indexes.end(), index) != indexes.end();
}

// A table of which the entries with these indexes can be read; their texts end in the index.
void table_has(const Indexes &indexes, int32_t failure = -1)
{
    when<devapi_get_green_net_info>([=](GreenHostInfo *info) {
        const std::string index = info->HostIndex;
        memset(info, '?', sizeof *info);
        strcpy(info->Mac, ("mac" + index).c_str());
        strcpy(info->Name, ("name" + index).c_str());
        strcpy(info->NotifyEnable, ("n" + index).c_str());
        strcpy(info->ProtectEnable, ("p" + index).c_str());
        return contains(indexes, std::stoi(index)) ? 0 : failure;
    });
}

std::string element(int32_t index)
{
    const std::string number = std::to_string(index);
    return R"({"Mac":"mac)" + number + R"(","Name":"name)" + number + R"(","NotifyEnable":"n)" +
           number + R"(","ProtectEnable":"p)" + number + "\"}";
}

std::string list_of(const Indexes &indexes)
{
    std::string elements;
    for (const int32_t index : indexes) {
        elements += (elements.empty() ? "" : ",") + element(index);
    }
    return R"("Status":"0","DeviceList":[)" + elements + "]}";
}

LogLine unread(int32_t index)
{
    return {3, "json get host " + std::to_string(index) + " info error.\n"};
}

TEST_F(GetGreennetDeviceList, ListsTheDevicesUpToTheirCount)
{
    writes<devapi_get_greennet_num>(2);
    table_has({1, 2, 3});
    EXPECT_EQ(run(kCommand, R"({"devicelist":7})"), R"({"devicelist":7,)" + list_of({1, 2}));
    const int32_t none = 0;
    const GreenHostInfo first = {"1", "", "", "", "", ""};
    const GreenHostInfo second = {"2", "", "", "", "", ""};
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_greennet_num", {contents(&none)}},
                     {"devapi_get_green_net_info", {contents(&first)}},
                     {"devapi_get_green_net_info", {contents(&second)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetGreennetDeviceList, LogsGapsInTheTableAndDoesNotCountThem)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        forget();
        writes<devapi_get_greennet_num>(3);
        table_has({2, 5, 6, 7}, result);
        EXPECT_EQ(run(kCommand), "{" + list_of({2, 5, 6}));
        EXPECT_EQ(recording_device::calls().size(), 1u + 6);
        EXPECT_EQ(recording_host::log_lines(), (LogLines{unread(1), unread(3), unread(4)}));
    }
}

TEST_F(GetGreennetDeviceList, ReadsSixtyFourEntriesAtMost)
{
    for (const int32_t count : {3, 64, 65, 2000000, INT32_MAX}) {
        forget();
        writes<devapi_get_greennet_num>(count);
        table_has({1, 64, 65});
        EXPECT_EQ(run(kCommand), "{" + list_of({1, 64})) << count;
        EXPECT_EQ(recording_device::calls().size(), 1u + 64);
        LogLines lines;
        for (int32_t index = 2; index < 64; ++index) {
            lines.push_back(unread(index));
        }
        EXPECT_EQ(recording_host::log_lines(), lines);
    }
}

TEST_F(GetGreennetDeviceList, IsEmptyWithoutEntries)
{
    for (const int32_t count : {0, -1, -5, INT32_MIN}) {
        recording_device::reset();
        writes<devapi_get_greennet_num>(count);
        EXPECT_EQ(run(kCommand), "{" + list_of({})) << count;
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_greennet_num"});
    }
}

TEST_F(GetGreennetDeviceList, CountsEntriesWithoutAMacAndLeavesThemOut)
{
    const std::pair<std::string, bool> macs[] = {
        {"", false},     {"NULL", false}, {"null", false}, {"NuLl", false}, {"NUL", true},
        {"NULLS", true}, {" NULL", true}, {"N", true},     {"x", true},
    };
    for (const auto &[mac, is_reported] : macs) {
        recording_device::reset();
        writes<devapi_get_greennet_num>(2);
        when<devapi_get_green_net_info>([mac = mac](GreenHostInfo *info) {
            const bool first = strcmp(info->HostIndex, "1") == 0;
            *info = {"", "mac2", "name2", "n2", "p2", ""};
            if (first) {
                *info = {"?", "", "N", "n", "p", "?"};
                strcpy(info->Mac, mac.c_str());
            }
            return 0;
        });
        const std::string first =
            R"({"Mac":)" + quoted(mac) + R"(,"Name":"N","NotifyEnable":"n","ProtectEnable":"p"},)";
        EXPECT_EQ(run(kCommand), R"({"Status":"0","DeviceList":[)" + (is_reported ? first : "") +
                                     element(2) + "]}");
        EXPECT_EQ(recording_device::calls().size(), 1u + 2) << mac;
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

// The only list that may be short for lack of memory: there is a log line for each element.
TEST_F(GetGreennetDeviceList, LeavesOutAndLogsADeviceWithoutMemory)
{
    size_t number = 0;
    const size_t allocations = sweep_memory(
        kCommand, "{}",
        [] {
            writes<devapi_get_greennet_num>(2);
            table_has({1, 2});
        },
        [&number](const std::string &object, FailingMemory::Fail how) {
            const LogLine line = {3, "cJSON_CreateObject error\n"};
            const bool once = how == FailingMemory::Fail::kOnce;
            const size_t failing = number++ % 20;
            const size_t lost = failing < 2 ? 0 : !once && failing < 11 ? 2 : 1;
            EXPECT_EQ(recording_host::log_lines(), LogLines(lost, line));
            if (failing < 2) {
                EXPECT_EQ(object, once ? "{" + failure("get host num failed") + "}" : "{}");
            } else if (lost == 2) {
                EXPECT_EQ(object, "{" + list_of({}));
            } else {
                EXPECT_EQ(object, "{" + list_of({failing < 11 ? 2 : 1}));
            }
        });
    EXPECT_EQ(allocations, 1 + 1 + 2 * (1 + 2u * 4));
}

} // namespace green_net_list_test

namespace green_net_list_setting_test {

constexpr char kCommand[] = "SET_GREENNET_DEVICE_LIST";
constexpr char kSuccess[] = R"({"First":1,"Last":2,"Status":"0"})";

const LogLine kNoText = {3, "string is null.\n"};
const LogLine kNoIndex = {3, "get index failed\n"};
const LogLine kNotAdded = {3, "add_greennet_mac failed\n"};

LogLine is_new(const std::string &mac)
{
    return {7, "dev mac : " + mac + " not exsit, need add!\n"};
}

const Request
    kElement({{"Mac", R"("AA:BB")"}, {"Name", R"("tablet")"}, {"NotifyEnable", R"("1")"}});

std::string element(const std::string &mac)
{
    return kElement.with("Mac", quoted(mac)).json();
}

GreenHostInfo record(const std::string &index, const std::string &mac, const std::string &is_new)
{
    GreenHostInfo device = {"", "", "tablet", "1", "", ""};
    index.copy(device.HostIndex, 7);
    mac.copy(device.Mac, 63);
    is_new.copy(device.NewEntry, 7);
    return device;
}

std::string list_of(const std::string &elements)
{
    return R"({"First":1,"DeviceList":[)" + elements + R"(],"Last":2})";
}

std::string reply(const std::string &members)
{
    return R"({"First":1,"Last":2,)" + members + "}";
}

class SetGreennetDeviceList : public HandlerTest {
  protected:
    SetGreennetDeviceList() { forget(); }

    // The device then has a table with the entry "AA:BB" at index 5 that adds others from 6 on.
    void forget()
    {
        HandlerTest::forget();
        table = {{"AA:BB", 5}};
        when<devapi_get_greennet_index_by_mac>([this](const char *mac, int32_t *index) {
            EXPECT_EQ(*index, 0);
            *index = table.count(mac) == 1 ? table[mac] : 0;
            return *index != 0 ? 1 : 0;
        });
        when<devapi_add_greennet_mac>([this](const char *mac, int32_t *index) {
            EXPECT_EQ(*index, 0);
            *index = 5 + static_cast<int32_t>(table.size());
            table[mac] = *index;
            return 0;
        });
    }

    // The list that the removal got.
    static std::string listed()
    {
        const Call last = recording_device::calls().back();
        EXPECT_EQ(last.function, "devapi_del_green_net_info_by_maclist");
        return last.arguments[0];
    }

    std::map<std::string, int32_t> table;
};

TEST_F(SetGreennetDeviceList, StoresKnownAndNewDevicesAndRemovesTheOthers)
{
    EXPECT_EQ(run(kCommand, list_of(element("AA:BB") + "," + element("CC:DD"))), kSuccess);
    const int32_t none = 0;
    const GreenHostInfo known = record("5", "AA:BB", "0");
    const GreenHostInfo added = record("6", "CC:DD", "1");
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_set_greenaccess_enable", {"1"}},
                     {"devapi_get_greennet_index_by_mac", {"AA:BB", contents(&none)}},
                     {"devapi_set_green_net_info", {contents(&known)}},
                     {"devapi_get_greennet_index_by_mac", {"CC:DD", contents(&none)}},
                     {"devapi_add_greennet_mac", {"CC:DD", contents(&none)}},
                     {"devapi_set_green_net_info", {contents(&added)}},
                     {"devapi_del_green_net_info_by_maclist", {"AA:BB,CC:DD,"}}}));
    EXPECT_EQ(recording_host::log_lines(), LogLines{is_new("CC:DD")});
}

TEST_F(SetGreennetDeviceList, AnEmptyListRemovesEveryEntry)
{
    EXPECT_EQ(run(kCommand, list_of("")), kSuccess);
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_del_green_net_info_by_maclist", {"(null)"}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SetGreennetDeviceList, ReportsAFailedRemovalWithTwoStatuses)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        for (const std::string &elements : {std::string(), element("AA:BB")}) {
            when<devapi_del_green_net_info_by_maclist>([result](const char *) { return result; });
            EXPECT_EQ(run(kCommand, list_of(elements)),
                      reply(failure("del green net info failed") + R"(,"Status":"0")"));
        }
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SetGreennetDeviceList, RemovesNothingForAValueThatIsNotAList)
{
    std::vector<Request> requests = {Request({}), Request({}).with("Device", "[]")};
    for (const std::string json :
         {"7", "true", "false", "null", R"("")", R"("[]")", "{}", R"({"DeviceList":[]})"}) {
        requests.push_back(Request({}).with("DeviceList", json));
    }
    for (const Request &request : requests) {
        EXPECT_EQ(run(kCommand, request.json()),
                  request.followed_by(failure("json node: list not found")));
    }
    EXPECT_TRUE(recording_device::calls().empty());
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SetGreennetDeviceList, StopsIfAccessCannotBeRestricted)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        forget();
        when<devapi_set_greenaccess_enable>([result](int32_t) { return result; });
        EXPECT_EQ(run(kCommand, list_of(element("AA:BB"))),
                  reply(failure("set greenaccess enable failed")));
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_set_greenaccess_enable"});
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

// What was stored before the element stays stored, and nothing is removed.
TEST_F(SetGreennetDeviceList, StopsAtTheFirstElementWithoutOneOfItsKeys)
{
    for (const std::string &bad : not_like(kElement)) {
        forget();
        EXPECT_EQ(run(kCommand, list_of(element("AA:BB") + "," + bad + "," + element("CC:DD"))),
                  reply(failure("parse green host info failed")));
        EXPECT_EQ(recording_device::called_functions(),
                  (Names{"devapi_set_greenaccess_enable", "devapi_get_greennet_index_by_mac",
                         "devapi_set_green_net_info"}))
            << bad;
        EXPECT_EQ(recording_host::log_lines(), LogLines{kNoText});
    }
}

TEST_F(SetGreennetDeviceList, StopsAtTheFirstDeviceWithoutAnIndex)
{
    for (const int32_t result : {-1, -2, -1000, INT32_MIN}) {
        forget();
        when<devapi_get_greennet_index_by_mac>([result](const char *mac, int32_t *index) {
            *index = 1;
            return strcmp(mac, "CC:DD") == 0 ? result : 1;
        });
        EXPECT_EQ(run(kCommand,
                      list_of(element("AA:BB") + "," + element("CC:DD") + "," + element("EE:FF"))),
                  reply(failure("parse green host info failed")));
        EXPECT_EQ(recording_device::called_functions(),
                  (Names{"devapi_set_greenaccess_enable", "devapi_get_greennet_index_by_mac",
                         "devapi_set_green_net_info", "devapi_get_greennet_index_by_mac"}));
        EXPECT_EQ(recording_host::log_lines(), LogLines{kNoIndex});
    }
}

// The index, not the result, shows whether there is an entry.
TEST_F(SetGreennetDeviceList, AddsADeviceWithTheIndexZero)
{
    for (const int32_t result : {0, 1, 2, 1000, INT32_MAX}) {
        for (const int32_t index : {0, 1, -1, 64, 100}) {
            forget();
            writes<devapi_get_greennet_index_by_mac>(index, result);
            EXPECT_EQ(run(kCommand, list_of(element("AA:BB"))), kSuccess);
            EXPECT_EQ(recording_device::calls().size(), index == 0 ? 5u : 4u);
            EXPECT_EQ(recording_host::log_lines(), LogLines(index == 0 ? 1 : 0, is_new("AA:BB")));
        }
    }
}

TEST_F(SetGreennetDeviceList, StopsAtTheFirstDeviceThatCannotBeAdded)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        forget();
        writes<devapi_add_greennet_mac>(7, result);
        EXPECT_EQ(run(kCommand, list_of(element("CC:DD") + "," + element("AA:BB"))),
                  reply(failure("parse green host info failed")));
        EXPECT_EQ(recording_device::called_functions(),
                  (Names{"devapi_set_greenaccess_enable", "devapi_get_greennet_index_by_mac",
                         "devapi_add_greennet_mac"}));
        EXPECT_EQ(recording_host::log_lines(), (LogLines{is_new("CC:DD"), kNotAdded}));
    }
}

TEST_F(SetGreennetDeviceList, StopsAtTheFirstDeviceThatCannotBeStored)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        forget();
        when<devapi_set_green_net_info>([result](const GreenHostInfo *info) {
            return strcmp(info->Mac, "CC:DD") == 0 ? result : 0;
        });
        EXPECT_EQ(run(kCommand,
                      list_of(element("AA:BB") + "," + element("CC:DD") + "," + element("EE:FF"))),
                  reply(failure("set lan host info failed")));
        EXPECT_EQ(recording_device::called_functions(),
                  (Names{"devapi_set_greenaccess_enable", "devapi_get_greennet_index_by_mac",
                         "devapi_set_green_net_info", "devapi_get_greennet_index_by_mac",
                         "devapi_add_greennet_mac", "devapi_set_green_net_info"}));
        EXPECT_EQ(recording_host::log_lines(), LogLines{is_new("CC:DD")});
    }
}

TEST_F(SetGreennetDeviceList, CutsItsTexts)
{
    const std::pair<int32_t, const char *> indexes[] = {{1, "1"},
                                                        {1234567, "1234567"},
                                                        {12345678, "1234567"},
                                                        {INT32_MAX, "2147483"},
                                                        {INT32_MIN, "-214748"}};
    for (const auto &[index, text] : indexes) {
        for (const size_t length : {0u, 7u, 8u, 63u, 64u, 10000u}) {
            forget();
            table[text_of_length(length).substr(0, 63)] = index;
            Request request({});
            for (const auto &[key, json] : kElement.keys()) {
                request = request.with(key, quoted(text_of_length(length)));
            }
            EXPECT_EQ(run(kCommand, list_of(request.json())), kSuccess);
            GreenHostInfo expected = {"", "", "", "", "", "0"};
            strcpy(expected.HostIndex, text);
            text_of_length(length).copy(expected.Mac, 63);
            text_of_length(length).copy(expected.Name, 63);
            text_of_length(length).copy(expected.NotifyEnable, 7);
            EXPECT_EQ(recording_device::calls().at(2),
                      (Call{"devapi_set_green_net_info", {contents(&expected)}}));
        }
    }
}

// All elements are read into the same record.
TEST_F(SetGreennetDeviceList, KeepsNothingOfOneDeviceForTheNext)
{
    table["A"] = 12;
    run(kCommand,
        list_of(element("CC:DD:EE:FF") + "," + R"({"Mac":"A","Name":"n","NotifyEnable":""})"));
    const auto stored = recording_device::record<GreenHostInfo>(recording_device::calls().at(5));
    EXPECT_STREQ(stored.HostIndex, "12");
    EXPECT_STREQ(stored.Mac, "A");
    EXPECT_STREQ(stored.Name, "n");
    EXPECT_STREQ(stored.NotifyEnable, "");
    EXPECT_STREQ(stored.ProtectEnable, "");
    EXPECT_STREQ(stored.NewEntry, "0");
}

// The devices are stored by then, and half of the reply would mean the opposite.
TEST_F(SetGreennetDeviceList, WithoutMemoryARefusedRemovalIsNotReportedInPart)
{
    when<devapi_del_green_net_info_by_maclist>([](const char *) { return -1; });
    for (const auto how : {FailingMemory::Fail::kOnce, FailingMemory::Fail::kLastingly}) {
        for (size_t first = 1; first < 4; ++first) {
            const Json object = parse(list_of(element("AA:BB")));
            {
                const FailingMemory memory(first, how);
                hg_process_json_cmd(kCommand, object.get());
                EXPECT_TRUE(memory.has_failed());
            }
            EXPECT_EQ(print(object.get()), how == FailingMemory::Fail::kOnce
                                               ? reply(failure("malloc mac_list failed"))
                                               : R"({"First":1,"Last":2})");
            EXPECT_EQ(listed(), "AA:BB,");
        }
    }
}

} // namespace green_net_list_setting_test

// The MAC addresses of SET_GREENNET_DEVICE_LIST, which the device gets in one text.
namespace green_net_mac_list_test {

// Every device has an entry already.
class SetGreennetDeviceListMacs : public HandlerTest {
  protected:
    SetGreennetDeviceListMacs() { writes<devapi_get_greennet_index_by_mac>(1, 1); }

    static std::string list_for(const std::vector<std::string> &macs)
    {
        std::string elements;
        for (const std::string &mac : macs) {
            elements += elements.empty() ? "" : ",";
            elements += R"({"Mac":)" + quoted(mac) + R"(,"Name":"n","NotifyEnable":"1"})";
        }
        EXPECT_EQ(run("SET_GREENNET_DEVICE_LIST", R"({"DeviceList":[)" + elements + "]}"),
                  R"({"Status":"0"})");
        const auto calls = recording_device::calls();
        EXPECT_EQ(calls.back().function, "devapi_del_green_net_info_by_maclist");
        return calls.back().arguments[0];
    }
};

TEST_F(SetGreennetDeviceListMacs, HasACommaAfterEachAddress)
{
    EXPECT_EQ(list_for({"A", "B"}), "A,B,");
    EXPECT_EQ(list_for({"A", "B", "A", "A"}), "A,B,A,A,");
    EXPECT_EQ(list_for({"00:11:22:33:44:55"}), "00:11:22:33:44:55,");
}

TEST_F(SetGreennetDeviceListMacs, HasAnyTextAsAnAddress)
{
    for (const std::string mac : {"", " ", ",", "NULL", "null", "aa-bb-cc", "not a MAC", "%s%n"}) {
        EXPECT_EQ(list_for({mac}), mac + ",");
    }
    EXPECT_EQ(list_for({"", "", ""}), ",,,");
}

TEST_F(SetGreennetDeviceListMacs, HasHundredsOfAddresses)
{
    std::vector<std::string> macs;
    std::string expected;
    for (int at = 0; at < 300; ++at) {
        macs.push_back("00:11:22:33:44:" + std::to_string(at));
        expected += macs.back() + ",";
    }
    EXPECT_EQ(list_for(macs), expected);
    EXPECT_EQ(recording_device::calls().size(), 2u + 2 * 300);
}

// What does not fit is cut, the comma included.
TEST_F(SetGreennetDeviceListMacs, IsCutAtTwentyBytesForEachDevice)
{
    for (size_t length = 0; length <= 80; ++length) {
        const std::string mac = text_of_length(length);
        const std::string kept = mac.substr(0, 63) + ",";
        EXPECT_EQ(list_for({mac}), kept.substr(0, 19)) << length;
        EXPECT_EQ(list_for({mac, "B", "C"}), (kept + "B,C,").substr(0, 59)) << length;
        EXPECT_EQ(list_for({"A", mac, mac}), ("A," + kept + kept).substr(0, 59)) << length;
    }
    EXPECT_EQ(list_for({text_of_length(18)}), text_of_length(18) + ",") << "it just fits";
    EXPECT_EQ(list_for({text_of_length(19)}), text_of_length(19)) << "without its comma";
    EXPECT_EQ(list_for({text_of_length(37), "BC"}), text_of_length(37) + ",B");
    EXPECT_EQ(list_for({text_of_length(38), "BC"}), text_of_length(38) + ",");
    EXPECT_EQ(list_for({text_of_length(39), "BC"}), text_of_length(39));
    EXPECT_EQ(list_for({text_of_length(10000), "BC"}), text_of_length(39));
}

} // namespace green_net_mac_list_test

#include "failing_memory.h"
#include "handler_test.h"
#include "request.h"

#include <cstring>
#include <map>

namespace green_net_list_setting_test {

using recording_device::Call;
using recording_device::contents;
using recording_device::when;
using recording_host::LogLine;
using Names = std::vector<std::string>;

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

class GreenNetListSettingTest : public HandlerTest {
  protected:
    GreenNetListSettingTest() { program_table(); }

    // A table with the entry "AA:BB" at index 5 that adds others from 6 on.
    void program_table()
    {
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

    void forget()
    {
        recording_device::reset();
        recording_host::reset();
        program_table();
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

TEST_F(GreenNetListSettingTest, StoresKnownAndNewDevicesAndRemovesTheOthers)
{
    EXPECT_EQ(run(kCommand, list_of(element("AA:BB") + "," + element("CC:DD"))), kSuccess);
    const int32_t none = 0;
    const GreenHostInfo known = record("5", "AA:BB", "0");
    const GreenHostInfo added = record("6", "CC:DD", "1");
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_set_greenaccess_enable", {"1"}},
                                 {"devapi_get_greennet_index_by_mac", {"AA:BB", contents(&none)}},
                                 {"devapi_set_green_net_info", {contents(&known)}},
                                 {"devapi_get_greennet_index_by_mac", {"CC:DD", contents(&none)}},
                                 {"devapi_add_greennet_mac", {"CC:DD", contents(&none)}},
                                 {"devapi_set_green_net_info", {contents(&added)}},
                                 {"devapi_del_green_net_info_by_maclist", {"AA:BB,CC:DD,"}}}));
    EXPECT_EQ(recording_host::log_lines(), std::vector<LogLine>{is_new("CC:DD")});
}

TEST_F(GreenNetListSettingTest, AnEmptyListRemovesEveryEntry)
{
    EXPECT_EQ(run(kCommand, list_of("")), kSuccess);
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_del_green_net_info_by_maclist", {"(null)"}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GreenNetListSettingTest, AFailedRemovalIsToldByTwoStatuses)
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

TEST_F(GreenNetListSettingTest, WhatIsNoListNeverRemovesAnything)
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

TEST_F(GreenNetListSettingTest, StopsWhenAccessCannotBeRestricted)
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
TEST_F(GreenNetListSettingTest, StopsAtTheFirstElementWithoutOneOfItsKeys)
{
    std::vector<std::string> wrong = {
        "null", "7", "true", R"("Mac")", "[]", "{}", "[" + kElement.json() + "]"};
    for (const auto &[key, json] : kElement.keys()) {
        wrong.push_back(kElement.without(key).json());
        for (const std::string &no_text : kNoTexts) {
            wrong.push_back(kElement.with(key, no_text).json());
        }
    }
    for (const std::string &bad : wrong) {
        forget();
        EXPECT_EQ(run(kCommand, list_of(element("AA:BB") + "," + bad + "," + element("CC:DD"))),
                  reply(failure("parse green host info failed")));
        EXPECT_EQ(recording_device::called_functions(),
                  (Names{"devapi_set_greenaccess_enable", "devapi_get_greennet_index_by_mac",
                         "devapi_set_green_net_info"}))
            << bad;
        EXPECT_EQ(recording_host::log_lines(), std::vector<LogLine>{kNoText});
    }
}

TEST_F(GreenNetListSettingTest, StopsAtTheFirstDeviceWithoutAnIndex)
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
        EXPECT_EQ(recording_host::log_lines(), std::vector<LogLine>{kNoIndex});
    }
}

// Whether there is an entry is told by the index, not by the result.
TEST_F(GreenNetListSettingTest, OnlyIndexZeroIsANewDevice)
{
    for (const int32_t result : {0, 1, 2, 1000, INT32_MAX}) {
        for (const int32_t index : {0, 1, -1, 64, 100}) {
            forget();
            when<devapi_get_greennet_index_by_mac>([=](const char *, int32_t *out) {
                *out = index;
                return result;
            });
            EXPECT_EQ(run(kCommand, list_of(element("AA:BB"))), kSuccess);
            EXPECT_EQ(recording_device::calls().size(), index == 0 ? 5u : 4u);
            EXPECT_EQ(recording_host::log_lines(),
                      std::vector<LogLine>(index == 0 ? 1 : 0, is_new("AA:BB")));
        }
    }
}

TEST_F(GreenNetListSettingTest, StopsAtTheFirstDeviceThatCannotBeAdded)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        forget();
        when<devapi_add_greennet_mac>([result](const char *, int32_t *index) {
            *index = 7;
            return result;
        });
        EXPECT_EQ(run(kCommand, list_of(element("CC:DD") + "," + element("AA:BB"))),
                  reply(failure("parse green host info failed")));
        EXPECT_EQ(recording_device::called_functions(),
                  (Names{"devapi_set_greenaccess_enable", "devapi_get_greennet_index_by_mac",
                         "devapi_add_greennet_mac"}));
        EXPECT_EQ(recording_host::log_lines(), (std::vector<LogLine>{is_new("CC:DD"), kNotAdded}));
    }
}

TEST_F(GreenNetListSettingTest, StopsAtTheFirstDeviceThatCannotBeStored)
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
        EXPECT_EQ(recording_host::log_lines(), std::vector<LogLine>{is_new("CC:DD")});
    }
}

TEST_F(GreenNetListSettingTest, CutsItsTexts)
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

// The record is one for all elements: nothing of one may show in the next.
TEST_F(GreenNetListSettingTest, EachDeviceIsItsOwn)
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

// The devices are stored by then: half of what apps are told of it would say the opposite.
TEST_F(GreenNetListSettingTest, WithoutMemoryARefusedRemovalIsNotToldByHalf)
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

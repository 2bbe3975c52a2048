#include "handler_test.h"
#include "memory_sweep.h"
#include "request.h"

#include <algorithm>
#include <cstring>

namespace green_net_list_test {

using recording_device::Call;
using recording_device::contents;
using recording_device::when;
using recording_host::LogLine;
using Names = std::vector<std::string>;

constexpr char kCommand[] = "GET_GREENNET_DEVICE_LIST";

class GreenNetListTest : public HandlerTest {};

void entries_are(int32_t count, int32_t result = 0)
{
    when<devapi_get_greennet_num>([=](int32_t *out) {
        *out = count;
        return result;
    });
}

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

TEST_F(GreenNetListTest, ListsTheDevicesUpToTheirCount)
{
    entries_are(2);
    table_has({1, 2, 3});
    EXPECT_EQ(run(kCommand, R"({"devicelist":7})"), R"({"devicelist":7,)" + list_of({1, 2}));
    const int32_t none = 0;
    const GreenHostInfo first = {"1", "", "", "", "", ""};
    const GreenHostInfo second = {"2", "", "", "", "", ""};
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_get_greennet_num", {contents(&none)}},
                                 {"devapi_get_green_net_info", {contents(&first)}},
                                 {"devapi_get_green_net_info", {contents(&second)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GreenNetListTest, GapsInTheTableAreLoggedAndDoNotCount)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        recording_device::reset();
        recording_host::reset();
        entries_are(3);
        table_has({2, 5, 6, 7}, result);
        EXPECT_EQ(run(kCommand), "{" + list_of({2, 5, 6}));
        EXPECT_EQ(recording_device::calls().size(), 1u + 6);
        EXPECT_EQ(recording_host::log_lines(),
                  (std::vector<LogLine>{unread(1), unread(3), unread(4)}));
    }
}

TEST_F(GreenNetListTest, TheTableEndsAtSixtyFour)
{
    for (const int32_t count : {3, 64, 65, 2000000, INT32_MAX}) {
        recording_device::reset();
        recording_host::reset();
        entries_are(count);
        table_has({1, 64, 65});
        EXPECT_EQ(run(kCommand), "{" + list_of({1, 64})) << count;
        EXPECT_EQ(recording_device::calls().size(), 1u + 64);
        std::vector<LogLine> lines;
        for (int32_t index = 2; index < 64; ++index) {
            lines.push_back(unread(index));
        }
        EXPECT_EQ(recording_host::log_lines(), lines);
    }
}

TEST_F(GreenNetListTest, NoEntriesAreAnEmptyList)
{
    for (const int32_t count : {0, -1, -5, INT32_MIN}) {
        recording_device::reset();
        entries_are(count);
        EXPECT_EQ(run(kCommand), "{" + list_of({})) << count;
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_greennet_num"});
    }
}

TEST_F(GreenNetListTest, EntriesWithoutAMacAreCountedAndLeftOut)
{
    const std::pair<std::string, bool> macs[] = {
        {"", false},     {"NULL", false}, {"null", false}, {"NuLl", false}, {"NUL", true},
        {"NULLS", true}, {" NULL", true}, {"N", true},     {"x", true},
    };
    for (const auto &[mac, is_reported] : macs) {
        recording_device::reset();
        entries_are(2);
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

// The one list that memory may shorten: the log says by how much.
TEST_F(GreenNetListTest, ADeviceWithoutMemoryIsLeftOutAndLogged)
{
    size_t number = 0;
    const size_t allocations = sweep_memory(
        kCommand, "{}",
        [] {
            entries_are(2);
            table_has({1, 2});
        },
        [&number](const std::string &object, FailingMemory::Fail how) {
            const LogLine line = {3, "cJSON_CreateObject error\n"};
            const bool once = how == FailingMemory::Fail::kOnce;
            const size_t failing = number++ % 20;
            const size_t lost = failing < 2 ? 0 : !once && failing < 11 ? 2 : 1;
            EXPECT_EQ(recording_host::log_lines(), std::vector<LogLine>(lost, line));
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

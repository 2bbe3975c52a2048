// What the ports carry, and which connections they serve. Entries that are not freed are found by
// the address sanitizer.
#include "handler_test.h"
#include "memory_sweep.h"
#include "request.h"
#include "traffic.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace port_lists_test {

using recording_device::Call;
using recording_device::when;

class PortListsTest : public HandlerTest {};

// Puts a text into a field that is zeroed.
template <size_t width> void put(char (&field)[width], const std::string &text)
{
    text.copy(field, width - 1);
}

// ---- GET_PORT_STATISTICS -----------------------------------------------------------------------

constexpr char kStatistics[] = "GET_PORT_STATISTICS";

// Hands over so many entries, each with its number in every text, and says that there are count;
// none are handed over as a null pointer.
void statistics_are(size_t entries, int32_t count, int32_t result = 0)
{
    when<devapi_get_port_statistics_info>([=](PortStatisticsInfo *info) {
        info->count = count;
        if (entries == 0) {
            return result;
        }
        info->entries = static_cast<PortStatistics *>(calloc(entries, sizeof(PortStatistics)));
        for (size_t at = 0; at < entries; ++at) {
            PortStatistics &port = info->entries[at];
            put(port.Port, "p" + std::to_string(at));
            put(port.tx_traffic, "a" + std::to_string(at));
            put(port.rx_traffic, "b" + std::to_string(at));
            put(port.tx_packets, "c" + std::to_string(at));
            put(port.rx_packets, "d" + std::to_string(at));
        }
        return result;
    });
}

std::string statistics_reply(size_t first, size_t end)
{
    std::string elements;
    for (size_t at = first; at < end; ++at) {
        const std::string number = std::to_string(at) + "\"";
        elements += (elements.empty() ? R"({"Port":"p)" : R"(,{"Port":"p)") + number +
                    R"(,"tx_traffic":"a)" + number + R"(,"rx_traffic":"b)" + number +
                    R"(,"tx_packets":"c)" + number + R"(,"rx_packets":"d)" + number + "}";
    }
    return R"("port_stat_list":[)" + elements + R"(],"Status":"0"})";
}

TEST_F(PortListsTest, ReportsWhatEachPortCarries)
{
    statistics_are(2, 2);
    EXPECT_EQ(run(kStatistics, R"({"port_stat_list":7})"),
              R"({"port_stat_list":7,"port_stat_list":[{"Port":"p0","tx_traffic":"a0",)"
              R"("rx_traffic":"b0","tx_packets":"c0","rx_packets":"d0"},{"Port":"p1",)"
              R"("tx_traffic":"a1","rx_traffic":"b1","tx_packets":"c1","rx_packets":"d1"}],)"
              R"("Status":"0"})");
    const std::string none(sizeof(PortStatisticsInfo), '\0');
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_get_port_statistics_info", {none}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(PortListsTest, ReportsAsManyPortsAsThereAre)
{
    for (const size_t count : {1u, 8u, 9u, 500u}) {
        statistics_are(count, static_cast<int32_t>(count));
        EXPECT_EQ(run(kStatistics), "{" + statistics_reply(0, count));
    }
    statistics_are(5, 3);
    EXPECT_EQ(run(kStatistics), "{" + statistics_reply(0, 3));
}

TEST_F(PortListsTest, NoPortsAreAnEmptyList)
{
    for (const int32_t count : {0, -1, INT32_MIN}) {
        for (const size_t entries : {0u, 2u}) {
            statistics_are(entries, count);
            EXPECT_EQ(run(kStatistics), "{" + statistics_reply(0, 0));
        }
    }
    for (const int32_t count : {1, 64, INT32_MAX}) {
        statistics_are(0, count);
        EXPECT_EQ(run(kStatistics), "{" + statistics_reply(0, 0));
    }
}

TEST_F(PortListsTest, ReadsNoFurtherThanTheFieldsOfAPort)
{
    when<devapi_get_port_statistics_info>([](PortStatisticsInfo *info) {
        info->count = 1;
        info->entries = static_cast<PortStatistics *>(malloc(sizeof(PortStatistics)));
        memset(info->entries, 'x', sizeof(PortStatistics));
        return 0;
    });
    const std::string x32 = quoted(std::string(32, 'x'));
    EXPECT_EQ(run(kStatistics), R"({"port_stat_list":[{"Port":)" + quoted(std::string(16, 'x')) +
                                    R"(,"tx_traffic":)" + x32 + R"(,"rx_traffic":)" + x32 +
                                    R"(,"tx_packets":)" + x32 + R"(,"rx_packets":)" + x32 +
                                    R"(}],"Status":"0"})");
}

TEST_F(PortListsTest, StatisticsThatCannotBeReadMayHandOverMemory)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN, INT32_MAX}) {
        for (const size_t entries : {0u, 3u}) {
            statistics_are(entries, 3, result);
            EXPECT_EQ(run(kStatistics, R"({"Other":1})"),
                      R"({"Other":1,)" + failure("get port statistics info error") + "}");
        }
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

// The reply to each allocation that fails once, in a list of two entries with so many texts.
template <class Reply> std::vector<std::string> replies_without(size_t texts, Reply reply)
{
    const std::string error = "{" + failure("cJSON_CreateArray error") + "}";
    std::vector<std::string> replies = {error};
    replies.insert(replies.end(), 1 + 2 * texts, "{" + reply(1, 2));
    replies.insert(replies.end(), 1 + 2 * texts, "{" + reply(0, 1));
    replies.push_back(error); // the status
    return replies;
}

TEST_F(PortListsTest, APortWithoutMemoryIsLeftOut)
{
    const std::vector<std::string> replies = replies_without(5, statistics_reply);
    size_t number = 0;
    const size_t allocations = sweep_memory(
        kStatistics, "{}", [] { statistics_are(2, 2); },
        [&](const std::string &object, FailingMemory::Fail how) {
            const bool once = how == FailingMemory::Fail::kOnce;
            EXPECT_EQ(object, once ? replies[number++] : "{}");
            if (once) {
                record_traffic(kStatistics, "{}", object);
            }
        });
    EXPECT_EQ(allocations, replies.size());
}

// ---- GET_PORT_BINDING --------------------------------------------------------------------------

constexpr char kBinding[] = "GET_PORT_BINDING";

void bindings_are(int32_t count, int32_t result = 0)
{
    when<devapi_get_port_binding_info>([=](PortBindingInfo *info) {
        info->count = count;
        for (int at = 0; at < PORT_MAX_BINDINGS; ++at) {
            PortBinding &binding = info->entries[at];
            put(binding.Index, "i" + std::to_string(at));
            put(binding.WANName, "w" + std::to_string(at));
            put(binding.BoundPorts, "b" + std::to_string(at));
        }
        return result;
    });
}

std::string binding_reply(size_t first, size_t end)
{
    std::string elements;
    for (size_t at = first; at < end; ++at) {
        const std::string number = std::to_string(at) + "\"";
        elements += (elements.empty() ? R"({"Index":"i)" : R"(,{"Index":"i)") + number +
                    R"(,"WANName":"w)" + number + R"(,"BoundPorts":"b)" + number + "}";
    }
    return R"("port_stat_list":[)" + elements + R"(],"Status":"0"})";
}

TEST_F(PortListsTest, ReportsWhichPortsEachConnectionServes)
{
    bindings_are(2);
    EXPECT_EQ(run(kBinding, R"({"Index":7})"),
              R"({"Index":7,"port_stat_list":[{"Index":"i0","WANName":"w0","BoundPorts":"b0"},)"
              R"({"Index":"i1","WANName":"w1","BoundPorts":"b1"}],"Status":"0"})");
    const std::string none(sizeof(PortBindingInfo), '\0');
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_get_port_binding_info", {none}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(PortListsTest, ReportsNoMoreThanEightBindings)
{
    for (const int32_t count : {0, 1, 7, 8, 9, 1000, INT32_MAX, -1, INT32_MIN}) {
        bindings_are(count);
        const size_t reported = count < 0 ? 0 : static_cast<size_t>(std::min(count, 8));
        EXPECT_EQ(run(kBinding), "{" + binding_reply(0, reported)) << count;
    }
}

TEST_F(PortListsTest, ReadsNoFurtherThanTheFieldsOfABinding)
{
    when<devapi_get_port_binding_info>([](PortBindingInfo *info) {
        memset(info, 'x', sizeof *info);
        info->count = 1;
        return 0;
    });
    EXPECT_EQ(run(kBinding), R"({"port_stat_list":[{"Index":)" + quoted(std::string(16, 'x')) +
                                 R"(,"WANName":)" + quoted(std::string(32, 'x')) +
                                 R"(,"BoundPorts":)" + quoted(std::string(288, 'x')) +
                                 R"(}],"Status":"0"})");
}

TEST_F(PortListsTest, BindingsThatCannotBeReadFail)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN, INT32_MAX}) {
        bindings_are(3, result);
        EXPECT_EQ(run(kBinding, R"({"Other":1})"),
                  R"({"Other":1,)" + failure("get port binding info error") + "}");
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(PortListsTest, ABindingWithoutMemoryIsLeftOut)
{
    const std::vector<std::string> replies = replies_without(3, binding_reply);
    size_t number = 0;
    const size_t allocations = sweep_memory(
        kBinding, "{}", [] { bindings_are(2); },
        [&](const std::string &object, FailingMemory::Fail how) {
            const bool once = how == FailingMemory::Fail::kOnce;
            EXPECT_EQ(object, once ? replies[number++] : "{}");
            if (once) {
                record_traffic(kBinding, "{}", object);
            }
        });
    EXPECT_EQ(allocations, replies.size());
}

// ---- SET_PORT_BINDING --------------------------------------------------------------------------

TEST_F(PortListsTest, BindsPortsByTheirIndex)
{
    EXPECT_EQ(run("SET_PORT_BINDING", R"({"BoundPorts":"LAN1,LAN2","Index":"2"})"),
              R"({"Status":"0"})");
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_set_port_binding", {"2", "LAN1,LAN2"}}}));
}

// ---- All ---------------------------------------------------------------------------------------

TEST_F(PortListsTest, WhatIsNoObjectIsLeftAlone)
{
    const std::string text = R"([{"Index":"1","BoundPorts":"1"}])";
    statistics_are(2, 2);
    bindings_are(2);
    for (const char *command : {kStatistics, kBinding, "SET_PORT_BINDING"}) {
        EXPECT_EQ(hg_process_json_cmd(command, nullptr), 0);
        const Json array = parse(text);
        EXPECT_EQ(hg_process_json_cmd(command, array.get()), 0);
        EXPECT_EQ(print(array.get()), text) << command;
    }
}

} // namespace port_lists_test

// SPDX-License-Identifier: MIT
#include "handler_test.h"
#include "request.h"

#include <algorithm>
#include <cstdlib>

// What the ports carry, and which connections they serve. The address sanitizer detects entries
// that are not freed.
namespace ports_test {

class GetPortStatistics : public HandlerTest {};
class GetPortBinding : public HandlerTest {};

// ---- GET_PORT_STATISTICS -----------------------------------------------------------------------

constexpr char kStatistics[] = "GET_PORT_STATISTICS";

// Returns this many entries, each with its number in every text, and this count; a null pointer if
// there are none.
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

TEST_F(GetPortStatistics, ReportsAsManyPortsAsThereAre)
{
    for (const size_t count : {1u, 8u, 9u, 500u}) {
        statistics_are(count, static_cast<int32_t>(count));
        EXPECT_EQ(run(kStatistics), "{" + statistics_reply(0, count));
    }
    statistics_are(5, 3);
    EXPECT_EQ(run(kStatistics), "{" + statistics_reply(0, 3));
}

TEST_F(GetPortStatistics, IsEmptyWithoutPorts)
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

TEST_F(GetPortStatistics, FreesTheEntriesOfAFailedCall)
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

TEST_F(GetPortBinding, ReportsNoMoreThanEightBindings)
{
    for (const int32_t count : {0, 1, 7, 8, 9, 1000, INT32_MAX, -1, INT32_MIN}) {
        bindings_are(count);
        const size_t reported = count < 0 ? 0 : static_cast<size_t>(std::min(count, 8));
        EXPECT_EQ(run(kBinding), "{" + binding_reply(0, reported)) << count;
    }
}

} // namespace ports_test

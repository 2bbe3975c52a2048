// Switches of network services, as far as they follow no pattern.
#include "handler_test.h"
#include "request.h"

#include <algorithm>
#include <cstdlib>

namespace service_switches_test {

using recording_device::Call;
using recording_device::when;
using Names = std::vector<std::string>;

class GetTsconfStatus : public HandlerTest {};
class GetWpsEnable : public HandlerTest {};
class SetWpsEnable : public HandlerTest {};
class ServiceSwitchesTest : public HandlerTest {};

// ---- GET_TSCONF_STATUS -------------------------------------------------------------------------

TEST_F(GetTsconfStatus, TheConfigurationServiceIsTakenInEightBytes)
{
    run("GET_TSCONF_STATUS");
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_get_tsconf_status", {std::string(1, '\0'), "8"}}}));
}

// ---- GET_WPS_ENABLE ----------------------------------------------------------------------------

constexpr char kGetWps[] = "GET_WPS_ENABLE";

void wps_is(int32_t enable, int32_t result = 0)
{
    when<devapi_get_wps_enable>([=](int32_t *out) {
        EXPECT_EQ(*out, 0);
        *out = enable;
        return result;
    });
}

TEST_F(GetWpsEnable, WpsIsReportedAsDecimalTextOfSevenBytesAtMost)
{
    const std::pair<int32_t, const char *> switches[] = {{1, "1"},
                                                         {0, "0"},
                                                         {-1, "-1"},
                                                         {9999999, "9999999"},
                                                         {-999999, "-999999"},
                                                         {12345678, "1234567"},
                                                         {INT32_MAX, "2147483"},
                                                         {INT32_MIN, "-214748"}};
    for (const auto &[enable, text] : switches) {
        wps_is(enable);
        EXPECT_EQ(run(kGetWps, R"({"Enable":7})"),
                  R"({"Enable":7,"Enable":)" + quoted(text) + R"(,"Status":"0"})");
    }
    EXPECT_EQ(recording_device::called_functions(),
              Names(std::size(switches), "devapi_get_wps_enable"));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

// ---- SET_WPS_ENABLE ----------------------------------------------------------------------------

constexpr char kSetWps[] = "SET_WPS_ENABLE";
const Request kOn = Request({}).with("Enable", R"("1")");

TEST_F(SetWpsEnable, WpsIsSwitchedByTheNumberThatTheTextBeginsWith)
{
    const std::pair<const char *, const char *> numbers[] = {{"1", "1"},
                                                             {"0", "0"},
                                                             {"abc", "0"},
                                                             {"", "0"},
                                                             {" 12x", "12"},
                                                             {"-3", "-3"},
                                                             {"x1", "0"},
                                                             {"1.9", "1"},
                                                             {"9999999", "9999999"},
                                                             {"12345678", "1234567"},
                                                             {"-1234567", "-123456"}};
    for (const auto &[text, number] : numbers) {
        EXPECT_EQ(run(kSetWps, kOn.with("Enable", quoted(text)).with("Other", "1").json()),
                  R"({"Other":1,"Status":"0"})");
        EXPECT_EQ(recording_device::calls().back(), (Call{"devapi_set_wps_enable", {number}}))
            << text;
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

// ---- All ---------------------------------------------------------------------------------------

TEST_F(ServiceSwitchesTest, SettingsAreNotLogged)
{
    const std::string request =
        R"({"Mode":"1","Enable":"1","Index":"1","BoundPorts":"1","PPTP":"1","FTP":"1",)"
        R"("IPSEC":"1","L2TP":"1","RTSP":"1","H323":"1","SIP":"1"})";
    for (const char *command : {"SET_AP_MULTISERVICE_MODE", "SET_AP_ALG_ABILITY", "SET_UPNP_STATE",
                                "SET_WPS_ENABLE", "SET_PORT_BINDING"}) {
        run(command, request);
        run(command);
    }
    EXPECT_EQ(recording_device::calls().size(), 5u);
    EXPECT_TRUE(recording_host::log_lines().empty());
}

} // namespace service_switches_test

// What the ports carry, and which connections they serve. Entries that are not freed are found by
// the address sanitizer.
namespace port_lists_test {

using recording_device::Call;
using recording_device::when;

class GetPortStatistics : public HandlerTest {};
class GetPortBinding : public HandlerTest {};

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

TEST_F(GetPortStatistics, ReportsAsManyPortsAsThereAre)
{
    for (const size_t count : {1u, 8u, 9u, 500u}) {
        statistics_are(count, static_cast<int32_t>(count));
        EXPECT_EQ(run(kStatistics), "{" + statistics_reply(0, count));
    }
    statistics_are(5, 3);
    EXPECT_EQ(run(kStatistics), "{" + statistics_reply(0, 3));
}

TEST_F(GetPortStatistics, NoPortsAreAnEmptyList)
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

TEST_F(GetPortStatistics, StatisticsThatCannotBeReadMayHandOverMemory)
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

} // namespace port_lists_test

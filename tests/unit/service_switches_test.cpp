// SPDX-License-Identifier: MIT
// Switches of network services, where they differ from other commands.
#include "handler_test.h"
#include "request.h"

namespace service_switches_test {

class GetTsconfStatus : public HandlerTest {};
class GetWpsEnable : public HandlerTest {};
class SetWpsEnable : public HandlerTest {};

// ---- GET_TSCONF_STATUS -------------------------------------------------------------------------

TEST_F(GetTsconfStatus, PassesABufferOfEightBytes)
{
    run("GET_TSCONF_STATUS");
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_tsconf_status", {std::string(1, '\0'), "8"}}}));
}

// ---- GET_WPS_ENABLE ----------------------------------------------------------------------------

TEST_F(GetWpsEnable, ReportsADecimalTextOfSevenBytesAtMost)
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
        writes<devapi_get_wps_enable>(enable);
        EXPECT_EQ(run("GET_WPS_ENABLE", R"({"Enable":7})"),
                  R"({"Enable":7,"Enable":)" + quoted(text) + R"(,"Status":"0"})");
    }
    EXPECT_EQ(recording_device::called_functions(),
              Names(std::size(switches), "devapi_get_wps_enable"));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

// ---- SET_WPS_ENABLE ----------------------------------------------------------------------------

constexpr char kSetWps[] = "SET_WPS_ENABLE";
const Request kOn = Request({}).with("Enable", R"("1")");

TEST_F(SetWpsEnable, SwitchesByTheNumberThatTheTextBeginsWith)
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

} // namespace service_switches_test

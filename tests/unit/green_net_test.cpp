// The switch of parental control, and the notices about its devices.
#include "handler_test.h"
#include "request.h"

#include <cstring>

namespace green_net_test {

using recording_device::Call;
using recording_device::contents;
using recording_device::when;
using recording_host::LogLine;
using Names = std::vector<std::string>;

class GreenNetTest : public HandlerTest {};

// ---- GET_GREENNET_ENABLE -----------------------------------------------------------------------

constexpr char kGetSwitch[] = "GET_GREENNET_ENABLE";

void switch_is(const std::string &text, int32_t result = 0)
{
    when<devapi_get_greennet_enable>([=](char *enable) {
        EXPECT_EQ(std::string(enable, 256), std::string(256, '\0'));
        text.copy(enable, 256);
        return result;
    });
}

TEST_F(GreenNetTest, ReportsTheSwitchAndThenTheStatus)
{
    for (const size_t length : {0u, 1u, 255u, 256u}) {
        switch_is(text_of_length(length));
        EXPECT_EQ(run(kGetSwitch, R"({"enable":7})"), R"({"enable":7,"Enable":)" +
                                                          quoted(text_of_length(length)) +
                                                          R"(,"Status":"0"})");
    }
    EXPECT_EQ(recording_device::called_functions(), Names(4, "devapi_get_greennet_enable"));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GreenNetTest, ASwitchThatCannotBeReadIsLogged)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        recording_host::reset();
        switch_is("1", result);
        EXPECT_EQ(run(kGetSwitch, R"({"Enable":"x"})"),
                  R"({"Enable":"x",)" + failure("get green net enable failed") + "}");
        EXPECT_EQ(recording_host::log_lines(),
                  (std::vector<LogLine>{{3, "json_get_green_net_enable: 1612 get green net enable "
                                            "failed! ret = " +
                                                std::to_string(result) + "\n"}}));
    }
}

// ---- SET_GREENNET_NOTIFY_ENABLE ----------------------------------------------------------------

constexpr char kNotify[] = "SET_GREENNET_NOTIFY_ENABLE";
const Request kNotifyRequest({{"NotifyEnable", R"("1")"}, {"Mac", R"("AA:BB")"}});

void index_is(int32_t index, int32_t result = 1)
{
    when<devapi_get_greennet_index_by_mac>([=](const char *, int32_t *out) {
        *out = index;
        return result;
    });
}

TEST_F(GreenNetTest, SwitchesTheNoticesOfADevice)
{
    index_is(12);
    EXPECT_EQ(run(kNotify, kNotifyRequest.with("Name", R"("kept")").json()),
              R"({"Name":"kept","Status":"0"})");
    const int32_t none = 0;
    const GreenHostInfo expected = {"12", "AA:BB", "", "1", "", ""};
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_get_greennet_index_by_mac", {"AA:BB", contents(&none)}},
                                 {"devapi_set_green_net_notify", {contents(&expected)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GreenNetTest, NoticesNeedADeviceOfTheTable)
{
    for (const int32_t result : {0, -1, 2, -2, 1000, INT32_MIN}) {
        recording_device::reset();
        index_is(3, result);
        EXPECT_EQ(run(kNotify, kNotifyRequest.json()),
                  "{" + failure("get host index failed.") + "}")
            << result;
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_greennet_index_by_mac"});
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GreenNetTest, NoticesCutTheirTexts)
{
    const std::pair<int32_t, const char *> indexes[] = {{0, "0"},
                                                        {-5, "-5"},
                                                        {64, "64"},
                                                        {999999, "999999"},
                                                        {1234567, "123456"},
                                                        {INT32_MAX, "214748"},
                                                        {INT32_MIN, "-21474"}};
    for (const auto &[index, text] : indexes) {
        index_is(index);
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

// ---- Both --------------------------------------------------------------------------------------

} // namespace green_net_test

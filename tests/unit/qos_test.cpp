// Quality of service: its switch, and the priorities of applications.
#include "handler_test.h"
#include "request.h"

namespace qos_test {

using recording_device::Call;

// Texts with the number that the first seven bytes of each begin with.
const std::pair<std::string, int32_t> kNumbers[] = {{"1", 1},
                                                    {"0", 0},
                                                    {"", 0},
                                                    {"abc", 0},
                                                    {" 12x", 12},
                                                    {"-3", -3},
                                                    {"+4", 4},
                                                    {"007", 7},
                                                    {"x1", 0},
                                                    {"1.9", 1},
                                                    {"9999999", 9999999},
                                                    {"12345678", 1234567},
                                                    {"-1234567", -123456},
                                                    {"       5", 0}};

class QosTest : public HandlerTest {};

// ---- SET_QOS_ENABLE ----------------------------------------------------------------------------

constexpr char kSwitch[] = "SET_QOS_ENABLE";
const Request kOn = Request({}).with("Enable", R"("1")");

TEST_F(QosTest, SwitchesByTheNumberThatTheTextBeginsWith)
{
    for (const auto &[text, number] : kNumbers) {
        EXPECT_EQ(run(kSwitch, kOn.with("Enable", quoted(text)).with("Other", "1").json()),
                  R"({"Other":1,"Status":"0"})");
        EXPECT_EQ(recording_device::calls().back(),
                  (Call{"devapi_set_qos_enable", {std::to_string(number)}}))
            << text;
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

// ---- SET_QOS_APP_INFO --------------------------------------------------------------------------

constexpr char kPriority[] = "SET_QOS_APP_INFO";
const Request kApplication({{"Id", R"("3")"}, {"PriorityLevel", R"("high")"}});

TEST_F(QosTest, SetsThePriorityOfAnApplication)
{
    EXPECT_EQ(run(kPriority, kApplication.with("Name", R"("kept")").json()),
              R"({"Name":"kept","Status":"0"})");
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_set_qos_app_info", {"3", "high"}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(QosTest, AnApplicationIsANumberOfAnyLength)
{
    const std::pair<const char *, const char *> numbers[] = {{"", "0"},
                                                             {"abc", "0"},
                                                             {" 12x", "12"},
                                                             {"-3", "-3"},
                                                             {"12345678", "12345678"},
                                                             {"2147483647", "2147483647"},
                                                             {"00000000000000000001", "1"}};
    for (const auto &[text, number] : numbers) {
        EXPECT_EQ(run(kPriority, kApplication.with("Id", quoted(text)).json()),
                  R"({"Status":"0"})");
        EXPECT_EQ(recording_device::calls().back().arguments[0], number);
    }
}

} // namespace qos_test

// Rules of one's own: what the device makes of them.
#include "handler_test.h"
#include "qos_rules_fixture.h"

#include <algorithm>
#include <cstring>

namespace qos_rules_test {

using recording_device::when;

class QosRulesTest : public HandlerTest {};

void device_leaves(const std::string &id, const std::string &action, int32_t result = 0)
{
    when<devapi_set_qos_classification_info>([=](QosRule *rule) {
        memset(rule, '?', sizeof *rule);
        memcpy(rule->Id, id.c_str(), std::min(id.size() + 1, sizeof rule->Id));
        memcpy(rule->Action, action.c_str(), std::min(action.size() + 1, sizeof rule->Action));
        return result;
    });
}

TEST_F(QosRulesTest, AnAddedRuleIsReportedWithTheIdThatTheDeviceLeft)
{
    for (const std::string text : {"1", " 1", "01", "+1", "1x", "0000001", "1.9"}) {
        EXPECT_EQ(run(kCommand, action(text).json()), R"({"Status":"0","Id":"5"})") << text;
    }
    for (const size_t length : {0u, 1u, 7u, 8u}) {
        device_leaves(text_of_length(length), "1");
        EXPECT_EQ(run(kCommand, action("1").with("Other", "1").json()),
                  R"({"Other":1,"Status":"0","Id":)" + quoted(text_of_length(length)) + "}");
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(QosRulesTest, ARuleThatWasNotAddedIsReportedWithoutId)
{
    for (const std::string text : {"0", "2", "3", "10", "-1", "x1", "", "00000001"}) {
        EXPECT_EQ(run(kCommand, action(text).json()), R"({"Status":"0"})") << text;
    }
}

// The device says what has become of the rule.
TEST_F(QosRulesTest, WhetherARuleWasAddedIsReadAfterTheCall)
{
    device_leaves("77", "3");
    EXPECT_EQ(run(kCommand, action("1").json()), R"({"Status":"0"})");
    device_leaves("77", "1");
    EXPECT_EQ(run(kCommand, action("3").json()), R"({"Status":"0","Id":"77"})");
    EXPECT_EQ(run(kCommand, R"({"Id":"5","Action":"2"})"), R"({"Status":"0","Id":"77"})");
    device_leaves("77", "11111111");
    EXPECT_EQ(run(kCommand, action("1").json()), R"({"Status":"0"})");
}

TEST_F(QosRulesTest, ARefusedRuleKeepsItsId)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN, INT32_MAX}) {
        for (const char *text : {"1", "2", "3"}) {
            device_leaves("77", "1", result);
            const Request request = action(text).with("Other", "{}");
            EXPECT_EQ(run(kCommand, request.json()), left_after(request, true));
        }
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

} // namespace qos_rules_test

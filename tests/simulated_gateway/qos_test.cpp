// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

namespace {

class QosTest : public HouseTest {
  protected:
    static QosInfo qos() { return reported_by(devapi_get_uplink_qos_info); }
    // A rule in one line: "2 Chat 3 DPORT 5222..5223".
    static std::string shown(const QosRule &rule)
    {
        std::string text = std::string(rule.Id) + " " + rule.Name + " " + rule.PriorityLevel;
        for (int32_t at = 0; at < rule.type_count; ++at) {
            const QosType &type = rule.types[at];
            text += std::string(" ") + type.Type + " " + type.Min + ".." + type.Max;
        }
        return text;
    }
    static std::vector<std::string> rules()
    {
        const QosInfo info = qos();
        std::vector<std::string> texts;
        for (int32_t at = 0; at < info.rule_count; ++at) {
            texts.push_back(shown(info.rules[at]));
        }
        return texts;
    }
    static std::string priorities()
    {
        const QosInfo info = qos();
        std::string text;
        for (int32_t at = 0; at < info.application_count; ++at) {
            text += std::string(info.applications[at].PriorityLevel) + " ";
        }
        return text;
    }

    static QosRule chat(const std::string &action)
    {
        auto rule =
            record_with<QosRule>({{"Action", action}, {"Name", "Chat"}, {"PriorityLevel", "3"}});
        add_type(rule, "DPORT", "5222", "5223");
        return rule;
    }
    static void add_type(QosRule &rule, const std::string &type, const std::string &min,
                         const std::string &max)
    {
        rule.types[rule.type_count++] =
            record_with<QosType>({{"Type", type}, {"Min", min}, {"Max", max}});
    }
    static int32_t apply(QosRule rule) { return devapi_set_qos_classification_info(&rule); }
    static int32_t remove(const std::string &id)
    {
        return set_by(devapi_set_qos_classification_info, {{"Id", id}, {"Action", "2"}});
    }
    std::string refused(const QosRule &rule) const
    {
        const std::string before = read(path("state"));
        const std::string why = reason(apply(rule));
        EXPECT_EQ(read(path("state")), before);
        return why;
    }
    std::string refused_type(const std::string &type, const std::string &min,
                             const std::string &max) const
    {
        QosRule rule = chat("1");
        rule.type_count = 0;
        add_type(rule, type, min, max);
        return refused(rule);
    }
};

constexpr char kOffice[] = "1 Voice of the office 1 SIP 192.168.1.130..192.168.1.139 DSCP 46..46";

TEST_F(QosTest, IsSwitchedByANumber)
{
    EXPECT_EQ(devapi_set_qos_enable(0), 0);
    EXPECT_STREQ(qos().Enable, "0");
    for (const int32_t wrong : {-1, 2, INT32_MAX}) {
        EXPECT_EQ(devapi_set_qos_enable(wrong), -1);
    }
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_STREQ(qos().Enable, "0");
    EXPECT_EQ(devapi_set_qos_enable(1), 0);
    EXPECT_STREQ(qos().Enable, "1");
}

TEST_F(QosTest, ApplicationsHavePriorities)
{
    EXPECT_EQ(devapi_set_qos_app_info(4, "8"), 0);
    EXPECT_EQ(devapi_set_qos_app_info(1, "5"), 0);
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(priorities(), "5 2 3 8 ");
    for (const int32_t wrong : {0, 5, -1, INT32_MIN}) {
        EXPECT_EQ(devapi_set_qos_app_info(wrong, "1"), -1);
    }
    EXPECT_EQ(reason(), "there is no application -2147483648");
    for (const char *wrong : {"0", "9", "", "high", "1 ", "-1", "99999999999999999999"}) {
        EXPECT_EQ(devapi_set_qos_app_info(1, wrong), -1) << wrong;
    }
    EXPECT_EQ(reason(), "priority is not a number");
    EXPECT_EQ(priorities(), "5 2 3 8 ");
}

TEST_F(QosTest, ANewRuleGetsAUniqueNumber)
{
    QosRule rule = chat("1");
    set(rule.Id, "77"); // ignored
    EXPECT_EQ(devapi_set_qos_classification_info(&rule), 0) << reason();
    EXPECT_STREQ(rule.Id, "2");
    EXPECT_STREQ(rule.Action, "1");
    ASSERT_EQ(open_when(kTime), "");
    const std::vector<std::string> both = {kOffice, "2 Chat 3 DPORT 5222..5223"};
    EXPECT_EQ(rules(), both);

    // A free number is reused.
    EXPECT_EQ(remove("1"), 0);
    EXPECT_EQ(devapi_set_qos_classification_info(&rule), 0);
    EXPECT_STREQ(rule.Id, "1");
    EXPECT_EQ(rules().size(), 2u);
}

TEST_F(QosTest, ThereIsRoomForSixRules)
{
    for (int32_t count = 2; count <= QOS_MAX_RULES; ++count) {
        EXPECT_EQ(apply(chat("1")), 0);
    }
    EXPECT_EQ(refused(chat("1")), "all rules are in use");
    EXPECT_EQ(rules().size(), 6u);
    EXPECT_EQ(remove("4"), 0);
    EXPECT_EQ(apply(chat("1")), 0);
    EXPECT_EQ(rules().back(), "4 Chat 3 DPORT 5222..5223");
}

TEST_F(QosTest, AnyOtherActionChangesARule)
{
    for (const char *action : {"3", "0", "", "change", "01"}) {
        QosRule rule = chat(action);
        set(rule.Id, "1");
        set(rule.Name, std::string("Action ") + action);
        EXPECT_EQ(apply(rule), 0) << reason();
        EXPECT_EQ(rules(), std::vector<std::string>{std::string("1 Action ") + action +
                                                    " 3 DPORT 5222..5223"});
    }
    // A rule without types applies to everything.
    QosRule rule = chat("3");
    set(rule.Id, "1");
    rule.type_count = 0;
    EXPECT_EQ(apply(rule), 0);
    EXPECT_EQ(rules(), std::vector<std::string>{"1 Chat 3"});
}

TEST_F(QosTest, AnUnknownRuleIsNeitherChangedNorDeleted)
{
    for (const char *id : {"2", "0", "7", "-1"}) {
        EXPECT_EQ(reason(remove(id)), std::string("there is no rule ") + id);
        QosRule rule = chat("3");
        set(rule.Id, id);
        EXPECT_EQ(refused(rule), std::string("there is no rule ") + id);
    }
    EXPECT_EQ(remove(""), -1);
    EXPECT_EQ(reason(remove("one")), "Id is not a number");
    EXPECT_EQ(rules(), std::vector<std::string>{kOffice});
    EXPECT_EQ(remove("1"), 0);
    EXPECT_EQ(rules(), std::vector<std::string>());
    EXPECT_EQ(remove("1"), -1);
}

TEST_F(QosTest, EachTypeHasItsValues)
{
    const auto taken = [](const char *type, const char *min, const char *max) {
        QosRule rule = chat("3");
        set(rule.Id, "1");
        rule.type_count = 0;
        add_type(rule, type, min, max);
        return apply(rule) == 0 &&
               rules().front() == std::string("1 Chat 3 ") + type + " " + min + ".." + max;
    };
    EXPECT_TRUE(taken("SMAC", "A4:BB:6D:31:07:5E", "A4:BB:6D:31:07:FF"));
    EXPECT_TRUE(taken("SMAC", "a4bb6d31075e", "a4-bb-6d-31-07-5e"));
    EXPECT_TRUE(taken("8021P", "0", "7"));
    EXPECT_TRUE(taken("SIP", "10.0.0.1", "10.0.0.1"));
    EXPECT_TRUE(taken("DIP", "0.0.0.0", "255.255.255.255"));
    EXPECT_TRUE(taken("SPORT", "1", "65535"));
    EXPECT_TRUE(taken("DPORT", "443", "443"));
    EXPECT_TRUE(taken("DSCP", "0", "63"));

    const std::string path = "/home/qos/rules/1/traffic/0: ";
    EXPECT_EQ(refused_type("SMAC", "A4:BB:6D:31:07", "A4:BB:6D:31:07:FF"),
              path + "\"A4:BB:6D:31:07\" is not a value of SMAC");
    EXPECT_EQ(refused_type("8021P", "0", "8"), path + "\"8\" is not a value of 8021P");
    EXPECT_EQ(refused_type("SIP", "10.0.0", "10.0.0.1"), path + "\"10.0.0\" is not a value of SIP");
    EXPECT_EQ(refused_type("DIP", "10.0.0.2", "10.0.0.1"), path + "10.0.0.1 is below 10.0.0.2");
    EXPECT_EQ(refused_type("SPORT", "0", "1"), path + "\"0\" is not a value of SPORT");
    EXPECT_EQ(refused_type("DPORT", "1", "65536"), path + "\"65536\" is not a value of DPORT");
    EXPECT_EQ(refused_type("DPORT", "1", "2x"), path + "\"2x\" is not a value of DPORT");
    EXPECT_EQ(refused_type("DSCP", "-1", "64"), path + "\"-1\" is not a value of DSCP");
    EXPECT_EQ(refused_type("DSCP", "", "6"), "Min is empty");
    EXPECT_EQ(refused_type("DSCP", "6", ""), "Max is empty");
    EXPECT_THAT(refused_type("TOS", "1", "2"), HasSubstr("Type \"TOS\" is none of \"SMAC\""));
}

TEST_F(QosTest, WrongRulesAreRefused)
{
    QosRule rule = chat("1");
    set(rule.Name, "");
    EXPECT_EQ(refused(rule), "Name is empty");
    rule = chat("1");
    set(rule.PriorityLevel, "9");
    EXPECT_EQ(refused(rule), "PriorityLevel 9 is not within 1 to 8");
    set(rule.PriorityLevel, "");
    EXPECT_EQ(refused(rule), "PriorityLevel is not a number");
    for (const int32_t count : {-1, 4, INT32_MIN, INT32_MAX}) {
        rule = chat("1");
        rule.type_count = count;
        EXPECT_EQ(refused(rule), "type_count " + std::to_string(count) + " is not within 0 to 3");
    }
    std::memset(&rule, '1', sizeof(rule));
    EXPECT_EQ(apply(rule), -1);
    EXPECT_EQ(rules(), std::vector<std::string>{kOffice});
}

} // namespace

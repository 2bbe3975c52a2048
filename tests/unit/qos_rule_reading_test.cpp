// Rules of one's own, as they are read from a request.
#include "handler_test.h"
#include "qos_rules_fixture.h"

#include <cstring>

namespace qos_rule_reading_test {

using recording_device::Call;
using recording_device::contents;
using recording_host::LogLine;

constexpr char kInvalid[] = "json param is invalid or miss";

Request types(const std::string &json)
{
    return kRule.with("type_list", json);
}

QosRule whole_rule()
{
    return {"5", "3", "games", "7", 1, {{"port", "80", "90", ""}}};
}

LogLine missing(const std::string &keys)
{
    return {3, "parse_json_set_qos_cls_info:" + keys + " is invalid or miss"};
}

constexpr char kSelection[] = "Id,Action";
constexpr char kDescription[] = "Name,PriorityLevel";
constexpr char kTypeKeys[] = "Type,Max,Min";

class QosRuleReadingTest : public HandlerTest {
  protected:
    void expect_sent(const Request &request, const QosRule &rule)
    {
        forget();
        EXPECT_EQ(run(kCommand, request.json()), left_after(request, false));
        EXPECT_EQ(recording_device::calls(),
                  (std::vector<Call>{{"devapi_set_qos_classification_info", {contents(&rule)}}}));
        EXPECT_TRUE(recording_host::log_lines().empty());
    }

    void expect_refused(const Request &request, const std::string &keys)
    {
        forget();
        EXPECT_EQ(run(kCommand, request.json()), request.followed_by(failure(kInvalid)));
        EXPECT_EQ(recording_host::log_lines(), std::vector<LogLine>{missing(keys)})
            << request.json();
        EXPECT_TRUE(recording_device::calls().empty());
    }

  private:
    static void forget()
    {
        recording_device::reset();
        recording_host::reset();
    }
};

// ---- Reading -----------------------------------------------------------------------------------

TEST_F(QosRuleReadingTest, SendsARuleWithItsTypes)
{
    expect_sent(kRule, whole_rule());
    expect_sent(kRule.with("Other", R"([{"x":null}])"), whole_rule());
}

TEST_F(QosRuleReadingTest, ToDeleteARuleTakesNoMoreThanItsIdAndAction)
{
    const QosRule rule = {"5", "2", "", "", 0, {}};
    expect_sent(Request({{"Id", R"("5")"}, {"Action", R"("2")"}}), rule);
    expect_sent(action("2"), rule);
    expect_sent(action("2").with("Name", "7").with("type_list", "null"), rule);
}

TEST_F(QosRuleReadingTest, OnlyATwoDeletes)
{
    for (const char *text : {"", "02", "2 ", " 2", "22", "+2", "2.0", "20000000"}) {
        expect_refused(action(text).without("Name"), kDescription);
        QosRule rule = whole_rule();
        strncpy(rule.Action, text, 7);
        expect_sent(action(text), rule);
    }
}

TEST_F(QosRuleReadingTest, ATypeListHasToBeAnArray)
{
    expect_refused(kRule.without("type_list"), "type_list");
    for (const std::string json :
         {"7", "-0.5", "true", "false", "null", R"("")", R"("[]")", "{}"}) {
        expect_refused(types(json), "type_list");
    }
    expect_refused(types(R"({"0":)" + kType.json() + "}"), "type_list");
}

TEST_F(QosRuleReadingTest, ATypeListMayBeEmpty)
{
    QosRule rule = whole_rule();
    rule.type_count = 0;
    rule.types[0] = {};
    expect_sent(types("[]"), rule);
}

TEST_F(QosRuleReadingTest, OnlyTheFirstThreeTypesAreRead)
{
    QosRule rule = whole_rule();
    std::string list;
    for (int count = 1; count <= 5; ++count) {
        const std::string number = std::to_string(count);
        list += (count == 1 ? "" : ",") + kType.with("Type", quoted(number)).json();
        if (count <= 3) {
            rule.type_count = count;
            rule.types[count - 1] = {"", "80", "90", ""};
            strcpy(rule.types[count - 1].Type, number.c_str());
        }
        expect_sent(types("[" + list + "]"), rule);
    }
    for (const char *behind : {"null", "7", "{}", R"("x")", R"({"Type":1})"}) {
        const std::string first = list.substr(0, list.find(R"(,{"Type":"4")"));
        expect_sent(types("[" + first + "," + behind + "]"), rule);
        expect_sent(types("[" + first + "," + behind + "," + kType.json() + "]"), rule);
    }
}

TEST_F(QosRuleReadingTest, EachTypeUpToTheThirdNeedsItsKeys)
{
    std::vector<std::string> bad = {
        "null", "7", "true", R"("Type")", "[]", "{}", "[" + kType.json() + "]"};
    for (const auto &[key, json] : kType.keys()) {
        bad.push_back(kType.without(key).json());
        for (const std::string &no_text : kNoTexts) {
            bad.push_back(kType.with(key, no_text).json());
        }
    }
    std::string before;
    for (int position = 0; position < 3; ++position) {
        for (const std::string &element : bad) {
            expect_refused(types("[" + before + element + "]"), kTypeKeys);
            expect_refused(types("[" + before + element + "," + kType.json() + "]"), kTypeKeys);
        }
        before += kType.json() + ",";
    }
}

// ---- Called directly ---------------------------------------------------------------------------

TEST_F(QosRuleReadingTest, ReadingNeedsARuleAndAnObject)
{
    QosRule rule = {};
    const Json object = parse(kRule.json());
    EXPECT_EQ(parse_json_set_qos_cls_info(nullptr, object.get()), -1);
    EXPECT_EQ(parse_json_set_qos_cls_info(&rule, nullptr), -1);
    EXPECT_EQ(parse_json_set_qos_cls_info(nullptr, nullptr), -1);
    EXPECT_EQ(contents(&rule), std::string(sizeof rule, '\0'));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(QosRuleReadingTest, ReadingNeedsEveryKey)
{
    for (const auto &[key, value] : kRule.keys()) {
        QosRule rule = {};
        const Json object = parse(kRule.without(key).json());
        EXPECT_EQ(parse_json_set_qos_cls_info(&rule, object.get()), -1) << key;
    }
}

TEST_F(QosRuleReadingTest, ReadingCountsTheTypesByItself)
{
    const std::pair<Request, int32_t> requests[] = {{types("[]"), 0}, {kRule, 1}};
    for (const int32_t before : {-1, 1, 2, 3, 4, INT32_MIN, INT32_MAX}) {
        for (const auto &[request, count] : requests) {
            QosRule rule = {};
            rule.type_count = before;
            EXPECT_EQ(parse_json_set_qos_cls_info(&rule, parse(request.json()).get()), 0);
            EXPECT_EQ(rule.type_count, count);
        }
        QosRule rule = {};
        rule.type_count = before;
        const Json bad = parse(types("[" + kType.json() + ",{}]").json());
        EXPECT_EQ(parse_json_set_qos_cls_info(&rule, bad.get()), -1);
        EXPECT_EQ(rule.type_count, before);
    }
}

TEST_F(QosRuleReadingTest, ReadingLeavesTheObjectAsItIs)
{
    QosRule rule = {};
    const Json object = parse(kRule.json());
    EXPECT_EQ(parse_json_set_qos_cls_info(&rule, object.get()), 0);
    const QosRule expected = whole_rule();
    EXPECT_EQ(contents(&rule), contents(&expected));
    EXPECT_EQ(print(object.get()), kRule.json());
}

TEST_F(QosRuleReadingTest, WhatIsNoObjectHasNoKeys)
{
    for (const std::string json : {"[]", "7", "null", R"("Id")", R"([{"Id":"1","Action":"2"}])"}) {
        recording_host::reset();
        QosRule rule = {};
        const Json item = parse(json);
        EXPECT_EQ(parse_json_set_qos_cls_info(&rule, item.get()), -1);
        EXPECT_EQ(recording_host::log_lines(), std::vector<LogLine>{missing(kSelection)});
    }
}

} // namespace qos_rule_reading_test

// SPDX-License-Identifier: MIT
// Quality of service: its switch, the priorities of applications, and rules.
#include "qos.h"

#include "handler_test.h"
#include "memory_sweep.h"
#include "request.h"

#include <algorithm>
#include <cstring>
#include <set>

namespace qos_test {

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

class SetQosEnable : public HandlerTest {};
class SetQosAppInfo : public HandlerTest {};

// ---- SET_QOS_ENABLE ----------------------------------------------------------------------------

constexpr char kSwitch[] = "SET_QOS_ENABLE";
const Request kOn = Request({}).with("Enable", R"("1")");

TEST_F(SetQosEnable, SwitchesByTheNumberThatTheTextBeginsWith)
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

TEST_F(SetQosAppInfo, ReadsTheIdAsANumberOfAnyLength)
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

// ---- GET_QOS_INFO ------------------------------------------------------------------------------

constexpr char kReport[] = "GET_QOS_INFO";

class GetQosInfo : public HandlerTest {};

// A report in which every entry has its number in every text, and rule n has n types, three at
// most.
QosInfo report_of(int32_t applications, int32_t rules)
{
    QosInfo qos = {};
    strcpy(qos.Enable, "1");
    qos.application_count = applications;
    for (int at = 0; at < QOS_MAX_APPLICATIONS; ++at) {
        QosApplication &application = qos.applications[at];
        const std::string number = std::to_string(at);
        put(application.Id, "i" + number);
        put(application.Name, "n" + number);
        put(application.PriorityLevel, "p" + number);
    }
    qos.rule_count = rules;
    for (int at = 0; at < QOS_MAX_RULES; ++at) {
        QosRule &rule = qos.rules[at];
        const std::string number = std::to_string(at);
        put(rule.Id, "I" + number);
        strcpy(rule.Action, "unseen");
        put(rule.Name, "N" + number);
        put(rule.PriorityLevel, "P" + number);
        rule.type_count = at;
        for (int type = 0; type < QOS_MAX_TYPES; ++type) {
            put(rule.types[type].Type, "t" + number + std::to_string(type));
            put(rule.types[type].Min, "l" + number + std::to_string(type));
            put(rule.types[type].Max, "g" + number + std::to_string(type));
            strcpy(rule.types[type].Reserved, "unseen");
        }
    }
    return qos;
}

void qos_is(const QosInfo &qos, int32_t result = 0)
{
    writes<devapi_get_uplink_qos_info>(qos, result);
}

std::string applications_up_to(int count)
{
    std::string elements;
    for (int at = 0; at < count; ++at) {
        const std::string number = std::to_string(at);
        elements += (at == 0 ? R"({"Id":"i)" : R"(,{"Id":"i)") + number + R"(","Name":"n)" +
                    number + R"(","PriorityLevel":"p)" + number + "\"}";
    }
    return "[" + elements + "]";
}

std::string rule(int at, int types)
{
    const std::string number = std::to_string(at);
    std::string elements;
    for (int type = 0; type < types; ++type) {
        const std::string both = number + std::to_string(type);
        elements += (type == 0 ? R"({"Type":"t)" : R"(,{"Type":"t)") + both + R"(","Min":"l)" +
                    both + R"(","Max":"g)" + both + "\"}";
    }
    return R"({"Id":"I)" + number + R"(","Name":"N)" + number + R"(","PriorityLevel":"P)" + number +
           R"(","type_list":[)" + elements + "]}";
}

std::string rules_up_to(int count)
{
    std::string elements;
    for (int at = 0; at < count; ++at) {
        elements += (at == 0 ? "" : ",") + rule(at, std::min(at, 3));
    }
    return "[" + elements + "]";
}

std::string report_reply(int applications, int rules)
{
    return R"({"Enable":"1","app_info_list":)" + applications_up_to(applications) +
           R"(,"classification_info_list":)" + rules_up_to(rules) + R"(,"Status":"0"})";
}

TEST_F(GetQosInfo, ReportsApplicationsAndRules)
{
    qos_is(report_of(2, 3));
    EXPECT_EQ(
        run(kReport, R"({"Enable":7})"),
        R"({"Enable":7,"Enable":"1","app_info_list":[{"Id":"i0","Name":"n0","PriorityLevel":"p0"},)"
        R"({"Id":"i1","Name":"n1","PriorityLevel":"p1"}],"classification_info_list":[)"
        R"({"Id":"I0","Name":"N0","PriorityLevel":"P0","type_list":[]},)"
        R"({"Id":"I1","Name":"N1","PriorityLevel":"P1","type_list":[)"
        R"({"Type":"t10","Min":"l10","Max":"g10"}]},)"
        R"({"Id":"I2","Name":"N2","PriorityLevel":"P2","type_list":[)"
        R"({"Type":"t20","Min":"l20","Max":"g20"},{"Type":"t21","Min":"l21","Max":"g21"}]}],)"
        R"("Status":"0"})");
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_uplink_qos_info", {std::string(sizeof(QosInfo), '\0')}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetQosInfo, ReportsNoMoreThanTheRecordHasRoomFor)
{
    for (const int32_t count : {0, 1, 3, 4, 5, 6, 7, 1000, INT32_MAX, -1, INT32_MIN}) {
        qos_is(report_of(count, count));
        EXPECT_EQ(run(kReport),
                  report_reply(std::max(std::min(count, 4), 0), std::max(std::min(count, 6), 0)))
            << count;
    }
}

TEST_F(GetQosInfo, ARuleHasNoMoreThanThreeTypes)
{
    for (const int32_t count : {0, 1, 2, 3, 4, 1000, INT32_MAX, -1, INT32_MIN}) {
        QosInfo qos = report_of(0, 1);
        qos.rules[0].type_count = count;
        qos_is(qos);
        EXPECT_EQ(run(kReport), R"({"Enable":"1","app_info_list":[],"classification_info_list":[)" +
                                    rule(0, std::max(std::min(count, 3), 0)) +
                                    R"(],"Status":"0"})");
    }
}

TEST_F(GetQosInfo, ReadsNoFurtherThanTheSwitch)
{
    QosInfo qos = report_of(0, 0);
    memset(qos.Enable, '1', sizeof qos.Enable);
    qos_is(qos);
    EXPECT_EQ(run(kReport), R"({"Enable":")" + std::string(sizeof qos.Enable, '1') +
                                R"(","app_info_list":[],"classification_info_list":[],)"
                                R"("Status":"0"})");
}

// The other rules are reported, and a second status.
TEST_F(GetQosInfo, LeavesOutARuleWithoutMemory)
{
    const auto reply_with = [](const std::string &listed) {
        return R"({"Enable":"1","app_info_list":[],)" + failure("cJSON_CreateArray error") +
               R"(,"classification_info_list":[)" + listed + R"(],"Status":"0"})";
    };
    std::set<std::string> reports;
    sweep_memory(
        kReport, "{}", [] { qos_is(report_of(0, 2)); },
        [&](const std::string &object, FailingMemory::Fail how) {
            if (how == FailingMemory::Fail::kOnce &&
                object.find(R"("Status":"0")") != std::string::npos) {
                reports.insert(object);
            }
        });
    EXPECT_EQ(reports, (std::set{reply_with(rule(0, 0)), reply_with(rule(1, 1))}));
}

// ---- SET_QOS_CLASSIFICATION_INFO ---------------------------------------------------------------

constexpr char kCommand[] = "SET_QOS_CLASSIFICATION_INFO";

const Request kType({{"Type", R"("port")"}, {"Min", R"("80")"}, {"Max", R"("90")"}});
const Request kRule({{"Id", R"("5")"},
                     {"Action", R"("3")"},
                     {"Name", R"("games")"},
                     {"PriorityLevel", R"("7")"},
                     {"type_list", "[" + kType.json() + "]"}});

Request action(const std::string &text)
{
    return kRule.with("Action", quoted(text));
}

// The remainder of a request with a rule after the device call.
std::string left_after(const Request &request, bool failed)
{
    Request left = request;
    for (const char *key : {"Action", "Name", "PriorityLevel", "type_list"}) {
        left = left.without(key);
    }
    return failed ? left.followed_by(failure("set qos cls info error"))
                  : left.without("Id").followed_by(R"("Status":"0")");
}

class SetQosClassificationInfo : public HandlerTest {};

void device_leaves(const std::string &id, const std::string &action, int32_t result = 0)
{
    when<devapi_set_qos_classification_info>([=](QosRule *rule) {
        memset(rule, '?', sizeof *rule);
        memcpy(rule->Id, id.c_str(), std::min(id.size() + 1, sizeof rule->Id));
        memcpy(rule->Action, action.c_str(), std::min(action.size() + 1, sizeof rule->Action));
        return result;
    });
}

TEST_F(SetQosClassificationInfo, AnAddedRuleIsReportedWithTheIdThatTheDeviceLeft)
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

TEST_F(SetQosClassificationInfo, ARuleThatWasNotAddedIsReportedWithoutId)
{
    for (const std::string text : {"0", "2", "3", "10", "-1", "x1", "", "00000001"}) {
        EXPECT_EQ(run(kCommand, action(text).json()), R"({"Status":"0"})") << text;
    }
}

// The device reports the result for the rule.
TEST_F(SetQosClassificationInfo, WhetherARuleWasAddedIsReadAfterTheCall)
{
    device_leaves("77", "3");
    EXPECT_EQ(run(kCommand, action("1").json()), R"({"Status":"0"})");
    device_leaves("77", "1");
    EXPECT_EQ(run(kCommand, action("3").json()), R"({"Status":"0","Id":"77"})");
    EXPECT_EQ(run(kCommand, R"({"Id":"5","Action":"2"})"), R"({"Status":"0","Id":"77"})");
    device_leaves("77", "11111111");
    EXPECT_EQ(run(kCommand, action("1").json()), R"({"Status":"0"})");
}

TEST_F(SetQosClassificationInfo, ARefusedRuleKeepsItsId)
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

// ---- Reading a rule from a request -------------------------------------------------------------

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

class SetQosClassificationInfoReading : public HandlerTest {
  protected:
    void expect_sent(const Request &request, const QosRule &rule)
    {
        forget();
        EXPECT_EQ(run(kCommand, request.json()), left_after(request, false));
        EXPECT_EQ(recording_device::calls(),
                  (Calls{{"devapi_set_qos_classification_info", {contents(&rule)}}}));
        EXPECT_TRUE(recording_host::log_lines().empty());
    }

    void expect_refused(const Request &request, const std::string &keys)
    {
        forget();
        EXPECT_EQ(run(kCommand, request.json()), request.followed_by(failure(kInvalid)));
        EXPECT_EQ(recording_host::log_lines(), LogLines{missing(keys)}) << request.json();
        EXPECT_TRUE(recording_device::calls().empty());
    }
};

TEST_F(SetQosClassificationInfoReading, SendsARuleWithItsTypes)
{
    expect_sent(kRule, whole_rule());
    expect_sent(kRule.with("Other", R"([{"x":null}])"), whole_rule());
}

TEST_F(SetQosClassificationInfoReading, DeletingARuleTakesOnlyItsIdAndAction)
{
    const QosRule rule = {"5", "2", "", "", 0, {}};
    expect_sent(Request({{"Id", R"("5")"}, {"Action", R"("2")"}}), rule);
    expect_sent(action("2"), rule);
    expect_sent(action("2").with("Name", "7").with("type_list", "null"), rule);
}

TEST_F(SetQosClassificationInfoReading, OnlyActionTwoDeletes)
{
    for (const char *text : {"", "02", "2 ", " 2", "22", "+2", "2.0", "20000000"}) {
        expect_refused(action(text).without("Name"), kDescription);
        QosRule rule = whole_rule();
        strncpy(rule.Action, text, 7);
        expect_sent(action(text), rule);
    }
}

TEST_F(SetQosClassificationInfoReading, ATypeListHasToBeAnArray)
{
    expect_refused(kRule.without("type_list"), "type_list");
    for (const std::string json :
         {"7", "-0.5", "true", "false", "null", R"("")", R"("[]")", "{}"}) {
        expect_refused(types(json), "type_list");
    }
    expect_refused(types(R"({"0":)" + kType.json() + "}"), "type_list");
}

TEST_F(SetQosClassificationInfoReading, ATypeListMayBeEmpty)
{
    QosRule rule = whole_rule();
    rule.type_count = 0;
    rule.types[0] = {};
    expect_sent(types("[]"), rule);
}

TEST_F(SetQosClassificationInfoReading, OnlyTheFirstThreeTypesAreRead)
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

TEST_F(SetQosClassificationInfoReading, EachTypeUpToTheThirdNeedsItsKeys)
{
    std::string before;
    for (int position = 0; position < 3; ++position) {
        for (const std::string &element : not_like(kType)) {
            expect_refused(types("[" + before + element + "]"), kTypeKeys);
            expect_refused(types("[" + before + element + "," + kType.json() + "]"), kTypeKeys);
        }
        before += kType.json() + ",";
    }
}

// ---- Called directly ---------------------------------------------------------------------------

TEST_F(SetQosClassificationInfoReading, ReadingNeedsARuleAndAnObject)
{
    QosRule rule = {};
    const Json object = parse(kRule.json());
    EXPECT_EQ(parse_json_set_qos_cls_info(nullptr, object.get()), -1);
    EXPECT_EQ(parse_json_set_qos_cls_info(&rule, nullptr), -1);
    EXPECT_EQ(parse_json_set_qos_cls_info(nullptr, nullptr), -1);
    EXPECT_EQ(contents(&rule), std::string(sizeof rule, '\0'));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SetQosClassificationInfoReading, ReadingNeedsEveryKey)
{
    for (const auto &[key, value] : kRule.keys()) {
        QosRule rule = {};
        const Json object = parse(kRule.without(key).json());
        EXPECT_EQ(parse_json_set_qos_cls_info(&rule, object.get()), -1) << key;
    }
}

TEST_F(SetQosClassificationInfoReading, ReadingSetsTheNumberOfTypes)
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

TEST_F(SetQosClassificationInfoReading, ReadingLeavesTheObjectUnchanged)
{
    QosRule rule = {};
    const Json object = parse(kRule.json());
    EXPECT_EQ(parse_json_set_qos_cls_info(&rule, object.get()), 0);
    const QosRule expected = whole_rule();
    EXPECT_EQ(contents(&rule), contents(&expected));
    EXPECT_EQ(print(object.get()), kRule.json());
}

TEST_F(SetQosClassificationInfoReading, AValueThatIsNotAnObjectHasNoKeys)
{
    for (const std::string json : {"[]", "7", "null", R"("Id")", R"([{"Id":"1","Action":"2"}])"}) {
        recording_host::reset();
        QosRule rule = {};
        const Json item = parse(json);
        EXPECT_EQ(parse_json_set_qos_cls_info(&rule, item.get()), -1);
        EXPECT_EQ(recording_host::log_lines(), LogLines{missing(kSelection)});
    }
}

} // namespace qos_test

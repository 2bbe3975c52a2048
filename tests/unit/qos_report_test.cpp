// GET_QOS_INFO: the applications and the rules of quality of service.
#include "handler_test.h"

#include <algorithm>
#include <cstring>

namespace qos_report_test {

using recording_device::Call;
using recording_device::when;

constexpr char kCommand[] = "GET_QOS_INFO";

class QosReportTest : public HandlerTest {};

// Puts a text into a field that is zeroed.
template <size_t width> void put(char (&field)[width], const std::string &text)
{
    text.copy(field, width - 1);
}

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
    when<devapi_get_uplink_qos_info>([=](QosInfo *info) {
        *info = qos;
        return result;
    });
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

TEST_F(QosReportTest, ReportsApplicationsAndRules)
{
    qos_is(report_of(2, 3));
    EXPECT_EQ(
        run(kCommand, R"({"Enable":7})"),
        R"({"Enable":7,"Enable":"1","app_info_list":[{"Id":"i0","Name":"n0","PriorityLevel":"p0"},)"
        R"({"Id":"i1","Name":"n1","PriorityLevel":"p1"}],"classification_info_list":[)"
        R"({"Id":"I0","Name":"N0","PriorityLevel":"P0","type_list":[]},)"
        R"({"Id":"I1","Name":"N1","PriorityLevel":"P1","type_list":[)"
        R"({"Type":"t10","Min":"l10","Max":"g10"}]},)"
        R"({"Id":"I2","Name":"N2","PriorityLevel":"P2","type_list":[)"
        R"({"Type":"t20","Min":"l20","Max":"g20"},{"Type":"t21","Min":"l21","Max":"g21"}]}],)"
        R"("Status":"0"})");
    EXPECT_EQ(
        recording_device::calls(),
        (std::vector<Call>{{"devapi_get_uplink_qos_info", {std::string(sizeof(QosInfo), '\0')}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(QosReportTest, ReportsNoMoreThanTheRecordHolds)
{
    for (const int32_t count : {0, 1, 3, 4, 5, 6, 7, 1000, INT32_MAX, -1, INT32_MIN}) {
        qos_is(report_of(count, count));
        EXPECT_EQ(run(kCommand),
                  report_reply(std::max(std::min(count, 4), 0), std::max(std::min(count, 6), 0)))
            << count;
    }
}

TEST_F(QosReportTest, ARuleHasNoMoreThanThreeTypes)
{
    for (const int32_t count : {0, 1, 2, 3, 4, 1000, INT32_MAX, -1, INT32_MIN}) {
        QosInfo qos = report_of(0, 1);
        qos.rules[0].type_count = count;
        qos_is(qos);
        EXPECT_EQ(run(kCommand),
                  R"({"Enable":"1","app_info_list":[],"classification_info_list":[)" +
                      rule(0, std::max(std::min(count, 3), 0)) + R"(],"Status":"0"})");
    }
}

} // namespace qos_report_test

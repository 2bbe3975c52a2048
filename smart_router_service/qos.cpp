// SPDX-License-Identifier: MIT
// Quality of service: its switch, the priorities of known applications, and the user's rules.
#include "qos.h"

using namespace smart_router;

namespace {

// ---- Switch and priorities ---------------------------------------------------------------------

// Device calls that take bare values are wrapped in records, so that the recipes apply.
struct QosSwitch {
    char Enable[8];
};

int32_t set_enable(const QosSwitch *qos)
{
    return devapi_set_qos_enable(number_in(qos->Enable));
}

constexpr auto kSwitch = Fields{FIELD(QosSwitch, Enable)};

struct ApplicationPriority {
    int32_t Id;
    char PriorityLevel[8];
};

int32_t set_priority(const ApplicationPriority *application)
{
    return devapi_set_qos_app_info(application->Id, application->PriorityLevel);
}

constexpr auto kPriority = Fields{
    FIELD(ApplicationPriority, Id),
    FIELD(ApplicationPriority, PriorityLevel),
};

// ---- Rules -------------------------------------------------------------------------------------

constexpr int32_t kAdd = 1;
constexpr char kDelete[] = "2";

constexpr auto kSelection = Fields{
    FIELD(QosRule, Id),
    FIELD(QosRule, Action),
};

constexpr auto kDescription = Fields{
    FIELD(QosRule, Name),
    FIELD(QosRule, PriorityLevel),
};

constexpr auto kType = Fields{
    FIELD(QosType, Type),
    FIELD(QosType, Min),
    FIELD(QosType, Max),
};

constexpr auto kRuleId = Fields{FIELD(QosRule, Id)};

constexpr auto kRule = Fields{
    FIELD(QosRule, Id),
    FIELD(QosRule, Name),
    FIELD(QosRule, PriorityLevel),
};

constexpr auto kApplication = Fields{
    FIELD(QosApplication, Id),
    FIELD(QosApplication, Name),
    FIELD(QosApplication, PriorityLevel),
};

// Reads the types of a rule, as many as it has room for; the others are ignored.
bool read_types(const cJSON *elements, QosRule *rule)
{
    int32_t count = 0;
    cJSON *element;
    cJSON_ArrayForEach(element, elements)
    {
        if (count == QOS_MAX_TYPES) {
            break;
        }
        if (read_fields(element, kType, &rule->types[count]) != 0) {
            return false;
        }
        ++count;
    }
    rule->type_count = count;
    return true;
}

// ---- The list of rules -------------------------------------------------------------------------

constexpr char kNoArray[] = "cJSON_CreateArray error";

void add_array_failure(Reply &reply)
{
    reply.status("1");
    reply.text(kFailReason, kNoArray);
}

// Adds the types of a rule. Result: false when memory ran out.
bool add_types(cJSON *object, const QosRule &rule)
{
    Reply types;
    cJSON *list = types.list("type_list");
    for (size_t at = 0; at < clamped(rule.type_count, QOS_MAX_TYPES); ++at) {
        types.append(list, kType, &rule.types[at]);
    }
    return types.join(object);
}

// Adds the applications. Result: false, with the reason in the reply, when there is no memory for
// the list.
bool add_applications(Reply &reply, const QosInfo &qos)
{
    cJSON *list = cJSON_CreateArray();
    if (list == nullptr) {
        add_array_failure(reply);
        return false;
    }
    reply.add("app_info_list", list);
    for (size_t at = 0; at < clamped(qos.application_count, QOS_MAX_APPLICATIONS); ++at) {
        append_if_possible(list, kApplication, &qos.applications[at]);
    }
    return true;
}

// Adds the rules. A rule without memory for itself or its types is left out, and the reply says so
// before the list. Result: false, with the reason in the reply, when there is no memory for the
// list.
bool add_rules(Reply &reply, const QosInfo &qos)
{
    JsonItem list(cJSON_CreateArray());
    if (list.get() == nullptr) {
        add_array_failure(reply);
        return false;
    }
    for (size_t at = 0; at < clamped(qos.rule_count, QOS_MAX_RULES); ++at) {
        const QosRule &rule = qos.rules[at];
        JsonItem object(object_of(kRule, &rule));
        if (object.get() == nullptr || !add_types(object.get(), rule)) {
            add_array_failure(reply);
            continue;
        }
        cJSON_AddItemToArray(list.get(), object.release());
    }
    reply.add("classification_info_list", list.release());
    return true;
}

} // namespace

HANDLER(json_set_qos_enable,
        setting<set_enable>(kSwitch, "Set qos enable failed", "get param:enable err"))

HANDLER(json_set_qos_app_info,
        setting<set_priority>(kPriority, "set qos app info failed", "json param is null"))

int32_t json_get_qos_info(cJSON *obj)
{
    Allocated<QosInfo> qos;
    if (qos.get() == nullptr || devapi_get_uplink_qos_info(qos.get()) != 0) {
        return refuse(obj, "get uplink qos info error");
    }
    Reply reply;
    reply.text("Enable", qos->Enable, sizeof qos->Enable);
    if (add_applications(reply, *qos.get()) && add_rules(reply, *qos.get())) {
        reply.success();
    }
    return answer(obj, reply, kNoArray);
}

int32_t parse_json_set_qos_cls_info(QosRule *rule, cJSON *obj)
{
    constexpr const char *kName = "parse_json_set_qos_cls_info";
    if (rule == nullptr || obj == nullptr) {
        return -1;
    }
    if (read_fields(obj, kSelection, rule) != 0) {
        LOG_ERROR("%s:Id,Action is invalid or miss", kName);
        return -1;
    }
    if (holds(rule->Action, kDelete)) {
        return 0;
    }
    if (read_fields(obj, kDescription, rule) != 0) {
        LOG_ERROR("%s:Name,PriorityLevel is invalid or miss", kName);
        return -1;
    }
    const cJSON *types = array_of(obj, "type_list");
    if (types == nullptr) {
        LOG_ERROR("%s:type_list is invalid or miss", kName);
        return -1;
    }
    if (!read_types(types, rule)) {
        LOG_ERROR("%s:Type,Max,Min is invalid or miss", kName);
        return -1;
    }
    return 0;
}

int32_t json_set_qos_classification_info(cJSON *obj)
{
    constexpr const char *kFailure = "set qos cls info error";
    QosRule rule = {};
    if (parse_json_set_qos_cls_info(&rule, obj) != 0) {
        return refuse(obj, "json param is invalid or miss");
    }
    SuccessReply success;
    Reply identifier; // the Id that the device gives to a new rule
    identifier.reserve(kRuleId);
    const bool can_set = success.complete() && identifier.complete();
    const int32_t result = can_set ? devapi_set_qos_classification_info(&rule) : -1;
    if (result == 0) {
        cJSON_DeleteItemFromObject(obj, "Id");
    }
    constexpr char kKeys[][14] = {"Action", "Name", "PriorityLevel", "type_list"};
    for (const char *key : kKeys) {
        cJSON_DeleteItemFromObject(obj, key);
    }
    conclude(obj, success, result != 0, kFailure);
    if (result == 0 && number_in(rule.Action) == kAdd) {
        identifier.set_reserved(kRuleId, &rule);
        identifier.join(obj);
    }
    return result;
}

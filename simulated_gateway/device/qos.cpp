// SPDX-License-Identifier: MIT
// Upstream quality of service: the switch, the priorities of applications, and the rules.
#include "core/device_call.h"

using namespace simulated_gateway;

// ---- All of it ---------------------------------------------------------------------------------

static void fill(QosRule &entry, const Classification &rule)
{
    put(entry.Id, rule.number);
    put(entry.Name, rule.name);
    put(entry.PriorityLevel, rule.priority);
    entry.type_count = 0;
    for (const Traffic &traffic : rule.traffic) {
        QosType &type = entry.types[entry.type_count++];
        put(type.Type, traffic.type);
        put(type.Min, traffic.min);
        put(type.Max, traffic.max);
    }
}

int32_t devapi_get_uplink_qos_info(QosInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        const Qos &qos = state.home.qos;
        put(info->Enable, qos.enabled);
        info->application_count = 0;
        for (const QosApp &application : qos.applications) {
            QosApplication &entry = info->applications[info->application_count++];
            put(entry.Id, info->application_count);
            put(entry.Name, application.name);
            put(entry.PriorityLevel, application.priority);
        }
        info->rule_count = 0;
        for (const Classification &rule : qos.rules) {
            fill(info->rules[info->rule_count++], rule);
        }
        return 0;
    });
}

int32_t devapi_set_qos_enable(int32_t enable)
{
    return setting(__func__, {number("enable", enable)}, [&](State &state) {
        state.home.qos.enabled = flag_of("enable", std::to_string(enable));
        return 0;
    });
}

// ---- Applications ------------------------------------------------------------------------------

static int64_t priority_of(const char *name, const std::string &text)
{
    const int64_t priority = number_of(name, text);
    refuse_for(name, validation_error(priority, kPriorities));
    return priority;
}

int32_t devapi_set_qos_app_info(int32_t identifier, const char *priority)
{
    return setting(__func__, {number("identifier", identifier), request_text("priority", priority)},
                   [&](State &state) {
                       std::vector<QosApp> &applications = state.home.qos.applications;
                       if (identifier < 1 ||
                           identifier > static_cast<int64_t>(applications.size())) {
                           throw Error("there is no application " + std::to_string(identifier));
                       }
                       applications[static_cast<size_t>(identifier - 1)].priority =
                           priority_of("priority", priority);
                       return 0;
                   });
}

// ---- Rules -------------------------------------------------------------------------------------

static std::vector<Classification>::iterator rule_of(Qos &qos, const QosRule &wanted)
{
    const int64_t number = taken_number("Id", wanted.Id);
    const auto found = std::ranges::find(qos.rules, number, &Classification::number);
    if (found == qos.rules.end()) {
        throw Error("there is no rule " + std::to_string(number));
    }
    return found;
}

// The model checks the range of values of a type.
static void take_rule(const QosRule &wanted, Classification &rule)
{
    refuse_for("type_count", validation_error(wanted.type_count, Range{0, QOS_MAX_TYPES}));
    rule.name = taken_text("Name", wanted.Name);
    rule.priority = priority_of("PriorityLevel", taken(wanted.PriorityLevel));
    rule.traffic.clear();
    for (int32_t at = 0; at < wanted.type_count; ++at) {
        const QosType &type = wanted.types[at];
        rule.traffic.push_back({taken("Type", type.Type, kTrafficTypes),
                                taken_text("Min", type.Min), taken_text("Max", type.Max)});
    }
}

// The lowest free number.
static int64_t new_number(const Qos &qos)
{
    int64_t number = 1;
    while (std::ranges::find(qos.rules, number, &Classification::number) != qos.rules.end()) {
        ++number;
    }
    return number;
}

static void add_rule(Qos &qos, QosRule &wanted)
{
    if (qos.rules.size() == QOS_MAX_RULES) {
        throw Error("all rules are in use");
    }
    Classification rule = {new_number(qos), {}, 0, {}};
    take_rule(wanted, rule);
    put(wanted.Id, rule.number);
    qos.rules.push_back(std::move(rule));
}

int32_t devapi_set_qos_classification_info(QosRule *rule)
{
    return setting(__func__, {exchange("rule", rule)}, [&](State &state) {
        Qos &qos = state.home.qos;
        const std::string action = taken(rule->Action);
        if (action == "1") {
            add_rule(qos, *rule);
        } else if (action == "2") {
            qos.rules.erase(rule_of(qos, *rule));
        } else {
            take_rule(*rule, *rule_of(qos, *rule));
        }
        return 0;
    });
}

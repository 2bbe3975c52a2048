// SPDX-License-Identifier: MIT
// The ports of the main router: their traffic counters, and their bindings to WAN connections.
#include "recipes.h"

using namespace smart_router;

namespace {

struct NewPortBinding {
    char Index[8];
    char BoundPorts[256];
};

int32_t set_port_binding(const NewPortBinding *binding)
{
    return devapi_set_port_binding(binding->Index, binding->BoundPorts);
}

constexpr auto kNewPortBinding = Fields{
    FIELD(NewPortBinding, Index),
    FIELD(NewPortBinding, BoundPorts),
};

constexpr auto kPortBinding = Fields{
    FIELD(PortBinding, Index),
    FIELD(PortBinding, WANName),
    FIELD(PortBinding, BoundPorts),
};

constexpr auto kPortStatistics = Fields{
    FIELD(PortStatistics, Port),       FIELD(PortStatistics, tx_traffic),
    FIELD(PortStatistics, rx_traffic), FIELD(PortStatistics, tx_packets),
    FIELD(PortStatistics, rx_packets),
};

// Replies with a list of records, without those that memory ran out for. Both lists have the same
// key, as apps expect.
void answer_ports(cJSON *obj, FieldList fields, const void *entries, size_t count)
{
    constexpr const char *kFailure = "cJSON_CreateArray error";
    Reply reply;
    cJSON *list = reply.list("port_stat_list");
    const char *entry = static_cast<const char *>(entries);
    for (size_t at = 0; at < count && list != nullptr; ++at) {
        append_if_possible(list, fields, entry);
        entry += fields.record_size();
    }
    reply.success();
    answer(obj, reply, kFailure);
}

} // namespace

int32_t json_get_port_statistics(cJSON *obj)
{
    PortStatisticsInfo info = {};
    const int32_t result = devapi_get_port_statistics_info(&info);
    const Freed entries(info.entries);
    if (result != 0) {
        fail(obj, "get port statistics info error");
    } else {
        const size_t count = info.entries != nullptr ? clamped(info.count, SIZE_MAX) : 0;
        answer_ports(obj, kPortStatistics, info.entries, count);
    }
    return result;
}

int32_t json_get_port_binding(cJSON *obj)
{
    PortBindingInfo info = {};
    const int32_t result = devapi_get_port_binding_info(&info);
    if (result != 0) {
        fail(obj, "get port binding info error");
    } else {
        answer_ports(obj, kPortBinding, info.entries, clamped(info.count, PORT_MAX_BINDINGS));
    }
    return result;
}

HANDLER(json_set_port_binding,
        setting<set_port_binding>(kNewPortBinding, "set port binding failed", "json param is null"))

// Switches of the router's network services, a speed test, and what its ports carry and serve.
#include "recipes.h"

#include <stdio.h>

using namespace smart_router;

namespace {

constexpr auto kMode = Fields{FIELD(MultiserviceMode, Mode)};

constexpr auto kSpeedTest = Fields{
    FIELD(SpeedTest, DownBandWidth),
    FIELD(SpeedTest, UpBandWidth),
    FIELD(SpeedTest, Delay),
};

constexpr auto kAlg = Fields{
    FIELD(AlgAbility, PPTP), FIELD(AlgAbility, FTP),  FIELD(AlgAbility, IPSEC),
    FIELD(AlgAbility, L2TP), FIELD(AlgAbility, RTSP), FIELD(AlgAbility, H323),
    FIELD(AlgAbility, SIP),
};

constexpr auto kUpnp = Fields{FIELD(UpnpState, Enable)};

constexpr char kNoEnable[] = "get param:enable err";

// Some calls take bare texts or a number; as records they are queries and settings like the others.
struct ConfigurationService {
    char TsconfStatus[8];
};

int32_t get_configuration_service(ConfigurationService *service)
{
    return devapi_get_tsconf_status(service->TsconfStatus, sizeof service->TsconfStatus);
}

constexpr auto kConfigurationService = Fields{
    FIELD(ConfigurationService, TsconfStatus),
};

struct WpsSwitch {
    char Enable[8];
};

int32_t get_wps(WpsSwitch *wps)
{
    int32_t enable = 0;
    const int32_t result = devapi_get_wps_enable(&enable);
    snprintf(wps->Enable, sizeof wps->Enable, "%d", enable);
    return result;
}

int32_t set_wps(const WpsSwitch *wps)
{
    return devapi_set_wps_enable(number_in(wps->Enable));
}

constexpr auto kWps = Fields{FIELD(WpsSwitch, Enable)};

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

// Answers with a list of records, which may lack some that memory failed. Both lists go by the one
// key that apps know.
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

HANDLER(json_get_ap_multiservice_mode, (query<devapi_get_ap_multiservice_mode, StatusAt::kLast>(
                                           kMode, "Get ap multisservice mode failed")))
HANDLER(json_set_ap_multiservice_mode,
        setting<devapi_set_ap_multiservice_mode>(kMode, "Set ap multisservice mode failed",
                                                 "get param:mode err"))

HANDLER(json_hg_speedtest_request,
        (query<devapi_speedtest_request, StatusAt::kLast>(kSpeedTest, "speedtest request failed")))

HANDLER(json_get_ap_alg_ability,
        (query<devapi_get_ap_alg_ability, StatusAt::kLast>(kAlg, "Get ap ALG ability failed")))
HANDLER(json_set_ap_alg_ability,
        setting<devapi_set_ap_alg_ability>(kAlg, "Set ap ALG ability failed", "json param null"))

HANDLER(json_get_upnp_state,
        (query<devapi_get_upnp_state, StatusAt::kLast>(kUpnp, "Get UPNP enable failed")))
HANDLER(json_set_upnp_state,
        setting<devapi_set_upnp_state>(kUpnp, "Set UPNP enable failed", kNoEnable))

HANDLER(json_get_tsconf_status,
        (query<get_configuration_service, StatusAt::kLast>(kConfigurationService,
                                                           "Get tsconf status failed")))

HANDLER(json_get_wps_enable, (query<get_wps, StatusAt::kLast>(kWps, "Get wps enable failed")))
HANDLER(json_set_wps_enable, setting<set_wps>(kWps, "Set wps enable failed", kNoEnable))

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

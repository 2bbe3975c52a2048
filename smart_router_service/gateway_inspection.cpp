// SPDX-License-Identifier: MIT
// Inspections of the gateway by itself, and optimisations.
#include "recipes.h"

using namespace smart_router;

namespace {

constexpr auto kNetQuality = Fields{
    FIELD(NetInspectInfo, NetQuality),
};

constexpr auto kNetConnection = Fields{
    FIELD(NetInspectInfo, DnsStatus),
    FIELD(NetInspectInfo, WanStatus),
};

constexpr auto kDnsStatus = Fields{
    FIELD(NetInspectInfo, DnsStatus),
};

constexpr auto kWholeNet = Fields{
    FIELD(NetInspectInfo, WanStatus),
    FIELD(NetInspectInfo, NetStatus),
    FIELD(NetInspectInfo, WanIP),
    FIELD(NetInspectInfo, NetMask),
};

constexpr auto kFirmware = Fields{
    FIELD(FwInspectInfo, FWVersion),
};

constexpr auto kWifi = Fields{
    FIELD(WifiInspectInfo, WiFiDevNum),
    FIELD(WifiInspectInfo, Security),
    FIELD(WifiInspectInfo, Channel),
    FIELD(WifiInspectInfo, Congestion),
};

constexpr auto kPowerAndFirewall = Fields{
    FIELD(WifiInspectInfo, PowerLevel),
    FIELD(WifiInspectInfo, FireWallEnable),
};

constexpr auto kChannel = Fields{
    FIELD(WifiInspectInfo, Channel),
};

constexpr auto kChosenChannel = Fields{
    FIELD(WifiInspectInfo, Channel),
    FIELD(WifiInspectInfo, Congestion),
};

constexpr auto kChannelAndPower = Fields{
    FIELD(WifiInspectInfo, Channel),
    FIELD(WifiInspectInfo, PowerLevel),
};

constexpr auto kChosenChannelAndPower = Fields{
    FIELD(WifiInspectInfo, Channel),
    FIELD(WifiInspectInfo, Congestion),
    FIELD(WifiInspectInfo, PowerLevel),
};

constexpr auto kResources = Fields{
    FIELD(ResourceInfo, CpuPercent),
    FIELD(ResourceInfo, MemPercent),
    FIELD(ResourceInfo, LanDevNum),
    FIELD(ResourceInfo, ProtectedDevNum),
};

constexpr auto kFreedResources = Fields{
    FIELD(ResourceInfo, CpuPercent),
    FIELD(ResourceInfo, MemPercent),
};

// Two device calls fill a bare text, which is wrapped in a record so that the recipes apply.
struct UplinkStatus {
    char UpLinkStatus[8];
};

int32_t get_uplink_status(UplinkStatus *status)
{
    return devapi_get_uplink_status(status->UpLinkStatus, sizeof status->UpLinkStatus);
}

constexpr auto kUplinkStatus = Fields{
    FIELD(UplinkStatus, UpLinkStatus),
};

struct NetFault {
    char NetFaultReason[16];
};

int32_t get_net_fault(NetFault *fault)
{
    return devapi_get_net_fault_info(fault->NetFaultReason);
}

constexpr auto kNetFault = Fields{
    FIELD(NetFault, NetFaultReason),
};

// An optimisation of the Wi-Fi passes the request's values to the device and replies with those
// that the device chose, under the same keys.
int32_t optimize(cJSON *obj, int32_t (*call)(WifiInspectInfo *), FieldList wishes,
                 FieldList choices, const char *failure)
{
    WifiInspectInfo info = {};
    SettingSteps run(obj, wishes, RemoveKeys::kAfterCall);
    if (!run.find(node_or_value_null())) {
        return -1;
    }
    run.success().reserve(choices);
    if (!run.fill_record(&info, failure)) {
        return -1;
    }
    const int32_t result = call(&info);
    run.success().set_reserved(choices, &info);
    run.end(result != 0, failure);
    return result;
}

} // namespace

HANDLER(json_inspect_net_quality,
        query<devapi_inspect_net_quality>(kNetQuality, "Net quality inspection failed"))
HANDLER(json_optimize_net_quality,
        reporting_action<devapi_optimize_net_quality>(kNetQuality, "Net quality optimize failed"))

HANDLER(json_inspect_net_connect,
        query<devapi_inspect_net_connect>(kNetConnection, "get net connect inspection failed"))
HANDLER(json_optimize_net_connect,
        reporting_action<devapi_optimize_net_connect>(kDnsStatus, "Net connect optimize failed"))

int32_t json_inspect_hg(cJSON *obj)
{
    constexpr const char *kFailure = "inspect hg failed";
    WifiInspectInfo wifi = {};
    FwInspectInfo firmware = {};
    NetInspectInfo net = {};
    const int32_t result = devapi_inspect_hg(&wifi, &firmware, &net);
    if (result != 0) {
        fail(obj, kFailure);
        return result;
    }
    SuccessReply reply;
    reply.fields(kWifi, &wifi);
    reply.fields(kFirmware, &firmware);
    reply.fields(kWholeNet, &net);
    reply.fields(kPowerAndFirewall, &wifi);
    answer(obj, reply, kFailure);
    return result;
}

HANDLER(json_get_uplink_status, query<get_uplink_status>(kUplinkStatus, "get uplink status failed"))

HANDLER(json_inspect_hg_resource,
        query<devapi_inspect_hg_resource>(kResources, "get resource inspection info failed"))
// The text belongs to the inspection, but apps expect it here as well.
HANDLER(json_optimize_hg_resource,
        reporting_action<devapi_optimize_hg_resource>(kFreedResources,
                                                      "get resource inspection info failed"))

HANDLER(json_inspect_hg_wifi,
        query<devapi_inspect_hg_wifi>(kWifi, "get wifi inspection info failed"))
// The text belongs to the sleep setting, but apps expect it here as well.
int32_t json_optimize_hg_wifi(cJSON *obj)
{
    return optimize(obj, devapi_optimize_hg_wifi, kChannel, kChosenChannel,
                    "SET_HG_SLEEP_INFO_FAIL");
}

int32_t json_optimize_wifi_channel_power(cJSON *obj)
{
    return optimize(obj, devapi_optimize_wifi_channel_power, kChannelAndPower,
                    kChosenChannelAndPower, "wifi channel power optimize failed");
}

// A fault that cannot be determined is reported without a reason.
HANDLER(json_get_hg_net_status, (query<get_net_fault, StatusAt::kLast>(kNetFault, nullptr)))

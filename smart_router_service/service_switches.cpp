// SPDX-License-Identifier: MIT
// Switches of the router's network services, and a speed test.
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

// Device calls that take bare values are wrapped in records, so that the recipes apply.
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

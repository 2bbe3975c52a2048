// SPDX-License-Identifier: MIT
// The switches of the services, and the speed test.
#include "core/device_call.h"
#include "core/gateway.h"
#include "simulation/metrics.h"

using namespace simulated_gateway;

// ---- Several services --------------------------------------------------------------------------

int32_t devapi_get_ap_multiservice_mode(MultiserviceMode *mode)
{
    return query(__func__, {reply("mode", mode)}, [&](const State &state) {
        put(mode->Mode, state.home.service_switches.multiservice_mode);
        return 0;
    });
}

int32_t devapi_set_ap_multiservice_mode(const MultiserviceMode *mode)
{
    return setting(__func__, {request("mode", mode)}, [&](State &state) {
        state.home.service_switches.multiservice_mode =
            taken("Mode", mode->Mode, kMultiserviceModes);
        return 0;
    });
}

// ---- Address translation -----------------------------------------------------------------------

int32_t devapi_get_ap_alg_ability(AlgAbility *ability)
{
    return query(__func__, {reply("ability", ability)}, [&](const State &state) {
        const Alg &alg = state.home.service_switches.alg;
        put(ability->PPTP, alg.pptp);
        put(ability->FTP, alg.ftp);
        put(ability->IPSEC, alg.ipsec);
        put(ability->L2TP, alg.l2tp);
        put(ability->RTSP, alg.rtsp);
        put(ability->H323, alg.h323);
        put(ability->SIP, alg.sip);
        return 0;
    });
}

int32_t devapi_set_ap_alg_ability(const AlgAbility *ability)
{
    return setting(__func__, {request("ability", ability)}, [&](State &state) {
        Alg &alg = state.home.service_switches.alg;
        alg.pptp = taken_flag("PPTP", ability->PPTP);
        alg.ftp = taken_flag("FTP", ability->FTP);
        alg.ipsec = taken_flag("IPSEC", ability->IPSEC);
        alg.l2tp = taken_flag("L2TP", ability->L2TP);
        alg.rtsp = taken_flag("RTSP", ability->RTSP);
        alg.h323 = taken_flag("H323", ability->H323);
        alg.sip = taken_flag("SIP", ability->SIP);
        return 0;
    });
}

int32_t devapi_get_upnp_state(UpnpState *upnp)
{
    return query(__func__, {reply("state", upnp)}, [&](const State &state) {
        put(upnp->Enable, state.home.service_switches.upnp);
        return 0;
    });
}

int32_t devapi_set_upnp_state(const UpnpState *upnp)
{
    return setting(__func__, {request("state", upnp)}, [&](State &state) {
        state.home.service_switches.upnp = taken_flag("Enable", upnp->Enable);
        return 0;
    });
}

// ---- The manufacturer's configuration service --------------------------------------------------

// It needs the Internet.
static const char *configuration_service(const Home &home)
{
    if (!home.service_switches.configuration_service) {
        return "STOPPED";
    }
    return home.wan.connected ? "RUNNING" : "WAITING";
}

int32_t devapi_get_tsconf_status(char *status, int32_t size)
{
    return query(__func__, {reply_text("status", status), number("size", size)},
                 [&](const State &state) {
                     const std::string text = configuration_service(state.home);
                     if (size <= static_cast<int64_t>(text.size())) {
                         throw Error("there is no room for the status");
                     }
                     put_text({status, static_cast<size_t>(size)}, text);
                     return 0;
                 });
}

// ---- WPS ---------------------------------------------------------------------------------------

int32_t devapi_get_wps_enable(int32_t *enable)
{
    return query(__func__, {reply_number("enable", enable)}, [&](const State &state) {
        *enable = state.home.service_switches.wps ? 1 : 0;
        return 0;
    });
}

int32_t devapi_set_wps_enable(int32_t enable)
{
    return setting(__func__, {number("enable", enable)}, [&](State &state) {
        state.home.service_switches.wps = flag_of("enable", std::to_string(enable));
        if (!state.home.service_switches.wps) {
            state.under_way.wps_end_24ghz = 0;
            state.under_way.wps_end_5ghz = 0;
        }
        return 0;
    });
}

// ---- Speed test --------------------------------------------------------------------------------

static void require_connection(const Home &home)
{
    if (!home.wan.connected) {
        throw Error("the WAN is not connected");
    }
}

// The capacity of the line minus the traffic of the hosts.
static int64_t left(int64_t line_kbps, int64_t used_kbps)
{
    return std::max<int64_t>(0, line_kbps - used_kbps);
}

int32_t devapi_speedtest_request(SpeedTest *test)
{
    constexpr std::chrono::milliseconds duration(1500);
    return long_work(__func__, {reply("test", test)}, [&](Gateway &gateway) {
        require_connection(gateway.state().home);
        gateway.wait(duration);
        const State state = gateway.state();
        require_connection(state.home);
        put(test->DownBandWidth, left(state.home.line.down_kbps, down_kbps(state)));
        put(test->UpBandWidth, left(state.home.line.up_kbps, up_kbps(state)));
        put(test->Delay, delay_ms(state));
        return 0;
    });
}

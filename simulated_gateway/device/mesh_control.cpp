// SPDX-License-Identifier: MIT
// The switches of the mesh, pairing and WPS; the agent's heartbeat, the LEDs, the state of the
// initial configuration, and removing devices.
#include "device/attached_device.h"
#include "io/clock.h"
#include "simulation/removed_hosts.h"

using namespace simulated_gateway;

// ---- Mesh --------------------------------------------------------------------------------------

// In a star, the children of other child routers attach to the main router.
static void attach_as_star(Home &home)
{
    for (ChildRouter &router : home.mesh.child_routers) {
        router.parent = home.identity.mac;
    }
}

// The routers need a few seconds to find each other, and must not be disturbed while one of them is
// being paired.
static int32_t set_mesh(State &state, bool enabled, int64_t type)
{
    constexpr int64_t busy_seconds = 5;
    Mesh &mesh = state.home.mesh;
    UnderWay &under_way = state.under_way;
    if (under_way.mesh_change_time != 0 &&
        seconds_since(under_way.mesh_change_time) < busy_seconds) {
        return MESH_BUSY_0;
    }
    if (under_way.pairing_end > now()) {
        return MESH_BUSY_1;
    }
    if (enabled == mesh.enabled && type == mesh.type) {
        return 0;
    }
    if (enabled != mesh.enabled) {
        mesh.enabled = enabled;
        mesh.link_layer_up = enabled;
    }
    mesh.type = type;
    if (type == kStar) {
        attach_as_star(state.home);
    }
    under_way.mesh_change_time = now();
    return 0;
}

int32_t devapi_setup_mesh(int32_t enable)
{
    return setting(__func__, {number("enable", enable)}, [&](State &state) {
        return set_mesh(state, flag_of("enable", std::to_string(enable)), state.home.mesh.type);
    });
}

int32_t devapi_get_mesh_status(MeshStatus *status)
{
    return query(__func__, {reply("status", status)}, [&](const State &state) {
        put(status->MeshEnable, state.home.mesh.enabled);
        put(status->MeshMode, state.home.mesh.type);
        return 0;
    });
}

int32_t devapi_set_mesh_status(const MeshStatus *status)
{
    return setting(__func__, {request("status", status)}, [&](State &state) {
        const bool enabled = taken_flag("MeshEnable", status->MeshEnable);
        const int64_t type = taken_number("MeshMode", status->MeshMode);
        refuse_for("MeshMode", validation_error(type, one_of(kStar, kTree)));
        return set_mesh(state, enabled, type);
    });
}

// ---- Pairing and WPS ---------------------------------------------------------------------------

int32_t devapi_set_pair_status(const PairStatus *status)
{
    return setting(__func__, {request("status", status)}, [&](State &state) {
        if (!state.home.mesh_control.pairing_supported) {
            return MESH_PAIRING_NOT_SUPPORTED;
        }
        if (!taken_flag("Enable", status->Enable)) {
            state.under_way.pairing_end = 0;
            return 0;
        }
        const int64_t seconds = taken_number("Time", status->Time);
        refuse_for("Time", validation_error(seconds, Range{1, 3600}));
        if (!state.home.mesh.enabled) {
            throw Error("the mesh is off");
        }
        state.under_way.pairing_end = later(now(), seconds);
        return 0;
    });
}

static void start_wps(const State &state, const std::string &band, int64_t &end)
{
    constexpr int64_t wps_seconds = 120;
    const Radio *radio = radio_of(state.home, band);
    if (!state.home.service_switches.wps) {
        throw Error("WPS is off");
    }
    if (radio == nullptr || !radio->enabled) {
        throw Error("the radio of " + band + " is off");
    }
    if (end > now()) {
        throw Error("WPS is under way on " + band);
    }
    end = later(now(), wps_seconds);
}

int32_t devapi_set_wps_state(const WpsState *wanted)
{
    return setting(__func__, {request("state", wanted)}, [&](State &state) {
        const std::string band = taken("Radio", wanted->Radio, kBands);
        UnderWay &under_way = state.under_way;
        int64_t &end = band == "5GHz" ? under_way.wps_end_5ghz : under_way.wps_end_24ghz;
        if (taken_flag("Action", wanted->Action)) {
            start_wps(state, band, end);
        } else {
            end = 0;
        }
        return 0;
    });
}

// ---- Heartbeat ---------------------------------------------------------------------------------

int32_t devapi_set_kaa_heartbeat(const char *heartbeat)
{
    return setting(__func__, {request_text("heartbeat", heartbeat)}, [&](State &state) {
        const int64_t seconds = number_of("heartbeat", heartbeat);
        refuse_for("heartbeat", validation_error(seconds, kHeartbeatSeconds));
        state.home.mesh_control.heartbeat_seconds = seconds;
        return 0;
    });
}

// ---- LEDs --------------------------------------------------------------------------------------

int32_t devapi_get_led_info(LedInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        const Leds &leds = state.home.leds;
        put(info->LedSwitch, leds.on);
        put(info->LedCoLor, leds.colour);
        put(info->LedLight, leds.brightness_percent);
        return 0;
    });
}

int32_t devapi_set_sta_led(const char *on, const char *colour, const char *light)
{
    return setting(
        __func__,
        {request_text("on", on), request_text("colour", colour), request_text("light", light)},
        [&](State &state) {
            if (!state.home.identity.led) {
                throw Error("the router has no LEDs");
            }
            Leds &leds = state.home.leds;
            leds.on = flag_of("on", on);
            leds.colour = colour;
            refuse_for("colour", validation_error(leds.colour, kLedColours));
            leds.brightness_percent = number_of("light", light);
            refuse_for("light", validation_error(leds.brightness_percent, Range{0, 100}));
            return 0;
        });
}

// ---- First configuration -----------------------------------------------------------------------

int32_t devapi_get_tslink_config(int32_t *state_number)
{
    return query(__func__, {reply_number("state", state_number)}, [&](const State &state) {
        *state_number = state.home.configured ? 1 : 0;
        return 0;
    });
}

int32_t devapi_set_sta_tslink_config(const char *wanted)
{
    return setting(__func__, {request_text("state", wanted)}, [&](State &state) {
        state.home.configured = flag_of("state", wanted);
        return 0;
    });
}

// ---- Devices to forget -------------------------------------------------------------------------

int32_t devapi_del_device(const char *mac)
{
    return setting(__func__, {request_text("mac", mac)}, [&](State &state) {
        remove_host(state, named_host(state.home, "mac", mac));
        return 0;
    });
}

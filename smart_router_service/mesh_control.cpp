// SPDX-License-Identifier: MIT
// Mesh, pairing and WPS, the agent's heartbeat, LEDs, the state of the first configuration, and the
// removal of devices.
#include "recipes.h"

using namespace smart_router;

namespace {

constexpr auto kMeshStatus = Fields{
    FIELD(MeshStatus, MeshEnable),
    FIELD(MeshStatus, MeshMode),
};

constexpr auto kPairStatus = Fields{
    FIELD(PairStatus, Enable),
    FIELD(PairStatus, Time),
};

constexpr auto kWpsState = Fields{
    FIELD(WpsState, Radio),
    FIELD(WpsState, Action),
};

constexpr auto kLed = Fields{
    FIELD(LedInfo, LedSwitch),
    FIELD(LedInfo, LedCoLor),
    FIELD(LedInfo, LedLight),
};

const char *mesh_failure(int32_t result)
{
    switch (result) {
    case MESH_BUSY_0:
        return "MESH_BUSY_0";
    case MESH_BUSY_1:
        return "MESH_BUSY_1";
    default:
        return "Set mesh status failed";
    }
}

const char *pair_failure(int32_t result)
{
    return result == MESH_PAIRING_NOT_SUPPORTED ? "WIFI_SET_NOT_SUPPORT" : "Set pair status failed";
}

// A setting with a failure text for each result of the device.
int32_t set_with_results(cJSON *obj, FieldList fields, void *record, RecordCall call,
                         const char *(*failure_text)(int32_t result), const char *missing)
{
    SettingSteps run(obj, fields, RemoveKeys::kAfterCall);
    if (!run.find(missing) || !run.fill_record(record, failure_text(-1))) {
        return -1;
    }
    const int32_t result = call(record);
    run.end(result != 0, failure_text(result));
    return result;
}

// Passes the text of a key to the device unchanged, and removes the key when the device accepted
// it.
int32_t set_text(cJSON *obj, const char *key, const MissingTexts &missing,
                 int32_t (*call)(const char *), FailureRule failed, const char *failure)
{
    cJSON *item = cJSON_GetObjectItem(obj, key);
    if (text_of(item) == nullptr) {
        return refuse(obj, item == nullptr ? missing.absent : missing.no_text);
    }
    SuccessReply success;
    if (!can_conclude(obj, success, failure)) {
        return -1;
    }
    const int32_t result = call(text_of(item));
    if (!failed(result)) {
        remove_key(obj, item);
    }
    conclude(obj, success, failed(result), failure);
    return result;
}

// Has the new state reported to the platform.
int32_t set_configuration_state(const char *state)
{
    const int32_t result = devapi_set_sta_tslink_config(state);
    if (!minus_one(result)) {
        kaa_update_profile_info();
    }
    return result;
}

struct ConfigurationState {
    char ConfiguerStatus[2];
};

int32_t get_configuration_state(ConfigurationState *configuration)
{
    int32_t state = 0;
    const int32_t result = devapi_get_tslink_config(&state);
    copy_text(configuration->ConfiguerStatus, state < 1 ? "0" : "1");
    return result;
}

constexpr auto kConfigurationState = Fields{
    FIELD(ConfigurationState, ConfiguerStatus),
};

} // namespace

// ---- Mesh, pairing and WPS ---------------------------------------------------------------------

int32_t json_set_tslink_ssid(cJSON *obj)
{
    cJSON *item = cJSON_GetObjectItem(obj, "Enable");
    const char *enable = text_of(item);
    if (enable == nullptr) {
        return refuse(obj, "Enable missing or not string");
    }
    const bool on = strcmp(enable, "1") == 0;
    const bool is_valid = on || strcmp(enable, "0") == 0;
    SuccessReply success;
    const bool can_set = is_valid && success.complete();
    if (can_set) {
        devapi_setup_mesh(on ? 1 : 0);
        if (!on) {
            log_debug("not set up mesh\n");
        }
    }
    remove_key(obj, item);
    conclude(obj, success, !can_set, is_valid ? nullptr : "Enable invalid");
    return can_set ? 0 : -1;
}

HANDLER(json_get_mesh_status,
        (query<devapi_get_mesh_status, StatusAt::kLast>(kMeshStatus, "Get mesh status failed")))

int32_t json_set_mesh_status(cJSON *obj)
{
    MeshStatus status = {};
    return set_with_results(obj, kMeshStatus, &status,
                            call_with<devapi_set_mesh_status, MeshStatus>, mesh_failure,
                            "get MeshEnable and MeshMode err");
}

int32_t json_set_mesh_pair(cJSON *obj)
{
    PairStatus status = {};
    return set_with_results(obj, kPairStatus, &status,
                            call_with<devapi_set_pair_status, PairStatus>, pair_failure,
                            "get Enable and Time err");
}

HANDLER(json_set_wps_state, setting<devapi_set_wps_state>(kWpsState, "Set wps state failed",
                                                          "get radio and action err"))

// ---- Heartbeat, configuration state, device removal --------------------------------------------

int32_t json_set_kaa_heartbeat(cJSON *obj)
{
    return set_text(obj, "heartbeat", "get json_heartbeat err", devapi_set_kaa_heartbeat, non_zero,
                    "set kaa heartbeat err");
}

int32_t json_set_tslink_config(cJSON *obj)
{
    return set_text(obj, "ConfiguerStatus",
                    {"ConfiguerStatus  is NULL", "ConfiguerStatus  value is NULL"},
                    set_configuration_state, minus_one, "set tslink config failed");
}

HANDLER(json_query_tslink_config,
        (query<get_configuration_state, StatusAt::kLast>(kConfigurationState,
                                                         "devapi get tslink config failed")))

int32_t json_del_device(cJSON *obj)
{
    // The text belongs to the configuration state, but apps expect it here as well.
    return set_text(obj, "MAC", {"parama is errer!", "MAC  value is NULL"}, devapi_del_device,
                    minus_one, "set tslink config failed");
}

// ---- LEDs --------------------------------------------------------------------------------------

HANDLER(json_get_led,
        (query<devapi_get_led_info, StatusAt::kFirst, minus_one>(kLed, "get led info failed")))

int32_t json_set_led(cJSON *obj)
{
    // The text belongs to the signal check, but apps expect it here as well.
    constexpr const char *kFailure = "get scan rssi failed";
    cJSON *items[kLed.kCount];
    find_items(obj, kLed, items);
    for (const cJSON *item : items) {
        if (item == nullptr) {
            return refuse(obj, "LedCoLor, LedLight or Led_Switch is NULL");
        }
    }
    SuccessReply success;
    if (!can_conclude(obj, success, kFailure)) {
        return -1;
    }
    // A value that is not a string is passed as a null pointer, which the device refuses.
    const int32_t result =
        devapi_set_sta_led(text_of(items[0]), text_of(items[1]), text_of(items[2]));
    if (!minus_one(result)) {
        for (cJSON *item : items) {
            remove_key(obj, item);
        }
    }
    conclude(obj, success, minus_one(result), kFailure);
    return result;
}

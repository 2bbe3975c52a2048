// SPDX-License-Identifier: MIT
// All SSIDs at once: the list, and the batch of settings that a worker applies after the reply, so
// that the reply is sent before the radios restart.
#include "wifi.h"

#include <pthread.h>
#include <stdlib.h>
#include <unistd.h>

using namespace smart_router;

// Held from the moment a batch is accepted until its worker has applied it. It is unlocked by
// another thread than the one that locked it, which works with a default mutex.
pthread_mutex_t setwifilistlock = PTHREAD_MUTEX_INITIALIZER;
int32_t g_set_wifi_array_size = 0;
char g_stactrl_enable[8] = "";
char g_fastroaming_enable[8] = "";

namespace {

constexpr auto kListElement = Fields{
    kSsidRequired,         FIELD(SsidInfo, PermissionProperty),
    FIELD(SsidInfo, Type), FIELD(SsidInfo, Bandwidth),
    kSsidOptions,
};

constexpr auto kElementSetting =
    Fields{kSsidRequired, FIELD(SsidInfo, Bandwidth), kSsidOptions}.requiring(kSsidRequired.kCount);

constexpr char kSetFailure[] = "set ssid failed";

// Asks the user to turn the mesh switch off first; in GBK, the encoding that the apps expect here.
constexpr char kMeshWarning[] = "\xC7\xEB\xCF\xC8\xB9\xD8\xB1\xD5"
                                "mesh"
                                "\xBF\xAA\xB9\xD8"
                                "!";
static_assert(sizeof kMeshWarning - 1 == 17, "the warning is 17 bytes long");

// Converts the elements to records. Result: false at the first element that lacks a required key.
bool convert(const cJSON *elements, SsidInfo *records)
{
    cJSON *element;
    cJSON_ArrayForEach(element, elements)
    {
        if (parse_wifi_info_from_json(records++, element) != 0) {
            return false;
        }
    }
    return true;
}

// Whether a batch turns off one of the main SSIDs, without which the mesh has no link.
bool turns_main_ssid_off(const SsidInfo *records, int32_t count, int32_t main_5g_index)
{
    for (int32_t at = 0; at < count; ++at) {
        const SsidInfo &ssid = records[at];
        if ((ssid.SSIDIndex == 1 || ssid.SSIDIndex == main_5g_index) &&
            number_of(ssid.Enable) == 0) {
            return true;
        }
    }
    return false;
}

// Starts a worker, which takes over the records. Result: false, with the records and the lock still
// the caller's, when it could not be started.
bool start_worker(SsidInfo *records, int32_t count)
{
    pthread_mutex_lock(&setwifilistlock);
    g_set_wifi_array_size = count;
    pthread_t worker;
    if (pthread_create(&worker, nullptr, set_wifi_list_arr_thread, records) != 0) {
        pthread_mutex_unlock(&setwifilistlock);
        return false;
    }
    return true;
}

} // namespace

int32_t json_get_wifi_list_info(cJSON *obj)
{
    constexpr const char *kFailure = "get ssid_num error";
    int32_t count = 0;
    int32_t station_control = 1;
    int32_t result = devapi_get_ssid_num(&count);
    if (result != 0) {
        LOG_ERROR("devapi_get_ssid_num error! return =%d!\n", result);
        return refuse(obj, kFailure);
    }
    LOG_DEBUG("devapi_get_ssid_num %d!\n", count);
    result = devapi_get_wifi_stactrl(&station_control);
    if (result != 0) {
        LOG_ERROR("devapi_get_wifi_stactrl error! return =%d!\n", result);
        return refuse(obj, "get stactrl error");
    }
    LOG_DEBUG("devapi_get_wifi_stactrl %d!\n", station_control);

    Reply reply;
    cJSON *list = reply.list("WIFIList");
    for (int32_t at = 0; at < count && reply.complete(); ++at) {
        const int32_t index = at + 1;
        SsidInfo ssid = {};
        ssid.SSIDIndex = index;
        result = devapi_get_ssid_info(&ssid);
        if (result != 0) {
            NumberText text;
            put_number(text, index);
            LOG_DEBUG("json_get_wifi_list_info error! return =%d! index=%s\n", result, text);
            continue;
        }
        ssid.SSIDIndex = index;
        reply.append(list, kListElement, &ssid);
    }
    reply.text("StaCtrl", station_control == 1 ? "1" : "0");
    char fast_roaming[8] = "";
    if (devapi_get_wifi_fastroaming_enable(fast_roaming) == 0 && fast_roaming[0] != '\0') {
        reply.text("FastRoaming", fast_roaming, sizeof fast_roaming);
    }
    reply.success();
    return answer(obj, reply, kFailure);
}

int32_t parse_wifi_info_from_json(SsidInfo *record, cJSON *item)
{
    return read_fields(item, kElementSetting, record);
}

int32_t json_set_wifi_info_list(cJSON *obj)
{
    cJSON *elements = array_of(obj, "WIFILIST");
    if (elements == nullptr) {
        return refuse(obj, "json node: wifilist not found");
    }
    cJSON *station_control = cJSON_GetObjectItem(obj, "StaCtrl");
    if (text_of(station_control) == nullptr) {
        return refuse(obj, "json node: StaCtrl not found");
    }
    // The workers read both switches from here on, including the worker of the previous batch.
    copy_text(g_stactrl_enable, text_of(station_control));
    cJSON *fast_roaming = cJSON_GetObjectItem(obj, "FastRoaming");
    if (text_of(fast_roaming) != nullptr && text_of(fast_roaming)[0] != '\0') {
        copy_text(g_fastroaming_enable, text_of(fast_roaming));
    }

    const int32_t count = cJSON_GetArraySize(elements);
    // At least one record: for none, calloc() may return null, which is not a failure here.
    auto *records = static_cast<SsidInfo *>(
        calloc(static_cast<size_t>(count > 0 ? count : 1), sizeof(SsidInfo)));
    int32_t main_5g_index = 0;
    devapi_get_5g_wifi_index(&main_5g_index);

    // The replies are built before the worker is started, which cannot be undone.
    SuccessReply success;
    const bool sound = records != nullptr && success.complete() && convert(elements, records);
    const bool main_ssid_off = sound && turns_main_ssid_off(records, count, main_5g_index);
    Reply warning;
    if (main_ssid_off) {
        warning.status("1");
        warning.text(kFailReason, kMeshWarning);
    }
    if (!sound || !warning.complete() || !start_worker(records, count)) {
        free(records);
        remove_key(obj, elements);
        return refuse(obj, kSetFailure);
    }

    int32_t mesh = 0;
    devapi_get_Multi_Ap_enable(&mesh);
    remove_key(obj, elements);
    remove_key(obj, station_control);
    if (mesh == 1 && main_ssid_off) {
        warning.join(obj); // only a warning: the worker still applies the batch
    } else {
        remove_key(obj, fast_roaming);
        success.join(obj);
    }
    return 0;
}

void *set_wifi_list_arr_thread(void *array)
{
    auto *records = static_cast<SsidInfo *>(array);
    pthread_detach(pthread_self());
    // sleep() may share the alarm signal between threads, which is not used here.
    sleep(1); // NOLINT(concurrency-mt-unsafe)
    devapi_set_wifi_stactrl(g_stactrl_enable);
    sleep(5); // NOLINT(concurrency-mt-unsafe)
    devapi_set_wifi_fastroaming(g_fastroaming_enable);
    for (int32_t at = 0; at < g_set_wifi_array_size; ++at) {
        devapi_set_ssid_list_info(&records[at]);
    }
    free(records);
    pthread_mutex_unlock(&setwifilistlock);
    return nullptr;
}

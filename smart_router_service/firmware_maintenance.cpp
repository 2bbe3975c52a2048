// SPDX-License-Identifier: MIT
// The update schedule, the firmware of all routers of the mesh, and the upload of the log that the
// platform requests after a failure.
#include "firmware_maintenance.h"

#include "firmware_update.h"

using namespace smart_router;

namespace {

constexpr auto kSchedule = Fields{
    FIELD(UpdateSchedule, Enable),      FIELD(UpdateSchedule, StartHour),
    FIELD(UpdateSchedule, StartMinute), FIELD(UpdateSchedule, EndHour),
    FIELD(UpdateSchedule, EndMinute),
};

constexpr auto kChildFirmware = Fields{
    FIELD_AS(ChildRouterInfo, RouterDeviceID, "DeviceID"),
    FIELD_AS(ChildRouterInfo, Name, "name"),
    FIELD(ChildRouterInfo, HWVersion),
    FIELD(ChildRouterInfo, FWVersion),
    FIELD(ChildRouterInfo, FWDATA),
    FIELD(ChildRouterInfo, DeviceType),
    FIELD(ChildRouterInfo, AreaCode),
};

} // namespace

HANDLER(json_get_update_schedule,
        (query<devapi_get_update_schedule, StatusAt::kLast>(kSchedule,
                                                            "Get update schedule failed")))
HANDLER(json_set_update_schedule,
        (setting<devapi_set_update_schedule, RemoveKeys::kAlways, minus_one>(
            kSchedule, "Set update schedule failed", "parameter error")))

int32_t json_insert_childrouter_update_info(cJSON *item, const ChildRouterInfo *router)
{
    if (item == nullptr || router == nullptr) {
        log_error("child_router_info is NULL\n");
        return -1;
    }
    Reply reply;
    reply.text("up_status", "0");
    reply.fields(kChildFirmware, router);
    return reply.join(item) ? 0 : -1;
}

int32_t json_get_child_router_update_info(cJSON *array)
{
    if (array == nullptr) {
        return -1;
    }
    ChildRouterList children = {};
    devapi_get_childrouter_list(&children);
    for (size_t at = 0; at < clamped(children.count, MESH_MAX_CHILD_ROUTERS); ++at) {
        JsonItem item(cJSON_CreateObject());
        if (item.get() == nullptr) {
            log_error("create child_router_itme err\n");
            return -1;
        }
        ChildRouterInfo router = {};
        const int32_t result = devapi_get_childrouter_info(&router, children.identifiers[at]);
        if (result != 0) {
            LOG_ERROR("get child_router_info err %d\n", result);
            continue;
        }
        if (json_insert_childrouter_update_info(item.get(), &router) != 0) {
            log_error("create child_router_itme err\n");
            return -1;
        }
        cJSON_AddItemToArray(array, item.release());
    }
    return 0;
}

int32_t json_get_update_status(cJSON *obj)
{
    constexpr const char *kFailure = "Get mainrouter update status failed";
    JsonItem router(cJSON_CreateObject());
    if (router.get() == nullptr || json_hg_get_update_status(router.get()) != 0) {
        return refuse(obj, kFailure);
    }
    Reply reply;
    reply.add("MainRouter", router.release());
    JsonItem children(cJSON_CreateArray());
    if (children.get() != nullptr) {
        const bool complete = json_get_child_router_update_info(children.get()) == 0;
        reply.add("ChildRouter", complete ? children.release() : nullptr);
    }
    reply.success();
    return answer(obj, reply, kFailure);
}

int32_t json_send_log_to_platform(cJSON *obj)
{
    constexpr const char *kNoMac = "json node: get dev mac error";
    char mac[24] = "";
    if (devapi_get_iotagtd_device_mac(mac, sizeof mac) != 0) {
        return refuse(obj, kNoMac);
    }
    mac[sizeof mac - 1] = '\0';
    char bare_mac[24] = "";
    mac_form_translate(mac, HG_MAC_BARE, bare_mac);
    LOG_DEBUG("dev_mac = %s br0_mac = %s\n", mac, bare_mac);
    cJSON *url = cJSON_GetObjectItem(obj, "UploadUrl");
    if (text_of(url) == nullptr) {
        return refuse(obj, "json node: UploadUrl not found");
    }
    const char *log_type = text_under(obj, "LogType");
    if (log_type == nullptr) {
        return refuse(obj, "json node: LogType not found");
    }
    SuccessReply success;
    if (!can_conclude(obj, success, kNoMac)) {
        return -1;
    }
    // The result is ignored: the upload may take long, and the platform sees whether a log arrives.
    devapi_get_hg_log(text_of(url), log_type, bare_mac);
    remove_key(obj, url);
    success.join(obj);
    return 0;
}

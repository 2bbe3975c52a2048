// SPDX-License-Identifier: MIT
// Commands for child routers, which are forwarded unchanged and executed by the child router.
#include "child_router_relay.h"

using namespace smart_router;

namespace {

constexpr char kDeviceId[] = "DeviceID";
constexpr char kNoDeviceId[] = "DeviceID Not Found";
constexpr char kNotSent[] = "send json to child err";

// Relays a command that requires a "DeviceID" and perhaps another key, and removes both after the
// attempt to send it, regardless of the result.
int32_t relay(cJSON *obj, const char *other_key, const char *missing, const char *failure)
{
    cJSON *id = cJSON_GetObjectItem(obj, kDeviceId);
    cJSON *other = other_key != nullptr ? cJSON_GetObjectItem(obj, other_key) : nullptr;
    if (text_of(id) == nullptr || (other_key != nullptr && text_of(other) == nullptr)) {
        return refuse(obj, missing);
    }
    SuccessReply success;
    if (!can_conclude(obj, success, failure)) {
        return -1;
    }
    const int32_t result = json_child_router_common(obj);
    remove_key(obj, id);
    remove_key(obj, other);
    conclude(obj, success, result != 0, failure);
    return result;
}

// Asks the child router for its attached devices. Result: its parsed reply, which belongs to the
// caller; null with the reason when there is none.
cJSON *ask_for_devices(const char *request, const char **reason)
{
    const char method[RELAY_METHOD_SIZE] = "get_childrouter_host_info";
    char *text = nullptr;
    const int32_t result = devapi_cmdstring_sendto_tslink_with_retinfo(request, method, &text);
    const Freed answer(text);
    if (result != 0 || text == nullptr) {
        *reason = "sendto tslink or retinfo fail";
        return nullptr;
    }
    *reason = "Get child_adbaseinfo fail";
    return cJSON_Parse(text);
}

} // namespace

int32_t json_child_router_common(cJSON *obj)
{
    const PrintedJson command(cJSON_Print(obj));
    if (command.text() == nullptr || command.text()[0] == '\0') {
        log_error("cmdstring is null\n");
        return -1;
    }
    const int32_t result = devapi_cmdstring_sendto_tslink(
        command.text(), static_cast<int32_t>(strlen(command.text())));
    if (result != 0) {
        log_error("cmdstring sendto tslink failed \n");
    }
    return result;
}

int32_t json_child_hg_reboot(cJSON *obj)
{
    return relay(obj, nullptr, kNoDeviceId, kNotSent);
}

int32_t json_child_hg_local_recovery(cJSON *obj)
{
    return relay(obj, nullptr, kNoDeviceId, kNotSent);
}

int32_t json_set_child_router_base_info(cJSON *obj)
{
    return relay(obj, "Name", "param json not found", "set childrouter info failed");
}

int32_t json_set_child_routerad_base_info(cJSON *obj)
{
    // The settings are removed regardless of the result.
    constexpr char kKeys[][13] = {"DeviceID", "Mac",         "DevType",
                                  "ByName",   "NetMonopoly", "AccessEnable"};
    const bool has_id = text_under(obj, kDeviceId) != nullptr;
    SuccessReply success;
    const int32_t result = has_id && success.complete() ? json_child_router_common(obj) : -1;
    for (const char *key : kKeys) {
        cJSON_DeleteItemFromObject(obj, key);
    }
    conclude(obj, success, result != 0, has_id ? kNotSent : kNoDeviceId);
    return result;
}

int32_t json_get_child_router_adbaseinfo(cJSON *obj)
{
    constexpr const char *kNotCopied = "cJSON_Print fail";
    if (cJSON_GetObjectItem(obj, kDeviceId) == nullptr) {
        return refuse(obj, kNoDeviceId);
    }
    const char *reason = "Get json_str fail";
    const PrintedJson request(cJSON_Print(obj));
    const JsonItem devices(request.text() != nullptr ? ask_for_devices(request.text(), &reason)
                                                     : nullptr);
    if (devices.get() == nullptr) {
        return refuse(obj, reason);
    }
    const cJSON *base_info = cJSON_GetObjectItem(devices.get(), "BaseInfo");
    if (base_info == nullptr) {
        return refuse(obj, "BaseInfo is NULL");
    }
    const PrintedJson printed(cJSON_Print(base_info));
    Reply reply;
    reply.add("BaseInfo", printed.text() != nullptr ? cJSON_Parse(printed.text()) : nullptr);
    reply.success();
    return answer(obj, reply, kNotCopied);
}

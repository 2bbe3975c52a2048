// SPDX-License-Identifier: MIT
// The devices attached to the router: their properties, the names and rights that the user gives
// them, and the firewall.
#include "recipes.h"

using namespace smart_router;

namespace {

constexpr auto kBaseInfo = Fields{
    FIELD(AdBaseInfo, Mac),
    FIELD(AdBaseInfo, UID),
    FIELD(AdBaseInfo, DevType),
    FIELD(AdBaseInfo, DevFactory),
    FIELD_AS(AdBaseInfo, DevType,
             "DevModle"), // apps expect a model, but the device knows only the type
    FIELD(AdBaseInfo, Name),
    FIELD(AdBaseInfo, ByName),
    FIELD(AdBaseInfo, OS),
    FIELD(AdBaseInfo, Version),
    FIELD(AdBaseInfo, NetStatus),
    FIELD(AdBaseInfo, NetMonopoly),
    FIELD(AdBaseInfo, AccessType),
    FIELD(AdBaseInfo, AccessEnable),
    FIELD(AdBaseInfo, AccessTime),
    FIELD(AdBaseInfo, UpSpeed),
    FIELD(AdBaseInfo, DownSpeed),
    FIELD(AdBaseInfo, ip),
    FIELD(AdBaseInfo, GreennetProtectEnable),
    FIELD(AdBaseInfo, StaticDhcpEnable),
};

constexpr auto kBaseSetting = Fields{
    FIELD_AS(AdBaseInfo, Mac, "MAC"),
    FIELD(AdBaseInfo, DevType),
    FIELD(AdBaseInfo, ByName),
    FIELD(AdBaseInfo, AccessEnable),
};

// The optional keys of a base setting, which are removed regardless of the result. UpLimit is one
// of them, although no upstream limit is set: apps send the two limits together.
constexpr char kBaseOptions[][17] = {
    "DownLimit", "UpLimit", "SpeedLimit", "StaticDhcpEnable", "ip",
};

constexpr auto kRight = Fields{
    FIELD(AttachDeviceRight, MAC),
    FIELD(AttachDeviceRight, name),
    FIELD(AttachDeviceRight, InternetAccessRight),
};

constexpr auto kRightSetting = Fields{
    FIELD(AttachDeviceRight, MAC),
    FIELD(AttachDeviceRight, InternetAccessRight),
};

constexpr char kNoAddressToBind[] = "ip/mac binding: ip addr missing!";

// The downstream limit in a request.
const char *down_limit_of(const cJSON *obj)
{
    const char *limit = text_under(obj, "DownLimit");
    const char *limited = text_under(obj, "SpeedLimit");
    if (limit == nullptr || limited == nullptr) {
        return kNotGiven;
    }
    const bool is_limited = strcmp(limited, "0") != 0;
    return is_limited ? limit : "0";
}

// Fills the binding of an IP address to the device. Result: false when a binding is requested
// without an address.
bool read_binding(const cJSON *obj, AdBaseInfo *device)
{
    const char *bound = text_under(obj, "StaticDhcpEnable");
    if (bound == nullptr) {
        log_debug("ip/mac binding: not be used!");
        copy_text(device->StaticDhcpEnable, kNotGiven);
        return true;
    }
    log_debug("ip/mac binding: is using!");
    copy_text(device->StaticDhcpEnable, bound);
    const char *ip = text_under(obj, "ip");
    if (ip == nullptr) {
        log_error(kNoAddressToBind);
        return false;
    }
    copy_text(device->ip, ip);
    return true;
}

} // namespace

int32_t json_get_attach_dev_base_info(cJSON *obj)
{
    constexpr const char *kFailure = "get ad base info error";
    int32_t count = 0;
    if (minus_one(devapi_get_host_num(&count))) {
        return refuse(obj, kFailure);
    }
    Reply reply;
    cJSON *list = reply.list("BaseInfo");
    for (int32_t at = 0; at < count && reply.complete(); ++at) {
        AdBaseInfo device = {};
        device.HostIndex = at + 1;
        if (minus_one(devapi_get_ad_base_info(&device))) {
            return refuse(obj, kFailure);
        }
        reply.append(list, kBaseInfo, &device);
    }
    reply.success();
    return answer(obj, reply, kFailure);
}

int32_t json_set_attach_dev_base_info(cJSON *obj)
{
    AdBaseSetting setting = {};
    SettingRun run(obj, kBaseSetting, RemoveKeys::kAlways);
    int32_t result = -1;
    if (!run.find("INVALID_PARAM")) {
        log_error("json_set_attach_dev_base_info : Err, invalid param\n");
    } else if (run.fill(&setting.info, setting.FailReason)) {
        copy_text(setting.info.DownLimit, down_limit_of(obj));
        if (read_binding(obj, &setting.info)) {
            result = devapi_set_ad_base_info(&setting);
            run.end(minus_one(result), setting.FailReason, sizeof setting.FailReason);
        } else {
            run.end(true, kNoAddressToBind);
        }
    }
    for (const char *option : kBaseOptions) {
        cJSON_DeleteItemFromObject(obj, option);
    }
    return result;
}

int32_t json_set_firewall_switch(cJSON *obj)
{
    constexpr const char *kFailure = "set firewall switch failed";
    const char *enable = text_under(obj, "Enable");
    if (enable == nullptr) {
        return -1; // the only command that does not reply when a key is missing
    }
    FirewallSwitch firewall = {};
    copy_text(firewall.Enable, enable);
    SuccessReply success;
    if (!can_conclude(obj, success, kFailure)) {
        return -1;
    }
    const int32_t result = devapi_set_firewall_switch(&firewall);
    conclude(obj, success, result != 0, kFailure);
    return result;
}

int32_t json_get_attach_device_right(cJSON *obj)
{
    int32_t count = 0;
    int32_t result = devapi_get_host_num(&count);
    if (result != 0) {
        LOG_ERROR("host_num error! return =%d!\n", result);
    }
    Reply reply;
    cJSON *list = reply.list("MACList");
    for (int32_t at = 0; at < count && reply.complete(); ++at) {
        AttachDeviceRight right = {};
        right.HostIndex = at + 1;
        NumberText index;
        put_number(index, right.HostIndex);
        result = devapi_get_attach_device_right(&right);
        if (result != 0) {
            // The address of the text, not its value: tools that read the log expect a number here.
            LOG_ERROR("devapi_get_attach_device_right error! return =%d! index=%d\n", result,
                      static_cast<int32_t>(reinterpret_cast<intptr_t>(index)));
            continue;
        }
        reply.append(list, kRight, &right);
    }
    reply.success();
    return answer(obj, reply, nullptr);
}

HANDLER(json_set_attach_device_right,
        setting<devapi_set_attach_device_right>(kRightSetting, "SET_ATTATCH_DEVICE_RIGHT_FAIL"))

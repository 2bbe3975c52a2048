// The periods in which parental control protects a device.
#include "green_net.h"

using namespace smart_router;

namespace {

constexpr auto kPeriod = Fields{
    FIELD(ProtectPeriodInfo, StartTime),
    FIELD(ProtectPeriodInfo, EndTime),
    FIELD(ProtectPeriodInfo, Enable),
    FIELD(ProtectPeriodInfo, DaysOfWeek),
};

// The MAC address by which a request names a host.
using MacText = char[64];

// Reads the "Mac" of a request. Result: false when there is none, and then the request is answered.
bool read_mac(cJSON *obj, MacText &mac)
{
    const char *text = text_under(obj, "Mac");
    if (text == nullptr) {
        fail(obj, "json node: mac not found");
        return false;
    }
    copy_text(mac, text);
    return true;
}

constexpr char kCannotDelete[] = "del duration failed!";

// Stores the elements as periods of the host, and finds out whether one is in force. Result: null,
// or why it stopped; what was stored before stays.
const char *store_periods(const cJSON *elements, int32_t host, bool *in_force)
{
    cJSON *element;
    cJSON_ArrayForEach(element, elements)
    {
        ProtectPeriodInfo period = {};
        period.HostIndex = host;
        if (read_fields(element, kPeriod, &period) != 0) {
            log_error("string is null.\n");
            return "parse protect period info failed";
        }
        *in_force = *in_force || holds(period.Enable, "1");
        if (devapi_add_greennet_duration(host, &period.PeriodNum) != 0) {
            return "add protect period info failed";
        }
        if (devapi_set_protect_period_info(&period) != 0) {
            return "set protect period info failed";
        }
    }
    return nullptr;
}

// Makes the elements the host's only periods, and switches its protection accordingly. Result:
// null, or why it stopped; what was done before stays.
const char *replace_periods(const cJSON *elements, int32_t host)
{
    if (devapi_del_all_duration(host) != 0) {
        return kCannotDelete;
    }
    bool in_force = false;
    const char *failure = store_periods(elements, host, &in_force);
    if (failure != nullptr) {
        return failure;
    }
    return devapi_set_protect_enable(in_force ? 1 : 0, host) == 0 ? nullptr
                                                                  : "set PortectEnable failed!";
}

} // namespace

int32_t json_get_protect_period_list(cJSON *obj)
{
    constexpr const char *kFailure = "get protect period list failed";
    MacText mac = "";
    if (!read_mac(obj, mac)) {
        return -1;
    }
    int32_t host = 0;
    if (!find_host(mac, &host)) {
        return refuse(obj, "xml mac index not found");
    }
    int32_t count = 0;
    devapi_get_duration_num_by_index(host, &count);
    SuccessReply reply;
    cJSON *list = reply.list("Sleep");
    for (int32_t at = 0; at < count && reply.complete(); ++at) {
        ProtectPeriodInfo period = {};
        period.HostIndex = host;
        period.PeriodNum = at + 1;
        if (devapi_get_protect_period_info(&period) != 0) {
            return refuse(obj, kFailure);
        }
        reply.append(list, kPeriod, &period);
    }
    return answer(obj, reply, kFailure);
}

int32_t json_set_protect_period_list(cJSON *obj)
{
    MacText mac = "";
    if (!read_mac(obj, mac)) {
        return -1;
    }
    int32_t host = 0;
    if (!find_host(mac, &host)) {
        return refuse(obj, "json node: mac index not found");
    }
    LOG_DEBUG("mac_index = %d\n", host);
    cJSON *elements = array_of(obj, "Sleep");
    if (elements == nullptr) {
        return refuse(obj, kNoList);
    }
    SuccessReply success;
    const char *failure = success.complete() ? replace_periods(elements, host) : kCannotDelete;
    remove_key(obj, elements);
    conclude(obj, success, failure != nullptr, failure);
    return failure != nullptr ? -1 : 0;
}

// SPDX-License-Identifier: MIT
// Parental control (green-net): its switch, the devices that it protects, and the periods of
// protection.
#include "recipes.h"

#include <stdlib.h>
#include <strings.h>

using namespace smart_router;

namespace {

// The device calls of the switch take a bare text, which is wrapped in a record so that the recipes
// apply.
struct GreenNetSwitch {
    char Enable[GREENNET_SWITCH_SIZE];
};

int32_t set_enable(const GreenNetSwitch *green_net)
{
    return devapi_set_greennet_enable(green_net->Enable);
}

constexpr auto kSwitch = Fields{FIELD(GreenNetSwitch, Enable)};

constexpr auto kDeviceSetting = Fields{
    FIELD(GreenHostInfo, Mac),
    FIELD(GreenHostInfo, Name),
    FIELD(GreenHostInfo, NotifyEnable),
};

constexpr auto kDevice = Fields{kDeviceSetting, FIELD(GreenHostInfo, ProtectEnable)};

constexpr auto kNotifySetting = Fields{
    FIELD(GreenHostInfo, Mac),
    FIELD(GreenHostInfo, NotifyEnable),
};

constexpr char kNoList[] = "json node: list not found"; // also used for the notify switch

// Finds a host in the table. Result: false when it is not there.
bool find_host(const char *mac, int32_t *index)
{
    return devapi_get_greennet_index_by_mac(mac, index) == 1;
}

bool is_entry(const GreenHostInfo &device)
{
    return device.Mac[0] != '\0' && strncasecmp(device.Mac, "NULL", sizeof device.Mac) != 0;
}

// Writes the index as the text that selects an entry of the table.
void put_index(GreenHostInfo *device, int32_t index, size_t digits)
{
    put_number(device->HostIndex, digits + 1, index);
}

// ---- The list of devices -----------------------------------------------------------------------

// The MAC addresses of a list of devices, each followed by a comma. The text is cut when full.
class MacList {
  public:
    explicit MacList(size_t devices)
        : size_(devices * kBytesPerDevice),
          text_(static_cast<char *>(calloc(devices, kBytesPerDevice)))
    {
    }
    ~MacList() { free(text_); }
    MacList(const MacList &) = delete;
    MacList &operator=(const MacList &) = delete;

    const char *text() const { return text_; } // null when memory ran out

    void add(const char *mac)
    {
        const size_t length = strnlen(mac, size_ - 1 - used_);
        memcpy(text_ + used_, mac, length);
        used_ += length;
        if (used_ < size_ - 1) {
            text_[used_++] = ','; // the NUL is there from calloc()
        }
    }

  private:
    static constexpr size_t kBytesPerDevice = 20; // enough for a MAC address with colons

    size_t size_;
    size_t used_ = 0;
    char *text_;
};

// Reads one element of a list into the record and finds its entry in the table, or adds one.
// Result: false when that is not possible; the log says why.
bool read_device(cJSON *element, GreenHostInfo *device)
{
    if (read_fields(element, kDeviceSetting, device) != 0) {
        log_error("string is null.\n");
        return false;
    }
    int32_t index = 0;
    if (devapi_get_greennet_index_by_mac(device->Mac, &index) < 0) {
        log_error("get index failed\n");
        return false;
    }
    const bool is_new = index == 0;
    if (is_new) {
        LOG_DEBUG("dev mac : %s not exsit, need add!\n", text_under(element, "Mac"));
        if (devapi_add_greennet_mac(device->Mac, &index) != 0) {
            log_error("add_greennet_mac failed\n");
            return false;
        }
    }
    copy_text(device->NewEntry, is_new ? "1" : "0");
    put_index(device, index, sizeof device->HostIndex - 1);
    return true;
}

// Stores the elements and lists their MAC addresses. Result: null, or the failure text; elements
// that were stored before the failure are kept.
const char *store_devices(const cJSON *elements, MacList *list)
{
    GreenHostInfo device = {}; // shared: each element overwrites the fields that it has
    cJSON *element;
    cJSON_ArrayForEach(element, elements)
    {
        if (!read_device(element, &device)) {
            return "parse green host info failed";
        }
        list->add(device.Mac);
        if (devapi_set_green_net_info(&device) != 0) {
            return "set lan host info failed";
        }
    }
    return nullptr;
}

constexpr char kNoMemory[] = "malloc mac_list failed";

// Stores the listed devices in the table and removes all others; *removal is the result of the
// removal. Result: null, or the failure text if it stopped before.
const char *replace_devices(const cJSON *elements, int32_t *removal)
{
    const int count = cJSON_GetArraySize(elements);
    if (count < 1) {
        *removal = devapi_del_green_net_info_by_maclist(nullptr);
        return nullptr;
    }
    if (devapi_set_greenaccess_enable(1) != 0) {
        return "set greenaccess enable failed";
    }
    MacList list(static_cast<size_t>(count));
    if (list.text() == nullptr) {
        return kNoMemory;
    }
    const char *failure = store_devices(elements, &list);
    if (failure == nullptr) {
        *removal = devapi_del_green_net_info_by_maclist(list.text());
    }
    return failure;
}

// ---- The periods of a device -------------------------------------------------------------------

constexpr auto kPeriod = Fields{
    FIELD(ProtectPeriodInfo, StartTime),
    FIELD(ProtectPeriodInfo, EndTime),
    FIELD(ProtectPeriodInfo, Enable),
    FIELD(ProtectPeriodInfo, DaysOfWeek),
};

// The MAC address by which a request identifies a host.
using MacText = char[64];

// Reads the "Mac" of a request. Result: false when there is none, and then the failure has been
// added.
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

// Stores the elements as periods of the host, and determines whether one is in force. Result: null,
// or the failure text; periods that were stored before the failure are kept.
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

// Replaces the periods of the host by the elements, and switches its protection accordingly.
// Result: null, or the failure text; changes that were made before the failure are kept.
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

// ---- Commands ----------------------------------------------------------------------------------

int32_t json_get_green_net_enable(cJSON *obj)
{
    GreenNetSwitch green_net = {};
    const int32_t result = devapi_get_greennet_enable(green_net.Enable);
    if (result != 0) {
        // A constant, because tools that read the log search for this number.
        constexpr int kKnownLine = 1612;
        LOG_ERROR("%s: %d get green net enable failed! ret = %d\n", "json_get_green_net_enable",
                  kKnownLine, result);
    }
    answer_query(obj, result != 0, kSwitch, &green_net, "get green net enable failed",
                 StatusAt::kLast);
    return result;
}

HANDLER(json_set_green_net_enable,
        setting<set_enable>(kSwitch, "set green net enable failed", "param error"))

int32_t json_get_green_net_list(cJSON *obj)
{
    constexpr const char *kFailure = "get host num failed";
    int32_t count = 0;
    if (devapi_get_greennet_num(&count) != 0) {
        return refuse(obj, kFailure);
    }
    SuccessReply reply;
    cJSON *list = reply.list("DeviceList");
    int32_t read = 0;
    for (int32_t index = 1; reply.complete() && read < count && index <= GREENNET_MAX_HOSTS;
         ++index) {
        GreenHostInfo device = {};
        put_index(&device, index, 6);
        if (devapi_get_green_net_info(&device) != 0) {
            LOG_ERROR("json get host %d info error.\n", index);
            continue;
        }
        ++read;
        if (is_entry(device) && !append_if_possible(list, kDevice, &device)) {
            log_error("cJSON_CreateObject error\n");
        }
    }
    return answer(obj, reply, kFailure);
}

int32_t json_set_green_net_list(cJSON *obj)
{
    cJSON *elements = array_of(obj, "DeviceList");
    if (elements == nullptr) {
        return refuse(obj, kNoList);
    }
    SuccessReply success;
    int32_t removal = 0;
    const char *failure = success.complete() ? replace_devices(elements, &removal) : kNoMemory;
    remove_key(obj, elements);
    if (failure != nullptr) {
        return refuse(obj, failure);
    }
    // The devices have been stored. The reply has both statuses, and apps read the last one.
    if (removal == 0 || fail(obj, "del green net info failed")) {
        success.join(obj);
    } else {
        fail(obj, kNoMemory);
    }
    return removal;
}

int32_t json_set_green_net_notify(cJSON *obj)
{
    constexpr const char *kFailure = "set host notify failed.";
    GreenHostInfo device = {};
    SettingRun run(obj, kNotifySetting, RemoveKeys::kAfterCall);
    if (!run.find(kNoList) || !run.fill(&device, kFailure)) {
        return -1;
    }
    int32_t index = 0;
    if (!find_host(device.Mac, &index)) {
        run.end(true, "get host index failed.");
        return -1;
    }
    put_index(&device, index, 6);
    const int32_t result = devapi_set_green_net_notify(&device);
    run.end(result != 0, kFailure);
    return result;
}

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

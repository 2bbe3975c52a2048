// Every function of device_access.h, made from its prototype: hands the call on and looks at what
// comes back.
#include "device_watch.h"

#include "smart_router_service/device_access.h"
#include "smart_router_service/device_functions.h"
#include "watched_arguments.h"
#include "watched_call.h"

#include <dlfcn.h>
#include <malloc.h>

namespace agent::watch {

namespace {

void *device_library = nullptr;
DeviceWatcher watcher;

// What a function may answer, where a caller takes any other result for a success or for nothing at
// all.
constexpr struct {
    const char *function;
    std::array<int32_t, 3> results;
} kResults[] = {{"devapi_del_device", {0, -1}},
                {"devapi_get_ad_base_info", {0, -1, 1000}},
                {"devapi_get_all_wifi_channel_list", {0, -1}},
                {"devapi_get_channel_ap_num", {0, -1}},
                {"devapi_get_host_num", {0, -1}},
                {"devapi_get_led_info", {0, -1}},
                {"devapi_get_sta_rssi_by_ip", {0, -1}},
                {"devapi_set_ad_base_info", {0, -1}},
                {"devapi_set_hg_dhcp_info", {0, -1}},
                {"devapi_set_lan_ip_info", {0, -1}},
                {"devapi_set_sta_led", {0, -1}},
                {"devapi_set_sta_tslink_config", {0, -1}},
                {"devapi_set_update_schedule", {0, -1}},
                {"devapi_set_uplink_wifi_info", {0, -1, -2}}};

void check_result(const Call &call, int32_t result)
{
    for (const auto &row : kResults) {
        if (strcmp(row.function, call.function()) == 0 &&
            std::find(row.results.begin(), row.results.end(), result) == row.results.end()) {
            call.fault("it answers " + std::to_string(result) + ", which the header does not know");
        }
    }
}

// The width of a text, where it is handed over.
template <class... Arguments> int32_t size_in(Arguments...)
{
    return 0;
}
int32_t size_in(char *, int32_t size)
{
    return size;
}

template <class Type> void take_size(Argument<Type> &, int32_t) {}
void take_size(Argument<char *> &text, int32_t size)
{
    text.take_size(size);
}

template <class... Types>
int32_t look_at(const Call &call, int32_t (*device)(Types...), [[maybe_unused]] int32_t size,
                Argument<Types> &&...arguments)
{
    (take_size(arguments, size), ...);
    call.begin();
    const int32_t result = device(arguments.handed()...);
    check_result(call, result);
    bool wrote = false;
    ((wrote = arguments.finish(call, result) || wrote), ...);
    call.end(result, wrote);
    return result;
}

template <class... Types>
int32_t pass_on(const Call &call, int32_t (*)(Types...), Types... arguments)
{
    if (call.device() == nullptr) {
        call.fault("the library has no such function");
        call.end(-1, false);
        return -1;
    }
    return look_at<Types...>(call, reinterpret_cast<int32_t (*)(Types...)>(call.device()),
                             size_in(arguments...), Argument<Types>(call, arguments)...);
}

// Frees a list: there is nothing to look at afterwards.
void pass_on(const Call &call, void (*)(TopoNode *), TopoNode *first)
{
    if (call.device() == nullptr) {
        call.fault("the library has no such function");
        return;
    }
    call.begin();
    reinterpret_cast<void (*)(TopoNode *)>(call.device())(first);
    call.end(0, true);
}

} // namespace

Call::Call(const char *function, const char *arguments)
    : function_(function), arguments_(arguments), device_(dlsym(device_library, function))
{
}

bool Call::has_argument(const char *name) const
{
    return strstr(arguments_, name) != nullptr;
}

void Call::begin() const
{
    watcher.calling(function_);
}

void Call::end(int32_t result, bool wrote) const
{
    watcher.answered(function_, result, wrote);
}

void Call::reason(const std::string &text) const
{
    watcher.reason(function_, text.c_str());
}

void Call::fault(const std::string &what) const
{
    watcher.fault(function_, what.c_str());
}

bool may_be_freed(const void *memory)
{
    Dl_info library;
    return dladdr(memory, &library) == 0;
}

size_t room_of(const void *memory)
{
    return malloc_usable_size(const_cast<void *>(memory));
}

} // namespace agent::watch

extern "C" __attribute__((visibility("default"))) void
device_watch_start(void *device, const agent::DeviceWatcher *watcher)
{
    agent::watch::device_library = device;
    agent::watch::watcher = *watcher;
}

#define COMMA_BEFORE(...) __VA_OPT__(, ) __VA_ARGS__
#define WATCHED_FUNCTION(result, name, parameters, arguments)                                      \
    __attribute__((visibility("default"))) result name parameters                                  \
    {                                                                                              \
        return agent::watch::pass_on(agent::watch::Call(#name, #arguments),                        \
                                     &name COMMA_BEFORE arguments);                                \
    }

DEVICE_FUNCTIONS(WATCHED_FUNCTION)

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

// Of some functions a caller takes any other result for a success or for nothing at all.
void check_result(const Call &call, int32_t result)
{
    const device_facts::Results &results = call.facts().results;
    if (!results.empty() && !results.contain(result)) {
        call.fault("it answers " + std::to_string(result) + ", which the header does not know");
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

Call::Call(const char *function)
    : function_(function), facts_(*device_facts::find(function)),
      device_(dlsym(device_library, function))
{
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

void Call::warn_of_empty(const std::vector<std::string> &texts) const
{
    constexpr size_t kMostNamed = 4;
    if (texts.empty()) {
        return;
    }
    std::string names;
    for (size_t at = 0; at < texts.size() && at < kMostNamed; ++at) {
        names += (at == 0 ? "" : ", ") + texts[at];
    }
    if (texts.size() > kMostNamed) {
        names += " and " + std::to_string(texts.size() - kMostNamed) + " more";
    }
    watcher.warning(function_, ("empty, and not \"NULL\": " + names).c_str());
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
        return agent::watch::pass_on(agent::watch::Call(#name), &name COMMA_BEFORE arguments);     \
    }

DEVICE_FUNCTIONS(WATCHED_FUNCTION)

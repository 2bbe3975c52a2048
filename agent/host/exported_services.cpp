// SPDX-License-Identifier: MIT
// The functions that the agent provides to the plug-in and to device libraries: the symbols that
// the executable exports (exports.list).
#include "host/plugin_services.h"
#include "smart_router_service/host_agent.h"

#include <atomic>
#include <cstdlib>
#include <dlfcn.h>
#include <link.h>
#include <span>
#include <unistd.h>

namespace agent {

namespace {

// Where a library is in memory.
struct AddressRange {
    uintptr_t base = 0; // as dladdr() gives it
    uintptr_t begin = 0;
    uintptr_t end = 0;
};

// Of the plug-in. The end is set last, and is 0 as long as the plug-in has no other services.
AddressRange plugin_range;
std::atomic<uintptr_t> plugin_end = 0;
std::atomic<PluginServices *> replaced = nullptr;

int find_range(dl_phdr_info *library, size_t, void *range)
{
    auto &wanted = *static_cast<AddressRange *>(range);
    for (const ElfW(Phdr) & segment : std::span(library->dlpi_phdr, library->dlpi_phnum)) {
        const uintptr_t begin = library->dlpi_addr + segment.p_vaddr;
        const uintptr_t end = begin + segment.p_memsz;
        if (segment.p_type == PT_LOAD && wanted.base >= begin && wanted.base < end) {
            wanted.begin = begin;
        }
        if (segment.p_type == PT_LOAD && wanted.begin != 0) {
            wanted.end = end;
        }
    }
    return wanted.begin != 0 ? 1 : 0;
}

PluginServices &services_of(const void *caller)
{
    const auto address = reinterpret_cast<uintptr_t>(caller);
    if (address < plugin_end.load(std::memory_order_acquire) && address >= plugin_range.begin) {
        return *replaced.load(std::memory_order_relaxed);
    }
    return host_services();
}

} // namespace

void replace_services(PluginServices &services, const void *in_plugin)
{
    Dl_info library = {};
    AddressRange range;
    if (dladdr(in_plugin, &library) == 0) {
        return;
    }
    range.base = reinterpret_cast<uintptr_t>(library.dli_fbase);
    dl_iterate_phdr(find_range, &range);
    plugin_end = 0;
    plugin_range = range;
    replaced = &services;
    plugin_end.store(range.end, std::memory_order_release);
}

} // namespace agent

#define SERVICES agent::services_of(__builtin_return_address(0))

void ts_mod_log_printf(const char *module, int32_t level, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    SERVICES.log(module, level, format, arguments);
    va_end(arguments);
}

char *base64_encode(const char *text)
{
    return SERVICES.base64_encode(text);
}

void getmd5(const char *text, char *out)
{
    SERVICES.getmd5(text, out);
}

void mac_form_translate(const char *in, int32_t form, char *out)
{
    SERVICES.mac_form_translate(in, form, out);
}

void ts_sys_mgr_get_brmac(char *mac)
{
    SERVICES.ts_sys_mgr_get_brmac(mac);
}

int32_t dev_is_exist(int32_t index)
{
    return SERVICES.dev_is_exist(index);
}

int32_t kaa_device_notice(const char *text)
{
    return SERVICES.kaa_device_notice(text);
}

int32_t kaa_update_profile_info()
{
    return SERVICES.kaa_update_profile_info();
}

void free_str_buf(char **text)
{
    SERVICES.free_str_buf(text);
}

// The following replace the C library's functions in the whole process. system(): a plug-in on a
// developer's machine must not be able to reboot it, or run anything else on it. The others are
// the C library's except for a plug-in that is recorded or replayed.
int system(const char *command)
{
    return SERVICES.system(command);
}

time_t time(time_t *result) noexcept(noexcept(::time(nullptr)))
{
    return SERVICES.time(result);
}

tm *localtime_r(const time_t *time, tm *result) noexcept(noexcept(::localtime_r(nullptr, nullptr)))
{
    return SERVICES.localtime_r(time, result);
}

unsigned sleep(unsigned seconds)
{
    return SERVICES.sleep(seconds);
}

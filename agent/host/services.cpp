// SPDX-License-Identifier: MIT
// What the functions that the agent provides to the plug-in and to device libraries do.
#include "host/device_reasons.h"
#include "host/notice_services.h"
#include "host/plugin_services.h"
#include "io/text.h"
#include "protocol/log_sink.h"
#include "simulated_gateway/simulated_gateway.h"
#include "smart_router_service/host_agent.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <string_view>
#include <unistd.h>

namespace agent {

namespace {

constexpr size_t kMaxMacText = 17;

// Whether the text matches the form, where x is a hexadecimal digit.
bool has_form(std::string_view text, std::string_view form)
{
    return std::equal(text.begin(), text.end(), form.begin(), form.end(),
                      [](char letter, char wanted) {
                          return wanted == 'x' ? isxdigit(static_cast<unsigned char>(letter)) != 0
                                               : letter == wanted;
                      });
}

bool is_mac(const char *text)
{
    const std::string_view form(text, strnlen(text, kMaxMacText + 1));
    return has_form(form, "xxxxxxxxxxxx") || has_form(form, "xx:xx:xx:xx:xx:xx") ||
           has_form(form, "xx-xx-xx-xx-xx-xx") || has_form(form, "xxxx.xxxx.xxxx");
}

// Null when the device library is not the simulated gateway.
template <class Function> Function *gateway_function(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_DEFAULT, name));
}

void power_cycle()
{
    const auto cycle =
        gateway_function<decltype(simulated_gateway_power_cycle)>("simulated_gateway_power_cycle");
    if (cycle != nullptr) {
        cycle();
    }
}

// The C library's function, which the agent's own hides.
template <class Function> Function *library_function(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

class HostServices : public PluginServices {
  public:
    void log(const char *module, int32_t level, const char *format, va_list arguments) override
    {
        va_list copy;
        va_copy(copy, arguments);
        log_arguments(module, level, format, arguments);
        if (level <= kLogError) {
            take_logged_error(module, format, copy);
        }
        va_end(copy);
    }

    char *base64_encode(const char *text) override { return base64_of(text); }
    void getmd5(const char *text, char *out) override { write_md5(text, out); }
    int32_t kaa_device_notice(const char *text) override { return pass_notice_on(text); }

    void mac_form_translate(const char *in, int32_t form, char *out) override
    {
        if (in != nullptr && (form == HG_MAC_WITH_COLONS || form == HG_MAC_BARE) && is_mac(in)) {
            int digits = 0;
            for (; *in != '\0'; ++in) {
                if (isxdigit(static_cast<unsigned char>(*in)) == 0) {
                    continue;
                }
                if (form == HG_MAC_WITH_COLONS && digits > 0 && digits % 2 == 0) {
                    *out++ = ':';
                }
                *out++ = static_cast<char>(toupper(static_cast<unsigned char>(*in)));
                ++digits;
            }
        }
        *out = '\0';
    }

    void ts_sys_mgr_get_brmac(char *mac) override
    {
        *mac = '\0';
        const auto bridge_mac = gateway_function<decltype(simulated_gateway_bridge_mac)>(
            "simulated_gateway_bridge_mac");
        if (bridge_mac != nullptr) {
            bridge_mac(mac, HG_BRIDGE_MAC_SIZE);
        }
    }

    int32_t dev_is_exist(int32_t) override { return 0; }

    int32_t kaa_update_profile_info() override
    {
        log_line(kLogInfo, "the profile has changed: an agent with a platform reports it again");
        return 0;
    }

    void free_str_buf(char **text) override
    {
        if (text != nullptr) {
            free(*text);
            *text = nullptr;
        }
    }

    int system(const char *command) override
    {
        if (command == nullptr) {
            return 0; // no shell is available
        }
        if (strcmp(command, "sync;reboot") == 0) {
            print_notice("the gateway reboots");
            power_cycle();
            return 0;
        }
        log_line(kLogError, "refused to run a command: %s", command);
        take_refused_command(command);
        return -1;
    }

    time_t time(time_t *result) override
    {
        static const auto function = library_function<decltype(::time)>("time");
        return function(result);
    }

    tm *localtime_r(const time_t *time, tm *result) override
    {
        static const auto function = library_function<decltype(::localtime_r)>("localtime_r");
        return function(time, result);
    }

    unsigned sleep(unsigned seconds) override
    {
        static const auto function = library_function<decltype(::sleep)>("sleep");
        return function(seconds);
    }
};

} // namespace

PluginServices &host_services()
{
    static HostServices services;
    return services;
}

} // namespace agent

// SPDX-License-Identifier: MIT
// The functions that the plug-in calls in its host: those of host_agent.h, and those of the C
// library whose answers depend on more than their arguments.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <ctime>

namespace agent {

// Called from any thread; exceptions must not reach the plug-in.
class PluginServices {
  public:
    PluginServices() = default;
    virtual ~PluginServices() = default;
    PluginServices(const PluginServices &) = delete;
    PluginServices &operator=(const PluginServices &) = delete;

    virtual void log(const char *module, int32_t level, const char *format, va_list arguments) = 0;
    virtual char *base64_encode(const char *text) = 0;
    virtual void getmd5(const char *text, char *out) = 0;
    virtual void mac_form_translate(const char *in, int32_t form, char *out) = 0;
    virtual void ts_sys_mgr_get_brmac(char *mac) = 0;
    virtual int32_t dev_is_exist(int32_t index) = 0;
    virtual int32_t kaa_device_notice(const char *text) = 0;
    virtual int32_t kaa_update_profile_info() = 0;
    virtual void free_str_buf(char **text) = 0;
    virtual int system(const char *command) = 0;
    virtual time_t time(time_t *result) = 0;
    virtual tm *localtime_r(const time_t *time, tm *result) = 0;
    virtual unsigned sleep(unsigned seconds) = 0;
};

// The functions themselves.
PluginServices &host_services();

// From now on the program's functions pass calls to these services if they come from the code of
// the library that contains the address.
void replace_services(PluginServices &services, const void *in_plugin);

} // namespace agent

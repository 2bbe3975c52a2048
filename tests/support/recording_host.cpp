// SPDX-License-Identifier: MIT
#include "recording_host.h"

#include "recording_device.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <mutex>

namespace recording_host {

namespace {

std::mutex mutex;
std::vector<LogLine> recorded;

} // namespace

std::vector<LogLine> log_lines()
{
    const std::lock_guard lock(mutex);
    return recorded;
}

void reset()
{
    const std::lock_guard lock(mutex);
    recorded.clear();
}

} // namespace recording_host

void ts_mod_log_printf(const char *module, int32_t level, const char *format, ...)
{
    EXPECT_STREQ(module, "libtsiotAgtd");
    va_list arguments;
    va_start(arguments, format);
    char *text = nullptr;
    const int length = vasprintf(&text, format, arguments);
    va_end(arguments);
    ASSERT_GE(length, 0);
    const std::lock_guard lock(recording_host::mutex);
    recording_host::recorded.push_back({level, std::string(text, static_cast<size_t>(length))});
    free(text);
}

char *base64_encode(const char *text)
{
    return recording_device::call<base64_encode>("base64_encode", text);
}

void getmd5(const char *text, char *out)
{
    recording_device::call<getmd5>("getmd5", text, out);
}

void mac_form_translate(const char *in, int32_t form, char *out)
{
    recording_device::call<mac_form_translate>("mac_form_translate", in, form, out);
}

int32_t kaa_device_notice(const char *text)
{
    return recording_device::call<kaa_device_notice>("kaa_device_notice", text);
}

void ts_sys_mgr_get_brmac(char *mac)
{
    recording_device::call<ts_sys_mgr_get_brmac>("ts_sys_mgr_get_brmac", mac);
}

int32_t dev_is_exist(int32_t index)
{
    return recording_device::call<dev_is_exist>("dev_is_exist", index);
}

void free_str_buf(char **text)
{
    const char *held = *text;
    recording_device::write_down("free_str_buf", {recording_device::contents(held)});
    free(*text);
    *text = nullptr;
}

int32_t kaa_update_profile_info()
{
    return recording_device::call<kaa_update_profile_info>("kaa_update_profile_info");
}

// Replaces the C library's function: no test may restart the machine that it runs on.
int system(const char *command)
{
    return recording_device::call<system>("system", command);
}

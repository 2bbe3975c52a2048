/* SPDX-License-Identifier: MIT */
/*
 * A device library with one fault, which the environment names: FAULT=unterminated_text and so on.
 * Without the variable the library is correct. Functions that it does not support are those of the
 * example's layer.
 */
#include "fault.h"
#include "smart_router_service/device_access.h"
#include "smart_router_service/host_agent.h"

#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

int has(const char *fault)
{
    const char *wanted = getenv("FAULT");
    return wanted != NULL && strcmp(wanted, fault) == 0;
}

/* Writes out of bounds in a way that the compiler does not detect. */
static void overrun(void *to, long from, long end)
{
    volatile char *bytes = to;
    for (long at = from; at < end; ++at) {
        bytes[at] = 'x';
    }
}

int32_t device_access_version(void)
{
    if (has("writes_to_other_files")) {
        for (int descriptor = 3; descriptor < 64; ++descriptor) {
            dprintf(descriptor, "x\n");
        }
    }
    return has("other_major_version")   ? DEVICE_ACCESS_VERSION + 65536 + 7
           : has("other_minor_version") ? DEVICE_ACCESS_VERSION + 7
           : has("negative_version")    ? -1
                                        : DEVICE_ACCESS_VERSION;
}

int32_t devapi_get_sn_info(SnInfo *info)
{
    if (has("crash")) {
        abort();
    }
    if (has("realtime_signal")) {
        raise(SIGRTMIN + 1);
    }
    if (has("exit")) {
        _exit(3);
    }
    if (has("hang")) {
        fputs("hanging\n", stderr);
        for (;;) {
            pause();
        }
    }
    if (has("failure")) {
        return -7;
    }
    if (has("nothing_written")) {
        return 0;
    }
    if (has("writes_behind")) {
        overrun(info, 0, (long)sizeof *info + 1);
        info->MAC[63] = '\0';
        info->tslinkstatus[7] = '\0';
        info->DeviceType[255] = '\0';
        return 0;
    }
    if (has("writes_before")) {
        overrun(info, -1, 1);
        return 0;
    }
    memset(info->MAC, 'M', has("unterminated_text") ? sizeof info->MAC : sizeof info->MAC - 1);
    info->DeviceType[0] = 'D';
    return 0;
}

int32_t devapi_get_uplink_qos_info(QosInfo *info)
{
    info->Enable[0] = '1';
    info->rule_count = has("count_beyond_array") ? QOS_MAX_RULES + 1 : 1;
    info->rules[0].type_count = has("inner_count_beyond_array") ? QOS_MAX_TYPES + 1 : -1;
    if (has("unterminated_inner_text")) {
        memset(info->rules[0].Name, 'N', sizeof info->rules[0].Name);
    }
    return 0;
}

int32_t devapi_get_update_status_info(UpdateStatusInfo *info)
{
    info->Name[0] = 'N';
    return 0;
}

int32_t devapi_get_host_num(int32_t *count)
{
    *count = has("negative_number") ? -5
             : has("endless_walk")  ? INT32_MAX
             : has("no_number")     ? 1
                                    : 0;
    return 0;
}

int32_t devapi_get_ad_base_info(AdBaseInfo *info)
{
    info->Name[0] = 'N';
    if (has("no_number")) {
        memcpy(info->UpSpeed, "fast", sizeof "fast");
        memcpy(info->DownSpeed, "NULL", sizeof "NULL");
        memcpy(info->NetStatus, "-1", sizeof "-1");
    }
    return 0;
}

int32_t devapi_get_led_info(LedInfo *info)
{
    info->LedSwitch[0] = '1';
    return has("undocumented_result") ? 1 : 0;
}

int32_t devapi_get_net_fault_info(char *reason)
{
    overrun(reason, 0, has("wide_text") ? 17 : 15);
    return 0;
}

int32_t devapi_get_uplink_status(char *status, int32_t size)
{
    overrun(status, 0, has("unterminated_sized_text") ? size : size - 1);
    return 0;
}

int32_t devapi_scan_channel_power(ChannelPowerResult *result)
{
    static ChannelPower kept[3];
    result->count = 3;
    result->entries = has("foreign_array") ? kept
                      : has("null_array")  ? NULL
                                           : calloc(has("short_array") ? 1 : 3, sizeof *kept);
    return 0;
}

int32_t devapi_get_scan_ssid(ScanResult *result)
{
    static ScanEntry kept;
    result->entries[7] = has("foreign_entry") ? &kept : calloc(1, sizeof kept);
    return 0;
}

/* ---- Settings ---------------------------------------------------------------------------------
 */

static char upnp = '1';
static int times_set = 0;

int32_t devapi_get_upnp_state(UpnpState *state)
{
    if (has("hostile_text") && times_set > 0) {
        memcpy(state->Enable, "<&\"\x1b\xef\xbf\xbf", sizeof "<&\"\x1b\xef\xbf\xbf");
        return 0;
    }
    if (has("refused_command") && system("upnpc --state") != 0) {
        return -1;
    }
    if (has("refused_command_unnoticed")) {
        (void)!system("upnpc --state");
    }
    if (has("says_why")) {
        ts_mod_log_printf("faulty", 3, "no daemon answers, Password:%s\n", "hidden");
        return -1;
    }
    state->Enable[0] = upnp;
    return 0;
}

int32_t devapi_set_upnp_state(const UpnpState *state)
{
    ++times_set;
    if (has("refuses_to_restore") && times_set == 2) {
        return -1;
    }
    if (has("writes_into_setting")) {
        overrun((void *)state, 1, 2);
    }
    if (!has("setting_does_not_stick") && !(has("setting_stays_changed") && times_set == 2)) {
        upnp = state->Enable[0];
    }
    return 0;
}

int32_t devapi_get_lan_ip_info(LanIpInfo *info)
{
    info->GatewayLanIP[0] = '1';
    info->SubnetMask[0] = '2';
    info->StartIp[0] = '3';
    info->EndIp[0] = '4';
    return 0;
}

int32_t devapi_set_lan_ip_info(LanIpSetting *setting)
{
    if (has("fail_reason")) {
        memset(setting->FailReason, 'R', sizeof setting->FailReason);
        return -1;
    }
    return 0;
}

static char password[16] = "first";

int32_t devapi_get_web_login_info(LoginInfo *info)
{
    info->WebLoginType[0] = '1';
    memcpy(info->Password, password, sizeof password);
    return 0;
}

int32_t devapi_set_web_login_info(const LoginInfo *info)
{
    if (!has("password_does_not_stick")) {
        memcpy(password, info->Password, sizeof password);
    }
    return 0;
}

int32_t devapi_set_kaa_heartbeat(const char *heartbeat)
{
    return heartbeat[0] == '\0' ? -1 : 0;
}

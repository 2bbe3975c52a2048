// SPDX-License-Identifier: MIT
// The administrator's account, the web login, restart and factory recovery, and the schedules of
// restarts and of sleep.
#include "core/device_call.h"
#include "simulation/life_cycle.h"

using namespace simulated_gateway;

// ---- Logins ------------------------------------------------------------------------------------

int32_t devapi_get_admin_info(LoginInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        put(info->Name, state.home.administration.admin_name);
        put(info->Password, state.home.administration.admin_password);
        return 0;
    });
}

int32_t devapi_set_admin_info(const LoginInfo *info)
{
    return setting(__func__, {request("info", info)}, [&](State &state) {
        Administration &administration = state.home.administration;
        administration.admin_type = taken("Type", info->Type, kAdminTypes);
        administration.admin_name = taken_text("Name", info->Name);
        administration.admin_password = taken_text("Password", info->Password);
        return 0;
    });
}

int32_t devapi_set_web_login_type(const LoginInfo *info)
{
    return setting(__func__, {request("info", info)}, [&](State &state) {
        state.home.administration.web_login_type =
            taken("WebLoginType", info->WebLoginType, kWebLoginTypes);
        return 0;
    });
}

int32_t devapi_get_web_login_info(LoginInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        put(info->Password, state.home.administration.web_login_password);
        put(info->WebLoginType, state.home.administration.web_login_type);
        put(info->WebLoginIp, state.home.lan.ip);
        return 0;
    });
}

int32_t devapi_set_web_login_info(const LoginInfo *info)
{
    return setting(__func__, {request("info", info)}, [&](State &state) {
        Administration &administration = state.home.administration;
        administration.web_login_type = taken("WebLoginType", info->WebLoginType, kWebLoginTypes);
        administration.web_login_password = taken_text("Password", info->Password);
        return 0;
    });
}

// ---- Restart and recovery ----------------------------------------------------------------------

int32_t devapi_recovery()
{
    return setting(__func__, {}, [](State &state) {
        state.home = state.factory;
        state.removed_hosts.clear();
        boot(state);
        return 0;
    });
}

int32_t devapi_reboot()
{
    return setting(__func__, {}, [](State &state) {
        boot(state);
        return 0;
    });
}

// ---- Schedules ---------------------------------------------------------------------------------

int32_t devapi_get_reboot_info(RebootInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        const RebootSchedule &schedule = state.home.reboot_schedule;
        put(info->GatewayRebootEnable, schedule.enabled);
        put(info->Time, schedule.time);
        put(info->DaysOfWeek, schedule.days);
        return 0;
    });
}

int32_t devapi_set_reboot_info(const RebootInfo *info)
{
    // The model checks whether a schedule needs a time and days.
    return setting(__func__, {request("info", info)}, [&](State &state) {
        RebootSchedule &schedule = state.home.reboot_schedule;
        schedule.enabled = taken_flag("GatewayRebootEnable", info->GatewayRebootEnable);
        schedule.time = taken_if_any(info->Time);
        schedule.days = taken_if_any(info->DaysOfWeek);
        return 0;
    });
}

int32_t devapi_get_hg_sleep_info(HgSleepInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        const SleepSchedule &sleep = state.home.sleep;
        put(info->GatewaySleepEnable, sleep.gateway);
        put(info->WiFiSleepEnable, sleep.wifi);
        put(info->LedSleepEnable, sleep.leds);
        put(info->StartTime, sleep.start);
        put(info->EndTime, sleep.end);
        return 0;
    });
}

int32_t devapi_set_hg_sleep_info(const HgSleepInfo *info)
{
    // The model checks which times a sleep schedule needs.
    return setting(__func__, {request("info", info)}, [&](State &state) {
        SleepSchedule &sleep = state.home.sleep;
        sleep.gateway = taken_flag("GatewaySleepEnable", info->GatewaySleepEnable);
        sleep.wifi = taken_flag("WiFiSleepEnable", info->WiFiSleepEnable);
        sleep.leds = taken_flag("LedSleepEnable", info->LedSleepEnable);
        sleep.start = taken_if_any(info->StartTime);
        sleep.end = taken_if_any(info->EndTime);
        return 0;
    });
}

// SPDX-License-Identifier: MIT
// The administrator's account, the web login, restart and factory recovery, and the schedules of
// restarts and of sleep.
#include "recipes.h"

using namespace smart_router;

namespace {

constexpr auto kAdminFields = Fields{
    FIELD(LoginInfo, Name),
    FIELD(LoginInfo, Password),
};

constexpr auto kAdminSetting = Fields{
    FIELD(LoginInfo, Type),
    FIELD(LoginInfo, Name),
    FIELD(LoginInfo, Password),
};

constexpr auto kWebLoginType = Fields{FIELD_AS(LoginInfo, WebLoginType, "Type")};

constexpr auto kWebLoginFields = Fields{
    FIELD(LoginInfo, Password),
    FIELD(LoginInfo, WebLoginType),
    FIELD(LoginInfo, WebLoginIp),
};

constexpr auto kWebLoginSetting = Fields{
    FIELD(LoginInfo, WebLoginType),
    FIELD(LoginInfo, Password),
};

constexpr auto kRebootFields = Fields{
    FIELD(RebootInfo, GatewayRebootEnable),
    FIELD(RebootInfo, Time),
    FIELD(RebootInfo, DaysOfWeek),
};

constexpr auto kSleepFields = Fields{
    FIELD(HgSleepInfo, GatewaySleepEnable),
    FIELD(HgSleepInfo, WiFiSleepEnable),
    FIELD(HgSleepInfo, LedSleepEnable),
    FIELD(HgSleepInfo, StartTime),
    FIELD(HgSleepInfo, EndTime),
};

} // namespace

HANDLER(json_get_admin_info, query<devapi_get_admin_info>(kAdminFields, "get admin info failed"))
HANDLER(json_set_admin_info, setting<devapi_set_admin_info>(kAdminSetting, "set admin info failed"))

HANDLER(json_set_web_login_type,
        setting<devapi_set_web_login_type>(kWebLoginType, "set web login type failed"))
HANDLER(json_get_web_login_info,
        query<devapi_get_web_login_info>(kWebLoginFields, "get web login info failed"))
HANDLER(json_set_web_login_info,
        setting<devapi_set_web_login_info>(kWebLoginSetting, "set web login info failed"))

HANDLER(json_set_recovery, action<devapi_recovery>("recovery failed"))
HANDLER(json_reboot, action<devapi_reboot>("reboot failed"))

HANDLER(json_get_reboot_info,
        query<devapi_get_reboot_info>(kRebootFields, "get reboot info failed"))
HANDLER(json_set_reboot_info,
        setting<devapi_set_reboot_info>(kRebootFields, "set reboot info failed"))

HANDLER(json_get_hg_sleep_info,
        query<devapi_get_hg_sleep_info>(kSleepFields, "get hg sleep info failed"))
HANDLER(json_set_hg_sleep_info,
        setting<devapi_set_hg_sleep_info>(kSleepFields, "SET_HG_SLEEP_INFO_FAIL"))

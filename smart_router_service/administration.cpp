// The administrator's account, the web login, restart and factory recovery, and the schedules of
// restarts and of sleep.
#include "handler_support.h"

using namespace smart_router;

namespace {

constexpr auto kAdminFields = Fields{
    FIELD(LoginInfo, "Name", Name),
    FIELD(LoginInfo, "Password", Password),
};

constexpr auto kAdminSetting = Fields{
    FIELD(LoginInfo, "Type", Type),
    FIELD(LoginInfo, "Name", Name),
    FIELD(LoginInfo, "Password", Password),
};

constexpr auto kWebLoginType = Fields{FIELD(LoginInfo, "Type", WebLoginType)};

constexpr auto kWebLoginFields = Fields{
    FIELD(LoginInfo, "Password", Password),
    FIELD(LoginInfo, "WebLoginType", WebLoginType),
    FIELD(LoginInfo, "WebLoginIp", WebLoginIp),
};

constexpr auto kWebLoginSetting = Fields{
    FIELD(LoginInfo, "WebLoginType", WebLoginType),
    FIELD(LoginInfo, "Password", Password),
};

constexpr auto kRebootFields = Fields{
    FIELD(RebootInfo, "GatewayRebootEnable", GatewayRebootEnable),
    FIELD(RebootInfo, "Time", Time),
    FIELD(RebootInfo, "DaysOfWeek", DaysOfWeek),
};

constexpr auto kSleepFields = Fields{
    FIELD(HgSleepInfo, "GatewaySleepEnable", GatewaySleepEnable),
    FIELD(HgSleepInfo, "WiFiSleepEnable", WiFiSleepEnable),
    FIELD(HgSleepInfo, "LedSleepEnable", LedSleepEnable),
    FIELD(HgSleepInfo, "StartTime", StartTime),
    FIELD(HgSleepInfo, "EndTime", EndTime),
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

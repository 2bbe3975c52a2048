// SPDX-License-Identifier: MIT
// Base information, home page, LAN addresses, DHCP server and PPPoE account of the gateway.
#include "recipes.h"

using namespace smart_router;

namespace {

// ---- Base information --------------------------------------------------------------------------

constexpr auto kBaseFields = Fields{
    FIELD(HgBaseInfo, Name),        FIELD(HgBaseInfo, Mac),       FIELD(HgBaseInfo, NetStatus),
    FIELD(HgBaseInfo, UpSpeed),     FIELD(HgBaseInfo, DownSpeed), FIELD(HgBaseInfo, WiFiStatus1),
    FIELD(HgBaseInfo, WiFiStatus2), FIELD(HgBaseInfo, SSID1),     FIELD(HgBaseInfo, SSID2),
    FIELD(HgBaseInfo, ip),          FIELD(HgBaseInfo, HWVersion), FIELD(HgBaseInfo, FWVersion),
    FIELD(HgBaseInfo, FWDATA),      FIELD(HgBaseInfo, UpTime),    FIELD(HgBaseInfo, DeviceType),
    FIELD(HgBaseInfo, AreaCode),    FIELD(HgBaseInfo, Wlan0Mac),  FIELD(HgBaseInfo, Wlan1Mac),
    FIELD(HgBaseInfo, WanLinkMode), FIELD(HgBaseInfo, Cpu),       FIELD(HgBaseInfo, Memory),
};

constexpr auto kBaseLanFields = Fields{
    FIELD_AS(LanIpInfo, GatewayLanIP, "LanIp"),
};

constexpr auto kBaseWanFields = Fields{
    FIELD(WanIpInfo, WanGateWay),
    FIELD(WanIpInfo, Dns),
};

constexpr auto kNameField = Fields{FIELD(HgBaseInfo, Name)};

constexpr auto kHomePageFields = Fields{
    FIELD(HomePageInfo, Devname),        FIELD(HomePageInfo, UploadSpeed),
    FIELD(HomePageInfo, DownloadSpeed),  FIELD(HomePageInfo, GameSpeed),
    FIELD(HomePageInfo, GamePort),       FIELD(HomePageInfo, GameBand),
    FIELD(HomePageInfo, CpuRate),        FIELD(HomePageInfo, MemRate),
    FIELD(HomePageInfo, CpuTemperature),
};

// ---- LAN, DHCP and PPPoE -----------------------------------------------------------------------

constexpr auto kLanFields = Fields{
    FIELD(LanIpInfo, GatewayLanIP),
    FIELD(LanIpInfo, SubnetMask),
    FIELD(LanIpInfo, StartIp),
    FIELD(LanIpInfo, EndIp),
};

constexpr auto kDhcpFields = Fields{
    FIELD(DhcpInfo, Enable),
    FIELD(DhcpInfo, IPAddress),
    FIELD(DhcpInfo, SubNetMask),
    FIELD(DhcpInfo, GateWay),
};

constexpr auto kDhcpSwitch = Fields{FIELD(DhcpInfo, Enable)};

constexpr auto kPppoeFields = Fields{
    FIELD(PppoeInfo, Account),
    FIELD(PppoeInfo, Password),
    FIELD(PppoeInfo, Enable),
};

constexpr auto kPppoeAccountFields = Fields{
    FIELD(PppoeInfo, Enable),
    FIELD(PppoeInfo, Account),
    FIELD(PppoeInfo, Password),
};

// What the three settings reply to an invalid request, in place of a reason from the device.
constexpr char kInvalidParam[] = "INVALID_PARAM";

constexpr char kPppoeFailure[] = "get hg pppoe info failed";

} // namespace

int32_t json_get_hg_base_info(cJSON *obj)
{
    constexpr const char *kFailure = "get base info error!";
    HgBaseInfo base;
    LanIpInfo lan;
    WanIpInfo wan;
    const bool has_base = read_or_empty<devapi_get_hg_base_info>(base);
    const bool has_lan = read_or_empty<devapi_get_lan_ip_info>(lan);
    const bool has_wan = read_or_empty<devapi_get_wan_ip_info>(wan);
    // Partial information is still reported.
    if (!has_base && !has_lan && !has_wan) {
        return refuse(obj, kFailure);
    }
    SuccessReply reply;
    reply.fields(kBaseFields, &base);
    reply.fields(kBaseLanFields, &lan);
    reply.fields(kBaseWanFields, &wan);
    reply.text("MeshInfo", "[]"); // a string, which apps parse themselves
    return answer(obj, reply, kFailure);
}

HANDLER(json_set_hg_base_info, (setting<devapi_set_hg_base_info, RemoveKeys::kOnSuccess>(
                                   kNameField, "set hg base info failed", "param format error")))

HANDLER(json_get_home_page_info,
        query<devapi_get_home_page_info>(kHomePageFields, "get home page info failed"))

HANDLER(json_get_hg_lanip_info, query<devapi_get_lan_ip_info>(kLanFields, "get lan ip info failed"))

int32_t json_set_hg_lanip_info(cJSON *obj)
{
    LanIpSetting lan = {};
    SettingRun run(obj, kLanFields, RemoveKeys::kAlways);
    if (!run.find(kInvalidParam)) {
        // The text of the PPPoE setting: tools that read the log expect it here as well.
        log_error("json_set_hg_pppoe_info : Err, null param");
        return -1;
    }
    LOG_DEBUG("json_set_hg_lanip_info, GatewayLanIP:%s| SubnetMask:%s| StartIp:%s| EndIp:%s",
              run.text(0), run.text(1), run.text(2), run.text(3));
    if (!run.fill(&lan.info, lan.FailReason)) {
        return -1;
    }
    const int32_t result = devapi_set_lan_ip_info(&lan);
    run.end(minus_one(result), lan.FailReason, sizeof lan.FailReason);
    return result;
}

HANDLER(json_get_hg_dhcp_info, query<devapi_get_hg_dhcp_info>(kDhcpFields, "get hg dhcp failed"))

int32_t json_set_hg_dhcp_info(cJSON *obj)
{
    DhcpSetting dhcp = {};
    SettingRun run(obj, kDhcpSwitch, RemoveKeys::kAlways);
    if (!run.find(kInvalidParam)) {
        log_error("json_set_hg_dhcp_info : Err, null param");
        return -1;
    }
    LOG_DEBUG("json_set_hg_dhcp_info,Enable:%s", run.text(0));
    if (!run.fill(&dhcp.info, dhcp.FailReason)) {
        return -1;
    }
    const int32_t result = devapi_set_hg_dhcp_info(&dhcp);
    run.end(minus_one(result), dhcp.FailReason, sizeof dhcp.FailReason);
    return result;
}

int32_t json_get_hg_pppoe_info(cJSON *obj)
{
    PppoeInfo pppoe = {};
    const int32_t result = devapi_get_hg_pppoe_info(&pppoe);
    if (result != 0) {
        fail(obj, kPppoeFailure);
        return result;
    }
    SuccessReply reply;
    if (holds(pppoe.Enable, "1")) {
        reply.fields(kPppoeAccountFields, &pppoe);
    } else {
        reply.text("Enable", "0"); // the gateway keeps an account that is not in use
    }
    answer(obj, reply, kPppoeFailure);
    return result;
}

int32_t json_set_hg_pppoe_info(cJSON *obj)
{
    PppoeSetting pppoe = {};
    SettingRun run(obj, kPppoeFields, RemoveKeys::kAlways);
    if (!run.find(kInvalidParam)) {
        log_error("json_set_hg_pppoe_info : Err, null param");
        return -1;
    }
    LOG_DEBUG("json_set_hg_pppoe_info, Account:%s|Password:%s|Enable:%s", run.text(0), run.text(1),
              run.text(2));
    if (!run.fill(&pppoe.info, pppoe.FailReason)) {
        return -1;
    }
    const int32_t result = devapi_set_hg_pppoe_info(&pppoe);
    run.end(non_zero(result), pppoe.FailReason, sizeof pppoe.FailReason);
    return result;
}

// Base information and home page of the gateway, its LAN addresses, DHCP server and PPPoE account.
#include "address_plan.h"
#include "clock.h"
#include "device_call.h"
#include "measurements.h"

#include <algorithm>

using namespace simulated_gateway;

// ---- Base information --------------------------------------------------------------------------

static void describe(RecordText &text, const HgBaseInfo &info)
{
    text.field("Name", info.Name);
    text.field("Mac", info.Mac);
    text.field("NetStatus", info.NetStatus);
    text.field("UpSpeed", info.UpSpeed);
    text.field("DownSpeed", info.DownSpeed);
    text.field("WiFiStatus1", info.WiFiStatus1);
    text.field("WiFiStatus2", info.WiFiStatus2);
    text.field("SSID1", info.SSID1);
    text.field("SSID2", info.SSID2);
    text.field("Wlan1Mac", info.Wlan1Mac);
    text.field("Wlan0Mac", info.Wlan0Mac);
    text.field("ip", info.ip);
    text.field("HWVersion", info.HWVersion);
    text.field("FWVersion", info.FWVersion);
    text.field("FWDATA", info.FWDATA);
    text.field("UpTime", info.UpTime);
    text.field("WanUptime", info.WanUptime);
    text.field("DeviceType", info.DeviceType);
    text.field("AreaCode", info.AreaCode);
    text.field("AddressType", info.AddressType);
    text.field("Cpu", info.Cpu);
    text.field("QQGameAcceleratorEnable", info.QQGameAcceleratorEnable);
    text.field("QosAcceleratorEnable", info.QosAcceleratorEnable);
    text.field("FireWallEnable", info.FireWallEnable);
    text.field("LedLight", info.LedLight);
    text.field("LedSwitch", info.LedSwitch);
    text.field("Memory", info.Memory);
    text.field("WanLinkMode", info.WanLinkMode);
    text.field("ConfiguerStatus", info.ConfiguerStatus);
}

// What the base information says of one radio; of a radio that is not there, nothing.
struct RadioSummary {
    std::string status;
    std::string ssid;
    std::string mac;
};

static RadioSummary summary_of_radio(const Home &home, size_t at)
{
    if (at >= home.radios.size()) {
        return {};
    }
    const Radio &radio = home.radios[at];
    const auto ssid = std::ranges::find(home.ssids, radio.band, &Ssid::band);
    return {radio.enabled ? "1" : "0", ssid != home.ssids.end() ? ssid->name : "", radio.mac};
}

int32_t devapi_get_hg_base_info(HgBaseInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        const Home &home = state.home;
        const RadioSummary first = summary_of_radio(home, 0);
        const RadioSummary second = summary_of_radio(home, 1);
        put(info->Name, home.name);
        put(info->Mac, home.identity.mac);
        put(info->NetStatus, home.wan.connected);
        put(info->UpSpeed, up_kbps(state));
        put(info->DownSpeed, down_kbps(state));
        put(info->WiFiStatus1, first.status);
        put(info->WiFiStatus2, second.status);
        put(info->SSID1, first.ssid);
        put(info->SSID2, second.ssid);
        put(info->Wlan0Mac, first.mac);
        put(info->Wlan1Mac, second.mac);
        put(info->ip, home.lan.ip);
        put(info->HWVersion, home.identity.hardware_version);
        put(info->FWVersion, home.identity.software_version);
        put(info->FWDATA, home.identity.firmware_date);
        put(info->UpTime, seconds_since(state.boot_time));
        put(info->WanUptime, home.wan.connected ? seconds_since(state.wan_time) : 0);
        put(info->DeviceType, home.identity.device_type);
        put(info->AreaCode, home.identity.area_code);
        put(info->AddressType, std::string(home.wan.mode == "Static" ? "Static" : "Dynamic"));
        put(info->Cpu, cpu_percent(state));
        put(info->QQGameAcceleratorEnable, home.services.game_acceleration);
        put(info->QosAcceleratorEnable, home.services.qos_acceleration);
        put(info->FireWallEnable, home.services.firewall);
        put(info->LedLight, home.leds.brightness_percent);
        put(info->LedSwitch, home.leds.on);
        put(info->Memory, memory_percent(state));
        put(info->WanLinkMode, home.wan.mode);
        put(info->ConfiguerStatus, home.configured);
        return 0;
    });
}

int32_t devapi_set_hg_base_info(const HgBaseInfo *info)
{
    return setting(__func__, {request("info", info)}, [&](State &state) {
        state.home.name = taken_text("Name", info->Name);
        return 0;
    });
}

static void describe(RecordText &text, const HomePageInfo &info)
{
    text.field("Devname", info.Devname);
    text.field("UploadSpeed", info.UploadSpeed);
    text.field("DownloadSpeed", info.DownloadSpeed);
    text.field("GameSpeed", info.GameSpeed);
    text.field("GamePort", info.GamePort);
    text.field("GameBand", info.GameBand);
    text.field("CpuRate", info.CpuRate);
    text.field("MemRate", info.MemRate);
    text.field("CpuTemperature", info.CpuTemperature);
}

int32_t devapi_get_home_page_info(HomePageInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        const Services &services = state.home.services;
        put(info->Devname, state.home.name);
        put(info->UploadSpeed, up_kbps(state));
        put(info->DownloadSpeed, down_kbps(state));
        put(info->GameSpeed, services.game_acceleration);
        put(info->GamePort, services.game_port != 0 ? std::to_string(services.game_port) : "");
        put(info->GameBand, services.game_band);
        put(info->CpuRate, cpu_percent(state));
        put(info->MemRate, memory_percent(state));
        put(info->CpuTemperature, cpu_celsius(state));
        return 0;
    });
}

// ---- LAN, WAN and DHCP -------------------------------------------------------------------------

static void describe(RecordText &text, const LanIpInfo &info)
{
    text.field("GatewayLanIP", info.GatewayLanIP);
    text.field("SubnetMask", info.SubnetMask);
    text.field("StartIp", info.StartIp);
    text.field("EndIp", info.EndIp);
}

static void describe(RecordText &text, const LanIpSetting &setting)
{
    describe(text, setting.info);
    text.field("FailReason", setting.FailReason);
}

int32_t devapi_get_lan_ip_info(LanIpInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        const Lan &lan = state.home.lan;
        put(info->GatewayLanIP, lan.ip);
        put(info->SubnetMask, lan.subnet_mask);
        put(info->StartIp, lan.dhcp_pool.start);
        put(info->EndIp, lan.dhcp_pool.end);
        return 0;
    });
}

int32_t devapi_set_lan_ip_info(LanIpSetting *wanted)
{
    return setting(__func__, {request_with_reason("setting", wanted)}, [&](State &state) {
        Lan plan = state.home.lan;
        plan.ip = taken(wanted->info.GatewayLanIP);
        plan.subnet_mask = taken(wanted->info.SubnetMask);
        plan.dhcp_pool.start = taken(wanted->info.StartIp);
        plan.dhcp_pool.end = taken(wanted->info.EndIp);
        move_lan(state.home, plan);
        return 0;
    });
}

static void describe(RecordText &text, const WanIpInfo &info)
{
    text.field("ip", info.ip);
    text.field("Dns", info.Dns);
    text.field("WanGateWay", info.WanGateWay);
    text.field("ConnectionState", info.ConnectionState);
}

int32_t devapi_get_wan_ip_info(WanIpInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        // Without a connection the WAN has no addresses.
        const Wan wan = state.home.wan.connected ? state.home.wan : Wan();
        put(info->ip, wan.ip);
        put(info->Dns, wan.secondary_dns.empty() ? wan.primary_dns
                                                 : wan.primary_dns + "," + wan.secondary_dns);
        put(info->WanGateWay, wan.gateway);
        put(info->ConnectionState, std::string(connection_state(wan)));
        return 0;
    });
}

static void describe(RecordText &text, const DhcpInfo &info)
{
    text.field("Enable", info.Enable);
    text.field("IPAddress", info.IPAddress);
    text.field("SubNetMask", info.SubNetMask);
    text.field("GateWay", info.GateWay);
}

static void describe(RecordText &text, const DhcpSetting &setting)
{
    text.field("Enable", setting.info.Enable);
    text.field("FailReason", setting.FailReason);
}

int32_t devapi_get_hg_dhcp_info(DhcpInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        const Lan &lan = state.home.lan;
        put(info->Enable, lan.dhcp_pool.enabled);
        put(info->IPAddress, lan.ip);
        put(info->SubNetMask, lan.subnet_mask);
        put(info->GateWay, lan.ip);
        return 0;
    });
}

int32_t devapi_set_hg_dhcp_info(DhcpSetting *wanted)
{
    return setting(__func__, {request_with_reason("setting", wanted)}, [&](State &state) {
        state.home.lan.dhcp_pool.enabled = taken_flag("Enable", wanted->info.Enable);
        return 0;
    });
}

// ---- PPPoE -------------------------------------------------------------------------------------

static void describe(RecordText &text, const PppoeInfo &info)
{
    text.field("Account", info.Account);
    text.secret("Password", info.Password);
    text.field("Enable", info.Enable);
}

static void describe(RecordText &text, const PppoeSetting &setting)
{
    describe(text, setting.info);
    text.field("FailReason", setting.FailReason);
}

int32_t devapi_get_hg_pppoe_info(PppoeInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        const Wan &wan = state.home.wan;
        put(info->Account, wan.pppoe_account);
        put(info->Password, wan.pppoe_password);
        put(info->Enable, wan.mode == kPppoeMode);
        return 0;
    });
}

int32_t devapi_set_hg_pppoe_info(PppoeSetting *wanted)
{
    return setting(__func__, {request_with_reason("setting", wanted)}, [&](State &state) {
        Wan &wan = state.home.wan;
        const PppoeInfo &info = wanted->info;
        const bool enable = taken_flag("Enable", info.Enable);
        // Who switches PPPoE off need not know the account, which is kept for the next time.
        if (enable || !taken(info.Account).empty()) {
            wan.pppoe_account = taken_text("Account", info.Account);
        }
        if (enable || !taken(info.Password).empty()) {
            wan.pppoe_password = taken_text("Password", info.Password);
        }
        const bool was_enabled = wan.mode == kPppoeMode;
        if (enable != was_enabled) {
            wan.mode = enable ? kPppoeMode : "DHCP";
        }
        if (enable || was_enabled) {
            reconnect(state);
        }
        return 0;
    });
}

// SPDX-License-Identifier: MIT
// Base information and home page of the gateway, its LAN addresses, DHCP server and PPPoE account.
#include "core/device_call.h"
#include "io/clock.h"
#include "model/address_plan.h"
#include "simulation/metrics.h"

#include <algorithm>

using namespace simulated_gateway;

// ---- Base information --------------------------------------------------------------------------

// The part of the base information about one radio; empty if there is no such radio.
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

int32_t devapi_get_wan_ip_info(WanIpInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        // While disconnected, the WAN has no addresses.
        const Wan wan = state.home.wan.connected ? state.home.wan : Wan();
        put(info->ip, wan.ip);
        put(info->Dns, wan.secondary_dns.empty() ? wan.primary_dns
                                                 : wan.primary_dns + "," + wan.secondary_dns);
        put(info->WanGateWay, wan.gateway);
        put(info->ConnectionState, std::string(connection_state(wan)));
        return 0;
    });
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

// Takes a text, unless there is none and none is required.
template <size_t width>
static void take_given(const char *name, const char (&field)[width], bool required,
                       std::string &value)
{
    const std::string text = taken_if_any(field);
    if (required || !text.empty()) {
        refuse_for(name, validation_error(text, Text{width}));
        value = text;
    }
}

int32_t devapi_set_hg_pppoe_info(PppoeSetting *wanted)
{
    return setting(__func__, {request_with_reason("setting", wanted)}, [&](State &state) {
        Wan &wan = state.home.wan;
        const PppoeInfo &info = wanted->info;
        const bool enable = taken_flag("Enable", info.Enable);
        // The account is not needed to switch PPPoE off; the stored one is kept for the next time.
        take_given("Account", info.Account, enable, wan.pppoe_account);
        take_given("Password", info.Password, enable, wan.pppoe_password);
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

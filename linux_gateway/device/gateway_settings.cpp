// SPDX-License-Identifier: MIT
// Base information and home page of the gateway, its LAN addresses and its DHCP server.
#include "core/device_call.h"
#include "core/internet.h"
#include "system/dhcp_server.h"
#include "system/load_meter.h"
#include "system/machine.h"

#include "smart_router_service/device_access.h"

using namespace linux_gateway;

// ---- Base information --------------------------------------------------------------------------

int32_t devapi_get_hg_base_info(HgBaseInfo *info)
{
    return query(__func__, [&](const View &view) {
        const Network &network = *view.network;
        const Software software = view.software.read();
        const std::shared_ptr<const Load> load = view.meter.load();
        const Rates wan = load->rates_of(view.network->wan_name);
        put(info->Name, gateway_name(view));
        put(info->Mac, to_text(network.bridge.mac));
        put(info->NetStatus, network.is_wan_connected());
        put(info->UpSpeed, wan.sent_kbps);
        put(info->DownSpeed, wan.received_kbps);
        put(info->WiFiStatus1, false);
        put(info->WiFiStatus2, false);
        put(info->SSID1, "");
        put(info->SSID2, "");
        put(info->Wlan1Mac, "");
        put(info->Wlan0Mac, "");
        put(info->ip, first_text(network.bridge.ipv4));
        put(info->HWVersion, view.machine.hardware_version);
        put(info->FWVersion, software.version);
        put(info->FWDATA, software.date);
        put(info->UpTime, uptime_seconds());
        put(info->WanUptime, wan_uptime(network));
        put(info->DeviceType, view.machine.product);
        put(info->AreaCode, view.configuration.area_code);
        put(info->AddressType, wan_mode(network) == kStaticMode ? kStaticMode : "Dynamic");
        put(info->Cpu, load->cpu_percent);
        put(info->QQGameAcceleratorEnable, false);
        put(info->QosAcceleratorEnable, false);
        put(info->FireWallEnable, "");
        put(info->LedLight, "");
        put(info->LedSwitch, "");
        put(info->Memory, load->memory_percent);
        put(info->WanLinkMode, wan_mode(network));
        put(info->ConfiguerStatus, true);
        return 0;
    });
}

int32_t devapi_set_hg_base_info(const HgBaseInfo *info)
{
    return setting(__func__, [&](State &state, const View &) {
        const std::string name = taken(info->Name);
        if (name.empty()) {
            throw Error("Name: is empty");
        }
        state.name = name;
    });
}

int32_t devapi_get_home_page_info(HomePageInfo *info)
{
    return query(__func__, [&](const View &view) {
        const std::shared_ptr<const Load> load = view.meter.load();
        const Rates wan = load->rates_of(view.network->wan_name);
        const std::optional<int64_t> celsius = processor_temperature();
        put(info->Devname, gateway_name(view));
        put(info->UploadSpeed, wan.sent_kbps);
        put(info->DownloadSpeed, wan.received_kbps);
        put(info->GameSpeed, false);
        put(info->GamePort, "");
        put(info->GameBand, "");
        put(info->CpuRate, load->cpu_percent);
        put(info->MemRate, load->memory_percent);
        put(info->CpuTemperature, celsius ? std::to_string(*celsius) : "");
        return 0;
    });
}

// ---- LAN, WAN and DHCP -------------------------------------------------------------------------

int32_t devapi_get_lan_ip_info(LanIpInfo *info)
{
    return query(__func__, [&](const View &view) {
        const Address address = lan_address(*view.network);
        const DhcpServer server = read_dhcp_server(view.configuration.dnsmasq_configuration);
        const DhcpServer::Range *range = server.range_in(address.text, address.prefix_length);
        put(info->GatewayLanIP, address.text);
        put(info->SubnetMask, mask_of(address.prefix_length));
        put(info->StartIp, range != nullptr ? range->start : "");
        put(info->EndIp, range != nullptr ? range->end : "");
        return 0;
    });
}

int32_t devapi_get_wan_ip_info(WanIpInfo *info)
{
    return query(__func__, [&](const View &view) {
        const Network &network = *view.network;
        std::string servers;
        for (const std::string &server : name_servers(view.configuration)) {
            if (servers.size() + 1 + server.size() >= sizeof(info->Dns)) {
                break; // part of an address would be another one
            }
            servers += (servers.empty() ? "" : ",") + server;
        }
        put(info->ip, network.wan ? first_text(network.wan->ipv4) : "");
        put(info->Dns, servers);
        put(info->WanGateWay, network.gateway_ipv4);
        put(info->ConnectionState, connection_state(network.is_wan_connected()));
        return 0;
    });
}

int32_t devapi_get_hg_dhcp_info(DhcpInfo *info)
{
    return query(__func__, [&](const View &view) {
        const Address address = lan_address(*view.network);
        const DhcpServer server = read_dhcp_server(view.configuration.dnsmasq_configuration);
        const bool has_range = server.range_in(address.text, address.prefix_length) != nullptr;
        put(info->Enable, has_range && is_dhcp_server_running());
        put(info->IPAddress, address.text);
        put(info->SubNetMask, mask_of(address.prefix_length));
        put(info->GateWay, server.router.empty() ? address.text : server.router);
        return 0;
    });
}

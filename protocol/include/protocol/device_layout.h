/* SPDX-License-Identifier: MIT */
// The memory layout of the arguments of the device functions and the fields of their records, and
// the properties of each, for programs that handle calls of any function generically.
// Generated from protocol/device by protocol/generate.py.
#pragma once

#include "smart_router_service/device_access.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <string_view>

// clang-format off
namespace device_layout {

// kAddress is a number as wide as a pointer.
enum class Kind : uint8_t { kText, kInt16, kInt32, kAddress, kRecord };
enum class Pointer : uint8_t { kNone, kOne, kArray, kNext };
enum class Way : uint8_t { kValue, kIn, kOut, kInOut };

struct Field {
    const char *name;
    Kind kind = Kind::kText;
    size_t offset = 0;
    size_t size = 0;                  // of one entry; for a pointer, of what it points to
    size_t length = 1;                // number of entries that there is room for
    Pointer pointer = Pointer::kNone; // what the entries point to
    int record = -1;                  // index in kRecords
    int counted_by = -1;              // index of the field with the number of entries
    bool is_array = false;
    bool negative_is_none = false;    // of a count: it may be negative
    bool is_reserved = false;
    bool is_secret = false;
    bool may_be_empty = false;        // an empty text has a meaning
    bool is_number = false;           // a text that the plug-in reads as a decimal number
    std::string_view form = {};
};

struct Record {
    const char *name;
    size_t size;
    std::span<const Field> fields;
};

struct Argument {
    const char *name;
    Kind kind;
    Way way = Way::kValue;
    size_t width = 0;               // of a text; 0 if it may have any
    int size_at = -1;               // index of the argument with the width
    bool is_size_less_one = false;  // that argument is the width minus one
    int record = -1;                // index in kRecords
    bool is_chain = false;          // the first node of a list
    bool is_handed_over = false;    // set to memory that the caller frees
    bool is_count = false;          // a count, which is not negative
    bool is_filled = false;         // filled on success
    bool is_secret = false;
    std::string_view form = {};
};

struct Function {
    const char *name;
    std::span<const Argument> arguments = {};
    bool has_result = true;
    bool frees = false; // it frees its argument
    bool reads = false; // it changes nothing on the device
};

namespace parts {
inline constexpr Field fields_of_SnInfo[] = {
    {.name = "MAC", .kind = Kind::kText, .offset = offsetof(SnInfo, MAC), .size = 64, .form = "mac"},
    {.name = "tslinkstatus", .kind = Kind::kText, .offset = offsetof(SnInfo, tslinkstatus), .size = 8, .form = "link_state"},
    {.name = "DeviceType", .kind = Kind::kText, .offset = offsetof(SnInfo, DeviceType), .size = 256, .form = "device_type"},
};
inline constexpr Field fields_of_SystemInfo[] = {
    {.name = "SWVersion", .kind = Kind::kText, .offset = offsetof(SystemInfo, SWVersion), .size = 64, .form = "version"},
    {.name = "HDVersion", .kind = Kind::kText, .offset = offsetof(SystemInfo, HDVersion), .size = 64, .form = "hardware"},
    {.name = "ProductCLass", .kind = Kind::kText, .offset = offsetof(SystemInfo, ProductCLass), .size = 64, .form = "device_type"},
    {.name = "CPUClass", .kind = Kind::kText, .offset = offsetof(SystemInfo, CPUClass), .size = 64, .form = "words"},
    {.name = "DEVType", .kind = Kind::kText, .offset = offsetof(SystemInfo, DEVType), .size = 64, .form = "words"},
    {.name = "DEVType1", .kind = Kind::kText, .offset = offsetof(SystemInfo, DEVType1), .size = 64, .form = "words"},
    {.name = "Capability", .kind = Kind::kText, .offset = offsetof(SystemInfo, Capability), .size = 64, .form = "abilities"},
    {.name = "Card", .kind = Kind::kText, .offset = offsetof(SystemInfo, Card), .size = 64, .form = "words"},
    {.name = "UPLink", .kind = Kind::kText, .offset = offsetof(SystemInfo, UPLink), .size = 64, .form = "words"},
    {.name = "Cardno", .kind = Kind::kText, .offset = offsetof(SystemInfo, Cardno), .size = 64, .form = "words"},
    {.name = "IPV6", .kind = Kind::kText, .offset = offsetof(SystemInfo, IPV6), .size = 64, .form = "flag"},
    {.name = "VLANbind", .kind = Kind::kText, .offset = offsetof(SystemInfo, VLANbind), .size = 64, .form = "flag"},
    {.name = "LED", .kind = Kind::kText, .offset = offsetof(SystemInfo, LED), .size = 64, .form = "flag"},
    {.name = "NFC", .kind = Kind::kText, .offset = offsetof(SystemInfo, NFC), .size = 64, .form = "flag"},
    {.name = "VLANCapability", .kind = Kind::kText, .offset = offsetof(SystemInfo, VLANCapability), .size = 192, .form = "vlan_handling"},
};
inline constexpr Field fields_of_HgBaseInfo[] = {
    {.name = "Name", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, Name), .size = 64, .form = "name"},
    {.name = "Mac", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, Mac), .size = 32, .form = "mac"},
    {.name = "NetStatus", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, NetStatus), .size = 16, .form = "link_state"},
    {.name = "UpSpeed", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, UpSpeed), .size = 32, .form = "rate"},
    {.name = "DownSpeed", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, DownSpeed), .size = 32, .form = "rate"},
    {.name = "WiFiStatus1", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, WiFiStatus1), .size = 32, .form = "switch"},
    {.name = "WiFiStatus2", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, WiFiStatus2), .size = 32, .form = "switch"},
    {.name = "SSID1", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, SSID1), .size = 32, .form = "name"},
    {.name = "SSID2", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, SSID2), .size = 32, .form = "name"},
    {.name = "Wlan1Mac", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, Wlan1Mac), .size = 32, .form = "mac"},
    {.name = "Wlan0Mac", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, Wlan0Mac), .size = 32, .form = "mac"},
    {.name = "ip", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, ip), .size = 32, .form = "ipv4"},
    {.name = "HWVersion", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, HWVersion), .size = 32, .form = "hardware"},
    {.name = "FWVersion", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, FWVersion), .size = 32, .form = "version"},
    {.name = "FWDATA", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, FWDATA), .size = 32, .form = "date"},
    {.name = "UpTime", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, UpTime), .size = 32, .form = "duration"},
    {.name = "WanUptime", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, WanUptime), .size = 32, .form = "duration"},
    {.name = "DeviceType", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, DeviceType), .size = 32, .form = "device_type"},
    {.name = "AreaCode", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, AreaCode), .size = 32, .form = "area_code"},
    {.name = "AddressType", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, AddressType), .size = 16, .form = "addressing"},
    {.name = "Cpu", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, Cpu), .size = 8, .form = "percent"},
    {.name = "QQGameAcceleratorEnable", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, QQGameAcceleratorEnable), .size = 16, .form = "switch"},
    {.name = "QosAcceleratorEnable", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, QosAcceleratorEnable), .size = 16, .form = "switch"},
    {.name = "FireWallEnable", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, FireWallEnable), .size = 16, .form = "switch"},
    {.name = "LedLight", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, LedLight), .size = 8, .form = "percent"},
    {.name = "LedSwitch", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, LedSwitch), .size = 8, .form = "switch"},
    {.name = "Memory", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, Memory), .size = 8, .form = "percent"},
    {.name = "WanLinkMode", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, WanLinkMode), .size = 8, .form = "wan_mode"},
    {.name = "ConfiguerStatus", .kind = Kind::kText, .offset = offsetof(HgBaseInfo, ConfiguerStatus), .size = 128, .form = "flag"},
};
inline constexpr Field fields_of_LanIpInfo[] = {
    {.name = "GatewayLanIP", .kind = Kind::kText, .offset = offsetof(LanIpInfo, GatewayLanIP), .size = 32, .form = "ipv4"},
    {.name = "SubnetMask", .kind = Kind::kText, .offset = offsetof(LanIpInfo, SubnetMask), .size = 32, .form = "mask"},
    {.name = "StartIp", .kind = Kind::kText, .offset = offsetof(LanIpInfo, StartIp), .size = 32, .form = "ipv4"},
    {.name = "EndIp", .kind = Kind::kText, .offset = offsetof(LanIpInfo, EndIp), .size = 32, .form = "ipv4"},
};
inline constexpr Field fields_of_LanIpSetting[] = {
    {.name = "info", .kind = Kind::kRecord, .offset = offsetof(LanIpSetting, info), .size = sizeof(LanIpInfo), .record = 3},
    {.name = "FailReason", .kind = Kind::kText, .offset = offsetof(LanIpSetting, FailReason), .size = 64, .may_be_empty = true, .form = "reason"},
};
inline constexpr Field fields_of_WanIpInfo[] = {
    {.name = "ip", .kind = Kind::kText, .offset = offsetof(WanIpInfo, ip), .size = 34, .form = "ipv4"},
    {.name = "Dns", .kind = Kind::kText, .offset = offsetof(WanIpInfo, Dns), .size = 65, .form = "dns_servers"},
    {.name = "WanGateWay", .kind = Kind::kText, .offset = offsetof(WanIpInfo, WanGateWay), .size = 32, .form = "ipv4"},
    {.name = "ConnectionState", .kind = Kind::kText, .offset = offsetof(WanIpInfo, ConnectionState), .size = 32, .form = "wan_state"},
};
inline constexpr Field fields_of_HomePageInfo[] = {
    {.name = "Devname", .kind = Kind::kText, .offset = offsetof(HomePageInfo, Devname), .size = 64, .form = "name"},
    {.name = "UploadSpeed", .kind = Kind::kText, .offset = offsetof(HomePageInfo, UploadSpeed), .size = 64, .form = "rate"},
    {.name = "DownloadSpeed", .kind = Kind::kText, .offset = offsetof(HomePageInfo, DownloadSpeed), .size = 64, .form = "rate"},
    {.name = "GameSpeed", .kind = Kind::kText, .offset = offsetof(HomePageInfo, GameSpeed), .size = 8, .form = "switch"},
    {.name = "GamePort", .kind = Kind::kText, .offset = offsetof(HomePageInfo, GamePort), .size = 8, .form = "game_port"},
    {.name = "GameBand", .kind = Kind::kText, .offset = offsetof(HomePageInfo, GameBand), .size = 8, .form = "band"},
    {.name = "CpuRate", .kind = Kind::kText, .offset = offsetof(HomePageInfo, CpuRate), .size = 64, .form = "percent"},
    {.name = "MemRate", .kind = Kind::kText, .offset = offsetof(HomePageInfo, MemRate), .size = 64, .form = "percent"},
    {.name = "CpuTemperature", .kind = Kind::kText, .offset = offsetof(HomePageInfo, CpuTemperature), .size = 64, .form = "temperature"},
};
inline constexpr Field fields_of_DhcpInfo[] = {
    {.name = "Enable", .kind = Kind::kText, .offset = offsetof(DhcpInfo, Enable), .size = 16, .form = "switch"},
    {.name = "IPAddress", .kind = Kind::kText, .offset = offsetof(DhcpInfo, IPAddress), .size = 64, .form = "ipv4"},
    {.name = "SubNetMask", .kind = Kind::kText, .offset = offsetof(DhcpInfo, SubNetMask), .size = 64, .form = "mask"},
    {.name = "GateWay", .kind = Kind::kText, .offset = offsetof(DhcpInfo, GateWay), .size = 64, .form = "ipv4"},
};
inline constexpr Field fields_of_DhcpSetting[] = {
    {.name = "info", .kind = Kind::kRecord, .offset = offsetof(DhcpSetting, info), .size = sizeof(DhcpInfo), .record = 7},
    {.name = "FailReason", .kind = Kind::kText, .offset = offsetof(DhcpSetting, FailReason), .size = 64, .may_be_empty = true, .form = "reason"},
};
inline constexpr Field fields_of_PppoeInfo[] = {
    {.name = "Account", .kind = Kind::kText, .offset = offsetof(PppoeInfo, Account), .size = 64, .form = "account"},
    {.name = "Password", .kind = Kind::kText, .offset = offsetof(PppoeInfo, Password), .size = 64, .is_secret = true, .form = "password"},
    {.name = "Enable", .kind = Kind::kText, .offset = offsetof(PppoeInfo, Enable), .size = 16, .form = "switch"},
};
inline constexpr Field fields_of_PppoeSetting[] = {
    {.name = "info", .kind = Kind::kRecord, .offset = offsetof(PppoeSetting, info), .size = sizeof(PppoeInfo), .record = 9},
    {.name = "FailReason", .kind = Kind::kText, .offset = offsetof(PppoeSetting, FailReason), .size = 64, .may_be_empty = true, .form = "reason"},
};
inline constexpr Field fields_of_LoginInfo[] = {
    {.name = "WebLoginType", .kind = Kind::kText, .offset = offsetof(LoginInfo, WebLoginType), .size = 8, .form = "web_login"},
    {.name = "Type", .kind = Kind::kText, .offset = offsetof(LoginInfo, Type), .size = 8, .form = "admin_type"},
    {.name = "Name", .kind = Kind::kText, .offset = offsetof(LoginInfo, Name), .size = 128, .form = "name"},
    {.name = "Password", .kind = Kind::kText, .offset = offsetof(LoginInfo, Password), .size = 128, .is_secret = true, .form = "password"},
    {.name = "WebLoginIp", .kind = Kind::kText, .offset = offsetof(LoginInfo, WebLoginIp), .size = 64, .form = "ipv4"},
};
inline constexpr Field fields_of_RebootInfo[] = {
    {.name = "GatewayRebootEnable", .kind = Kind::kText, .offset = offsetof(RebootInfo, GatewayRebootEnable), .size = 8, .form = "switch"},
    {.name = "Time", .kind = Kind::kText, .offset = offsetof(RebootInfo, Time), .size = 8, .form = "time_of_day"},
    {.name = "DaysOfWeek", .kind = Kind::kText, .offset = offsetof(RebootInfo, DaysOfWeek), .size = 16, .form = "weekdays"},
};
inline constexpr Field fields_of_HgSleepInfo[] = {
    {.name = "GatewaySleepEnable", .kind = Kind::kText, .offset = offsetof(HgSleepInfo, GatewaySleepEnable), .size = 8, .form = "switch"},
    {.name = "WiFiSleepEnable", .kind = Kind::kText, .offset = offsetof(HgSleepInfo, WiFiSleepEnable), .size = 8, .form = "switch"},
    {.name = "LedSleepEnable", .kind = Kind::kText, .offset = offsetof(HgSleepInfo, LedSleepEnable), .size = 8, .form = "switch"},
    {.name = "StartTime", .kind = Kind::kText, .offset = offsetof(HgSleepInfo, StartTime), .size = 8, .form = "time_of_day"},
    {.name = "EndTime", .kind = Kind::kText, .offset = offsetof(HgSleepInfo, EndTime), .size = 8, .form = "time_of_day"},
};
inline constexpr Field fields_of_NetInspectInfo[] = {
    {.name = "reserved0", .kind = Kind::kText, .offset = offsetof(NetInspectInfo, reserved0), .size = 128, .is_reserved = true},
    {.name = "WanStatus", .kind = Kind::kText, .offset = offsetof(NetInspectInfo, WanStatus), .size = 64, .form = "connection_state"},
    {.name = "NetStatus", .kind = Kind::kText, .offset = offsetof(NetInspectInfo, NetStatus), .size = 392, .form = "link_state"},
    {.name = "WanIP", .kind = Kind::kText, .offset = offsetof(NetInspectInfo, WanIP), .size = 64, .form = "ipv4"},
    {.name = "NetMask", .kind = Kind::kText, .offset = offsetof(NetInspectInfo, NetMask), .size = 256, .form = "mask"},
    {.name = "DnsStatus", .kind = Kind::kText, .offset = offsetof(NetInspectInfo, DnsStatus), .size = 8, .form = "link_state"},
    {.name = "NetQuality", .kind = Kind::kText, .offset = offsetof(NetInspectInfo, NetQuality), .size = 1032, .form = "quality"},
};
inline constexpr Field fields_of_WifiInspectInfo[] = {
    {.name = "WiFiDevNum", .kind = Kind::kText, .offset = offsetof(WifiInspectInfo, WiFiDevNum), .size = 8, .form = "amount"},
    {.name = "Security", .kind = Kind::kText, .offset = offsetof(WifiInspectInfo, Security), .size = 8, .form = "security"},
    {.name = "Channel", .kind = Kind::kText, .offset = offsetof(WifiInspectInfo, Channel), .size = 8, .form = "channel"},
    {.name = "Congestion", .kind = Kind::kText, .offset = offsetof(WifiInspectInfo, Congestion), .size = 8, .form = "percent"},
    {.name = "PowerLevel", .kind = Kind::kText, .offset = offsetof(WifiInspectInfo, PowerLevel), .size = 8, .form = "percent"},
    {.name = "FireWallEnable", .kind = Kind::kText, .offset = offsetof(WifiInspectInfo, FireWallEnable), .size = 4, .form = "switch"},
};
inline constexpr Field fields_of_FwInspectInfo[] = {
    {.name = "FWVersion", .kind = Kind::kText, .offset = offsetof(FwInspectInfo, FWVersion), .size = 1088, .form = "version"},
};
inline constexpr Field fields_of_ResourceInfo[] = {
    {.name = "CpuPercent", .kind = Kind::kText, .offset = offsetof(ResourceInfo, CpuPercent), .size = 8, .form = "percent"},
    {.name = "MemPercent", .kind = Kind::kText, .offset = offsetof(ResourceInfo, MemPercent), .size = 8, .form = "percent"},
    {.name = "LanDevNum", .kind = Kind::kText, .offset = offsetof(ResourceInfo, LanDevNum), .size = 8, .form = "amount"},
    {.name = "ProtectedDevNum", .kind = Kind::kText, .offset = offsetof(ResourceInfo, ProtectedDevNum), .size = 8, .form = "amount"},
};
inline constexpr Field fields_of_SsidInfo[] = {
    {.name = "SSIDIndex", .kind = Kind::kInt32, .offset = offsetof(SsidInfo, SSIDIndex), .size = sizeof(int32_t)},
    {.name = "SSID", .kind = Kind::kText, .offset = offsetof(SsidInfo, SSID), .size = 64, .form = "name"},
    {.name = "PWD", .kind = Kind::kText, .offset = offsetof(SsidInfo, PWD), .size = 64, .is_secret = true, .form = "password"},
    {.name = "ENCRYPT", .kind = Kind::kText, .offset = offsetof(SsidInfo, ENCRYPT), .size = 8, .form = "encryption"},
    {.name = "PowerLevel", .kind = Kind::kText, .offset = offsetof(SsidInfo, PowerLevel), .size = 64, .form = "percent"},
    {.name = "Channel", .kind = Kind::kText, .offset = offsetof(SsidInfo, Channel), .size = 8, .form = "channel"},
    {.name = "UsedChannel", .kind = Kind::kText, .offset = offsetof(SsidInfo, UsedChannel), .size = 8, .form = "channel"},
    {.name = "Enable", .kind = Kind::kText, .offset = offsetof(SsidInfo, Enable), .size = 8, .form = "switch"},
    {.name = "Bandwidth", .kind = Kind::kText, .offset = offsetof(SsidInfo, Bandwidth), .size = 16, .form = "bandwidth"},
    {.name = "Type", .kind = Kind::kText, .offset = offsetof(SsidInfo, Type), .size = 16, .is_number = true, .form = "band_number"},
    {.name = "Mode", .kind = Kind::kText, .offset = offsetof(SsidInfo, Mode), .size = 8, .form = "standard"},
    {.name = "AdvertisementEnable", .kind = Kind::kText, .offset = offsetof(SsidInfo, AdvertisementEnable), .size = 8, .form = "given_switch"},
    {.name = "Beamforming", .kind = Kind::kText, .offset = offsetof(SsidInfo, Beamforming), .size = 8, .form = "given_switch"},
    {.name = "PermissionProperty", .kind = Kind::kText, .offset = offsetof(SsidInfo, PermissionProperty), .size = 8, .form = "permission"},
};
inline constexpr Field fields_of_WifiSleepInfo[] = {
    {.name = "StartTimer", .kind = Kind::kInt32, .offset = offsetof(WifiSleepInfo, StartTimer), .size = sizeof(int32_t)},
    {.name = "EndTimer", .kind = Kind::kInt32, .offset = offsetof(WifiSleepInfo, EndTimer), .size = sizeof(int32_t)},
    {.name = "Enable", .kind = Kind::kText, .offset = offsetof(WifiSleepInfo, Enable), .size = 16, .form = "switch"},
    {.name = "StartTime", .kind = Kind::kText, .offset = offsetof(WifiSleepInfo, StartTime), .size = 32, .form = "time_of_day"},
    {.name = "EndTime", .kind = Kind::kText, .offset = offsetof(WifiSleepInfo, EndTime), .size = 32, .form = "time_of_day"},
    {.name = "DaysOfWeek", .kind = Kind::kText, .offset = offsetof(WifiSleepInfo, DaysOfWeek), .size = 32, .form = "weekdays"},
};
inline constexpr Field fields_of_ScanEntry[] = {
    {.name = "SSID", .kind = Kind::kText, .offset = offsetof(ScanEntry, SSID), .size = 64, .form = "name"},
    {.name = "PowerLevel", .kind = Kind::kText, .offset = offsetof(ScanEntry, PowerLevel), .size = 64, .form = "signal"},
    {.name = "ENCRYPT", .kind = Kind::kText, .offset = offsetof(ScanEntry, ENCRYPT), .size = 64, .form = "encryption"},
    {.name = "WPACypher", .kind = Kind::kText, .offset = offsetof(ScanEntry, WPACypher), .size = 64, .form = "cipher"},
    {.name = "WPA2Cypher", .kind = Kind::kText, .offset = offsetof(ScanEntry, WPA2Cypher), .size = 64, .form = "cipher"},
    {.name = "Band", .kind = Kind::kText, .offset = offsetof(ScanEntry, Band), .size = 64, .form = "band"},
    {.name = "Connected", .kind = Kind::kText, .offset = offsetof(ScanEntry, Connected), .size = 64, .form = "flag"},
};
inline constexpr Field fields_of_ScanResult[] = {
    {.name = "reserved0", .kind = Kind::kInt32, .offset = offsetof(ScanResult, reserved0), .size = sizeof(int32_t), .is_reserved = true},
    {.name = "entries", .kind = Kind::kRecord, .offset = offsetof(ScanResult, entries), .size = sizeof(ScanEntry), .length = 60, .pointer = Pointer::kOne, .record = 20, .is_array = true},
};
inline constexpr Field fields_of_ChannelPower[] = {
    {.name = "name", .kind = Kind::kText, .offset = offsetof(ChannelPower, name), .size = 64, .form = "name"},
    {.name = "dbpower", .kind = Kind::kText, .offset = offsetof(ChannelPower, dbpower), .size = 64, .form = "signal"},
};
inline constexpr Field fields_of_ChannelPowerResult[] = {
    {.name = "count", .kind = Kind::kInt32, .offset = offsetof(ChannelPowerResult, count), .size = sizeof(int32_t), .negative_is_none = true},
    {.name = "entries", .kind = Kind::kRecord, .offset = offsetof(ChannelPowerResult, entries), .size = sizeof(ChannelPower), .pointer = Pointer::kArray, .record = 22, .counted_by = 0, .is_array = true},
};
inline constexpr Field fields_of_WifiChannelList[] = {
    {.name = "count_24g", .kind = Kind::kInt32, .offset = offsetof(WifiChannelList, count_24g), .size = sizeof(int32_t)},
    {.name = "count_5g", .kind = Kind::kInt32, .offset = offsetof(WifiChannelList, count_5g), .size = sizeof(int32_t)},
    {.name = "channels_24g", .kind = Kind::kInt16, .offset = offsetof(WifiChannelList, channels_24g), .size = sizeof(int16_t), .length = 64, .counted_by = 0, .is_array = true},
    {.name = "channels_5g", .kind = Kind::kInt16, .offset = offsetof(WifiChannelList, channels_5g), .size = sizeof(int16_t), .length = 64, .counted_by = 1, .is_array = true},
};
inline constexpr Field fields_of_GuestWifiInfo[] = {
    {.name = "reserved0", .kind = Kind::kText, .offset = offsetof(GuestWifiInfo, reserved0), .size = 4, .is_reserved = true},
    {.name = "RadioEnable", .kind = Kind::kText, .offset = offsetof(GuestWifiInfo, RadioEnable), .size = 8, .form = "switch"},
    {.name = "Enable", .kind = Kind::kText, .offset = offsetof(GuestWifiInfo, Enable), .size = 16, .form = "switch"},
    {.name = "SSID", .kind = Kind::kText, .offset = offsetof(GuestWifiInfo, SSID), .size = 64, .form = "name"},
    {.name = "Band", .kind = Kind::kText, .offset = offsetof(GuestWifiInfo, Band), .size = 16, .form = "band"},
    {.name = "ContinueTime", .kind = Kind::kText, .offset = offsetof(GuestWifiInfo, ContinueTime), .size = 8, .form = "days"},
    {.name = "HourTime", .kind = Kind::kText, .offset = offsetof(GuestWifiInfo, HourTime), .size = 8, .form = "hours"},
    {.name = "EndTimestamp", .kind = Kind::kText, .offset = offsetof(GuestWifiInfo, EndTimestamp), .size = 16, .form = "seconds_left"},
    {.name = "Remainingtime", .kind = Kind::kText, .offset = offsetof(GuestWifiInfo, Remainingtime), .size = 16, .form = "seconds_left"},
    {.name = "PWD", .kind = Kind::kText, .offset = offsetof(GuestWifiInfo, PWD), .size = 64, .is_secret = true, .form = "password"},
    {.name = "ENCRYPT", .kind = Kind::kText, .offset = offsetof(GuestWifiInfo, ENCRYPT), .size = 16, .form = "encryption"},
    {.name = "Mode", .kind = Kind::kText, .offset = offsetof(GuestWifiInfo, Mode), .size = 8, .form = "standard"},
    {.name = "AdvertisementEnable", .kind = Kind::kText, .offset = offsetof(GuestWifiInfo, AdvertisementEnable), .size = 8, .form = "given_switch"},
    {.name = "PermissionProperty", .kind = Kind::kText, .offset = offsetof(GuestWifiInfo, PermissionProperty), .size = 8, .form = "permission"},
};
inline constexpr Field fields_of_UplinkWifiInfo[] = {
    {.name = "SSID", .kind = Kind::kText, .offset = offsetof(UplinkWifiInfo, SSID), .size = 64, .form = "name"},
    {.name = "PWD", .kind = Kind::kText, .offset = offsetof(UplinkWifiInfo, PWD), .size = 64, .is_secret = true, .form = "password"},
    {.name = "ENCRYPT", .kind = Kind::kText, .offset = offsetof(UplinkWifiInfo, ENCRYPT), .size = 64, .form = "encryption"},
    {.name = "WPACypher", .kind = Kind::kText, .offset = offsetof(UplinkWifiInfo, WPACypher), .size = 64, .form = "cipher"},
    {.name = "WPA2Cypher", .kind = Kind::kText, .offset = offsetof(UplinkWifiInfo, WPA2Cypher), .size = 64, .form = "cipher"},
    {.name = "Band", .kind = Kind::kText, .offset = offsetof(UplinkWifiInfo, Band), .size = 128, .form = "band"},
};
inline constexpr Field fields_of_UpdateStatusInfo[] = {
    {.name = "Name", .kind = Kind::kText, .offset = offsetof(UpdateStatusInfo, Name), .size = 64, .form = "name"},
    {.name = "HWVersion", .kind = Kind::kText, .offset = offsetof(UpdateStatusInfo, HWVersion), .size = 64, .form = "hardware"},
    {.name = "FWVersion", .kind = Kind::kText, .offset = offsetof(UpdateStatusInfo, FWVersion), .size = 64, .form = "version"},
    {.name = "FWDATA", .kind = Kind::kText, .offset = offsetof(UpdateStatusInfo, FWDATA), .size = 64, .form = "date"},
    {.name = "DeviceType", .kind = Kind::kText, .offset = offsetof(UpdateStatusInfo, DeviceType), .size = 64, .form = "device_type"},
    {.name = "AreaCode", .kind = Kind::kText, .offset = offsetof(UpdateStatusInfo, AreaCode), .size = 40, .form = "area_code"},
};
inline constexpr Field fields_of_WanNum[] = {
    {.name = "NUM", .kind = Kind::kText, .offset = offsetof(WanNum, NUM), .size = 8, .form = "amount"},
    {.name = "Description", .kind = Kind::kText, .offset = offsetof(WanNum, Description), .size = 200, .form = "wan_names"},
};
inline constexpr Field fields_of_WanInfo[] = {
    {.name = "INDEX", .kind = Kind::kText, .offset = offsetof(WanInfo, INDEX), .size = 64, .form = "number"},
    {.name = "IFNAME", .kind = Kind::kText, .offset = offsetof(WanInfo, IFNAME), .size = 64, .form = "interface"},
    {.name = "CONNECTIONSTATUS", .kind = Kind::kText, .offset = offsetof(WanInfo, CONNECTIONSTATUS), .size = 64, .form = "connection_state"},
    {.name = "Reserved1", .kind = Kind::kText, .offset = offsetof(WanInfo, Reserved1), .size = 8, .is_reserved = true},
    {.name = "CONNECTIONTYPE", .kind = Kind::kText, .offset = offsetof(WanInfo, CONNECTIONTYPE), .size = 64, .form = "connection_type"},
    {.name = "PROTOCOL", .kind = Kind::kText, .offset = offsetof(WanInfo, PROTOCOL), .size = 64, .form = "ip_versions"},
    {.name = "UPLINKMODE", .kind = Kind::kText, .offset = offsetof(WanInfo, UPLINKMODE), .size = 64, .form = "uplink_mode"},
    {.name = "WANName", .kind = Kind::kText, .offset = offsetof(WanInfo, WANName), .size = 64, .form = "wan_name"},
    {.name = "SERVICELIST", .kind = Kind::kText, .offset = offsetof(WanInfo, SERVICELIST), .size = 64, .form = "service_list"},
    {.name = "ADDRESSTYPE", .kind = Kind::kText, .offset = offsetof(WanInfo, ADDRESSTYPE), .size = 64, .form = "wan_mode"},
    {.name = "IPADDRESS", .kind = Kind::kText, .offset = offsetof(WanInfo, IPADDRESS), .size = 64, .form = "ipv4"},
    {.name = "SUBNETMASK", .kind = Kind::kText, .offset = offsetof(WanInfo, SUBNETMASK), .size = 64, .form = "mask"},
    {.name = "GATEWAY", .kind = Kind::kText, .offset = offsetof(WanInfo, GATEWAY), .size = 64, .form = "ipv4"},
    {.name = "DNS1", .kind = Kind::kText, .offset = offsetof(WanInfo, DNS1), .size = 64, .form = "ipv4"},
    {.name = "DNS2", .kind = Kind::kText, .offset = offsetof(WanInfo, DNS2), .size = 64, .form = "ipv4"},
    {.name = "Reserved2", .kind = Kind::kText, .offset = offsetof(WanInfo, Reserved2), .size = 16, .is_reserved = true},
    {.name = "IPV6_CONNECTIONSTATUS", .kind = Kind::kText, .offset = offsetof(WanInfo, IPV6_CONNECTIONSTATUS), .size = 64, .form = "connection_state"},
    {.name = "IPV6_PRIFIX", .kind = Kind::kText, .offset = offsetof(WanInfo, IPV6_PRIFIX), .size = 64, .form = "ipv6_prefix"},
    {.name = "IPV6_PREFIXLENGTH", .kind = Kind::kText, .offset = offsetof(WanInfo, IPV6_PREFIXLENGTH), .size = 64, .form = "prefix_length"},
    {.name = "IPV6_IPADDRESS", .kind = Kind::kText, .offset = offsetof(WanInfo, IPV6_IPADDRESS), .size = 64, .form = "ipv6"},
    {.name = "IPV6_GATEWAY", .kind = Kind::kText, .offset = offsetof(WanInfo, IPV6_GATEWAY), .size = 64, .form = "ipv6"},
    {.name = "IPV6_DNS1", .kind = Kind::kText, .offset = offsetof(WanInfo, IPV6_DNS1), .size = 64, .form = "ipv6"},
    {.name = "IPV6_DNS2", .kind = Kind::kText, .offset = offsetof(WanInfo, IPV6_DNS2), .size = 64, .form = "ipv6"},
    {.name = "PPPOE_USR_NAME", .kind = Kind::kText, .offset = offsetof(WanInfo, PPPOE_USR_NAME), .size = 64, .form = "account"},
    {.name = "PPPOE_PASSWORD", .kind = Kind::kText, .offset = offsetof(WanInfo, PPPOE_PASSWORD), .size = 64, .is_secret = true, .form = "password"},
    {.name = "PPPOE_PROXY", .kind = Kind::kText, .offset = offsetof(WanInfo, PPPOE_PROXY), .size = 64, .form = "switch"},
    {.name = "PPPOE_SERVICENAME", .kind = Kind::kText, .offset = offsetof(WanInfo, PPPOE_SERVICENAME), .size = 64, .form = "name"},
    {.name = "PPPOE_DIAL_MODE", .kind = Kind::kText, .offset = offsetof(WanInfo, PPPOE_DIAL_MODE), .size = 64, .form = "dial_mode"},
    {.name = "NATENABLE", .kind = Kind::kText, .offset = offsetof(WanInfo, NATENABLE), .size = 64, .form = "switch"},
    {.name = "QOSENABLE", .kind = Kind::kText, .offset = offsetof(WanInfo, QOSENABLE), .size = 64, .form = "switch"},
    {.name = "VLANID", .kind = Kind::kText, .offset = offsetof(WanInfo, VLANID), .size = 64, .form = "vlan"},
    {.name = "VLANPRIORITY", .kind = Kind::kText, .offset = offsetof(WanInfo, VLANPRIORITY), .size = 64, .form = "vlan_priority"},
};
inline constexpr Field fields_of_AdBaseInfo[] = {
    {.name = "Kind", .kind = Kind::kInt32, .offset = offsetof(AdBaseInfo, Kind), .size = sizeof(int32_t)},
    {.name = "HostIndex", .kind = Kind::kInt32, .offset = offsetof(AdBaseInfo, HostIndex), .size = sizeof(int32_t)},
    {.name = "Mac", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, Mac), .size = 32, .form = "mac"},
    {.name = "UID", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, UID), .size = 32, .form = "identifier"},
    {.name = "DevType", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, DevType), .size = 32, .form = "host_kind"},
    {.name = "DevFactory", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, DevFactory), .size = 32, .form = "maker"},
    {.name = "Name", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, Name), .size = 32, .form = "host_name"},
    {.name = "ByName", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, ByName), .size = 32, .form = "name"},
    {.name = "OS", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, OS), .size = 32, .form = "system"},
    {.name = "Version", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, Version), .size = 32, .form = "system_version"},
    {.name = "NetStatus", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, NetStatus), .size = 8, .is_number = true, .form = "link_state"},
    {.name = "NetMonopoly", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, NetMonopoly), .size = 32, .form = "monopoly"},
    {.name = "AccessType", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, AccessType), .size = 32, .form = "access_type"},
    {.name = "AccessEnable", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, AccessEnable), .size = 8, .form = "switch"},
    {.name = "AccessTime", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, AccessTime), .size = 32, .is_number = true, .form = "attached_since"},
    {.name = "UpSpeed", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, UpSpeed), .size = 32, .is_number = true, .form = "rate"},
    {.name = "DownSpeed", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, DownSpeed), .size = 32, .is_number = true, .form = "rate"},
    {.name = "ip", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, ip), .size = 64, .form = "ipv4"},
    {.name = "AccessCode", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, AccessCode), .size = 32, .is_number = true, .form = "access_code"},
    {.name = "SSIDIndex", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, SSIDIndex), .size = 48, .is_number = true, .form = "number"},
    {.name = "LinkStatus", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, LinkStatus), .size = 8, .is_number = true, .form = "link_state"},
    {.name = "SpeedLimit", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, SpeedLimit), .size = 8, .form = "switch"},
    {.name = "DownLimit", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, DownLimit), .size = 16, .form = "rate_limit"},
    {.name = "UpLimit", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, UpLimit), .size = 16, .form = "rate_limit"},
    {.name = "GreennetProtectEnable", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, GreennetProtectEnable), .size = 8, .form = "switch"},
    {.name = "Dbm", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, Dbm), .size = 8, .form = "signal"},
    {.name = "StaticDhcpEnable", .kind = Kind::kText, .offset = offsetof(AdBaseInfo, StaticDhcpEnable), .size = 8, .form = "given_switch"},
};
inline constexpr Field fields_of_AdBaseSetting[] = {
    {.name = "info", .kind = Kind::kRecord, .offset = offsetof(AdBaseSetting, info), .size = sizeof(AdBaseInfo), .record = 30},
    {.name = "FailReason", .kind = Kind::kText, .offset = offsetof(AdBaseSetting, FailReason), .size = 64, .may_be_empty = true, .form = "reason"},
};
inline constexpr Field fields_of_AttachDeviceRight[] = {
    {.name = "HostIndex", .kind = Kind::kInt32, .offset = offsetof(AttachDeviceRight, HostIndex), .size = sizeof(int32_t)},
    {.name = "MAC", .kind = Kind::kText, .offset = offsetof(AttachDeviceRight, MAC), .size = 64, .form = "mac"},
    {.name = "name", .kind = Kind::kText, .offset = offsetof(AttachDeviceRight, name), .size = 64, .form = "host_name"},
    {.name = "InternetAccessRight", .kind = Kind::kText, .offset = offsetof(AttachDeviceRight, InternetAccessRight), .size = 64, .form = "right"},
};
inline constexpr Field fields_of_FirewallSwitch[] = {
    {.name = "Enable", .kind = Kind::kText, .offset = offsetof(FirewallSwitch, Enable), .size = 16, .form = "switch"},
};
inline constexpr Field fields_of_GreenHostInfo[] = {
    {.name = "HostIndex", .kind = Kind::kText, .offset = offsetof(GreenHostInfo, HostIndex), .size = 8, .form = "number"},
    {.name = "Mac", .kind = Kind::kText, .offset = offsetof(GreenHostInfo, Mac), .size = 64, .form = "mac"},
    {.name = "Name", .kind = Kind::kText, .offset = offsetof(GreenHostInfo, Name), .size = 64, .form = "name"},
    {.name = "NotifyEnable", .kind = Kind::kText, .offset = offsetof(GreenHostInfo, NotifyEnable), .size = 8, .form = "switch"},
    {.name = "ProtectEnable", .kind = Kind::kText, .offset = offsetof(GreenHostInfo, ProtectEnable), .size = 8, .form = "switch"},
    {.name = "NewEntry", .kind = Kind::kText, .offset = offsetof(GreenHostInfo, NewEntry), .size = 8, .form = "flag"},
};
inline constexpr Field fields_of_ProtectPeriodInfo[] = {
    {.name = "HostIndex", .kind = Kind::kInt32, .offset = offsetof(ProtectPeriodInfo, HostIndex), .size = sizeof(int32_t)},
    {.name = "PeriodNum", .kind = Kind::kInt32, .offset = offsetof(ProtectPeriodInfo, PeriodNum), .size = sizeof(int32_t)},
    {.name = "StartTime", .kind = Kind::kText, .offset = offsetof(ProtectPeriodInfo, StartTime), .size = 8, .form = "time_of_day"},
    {.name = "EndTime", .kind = Kind::kText, .offset = offsetof(ProtectPeriodInfo, EndTime), .size = 8, .form = "time_of_day"},
    {.name = "Enable", .kind = Kind::kText, .offset = offsetof(ProtectPeriodInfo, Enable), .size = 8, .form = "switch"},
    {.name = "DaysOfWeek", .kind = Kind::kText, .offset = offsetof(ProtectPeriodInfo, DaysOfWeek), .size = 8, .form = "protect_days"},
};
inline constexpr Field fields_of_UpdateSchedule[] = {
    {.name = "Enable", .kind = Kind::kText, .offset = offsetof(UpdateSchedule, Enable), .size = 2, .form = "switch"},
    {.name = "StartHour", .kind = Kind::kText, .offset = offsetof(UpdateSchedule, StartHour), .size = 8, .form = "hour"},
    {.name = "StartMinute", .kind = Kind::kText, .offset = offsetof(UpdateSchedule, StartMinute), .size = 8, .form = "minute"},
    {.name = "EndHour", .kind = Kind::kText, .offset = offsetof(UpdateSchedule, EndHour), .size = 8, .form = "hour"},
    {.name = "EndMinute", .kind = Kind::kText, .offset = offsetof(UpdateSchedule, EndMinute), .size = 8, .form = "minute"},
};
inline constexpr Field fields_of_ChildRouterList[] = {
    {.name = "identifiers", .kind = Kind::kInt32, .offset = offsetof(ChildRouterList, identifiers), .size = sizeof(int32_t), .length = MESH_MAX_CHILD_ROUTERS, .counted_by = 1, .is_array = true},
    {.name = "count", .kind = Kind::kInt32, .offset = offsetof(ChildRouterList, count), .size = sizeof(int32_t)},
};
inline constexpr Field fields_of_MeshLink[] = {
    {.name = "nexthopMAC", .kind = Kind::kText, .offset = offsetof(MeshLink, nexthopMAC), .size = 32, .form = "mac"},
    {.name = "interface", .kind = Kind::kText, .offset = offsetof(MeshLink, interface), .size = 24, .form = "interface"},
    {.name = "dbm", .kind = Kind::kText, .offset = offsetof(MeshLink, dbm), .size = 16, .form = "signal"},
};
inline constexpr Field fields_of_ChildRouterInfo[] = {
    {.name = "RouterDeviceID", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, RouterDeviceID), .size = 32, .form = "identifier"},
    {.name = "Name", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, Name), .size = 64, .form = "name"},
    {.name = "Mac", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, Mac), .size = 64, .form = "mac"},
    {.name = "NetStatus", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, NetStatus), .size = 8, .form = "link_state"},
    {.name = "ChildRouterAccessType", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, ChildRouterAccessType), .size = 8, .form = "access_type"},
    {.name = "UpSpeed", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, UpSpeed), .size = 16, .form = "rate"},
    {.name = "DownSpeed", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, DownSpeed), .size = 16, .form = "rate"},
    {.name = "ip", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, ip), .size = 32, .form = "ipv4"},
    {.name = "FWVersion", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, FWVersion), .size = 32, .form = "version"},
    {.name = "FWDATA", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, FWDATA), .size = 32, .form = "date"},
    {.name = "UpTime", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, UpTime), .size = 16, .form = "duration"},
    {.name = "DeviceType", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, DeviceType), .size = 32, .form = "device_type"},
    {.name = "AreaCode", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, AreaCode), .size = 16, .form = "area_code"},
    {.name = "HWVersion", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, HWVersion), .size = 16, .form = "hardware"},
    {.name = "Wlan1Mac", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, Wlan1Mac), .size = 32, .form = "mac"},
    {.name = "Wlan0Mac", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, Wlan0Mac), .size = 32, .form = "mac"},
    {.name = "ParentMac", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, ParentMac), .size = 32, .form = "mac"},
    {.name = "dbm", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, dbm), .size = 8, .form = "signal"},
    {.name = "links", .kind = Kind::kRecord, .offset = offsetof(ChildRouterInfo, links), .size = sizeof(MeshLink), .length = MESH_MAX_LINKS, .record = 38, .counted_by = 19, .is_array = true},
    {.name = "link_count", .kind = Kind::kInt32, .offset = offsetof(ChildRouterInfo, link_count), .size = sizeof(int32_t)},
    {.name = "Reserved", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, Reserved), .size = 16, .is_reserved = true},
    {.name = "LinkSpeed", .kind = Kind::kText, .offset = offsetof(ChildRouterInfo, LinkSpeed), .size = 16, .may_be_empty = true, .form = "link_speed"},
};
inline constexpr Field fields_of_ChildMeshInfo[] = {
    {.name = "Mac", .kind = Kind::kText, .offset = offsetof(ChildMeshInfo, Mac), .size = 32, .form = "mac"},
    {.name = "ChildMac", .kind = Kind::kText, .offset = offsetof(ChildMeshInfo, ChildMac), .size = 32, .form = "mac"},
    {.name = "ParentMac", .kind = Kind::kText, .offset = offsetof(ChildMeshInfo, ParentMac), .size = 32, .form = "mac"},
    {.name = "Reserved", .kind = Kind::kText, .offset = offsetof(ChildMeshInfo, Reserved), .size = 104, .is_reserved = true},
};
inline constexpr Field fields_of_ChildMeshList[] = {
    {.name = "count", .kind = Kind::kInt32, .offset = offsetof(ChildMeshList, count), .size = sizeof(int32_t)},
    {.name = "children", .kind = Kind::kRecord, .offset = offsetof(ChildMeshList, children), .size = sizeof(ChildMeshInfo), .length = MESH_MAX_CHILDREN, .record = 40, .counted_by = 0, .is_array = true},
};
inline constexpr Field fields_of_ChildStationList[] = {
    {.name = "indexes", .kind = Kind::kInt32, .offset = offsetof(ChildStationList, indexes), .size = sizeof(int32_t), .length = MESH_MAX_STATIONS, .counted_by = 1, .is_array = true},
    {.name = "count", .kind = Kind::kInt32, .offset = offsetof(ChildStationList, count), .size = sizeof(int32_t)},
};
inline constexpr Field fields_of_DevStatusInfo[] = {
    {.name = "Reserved", .kind = Kind::kText, .offset = offsetof(DevStatusInfo, Reserved), .size = 64, .is_reserved = true},
    {.name = "Cpu", .kind = Kind::kText, .offset = offsetof(DevStatusInfo, Cpu), .size = 32, .form = "percent"},
    {.name = "Memory", .kind = Kind::kText, .offset = offsetof(DevStatusInfo, Memory), .size = 32, .form = "percent"},
};
inline constexpr Field fields_of_TopoNode[] = {
    {.name = "level", .kind = Kind::kInt32, .offset = offsetof(TopoNode, level), .size = sizeof(int32_t)},
    {.name = "Reserved", .kind = Kind::kInt32, .offset = offsetof(TopoNode, Reserved), .size = sizeof(int32_t), .length = 2, .is_array = true, .is_reserved = true},
    {.name = "next", .kind = Kind::kRecord, .offset = offsetof(TopoNode, next), .size = sizeof(TopoNode), .pointer = Pointer::kNext, .record = 44},
};
inline constexpr Field fields_of_NodeDevInfo[] = {
    {.name = "Mac", .kind = Kind::kText, .offset = offsetof(NodeDevInfo, Mac), .size = 64, .form = "mac"},
    {.name = "ip", .kind = Kind::kText, .offset = offsetof(NodeDevInfo, ip), .size = 32, .form = "ipv4"},
    {.name = "AccessType", .kind = Kind::kText, .offset = offsetof(NodeDevInfo, AccessType), .size = 8, .form = "access_type"},
    {.name = "dbm", .kind = Kind::kText, .offset = offsetof(NodeDevInfo, dbm), .size = 8, .form = "signal"},
    {.name = "FWVersion", .kind = Kind::kText, .offset = offsetof(NodeDevInfo, FWVersion), .size = 64, .form = "version"},
    {.name = "LinkSpeed", .kind = Kind::kText, .offset = offsetof(NodeDevInfo, LinkSpeed), .size = 16, .form = "link_speed"},
};
inline constexpr Field fields_of_NodeBaseInfo[] = {
    {.name = "Kind", .kind = Kind::kInt32, .offset = offsetof(NodeBaseInfo, Kind), .size = sizeof(int32_t)},
    {.name = "Mac", .kind = Kind::kText, .offset = offsetof(NodeBaseInfo, Mac), .size = 96, .form = "mac"},
    {.name = "next", .kind = Kind::kRecord, .offset = offsetof(NodeBaseInfo, next), .size = sizeof(NodeBaseInfo), .pointer = Pointer::kNext, .record = 46},
};
inline constexpr Field fields_of_StationList[] = {
    {.name = "count", .kind = Kind::kInt32, .offset = offsetof(StationList, count), .size = sizeof(int32_t)},
    {.name = "stations", .kind = Kind::kRecord, .offset = offsetof(StationList, stations), .size = sizeof(AdBaseInfo), .length = MESH_MAX_STATIONS, .record = 30, .counted_by = 0, .is_array = true},
};
inline constexpr Field fields_of_MeshStatus[] = {
    {.name = "MeshEnable", .kind = Kind::kText, .offset = offsetof(MeshStatus, MeshEnable), .size = 8, .form = "switch"},
    {.name = "MeshMode", .kind = Kind::kText, .offset = offsetof(MeshStatus, MeshMode), .size = 8, .form = "mesh_mode"},
};
inline constexpr Field fields_of_PairStatus[] = {
    {.name = "Enable", .kind = Kind::kText, .offset = offsetof(PairStatus, Enable), .size = 8, .form = "switch"},
    {.name = "Time", .kind = Kind::kText, .offset = offsetof(PairStatus, Time), .size = 8, .form = "pair_time"},
};
inline constexpr Field fields_of_WpsState[] = {
    {.name = "Radio", .kind = Kind::kText, .offset = offsetof(WpsState, Radio), .size = 8, .form = "band"},
    {.name = "Action", .kind = Kind::kText, .offset = offsetof(WpsState, Action), .size = 8, .form = "wps_action"},
};
inline constexpr Field fields_of_LedInfo[] = {
    {.name = "LedSwitch", .kind = Kind::kText, .offset = offsetof(LedInfo, LedSwitch), .size = 2, .form = "switch"},
    {.name = "LedCoLor", .kind = Kind::kText, .offset = offsetof(LedInfo, LedCoLor), .size = 8, .form = "colour"},
    {.name = "LedLight", .kind = Kind::kText, .offset = offsetof(LedInfo, LedLight), .size = 10, .form = "percent"},
};
inline constexpr Field fields_of_ChannelApNum[] = {
    {.name = "counts_24g", .kind = Kind::kInt32, .offset = offsetof(ChannelApNum, counts_24g), .size = sizeof(int32_t), .length = 64, .is_array = true},
    {.name = "counts_5g", .kind = Kind::kInt32, .offset = offsetof(ChannelApNum, counts_5g), .size = sizeof(int32_t), .length = 64, .is_array = true},
};
inline constexpr Field fields_of_LinkInfo[] = {
    {.name = "Wifi24Enable", .kind = Kind::kText, .offset = offsetof(LinkInfo, Wifi24Enable), .size = 8, .form = "switch"},
    {.name = "Wifi24Channel", .kind = Kind::kText, .offset = offsetof(LinkInfo, Wifi24Channel), .size = 8, .form = "channel"},
    {.name = "Wifi24ChannelCheck", .kind = Kind::kText, .offset = offsetof(LinkInfo, Wifi24ChannelCheck), .size = 8, .form = "quality"},
    {.name = "Wifi58Enable", .kind = Kind::kText, .offset = offsetof(LinkInfo, Wifi58Enable), .size = 8, .form = "switch"},
    {.name = "Wifi58ChannelCheck", .kind = Kind::kText, .offset = offsetof(LinkInfo, Wifi58ChannelCheck), .size = 8, .form = "quality"},
    {.name = "Wifi58Channel", .kind = Kind::kText, .offset = offsetof(LinkInfo, Wifi58Channel), .size = 8, .form = "channel"},
    {.name = "LanIP", .kind = Kind::kText, .offset = offsetof(LinkInfo, LanIP), .size = 32, .form = "ipv4"},
    {.name = "WanIp", .kind = Kind::kText, .offset = offsetof(LinkInfo, WanIp), .size = 32, .form = "ipv4"},
    {.name = "DnsCheck", .kind = Kind::kText, .offset = offsetof(LinkInfo, DnsCheck), .size = 8, .form = "link_state"},
    {.name = "Reserved", .kind = Kind::kText, .offset = offsetof(LinkInfo, Reserved), .size = 56, .is_reserved = true},
};
inline constexpr Field fields_of_QosType[] = {
    {.name = "Type", .kind = Kind::kText, .offset = offsetof(QosType, Type), .size = 16, .form = "traffic_type"},
    {.name = "Min", .kind = Kind::kText, .offset = offsetof(QosType, Min), .size = 64, .form = "traffic_value"},
    {.name = "Max", .kind = Kind::kText, .offset = offsetof(QosType, Max), .size = 64, .form = "traffic_value"},
    {.name = "Reserved", .kind = Kind::kText, .offset = offsetof(QosType, Reserved), .size = 64, .is_reserved = true},
};
inline constexpr Field fields_of_QosRule[] = {
    {.name = "Id", .kind = Kind::kText, .offset = offsetof(QosRule, Id), .size = 8, .form = "number"},
    {.name = "Action", .kind = Kind::kText, .offset = offsetof(QosRule, Action), .size = 8, .may_be_empty = true, .form = "rule_action"},
    {.name = "Name", .kind = Kind::kText, .offset = offsetof(QosRule, Name), .size = 32, .form = "free_text"},
    {.name = "PriorityLevel", .kind = Kind::kText, .offset = offsetof(QosRule, PriorityLevel), .size = 8, .form = "priority"},
    {.name = "type_count", .kind = Kind::kInt32, .offset = offsetof(QosRule, type_count), .size = sizeof(int32_t), .negative_is_none = true},
    {.name = "types", .kind = Kind::kRecord, .offset = offsetof(QosRule, types), .size = sizeof(QosType), .length = QOS_MAX_TYPES, .record = 54, .counted_by = 4, .is_array = true},
};
inline constexpr Field fields_of_QosApplication[] = {
    {.name = "Id", .kind = Kind::kText, .offset = offsetof(QosApplication, Id), .size = 8, .form = "number"},
    {.name = "Name", .kind = Kind::kText, .offset = offsetof(QosApplication, Name), .size = 32, .form = "name"},
    {.name = "PriorityLevel", .kind = Kind::kText, .offset = offsetof(QosApplication, PriorityLevel), .size = 8, .form = "priority"},
};
inline constexpr Field fields_of_QosInfo[] = {
    {.name = "Enable", .kind = Kind::kText, .offset = offsetof(QosInfo, Enable), .size = 8, .form = "switch"},
    {.name = "application_count", .kind = Kind::kInt32, .offset = offsetof(QosInfo, application_count), .size = sizeof(int32_t), .negative_is_none = true},
    {.name = "applications", .kind = Kind::kRecord, .offset = offsetof(QosInfo, applications), .size = sizeof(QosApplication), .length = QOS_MAX_APPLICATIONS, .record = 56, .counted_by = 1, .is_array = true},
    {.name = "rule_count", .kind = Kind::kInt32, .offset = offsetof(QosInfo, rule_count), .size = sizeof(int32_t), .negative_is_none = true},
    {.name = "rules", .kind = Kind::kRecord, .offset = offsetof(QosInfo, rules), .size = sizeof(QosRule), .length = QOS_MAX_RULES, .record = 55, .counted_by = 3, .is_array = true},
};
inline constexpr Field fields_of_MultiserviceMode[] = {
    {.name = "Mode", .kind = Kind::kText, .offset = offsetof(MultiserviceMode, Mode), .size = 8, .form = "multiservice"},
};
inline constexpr Field fields_of_SpeedTest[] = {
    {.name = "DownBandWidth", .kind = Kind::kText, .offset = offsetof(SpeedTest, DownBandWidth), .size = 8, .form = "rate"},
    {.name = "UpBandWidth", .kind = Kind::kText, .offset = offsetof(SpeedTest, UpBandWidth), .size = 8, .form = "rate"},
    {.name = "Delay", .kind = Kind::kText, .offset = offsetof(SpeedTest, Delay), .size = 8, .form = "delay"},
};
inline constexpr Field fields_of_AlgAbility[] = {
    {.name = "PPTP", .kind = Kind::kText, .offset = offsetof(AlgAbility, PPTP), .size = 8, .form = "switch"},
    {.name = "FTP", .kind = Kind::kText, .offset = offsetof(AlgAbility, FTP), .size = 8, .form = "switch"},
    {.name = "IPSEC", .kind = Kind::kText, .offset = offsetof(AlgAbility, IPSEC), .size = 8, .form = "switch"},
    {.name = "L2TP", .kind = Kind::kText, .offset = offsetof(AlgAbility, L2TP), .size = 8, .form = "switch"},
    {.name = "RTSP", .kind = Kind::kText, .offset = offsetof(AlgAbility, RTSP), .size = 8, .form = "switch"},
    {.name = "H323", .kind = Kind::kText, .offset = offsetof(AlgAbility, H323), .size = 8, .form = "switch"},
    {.name = "SIP", .kind = Kind::kText, .offset = offsetof(AlgAbility, SIP), .size = 8, .form = "switch"},
};
inline constexpr Field fields_of_UpnpState[] = {
    {.name = "Enable", .kind = Kind::kText, .offset = offsetof(UpnpState, Enable), .size = 8, .form = "switch"},
};
inline constexpr Field fields_of_PortStatistics[] = {
    {.name = "Port", .kind = Kind::kText, .offset = offsetof(PortStatistics, Port), .size = 16, .form = "port"},
    {.name = "tx_traffic", .kind = Kind::kText, .offset = offsetof(PortStatistics, tx_traffic), .size = 32, .form = "bytes"},
    {.name = "rx_traffic", .kind = Kind::kText, .offset = offsetof(PortStatistics, rx_traffic), .size = 32, .form = "bytes"},
    {.name = "tx_packets", .kind = Kind::kText, .offset = offsetof(PortStatistics, tx_packets), .size = 32, .form = "packets"},
    {.name = "rx_packets", .kind = Kind::kText, .offset = offsetof(PortStatistics, rx_packets), .size = 32, .form = "packets"},
};
inline constexpr Field fields_of_PortStatisticsInfo[] = {
    {.name = "count", .kind = Kind::kInt32, .offset = offsetof(PortStatisticsInfo, count), .size = sizeof(int32_t), .negative_is_none = true},
    {.name = "entries", .kind = Kind::kRecord, .offset = offsetof(PortStatisticsInfo, entries), .size = sizeof(PortStatistics), .pointer = Pointer::kArray, .record = 62, .counted_by = 0, .is_array = true},
};
inline constexpr Field fields_of_PortBinding[] = {
    {.name = "Index", .kind = Kind::kText, .offset = offsetof(PortBinding, Index), .size = 16, .form = "number"},
    {.name = "WANName", .kind = Kind::kText, .offset = offsetof(PortBinding, WANName), .size = 32, .form = "wan_name"},
    {.name = "BoundPorts", .kind = Kind::kText, .offset = offsetof(PortBinding, BoundPorts), .size = 288, .form = "ports"},
};
inline constexpr Field fields_of_PortBindingInfo[] = {
    {.name = "count", .kind = Kind::kInt32, .offset = offsetof(PortBindingInfo, count), .size = sizeof(int32_t), .negative_is_none = true},
    {.name = "entries", .kind = Kind::kRecord, .offset = offsetof(PortBindingInfo, entries), .size = sizeof(PortBinding), .length = PORT_MAX_BINDINGS, .record = 64, .counted_by = 0, .is_array = true},
};
inline constexpr Argument arguments_of_devapi_add_greennet_duration[] = {
    {.name = "index", .kind = Kind::kInt32},
    {.name = "number", .kind = Kind::kInt32, .way = Way::kOut},
};
inline constexpr Argument arguments_of_devapi_add_greennet_mac[] = {
    {.name = "mac", .kind = Kind::kText, .way = Way::kIn, .width = 64, .form = "mac"},
    {.name = "index", .kind = Kind::kInt32, .way = Way::kOut},
};
inline constexpr Argument arguments_of_devapi_add_wifi_timer[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kInOut, .record = 19},
};
inline constexpr Argument arguments_of_devapi_cmdstring_sendto_tslink[] = {
    {.name = "text", .kind = Kind::kText, .way = Way::kIn, .form = "json"},
    {.name = "length", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_cmdstring_sendto_tslink_with_retinfo[] = {
    {.name = "text", .kind = Kind::kText, .way = Way::kIn, .form = "json"},
    {.name = "method", .kind = Kind::kText, .way = Way::kIn, .width = RELAY_METHOD_SIZE, .form = "method"},
    {.name = "answer", .kind = Kind::kText, .way = Way::kOut, .is_handed_over = true, .form = "json"},
};
inline constexpr Argument arguments_of_devapi_del_all_duration[] = {
    {.name = "index", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_del_device[] = {
    {.name = "mac", .kind = Kind::kText, .way = Way::kIn, .form = "mac"},
};
inline constexpr Argument arguments_of_devapi_del_green_net_info_by_maclist[] = {
    {.name = "list", .kind = Kind::kText, .way = Way::kIn, .form = "mac_list"},
};
inline constexpr Argument arguments_of_devapi_download_image[] = {
    {.name = "url", .kind = Kind::kText, .way = Way::kIn, .form = "url"},
    {.name = "mode", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_flash_update_image[] = {
    {.name = "url", .kind = Kind::kText, .way = Way::kIn, .form = "url"},
};
inline constexpr Argument arguments_of_devapi_free_topo_list[] = {
    {.name = "first", .kind = Kind::kRecord, .way = Way::kInOut, .record = 44, .is_chain = true},
};
inline constexpr Argument arguments_of_devapi_get_5g_wifi_index[] = {
    {.name = "index", .kind = Kind::kInt32, .way = Way::kOut},
};
inline constexpr Argument arguments_of_devapi_get_Multi_Ap_enable[] = {
    {.name = "enable", .kind = Kind::kInt32, .way = Way::kOut},
};
inline constexpr Argument arguments_of_devapi_get_ad_base_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kInOut, .record = 30, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_admin_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 11, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_all_wifi_channel_list[] = {
    {.name = "list", .kind = Kind::kRecord, .way = Way::kOut, .record = 24, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_ap_alg_ability[] = {
    {.name = "ability", .kind = Kind::kRecord, .way = Way::kOut, .record = 60, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_ap_multiservice_mode[] = {
    {.name = "mode", .kind = Kind::kRecord, .way = Way::kOut, .record = 58, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_attach_device_right[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kInOut, .record = 32, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_basic_area_code[] = {
    {.name = "code", .kind = Kind::kText, .way = Way::kOut, .size_at = 1, .form = "area_code"},
    {.name = "size", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_get_channel_ap_num[] = {
    {.name = "channels", .kind = Kind::kRecord, .way = Way::kIn, .record = 24},
    {.name = "counts", .kind = Kind::kRecord, .way = Way::kOut, .record = 52, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_child_mesh_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 40, .is_filled = true},
    {.name = "identifier", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_get_child_mesh_info_bynewmethod[] = {
    {.name = "mac", .kind = Kind::kText, .way = Way::kIn, .width = 64, .form = "mac"},
    {.name = "list", .kind = Kind::kRecord, .way = Way::kOut, .record = 41, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_childrouter_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 39, .is_filled = true},
    {.name = "identifier", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_get_childrouter_list[] = {
    {.name = "list", .kind = Kind::kRecord, .way = Way::kOut, .record = 37, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_childsta_base_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kInOut, .record = 30, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_childsta_list[] = {
    {.name = "list", .kind = Kind::kRecord, .way = Way::kOut, .record = 42, .is_filled = true},
    {.name = "mac", .kind = Kind::kText, .way = Way::kIn, .width = 64, .form = "mac"},
};
inline constexpr Argument arguments_of_devapi_get_dev_status_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 43, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_dev_tol_num[] = {
    {.name = "count", .kind = Kind::kInt32, .way = Way::kOut, .is_count = true},
    {.name = "argument", .kind = Kind::kAddress},
};
inline constexpr Argument arguments_of_devapi_get_devicemodel[] = {
    {.name = "model", .kind = Kind::kText, .way = Way::kOut, .size_at = 1, .is_size_less_one = true, .form = "model"},
    {.name = "size", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_get_duration_num_by_index[] = {
    {.name = "index", .kind = Kind::kInt32},
    {.name = "count", .kind = Kind::kInt32, .way = Way::kOut, .is_count = true},
};
inline constexpr Argument arguments_of_devapi_get_green_net_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kInOut, .record = 34, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_greennet_enable[] = {
    {.name = "enable", .kind = Kind::kText, .way = Way::kOut, .width = GREENNET_SWITCH_SIZE, .form = "switch"},
};
inline constexpr Argument arguments_of_devapi_get_greennet_index_by_mac[] = {
    {.name = "mac", .kind = Kind::kText, .way = Way::kIn, .width = 64, .form = "mac"},
    {.name = "index", .kind = Kind::kInt32, .way = Way::kOut},
};
inline constexpr Argument arguments_of_devapi_get_greennet_num[] = {
    {.name = "count", .kind = Kind::kInt32, .way = Way::kOut, .is_count = true},
};
inline constexpr Argument arguments_of_devapi_get_guest_wifi_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kInOut, .record = 25, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_hg_base_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 2, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_hg_dhcp_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 7, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_hg_log[] = {
    {.name = "url", .kind = Kind::kText, .way = Way::kIn, .form = "url"},
    {.name = "log_type", .kind = Kind::kText, .way = Way::kIn, .form = "log_type"},
    {.name = "mac", .kind = Kind::kText, .way = Way::kIn, .width = 24, .form = "identifier"},
};
inline constexpr Argument arguments_of_devapi_get_hg_pppoe_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 9, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_hg_sleep_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 13, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_home_page_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 6, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_host_num[] = {
    {.name = "count", .kind = Kind::kInt32, .way = Way::kOut, .is_count = true},
};
inline constexpr Argument arguments_of_devapi_get_hostindex_by_mac[] = {
    {.name = "mac", .kind = Kind::kText, .way = Way::kIn, .width = 96, .form = "mac"},
    {.name = "index", .kind = Kind::kInt32, .way = Way::kOut},
};
inline constexpr Argument arguments_of_devapi_get_iotagtd_device_mac[] = {
    {.name = "mac", .kind = Kind::kText, .way = Way::kOut, .size_at = 1, .form = "mac"},
    {.name = "size", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_get_lan_ip_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 3, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_led_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 51, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_link_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 53, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_local_timezone[] = {
    {.name = "hours", .kind = Kind::kInt32, .way = Way::kOut},
};
inline constexpr Argument arguments_of_devapi_get_mesh_status[] = {
    {.name = "status", .kind = Kind::kRecord, .way = Way::kOut, .record = 48, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_net_fault_info[] = {
    {.name = "reason", .kind = Kind::kText, .way = Way::kOut, .width = 16, .form = "fault"},
};
inline constexpr Argument arguments_of_devapi_get_node_baseinfo[] = {
    {.name = "node", .kind = Kind::kRecord, .way = Way::kIn, .record = 44, .is_chain = true},
    {.name = "first", .kind = Kind::kRecord, .way = Way::kInOut, .record = 46, .is_chain = true},
};
inline constexpr Argument arguments_of_devapi_get_node_dev_info[] = {
    {.name = "node", .kind = Kind::kRecord, .way = Way::kIn, .record = 44, .is_chain = true},
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 45, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_node_dev_info_by_newmetod[] = {
    {.name = "path", .kind = Kind::kText, .way = Way::kIn, .width = 128, .form = "path"},
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 39, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_node_sta_info_by_newmetod[] = {
    {.name = "list", .kind = Kind::kRecord, .way = Way::kOut, .record = 47, .is_filled = true},
    {.name = "path", .kind = Kind::kText, .way = Way::kIn, .width = 128, .form = "path"},
};
inline constexpr Argument arguments_of_devapi_get_ping_check[] = {
    {.name = "target", .kind = Kind::kText, .way = Way::kIn, .form = "ipv4"},
};
inline constexpr Argument arguments_of_devapi_get_port_binding_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 65, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_port_statistics_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 63, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_protect_period_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kInOut, .record = 35, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_reboot_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 12, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_router_mesh_info[] = {
    {.name = "link", .kind = Kind::kRecord, .way = Way::kOut, .record = 38, .is_filled = true},
    {.name = "identifier", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_get_scan_ssid[] = {
    {.name = "result", .kind = Kind::kRecord, .way = Way::kOut, .record = 21, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_sn_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 0, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_ssid_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kInOut, .record = 18, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_ssid_num[] = {
    {.name = "count", .kind = Kind::kInt32, .way = Way::kOut},
};
inline constexpr Argument arguments_of_devapi_get_sta_rssi_by_ip[] = {
    {.name = "ip", .kind = Kind::kText, .way = Way::kIn, .form = "ipv4"},
    {.name = "dbm", .kind = Kind::kInt32, .way = Way::kOut, .form = "signal"},
};
inline constexpr Argument arguments_of_devapi_get_system_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 1, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_topo_relation_num[] = {
    {.name = "count", .kind = Kind::kInt32, .way = Way::kOut, .is_count = true},
};
inline constexpr Argument arguments_of_devapi_get_topo_relation_ship[] = {
    {.name = "text", .kind = Kind::kText, .way = Way::kOut, .size_at = 1, .is_size_less_one = true, .form = "relations"},
    {.name = "size", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_get_tsconf_status[] = {
    {.name = "status", .kind = Kind::kText, .way = Way::kOut, .width = 8, .size_at = 1, .form = "service_state"},
    {.name = "size", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_get_tslink_config[] = {
    {.name = "state", .kind = Kind::kInt32, .way = Way::kOut},
};
inline constexpr Argument arguments_of_devapi_get_update_schedule[] = {
    {.name = "schedule", .kind = Kind::kRecord, .way = Way::kOut, .record = 36, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_update_status_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 27, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_uplink_qos_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 57, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_uplink_status[] = {
    {.name = "status", .kind = Kind::kText, .way = Way::kOut, .width = 8, .size_at = 1, .form = "link_state"},
    {.name = "size", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_get_upnp_state[] = {
    {.name = "state", .kind = Kind::kRecord, .way = Way::kOut, .record = 61, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_viewmac_by_mac[] = {
    {.name = "mac", .kind = Kind::kText, .way = Way::kIn, .width = 64, .form = "mac"},
    {.name = "view", .kind = Kind::kText, .way = Way::kOut, .width = VIEW_MAC_SIZE, .form = "view_mac"},
};
inline constexpr Argument arguments_of_devapi_get_wan_ip_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 5, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_wan_num[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 28, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_web_login_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 11, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_wifi_fastroaming_enable[] = {
    {.name = "enable", .kind = Kind::kText, .way = Way::kOut, .width = 8, .form = "switch"},
};
inline constexpr Argument arguments_of_devapi_get_wifi_sleep_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kInOut, .record = 19, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_get_wifi_stactrl[] = {
    {.name = "state", .kind = Kind::kInt32, .way = Way::kOut},
};
inline constexpr Argument arguments_of_devapi_get_wps_enable[] = {
    {.name = "enable", .kind = Kind::kInt32, .way = Way::kOut},
};
inline constexpr Argument arguments_of_devapi_handle_topo_struct[] = {
    {.name = "relations", .kind = Kind::kText, .way = Way::kIn, .width = TOPO_RELATION_SIZE, .form = "relations"},
    {.name = "first", .kind = Kind::kRecord, .way = Way::kInOut, .record = 44, .is_chain = true},
};
inline constexpr Argument arguments_of_devapi_inspect_hg[] = {
    {.name = "wifi", .kind = Kind::kRecord, .way = Way::kOut, .record = 15, .is_filled = true},
    {.name = "firmware", .kind = Kind::kRecord, .way = Way::kOut, .record = 16, .is_filled = true},
    {.name = "net", .kind = Kind::kRecord, .way = Way::kOut, .record = 14, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_inspect_hg_resource[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 17, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_inspect_hg_wifi[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 15, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_inspect_net_connect[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 14, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_inspect_net_quality[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 14, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_optimize_hg_resource[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 17, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_optimize_hg_wifi[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kInOut, .record = 15, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_optimize_net_connect[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 14, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_optimize_net_quality[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kOut, .record = 14, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_optimize_wifi_channel_power[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kInOut, .record = 15, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_query_wan_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kInOut, .record = 29, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_scan_channel_power[] = {
    {.name = "result", .kind = Kind::kRecord, .way = Way::kOut, .record = 23, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_set_5gwifi_powerlevel[] = {
    {.name = "level", .kind = Kind::kText, .way = Way::kIn, .form = "percent"},
};
inline constexpr Argument arguments_of_devapi_set_ad_base_info[] = {
    {.name = "setting", .kind = Kind::kRecord, .way = Way::kInOut, .record = 31},
};
inline constexpr Argument arguments_of_devapi_set_admin_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 11},
};
inline constexpr Argument arguments_of_devapi_set_ap_alg_ability[] = {
    {.name = "ability", .kind = Kind::kRecord, .way = Way::kIn, .record = 60},
};
inline constexpr Argument arguments_of_devapi_set_ap_multiservice_mode[] = {
    {.name = "mode", .kind = Kind::kRecord, .way = Way::kIn, .record = 58},
};
inline constexpr Argument arguments_of_devapi_set_attach_device_right[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 32},
};
inline constexpr Argument arguments_of_devapi_set_firewall_switch[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 33},
};
inline constexpr Argument arguments_of_devapi_set_green_net_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 34},
};
inline constexpr Argument arguments_of_devapi_set_green_net_notify[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 34},
};
inline constexpr Argument arguments_of_devapi_set_greenaccess_enable[] = {
    {.name = "enable", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_set_greennet_enable[] = {
    {.name = "enable", .kind = Kind::kText, .way = Way::kIn, .width = GREENNET_SWITCH_SIZE, .form = "switch"},
};
inline constexpr Argument arguments_of_devapi_set_guest_wifi_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 25},
};
inline constexpr Argument arguments_of_devapi_set_hg_base_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 2},
};
inline constexpr Argument arguments_of_devapi_set_hg_dhcp_info[] = {
    {.name = "setting", .kind = Kind::kRecord, .way = Way::kInOut, .record = 8},
};
inline constexpr Argument arguments_of_devapi_set_hg_pppoe_info[] = {
    {.name = "setting", .kind = Kind::kRecord, .way = Way::kInOut, .record = 10},
};
inline constexpr Argument arguments_of_devapi_set_hg_sleep_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 13},
};
inline constexpr Argument arguments_of_devapi_set_kaa_heartbeat[] = {
    {.name = "heartbeat", .kind = Kind::kText, .way = Way::kIn, .form = "heartbeat"},
};
inline constexpr Argument arguments_of_devapi_set_lan_ip_info[] = {
    {.name = "setting", .kind = Kind::kRecord, .way = Way::kInOut, .record = 4},
};
inline constexpr Argument arguments_of_devapi_set_mesh_status[] = {
    {.name = "status", .kind = Kind::kRecord, .way = Way::kIn, .record = 48},
};
inline constexpr Argument arguments_of_devapi_set_pair_status[] = {
    {.name = "status", .kind = Kind::kRecord, .way = Way::kIn, .record = 49},
};
inline constexpr Argument arguments_of_devapi_set_port_binding[] = {
    {.name = "index", .kind = Kind::kText, .way = Way::kIn, .width = 8, .form = "number"},
    {.name = "ports", .kind = Kind::kText, .way = Way::kIn, .width = 256, .form = "ports"},
};
inline constexpr Argument arguments_of_devapi_set_protect_enable[] = {
    {.name = "enable", .kind = Kind::kInt32},
    {.name = "index", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_set_protect_period_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 35},
};
inline constexpr Argument arguments_of_devapi_set_qos_app_info[] = {
    {.name = "identifier", .kind = Kind::kInt32},
    {.name = "priority", .kind = Kind::kText, .way = Way::kIn, .width = 8, .form = "priority"},
};
inline constexpr Argument arguments_of_devapi_set_qos_classification_info[] = {
    {.name = "rule", .kind = Kind::kRecord, .way = Way::kInOut, .record = 55},
};
inline constexpr Argument arguments_of_devapi_set_qos_enable[] = {
    {.name = "enable", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_set_reboot_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 12},
};
inline constexpr Argument arguments_of_devapi_set_route_wan_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 29},
};
inline constexpr Argument arguments_of_devapi_set_ssid_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 18},
};
inline constexpr Argument arguments_of_devapi_set_ssid_list_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 18},
};
inline constexpr Argument arguments_of_devapi_set_sta_led[] = {
    {.name = "on", .kind = Kind::kText, .way = Way::kIn, .form = "switch"},
    {.name = "colour", .kind = Kind::kText, .way = Way::kIn, .form = "colour"},
    {.name = "light", .kind = Kind::kText, .way = Way::kIn, .form = "percent"},
};
inline constexpr Argument arguments_of_devapi_set_sta_tslink_config[] = {
    {.name = "state", .kind = Kind::kText, .way = Way::kIn, .form = "flag"},
};
inline constexpr Argument arguments_of_devapi_set_update_schedule[] = {
    {.name = "schedule", .kind = Kind::kRecord, .way = Way::kIn, .record = 36},
};
inline constexpr Argument arguments_of_devapi_set_uplink_wifi_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kInOut, .record = 26},
};
inline constexpr Argument arguments_of_devapi_set_upnp_state[] = {
    {.name = "state", .kind = Kind::kRecord, .way = Way::kIn, .record = 61},
};
inline constexpr Argument arguments_of_devapi_set_web_login_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 11},
};
inline constexpr Argument arguments_of_devapi_set_web_login_type[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kIn, .record = 11},
};
inline constexpr Argument arguments_of_devapi_set_wifi_fastroaming[] = {
    {.name = "enable", .kind = Kind::kText, .way = Way::kIn, .width = 8, .form = "switch"},
};
inline constexpr Argument arguments_of_devapi_set_wifi_sleep_info[] = {
    {.name = "info", .kind = Kind::kRecord, .way = Way::kInOut, .record = 19},
};
inline constexpr Argument arguments_of_devapi_set_wifi_stactrl[] = {
    {.name = "enable", .kind = Kind::kText, .way = Way::kIn, .width = 8, .form = "switch"},
};
inline constexpr Argument arguments_of_devapi_set_wps_enable[] = {
    {.name = "enable", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_set_wps_state[] = {
    {.name = "state", .kind = Kind::kRecord, .way = Way::kIn, .record = 50},
};
inline constexpr Argument arguments_of_devapi_setup_mesh[] = {
    {.name = "enable", .kind = Kind::kInt32},
};
inline constexpr Argument arguments_of_devapi_speedtest_request[] = {
    {.name = "test", .kind = Kind::kRecord, .way = Way::kOut, .record = 59, .is_filled = true},
};
inline constexpr Argument arguments_of_devapi_topo_xml_getinfo[] = {
    {.name = "path", .kind = Kind::kText, .way = Way::kIn, .width = 128, .form = "path"},
    {.name = "value", .kind = Kind::kText, .way = Way::kOut, .width = TOPO_VALUE_SIZE, .form = "parameter"},
};
inline constexpr Argument arguments_of_devapi_topo_xml_info_list[] = {
    {.name = "count", .kind = Kind::kInt32},
    {.name = "first", .kind = Kind::kRecord, .way = Way::kInOut, .record = 44, .is_chain = true},
};
} // namespace parts

inline constexpr Record kRecords[] = {
    {"SnInfo", sizeof(SnInfo), parts::fields_of_SnInfo},
    {"SystemInfo", sizeof(SystemInfo), parts::fields_of_SystemInfo},
    {"HgBaseInfo", sizeof(HgBaseInfo), parts::fields_of_HgBaseInfo},
    {"LanIpInfo", sizeof(LanIpInfo), parts::fields_of_LanIpInfo},
    {"LanIpSetting", sizeof(LanIpSetting), parts::fields_of_LanIpSetting},
    {"WanIpInfo", sizeof(WanIpInfo), parts::fields_of_WanIpInfo},
    {"HomePageInfo", sizeof(HomePageInfo), parts::fields_of_HomePageInfo},
    {"DhcpInfo", sizeof(DhcpInfo), parts::fields_of_DhcpInfo},
    {"DhcpSetting", sizeof(DhcpSetting), parts::fields_of_DhcpSetting},
    {"PppoeInfo", sizeof(PppoeInfo), parts::fields_of_PppoeInfo},
    {"PppoeSetting", sizeof(PppoeSetting), parts::fields_of_PppoeSetting},
    {"LoginInfo", sizeof(LoginInfo), parts::fields_of_LoginInfo},
    {"RebootInfo", sizeof(RebootInfo), parts::fields_of_RebootInfo},
    {"HgSleepInfo", sizeof(HgSleepInfo), parts::fields_of_HgSleepInfo},
    {"NetInspectInfo", sizeof(NetInspectInfo), parts::fields_of_NetInspectInfo},
    {"WifiInspectInfo", sizeof(WifiInspectInfo), parts::fields_of_WifiInspectInfo},
    {"FwInspectInfo", sizeof(FwInspectInfo), parts::fields_of_FwInspectInfo},
    {"ResourceInfo", sizeof(ResourceInfo), parts::fields_of_ResourceInfo},
    {"SsidInfo", sizeof(SsidInfo), parts::fields_of_SsidInfo},
    {"WifiSleepInfo", sizeof(WifiSleepInfo), parts::fields_of_WifiSleepInfo},
    {"ScanEntry", sizeof(ScanEntry), parts::fields_of_ScanEntry},
    {"ScanResult", sizeof(ScanResult), parts::fields_of_ScanResult},
    {"ChannelPower", sizeof(ChannelPower), parts::fields_of_ChannelPower},
    {"ChannelPowerResult", sizeof(ChannelPowerResult), parts::fields_of_ChannelPowerResult},
    {"WifiChannelList", sizeof(WifiChannelList), parts::fields_of_WifiChannelList},
    {"GuestWifiInfo", sizeof(GuestWifiInfo), parts::fields_of_GuestWifiInfo},
    {"UplinkWifiInfo", sizeof(UplinkWifiInfo), parts::fields_of_UplinkWifiInfo},
    {"UpdateStatusInfo", sizeof(UpdateStatusInfo), parts::fields_of_UpdateStatusInfo},
    {"WanNum", sizeof(WanNum), parts::fields_of_WanNum},
    {"WanInfo", sizeof(WanInfo), parts::fields_of_WanInfo},
    {"AdBaseInfo", sizeof(AdBaseInfo), parts::fields_of_AdBaseInfo},
    {"AdBaseSetting", sizeof(AdBaseSetting), parts::fields_of_AdBaseSetting},
    {"AttachDeviceRight", sizeof(AttachDeviceRight), parts::fields_of_AttachDeviceRight},
    {"FirewallSwitch", sizeof(FirewallSwitch), parts::fields_of_FirewallSwitch},
    {"GreenHostInfo", sizeof(GreenHostInfo), parts::fields_of_GreenHostInfo},
    {"ProtectPeriodInfo", sizeof(ProtectPeriodInfo), parts::fields_of_ProtectPeriodInfo},
    {"UpdateSchedule", sizeof(UpdateSchedule), parts::fields_of_UpdateSchedule},
    {"ChildRouterList", sizeof(ChildRouterList), parts::fields_of_ChildRouterList},
    {"MeshLink", sizeof(MeshLink), parts::fields_of_MeshLink},
    {"ChildRouterInfo", sizeof(ChildRouterInfo), parts::fields_of_ChildRouterInfo},
    {"ChildMeshInfo", sizeof(ChildMeshInfo), parts::fields_of_ChildMeshInfo},
    {"ChildMeshList", sizeof(ChildMeshList), parts::fields_of_ChildMeshList},
    {"ChildStationList", sizeof(ChildStationList), parts::fields_of_ChildStationList},
    {"DevStatusInfo", sizeof(DevStatusInfo), parts::fields_of_DevStatusInfo},
    {"TopoNode", sizeof(TopoNode), parts::fields_of_TopoNode},
    {"NodeDevInfo", sizeof(NodeDevInfo), parts::fields_of_NodeDevInfo},
    {"NodeBaseInfo", sizeof(NodeBaseInfo), parts::fields_of_NodeBaseInfo},
    {"StationList", sizeof(StationList), parts::fields_of_StationList},
    {"MeshStatus", sizeof(MeshStatus), parts::fields_of_MeshStatus},
    {"PairStatus", sizeof(PairStatus), parts::fields_of_PairStatus},
    {"WpsState", sizeof(WpsState), parts::fields_of_WpsState},
    {"LedInfo", sizeof(LedInfo), parts::fields_of_LedInfo},
    {"ChannelApNum", sizeof(ChannelApNum), parts::fields_of_ChannelApNum},
    {"LinkInfo", sizeof(LinkInfo), parts::fields_of_LinkInfo},
    {"QosType", sizeof(QosType), parts::fields_of_QosType},
    {"QosRule", sizeof(QosRule), parts::fields_of_QosRule},
    {"QosApplication", sizeof(QosApplication), parts::fields_of_QosApplication},
    {"QosInfo", sizeof(QosInfo), parts::fields_of_QosInfo},
    {"MultiserviceMode", sizeof(MultiserviceMode), parts::fields_of_MultiserviceMode},
    {"SpeedTest", sizeof(SpeedTest), parts::fields_of_SpeedTest},
    {"AlgAbility", sizeof(AlgAbility), parts::fields_of_AlgAbility},
    {"UpnpState", sizeof(UpnpState), parts::fields_of_UpnpState},
    {"PortStatistics", sizeof(PortStatistics), parts::fields_of_PortStatistics},
    {"PortStatisticsInfo", sizeof(PortStatisticsInfo), parts::fields_of_PortStatisticsInfo},
    {"PortBinding", sizeof(PortBinding), parts::fields_of_PortBinding},
    {"PortBindingInfo", sizeof(PortBindingInfo), parts::fields_of_PortBindingInfo},
};

// Sorted by name.
inline constexpr Function kFunctions[] = {
    {.name = "devapi_add_greennet_duration", .arguments = parts::arguments_of_devapi_add_greennet_duration},
    {.name = "devapi_add_greennet_mac", .arguments = parts::arguments_of_devapi_add_greennet_mac},
    {.name = "devapi_add_wifi_timer", .arguments = parts::arguments_of_devapi_add_wifi_timer},
    {.name = "devapi_call_tslink_set_topo_speed", .reads = true},
    {.name = "devapi_cmdstring_sendto_tslink", .arguments = parts::arguments_of_devapi_cmdstring_sendto_tslink},
    {.name = "devapi_cmdstring_sendto_tslink_with_retinfo", .arguments = parts::arguments_of_devapi_cmdstring_sendto_tslink_with_retinfo, .reads = true},
    {.name = "devapi_del_all_duration", .arguments = parts::arguments_of_devapi_del_all_duration},
    {.name = "devapi_del_all_wifi_timerinfo"},
    {.name = "devapi_del_device", .arguments = parts::arguments_of_devapi_del_device},
    {.name = "devapi_del_green_net_info_by_maclist", .arguments = parts::arguments_of_devapi_del_green_net_info_by_maclist},
    {.name = "devapi_download_image", .arguments = parts::arguments_of_devapi_download_image},
    {.name = "devapi_flash_update_image", .arguments = parts::arguments_of_devapi_flash_update_image},
    {.name = "devapi_free_topo_list", .arguments = parts::arguments_of_devapi_free_topo_list, .has_result = false, .frees = true, .reads = true},
    {.name = "devapi_get_5g_wifi_index", .arguments = parts::arguments_of_devapi_get_5g_wifi_index, .reads = true},
    {.name = "devapi_get_Multi_Ap_enable", .arguments = parts::arguments_of_devapi_get_Multi_Ap_enable, .reads = true},
    {.name = "devapi_get_ad_base_info", .arguments = parts::arguments_of_devapi_get_ad_base_info, .reads = true},
    {.name = "devapi_get_admin_info", .arguments = parts::arguments_of_devapi_get_admin_info, .reads = true},
    {.name = "devapi_get_all_wifi_channel_list", .arguments = parts::arguments_of_devapi_get_all_wifi_channel_list, .reads = true},
    {.name = "devapi_get_ap_alg_ability", .arguments = parts::arguments_of_devapi_get_ap_alg_ability, .reads = true},
    {.name = "devapi_get_ap_multiservice_mode", .arguments = parts::arguments_of_devapi_get_ap_multiservice_mode, .reads = true},
    {.name = "devapi_get_attach_device_right", .arguments = parts::arguments_of_devapi_get_attach_device_right, .reads = true},
    {.name = "devapi_get_basic_area_code", .arguments = parts::arguments_of_devapi_get_basic_area_code, .reads = true},
    {.name = "devapi_get_channel_ap_num", .arguments = parts::arguments_of_devapi_get_channel_ap_num, .reads = true},
    {.name = "devapi_get_child_mesh_info", .arguments = parts::arguments_of_devapi_get_child_mesh_info, .reads = true},
    {.name = "devapi_get_child_mesh_info_bynewmethod", .arguments = parts::arguments_of_devapi_get_child_mesh_info_bynewmethod, .reads = true},
    {.name = "devapi_get_childrouter_info", .arguments = parts::arguments_of_devapi_get_childrouter_info, .reads = true},
    {.name = "devapi_get_childrouter_list", .arguments = parts::arguments_of_devapi_get_childrouter_list, .reads = true},
    {.name = "devapi_get_childsta_base_info", .arguments = parts::arguments_of_devapi_get_childsta_base_info, .reads = true},
    {.name = "devapi_get_childsta_list", .arguments = parts::arguments_of_devapi_get_childsta_list, .reads = true},
    {.name = "devapi_get_dev_status_info", .arguments = parts::arguments_of_devapi_get_dev_status_info, .reads = true},
    {.name = "devapi_get_dev_tol_num", .arguments = parts::arguments_of_devapi_get_dev_tol_num, .reads = true},
    {.name = "devapi_get_devicemodel", .arguments = parts::arguments_of_devapi_get_devicemodel, .reads = true},
    {.name = "devapi_get_duration_num_by_index", .arguments = parts::arguments_of_devapi_get_duration_num_by_index, .reads = true},
    {.name = "devapi_get_green_net_info", .arguments = parts::arguments_of_devapi_get_green_net_info, .reads = true},
    {.name = "devapi_get_greennet_enable", .arguments = parts::arguments_of_devapi_get_greennet_enable, .reads = true},
    {.name = "devapi_get_greennet_index_by_mac", .arguments = parts::arguments_of_devapi_get_greennet_index_by_mac, .reads = true},
    {.name = "devapi_get_greennet_num", .arguments = parts::arguments_of_devapi_get_greennet_num, .reads = true},
    {.name = "devapi_get_guest_wifi_info", .arguments = parts::arguments_of_devapi_get_guest_wifi_info, .reads = true},
    {.name = "devapi_get_hg_base_info", .arguments = parts::arguments_of_devapi_get_hg_base_info, .reads = true},
    {.name = "devapi_get_hg_dhcp_info", .arguments = parts::arguments_of_devapi_get_hg_dhcp_info, .reads = true},
    {.name = "devapi_get_hg_log", .arguments = parts::arguments_of_devapi_get_hg_log},
    {.name = "devapi_get_hg_pppoe_info", .arguments = parts::arguments_of_devapi_get_hg_pppoe_info, .reads = true},
    {.name = "devapi_get_hg_sleep_info", .arguments = parts::arguments_of_devapi_get_hg_sleep_info, .reads = true},
    {.name = "devapi_get_home_page_info", .arguments = parts::arguments_of_devapi_get_home_page_info, .reads = true},
    {.name = "devapi_get_host_num", .arguments = parts::arguments_of_devapi_get_host_num, .reads = true},
    {.name = "devapi_get_hostindex_by_mac", .arguments = parts::arguments_of_devapi_get_hostindex_by_mac, .reads = true},
    {.name = "devapi_get_iotagtd_device_mac", .arguments = parts::arguments_of_devapi_get_iotagtd_device_mac, .reads = true},
    {.name = "devapi_get_lan_ip_info", .arguments = parts::arguments_of_devapi_get_lan_ip_info, .reads = true},
    {.name = "devapi_get_led_info", .arguments = parts::arguments_of_devapi_get_led_info, .reads = true},
    {.name = "devapi_get_link_info", .arguments = parts::arguments_of_devapi_get_link_info, .reads = true},
    {.name = "devapi_get_local_timezone", .arguments = parts::arguments_of_devapi_get_local_timezone, .reads = true},
    {.name = "devapi_get_mesh_status", .arguments = parts::arguments_of_devapi_get_mesh_status, .reads = true},
    {.name = "devapi_get_mesh_type", .reads = true},
    {.name = "devapi_get_net_fault_info", .arguments = parts::arguments_of_devapi_get_net_fault_info, .reads = true},
    {.name = "devapi_get_node_baseinfo", .arguments = parts::arguments_of_devapi_get_node_baseinfo, .reads = true},
    {.name = "devapi_get_node_dev_info", .arguments = parts::arguments_of_devapi_get_node_dev_info, .reads = true},
    {.name = "devapi_get_node_dev_info_by_newmetod", .arguments = parts::arguments_of_devapi_get_node_dev_info_by_newmetod, .reads = true},
    {.name = "devapi_get_node_sta_info_by_newmetod", .arguments = parts::arguments_of_devapi_get_node_sta_info_by_newmetod, .reads = true},
    {.name = "devapi_get_ping_check", .arguments = parts::arguments_of_devapi_get_ping_check, .reads = true},
    {.name = "devapi_get_port_binding_info", .arguments = parts::arguments_of_devapi_get_port_binding_info, .reads = true},
    {.name = "devapi_get_port_statistics_info", .arguments = parts::arguments_of_devapi_get_port_statistics_info, .reads = true},
    {.name = "devapi_get_protect_period_info", .arguments = parts::arguments_of_devapi_get_protect_period_info, .reads = true},
    {.name = "devapi_get_reboot_info", .arguments = parts::arguments_of_devapi_get_reboot_info, .reads = true},
    {.name = "devapi_get_router_mesh_info", .arguments = parts::arguments_of_devapi_get_router_mesh_info, .reads = true},
    {.name = "devapi_get_scan_ssid", .arguments = parts::arguments_of_devapi_get_scan_ssid, .reads = true},
    {.name = "devapi_get_sn_info", .arguments = parts::arguments_of_devapi_get_sn_info, .reads = true},
    {.name = "devapi_get_ssid_info", .arguments = parts::arguments_of_devapi_get_ssid_info, .reads = true},
    {.name = "devapi_get_ssid_num", .arguments = parts::arguments_of_devapi_get_ssid_num, .reads = true},
    {.name = "devapi_get_sta_rssi_by_ip", .arguments = parts::arguments_of_devapi_get_sta_rssi_by_ip, .reads = true},
    {.name = "devapi_get_system_info", .arguments = parts::arguments_of_devapi_get_system_info, .reads = true},
    {.name = "devapi_get_systerm_timetype", .reads = true},
    {.name = "devapi_get_topo_relation_num", .arguments = parts::arguments_of_devapi_get_topo_relation_num, .reads = true},
    {.name = "devapi_get_topo_relation_ship", .arguments = parts::arguments_of_devapi_get_topo_relation_ship, .reads = true},
    {.name = "devapi_get_tsconf_status", .arguments = parts::arguments_of_devapi_get_tsconf_status, .reads = true},
    {.name = "devapi_get_tslink_config", .arguments = parts::arguments_of_devapi_get_tslink_config, .reads = true},
    {.name = "devapi_get_update_schedule", .arguments = parts::arguments_of_devapi_get_update_schedule, .reads = true},
    {.name = "devapi_get_update_status_info", .arguments = parts::arguments_of_devapi_get_update_status_info, .reads = true},
    {.name = "devapi_get_uplink_qos_info", .arguments = parts::arguments_of_devapi_get_uplink_qos_info, .reads = true},
    {.name = "devapi_get_uplink_status", .arguments = parts::arguments_of_devapi_get_uplink_status, .reads = true},
    {.name = "devapi_get_upnp_state", .arguments = parts::arguments_of_devapi_get_upnp_state, .reads = true},
    {.name = "devapi_get_viewmac_by_mac", .arguments = parts::arguments_of_devapi_get_viewmac_by_mac, .reads = true},
    {.name = "devapi_get_wan_ip_info", .arguments = parts::arguments_of_devapi_get_wan_ip_info, .reads = true},
    {.name = "devapi_get_wan_num", .arguments = parts::arguments_of_devapi_get_wan_num, .reads = true},
    {.name = "devapi_get_web_login_info", .arguments = parts::arguments_of_devapi_get_web_login_info, .reads = true},
    {.name = "devapi_get_wifi_fastroaming_enable", .arguments = parts::arguments_of_devapi_get_wifi_fastroaming_enable, .reads = true},
    {.name = "devapi_get_wifi_sleep_info", .arguments = parts::arguments_of_devapi_get_wifi_sleep_info, .reads = true},
    {.name = "devapi_get_wifi_stactrl", .arguments = parts::arguments_of_devapi_get_wifi_stactrl, .reads = true},
    {.name = "devapi_get_wps_enable", .arguments = parts::arguments_of_devapi_get_wps_enable, .reads = true},
    {.name = "devapi_handle_topo_struct", .arguments = parts::arguments_of_devapi_handle_topo_struct, .reads = true},
    {.name = "devapi_inspect_hg", .arguments = parts::arguments_of_devapi_inspect_hg, .reads = true},
    {.name = "devapi_inspect_hg_resource", .arguments = parts::arguments_of_devapi_inspect_hg_resource, .reads = true},
    {.name = "devapi_inspect_hg_wifi", .arguments = parts::arguments_of_devapi_inspect_hg_wifi, .reads = true},
    {.name = "devapi_inspect_net_connect", .arguments = parts::arguments_of_devapi_inspect_net_connect, .reads = true},
    {.name = "devapi_inspect_net_quality", .arguments = parts::arguments_of_devapi_inspect_net_quality, .reads = true},
    {.name = "devapi_optimize_hg_resource", .arguments = parts::arguments_of_devapi_optimize_hg_resource},
    {.name = "devapi_optimize_hg_wifi", .arguments = parts::arguments_of_devapi_optimize_hg_wifi},
    {.name = "devapi_optimize_net_connect", .arguments = parts::arguments_of_devapi_optimize_net_connect},
    {.name = "devapi_optimize_net_quality", .arguments = parts::arguments_of_devapi_optimize_net_quality},
    {.name = "devapi_optimize_wifi_channel_power", .arguments = parts::arguments_of_devapi_optimize_wifi_channel_power},
    {.name = "devapi_query_wan_info", .arguments = parts::arguments_of_devapi_query_wan_info, .reads = true},
    {.name = "devapi_reboot"},
    {.name = "devapi_recovery"},
    {.name = "devapi_scan_channel_power", .arguments = parts::arguments_of_devapi_scan_channel_power, .reads = true},
    {.name = "devapi_set_5gwifi_powerlevel", .arguments = parts::arguments_of_devapi_set_5gwifi_powerlevel},
    {.name = "devapi_set_ad_base_info", .arguments = parts::arguments_of_devapi_set_ad_base_info},
    {.name = "devapi_set_admin_info", .arguments = parts::arguments_of_devapi_set_admin_info},
    {.name = "devapi_set_ap_alg_ability", .arguments = parts::arguments_of_devapi_set_ap_alg_ability},
    {.name = "devapi_set_ap_multiservice_mode", .arguments = parts::arguments_of_devapi_set_ap_multiservice_mode},
    {.name = "devapi_set_attach_device_right", .arguments = parts::arguments_of_devapi_set_attach_device_right},
    {.name = "devapi_set_firewall_switch", .arguments = parts::arguments_of_devapi_set_firewall_switch},
    {.name = "devapi_set_green_net_info", .arguments = parts::arguments_of_devapi_set_green_net_info},
    {.name = "devapi_set_green_net_notify", .arguments = parts::arguments_of_devapi_set_green_net_notify},
    {.name = "devapi_set_greenaccess_enable", .arguments = parts::arguments_of_devapi_set_greenaccess_enable},
    {.name = "devapi_set_greennet_enable", .arguments = parts::arguments_of_devapi_set_greennet_enable},
    {.name = "devapi_set_guest_wifi_info", .arguments = parts::arguments_of_devapi_set_guest_wifi_info},
    {.name = "devapi_set_hg_base_info", .arguments = parts::arguments_of_devapi_set_hg_base_info},
    {.name = "devapi_set_hg_dhcp_info", .arguments = parts::arguments_of_devapi_set_hg_dhcp_info},
    {.name = "devapi_set_hg_pppoe_info", .arguments = parts::arguments_of_devapi_set_hg_pppoe_info},
    {.name = "devapi_set_hg_sleep_info", .arguments = parts::arguments_of_devapi_set_hg_sleep_info},
    {.name = "devapi_set_kaa_heartbeat", .arguments = parts::arguments_of_devapi_set_kaa_heartbeat},
    {.name = "devapi_set_lan_ip_info", .arguments = parts::arguments_of_devapi_set_lan_ip_info},
    {.name = "devapi_set_mesh_status", .arguments = parts::arguments_of_devapi_set_mesh_status},
    {.name = "devapi_set_pair_status", .arguments = parts::arguments_of_devapi_set_pair_status},
    {.name = "devapi_set_port_binding", .arguments = parts::arguments_of_devapi_set_port_binding},
    {.name = "devapi_set_protect_enable", .arguments = parts::arguments_of_devapi_set_protect_enable},
    {.name = "devapi_set_protect_period_info", .arguments = parts::arguments_of_devapi_set_protect_period_info},
    {.name = "devapi_set_qos_app_info", .arguments = parts::arguments_of_devapi_set_qos_app_info},
    {.name = "devapi_set_qos_classification_info", .arguments = parts::arguments_of_devapi_set_qos_classification_info},
    {.name = "devapi_set_qos_enable", .arguments = parts::arguments_of_devapi_set_qos_enable},
    {.name = "devapi_set_reboot_info", .arguments = parts::arguments_of_devapi_set_reboot_info},
    {.name = "devapi_set_route_wan_info", .arguments = parts::arguments_of_devapi_set_route_wan_info},
    {.name = "devapi_set_ssid_info", .arguments = parts::arguments_of_devapi_set_ssid_info},
    {.name = "devapi_set_ssid_list_info", .arguments = parts::arguments_of_devapi_set_ssid_list_info},
    {.name = "devapi_set_sta_led", .arguments = parts::arguments_of_devapi_set_sta_led},
    {.name = "devapi_set_sta_tslink_config", .arguments = parts::arguments_of_devapi_set_sta_tslink_config},
    {.name = "devapi_set_update_schedule", .arguments = parts::arguments_of_devapi_set_update_schedule},
    {.name = "devapi_set_uplink_wifi_info", .arguments = parts::arguments_of_devapi_set_uplink_wifi_info},
    {.name = "devapi_set_upnp_state", .arguments = parts::arguments_of_devapi_set_upnp_state},
    {.name = "devapi_set_web_login_info", .arguments = parts::arguments_of_devapi_set_web_login_info},
    {.name = "devapi_set_web_login_type", .arguments = parts::arguments_of_devapi_set_web_login_type},
    {.name = "devapi_set_wifi_fastroaming", .arguments = parts::arguments_of_devapi_set_wifi_fastroaming},
    {.name = "devapi_set_wifi_sleep_info", .arguments = parts::arguments_of_devapi_set_wifi_sleep_info},
    {.name = "devapi_set_wifi_stactrl", .arguments = parts::arguments_of_devapi_set_wifi_stactrl},
    {.name = "devapi_set_wps_enable", .arguments = parts::arguments_of_devapi_set_wps_enable},
    {.name = "devapi_set_wps_state", .arguments = parts::arguments_of_devapi_set_wps_state},
    {.name = "devapi_setup_mesh", .arguments = parts::arguments_of_devapi_setup_mesh},
    {.name = "devapi_speedtest_request", .arguments = parts::arguments_of_devapi_speedtest_request, .reads = true},
    {.name = "devapi_topo_xml_getinfo", .arguments = parts::arguments_of_devapi_topo_xml_getinfo, .reads = true},
    {.name = "devapi_topo_xml_info_list", .arguments = parts::arguments_of_devapi_topo_xml_info_list, .reads = true},
    {.name = "devapi_update_image"},
};

constexpr const Record *record_of(const auto &part)
{
    return part.record < 0 ? nullptr : &kRecords[part.record];
}

// Null if there is no device function with the name.
constexpr const Function *find(std::string_view name)
{
    const Function *const end = std::end(kFunctions);
    const Function *const found = std::lower_bound(
        kFunctions, end, name, [](const Function &row, std::string_view wanted) { return row.name < wanted; });
    return found != end && found->name == name ? found : nullptr;
}

} // namespace device_layout

// SPDX-License-Identifier: MIT
// Generated from protocol/ by protocol/generate.py.
// The requests and replies of the commands and reports, the events, and the lines around them. A reply can have other
// keys as well: those of the request that the command does not know.

/** CHILD_HG_LOCAL_RECOVERY: Restores the factory settings of a child router. */
export interface ChildHgLocalRecoveryRequest {
  /** identifier of the child router; MAC address without colons, e.g. "3C6AD2228140" */
  DeviceID: string;
}

/** CHILD_HG_LOCAL_RECOVERY, success: the command was sent. */
export interface ChildHgLocalRecoverySuccess {
  Status: "0";
}

/** CHILD_HG_LOCAL_RECOVERY, failure. */
export interface ChildHgLocalRecoveryFailure {
  /** unchanged from the request */
  DeviceID?: string;
  Status: "1";
  /** "DeviceID Not Found": the key is missing or not a string; "send json to child err": the command could not be sent */
  FailReason: "DeviceID Not Found" | "send json to child err";
}

/** Reply of CHILD_HG_LOCAL_RECOVERY. */
export type ChildHgLocalRecoveryReply = ChildHgLocalRecoverySuccess | ChildHgLocalRecoveryFailure;

/** DEL_LAN_DEVICE: Removes an attached device. */
export interface DelLanDeviceRequest {
  /** MAC address of the device; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20" */
  MAC: string;
}

/** DEL_LAN_DEVICE, success: the device accepted the change. */
export interface DelLanDeviceSuccess {
  Status: "0";
}

/** DEL_LAN_DEVICE, failure. */
export interface DelLanDeviceFailure {
  /** unchanged from the request */
  MAC?: string;
  Status: "1";
  /** "parama is errer!": the key is missing; "MAC  value is NULL": the key is present but not a string; "set tslink config failed": the device refused the change */
  FailReason: "parama is errer!" | "MAC  value is NULL" | "set tslink config failed";
}

/** Reply of DEL_LAN_DEVICE. */
export type DelLanDeviceReply = DelLanDeviceSuccess | DelLanDeviceFailure;

/** GET_ADMIN_INFO: The administrator's account. */
export type GetAdminInfoRequest = Record<string, never>;

/** GET_ADMIN_INFO, success: the device answered. */
export interface GetAdminInfoSuccess {
  Status: "0";
  /** name of the administrator; e.g. "admin"; at most 128 bytes */
  Name: string;
  /** password of the administrator; e.g. "zaun-und-tor-58"; at most 128 bytes; secret */
  Password: string;
}

/** GET_ADMIN_INFO, failure. */
export interface GetAdminInfoFailure {
  Status: "1";
  /** "get admin info failed": the device could not answer */
  FailReason: "get admin info failed";
}

/** Reply of GET_ADMIN_INFO. */
export type GetAdminInfoReply = GetAdminInfoSuccess | GetAdminInfoFailure;

/** GET_AD_BASE_INFO: The attached devices, with all details. */
export type GetAdBaseInfoRequest = Record<string, never>;

/** BaseInfo: the devices. */
export interface GetAdBaseInfoBaseInfo {
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; at most 32 bytes */
  Mac: string;
  /** unique identifier; MAC address without colons, e.g. "A4BB6D31075E"; at most 32 bytes */
  UID: string;
  /** type of device; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; at most 32 bytes */
  DevType: string;
  /** manufacturer of the device; e.g. "Eichhorn Computer"; at most 32 bytes */
  DevFactory: string;
  /** the same as DevType: the model is not known; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; at most 32 bytes */
  DevModle: string;
  /** host name; e.g. "workshop-pc"; at most 32 bytes */
  Name: string;
  /** name given by the user; e.g. "Anna"; at most 32 bytes */
  ByName: string;
  /** operating system; e.g. "Linux"; at most 32 bytes */
  OS: string;
  /** version of the operating system; e.g. "6.1"; at most 32 bytes */
  Version: string;
  /** whether it is online; 1 for up, 0 for down; at most 8 bytes */
  NetStatus: string;
  /** whether it has exclusive bandwidth; 1 for yes, 0 for no; at most 32 bytes */
  NetMonopoly: string;
  /** how it is attached; cable, 2.4GHz or 5GHz; at most 32 bytes */
  AccessType: string;
  /** whether it may reach the Internet; 1 for on, 0 for off; at most 8 bytes */
  AccessEnable: string;
  /** time at which it was attached; Unix time, in s, e.g. "1767225600"; at most 32 bytes */
  AccessTime: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "101"; at most 32 bytes */
  UpSpeed: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "2629"; at most 32 bytes */
  DownSpeed: string;
  /** IP address; IPv4 address, e.g. "192.168.1.101"; at most 64 bytes */
  ip: string;
  /** whether it is under parental control; 1 for on, 0 for off; at most 8 bytes */
  GreennetProtectEnable: string;
  /** whether its IP address is bound to its MAC address; 1 for on, 0 for off, -1 if not given; at most 8 bytes */
  StaticDhcpEnable: string;
}

/** GET_AD_BASE_INFO, success: the device reported every attached device. */
export interface GetAdBaseInfoSuccess {
  /** the devices */
  BaseInfo: GetAdBaseInfoBaseInfo[];
  Status: "0";
}

/** GET_AD_BASE_INFO, failure. */
export interface GetAdBaseInfoFailure {
  Status: "1";
  /** "get ad base info error": the device could not report how many there are, or could not read one of them */
  FailReason: "get ad base info error";
}

/** Reply of GET_AD_BASE_INFO. */
export type GetAdBaseInfoReply = GetAdBaseInfoSuccess | GetAdBaseInfoFailure;

/** GET_AP_ALG_ABILITY: NAT helpers (ALG) by protocol. */
export type GetApAlgAbilityRequest = Record<string, never>;

/** GET_AP_ALG_ABILITY, success: the device answered. */
export interface GetApAlgAbilitySuccess {
  /** whether the PPTP helper is on; 1 for on, 0 for off; at most 8 bytes */
  PPTP: string;
  /** whether the FTP helper is on; 1 for on, 0 for off; at most 8 bytes */
  FTP: string;
  /** whether the IPsec helper is on; 1 for on, 0 for off; at most 8 bytes */
  IPSEC: string;
  /** whether the L2TP helper is on; 1 for on, 0 for off; at most 8 bytes */
  L2TP: string;
  /** whether the RTSP helper is on; 1 for on, 0 for off; at most 8 bytes */
  RTSP: string;
  /** whether the H.323 helper is on; 1 for on, 0 for off; at most 8 bytes */
  H323: string;
  /** whether the SIP helper is on; 1 for on, 0 for off; at most 8 bytes */
  SIP: string;
  Status: "0";
}

/** GET_AP_ALG_ABILITY, failure. */
export interface GetApAlgAbilityFailure {
  Status: "1";
  /** "Get ap ALG ability failed": the device could not answer */
  FailReason: "Get ap ALG ability failed";
}

/** Reply of GET_AP_ALG_ABILITY. */
export type GetApAlgAbilityReply = GetApAlgAbilitySuccess | GetApAlgAbilityFailure;

/** GET_AP_MULTISERVICE_MODE: Multiservice mode of the access point. */
export type GetApMultiserviceModeRequest = Record<string, never>;

/** GET_AP_MULTISERVICE_MODE, success: the device answered. */
export interface GetApMultiserviceModeSuccess {
  /** the mode; NONE, SSID or VLAN; at most 8 bytes */
  Mode: string;
  Status: "0";
}

/** GET_AP_MULTISERVICE_MODE, failure. */
export interface GetApMultiserviceModeFailure {
  Status: "1";
  /** "Get ap multisservice mode failed": the device could not answer */
  FailReason: "Get ap multisservice mode failed";
}

/** Reply of GET_AP_MULTISERVICE_MODE. */
export type GetApMultiserviceModeReply = GetApMultiserviceModeSuccess | GetApMultiserviceModeFailure;

/** GET_ATTACH_DEVICE_RIGHT: Which of the attached devices may reach the Internet. */
export type GetAttachDeviceRightRequest = Record<string, never>;

/** MACList: the devices. */
export interface GetAttachDeviceRightMACList {
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; at most 64 bytes */
  MAC: string;
  /** host name; e.g. "workshop-pc"; at most 64 bytes */
  name: string;
  /** whether the device may reach the Internet; ALLOW or DENY; at most 64 bytes */
  InternetAccessRight: string;
}

/** GET_ATTACH_DEVICE_RIGHT, success: in any case; a device whose right could not be determined is left out. */
export interface GetAttachDeviceRightSuccess {
  /** the devices */
  MACList: GetAttachDeviceRightMACList[];
  Status: "0";
}

/** Reply of GET_ATTACH_DEVICE_RIGHT. */
export type GetAttachDeviceRightReply = GetAttachDeviceRightSuccess;

/** GET_CHILD_ROUTER_AD_BASE_INFO: The devices of a child router. */
export interface GetChildRouterAdBaseInfoRequest {
  /** identifier of the child router */
  DeviceID: unknown;
}

/** GET_CHILD_ROUTER_AD_BASE_INFO, success: the child router replied. */
export interface GetChildRouterAdBaseInfoSuccess {
  /** unchanged from the request */
  DeviceID?: unknown;
  /** the devices, as the child router describes them */
  BaseInfo: unknown;
  Status: "0";
}

/** GET_CHILD_ROUTER_AD_BASE_INFO, failure. */
export interface GetChildRouterAdBaseInfoFailure {
  /** unchanged from the request */
  DeviceID?: unknown;
  Status: "1";
  /** "DeviceID Not Found": the identifier is missing; "Get json_str fail": memory ran out before the command was sent; "sendto tslink or retinfo fail": the command could not be sent, or there was no reply; "Get child_adbaseinfo fail": the child router's reply is not JSON; "BaseInfo is NULL": the child router's reply does not contain the devices; "cJSON_Print fail": memory ran out for the devices */
  FailReason: "DeviceID Not Found" | "Get json_str fail" | "sendto tslink or retinfo fail" | "Get child_adbaseinfo fail" | "BaseInfo is NULL" | "cJSON_Print fail";
}

/** Reply of GET_CHILD_ROUTER_AD_BASE_INFO. */
export type GetChildRouterAdBaseInfoReply = GetChildRouterAdBaseInfoSuccess | GetChildRouterAdBaseInfoFailure;

/** GET_GATEWAY_NET_FAULT: Reason for a network fault, if there is one. */
export type GetGatewayNetFaultRequest = Record<string, never>;

/** GET_GATEWAY_NET_FAULT, success: the device answered. */
export interface GetGatewayNetFaultSuccess {
  /** reason for the fault; "NULL" if there is none; LINK_DOWN, NO_ADDRESS, AUTH_FAILED or DNS_FAILED; at most 16 bytes */
  NetFaultReason: string;
  Status: "0";
}

/** GET_GATEWAY_NET_FAULT, failure: the device could not answer. */
export interface GetGatewayNetFaultFailure {
  Status: "1";
}

/** Reply of GET_GATEWAY_NET_FAULT. */
export type GetGatewayNetFaultReply = GetGatewayNetFaultSuccess | GetGatewayNetFaultFailure;

/** GET_GREENNET_DEVICE_LIST: The devices under parental control. */
export type GetGreennetDeviceListRequest = Record<string, never>;

/** DeviceList: the devices, 64 at most. */
export interface GetGreennetDeviceListDeviceList {
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "72:9B:E0:46:D8:15"; at most 64 bytes */
  Mac: string;
  /** name given by the user; e.g. "Jonas"; at most 64 bytes */
  Name: string;
  /** whether notices about the device are wanted; 1 for on, 0 for off; at most 8 bytes */
  NotifyEnable: string;
  /** whether its protect periods are in force; 1 for on, 0 for off; at most 8 bytes */
  ProtectEnable: string;
}

/** GET_GREENNET_DEVICE_LIST, success: the device reported how many there are. */
export interface GetGreennetDeviceListSuccess {
  Status: "0";
  /** the devices, 64 at most */
  DeviceList: GetGreennetDeviceListDeviceList[];
}

/** GET_GREENNET_DEVICE_LIST, failure. */
export interface GetGreennetDeviceListFailure {
  Status: "1";
  /** "get host num failed": the device could not report how many there are */
  FailReason: "get host num failed";
}

/** Reply of GET_GREENNET_DEVICE_LIST. */
export type GetGreennetDeviceListReply = GetGreennetDeviceListSuccess | GetGreennetDeviceListFailure;

/** GET_GREENNET_ENABLE: Whether parental control is on. */
export type GetGreennetEnableRequest = Record<string, never>;

/** GET_GREENNET_ENABLE, success: the device answered. */
export interface GetGreennetEnableSuccess {
  /** whether parental control is on; 1 for on, 0 for off; at most 256 bytes */
  Enable: string;
  Status: "0";
}

/** GET_GREENNET_ENABLE, failure. */
export interface GetGreennetEnableFailure {
  Status: "1";
  /** "get green net enable failed": the device could not answer */
  FailReason: "get green net enable failed";
}

/** Reply of GET_GREENNET_ENABLE. */
export type GetGreennetEnableReply = GetGreennetEnableSuccess | GetGreennetEnableFailure;

/** GET_GREENNET_PROTECT_PERIOD_LIST: The periods in which a device is restricted. */
export interface GetGreennetProtectPeriodListRequest {
  /** MAC address of the device; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; truncated to 63 bytes */
  Mac: string;
}

/** Sleep: the periods. */
export interface GetGreennetProtectPeriodListSleep {
  /** start of the period; HH:MM, from 00:00 to 23:59, e.g. "22:00"; at most 8 bytes */
  StartTime: string;
  /** end of the period; HH:MM, from 00:00 to 23:59, e.g. "07:30"; at most 8 bytes */
  EndTime: string;
  /** whether the period is in force; 1 for on, 0 for off; at most 8 bytes */
  Enable: string;
  /** days on which it begins; 1 (Monday) to 7, without separators, e.g. "12345"; at most 8 bytes */
  DaysOfWeek: string;
}

/** GET_GREENNET_PROTECT_PERIOD_LIST, success: the device reported every period. */
export interface GetGreennetProtectPeriodListSuccess {
  /** unchanged from the request */
  Mac?: string;
  Status: "0";
  /** the periods */
  Sleep: GetGreennetProtectPeriodListSleep[];
}

/** GET_GREENNET_PROTECT_PERIOD_LIST, failure. */
export interface GetGreennetProtectPeriodListFailure {
  /** unchanged from the request */
  Mac?: string;
  Status: "1";
  /** "json node: mac not found": Mac is missing or not a string; "xml mac index not found": the device is not under parental control; "get protect period list failed": a period could not be read */
  FailReason: "json node: mac not found" | "xml mac index not found" | "get protect period list failed";
}

/** Reply of GET_GREENNET_PROTECT_PERIOD_LIST. */
export type GetGreennetProtectPeriodListReply = GetGreennetProtectPeriodListSuccess | GetGreennetProtectPeriodListFailure;

/** GET_HG_BASE_INFO: Identity and state of the gateway. */
export type GetHgBaseInfoRequest = Record<string, never>;

/** GET_HG_BASE_INFO, success: the device answered at least one of the three calls; what it could not report is empty. */
export interface GetHgBaseInfoSuccess {
  Status: "0";
  /** name given by the user; e.g. "Lindenhof"; at most 64 bytes */
  Name: string;
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes */
  Mac: string;
  /** state of the Internet connection; 1 for up, 0 for down; at most 16 bytes */
  NetStatus: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 32 bytes */
  UpSpeed: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 32 bytes */
  DownSpeed: string;
  /** state of the first radio; a device may also write "up"; 1 for on, 0 for off; at most 32 bytes */
  WiFiStatus1: string;
  /** state of the second radio, as WiFiStatus1; 1 for on, 0 for off; at most 32 bytes */
  WiFiStatus2: string;
  /** network name of the first radio; e.g. "Lindenhof"; at most 32 bytes */
  SSID1: string;
  /** network name of the second radio; e.g. "Lindenhof-5G"; at most 32 bytes */
  SSID2: string;
  /** IP address of the gateway; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes */
  ip: string;
  /** hardware version; e.g. "V1.2"; at most 32 bytes */
  HWVersion: string;
  /** firmware version; e.g. "V2.4.1"; at most 32 bytes */
  FWVersion: string;
  /** date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes */
  FWDATA: string;
  /** time since the system started; whole number, in s, e.g. "86400"; at most 32 bytes */
  UpTime: string;
  /** type of device; e.g. "HGU-AX3000"; at most 32 bytes */
  DeviceType: string;
  /** code of the operator's area; e.g. "NORTH-07"; at most 32 bytes */
  AreaCode: string;
  /** MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:21"; at most 32 bytes */
  Wlan0Mac: string;
  /** MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:25"; at most 32 bytes */
  Wlan1Mac: string;
  /** type of WAN connection; DHCP, PPPoE or Static; at most 8 bytes */
  WanLinkMode: string;
  /** CPU load; whole number, in %, e.g. "26"; at most 8 bytes */
  Cpu: string;
  /** memory load; whole number, in %, e.g. "47"; at most 8 bytes */
  Memory: string;
  /** address of the gateway; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes */
  LanIp: string;
  /** address of the default gateway; IPv4 address, e.g. "100.72.0.1"; at most 32 bytes */
  WanGateWay: string;
  /** DNS servers; IP addresses, separated by commas, e.g. "100.64.0.53,100.64.1.53"; at most 65 bytes */
  Dns: string;
  /** always this string of two characters, not an array */
  MeshInfo: "[]";
}

/** GET_HG_BASE_INFO, failure. */
export interface GetHgBaseInfoFailure {
  Status: "1";
  /** "get base info error!": the device answered none of the three calls */
  FailReason: "get base info error!";
}

/** Reply of GET_HG_BASE_INFO. */
export type GetHgBaseInfoReply = GetHgBaseInfoSuccess | GetHgBaseInfoFailure;

/** GET_HG_DHCP_INFO: The DHCP server of the LAN side. */
export type GetHgDhcpInfoRequest = Record<string, never>;

/** GET_HG_DHCP_INFO, success: the device answered. */
export interface GetHgDhcpInfoSuccess {
  Status: "0";
  /** whether the server is on; 1 for on, 0 for off; at most 16 bytes */
  Enable: string;
  /** address of the server; IPv4 address, e.g. "192.168.1.1"; at most 64 bytes */
  IPAddress: string;
  /** subnet mask; IPv4 mask, e.g. "255.255.255.0"; at most 64 bytes */
  SubNetMask: string;
  /** gateway address that the server hands out; IPv4 address, e.g. "192.168.1.1"; at most 64 bytes */
  GateWay: string;
}

/** GET_HG_DHCP_INFO, failure. */
export interface GetHgDhcpInfoFailure {
  Status: "1";
  /** "get hg dhcp failed": the device could not answer */
  FailReason: "get hg dhcp failed";
}

/** Reply of GET_HG_DHCP_INFO. */
export type GetHgDhcpInfoReply = GetHgDhcpInfoSuccess | GetHgDhcpInfoFailure;

/** GET_HG_GUEST_SSID: The guest network of one band. */
export interface GetHgGuestSsidRequest {
  /** the band; 2.4GHz or 5GHz; truncated to 15 bytes */
  Band: string;
}

/** GET_HG_GUEST_SSID, success: the device answered. */
export interface GetHgGuestSsidSuccess {
  /** unchanged from the request */
  Band?: string;
  /** whether the guest network is on; 1 for on, 0 for off; at most 16 bytes */
  Enable: string;
  /** permissions of guests; FULL, or GUEST for Internet access only; at most 8 bytes */
  PermissionProperty: string;
  /** network name; e.g. "Lindenhof-Guest"; at most 64 bytes */
  SSID: string;
  /** days for which the guest network stays open; whole number, -1 for no limit, in days, e.g. "2"; at most 8 bytes */
  ContinueTime: string;
  /** whether the band's radio is on; 1 for on, 0 for off; at most 8 bytes */
  RadioEnable: string;
  /** hours for which the guest network stays open, in addition to the days; whole number, -1 for no limit, in h, e.g. "3"; at most 8 bytes */
  HourTime: string;
  /** seconds for which the guest network stays open; whole number, -1 for no limit, in s, e.g. "183600"; at most 16 bytes */
  EndTimestamp: string;
  /** seconds until the guest network closes; whole number, -1 for no limit, in s, e.g. "183600"; at most 16 bytes */
  Remainingtime: string;
  /** password of the guest network; e.g. "willkommen24"; at most 64 bytes; secret */
  PWD: string;
  /** type of encryption; OPEN, WPA2, WPA3 or WPA2/3; at most 16 bytes */
  ENCRYPT: string;
  /** newest wireless standard in use; 11a, 11b, 11g, 11n, 11ac or 11ax, -1 if not given; at most 8 bytes */
  Mode: string;
  /** whether the name is broadcast; 1 for on, 0 for off, -1 if not given; at most 8 bytes */
  AdvertisementEnable: string;
  Status: "0";
}

/** GET_HG_GUEST_SSID, failure. */
export interface GetHgGuestSsidFailure {
  /** unchanged from the request */
  Band?: string;
  Status: "1";
  /** "json :get band failed": Band is missing or not a string; "get guest wifi info failed": the device could not answer */
  FailReason: "json :get band failed" | "get guest wifi info failed";
}

/** Reply of GET_HG_GUEST_SSID. */
export type GetHgGuestSsidReply = GetHgGuestSsidSuccess | GetHgGuestSsidFailure;

/** GET_HG_LOG: Uploads the router's log to a URL. */
export interface GetHgLogRequest {
  /** URL that the log is sent to; e.g. "https://logs.example.net/upload" */
  UploadUrl: string;
  /** which log, by the name that the platform gives it; e.g. "syslog" */
  LogType: string;
}

/** GET_HG_LOG, success: the device library was asked to send the log. */
export interface GetHgLogSuccess {
  /** unchanged from the request */
  LogType?: string;
  Status: "0";
}

/** GET_HG_LOG, failure. */
export interface GetHgLogFailure {
  /** unchanged from the request */
  UploadUrl?: string;
  /** unchanged from the request */
  LogType?: string;
  Status: "1";
  /** "json node: get dev mac error": the router's MAC address is not known; "json node: UploadUrl not found": UploadUrl is missing or not a string; "json node: LogType not found": LogType is missing or not a string */
  FailReason: "json node: get dev mac error" | "json node: UploadUrl not found" | "json node: LogType not found";
}

/** Reply of GET_HG_LOG. */
export type GetHgLogReply = GetHgLogSuccess | GetHgLogFailure;

/** GET_HG_PPPOE_INFO: The PPPoE account. */
export type GetHgPppoeInfoRequest = Record<string, never>;

/** GET_HG_PPPOE_INFO, success: PPPoE is on. */
export interface GetHgPppoeInfoSuccess {
  Status: "0";
  /** PPPoE is on */
  Enable: "1";
  /** name of the account; e.g. "k4471902@fibre.example"; at most 64 bytes */
  Account: string;
  /** password of the PPPoE account; e.g. "Lh7-pq2-Vw9"; at most 64 bytes; secret */
  Password: string;
}

/** GET_HG_PPPOE_INFO, success: PPPoE is off; account and password stay on the gateway. */
export interface GetHgPppoeInfoSuccess2 {
  Status: "0";
  /** PPPoE is off */
  Enable: "0";
}

/** GET_HG_PPPOE_INFO, failure. */
export interface GetHgPppoeInfoFailure {
  Status: "1";
  /** "get hg pppoe info failed": the device could not answer */
  FailReason: "get hg pppoe info failed";
}

/** Reply of GET_HG_PPPOE_INFO. */
export type GetHgPppoeInfoReply = GetHgPppoeInfoSuccess | GetHgPppoeInfoSuccess2 | GetHgPppoeInfoFailure;

/** GET_HG_REBOOT_INFO: Reboot schedule. */
export type GetHgRebootInfoRequest = Record<string, never>;

/** GET_HG_REBOOT_INFO, success: the device answered. */
export interface GetHgRebootInfoSuccess {
  Status: "0";
  /** whether the schedule is on; 1 for on, 0 for off; at most 8 bytes */
  GatewayRebootEnable: string;
  /** time of day; HH:MM, from 00:00 to 23:59, e.g. "04:30"; at most 8 bytes */
  Time: string;
  /** days of the week; 1 (Monday) to 7, separated by commas, e.g. "1,4"; at most 16 bytes */
  DaysOfWeek: string;
}

/** GET_HG_REBOOT_INFO, failure. */
export interface GetHgRebootInfoFailure {
  Status: "1";
  /** "get reboot info failed": the device could not answer */
  FailReason: "get reboot info failed";
}

/** Reply of GET_HG_REBOOT_INFO. */
export type GetHgRebootInfoReply = GetHgRebootInfoSuccess | GetHgRebootInfoFailure;

/** GET_HG_SLEEP_INFO: The sleep times of the gateway, its Wi-Fi and its LEDs. */
export type GetHgSleepInfoRequest = Record<string, never>;

/** GET_HG_SLEEP_INFO, success: the device answered. */
export interface GetHgSleepInfoSuccess {
  Status: "0";
  /** whether the gateway sleeps; 1 for on, 0 for off; at most 8 bytes */
  GatewaySleepEnable: string;
  /** whether the Wi-Fi sleeps; 1 for on, 0 for off; at most 8 bytes */
  WiFiSleepEnable: string;
  /** whether the LEDs sleep; 1 for on, 0 for off; at most 8 bytes */
  LedSleepEnable: string;
  /** start of the sleep; HH:MM, from 00:00 to 23:59, e.g. "22:30"; at most 8 bytes */
  StartTime: string;
  /** end of the sleep; HH:MM, from 00:00 to 23:59, e.g. "06:30"; at most 8 bytes */
  EndTime: string;
}

/** GET_HG_SLEEP_INFO, failure. */
export interface GetHgSleepInfoFailure {
  Status: "1";
  /** "get hg sleep info failed": the device could not answer */
  FailReason: "get hg sleep info failed";
}

/** Reply of GET_HG_SLEEP_INFO. */
export type GetHgSleepInfoReply = GetHgSleepInfoSuccess | GetHgSleepInfoFailure;

/** GET_HG_UPLINK_STATUS: State of the uplink. */
export type GetHgUplinkStatusRequest = Record<string, never>;

/** GET_HG_UPLINK_STATUS, success: the device answered. */
export interface GetHgUplinkStatusSuccess {
  Status: "0";
  /** state of the uplink; 1 for up, 0 for down; at most 8 bytes */
  UpLinkStatus: string;
}

/** GET_HG_UPLINK_STATUS, failure. */
export interface GetHgUplinkStatusFailure {
  Status: "1";
  /** "get uplink status failed": the device could not answer */
  FailReason: "get uplink status failed";
}

/** Reply of GET_HG_UPLINK_STATUS. */
export type GetHgUplinkStatusReply = GetHgUplinkStatusSuccess | GetHgUplinkStatusFailure;

/** GET_LAN_IP_INFO: LAN IP settings. */
export type GetLanIpInfoRequest = Record<string, never>;

/** GET_LAN_IP_INFO, success: the device answered. */
export interface GetLanIpInfoSuccess {
  Status: "0";
  /** address of the gateway; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes */
  GatewayLanIP: string;
  /** subnet mask; IPv4 mask, e.g. "255.255.255.0"; at most 32 bytes */
  SubnetMask: string;
  /** first address of the DHCP pool; IPv4 address, e.g. "192.168.1.100"; at most 32 bytes */
  StartIp: string;
  /** last address of the DHCP pool; IPv4 address, e.g. "192.168.1.249"; at most 32 bytes */
  EndIp: string;
}

/** GET_LAN_IP_INFO, failure. */
export interface GetLanIpInfoFailure {
  Status: "1";
  /** "get lan ip info failed": the device could not answer */
  FailReason: "get lan ip info failed";
}

/** Reply of GET_LAN_IP_INFO. */
export type GetLanIpInfoReply = GetLanIpInfoSuccess | GetLanIpInfoFailure;

/** GET_LED_STATUS: LED settings. */
export type GetLedStatusRequest = Record<string, never>;

/** GET_LED_STATUS, success: the device answered. */
export interface GetLedStatusSuccess {
  Status: "0";
  /** whether the LEDs are on; 1 for on, 0 for off; at most 2 bytes */
  LedSwitch: string;
  /** colour of the LEDs; WHITE, BLUE, GREEN, ORANGE or RED; at most 8 bytes */
  LedCoLor: string;
  /** brightness of the LEDs; whole number, in %, e.g. "60"; at most 10 bytes */
  LedLight: string;
}

/** GET_LED_STATUS, failure. */
export interface GetLedStatusFailure {
  Status: "1";
  /** "get led info failed": the device could not answer */
  FailReason: "get led info failed";
}

/** Reply of GET_LED_STATUS. */
export type GetLedStatusReply = GetLedStatusSuccess | GetLedStatusFailure;

/** GET_MESH_STATUS: Mesh settings. */
export type GetMeshStatusRequest = Record<string, never>;

/** GET_MESH_STATUS, success: the device answered. */
export interface GetMeshStatusSuccess {
  /** whether the mesh is on; 1 for on, 0 for off; at most 8 bytes */
  MeshEnable: string;
  /** mode of the mesh; 1 or 2; at most 8 bytes */
  MeshMode: string;
  Status: "0";
}

/** GET_MESH_STATUS, failure. */
export interface GetMeshStatusFailure {
  Status: "1";
  /** "Get mesh status failed": the device could not answer */
  FailReason: "Get mesh status failed";
}

/** Reply of GET_MESH_STATUS. */
export type GetMeshStatusReply = GetMeshStatusSuccess | GetMeshStatusFailure;

/** GET_PORT_BINDING: The ports that are bound to each WAN connection. */
export type GetPortBindingRequest = Record<string, never>;

/** port_stat_list: the connections, 8 at most. */
export interface GetPortBindingPortStatList {
  /** number of the connection; whole number from 1, e.g. "1"; at most 16 bytes */
  Index: string;
  /** name of the connection; e.g. "Internet"; at most 32 bytes */
  WANName: string;
  /** the ports that are bound to it; LAN1, SSID1 and so on, separated by commas, e.g. "LAN3,LAN4"; at most 288 bytes */
  BoundPorts: string;
}

/** GET_PORT_BINDING, success: the device answered. */
export interface GetPortBindingSuccess {
  /** the connections, 8 at most */
  port_stat_list: GetPortBindingPortStatList[];
  Status: "0";
}

/** GET_PORT_BINDING, failure. */
export interface GetPortBindingFailure {
  Status: "1";
  /** "get port binding info error": the device could not answer; "cJSON_CreateArray error": memory ran out */
  FailReason: "get port binding info error" | "cJSON_CreateArray error";
}

/** Reply of GET_PORT_BINDING. */
export type GetPortBindingReply = GetPortBindingSuccess | GetPortBindingFailure;

/** GET_PORT_STATISTICS: Traffic counters of the ports. */
export type GetPortStatisticsRequest = Record<string, never>;

/** port_stat_list: the ports. */
export interface GetPortStatisticsPortStatList {
  /** name of the port; WAN, LAN1 and so on, or the band of a radio, e.g. "LAN1"; at most 16 bytes */
  Port: string;
  /** bytes sent; whole number, in bytes, e.g. "104857600"; at most 32 bytes */
  tx_traffic: string;
  /** bytes received; whole number, in bytes, e.g. "104857600"; at most 32 bytes */
  rx_traffic: string;
  /** packets sent; whole number, in packets, e.g. "81920"; at most 32 bytes */
  tx_packets: string;
  /** packets received; whole number, in packets, e.g. "81920"; at most 32 bytes */
  rx_packets: string;
}

/** GET_PORT_STATISTICS, success: the device answered. */
export interface GetPortStatisticsSuccess {
  /** the ports */
  port_stat_list: GetPortStatisticsPortStatList[];
  Status: "0";
}

/** GET_PORT_STATISTICS, failure. */
export interface GetPortStatisticsFailure {
  Status: "1";
  /** "get port statistics info error": the device could not answer; "cJSON_CreateArray error": memory ran out */
  FailReason: "get port statistics info error" | "cJSON_CreateArray error";
}

/** Reply of GET_PORT_STATISTICS. */
export type GetPortStatisticsReply = GetPortStatisticsSuccess | GetPortStatisticsFailure;

/** GET_QOS_INFO: Quality of service: its switch, applications and rules. */
export type GetQosInfoRequest = Record<string, never>;

/** app_info_list: the applications, 4 at most. */
export interface GetQosInfoAppInfoList {
  /** identifier of the application; whole number from 1, e.g. "1"; at most 8 bytes */
  Id: string;
  /** name of the application; e.g. "Voice"; at most 32 bytes */
  Name: string;
  /** priority of the application; 1 (highest) to 8, e.g. "1"; at most 8 bytes */
  PriorityLevel: string;
}

/** type_list: types of traffic that the rule matches, 3 at most. */
export interface GetQosInfoClassificationInfoListTypeList {
  /** field of the packets that is compared; e.g. "DSCP"; at most 16 bytes */
  Type: string;
  /** lowest value that matches; e.g. "46"; at most 64 bytes */
  Min: string;
  /** highest value that matches; e.g. "46"; at most 64 bytes */
  Max: string;
}

/** classification_info_list: the rules, 6 at most. */
export interface GetQosInfoClassificationInfoList {
  /** identifier of the rule; whole number from 1, e.g. "1"; at most 8 bytes */
  Id: string;
  /** name of the rule; e.g. "Voice of the office"; at most 32 bytes */
  Name: string;
  /** priority of the rule; 1 (highest) to 8, e.g. "1"; at most 8 bytes */
  PriorityLevel: string;
  /** types of traffic that the rule matches, 3 at most */
  type_list: GetQosInfoClassificationInfoListTypeList[];
}

/** GET_QOS_INFO, success: the device answered. */
export interface GetQosInfoSuccess {
  /** whether quality of service is on; 1 for on, 0 for off; at most 8 bytes */
  Enable: string;
  /** the applications, 4 at most */
  app_info_list: GetQosInfoAppInfoList[];
  /** the rules, 6 at most */
  classification_info_list: GetQosInfoClassificationInfoList[];
  Status: "0";
}

/** GET_QOS_INFO, failure: memory ran out for the applications. */
export interface GetQosInfoFailure {
  /** whether quality of service is on; 1 for on, 0 for off; at most 8 bytes */
  Enable: string;
  Status: "1";
  FailReason: "cJSON_CreateArray error";
}

/** GET_QOS_INFO, failure: memory ran out for the rules. */
export interface GetQosInfoFailure2 {
  /** whether quality of service is on; 1 for on, 0 for off; at most 8 bytes */
  Enable: string;
  /** the applications, 4 at most */
  app_info_list: GetQosInfoAppInfoList[];
  Status: "1";
  FailReason: "cJSON_CreateArray error";
}

/** GET_QOS_INFO, failure: memory ran out for a rule, which is left out; the reply has two statuses. */
export interface GetQosInfoFailure3 {
  /** whether quality of service is on; 1 for on, 0 for off; at most 8 bytes */
  Enable: string;
  /** the applications, 4 at most */
  app_info_list: GetQosInfoAppInfoList[];
  FailReason: "cJSON_CreateArray error";
  /** the rules, 6 at most */
  classification_info_list: GetQosInfoClassificationInfoList[];
  Status: "0";
}

/** GET_QOS_INFO, failure. */
export interface GetQosInfoFailure4 {
  Status: "1";
  /** "get uplink qos info error": the device could not answer; "cJSON_CreateArray error": memory ran out */
  FailReason: "get uplink qos info error" | "cJSON_CreateArray error";
}

/** Reply of GET_QOS_INFO. */
export type GetQosInfoReply = GetQosInfoSuccess | GetQosInfoFailure | GetQosInfoFailure2 | GetQosInfoFailure3 | GetQosInfoFailure4;

/** GET_SCAN_CHANNEL_COUNT: Number of access points on each channel. */
export type GetScanChannelCountRequest = Record<string, never>;

/** List24g: at most 64 channels at 2.4 GHz. */
export interface GetScanChannelCountList24g {
  /** number of the channel; at most 6 bytes */
  Name: string;
  /** number of access points found on it */
  Count: number;
}

/** List58g: at most 64 channels at 5 GHz. */
export interface GetScanChannelCountList58g {
  /** number of the channel; at most 6 bytes */
  Name: string;
  /** number of access points found on it */
  Count: number;
}

/** GET_SCAN_CHANNEL_COUNT, success: the device answered. */
export interface GetScanChannelCountSuccess {
  /** at most 64 channels at 2.4 GHz */
  List24g: GetScanChannelCountList24g[];
  /** at most 64 channels at 5 GHz */
  List58g: GetScanChannelCountList58g[];
  Status: "0";
}

/** GET_SCAN_CHANNEL_COUNT, failure. */
export interface GetScanChannelCountFailure {
  Status: "1";
  /** "Get Wifi channel error": the device could not answer */
  FailReason: "Get Wifi channel error";
}

/** Reply of GET_SCAN_CHANNEL_COUNT. */
export type GetScanChannelCountReply = GetScanChannelCountSuccess | GetScanChannelCountFailure;

/** GET_SCAN_CHANNEL_POWER: Signal strength of each neighbouring network. */
export type GetScanChannelPowerRequest = Record<string, never>;

/** SSIDList: the networks. */
export interface GetScanChannelPowerSSIDList {
  /** network name; e.g. "FamilieBrandt"; at most 64 bytes */
  name: string;
  /** signal strength; whole number below 0, in dBm, e.g. "-54"; at most 64 bytes */
  dbpower: string;
}

/** GET_SCAN_CHANNEL_POWER, success: the scan succeeded. */
export interface GetScanChannelPowerSuccess {
  /** the networks */
  SSIDList: GetScanChannelPowerSSIDList[];
  Status: "0";
}

/** GET_SCAN_CHANNEL_POWER, failure. */
export interface GetScanChannelPowerFailure {
  Status: "1";
  /** "get channel rssi failed": the scan failed */
  FailReason: "get channel rssi failed";
}

/** Reply of GET_SCAN_CHANNEL_POWER. */
export type GetScanChannelPowerReply = GetScanChannelPowerSuccess | GetScanChannelPowerFailure;

/** GET_SCAN_WIFI_SSIDLIST: Neighbouring networks. */
export type GetScanWifiSsidlistRequest = Record<string, never>;

/** SSIDList: at most twenty networks. */
export interface GetScanWifiSsidlistSSIDList {
  /** network name; e.g. "FamilieBrandt"; at most 64 bytes */
  SSID: string;
  /** signal strength; whole number below 0, in dBm, e.g. "-54"; at most 64 bytes */
  PowerLevel: string;
  /** type of encryption; OPEN, WPA2, WPA3 or WPA2/3; at most 64 bytes */
  ENCRYPT: string;
  /** cipher of WPA; NONE or AES; at most 64 bytes */
  WPACypher: string;
  /** cipher of WPA2; NONE or AES; at most 64 bytes */
  WPA2Cypher: string;
  /** frequency band; 2.4GHz or 5GHz; at most 64 bytes */
  Band: string;
  /** whether the router is connected to it; 1 for yes, 0 for no; at most 64 bytes */
  Connected: string;
}

/** GET_SCAN_WIFI_SSIDLIST, success: the scan succeeded. */
export interface GetScanWifiSsidlistSuccess {
  /** at most twenty networks */
  SSIDList: GetScanWifiSsidlistSSIDList[];
  Status: "0";
}

/** GET_SCAN_WIFI_SSIDLIST, failure. */
export interface GetScanWifiSsidlistFailure {
  Status: "1";
  /** "get scan rssi failed": the scan failed */
  FailReason: "get scan rssi failed";
}

/** Reply of GET_SCAN_WIFI_SSIDLIST. */
export type GetScanWifiSsidlistReply = GetScanWifiSsidlistSuccess | GetScanWifiSsidlistFailure;

/** GET_SN_INFO: Serial number and type of the router. */
export type GetSnInfoRequest = Record<string, never>;

/** GET_SN_INFO, success: the device answered. */
export interface GetSnInfoSuccess {
  Status: "0";
  /** MAC address that serves as the serial number; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; at most 64 bytes */
  MAC: string;
  /** state of the mesh link layer; 1 for up, 0 for down; at most 8 bytes */
  tslinkstatus: string;
  /** type of device; e.g. "HGU-AX3000"; at most 256 bytes */
  DeviceType: string;
}

/** GET_SN_INFO, failure. */
export interface GetSnInfoFailure {
  Status: "1";
  /** "get sn failed": the device could not answer */
  FailReason: "get sn failed";
}

/** Reply of GET_SN_INFO. */
export type GetSnInfoReply = GetSnInfoSuccess | GetSnInfoFailure;

/** GET_STA_RSSI: Signal strength of a station, given by its IP address. */
export interface GetStaRssiRequest {
  /** IP address of the station; IPv4 address, e.g. "192.168.1.1" */
  IP: string;
}

/** GET_STA_RSSI, success: the device answered. */
export interface GetStaRssiSuccess {
  /** unchanged from the request */
  IP?: string;
  /** signal strength of the station; whole number below 0, in dBm, e.g. -54 */
  Dbm: number;
  Status: "0";
}

/** GET_STA_RSSI, failure. */
export interface GetStaRssiFailure {
  /** unchanged from the request */
  IP?: string;
  Status: "1";
  /** "rssi get ip is NULL": the key is missing or not a string; "get scan rssi failed": the device could not answer */
  FailReason: "rssi get ip is NULL" | "get scan rssi failed";
}

/** Reply of GET_STA_RSSI. */
export type GetStaRssiReply = GetStaRssiSuccess | GetStaRssiFailure;

/** GET_TSCONF_STATUS: State of the manufacturer's configuration service. */
export type GetTsconfStatusRequest = Record<string, never>;

/** GET_TSCONF_STATUS, success: the device answered. */
export interface GetTsconfStatusSuccess {
  /** state of the service; RUNNING, WAITING or STOPPED; at most 8 bytes */
  TsconfStatus: string;
  Status: "0";
}

/** GET_TSCONF_STATUS, failure. */
export interface GetTsconfStatusFailure {
  Status: "1";
  /** "Get tsconf status failed": the device could not answer */
  FailReason: "Get tsconf status failed";
}

/** Reply of GET_TSCONF_STATUS. */
export type GetTsconfStatusReply = GetTsconfStatusSuccess | GetTsconfStatusFailure;

/** GET_TSLINK_TOPOLOGY_INFO: The whole mesh: the main router with its devices, and each child router with its stations. */
export type GetTslinkTopologyInfoRequest = Record<string, never>;

/** MeshInfo: links to the child routers; only on the model QX2040B, in an area whose code contains ARVEN, KOLM or SEDRANO. */
export interface GetTslinkTopologyInfoMainRouterMeshInfo {
  /** MAC address of the other router; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 32 bytes */
  nexthopMAC: string;
  /** signal strength; whole number below 0, in dBm, e.g. "-54"; at most 16 bytes */
  dbm: string;
}

/** ChildInfo: child routers attached to the main router; only on other models than QX2040B, in a mesh of type 2. */
export interface GetTslinkTopologyInfoMainRouterChildInfo {
  /** MAC address of the child router; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 32 bytes */
  childMac: string;
}

/** MainBaseInfo: devices attached to the main router, 32 at most. */
export interface GetTslinkTopologyInfoMainRouterMainBaseInfo {
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; at most 32 bytes */
  Mac: string;
  /** unique identifier; MAC address without colons, e.g. "A4BB6D31075E"; at most 32 bytes */
  UID: string;
  /** "3" for a computer, empty when the type is not known */
  DevType: "3" | "0" | "";
  /** "unknow" if the manufacturer is known */
  DevFactory: "unknow" | "";
  /** "3" if the type is known */
  DevModle: "3" | "";
  /** host name; e.g. "workshop-pc"; at most 32 bytes */
  Name: string;
  /** name given by the user, otherwise the host name; e.g. "Anna"; at most 32 bytes */
  ByName: string;
  /** "3" if the operating system is known */
  OS: "3" | "";
  /** version of the operating system; e.g. "6.1"; at most 32 bytes */
  Version: string;
  /** whether its link is up; empty if the device does not know whether it is online; 1 for up, 0 for down; at most 8 bytes */
  NetStatus: string;
  /** "0" if it is known */
  NetMonopoly: "0" | "";
  /** how it is attached; cable, 2.4GHz or 5GHz; at most 32 bytes */
  AccessType: string;
  /** whether it may reach the Internet; 1 for on, 0 for off; at most 8 bytes */
  AccessEnable: string;
  /** seconds since it was attached; whole number, in s, e.g. "3600"; at most 11 bytes */
  AccessTime: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "101"; at most 32 bytes */
  UpSpeed: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "2629"; at most 32 bytes */
  DownSpeed: string;
  /** IP address; IPv4 address, e.g. "192.168.1.101"; at most 64 bytes */
  ip: string;
  /** whether the speed limits are on; 1 for on, 0 for off; at most 8 bytes */
  SpeedLimit: string;
  /** download limit; whole number, 0 for none, in kbit/s, e.g. "20000"; at most 16 bytes */
  DownLimit: string;
  /** upload limit; whole number, 0 for none, in kbit/s, e.g. "0"; at most 16 bytes */
  UpLimit: string;
  /** whether it is under parental control; 1 for on, 0 for off; at most 8 bytes */
  GreennetProtectEnable: string;
  /** signal strength; whole number below 0, in dBm, e.g. "-54"; at most 8 bytes */
  dbm: string;
  /** whether its IP address is bound to its MAC address; 1 for on, 0 for off, -1 if not given; at most 8 bytes */
  StaticDhcpEnable: string;
}

/** MainRouter: the router that replies. */
export interface GetTslinkTopologyInfoMainRouter {
  /** name given by the user; e.g. "Lindenhof"; at most 64 bytes */
  Name: string;
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes */
  Mac: string;
  /** state of the Internet connection; 1 for up, 0 for down; at most 16 bytes */
  NetStatus: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 32 bytes */
  UpSpeed: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 32 bytes */
  DownSpeed: string;
  /** "1" when the first radio is on */
  WiFiStatus1: "1" | "0";
  /** "1" when the second radio is on */
  WiFiStatus2: "1" | "0";
  /** network name of the first radio; e.g. "Lindenhof"; at most 32 bytes */
  SSID1: string;
  /** network name of the second radio; e.g. "Lindenhof-5G"; at most 32 bytes */
  SSID2: string;
  /** IP address; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes */
  ip: string;
  /** hardware version; e.g. "V1.2"; at most 32 bytes */
  HWVersion: string;
  /** firmware version; e.g. "V2.4.1"; at most 32 bytes */
  FWVersion: string;
  /** date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes */
  FWDATA: string;
  /** time since the system started; whole number, in s, e.g. "86400"; at most 32 bytes */
  UpTime: string;
  /** time since the WAN connection came up; whole number, in s, e.g. "86400"; at most 32 bytes */
  WanUptime: string;
  /** type of device; e.g. "HGU-AX3000"; at most 32 bytes */
  DeviceType: string;
  /** code of the operator's area; just ARVEN on the model QX2040B if the code contains that; e.g. "NORTH-07"; at most 32 bytes */
  AreaCode: string;
  /** whether the first configuration is done; 1 for yes, 0 for no; at most 128 bytes */
  ConfiguerStatus: string;
  /** type of WAN connection; DHCP, PPPoE or Static; at most 8 bytes */
  WanConMode: string;
  /** type of addressing on the WAN side; Dynamic or Static; at most 16 bytes */
  AddressType: string;
  /** brightness of the LEDs; whole number, in %, e.g. "60"; at most 8 bytes */
  LedLight: string;
  /** whether the LEDs are on; 1 for on, 0 for off; at most 8 bytes */
  LedSwitch: string;
  /** CPU load; whole number, in %, e.g. "26"; at most 8 bytes */
  cpuusage: string;
  /** memory load; whole number, in %, e.g. "47"; at most 8 bytes */
  ramusage: string;
  /** whether the QoS accelerator is on; 1 for on, 0 for off; at most 16 bytes */
  QosAcceleratorEnable: string;
  /** whether the game accelerator is on; 1 for on, 0 for off; at most 16 bytes */
  QQGameAcceleratorEnable: string;
  /** whether the firewall is on; 1 for on, 0 for off; at most 16 bytes */
  FireWallEnable: string;
  /** always this text */
  NetQuality: "0";
  /** MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:21"; at most 32 bytes */
  Wlan0Mac: string;
  /** MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:25"; at most 32 bytes */
  Wlan1Mac: string;
  /** links to the child routers; only on the model QX2040B, in an area whose code contains ARVEN, KOLM or SEDRANO */
  MeshInfo?: GetTslinkTopologyInfoMainRouterMeshInfo[];
  /** child routers attached to the main router; only on other models than QX2040B, in a mesh of type 2 */
  ChildInfo?: GetTslinkTopologyInfoMainRouterChildInfo[];
  /** devices attached to the main router, 32 at most */
  MainBaseInfo: GetTslinkTopologyInfoMainRouterMainBaseInfo[];
}

/** MeshInfo: links to other routers; only on the model QX2040B. */
export interface GetTslinkTopologyInfoChildRouterMeshInfo {
  /** MAC address of the other router; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 32 bytes */
  nexthopMAC: string;
  /** signal strength; whole number below 0, in dBm, e.g. "-54"; at most 16 bytes */
  dbm: string;
  /** network interface; name of the network interface, e.g. "wlan1"; at most 24 bytes */
  interface: string;
}

/** ChildBaseInfo: stations of the child router, without those that the device could not report. */
export interface GetTslinkTopologyInfoChildRouterChildBaseInfo {
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; at most 32 bytes */
  Mac: string;
  /** unique identifier; MAC address without colons, e.g. "A4BB6D31075E"; at most 32 bytes */
  UID: string;
  /** type of device; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; at most 32 bytes */
  DevType: string;
  /** manufacturer of the device; e.g. "Eichhorn Computer"; at most 32 bytes */
  DevFactory: string;
  /** always this text */
  DevModle: "Tessaline";
  /** host name; e.g. "workshop-pc"; at most 32 bytes */
  Name: string;
  /** name given by the user; the host name if that is empty; e.g. "Anna"; at most 32 bytes */
  ByName: string;
  /** always this text */
  OS: "3";
  /** version of the operating system; e.g. "6.1"; at most 32 bytes */
  Version: string;
  /** whether it is online; 1 for up, 0 for down; at most 8 bytes */
  NetStatus: string;
  /** whether it has exclusive bandwidth; 1 for yes, 0 for no; at most 32 bytes */
  NetMonopoly: string;
  /** how it is attached; cable, 2.4GHz or 5GHz; at most 32 bytes */
  AccessType: string;
  /** whether it may reach the Internet; 1 for on, 0 for off; at most 8 bytes */
  AccessEnable: string;
  /** seconds since it was attached; whole number, in s, e.g. "3600"; at most 11 bytes */
  AccessTime: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "101"; at most 32 bytes */
  UpSpeed: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "2629"; at most 32 bytes */
  DownSpeed: string;
  /** IP address; IPv4 address, e.g. "192.168.1.101"; at most 64 bytes */
  ip: string;
  /** whether it is under parental control; 1 for on, 0 for off; at most 8 bytes */
  GreennetProtectEnable: string;
  /** whether the speed limits are on; 1 for on, 0 for off; at most 8 bytes */
  SpeedLimit: string;
  /** download limit; whole number, 0 for none, in kbit/s, e.g. "20000"; at most 16 bytes */
  DownLimit: string;
  /** upload limit; whole number, 0 for none, in kbit/s, e.g. "0"; at most 16 bytes */
  UpLimit: string;
  /** signal strength; whole number below 0, in dBm, e.g. "-54"; at most 8 bytes */
  dbm: string;
  /** whether its IP address is bound to its MAC address; 1 for on, 0 for off, -1 if not given; at most 8 bytes */
  StaticDhcpEnable: string;
}

/** ChildRouter: the child routers, without those that the device could not report; missing if there was no memory for the list. */
export interface GetTslinkTopologyInfoChildRouter {
  /** identifier of the device; MAC address without colons, e.g. "3C6AD2228140"; at most 32 bytes */
  RouterDeviceID: string;
  /** name of the child router; e.g. "Attic"; at most 64 bytes */
  Name: string;
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 64 bytes */
  Mac: string;
  /** whether it is online; 1 for up, 0 for down; at most 8 bytes */
  NetStatus: string;
  /** how it reaches its parent; cable, 2.4GHz or 5GHz; at most 8 bytes */
  ChildRouterAccessType: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 16 bytes */
  UpSpeed: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 16 bytes */
  DownSpeed: string;
  /** IP address; IPv4 address, e.g. "192.168.1.2"; at most 32 bytes */
  ip: string;
  /** firmware version; e.g. "V2.4.1"; at most 32 bytes */
  FWVersion: string;
  /** date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes */
  FWDATA: string;
  /** time since it started; whole number, in s, e.g. "86400"; at most 16 bytes */
  UpTime: string;
  /** type of device; e.g. "MAP-AX1800"; at most 32 bytes */
  DeviceType: string;
  /** code of the operator's area; e.g. "NORTH-07"; at most 16 bytes */
  AreaCode: string;
  /** hardware version; e.g. "V1.2"; at most 16 bytes */
  HWVersion: string;
  /** MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:41"; at most 32 bytes */
  Wlan0Mac: string;
  /** MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:45"; at most 32 bytes */
  Wlan1Mac: string;
  /** signal strength; whole number below 0, in dBm, e.g. "-54"; at most 8 bytes */
  dbm: string;
  /** links to other routers; only on the model QX2040B */
  MeshInfo?: GetTslinkTopologyInfoChildRouterMeshInfo[];
  /** stations of the child router, without those that the device could not report */
  ChildBaseInfo: GetTslinkTopologyInfoChildRouterChildBaseInfo[];
}

/** GET_TSLINK_TOPOLOGY_INFO, success: the device reported what there is. */
export interface GetTslinkTopologyInfoSuccess {
  /** the router that replies */
  MainRouter: GetTslinkTopologyInfoMainRouter;
  /** the child routers, without those that the device could not report; missing if there was no memory for the list */
  ChildRouter?: GetTslinkTopologyInfoChildRouter[];
  Status: "0";
}

/** MainRouter: the router that replies. */
export interface GetTslinkTopologyInfoMainRouter2 {
  /** name given by the user; e.g. "Lindenhof"; at most 64 bytes */
  Name: string;
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes */
  Mac: string;
  /** state of the Internet connection; 1 for up, 0 for down; at most 16 bytes */
  NetStatus: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 32 bytes */
  UpSpeed: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 32 bytes */
  DownSpeed: string;
  /** "1" when the first radio is on */
  WiFiStatus1: "1" | "0";
  /** "1" when the second radio is on */
  WiFiStatus2: "1" | "0";
  /** network name of the first radio; e.g. "Lindenhof"; at most 32 bytes */
  SSID1: string;
  /** network name of the second radio; e.g. "Lindenhof-5G"; at most 32 bytes */
  SSID2: string;
  /** IP address; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes */
  ip: string;
  /** hardware version; e.g. "V1.2"; at most 32 bytes */
  HWVersion: string;
  /** firmware version; e.g. "V2.4.1"; at most 32 bytes */
  FWVersion: string;
  /** date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes */
  FWDATA: string;
  /** time since the system started; whole number, in s, e.g. "86400"; at most 32 bytes */
  UpTime: string;
  /** time since the WAN connection came up; whole number, in s, e.g. "86400"; at most 32 bytes */
  WanUptime: string;
  /** type of device; e.g. "HGU-AX3000"; at most 32 bytes */
  DeviceType: string;
  /** code of the operator's area; just ARVEN on the model QX2040B if the code contains that; e.g. "NORTH-07"; at most 32 bytes */
  AreaCode: string;
  /** whether the first configuration is done; 1 for yes, 0 for no; at most 128 bytes */
  ConfiguerStatus: string;
  /** type of WAN connection; DHCP, PPPoE or Static; at most 8 bytes */
  WanConMode: string;
  /** type of addressing on the WAN side; Dynamic or Static; at most 16 bytes */
  AddressType: string;
  /** brightness of the LEDs; whole number, in %, e.g. "60"; at most 8 bytes */
  LedLight: string;
  /** whether the LEDs are on; 1 for on, 0 for off; at most 8 bytes */
  LedSwitch: string;
  /** CPU load; whole number, in %, e.g. "26"; at most 8 bytes */
  cpuusage: string;
  /** memory load; whole number, in %, e.g. "47"; at most 8 bytes */
  ramusage: string;
  /** whether the QoS accelerator is on; 1 for on, 0 for off; at most 16 bytes */
  QosAcceleratorEnable: string;
  /** whether the game accelerator is on; 1 for on, 0 for off; at most 16 bytes */
  QQGameAcceleratorEnable: string;
  /** whether the firewall is on; 1 for on, 0 for off; at most 16 bytes */
  FireWallEnable: string;
  /** always this text */
  NetQuality: "0";
  /** MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:21"; at most 32 bytes */
  Wlan0Mac: string;
  /** MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:25"; at most 32 bytes */
  Wlan1Mac: string;
  /** links to the child routers; only on the model QX2040B, in an area whose code contains ARVEN, KOLM or SEDRANO */
  MeshInfo?: GetTslinkTopologyInfoMainRouterMeshInfo[];
  /** child routers attached to the main router; only on other models than QX2040B, in a mesh of type 2 */
  ChildInfo?: GetTslinkTopologyInfoMainRouterChildInfo[];
  FailReason: "get main base info error!";
}

/** GET_TSLINK_TOPOLOGY_INFO, success: a device of the main router could not be read. */
export interface GetTslinkTopologyInfoSuccess2 {
  /** the router that replies */
  MainRouter: GetTslinkTopologyInfoMainRouter2;
  /** the child routers, without those that the device could not report; missing if there was no memory for the list */
  ChildRouter?: GetTslinkTopologyInfoChildRouter[];
  Status: "0";
}

/** MainRouter: the router that replies. */
export interface GetTslinkTopologyInfoMainRouter3 {
  /** name given by the user; e.g. "Lindenhof"; at most 64 bytes */
  Name: string;
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes */
  Mac: string;
  /** state of the Internet connection; 1 for up, 0 for down; at most 16 bytes */
  NetStatus: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 32 bytes */
  UpSpeed: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 32 bytes */
  DownSpeed: string;
  /** "1" when the first radio is on */
  WiFiStatus1: "1" | "0";
  /** "1" when the second radio is on */
  WiFiStatus2: "1" | "0";
  /** network name of the first radio; e.g. "Lindenhof"; at most 32 bytes */
  SSID1: string;
  /** network name of the second radio; e.g. "Lindenhof-5G"; at most 32 bytes */
  SSID2: string;
  /** IP address; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes */
  ip: string;
  /** hardware version; e.g. "V1.2"; at most 32 bytes */
  HWVersion: string;
  /** firmware version; e.g. "V2.4.1"; at most 32 bytes */
  FWVersion: string;
  /** date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes */
  FWDATA: string;
  /** time since the system started; whole number, in s, e.g. "86400"; at most 32 bytes */
  UpTime: string;
  /** time since the WAN connection came up; whole number, in s, e.g. "86400"; at most 32 bytes */
  WanUptime: string;
  /** type of device; e.g. "HGU-AX3000"; at most 32 bytes */
  DeviceType: string;
  /** code of the operator's area; just ARVEN on the model QX2040B if the code contains that; e.g. "NORTH-07"; at most 32 bytes */
  AreaCode: string;
  /** whether the first configuration is done; 1 for yes, 0 for no; at most 128 bytes */
  ConfiguerStatus: string;
  /** type of WAN connection; DHCP, PPPoE or Static; at most 8 bytes */
  WanConMode: string;
  /** type of addressing on the WAN side; Dynamic or Static; at most 16 bytes */
  AddressType: string;
  /** brightness of the LEDs; whole number, in %, e.g. "60"; at most 8 bytes */
  LedLight: string;
  /** whether the LEDs are on; 1 for on, 0 for off; at most 8 bytes */
  LedSwitch: string;
  /** CPU load; whole number, in %, e.g. "26"; at most 8 bytes */
  cpuusage: string;
  /** memory load; whole number, in %, e.g. "47"; at most 8 bytes */
  ramusage: string;
  /** whether the QoS accelerator is on; 1 for on, 0 for off; at most 16 bytes */
  QosAcceleratorEnable: string;
  /** whether the game accelerator is on; 1 for on, 0 for off; at most 16 bytes */
  QQGameAcceleratorEnable: string;
  /** whether the firewall is on; 1 for on, 0 for off; at most 16 bytes */
  FireWallEnable: string;
  /** always this text */
  NetQuality: "0";
  /** MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:21"; at most 32 bytes */
  Wlan0Mac: string;
  /** MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:25"; at most 32 bytes */
  Wlan1Mac: string;
  /** links to the child routers; only on the model QX2040B, in an area whose code contains ARVEN, KOLM or SEDRANO */
  MeshInfo?: GetTslinkTopologyInfoMainRouterMeshInfo[];
  /** child routers attached to the main router; only on other models than QX2040B, in a mesh of type 2 */
  ChildInfo?: GetTslinkTopologyInfoMainRouterChildInfo[];
  FailReason: "cJSON create array failed!";
}

/** GET_TSLINK_TOPOLOGY_INFO, success: there is no memory for the list of the main router's devices. */
export interface GetTslinkTopologyInfoSuccess3 {
  /** the router that replies */
  MainRouter: GetTslinkTopologyInfoMainRouter3;
  /** the child routers, without those that the device could not report; missing if there was no memory for the list */
  ChildRouter?: GetTslinkTopologyInfoChildRouter[];
  Status: "0";
}

/** MainRouter: the router that replies. */
export interface GetTslinkTopologyInfoMainRouter4 {
  /** name given by the user; e.g. "Lindenhof"; at most 64 bytes */
  Name: string;
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes */
  Mac: string;
  /** state of the Internet connection; 1 for up, 0 for down; at most 16 bytes */
  NetStatus: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 32 bytes */
  UpSpeed: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 32 bytes */
  DownSpeed: string;
  /** "1" when the first radio is on */
  WiFiStatus1: "1" | "0";
  /** "1" when the second radio is on */
  WiFiStatus2: "1" | "0";
  /** network name of the first radio; e.g. "Lindenhof"; at most 32 bytes */
  SSID1: string;
  /** network name of the second radio; e.g. "Lindenhof-5G"; at most 32 bytes */
  SSID2: string;
  /** IP address; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes */
  ip: string;
  /** hardware version; e.g. "V1.2"; at most 32 bytes */
  HWVersion: string;
  /** firmware version; e.g. "V2.4.1"; at most 32 bytes */
  FWVersion: string;
  /** date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes */
  FWDATA: string;
  /** time since the system started; whole number, in s, e.g. "86400"; at most 32 bytes */
  UpTime: string;
  /** time since the WAN connection came up; whole number, in s, e.g. "86400"; at most 32 bytes */
  WanUptime: string;
  /** type of device; e.g. "HGU-AX3000"; at most 32 bytes */
  DeviceType: string;
  /** code of the operator's area; just ARVEN on the model QX2040B if the code contains that; e.g. "NORTH-07"; at most 32 bytes */
  AreaCode: string;
  /** whether the first configuration is done; 1 for yes, 0 for no; at most 128 bytes */
  ConfiguerStatus: string;
  /** type of WAN connection; DHCP, PPPoE or Static; at most 8 bytes */
  WanConMode: string;
  /** type of addressing on the WAN side; Dynamic or Static; at most 16 bytes */
  AddressType: string;
  /** brightness of the LEDs; whole number, in %, e.g. "60"; at most 8 bytes */
  LedLight: string;
  /** whether the LEDs are on; 1 for on, 0 for off; at most 8 bytes */
  LedSwitch: string;
  /** CPU load; whole number, in %, e.g. "26"; at most 8 bytes */
  cpuusage: string;
  /** memory load; whole number, in %, e.g. "47"; at most 8 bytes */
  ramusage: string;
  /** whether the QoS accelerator is on; 1 for on, 0 for off; at most 16 bytes */
  QosAcceleratorEnable: string;
  /** whether the game accelerator is on; 1 for on, 0 for off; at most 16 bytes */
  QQGameAcceleratorEnable: string;
  /** whether the firewall is on; 1 for on, 0 for off; at most 16 bytes */
  FireWallEnable: string;
  /** always this text */
  NetQuality: "0";
  /** MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:21"; at most 32 bytes */
  Wlan0Mac: string;
  /** MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:25"; at most 32 bytes */
  Wlan1Mac: string;
}

/** GET_TSLINK_TOPOLOGY_INFO, success: there is no memory for the main router's place in the mesh. */
export interface GetTslinkTopologyInfoSuccess4 {
  /** the router that replies */
  MainRouter: GetTslinkTopologyInfoMainRouter4;
  /** the child routers, without those that the device could not report; missing if there was no memory for the list */
  ChildRouter?: GetTslinkTopologyInfoChildRouter[];
  Status: "0";
}

/** MainRouter: an element. */
export interface GetTslinkTopologyInfoMainRouter5 {
  FailReason: "get base info error!";
}

/** GET_TSLINK_TOPOLOGY_INFO, success: the device could not report about the main router. */
export interface GetTslinkTopologyInfoSuccess5 {
  MainRouter: GetTslinkTopologyInfoMainRouter5;
  /** the child routers, without those that the device could not report; missing if there was no memory for the list */
  ChildRouter?: GetTslinkTopologyInfoChildRouter[];
  Status: "0";
}

/** GET_TSLINK_TOPOLOGY_INFO, failure. */
export interface GetTslinkTopologyInfoFailure {
  Status: "1";
  /** "Create mainrouter json error": there is no memory for the main router */
  FailReason: "Create mainrouter json error";
}

/** Reply of GET_TSLINK_TOPOLOGY_INFO. */
export type GetTslinkTopologyInfoReply = GetTslinkTopologyInfoSuccess | GetTslinkTopologyInfoSuccess2 | GetTslinkTopologyInfoSuccess3 | GetTslinkTopologyInfoSuccess4 | GetTslinkTopologyInfoSuccess5 | GetTslinkTopologyInfoFailure;

/** GET_UPDATE_SCHEDULE: The time of day at which the router may update itself. */
export type GetUpdateScheduleRequest = Record<string, never>;

/** GET_UPDATE_SCHEDULE, success: the device answered. */
export interface GetUpdateScheduleSuccess {
  /** whether the router may update itself; 1 for on, 0 for off; at most 2 bytes */
  Enable: string;
  /** hour of the start; 0 to 23, without leading zeros, e.g. "2"; at most 8 bytes */
  StartHour: string;
  /** minute of the start; 0 to 59, without leading zeros, e.g. "30"; at most 8 bytes */
  StartMinute: string;
  /** hour of the end; 0 to 23, without leading zeros, e.g. "4"; at most 8 bytes */
  EndHour: string;
  /** minute of the end; 0 to 59, without leading zeros, e.g. "0"; at most 8 bytes */
  EndMinute: string;
  Status: "0";
}

/** GET_UPDATE_SCHEDULE, failure. */
export interface GetUpdateScheduleFailure {
  Status: "1";
  /** "Get update schedule failed": the device could not answer */
  FailReason: "Get update schedule failed";
}

/** Reply of GET_UPDATE_SCHEDULE. */
export type GetUpdateScheduleReply = GetUpdateScheduleSuccess | GetUpdateScheduleFailure;

/** GET_UPDATE_STATUS: Firmware versions of all routers of the mesh. */
export type GetUpdateStatusRequest = Record<string, never>;

/** MainRouter: the router that replies, as for HG_GET_UPDATE_STATUS. */
export interface GetUpdateStatusMainRouter {
  Status: "0";
  /** always this text */
  up_status: "0";
  /** name of the device or of the image; e.g. "Lindenhof"; at most 64 bytes */
  name: string;
  /** hardware version; e.g. "V1.2"; at most 64 bytes */
  HWVersion: string;
  /** firmware version; e.g. "V2.4.1"; at most 64 bytes */
  FWVersion: string;
  /** date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 64 bytes */
  FWDATA: string;
  /** type of device; e.g. "HGU-AX3000"; at most 64 bytes */
  DeviceType: string;
  /** code of the operator's area; e.g. "NORTH-07"; at most 40 bytes */
  AreaCode: string;
}

/** ChildRouter: the child routers. */
export interface GetUpdateStatusChildRouter {
  /** always this text */
  up_status: "0";
  /** identifier of the device; MAC address without colons, e.g. "3C6AD2228140"; at most 32 bytes */
  DeviceID: string;
  /** name of the child router; e.g. "Attic"; at most 64 bytes */
  name: string;
  /** hardware version; e.g. "V1.2"; at most 16 bytes */
  HWVersion: string;
  /** firmware version; e.g. "V2.4.1"; at most 32 bytes */
  FWVersion: string;
  /** date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes */
  FWDATA: string;
  /** type of device; e.g. "MAP-AX1800"; at most 32 bytes */
  DeviceType: string;
  /** code of the operator's area; e.g. "NORTH-07"; at most 16 bytes */
  AreaCode: string;
}

/** GET_UPDATE_STATUS, success: the device reported about the main router; a child router that it could not report is left out. */
export interface GetUpdateStatusSuccess {
  /** the router that replies, as for HG_GET_UPDATE_STATUS */
  MainRouter: GetUpdateStatusMainRouter;
  /** the child routers */
  ChildRouter: GetUpdateStatusChildRouter[];
  Status: "0";
}

/** GET_UPDATE_STATUS, failure. */
export interface GetUpdateStatusFailure {
  Status: "1";
  /** "Get mainrouter update status failed": the device could not report about the main router */
  FailReason: "Get mainrouter update status failed";
}

/** Reply of GET_UPDATE_STATUS. */
export type GetUpdateStatusReply = GetUpdateStatusSuccess | GetUpdateStatusFailure;

/** GET_UPNP_STATE: Whether UPnP is on. */
export type GetUpnpStateRequest = Record<string, never>;

/** GET_UPNP_STATE, success: the device answered. */
export interface GetUpnpStateSuccess {
  /** whether UPnP is on; 1 for on, 0 for off; at most 8 bytes */
  Enable: string;
  Status: "0";
}

/** GET_UPNP_STATE, failure. */
export interface GetUpnpStateFailure {
  Status: "1";
  /** "Get UPNP enable failed": the device could not answer */
  FailReason: "Get UPNP enable failed";
}

/** Reply of GET_UPNP_STATE. */
export type GetUpnpStateReply = GetUpnpStateSuccess | GetUpnpStateFailure;

/** GET_WEB_LOGIN_INFO: Password, type and address of the web login. */
export type GetWebLoginInfoRequest = Record<string, never>;

/** GET_WEB_LOGIN_INFO, success: the device answered. */
export interface GetWebLoginInfoSuccess {
  Status: "0";
  /** password of the web login; e.g. "zaun-und-tor-58"; at most 128 bytes; secret */
  Password: string;
  /** type of web login; 0 for the account of the administrator, 1 for a separate password; at most 8 bytes */
  WebLoginType: string;
  /** address of the web login; IPv4 address, e.g. "192.168.1.1"; at most 64 bytes */
  WebLoginIp: string;
}

/** GET_WEB_LOGIN_INFO, failure. */
export interface GetWebLoginInfoFailure {
  Status: "1";
  /** "get web login info failed": the device could not answer */
  FailReason: "get web login info failed";
}

/** Reply of GET_WEB_LOGIN_INFO. */
export type GetWebLoginInfoReply = GetWebLoginInfoSuccess | GetWebLoginInfoFailure;

/** GET_WIFI_CHANNEL_LIST: Channels that the radios may use. */
export type GetWifiChannelListRequest = Record<string, never>;

/** List24g: at most 64 channels at 2.4 GHz. */
export interface GetWifiChannelListList24g {
  /** number of the channel; at most 6 bytes */
  Name: string;
}

/** List58g: at most 64 channels at 5 GHz. */
export interface GetWifiChannelListList58g {
  /** number of the channel; at most 6 bytes */
  Name: string;
}

/** GET_WIFI_CHANNEL_LIST, success: the device answered. */
export interface GetWifiChannelListSuccess {
  /** at most 64 channels at 2.4 GHz */
  List24g: GetWifiChannelListList24g[];
  /** at most 64 channels at 5 GHz */
  List58g: GetWifiChannelListList58g[];
  Status: "0";
}

/** GET_WIFI_CHANNEL_LIST, failure. */
export interface GetWifiChannelListFailure {
  Status: "1";
  /** "Get Wifi channel error": the device could not answer */
  FailReason: "Get Wifi channel error";
}

/** Reply of GET_WIFI_CHANNEL_LIST. */
export type GetWifiChannelListReply = GetWifiChannelListSuccess | GetWifiChannelListFailure;

/** GET_WIFI_INFO: Settings of one SSID. */
export interface GetWifiInfoRequest {
  /** number of the SSID, from 1; the device decides which exist; truncated to 63 bytes */
  SSIDIndex: string;
}

/** GET_WIFI_INFO, success: the device answered. */
export interface GetWifiInfoSuccess {
  Status: "0";
  /** network name; e.g. "Lindenhof"; at most 64 bytes */
  SSID: string;
  /** password of the network; e.g. "apfelbaum-1962"; at most 64 bytes; secret */
  PWD: string;
  /** type of encryption; OPEN, WPA2, WPA3 or WPA2/3; at most 8 bytes */
  ENCRYPT: string;
  /** transmit power; whole number, in %, e.g. "100"; at most 64 bytes */
  PowerLevel: string;
  /** channel that is set; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes */
  Channel: string;
  /** channel in use; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes */
  UsedChannel: string;
  /** whether the network is on; 1 for on, 0 for off; at most 8 bytes */
  Enable: string;
  /** bandwidth of the channel; whole number, in MHz, e.g. "20"; at most 16 bytes */
  Bandwidth: string;
  /** whether the name is broadcast; 1 for on, 0 for off, -1 if not given; at most 8 bytes */
  AdvertisementEnable: string;
  /** newest wireless standard in use; 11a, 11b, 11g, 11n, 11ac or 11ax, -1 if not given; at most 8 bytes */
  Mode: string;
  /** whether beamforming is on; 1 for on, 0 for off, -1 if not given; at most 8 bytes */
  Beamforming: string;
}

/** GET_WIFI_INFO, failure. */
export interface GetWifiInfoFailure {
  /** unchanged from the request */
  SSIDIndex?: string;
  Status: "1";
  /** "no index": there is no index or it is not a string; "index string null": the index is empty; "index is 0, (should be 1 to 8)": the index is 0 or not a number; "get ssid info failed": the device could not answer */
  FailReason: "no index" | "index string null" | "index is 0, (should be 1 to 8)" | "get ssid info failed";
}

/** Reply of GET_WIFI_INFO. */
export type GetWifiInfoReply = GetWifiInfoSuccess | GetWifiInfoFailure;

/** GET_WIFI_LIST_INFO: Settings of all SSIDs, and the two switches that all radios share. */
export type GetWifiListInfoRequest = Record<string, never>;

/** WIFIList: the SSIDs. */
export interface GetWifiListInfoWIFIList {
  /** number of the SSID; at most 11 bytes */
  SSIDIndex: string;
  /** network name; e.g. "Lindenhof"; at most 64 bytes */
  SSID: string;
  /** password of the network; e.g. "apfelbaum-1962"; at most 64 bytes; secret */
  PWD: string;
  /** type of encryption; OPEN, WPA2, WPA3 or WPA2/3; at most 8 bytes */
  ENCRYPT: string;
  /** transmit power; whole number, in %, e.g. "100"; at most 64 bytes */
  PowerLevel: string;
  /** channel that is set; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes */
  Channel: string;
  /** whether the network is on; 1 for on, 0 for off; at most 8 bytes */
  Enable: string;
  /** permissions of clients; FULL, or GUEST for Internet access only; at most 8 bytes */
  PermissionProperty: string;
  /** band of the SSID; a device may use any number but 0 for 5 GHz; 0 for 2.4 GHz, 1 for 5 GHz, e.g. "0"; at most 16 bytes */
  Type: string;
  /** bandwidth of the channel; whole number, in MHz, e.g. "20"; at most 16 bytes */
  Bandwidth: string;
  /** whether the name is broadcast; 1 for on, 0 for off, -1 if not given; at most 8 bytes */
  AdvertisementEnable: string;
  /** newest wireless standard in use; 11a, 11b, 11g, 11n, 11ac or 11ax, -1 if not given; at most 8 bytes */
  Mode: string;
  /** whether beamforming is on; 1 for on, 0 for off, -1 if not given; at most 8 bytes */
  Beamforming: string;
}

/** GET_WIFI_LIST_INFO, success: the device reported the number of SSIDs and the state of station control; an SSID that it could not report is left out. */
export interface GetWifiListInfoSuccess {
  /** the SSIDs */
  WIFIList: GetWifiListInfoWIFIList[];
  /** "1" when stations are steered between the radios */
  StaCtrl: "1" | "0";
  /** whether fast roaming is on, if it is known; 1 for on, 0 for off; at most 8 bytes */
  FastRoaming?: string;
  Status: "0";
}

/** GET_WIFI_LIST_INFO, failure. */
export interface GetWifiListInfoFailure {
  Status: "1";
  /** "get ssid_num error": the device could not report the number of SSIDs; "get stactrl error": the device could not report the state of station control */
  FailReason: "get ssid_num error" | "get stactrl error";
}

/** Reply of GET_WIFI_LIST_INFO. */
export type GetWifiListInfoReply = GetWifiListInfoSuccess | GetWifiListInfoFailure;

/** GET_WIFI_SLEEP_SCHEDULE: Periods in which the Wi-Fi sleeps. */
export type GetWifiSleepScheduleRequest = Record<string, never>;

/** WIFISleepList: at most three periods. */
export interface GetWifiSleepScheduleWIFISleepList {
  /** whether the period is on; 1 for on, 0 for off; at most 16 bytes */
  Enable: string;
  /** start of the sleep; HH:MM, from 00:00 to 23:59, e.g. "23:30"; at most 32 bytes */
  StartTime: string;
  /** end of the sleep; HH:MM, from 00:00 to 23:59, e.g. "05:45"; at most 32 bytes */
  EndTime: string;
  /** days of the week; 1 (Monday) to 7, separated by commas, e.g. "1,2,3,4,7"; at most 32 bytes */
  DaysOfWeek: string;
}

/** GET_WIFI_SLEEP_SCHEDULE, success: always; a period that the device could not report is left out. */
export interface GetWifiSleepScheduleSuccess {
  /** at most three periods */
  WIFISleepList: GetWifiSleepScheduleWIFISleepList[];
  Status: "0";
}

/** Reply of GET_WIFI_SLEEP_SCHEDULE. */
export type GetWifiSleepScheduleReply = GetWifiSleepScheduleSuccess;

/** GET_WPS_ENABLE: Whether WPS is on. */
export type GetWpsEnableRequest = Record<string, never>;

/** GET_WPS_ENABLE, success: the device answered. */
export interface GetWpsEnableSuccess {
  /** whether WPS is on: 1 for on, 0 for off, or another number of the device; at most 7 bytes */
  Enable: string;
  Status: "0";
}

/** GET_WPS_ENABLE, failure. */
export interface GetWpsEnableFailure {
  Status: "1";
  /** "Get wps enable failed": the device could not answer */
  FailReason: "Get wps enable failed";
}

/** Reply of GET_WPS_ENABLE. */
export type GetWpsEnableReply = GetWpsEnableSuccess | GetWpsEnableFailure;

/** HG_GET_UPDATE_STATUS: Version of the running firmware. */
export type HgGetUpdateStatusRequest = Record<string, never>;

/** HG_GET_UPDATE_STATUS, success: the device answered. */
export interface HgGetUpdateStatusSuccess {
  Status: "0";
  /** always this text */
  up_status: "0";
  /** name of the device or of the image; e.g. "Lindenhof"; at most 64 bytes */
  name: string;
  /** hardware version; e.g. "V1.2"; at most 64 bytes */
  HWVersion: string;
  /** firmware version; e.g. "V2.4.1"; at most 64 bytes */
  FWVersion: string;
  /** date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 64 bytes */
  FWDATA: string;
  /** type of device; e.g. "HGU-AX3000"; at most 64 bytes */
  DeviceType: string;
  /** code of the operator's area; e.g. "NORTH-07"; at most 40 bytes */
  AreaCode: string;
}

/** HG_GET_UPDATE_STATUS, failure. */
export interface HgGetUpdateStatusFailure {
  Status: "1";
  /** "get update status info failed": the device could not answer */
  FailReason: "get update status info failed";
}

/** Reply of HG_GET_UPDATE_STATUS. */
export type HgGetUpdateStatusReply = HgGetUpdateStatusSuccess | HgGetUpdateStatusFailure;

/** HG_IMAGE_DOWNLOAD: Downloads an image of the firmware, to be flashed later. */
export interface HgImageDownloadRequest {
  /** URL of the image, of any length; e.g. "https://updates.example/hgu.img" */
  UpdateUrl: string;
}

/** HG_IMAGE_DOWNLOAD, success: the image was downloaded. */
export interface HgImageDownloadSuccess {
  Status: "0";
}

/** HG_IMAGE_DOWNLOAD, failure. */
export interface HgImageDownloadFailure {
  /** unchanged from the request */
  UpdateUrl?: string;
  Status: "1";
  /** "json_url node null": the URL is missing or not a string; "get update status error": the device does not report the running version; "update status maybe downloading or upgrading": another image is being downloaded or flashed; "hg download image failed": the image could not be downloaded */
  FailReason: "json_url node null" | "get update status error" | "update status maybe downloading or upgrading" | "hg download image failed";
}

/** Reply of HG_IMAGE_DOWNLOAD. */
export type HgImageDownloadReply = HgImageDownloadSuccess | HgImageDownloadFailure;

/** HG_IMAGE_UPDATE: Flashes the downloaded image. */
export interface HgImageUpdateRequest {
  /** "1" to flash now; anything else does nothing */
  Update: string;
}

/** HG_IMAGE_UPDATE, success: the image was flashed, or flashing was not requested. */
export interface HgImageUpdateSuccess {
  /** unchanged from the request */
  Update?: string;
  Status: "0";
}

/** HG_IMAGE_UPDATE, failure. */
export interface HgImageUpdateFailure {
  /** unchanged from the request */
  Update?: string;
  Status: "1";
  /** "json node null": Update is missing or not a string; "gghelper_update_image failed": the device could not flash the image */
  FailReason: "json node null" | "gghelper_update_image failed";
}

/** Reply of HG_IMAGE_UPDATE. */
export type HgImageUpdateReply = HgImageUpdateSuccess | HgImageUpdateFailure;

/** HG_INSPECTION: Inspects the whole gateway. */
export type HgInspectionRequest = Record<string, never>;

/** HG_INSPECTION, success: the device answered. */
export interface HgInspectionSuccess {
  Status: "0";
  /** number of Wi-Fi clients; whole number, e.g. "8"; at most 8 bytes */
  WiFiDevNum: string;
  /** security level of the encryption; LOW, MEDIUM or HIGH; at most 8 bytes */
  Security: string;
  /** channel in use; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes */
  Channel: string;
  /** congestion of the channel; whole number, in %, e.g. "33"; at most 8 bytes */
  Congestion: string;
  /** firmware version; e.g. "V2.4.1"; at most 1088 bytes */
  FWVersion: string;
  /** state of the WAN connection; Connected or Disconnected; at most 64 bytes */
  WanStatus: string;
  /** state of the Internet connection; 1 for up, 0 for down; at most 392 bytes */
  NetStatus: string;
  /** IP address of the WAN side; IPv4 address, e.g. "100.72.18.203"; at most 64 bytes */
  WanIP: string;
  /** network mask of the WAN side; IPv4 mask, e.g. "255.255.255.255"; at most 256 bytes */
  NetMask: string;
  /** transmit power; whole number, in %, e.g. "100"; at most 8 bytes */
  PowerLevel: string;
  /** whether the firewall is on; 1 for on, 0 for off; at most 4 bytes */
  FireWallEnable: string;
}

/** HG_INSPECTION, failure. */
export interface HgInspectionFailure {
  Status: "1";
  /** "inspect hg failed": the device could not answer */
  FailReason: "inspect hg failed";
}

/** Reply of HG_INSPECTION. */
export type HgInspectionReply = HgInspectionSuccess | HgInspectionFailure;

/** HG_LOCAL_RECOVERY: Restores the factory settings. */
export type HgLocalRecoveryRequest = Record<string, never>;

/** HG_LOCAL_RECOVERY, success: the device accepted the change. */
export interface HgLocalRecoverySuccess {
  Status: "0";
}

/** HG_LOCAL_RECOVERY, failure. */
export interface HgLocalRecoveryFailure {
  Status: "1";
  /** "recovery failed": the device refused the change */
  FailReason: "recovery failed";
}

/** Reply of HG_LOCAL_RECOVERY. */
export type HgLocalRecoveryReply = HgLocalRecoverySuccess | HgLocalRecoveryFailure;

/** HG_NETCONN_INSPECTION: Checks the DNS and the WAN connection. */
export type HgNetconnInspectionRequest = Record<string, never>;

/** HG_NETCONN_INSPECTION, success: the device answered. */
export interface HgNetconnInspectionSuccess {
  Status: "0";
  /** DNS state; 1 for up, 0 for down; at most 8 bytes */
  DnsStatus: string;
  /** state of the WAN connection; Connected or Disconnected; at most 64 bytes */
  WanStatus: string;
}

/** HG_NETCONN_INSPECTION, failure. */
export interface HgNetconnInspectionFailure {
  Status: "1";
  /** "get net connect inspection failed": the device could not answer */
  FailReason: "get net connect inspection failed";
}

/** Reply of HG_NETCONN_INSPECTION. */
export type HgNetconnInspectionReply = HgNetconnInspectionSuccess | HgNetconnInspectionFailure;

/** HG_NETCONN_OPTIMIZATION: Repairs the network connection. */
export type HgNetconnOptimizationRequest = Record<string, never>;

/** HG_NETCONN_OPTIMIZATION, success: the device answered. */
export interface HgNetconnOptimizationSuccess {
  Status: "0";
  /** DNS state; 1 for up, 0 for down; at most 8 bytes */
  DnsStatus: string;
}

/** HG_NETCONN_OPTIMIZATION, failure. */
export interface HgNetconnOptimizationFailure {
  Status: "1";
  /** "Net connect optimize failed": the device could not answer */
  FailReason: "Net connect optimize failed";
}

/** Reply of HG_NETCONN_OPTIMIZATION. */
export type HgNetconnOptimizationReply = HgNetconnOptimizationSuccess | HgNetconnOptimizationFailure;

/** HG_NETQUAL_INSPECTION: Measures the quality of the network connection. */
export type HgNetqualInspectionRequest = Record<string, never>;

/** HG_NETQUAL_INSPECTION, success: the device answered. */
export interface HgNetqualInspectionSuccess {
  Status: "0";
  /** quality of the connection; GOOD, FAIR or POOR, or NONE without a connection; at most 1032 bytes */
  NetQuality: string;
}

/** HG_NETQUAL_INSPECTION, failure. */
export interface HgNetqualInspectionFailure {
  Status: "1";
  /** "Net quality inspection failed": the device could not answer */
  FailReason: "Net quality inspection failed";
}

/** Reply of HG_NETQUAL_INSPECTION. */
export type HgNetqualInspectionReply = HgNetqualInspectionSuccess | HgNetqualInspectionFailure;

/** HG_NETQUAL_OPTIMIZATION: Improves the quality of the network connection. */
export type HgNetqualOptimizationRequest = Record<string, never>;

/** HG_NETQUAL_OPTIMIZATION, success: the device answered. */
export interface HgNetqualOptimizationSuccess {
  Status: "0";
  /** quality of the connection; GOOD, FAIR or POOR, or NONE without a connection; at most 1032 bytes */
  NetQuality: string;
}

/** HG_NETQUAL_OPTIMIZATION, failure. */
export interface HgNetqualOptimizationFailure {
  Status: "1";
  /** "Net quality optimize failed": the device could not answer */
  FailReason: "Net quality optimize failed";
}

/** Reply of HG_NETQUAL_OPTIMIZATION. */
export type HgNetqualOptimizationReply = HgNetqualOptimizationSuccess | HgNetqualOptimizationFailure;

/** HG_RESOURCE_INSPECTION: Load of the gateway. */
export type HgResourceInspectionRequest = Record<string, never>;

/** HG_RESOURCE_INSPECTION, success: the device answered. */
export interface HgResourceInspectionSuccess {
  Status: "0";
  /** CPU load; whole number, in %, e.g. "26"; at most 8 bytes */
  CpuPercent: string;
  /** memory load; whole number, in %, e.g. "47"; at most 8 bytes */
  MemPercent: string;
  /** number of attached devices; whole number, e.g. "11"; at most 8 bytes */
  LanDevNum: string;
  /** number of devices under parental control; whole number, e.g. "2"; at most 8 bytes */
  ProtectedDevNum: string;
}

/** HG_RESOURCE_INSPECTION, failure. */
export interface HgResourceInspectionFailure {
  Status: "1";
  /** "get resource inspection info failed": the device could not answer */
  FailReason: "get resource inspection info failed";
}

/** Reply of HG_RESOURCE_INSPECTION. */
export type HgResourceInspectionReply = HgResourceInspectionSuccess | HgResourceInspectionFailure;

/** HG_RESOURCE_OPTIMIZATION: Frees resources of the gateway. */
export type HgResourceOptimizationRequest = Record<string, never>;

/** HG_RESOURCE_OPTIMIZATION, success: the device answered. */
export interface HgResourceOptimizationSuccess {
  Status: "0";
  /** CPU load; whole number, in %, e.g. "26"; at most 8 bytes */
  CpuPercent: string;
  /** memory load; whole number, in %, e.g. "47"; at most 8 bytes */
  MemPercent: string;
}

/** HG_RESOURCE_OPTIMIZATION, failure. */
export interface HgResourceOptimizationFailure {
  Status: "1";
  /** "get resource inspection info failed": the device could not answer */
  FailReason: "get resource inspection info failed";
}

/** Reply of HG_RESOURCE_OPTIMIZATION. */
export type HgResourceOptimizationReply = HgResourceOptimizationSuccess | HgResourceOptimizationFailure;

/** HG_SPEEDTEST_REQUEST: Runs a speed test, and waits for it. */
export type HgSpeedtestRequestRequest = Record<string, never>;

/** HG_SPEEDTEST_REQUEST, success: the device answered. */
export interface HgSpeedtestRequestSuccess {
  /** download bandwidth; whole number, in kbit/s, e.g. "232020"; at most 8 bytes */
  DownBandWidth: string;
  /** upload bandwidth; whole number, in kbit/s, e.g. "37552"; at most 8 bytes */
  UpBandWidth: string;
  /** round-trip time; whole number, in ms, e.g. "26"; at most 8 bytes */
  Delay: string;
  Status: "0";
}

/** HG_SPEEDTEST_REQUEST, failure. */
export interface HgSpeedtestRequestFailure {
  Status: "1";
  /** "speedtest request failed": the device could not answer */
  FailReason: "speedtest request failed";
}

/** Reply of HG_SPEEDTEST_REQUEST. */
export type HgSpeedtestRequestReply = HgSpeedtestRequestSuccess | HgSpeedtestRequestFailure;

/** HG_WIFI_CHANNEL_POWER_OPTIMIZATION: Moves the Wi-Fi to a better channel and transmit power. */
export interface HgWifiChannelPowerOptimizationRequest {
  /** channel to leave or to prefer; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; truncated to 7 bytes */
  Channel: string;
  /** wanted transmit power; whole number, in %, e.g. "100"; truncated to 7 bytes */
  PowerLevel: string;
}

/** HG_WIFI_CHANNEL_POWER_OPTIMIZATION, success: the device accepted the change. */
export interface HgWifiChannelPowerOptimizationSuccess {
  Status: "0";
  /** new channel; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes */
  Channel: string;
  /** congestion of the new channel; whole number, in %, e.g. "33"; at most 8 bytes */
  Congestion: string;
  /** new transmit power; whole number, in %, e.g. "100"; at most 8 bytes */
  PowerLevel: string;
}

/** HG_WIFI_CHANNEL_POWER_OPTIMIZATION, failure. */
export interface HgWifiChannelPowerOptimizationFailure {
  /** unchanged from the request */
  Channel?: string;
  /** unchanged from the request */
  PowerLevel?: string;
  Status: "1";
  /** "json node null": a key is missing; "value string null": a key is present but not a string; "wifi channel power optimize failed": the device refused the change */
  FailReason: "json node null" | "value string null" | "wifi channel power optimize failed";
}

/** Reply of HG_WIFI_CHANNEL_POWER_OPTIMIZATION. */
export type HgWifiChannelPowerOptimizationReply = HgWifiChannelPowerOptimizationSuccess | HgWifiChannelPowerOptimizationFailure;

/** HG_WIFI_INSPECTION: Inspects the Wi-Fi. */
export type HgWifiInspectionRequest = Record<string, never>;

/** HG_WIFI_INSPECTION, success: the device answered. */
export interface HgWifiInspectionSuccess {
  Status: "0";
  /** number of Wi-Fi clients; whole number, e.g. "8"; at most 8 bytes */
  WiFiDevNum: string;
  /** security level of the encryption; LOW, MEDIUM or HIGH; at most 8 bytes */
  Security: string;
  /** channel in use; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes */
  Channel: string;
  /** congestion of the channel; whole number, in %, e.g. "33"; at most 8 bytes */
  Congestion: string;
}

/** HG_WIFI_INSPECTION, failure. */
export interface HgWifiInspectionFailure {
  Status: "1";
  /** "get wifi inspection info failed": the device could not answer */
  FailReason: "get wifi inspection info failed";
}

/** Reply of HG_WIFI_INSPECTION. */
export type HgWifiInspectionReply = HgWifiInspectionSuccess | HgWifiInspectionFailure;

/** HG_WIFI_OPTIMIZATION: Moves the Wi-Fi to a better channel. */
export interface HgWifiOptimizationRequest {
  /** channel to leave or to prefer; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; truncated to 7 bytes */
  Channel: string;
}

/** HG_WIFI_OPTIMIZATION, success: the device accepted the change. */
export interface HgWifiOptimizationSuccess {
  Status: "0";
  /** new channel; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes */
  Channel: string;
  /** congestion of the new channel; whole number, in %, e.g. "33"; at most 8 bytes */
  Congestion: string;
}

/** HG_WIFI_OPTIMIZATION, failure. */
export interface HgWifiOptimizationFailure {
  /** unchanged from the request */
  Channel?: string;
  Status: "1";
  /** "json node null": a key is missing; "value string null": a key is present but not a string; "SET_HG_SLEEP_INFO_FAIL": the device refused the change */
  FailReason: "json node null" | "value string null" | "SET_HG_SLEEP_INFO_FAIL";
}

/** Reply of HG_WIFI_OPTIMIZATION. */
export type HgWifiOptimizationReply = HgWifiOptimizationSuccess | HgWifiOptimizationFailure;

/** MainRouter: the main router. */
export interface ImageDownloadRequestMainRouter {
  /** URL of the image, of any length; e.g. "https://updates.example/hgu.img" */
  UpdateUrl: string;
}

/** IMAGE_DOWNLOAD: Updates the firmware of the main router. */
export interface ImageDownloadRequest {
  /** the main router */
  MainRouter: ImageDownloadRequestMainRouter;
  /** the child routers; ignored, but removed */
  ChildRouter?: unknown;
}

/** IMAGE_DOWNLOAD, success: the worker was started. */
export interface ImageDownloadSuccess {
  Status: "0";
  updateResult: "0";
}

/** IMAGE_DOWNLOAD, failure: memory ran out. */
export interface ImageDownloadFailure {
  updateResult: "-1";
  Status: "1";
  FailReason: "url is null";
}

/** IMAGE_DOWNLOAD, failure: another image is being downloaded or flashed. */
export interface ImageDownloadFailure2 {
  updateResult: "-1";
  Status: "1";
  FailReason: "dev is dowing image now";
}

/** IMAGE_DOWNLOAD, failure: the worker could not be started. */
export interface ImageDownloadFailure3 {
  updateResult: "-1";
  Status: "1";
  FailReason: "failed to create down image thread";
}

/** IMAGE_DOWNLOAD, failure. */
export interface ImageDownloadFailure4 {
  /** unchanged from the request */
  MainRouter?: unknown;
  Status: "1";
  /** "Get mainrouter error": MainRouter is missing; "Get UpdateUrl null": the URL is missing or not a string */
  FailReason: "Get mainrouter error" | "Get UpdateUrl null";
}

/** Reply of IMAGE_DOWNLOAD. */
export type ImageDownloadReply = ImageDownloadSuccess | ImageDownloadFailure | ImageDownloadFailure2 | ImageDownloadFailure3 | ImageDownloadFailure4;

/** MainRouter: the main router. */
export interface ImageUpdateRequestMainRouter {
  /** "1" to flash now; anything else does nothing */
  Update: string;
}

/** IMAGE_UPDATE: Flashes the downloaded image. */
export interface ImageUpdateRequest {
  /** the main router */
  MainRouter: ImageUpdateRequestMainRouter;
}

/** IMAGE_UPDATE, success: the image was flashed, or flashing was not requested. */
export interface ImageUpdateSuccess {
  Status: "0";
}

/** IMAGE_UPDATE, failure. */
export interface ImageUpdateFailure {
  /** unchanged from the request */
  MainRouter?: unknown;
  Status: "1";
  /** "Get MainRouter error": MainRouter is missing; "Get Update error": Update is missing or not a string; "update status maybe downloding or upgrading": another image is being downloaded or flashed; "update image failed": the device could not flash the image */
  FailReason: "Get MainRouter error" | "Get Update error" | "update status maybe downloding or upgrading" | "update image failed";
}

/** Reply of IMAGE_UPDATE. */
export type ImageUpdateReply = ImageUpdateSuccess | ImageUpdateFailure;

/** LINK_CHECK: Checks addresses, DNS and the channels of both radios, and pings a public DNS server. */
export type LinkCheckRequest = Record<string, never>;

/** LINK_CHECK, success: in any case; each value except that of the ping is as the device left it. */
export interface LinkCheckSuccess {
  /** IP address on the LAN side; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes */
  LanIP: string;
  /** IP address on the WAN side; IPv4 address, e.g. "100.72.18.203"; at most 32 bytes */
  WanIp: string;
  /** DNS state; 1 for up, 0 for down; at most 8 bytes */
  DnsCheck: string;
  /** state of DHCP; always the same as DnsCheck; 1 for up, 0 for down; at most 8 bytes */
  DhcpCheck: string;
  /** address that replied to a ping; empty if there was no reply; IP address, e.g. "192.0.2.1" */
  PingCheck: string;
  /** whether the 2.4 GHz radio is on; 1 for on, 0 for off; at most 8 bytes */
  Wifi24Enable: string;
  /** channel of the 2.4 GHz radio; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes */
  Wifi24Channel: string;
  /** quality of the 2.4 GHz channel; GOOD, FAIR or POOR, or NONE without a connection; at most 8 bytes */
  Wifi24ChannelCheck: string;
  /** whether the 5 GHz radio is on; 1 for on, 0 for off; at most 8 bytes */
  Wifi58Enable: string;
  /** channel of the 5 GHz radio; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "44"; at most 8 bytes */
  Wifi58Channel: string;
  /** quality of the 5 GHz channel; GOOD, FAIR or POOR, or NONE without a connection; at most 8 bytes */
  Wifi58ChannelCheck: string;
  Status: "0";
}

/** Reply of LINK_CHECK. */
export type LinkCheckReply = LinkCheckSuccess;

/** Image: the image. */
export interface PlateformUpdateImmediateRequestImage {
  /** version of the image; the value is ignored */
  Version: unknown;
  /** URL of the image, of any length; refused if it is the text of the running version; e.g. "https://updates.example/hgu.img" */
  UpdateUrl: string;
}

/** PLATEFORM_UPDATE_IMMEDIATE: Updates the firmware on behalf of the platform. */
export interface PlateformUpdateImmediateRequest {
  /** the image */
  Image: PlateformUpdateImmediateRequestImage;
}

/** PLATEFORM_UPDATE_IMMEDIATE, success: the worker was started. */
export interface PlateformUpdateImmediateSuccess {
  Status: "0";
  updateResult: "0";
  FailReason: "success";
}

/** PLATEFORM_UPDATE_IMMEDIATE, failure: the device does not report the running version. */
export interface PlateformUpdateImmediateFailure {
  Status: "1";
  FailReason: "handle pack error";
}

/** PLATEFORM_UPDATE_IMMEDIATE, failure: Image is missing. */
export interface PlateformUpdateImmediateFailure2 {
  Status: "1";
  FailReason: "handle pack error";
}

/** PLATEFORM_UPDATE_IMMEDIATE, failure: Version is missing. */
export interface PlateformUpdateImmediateFailure3 {
  Status: "1";
  FailReason: "handle pack error";
}

/** PLATEFORM_UPDATE_IMMEDIATE, failure: the URL is missing or not a string. */
export interface PlateformUpdateImmediateFailure4 {
  Status: "1";
  FailReason: "handle pack error";
}

/** PLATEFORM_UPDATE_IMMEDIATE, failure: the URL is the running version. */
export interface PlateformUpdateImmediateFailure5 {
  Status: "1";
  FailReason: "handle pack error";
}

/** PLATEFORM_UPDATE_IMMEDIATE, failure: memory ran out. */
export interface PlateformUpdateImmediateFailure6 {
  updateResult: "-1";
  Status: "1";
  FailReason: "url is null";
}

/** PLATEFORM_UPDATE_IMMEDIATE, failure: another image is being downloaded or flashed. */
export interface PlateformUpdateImmediateFailure7 {
  updateResult: "-1";
  Status: "1";
  FailReason: "dev is dowing image now";
}

/** PLATEFORM_UPDATE_IMMEDIATE, failure: the worker could not be started. */
export interface PlateformUpdateImmediateFailure8 {
  updateResult: "-1";
  Status: "1";
  FailReason: "failed to create down image thread";
}

/** Reply of PLATEFORM_UPDATE_IMMEDIATE. */
export type PlateformUpdateImmediateReply = PlateformUpdateImmediateSuccess | PlateformUpdateImmediateFailure | PlateformUpdateImmediateFailure2 | PlateformUpdateImmediateFailure3 | PlateformUpdateImmediateFailure4 | PlateformUpdateImmediateFailure5 | PlateformUpdateImmediateFailure6 | PlateformUpdateImmediateFailure7 | PlateformUpdateImmediateFailure8;

/** QUERY_SYSTEM_INFO: Description and capabilities of the router. */
export type QuerySystemInfoRequest = Record<string, never>;

/** QUERY_SYSTEM_INFO, success: the device answered. */
export interface QuerySystemInfoSuccess {
  Status: "0";
  /** software version; e.g. "V2.4.1"; at most 64 bytes */
  SWVersion: string;
  /** hardware version; e.g. "V1.2"; at most 64 bytes */
  HDVersion: string;
  /** product class; e.g. "HGU-AX3000"; at most 64 bytes */
  ProductCLass: string;
  /** type of processor; e.g. "MIPS 1004Kc 880MHz"; at most 64 bytes */
  CPUClass: string;
  /** type of device; e.g. "HGU"; at most 64 bytes */
  DEVType: string;
  /** second type of device, for a device with two types; e.g. "ONU"; at most 64 bytes */
  DEVType1: string;
  /** list of capabilities; words, separated by commas, e.g. "wifi,mesh,qos,greennet,wps"; at most 64 bytes */
  Capability: string;
  /** type of smart card, if any; e.g. "SIM"; at most 64 bytes */
  Card: string;
  /** type of uplink; e.g. "LAN"; at most 64 bytes */
  UPLink: string;
  /** number of the smart card; e.g. "89490200001234567890"; at most 64 bytes */
  Cardno: string;
  /** whether IPv6 is supported; 1 for yes, 0 for no; at most 64 bytes */
  IPV6: string;
  /** whether ports can be bound to VLANs; 1 for yes, 0 for no; at most 64 bytes */
  VLANbind: string;
  /** whether the LEDs can be switched; 1 for yes, 0 for no; at most 64 bytes */
  LED: string;
  /** whether there is an NFC tag; 1 for yes, 0 for no; at most 64 bytes */
  NFC: string;
  /** types of VLAN handling that are supported; words, separated by commas, e.g. "tag,transparent"; at most 192 bytes */
  VLANCapability: string;
}

/** QUERY_SYSTEM_INFO, failure. */
export interface QuerySystemInfoFailure {
  Status: "1";
  /** "Get System Info Failed From Gdbus": the device could not answer */
  FailReason: "Get System Info Failed From Gdbus";
}

/** Reply of QUERY_SYSTEM_INFO. */
export type QuerySystemInfoReply = QuerySystemInfoSuccess | QuerySystemInfoFailure;

/** QUERY_TSLINK_CONFIG_STATUS: State of the first configuration. */
export type QueryTslinkConfigStatusRequest = Record<string, never>;

/** QUERY_TSLINK_CONFIG_STATUS, success: the device answered. */
export interface QueryTslinkConfigStatusSuccess {
  /** whether the first configuration is done: "1" for yes */
  ConfiguerStatus: "0" | "1";
  Status: "0";
}

/** QUERY_TSLINK_CONFIG_STATUS, failure. */
export interface QueryTslinkConfigStatusFailure {
  Status: "1";
  /** "devapi get tslink config failed": the device could not answer */
  FailReason: "devapi get tslink config failed";
}

/** Reply of QUERY_TSLINK_CONFIG_STATUS. */
export type QueryTslinkConfigStatusReply = QueryTslinkConfigStatusSuccess | QueryTslinkConfigStatusFailure;

/** QUERY_WAN_INFO: Settings and state of one WAN connection. */
export interface QueryWanInfoRequest {
  /** name of the connection, which selects it; e.g. "Internet"; truncated to 63 bytes */
  WANName: string;
}

/** QUERY_WAN_INFO, success: the device knows the connection. */
export interface QueryWanInfoSuccess {
  Status: "0";
  /** number of the connection; whole number from 1, e.g. "1"; at most 64 bytes */
  INDEX: string;
  /** network interface of the connection; name of the network interface, e.g. "ppp0"; at most 64 bytes */
  IFNAME: string;
  /** whether the connection is routed or bridged; IP_Routed or IP_Bridged; at most 64 bytes */
  CONNECTIONTYPE: string;
  /** state of the IPv4 connection; Connected or Disconnected; at most 64 bytes */
  CONNECTIONSTATUS: string;
  /** IP versions of the connection; IPv4 or IPv4/IPv6; at most 64 bytes */
  PROTOCOL: string;
  /** how the connection gets its addresses, in the terms of the platform; DHCP, PPPoE, Static or Bridge; at most 64 bytes */
  UPLINKMODE: string;
  /** services that use the connection; INTERNET, IPTV, TR069, VOIP and OTHER, separated by commas, e.g. "TR069,VOIP"; at most 64 bytes */
  SERVICELIST: string;
  /** how the connection gets its IPv4 address; DHCP, PPPoE or Static; at most 64 bytes */
  ADDRESSTYPE: string;
  /** IPv4 address; e.g. "100.72.18.203"; at most 64 bytes */
  IPADDRESS: string;
  /** IPv4 mask; e.g. "255.255.255.255"; at most 64 bytes */
  SUBNETMASK: string;
  /** IPv4 address of the default gateway, empty when there is none; e.g. "100.72.0.1"; at most 64 bytes */
  GATEWAY: string;
  /** first DNS server, IPv4; IPv4 address, e.g. "100.64.0.53"; at most 64 bytes */
  DNS1: string;
  /** second DNS server, IPv4; IPv4 address, e.g. "100.64.1.53"; at most 64 bytes */
  DNS2: string;
  /** state of the IPv6 connection; Connected or Disconnected; at most 64 bytes */
  IPV6_CONNECTIONSTATUS: string;
  /** IPv6 address, empty when there is none; e.g. "2001:db8:4f20::1"; at most 64 bytes */
  IPV6_IPADDRESS: string;
  /** IPv6 prefix for the LAN, empty when there is none; e.g. "2001:db8:4f20:a00::"; at most 64 bytes */
  IPV6_PRIFIX: string;
  /** length of the IPv6 prefix; number of bits, e.g. "56"; at most 64 bytes */
  IPV6_PREFIXLENGTH: string;
  /** IPv6 address of the default gateway, empty when there is none; e.g. "fe80::1"; at most 64 bytes */
  IPV6_GATEWAY: string;
  /** first DNS server, IPv6; IPv6 address, e.g. "2001:db8:53::1"; at most 64 bytes */
  IPV6_DNS1: string;
  /** second DNS server, IPv6; IPv6 address, e.g. "2001:db8:53::2"; at most 64 bytes */
  IPV6_DNS2: string;
  /** name of the PPPoE account; e.g. "k4471902@fibre.example"; at most 64 bytes */
  PPPOE_USR_NAME: string;
  /** password of the PPPoE account; e.g. "Lh7-pq2-Vw9"; at most 64 bytes; secret */
  PPPOE_PASSWORD: string;
  /** whether hosts may connect themselves; 1 for on, 0 for off; at most 64 bytes */
  PPPOE_PROXY: string;
  /** name of the PPPoE service; e.g. "fibre"; at most 64 bytes */
  PPPOE_SERVICENAME: string;
  /** when the PPPoE connection is established; empty if not known; AlwaysOn; at most 64 bytes */
  PPPOE_DIAL_MODE: string;
  /** whether NAT is on; 1 for on, 0 for off; at most 64 bytes */
  NATENABLE: string;
  /** whether quality of service is on; 1 for on, 0 for off; at most 64 bytes */
  QOSENABLE: string;
  /** number of the VLAN; 1 to 4094, e.g. "7"; at most 64 bytes */
  VLANID: string;
  /** priority of the VLAN; 0 to 7, e.g. "0"; at most 64 bytes */
  VLANPRIORITY: string;
}

/** QUERY_WAN_INFO, failure. */
export interface QueryWanInfoFailure {
  /** unchanged from the request */
  WANName?: string;
  Status: "1";
  /** "json object WANName not found!": WANName is missing or not a string; "QUERY_WAN_INFO_FAIL": the device could not answer */
  FailReason: "json object WANName not found!" | "QUERY_WAN_INFO_FAIL";
}

/** Reply of QUERY_WAN_INFO. */
export type QueryWanInfoReply = QueryWanInfoSuccess | QueryWanInfoFailure;

/** QUERY_WAN_NUM: Number and names of the WAN connections. */
export type QueryWanNumRequest = Record<string, never>;

/** QUERY_WAN_NUM, success: the device answered. */
export interface QueryWanNumSuccess {
  Status: "0";
  /** number of WAN connections; whole number, e.g. "4"; at most 8 bytes */
  NUM: string;
  /** names of the connections; names, separated by commas, e.g. "Internet,IPTV,Management,Voice"; at most 200 bytes */
  Description: string;
}

/** QUERY_WAN_NUM, failure. */
export interface QueryWanNumFailure {
  Status: "1";
  /** "QUERY_WAN_NUM_FAIL": the device could not answer */
  FailReason: "QUERY_WAN_NUM_FAIL";
}

/** Reply of QUERY_WAN_NUM. */
export type QueryWanNumReply = QueryWanNumSuccess | QueryWanNumFailure;

/** RESPONSE_ROUTER_VERSION: Passes a version report to the agent. */
export interface ResponseRouterVersionRequest {
  /** the version report; it stays in the reply */
  VersionInfo: string;
}

/** RESPONSE_ROUTER_VERSION, success: there is a version report. */
export interface ResponseRouterVersionSuccess {
  /** unchanged from the request */
  VersionInfo?: string;
  Status: "0";
}

/** RESPONSE_ROUTER_VERSION, failure: VersionInfo is missing, empty or not a string; the object is still copied. */
export interface ResponseRouterVersionFailure {
  /** unchanged from the request */
  VersionInfo?: string;
  Status: "1";
}

/** Reply of RESPONSE_ROUTER_VERSION. */
export type ResponseRouterVersionReply = ResponseRouterVersionSuccess | ResponseRouterVersionFailure;

/** RP_CHILD_HG_REBOOT: Restarts a child router. */
export interface RpChildHgRebootRequest {
  /** identifier of the child router; MAC address without colons, e.g. "3C6AD2228140" */
  DeviceID: string;
}

/** RP_CHILD_HG_REBOOT, success: the command was sent. */
export interface RpChildHgRebootSuccess {
  Status: "0";
}

/** RP_CHILD_HG_REBOOT, failure. */
export interface RpChildHgRebootFailure {
  /** unchanged from the request */
  DeviceID?: string;
  Status: "1";
  /** "DeviceID Not Found": the key is missing or not a string; "send json to child err": the command could not be sent */
  FailReason: "DeviceID Not Found" | "send json to child err";
}

/** Reply of RP_CHILD_HG_REBOOT. */
export type RpChildHgRebootReply = RpChildHgRebootSuccess | RpChildHgRebootFailure;

/** RP_HG_REBOOT: Restarts the gateway. */
export type RpHgRebootRequest = Record<string, never>;

/** RP_HG_REBOOT, success: the device accepted the change. */
export interface RpHgRebootSuccess {
  Status: "0";
}

/** RP_HG_REBOOT, failure. */
export interface RpHgRebootFailure {
  Status: "1";
  /** "reboot failed": the device refused the change */
  FailReason: "reboot failed";
}

/** Reply of RP_HG_REBOOT. */
export type RpHgRebootReply = RpHgRebootSuccess | RpHgRebootFailure;

/** SET_ADMIN_INFO: Sets the administrator's account. */
export interface SetAdminInfoRequest {
  /** whose account it is; 1 for the user's account, 2 for the operator's; truncated to 7 bytes */
  Type: string;
  /** name of the administrator; e.g. "admin"; truncated to 127 bytes */
  Name: string;
  /** password of the administrator; e.g. "zaun-und-tor-58"; truncated to 127 bytes; secret */
  Password: string;
}

/** SET_ADMIN_INFO, success: the device accepted the change. */
export interface SetAdminInfoSuccess {
  Status: "0";
}

/** SET_ADMIN_INFO, failure. */
export interface SetAdminInfoFailure {
  /** unchanged from the request */
  Type?: string;
  /** unchanged from the request */
  Name?: string;
  /** unchanged from the request */
  Password?: string;
  Status: "1";
  /** "json node null": a key is missing; "value string null": a key is present but not a string; "set admin info failed": the device refused the change */
  FailReason: "json node null" | "value string null" | "set admin info failed";
}

/** Reply of SET_ADMIN_INFO. */
export type SetAdminInfoReply = SetAdminInfoSuccess | SetAdminInfoFailure;

/** SET_AD_BASE_INFO: Changes the user's settings for an attached device. */
export interface SetAdBaseInfoRequest {
  /** MAC address of the device; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; truncated to 31 bytes */
  MAC: string;
  /** type of device; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; truncated to 31 bytes */
  DevType: string;
  /** name given by the user; e.g. "Anna"; truncated to 31 bytes */
  ByName: string;
  /** whether it may reach the Internet; 1 for on, 0 for off; truncated to 7 bytes */
  AccessEnable: string;
  /** download limit; unchanged when absent, or without SpeedLimit; whole number, 0 for none, in kbit/s, e.g. "20000"; truncated to 15 bytes */
  DownLimit?: string;
  /** ignored, but removed */
  UpLimit?: unknown;
  /** "0" removes the limit; DownLimit has to be given as well */
  SpeedLimit?: string;
  /** whether the IP address is bound to the MAC address; unchanged when absent; 1 for on, 0 for off, -1 if not given; truncated to 7 bytes */
  StaticDhcpEnable?: string;
  /** IP address to bind; required with StaticDhcpEnable; IPv4 address, e.g. "192.168.1.101"; truncated to 63 bytes */
  ip?: string;
}

/** SET_AD_BASE_INFO, success: the device accepted the change. */
export interface SetAdBaseInfoSuccess {
  Status: "0";
}

/** SET_AD_BASE_INFO, failure: the device refused the change. */
export interface SetAdBaseInfoFailure {
  Status: "1";
  /** the device's reason, empty if it gives none; e.g. "there is no device 02:00:00:00:00:01"; at most 64 bytes */
  FailReason: string;
}

/** SET_AD_BASE_INFO, failure. */
export interface SetAdBaseInfoFailure2 {
  Status: "1";
  /** "INVALID_PARAM": a required key is missing or not a string; "ip/mac binding: ip addr missing!": StaticDhcpEnable is given without ip */
  FailReason: "INVALID_PARAM" | "ip/mac binding: ip addr missing!";
}

/** Reply of SET_AD_BASE_INFO. */
export type SetAdBaseInfoReply = SetAdBaseInfoSuccess | SetAdBaseInfoFailure | SetAdBaseInfoFailure2;

/** SET_AP_ALG_ABILITY: Switches NAT helpers (ALG) by protocol. */
export interface SetApAlgAbilityRequest {
  /** whether the PPTP helper is on; 1 for on, 0 for off; truncated to 7 bytes */
  PPTP: string;
  /** whether the FTP helper is on; 1 for on, 0 for off; truncated to 7 bytes */
  FTP: string;
  /** whether the IPsec helper is on; 1 for on, 0 for off; truncated to 7 bytes */
  IPSEC: string;
  /** whether the L2TP helper is on; 1 for on, 0 for off; truncated to 7 bytes */
  L2TP: string;
  /** whether the RTSP helper is on; 1 for on, 0 for off; truncated to 7 bytes */
  RTSP: string;
  /** whether the H.323 helper is on; 1 for on, 0 for off; truncated to 7 bytes */
  H323: string;
  /** whether the SIP helper is on; 1 for on, 0 for off; truncated to 7 bytes */
  SIP: string;
}

/** SET_AP_ALG_ABILITY, success: the device accepted the change. */
export interface SetApAlgAbilitySuccess {
  Status: "0";
}

/** SET_AP_ALG_ABILITY, failure. */
export interface SetApAlgAbilityFailure {
  /** unchanged from the request */
  PPTP?: string;
  /** unchanged from the request */
  FTP?: string;
  /** unchanged from the request */
  IPSEC?: string;
  /** unchanged from the request */
  L2TP?: string;
  /** unchanged from the request */
  RTSP?: string;
  /** unchanged from the request */
  H323?: string;
  /** unchanged from the request */
  SIP?: string;
  Status: "1";
  /** "json param null": a key is missing or not a string; "Set ap ALG ability failed": the device refused the change */
  FailReason: "json param null" | "Set ap ALG ability failed";
}

/** Reply of SET_AP_ALG_ABILITY. */
export type SetApAlgAbilityReply = SetApAlgAbilitySuccess | SetApAlgAbilityFailure;

/** SET_AP_MULTISERVICE_MODE: Sets the multiservice mode of the access point. */
export interface SetApMultiserviceModeRequest {
  /** the mode; NONE, SSID or VLAN; truncated to 7 bytes */
  Mode: string;
}

/** SET_AP_MULTISERVICE_MODE, success: the device accepted the change. */
export interface SetApMultiserviceModeSuccess {
  Status: "0";
}

/** SET_AP_MULTISERVICE_MODE, failure. */
export interface SetApMultiserviceModeFailure {
  /** unchanged from the request */
  Mode?: string;
  Status: "1";
  /** "get param:mode err": the key is missing or not a string; "Set ap multisservice mode failed": the device refused the change */
  FailReason: "get param:mode err" | "Set ap multisservice mode failed";
}

/** Reply of SET_AP_MULTISERVICE_MODE. */
export type SetApMultiserviceModeReply = SetApMultiserviceModeSuccess | SetApMultiserviceModeFailure;

/** SET_ATTACH_DEVICE_RIGHT: Allows an attached device to reach the Internet, or forbids it. */
export interface SetAttachDeviceRightRequest {
  /** MAC address of the device; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; truncated to 63 bytes */
  MAC: string;
  /** whether the device may reach the Internet; ALLOW or DENY; truncated to 63 bytes */
  InternetAccessRight: string;
}

/** SET_ATTACH_DEVICE_RIGHT, success: the device accepted the change. */
export interface SetAttachDeviceRightSuccess {
  Status: "0";
}

/** SET_ATTACH_DEVICE_RIGHT, failure. */
export interface SetAttachDeviceRightFailure {
  /** unchanged from the request */
  MAC?: string;
  /** unchanged from the request */
  InternetAccessRight?: string;
  Status: "1";
  /** "json node null": a key is missing; "value string null": a key is present but not a string; "SET_ATTATCH_DEVICE_RIGHT_FAIL": the device refused the change */
  FailReason: "json node null" | "value string null" | "SET_ATTATCH_DEVICE_RIGHT_FAIL";
}

/** Reply of SET_ATTACH_DEVICE_RIGHT. */
export type SetAttachDeviceRightReply = SetAttachDeviceRightSuccess | SetAttachDeviceRightFailure;

/** SET_CHILD_ROUTERAD_BASE_INFO: Changes the settings for a device of a child router. */
export interface SetChildRouteradBaseInfoRequest {
  /** identifier of the child router; MAC address without colons, e.g. "3C6AD2228140" */
  DeviceID: string;
  /** MAC address of the device */
  Mac?: unknown;
  /** type of device */
  DevType?: unknown;
  /** name given by the user */
  ByName?: unknown;
  /** "1" when it is to have exclusive bandwidth */
  NetMonopoly?: unknown;
  /** "1" when it may reach the Internet */
  AccessEnable?: unknown;
}

/** SET_CHILD_ROUTERAD_BASE_INFO, success: the command was sent. */
export interface SetChildRouteradBaseInfoSuccess {
  Status: "0";
}

/** SET_CHILD_ROUTERAD_BASE_INFO, failure. */
export interface SetChildRouteradBaseInfoFailure {
  Status: "1";
  /** "DeviceID Not Found": the identifier is missing or not a string; "send json to child err": the command could not be sent */
  FailReason: "DeviceID Not Found" | "send json to child err";
}

/** Reply of SET_CHILD_ROUTERAD_BASE_INFO. */
export type SetChildRouteradBaseInfoReply = SetChildRouteradBaseInfoSuccess | SetChildRouteradBaseInfoFailure;

/** SET_CHILD_ROUTER_HG_BASE_INFO: Renames a child router. */
export interface SetChildRouterHgBaseInfoRequest {
  /** identifier of the child router; MAC address without colons, e.g. "3C6AD2228140" */
  DeviceID: string;
  /** name of the child router; e.g. "Attic" */
  Name: string;
}

/** SET_CHILD_ROUTER_HG_BASE_INFO, success: the command was sent. */
export interface SetChildRouterHgBaseInfoSuccess {
  Status: "0";
}

/** SET_CHILD_ROUTER_HG_BASE_INFO, failure. */
export interface SetChildRouterHgBaseInfoFailure {
  /** unchanged from the request */
  DeviceID?: string;
  /** unchanged from the request */
  Name?: string;
  Status: "1";
  /** "param json not found": a key is missing or not a string; "set childrouter info failed": the command could not be sent */
  FailReason: "param json not found" | "set childrouter info failed";
}

/** Reply of SET_CHILD_ROUTER_HG_BASE_INFO. */
export type SetChildRouterHgBaseInfoReply = SetChildRouterHgBaseInfoSuccess | SetChildRouterHgBaseInfoFailure;

/** SET_FIREWALL_SWITCH: Switches the firewall. */
export interface SetFirewallSwitchRequest {
  /** whether the firewall is on; 1 for on, 0 for off; truncated to 15 bytes */
  Enable: string;
}

/** SET_FIREWALL_SWITCH, success: the device accepted the change. */
export interface SetFirewallSwitchSuccess {
  /** unchanged from the request */
  Enable?: string;
  Status: "0";
}

/** SET_FIREWALL_SWITCH, failure: Enable is missing or not a string; no reply key is added. */
export interface SetFirewallSwitchFailure {
  /** unchanged from the request */
  Enable?: string;
}

/** SET_FIREWALL_SWITCH, failure. */
export interface SetFirewallSwitchFailure2 {
  /** unchanged from the request */
  Enable?: string;
  Status: "1";
  /** "set firewall switch failed": the device refused the change */
  FailReason: "set firewall switch failed";
}

/** Reply of SET_FIREWALL_SWITCH. */
export type SetFirewallSwitchReply = SetFirewallSwitchSuccess | SetFirewallSwitchFailure | SetFirewallSwitchFailure2;

/** DeviceList: the devices. */
export interface SetGreennetDeviceListRequestDeviceList {
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "72:9B:E0:46:D8:15"; truncated to 63 bytes */
  Mac: string;
  /** name given by the user; e.g. "Jonas"; truncated to 63 bytes */
  Name: string;
  /** whether notices about the device are wanted; 1 for on, 0 for off; truncated to 7 bytes */
  NotifyEnable: string;
}

/** SET_GREENNET_DEVICE_LIST: Replaces the devices under parental control. */
export interface SetGreennetDeviceListRequest {
  /** the devices */
  DeviceList: SetGreennetDeviceListRequestDeviceList[];
}

/** SET_GREENNET_DEVICE_LIST, success: the device stored the list. */
export interface SetGreennetDeviceListSuccess {
  Status: "0";
}

/** SET_GREENNET_DEVICE_LIST, failure: the devices are stored, but the others could not be removed; the reply has two statuses. */
export interface SetGreennetDeviceListFailure {
  FailReason: "del green net info failed";
  Status: "0";
}

/** SET_GREENNET_DEVICE_LIST, failure. */
export interface SetGreennetDeviceListFailure2 {
  /** unchanged from the request */
  DeviceList?: unknown;
  Status: "1";
  /** "json node: list not found": there is no list; "set greenaccess enable failed": the access restriction could not be switched on; "malloc mac_list failed": memory ran out; "parse green host info failed": an element lacks a key, or the device could not look up or add its entry; "set lan host info failed": the device could not store an element */
  FailReason: "json node: list not found" | "set greenaccess enable failed" | "malloc mac_list failed" | "parse green host info failed" | "set lan host info failed";
}

/** Reply of SET_GREENNET_DEVICE_LIST. */
export type SetGreennetDeviceListReply = SetGreennetDeviceListSuccess | SetGreennetDeviceListFailure | SetGreennetDeviceListFailure2;

/** SET_GREENNET_ENABLE: Switches parental control. */
export interface SetGreennetEnableRequest {
  /** whether parental control is on; 1 for on, 0 for off; truncated to 255 bytes */
  Enable: string;
}

/** SET_GREENNET_ENABLE, success: the device accepted the change. */
export interface SetGreennetEnableSuccess {
  Status: "0";
}

/** SET_GREENNET_ENABLE, failure. */
export interface SetGreennetEnableFailure {
  /** unchanged from the request */
  Enable?: string;
  Status: "1";
  /** "param error": Enable is missing or not a string; "set green net enable failed": the device refused the change */
  FailReason: "param error" | "set green net enable failed";
}

/** Reply of SET_GREENNET_ENABLE. */
export type SetGreennetEnableReply = SetGreennetEnableSuccess | SetGreennetEnableFailure;

/** SET_GREENNET_NOTIFY_ENABLE: Switches the notices about a device under parental control. */
export interface SetGreennetNotifyEnableRequest {
  /** MAC address of the device; six bytes in hexadecimal, separated by colons, e.g. "72:9B:E0:46:D8:15"; truncated to 63 bytes */
  Mac: string;
  /** whether notices about the device are wanted; 1 for on, 0 for off; truncated to 7 bytes */
  NotifyEnable: string;
}

/** SET_GREENNET_NOTIFY_ENABLE, success: the device accepted the change. */
export interface SetGreennetNotifyEnableSuccess {
  Status: "0";
}

/** SET_GREENNET_NOTIFY_ENABLE, failure. */
export interface SetGreennetNotifyEnableFailure {
  /** unchanged from the request */
  Mac?: string;
  /** unchanged from the request */
  NotifyEnable?: string;
  Status: "1";
  /** "json node: list not found": a key is missing or not a string; "get host index failed.": the device is not under parental control; "set host notify failed.": the device refused the change */
  FailReason: "json node: list not found" | "get host index failed." | "set host notify failed.";
}

/** Reply of SET_GREENNET_NOTIFY_ENABLE. */
export type SetGreennetNotifyEnableReply = SetGreennetNotifyEnableSuccess | SetGreennetNotifyEnableFailure;

/** Sleep: the new periods; an empty list removes all. */
export interface SetGreennetProtectPeriodListRequestSleep {
  /** start of the period; HH:MM, from 00:00 to 23:59, e.g. "22:00"; truncated to 7 bytes */
  StartTime: string;
  /** end of the period; HH:MM, from 00:00 to 23:59, e.g. "07:30"; truncated to 7 bytes */
  EndTime: string;
  /** whether the period is in force; 1 for on, 0 for off; truncated to 7 bytes */
  Enable: string;
  /** days on which it begins; 1 (Monday) to 7, without separators, e.g. "12345"; truncated to 7 bytes */
  DaysOfWeek: string;
}

/** SET_GREENNET_PROTECT_PERIOD_LIST: Replaces the periods in which a device is restricted. */
export interface SetGreennetProtectPeriodListRequest {
  /** MAC address of the device; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; truncated to 63 bytes */
  Mac: string;
  /** the new periods; an empty list removes all */
  Sleep: SetGreennetProtectPeriodListRequestSleep[];
}

/** SET_GREENNET_PROTECT_PERIOD_LIST, success: the device accepted all periods; the protection is on when one of them is in force. */
export interface SetGreennetProtectPeriodListSuccess {
  /** unchanged from the request */
  Mac?: string;
  Status: "0";
}

/** SET_GREENNET_PROTECT_PERIOD_LIST, failure. */
export interface SetGreennetProtectPeriodListFailure {
  /** unchanged from the request */
  Mac?: string;
  /** unchanged from the request */
  Sleep?: unknown;
  Status: "1";
  /** "json node: mac not found": Mac is missing or not a string; "json node: mac index not found": the device is not under parental control; "json node: list not found": there is no list; "del duration failed!": the old periods could not be removed; "parse protect period info failed": an element lacks a key; "add protect period info failed": the device could not add a period; "set protect period info failed": the device could not store a period; "set PortectEnable failed!": the device could not switch the protection */
  FailReason: "json node: mac not found" | "json node: mac index not found" | "json node: list not found" | "del duration failed!" | "parse protect period info failed" | "add protect period info failed" | "set protect period info failed" | "set PortectEnable failed!";
}

/** Reply of SET_GREENNET_PROTECT_PERIOD_LIST. */
export type SetGreennetProtectPeriodListReply = SetGreennetProtectPeriodListSuccess | SetGreennetProtectPeriodListFailure;

/** SET_HG_BASE_INFO: Renames the gateway. */
export interface SetHgBaseInfoRequest {
  /** name given by the user; e.g. "Lindenhof"; truncated to 63 bytes */
  Name: string;
}

/** SET_HG_BASE_INFO, success: the device accepted the change. */
export interface SetHgBaseInfoSuccess {
  Status: "0";
}

/** SET_HG_BASE_INFO, failure. */
export interface SetHgBaseInfoFailure {
  /** unchanged from the request */
  Name?: string;
  Status: "1";
  /** "param format error": a key is missing or not a string; "set hg base info failed": the device refused the change */
  FailReason: "param format error" | "set hg base info failed";
}

/** Reply of SET_HG_BASE_INFO. */
export type SetHgBaseInfoReply = SetHgBaseInfoSuccess | SetHgBaseInfoFailure;

/** SET_HG_DHCP_INFO: Switches the DHCP server of the LAN side. */
export interface SetHgDhcpInfoRequest {
  /** whether the server is on; 1 for on, 0 for off; truncated to 15 bytes */
  Enable: string;
}

/** SET_HG_DHCP_INFO, success: the device accepted the change. */
export interface SetHgDhcpInfoSuccess {
  Status: "0";
}

/** SET_HG_DHCP_INFO, failure: the device refused the change. */
export interface SetHgDhcpInfoFailure {
  Status: "1";
  /** the device's reason, empty if it gives none; e.g. "Enable \"on\" is none of \"0\", \"1\""; at most 64 bytes */
  FailReason: string;
}

/** SET_HG_DHCP_INFO, failure. */
export interface SetHgDhcpInfoFailure2 {
  Status: "1";
  /** "INVALID_PARAM": a key is missing or not a string */
  FailReason: "INVALID_PARAM";
}

/** Reply of SET_HG_DHCP_INFO. */
export type SetHgDhcpInfoReply = SetHgDhcpInfoSuccess | SetHgDhcpInfoFailure | SetHgDhcpInfoFailure2;

/** SET_HG_GUEST_SSID: Sets up the guest network of one band. */
export interface SetHgGuestSsidRequest {
  /** whether the guest network is on; 1 for on, 0 for off; truncated to 15 bytes */
  Enable: string;
  /** network name; e.g. "Lindenhof-Guest"; truncated to 63 bytes */
  SSID: string;
  /** the band; 2.4GHz or 5GHz; truncated to 15 bytes */
  Band: string;
  /** password of the guest network; e.g. "willkommen24"; truncated to 63 bytes; secret */
  PWD: string;
  /** type of encryption; OPEN, WPA2, WPA3 or WPA2/3; truncated to 15 bytes */
  ENCRYPT: string;
  /** days for which the guest network stays open; whole number, -1 for no limit, in days, e.g. "2"; truncated to 7 bytes */
  ContinueTime?: string;
  /** hours for which the guest network stays open, in addition to the days; whole number, -1 for no limit, in h, e.g. "3"; truncated to 7 bytes */
  HourTime?: string;
  /** ignored, but removed: the plug-in computes the seconds from ContinueTime and HourTime */
  EndTimestamp?: unknown;
  /** newest wireless standard to use; unchanged when absent; 11a, 11b, 11g, 11n, 11ac or 11ax, -1 if not given; truncated to 7 bytes */
  Mode?: string;
  /** whether the name is broadcast; unchanged when absent; 1 for on, 0 for off, -1 if not given; truncated to 7 bytes */
  AdvertisementEnable?: string;
}

/** SET_HG_GUEST_SSID, success: the device accepted the change. */
export interface SetHgGuestSsidSuccess {
  /** unchanged from the request */
  Mode?: unknown;
  /** unchanged from the request */
  AdvertisementEnable?: unknown;
  Status: "0";
}

/** SET_HG_GUEST_SSID, failure. */
export interface SetHgGuestSsidFailure {
  /** unchanged from the request */
  Enable?: string;
  /** unchanged from the request */
  SSID?: string;
  /** unchanged from the request */
  Band?: string;
  /** unchanged from the request */
  PWD?: string;
  /** unchanged from the request */
  ENCRYPT?: string;
  /** unchanged from the request */
  ContinueTime?: string;
  /** unchanged from the request */
  HourTime?: string;
  /** unchanged from the request */
  EndTimestamp?: unknown;
  /** unchanged from the request */
  Mode?: unknown;
  /** unchanged from the request */
  AdvertisementEnable?: unknown;
  Status: "1";
  /** "parse guest ssid failed": a required key is missing or not a string; "radio enable is closed,need to open": the radio of the band is off; "set guest ssid failed": the device refused for another reason */
  FailReason: "parse guest ssid failed" | "radio enable is closed,need to open" | "set guest ssid failed";
}

/** Reply of SET_HG_GUEST_SSID. */
export type SetHgGuestSsidReply = SetHgGuestSsidSuccess | SetHgGuestSsidFailure;

/** SET_HG_PPPOE_INFO: Sets the PPPoE account and switches PPPoE. */
export interface SetHgPppoeInfoRequest {
  /** name of the account; e.g. "k4471902@fibre.example"; truncated to 63 bytes */
  Account: string;
  /** password of the PPPoE account; e.g. "Lh7-pq2-Vw9"; truncated to 63 bytes; secret */
  Password: string;
  /** whether the gateway connects by PPPoE; 1 for on, 0 for off; truncated to 15 bytes */
  Enable: string;
}

/** SET_HG_PPPOE_INFO, success: the device accepted the change. */
export interface SetHgPppoeInfoSuccess {
  Status: "0";
}

/** SET_HG_PPPOE_INFO, failure: the device refused the change. */
export interface SetHgPppoeInfoFailure {
  Status: "1";
  /** the device's reason, empty if it gives none; e.g. "Account is empty"; at most 64 bytes */
  FailReason: string;
}

/** SET_HG_PPPOE_INFO, failure. */
export interface SetHgPppoeInfoFailure2 {
  Status: "1";
  /** "INVALID_PARAM": a key is missing or not a string */
  FailReason: "INVALID_PARAM";
}

/** Reply of SET_HG_PPPOE_INFO. */
export type SetHgPppoeInfoReply = SetHgPppoeInfoSuccess | SetHgPppoeInfoFailure | SetHgPppoeInfoFailure2;

/** SET_HG_REBOOT_INFO: Sets the reboot schedule. */
export interface SetHgRebootInfoRequest {
  /** whether the schedule is on; 1 for on, 0 for off; truncated to 7 bytes */
  GatewayRebootEnable: string;
  /** time of day; HH:MM, from 00:00 to 23:59, e.g. "04:30"; truncated to 7 bytes */
  Time: string;
  /** days of the week; 1 (Monday) to 7, separated by commas, e.g. "1,4"; truncated to 15 bytes */
  DaysOfWeek: string;
}

/** SET_HG_REBOOT_INFO, success: the device accepted the change. */
export interface SetHgRebootInfoSuccess {
  Status: "0";
}

/** SET_HG_REBOOT_INFO, failure. */
export interface SetHgRebootInfoFailure {
  /** unchanged from the request */
  GatewayRebootEnable?: string;
  /** unchanged from the request */
  Time?: string;
  /** unchanged from the request */
  DaysOfWeek?: string;
  Status: "1";
  /** "json node null": a key is missing; "value string null": a key is present but not a string; "set reboot info failed": the device refused the change */
  FailReason: "json node null" | "value string null" | "set reboot info failed";
}

/** Reply of SET_HG_REBOOT_INFO. */
export type SetHgRebootInfoReply = SetHgRebootInfoSuccess | SetHgRebootInfoFailure;

/** SET_HG_SLEEP_INFO: Sets the sleep times of the gateway, its Wi-Fi and its LEDs. */
export interface SetHgSleepInfoRequest {
  /** whether the gateway sleeps; 1 for on, 0 for off; truncated to 7 bytes */
  GatewaySleepEnable: string;
  /** whether the Wi-Fi sleeps; 1 for on, 0 for off; truncated to 7 bytes */
  WiFiSleepEnable: string;
  /** whether the LEDs sleep; 1 for on, 0 for off; truncated to 7 bytes */
  LedSleepEnable: string;
  /** start of the sleep; HH:MM, from 00:00 to 23:59, e.g. "22:30"; truncated to 7 bytes */
  StartTime: string;
  /** end of the sleep; HH:MM, from 00:00 to 23:59, e.g. "06:30"; truncated to 7 bytes */
  EndTime: string;
}

/** SET_HG_SLEEP_INFO, success: the device accepted the change. */
export interface SetHgSleepInfoSuccess {
  Status: "0";
}

/** SET_HG_SLEEP_INFO, failure. */
export interface SetHgSleepInfoFailure {
  /** unchanged from the request */
  GatewaySleepEnable?: string;
  /** unchanged from the request */
  WiFiSleepEnable?: string;
  /** unchanged from the request */
  LedSleepEnable?: string;
  /** unchanged from the request */
  StartTime?: string;
  /** unchanged from the request */
  EndTime?: string;
  Status: "1";
  /** "json node null": a key is missing; "value string null": a key is present but not a string; "SET_HG_SLEEP_INFO_FAIL": the device refused the change */
  FailReason: "json node null" | "value string null" | "SET_HG_SLEEP_INFO_FAIL";
}

/** Reply of SET_HG_SLEEP_INFO. */
export type SetHgSleepInfoReply = SetHgSleepInfoSuccess | SetHgSleepInfoFailure;

/** SET_KAA_HEARTBEAT: Sets the interval at which the agent reports to the platform. */
export interface SetKaaHeartbeatRequest {
  /** interval between two reports, as interpreted by the device; whole number, 10 to 86400, in s, e.g. "120" */
  heartbeat: string;
}

/** SET_KAA_HEARTBEAT, success: the device accepted the change. */
export interface SetKaaHeartbeatSuccess {
  Status: "0";
}

/** SET_KAA_HEARTBEAT, failure. */
export interface SetKaaHeartbeatFailure {
  /** unchanged from the request */
  heartbeat?: string;
  Status: "1";
  /** "get json_heartbeat err": the key is missing or not a string; "set kaa heartbeat err": the device refused the change */
  FailReason: "get json_heartbeat err" | "set kaa heartbeat err";
}

/** Reply of SET_KAA_HEARTBEAT. */
export type SetKaaHeartbeatReply = SetKaaHeartbeatSuccess | SetKaaHeartbeatFailure;

/** SET_LAN_IP_INFO: Changes the LAN IP settings. */
export interface SetLanIpInfoRequest {
  /** address of the gateway; IPv4 address, e.g. "192.168.1.1"; truncated to 31 bytes */
  GatewayLanIP: string;
  /** subnet mask; IPv4 mask, e.g. "255.255.255.0"; truncated to 31 bytes */
  SubnetMask: string;
  /** first address of the DHCP pool; IPv4 address, e.g. "192.168.1.100"; truncated to 31 bytes */
  StartIp: string;
  /** last address of the DHCP pool; IPv4 address, e.g. "192.168.1.249"; truncated to 31 bytes */
  EndIp: string;
}

/** SET_LAN_IP_INFO, success: the device accepted the change. */
export interface SetLanIpInfoSuccess {
  Status: "0";
}

/** SET_LAN_IP_INFO, failure: the device refused the change. */
export interface SetLanIpInfoFailure {
  Status: "1";
  /** the device's reason, empty if it gives none; e.g. "StartIp is outside the subnet"; at most 64 bytes */
  FailReason: string;
}

/** SET_LAN_IP_INFO, failure. */
export interface SetLanIpInfoFailure2 {
  Status: "1";
  /** "INVALID_PARAM": a key is missing or not a string */
  FailReason: "INVALID_PARAM";
}

/** Reply of SET_LAN_IP_INFO. */
export type SetLanIpInfoReply = SetLanIpInfoSuccess | SetLanIpInfoFailure | SetLanIpInfoFailure2;

/** SET_LED_STATUS: Sets the LEDs. */
export interface SetLedStatusRequest {
  /** whether the LEDs are on; 1 for on, 0 for off */
  LedSwitch: string;
  /** colour of the LEDs; WHITE, BLUE, GREEN, ORANGE or RED */
  LedCoLor: string;
  /** brightness of the LEDs; whole number, in %, e.g. "47" */
  LedLight: string;
}

/** SET_LED_STATUS, success: the device accepted the change. */
export interface SetLedStatusSuccess {
  Status: "0";
}

/** SET_LED_STATUS, failure. */
export interface SetLedStatusFailure {
  /** unchanged from the request */
  LedSwitch?: string;
  /** unchanged from the request */
  LedCoLor?: string;
  /** unchanged from the request */
  LedLight?: string;
  Status: "1";
  /** "LedCoLor, LedLight or Led_Switch is NULL": a key is missing; "get scan rssi failed": the device refused, also when a value is not a string */
  FailReason: "LedCoLor, LedLight or Led_Switch is NULL" | "get scan rssi failed";
}

/** Reply of SET_LED_STATUS. */
export type SetLedStatusReply = SetLedStatusSuccess | SetLedStatusFailure;

/** SET_MESH_PAIR: Opens or closes the period in which new routers may join the mesh. */
export interface SetMeshPairRequest {
  /** whether routers may join from now on; 1 for on, 0 for off; truncated to 7 bytes */
  Enable: string;
  /** how long it stays open; whole number, 1 to 3600, in s, e.g. "120"; truncated to 7 bytes */
  Time: string;
}

/** SET_MESH_PAIR, success: the device accepted the change. */
export interface SetMeshPairSuccess {
  Status: "0";
}

/** SET_MESH_PAIR, failure. */
export interface SetMeshPairFailure {
  /** unchanged from the request */
  Enable?: string;
  /** unchanged from the request */
  Time?: string;
  Status: "1";
  /** "get Enable and Time err": a key is missing or not a string; "WIFI_SET_NOT_SUPPORT": the device does not support pairing; "Set pair status failed": the device refused for another reason */
  FailReason: "get Enable and Time err" | "WIFI_SET_NOT_SUPPORT" | "Set pair status failed";
}

/** Reply of SET_MESH_PAIR. */
export type SetMeshPairReply = SetMeshPairSuccess | SetMeshPairFailure;

/** SET_MESH_STATUS: Sets the mesh. */
export interface SetMeshStatusRequest {
  /** whether the mesh is on; 1 for on, 0 for off; truncated to 7 bytes */
  MeshEnable: string;
  /** mode of the mesh; 1 or 2; truncated to 7 bytes */
  MeshMode: string;
}

/** SET_MESH_STATUS, success: the device accepted the change. */
export interface SetMeshStatusSuccess {
  Status: "0";
}

/** SET_MESH_STATUS, failure. */
export interface SetMeshStatusFailure {
  /** unchanged from the request */
  MeshEnable?: string;
  /** unchanged from the request */
  MeshMode?: string;
  Status: "1";
  /** "get MeshEnable and MeshMode err": a key is missing or not a string; "MESH_BUSY_0": the mesh is busy: the device's result is 4; "MESH_BUSY_1": the mesh is busy: the device's result is 3; "Set mesh status failed": the device refused for another reason */
  FailReason: "get MeshEnable and MeshMode err" | "MESH_BUSY_0" | "MESH_BUSY_1" | "Set mesh status failed";
}

/** Reply of SET_MESH_STATUS. */
export type SetMeshStatusReply = SetMeshStatusSuccess | SetMeshStatusFailure;

/** SET_PORT_BINDING: Binds ports to a WAN connection. */
export interface SetPortBindingRequest {
  /** number of the connection; whole number from 1, e.g. "1"; truncated to 7 bytes */
  Index: string;
  /** the ports; LAN1, SSID1 and so on, separated by commas, e.g. "LAN3,LAN4"; truncated to 255 bytes */
  BoundPorts: string;
}

/** SET_PORT_BINDING, success: the device accepted the change. */
export interface SetPortBindingSuccess {
  Status: "0";
}

/** SET_PORT_BINDING, failure. */
export interface SetPortBindingFailure {
  /** unchanged from the request */
  Index?: string;
  /** unchanged from the request */
  BoundPorts?: string;
  Status: "1";
  /** "json param is null": a key is missing or not a string; "set port binding failed": the device refused the change */
  FailReason: "json param is null" | "set port binding failed";
}

/** Reply of SET_PORT_BINDING. */
export type SetPortBindingReply = SetPortBindingSuccess | SetPortBindingFailure;

/** SET_QOS_APP_INFO: Sets the priority of an application. */
export interface SetQosAppInfoRequest {
  /** identifier of the application; read as a decimal number, 0 if the text does not begin with one */
  Id: string;
  /** priority of the application; 1 (highest) to 8, e.g. "1"; truncated to 7 bytes */
  PriorityLevel: string;
}

/** SET_QOS_APP_INFO, success: the device accepted the change. */
export interface SetQosAppInfoSuccess {
  Status: "0";
}

/** SET_QOS_APP_INFO, failure. */
export interface SetQosAppInfoFailure {
  /** unchanged from the request */
  Id?: string;
  /** unchanged from the request */
  PriorityLevel?: string;
  Status: "1";
  /** "json param is null": a key is missing or not a string; "set qos app info failed": the device refused the change */
  FailReason: "json param is null" | "set qos app info failed";
}

/** Reply of SET_QOS_APP_INFO. */
export type SetQosAppInfoReply = SetQosAppInfoSuccess | SetQosAppInfoFailure;

/** type_list: types of traffic that the rule matches; required unless the rule is deleted; those after the third are ignored. */
export interface SetQosClassificationInfoRequestTypeList {
  /** field of the packets that is compared; e.g. "DSCP"; truncated to 15 bytes */
  Type: string;
  /** lowest value that matches; e.g. "46"; truncated to 63 bytes */
  Min: string;
  /** highest value that matches; e.g. "46"; truncated to 63 bytes */
  Max: string;
}

/** SET_QOS_CLASSIFICATION_INFO: Adds, deletes or changes a rule of quality of service. */
export interface SetQosClassificationInfoRequest {
  /** identifier of the rule; ignored when a rule is added, since the device assigns one; whole number from 1, e.g. "1"; truncated to 7 bytes */
  Id: string;
  /** "1" adds the rule, "2" deletes it, anything else changes it; whole number, e.g. "1"; truncated to 7 bytes */
  Action: string;
  /** name of the rule; required unless the rule is deleted; e.g. "Voice of the office"; truncated to 31 bytes */
  Name?: string;
  /** priority of the rule; required unless the rule is deleted; 1 (highest) to 8, e.g. "1"; truncated to 7 bytes */
  PriorityLevel?: string;
  /** types of traffic that the rule matches; required unless the rule is deleted; those after the third are ignored */
  type_list?: SetQosClassificationInfoRequestTypeList[];
}

/** SET_QOS_CLASSIFICATION_INFO, success: the device added the rule. */
export interface SetQosClassificationInfoSuccess {
  Status: "0";
  /** identifier of the new rule; whole number from 1, e.g. "1"; at most 8 bytes */
  Id: string;
}

/** SET_QOS_CLASSIFICATION_INFO, success: the device deleted or changed the rule. */
export interface SetQosClassificationInfoSuccess2 {
  Status: "0";
}

/** SET_QOS_CLASSIFICATION_INFO, failure. */
export interface SetQosClassificationInfoFailure {
  /** unchanged from the request */
  Id?: string;
  /** unchanged from the request */
  Action?: string;
  /** unchanged from the request */
  Name?: string;
  /** unchanged from the request */
  PriorityLevel?: string;
  /** unchanged from the request */
  type_list?: unknown;
  Status: "1";
  /** "json param is invalid or miss": a key is missing or of a wrong type; "set qos cls info error": the device refused the change */
  FailReason: "json param is invalid or miss" | "set qos cls info error";
}

/** Reply of SET_QOS_CLASSIFICATION_INFO. */
export type SetQosClassificationInfoReply = SetQosClassificationInfoSuccess | SetQosClassificationInfoSuccess2 | SetQosClassificationInfoFailure;

/** SET_QOS_ENABLE: Switches quality of service. */
export interface SetQosEnableRequest {
  /** whether quality of service is on: 1 for on, 0 for off; read as a decimal number, 0 if the text does not begin with one; truncated to 7 bytes */
  Enable: string;
}

/** SET_QOS_ENABLE, success: the device accepted the change. */
export interface SetQosEnableSuccess {
  Status: "0";
}

/** SET_QOS_ENABLE, failure. */
export interface SetQosEnableFailure {
  /** unchanged from the request */
  Enable?: string;
  Status: "1";
  /** "get param:enable err": the key is missing or not a string; "Set qos enable failed": the device refused the change */
  FailReason: "get param:enable err" | "Set qos enable failed";
}

/** Reply of SET_QOS_ENABLE. */
export type SetQosEnableReply = SetQosEnableSuccess | SetQosEnableFailure;

/** SET_ROUTE_WAN_INFO: Changes the settings of one WAN connection. */
export interface SetRouteWanInfoRequest {
  /** name of the connection, which selects it; e.g. "Internet"; truncated to 63 bytes */
  WANName?: string;
  /** services that use the connection; INTERNET, IPTV, TR069, VOIP and OTHER, separated by commas, e.g. "TR069,VOIP"; truncated to 63 bytes */
  SERVICELIST?: string;
  /** how the connection gets its IPv4 address; DHCP, PPPoE or Static; truncated to 63 bytes */
  ADDRESSTYPE?: string;
  /** IPv4 address; e.g. "100.72.18.203"; truncated to 63 bytes */
  IPADDRESS?: string;
  /** IPv4 mask; e.g. "255.255.255.255"; truncated to 63 bytes */
  SUBNETMASK?: string;
  /** IPv4 address of the default gateway; e.g. "100.72.0.1"; truncated to 63 bytes */
  GATEWAY?: string;
  /** first DNS server, IPv4; IPv4 address, e.g. "100.64.0.53"; truncated to 63 bytes */
  DNS1?: string;
  /** second DNS server, IPv4; IPv4 address, e.g. "100.64.1.53"; truncated to 63 bytes */
  DNS2?: string;
  /** IPv6 address; e.g. "2001:db8:4f20::1"; truncated to 63 bytes */
  IPV6_IPADDRESS?: string;
  /** length of the IPv6 prefix; number of bits, e.g. "56"; truncated to 63 bytes */
  IPV6_PREFIXLENGTH?: string;
  /** IPv6 address of the default gateway; e.g. "fe80::1"; truncated to 63 bytes */
  IPV6_GATEWAY?: string;
  /** first DNS server, IPv6; IPv6 address, e.g. "2001:db8:53::1"; truncated to 63 bytes */
  IPV6_DNS1?: string;
  /** second DNS server, IPv6; IPv6 address, e.g. "2001:db8:53::2"; truncated to 63 bytes */
  IPV6_DNS2?: string;
  /** IPv6 prefix for the LAN; e.g. "2001:db8:4f20:a00::"; truncated to 63 bytes */
  IPV6_PRIFIX?: string;
  /** name of the PPPoE account; e.g. "k4471902@fibre.example"; truncated to 63 bytes */
  PPPOE_USR_NAME?: string;
  /** password of the PPPoE account; e.g. "Lh7-pq2-Vw9"; truncated to 63 bytes; secret */
  PPPOE_PASSWORD?: string;
  /** whether NAT is on; 1 for on, 0 for off; truncated to 63 bytes */
  NATENABLE?: string;
  /** whether quality of service is on; 1 for on, 0 for off; truncated to 63 bytes */
  QOSENABLE?: string;
  /** number of the VLAN; 1 to 4094, e.g. "7"; truncated to 63 bytes */
  VLANID?: string;
  /** priority of the VLAN; 0 to 7, e.g. "0"; truncated to 63 bytes */
  VLANPRIORITY?: string;
}

/** SET_ROUTE_WAN_INFO, success: the device accepted the change. */
export interface SetRouteWanInfoSuccess {
  Status: "0";
}

/** SET_ROUTE_WAN_INFO, failure. */
export interface SetRouteWanInfoFailure {
  Status: "1";
  /** "SET_ROUTE_WAN_INFO_FAIL": the device refused the change */
  FailReason: "SET_ROUTE_WAN_INFO_FAIL";
}

/** Reply of SET_ROUTE_WAN_INFO. */
export type SetRouteWanInfoReply = SetRouteWanInfoSuccess | SetRouteWanInfoFailure;

/** SET_TSLINK_CONFIG_STATUS: Stores the state of the first configuration, and notifies the agent. */
export interface SetTslinkConfigStatusRequest {
  /** whether the first configuration is done; 1 for yes, 0 for no */
  ConfiguerStatus: string;
}

/** SET_TSLINK_CONFIG_STATUS, success: the device accepted the change. */
export interface SetTslinkConfigStatusSuccess {
  Status: "0";
}

/** SET_TSLINK_CONFIG_STATUS, failure. */
export interface SetTslinkConfigStatusFailure {
  /** unchanged from the request */
  ConfiguerStatus?: string;
  Status: "1";
  /** "ConfiguerStatus  is NULL": the key is missing; "ConfiguerStatus  value is NULL": the key is present but not a string; "set tslink config failed": the device refused the change */
  FailReason: "ConfiguerStatus  is NULL" | "ConfiguerStatus  value is NULL" | "set tslink config failed";
}

/** Reply of SET_TSLINK_CONFIG_STATUS. */
export type SetTslinkConfigStatusReply = SetTslinkConfigStatusSuccess | SetTslinkConfigStatusFailure;

/** SET_TSLINK_SSID: Sets the mesh up or takes it down. */
export interface SetTslinkSsidRequest {
  /** "1" to set the mesh up, "0" to take it down */
  Enable: string;
}

/** SET_TSLINK_SSID, success: the device was called; its result is ignored. */
export interface SetTslinkSsidSuccess {
  Status: "0";
}

/** SET_TSLINK_SSID, failure. */
export interface SetTslinkSsidFailure {
  /** unchanged from the request */
  Enable?: string;
  Status: "1";
  /** "Enable missing or not string": the key is missing or not a string; "Enable invalid": the text is neither "0" nor "1" */
  FailReason: "Enable missing or not string" | "Enable invalid";
}

/** Reply of SET_TSLINK_SSID. */
export type SetTslinkSsidReply = SetTslinkSsidSuccess | SetTslinkSsidFailure;

/** SET_UPDATE_SCHEDULE: Sets the time of day at which the router may update itself. */
export interface SetUpdateScheduleRequest {
  /** whether the router may update itself; 1 for on, 0 for off; truncated to 1 byte */
  Enable: string;
  /** hour of the start; 0 to 23, without leading zeros, e.g. "2"; truncated to 7 bytes */
  StartHour: string;
  /** minute of the start; 0 to 59, without leading zeros, e.g. "30"; truncated to 7 bytes */
  StartMinute: string;
  /** hour of the end; 0 to 23, without leading zeros, e.g. "4"; truncated to 7 bytes */
  EndHour: string;
  /** minute of the end; 0 to 59, without leading zeros, e.g. "0"; truncated to 7 bytes */
  EndMinute: string;
}

/** SET_UPDATE_SCHEDULE, success: the device accepted the change. */
export interface SetUpdateScheduleSuccess {
  Status: "0";
}

/** SET_UPDATE_SCHEDULE, failure. */
export interface SetUpdateScheduleFailure {
  Status: "1";
  /** "parameter error": a key is missing or not a string; "Set update schedule failed": the device refused the change */
  FailReason: "parameter error" | "Set update schedule failed";
}

/** Reply of SET_UPDATE_SCHEDULE. */
export type SetUpdateScheduleReply = SetUpdateScheduleSuccess | SetUpdateScheduleFailure;

/** SET_UPLINK_WIFI_INFO: Joins an upstream network as a repeater. */
export interface SetUplinkWifiInfoRequest {
  /** name of the network to join; e.g. "FamilieBrandt"; truncated to 63 bytes */
  SSID: string;
  /** password of the network; e.g. "apfelbaum-1962"; truncated to 63 bytes; secret */
  PWD: string;
  /** type of encryption; OPEN, WPA2, WPA3 or WPA2/3; truncated to 63 bytes */
  ENCRYPT: string;
  /** cipher of WPA; NONE or AES; truncated to 63 bytes */
  WPACypher: string;
  /** cipher of WPA2; NONE or AES; truncated to 63 bytes */
  WPA2Cypher: string;
  /** frequency band; 2.4GHz or 5GHz; truncated to 127 bytes */
  Band: string;
}

/** SET_UPLINK_WIFI_INFO, success: the router joined a network. */
export interface SetUplinkWifiInfoSuccess {
  Status: "0";
  /** name of the network that was joined; e.g. "FamilieBrandt"; at most 64 bytes */
  ConnectedSSID: string;
}

/** SET_UPLINK_WIFI_INFO, failure: another client uses the repeater. */
export interface SetUplinkWifiInfoFailure {
  Status: "2";
  FailReason: "SOMEONE_USING_REPEATER";
}

/** SET_UPLINK_WIFI_INFO, failure: the device returned an undocumented result; no reply key is added. */
export type SetUplinkWifiInfoFailure2 = Record<string, never>;

/** SET_UPLINK_WIFI_INFO, failure. */
export interface SetUplinkWifiInfoFailure3 {
  /** unchanged from the request */
  SSID?: string;
  /** unchanged from the request */
  PWD?: string;
  /** unchanged from the request */
  ENCRYPT?: string;
  /** unchanged from the request */
  WPACypher?: string;
  /** unchanged from the request */
  WPA2Cypher?: string;
  /** unchanged from the request */
  Band?: string;
  Status: "1";
  /** "json node null": a key is missing; "value string null": a key is present but not a string; "SET_UPLINK_WIFI_INFO_FAIL": the device could not join */
  FailReason: "json node null" | "value string null" | "SET_UPLINK_WIFI_INFO_FAIL";
}

/** Reply of SET_UPLINK_WIFI_INFO. */
export type SetUplinkWifiInfoReply = SetUplinkWifiInfoSuccess | SetUplinkWifiInfoFailure | SetUplinkWifiInfoFailure2 | SetUplinkWifiInfoFailure3;

/** SET_UPNP_STATE: Switches UPnP. */
export interface SetUpnpStateRequest {
  /** whether UPnP is on; 1 for on, 0 for off; truncated to 7 bytes */
  Enable: string;
}

/** SET_UPNP_STATE, success: the device accepted the change. */
export interface SetUpnpStateSuccess {
  Status: "0";
}

/** SET_UPNP_STATE, failure. */
export interface SetUpnpStateFailure {
  /** unchanged from the request */
  Enable?: string;
  Status: "1";
  /** "get param:enable err": the key is missing or not a string; "Set UPNP enable failed": the device refused the change */
  FailReason: "get param:enable err" | "Set UPNP enable failed";
}

/** Reply of SET_UPNP_STATE. */
export type SetUpnpStateReply = SetUpnpStateSuccess | SetUpnpStateFailure;

/** SET_WEB_LOGIN_INFO: Sets type and password of the web login. */
export interface SetWebLoginInfoRequest {
  /** type of web login; 0 for the account of the administrator, 1 for a separate password; truncated to 7 bytes */
  WebLoginType: string;
  /** password of the web login; e.g. "zaun-und-tor-58"; truncated to 127 bytes; secret */
  Password: string;
}

/** SET_WEB_LOGIN_INFO, success: the device accepted the change. */
export interface SetWebLoginInfoSuccess {
  Status: "0";
}

/** SET_WEB_LOGIN_INFO, failure. */
export interface SetWebLoginInfoFailure {
  /** unchanged from the request */
  WebLoginType?: string;
  /** unchanged from the request */
  Password?: string;
  Status: "1";
  /** "json node null": a key is missing; "value string null": a key is present but not a string; "set web login info failed": the device refused the change */
  FailReason: "json node null" | "value string null" | "set web login info failed";
}

/** Reply of SET_WEB_LOGIN_INFO. */
export type SetWebLoginInfoReply = SetWebLoginInfoSuccess | SetWebLoginInfoFailure;

/** SET_WEB_LOGIN_TYPE: Sets the type of web login. */
export interface SetWebLoginTypeRequest {
  /** type of web login; 0 for the account of the administrator, 1 for a separate password; truncated to 7 bytes */
  Type: string;
}

/** SET_WEB_LOGIN_TYPE, success: the device accepted the change. */
export interface SetWebLoginTypeSuccess {
  Status: "0";
}

/** SET_WEB_LOGIN_TYPE, failure. */
export interface SetWebLoginTypeFailure {
  /** unchanged from the request */
  Type?: string;
  Status: "1";
  /** "json node null": a key is missing; "value string null": a key is present but not a string; "set web login type failed": the device refused the change */
  FailReason: "json node null" | "value string null" | "set web login type failed";
}

/** Reply of SET_WEB_LOGIN_TYPE. */
export type SetWebLoginTypeReply = SetWebLoginTypeSuccess | SetWebLoginTypeFailure;

/** SET_WIFI_INFO: Changes the settings of one SSID. */
export interface SetWifiInfoRequest {
  /** number of the SSID, from 1; the device decides which exist */
  SSIDIndex: string;
  /** network name; e.g. "Lindenhof"; truncated to 63 bytes */
  SSID: string;
  /** password of the network; e.g. "apfelbaum-1962"; truncated to 63 bytes; secret */
  PWD: string;
  /** type of encryption; OPEN, WPA2, WPA3 or WPA2/3; truncated to 7 bytes */
  ENCRYPT: string;
  /** transmit power; whole number, in %, e.g. "100"; truncated to 63 bytes */
  PowerLevel: string;
  /** channel that is set; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; truncated to 7 bytes */
  Channel: string;
  /** whether the network is on; 1 for on, 0 for off; truncated to 7 bytes */
  Enable: string;
  /** whether the name is broadcast; unchanged when absent; 1 for on, 0 for off, -1 if not given; truncated to 7 bytes */
  AdvertisementEnable?: string;
  /** newest wireless standard to use; unchanged when absent; 11a, 11b, 11g, 11n, 11ac or 11ax, -1 if not given; truncated to 7 bytes */
  Mode?: string;
  /** whether beamforming is on; unchanged when absent; 1 for on, 0 for off, -1 if not given; truncated to 7 bytes */
  Beamforming?: string;
}

/** SET_WIFI_INFO, success: the device accepted the change. */
export interface SetWifiInfoSuccess {
  /** unchanged from the request */
  AdvertisementEnable?: unknown;
  /** unchanged from the request */
  Mode?: unknown;
  /** unchanged from the request */
  Beamforming?: unknown;
  Status: "0";
}

/** SET_WIFI_INFO, failure. */
export interface SetWifiInfoFailure {
  /** unchanged from the request */
  SSIDIndex?: string;
  /** unchanged from the request */
  SSID?: string;
  /** unchanged from the request */
  PWD?: string;
  /** unchanged from the request */
  ENCRYPT?: string;
  /** unchanged from the request */
  PowerLevel?: string;
  /** unchanged from the request */
  Channel?: string;
  /** unchanged from the request */
  Enable?: string;
  /** unchanged from the request */
  AdvertisementEnable?: unknown;
  /** unchanged from the request */
  Mode?: unknown;
  /** unchanged from the request */
  Beamforming?: unknown;
  Status: "1";
  /** "json node null": a key is missing; "value string null": a key is present but not a string; "SET_WIFI_INFO_FAIL": the device refused the change */
  FailReason: "json node null" | "value string null" | "SET_WIFI_INFO_FAIL";
}

/** Reply of SET_WIFI_INFO. */
export type SetWifiInfoReply = SetWifiInfoSuccess | SetWifiInfoFailure;

/** WIFILIST: the SSIDs; an empty list sets the switches only. */
export interface SetWifiInfoListRequestWifilist {
  /** number of the SSID, from 1 */
  SSIDIndex: string;
  /** network name; e.g. "Lindenhof"; truncated to 63 bytes */
  SSID: string;
  /** password of the network; e.g. "apfelbaum-1962"; truncated to 63 bytes; secret */
  PWD: string;
  /** type of encryption; OPEN, WPA2, WPA3 or WPA2/3; truncated to 7 bytes */
  ENCRYPT: string;
  /** transmit power; whole number, in %, e.g. "100"; truncated to 63 bytes */
  PowerLevel: string;
  /** channel that is set; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; truncated to 7 bytes */
  Channel: string;
  /** whether the network is on; 1 for on, 0 for off; truncated to 7 bytes */
  Enable: string;
  /** bandwidth of the channel; unchanged when absent; whole number, in MHz, e.g. "20"; truncated to 15 bytes */
  Bandwidth?: string;
  /** whether the name is broadcast; unchanged when absent; 1 for on, 0 for off, -1 if not given; truncated to 7 bytes */
  AdvertisementEnable?: string;
  /** newest wireless standard to use; unchanged when absent; 11a, 11b, 11g, 11n, 11ac or 11ax, -1 if not given; truncated to 7 bytes */
  Mode?: string;
  /** whether beamforming is on; unchanged when absent; 1 for on, 0 for off, -1 if not given; truncated to 7 bytes */
  Beamforming?: string;
}

/** SET_WIFI_INFO_LIST: Changes the settings of several SSIDs, and the two switches that all radios share. */
export interface SetWifiInfoListRequest {
  /** the SSIDs; an empty list sets the switches only */
  WIFILIST: SetWifiInfoListRequestWifilist[];
  /** whether stations are steered between the radios; 1 for on, 0 for off; truncated to 7 bytes */
  StaCtrl: string;
  /** whether fast roaming is on; when absent or empty, the previous value is applied again; 1 for on, 0 for off; truncated to 7 bytes */
  FastRoaming?: string;
}

/** SET_WIFI_INFO_LIST, success: the batch is accepted; it is applied after the reply, within about six seconds. */
export interface SetWifiInfoListSuccess {
  Status: "0";
}

/** SET_WIFI_INFO_LIST, failure: the batch is accepted and applied, but it turns off a main SSID while the mesh is on. */
export interface SetWifiInfoListFailure {
  /** unchanged from the request */
  FastRoaming?: string;
  Status: "1";
  /** 请先关闭mesh开关! (turn off the mesh switch first), encoded in GBK; at most 17 bytes */
  FailReason: string;
}

/** SET_WIFI_INFO_LIST, failure. */
export interface SetWifiInfoListFailure2 {
  /** unchanged from the request */
  WIFILIST?: unknown;
  /** unchanged from the request */
  StaCtrl?: string;
  /** unchanged from the request */
  FastRoaming?: string;
  Status: "1";
  /** "json node: wifilist not found": there is no list; "json node: StaCtrl not found": StaCtrl is missing or not a string; "set ssid failed": an element lacks a key, or no worker could be started */
  FailReason: "json node: wifilist not found" | "json node: StaCtrl not found" | "set ssid failed";
}

/** Reply of SET_WIFI_INFO_LIST. */
export type SetWifiInfoListReply = SetWifiInfoListSuccess | SetWifiInfoListFailure | SetWifiInfoListFailure2;

/** WIFISleepList: the new periods; an empty list removes all. */
export interface SetWifiSleepScheduleRequestWIFISleepList {
  /** whether the period is on; 1 for on, 0 for off; truncated to 15 bytes */
  Enable: string;
  /** start of the sleep; HH:MM, from 00:00 to 23:59, e.g. "23:30"; truncated to 31 bytes */
  StartTime: string;
  /** end of the sleep; HH:MM, from 00:00 to 23:59, e.g. "05:45"; truncated to 31 bytes */
  EndTime: string;
  /** days of the week; 1 (Monday) to 7, separated by commas, e.g. "1,2,3,4,7"; truncated to 31 bytes */
  DaysOfWeek: string;
}

/** SET_WIFI_SLEEP_SCHEDULE: Replaces the periods in which the Wi-Fi sleeps. */
export interface SetWifiSleepScheduleRequest {
  /** the new periods; an empty list removes all */
  WIFISleepList: SetWifiSleepScheduleRequestWIFISleepList[];
}

/** SET_WIFI_SLEEP_SCHEDULE, success: the device accepted all periods. */
export interface SetWifiSleepScheduleSuccess {
  Status: "0";
}

/** SET_WIFI_SLEEP_SCHEDULE, failure. */
export interface SetWifiSleepScheduleFailure {
  Status: "1";
  /** "json node: WIFISleepList not found": there is no list; any other value under the key is removed; "del all wifi timerinfo failed": the device could not remove the old periods; "parse sleep info failed": an element lacks a key; "add wifi timer failed": the device could not add a period; "set ssid failed": the device could not set an added period */
  FailReason: "json node: WIFISleepList not found" | "del all wifi timerinfo failed" | "parse sleep info failed" | "add wifi timer failed" | "set ssid failed";
}

/** Reply of SET_WIFI_SLEEP_SCHEDULE. */
export type SetWifiSleepScheduleReply = SetWifiSleepScheduleSuccess | SetWifiSleepScheduleFailure;

/** SET_WPS_ENABLE: Switches WPS. */
export interface SetWpsEnableRequest {
  /** whether WPS is on: 1 for on, 0 for off; read as a decimal number, 0 if the text does not begin with one; truncated to 7 bytes */
  Enable: string;
}

/** SET_WPS_ENABLE, success: the device accepted the change. */
export interface SetWpsEnableSuccess {
  Status: "0";
}

/** SET_WPS_ENABLE, failure. */
export interface SetWpsEnableFailure {
  /** unchanged from the request */
  Enable?: string;
  Status: "1";
  /** "get param:enable err": the key is missing or not a string; "Set wps enable failed": the device refused the change */
  FailReason: "get param:enable err" | "Set wps enable failed";
}

/** Reply of SET_WPS_ENABLE. */
export type SetWpsEnableReply = SetWpsEnableSuccess | SetWpsEnableFailure;

/** SET_WPS_STATE: Starts or stops WPS on a radio. */
export interface SetWpsStateRequest {
  /** the radio, by its band; 2.4GHz or 5GHz; truncated to 7 bytes */
  Radio: string;
  /** what to do with WPS; 1 to start, 0 to stop; truncated to 7 bytes */
  Action: string;
}

/** SET_WPS_STATE, success: the device accepted the change. */
export interface SetWpsStateSuccess {
  Status: "0";
}

/** SET_WPS_STATE, failure. */
export interface SetWpsStateFailure {
  /** unchanged from the request */
  Radio?: string;
  /** unchanged from the request */
  Action?: string;
  Status: "1";
  /** "get radio and action err": a key is missing or not a string; "Set wps state failed": the device refused the change */
  FailReason: "get radio and action err" | "Set wps state failed";
}

/** Reply of SET_WPS_STATE. */
export type SetWpsStateReply = SetWpsStateSuccess | SetWpsStateFailure;

/** Image: the image; nothing is started without it. */
export interface UpdateImmediateRequestImage {
  /** URL of the image, of any length; required without Dpi and DpiHttp; e.g. "https://updates.example/hgu.img" */
  UpdateUrl?: string;
}

/** UPDATE_IMMEDIATE: Updates the firmware. */
export interface UpdateImmediateRequest {
  /** the image; nothing is started without it */
  Image?: UpdateImmediateRequestImage;
  /** rules for packet inspection, which are ignored */
  Dpi?: unknown;
  /** rules for the inspection of HTTP, which are ignored */
  DpiHttp?: unknown;
}

/** UPDATE_IMMEDIATE, success: the worker was started, there is no Image, or there is Dpi or DpiHttp. */
export interface UpdateImmediateSuccess {
  Status: "0";
}

/** UPDATE_IMMEDIATE, failure. */
export interface UpdateImmediateFailure {
  /** unchanged from the request */
  Dpi?: unknown;
  /** unchanged from the request */
  DpiHttp?: unknown;
  Status: "1";
  /** "json no UpdateUrl": without Dpi and DpiHttp: the URL of the image is missing or not a string; "url is null": without Dpi and DpiHttp: memory ran out; "dev is dowing image now": without Dpi and DpiHttp: another image is being downloaded or flashed; "failed to create down image thread": without Dpi and DpiHttp: the worker could not be started */
  FailReason: "json no UpdateUrl" | "url is null" | "dev is dowing image now" | "failed to create down image thread";
}

/** Reply of UPDATE_IMMEDIATE. */
export type UpdateImmediateReply = UpdateImmediateSuccess | UpdateImmediateFailure;

/** agent-topology: The child routers with their stations, from the tree of parameters. */
export type ReportAgentTopologyRequest = Record<string, never>;

/** ChildInfo: routers attached to the child router; missing in areas with MeshInfo. */
export interface ReportAgentTopologyChildRouterChildInfo {
  /** MAC address of the mesh interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 32 bytes */
  childMac: string;
}

/** MeshInfo: links to other routers; only in an area whose code contains ARVEN, KOLM or SEDRANO. */
export interface ReportAgentTopologyChildRouterMeshInfo {
  /** MAC address of the other router; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 32 bytes */
  nexthopMAC: string;
  /** signal strength; whole number below 0, in dBm, e.g. "-54"; at most 16 bytes */
  dbm: string;
  /** network interface; name of the network interface, e.g. "wlan1"; at most 24 bytes */
  interface: string;
}

/** ChildBaseInfo: stations of the child router, 32 at most; missing if there was no memory for them. */
export interface ReportAgentTopologyChildRouterChildBaseInfo {
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; at most 32 bytes */
  Mac: string;
  /** type of device; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; at most 32 bytes */
  DevType: string;
  /** manufacturer of the device; e.g. "Eichhorn Computer"; at most 32 bytes */
  DevFactory: string;
  /** always this text */
  DevModle: "Tessaline";
  /** host name; e.g. "workshop-pc"; at most 32 bytes */
  Name: string;
  /** name given by the user; e.g. "Anna"; at most 32 bytes */
  ByName: string;
  /** whether it is online; 1 for up, 0 for down; at most 8 bytes */
  NetStatus: string;
  /** whether it has exclusive bandwidth; 1 for yes, 0 for no; at most 32 bytes */
  NetMonopoly: string;
  /** how it is attached; cable, 2.4GHz or 5GHz; at most 32 bytes */
  AccessType: string;
  /** whether it may reach the Internet; 1 for on, 0 for off; at most 8 bytes */
  AccessEnable: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "101"; at most 32 bytes */
  UpSpeed: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "2629"; at most 32 bytes */
  DownSpeed: string;
  /** IP address; IPv4 address, e.g. "192.168.1.101"; at most 64 bytes */
  ip: string;
  /** seconds since it was attached; whole number, in s, e.g. "3600"; at most 11 bytes */
  AccessTime: string;
  /** unique identifier; MAC address without colons, e.g. "A4BB6D31075E"; at most 32 bytes */
  UID: string;
  /** always this text */
  OS: "3";
  /** version of the operating system; e.g. "6.1"; at most 32 bytes */
  Version: string;
  /** whether it is under parental control; 1 for on, 0 for off; at most 8 bytes */
  GreennetProtectEnable: string;
  /** whether the speed limits are on; 1 for on, 0 for off; at most 8 bytes */
  SpeedLimit: string;
  /** download limit; whole number, 0 for none, in kbit/s, e.g. "20000"; at most 16 bytes */
  DownLimit: string;
  /** upload limit; whole number, 0 for none, in kbit/s, e.g. "0"; at most 16 bytes */
  UpLimit: string;
}

/** ChildRouter: the child routers that are up. */
export interface ReportAgentTopologyChildRouter {
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 64 bytes */
  Mac: string;
  /** how it reaches its parent; cable, 2.4GHz or 5GHz; at most 8 bytes */
  AccessType: string;
  /** speed of its link to the parent; whole number, in Mbit/s, e.g. "866"; at most 16 bytes */
  LinkSpeed: string;
  /** signal strength; whole number below 0, in dBm, e.g. "-54"; at most 8 bytes */
  dbm: string;
  /** firmware version; e.g. "V2.4.1"; at most 32 bytes */
  FWVersion: string;
  /** identifier of the device; MAC address without colons, e.g. "3C6AD2228140"; at most 32 bytes */
  RouterDeviceID: string;
  /** name of the child router; e.g. "Attic"; at most 64 bytes */
  Name: string;
  /** whether it is online; 1 for up, 0 for down; at most 8 bytes */
  NetStatus: string;
  /** how it reaches its parent; cable, 2.4GHz or 5GHz; at most 8 bytes */
  ChildRouterAccessType: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 16 bytes */
  UpSpeed: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 16 bytes */
  DownSpeed: string;
  /** date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes */
  FWDATA: string;
  /** hardware version; e.g. "V1.2"; at most 16 bytes */
  HWVersion: string;
  /** code of the operator's area; e.g. "NORTH-07"; at most 16 bytes */
  AreaCode: string;
  /** time since it started; whole number, in s, e.g. "86400"; at most 16 bytes */
  UpTime: string;
  /** type of device; e.g. "MAP-AX1800"; at most 32 bytes */
  DeviceType: string;
  /** MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:41"; at most 32 bytes */
  Wlan0Mac: string;
  /** MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:45"; at most 32 bytes */
  Wlan1Mac: string;
  /** IP address, a second time; IPv4 address, e.g. "192.168.1.2"; at most 32 bytes */
  ip: string;
  /** MAC address of the router that it is attached to; bytes in hexadecimal, with colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes */
  ParentMacAddress: string;
  /** routers attached to the child router; missing in areas with MeshInfo */
  ChildInfo?: ReportAgentTopologyChildRouterChildInfo[];
  /** links to other routers; only in an area whose code contains ARVEN, KOLM or SEDRANO */
  MeshInfo?: ReportAgentTopologyChildRouterMeshInfo[];
  /** stations of the child router, 32 at most; missing if there was no memory for them */
  ChildBaseInfo?: ReportAgentTopologyChildRouterChildBaseInfo[];
}

/** agent-topology, success: the tree of parameters could be read. */
export interface ReportAgentTopologySuccess {
  /** the child routers that are up */
  ChildRouter: ReportAgentTopologyChildRouter[];
}

/** agent-topology, failure: a parameter could not be read, or memory ran out; the result is -1. */
export type ReportAgentTopologyFailure = Record<string, never>;

/** Reply of agent-topology. */
export type ReportAgentTopologyReply = ReportAgentTopologySuccess | ReportAgentTopologyFailure;

/** home-page: What a home page shows of the gateway. */
export type ReportHomePageRequest = Record<string, never>;

/** home-page, success: the device reported them. */
export interface ReportHomePageSuccess {
  Status: "0";
  /** name given by the user; e.g. "Lindenhof"; at most 64 bytes */
  Devname: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 64 bytes */
  UploadSpeed: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 64 bytes */
  DownloadSpeed: string;
  /** whether games are accelerated; 1 for on, 0 for off; at most 8 bytes */
  GameSpeed: string;
  /** port that games use; number of a LAN port, e.g. "2"; at most 8 bytes */
  GamePort: string;
  /** band that games use; 2.4GHz or 5GHz; at most 8 bytes */
  GameBand: string;
  /** CPU load; whole number, in %, e.g. "26"; at most 64 bytes */
  CpuRate: string;
  /** memory load; whole number, in %, e.g. "47"; at most 64 bytes */
  MemRate: string;
  /** temperature of the CPU; whole number, in degrees Celsius, e.g. "54"; at most 64 bytes */
  CpuTemperature: string;
}

/** home-page, failure. */
export interface ReportHomePageFailure {
  Status: "1";
  /** "get home page info failed": the device reported nothing */
  FailReason: "get home page info failed";
}

/** Reply of home-page. */
export type ReportHomePageReply = ReportHomePageSuccess | ReportHomePageFailure;

/** image-upgrade: Fetches the image at a URL and flashes it, as an agent does without a command. */
export interface ReportImageUpgradeRequest {
  /** URL of the image; without one the upgrade fails; e.g. "http://127.0.0.1:8000/new.image" */
  url?: string;
}

/** image-upgrade, success: the upgrade has been started. */
export interface ReportImageUpgradeSuccess {
  /** unchanged from the request */
  url?: string;
}

/** Reply of image-upgrade. */
export type ReportImageUpgradeReply = ReportImageUpgradeSuccess;

/** main-base: The devices that are online, as the main router lists them. */
export type ReportMainBaseRequest = Record<string, never>;

/** MainBaseInfo: the devices that are online. */
export interface ReportMainBaseMainBaseInfo {
  /** type of device: "1" for a phone, "3" for a computer, "0" for anything else */
  DevType: "0" | "1" | "3";
  /** type of device; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; at most 32 bytes */
  DevModle: string;
  /** only for a device whose operating system is empty */
  OS?: "0";
  /** how it is attached: "1" by cable, "2" at 2.4 GHz, "4" at 5 GHz, "0" if unknown */
  AccessType: "0" | "1" | "2" | "4";
  /** "1" when it is online */
  NetStatus: "1" | "0";
  /** the same as NetStatus */
  AccessEnable: "1" | "0";
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; at most 32 bytes */
  Mac: string;
  /** host name; e.g. "workshop-pc"; at most 32 bytes */
  Name: string;
  /** name given by the user; e.g. "Anna"; at most 32 bytes */
  ByName: string;
  /** always empty */
  DevFactory: "";
  /** time at which it was attached; Unix time, in s, e.g. "1767225600"; at most 32 bytes */
  AccessTime: string;
  /** IP address; IPv4 address, e.g. "192.168.1.101"; at most 64 bytes */
  ip: string;
  /** current upstream rate; decimal number with two decimals, in bytes/s, e.g. "25625.00"; at most 32 bytes */
  UpSpeed: string;
  /** current downstream rate; decimal number with two decimals, in bytes/s, e.g. "25625.00"; at most 32 bytes */
  DownSpeed: string;
}

/** main-base, success: the devices were counted; a count that fails is 0. */
export interface ReportMainBaseSuccess {
  /** the devices that are online */
  MainBaseInfo: ReportMainBaseMainBaseInfo[];
}

/** Reply of main-base. */
export type ReportMainBaseReply = ReportMainBaseSuccess;

/** main-router: What is known of the main router. */
export type ReportMainRouterRequest = Record<string, never>;

/** main-router, success: the device answered at least one of the four calls; long form. */
export interface ReportMainRouterSuccess {
  Status: "0";
  /** "1" when the WAN is connected or connecting */
  NetStatus: "1" | "0";
  /** type of device; e.g. "HGU-AX3000"; at most 32 bytes */
  DeviceType: string;
  /** state of the first radio; a device may also write "up"; 1 for on, 0 for off; at most 32 bytes */
  WiFiStatus1: string;
  /** state of the second radio, as WiFiStatus1; 1 for on, 0 for off; at most 32 bytes */
  WiFiStatus2: string;
  /** name given by the user; e.g. "Lindenhof"; at most 64 bytes */
  Name: string;
  /** firmware version; e.g. "V2.4.1"; at most 32 bytes */
  FWVersion: string;
  /** IP address of the WAN; IPv4 address, e.g. "100.72.18.203"; at most 34 bytes */
  ip: string;
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes */
  Mac: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 32 bytes */
  UpSpeed: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 32 bytes */
  DownSpeed: string;
  /** network name of the first radio; e.g. "Lindenhof"; at most 32 bytes */
  SSID1: string;
  /** network name of the second radio; e.g. "Lindenhof-5G"; at most 32 bytes */
  SSID2: string;
  /** hardware version; e.g. "V1.2"; at most 32 bytes */
  HWVersion: string;
  /** date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes */
  FWDATA: string;
  /** time since the system started; whole number, in s, e.g. "86400"; at most 32 bytes */
  UpTime: string;
  /** time since the WAN connection came up; whole number, in s, e.g. "86400"; at most 32 bytes */
  WanUptime: string;
  /** whether the first configuration is done; 1 for yes, 0 for no; at most 128 bytes */
  ConfiguerStatus: string;
  /** type of WAN connection; DHCP, PPPoE or Static; at most 8 bytes */
  WanConMode: string;
  /** type of addressing on the WAN side; Dynamic or Static; at most 16 bytes */
  AddressType: string;
  /** CPU load; whole number, in %, e.g. "26"; at most 8 bytes */
  cpuusage: string;
  /** memory load; whole number, in %, e.g. "47"; at most 8 bytes */
  ramusage: string;
  /** whether the firewall is on; 1 for on, 0 for off; at most 16 bytes */
  FireWallEnable: string;
  /** always this text */
  NetQuality: "0";
  /** MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:21"; at most 32 bytes */
  Wlan0Mac: string;
  /** MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:25"; at most 32 bytes */
  Wlan1Mac: string;
}

/** main-router, success: the device answered at least one of the four calls; short form. */
export interface ReportMainRouterSuccess2 {
  Status: "0";
  /** "1" when the WAN is connected or connecting */
  NetStatus: "1" | "0";
  /** type of device; e.g. "HGU-AX3000"; at most 32 bytes */
  DeviceType: string;
  /** state of the first radio; a device may also write "up"; 1 for on, 0 for off; at most 32 bytes */
  WiFiStatus1: string;
  /** state of the second radio, as WiFiStatus1; 1 for on, 0 for off; at most 32 bytes */
  WiFiStatus2: string;
  /** name given by the user; e.g. "Lindenhof"; at most 64 bytes */
  Name: string;
  /** firmware version; e.g. "V2.4.1"; at most 32 bytes */
  FWVersion: string;
  /** IP address of the WAN; IPv4 address, e.g. "100.72.18.203"; at most 34 bytes */
  ip: string;
  /** CPU load; whole number, in %, e.g. "26"; at most 32 bytes */
  Cpu: string;
  /** memory load; whole number, in %, e.g. "47"; at most 32 bytes */
  Memory: string;
  /** address of the gateway; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes */
  LanIp: string;
  /** address of the default gateway; IPv4 address, e.g. "100.72.0.1"; at most 32 bytes */
  WanGateWay: string;
  /** DNS servers; IP addresses, separated by commas, e.g. "100.64.0.53,100.64.1.53"; at most 65 bytes */
  Dns: string;
}

/** main-router, failure. */
export interface ReportMainRouterFailure {
  Status: "1";
  /** "get base info error!": the device answered none of the four calls */
  FailReason: "get base info error!";
}

/** Reply of main-router. */
export type ReportMainRouterReply = ReportMainRouterSuccess | ReportMainRouterSuccess2 | ReportMainRouterFailure;

/** mesh: What hgagent topology draws: topology, tree of parameters and a count. */
export type ReportMeshRequest = Record<string, never>;

/** mesh, success: the topology was reported. */
export interface ReportMeshSuccess {
  /** the reply to GET_TSLINK_TOPOLOGY_INFO */
  topology: Record<string, unknown>;
  /** the report agent-topology */
  tree: Record<string, unknown>;
  /** g_dev_num of the plug-in, which counts the devices of the main router; missing if the plug-in does not export it */
  devices?: number;
}

/** mesh, failure: the command failed; the result is 1. */
export interface ReportMeshFailure {
  /** the reply to GET_TSLINK_TOPOLOGY_INFO, with its failure */
  topology: Record<string, unknown>;
}

/** Reply of mesh. */
export type ReportMeshReply = ReportMeshSuccess | ReportMeshFailure;

/** stations: The stations of one router in the tree of parameters. */
export interface ReportStationsRequest {
  /** the router in the tree of parameters; the main router unless given; path that ends with a full stop, e.g. "InternetGatewayDevice.WiFi.MultiAP.APDevice.2." */
  path?: string;
}

/** MainBaseInfo: stations of the router, 32 at most. */
export interface ReportStationsMainBaseInfo {
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; at most 32 bytes */
  Mac: string;
  /** type of device; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; at most 32 bytes */
  DevType: string;
  /** manufacturer of the device; e.g. "Eichhorn Computer"; at most 32 bytes */
  DevFactory: string;
  /** always this text */
  DevModle: "Tessaline";
  /** host name; e.g. "workshop-pc"; at most 32 bytes */
  Name: string;
  /** name given by the user; e.g. "Anna"; at most 32 bytes */
  ByName: string;
  /** whether it is online; 1 for up, 0 for down; at most 8 bytes */
  NetStatus: string;
  /** whether it has exclusive bandwidth; 1 for yes, 0 for no; at most 32 bytes */
  NetMonopoly: string;
  /** how it is attached; cable, 2.4GHz or 5GHz; at most 32 bytes */
  AccessType: string;
  /** whether it may reach the Internet; 1 for on, 0 for off; at most 8 bytes */
  AccessEnable: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "101"; at most 32 bytes */
  UpSpeed: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "2629"; at most 32 bytes */
  DownSpeed: string;
  /** IP address; IPv4 address, e.g. "192.168.1.101"; at most 64 bytes */
  ip: string;
  /** seconds since it was attached; whole number, in s, e.g. "3600"; at most 11 bytes */
  AccessTime: string;
  /** unique identifier; MAC address without colons, e.g. "A4BB6D31075E"; at most 32 bytes */
  UID: string;
  /** always this text */
  OS: "3";
  /** version of the operating system; e.g. "6.1"; at most 32 bytes */
  Version: string;
  /** whether it is under parental control; 1 for on, 0 for off; at most 8 bytes */
  GreennetProtectEnable: string;
  /** whether the speed limits are on; 1 for on, 0 for off; at most 8 bytes */
  SpeedLimit: string;
  /** download limit; whole number, 0 for none, in kbit/s, e.g. "20000"; at most 16 bytes */
  DownLimit: string;
  /** upload limit; whole number, 0 for none, in kbit/s, e.g. "0"; at most 16 bytes */
  UpLimit: string;
}

/** stations, success: the report was built; an unknown router has no stations. */
export interface ReportStationsSuccess {
  /** unchanged from the request */
  path?: string;
  /** stations of the router, 32 at most */
  MainBaseInfo: ReportStationsMainBaseInfo[];
}

/** stations, failure: there is no memory; the result is -1. */
export interface ReportStationsFailure {
  /** unchanged from the request */
  path?: string;
}

/** Reply of stations. */
export type ReportStationsReply = ReportStationsSuccess | ReportStationsFailure;

/** topology: The child routers with their stations, from the relations of the topology. */
export type ReportTopologyRequest = Record<string, never>;

/** ChildInfo: routers attached to the child router; only in a mesh of type 2. */
export interface ReportTopologyChildRouterChildInfo {
  /** MAC address of the attached router, or of its mesh interface if that is not known; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 32 bytes */
  childMac: string;
}

/** ChildBaseInfo: stations of the child router; missing if the device could not report them. */
export interface ReportTopologyChildRouterChildBaseInfo {
  /** MAC address; six bytes in hexadecimal, separated by colons, e.g. "DA:41:7C:0E:92:B3"; at most 96 bytes */
  Mac?: string;
  /** type of device; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; at most 32 bytes */
  DevType?: string;
  /** manufacturer of the device; e.g. "Eichhorn Computer"; at most 32 bytes */
  DevFactory?: string;
  /** always this text */
  DevModle?: "Tessaline";
  /** host name; e.g. "workshop-pc"; at most 32 bytes */
  Name?: string;
  /** name given by the user, otherwise the host name; e.g. "Anna"; at most 32 bytes */
  ByName?: string;
  /** whether it is online; 1 for up, 0 for down; at most 8 bytes */
  NetStatus?: string;
  /** whether it has exclusive bandwidth; 1 for yes, 0 for no; at most 32 bytes */
  NetMonopoly?: string;
  /** how it is attached; cable, 2.4GHz or 5GHz; at most 32 bytes */
  AccessType?: string;
  /** whether it may reach the Internet; 1 for on, 0 for off; at most 8 bytes */
  AccessEnable?: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "101"; at most 32 bytes */
  UpSpeed?: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "2629"; at most 32 bytes */
  DownSpeed?: string;
  /** IP address; IPv4 address, e.g. "192.168.1.101"; at most 64 bytes */
  ip?: string;
  /** signal strength; whole number below 0, in dBm, e.g. "-54"; at most 8 bytes */
  dbm?: string;
  /** seconds since it was attached; if the area code contains TH_OLV, ignoring case, the Unix time at which it was attached; at most 32 bytes */
  AccessTime?: string;
  /** unique identifier; MAC address without colons, e.g. "A4BB6D31075E"; at most 32 bytes */
  UID?: string;
  /** always this text */
  OS?: "3";
  /** version of the operating system; e.g. "6.1"; at most 32 bytes */
  Version?: string;
  /** whether it is under parental control; 1 for on, 0 for off; at most 8 bytes */
  GreennetProtectEnable?: string;
  /** whether the speed limits are on; 1 for on, 0 for off; at most 8 bytes */
  SpeedLimit?: string;
  /** download limit; whole number, 0 for none, in kbit/s, e.g. "20000"; at most 16 bytes */
  DownLimit?: string;
  /** upload limit; whole number, 0 for none, in kbit/s, e.g. "0"; at most 16 bytes */
  UpLimit?: string;
}

/** ChildRouter: the child routers; none if the mesh is off or its relations are unknown. */
export interface ReportTopologyChildRouter {
  /** MAC address, in the form that the device library shows to users, if there is one; six bytes in hexadecimal, separated by dashes, as on the label, e.g. "3C-6A-D2-22-81-40"; at most 64 bytes */
  Mac: string;
  /** how it reaches its parent; cable, 2.4GHz or 5GHz; at most 8 bytes */
  AccessType: string;
  /** speed of its link to the parent; whole number, in Mbit/s, e.g. "866"; at most 16 bytes */
  LinkSpeed: string;
  /** signal strength; whole number below 0, in dBm, e.g. "-54"; at most 8 bytes */
  dbm: string;
  /** identifier of the device; MAC address without colons, e.g. "3C6AD2228140"; at most 32 bytes */
  RouterDeviceID?: string;
  /** name of the child router; e.g. "Attic"; at most 64 bytes */
  Name?: string;
  /** whether it is online; 1 for up, 0 for down; at most 8 bytes */
  NetStatus?: string;
  /** how it reaches its parent; cable, 2.4GHz or 5GHz; at most 8 bytes */
  ChildRouterAccessType?: string;
  /** current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 16 bytes */
  UpSpeed?: string;
  /** current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 16 bytes */
  DownSpeed?: string;
  /** date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes */
  FWDATA?: string;
  /** hardware version; e.g. "V1.2"; at most 16 bytes */
  HWVersion?: string;
  /** code of the operator's area; e.g. "NORTH-07"; at most 16 bytes */
  AreaCode?: string;
  /** time since it started; whole number, in s, e.g. "86400"; at most 16 bytes */
  UpTime?: string;
  /** type of device; e.g. "MAP-AX1800"; at most 32 bytes */
  DeviceType?: string;
  /** MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:41"; at most 32 bytes */
  Wlan0Mac?: string;
  /** MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:45"; at most 32 bytes */
  Wlan1Mac?: string;
  /** firmware version, where the topology does not know it; e.g. "V2.4.1"; at most 32 bytes */
  FWVersion?: string;
  /** IP address, where the topology does not know it; IPv4 address, e.g. "192.168.1.2"; at most 32 bytes */
  ip?: string;
  /** MAC address of the router that it is attached to; bytes in hexadecimal, with colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes */
  ParentMacAddress?: string;
  /** routers attached to the child router; only in a mesh of type 2 */
  ChildInfo?: ReportTopologyChildRouterChildInfo[];
  /** stations of the child router; missing if the device could not report them */
  ChildBaseInfo?: ReportTopologyChildRouterChildBaseInfo[];
}

/** topology, success: the report was built. */
export interface ReportTopologySuccess {
  /** the child routers; none if the mesh is off or its relations are unknown */
  ChildRouter: ReportTopologyChildRouter[];
}

/** topology, failure: there is no memory; the result is -1. */
export type ReportTopologyFailure = Record<string, never>;

/** Reply of topology. */
export type ReportTopologyReply = ReportTopologySuccess | ReportTopologyFailure;

/** background.ended: A worker has ended. */
export interface BackgroundEndedData {
  /** which worker: the one that applies a batch of Wi-Fi settings, or the one that fetches and flashes firmware */
  worker: "wifi-batch" | "firmware";
}

/** background.lost: A worker was lost with its process. */
export interface BackgroundLostData {
  /** which worker: the one that applies a batch of Wi-Fi settings, or the one that fetches and flashes firmware */
  worker: "wifi-batch" | "firmware";
}

/** background.started: A worker has started. */
export interface BackgroundStartedData {
  /** which worker: the one that applies a batch of Wi-Fi settings, or the one that fetches and flashes firmware */
  worker: "wifi-batch" | "firmware";
}

/** device.call: The plug-in has called the device library. */
export interface DeviceCallData {
  /** the device function, such as "devapi_get_sn_info" */
  call: string;
  /** the command that made the call; absent for a report, and for a worker that continues after the answer */
  command?: string;
  /** what the function returned */
  result: number;
  /** the line of the trace, with secrets masked */
  text: string;
}

/** notice: A notice is pushed to the app. */
export interface NoticeData {
  /** what the app is to do, always "Push" with this plug-in */
  RPCMethod?: string;
  /** the part of the system that raised it */
  Plugin_Name?: string;
  /** local time of the router, such as 20260101000000 */
  time?: string;
  /** MD5 of Message, in hexadecimal digits */
  MD5?: string;
  /** MAC address of the router */
  mac?: string;
  /** the text in base64 */
  Message?: string;
  /** what another plug-in pushed, if it is not an object */
  value?: unknown;
}

/** policy.refused: A request was refused. */
export interface PolicyRefusedData {
  /** who sent the request, such as "user:alice" */
  who: string;
  /** the transport of the request, such as "socket" */
  way_in: string;
  /** the command, report, control or event pattern that was requested */
  name: string;
  /** the rule that refuses, with its file and line */
  rule: string;
  /** how many refusals of this client have raised no event since its last one: a client raises ten at once, and then one a second */
  omitted?: number;
}

/** reboot.begun: The gateway reboots. */
export interface RebootBegunData {
  /** how long the reboot takes, in seconds; until then requests are refused with the code "rebooting" */
  seconds: number;
}

/** reboot.ended: The gateway is back. */
export type RebootEndedData = Record<string, never>;

/** update.failed: A firmware update has failed. */
export interface UpdateFailedData {
  /** why, in one line, as the device library has it */
  reason: string;
}

/** update.progress: A firmware image is being fetched. */
export interface UpdateProgressData {
  /** the task, "firmware" with the simulated gateway */
  task: string;
  /** how much of it is done, 0 to 100; 100 when the image is complete and verified */
  percent: number;
}

/** update.succeeded: A firmware image has been flashed. */
export interface UpdateSucceededData {
  /** the version of the image */
  version: string;
}

/** worker.backing-off: The service waits before it restarts the process. */
export interface WorkerBackingOffData {
  /** how often within the last minute */
  crashes: number;
  /** how long the service waits */
  seconds: number;
}

/** worker.crashed: The gateway's process has crashed. */
export interface WorkerCrashedData {
  /** the signal that ended it */
  signal?: number;
  /** exit status of the process, if no signal ended it */
  status?: number;
  /** the command that was running */
  command?: string;
  /** how often the process has crashed since the service started */
  crashes: number;
}

/** worker.killed: The gateway's process was killed. */
export interface WorkerKilledData {
  /** the command that was running */
  command?: string;
  /** time limit of the command or worker, in seconds */
  seconds: number;
}

/** worker.started: The gateway's process has started. */
export interface WorkerStartedData {
  /** how often the service has started it, this time included */
  starts: number;
}

/** Each command with its request and reply. */
export interface Commands {
  CHILD_HG_LOCAL_RECOVERY: { request: ChildHgLocalRecoveryRequest; reply: ChildHgLocalRecoveryReply };
  DEL_LAN_DEVICE: { request: DelLanDeviceRequest; reply: DelLanDeviceReply };
  GET_ADMIN_INFO: { request: GetAdminInfoRequest; reply: GetAdminInfoReply };
  GET_AD_BASE_INFO: { request: GetAdBaseInfoRequest; reply: GetAdBaseInfoReply };
  GET_AP_ALG_ABILITY: { request: GetApAlgAbilityRequest; reply: GetApAlgAbilityReply };
  GET_AP_MULTISERVICE_MODE: { request: GetApMultiserviceModeRequest; reply: GetApMultiserviceModeReply };
  GET_ATTACH_DEVICE_RIGHT: { request: GetAttachDeviceRightRequest; reply: GetAttachDeviceRightReply };
  GET_CHILD_ROUTER_AD_BASE_INFO: { request: GetChildRouterAdBaseInfoRequest; reply: GetChildRouterAdBaseInfoReply };
  GET_GATEWAY_NET_FAULT: { request: GetGatewayNetFaultRequest; reply: GetGatewayNetFaultReply };
  GET_GREENNET_DEVICE_LIST: { request: GetGreennetDeviceListRequest; reply: GetGreennetDeviceListReply };
  GET_GREENNET_ENABLE: { request: GetGreennetEnableRequest; reply: GetGreennetEnableReply };
  GET_GREENNET_PROTECT_PERIOD_LIST: { request: GetGreennetProtectPeriodListRequest; reply: GetGreennetProtectPeriodListReply };
  GET_HG_BASE_INFO: { request: GetHgBaseInfoRequest; reply: GetHgBaseInfoReply };
  GET_HG_DHCP_INFO: { request: GetHgDhcpInfoRequest; reply: GetHgDhcpInfoReply };
  GET_HG_GUEST_SSID: { request: GetHgGuestSsidRequest; reply: GetHgGuestSsidReply };
  GET_HG_LOG: { request: GetHgLogRequest; reply: GetHgLogReply };
  GET_HG_PPPOE_INFO: { request: GetHgPppoeInfoRequest; reply: GetHgPppoeInfoReply };
  GET_HG_REBOOT_INFO: { request: GetHgRebootInfoRequest; reply: GetHgRebootInfoReply };
  GET_HG_SLEEP_INFO: { request: GetHgSleepInfoRequest; reply: GetHgSleepInfoReply };
  GET_HG_UPLINK_STATUS: { request: GetHgUplinkStatusRequest; reply: GetHgUplinkStatusReply };
  GET_LAN_IP_INFO: { request: GetLanIpInfoRequest; reply: GetLanIpInfoReply };
  GET_LED_STATUS: { request: GetLedStatusRequest; reply: GetLedStatusReply };
  GET_MESH_STATUS: { request: GetMeshStatusRequest; reply: GetMeshStatusReply };
  GET_PORT_BINDING: { request: GetPortBindingRequest; reply: GetPortBindingReply };
  GET_PORT_STATISTICS: { request: GetPortStatisticsRequest; reply: GetPortStatisticsReply };
  GET_QOS_INFO: { request: GetQosInfoRequest; reply: GetQosInfoReply };
  GET_SCAN_CHANNEL_COUNT: { request: GetScanChannelCountRequest; reply: GetScanChannelCountReply };
  GET_SCAN_CHANNEL_POWER: { request: GetScanChannelPowerRequest; reply: GetScanChannelPowerReply };
  GET_SCAN_WIFI_SSIDLIST: { request: GetScanWifiSsidlistRequest; reply: GetScanWifiSsidlistReply };
  GET_SN_INFO: { request: GetSnInfoRequest; reply: GetSnInfoReply };
  GET_STA_RSSI: { request: GetStaRssiRequest; reply: GetStaRssiReply };
  GET_TSCONF_STATUS: { request: GetTsconfStatusRequest; reply: GetTsconfStatusReply };
  GET_TSLINK_TOPOLOGY_INFO: { request: GetTslinkTopologyInfoRequest; reply: GetTslinkTopologyInfoReply };
  GET_UPDATE_SCHEDULE: { request: GetUpdateScheduleRequest; reply: GetUpdateScheduleReply };
  GET_UPDATE_STATUS: { request: GetUpdateStatusRequest; reply: GetUpdateStatusReply };
  GET_UPNP_STATE: { request: GetUpnpStateRequest; reply: GetUpnpStateReply };
  GET_WEB_LOGIN_INFO: { request: GetWebLoginInfoRequest; reply: GetWebLoginInfoReply };
  GET_WIFI_CHANNEL_LIST: { request: GetWifiChannelListRequest; reply: GetWifiChannelListReply };
  GET_WIFI_INFO: { request: GetWifiInfoRequest; reply: GetWifiInfoReply };
  GET_WIFI_LIST_INFO: { request: GetWifiListInfoRequest; reply: GetWifiListInfoReply };
  GET_WIFI_SLEEP_SCHEDULE: { request: GetWifiSleepScheduleRequest; reply: GetWifiSleepScheduleReply };
  GET_WPS_ENABLE: { request: GetWpsEnableRequest; reply: GetWpsEnableReply };
  HG_GET_UPDATE_STATUS: { request: HgGetUpdateStatusRequest; reply: HgGetUpdateStatusReply };
  HG_IMAGE_DOWNLOAD: { request: HgImageDownloadRequest; reply: HgImageDownloadReply };
  HG_IMAGE_UPDATE: { request: HgImageUpdateRequest; reply: HgImageUpdateReply };
  HG_INSPECTION: { request: HgInspectionRequest; reply: HgInspectionReply };
  HG_LOCAL_RECOVERY: { request: HgLocalRecoveryRequest; reply: HgLocalRecoveryReply };
  HG_NETCONN_INSPECTION: { request: HgNetconnInspectionRequest; reply: HgNetconnInspectionReply };
  HG_NETCONN_OPTIMIZATION: { request: HgNetconnOptimizationRequest; reply: HgNetconnOptimizationReply };
  HG_NETQUAL_INSPECTION: { request: HgNetqualInspectionRequest; reply: HgNetqualInspectionReply };
  HG_NETQUAL_OPTIMIZATION: { request: HgNetqualOptimizationRequest; reply: HgNetqualOptimizationReply };
  HG_RESOURCE_INSPECTION: { request: HgResourceInspectionRequest; reply: HgResourceInspectionReply };
  HG_RESOURCE_OPTIMIZATION: { request: HgResourceOptimizationRequest; reply: HgResourceOptimizationReply };
  HG_SPEEDTEST_REQUEST: { request: HgSpeedtestRequestRequest; reply: HgSpeedtestRequestReply };
  HG_WIFI_CHANNEL_POWER_OPTIMIZATION: { request: HgWifiChannelPowerOptimizationRequest; reply: HgWifiChannelPowerOptimizationReply };
  HG_WIFI_INSPECTION: { request: HgWifiInspectionRequest; reply: HgWifiInspectionReply };
  HG_WIFI_OPTIMIZATION: { request: HgWifiOptimizationRequest; reply: HgWifiOptimizationReply };
  IMAGE_DOWNLOAD: { request: ImageDownloadRequest; reply: ImageDownloadReply };
  IMAGE_UPDATE: { request: ImageUpdateRequest; reply: ImageUpdateReply };
  LINK_CHECK: { request: LinkCheckRequest; reply: LinkCheckReply };
  PLATEFORM_UPDATE_IMMEDIATE: { request: PlateformUpdateImmediateRequest; reply: PlateformUpdateImmediateReply };
  QUERY_SYSTEM_INFO: { request: QuerySystemInfoRequest; reply: QuerySystemInfoReply };
  QUERY_TSLINK_CONFIG_STATUS: { request: QueryTslinkConfigStatusRequest; reply: QueryTslinkConfigStatusReply };
  QUERY_WAN_INFO: { request: QueryWanInfoRequest; reply: QueryWanInfoReply };
  QUERY_WAN_NUM: { request: QueryWanNumRequest; reply: QueryWanNumReply };
  RESPONSE_ROUTER_VERSION: { request: ResponseRouterVersionRequest; reply: ResponseRouterVersionReply };
  RP_CHILD_HG_REBOOT: { request: RpChildHgRebootRequest; reply: RpChildHgRebootReply };
  RP_HG_REBOOT: { request: RpHgRebootRequest; reply: RpHgRebootReply };
  SET_ADMIN_INFO: { request: SetAdminInfoRequest; reply: SetAdminInfoReply };
  SET_AD_BASE_INFO: { request: SetAdBaseInfoRequest; reply: SetAdBaseInfoReply };
  SET_AP_ALG_ABILITY: { request: SetApAlgAbilityRequest; reply: SetApAlgAbilityReply };
  SET_AP_MULTISERVICE_MODE: { request: SetApMultiserviceModeRequest; reply: SetApMultiserviceModeReply };
  SET_ATTACH_DEVICE_RIGHT: { request: SetAttachDeviceRightRequest; reply: SetAttachDeviceRightReply };
  SET_CHILD_ROUTERAD_BASE_INFO: { request: SetChildRouteradBaseInfoRequest; reply: SetChildRouteradBaseInfoReply };
  SET_CHILD_ROUTER_HG_BASE_INFO: { request: SetChildRouterHgBaseInfoRequest; reply: SetChildRouterHgBaseInfoReply };
  SET_FIREWALL_SWITCH: { request: SetFirewallSwitchRequest; reply: SetFirewallSwitchReply };
  SET_GREENNET_DEVICE_LIST: { request: SetGreennetDeviceListRequest; reply: SetGreennetDeviceListReply };
  SET_GREENNET_ENABLE: { request: SetGreennetEnableRequest; reply: SetGreennetEnableReply };
  SET_GREENNET_NOTIFY_ENABLE: { request: SetGreennetNotifyEnableRequest; reply: SetGreennetNotifyEnableReply };
  SET_GREENNET_PROTECT_PERIOD_LIST: { request: SetGreennetProtectPeriodListRequest; reply: SetGreennetProtectPeriodListReply };
  SET_HG_BASE_INFO: { request: SetHgBaseInfoRequest; reply: SetHgBaseInfoReply };
  SET_HG_DHCP_INFO: { request: SetHgDhcpInfoRequest; reply: SetHgDhcpInfoReply };
  SET_HG_GUEST_SSID: { request: SetHgGuestSsidRequest; reply: SetHgGuestSsidReply };
  SET_HG_PPPOE_INFO: { request: SetHgPppoeInfoRequest; reply: SetHgPppoeInfoReply };
  SET_HG_REBOOT_INFO: { request: SetHgRebootInfoRequest; reply: SetHgRebootInfoReply };
  SET_HG_SLEEP_INFO: { request: SetHgSleepInfoRequest; reply: SetHgSleepInfoReply };
  SET_KAA_HEARTBEAT: { request: SetKaaHeartbeatRequest; reply: SetKaaHeartbeatReply };
  SET_LAN_IP_INFO: { request: SetLanIpInfoRequest; reply: SetLanIpInfoReply };
  SET_LED_STATUS: { request: SetLedStatusRequest; reply: SetLedStatusReply };
  SET_MESH_PAIR: { request: SetMeshPairRequest; reply: SetMeshPairReply };
  SET_MESH_STATUS: { request: SetMeshStatusRequest; reply: SetMeshStatusReply };
  SET_PORT_BINDING: { request: SetPortBindingRequest; reply: SetPortBindingReply };
  SET_QOS_APP_INFO: { request: SetQosAppInfoRequest; reply: SetQosAppInfoReply };
  SET_QOS_CLASSIFICATION_INFO: { request: SetQosClassificationInfoRequest; reply: SetQosClassificationInfoReply };
  SET_QOS_ENABLE: { request: SetQosEnableRequest; reply: SetQosEnableReply };
  SET_ROUTE_WAN_INFO: { request: SetRouteWanInfoRequest; reply: SetRouteWanInfoReply };
  SET_TSLINK_CONFIG_STATUS: { request: SetTslinkConfigStatusRequest; reply: SetTslinkConfigStatusReply };
  SET_TSLINK_SSID: { request: SetTslinkSsidRequest; reply: SetTslinkSsidReply };
  SET_UPDATE_SCHEDULE: { request: SetUpdateScheduleRequest; reply: SetUpdateScheduleReply };
  SET_UPLINK_WIFI_INFO: { request: SetUplinkWifiInfoRequest; reply: SetUplinkWifiInfoReply };
  SET_UPNP_STATE: { request: SetUpnpStateRequest; reply: SetUpnpStateReply };
  SET_WEB_LOGIN_INFO: { request: SetWebLoginInfoRequest; reply: SetWebLoginInfoReply };
  SET_WEB_LOGIN_TYPE: { request: SetWebLoginTypeRequest; reply: SetWebLoginTypeReply };
  SET_WIFI_INFO: { request: SetWifiInfoRequest; reply: SetWifiInfoReply };
  SET_WIFI_INFO_LIST: { request: SetWifiInfoListRequest; reply: SetWifiInfoListReply };
  SET_WIFI_SLEEP_SCHEDULE: { request: SetWifiSleepScheduleRequest; reply: SetWifiSleepScheduleReply };
  SET_WPS_ENABLE: { request: SetWpsEnableRequest; reply: SetWpsEnableReply };
  SET_WPS_STATE: { request: SetWpsStateRequest; reply: SetWpsStateReply };
  UPDATE_IMMEDIATE: { request: UpdateImmediateRequest; reply: UpdateImmediateReply };
}

/** Each report with its parameters and reply. */
export interface Reports {
  "agent-topology": { request: ReportAgentTopologyRequest; reply: ReportAgentTopologyReply };
  "home-page": { request: ReportHomePageRequest; reply: ReportHomePageReply };
  "image-upgrade": { request: ReportImageUpgradeRequest; reply: ReportImageUpgradeReply };
  "main-base": { request: ReportMainBaseRequest; reply: ReportMainBaseReply };
  "main-router": { request: ReportMainRouterRequest; reply: ReportMainRouterReply };
  mesh: { request: ReportMeshRequest; reply: ReportMeshReply };
  stations: { request: ReportStationsRequest; reply: ReportStationsReply };
  topology: { request: ReportTopologyRequest; reply: ReportTopologyReply };
}

/** Each event with its data. */
export interface Events {
  "background.ended": BackgroundEndedData;
  "background.lost": BackgroundLostData;
  "background.started": BackgroundStartedData;
  "device.call": DeviceCallData;
  notice: NoticeData;
  "policy.refused": PolicyRefusedData;
  "reboot.begun": RebootBegunData;
  "reboot.ended": RebootEndedData;
  "update.failed": UpdateFailedData;
  "update.progress": UpdateProgressData;
  "update.succeeded": UpdateSucceededData;
  "worker.backing-off": WorkerBackingOffData;
  "worker.crashed": WorkerCrashedData;
  "worker.killed": WorkerKilledData;
  "worker.started": WorkerStartedData;
}

export type Code = "bad-request" | "denied" | "too-large" | "rate-limited" | "outcome-unknown" | "busy" | "rebooting" | "timeout";

export type Command = keyof Commands;
export type Request<C extends Command> = Commands[C]["request"];
export type Reply<C extends Command> = Commands[C]["reply"];

export type Report = keyof Reports;
export type ReportRequest<R extends Report> = Reports[R]["request"];
export type ReportReply<R extends Report> = Reports[R]["reply"];

export type EventName = keyof Events;
/** An event, of the names N. */
export type Event<N extends EventName = EventName> = { [E in N]: { event: E; data: Events[E] } }[N];

/** Why there is no result. */
export interface Failed {
  /** For people. */
  error: string;
  /** For programs. */
  code: Code;
  /** The rule of the policy that refuses, with its place. */
  rule?: string;
}

/** A change of the simulated gateway, for the owner of the service alone. */
export type Control =
  | { faults: string[] }
  | { scenario: string }
  | { clock: string | null }
  | { trace: boolean }
  | { show: Record<string, never> };

/** The reply to the control "show". */
export interface ControlSettings {
  scenario: string;
  /** The scenarios that can be loaded. */
  scenarios: string[];
  /** The fault plan, with the calls that are left. */
  faults: string[];
  fault_kinds: { form: string; functions: string[] };
  /** The clock as set; null: it follows the machine's. */
  clock: string | null;
  /** Time of the clock, in UTC. */
  time: string;
  trace: boolean;
}

/** The answer to a command. */
export type Answer<C extends Command> = { result: 0; reply: Reply<C> } | Failed;
/** The answer to a report; the result is 0 for success. */
export type ReportAnswer<R extends Report> = { result: number; reply: ReportReply<R> } | Failed;

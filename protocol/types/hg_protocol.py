# SPDX-License-Identifier: MIT
# Generated from protocol/ by protocol/generate.py.
"""The requests and replies of the commands and reports, the events, and the lines around them. A reply can have
other keys as well: those of the request that the command does not know."""

from typing import Any, Literal, NotRequired, Protocol, TypedDict, Union, overload


class ChildHgLocalRecoveryRequest(TypedDict):
    """CHILD_HG_LOCAL_RECOVERY: Restores the factory settings of a child router."""

    # identifier of the child router; MAC address without colons, e.g. "3C6AD2228140"
    DeviceID: str


class ChildHgLocalRecoverySuccess(TypedDict):
    """CHILD_HG_LOCAL_RECOVERY, success: the command was sent."""

    Status: Literal["0"]


class ChildHgLocalRecoveryFailure(TypedDict):
    """CHILD_HG_LOCAL_RECOVERY, failure."""

    # unchanged from the request
    DeviceID: NotRequired[str]
    Status: Literal["1"]
    # "DeviceID Not Found": the key is missing or not a string; "send json to child err": the command could not be sent
    FailReason: Literal["DeviceID Not Found", "send json to child err"]


# Reply of CHILD_HG_LOCAL_RECOVERY.
ChildHgLocalRecoveryReply = Union[ChildHgLocalRecoverySuccess, ChildHgLocalRecoveryFailure]


class DelLanDeviceRequest(TypedDict):
    """DEL_LAN_DEVICE: Removes an attached device."""

    # MAC address of the device; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"
    MAC: str


class DelLanDeviceSuccess(TypedDict):
    """DEL_LAN_DEVICE, success: the device accepted the change."""

    Status: Literal["0"]


class DelLanDeviceFailure(TypedDict):
    """DEL_LAN_DEVICE, failure."""

    # unchanged from the request
    MAC: NotRequired[str]
    Status: Literal["1"]
    # "parama is errer!": the key is missing; "MAC  value is NULL": the key is present but not a string; "set tslink config failed": the device refused the change
    FailReason: Literal["parama is errer!", "MAC  value is NULL", "set tslink config failed"]


# Reply of DEL_LAN_DEVICE.
DelLanDeviceReply = Union[DelLanDeviceSuccess, DelLanDeviceFailure]


class GetAdminInfoRequest(TypedDict):
    """GET_ADMIN_INFO: The administrator's account."""


class GetAdminInfoSuccess(TypedDict):
    """GET_ADMIN_INFO, success: the device answered."""

    Status: Literal["0"]
    # name of the administrator; e.g. "admin"; at most 128 bytes
    Name: str
    # password of the administrator; e.g. "zaun-und-tor-58"; at most 128 bytes; secret
    Password: str


class GetAdminInfoFailure(TypedDict):
    """GET_ADMIN_INFO, failure."""

    Status: Literal["1"]
    # "get admin info failed": the device could not answer
    FailReason: Literal["get admin info failed"]


# Reply of GET_ADMIN_INFO.
GetAdminInfoReply = Union[GetAdminInfoSuccess, GetAdminInfoFailure]


class GetAdBaseInfoRequest(TypedDict):
    """GET_AD_BASE_INFO: The attached devices, with all details."""


class GetAdBaseInfoBaseInfo(TypedDict):
    """BaseInfo: the devices."""

    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; at most 32 bytes
    Mac: str
    # unique identifier; MAC address without colons, e.g. "A4BB6D31075E"; at most 32 bytes
    UID: str
    # type of device; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; at most 32 bytes
    DevType: str
    # manufacturer of the device; e.g. "Eichhorn Computer"; at most 32 bytes
    DevFactory: str
    # the same as DevType: the model is not known; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; at most 32 bytes
    DevModle: str
    # host name; e.g. "workshop-pc"; at most 32 bytes
    Name: str
    # name given by the user; e.g. "Anna"; at most 32 bytes
    ByName: str
    # operating system; e.g. "Linux"; at most 32 bytes
    OS: str
    # version of the operating system; e.g. "6.1"; at most 32 bytes
    Version: str
    # whether it is online; 1 for up, 0 for down; at most 8 bytes
    NetStatus: str
    # whether it has exclusive bandwidth; 1 for yes, 0 for no; at most 32 bytes
    NetMonopoly: str
    # how it is attached; cable, 2.4GHz or 5GHz; at most 32 bytes
    AccessType: str
    # whether it may reach the Internet; 1 for on, 0 for off; at most 8 bytes
    AccessEnable: str
    # time at which it was attached; Unix time, in s, e.g. "1767225600"; at most 32 bytes
    AccessTime: str
    # current upstream rate; whole number, in kbit/s, e.g. "101"; at most 32 bytes
    UpSpeed: str
    # current downstream rate; whole number, in kbit/s, e.g. "2629"; at most 32 bytes
    DownSpeed: str
    # IP address; IPv4 address, e.g. "192.168.1.101"; at most 64 bytes
    ip: str
    # whether it is under parental control; 1 for on, 0 for off; at most 8 bytes
    GreennetProtectEnable: str
    # whether its IP address is bound to its MAC address; 1 for on, 0 for off, -1 if not given; at most 8 bytes
    StaticDhcpEnable: str


class GetAdBaseInfoSuccess(TypedDict):
    """GET_AD_BASE_INFO, success: the device reported every attached device."""

    # the devices
    BaseInfo: list[GetAdBaseInfoBaseInfo]
    Status: Literal["0"]


class GetAdBaseInfoFailure(TypedDict):
    """GET_AD_BASE_INFO, failure."""

    Status: Literal["1"]
    # "get ad base info error": the device could not report how many there are, or could not read one of them
    FailReason: Literal["get ad base info error"]


# Reply of GET_AD_BASE_INFO.
GetAdBaseInfoReply = Union[GetAdBaseInfoSuccess, GetAdBaseInfoFailure]


class GetApAlgAbilityRequest(TypedDict):
    """GET_AP_ALG_ABILITY: NAT helpers (ALG) by protocol."""


class GetApAlgAbilitySuccess(TypedDict):
    """GET_AP_ALG_ABILITY, success: the device answered."""

    # whether the PPTP helper is on; 1 for on, 0 for off; at most 8 bytes
    PPTP: str
    # whether the FTP helper is on; 1 for on, 0 for off; at most 8 bytes
    FTP: str
    # whether the IPsec helper is on; 1 for on, 0 for off; at most 8 bytes
    IPSEC: str
    # whether the L2TP helper is on; 1 for on, 0 for off; at most 8 bytes
    L2TP: str
    # whether the RTSP helper is on; 1 for on, 0 for off; at most 8 bytes
    RTSP: str
    # whether the H.323 helper is on; 1 for on, 0 for off; at most 8 bytes
    H323: str
    # whether the SIP helper is on; 1 for on, 0 for off; at most 8 bytes
    SIP: str
    Status: Literal["0"]


class GetApAlgAbilityFailure(TypedDict):
    """GET_AP_ALG_ABILITY, failure."""

    Status: Literal["1"]
    # "Get ap ALG ability failed": the device could not answer
    FailReason: Literal["Get ap ALG ability failed"]


# Reply of GET_AP_ALG_ABILITY.
GetApAlgAbilityReply = Union[GetApAlgAbilitySuccess, GetApAlgAbilityFailure]


class GetApMultiserviceModeRequest(TypedDict):
    """GET_AP_MULTISERVICE_MODE: Multiservice mode of the access point."""


class GetApMultiserviceModeSuccess(TypedDict):
    """GET_AP_MULTISERVICE_MODE, success: the device answered."""

    # the mode; NONE, SSID or VLAN; at most 8 bytes
    Mode: str
    Status: Literal["0"]


class GetApMultiserviceModeFailure(TypedDict):
    """GET_AP_MULTISERVICE_MODE, failure."""

    Status: Literal["1"]
    # "Get ap multisservice mode failed": the device could not answer
    FailReason: Literal["Get ap multisservice mode failed"]


# Reply of GET_AP_MULTISERVICE_MODE.
GetApMultiserviceModeReply = Union[GetApMultiserviceModeSuccess, GetApMultiserviceModeFailure]


class GetAttachDeviceRightRequest(TypedDict):
    """GET_ATTACH_DEVICE_RIGHT: Which of the attached devices may reach the Internet."""


class GetAttachDeviceRightMACList(TypedDict):
    """MACList: the devices."""

    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; at most 64 bytes
    MAC: str
    # host name; e.g. "workshop-pc"; at most 64 bytes
    name: str
    # whether the device may reach the Internet; ALLOW or DENY; at most 64 bytes
    InternetAccessRight: str


class GetAttachDeviceRightSuccess(TypedDict):
    """GET_ATTACH_DEVICE_RIGHT, success: in any case; a device whose right could not be determined is left out."""

    # the devices
    MACList: list[GetAttachDeviceRightMACList]
    Status: Literal["0"]


# Reply of GET_ATTACH_DEVICE_RIGHT.
GetAttachDeviceRightReply = Union[GetAttachDeviceRightSuccess]


class GetChildRouterAdBaseInfoRequest(TypedDict):
    """GET_CHILD_ROUTER_AD_BASE_INFO: The devices of a child router."""

    # identifier of the child router
    DeviceID: Any


class GetChildRouterAdBaseInfoSuccess(TypedDict):
    """GET_CHILD_ROUTER_AD_BASE_INFO, success: the child router replied."""

    # unchanged from the request
    DeviceID: NotRequired[Any]
    # the devices, as the child router describes them
    BaseInfo: Any
    Status: Literal["0"]


class GetChildRouterAdBaseInfoFailure(TypedDict):
    """GET_CHILD_ROUTER_AD_BASE_INFO, failure."""

    # unchanged from the request
    DeviceID: NotRequired[Any]
    Status: Literal["1"]
    # "DeviceID Not Found": the identifier is missing; "Get json_str fail": memory ran out before the command was sent; "sendto tslink or retinfo fail": the command could not be sent, or there was no reply; "Get child_adbaseinfo fail": the child router's reply is not JSON; "BaseInfo is NULL": the child router's reply does not contain the devices; "cJSON_Print fail": memory ran out for the devices
    FailReason: Literal["DeviceID Not Found", "Get json_str fail", "sendto tslink or retinfo fail", "Get child_adbaseinfo fail", "BaseInfo is NULL", "cJSON_Print fail"]


# Reply of GET_CHILD_ROUTER_AD_BASE_INFO.
GetChildRouterAdBaseInfoReply = Union[GetChildRouterAdBaseInfoSuccess, GetChildRouterAdBaseInfoFailure]


class GetGatewayNetFaultRequest(TypedDict):
    """GET_GATEWAY_NET_FAULT: Reason for a network fault, if there is one."""


class GetGatewayNetFaultSuccess(TypedDict):
    """GET_GATEWAY_NET_FAULT, success: the device answered."""

    # reason for the fault; "NULL" if there is none; LINK_DOWN, NO_ADDRESS, AUTH_FAILED or DNS_FAILED; at most 16 bytes
    NetFaultReason: str
    Status: Literal["0"]


class GetGatewayNetFaultFailure(TypedDict):
    """GET_GATEWAY_NET_FAULT, failure: the device could not answer."""

    Status: Literal["1"]


# Reply of GET_GATEWAY_NET_FAULT.
GetGatewayNetFaultReply = Union[GetGatewayNetFaultSuccess, GetGatewayNetFaultFailure]


class GetGreennetDeviceListRequest(TypedDict):
    """GET_GREENNET_DEVICE_LIST: The devices under parental control."""


class GetGreennetDeviceListDeviceList(TypedDict):
    """DeviceList: the devices, 64 at most."""

    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "72:9B:E0:46:D8:15"; at most 64 bytes
    Mac: str
    # name given by the user; e.g. "Jonas"; at most 64 bytes
    Name: str
    # whether notices about the device are wanted; 1 for on, 0 for off; at most 8 bytes
    NotifyEnable: str
    # whether its protect periods are in force; 1 for on, 0 for off; at most 8 bytes
    ProtectEnable: str


class GetGreennetDeviceListSuccess(TypedDict):
    """GET_GREENNET_DEVICE_LIST, success: the device reported how many there are."""

    Status: Literal["0"]
    # the devices, 64 at most
    DeviceList: list[GetGreennetDeviceListDeviceList]


class GetGreennetDeviceListFailure(TypedDict):
    """GET_GREENNET_DEVICE_LIST, failure."""

    Status: Literal["1"]
    # "get host num failed": the device could not report how many there are
    FailReason: Literal["get host num failed"]


# Reply of GET_GREENNET_DEVICE_LIST.
GetGreennetDeviceListReply = Union[GetGreennetDeviceListSuccess, GetGreennetDeviceListFailure]


class GetGreennetEnableRequest(TypedDict):
    """GET_GREENNET_ENABLE: Whether parental control is on."""


class GetGreennetEnableSuccess(TypedDict):
    """GET_GREENNET_ENABLE, success: the device answered."""

    # whether parental control is on; 1 for on, 0 for off; at most 256 bytes
    Enable: str
    Status: Literal["0"]


class GetGreennetEnableFailure(TypedDict):
    """GET_GREENNET_ENABLE, failure."""

    Status: Literal["1"]
    # "get green net enable failed": the device could not answer
    FailReason: Literal["get green net enable failed"]


# Reply of GET_GREENNET_ENABLE.
GetGreennetEnableReply = Union[GetGreennetEnableSuccess, GetGreennetEnableFailure]


class GetGreennetProtectPeriodListRequest(TypedDict):
    """GET_GREENNET_PROTECT_PERIOD_LIST: The periods in which a device is restricted."""

    # MAC address of the device; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; truncated to 63 bytes
    Mac: str


class GetGreennetProtectPeriodListSleep(TypedDict):
    """Sleep: the periods."""

    # start of the period; HH:MM, from 00:00 to 23:59, e.g. "22:00"; at most 8 bytes
    StartTime: str
    # end of the period; HH:MM, from 00:00 to 23:59, e.g. "07:30"; at most 8 bytes
    EndTime: str
    # whether the period is in force; 1 for on, 0 for off; at most 8 bytes
    Enable: str
    # days on which it begins; 1 (Monday) to 7, without separators, e.g. "12345"; at most 8 bytes
    DaysOfWeek: str


class GetGreennetProtectPeriodListSuccess(TypedDict):
    """GET_GREENNET_PROTECT_PERIOD_LIST, success: the device reported every period."""

    # unchanged from the request
    Mac: NotRequired[str]
    Status: Literal["0"]
    # the periods
    Sleep: list[GetGreennetProtectPeriodListSleep]


class GetGreennetProtectPeriodListFailure(TypedDict):
    """GET_GREENNET_PROTECT_PERIOD_LIST, failure."""

    # unchanged from the request
    Mac: NotRequired[str]
    Status: Literal["1"]
    # "json node: mac not found": Mac is missing or not a string; "xml mac index not found": the device is not under parental control; "get protect period list failed": a period could not be read
    FailReason: Literal["json node: mac not found", "xml mac index not found", "get protect period list failed"]


# Reply of GET_GREENNET_PROTECT_PERIOD_LIST.
GetGreennetProtectPeriodListReply = Union[GetGreennetProtectPeriodListSuccess, GetGreennetProtectPeriodListFailure]


class GetHgBaseInfoRequest(TypedDict):
    """GET_HG_BASE_INFO: Identity and state of the gateway."""


class GetHgBaseInfoSuccess(TypedDict):
    """GET_HG_BASE_INFO, success: the device answered at least one of the three calls; what it could not report is empty."""

    Status: Literal["0"]
    # name given by the user; e.g. "Lindenhof"; at most 64 bytes
    Name: str
    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes
    Mac: str
    # state of the Internet connection; 1 for up, 0 for down; at most 16 bytes
    NetStatus: str
    # current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 32 bytes
    UpSpeed: str
    # current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 32 bytes
    DownSpeed: str
    # state of the first radio; a device may also write "up"; 1 for on, 0 for off; at most 32 bytes
    WiFiStatus1: str
    # state of the second radio, as WiFiStatus1; 1 for on, 0 for off; at most 32 bytes
    WiFiStatus2: str
    # network name of the first radio; e.g. "Lindenhof"; at most 32 bytes
    SSID1: str
    # network name of the second radio; e.g. "Lindenhof-5G"; at most 32 bytes
    SSID2: str
    # IP address of the gateway; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes
    ip: str
    # hardware version; e.g. "V1.2"; at most 32 bytes
    HWVersion: str
    # firmware version; e.g. "V2.4.1"; at most 32 bytes
    FWVersion: str
    # date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes
    FWDATA: str
    # time since the system started; whole number, in s, e.g. "86400"; at most 32 bytes
    UpTime: str
    # type of device; e.g. "HGU-AX3000"; at most 32 bytes
    DeviceType: str
    # code of the operator's area; e.g. "NORTH-07"; at most 32 bytes
    AreaCode: str
    # MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:21"; at most 32 bytes
    Wlan0Mac: str
    # MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:25"; at most 32 bytes
    Wlan1Mac: str
    # type of WAN connection; DHCP, PPPoE or Static; at most 8 bytes
    WanLinkMode: str
    # CPU load; whole number, in %, e.g. "26"; at most 8 bytes
    Cpu: str
    # memory load; whole number, in %, e.g. "47"; at most 8 bytes
    Memory: str
    # address of the gateway; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes
    LanIp: str
    # address of the default gateway; IPv4 address, e.g. "100.72.0.1"; at most 32 bytes
    WanGateWay: str
    # DNS servers; IP addresses, separated by commas, e.g. "100.64.0.53,100.64.1.53"; at most 65 bytes
    Dns: str
    # always this string of two characters, not an array
    MeshInfo: Literal["[]"]


class GetHgBaseInfoFailure(TypedDict):
    """GET_HG_BASE_INFO, failure."""

    Status: Literal["1"]
    # "get base info error!": the device answered none of the three calls
    FailReason: Literal["get base info error!"]


# Reply of GET_HG_BASE_INFO.
GetHgBaseInfoReply = Union[GetHgBaseInfoSuccess, GetHgBaseInfoFailure]


class GetHgDhcpInfoRequest(TypedDict):
    """GET_HG_DHCP_INFO: The DHCP server of the LAN side."""


class GetHgDhcpInfoSuccess(TypedDict):
    """GET_HG_DHCP_INFO, success: the device answered."""

    Status: Literal["0"]
    # whether the server is on; 1 for on, 0 for off; at most 16 bytes
    Enable: str
    # address of the server; IPv4 address, e.g. "192.168.1.1"; at most 64 bytes
    IPAddress: str
    # subnet mask; IPv4 mask, e.g. "255.255.255.0"; at most 64 bytes
    SubNetMask: str
    # gateway address that the server hands out; IPv4 address, e.g. "192.168.1.1"; at most 64 bytes
    GateWay: str


class GetHgDhcpInfoFailure(TypedDict):
    """GET_HG_DHCP_INFO, failure."""

    Status: Literal["1"]
    # "get hg dhcp failed": the device could not answer
    FailReason: Literal["get hg dhcp failed"]


# Reply of GET_HG_DHCP_INFO.
GetHgDhcpInfoReply = Union[GetHgDhcpInfoSuccess, GetHgDhcpInfoFailure]


class GetHgGuestSsidRequest(TypedDict):
    """GET_HG_GUEST_SSID: The guest network of one band."""

    # the band; 2.4GHz or 5GHz; truncated to 15 bytes
    Band: str


class GetHgGuestSsidSuccess(TypedDict):
    """GET_HG_GUEST_SSID, success: the device answered."""

    # unchanged from the request
    Band: NotRequired[str]
    # whether the guest network is on; 1 for on, 0 for off; at most 16 bytes
    Enable: str
    # permissions of guests; FULL, or GUEST for Internet access only; at most 8 bytes
    PermissionProperty: str
    # network name; e.g. "Lindenhof-Guest"; at most 64 bytes
    SSID: str
    # days for which the guest network stays open; whole number, -1 for no limit, in days, e.g. "2"; at most 8 bytes
    ContinueTime: str
    # whether the band's radio is on; 1 for on, 0 for off; at most 8 bytes
    RadioEnable: str
    # hours for which the guest network stays open, in addition to the days; whole number, -1 for no limit, in h, e.g. "3"; at most 8 bytes
    HourTime: str
    # seconds for which the guest network stays open; whole number, -1 for no limit, in s, e.g. "183600"; at most 16 bytes
    EndTimestamp: str
    # seconds until the guest network closes; whole number, -1 for no limit, in s, e.g. "183600"; at most 16 bytes
    Remainingtime: str
    # password of the guest network; e.g. "willkommen24"; at most 64 bytes; secret
    PWD: str
    # type of encryption; OPEN, WPA2, WPA3 or WPA2/3; at most 16 bytes
    ENCRYPT: str
    # newest wireless standard in use; 11a, 11b, 11g, 11n, 11ac or 11ax, -1 if not given; at most 8 bytes
    Mode: str
    # whether the name is broadcast; 1 for on, 0 for off, -1 if not given; at most 8 bytes
    AdvertisementEnable: str
    Status: Literal["0"]


class GetHgGuestSsidFailure(TypedDict):
    """GET_HG_GUEST_SSID, failure."""

    # unchanged from the request
    Band: NotRequired[str]
    Status: Literal["1"]
    # "json :get band failed": Band is missing or not a string; "get guest wifi info failed": the device could not answer
    FailReason: Literal["json :get band failed", "get guest wifi info failed"]


# Reply of GET_HG_GUEST_SSID.
GetHgGuestSsidReply = Union[GetHgGuestSsidSuccess, GetHgGuestSsidFailure]


class GetHgLogRequest(TypedDict):
    """GET_HG_LOG: Uploads the router's log to a URL."""

    # URL that the log is sent to; e.g. "https://logs.example.net/upload"
    UploadUrl: str
    # which log, by the name that the platform gives it; e.g. "syslog"
    LogType: str


class GetHgLogSuccess(TypedDict):
    """GET_HG_LOG, success: the device library was asked to send the log."""

    # unchanged from the request
    LogType: NotRequired[str]
    Status: Literal["0"]


class GetHgLogFailure(TypedDict):
    """GET_HG_LOG, failure."""

    # unchanged from the request
    UploadUrl: NotRequired[str]
    # unchanged from the request
    LogType: NotRequired[str]
    Status: Literal["1"]
    # "json node: get dev mac error": the router's MAC address is not known; "json node: UploadUrl not found": UploadUrl is missing or not a string; "json node: LogType not found": LogType is missing or not a string
    FailReason: Literal["json node: get dev mac error", "json node: UploadUrl not found", "json node: LogType not found"]


# Reply of GET_HG_LOG.
GetHgLogReply = Union[GetHgLogSuccess, GetHgLogFailure]


class GetHgPppoeInfoRequest(TypedDict):
    """GET_HG_PPPOE_INFO: The PPPoE account."""


class GetHgPppoeInfoSuccess(TypedDict):
    """GET_HG_PPPOE_INFO, success: PPPoE is on."""

    Status: Literal["0"]
    # PPPoE is on
    Enable: Literal["1"]
    # name of the account; e.g. "k4471902@fibre.example"; at most 64 bytes
    Account: str
    # password of the PPPoE account; e.g. "Lh7-pq2-Vw9"; at most 64 bytes; secret
    Password: str


class GetHgPppoeInfoSuccess2(TypedDict):
    """GET_HG_PPPOE_INFO, success: PPPoE is off; account and password stay on the gateway."""

    Status: Literal["0"]
    # PPPoE is off
    Enable: Literal["0"]


class GetHgPppoeInfoFailure(TypedDict):
    """GET_HG_PPPOE_INFO, failure."""

    Status: Literal["1"]
    # "get hg pppoe info failed": the device could not answer
    FailReason: Literal["get hg pppoe info failed"]


# Reply of GET_HG_PPPOE_INFO.
GetHgPppoeInfoReply = Union[GetHgPppoeInfoSuccess, GetHgPppoeInfoSuccess2, GetHgPppoeInfoFailure]


class GetHgRebootInfoRequest(TypedDict):
    """GET_HG_REBOOT_INFO: Reboot schedule."""


class GetHgRebootInfoSuccess(TypedDict):
    """GET_HG_REBOOT_INFO, success: the device answered."""

    Status: Literal["0"]
    # whether the schedule is on; 1 for on, 0 for off; at most 8 bytes
    GatewayRebootEnable: str
    # time of day; HH:MM, from 00:00 to 23:59, e.g. "04:30"; at most 8 bytes
    Time: str
    # days of the week; 1 (Monday) to 7, separated by commas, e.g. "1,4"; at most 16 bytes
    DaysOfWeek: str


class GetHgRebootInfoFailure(TypedDict):
    """GET_HG_REBOOT_INFO, failure."""

    Status: Literal["1"]
    # "get reboot info failed": the device could not answer
    FailReason: Literal["get reboot info failed"]


# Reply of GET_HG_REBOOT_INFO.
GetHgRebootInfoReply = Union[GetHgRebootInfoSuccess, GetHgRebootInfoFailure]


class GetHgSleepInfoRequest(TypedDict):
    """GET_HG_SLEEP_INFO: The sleep times of the gateway, its Wi-Fi and its LEDs."""


class GetHgSleepInfoSuccess(TypedDict):
    """GET_HG_SLEEP_INFO, success: the device answered."""

    Status: Literal["0"]
    # whether the gateway sleeps; 1 for on, 0 for off; at most 8 bytes
    GatewaySleepEnable: str
    # whether the Wi-Fi sleeps; 1 for on, 0 for off; at most 8 bytes
    WiFiSleepEnable: str
    # whether the LEDs sleep; 1 for on, 0 for off; at most 8 bytes
    LedSleepEnable: str
    # start of the sleep; HH:MM, from 00:00 to 23:59, e.g. "22:30"; at most 8 bytes
    StartTime: str
    # end of the sleep; HH:MM, from 00:00 to 23:59, e.g. "06:30"; at most 8 bytes
    EndTime: str


class GetHgSleepInfoFailure(TypedDict):
    """GET_HG_SLEEP_INFO, failure."""

    Status: Literal["1"]
    # "get hg sleep info failed": the device could not answer
    FailReason: Literal["get hg sleep info failed"]


# Reply of GET_HG_SLEEP_INFO.
GetHgSleepInfoReply = Union[GetHgSleepInfoSuccess, GetHgSleepInfoFailure]


class GetHgUplinkStatusRequest(TypedDict):
    """GET_HG_UPLINK_STATUS: State of the uplink."""


class GetHgUplinkStatusSuccess(TypedDict):
    """GET_HG_UPLINK_STATUS, success: the device answered."""

    Status: Literal["0"]
    # state of the uplink; 1 for up, 0 for down; at most 8 bytes
    UpLinkStatus: str


class GetHgUplinkStatusFailure(TypedDict):
    """GET_HG_UPLINK_STATUS, failure."""

    Status: Literal["1"]
    # "get uplink status failed": the device could not answer
    FailReason: Literal["get uplink status failed"]


# Reply of GET_HG_UPLINK_STATUS.
GetHgUplinkStatusReply = Union[GetHgUplinkStatusSuccess, GetHgUplinkStatusFailure]


class GetLanIpInfoRequest(TypedDict):
    """GET_LAN_IP_INFO: LAN IP settings."""


class GetLanIpInfoSuccess(TypedDict):
    """GET_LAN_IP_INFO, success: the device answered."""

    Status: Literal["0"]
    # address of the gateway; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes
    GatewayLanIP: str
    # subnet mask; IPv4 mask, e.g. "255.255.255.0"; at most 32 bytes
    SubnetMask: str
    # first address of the DHCP pool; IPv4 address, e.g. "192.168.1.100"; at most 32 bytes
    StartIp: str
    # last address of the DHCP pool; IPv4 address, e.g. "192.168.1.249"; at most 32 bytes
    EndIp: str


class GetLanIpInfoFailure(TypedDict):
    """GET_LAN_IP_INFO, failure."""

    Status: Literal["1"]
    # "get lan ip info failed": the device could not answer
    FailReason: Literal["get lan ip info failed"]


# Reply of GET_LAN_IP_INFO.
GetLanIpInfoReply = Union[GetLanIpInfoSuccess, GetLanIpInfoFailure]


class GetLedStatusRequest(TypedDict):
    """GET_LED_STATUS: LED settings."""


class GetLedStatusSuccess(TypedDict):
    """GET_LED_STATUS, success: the device answered."""

    Status: Literal["0"]
    # whether the LEDs are on; 1 for on, 0 for off; at most 2 bytes
    LedSwitch: str
    # colour of the LEDs; WHITE, BLUE, GREEN, ORANGE or RED; at most 8 bytes
    LedCoLor: str
    # brightness of the LEDs; whole number, in %, e.g. "60"; at most 10 bytes
    LedLight: str


class GetLedStatusFailure(TypedDict):
    """GET_LED_STATUS, failure."""

    Status: Literal["1"]
    # "get led info failed": the device could not answer
    FailReason: Literal["get led info failed"]


# Reply of GET_LED_STATUS.
GetLedStatusReply = Union[GetLedStatusSuccess, GetLedStatusFailure]


class GetMeshStatusRequest(TypedDict):
    """GET_MESH_STATUS: Mesh settings."""


class GetMeshStatusSuccess(TypedDict):
    """GET_MESH_STATUS, success: the device answered."""

    # whether the mesh is on; 1 for on, 0 for off; at most 8 bytes
    MeshEnable: str
    # mode of the mesh; 1 or 2; at most 8 bytes
    MeshMode: str
    Status: Literal["0"]


class GetMeshStatusFailure(TypedDict):
    """GET_MESH_STATUS, failure."""

    Status: Literal["1"]
    # "Get mesh status failed": the device could not answer
    FailReason: Literal["Get mesh status failed"]


# Reply of GET_MESH_STATUS.
GetMeshStatusReply = Union[GetMeshStatusSuccess, GetMeshStatusFailure]


class GetPortBindingRequest(TypedDict):
    """GET_PORT_BINDING: The ports that are bound to each WAN connection."""


class GetPortBindingPortStatList(TypedDict):
    """port_stat_list: the connections, 8 at most."""

    # number of the connection; whole number from 1, e.g. "1"; at most 16 bytes
    Index: str
    # name of the connection; e.g. "Internet"; at most 32 bytes
    WANName: str
    # the ports that are bound to it; LAN1, SSID1 and so on, separated by commas, e.g. "LAN3,LAN4"; at most 288 bytes
    BoundPorts: str


class GetPortBindingSuccess(TypedDict):
    """GET_PORT_BINDING, success: the device answered."""

    # the connections, 8 at most
    port_stat_list: list[GetPortBindingPortStatList]
    Status: Literal["0"]


class GetPortBindingFailure(TypedDict):
    """GET_PORT_BINDING, failure."""

    Status: Literal["1"]
    # "get port binding info error": the device could not answer; "cJSON_CreateArray error": memory ran out
    FailReason: Literal["get port binding info error", "cJSON_CreateArray error"]


# Reply of GET_PORT_BINDING.
GetPortBindingReply = Union[GetPortBindingSuccess, GetPortBindingFailure]


class GetPortStatisticsRequest(TypedDict):
    """GET_PORT_STATISTICS: Traffic counters of the ports."""


class GetPortStatisticsPortStatList(TypedDict):
    """port_stat_list: the ports."""

    # name of the port; WAN, LAN1 and so on, or the band of a radio, e.g. "LAN1"; at most 16 bytes
    Port: str
    # bytes sent; whole number, in bytes, e.g. "104857600"; at most 32 bytes
    tx_traffic: str
    # bytes received; whole number, in bytes, e.g. "104857600"; at most 32 bytes
    rx_traffic: str
    # packets sent; whole number, in packets, e.g. "81920"; at most 32 bytes
    tx_packets: str
    # packets received; whole number, in packets, e.g. "81920"; at most 32 bytes
    rx_packets: str


class GetPortStatisticsSuccess(TypedDict):
    """GET_PORT_STATISTICS, success: the device answered."""

    # the ports
    port_stat_list: list[GetPortStatisticsPortStatList]
    Status: Literal["0"]


class GetPortStatisticsFailure(TypedDict):
    """GET_PORT_STATISTICS, failure."""

    Status: Literal["1"]
    # "get port statistics info error": the device could not answer; "cJSON_CreateArray error": memory ran out
    FailReason: Literal["get port statistics info error", "cJSON_CreateArray error"]


# Reply of GET_PORT_STATISTICS.
GetPortStatisticsReply = Union[GetPortStatisticsSuccess, GetPortStatisticsFailure]


class GetQosInfoRequest(TypedDict):
    """GET_QOS_INFO: Quality of service: its switch, applications and rules."""


class GetQosInfoAppInfoList(TypedDict):
    """app_info_list: the applications, 4 at most."""

    # identifier of the application; whole number from 1, e.g. "1"; at most 8 bytes
    Id: str
    # name of the application; e.g. "Voice"; at most 32 bytes
    Name: str
    # priority of the application; 1 (highest) to 8, e.g. "1"; at most 8 bytes
    PriorityLevel: str


class GetQosInfoClassificationInfoListTypeList(TypedDict):
    """type_list: types of traffic that the rule matches, 3 at most."""

    # field of the packets that is compared; e.g. "DSCP"; at most 16 bytes
    Type: str
    # lowest value that matches; e.g. "46"; at most 64 bytes
    Min: str
    # highest value that matches; e.g. "46"; at most 64 bytes
    Max: str


class GetQosInfoClassificationInfoList(TypedDict):
    """classification_info_list: the rules, 6 at most."""

    # identifier of the rule; whole number from 1, e.g. "1"; at most 8 bytes
    Id: str
    # name of the rule; e.g. "Voice of the office"; at most 32 bytes
    Name: str
    # priority of the rule; 1 (highest) to 8, e.g. "1"; at most 8 bytes
    PriorityLevel: str
    # types of traffic that the rule matches, 3 at most
    type_list: list[GetQosInfoClassificationInfoListTypeList]


class GetQosInfoSuccess(TypedDict):
    """GET_QOS_INFO, success: the device answered."""

    # whether quality of service is on; 1 for on, 0 for off; at most 8 bytes
    Enable: str
    # the applications, 4 at most
    app_info_list: list[GetQosInfoAppInfoList]
    # the rules, 6 at most
    classification_info_list: list[GetQosInfoClassificationInfoList]
    Status: Literal["0"]


class GetQosInfoFailure(TypedDict):
    """GET_QOS_INFO, failure: memory ran out for the applications."""

    # whether quality of service is on; 1 for on, 0 for off; at most 8 bytes
    Enable: str
    Status: Literal["1"]
    FailReason: Literal["cJSON_CreateArray error"]


class GetQosInfoFailure2(TypedDict):
    """GET_QOS_INFO, failure: memory ran out for the rules."""

    # whether quality of service is on; 1 for on, 0 for off; at most 8 bytes
    Enable: str
    # the applications, 4 at most
    app_info_list: list[GetQosInfoAppInfoList]
    Status: Literal["1"]
    FailReason: Literal["cJSON_CreateArray error"]


class GetQosInfoFailure3(TypedDict):
    """GET_QOS_INFO, failure: memory ran out for a rule, which is left out; the reply has two statuses."""

    # whether quality of service is on; 1 for on, 0 for off; at most 8 bytes
    Enable: str
    # the applications, 4 at most
    app_info_list: list[GetQosInfoAppInfoList]
    FailReason: Literal["cJSON_CreateArray error"]
    # the rules, 6 at most
    classification_info_list: list[GetQosInfoClassificationInfoList]
    Status: Literal["0"]


class GetQosInfoFailure4(TypedDict):
    """GET_QOS_INFO, failure."""

    Status: Literal["1"]
    # "get uplink qos info error": the device could not answer; "cJSON_CreateArray error": memory ran out
    FailReason: Literal["get uplink qos info error", "cJSON_CreateArray error"]


# Reply of GET_QOS_INFO.
GetQosInfoReply = Union[GetQosInfoSuccess, GetQosInfoFailure, GetQosInfoFailure2, GetQosInfoFailure3, GetQosInfoFailure4]


class GetScanChannelCountRequest(TypedDict):
    """GET_SCAN_CHANNEL_COUNT: Number of access points on each channel."""


class GetScanChannelCountList24g(TypedDict):
    """List24g: at most 64 channels at 2.4 GHz."""

    # number of the channel; at most 6 bytes
    Name: str
    # number of access points found on it
    Count: float


class GetScanChannelCountList58g(TypedDict):
    """List58g: at most 64 channels at 5 GHz."""

    # number of the channel; at most 6 bytes
    Name: str
    # number of access points found on it
    Count: float


class GetScanChannelCountSuccess(TypedDict):
    """GET_SCAN_CHANNEL_COUNT, success: the device answered."""

    # at most 64 channels at 2.4 GHz
    List24g: list[GetScanChannelCountList24g]
    # at most 64 channels at 5 GHz
    List58g: list[GetScanChannelCountList58g]
    Status: Literal["0"]


class GetScanChannelCountFailure(TypedDict):
    """GET_SCAN_CHANNEL_COUNT, failure."""

    Status: Literal["1"]
    # "Get Wifi channel error": the device could not answer
    FailReason: Literal["Get Wifi channel error"]


# Reply of GET_SCAN_CHANNEL_COUNT.
GetScanChannelCountReply = Union[GetScanChannelCountSuccess, GetScanChannelCountFailure]


class GetScanChannelPowerRequest(TypedDict):
    """GET_SCAN_CHANNEL_POWER: Signal strength of each neighbouring network."""


class GetScanChannelPowerSSIDList(TypedDict):
    """SSIDList: the networks."""

    # network name; e.g. "FamilieBrandt"; at most 64 bytes
    name: str
    # signal strength; whole number below 0, in dBm, e.g. "-54"; at most 64 bytes
    dbpower: str


class GetScanChannelPowerSuccess(TypedDict):
    """GET_SCAN_CHANNEL_POWER, success: the scan succeeded."""

    # the networks
    SSIDList: list[GetScanChannelPowerSSIDList]
    Status: Literal["0"]


class GetScanChannelPowerFailure(TypedDict):
    """GET_SCAN_CHANNEL_POWER, failure."""

    Status: Literal["1"]
    # "get channel rssi failed": the scan failed
    FailReason: Literal["get channel rssi failed"]


# Reply of GET_SCAN_CHANNEL_POWER.
GetScanChannelPowerReply = Union[GetScanChannelPowerSuccess, GetScanChannelPowerFailure]


class GetScanWifiSsidlistRequest(TypedDict):
    """GET_SCAN_WIFI_SSIDLIST: Neighbouring networks."""


class GetScanWifiSsidlistSSIDList(TypedDict):
    """SSIDList: at most twenty networks."""

    # network name; e.g. "FamilieBrandt"; at most 64 bytes
    SSID: str
    # signal strength; whole number below 0, in dBm, e.g. "-54"; at most 64 bytes
    PowerLevel: str
    # type of encryption; OPEN, WPA2, WPA3 or WPA2/3; at most 64 bytes
    ENCRYPT: str
    # cipher of WPA; NONE or AES; at most 64 bytes
    WPACypher: str
    # cipher of WPA2; NONE or AES; at most 64 bytes
    WPA2Cypher: str
    # frequency band; 2.4GHz or 5GHz; at most 64 bytes
    Band: str
    # whether the router is connected to it; 1 for yes, 0 for no; at most 64 bytes
    Connected: str


class GetScanWifiSsidlistSuccess(TypedDict):
    """GET_SCAN_WIFI_SSIDLIST, success: the scan succeeded."""

    # at most twenty networks
    SSIDList: list[GetScanWifiSsidlistSSIDList]
    Status: Literal["0"]


class GetScanWifiSsidlistFailure(TypedDict):
    """GET_SCAN_WIFI_SSIDLIST, failure."""

    Status: Literal["1"]
    # "get scan rssi failed": the scan failed
    FailReason: Literal["get scan rssi failed"]


# Reply of GET_SCAN_WIFI_SSIDLIST.
GetScanWifiSsidlistReply = Union[GetScanWifiSsidlistSuccess, GetScanWifiSsidlistFailure]


class GetSnInfoRequest(TypedDict):
    """GET_SN_INFO: Serial number and type of the router."""


class GetSnInfoSuccess(TypedDict):
    """GET_SN_INFO, success: the device answered."""

    Status: Literal["0"]
    # MAC address that serves as the serial number; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; at most 64 bytes
    MAC: str
    # state of the mesh link layer; 1 for up, 0 for down; at most 8 bytes
    tslinkstatus: str
    # type of device; e.g. "HGU-AX3000"; at most 256 bytes
    DeviceType: str


class GetSnInfoFailure(TypedDict):
    """GET_SN_INFO, failure."""

    Status: Literal["1"]
    # "get sn failed": the device could not answer
    FailReason: Literal["get sn failed"]


# Reply of GET_SN_INFO.
GetSnInfoReply = Union[GetSnInfoSuccess, GetSnInfoFailure]


class GetStaRssiRequest(TypedDict):
    """GET_STA_RSSI: Signal strength of a station, given by its IP address."""

    # IP address of the station; IPv4 address, e.g. "192.168.1.1"
    IP: str


class GetStaRssiSuccess(TypedDict):
    """GET_STA_RSSI, success: the device answered."""

    # unchanged from the request
    IP: NotRequired[str]
    # signal strength of the station; whole number below 0, in dBm, e.g. -54
    Dbm: float
    Status: Literal["0"]


class GetStaRssiFailure(TypedDict):
    """GET_STA_RSSI, failure."""

    # unchanged from the request
    IP: NotRequired[str]
    Status: Literal["1"]
    # "rssi get ip is NULL": the key is missing or not a string; "get scan rssi failed": the device could not answer
    FailReason: Literal["rssi get ip is NULL", "get scan rssi failed"]


# Reply of GET_STA_RSSI.
GetStaRssiReply = Union[GetStaRssiSuccess, GetStaRssiFailure]


class GetTsconfStatusRequest(TypedDict):
    """GET_TSCONF_STATUS: State of the manufacturer's configuration service."""


class GetTsconfStatusSuccess(TypedDict):
    """GET_TSCONF_STATUS, success: the device answered."""

    # state of the service; RUNNING, WAITING or STOPPED; at most 8 bytes
    TsconfStatus: str
    Status: Literal["0"]


class GetTsconfStatusFailure(TypedDict):
    """GET_TSCONF_STATUS, failure."""

    Status: Literal["1"]
    # "Get tsconf status failed": the device could not answer
    FailReason: Literal["Get tsconf status failed"]


# Reply of GET_TSCONF_STATUS.
GetTsconfStatusReply = Union[GetTsconfStatusSuccess, GetTsconfStatusFailure]


class GetTslinkTopologyInfoRequest(TypedDict):
    """GET_TSLINK_TOPOLOGY_INFO: The whole mesh: the main router with its devices, and each child router with its stations."""


class GetTslinkTopologyInfoMainRouterMeshInfo(TypedDict):
    """MeshInfo: links to the child routers; only on the model QX2040B, in an area whose code contains ARVEN, KOLM or SEDRANO."""

    # MAC address of the other router; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 32 bytes
    nexthopMAC: str
    # signal strength; whole number below 0, in dBm, e.g. "-54"; at most 16 bytes
    dbm: str


class GetTslinkTopologyInfoMainRouterChildInfo(TypedDict):
    """ChildInfo: child routers attached to the main router; only on other models than QX2040B, in a mesh of type 2."""

    # MAC address of the child router; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 32 bytes
    childMac: str


class GetTslinkTopologyInfoMainRouterMainBaseInfo(TypedDict):
    """MainBaseInfo: devices attached to the main router, 32 at most."""

    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; at most 32 bytes
    Mac: str
    # unique identifier; MAC address without colons, e.g. "A4BB6D31075E"; at most 32 bytes
    UID: str
    # "3" for a computer, empty when the type is not known
    DevType: Literal["3", "0", ""]
    # "unknow" if the manufacturer is known
    DevFactory: Literal["unknow", ""]
    # "3" if the type is known
    DevModle: Literal["3", ""]
    # host name; e.g. "workshop-pc"; at most 32 bytes
    Name: str
    # name given by the user, otherwise the host name; e.g. "Anna"; at most 32 bytes
    ByName: str
    # "3" if the operating system is known
    OS: Literal["3", ""]
    # version of the operating system; e.g. "6.1"; at most 32 bytes
    Version: str
    # whether its link is up; empty if the device does not know whether it is online; 1 for up, 0 for down; at most 8 bytes
    NetStatus: str
    # "0" if it is known
    NetMonopoly: Literal["0", ""]
    # how it is attached; cable, 2.4GHz or 5GHz; at most 32 bytes
    AccessType: str
    # whether it may reach the Internet; 1 for on, 0 for off; at most 8 bytes
    AccessEnable: str
    # seconds since it was attached; whole number, in s, e.g. "3600"; at most 11 bytes
    AccessTime: str
    # current upstream rate; whole number, in kbit/s, e.g. "101"; at most 32 bytes
    UpSpeed: str
    # current downstream rate; whole number, in kbit/s, e.g. "2629"; at most 32 bytes
    DownSpeed: str
    # IP address; IPv4 address, e.g. "192.168.1.101"; at most 64 bytes
    ip: str
    # whether the speed limits are on; 1 for on, 0 for off; at most 8 bytes
    SpeedLimit: str
    # download limit; whole number, 0 for none, in kbit/s, e.g. "20000"; at most 16 bytes
    DownLimit: str
    # upload limit; whole number, 0 for none, in kbit/s, e.g. "0"; at most 16 bytes
    UpLimit: str
    # whether it is under parental control; 1 for on, 0 for off; at most 8 bytes
    GreennetProtectEnable: str
    # signal strength; whole number below 0, in dBm, e.g. "-54"; at most 8 bytes
    dbm: str
    # whether its IP address is bound to its MAC address; 1 for on, 0 for off, -1 if not given; at most 8 bytes
    StaticDhcpEnable: str


class GetTslinkTopologyInfoMainRouter(TypedDict):
    """MainRouter: the router that replies."""

    # name given by the user; e.g. "Lindenhof"; at most 64 bytes
    Name: str
    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes
    Mac: str
    # state of the Internet connection; 1 for up, 0 for down; at most 16 bytes
    NetStatus: str
    # current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 32 bytes
    UpSpeed: str
    # current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 32 bytes
    DownSpeed: str
    # "1" when the first radio is on
    WiFiStatus1: Literal["1", "0"]
    # "1" when the second radio is on
    WiFiStatus2: Literal["1", "0"]
    # network name of the first radio; e.g. "Lindenhof"; at most 32 bytes
    SSID1: str
    # network name of the second radio; e.g. "Lindenhof-5G"; at most 32 bytes
    SSID2: str
    # IP address; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes
    ip: str
    # hardware version; e.g. "V1.2"; at most 32 bytes
    HWVersion: str
    # firmware version; e.g. "V2.4.1"; at most 32 bytes
    FWVersion: str
    # date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes
    FWDATA: str
    # time since the system started; whole number, in s, e.g. "86400"; at most 32 bytes
    UpTime: str
    # time since the WAN connection came up; whole number, in s, e.g. "86400"; at most 32 bytes
    WanUptime: str
    # type of device; e.g. "HGU-AX3000"; at most 32 bytes
    DeviceType: str
    # code of the operator's area; just ARVEN on the model QX2040B if the code contains that; e.g. "NORTH-07"; at most 32 bytes
    AreaCode: str
    # whether the first configuration is done; 1 for yes, 0 for no; at most 128 bytes
    ConfiguerStatus: str
    # type of WAN connection; DHCP, PPPoE or Static; at most 8 bytes
    WanConMode: str
    # type of addressing on the WAN side; Dynamic or Static; at most 16 bytes
    AddressType: str
    # brightness of the LEDs; whole number, in %, e.g. "60"; at most 8 bytes
    LedLight: str
    # whether the LEDs are on; 1 for on, 0 for off; at most 8 bytes
    LedSwitch: str
    # CPU load; whole number, in %, e.g. "26"; at most 8 bytes
    cpuusage: str
    # memory load; whole number, in %, e.g. "47"; at most 8 bytes
    ramusage: str
    # whether the QoS accelerator is on; 1 for on, 0 for off; at most 16 bytes
    QosAcceleratorEnable: str
    # whether the game accelerator is on; 1 for on, 0 for off; at most 16 bytes
    QQGameAcceleratorEnable: str
    # whether the firewall is on; 1 for on, 0 for off; at most 16 bytes
    FireWallEnable: str
    # always this text
    NetQuality: Literal["0"]
    # MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:21"; at most 32 bytes
    Wlan0Mac: str
    # MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:25"; at most 32 bytes
    Wlan1Mac: str
    # links to the child routers; only on the model QX2040B, in an area whose code contains ARVEN, KOLM or SEDRANO
    MeshInfo: NotRequired[list[GetTslinkTopologyInfoMainRouterMeshInfo]]
    # child routers attached to the main router; only on other models than QX2040B, in a mesh of type 2
    ChildInfo: NotRequired[list[GetTslinkTopologyInfoMainRouterChildInfo]]
    # devices attached to the main router, 32 at most
    MainBaseInfo: list[GetTslinkTopologyInfoMainRouterMainBaseInfo]


class GetTslinkTopologyInfoChildRouterMeshInfo(TypedDict):
    """MeshInfo: links to other routers; only on the model QX2040B."""

    # MAC address of the other router; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 32 bytes
    nexthopMAC: str
    # signal strength; whole number below 0, in dBm, e.g. "-54"; at most 16 bytes
    dbm: str
    # network interface; name of the network interface, e.g. "wlan1"; at most 24 bytes
    interface: str


class GetTslinkTopologyInfoChildRouterChildBaseInfo(TypedDict):
    """ChildBaseInfo: stations of the child router, without those that the device could not report."""

    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; at most 32 bytes
    Mac: str
    # unique identifier; MAC address without colons, e.g. "A4BB6D31075E"; at most 32 bytes
    UID: str
    # type of device; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; at most 32 bytes
    DevType: str
    # manufacturer of the device; e.g. "Eichhorn Computer"; at most 32 bytes
    DevFactory: str
    # always this text
    DevModle: Literal["Tessaline"]
    # host name; e.g. "workshop-pc"; at most 32 bytes
    Name: str
    # name given by the user; the host name if that is empty; e.g. "Anna"; at most 32 bytes
    ByName: str
    # always this text
    OS: Literal["3"]
    # version of the operating system; e.g. "6.1"; at most 32 bytes
    Version: str
    # whether it is online; 1 for up, 0 for down; at most 8 bytes
    NetStatus: str
    # whether it has exclusive bandwidth; 1 for yes, 0 for no; at most 32 bytes
    NetMonopoly: str
    # how it is attached; cable, 2.4GHz or 5GHz; at most 32 bytes
    AccessType: str
    # whether it may reach the Internet; 1 for on, 0 for off; at most 8 bytes
    AccessEnable: str
    # seconds since it was attached; whole number, in s, e.g. "3600"; at most 11 bytes
    AccessTime: str
    # current upstream rate; whole number, in kbit/s, e.g. "101"; at most 32 bytes
    UpSpeed: str
    # current downstream rate; whole number, in kbit/s, e.g. "2629"; at most 32 bytes
    DownSpeed: str
    # IP address; IPv4 address, e.g. "192.168.1.101"; at most 64 bytes
    ip: str
    # whether it is under parental control; 1 for on, 0 for off; at most 8 bytes
    GreennetProtectEnable: str
    # whether the speed limits are on; 1 for on, 0 for off; at most 8 bytes
    SpeedLimit: str
    # download limit; whole number, 0 for none, in kbit/s, e.g. "20000"; at most 16 bytes
    DownLimit: str
    # upload limit; whole number, 0 for none, in kbit/s, e.g. "0"; at most 16 bytes
    UpLimit: str
    # signal strength; whole number below 0, in dBm, e.g. "-54"; at most 8 bytes
    dbm: str
    # whether its IP address is bound to its MAC address; 1 for on, 0 for off, -1 if not given; at most 8 bytes
    StaticDhcpEnable: str


class GetTslinkTopologyInfoChildRouter(TypedDict):
    """ChildRouter: the child routers, without those that the device could not report; missing if there was no memory for the list."""

    # identifier of the device; MAC address without colons, e.g. "3C6AD2228140"; at most 32 bytes
    RouterDeviceID: str
    # name of the child router; e.g. "Attic"; at most 64 bytes
    Name: str
    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 64 bytes
    Mac: str
    # whether it is online; 1 for up, 0 for down; at most 8 bytes
    NetStatus: str
    # how it reaches its parent; cable, 2.4GHz or 5GHz; at most 8 bytes
    ChildRouterAccessType: str
    # current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 16 bytes
    UpSpeed: str
    # current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 16 bytes
    DownSpeed: str
    # IP address; IPv4 address, e.g. "192.168.1.2"; at most 32 bytes
    ip: str
    # firmware version; e.g. "V2.4.1"; at most 32 bytes
    FWVersion: str
    # date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes
    FWDATA: str
    # time since it started; whole number, in s, e.g. "86400"; at most 16 bytes
    UpTime: str
    # type of device; e.g. "MAP-AX1800"; at most 32 bytes
    DeviceType: str
    # code of the operator's area; e.g. "NORTH-07"; at most 16 bytes
    AreaCode: str
    # hardware version; e.g. "V1.2"; at most 16 bytes
    HWVersion: str
    # MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:41"; at most 32 bytes
    Wlan0Mac: str
    # MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:45"; at most 32 bytes
    Wlan1Mac: str
    # signal strength; whole number below 0, in dBm, e.g. "-54"; at most 8 bytes
    dbm: str
    # links to other routers; only on the model QX2040B
    MeshInfo: NotRequired[list[GetTslinkTopologyInfoChildRouterMeshInfo]]
    # stations of the child router, without those that the device could not report
    ChildBaseInfo: list[GetTslinkTopologyInfoChildRouterChildBaseInfo]


class GetTslinkTopologyInfoSuccess(TypedDict):
    """GET_TSLINK_TOPOLOGY_INFO, success: the device reported what there is."""

    # the router that replies
    MainRouter: GetTslinkTopologyInfoMainRouter
    # the child routers, without those that the device could not report; missing if there was no memory for the list
    ChildRouter: NotRequired[list[GetTslinkTopologyInfoChildRouter]]
    Status: Literal["0"]


class GetTslinkTopologyInfoMainRouter2(TypedDict):
    """MainRouter: the router that replies."""

    # name given by the user; e.g. "Lindenhof"; at most 64 bytes
    Name: str
    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes
    Mac: str
    # state of the Internet connection; 1 for up, 0 for down; at most 16 bytes
    NetStatus: str
    # current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 32 bytes
    UpSpeed: str
    # current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 32 bytes
    DownSpeed: str
    # "1" when the first radio is on
    WiFiStatus1: Literal["1", "0"]
    # "1" when the second radio is on
    WiFiStatus2: Literal["1", "0"]
    # network name of the first radio; e.g. "Lindenhof"; at most 32 bytes
    SSID1: str
    # network name of the second radio; e.g. "Lindenhof-5G"; at most 32 bytes
    SSID2: str
    # IP address; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes
    ip: str
    # hardware version; e.g. "V1.2"; at most 32 bytes
    HWVersion: str
    # firmware version; e.g. "V2.4.1"; at most 32 bytes
    FWVersion: str
    # date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes
    FWDATA: str
    # time since the system started; whole number, in s, e.g. "86400"; at most 32 bytes
    UpTime: str
    # time since the WAN connection came up; whole number, in s, e.g. "86400"; at most 32 bytes
    WanUptime: str
    # type of device; e.g. "HGU-AX3000"; at most 32 bytes
    DeviceType: str
    # code of the operator's area; just ARVEN on the model QX2040B if the code contains that; e.g. "NORTH-07"; at most 32 bytes
    AreaCode: str
    # whether the first configuration is done; 1 for yes, 0 for no; at most 128 bytes
    ConfiguerStatus: str
    # type of WAN connection; DHCP, PPPoE or Static; at most 8 bytes
    WanConMode: str
    # type of addressing on the WAN side; Dynamic or Static; at most 16 bytes
    AddressType: str
    # brightness of the LEDs; whole number, in %, e.g. "60"; at most 8 bytes
    LedLight: str
    # whether the LEDs are on; 1 for on, 0 for off; at most 8 bytes
    LedSwitch: str
    # CPU load; whole number, in %, e.g. "26"; at most 8 bytes
    cpuusage: str
    # memory load; whole number, in %, e.g. "47"; at most 8 bytes
    ramusage: str
    # whether the QoS accelerator is on; 1 for on, 0 for off; at most 16 bytes
    QosAcceleratorEnable: str
    # whether the game accelerator is on; 1 for on, 0 for off; at most 16 bytes
    QQGameAcceleratorEnable: str
    # whether the firewall is on; 1 for on, 0 for off; at most 16 bytes
    FireWallEnable: str
    # always this text
    NetQuality: Literal["0"]
    # MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:21"; at most 32 bytes
    Wlan0Mac: str
    # MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:25"; at most 32 bytes
    Wlan1Mac: str
    # links to the child routers; only on the model QX2040B, in an area whose code contains ARVEN, KOLM or SEDRANO
    MeshInfo: NotRequired[list[GetTslinkTopologyInfoMainRouterMeshInfo]]
    # child routers attached to the main router; only on other models than QX2040B, in a mesh of type 2
    ChildInfo: NotRequired[list[GetTslinkTopologyInfoMainRouterChildInfo]]
    FailReason: Literal["get main base info error!"]


class GetTslinkTopologyInfoSuccess2(TypedDict):
    """GET_TSLINK_TOPOLOGY_INFO, success: a device of the main router could not be read."""

    # the router that replies
    MainRouter: GetTslinkTopologyInfoMainRouter2
    # the child routers, without those that the device could not report; missing if there was no memory for the list
    ChildRouter: NotRequired[list[GetTslinkTopologyInfoChildRouter]]
    Status: Literal["0"]


class GetTslinkTopologyInfoMainRouter3(TypedDict):
    """MainRouter: the router that replies."""

    # name given by the user; e.g. "Lindenhof"; at most 64 bytes
    Name: str
    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes
    Mac: str
    # state of the Internet connection; 1 for up, 0 for down; at most 16 bytes
    NetStatus: str
    # current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 32 bytes
    UpSpeed: str
    # current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 32 bytes
    DownSpeed: str
    # "1" when the first radio is on
    WiFiStatus1: Literal["1", "0"]
    # "1" when the second radio is on
    WiFiStatus2: Literal["1", "0"]
    # network name of the first radio; e.g. "Lindenhof"; at most 32 bytes
    SSID1: str
    # network name of the second radio; e.g. "Lindenhof-5G"; at most 32 bytes
    SSID2: str
    # IP address; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes
    ip: str
    # hardware version; e.g. "V1.2"; at most 32 bytes
    HWVersion: str
    # firmware version; e.g. "V2.4.1"; at most 32 bytes
    FWVersion: str
    # date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes
    FWDATA: str
    # time since the system started; whole number, in s, e.g. "86400"; at most 32 bytes
    UpTime: str
    # time since the WAN connection came up; whole number, in s, e.g. "86400"; at most 32 bytes
    WanUptime: str
    # type of device; e.g. "HGU-AX3000"; at most 32 bytes
    DeviceType: str
    # code of the operator's area; just ARVEN on the model QX2040B if the code contains that; e.g. "NORTH-07"; at most 32 bytes
    AreaCode: str
    # whether the first configuration is done; 1 for yes, 0 for no; at most 128 bytes
    ConfiguerStatus: str
    # type of WAN connection; DHCP, PPPoE or Static; at most 8 bytes
    WanConMode: str
    # type of addressing on the WAN side; Dynamic or Static; at most 16 bytes
    AddressType: str
    # brightness of the LEDs; whole number, in %, e.g. "60"; at most 8 bytes
    LedLight: str
    # whether the LEDs are on; 1 for on, 0 for off; at most 8 bytes
    LedSwitch: str
    # CPU load; whole number, in %, e.g. "26"; at most 8 bytes
    cpuusage: str
    # memory load; whole number, in %, e.g. "47"; at most 8 bytes
    ramusage: str
    # whether the QoS accelerator is on; 1 for on, 0 for off; at most 16 bytes
    QosAcceleratorEnable: str
    # whether the game accelerator is on; 1 for on, 0 for off; at most 16 bytes
    QQGameAcceleratorEnable: str
    # whether the firewall is on; 1 for on, 0 for off; at most 16 bytes
    FireWallEnable: str
    # always this text
    NetQuality: Literal["0"]
    # MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:21"; at most 32 bytes
    Wlan0Mac: str
    # MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:25"; at most 32 bytes
    Wlan1Mac: str
    # links to the child routers; only on the model QX2040B, in an area whose code contains ARVEN, KOLM or SEDRANO
    MeshInfo: NotRequired[list[GetTslinkTopologyInfoMainRouterMeshInfo]]
    # child routers attached to the main router; only on other models than QX2040B, in a mesh of type 2
    ChildInfo: NotRequired[list[GetTslinkTopologyInfoMainRouterChildInfo]]
    FailReason: Literal["cJSON create array failed!"]


class GetTslinkTopologyInfoSuccess3(TypedDict):
    """GET_TSLINK_TOPOLOGY_INFO, success: there is no memory for the list of the main router's devices."""

    # the router that replies
    MainRouter: GetTslinkTopologyInfoMainRouter3
    # the child routers, without those that the device could not report; missing if there was no memory for the list
    ChildRouter: NotRequired[list[GetTslinkTopologyInfoChildRouter]]
    Status: Literal["0"]


class GetTslinkTopologyInfoMainRouter4(TypedDict):
    """MainRouter: the router that replies."""

    # name given by the user; e.g. "Lindenhof"; at most 64 bytes
    Name: str
    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes
    Mac: str
    # state of the Internet connection; 1 for up, 0 for down; at most 16 bytes
    NetStatus: str
    # current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 32 bytes
    UpSpeed: str
    # current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 32 bytes
    DownSpeed: str
    # "1" when the first radio is on
    WiFiStatus1: Literal["1", "0"]
    # "1" when the second radio is on
    WiFiStatus2: Literal["1", "0"]
    # network name of the first radio; e.g. "Lindenhof"; at most 32 bytes
    SSID1: str
    # network name of the second radio; e.g. "Lindenhof-5G"; at most 32 bytes
    SSID2: str
    # IP address; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes
    ip: str
    # hardware version; e.g. "V1.2"; at most 32 bytes
    HWVersion: str
    # firmware version; e.g. "V2.4.1"; at most 32 bytes
    FWVersion: str
    # date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes
    FWDATA: str
    # time since the system started; whole number, in s, e.g. "86400"; at most 32 bytes
    UpTime: str
    # time since the WAN connection came up; whole number, in s, e.g. "86400"; at most 32 bytes
    WanUptime: str
    # type of device; e.g. "HGU-AX3000"; at most 32 bytes
    DeviceType: str
    # code of the operator's area; just ARVEN on the model QX2040B if the code contains that; e.g. "NORTH-07"; at most 32 bytes
    AreaCode: str
    # whether the first configuration is done; 1 for yes, 0 for no; at most 128 bytes
    ConfiguerStatus: str
    # type of WAN connection; DHCP, PPPoE or Static; at most 8 bytes
    WanConMode: str
    # type of addressing on the WAN side; Dynamic or Static; at most 16 bytes
    AddressType: str
    # brightness of the LEDs; whole number, in %, e.g. "60"; at most 8 bytes
    LedLight: str
    # whether the LEDs are on; 1 for on, 0 for off; at most 8 bytes
    LedSwitch: str
    # CPU load; whole number, in %, e.g. "26"; at most 8 bytes
    cpuusage: str
    # memory load; whole number, in %, e.g. "47"; at most 8 bytes
    ramusage: str
    # whether the QoS accelerator is on; 1 for on, 0 for off; at most 16 bytes
    QosAcceleratorEnable: str
    # whether the game accelerator is on; 1 for on, 0 for off; at most 16 bytes
    QQGameAcceleratorEnable: str
    # whether the firewall is on; 1 for on, 0 for off; at most 16 bytes
    FireWallEnable: str
    # always this text
    NetQuality: Literal["0"]
    # MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:21"; at most 32 bytes
    Wlan0Mac: str
    # MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:25"; at most 32 bytes
    Wlan1Mac: str


class GetTslinkTopologyInfoSuccess4(TypedDict):
    """GET_TSLINK_TOPOLOGY_INFO, success: there is no memory for the main router's place in the mesh."""

    # the router that replies
    MainRouter: GetTslinkTopologyInfoMainRouter4
    # the child routers, without those that the device could not report; missing if there was no memory for the list
    ChildRouter: NotRequired[list[GetTslinkTopologyInfoChildRouter]]
    Status: Literal["0"]


class GetTslinkTopologyInfoMainRouter5(TypedDict):
    """MainRouter: an element."""

    FailReason: Literal["get base info error!"]


class GetTslinkTopologyInfoSuccess5(TypedDict):
    """GET_TSLINK_TOPOLOGY_INFO, success: the device could not report about the main router."""

    MainRouter: GetTslinkTopologyInfoMainRouter5
    # the child routers, without those that the device could not report; missing if there was no memory for the list
    ChildRouter: NotRequired[list[GetTslinkTopologyInfoChildRouter]]
    Status: Literal["0"]


class GetTslinkTopologyInfoFailure(TypedDict):
    """GET_TSLINK_TOPOLOGY_INFO, failure."""

    Status: Literal["1"]
    # "Create mainrouter json error": there is no memory for the main router
    FailReason: Literal["Create mainrouter json error"]


# Reply of GET_TSLINK_TOPOLOGY_INFO.
GetTslinkTopologyInfoReply = Union[GetTslinkTopologyInfoSuccess, GetTslinkTopologyInfoSuccess2, GetTslinkTopologyInfoSuccess3, GetTslinkTopologyInfoSuccess4, GetTslinkTopologyInfoSuccess5, GetTslinkTopologyInfoFailure]


class GetUpdateScheduleRequest(TypedDict):
    """GET_UPDATE_SCHEDULE: The time of day at which the router may update itself."""


class GetUpdateScheduleSuccess(TypedDict):
    """GET_UPDATE_SCHEDULE, success: the device answered."""

    # whether the router may update itself; 1 for on, 0 for off; at most 2 bytes
    Enable: str
    # hour of the start; 0 to 23, without leading zeros, e.g. "2"; at most 8 bytes
    StartHour: str
    # minute of the start; 0 to 59, without leading zeros, e.g. "30"; at most 8 bytes
    StartMinute: str
    # hour of the end; 0 to 23, without leading zeros, e.g. "4"; at most 8 bytes
    EndHour: str
    # minute of the end; 0 to 59, without leading zeros, e.g. "0"; at most 8 bytes
    EndMinute: str
    Status: Literal["0"]


class GetUpdateScheduleFailure(TypedDict):
    """GET_UPDATE_SCHEDULE, failure."""

    Status: Literal["1"]
    # "Get update schedule failed": the device could not answer
    FailReason: Literal["Get update schedule failed"]


# Reply of GET_UPDATE_SCHEDULE.
GetUpdateScheduleReply = Union[GetUpdateScheduleSuccess, GetUpdateScheduleFailure]


class GetUpdateStatusRequest(TypedDict):
    """GET_UPDATE_STATUS: Firmware versions of all routers of the mesh."""


class GetUpdateStatusMainRouter(TypedDict):
    """MainRouter: the router that replies, as for HG_GET_UPDATE_STATUS."""

    Status: Literal["0"]
    # always this text
    up_status: Literal["0"]
    # name of the device or of the image; e.g. "Lindenhof"; at most 64 bytes
    name: str
    # hardware version; e.g. "V1.2"; at most 64 bytes
    HWVersion: str
    # firmware version; e.g. "V2.4.1"; at most 64 bytes
    FWVersion: str
    # date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 64 bytes
    FWDATA: str
    # type of device; e.g. "HGU-AX3000"; at most 64 bytes
    DeviceType: str
    # code of the operator's area; e.g. "NORTH-07"; at most 40 bytes
    AreaCode: str


class GetUpdateStatusChildRouter(TypedDict):
    """ChildRouter: the child routers."""

    # always this text
    up_status: Literal["0"]
    # identifier of the device; MAC address without colons, e.g. "3C6AD2228140"; at most 32 bytes
    DeviceID: str
    # name of the child router; e.g. "Attic"; at most 64 bytes
    name: str
    # hardware version; e.g. "V1.2"; at most 16 bytes
    HWVersion: str
    # firmware version; e.g. "V2.4.1"; at most 32 bytes
    FWVersion: str
    # date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes
    FWDATA: str
    # type of device; e.g. "MAP-AX1800"; at most 32 bytes
    DeviceType: str
    # code of the operator's area; e.g. "NORTH-07"; at most 16 bytes
    AreaCode: str


class GetUpdateStatusSuccess(TypedDict):
    """GET_UPDATE_STATUS, success: the device reported about the main router; a child router that it could not report is left out."""

    # the router that replies, as for HG_GET_UPDATE_STATUS
    MainRouter: GetUpdateStatusMainRouter
    # the child routers
    ChildRouter: list[GetUpdateStatusChildRouter]
    Status: Literal["0"]


class GetUpdateStatusFailure(TypedDict):
    """GET_UPDATE_STATUS, failure."""

    Status: Literal["1"]
    # "Get mainrouter update status failed": the device could not report about the main router
    FailReason: Literal["Get mainrouter update status failed"]


# Reply of GET_UPDATE_STATUS.
GetUpdateStatusReply = Union[GetUpdateStatusSuccess, GetUpdateStatusFailure]


class GetUpnpStateRequest(TypedDict):
    """GET_UPNP_STATE: Whether UPnP is on."""


class GetUpnpStateSuccess(TypedDict):
    """GET_UPNP_STATE, success: the device answered."""

    # whether UPnP is on; 1 for on, 0 for off; at most 8 bytes
    Enable: str
    Status: Literal["0"]


class GetUpnpStateFailure(TypedDict):
    """GET_UPNP_STATE, failure."""

    Status: Literal["1"]
    # "Get UPNP enable failed": the device could not answer
    FailReason: Literal["Get UPNP enable failed"]


# Reply of GET_UPNP_STATE.
GetUpnpStateReply = Union[GetUpnpStateSuccess, GetUpnpStateFailure]


class GetWebLoginInfoRequest(TypedDict):
    """GET_WEB_LOGIN_INFO: Password, type and address of the web login."""


class GetWebLoginInfoSuccess(TypedDict):
    """GET_WEB_LOGIN_INFO, success: the device answered."""

    Status: Literal["0"]
    # password of the web login; e.g. "zaun-und-tor-58"; at most 128 bytes; secret
    Password: str
    # type of web login; 0 for the account of the administrator, 1 for a separate password; at most 8 bytes
    WebLoginType: str
    # address of the web login; IPv4 address, e.g. "192.168.1.1"; at most 64 bytes
    WebLoginIp: str


class GetWebLoginInfoFailure(TypedDict):
    """GET_WEB_LOGIN_INFO, failure."""

    Status: Literal["1"]
    # "get web login info failed": the device could not answer
    FailReason: Literal["get web login info failed"]


# Reply of GET_WEB_LOGIN_INFO.
GetWebLoginInfoReply = Union[GetWebLoginInfoSuccess, GetWebLoginInfoFailure]


class GetWifiChannelListRequest(TypedDict):
    """GET_WIFI_CHANNEL_LIST: Channels that the radios may use."""


class GetWifiChannelListList24g(TypedDict):
    """List24g: at most 64 channels at 2.4 GHz."""

    # number of the channel; at most 6 bytes
    Name: str


class GetWifiChannelListList58g(TypedDict):
    """List58g: at most 64 channels at 5 GHz."""

    # number of the channel; at most 6 bytes
    Name: str


class GetWifiChannelListSuccess(TypedDict):
    """GET_WIFI_CHANNEL_LIST, success: the device answered."""

    # at most 64 channels at 2.4 GHz
    List24g: list[GetWifiChannelListList24g]
    # at most 64 channels at 5 GHz
    List58g: list[GetWifiChannelListList58g]
    Status: Literal["0"]


class GetWifiChannelListFailure(TypedDict):
    """GET_WIFI_CHANNEL_LIST, failure."""

    Status: Literal["1"]
    # "Get Wifi channel error": the device could not answer
    FailReason: Literal["Get Wifi channel error"]


# Reply of GET_WIFI_CHANNEL_LIST.
GetWifiChannelListReply = Union[GetWifiChannelListSuccess, GetWifiChannelListFailure]


class GetWifiInfoRequest(TypedDict):
    """GET_WIFI_INFO: Settings of one SSID."""

    # number of the SSID, from 1; the device decides which exist; truncated to 63 bytes
    SSIDIndex: str


class GetWifiInfoSuccess(TypedDict):
    """GET_WIFI_INFO, success: the device answered."""

    Status: Literal["0"]
    # network name; e.g. "Lindenhof"; at most 64 bytes
    SSID: str
    # password of the network; e.g. "apfelbaum-1962"; at most 64 bytes; secret
    PWD: str
    # type of encryption; OPEN, WPA2, WPA3 or WPA2/3; at most 8 bytes
    ENCRYPT: str
    # transmit power; whole number, in %, e.g. "100"; at most 64 bytes
    PowerLevel: str
    # channel that is set; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes
    Channel: str
    # channel in use; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes
    UsedChannel: str
    # whether the network is on; 1 for on, 0 for off; at most 8 bytes
    Enable: str
    # bandwidth of the channel; whole number, in MHz, e.g. "20"; at most 16 bytes
    Bandwidth: str
    # whether the name is broadcast; 1 for on, 0 for off, -1 if not given; at most 8 bytes
    AdvertisementEnable: str
    # newest wireless standard in use; 11a, 11b, 11g, 11n, 11ac or 11ax, -1 if not given; at most 8 bytes
    Mode: str
    # whether beamforming is on; 1 for on, 0 for off, -1 if not given; at most 8 bytes
    Beamforming: str


class GetWifiInfoFailure(TypedDict):
    """GET_WIFI_INFO, failure."""

    # unchanged from the request
    SSIDIndex: NotRequired[str]
    Status: Literal["1"]
    # "no index": there is no index or it is not a string; "index string null": the index is empty; "index is 0, (should be 1 to 8)": the index is 0 or not a number; "get ssid info failed": the device could not answer
    FailReason: Literal["no index", "index string null", "index is 0, (should be 1 to 8)", "get ssid info failed"]


# Reply of GET_WIFI_INFO.
GetWifiInfoReply = Union[GetWifiInfoSuccess, GetWifiInfoFailure]


class GetWifiListInfoRequest(TypedDict):
    """GET_WIFI_LIST_INFO: Settings of all SSIDs, and the two switches that all radios share."""


class GetWifiListInfoWIFIList(TypedDict):
    """WIFIList: the SSIDs."""

    # number of the SSID; at most 11 bytes
    SSIDIndex: str
    # network name; e.g. "Lindenhof"; at most 64 bytes
    SSID: str
    # password of the network; e.g. "apfelbaum-1962"; at most 64 bytes; secret
    PWD: str
    # type of encryption; OPEN, WPA2, WPA3 or WPA2/3; at most 8 bytes
    ENCRYPT: str
    # transmit power; whole number, in %, e.g. "100"; at most 64 bytes
    PowerLevel: str
    # channel that is set; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes
    Channel: str
    # whether the network is on; 1 for on, 0 for off; at most 8 bytes
    Enable: str
    # permissions of clients; FULL, or GUEST for Internet access only; at most 8 bytes
    PermissionProperty: str
    # band of the SSID; a device may use any number but 0 for 5 GHz; 0 for 2.4 GHz, 1 for 5 GHz, e.g. "0"; at most 16 bytes
    Type: str
    # bandwidth of the channel; whole number, in MHz, e.g. "20"; at most 16 bytes
    Bandwidth: str
    # whether the name is broadcast; 1 for on, 0 for off, -1 if not given; at most 8 bytes
    AdvertisementEnable: str
    # newest wireless standard in use; 11a, 11b, 11g, 11n, 11ac or 11ax, -1 if not given; at most 8 bytes
    Mode: str
    # whether beamforming is on; 1 for on, 0 for off, -1 if not given; at most 8 bytes
    Beamforming: str


class GetWifiListInfoSuccess(TypedDict):
    """GET_WIFI_LIST_INFO, success: the device reported the number of SSIDs and the state of station control; an SSID that it could not report is left out."""

    # the SSIDs
    WIFIList: list[GetWifiListInfoWIFIList]
    # "1" when stations are steered between the radios
    StaCtrl: Literal["1", "0"]
    # whether fast roaming is on, if it is known; 1 for on, 0 for off; at most 8 bytes
    FastRoaming: NotRequired[str]
    Status: Literal["0"]


class GetWifiListInfoFailure(TypedDict):
    """GET_WIFI_LIST_INFO, failure."""

    Status: Literal["1"]
    # "get ssid_num error": the device could not report the number of SSIDs; "get stactrl error": the device could not report the state of station control
    FailReason: Literal["get ssid_num error", "get stactrl error"]


# Reply of GET_WIFI_LIST_INFO.
GetWifiListInfoReply = Union[GetWifiListInfoSuccess, GetWifiListInfoFailure]


class GetWifiSleepScheduleRequest(TypedDict):
    """GET_WIFI_SLEEP_SCHEDULE: Periods in which the Wi-Fi sleeps."""


class GetWifiSleepScheduleWIFISleepList(TypedDict):
    """WIFISleepList: at most three periods."""

    # whether the period is on; 1 for on, 0 for off; at most 16 bytes
    Enable: str
    # start of the sleep; HH:MM, from 00:00 to 23:59, e.g. "23:30"; at most 32 bytes
    StartTime: str
    # end of the sleep; HH:MM, from 00:00 to 23:59, e.g. "05:45"; at most 32 bytes
    EndTime: str
    # days of the week; 1 (Monday) to 7, separated by commas, e.g. "1,2,3,4,7"; at most 32 bytes
    DaysOfWeek: str


class GetWifiSleepScheduleSuccess(TypedDict):
    """GET_WIFI_SLEEP_SCHEDULE, success: always; a period that the device could not report is left out."""

    # at most three periods
    WIFISleepList: list[GetWifiSleepScheduleWIFISleepList]
    Status: Literal["0"]


# Reply of GET_WIFI_SLEEP_SCHEDULE.
GetWifiSleepScheduleReply = Union[GetWifiSleepScheduleSuccess]


class GetWpsEnableRequest(TypedDict):
    """GET_WPS_ENABLE: Whether WPS is on."""


class GetWpsEnableSuccess(TypedDict):
    """GET_WPS_ENABLE, success: the device answered."""

    # whether WPS is on: 1 for on, 0 for off, or another number of the device; at most 7 bytes
    Enable: str
    Status: Literal["0"]


class GetWpsEnableFailure(TypedDict):
    """GET_WPS_ENABLE, failure."""

    Status: Literal["1"]
    # "Get wps enable failed": the device could not answer
    FailReason: Literal["Get wps enable failed"]


# Reply of GET_WPS_ENABLE.
GetWpsEnableReply = Union[GetWpsEnableSuccess, GetWpsEnableFailure]


class HgGetUpdateStatusRequest(TypedDict):
    """HG_GET_UPDATE_STATUS: Version of the running firmware."""


class HgGetUpdateStatusSuccess(TypedDict):
    """HG_GET_UPDATE_STATUS, success: the device answered."""

    Status: Literal["0"]
    # always this text
    up_status: Literal["0"]
    # name of the device or of the image; e.g. "Lindenhof"; at most 64 bytes
    name: str
    # hardware version; e.g. "V1.2"; at most 64 bytes
    HWVersion: str
    # firmware version; e.g. "V2.4.1"; at most 64 bytes
    FWVersion: str
    # date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 64 bytes
    FWDATA: str
    # type of device; e.g. "HGU-AX3000"; at most 64 bytes
    DeviceType: str
    # code of the operator's area; e.g. "NORTH-07"; at most 40 bytes
    AreaCode: str


class HgGetUpdateStatusFailure(TypedDict):
    """HG_GET_UPDATE_STATUS, failure."""

    Status: Literal["1"]
    # "get update status info failed": the device could not answer
    FailReason: Literal["get update status info failed"]


# Reply of HG_GET_UPDATE_STATUS.
HgGetUpdateStatusReply = Union[HgGetUpdateStatusSuccess, HgGetUpdateStatusFailure]


class HgImageDownloadRequest(TypedDict):
    """HG_IMAGE_DOWNLOAD: Downloads an image of the firmware, to be flashed later."""

    # URL of the image, of any length; e.g. "https://updates.example/hgu.img"
    UpdateUrl: str


class HgImageDownloadSuccess(TypedDict):
    """HG_IMAGE_DOWNLOAD, success: the image was downloaded."""

    Status: Literal["0"]


class HgImageDownloadFailure(TypedDict):
    """HG_IMAGE_DOWNLOAD, failure."""

    # unchanged from the request
    UpdateUrl: NotRequired[str]
    Status: Literal["1"]
    # "json_url node null": the URL is missing or not a string; "get update status error": the device does not report the running version; "update status maybe downloading or upgrading": another image is being downloaded or flashed; "hg download image failed": the image could not be downloaded
    FailReason: Literal["json_url node null", "get update status error", "update status maybe downloading or upgrading", "hg download image failed"]


# Reply of HG_IMAGE_DOWNLOAD.
HgImageDownloadReply = Union[HgImageDownloadSuccess, HgImageDownloadFailure]


class HgImageUpdateRequest(TypedDict):
    """HG_IMAGE_UPDATE: Flashes the downloaded image."""

    # "1" to flash now; anything else does nothing
    Update: str


class HgImageUpdateSuccess(TypedDict):
    """HG_IMAGE_UPDATE, success: the image was flashed, or flashing was not requested."""

    # unchanged from the request
    Update: NotRequired[str]
    Status: Literal["0"]


class HgImageUpdateFailure(TypedDict):
    """HG_IMAGE_UPDATE, failure."""

    # unchanged from the request
    Update: NotRequired[str]
    Status: Literal["1"]
    # "json node null": Update is missing or not a string; "gghelper_update_image failed": the device could not flash the image
    FailReason: Literal["json node null", "gghelper_update_image failed"]


# Reply of HG_IMAGE_UPDATE.
HgImageUpdateReply = Union[HgImageUpdateSuccess, HgImageUpdateFailure]


class HgInspectionRequest(TypedDict):
    """HG_INSPECTION: Inspects the whole gateway."""


class HgInspectionSuccess(TypedDict):
    """HG_INSPECTION, success: the device answered."""

    Status: Literal["0"]
    # number of Wi-Fi clients; whole number, e.g. "8"; at most 8 bytes
    WiFiDevNum: str
    # security level of the encryption; LOW, MEDIUM or HIGH; at most 8 bytes
    Security: str
    # channel in use; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes
    Channel: str
    # congestion of the channel; whole number, in %, e.g. "33"; at most 8 bytes
    Congestion: str
    # firmware version; e.g. "V2.4.1"; at most 1088 bytes
    FWVersion: str
    # state of the WAN connection; Connected or Disconnected; at most 64 bytes
    WanStatus: str
    # state of the Internet connection; 1 for up, 0 for down; at most 392 bytes
    NetStatus: str
    # IP address of the WAN side; IPv4 address, e.g. "100.72.18.203"; at most 64 bytes
    WanIP: str
    # network mask of the WAN side; IPv4 mask, e.g. "255.255.255.255"; at most 256 bytes
    NetMask: str
    # transmit power; whole number, in %, e.g. "100"; at most 8 bytes
    PowerLevel: str
    # whether the firewall is on; 1 for on, 0 for off; at most 4 bytes
    FireWallEnable: str


class HgInspectionFailure(TypedDict):
    """HG_INSPECTION, failure."""

    Status: Literal["1"]
    # "inspect hg failed": the device could not answer
    FailReason: Literal["inspect hg failed"]


# Reply of HG_INSPECTION.
HgInspectionReply = Union[HgInspectionSuccess, HgInspectionFailure]


class HgLocalRecoveryRequest(TypedDict):
    """HG_LOCAL_RECOVERY: Restores the factory settings."""


class HgLocalRecoverySuccess(TypedDict):
    """HG_LOCAL_RECOVERY, success: the device accepted the change."""

    Status: Literal["0"]


class HgLocalRecoveryFailure(TypedDict):
    """HG_LOCAL_RECOVERY, failure."""

    Status: Literal["1"]
    # "recovery failed": the device refused the change
    FailReason: Literal["recovery failed"]


# Reply of HG_LOCAL_RECOVERY.
HgLocalRecoveryReply = Union[HgLocalRecoverySuccess, HgLocalRecoveryFailure]


class HgNetconnInspectionRequest(TypedDict):
    """HG_NETCONN_INSPECTION: Checks the DNS and the WAN connection."""


class HgNetconnInspectionSuccess(TypedDict):
    """HG_NETCONN_INSPECTION, success: the device answered."""

    Status: Literal["0"]
    # DNS state; 1 for up, 0 for down; at most 8 bytes
    DnsStatus: str
    # state of the WAN connection; Connected or Disconnected; at most 64 bytes
    WanStatus: str


class HgNetconnInspectionFailure(TypedDict):
    """HG_NETCONN_INSPECTION, failure."""

    Status: Literal["1"]
    # "get net connect inspection failed": the device could not answer
    FailReason: Literal["get net connect inspection failed"]


# Reply of HG_NETCONN_INSPECTION.
HgNetconnInspectionReply = Union[HgNetconnInspectionSuccess, HgNetconnInspectionFailure]


class HgNetconnOptimizationRequest(TypedDict):
    """HG_NETCONN_OPTIMIZATION: Repairs the network connection."""


class HgNetconnOptimizationSuccess(TypedDict):
    """HG_NETCONN_OPTIMIZATION, success: the device answered."""

    Status: Literal["0"]
    # DNS state; 1 for up, 0 for down; at most 8 bytes
    DnsStatus: str


class HgNetconnOptimizationFailure(TypedDict):
    """HG_NETCONN_OPTIMIZATION, failure."""

    Status: Literal["1"]
    # "Net connect optimize failed": the device could not answer
    FailReason: Literal["Net connect optimize failed"]


# Reply of HG_NETCONN_OPTIMIZATION.
HgNetconnOptimizationReply = Union[HgNetconnOptimizationSuccess, HgNetconnOptimizationFailure]


class HgNetqualInspectionRequest(TypedDict):
    """HG_NETQUAL_INSPECTION: Measures the quality of the network connection."""


class HgNetqualInspectionSuccess(TypedDict):
    """HG_NETQUAL_INSPECTION, success: the device answered."""

    Status: Literal["0"]
    # quality of the connection; GOOD, FAIR or POOR, or NONE without a connection; at most 1032 bytes
    NetQuality: str


class HgNetqualInspectionFailure(TypedDict):
    """HG_NETQUAL_INSPECTION, failure."""

    Status: Literal["1"]
    # "Net quality inspection failed": the device could not answer
    FailReason: Literal["Net quality inspection failed"]


# Reply of HG_NETQUAL_INSPECTION.
HgNetqualInspectionReply = Union[HgNetqualInspectionSuccess, HgNetqualInspectionFailure]


class HgNetqualOptimizationRequest(TypedDict):
    """HG_NETQUAL_OPTIMIZATION: Improves the quality of the network connection."""


class HgNetqualOptimizationSuccess(TypedDict):
    """HG_NETQUAL_OPTIMIZATION, success: the device answered."""

    Status: Literal["0"]
    # quality of the connection; GOOD, FAIR or POOR, or NONE without a connection; at most 1032 bytes
    NetQuality: str


class HgNetqualOptimizationFailure(TypedDict):
    """HG_NETQUAL_OPTIMIZATION, failure."""

    Status: Literal["1"]
    # "Net quality optimize failed": the device could not answer
    FailReason: Literal["Net quality optimize failed"]


# Reply of HG_NETQUAL_OPTIMIZATION.
HgNetqualOptimizationReply = Union[HgNetqualOptimizationSuccess, HgNetqualOptimizationFailure]


class HgResourceInspectionRequest(TypedDict):
    """HG_RESOURCE_INSPECTION: Load of the gateway."""


class HgResourceInspectionSuccess(TypedDict):
    """HG_RESOURCE_INSPECTION, success: the device answered."""

    Status: Literal["0"]
    # CPU load; whole number, in %, e.g. "26"; at most 8 bytes
    CpuPercent: str
    # memory load; whole number, in %, e.g. "47"; at most 8 bytes
    MemPercent: str
    # number of attached devices; whole number, e.g. "11"; at most 8 bytes
    LanDevNum: str
    # number of devices under parental control; whole number, e.g. "2"; at most 8 bytes
    ProtectedDevNum: str


class HgResourceInspectionFailure(TypedDict):
    """HG_RESOURCE_INSPECTION, failure."""

    Status: Literal["1"]
    # "get resource inspection info failed": the device could not answer
    FailReason: Literal["get resource inspection info failed"]


# Reply of HG_RESOURCE_INSPECTION.
HgResourceInspectionReply = Union[HgResourceInspectionSuccess, HgResourceInspectionFailure]


class HgResourceOptimizationRequest(TypedDict):
    """HG_RESOURCE_OPTIMIZATION: Frees resources of the gateway."""


class HgResourceOptimizationSuccess(TypedDict):
    """HG_RESOURCE_OPTIMIZATION, success: the device answered."""

    Status: Literal["0"]
    # CPU load; whole number, in %, e.g. "26"; at most 8 bytes
    CpuPercent: str
    # memory load; whole number, in %, e.g. "47"; at most 8 bytes
    MemPercent: str


class HgResourceOptimizationFailure(TypedDict):
    """HG_RESOURCE_OPTIMIZATION, failure."""

    Status: Literal["1"]
    # "get resource inspection info failed": the device could not answer
    FailReason: Literal["get resource inspection info failed"]


# Reply of HG_RESOURCE_OPTIMIZATION.
HgResourceOptimizationReply = Union[HgResourceOptimizationSuccess, HgResourceOptimizationFailure]


class HgSpeedtestRequestRequest(TypedDict):
    """HG_SPEEDTEST_REQUEST: Runs a speed test, and waits for it."""


class HgSpeedtestRequestSuccess(TypedDict):
    """HG_SPEEDTEST_REQUEST, success: the device answered."""

    # download bandwidth; whole number, in kbit/s, e.g. "232020"; at most 8 bytes
    DownBandWidth: str
    # upload bandwidth; whole number, in kbit/s, e.g. "37552"; at most 8 bytes
    UpBandWidth: str
    # round-trip time; whole number, in ms, e.g. "26"; at most 8 bytes
    Delay: str
    Status: Literal["0"]


class HgSpeedtestRequestFailure(TypedDict):
    """HG_SPEEDTEST_REQUEST, failure."""

    Status: Literal["1"]
    # "speedtest request failed": the device could not answer
    FailReason: Literal["speedtest request failed"]


# Reply of HG_SPEEDTEST_REQUEST.
HgSpeedtestRequestReply = Union[HgSpeedtestRequestSuccess, HgSpeedtestRequestFailure]


class HgWifiChannelPowerOptimizationRequest(TypedDict):
    """HG_WIFI_CHANNEL_POWER_OPTIMIZATION: Moves the Wi-Fi to a better channel and transmit power."""

    # channel to leave or to prefer; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; truncated to 7 bytes
    Channel: str
    # wanted transmit power; whole number, in %, e.g. "100"; truncated to 7 bytes
    PowerLevel: str


class HgWifiChannelPowerOptimizationSuccess(TypedDict):
    """HG_WIFI_CHANNEL_POWER_OPTIMIZATION, success: the device accepted the change."""

    Status: Literal["0"]
    # new channel; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes
    Channel: str
    # congestion of the new channel; whole number, in %, e.g. "33"; at most 8 bytes
    Congestion: str
    # new transmit power; whole number, in %, e.g. "100"; at most 8 bytes
    PowerLevel: str


class HgWifiChannelPowerOptimizationFailure(TypedDict):
    """HG_WIFI_CHANNEL_POWER_OPTIMIZATION, failure."""

    # unchanged from the request
    Channel: NotRequired[str]
    # unchanged from the request
    PowerLevel: NotRequired[str]
    Status: Literal["1"]
    # "json node null": a key is missing; "value string null": a key is present but not a string; "wifi channel power optimize failed": the device refused the change
    FailReason: Literal["json node null", "value string null", "wifi channel power optimize failed"]


# Reply of HG_WIFI_CHANNEL_POWER_OPTIMIZATION.
HgWifiChannelPowerOptimizationReply = Union[HgWifiChannelPowerOptimizationSuccess, HgWifiChannelPowerOptimizationFailure]


class HgWifiInspectionRequest(TypedDict):
    """HG_WIFI_INSPECTION: Inspects the Wi-Fi."""


class HgWifiInspectionSuccess(TypedDict):
    """HG_WIFI_INSPECTION, success: the device answered."""

    Status: Literal["0"]
    # number of Wi-Fi clients; whole number, e.g. "8"; at most 8 bytes
    WiFiDevNum: str
    # security level of the encryption; LOW, MEDIUM or HIGH; at most 8 bytes
    Security: str
    # channel in use; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes
    Channel: str
    # congestion of the channel; whole number, in %, e.g. "33"; at most 8 bytes
    Congestion: str


class HgWifiInspectionFailure(TypedDict):
    """HG_WIFI_INSPECTION, failure."""

    Status: Literal["1"]
    # "get wifi inspection info failed": the device could not answer
    FailReason: Literal["get wifi inspection info failed"]


# Reply of HG_WIFI_INSPECTION.
HgWifiInspectionReply = Union[HgWifiInspectionSuccess, HgWifiInspectionFailure]


class HgWifiOptimizationRequest(TypedDict):
    """HG_WIFI_OPTIMIZATION: Moves the Wi-Fi to a better channel."""

    # channel to leave or to prefer; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; truncated to 7 bytes
    Channel: str


class HgWifiOptimizationSuccess(TypedDict):
    """HG_WIFI_OPTIMIZATION, success: the device accepted the change."""

    Status: Literal["0"]
    # new channel; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes
    Channel: str
    # congestion of the new channel; whole number, in %, e.g. "33"; at most 8 bytes
    Congestion: str


class HgWifiOptimizationFailure(TypedDict):
    """HG_WIFI_OPTIMIZATION, failure."""

    # unchanged from the request
    Channel: NotRequired[str]
    Status: Literal["1"]
    # "json node null": a key is missing; "value string null": a key is present but not a string; "SET_HG_SLEEP_INFO_FAIL": the device refused the change
    FailReason: Literal["json node null", "value string null", "SET_HG_SLEEP_INFO_FAIL"]


# Reply of HG_WIFI_OPTIMIZATION.
HgWifiOptimizationReply = Union[HgWifiOptimizationSuccess, HgWifiOptimizationFailure]


class ImageDownloadRequestMainRouter(TypedDict):
    """MainRouter: the main router."""

    # URL of the image, of any length; e.g. "https://updates.example/hgu.img"
    UpdateUrl: str


class ImageDownloadRequest(TypedDict):
    """IMAGE_DOWNLOAD: Updates the firmware of the main router."""

    # the main router
    MainRouter: ImageDownloadRequestMainRouter
    # the child routers; ignored, but removed
    ChildRouter: NotRequired[Any]


class ImageDownloadSuccess(TypedDict):
    """IMAGE_DOWNLOAD, success: the worker was started."""

    Status: Literal["0"]
    updateResult: Literal["0"]


class ImageDownloadFailure(TypedDict):
    """IMAGE_DOWNLOAD, failure: memory ran out."""

    updateResult: Literal["-1"]
    Status: Literal["1"]
    FailReason: Literal["url is null"]


class ImageDownloadFailure2(TypedDict):
    """IMAGE_DOWNLOAD, failure: another image is being downloaded or flashed."""

    updateResult: Literal["-1"]
    Status: Literal["1"]
    FailReason: Literal["dev is dowing image now"]


class ImageDownloadFailure3(TypedDict):
    """IMAGE_DOWNLOAD, failure: the worker could not be started."""

    updateResult: Literal["-1"]
    Status: Literal["1"]
    FailReason: Literal["failed to create down image thread"]


class ImageDownloadFailure4(TypedDict):
    """IMAGE_DOWNLOAD, failure."""

    # unchanged from the request
    MainRouter: NotRequired[Any]
    Status: Literal["1"]
    # "Get mainrouter error": MainRouter is missing; "Get UpdateUrl null": the URL is missing or not a string
    FailReason: Literal["Get mainrouter error", "Get UpdateUrl null"]


# Reply of IMAGE_DOWNLOAD.
ImageDownloadReply = Union[ImageDownloadSuccess, ImageDownloadFailure, ImageDownloadFailure2, ImageDownloadFailure3, ImageDownloadFailure4]


class ImageUpdateRequestMainRouter(TypedDict):
    """MainRouter: the main router."""

    # "1" to flash now; anything else does nothing
    Update: str


class ImageUpdateRequest(TypedDict):
    """IMAGE_UPDATE: Flashes the downloaded image."""

    # the main router
    MainRouter: ImageUpdateRequestMainRouter


class ImageUpdateSuccess(TypedDict):
    """IMAGE_UPDATE, success: the image was flashed, or flashing was not requested."""

    Status: Literal["0"]


class ImageUpdateFailure(TypedDict):
    """IMAGE_UPDATE, failure."""

    # unchanged from the request
    MainRouter: NotRequired[Any]
    Status: Literal["1"]
    # "Get MainRouter error": MainRouter is missing; "Get Update error": Update is missing or not a string; "update status maybe downloding or upgrading": another image is being downloaded or flashed; "update image failed": the device could not flash the image
    FailReason: Literal["Get MainRouter error", "Get Update error", "update status maybe downloding or upgrading", "update image failed"]


# Reply of IMAGE_UPDATE.
ImageUpdateReply = Union[ImageUpdateSuccess, ImageUpdateFailure]


class LinkCheckRequest(TypedDict):
    """LINK_CHECK: Checks addresses, DNS and the channels of both radios, and pings a public DNS server."""


class LinkCheckSuccess(TypedDict):
    """LINK_CHECK, success: in any case; each value except that of the ping is as the device left it."""

    # IP address on the LAN side; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes
    LanIP: str
    # IP address on the WAN side; IPv4 address, e.g. "100.72.18.203"; at most 32 bytes
    WanIp: str
    # DNS state; 1 for up, 0 for down; at most 8 bytes
    DnsCheck: str
    # state of DHCP; always the same as DnsCheck; 1 for up, 0 for down; at most 8 bytes
    DhcpCheck: str
    # address that replied to a ping; empty if there was no reply; IP address, e.g. "192.0.2.1"
    PingCheck: str
    # whether the 2.4 GHz radio is on; 1 for on, 0 for off; at most 8 bytes
    Wifi24Enable: str
    # channel of the 2.4 GHz radio; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; at most 8 bytes
    Wifi24Channel: str
    # quality of the 2.4 GHz channel; GOOD, FAIR or POOR, or NONE without a connection; at most 8 bytes
    Wifi24ChannelCheck: str
    # whether the 5 GHz radio is on; 1 for on, 0 for off; at most 8 bytes
    Wifi58Enable: str
    # channel of the 5 GHz radio; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "44"; at most 8 bytes
    Wifi58Channel: str
    # quality of the 5 GHz channel; GOOD, FAIR or POOR, or NONE without a connection; at most 8 bytes
    Wifi58ChannelCheck: str
    Status: Literal["0"]


# Reply of LINK_CHECK.
LinkCheckReply = Union[LinkCheckSuccess]


class PlateformUpdateImmediateRequestImage(TypedDict):
    """Image: the image."""

    # version of the image; the value is ignored
    Version: Any
    # URL of the image, of any length; refused if it is the text of the running version; e.g. "https://updates.example/hgu.img"
    UpdateUrl: str


class PlateformUpdateImmediateRequest(TypedDict):
    """PLATEFORM_UPDATE_IMMEDIATE: Updates the firmware on behalf of the platform."""

    # the image
    Image: PlateformUpdateImmediateRequestImage


class PlateformUpdateImmediateSuccess(TypedDict):
    """PLATEFORM_UPDATE_IMMEDIATE, success: the worker was started."""

    Status: Literal["0"]
    updateResult: Literal["0"]
    FailReason: Literal["success"]


class PlateformUpdateImmediateFailure(TypedDict):
    """PLATEFORM_UPDATE_IMMEDIATE, failure: the device does not report the running version."""

    Status: Literal["1"]
    FailReason: Literal["handle pack error"]


class PlateformUpdateImmediateFailure2(TypedDict):
    """PLATEFORM_UPDATE_IMMEDIATE, failure: Image is missing."""

    Status: Literal["1"]
    FailReason: Literal["handle pack error"]


class PlateformUpdateImmediateFailure3(TypedDict):
    """PLATEFORM_UPDATE_IMMEDIATE, failure: Version is missing."""

    Status: Literal["1"]
    FailReason: Literal["handle pack error"]


class PlateformUpdateImmediateFailure4(TypedDict):
    """PLATEFORM_UPDATE_IMMEDIATE, failure: the URL is missing or not a string."""

    Status: Literal["1"]
    FailReason: Literal["handle pack error"]


class PlateformUpdateImmediateFailure5(TypedDict):
    """PLATEFORM_UPDATE_IMMEDIATE, failure: the URL is the running version."""

    Status: Literal["1"]
    FailReason: Literal["handle pack error"]


class PlateformUpdateImmediateFailure6(TypedDict):
    """PLATEFORM_UPDATE_IMMEDIATE, failure: memory ran out."""

    updateResult: Literal["-1"]
    Status: Literal["1"]
    FailReason: Literal["url is null"]


class PlateformUpdateImmediateFailure7(TypedDict):
    """PLATEFORM_UPDATE_IMMEDIATE, failure: another image is being downloaded or flashed."""

    updateResult: Literal["-1"]
    Status: Literal["1"]
    FailReason: Literal["dev is dowing image now"]


class PlateformUpdateImmediateFailure8(TypedDict):
    """PLATEFORM_UPDATE_IMMEDIATE, failure: the worker could not be started."""

    updateResult: Literal["-1"]
    Status: Literal["1"]
    FailReason: Literal["failed to create down image thread"]


# Reply of PLATEFORM_UPDATE_IMMEDIATE.
PlateformUpdateImmediateReply = Union[PlateformUpdateImmediateSuccess, PlateformUpdateImmediateFailure, PlateformUpdateImmediateFailure2, PlateformUpdateImmediateFailure3, PlateformUpdateImmediateFailure4, PlateformUpdateImmediateFailure5, PlateformUpdateImmediateFailure6, PlateformUpdateImmediateFailure7, PlateformUpdateImmediateFailure8]


class QuerySystemInfoRequest(TypedDict):
    """QUERY_SYSTEM_INFO: Description and capabilities of the router."""


class QuerySystemInfoSuccess(TypedDict):
    """QUERY_SYSTEM_INFO, success: the device answered."""

    Status: Literal["0"]
    # software version; e.g. "V2.4.1"; at most 64 bytes
    SWVersion: str
    # hardware version; e.g. "V1.2"; at most 64 bytes
    HDVersion: str
    # product class; e.g. "HGU-AX3000"; at most 64 bytes
    ProductCLass: str
    # type of processor; e.g. "MIPS 1004Kc 880MHz"; at most 64 bytes
    CPUClass: str
    # type of device; e.g. "HGU"; at most 64 bytes
    DEVType: str
    # second type of device, for a device with two types; e.g. "ONU"; at most 64 bytes
    DEVType1: str
    # list of capabilities; words, separated by commas, e.g. "wifi,mesh,qos,greennet,wps"; at most 64 bytes
    Capability: str
    # type of smart card, if any; e.g. "SIM"; at most 64 bytes
    Card: str
    # type of uplink; e.g. "LAN"; at most 64 bytes
    UPLink: str
    # number of the smart card; e.g. "89490200001234567890"; at most 64 bytes
    Cardno: str
    # whether IPv6 is supported; 1 for yes, 0 for no; at most 64 bytes
    IPV6: str
    # whether ports can be bound to VLANs; 1 for yes, 0 for no; at most 64 bytes
    VLANbind: str
    # whether the LEDs can be switched; 1 for yes, 0 for no; at most 64 bytes
    LED: str
    # whether there is an NFC tag; 1 for yes, 0 for no; at most 64 bytes
    NFC: str
    # types of VLAN handling that are supported; words, separated by commas, e.g. "tag,transparent"; at most 192 bytes
    VLANCapability: str


class QuerySystemInfoFailure(TypedDict):
    """QUERY_SYSTEM_INFO, failure."""

    Status: Literal["1"]
    # "Get System Info Failed From Gdbus": the device could not answer
    FailReason: Literal["Get System Info Failed From Gdbus"]


# Reply of QUERY_SYSTEM_INFO.
QuerySystemInfoReply = Union[QuerySystemInfoSuccess, QuerySystemInfoFailure]


class QueryTslinkConfigStatusRequest(TypedDict):
    """QUERY_TSLINK_CONFIG_STATUS: State of the first configuration."""


class QueryTslinkConfigStatusSuccess(TypedDict):
    """QUERY_TSLINK_CONFIG_STATUS, success: the device answered."""

    # whether the first configuration is done: "1" for yes
    ConfiguerStatus: Literal["0", "1"]
    Status: Literal["0"]


class QueryTslinkConfigStatusFailure(TypedDict):
    """QUERY_TSLINK_CONFIG_STATUS, failure."""

    Status: Literal["1"]
    # "devapi get tslink config failed": the device could not answer
    FailReason: Literal["devapi get tslink config failed"]


# Reply of QUERY_TSLINK_CONFIG_STATUS.
QueryTslinkConfigStatusReply = Union[QueryTslinkConfigStatusSuccess, QueryTslinkConfigStatusFailure]


class QueryWanInfoRequest(TypedDict):
    """QUERY_WAN_INFO: Settings and state of one WAN connection."""

    # name of the connection, which selects it; e.g. "Internet"; truncated to 63 bytes
    WANName: str


class QueryWanInfoSuccess(TypedDict):
    """QUERY_WAN_INFO, success: the device knows the connection."""

    Status: Literal["0"]
    # number of the connection; whole number from 1, e.g. "1"; at most 64 bytes
    INDEX: str
    # network interface of the connection; name of the network interface, e.g. "ppp0"; at most 64 bytes
    IFNAME: str
    # whether the connection is routed or bridged; IP_Routed or IP_Bridged; at most 64 bytes
    CONNECTIONTYPE: str
    # state of the IPv4 connection; Connected or Disconnected; at most 64 bytes
    CONNECTIONSTATUS: str
    # IP versions of the connection; IPv4 or IPv4/IPv6; at most 64 bytes
    PROTOCOL: str
    # how the connection gets its addresses, in the terms of the platform; DHCP, PPPoE, Static or Bridge; at most 64 bytes
    UPLINKMODE: str
    # services that use the connection; INTERNET, IPTV, TR069, VOIP and OTHER, separated by commas, e.g. "TR069,VOIP"; at most 64 bytes
    SERVICELIST: str
    # how the connection gets its IPv4 address; DHCP, PPPoE or Static; at most 64 bytes
    ADDRESSTYPE: str
    # IPv4 address; e.g. "100.72.18.203"; at most 64 bytes
    IPADDRESS: str
    # IPv4 mask; e.g. "255.255.255.255"; at most 64 bytes
    SUBNETMASK: str
    # IPv4 address of the default gateway, empty when there is none; e.g. "100.72.0.1"; at most 64 bytes
    GATEWAY: str
    # first DNS server, IPv4; IPv4 address, e.g. "100.64.0.53"; at most 64 bytes
    DNS1: str
    # second DNS server, IPv4; IPv4 address, e.g. "100.64.1.53"; at most 64 bytes
    DNS2: str
    # state of the IPv6 connection; Connected or Disconnected; at most 64 bytes
    IPV6_CONNECTIONSTATUS: str
    # IPv6 address, empty when there is none; e.g. "2001:db8:4f20::1"; at most 64 bytes
    IPV6_IPADDRESS: str
    # IPv6 prefix for the LAN, empty when there is none; e.g. "2001:db8:4f20:a00::"; at most 64 bytes
    IPV6_PRIFIX: str
    # length of the IPv6 prefix; number of bits, e.g. "56"; at most 64 bytes
    IPV6_PREFIXLENGTH: str
    # IPv6 address of the default gateway, empty when there is none; e.g. "fe80::1"; at most 64 bytes
    IPV6_GATEWAY: str
    # first DNS server, IPv6; IPv6 address, e.g. "2001:db8:53::1"; at most 64 bytes
    IPV6_DNS1: str
    # second DNS server, IPv6; IPv6 address, e.g. "2001:db8:53::2"; at most 64 bytes
    IPV6_DNS2: str
    # name of the PPPoE account; e.g. "k4471902@fibre.example"; at most 64 bytes
    PPPOE_USR_NAME: str
    # password of the PPPoE account; e.g. "Lh7-pq2-Vw9"; at most 64 bytes; secret
    PPPOE_PASSWORD: str
    # whether hosts may connect themselves; 1 for on, 0 for off; at most 64 bytes
    PPPOE_PROXY: str
    # name of the PPPoE service; e.g. "fibre"; at most 64 bytes
    PPPOE_SERVICENAME: str
    # when the PPPoE connection is established; empty if not known; AlwaysOn; at most 64 bytes
    PPPOE_DIAL_MODE: str
    # whether NAT is on; 1 for on, 0 for off; at most 64 bytes
    NATENABLE: str
    # whether quality of service is on; 1 for on, 0 for off; at most 64 bytes
    QOSENABLE: str
    # number of the VLAN; 1 to 4094, e.g. "7"; at most 64 bytes
    VLANID: str
    # priority of the VLAN; 0 to 7, e.g. "0"; at most 64 bytes
    VLANPRIORITY: str


class QueryWanInfoFailure(TypedDict):
    """QUERY_WAN_INFO, failure."""

    # unchanged from the request
    WANName: NotRequired[str]
    Status: Literal["1"]
    # "json object WANName not found!": WANName is missing or not a string; "QUERY_WAN_INFO_FAIL": the device could not answer
    FailReason: Literal["json object WANName not found!", "QUERY_WAN_INFO_FAIL"]


# Reply of QUERY_WAN_INFO.
QueryWanInfoReply = Union[QueryWanInfoSuccess, QueryWanInfoFailure]


class QueryWanNumRequest(TypedDict):
    """QUERY_WAN_NUM: Number and names of the WAN connections."""


class QueryWanNumSuccess(TypedDict):
    """QUERY_WAN_NUM, success: the device answered."""

    Status: Literal["0"]
    # number of WAN connections; whole number, e.g. "4"; at most 8 bytes
    NUM: str
    # names of the connections; names, separated by commas, e.g. "Internet,IPTV,Management,Voice"; at most 200 bytes
    Description: str


class QueryWanNumFailure(TypedDict):
    """QUERY_WAN_NUM, failure."""

    Status: Literal["1"]
    # "QUERY_WAN_NUM_FAIL": the device could not answer
    FailReason: Literal["QUERY_WAN_NUM_FAIL"]


# Reply of QUERY_WAN_NUM.
QueryWanNumReply = Union[QueryWanNumSuccess, QueryWanNumFailure]


class ResponseRouterVersionRequest(TypedDict):
    """RESPONSE_ROUTER_VERSION: Passes a version report to the agent."""

    # the version report; it stays in the reply
    VersionInfo: str


class ResponseRouterVersionSuccess(TypedDict):
    """RESPONSE_ROUTER_VERSION, success: there is a version report."""

    # unchanged from the request
    VersionInfo: NotRequired[str]
    Status: Literal["0"]


class ResponseRouterVersionFailure(TypedDict):
    """RESPONSE_ROUTER_VERSION, failure: VersionInfo is missing, empty or not a string; the object is still copied."""

    # unchanged from the request
    VersionInfo: NotRequired[str]
    Status: Literal["1"]


# Reply of RESPONSE_ROUTER_VERSION.
ResponseRouterVersionReply = Union[ResponseRouterVersionSuccess, ResponseRouterVersionFailure]


class RpChildHgRebootRequest(TypedDict):
    """RP_CHILD_HG_REBOOT: Restarts a child router."""

    # identifier of the child router; MAC address without colons, e.g. "3C6AD2228140"
    DeviceID: str


class RpChildHgRebootSuccess(TypedDict):
    """RP_CHILD_HG_REBOOT, success: the command was sent."""

    Status: Literal["0"]


class RpChildHgRebootFailure(TypedDict):
    """RP_CHILD_HG_REBOOT, failure."""

    # unchanged from the request
    DeviceID: NotRequired[str]
    Status: Literal["1"]
    # "DeviceID Not Found": the key is missing or not a string; "send json to child err": the command could not be sent
    FailReason: Literal["DeviceID Not Found", "send json to child err"]


# Reply of RP_CHILD_HG_REBOOT.
RpChildHgRebootReply = Union[RpChildHgRebootSuccess, RpChildHgRebootFailure]


class RpHgRebootRequest(TypedDict):
    """RP_HG_REBOOT: Restarts the gateway."""


class RpHgRebootSuccess(TypedDict):
    """RP_HG_REBOOT, success: the device accepted the change."""

    Status: Literal["0"]


class RpHgRebootFailure(TypedDict):
    """RP_HG_REBOOT, failure."""

    Status: Literal["1"]
    # "reboot failed": the device refused the change
    FailReason: Literal["reboot failed"]


# Reply of RP_HG_REBOOT.
RpHgRebootReply = Union[RpHgRebootSuccess, RpHgRebootFailure]


class SetAdminInfoRequest(TypedDict):
    """SET_ADMIN_INFO: Sets the administrator's account."""

    # whose account it is; 1 for the user's account, 2 for the operator's; truncated to 7 bytes
    Type: str
    # name of the administrator; e.g. "admin"; truncated to 127 bytes
    Name: str
    # password of the administrator; e.g. "zaun-und-tor-58"; truncated to 127 bytes; secret
    Password: str


class SetAdminInfoSuccess(TypedDict):
    """SET_ADMIN_INFO, success: the device accepted the change."""

    Status: Literal["0"]


class SetAdminInfoFailure(TypedDict):
    """SET_ADMIN_INFO, failure."""

    # unchanged from the request
    Type: NotRequired[str]
    # unchanged from the request
    Name: NotRequired[str]
    # unchanged from the request
    Password: NotRequired[str]
    Status: Literal["1"]
    # "json node null": a key is missing; "value string null": a key is present but not a string; "set admin info failed": the device refused the change
    FailReason: Literal["json node null", "value string null", "set admin info failed"]


# Reply of SET_ADMIN_INFO.
SetAdminInfoReply = Union[SetAdminInfoSuccess, SetAdminInfoFailure]


class SetAdBaseInfoRequest(TypedDict):
    """SET_AD_BASE_INFO: Changes the user's settings for an attached device."""

    # MAC address of the device; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; truncated to 31 bytes
    MAC: str
    # type of device; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; truncated to 31 bytes
    DevType: str
    # name given by the user; e.g. "Anna"; truncated to 31 bytes
    ByName: str
    # whether it may reach the Internet; 1 for on, 0 for off; truncated to 7 bytes
    AccessEnable: str
    # download limit; unchanged when absent, or without SpeedLimit; whole number, 0 for none, in kbit/s, e.g. "20000"; truncated to 15 bytes
    DownLimit: NotRequired[str]
    # ignored, but removed
    UpLimit: NotRequired[Any]
    # "0" removes the limit; DownLimit has to be given as well
    SpeedLimit: NotRequired[str]
    # whether the IP address is bound to the MAC address; unchanged when absent; 1 for on, 0 for off, -1 if not given; truncated to 7 bytes
    StaticDhcpEnable: NotRequired[str]
    # IP address to bind; required with StaticDhcpEnable; IPv4 address, e.g. "192.168.1.101"; truncated to 63 bytes
    ip: NotRequired[str]


class SetAdBaseInfoSuccess(TypedDict):
    """SET_AD_BASE_INFO, success: the device accepted the change."""

    Status: Literal["0"]


class SetAdBaseInfoFailure(TypedDict):
    """SET_AD_BASE_INFO, failure: the device refused the change."""

    Status: Literal["1"]
    # the device's reason, empty if it gives none; e.g. "there is no device 02:00:00:00:00:01"; at most 64 bytes
    FailReason: str


class SetAdBaseInfoFailure2(TypedDict):
    """SET_AD_BASE_INFO, failure."""

    Status: Literal["1"]
    # "INVALID_PARAM": a required key is missing or not a string; "ip/mac binding: ip addr missing!": StaticDhcpEnable is given without ip
    FailReason: Literal["INVALID_PARAM", "ip/mac binding: ip addr missing!"]


# Reply of SET_AD_BASE_INFO.
SetAdBaseInfoReply = Union[SetAdBaseInfoSuccess, SetAdBaseInfoFailure, SetAdBaseInfoFailure2]


class SetApAlgAbilityRequest(TypedDict):
    """SET_AP_ALG_ABILITY: Switches NAT helpers (ALG) by protocol."""

    # whether the PPTP helper is on; 1 for on, 0 for off; truncated to 7 bytes
    PPTP: str
    # whether the FTP helper is on; 1 for on, 0 for off; truncated to 7 bytes
    FTP: str
    # whether the IPsec helper is on; 1 for on, 0 for off; truncated to 7 bytes
    IPSEC: str
    # whether the L2TP helper is on; 1 for on, 0 for off; truncated to 7 bytes
    L2TP: str
    # whether the RTSP helper is on; 1 for on, 0 for off; truncated to 7 bytes
    RTSP: str
    # whether the H.323 helper is on; 1 for on, 0 for off; truncated to 7 bytes
    H323: str
    # whether the SIP helper is on; 1 for on, 0 for off; truncated to 7 bytes
    SIP: str


class SetApAlgAbilitySuccess(TypedDict):
    """SET_AP_ALG_ABILITY, success: the device accepted the change."""

    Status: Literal["0"]


class SetApAlgAbilityFailure(TypedDict):
    """SET_AP_ALG_ABILITY, failure."""

    # unchanged from the request
    PPTP: NotRequired[str]
    # unchanged from the request
    FTP: NotRequired[str]
    # unchanged from the request
    IPSEC: NotRequired[str]
    # unchanged from the request
    L2TP: NotRequired[str]
    # unchanged from the request
    RTSP: NotRequired[str]
    # unchanged from the request
    H323: NotRequired[str]
    # unchanged from the request
    SIP: NotRequired[str]
    Status: Literal["1"]
    # "json param null": a key is missing or not a string; "Set ap ALG ability failed": the device refused the change
    FailReason: Literal["json param null", "Set ap ALG ability failed"]


# Reply of SET_AP_ALG_ABILITY.
SetApAlgAbilityReply = Union[SetApAlgAbilitySuccess, SetApAlgAbilityFailure]


class SetApMultiserviceModeRequest(TypedDict):
    """SET_AP_MULTISERVICE_MODE: Sets the multiservice mode of the access point."""

    # the mode; NONE, SSID or VLAN; truncated to 7 bytes
    Mode: str


class SetApMultiserviceModeSuccess(TypedDict):
    """SET_AP_MULTISERVICE_MODE, success: the device accepted the change."""

    Status: Literal["0"]


class SetApMultiserviceModeFailure(TypedDict):
    """SET_AP_MULTISERVICE_MODE, failure."""

    # unchanged from the request
    Mode: NotRequired[str]
    Status: Literal["1"]
    # "get param:mode err": the key is missing or not a string; "Set ap multisservice mode failed": the device refused the change
    FailReason: Literal["get param:mode err", "Set ap multisservice mode failed"]


# Reply of SET_AP_MULTISERVICE_MODE.
SetApMultiserviceModeReply = Union[SetApMultiserviceModeSuccess, SetApMultiserviceModeFailure]


class SetAttachDeviceRightRequest(TypedDict):
    """SET_ATTACH_DEVICE_RIGHT: Allows an attached device to reach the Internet, or forbids it."""

    # MAC address of the device; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; truncated to 63 bytes
    MAC: str
    # whether the device may reach the Internet; ALLOW or DENY; truncated to 63 bytes
    InternetAccessRight: str


class SetAttachDeviceRightSuccess(TypedDict):
    """SET_ATTACH_DEVICE_RIGHT, success: the device accepted the change."""

    Status: Literal["0"]


class SetAttachDeviceRightFailure(TypedDict):
    """SET_ATTACH_DEVICE_RIGHT, failure."""

    # unchanged from the request
    MAC: NotRequired[str]
    # unchanged from the request
    InternetAccessRight: NotRequired[str]
    Status: Literal["1"]
    # "json node null": a key is missing; "value string null": a key is present but not a string; "SET_ATTATCH_DEVICE_RIGHT_FAIL": the device refused the change
    FailReason: Literal["json node null", "value string null", "SET_ATTATCH_DEVICE_RIGHT_FAIL"]


# Reply of SET_ATTACH_DEVICE_RIGHT.
SetAttachDeviceRightReply = Union[SetAttachDeviceRightSuccess, SetAttachDeviceRightFailure]


class SetChildRouteradBaseInfoRequest(TypedDict):
    """SET_CHILD_ROUTERAD_BASE_INFO: Changes the settings for a device of a child router."""

    # identifier of the child router; MAC address without colons, e.g. "3C6AD2228140"
    DeviceID: str
    # MAC address of the device
    Mac: NotRequired[Any]
    # type of device
    DevType: NotRequired[Any]
    # name given by the user
    ByName: NotRequired[Any]
    # "1" when it is to have exclusive bandwidth
    NetMonopoly: NotRequired[Any]
    # "1" when it may reach the Internet
    AccessEnable: NotRequired[Any]


class SetChildRouteradBaseInfoSuccess(TypedDict):
    """SET_CHILD_ROUTERAD_BASE_INFO, success: the command was sent."""

    Status: Literal["0"]


class SetChildRouteradBaseInfoFailure(TypedDict):
    """SET_CHILD_ROUTERAD_BASE_INFO, failure."""

    Status: Literal["1"]
    # "DeviceID Not Found": the identifier is missing or not a string; "send json to child err": the command could not be sent
    FailReason: Literal["DeviceID Not Found", "send json to child err"]


# Reply of SET_CHILD_ROUTERAD_BASE_INFO.
SetChildRouteradBaseInfoReply = Union[SetChildRouteradBaseInfoSuccess, SetChildRouteradBaseInfoFailure]


class SetChildRouterHgBaseInfoRequest(TypedDict):
    """SET_CHILD_ROUTER_HG_BASE_INFO: Renames a child router."""

    # identifier of the child router; MAC address without colons, e.g. "3C6AD2228140"
    DeviceID: str
    # name of the child router; e.g. "Attic"
    Name: str


class SetChildRouterHgBaseInfoSuccess(TypedDict):
    """SET_CHILD_ROUTER_HG_BASE_INFO, success: the command was sent."""

    Status: Literal["0"]


class SetChildRouterHgBaseInfoFailure(TypedDict):
    """SET_CHILD_ROUTER_HG_BASE_INFO, failure."""

    # unchanged from the request
    DeviceID: NotRequired[str]
    # unchanged from the request
    Name: NotRequired[str]
    Status: Literal["1"]
    # "param json not found": a key is missing or not a string; "set childrouter info failed": the command could not be sent
    FailReason: Literal["param json not found", "set childrouter info failed"]


# Reply of SET_CHILD_ROUTER_HG_BASE_INFO.
SetChildRouterHgBaseInfoReply = Union[SetChildRouterHgBaseInfoSuccess, SetChildRouterHgBaseInfoFailure]


class SetFirewallSwitchRequest(TypedDict):
    """SET_FIREWALL_SWITCH: Switches the firewall."""

    # whether the firewall is on; 1 for on, 0 for off; truncated to 15 bytes
    Enable: str


class SetFirewallSwitchSuccess(TypedDict):
    """SET_FIREWALL_SWITCH, success: the device accepted the change."""

    # unchanged from the request
    Enable: NotRequired[str]
    Status: Literal["0"]


class SetFirewallSwitchFailure(TypedDict):
    """SET_FIREWALL_SWITCH, failure: Enable is missing or not a string; no reply key is added."""

    # unchanged from the request
    Enable: NotRequired[str]


class SetFirewallSwitchFailure2(TypedDict):
    """SET_FIREWALL_SWITCH, failure."""

    # unchanged from the request
    Enable: NotRequired[str]
    Status: Literal["1"]
    # "set firewall switch failed": the device refused the change
    FailReason: Literal["set firewall switch failed"]


# Reply of SET_FIREWALL_SWITCH.
SetFirewallSwitchReply = Union[SetFirewallSwitchSuccess, SetFirewallSwitchFailure, SetFirewallSwitchFailure2]


class SetGreennetDeviceListRequestDeviceList(TypedDict):
    """DeviceList: the devices."""

    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "72:9B:E0:46:D8:15"; truncated to 63 bytes
    Mac: str
    # name given by the user; e.g. "Jonas"; truncated to 63 bytes
    Name: str
    # whether notices about the device are wanted; 1 for on, 0 for off; truncated to 7 bytes
    NotifyEnable: str


class SetGreennetDeviceListRequest(TypedDict):
    """SET_GREENNET_DEVICE_LIST: Replaces the devices under parental control."""

    # the devices
    DeviceList: list[SetGreennetDeviceListRequestDeviceList]


class SetGreennetDeviceListSuccess(TypedDict):
    """SET_GREENNET_DEVICE_LIST, success: the device stored the list."""

    Status: Literal["0"]


class SetGreennetDeviceListFailure(TypedDict):
    """SET_GREENNET_DEVICE_LIST, failure: the devices are stored, but the others could not be removed; the reply has two statuses."""

    FailReason: Literal["del green net info failed"]
    Status: Literal["0"]


class SetGreennetDeviceListFailure2(TypedDict):
    """SET_GREENNET_DEVICE_LIST, failure."""

    # unchanged from the request
    DeviceList: NotRequired[Any]
    Status: Literal["1"]
    # "json node: list not found": there is no list; "set greenaccess enable failed": the access restriction could not be switched on; "malloc mac_list failed": memory ran out; "parse green host info failed": an element lacks a key, or the device could not look up or add its entry; "set lan host info failed": the device could not store an element
    FailReason: Literal["json node: list not found", "set greenaccess enable failed", "malloc mac_list failed", "parse green host info failed", "set lan host info failed"]


# Reply of SET_GREENNET_DEVICE_LIST.
SetGreennetDeviceListReply = Union[SetGreennetDeviceListSuccess, SetGreennetDeviceListFailure, SetGreennetDeviceListFailure2]


class SetGreennetEnableRequest(TypedDict):
    """SET_GREENNET_ENABLE: Switches parental control."""

    # whether parental control is on; 1 for on, 0 for off; truncated to 255 bytes
    Enable: str


class SetGreennetEnableSuccess(TypedDict):
    """SET_GREENNET_ENABLE, success: the device accepted the change."""

    Status: Literal["0"]


class SetGreennetEnableFailure(TypedDict):
    """SET_GREENNET_ENABLE, failure."""

    # unchanged from the request
    Enable: NotRequired[str]
    Status: Literal["1"]
    # "param error": Enable is missing or not a string; "set green net enable failed": the device refused the change
    FailReason: Literal["param error", "set green net enable failed"]


# Reply of SET_GREENNET_ENABLE.
SetGreennetEnableReply = Union[SetGreennetEnableSuccess, SetGreennetEnableFailure]


class SetGreennetNotifyEnableRequest(TypedDict):
    """SET_GREENNET_NOTIFY_ENABLE: Switches the notices about a device under parental control."""

    # MAC address of the device; six bytes in hexadecimal, separated by colons, e.g. "72:9B:E0:46:D8:15"; truncated to 63 bytes
    Mac: str
    # whether notices about the device are wanted; 1 for on, 0 for off; truncated to 7 bytes
    NotifyEnable: str


class SetGreennetNotifyEnableSuccess(TypedDict):
    """SET_GREENNET_NOTIFY_ENABLE, success: the device accepted the change."""

    Status: Literal["0"]


class SetGreennetNotifyEnableFailure(TypedDict):
    """SET_GREENNET_NOTIFY_ENABLE, failure."""

    # unchanged from the request
    Mac: NotRequired[str]
    # unchanged from the request
    NotifyEnable: NotRequired[str]
    Status: Literal["1"]
    # "json node: list not found": a key is missing or not a string; "get host index failed.": the device is not under parental control; "set host notify failed.": the device refused the change
    FailReason: Literal["json node: list not found", "get host index failed.", "set host notify failed."]


# Reply of SET_GREENNET_NOTIFY_ENABLE.
SetGreennetNotifyEnableReply = Union[SetGreennetNotifyEnableSuccess, SetGreennetNotifyEnableFailure]


class SetGreennetProtectPeriodListRequestSleep(TypedDict):
    """Sleep: the new periods; an empty list removes all."""

    # start of the period; HH:MM, from 00:00 to 23:59, e.g. "22:00"; truncated to 7 bytes
    StartTime: str
    # end of the period; HH:MM, from 00:00 to 23:59, e.g. "07:30"; truncated to 7 bytes
    EndTime: str
    # whether the period is in force; 1 for on, 0 for off; truncated to 7 bytes
    Enable: str
    # days on which it begins; 1 (Monday) to 7, without separators, e.g. "12345"; truncated to 7 bytes
    DaysOfWeek: str


class SetGreennetProtectPeriodListRequest(TypedDict):
    """SET_GREENNET_PROTECT_PERIOD_LIST: Replaces the periods in which a device is restricted."""

    # MAC address of the device; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; truncated to 63 bytes
    Mac: str
    # the new periods; an empty list removes all
    Sleep: list[SetGreennetProtectPeriodListRequestSleep]


class SetGreennetProtectPeriodListSuccess(TypedDict):
    """SET_GREENNET_PROTECT_PERIOD_LIST, success: the device accepted all periods; the protection is on when one of them is in force."""

    # unchanged from the request
    Mac: NotRequired[str]
    Status: Literal["0"]


class SetGreennetProtectPeriodListFailure(TypedDict):
    """SET_GREENNET_PROTECT_PERIOD_LIST, failure."""

    # unchanged from the request
    Mac: NotRequired[str]
    # unchanged from the request
    Sleep: NotRequired[Any]
    Status: Literal["1"]
    # "json node: mac not found": Mac is missing or not a string; "json node: mac index not found": the device is not under parental control; "json node: list not found": there is no list; "del duration failed!": the old periods could not be removed; "parse protect period info failed": an element lacks a key; "add protect period info failed": the device could not add a period; "set protect period info failed": the device could not store a period; "set PortectEnable failed!": the device could not switch the protection
    FailReason: Literal["json node: mac not found", "json node: mac index not found", "json node: list not found", "del duration failed!", "parse protect period info failed", "add protect period info failed", "set protect period info failed", "set PortectEnable failed!"]


# Reply of SET_GREENNET_PROTECT_PERIOD_LIST.
SetGreennetProtectPeriodListReply = Union[SetGreennetProtectPeriodListSuccess, SetGreennetProtectPeriodListFailure]


class SetHgBaseInfoRequest(TypedDict):
    """SET_HG_BASE_INFO: Renames the gateway."""

    # name given by the user; e.g. "Lindenhof"; truncated to 63 bytes
    Name: str


class SetHgBaseInfoSuccess(TypedDict):
    """SET_HG_BASE_INFO, success: the device accepted the change."""

    Status: Literal["0"]


class SetHgBaseInfoFailure(TypedDict):
    """SET_HG_BASE_INFO, failure."""

    # unchanged from the request
    Name: NotRequired[str]
    Status: Literal["1"]
    # "param format error": a key is missing or not a string; "set hg base info failed": the device refused the change
    FailReason: Literal["param format error", "set hg base info failed"]


# Reply of SET_HG_BASE_INFO.
SetHgBaseInfoReply = Union[SetHgBaseInfoSuccess, SetHgBaseInfoFailure]


class SetHgDhcpInfoRequest(TypedDict):
    """SET_HG_DHCP_INFO: Switches the DHCP server of the LAN side."""

    # whether the server is on; 1 for on, 0 for off; truncated to 15 bytes
    Enable: str


class SetHgDhcpInfoSuccess(TypedDict):
    """SET_HG_DHCP_INFO, success: the device accepted the change."""

    Status: Literal["0"]


class SetHgDhcpInfoFailure(TypedDict):
    """SET_HG_DHCP_INFO, failure: the device refused the change."""

    Status: Literal["1"]
    # the device's reason, empty if it gives none; e.g. "Enable \"on\" is none of \"0\", \"1\""; at most 64 bytes
    FailReason: str


class SetHgDhcpInfoFailure2(TypedDict):
    """SET_HG_DHCP_INFO, failure."""

    Status: Literal["1"]
    # "INVALID_PARAM": a key is missing or not a string
    FailReason: Literal["INVALID_PARAM"]


# Reply of SET_HG_DHCP_INFO.
SetHgDhcpInfoReply = Union[SetHgDhcpInfoSuccess, SetHgDhcpInfoFailure, SetHgDhcpInfoFailure2]


class SetHgGuestSsidRequest(TypedDict):
    """SET_HG_GUEST_SSID: Sets up the guest network of one band."""

    # whether the guest network is on; 1 for on, 0 for off; truncated to 15 bytes
    Enable: str
    # network name; e.g. "Lindenhof-Guest"; truncated to 63 bytes
    SSID: str
    # the band; 2.4GHz or 5GHz; truncated to 15 bytes
    Band: str
    # password of the guest network; e.g. "willkommen24"; truncated to 63 bytes; secret
    PWD: str
    # type of encryption; OPEN, WPA2, WPA3 or WPA2/3; truncated to 15 bytes
    ENCRYPT: str
    # days for which the guest network stays open; whole number, -1 for no limit, in days, e.g. "2"; truncated to 7 bytes
    ContinueTime: NotRequired[str]
    # hours for which the guest network stays open, in addition to the days; whole number, -1 for no limit, in h, e.g. "3"; truncated to 7 bytes
    HourTime: NotRequired[str]
    # ignored, but removed: the plug-in computes the seconds from ContinueTime and HourTime
    EndTimestamp: NotRequired[Any]
    # newest wireless standard to use; unchanged when absent; 11a, 11b, 11g, 11n, 11ac or 11ax, -1 if not given; truncated to 7 bytes
    Mode: NotRequired[str]
    # whether the name is broadcast; unchanged when absent; 1 for on, 0 for off, -1 if not given; truncated to 7 bytes
    AdvertisementEnable: NotRequired[str]


class SetHgGuestSsidSuccess(TypedDict):
    """SET_HG_GUEST_SSID, success: the device accepted the change."""

    # unchanged from the request
    Mode: NotRequired[Any]
    # unchanged from the request
    AdvertisementEnable: NotRequired[Any]
    Status: Literal["0"]


class SetHgGuestSsidFailure(TypedDict):
    """SET_HG_GUEST_SSID, failure."""

    # unchanged from the request
    Enable: NotRequired[str]
    # unchanged from the request
    SSID: NotRequired[str]
    # unchanged from the request
    Band: NotRequired[str]
    # unchanged from the request
    PWD: NotRequired[str]
    # unchanged from the request
    ENCRYPT: NotRequired[str]
    # unchanged from the request
    ContinueTime: NotRequired[str]
    # unchanged from the request
    HourTime: NotRequired[str]
    # unchanged from the request
    EndTimestamp: NotRequired[Any]
    # unchanged from the request
    Mode: NotRequired[Any]
    # unchanged from the request
    AdvertisementEnable: NotRequired[Any]
    Status: Literal["1"]
    # "parse guest ssid failed": a required key is missing or not a string; "radio enable is closed,need to open": the radio of the band is off; "set guest ssid failed": the device refused for another reason
    FailReason: Literal["parse guest ssid failed", "radio enable is closed,need to open", "set guest ssid failed"]


# Reply of SET_HG_GUEST_SSID.
SetHgGuestSsidReply = Union[SetHgGuestSsidSuccess, SetHgGuestSsidFailure]


class SetHgPppoeInfoRequest(TypedDict):
    """SET_HG_PPPOE_INFO: Sets the PPPoE account and switches PPPoE."""

    # name of the account; e.g. "k4471902@fibre.example"; truncated to 63 bytes
    Account: str
    # password of the PPPoE account; e.g. "Lh7-pq2-Vw9"; truncated to 63 bytes; secret
    Password: str
    # whether the gateway connects by PPPoE; 1 for on, 0 for off; truncated to 15 bytes
    Enable: str


class SetHgPppoeInfoSuccess(TypedDict):
    """SET_HG_PPPOE_INFO, success: the device accepted the change."""

    Status: Literal["0"]


class SetHgPppoeInfoFailure(TypedDict):
    """SET_HG_PPPOE_INFO, failure: the device refused the change."""

    Status: Literal["1"]
    # the device's reason, empty if it gives none; e.g. "Account is empty"; at most 64 bytes
    FailReason: str


class SetHgPppoeInfoFailure2(TypedDict):
    """SET_HG_PPPOE_INFO, failure."""

    Status: Literal["1"]
    # "INVALID_PARAM": a key is missing or not a string
    FailReason: Literal["INVALID_PARAM"]


# Reply of SET_HG_PPPOE_INFO.
SetHgPppoeInfoReply = Union[SetHgPppoeInfoSuccess, SetHgPppoeInfoFailure, SetHgPppoeInfoFailure2]


class SetHgRebootInfoRequest(TypedDict):
    """SET_HG_REBOOT_INFO: Sets the reboot schedule."""

    # whether the schedule is on; 1 for on, 0 for off; truncated to 7 bytes
    GatewayRebootEnable: str
    # time of day; HH:MM, from 00:00 to 23:59, e.g. "04:30"; truncated to 7 bytes
    Time: str
    # days of the week; 1 (Monday) to 7, separated by commas, e.g. "1,4"; truncated to 15 bytes
    DaysOfWeek: str


class SetHgRebootInfoSuccess(TypedDict):
    """SET_HG_REBOOT_INFO, success: the device accepted the change."""

    Status: Literal["0"]


class SetHgRebootInfoFailure(TypedDict):
    """SET_HG_REBOOT_INFO, failure."""

    # unchanged from the request
    GatewayRebootEnable: NotRequired[str]
    # unchanged from the request
    Time: NotRequired[str]
    # unchanged from the request
    DaysOfWeek: NotRequired[str]
    Status: Literal["1"]
    # "json node null": a key is missing; "value string null": a key is present but not a string; "set reboot info failed": the device refused the change
    FailReason: Literal["json node null", "value string null", "set reboot info failed"]


# Reply of SET_HG_REBOOT_INFO.
SetHgRebootInfoReply = Union[SetHgRebootInfoSuccess, SetHgRebootInfoFailure]


class SetHgSleepInfoRequest(TypedDict):
    """SET_HG_SLEEP_INFO: Sets the sleep times of the gateway, its Wi-Fi and its LEDs."""

    # whether the gateway sleeps; 1 for on, 0 for off; truncated to 7 bytes
    GatewaySleepEnable: str
    # whether the Wi-Fi sleeps; 1 for on, 0 for off; truncated to 7 bytes
    WiFiSleepEnable: str
    # whether the LEDs sleep; 1 for on, 0 for off; truncated to 7 bytes
    LedSleepEnable: str
    # start of the sleep; HH:MM, from 00:00 to 23:59, e.g. "22:30"; truncated to 7 bytes
    StartTime: str
    # end of the sleep; HH:MM, from 00:00 to 23:59, e.g. "06:30"; truncated to 7 bytes
    EndTime: str


class SetHgSleepInfoSuccess(TypedDict):
    """SET_HG_SLEEP_INFO, success: the device accepted the change."""

    Status: Literal["0"]


class SetHgSleepInfoFailure(TypedDict):
    """SET_HG_SLEEP_INFO, failure."""

    # unchanged from the request
    GatewaySleepEnable: NotRequired[str]
    # unchanged from the request
    WiFiSleepEnable: NotRequired[str]
    # unchanged from the request
    LedSleepEnable: NotRequired[str]
    # unchanged from the request
    StartTime: NotRequired[str]
    # unchanged from the request
    EndTime: NotRequired[str]
    Status: Literal["1"]
    # "json node null": a key is missing; "value string null": a key is present but not a string; "SET_HG_SLEEP_INFO_FAIL": the device refused the change
    FailReason: Literal["json node null", "value string null", "SET_HG_SLEEP_INFO_FAIL"]


# Reply of SET_HG_SLEEP_INFO.
SetHgSleepInfoReply = Union[SetHgSleepInfoSuccess, SetHgSleepInfoFailure]


class SetKaaHeartbeatRequest(TypedDict):
    """SET_KAA_HEARTBEAT: Sets the interval at which the agent reports to the platform."""

    # interval between two reports, as interpreted by the device; whole number, 10 to 86400, in s, e.g. "120"
    heartbeat: str


class SetKaaHeartbeatSuccess(TypedDict):
    """SET_KAA_HEARTBEAT, success: the device accepted the change."""

    Status: Literal["0"]


class SetKaaHeartbeatFailure(TypedDict):
    """SET_KAA_HEARTBEAT, failure."""

    # unchanged from the request
    heartbeat: NotRequired[str]
    Status: Literal["1"]
    # "get json_heartbeat err": the key is missing or not a string; "set kaa heartbeat err": the device refused the change
    FailReason: Literal["get json_heartbeat err", "set kaa heartbeat err"]


# Reply of SET_KAA_HEARTBEAT.
SetKaaHeartbeatReply = Union[SetKaaHeartbeatSuccess, SetKaaHeartbeatFailure]


class SetLanIpInfoRequest(TypedDict):
    """SET_LAN_IP_INFO: Changes the LAN IP settings."""

    # address of the gateway; IPv4 address, e.g. "192.168.1.1"; truncated to 31 bytes
    GatewayLanIP: str
    # subnet mask; IPv4 mask, e.g. "255.255.255.0"; truncated to 31 bytes
    SubnetMask: str
    # first address of the DHCP pool; IPv4 address, e.g. "192.168.1.100"; truncated to 31 bytes
    StartIp: str
    # last address of the DHCP pool; IPv4 address, e.g. "192.168.1.249"; truncated to 31 bytes
    EndIp: str


class SetLanIpInfoSuccess(TypedDict):
    """SET_LAN_IP_INFO, success: the device accepted the change."""

    Status: Literal["0"]


class SetLanIpInfoFailure(TypedDict):
    """SET_LAN_IP_INFO, failure: the device refused the change."""

    Status: Literal["1"]
    # the device's reason, empty if it gives none; e.g. "StartIp is outside the subnet"; at most 64 bytes
    FailReason: str


class SetLanIpInfoFailure2(TypedDict):
    """SET_LAN_IP_INFO, failure."""

    Status: Literal["1"]
    # "INVALID_PARAM": a key is missing or not a string
    FailReason: Literal["INVALID_PARAM"]


# Reply of SET_LAN_IP_INFO.
SetLanIpInfoReply = Union[SetLanIpInfoSuccess, SetLanIpInfoFailure, SetLanIpInfoFailure2]


class SetLedStatusRequest(TypedDict):
    """SET_LED_STATUS: Sets the LEDs."""

    # whether the LEDs are on; 1 for on, 0 for off
    LedSwitch: str
    # colour of the LEDs; WHITE, BLUE, GREEN, ORANGE or RED
    LedCoLor: str
    # brightness of the LEDs; whole number, in %, e.g. "47"
    LedLight: str


class SetLedStatusSuccess(TypedDict):
    """SET_LED_STATUS, success: the device accepted the change."""

    Status: Literal["0"]


class SetLedStatusFailure(TypedDict):
    """SET_LED_STATUS, failure."""

    # unchanged from the request
    LedSwitch: NotRequired[str]
    # unchanged from the request
    LedCoLor: NotRequired[str]
    # unchanged from the request
    LedLight: NotRequired[str]
    Status: Literal["1"]
    # "LedCoLor, LedLight or Led_Switch is NULL": a key is missing; "get scan rssi failed": the device refused, also when a value is not a string
    FailReason: Literal["LedCoLor, LedLight or Led_Switch is NULL", "get scan rssi failed"]


# Reply of SET_LED_STATUS.
SetLedStatusReply = Union[SetLedStatusSuccess, SetLedStatusFailure]


class SetMeshPairRequest(TypedDict):
    """SET_MESH_PAIR: Opens or closes the period in which new routers may join the mesh."""

    # whether routers may join from now on; 1 for on, 0 for off; truncated to 7 bytes
    Enable: str
    # how long it stays open; whole number, 1 to 3600, in s, e.g. "120"; truncated to 7 bytes
    Time: str


class SetMeshPairSuccess(TypedDict):
    """SET_MESH_PAIR, success: the device accepted the change."""

    Status: Literal["0"]


class SetMeshPairFailure(TypedDict):
    """SET_MESH_PAIR, failure."""

    # unchanged from the request
    Enable: NotRequired[str]
    # unchanged from the request
    Time: NotRequired[str]
    Status: Literal["1"]
    # "get Enable and Time err": a key is missing or not a string; "WIFI_SET_NOT_SUPPORT": the device does not support pairing; "Set pair status failed": the device refused for another reason
    FailReason: Literal["get Enable and Time err", "WIFI_SET_NOT_SUPPORT", "Set pair status failed"]


# Reply of SET_MESH_PAIR.
SetMeshPairReply = Union[SetMeshPairSuccess, SetMeshPairFailure]


class SetMeshStatusRequest(TypedDict):
    """SET_MESH_STATUS: Sets the mesh."""

    # whether the mesh is on; 1 for on, 0 for off; truncated to 7 bytes
    MeshEnable: str
    # mode of the mesh; 1 or 2; truncated to 7 bytes
    MeshMode: str


class SetMeshStatusSuccess(TypedDict):
    """SET_MESH_STATUS, success: the device accepted the change."""

    Status: Literal["0"]


class SetMeshStatusFailure(TypedDict):
    """SET_MESH_STATUS, failure."""

    # unchanged from the request
    MeshEnable: NotRequired[str]
    # unchanged from the request
    MeshMode: NotRequired[str]
    Status: Literal["1"]
    # "get MeshEnable and MeshMode err": a key is missing or not a string; "MESH_BUSY_0": the mesh is busy: the device's result is 4; "MESH_BUSY_1": the mesh is busy: the device's result is 3; "Set mesh status failed": the device refused for another reason
    FailReason: Literal["get MeshEnable and MeshMode err", "MESH_BUSY_0", "MESH_BUSY_1", "Set mesh status failed"]


# Reply of SET_MESH_STATUS.
SetMeshStatusReply = Union[SetMeshStatusSuccess, SetMeshStatusFailure]


class SetPortBindingRequest(TypedDict):
    """SET_PORT_BINDING: Binds ports to a WAN connection."""

    # number of the connection; whole number from 1, e.g. "1"; truncated to 7 bytes
    Index: str
    # the ports; LAN1, SSID1 and so on, separated by commas, e.g. "LAN3,LAN4"; truncated to 255 bytes
    BoundPorts: str


class SetPortBindingSuccess(TypedDict):
    """SET_PORT_BINDING, success: the device accepted the change."""

    Status: Literal["0"]


class SetPortBindingFailure(TypedDict):
    """SET_PORT_BINDING, failure."""

    # unchanged from the request
    Index: NotRequired[str]
    # unchanged from the request
    BoundPorts: NotRequired[str]
    Status: Literal["1"]
    # "json param is null": a key is missing or not a string; "set port binding failed": the device refused the change
    FailReason: Literal["json param is null", "set port binding failed"]


# Reply of SET_PORT_BINDING.
SetPortBindingReply = Union[SetPortBindingSuccess, SetPortBindingFailure]


class SetQosAppInfoRequest(TypedDict):
    """SET_QOS_APP_INFO: Sets the priority of an application."""

    # identifier of the application; read as a decimal number, 0 if the text does not begin with one
    Id: str
    # priority of the application; 1 (highest) to 8, e.g. "1"; truncated to 7 bytes
    PriorityLevel: str


class SetQosAppInfoSuccess(TypedDict):
    """SET_QOS_APP_INFO, success: the device accepted the change."""

    Status: Literal["0"]


class SetQosAppInfoFailure(TypedDict):
    """SET_QOS_APP_INFO, failure."""

    # unchanged from the request
    Id: NotRequired[str]
    # unchanged from the request
    PriorityLevel: NotRequired[str]
    Status: Literal["1"]
    # "json param is null": a key is missing or not a string; "set qos app info failed": the device refused the change
    FailReason: Literal["json param is null", "set qos app info failed"]


# Reply of SET_QOS_APP_INFO.
SetQosAppInfoReply = Union[SetQosAppInfoSuccess, SetQosAppInfoFailure]


class SetQosClassificationInfoRequestTypeList(TypedDict):
    """type_list: types of traffic that the rule matches; required unless the rule is deleted; those after the third are ignored."""

    # field of the packets that is compared; e.g. "DSCP"; truncated to 15 bytes
    Type: str
    # lowest value that matches; e.g. "46"; truncated to 63 bytes
    Min: str
    # highest value that matches; e.g. "46"; truncated to 63 bytes
    Max: str


class SetQosClassificationInfoRequest(TypedDict):
    """SET_QOS_CLASSIFICATION_INFO: Adds, deletes or changes a rule of quality of service."""

    # identifier of the rule; ignored when a rule is added, since the device assigns one; whole number from 1, e.g. "1"; truncated to 7 bytes
    Id: str
    # "1" adds the rule, "2" deletes it, anything else changes it; whole number, e.g. "1"; truncated to 7 bytes
    Action: str
    # name of the rule; required unless the rule is deleted; e.g. "Voice of the office"; truncated to 31 bytes
    Name: NotRequired[str]
    # priority of the rule; required unless the rule is deleted; 1 (highest) to 8, e.g. "1"; truncated to 7 bytes
    PriorityLevel: NotRequired[str]
    # types of traffic that the rule matches; required unless the rule is deleted; those after the third are ignored
    type_list: NotRequired[list[SetQosClassificationInfoRequestTypeList]]


class SetQosClassificationInfoSuccess(TypedDict):
    """SET_QOS_CLASSIFICATION_INFO, success: the device added the rule."""

    Status: Literal["0"]
    # identifier of the new rule; whole number from 1, e.g. "1"; at most 8 bytes
    Id: str


class SetQosClassificationInfoSuccess2(TypedDict):
    """SET_QOS_CLASSIFICATION_INFO, success: the device deleted or changed the rule."""

    Status: Literal["0"]


class SetQosClassificationInfoFailure(TypedDict):
    """SET_QOS_CLASSIFICATION_INFO, failure."""

    # unchanged from the request
    Id: NotRequired[str]
    # unchanged from the request
    Action: NotRequired[str]
    # unchanged from the request
    Name: NotRequired[str]
    # unchanged from the request
    PriorityLevel: NotRequired[str]
    # unchanged from the request
    type_list: NotRequired[Any]
    Status: Literal["1"]
    # "json param is invalid or miss": a key is missing or of a wrong type; "set qos cls info error": the device refused the change
    FailReason: Literal["json param is invalid or miss", "set qos cls info error"]


# Reply of SET_QOS_CLASSIFICATION_INFO.
SetQosClassificationInfoReply = Union[SetQosClassificationInfoSuccess, SetQosClassificationInfoSuccess2, SetQosClassificationInfoFailure]


class SetQosEnableRequest(TypedDict):
    """SET_QOS_ENABLE: Switches quality of service."""

    # whether quality of service is on: 1 for on, 0 for off; read as a decimal number, 0 if the text does not begin with one; truncated to 7 bytes
    Enable: str


class SetQosEnableSuccess(TypedDict):
    """SET_QOS_ENABLE, success: the device accepted the change."""

    Status: Literal["0"]


class SetQosEnableFailure(TypedDict):
    """SET_QOS_ENABLE, failure."""

    # unchanged from the request
    Enable: NotRequired[str]
    Status: Literal["1"]
    # "get param:enable err": the key is missing or not a string; "Set qos enable failed": the device refused the change
    FailReason: Literal["get param:enable err", "Set qos enable failed"]


# Reply of SET_QOS_ENABLE.
SetQosEnableReply = Union[SetQosEnableSuccess, SetQosEnableFailure]


class SetRouteWanInfoRequest(TypedDict):
    """SET_ROUTE_WAN_INFO: Changes the settings of one WAN connection."""

    # name of the connection, which selects it; e.g. "Internet"; truncated to 63 bytes
    WANName: NotRequired[str]
    # services that use the connection; INTERNET, IPTV, TR069, VOIP and OTHER, separated by commas, e.g. "TR069,VOIP"; truncated to 63 bytes
    SERVICELIST: NotRequired[str]
    # how the connection gets its IPv4 address; DHCP, PPPoE or Static; truncated to 63 bytes
    ADDRESSTYPE: NotRequired[str]
    # IPv4 address; e.g. "100.72.18.203"; truncated to 63 bytes
    IPADDRESS: NotRequired[str]
    # IPv4 mask; e.g. "255.255.255.255"; truncated to 63 bytes
    SUBNETMASK: NotRequired[str]
    # IPv4 address of the default gateway; e.g. "100.72.0.1"; truncated to 63 bytes
    GATEWAY: NotRequired[str]
    # first DNS server, IPv4; IPv4 address, e.g. "100.64.0.53"; truncated to 63 bytes
    DNS1: NotRequired[str]
    # second DNS server, IPv4; IPv4 address, e.g. "100.64.1.53"; truncated to 63 bytes
    DNS2: NotRequired[str]
    # IPv6 address; e.g. "2001:db8:4f20::1"; truncated to 63 bytes
    IPV6_IPADDRESS: NotRequired[str]
    # length of the IPv6 prefix; number of bits, e.g. "56"; truncated to 63 bytes
    IPV6_PREFIXLENGTH: NotRequired[str]
    # IPv6 address of the default gateway; e.g. "fe80::1"; truncated to 63 bytes
    IPV6_GATEWAY: NotRequired[str]
    # first DNS server, IPv6; IPv6 address, e.g. "2001:db8:53::1"; truncated to 63 bytes
    IPV6_DNS1: NotRequired[str]
    # second DNS server, IPv6; IPv6 address, e.g. "2001:db8:53::2"; truncated to 63 bytes
    IPV6_DNS2: NotRequired[str]
    # IPv6 prefix for the LAN; e.g. "2001:db8:4f20:a00::"; truncated to 63 bytes
    IPV6_PRIFIX: NotRequired[str]
    # name of the PPPoE account; e.g. "k4471902@fibre.example"; truncated to 63 bytes
    PPPOE_USR_NAME: NotRequired[str]
    # password of the PPPoE account; e.g. "Lh7-pq2-Vw9"; truncated to 63 bytes; secret
    PPPOE_PASSWORD: NotRequired[str]
    # whether NAT is on; 1 for on, 0 for off; truncated to 63 bytes
    NATENABLE: NotRequired[str]
    # whether quality of service is on; 1 for on, 0 for off; truncated to 63 bytes
    QOSENABLE: NotRequired[str]
    # number of the VLAN; 1 to 4094, e.g. "7"; truncated to 63 bytes
    VLANID: NotRequired[str]
    # priority of the VLAN; 0 to 7, e.g. "0"; truncated to 63 bytes
    VLANPRIORITY: NotRequired[str]


class SetRouteWanInfoSuccess(TypedDict):
    """SET_ROUTE_WAN_INFO, success: the device accepted the change."""

    Status: Literal["0"]


class SetRouteWanInfoFailure(TypedDict):
    """SET_ROUTE_WAN_INFO, failure."""

    Status: Literal["1"]
    # "SET_ROUTE_WAN_INFO_FAIL": the device refused the change
    FailReason: Literal["SET_ROUTE_WAN_INFO_FAIL"]


# Reply of SET_ROUTE_WAN_INFO.
SetRouteWanInfoReply = Union[SetRouteWanInfoSuccess, SetRouteWanInfoFailure]


class SetTslinkConfigStatusRequest(TypedDict):
    """SET_TSLINK_CONFIG_STATUS: Stores the state of the first configuration, and notifies the agent."""

    # whether the first configuration is done; 1 for yes, 0 for no
    ConfiguerStatus: str


class SetTslinkConfigStatusSuccess(TypedDict):
    """SET_TSLINK_CONFIG_STATUS, success: the device accepted the change."""

    Status: Literal["0"]


class SetTslinkConfigStatusFailure(TypedDict):
    """SET_TSLINK_CONFIG_STATUS, failure."""

    # unchanged from the request
    ConfiguerStatus: NotRequired[str]
    Status: Literal["1"]
    # "ConfiguerStatus  is NULL": the key is missing; "ConfiguerStatus  value is NULL": the key is present but not a string; "set tslink config failed": the device refused the change
    FailReason: Literal["ConfiguerStatus  is NULL", "ConfiguerStatus  value is NULL", "set tslink config failed"]


# Reply of SET_TSLINK_CONFIG_STATUS.
SetTslinkConfigStatusReply = Union[SetTslinkConfigStatusSuccess, SetTslinkConfigStatusFailure]


class SetTslinkSsidRequest(TypedDict):
    """SET_TSLINK_SSID: Sets the mesh up or takes it down."""

    # "1" to set the mesh up, "0" to take it down
    Enable: str


class SetTslinkSsidSuccess(TypedDict):
    """SET_TSLINK_SSID, success: the device was called; its result is ignored."""

    Status: Literal["0"]


class SetTslinkSsidFailure(TypedDict):
    """SET_TSLINK_SSID, failure."""

    # unchanged from the request
    Enable: NotRequired[str]
    Status: Literal["1"]
    # "Enable missing or not string": the key is missing or not a string; "Enable invalid": the text is neither "0" nor "1"
    FailReason: Literal["Enable missing or not string", "Enable invalid"]


# Reply of SET_TSLINK_SSID.
SetTslinkSsidReply = Union[SetTslinkSsidSuccess, SetTslinkSsidFailure]


class SetUpdateScheduleRequest(TypedDict):
    """SET_UPDATE_SCHEDULE: Sets the time of day at which the router may update itself."""

    # whether the router may update itself; 1 for on, 0 for off; truncated to 1 byte
    Enable: str
    # hour of the start; 0 to 23, without leading zeros, e.g. "2"; truncated to 7 bytes
    StartHour: str
    # minute of the start; 0 to 59, without leading zeros, e.g. "30"; truncated to 7 bytes
    StartMinute: str
    # hour of the end; 0 to 23, without leading zeros, e.g. "4"; truncated to 7 bytes
    EndHour: str
    # minute of the end; 0 to 59, without leading zeros, e.g. "0"; truncated to 7 bytes
    EndMinute: str


class SetUpdateScheduleSuccess(TypedDict):
    """SET_UPDATE_SCHEDULE, success: the device accepted the change."""

    Status: Literal["0"]


class SetUpdateScheduleFailure(TypedDict):
    """SET_UPDATE_SCHEDULE, failure."""

    Status: Literal["1"]
    # "parameter error": a key is missing or not a string; "Set update schedule failed": the device refused the change
    FailReason: Literal["parameter error", "Set update schedule failed"]


# Reply of SET_UPDATE_SCHEDULE.
SetUpdateScheduleReply = Union[SetUpdateScheduleSuccess, SetUpdateScheduleFailure]


class SetUplinkWifiInfoRequest(TypedDict):
    """SET_UPLINK_WIFI_INFO: Joins an upstream network as a repeater."""

    # name of the network to join; e.g. "FamilieBrandt"; truncated to 63 bytes
    SSID: str
    # password of the network; e.g. "apfelbaum-1962"; truncated to 63 bytes; secret
    PWD: str
    # type of encryption; OPEN, WPA2, WPA3 or WPA2/3; truncated to 63 bytes
    ENCRYPT: str
    # cipher of WPA; NONE or AES; truncated to 63 bytes
    WPACypher: str
    # cipher of WPA2; NONE or AES; truncated to 63 bytes
    WPA2Cypher: str
    # frequency band; 2.4GHz or 5GHz; truncated to 127 bytes
    Band: str


class SetUplinkWifiInfoSuccess(TypedDict):
    """SET_UPLINK_WIFI_INFO, success: the router joined a network."""

    Status: Literal["0"]
    # name of the network that was joined; e.g. "FamilieBrandt"; at most 64 bytes
    ConnectedSSID: str


class SetUplinkWifiInfoFailure(TypedDict):
    """SET_UPLINK_WIFI_INFO, failure: another client uses the repeater."""

    Status: Literal["2"]
    FailReason: Literal["SOMEONE_USING_REPEATER"]


class SetUplinkWifiInfoFailure2(TypedDict):
    """SET_UPLINK_WIFI_INFO, failure: the device returned an undocumented result; no reply key is added."""


class SetUplinkWifiInfoFailure3(TypedDict):
    """SET_UPLINK_WIFI_INFO, failure."""

    # unchanged from the request
    SSID: NotRequired[str]
    # unchanged from the request
    PWD: NotRequired[str]
    # unchanged from the request
    ENCRYPT: NotRequired[str]
    # unchanged from the request
    WPACypher: NotRequired[str]
    # unchanged from the request
    WPA2Cypher: NotRequired[str]
    # unchanged from the request
    Band: NotRequired[str]
    Status: Literal["1"]
    # "json node null": a key is missing; "value string null": a key is present but not a string; "SET_UPLINK_WIFI_INFO_FAIL": the device could not join
    FailReason: Literal["json node null", "value string null", "SET_UPLINK_WIFI_INFO_FAIL"]


# Reply of SET_UPLINK_WIFI_INFO.
SetUplinkWifiInfoReply = Union[SetUplinkWifiInfoSuccess, SetUplinkWifiInfoFailure, SetUplinkWifiInfoFailure2, SetUplinkWifiInfoFailure3]


class SetUpnpStateRequest(TypedDict):
    """SET_UPNP_STATE: Switches UPnP."""

    # whether UPnP is on; 1 for on, 0 for off; truncated to 7 bytes
    Enable: str


class SetUpnpStateSuccess(TypedDict):
    """SET_UPNP_STATE, success: the device accepted the change."""

    Status: Literal["0"]


class SetUpnpStateFailure(TypedDict):
    """SET_UPNP_STATE, failure."""

    # unchanged from the request
    Enable: NotRequired[str]
    Status: Literal["1"]
    # "get param:enable err": the key is missing or not a string; "Set UPNP enable failed": the device refused the change
    FailReason: Literal["get param:enable err", "Set UPNP enable failed"]


# Reply of SET_UPNP_STATE.
SetUpnpStateReply = Union[SetUpnpStateSuccess, SetUpnpStateFailure]


class SetWebLoginInfoRequest(TypedDict):
    """SET_WEB_LOGIN_INFO: Sets type and password of the web login."""

    # type of web login; 0 for the account of the administrator, 1 for a separate password; truncated to 7 bytes
    WebLoginType: str
    # password of the web login; e.g. "zaun-und-tor-58"; truncated to 127 bytes; secret
    Password: str


class SetWebLoginInfoSuccess(TypedDict):
    """SET_WEB_LOGIN_INFO, success: the device accepted the change."""

    Status: Literal["0"]


class SetWebLoginInfoFailure(TypedDict):
    """SET_WEB_LOGIN_INFO, failure."""

    # unchanged from the request
    WebLoginType: NotRequired[str]
    # unchanged from the request
    Password: NotRequired[str]
    Status: Literal["1"]
    # "json node null": a key is missing; "value string null": a key is present but not a string; "set web login info failed": the device refused the change
    FailReason: Literal["json node null", "value string null", "set web login info failed"]


# Reply of SET_WEB_LOGIN_INFO.
SetWebLoginInfoReply = Union[SetWebLoginInfoSuccess, SetWebLoginInfoFailure]


class SetWebLoginTypeRequest(TypedDict):
    """SET_WEB_LOGIN_TYPE: Sets the type of web login."""

    # type of web login; 0 for the account of the administrator, 1 for a separate password; truncated to 7 bytes
    Type: str


class SetWebLoginTypeSuccess(TypedDict):
    """SET_WEB_LOGIN_TYPE, success: the device accepted the change."""

    Status: Literal["0"]


class SetWebLoginTypeFailure(TypedDict):
    """SET_WEB_LOGIN_TYPE, failure."""

    # unchanged from the request
    Type: NotRequired[str]
    Status: Literal["1"]
    # "json node null": a key is missing; "value string null": a key is present but not a string; "set web login type failed": the device refused the change
    FailReason: Literal["json node null", "value string null", "set web login type failed"]


# Reply of SET_WEB_LOGIN_TYPE.
SetWebLoginTypeReply = Union[SetWebLoginTypeSuccess, SetWebLoginTypeFailure]


class SetWifiInfoRequest(TypedDict):
    """SET_WIFI_INFO: Changes the settings of one SSID."""

    # number of the SSID, from 1; the device decides which exist
    SSIDIndex: str
    # network name; e.g. "Lindenhof"; truncated to 63 bytes
    SSID: str
    # password of the network; e.g. "apfelbaum-1962"; truncated to 63 bytes; secret
    PWD: str
    # type of encryption; OPEN, WPA2, WPA3 or WPA2/3; truncated to 7 bytes
    ENCRYPT: str
    # transmit power; whole number, in %, e.g. "100"; truncated to 63 bytes
    PowerLevel: str
    # channel that is set; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; truncated to 7 bytes
    Channel: str
    # whether the network is on; 1 for on, 0 for off; truncated to 7 bytes
    Enable: str
    # whether the name is broadcast; unchanged when absent; 1 for on, 0 for off, -1 if not given; truncated to 7 bytes
    AdvertisementEnable: NotRequired[str]
    # newest wireless standard to use; unchanged when absent; 11a, 11b, 11g, 11n, 11ac or 11ax, -1 if not given; truncated to 7 bytes
    Mode: NotRequired[str]
    # whether beamforming is on; unchanged when absent; 1 for on, 0 for off, -1 if not given; truncated to 7 bytes
    Beamforming: NotRequired[str]


class SetWifiInfoSuccess(TypedDict):
    """SET_WIFI_INFO, success: the device accepted the change."""

    # unchanged from the request
    AdvertisementEnable: NotRequired[Any]
    # unchanged from the request
    Mode: NotRequired[Any]
    # unchanged from the request
    Beamforming: NotRequired[Any]
    Status: Literal["0"]


class SetWifiInfoFailure(TypedDict):
    """SET_WIFI_INFO, failure."""

    # unchanged from the request
    SSIDIndex: NotRequired[str]
    # unchanged from the request
    SSID: NotRequired[str]
    # unchanged from the request
    PWD: NotRequired[str]
    # unchanged from the request
    ENCRYPT: NotRequired[str]
    # unchanged from the request
    PowerLevel: NotRequired[str]
    # unchanged from the request
    Channel: NotRequired[str]
    # unchanged from the request
    Enable: NotRequired[str]
    # unchanged from the request
    AdvertisementEnable: NotRequired[Any]
    # unchanged from the request
    Mode: NotRequired[Any]
    # unchanged from the request
    Beamforming: NotRequired[Any]
    Status: Literal["1"]
    # "json node null": a key is missing; "value string null": a key is present but not a string; "SET_WIFI_INFO_FAIL": the device refused the change
    FailReason: Literal["json node null", "value string null", "SET_WIFI_INFO_FAIL"]


# Reply of SET_WIFI_INFO.
SetWifiInfoReply = Union[SetWifiInfoSuccess, SetWifiInfoFailure]


class SetWifiInfoListRequestWifilist(TypedDict):
    """WIFILIST: the SSIDs; an empty list sets the switches only."""

    # number of the SSID, from 1
    SSIDIndex: str
    # network name; e.g. "Lindenhof"; truncated to 63 bytes
    SSID: str
    # password of the network; e.g. "apfelbaum-1962"; truncated to 63 bytes; secret
    PWD: str
    # type of encryption; OPEN, WPA2, WPA3 or WPA2/3; truncated to 7 bytes
    ENCRYPT: str
    # transmit power; whole number, in %, e.g. "100"; truncated to 63 bytes
    PowerLevel: str
    # channel that is set; number of the channel, 0 for automatic in a setting and for none in a report, e.g. "6"; truncated to 7 bytes
    Channel: str
    # whether the network is on; 1 for on, 0 for off; truncated to 7 bytes
    Enable: str
    # bandwidth of the channel; unchanged when absent; whole number, in MHz, e.g. "20"; truncated to 15 bytes
    Bandwidth: NotRequired[str]
    # whether the name is broadcast; unchanged when absent; 1 for on, 0 for off, -1 if not given; truncated to 7 bytes
    AdvertisementEnable: NotRequired[str]
    # newest wireless standard to use; unchanged when absent; 11a, 11b, 11g, 11n, 11ac or 11ax, -1 if not given; truncated to 7 bytes
    Mode: NotRequired[str]
    # whether beamforming is on; unchanged when absent; 1 for on, 0 for off, -1 if not given; truncated to 7 bytes
    Beamforming: NotRequired[str]


class SetWifiInfoListRequest(TypedDict):
    """SET_WIFI_INFO_LIST: Changes the settings of several SSIDs, and the two switches that all radios share."""

    # the SSIDs; an empty list sets the switches only
    WIFILIST: list[SetWifiInfoListRequestWifilist]
    # whether stations are steered between the radios; 1 for on, 0 for off; truncated to 7 bytes
    StaCtrl: str
    # whether fast roaming is on; when absent or empty, the previous value is applied again; 1 for on, 0 for off; truncated to 7 bytes
    FastRoaming: NotRequired[str]


class SetWifiInfoListSuccess(TypedDict):
    """SET_WIFI_INFO_LIST, success: the batch is accepted; it is applied after the reply, within about six seconds."""

    Status: Literal["0"]


class SetWifiInfoListFailure(TypedDict):
    """SET_WIFI_INFO_LIST, failure: the batch is accepted and applied, but it turns off a main SSID while the mesh is on."""

    # unchanged from the request
    FastRoaming: NotRequired[str]
    Status: Literal["1"]
    # 请先关闭mesh开关! (turn off the mesh switch first), encoded in GBK; at most 17 bytes
    FailReason: str


class SetWifiInfoListFailure2(TypedDict):
    """SET_WIFI_INFO_LIST, failure."""

    # unchanged from the request
    WIFILIST: NotRequired[Any]
    # unchanged from the request
    StaCtrl: NotRequired[str]
    # unchanged from the request
    FastRoaming: NotRequired[str]
    Status: Literal["1"]
    # "json node: wifilist not found": there is no list; "json node: StaCtrl not found": StaCtrl is missing or not a string; "set ssid failed": an element lacks a key, or no worker could be started
    FailReason: Literal["json node: wifilist not found", "json node: StaCtrl not found", "set ssid failed"]


# Reply of SET_WIFI_INFO_LIST.
SetWifiInfoListReply = Union[SetWifiInfoListSuccess, SetWifiInfoListFailure, SetWifiInfoListFailure2]


class SetWifiSleepScheduleRequestWIFISleepList(TypedDict):
    """WIFISleepList: the new periods; an empty list removes all."""

    # whether the period is on; 1 for on, 0 for off; truncated to 15 bytes
    Enable: str
    # start of the sleep; HH:MM, from 00:00 to 23:59, e.g. "23:30"; truncated to 31 bytes
    StartTime: str
    # end of the sleep; HH:MM, from 00:00 to 23:59, e.g. "05:45"; truncated to 31 bytes
    EndTime: str
    # days of the week; 1 (Monday) to 7, separated by commas, e.g. "1,2,3,4,7"; truncated to 31 bytes
    DaysOfWeek: str


class SetWifiSleepScheduleRequest(TypedDict):
    """SET_WIFI_SLEEP_SCHEDULE: Replaces the periods in which the Wi-Fi sleeps."""

    # the new periods; an empty list removes all
    WIFISleepList: list[SetWifiSleepScheduleRequestWIFISleepList]


class SetWifiSleepScheduleSuccess(TypedDict):
    """SET_WIFI_SLEEP_SCHEDULE, success: the device accepted all periods."""

    Status: Literal["0"]


class SetWifiSleepScheduleFailure(TypedDict):
    """SET_WIFI_SLEEP_SCHEDULE, failure."""

    Status: Literal["1"]
    # "json node: WIFISleepList not found": there is no list; any other value under the key is removed; "del all wifi timerinfo failed": the device could not remove the old periods; "parse sleep info failed": an element lacks a key; "add wifi timer failed": the device could not add a period; "set ssid failed": the device could not set an added period
    FailReason: Literal["json node: WIFISleepList not found", "del all wifi timerinfo failed", "parse sleep info failed", "add wifi timer failed", "set ssid failed"]


# Reply of SET_WIFI_SLEEP_SCHEDULE.
SetWifiSleepScheduleReply = Union[SetWifiSleepScheduleSuccess, SetWifiSleepScheduleFailure]


class SetWpsEnableRequest(TypedDict):
    """SET_WPS_ENABLE: Switches WPS."""

    # whether WPS is on: 1 for on, 0 for off; read as a decimal number, 0 if the text does not begin with one; truncated to 7 bytes
    Enable: str


class SetWpsEnableSuccess(TypedDict):
    """SET_WPS_ENABLE, success: the device accepted the change."""

    Status: Literal["0"]


class SetWpsEnableFailure(TypedDict):
    """SET_WPS_ENABLE, failure."""

    # unchanged from the request
    Enable: NotRequired[str]
    Status: Literal["1"]
    # "get param:enable err": the key is missing or not a string; "Set wps enable failed": the device refused the change
    FailReason: Literal["get param:enable err", "Set wps enable failed"]


# Reply of SET_WPS_ENABLE.
SetWpsEnableReply = Union[SetWpsEnableSuccess, SetWpsEnableFailure]


class SetWpsStateRequest(TypedDict):
    """SET_WPS_STATE: Starts or stops WPS on a radio."""

    # the radio, by its band; 2.4GHz or 5GHz; truncated to 7 bytes
    Radio: str
    # what to do with WPS; 1 to start, 0 to stop; truncated to 7 bytes
    Action: str


class SetWpsStateSuccess(TypedDict):
    """SET_WPS_STATE, success: the device accepted the change."""

    Status: Literal["0"]


class SetWpsStateFailure(TypedDict):
    """SET_WPS_STATE, failure."""

    # unchanged from the request
    Radio: NotRequired[str]
    # unchanged from the request
    Action: NotRequired[str]
    Status: Literal["1"]
    # "get radio and action err": a key is missing or not a string; "Set wps state failed": the device refused the change
    FailReason: Literal["get radio and action err", "Set wps state failed"]


# Reply of SET_WPS_STATE.
SetWpsStateReply = Union[SetWpsStateSuccess, SetWpsStateFailure]


class UpdateImmediateRequestImage(TypedDict):
    """Image: the image; nothing is started without it."""

    # URL of the image, of any length; required without Dpi and DpiHttp; e.g. "https://updates.example/hgu.img"
    UpdateUrl: NotRequired[str]


class UpdateImmediateRequest(TypedDict):
    """UPDATE_IMMEDIATE: Updates the firmware."""

    # the image; nothing is started without it
    Image: NotRequired[UpdateImmediateRequestImage]
    # rules for packet inspection, which are ignored
    Dpi: NotRequired[Any]
    # rules for the inspection of HTTP, which are ignored
    DpiHttp: NotRequired[Any]


class UpdateImmediateSuccess(TypedDict):
    """UPDATE_IMMEDIATE, success: the worker was started, there is no Image, or there is Dpi or DpiHttp."""

    Status: Literal["0"]


class UpdateImmediateFailure(TypedDict):
    """UPDATE_IMMEDIATE, failure."""

    # unchanged from the request
    Dpi: NotRequired[Any]
    # unchanged from the request
    DpiHttp: NotRequired[Any]
    Status: Literal["1"]
    # "json no UpdateUrl": without Dpi and DpiHttp: the URL of the image is missing or not a string; "url is null": without Dpi and DpiHttp: memory ran out; "dev is dowing image now": without Dpi and DpiHttp: another image is being downloaded or flashed; "failed to create down image thread": without Dpi and DpiHttp: the worker could not be started
    FailReason: Literal["json no UpdateUrl", "url is null", "dev is dowing image now", "failed to create down image thread"]


# Reply of UPDATE_IMMEDIATE.
UpdateImmediateReply = Union[UpdateImmediateSuccess, UpdateImmediateFailure]


class ReportAgentTopologyRequest(TypedDict):
    """agent-topology: The child routers with their stations, from the tree of parameters."""


class ReportAgentTopologyChildRouterChildInfo(TypedDict):
    """ChildInfo: routers attached to the child router; missing in areas with MeshInfo."""

    # MAC address of the mesh interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 32 bytes
    childMac: str


class ReportAgentTopologyChildRouterMeshInfo(TypedDict):
    """MeshInfo: links to other routers; only in an area whose code contains ARVEN, KOLM or SEDRANO."""

    # MAC address of the other router; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 32 bytes
    nexthopMAC: str
    # signal strength; whole number below 0, in dBm, e.g. "-54"; at most 16 bytes
    dbm: str
    # network interface; name of the network interface, e.g. "wlan1"; at most 24 bytes
    interface: str


class ReportAgentTopologyChildRouterChildBaseInfo(TypedDict):
    """ChildBaseInfo: stations of the child router, 32 at most; missing if there was no memory for them."""

    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; at most 32 bytes
    Mac: str
    # type of device; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; at most 32 bytes
    DevType: str
    # manufacturer of the device; e.g. "Eichhorn Computer"; at most 32 bytes
    DevFactory: str
    # always this text
    DevModle: Literal["Tessaline"]
    # host name; e.g. "workshop-pc"; at most 32 bytes
    Name: str
    # name given by the user; e.g. "Anna"; at most 32 bytes
    ByName: str
    # whether it is online; 1 for up, 0 for down; at most 8 bytes
    NetStatus: str
    # whether it has exclusive bandwidth; 1 for yes, 0 for no; at most 32 bytes
    NetMonopoly: str
    # how it is attached; cable, 2.4GHz or 5GHz; at most 32 bytes
    AccessType: str
    # whether it may reach the Internet; 1 for on, 0 for off; at most 8 bytes
    AccessEnable: str
    # current upstream rate; whole number, in kbit/s, e.g. "101"; at most 32 bytes
    UpSpeed: str
    # current downstream rate; whole number, in kbit/s, e.g. "2629"; at most 32 bytes
    DownSpeed: str
    # IP address; IPv4 address, e.g. "192.168.1.101"; at most 64 bytes
    ip: str
    # seconds since it was attached; whole number, in s, e.g. "3600"; at most 11 bytes
    AccessTime: str
    # unique identifier; MAC address without colons, e.g. "A4BB6D31075E"; at most 32 bytes
    UID: str
    # always this text
    OS: Literal["3"]
    # version of the operating system; e.g. "6.1"; at most 32 bytes
    Version: str
    # whether it is under parental control; 1 for on, 0 for off; at most 8 bytes
    GreennetProtectEnable: str
    # whether the speed limits are on; 1 for on, 0 for off; at most 8 bytes
    SpeedLimit: str
    # download limit; whole number, 0 for none, in kbit/s, e.g. "20000"; at most 16 bytes
    DownLimit: str
    # upload limit; whole number, 0 for none, in kbit/s, e.g. "0"; at most 16 bytes
    UpLimit: str


class ReportAgentTopologyChildRouter(TypedDict):
    """ChildRouter: the child routers that are up."""

    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 64 bytes
    Mac: str
    # how it reaches its parent; cable, 2.4GHz or 5GHz; at most 8 bytes
    AccessType: str
    # speed of its link to the parent; whole number, in Mbit/s, e.g. "866"; at most 16 bytes
    LinkSpeed: str
    # signal strength; whole number below 0, in dBm, e.g. "-54"; at most 8 bytes
    dbm: str
    # firmware version; e.g. "V2.4.1"; at most 32 bytes
    FWVersion: str
    # identifier of the device; MAC address without colons, e.g. "3C6AD2228140"; at most 32 bytes
    RouterDeviceID: str
    # name of the child router; e.g. "Attic"; at most 64 bytes
    Name: str
    # whether it is online; 1 for up, 0 for down; at most 8 bytes
    NetStatus: str
    # how it reaches its parent; cable, 2.4GHz or 5GHz; at most 8 bytes
    ChildRouterAccessType: str
    # current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 16 bytes
    UpSpeed: str
    # current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 16 bytes
    DownSpeed: str
    # date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes
    FWDATA: str
    # hardware version; e.g. "V1.2"; at most 16 bytes
    HWVersion: str
    # code of the operator's area; e.g. "NORTH-07"; at most 16 bytes
    AreaCode: str
    # time since it started; whole number, in s, e.g. "86400"; at most 16 bytes
    UpTime: str
    # type of device; e.g. "MAP-AX1800"; at most 32 bytes
    DeviceType: str
    # MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:41"; at most 32 bytes
    Wlan0Mac: str
    # MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:45"; at most 32 bytes
    Wlan1Mac: str
    # IP address, a second time; IPv4 address, e.g. "192.168.1.2"; at most 32 bytes
    ip: str
    # MAC address of the router that it is attached to; bytes in hexadecimal, with colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes
    ParentMacAddress: str
    # routers attached to the child router; missing in areas with MeshInfo
    ChildInfo: NotRequired[list[ReportAgentTopologyChildRouterChildInfo]]
    # links to other routers; only in an area whose code contains ARVEN, KOLM or SEDRANO
    MeshInfo: NotRequired[list[ReportAgentTopologyChildRouterMeshInfo]]
    # stations of the child router, 32 at most; missing if there was no memory for them
    ChildBaseInfo: NotRequired[list[ReportAgentTopologyChildRouterChildBaseInfo]]


class ReportAgentTopologySuccess(TypedDict):
    """agent-topology, success: the tree of parameters could be read."""

    # the child routers that are up
    ChildRouter: list[ReportAgentTopologyChildRouter]


class ReportAgentTopologyFailure(TypedDict):
    """agent-topology, failure: a parameter could not be read, or memory ran out; the result is -1."""


# Reply of agent-topology.
ReportAgentTopologyReply = Union[ReportAgentTopologySuccess, ReportAgentTopologyFailure]


class ReportHomePageRequest(TypedDict):
    """home-page: What a home page shows of the gateway."""


class ReportHomePageSuccess(TypedDict):
    """home-page, success: the device reported them."""

    Status: Literal["0"]
    # name given by the user; e.g. "Lindenhof"; at most 64 bytes
    Devname: str
    # current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 64 bytes
    UploadSpeed: str
    # current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 64 bytes
    DownloadSpeed: str
    # whether games are accelerated; 1 for on, 0 for off; at most 8 bytes
    GameSpeed: str
    # port that games use; number of a LAN port, e.g. "2"; at most 8 bytes
    GamePort: str
    # band that games use; 2.4GHz or 5GHz; at most 8 bytes
    GameBand: str
    # CPU load; whole number, in %, e.g. "26"; at most 64 bytes
    CpuRate: str
    # memory load; whole number, in %, e.g. "47"; at most 64 bytes
    MemRate: str
    # temperature of the CPU; whole number, in degrees Celsius, e.g. "54"; at most 64 bytes
    CpuTemperature: str


class ReportHomePageFailure(TypedDict):
    """home-page, failure."""

    Status: Literal["1"]
    # "get home page info failed": the device reported nothing
    FailReason: Literal["get home page info failed"]


# Reply of home-page.
ReportHomePageReply = Union[ReportHomePageSuccess, ReportHomePageFailure]


class ReportImageUpgradeRequest(TypedDict):
    """image-upgrade: Fetches the image at a URL and flashes it, as an agent does without a command."""

    # URL of the image; without one the upgrade fails; e.g. "http://127.0.0.1:8000/new.image"
    url: NotRequired[str]


class ReportImageUpgradeSuccess(TypedDict):
    """image-upgrade, success: the upgrade has been started."""

    # unchanged from the request
    url: NotRequired[str]


# Reply of image-upgrade.
ReportImageUpgradeReply = Union[ReportImageUpgradeSuccess]


class ReportMainBaseRequest(TypedDict):
    """main-base: The devices that are online, as the main router lists them."""


class ReportMainBaseMainBaseInfo(TypedDict):
    """MainBaseInfo: the devices that are online."""

    # type of device: "1" for a phone, "3" for a computer, "0" for anything else
    DevType: Literal["0", "1", "3"]
    # type of device; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; at most 32 bytes
    DevModle: str
    # only for a device whose operating system is empty
    OS: NotRequired[Literal["0"]]
    # how it is attached: "1" by cable, "2" at 2.4 GHz, "4" at 5 GHz, "0" if unknown
    AccessType: Literal["0", "1", "2", "4"]
    # "1" when it is online
    NetStatus: Literal["1", "0"]
    # the same as NetStatus
    AccessEnable: Literal["1", "0"]
    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; at most 32 bytes
    Mac: str
    # host name; e.g. "workshop-pc"; at most 32 bytes
    Name: str
    # name given by the user; e.g. "Anna"; at most 32 bytes
    ByName: str
    # always empty
    DevFactory: Literal[""]
    # time at which it was attached; Unix time, in s, e.g. "1767225600"; at most 32 bytes
    AccessTime: str
    # IP address; IPv4 address, e.g. "192.168.1.101"; at most 64 bytes
    ip: str
    # current upstream rate; decimal number with two decimals, in bytes/s, e.g. "25625.00"; at most 32 bytes
    UpSpeed: str
    # current downstream rate; decimal number with two decimals, in bytes/s, e.g. "25625.00"; at most 32 bytes
    DownSpeed: str


class ReportMainBaseSuccess(TypedDict):
    """main-base, success: the devices were counted; a count that fails is 0."""

    # the devices that are online
    MainBaseInfo: list[ReportMainBaseMainBaseInfo]


# Reply of main-base.
ReportMainBaseReply = Union[ReportMainBaseSuccess]


class ReportMainRouterRequest(TypedDict):
    """main-router: What is known of the main router."""


class ReportMainRouterSuccess(TypedDict):
    """main-router, success: the device answered at least one of the four calls; long form."""

    Status: Literal["0"]
    # "1" when the WAN is connected or connecting
    NetStatus: Literal["1", "0"]
    # type of device; e.g. "HGU-AX3000"; at most 32 bytes
    DeviceType: str
    # state of the first radio; a device may also write "up"; 1 for on, 0 for off; at most 32 bytes
    WiFiStatus1: str
    # state of the second radio, as WiFiStatus1; 1 for on, 0 for off; at most 32 bytes
    WiFiStatus2: str
    # name given by the user; e.g. "Lindenhof"; at most 64 bytes
    Name: str
    # firmware version; e.g. "V2.4.1"; at most 32 bytes
    FWVersion: str
    # IP address of the WAN; IPv4 address, e.g. "100.72.18.203"; at most 34 bytes
    ip: str
    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes
    Mac: str
    # current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 32 bytes
    UpSpeed: str
    # current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 32 bytes
    DownSpeed: str
    # network name of the first radio; e.g. "Lindenhof"; at most 32 bytes
    SSID1: str
    # network name of the second radio; e.g. "Lindenhof-5G"; at most 32 bytes
    SSID2: str
    # hardware version; e.g. "V1.2"; at most 32 bytes
    HWVersion: str
    # date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes
    FWDATA: str
    # time since the system started; whole number, in s, e.g. "86400"; at most 32 bytes
    UpTime: str
    # time since the WAN connection came up; whole number, in s, e.g. "86400"; at most 32 bytes
    WanUptime: str
    # whether the first configuration is done; 1 for yes, 0 for no; at most 128 bytes
    ConfiguerStatus: str
    # type of WAN connection; DHCP, PPPoE or Static; at most 8 bytes
    WanConMode: str
    # type of addressing on the WAN side; Dynamic or Static; at most 16 bytes
    AddressType: str
    # CPU load; whole number, in %, e.g. "26"; at most 8 bytes
    cpuusage: str
    # memory load; whole number, in %, e.g. "47"; at most 8 bytes
    ramusage: str
    # whether the firewall is on; 1 for on, 0 for off; at most 16 bytes
    FireWallEnable: str
    # always this text
    NetQuality: Literal["0"]
    # MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:21"; at most 32 bytes
    Wlan0Mac: str
    # MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:10:4F:25"; at most 32 bytes
    Wlan1Mac: str


class ReportMainRouterSuccess2(TypedDict):
    """main-router, success: the device answered at least one of the four calls; short form."""

    Status: Literal["0"]
    # "1" when the WAN is connected or connecting
    NetStatus: Literal["1", "0"]
    # type of device; e.g. "HGU-AX3000"; at most 32 bytes
    DeviceType: str
    # state of the first radio; a device may also write "up"; 1 for on, 0 for off; at most 32 bytes
    WiFiStatus1: str
    # state of the second radio, as WiFiStatus1; 1 for on, 0 for off; at most 32 bytes
    WiFiStatus2: str
    # name given by the user; e.g. "Lindenhof"; at most 64 bytes
    Name: str
    # firmware version; e.g. "V2.4.1"; at most 32 bytes
    FWVersion: str
    # IP address of the WAN; IPv4 address, e.g. "100.72.18.203"; at most 34 bytes
    ip: str
    # CPU load; whole number, in %, e.g. "26"; at most 32 bytes
    Cpu: str
    # memory load; whole number, in %, e.g. "47"; at most 32 bytes
    Memory: str
    # address of the gateway; IPv4 address, e.g. "192.168.1.1"; at most 32 bytes
    LanIp: str
    # address of the default gateway; IPv4 address, e.g. "100.72.0.1"; at most 32 bytes
    WanGateWay: str
    # DNS servers; IP addresses, separated by commas, e.g. "100.64.0.53,100.64.1.53"; at most 65 bytes
    Dns: str


class ReportMainRouterFailure(TypedDict):
    """main-router, failure."""

    Status: Literal["1"]
    # "get base info error!": the device answered none of the four calls
    FailReason: Literal["get base info error!"]


# Reply of main-router.
ReportMainRouterReply = Union[ReportMainRouterSuccess, ReportMainRouterSuccess2, ReportMainRouterFailure]


class ReportMeshRequest(TypedDict):
    """mesh: What hgagent topology draws: topology, tree of parameters and a count."""


class ReportMeshSuccess(TypedDict):
    """mesh, success: the topology was reported."""

    # the reply to GET_TSLINK_TOPOLOGY_INFO
    topology: dict[str, Any]
    # the report agent-topology
    tree: dict[str, Any]
    # g_dev_num of the plug-in, which counts the devices of the main router; missing if the plug-in does not export it
    devices: NotRequired[float]


class ReportMeshFailure(TypedDict):
    """mesh, failure: the command failed; the result is 1."""

    # the reply to GET_TSLINK_TOPOLOGY_INFO, with its failure
    topology: dict[str, Any]


# Reply of mesh.
ReportMeshReply = Union[ReportMeshSuccess, ReportMeshFailure]


class ReportStationsRequest(TypedDict):
    """stations: The stations of one router in the tree of parameters."""

    # the router in the tree of parameters; the main router unless given; path that ends with a full stop, e.g. "InternetGatewayDevice.WiFi.MultiAP.APDevice.2."
    path: NotRequired[str]


class ReportStationsMainBaseInfo(TypedDict):
    """MainBaseInfo: stations of the router, 32 at most."""

    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "A4:BB:6D:31:07:5E"; at most 32 bytes
    Mac: str
    # type of device; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; at most 32 bytes
    DevType: str
    # manufacturer of the device; e.g. "Eichhorn Computer"; at most 32 bytes
    DevFactory: str
    # always this text
    DevModle: Literal["Tessaline"]
    # host name; e.g. "workshop-pc"; at most 32 bytes
    Name: str
    # name given by the user; e.g. "Anna"; at most 32 bytes
    ByName: str
    # whether it is online; 1 for up, 0 for down; at most 8 bytes
    NetStatus: str
    # whether it has exclusive bandwidth; 1 for yes, 0 for no; at most 32 bytes
    NetMonopoly: str
    # how it is attached; cable, 2.4GHz or 5GHz; at most 32 bytes
    AccessType: str
    # whether it may reach the Internet; 1 for on, 0 for off; at most 8 bytes
    AccessEnable: str
    # current upstream rate; whole number, in kbit/s, e.g. "101"; at most 32 bytes
    UpSpeed: str
    # current downstream rate; whole number, in kbit/s, e.g. "2629"; at most 32 bytes
    DownSpeed: str
    # IP address; IPv4 address, e.g. "192.168.1.101"; at most 64 bytes
    ip: str
    # seconds since it was attached; whole number, in s, e.g. "3600"; at most 11 bytes
    AccessTime: str
    # unique identifier; MAC address without colons, e.g. "A4BB6D31075E"; at most 32 bytes
    UID: str
    # always this text
    OS: Literal["3"]
    # version of the operating system; e.g. "6.1"; at most 32 bytes
    Version: str
    # whether it is under parental control; 1 for on, 0 for off; at most 8 bytes
    GreennetProtectEnable: str
    # whether the speed limits are on; 1 for on, 0 for off; at most 8 bytes
    SpeedLimit: str
    # download limit; whole number, 0 for none, in kbit/s, e.g. "20000"; at most 16 bytes
    DownLimit: str
    # upload limit; whole number, 0 for none, in kbit/s, e.g. "0"; at most 16 bytes
    UpLimit: str


class ReportStationsSuccess(TypedDict):
    """stations, success: the report was built; an unknown router has no stations."""

    # unchanged from the request
    path: NotRequired[str]
    # stations of the router, 32 at most
    MainBaseInfo: list[ReportStationsMainBaseInfo]


class ReportStationsFailure(TypedDict):
    """stations, failure: there is no memory; the result is -1."""

    # unchanged from the request
    path: NotRequired[str]


# Reply of stations.
ReportStationsReply = Union[ReportStationsSuccess, ReportStationsFailure]


class ReportTopologyRequest(TypedDict):
    """topology: The child routers with their stations, from the relations of the topology."""


class ReportTopologyChildRouterChildInfo(TypedDict):
    """ChildInfo: routers attached to the child router; only in a mesh of type 2."""

    # MAC address of the attached router, or of its mesh interface if that is not known; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:40"; at most 32 bytes
    childMac: str


class ReportTopologyChildRouterChildBaseInfo(TypedDict):
    """ChildBaseInfo: stations of the child router; missing if the device could not report them."""

    # MAC address; six bytes in hexadecimal, separated by colons, e.g. "DA:41:7C:0E:92:B3"; at most 96 bytes
    Mac: NotRequired[str]
    # type of device; Computer, Phone, Tablet, TV, Console, Camera, Printer, Speaker or Other; at most 32 bytes
    DevType: NotRequired[str]
    # manufacturer of the device; e.g. "Eichhorn Computer"; at most 32 bytes
    DevFactory: NotRequired[str]
    # always this text
    DevModle: NotRequired[Literal["Tessaline"]]
    # host name; e.g. "workshop-pc"; at most 32 bytes
    Name: NotRequired[str]
    # name given by the user, otherwise the host name; e.g. "Anna"; at most 32 bytes
    ByName: NotRequired[str]
    # whether it is online; 1 for up, 0 for down; at most 8 bytes
    NetStatus: NotRequired[str]
    # whether it has exclusive bandwidth; 1 for yes, 0 for no; at most 32 bytes
    NetMonopoly: NotRequired[str]
    # how it is attached; cable, 2.4GHz or 5GHz; at most 32 bytes
    AccessType: NotRequired[str]
    # whether it may reach the Internet; 1 for on, 0 for off; at most 8 bytes
    AccessEnable: NotRequired[str]
    # current upstream rate; whole number, in kbit/s, e.g. "101"; at most 32 bytes
    UpSpeed: NotRequired[str]
    # current downstream rate; whole number, in kbit/s, e.g. "2629"; at most 32 bytes
    DownSpeed: NotRequired[str]
    # IP address; IPv4 address, e.g. "192.168.1.101"; at most 64 bytes
    ip: NotRequired[str]
    # signal strength; whole number below 0, in dBm, e.g. "-54"; at most 8 bytes
    dbm: NotRequired[str]
    # seconds since it was attached; if the area code contains TH_OLV, ignoring case, the Unix time at which it was attached; at most 32 bytes
    AccessTime: NotRequired[str]
    # unique identifier; MAC address without colons, e.g. "A4BB6D31075E"; at most 32 bytes
    UID: NotRequired[str]
    # always this text
    OS: NotRequired[Literal["3"]]
    # version of the operating system; e.g. "6.1"; at most 32 bytes
    Version: NotRequired[str]
    # whether it is under parental control; 1 for on, 0 for off; at most 8 bytes
    GreennetProtectEnable: NotRequired[str]
    # whether the speed limits are on; 1 for on, 0 for off; at most 8 bytes
    SpeedLimit: NotRequired[str]
    # download limit; whole number, 0 for none, in kbit/s, e.g. "20000"; at most 16 bytes
    DownLimit: NotRequired[str]
    # upload limit; whole number, 0 for none, in kbit/s, e.g. "0"; at most 16 bytes
    UpLimit: NotRequired[str]


class ReportTopologyChildRouter(TypedDict):
    """ChildRouter: the child routers; none if the mesh is off or its relations are unknown."""

    # MAC address, in the form that the device library shows to users, if there is one; six bytes in hexadecimal, separated by dashes, as on the label, e.g. "3C-6A-D2-22-81-40"; at most 64 bytes
    Mac: str
    # how it reaches its parent; cable, 2.4GHz or 5GHz; at most 8 bytes
    AccessType: str
    # speed of its link to the parent; whole number, in Mbit/s, e.g. "866"; at most 16 bytes
    LinkSpeed: str
    # signal strength; whole number below 0, in dBm, e.g. "-54"; at most 8 bytes
    dbm: str
    # identifier of the device; MAC address without colons, e.g. "3C6AD2228140"; at most 32 bytes
    RouterDeviceID: NotRequired[str]
    # name of the child router; e.g. "Attic"; at most 64 bytes
    Name: NotRequired[str]
    # whether it is online; 1 for up, 0 for down; at most 8 bytes
    NetStatus: NotRequired[str]
    # how it reaches its parent; cable, 2.4GHz or 5GHz; at most 8 bytes
    ChildRouterAccessType: NotRequired[str]
    # current upstream rate; whole number, in kbit/s, e.g. "2448"; at most 16 bytes
    UpSpeed: NotRequired[str]
    # current downstream rate; whole number, in kbit/s, e.g. "17980"; at most 16 bytes
    DownSpeed: NotRequired[str]
    # date of the firmware; YYYY-MM-DD, e.g. "2025-11-18"; at most 32 bytes
    FWDATA: NotRequired[str]
    # hardware version; e.g. "V1.2"; at most 16 bytes
    HWVersion: NotRequired[str]
    # code of the operator's area; e.g. "NORTH-07"; at most 16 bytes
    AreaCode: NotRequired[str]
    # time since it started; whole number, in s, e.g. "86400"; at most 16 bytes
    UpTime: NotRequired[str]
    # type of device; e.g. "MAP-AX1800"; at most 32 bytes
    DeviceType: NotRequired[str]
    # MAC address of the first wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:41"; at most 32 bytes
    Wlan0Mac: NotRequired[str]
    # MAC address of the second wireless interface; six bytes in hexadecimal, separated by colons, e.g. "3C:6A:D2:22:81:45"; at most 32 bytes
    Wlan1Mac: NotRequired[str]
    # firmware version, where the topology does not know it; e.g. "V2.4.1"; at most 32 bytes
    FWVersion: NotRequired[str]
    # IP address, where the topology does not know it; IPv4 address, e.g. "192.168.1.2"; at most 32 bytes
    ip: NotRequired[str]
    # MAC address of the router that it is attached to; bytes in hexadecimal, with colons, e.g. "3C:6A:D2:10:4F:20"; at most 32 bytes
    ParentMacAddress: NotRequired[str]
    # routers attached to the child router; only in a mesh of type 2
    ChildInfo: NotRequired[list[ReportTopologyChildRouterChildInfo]]
    # stations of the child router; missing if the device could not report them
    ChildBaseInfo: NotRequired[list[ReportTopologyChildRouterChildBaseInfo]]


class ReportTopologySuccess(TypedDict):
    """topology, success: the report was built."""

    # the child routers; none if the mesh is off or its relations are unknown
    ChildRouter: list[ReportTopologyChildRouter]


class ReportTopologyFailure(TypedDict):
    """topology, failure: there is no memory; the result is -1."""


# Reply of topology.
ReportTopologyReply = Union[ReportTopologySuccess, ReportTopologyFailure]


class BackgroundEndedData(TypedDict):
    """background.ended: A worker has ended."""

    # which worker: the one that applies a batch of Wi-Fi settings, or the one that fetches and flashes firmware
    worker: Literal["wifi-batch", "firmware"]


class BackgroundLostData(TypedDict):
    """background.lost: A worker was lost with its process."""

    # which worker: the one that applies a batch of Wi-Fi settings, or the one that fetches and flashes firmware
    worker: Literal["wifi-batch", "firmware"]


class BackgroundStartedData(TypedDict):
    """background.started: A worker has started."""

    # which worker: the one that applies a batch of Wi-Fi settings, or the one that fetches and flashes firmware
    worker: Literal["wifi-batch", "firmware"]


class DeviceCallData(TypedDict):
    """device.call: The plug-in has called the device library."""

    # the device function, such as "devapi_get_sn_info"
    call: str
    # the command that made the call; absent for a report, and for a worker that continues after the answer
    command: NotRequired[str]
    # what the function returned
    result: float
    # the line of the trace, with secrets masked
    text: str


class NoticeData(TypedDict):
    """notice: A notice is pushed to the app."""

    # what the app is to do, always "Push" with this plug-in
    RPCMethod: NotRequired[str]
    # the part of the system that raised it
    Plugin_Name: NotRequired[str]
    # local time of the router, such as 20260101000000
    time: NotRequired[str]
    # MD5 of Message, in hexadecimal digits
    MD5: NotRequired[str]
    # MAC address of the router
    mac: NotRequired[str]
    # the text in base64
    Message: NotRequired[str]
    # what another plug-in pushed, if it is not an object
    value: NotRequired[Any]


class PolicyRefusedData(TypedDict):
    """policy.refused: A request was refused."""

    # who sent the request, such as "user:alice"
    who: str
    # the transport of the request, such as "socket"
    way_in: str
    # the command, report, control or event pattern that was requested
    name: str
    # the rule that refuses, with its file and line
    rule: str
    # how many refusals of this client have raised no event since its last one: a client raises ten at once, and then one a second
    omitted: NotRequired[float]


class RebootBegunData(TypedDict):
    """reboot.begun: The gateway reboots."""

    # how long the reboot takes, in seconds; until then requests are refused with the code "rebooting"
    seconds: float


class RebootEndedData(TypedDict):
    """reboot.ended: The gateway is back."""


class UpdateFailedData(TypedDict):
    """update.failed: A firmware update has failed."""

    # why, in one line, as the device library has it
    reason: str


class UpdateProgressData(TypedDict):
    """update.progress: A firmware image is being fetched."""

    # the task, "firmware" with the simulated gateway
    task: str
    # how much of it is done, 0 to 100; 100 when the image is complete and verified
    percent: float


class UpdateSucceededData(TypedDict):
    """update.succeeded: A firmware image has been flashed."""

    # the version of the image
    version: str


class WorkerBackingOffData(TypedDict):
    """worker.backing-off: The service waits before it restarts the process."""

    # how often within the last minute
    crashes: float
    # how long the service waits
    seconds: float


class WorkerCrashedData(TypedDict):
    """worker.crashed: The gateway's process has crashed."""

    # the signal that ended it
    signal: NotRequired[float]
    # exit status of the process, if no signal ended it
    status: NotRequired[float]
    # the command that was running
    command: NotRequired[str]
    # how often the process has crashed since the service started
    crashes: float


class WorkerKilledData(TypedDict):
    """worker.killed: The gateway's process was killed."""

    # the command that was running
    command: NotRequired[str]
    # time limit of the command or worker, in seconds
    seconds: float


class WorkerStartedData(TypedDict):
    """worker.started: The gateway's process has started."""

    # how often the service has started it, this time included
    starts: float


Command = Literal["CHILD_HG_LOCAL_RECOVERY", "DEL_LAN_DEVICE", "GET_ADMIN_INFO", "GET_AD_BASE_INFO", "GET_AP_ALG_ABILITY", "GET_AP_MULTISERVICE_MODE", "GET_ATTACH_DEVICE_RIGHT", "GET_CHILD_ROUTER_AD_BASE_INFO", "GET_GATEWAY_NET_FAULT", "GET_GREENNET_DEVICE_LIST", "GET_GREENNET_ENABLE", "GET_GREENNET_PROTECT_PERIOD_LIST", "GET_HG_BASE_INFO", "GET_HG_DHCP_INFO", "GET_HG_GUEST_SSID", "GET_HG_LOG", "GET_HG_PPPOE_INFO", "GET_HG_REBOOT_INFO", "GET_HG_SLEEP_INFO", "GET_HG_UPLINK_STATUS", "GET_LAN_IP_INFO", "GET_LED_STATUS", "GET_MESH_STATUS", "GET_PORT_BINDING", "GET_PORT_STATISTICS", "GET_QOS_INFO", "GET_SCAN_CHANNEL_COUNT", "GET_SCAN_CHANNEL_POWER", "GET_SCAN_WIFI_SSIDLIST", "GET_SN_INFO", "GET_STA_RSSI", "GET_TSCONF_STATUS", "GET_TSLINK_TOPOLOGY_INFO", "GET_UPDATE_SCHEDULE", "GET_UPDATE_STATUS", "GET_UPNP_STATE", "GET_WEB_LOGIN_INFO", "GET_WIFI_CHANNEL_LIST", "GET_WIFI_INFO", "GET_WIFI_LIST_INFO", "GET_WIFI_SLEEP_SCHEDULE", "GET_WPS_ENABLE", "HG_GET_UPDATE_STATUS", "HG_IMAGE_DOWNLOAD", "HG_IMAGE_UPDATE", "HG_INSPECTION", "HG_LOCAL_RECOVERY", "HG_NETCONN_INSPECTION", "HG_NETCONN_OPTIMIZATION", "HG_NETQUAL_INSPECTION", "HG_NETQUAL_OPTIMIZATION", "HG_RESOURCE_INSPECTION", "HG_RESOURCE_OPTIMIZATION", "HG_SPEEDTEST_REQUEST", "HG_WIFI_CHANNEL_POWER_OPTIMIZATION", "HG_WIFI_INSPECTION", "HG_WIFI_OPTIMIZATION", "IMAGE_DOWNLOAD", "IMAGE_UPDATE", "LINK_CHECK", "PLATEFORM_UPDATE_IMMEDIATE", "QUERY_SYSTEM_INFO", "QUERY_TSLINK_CONFIG_STATUS", "QUERY_WAN_INFO", "QUERY_WAN_NUM", "RESPONSE_ROUTER_VERSION", "RP_CHILD_HG_REBOOT", "RP_HG_REBOOT", "SET_ADMIN_INFO", "SET_AD_BASE_INFO", "SET_AP_ALG_ABILITY", "SET_AP_MULTISERVICE_MODE", "SET_ATTACH_DEVICE_RIGHT", "SET_CHILD_ROUTERAD_BASE_INFO", "SET_CHILD_ROUTER_HG_BASE_INFO", "SET_FIREWALL_SWITCH", "SET_GREENNET_DEVICE_LIST", "SET_GREENNET_ENABLE", "SET_GREENNET_NOTIFY_ENABLE", "SET_GREENNET_PROTECT_PERIOD_LIST", "SET_HG_BASE_INFO", "SET_HG_DHCP_INFO", "SET_HG_GUEST_SSID", "SET_HG_PPPOE_INFO", "SET_HG_REBOOT_INFO", "SET_HG_SLEEP_INFO", "SET_KAA_HEARTBEAT", "SET_LAN_IP_INFO", "SET_LED_STATUS", "SET_MESH_PAIR", "SET_MESH_STATUS", "SET_PORT_BINDING", "SET_QOS_APP_INFO", "SET_QOS_CLASSIFICATION_INFO", "SET_QOS_ENABLE", "SET_ROUTE_WAN_INFO", "SET_TSLINK_CONFIG_STATUS", "SET_TSLINK_SSID", "SET_UPDATE_SCHEDULE", "SET_UPLINK_WIFI_INFO", "SET_UPNP_STATE", "SET_WEB_LOGIN_INFO", "SET_WEB_LOGIN_TYPE", "SET_WIFI_INFO", "SET_WIFI_INFO_LIST", "SET_WIFI_SLEEP_SCHEDULE", "SET_WPS_ENABLE", "SET_WPS_STATE", "UPDATE_IMMEDIATE"]
Report = Literal["agent-topology", "home-page", "image-upgrade", "main-base", "main-router", "mesh", "stations", "topology"]
EventName = Literal["background.ended", "background.lost", "background.started", "device.call", "notice", "policy.refused", "reboot.begun", "reboot.ended", "update.failed", "update.progress", "update.succeeded", "worker.backing-off", "worker.crashed", "worker.killed", "worker.started"]
Code = Literal["bad-request", "denied", "too-large", "rate-limited", "outcome-unknown", "busy", "rebooting", "timeout"]


class Failed(TypedDict):
    """Why there is no result."""

    # for people
    error: str
    # for programs
    code: Code
    # the rule of the policy that refuses, with its place
    rule: NotRequired[str]


class FaultKinds(TypedDict):
    """What can be part of a fault plan."""

    form: str
    functions: list[str]


class ControlSettings(TypedDict):
    """The reply to the control "show" of the simulated gateway."""

    scenario: str
    # the scenarios that can be loaded
    scenarios: list[str]
    # the fault plan, with the calls that are left
    faults: list[str]
    fault_kinds: FaultKinds
    # the clock as set; None: it follows the machine's
    clock: Union[str, None]
    # time of the clock, in UTC
    time: str
    trace: bool


class _EventBackgroundEnded(TypedDict):
    event: Literal["background.ended"]
    data: BackgroundEndedData


class _EventBackgroundLost(TypedDict):
    event: Literal["background.lost"]
    data: BackgroundLostData


class _EventBackgroundStarted(TypedDict):
    event: Literal["background.started"]
    data: BackgroundStartedData


class _EventDeviceCall(TypedDict):
    event: Literal["device.call"]
    data: DeviceCallData


class _EventNotice(TypedDict):
    event: Literal["notice"]
    data: NoticeData


class _EventPolicyRefused(TypedDict):
    event: Literal["policy.refused"]
    data: PolicyRefusedData


class _EventRebootBegun(TypedDict):
    event: Literal["reboot.begun"]
    data: RebootBegunData


class _EventRebootEnded(TypedDict):
    event: Literal["reboot.ended"]
    data: RebootEndedData


class _EventUpdateFailed(TypedDict):
    event: Literal["update.failed"]
    data: UpdateFailedData


class _EventUpdateProgress(TypedDict):
    event: Literal["update.progress"]
    data: UpdateProgressData


class _EventUpdateSucceeded(TypedDict):
    event: Literal["update.succeeded"]
    data: UpdateSucceededData


class _EventWorkerBackingOff(TypedDict):
    event: Literal["worker.backing-off"]
    data: WorkerBackingOffData


class _EventWorkerCrashed(TypedDict):
    event: Literal["worker.crashed"]
    data: WorkerCrashedData


class _EventWorkerKilled(TypedDict):
    event: Literal["worker.killed"]
    data: WorkerKilledData


class _EventWorkerStarted(TypedDict):
    event: Literal["worker.started"]
    data: WorkerStartedData


Event = Union[_EventBackgroundEnded, _EventBackgroundLost, _EventBackgroundStarted, _EventDeviceCall, _EventNotice, _EventPolicyRefused, _EventRebootBegun, _EventRebootEnded, _EventUpdateFailed, _EventUpdateProgress, _EventUpdateSucceeded, _EventWorkerBackingOff, _EventWorkerCrashed, _EventWorkerKilled, _EventWorkerStarted]


class CallCommand(Protocol):
    """A function that carries out a command and returns its reply."""

    @overload
    def __call__(self, name: Literal["CHILD_HG_LOCAL_RECOVERY"], params: ChildHgLocalRecoveryRequest) -> ChildHgLocalRecoveryReply: ...

    @overload
    def __call__(self, name: Literal["DEL_LAN_DEVICE"], params: DelLanDeviceRequest) -> DelLanDeviceReply: ...

    @overload
    def __call__(self, name: Literal["GET_ADMIN_INFO"], params: GetAdminInfoRequest) -> GetAdminInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_AD_BASE_INFO"], params: GetAdBaseInfoRequest) -> GetAdBaseInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_AP_ALG_ABILITY"], params: GetApAlgAbilityRequest) -> GetApAlgAbilityReply: ...

    @overload
    def __call__(self, name: Literal["GET_AP_MULTISERVICE_MODE"], params: GetApMultiserviceModeRequest) -> GetApMultiserviceModeReply: ...

    @overload
    def __call__(self, name: Literal["GET_ATTACH_DEVICE_RIGHT"], params: GetAttachDeviceRightRequest) -> GetAttachDeviceRightReply: ...

    @overload
    def __call__(self, name: Literal["GET_CHILD_ROUTER_AD_BASE_INFO"], params: GetChildRouterAdBaseInfoRequest) -> GetChildRouterAdBaseInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_GATEWAY_NET_FAULT"], params: GetGatewayNetFaultRequest) -> GetGatewayNetFaultReply: ...

    @overload
    def __call__(self, name: Literal["GET_GREENNET_DEVICE_LIST"], params: GetGreennetDeviceListRequest) -> GetGreennetDeviceListReply: ...

    @overload
    def __call__(self, name: Literal["GET_GREENNET_ENABLE"], params: GetGreennetEnableRequest) -> GetGreennetEnableReply: ...

    @overload
    def __call__(self, name: Literal["GET_GREENNET_PROTECT_PERIOD_LIST"], params: GetGreennetProtectPeriodListRequest) -> GetGreennetProtectPeriodListReply: ...

    @overload
    def __call__(self, name: Literal["GET_HG_BASE_INFO"], params: GetHgBaseInfoRequest) -> GetHgBaseInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_HG_DHCP_INFO"], params: GetHgDhcpInfoRequest) -> GetHgDhcpInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_HG_GUEST_SSID"], params: GetHgGuestSsidRequest) -> GetHgGuestSsidReply: ...

    @overload
    def __call__(self, name: Literal["GET_HG_LOG"], params: GetHgLogRequest) -> GetHgLogReply: ...

    @overload
    def __call__(self, name: Literal["GET_HG_PPPOE_INFO"], params: GetHgPppoeInfoRequest) -> GetHgPppoeInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_HG_REBOOT_INFO"], params: GetHgRebootInfoRequest) -> GetHgRebootInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_HG_SLEEP_INFO"], params: GetHgSleepInfoRequest) -> GetHgSleepInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_HG_UPLINK_STATUS"], params: GetHgUplinkStatusRequest) -> GetHgUplinkStatusReply: ...

    @overload
    def __call__(self, name: Literal["GET_LAN_IP_INFO"], params: GetLanIpInfoRequest) -> GetLanIpInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_LED_STATUS"], params: GetLedStatusRequest) -> GetLedStatusReply: ...

    @overload
    def __call__(self, name: Literal["GET_MESH_STATUS"], params: GetMeshStatusRequest) -> GetMeshStatusReply: ...

    @overload
    def __call__(self, name: Literal["GET_PORT_BINDING"], params: GetPortBindingRequest) -> GetPortBindingReply: ...

    @overload
    def __call__(self, name: Literal["GET_PORT_STATISTICS"], params: GetPortStatisticsRequest) -> GetPortStatisticsReply: ...

    @overload
    def __call__(self, name: Literal["GET_QOS_INFO"], params: GetQosInfoRequest) -> GetQosInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_SCAN_CHANNEL_COUNT"], params: GetScanChannelCountRequest) -> GetScanChannelCountReply: ...

    @overload
    def __call__(self, name: Literal["GET_SCAN_CHANNEL_POWER"], params: GetScanChannelPowerRequest) -> GetScanChannelPowerReply: ...

    @overload
    def __call__(self, name: Literal["GET_SCAN_WIFI_SSIDLIST"], params: GetScanWifiSsidlistRequest) -> GetScanWifiSsidlistReply: ...

    @overload
    def __call__(self, name: Literal["GET_SN_INFO"], params: GetSnInfoRequest) -> GetSnInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_STA_RSSI"], params: GetStaRssiRequest) -> GetStaRssiReply: ...

    @overload
    def __call__(self, name: Literal["GET_TSCONF_STATUS"], params: GetTsconfStatusRequest) -> GetTsconfStatusReply: ...

    @overload
    def __call__(self, name: Literal["GET_TSLINK_TOPOLOGY_INFO"], params: GetTslinkTopologyInfoRequest) -> GetTslinkTopologyInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_UPDATE_SCHEDULE"], params: GetUpdateScheduleRequest) -> GetUpdateScheduleReply: ...

    @overload
    def __call__(self, name: Literal["GET_UPDATE_STATUS"], params: GetUpdateStatusRequest) -> GetUpdateStatusReply: ...

    @overload
    def __call__(self, name: Literal["GET_UPNP_STATE"], params: GetUpnpStateRequest) -> GetUpnpStateReply: ...

    @overload
    def __call__(self, name: Literal["GET_WEB_LOGIN_INFO"], params: GetWebLoginInfoRequest) -> GetWebLoginInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_WIFI_CHANNEL_LIST"], params: GetWifiChannelListRequest) -> GetWifiChannelListReply: ...

    @overload
    def __call__(self, name: Literal["GET_WIFI_INFO"], params: GetWifiInfoRequest) -> GetWifiInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_WIFI_LIST_INFO"], params: GetWifiListInfoRequest) -> GetWifiListInfoReply: ...

    @overload
    def __call__(self, name: Literal["GET_WIFI_SLEEP_SCHEDULE"], params: GetWifiSleepScheduleRequest) -> GetWifiSleepScheduleReply: ...

    @overload
    def __call__(self, name: Literal["GET_WPS_ENABLE"], params: GetWpsEnableRequest) -> GetWpsEnableReply: ...

    @overload
    def __call__(self, name: Literal["HG_GET_UPDATE_STATUS"], params: HgGetUpdateStatusRequest) -> HgGetUpdateStatusReply: ...

    @overload
    def __call__(self, name: Literal["HG_IMAGE_DOWNLOAD"], params: HgImageDownloadRequest) -> HgImageDownloadReply: ...

    @overload
    def __call__(self, name: Literal["HG_IMAGE_UPDATE"], params: HgImageUpdateRequest) -> HgImageUpdateReply: ...

    @overload
    def __call__(self, name: Literal["HG_INSPECTION"], params: HgInspectionRequest) -> HgInspectionReply: ...

    @overload
    def __call__(self, name: Literal["HG_LOCAL_RECOVERY"], params: HgLocalRecoveryRequest) -> HgLocalRecoveryReply: ...

    @overload
    def __call__(self, name: Literal["HG_NETCONN_INSPECTION"], params: HgNetconnInspectionRequest) -> HgNetconnInspectionReply: ...

    @overload
    def __call__(self, name: Literal["HG_NETCONN_OPTIMIZATION"], params: HgNetconnOptimizationRequest) -> HgNetconnOptimizationReply: ...

    @overload
    def __call__(self, name: Literal["HG_NETQUAL_INSPECTION"], params: HgNetqualInspectionRequest) -> HgNetqualInspectionReply: ...

    @overload
    def __call__(self, name: Literal["HG_NETQUAL_OPTIMIZATION"], params: HgNetqualOptimizationRequest) -> HgNetqualOptimizationReply: ...

    @overload
    def __call__(self, name: Literal["HG_RESOURCE_INSPECTION"], params: HgResourceInspectionRequest) -> HgResourceInspectionReply: ...

    @overload
    def __call__(self, name: Literal["HG_RESOURCE_OPTIMIZATION"], params: HgResourceOptimizationRequest) -> HgResourceOptimizationReply: ...

    @overload
    def __call__(self, name: Literal["HG_SPEEDTEST_REQUEST"], params: HgSpeedtestRequestRequest) -> HgSpeedtestRequestReply: ...

    @overload
    def __call__(self, name: Literal["HG_WIFI_CHANNEL_POWER_OPTIMIZATION"], params: HgWifiChannelPowerOptimizationRequest) -> HgWifiChannelPowerOptimizationReply: ...

    @overload
    def __call__(self, name: Literal["HG_WIFI_INSPECTION"], params: HgWifiInspectionRequest) -> HgWifiInspectionReply: ...

    @overload
    def __call__(self, name: Literal["HG_WIFI_OPTIMIZATION"], params: HgWifiOptimizationRequest) -> HgWifiOptimizationReply: ...

    @overload
    def __call__(self, name: Literal["IMAGE_DOWNLOAD"], params: ImageDownloadRequest) -> ImageDownloadReply: ...

    @overload
    def __call__(self, name: Literal["IMAGE_UPDATE"], params: ImageUpdateRequest) -> ImageUpdateReply: ...

    @overload
    def __call__(self, name: Literal["LINK_CHECK"], params: LinkCheckRequest) -> LinkCheckReply: ...

    @overload
    def __call__(self, name: Literal["PLATEFORM_UPDATE_IMMEDIATE"], params: PlateformUpdateImmediateRequest) -> PlateformUpdateImmediateReply: ...

    @overload
    def __call__(self, name: Literal["QUERY_SYSTEM_INFO"], params: QuerySystemInfoRequest) -> QuerySystemInfoReply: ...

    @overload
    def __call__(self, name: Literal["QUERY_TSLINK_CONFIG_STATUS"], params: QueryTslinkConfigStatusRequest) -> QueryTslinkConfigStatusReply: ...

    @overload
    def __call__(self, name: Literal["QUERY_WAN_INFO"], params: QueryWanInfoRequest) -> QueryWanInfoReply: ...

    @overload
    def __call__(self, name: Literal["QUERY_WAN_NUM"], params: QueryWanNumRequest) -> QueryWanNumReply: ...

    @overload
    def __call__(self, name: Literal["RESPONSE_ROUTER_VERSION"], params: ResponseRouterVersionRequest) -> ResponseRouterVersionReply: ...

    @overload
    def __call__(self, name: Literal["RP_CHILD_HG_REBOOT"], params: RpChildHgRebootRequest) -> RpChildHgRebootReply: ...

    @overload
    def __call__(self, name: Literal["RP_HG_REBOOT"], params: RpHgRebootRequest) -> RpHgRebootReply: ...

    @overload
    def __call__(self, name: Literal["SET_ADMIN_INFO"], params: SetAdminInfoRequest) -> SetAdminInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_AD_BASE_INFO"], params: SetAdBaseInfoRequest) -> SetAdBaseInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_AP_ALG_ABILITY"], params: SetApAlgAbilityRequest) -> SetApAlgAbilityReply: ...

    @overload
    def __call__(self, name: Literal["SET_AP_MULTISERVICE_MODE"], params: SetApMultiserviceModeRequest) -> SetApMultiserviceModeReply: ...

    @overload
    def __call__(self, name: Literal["SET_ATTACH_DEVICE_RIGHT"], params: SetAttachDeviceRightRequest) -> SetAttachDeviceRightReply: ...

    @overload
    def __call__(self, name: Literal["SET_CHILD_ROUTERAD_BASE_INFO"], params: SetChildRouteradBaseInfoRequest) -> SetChildRouteradBaseInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_CHILD_ROUTER_HG_BASE_INFO"], params: SetChildRouterHgBaseInfoRequest) -> SetChildRouterHgBaseInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_FIREWALL_SWITCH"], params: SetFirewallSwitchRequest) -> SetFirewallSwitchReply: ...

    @overload
    def __call__(self, name: Literal["SET_GREENNET_DEVICE_LIST"], params: SetGreennetDeviceListRequest) -> SetGreennetDeviceListReply: ...

    @overload
    def __call__(self, name: Literal["SET_GREENNET_ENABLE"], params: SetGreennetEnableRequest) -> SetGreennetEnableReply: ...

    @overload
    def __call__(self, name: Literal["SET_GREENNET_NOTIFY_ENABLE"], params: SetGreennetNotifyEnableRequest) -> SetGreennetNotifyEnableReply: ...

    @overload
    def __call__(self, name: Literal["SET_GREENNET_PROTECT_PERIOD_LIST"], params: SetGreennetProtectPeriodListRequest) -> SetGreennetProtectPeriodListReply: ...

    @overload
    def __call__(self, name: Literal["SET_HG_BASE_INFO"], params: SetHgBaseInfoRequest) -> SetHgBaseInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_HG_DHCP_INFO"], params: SetHgDhcpInfoRequest) -> SetHgDhcpInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_HG_GUEST_SSID"], params: SetHgGuestSsidRequest) -> SetHgGuestSsidReply: ...

    @overload
    def __call__(self, name: Literal["SET_HG_PPPOE_INFO"], params: SetHgPppoeInfoRequest) -> SetHgPppoeInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_HG_REBOOT_INFO"], params: SetHgRebootInfoRequest) -> SetHgRebootInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_HG_SLEEP_INFO"], params: SetHgSleepInfoRequest) -> SetHgSleepInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_KAA_HEARTBEAT"], params: SetKaaHeartbeatRequest) -> SetKaaHeartbeatReply: ...

    @overload
    def __call__(self, name: Literal["SET_LAN_IP_INFO"], params: SetLanIpInfoRequest) -> SetLanIpInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_LED_STATUS"], params: SetLedStatusRequest) -> SetLedStatusReply: ...

    @overload
    def __call__(self, name: Literal["SET_MESH_PAIR"], params: SetMeshPairRequest) -> SetMeshPairReply: ...

    @overload
    def __call__(self, name: Literal["SET_MESH_STATUS"], params: SetMeshStatusRequest) -> SetMeshStatusReply: ...

    @overload
    def __call__(self, name: Literal["SET_PORT_BINDING"], params: SetPortBindingRequest) -> SetPortBindingReply: ...

    @overload
    def __call__(self, name: Literal["SET_QOS_APP_INFO"], params: SetQosAppInfoRequest) -> SetQosAppInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_QOS_CLASSIFICATION_INFO"], params: SetQosClassificationInfoRequest) -> SetQosClassificationInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_QOS_ENABLE"], params: SetQosEnableRequest) -> SetQosEnableReply: ...

    @overload
    def __call__(self, name: Literal["SET_ROUTE_WAN_INFO"], params: SetRouteWanInfoRequest) -> SetRouteWanInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_TSLINK_CONFIG_STATUS"], params: SetTslinkConfigStatusRequest) -> SetTslinkConfigStatusReply: ...

    @overload
    def __call__(self, name: Literal["SET_TSLINK_SSID"], params: SetTslinkSsidRequest) -> SetTslinkSsidReply: ...

    @overload
    def __call__(self, name: Literal["SET_UPDATE_SCHEDULE"], params: SetUpdateScheduleRequest) -> SetUpdateScheduleReply: ...

    @overload
    def __call__(self, name: Literal["SET_UPLINK_WIFI_INFO"], params: SetUplinkWifiInfoRequest) -> SetUplinkWifiInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_UPNP_STATE"], params: SetUpnpStateRequest) -> SetUpnpStateReply: ...

    @overload
    def __call__(self, name: Literal["SET_WEB_LOGIN_INFO"], params: SetWebLoginInfoRequest) -> SetWebLoginInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_WEB_LOGIN_TYPE"], params: SetWebLoginTypeRequest) -> SetWebLoginTypeReply: ...

    @overload
    def __call__(self, name: Literal["SET_WIFI_INFO"], params: SetWifiInfoRequest) -> SetWifiInfoReply: ...

    @overload
    def __call__(self, name: Literal["SET_WIFI_INFO_LIST"], params: SetWifiInfoListRequest) -> SetWifiInfoListReply: ...

    @overload
    def __call__(self, name: Literal["SET_WIFI_SLEEP_SCHEDULE"], params: SetWifiSleepScheduleRequest) -> SetWifiSleepScheduleReply: ...

    @overload
    def __call__(self, name: Literal["SET_WPS_ENABLE"], params: SetWpsEnableRequest) -> SetWpsEnableReply: ...

    @overload
    def __call__(self, name: Literal["SET_WPS_STATE"], params: SetWpsStateRequest) -> SetWpsStateReply: ...

    @overload
    def __call__(self, name: Literal["UPDATE_IMMEDIATE"], params: UpdateImmediateRequest) -> UpdateImmediateReply: ...


class CallReport(Protocol):
    """A function that requests a report."""

    @overload
    def __call__(self, name: Literal["agent-topology"], params: ReportAgentTopologyRequest) -> ReportAgentTopologyReply: ...

    @overload
    def __call__(self, name: Literal["home-page"], params: ReportHomePageRequest) -> ReportHomePageReply: ...

    @overload
    def __call__(self, name: Literal["image-upgrade"], params: ReportImageUpgradeRequest) -> ReportImageUpgradeReply: ...

    @overload
    def __call__(self, name: Literal["main-base"], params: ReportMainBaseRequest) -> ReportMainBaseReply: ...

    @overload
    def __call__(self, name: Literal["main-router"], params: ReportMainRouterRequest) -> ReportMainRouterReply: ...

    @overload
    def __call__(self, name: Literal["mesh"], params: ReportMeshRequest) -> ReportMeshReply: ...

    @overload
    def __call__(self, name: Literal["stations"], params: ReportStationsRequest) -> ReportStationsReply: ...

    @overload
    def __call__(self, name: Literal["topology"], params: ReportTopologyRequest) -> ReportTopologyReply: ...

/* SPDX-License-Identifier: MIT */
/*
 * The functions that the router's device-access library provides to the plug-in.
 *
 * A router manufacturer implements these functions for its hardware. They are undefined symbols in
 * the plug-in and bound when it is loaded, so the device-access library has to be loaded first,
 * with its symbols visible to the plug-in (dlopen() with RTLD_GLOBAL).
 *
 * Conventions
 *
 * Results: 0 is success. Which other results are failures is stated for each function; unless
 * stated otherwise, what a failed query was to fill is not read. If the result is ignored, the
 * record is used as the call leaves it, and its contents are reported: a call that fails should not
 * change its record.
 *
 * Not supported: every function has to be defined. A function that the device does not support
 * returns -1 and writes nothing. To the plug-in that is a failure like any other; "hgagent
 * conformance" distinguishes the two. -1 is also the result if a requested entry, such as a period,
 * does not exist.
 *
 * Records: a function exchanges a record, a plain structure at the address that it is given. The
 * record belongs to the plug-in and has been zeroed; for a query, only the fields that select an
 * entry have been set. The library must not keep the address.
 *
 * Texts: every char field contains a text that ends in NUL within the field. The plug-in truncates
 * longer values from a request to the field's width minus one, and does not read beyond the field
 * if the library omits the NUL. A field without a value contains the text "NULL". The bytes are
 * passed through unchanged; agents expect UTF-8.
 *
 * Forms: units and forms of texts that are not in quotes are those of the simulated gateway, and a
 * library may have others: the plug-in passes the text on. docs/device_access.md has the forms of
 * all fields.
 *
 * Layout: the offsets and sizes are fixed and asserted at the end of the header. Integers are
 * signed, in the processor's byte order, and 32 bits wide, except for the channels of
 * WifiChannelList, which have 16.
 *
 * Threads: commands run on the agent's threads and on the plug-in's workers, so every function may
 * be called at any time from several threads.
 *
 * Programs: on a router, system() runs programs. The reference agent replaces it: it runs nothing
 * and returns -1.
 *
 * This file is generated from protocol/device by protocol/generate.py.
 */
#ifndef SMART_ROUTER_SERVICE_DEVICE_ACCESS_H
#define SMART_ROUTER_SERVICE_DEVICE_ACCESS_H

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The version of this interface. With it, an agent can detect a library that was built for another
 * major version before it calls anything. */
#define DEVICE_ACCESS_VERSION_MAJOR 1 /* layouts of records, prototypes, meanings */
#define DEVICE_ACCESS_VERSION_MINOR 0 /* additions */
/* Both in one number, as returned by device_access_version(). */
#define DEVICE_ACCESS_VERSION (DEVICE_ACCESS_VERSION_MAJOR * 65536 + DEVICE_ACCESS_VERSION_MINOR)

/* The only optional function: it returns DEVICE_ACCESS_VERSION. A library without it is assumed to
 * be compatible. The plug-in does not call it; "hgagent" refuses a library of another major
 * version. */
int32_t device_access_version(void);

/* ---- Device identity ------------------------------------------------------------------------ */

/* Serial number and type of the router. */
typedef struct SnInfo {
    char MAC[64];         /* MAC address that serves as the serial number */
    char tslinkstatus[8]; /* state of the mesh link layer, 1 or 0 */
    char DeviceType[256]; /* type of device, as the platform knows it */
} SnInfo;

/* Fills info. Any result other than 0 is a failure, after which info is not read. */
int32_t devapi_get_sn_info(SnInfo *info);

/* Description and capabilities of the router. */
typedef struct SystemInfo {
    char SWVersion[64];       /* software version */
    char HDVersion[64];       /* hardware version */
    char ProductCLass[64];    /* product class */
    char CPUClass[64];        /* processor */
    char DEVType[64];         /* type of device */
    char DEVType1[64];        /* second type of device, for a device with two types */
    char Capability[64];      /* list of capabilities */
    char Card[64];            /* type of smart card, if any */
    char UPLink[64];          /* type of uplink */
    char Cardno[64];          /* number of the smart card */
    char IPV6[64];            /* whether IPv6 is supported, 1 or 0 */
    char VLANbind[64];        /* whether ports can be bound to VLANs, 1 or 0 */
    char LED[64];             /* whether the LEDs can be switched, 1 or 0 */
    char NFC[64];             /* whether there is an NFC tag, 1 or 0 */
    char VLANCapability[192]; /* types of VLAN handling that are supported */
} SystemInfo;

/* Fills info. Any result other than 0 is a failure, after which info is not read. */
int32_t devapi_get_system_info(SystemInfo *info);

/* ---- Gateway settings ----------------------------------------------------------------------- */

/* Identity and state of the gateway. */
typedef struct HgBaseInfo {
    char Name[64];                    /* name given by the user */
    char Mac[32];                     /* MAC address */
    char NetStatus[16];               /* state of the Internet connection, 1 or 0 */
    char UpSpeed[32];                 /* current upstream rate, kbit/s */
    char DownSpeed[32];               /* current downstream rate, kbit/s */
    char WiFiStatus1[32];             /* state of the first radio; "up" or "1" when it is on */
    char WiFiStatus2[32];             /* state of the second radio; "up" or "1" when it is on */
    char SSID1[32];                   /* network name of the first radio */
    char SSID2[32];                   /* network name of the second radio */
    char Wlan1Mac[32];                /* MAC address of the second wireless interface */
    char Wlan0Mac[32];                /* MAC address of the first wireless interface */
    char ip[32];                      /* IP address of the gateway */
    char HWVersion[32];               /* hardware version */
    char FWVersion[32];               /* firmware version */
    char FWDATA[32];                  /* date of the firmware, YYYY-MM-DD */
    char UpTime[32];                  /* time since the system started, s */
    char WanUptime[32];               /* time since the WAN connection came up, s */
    char DeviceType[32];              /* type of device */
    char AreaCode[32];                /* code of the operator's area */
    char AddressType[16];             /* type of addressing on the WAN side */
    char Cpu[8];                      /* CPU load, % */
    char QQGameAcceleratorEnable[16]; /* whether the game accelerator is on, 1 or 0 */
    char QosAcceleratorEnable[16];    /* whether the QoS accelerator is on, 1 or 0 */
    char FireWallEnable[16];          /* whether the firewall is on, 1 or 0 */
    char LedLight[8];                 /* brightness of the LEDs, % */
    char LedSwitch[8];                /* whether the LEDs are on, 1 or 0 */
    char Memory[8];                   /* memory load, % */
    char WanLinkMode[8];              /* type of WAN connection */
    char ConfiguerStatus[128];        /* whether the first configuration is done, 1 or 0 */
} HgBaseInfo;

/* Fills info. For GET_TSLINK_TOPOLOGY_INFO any result other than 0 is a failure, after which info
 * is not read; for GET_HG_BASE_INFO and json_get_main_router_info any result other than 0 is a
 * failure, after which info is taken as empty. */
int32_t devapi_get_hg_base_info(HgBaseInfo *info);

/* Sets the Name of the gateway; all other fields are empty and have no meaning. Any result other
 * than 0 is a failure. */
int32_t devapi_set_hg_base_info(const HgBaseInfo *info);

/* LAN IP settings. */
typedef struct LanIpInfo {
    char GatewayLanIP[32]; /* address of the gateway */
    char SubnetMask[32];   /* subnet mask */
    char StartIp[32];      /* first address of the DHCP pool */
    char EndIp[32];        /* last address of the DHCP pool */
} LanIpInfo;

/* Fills info. For GET_LAN_IP_INFO any result other than 0 is a failure, after which info is not
 * read; for GET_HG_BASE_INFO and json_get_main_router_info any result other than 0 is a failure,
 * after which info is taken as empty. */
int32_t devapi_get_lan_ip_info(LanIpInfo *info);

/* A setting followed by the reason for a refusal. */
typedef struct LanIpSetting {
    LanIpInfo info;      /* the setting */
    char FailReason[64]; /* reason for a failure, set by the device; empty if it gives none */
} LanIpSetting;

/* Applies the settings. Only -1 is a failure. */
int32_t devapi_set_lan_ip_info(LanIpSetting *setting);

/* Addresses of the WAN side. */
typedef struct WanIpInfo {
    char ip[34];              /* IP address */
    char Dns[65];             /* DNS servers */
    char WanGateWay[32];      /* address of the default gateway */
    char ConnectionState[32]; /* "Connected", "Connecting" or another text */
} WanIpInfo;

/* Fills info. Any result other than 0 is a failure, after which info is taken as empty. */
int32_t devapi_get_wan_ip_info(WanIpInfo *info);

/* State of the gateway for a home page. */
typedef struct HomePageInfo {
    char Devname[64];        /* name given by the user */
    char UploadSpeed[64];    /* current upstream rate, kbit/s */
    char DownloadSpeed[64];  /* current downstream rate, kbit/s */
    char GameSpeed[8];       /* whether games are accelerated, 1 or 0 */
    char GamePort[8];        /* port for games */
    char GameBand[8];        /* band for games */
    char CpuRate[64];        /* CPU load, % */
    char MemRate[64];        /* memory load, % */
    char CpuTemperature[64]; /* temperature of the CPU, degrees Celsius */
} HomePageInfo;

/* Fills info. Any result other than 0 is a failure, after which info is not read. */
int32_t devapi_get_home_page_info(HomePageInfo *info);

/* The DHCP server of the LAN side. */
typedef struct DhcpInfo {
    char Enable[16];     /* whether the server is on, 1 or 0 */
    char IPAddress[64];  /* address of the server */
    char SubNetMask[64]; /* subnet mask */
    char GateWay[64];    /* gateway address that the server hands out */
} DhcpInfo;

/* Fills info. Any result other than 0 is a failure, after which info is not read. */
int32_t devapi_get_hg_dhcp_info(DhcpInfo *info);

/* A setting followed by the reason for a refusal. */
typedef struct DhcpSetting {
    DhcpInfo info;       /* the setting */
    char FailReason[64]; /* reason for a failure, set by the device; empty if it gives none */
} DhcpSetting;

/* Switches the DHCP server on or off, as given by Enable; the address fields are empty and have no
 * meaning. Only -1 is a failure. */
int32_t devapi_set_hg_dhcp_info(DhcpSetting *setting);

/* The PPPoE account. */
typedef struct PppoeInfo {
    char Account[64];  /* name of the account */
    char Password[64]; /* password of the account */
    char Enable[16];   /* "1" if the gateway connects by PPPoE */
} PppoeInfo;

/* Fills info. Any result other than 0 is a failure, after which info is not read. */
int32_t devapi_get_hg_pppoe_info(PppoeInfo *info);

/* A setting followed by the reason for a refusal. */
typedef struct PppoeSetting {
    PppoeInfo info;      /* the setting */
    char FailReason[64]; /* reason for a failure, set by the device; empty if it gives none */
} PppoeSetting;

/* Applies the account and the switch. Any result other than 0 is a failure. */
int32_t devapi_set_hg_pppoe_info(PppoeSetting *setting);

/* ---- Administration ------------------------------------------------------------------------- */

/* The administrator's account and the web login. Each function uses some of the fields. */
typedef struct LoginInfo {
    char WebLoginType[8]; /* type of web login */
    char Type[8];         /* type of administrator account */
    char Name[128];       /* name of the administrator */
    char Password[128];   /* password of the account or of the web login */
    char WebLoginIp[64];  /* address of the web login */
} LoginInfo;

/* Fills Name and Password of the administrator. Any result other than 0 is a failure, after which
 * info is not read. */
int32_t devapi_get_admin_info(LoginInfo *info);

/* Sets Type, Name and Password of the administrator. Any result other than 0 is a failure. */
int32_t devapi_set_admin_info(const LoginInfo *info);

/* Sets WebLoginType. Any result other than 0 is a failure. */
int32_t devapi_set_web_login_type(const LoginInfo *info);

/* Fills Password, WebLoginType and WebLoginIp of the web login. Any result other than 0 is a
 * failure, after which info is not read. */
int32_t devapi_get_web_login_info(LoginInfo *info);

/* Sets WebLoginType and Password of the web login. Any result other than 0 is a failure. */
int32_t devapi_set_web_login_info(const LoginInfo *info);

/* Restores the factory settings. Any result other than 0 is a failure. */
int32_t devapi_recovery(void);

/* Restarts the gateway, during the call or after it. Any result other than 0 is a failure. */
int32_t devapi_reboot(void);

/* Reboot schedule. */
typedef struct RebootInfo {
    char GatewayRebootEnable[8]; /* whether the schedule is on, 1 or 0 */
    char Time[8];                /* time of day, HH:MM */
    char DaysOfWeek[16];         /* days of the week, such as 1,3,7 */
} RebootInfo;

/* Fills info. Any result other than 0 is a failure, after which info is not read. */
int32_t devapi_get_reboot_info(RebootInfo *info);

/* Sets the schedule. Any result other than 0 is a failure. */
int32_t devapi_set_reboot_info(const RebootInfo *info);

/* The sleep times of the gateway, its Wi-Fi and its LEDs. */
typedef struct HgSleepInfo {
    char GatewaySleepEnable[8]; /* whether the gateway sleeps, 1 or 0 */
    char WiFiSleepEnable[8];    /* whether the Wi-Fi sleeps, 1 or 0 */
    char LedSleepEnable[8];     /* whether the LEDs sleep, 1 or 0 */
    char StartTime[8];          /* start of the sleep, HH:MM */
    char EndTime[8];            /* end of the sleep, HH:MM */
} HgSleepInfo;

/* Fills info. Any result other than 0 is a failure, after which info is not read. */
int32_t devapi_get_hg_sleep_info(HgSleepInfo *info);

/* Sets the sleep times. Any result other than 0 is a failure. */
int32_t devapi_set_hg_sleep_info(const HgSleepInfo *info);

/* ---- Inspection and optimisation ------------------------------------------------------------ */

/* State of the network connection. The device may use the reserved parts. */
typedef struct NetInspectInfo {
    char reserved0[128];   /* not read */
    char WanStatus[64];    /* state of the WAN connection */
    char NetStatus[392];   /* state of the Internet connection, 1 or 0 */
    char WanIP[64];        /* IP address of the WAN side */
    char NetMask[256];     /* network mask of the WAN side */
    char DnsStatus[8];     /* DNS state, 1 or 0 */
    char NetQuality[1032]; /* quality of the connection */
} NetInspectInfo;

/* Measures the quality of the connection and fills NetQuality. Any result other than 0 is a
 * failure, after which info is not read. */
int32_t devapi_inspect_net_quality(NetInspectInfo *info);

/* Improves the quality of the connection and fills NetQuality. Any result other than 0 is a
 * failure, after which info is not read. */
int32_t devapi_optimize_net_quality(NetInspectInfo *info);

/* Inspects the connection and fills DnsStatus and WanStatus. Any result other than 0 is a failure,
 * after which info is not read. */
int32_t devapi_inspect_net_connect(NetInspectInfo *info);

/* Repairs the connection and fills DnsStatus. Any result other than 0 is a failure, after which
 * info is not read. */
int32_t devapi_optimize_net_connect(NetInspectInfo *info);

/* State of the Wi-Fi. */
typedef struct WifiInspectInfo {
    char WiFiDevNum[8];     /* number of Wi-Fi clients */
    char Security[8];       /* security level of the encryption */
    char Channel[8];        /* channel in use */
    char Congestion[8];     /* congestion of the channel, % */
    char PowerLevel[8];     /* transmit power, % */
    char FireWallEnable[4]; /* whether the firewall is on, 1 or 0 */
} WifiInspectInfo;

/* Fills WiFiDevNum, Security, Channel and Congestion. Any result other than 0 is a failure, after
 * which info is not read. */
int32_t devapi_inspect_hg_wifi(WifiInspectInfo *info);

/* Moves the Wi-Fi from Channel to a better one; writes the new Channel and its Congestion. Any
 * result other than 0 is a failure, after which info is not read. */
int32_t devapi_optimize_hg_wifi(WifiInspectInfo *info);

/* The same with the transmit power: writes the new Channel, Congestion and PowerLevel. Any result
 * other than 0 is a failure, after which info is not read. */
int32_t devapi_optimize_wifi_channel_power(WifiInspectInfo *info);

/* State of the firmware. */
typedef struct FwInspectInfo {
    char FWVersion[1088]; /* firmware version */
} FwInspectInfo;

/* Inspects everything and fills the three records. Any result other than 0 is a failure, after
 * which wifi, firmware and net are not read. */
int32_t devapi_inspect_hg(WifiInspectInfo *wifi, FwInspectInfo *firmware, NetInspectInfo *net);

/* Load of the gateway. */
typedef struct ResourceInfo {
    char CpuPercent[8];      /* CPU load, % */
    char MemPercent[8];      /* memory load, % */
    char LanDevNum[8];       /* number of attached devices */
    char ProtectedDevNum[8]; /* number of devices under parental control */
} ResourceInfo;

/* Fills info. Any result other than 0 is a failure, after which info is not read. */
int32_t devapi_inspect_hg_resource(ResourceInfo *info);

/* Frees resources and fills CpuPercent and MemPercent. Any result other than 0 is a failure, after
 * which info is not read. */
int32_t devapi_optimize_hg_resource(ResourceInfo *info);

/* Writes the state of the uplink to status. status has room for size bytes. Any result other than 0
 * is a failure, after which status is not read. */
int32_t devapi_get_uplink_status(char *status, int32_t size);

/* Writes the reason for a network fault to reason. reason has room for 16 bytes. Any result other
 * than 0 is a failure, after which reason is not read. */
int32_t devapi_get_net_fault_info(char *reason);

/* ---- Wi-Fi networks ------------------------------------------------------------------------- */

/* Settings of one SSID. In a setting, "-1" as Bandwidth, Mode, AdvertisementEnable or Beamforming
 * leaves that value unchanged. */
typedef struct SsidInfo {
    int32_t SSIDIndex;           /* number of the SSID, from 1 */
    char SSID[64];               /* network name */
    char PWD[64];                /* password */
    char ENCRYPT[8];             /* type of encryption */
    char PowerLevel[64];         /* transmit power, % */
    char Channel[8];             /* channel that is set */
    char UsedChannel[8];         /* channel in use; only read */
    char Enable[8];              /* whether the network is on, 1 or 0 */
    char Bandwidth[16];          /* bandwidth of the channel, MHz */
    char Type[16];               /* band of the SSID: "0" for 2.4 GHz, any other number for 5 GHz;
                                    only read */
    char Mode[8];                /* newest wireless standard in use */
    char AdvertisementEnable[8]; /* whether the name is broadcast, 1 or 0 */
    char Beamforming[8];         /* whether beamforming is on, 1 or 0 */
    char PermissionProperty[8];  /* permissions of clients; only read */
} SsidInfo;

/* Fills info for the SSID with the number SSIDIndex, which may be any number. Any result other than
 * 0 is a failure, after which info is not read. */
int32_t devapi_get_ssid_info(SsidInfo *info);

/* Applies the settings to the SSID with the number SSIDIndex, which may be any number; Bandwidth is
 * empty and has no meaning. Any result other than 0 is a failure. */
int32_t devapi_set_ssid_info(const SsidInfo *info);

/* Sets the transmit power of the 5 GHz radio. level may have any length. The result is ignored. */
int32_t devapi_set_5gwifi_powerlevel(const char *level);

/* ---- Wi-Fi networks as a list --------------------------------------------------------------- */

/* Sets *count to the number of SSIDs; a negative number means none. *count is 0 before the call.
 * Any result other than 0 is a failure, after which *count is not read. */
int32_t devapi_get_ssid_num(int32_t *count);

/* Sets *state to 1 when stations are steered between the radios, otherwise to another number.
 * *state is 1 before the call. Any result other than 0 is a failure, after which *state is not
 * read. */
int32_t devapi_get_wifi_stactrl(int32_t *state);

/* Writes the state of fast roaming to enable; an empty text if it is not known. enable has room for
 * 8 bytes. Any result other than 0 is a failure, after which enable is not read. */
int32_t devapi_get_wifi_fastroaming_enable(char *enable);

/* Sets *index to the number of the main SSID of the 5 GHz radio. *index is 0 before the call. The
 * result is ignored: *index is used as the call leaves it. */
int32_t devapi_get_5g_wifi_index(int32_t *index);

/* Sets *enable to 1 when the mesh is on. *enable is 0 before the call. The result is ignored:
 * *enable is used as the call leaves it. */
int32_t devapi_get_Multi_Ap_enable(int32_t *enable);

/* The first of the three calls with which the plug-in's worker applies a list of settings: the
 * switch of station control. The next list may change the text at any time, so the function must
 * read it only once. enable is shorter than 8 bytes. The result is ignored. */
int32_t devapi_set_wifi_stactrl(const char *enable);

/* The second call: the switch of fast roaming, which may be empty and must also be read only once.
 * enable is shorter than 8 bytes. The result is ignored. */
int32_t devapi_set_wifi_fastroaming(const char *enable);

/* The third call, once for each SSID: its settings, including Bandwidth. The result is ignored. */
int32_t devapi_set_ssid_list_info(const SsidInfo *info);

/* ---- Wi-Fi schedule, scans and channels ----------------------------------------------------- */

/* One of the three periods in which the Wi-Fi sleeps. Period k has the timers 2k-1 and 2k. */
typedef struct WifiSleepInfo {
    int32_t StartTimer;  /* number of the timer that starts the period */
    int32_t EndTimer;    /* number of the timer that ends it */
    char Enable[16];     /* whether the period is on, 1 or 0 */
    char StartTime[32];  /* start of the sleep, HH:MM */
    char EndTime[32];    /* end of the sleep, HH:MM */
    char DaysOfWeek[32]; /* days of the week, such as 1,3,7 */
} WifiSleepInfo;

/* Fills info for the period of the two timers that are set in it. Any result other than 0 is
 * a failure: the period is left out. */
int32_t devapi_get_wifi_sleep_info(WifiSleepInfo *info);

/* Removes all periods. Any result other than 0 is a failure. */
int32_t devapi_del_all_wifi_timerinfo(void);

/* Adds the timers of one more period; devapi_set_wifi_sleep_info() then sets them. The device
 * assigns the numbers of the timers and may write them to the record, which is then passed to that
 * function. The record is zeroed only for the first period of a schedule; for each further one it
 * is the record as these two calls left it, with new texts. Any result other than 0 is a
 * failure. */
int32_t devapi_add_wifi_timer(WifiSleepInfo *info);

/* Sets the timers that were just added. Any result other than 0 is a failure. */
int32_t devapi_set_wifi_sleep_info(WifiSleepInfo *info);

/* One network found by a scan. */
typedef struct ScanEntry {
    char SSID[64];       /* network name */
    char PowerLevel[64]; /* signal strength, dBm */
    char ENCRYPT[64];    /* type of encryption */
    char WPACypher[64];  /* cipher of WPA */
    char WPA2Cypher[64]; /* cipher of WPA2 */
    char Band[64];       /* frequency band */
    char Connected[64];  /* whether the router is connected to it, 1 or 0 */
} ScanEntry;

/* The result of a scan. */
typedef struct ScanResult {
    int32_t reserved0;      /* not read */
    ScanEntry *entries[60]; /* the networks, in any of the slots; the other slots are NULL */
} ScanResult;

/* Fills the slots with entries, each allocated separately with malloc(); the plug-in frees them,
 * also after a failure. Only the first 20 slots are reported. Any result other than 0 is a failure,
 * after which result is not read. */
int32_t devapi_get_scan_ssid(ScanResult *result);

/* Signal strength of one network. */
typedef struct ChannelPower {
    char name[64];    /* network name */
    char dbpower[64]; /* signal strength, dBm */
} ChannelPower;

/* Signal strength of all networks. */
typedef struct ChannelPowerResult {
    int32_t count;         /* number of entries; a negative number means none */
    ChannelPower *entries; /* array of count entries */
} ChannelPowerResult;

/* Fills result with an array allocated with malloc(); the plug-in frees it, also after a failure.
 * Any result other than 0 is a failure, after which result is not read. */
int32_t devapi_scan_channel_power(ChannelPowerResult *result);

/* Channels that the radios may use. */
typedef struct WifiChannelList {
    int32_t count_24g;        /* number of channels at 2.4 GHz, at most 64 */
    int32_t count_5g;         /* number of channels at 5 GHz, at most 64 */
    int16_t channels_24g[64]; /* numbers of the 2.4 GHz channels */
    int16_t channels_5g[64];  /* numbers of the 5 GHz channels */
} WifiChannelList;

/* Fills list. For GET_WIFI_CHANNEL_LIST any result other than 0 is a failure, after which list is
 * not read; for GET_SCAN_CHANNEL_COUNT only -1 is a failure, after which list is not read. */
int32_t devapi_get_all_wifi_channel_list(WifiChannelList *list);

/* ---- Guest Wi-Fi ---------------------------------------------------------------------------- */

/* The guest network of one band. A text "-1" means that the value was not given. */
typedef struct GuestWifiInfo {
    char reserved0[4];           /* not used */
    char RadioEnable[8];         /* whether the band's radio is on, 1 or 0; only read */
    char Enable[16];             /* whether the guest network is on, 1 or 0 */
    char SSID[64];               /* network name */
    char Band[16];               /* the band */
    char ContinueTime[8];        /* days for which the network stays open */
    char HourTime[8];            /* hours for which it stays open, in addition to the days */
    char EndTimestamp[16];       /* seconds for which it stays open, computed by the plug-in: "-1",
                                    or a number that may have wrapped at 32 bits */
    char Remainingtime[16];      /* seconds left; only read */
    char PWD[64];                /* password */
    char ENCRYPT[16];            /* type of encryption */
    char Mode[8];                /* newest wireless standard in use */
    char AdvertisementEnable[8]; /* whether the name is broadcast, 1 or 0 */
    char PermissionProperty[8];  /* permissions of guests; only read */
} GuestWifiInfo;

/* Fills info for the guest network of Band. Any result other than 0 is a failure, after which info
 * is not read. */
int32_t devapi_get_guest_wifi_info(GuestWifiInfo *info);

/* Sets up the guest network of Band. -2 means that the band's radio is off. Any result other than 0
 * is a failure. */
int32_t devapi_set_guest_wifi_info(const GuestWifiInfo *info);

/* ---- Uplink Wi-Fi --------------------------------------------------------------------------- */

/* The network that the router joins as a repeater. */
typedef struct UplinkWifiInfo {
    char SSID[64];       /* network name; after success, that of the network joined */
    char PWD[64];        /* password */
    char ENCRYPT[64];    /* type of encryption */
    char WPACypher[64];  /* cipher of WPA */
    char WPA2Cypher[64]; /* cipher of WPA2 */
    char Band[128];      /* frequency band */
} UplinkWifiInfo;

/* Joins the network. -2 means that another client uses the repeater. Any result other than 0 is a
 * failure. For a result other than 0, -1 and -2, nothing is added to the reply. */
int32_t devapi_set_uplink_wifi_info(UplinkWifiInfo *info);

/* ---- Firmware ------------------------------------------------------------------------------- */

/* The firmware that is running on the router. */
typedef struct UpdateStatusInfo {
    char Name[64];       /* name of the device or of the image */
    char HWVersion[64];  /* hardware version */
    char FWVersion[64];  /* firmware version */
    char FWDATA[64];     /* date of the firmware, YYYY-MM-DD */
    char DeviceType[64]; /* type of device */
    char AreaCode[40];   /* code of the operator's area */
} UpdateStatusInfo;

/* Fills info. Any result other than 0 is a failure, after which info is not read. */
int32_t devapi_get_update_status_info(UpdateStatusInfo *info);

/*
 * Downloads an image and stores it for devapi_update_image(). Returns when the download has ended,
 * which may take minutes; other functions are called meanwhile.
 *
 * url:  the URL, unchanged from the request: it may have any length and contain any characters, and
 *       must not be passed to a shell.
 * mode: 0 when a command waits for the download, 1 when the agent's upgrade does.
 *
 * Any result other than 0 is a failure. The running firmware must not be changed in any case.
 */
int32_t devapi_download_image(const char *url, int32_t mode);

/* Flashes the downloaded image, which runs after the next start. Does not restart the router.
 * HG_IMAGE_UPDATE may call it while another image is downloaded or flashed, so the library needs
 * its own lock. Any result other than 0 is a failure: after a restart, the router must run the
 * previous firmware. */
int32_t devapi_update_image(void);

/* Both in one step: downloads the image from the URL, which is as for devapi_download_image(), and
 * flashes it. The plug-in's worker then restarts the router with "sync;reboot". url may have any
 * length. Any result other than 0 is a failure. */
int32_t devapi_flash_update_image(const char *url);

/* ---- Notices to the app --------------------------------------------------------------------- */

/* Writes the MAC address under which the platform knows the router to mac. mac has room for size
 * bytes. For GET_HG_LOG any result other than 0 is a failure, after which mac is not read; for
 * json_msg_notice_to_app, json_get_child_router_info and
 * json_get_topo_router_agent_info_bynewmethod the result is ignored: mac is used as the call leaves
 * it. */
int32_t devapi_get_iotagtd_device_mac(char *mac, int32_t size);

/* ---- WAN connections ------------------------------------------------------------------------ */

/* The number of WAN connections and their names. */
typedef struct WanNum {
    char NUM[8];           /* number of connections */
    char Description[200]; /* names of the connections */
} WanNum;

/* Fills info. Any result other than 0 is a failure, after which info is not read. */
int32_t devapi_get_wan_num(WanNum *info);

/* One WAN connection; every value, including numbers and switches, is a text. */
typedef struct WanInfo {
    char INDEX[64];                 /* number of the connection */
    char IFNAME[64];                /* network interface of the connection */
    char CONNECTIONSTATUS[64];      /* state of the IPv4 connection */
    char Reserved1[8];              /* not used; stays zero */
    char CONNECTIONTYPE[64];        /* whether the connection is routed or bridged */
    char PROTOCOL[64];              /* IP versions of the connection */
    char UPLINKMODE[64];            /* how the connection gets its addresses, in the terms of the
                                       platform */
    char WANName[64];               /* name of the connection, which selects it */
    char SERVICELIST[64];           /* services that use the connection */
    char ADDRESSTYPE[64];           /* how the connection gets its IPv4 address */
    char IPADDRESS[64];             /* IPv4 address */
    char SUBNETMASK[64];            /* IPv4 mask */
    char GATEWAY[64];               /* IPv4 address of the default gateway */
    char DNS1[64];                  /* first DNS server, IPv4 */
    char DNS2[64];                  /* second DNS server, IPv4 */
    char Reserved2[16];             /* not used; stays zero */
    char IPV6_CONNECTIONSTATUS[64]; /* state of the IPv6 connection */
    char IPV6_PRIFIX[64];           /* IPv6 prefix for the LAN */
    char IPV6_PREFIXLENGTH[64];     /* length of the IPv6 prefix */
    char IPV6_IPADDRESS[64];        /* IPv6 address */
    char IPV6_GATEWAY[64];          /* IPv6 address of the default gateway */
    char IPV6_DNS1[64];             /* first DNS server, IPv6 */
    char IPV6_DNS2[64];             /* second DNS server, IPv6 */
    char PPPOE_USR_NAME[64];        /* name of the PPPoE account */
    char PPPOE_PASSWORD[64];        /* password of the PPPoE account */
    char PPPOE_PROXY[64];           /* whether hosts may connect themselves, 1 or 0 */
    char PPPOE_SERVICENAME[64];     /* name of the PPPoE service */
    char PPPOE_DIAL_MODE[64];       /* when the connection is established */
    char NATENABLE[64];             /* whether NAT is on, 1 or 0 */
    char QOSENABLE[64];             /* whether quality of service is on, 1 or 0 */
    char VLANID[64];                /* number of the VLAN */
    char VLANPRIORITY[64];          /* priority of the VLAN */
} WanInfo;

/* Fills info for the connection named by WANName. Any result other than 0 is a failure, after which
 * info is not read. */
int32_t devapi_query_wan_info(WanInfo *info);

/* Applies the settings of the connection named by WANName: SERVICELIST to DNS2, IPV6_PRIFIX to
 * PPPOE_PASSWORD, NATENABLE to VLANPRIORITY. Fields that the request did not give, including
 * WANName, are empty. Any result other than 0 is a failure. */
int32_t devapi_set_route_wan_info(const WanInfo *info);

/* ---- Attached devices ----------------------------------------------------------------------- */

/*
 * The devices attached to the router are numbered by a host index, from 1 to the count of
 * devapi_get_host_num(). Numbers may change between two calls, as devices come and go. The plug-in
 * reads all of them, regardless of how large the count is.
 */

/* Sets *count to the number of attached devices. *count is 0 before the call. For GET_AD_BASE_INFO
 * and json_get_main_router_baseinfo only -1 is a failure, after which *count is not read; for
 * GET_ATTACH_DEVICE_RIGHT any result other than 0 is logged: *count is used as the call leaves
 * it. */
int32_t devapi_get_host_num(int32_t *count);

/* One attached device. */
typedef struct AdBaseInfo {
    int32_t Kind;                  /* 1 when the devices attached to the main router itself are
                                      listed, else 0 */
    int32_t HostIndex;             /* host index, which selects the device */
    char Mac[32];                  /* MAC address */
    char UID[32];                  /* unique identifier */
    char DevType[32];              /* type of device */
    char DevFactory[32];           /* manufacturer */
    char Name[32];                 /* host name */
    char ByName[32];               /* name given by the user */
    char OS[32];                   /* operating system */
    char Version[32];              /* version of the operating system */
    char NetStatus[8];             /* whether it is online, 1 or 0 */
    char NetMonopoly[32];          /* whether it has exclusive bandwidth, 1 or 0 */
    char AccessType[32];           /* how it is attached */
    char AccessEnable[8];          /* whether it may reach the Internet, 1 or 0 */
    char AccessTime[32];           /* time at which it was attached, Unix time */
    char UpSpeed[32];              /* current upstream rate, kbit/s */
    char DownSpeed[32];            /* current downstream rate, kbit/s */
    char ip[64];                   /* IP address */
    char AccessCode[32];           /* how it is attached, as a decimal number; "1" for an SSID */
    char SSIDIndex[48];            /* number of the SSID, decimal */
    char LinkStatus[8];            /* state of its link, decimal; "0" when it is offline */
    char SpeedLimit[8];            /* whether the speed limits are on, 1 or 0; no command sets it */
    char DownLimit[16];            /* download limit, kbit/s */
    char UpLimit[16];              /* upload limit, kbit/s; no command sets it */
    char GreennetProtectEnable[8]; /* whether it is under parental control, 1 or 0 */
    char Dbm[8];                   /* signal strength, dBm */
    char StaticDhcpEnable[8];      /* whether its IP address is bound to its MAC address, 1 or 0 */
} AdBaseInfo;

/* Fills info for the device with the host index. 1000 means that there is no such device. For
 * GET_AD_BASE_INFO and json_get_main_router_baseinfo only -1 is a failure, after which info is not
 * read; for GET_TSLINK_TOPOLOGY_INFO any result other than 0 is a failure, after which info is not
 * read. If there is no such device, GET_AD_BASE_INFO lists the record as the call leaves it; other
 * callers continue with the next device. */
int32_t devapi_get_ad_base_info(AdBaseInfo *info);

/* A setting followed by the reason for a refusal. */
typedef struct AdBaseSetting {
    AdBaseInfo info;     /* the setting */
    char FailReason[64]; /* reason for a failure, set by the device; empty if it gives none */
} AdBaseSetting;

/* Applies the user's settings for the device with the MAC address: DevType, ByName, AccessEnable,
 * DownLimit, StaticDhcpEnable and ip. "-1" as DownLimit or StaticDhcpEnable leaves that setting
 * unchanged; "0" as DownLimit removes the limit. ip is empty unless StaticDhcpEnable is given. The
 * other fields are empty and have no meaning. Only -1 is a failure. */
int32_t devapi_set_ad_base_info(AdBaseSetting *setting);

/* Whether an attached device may reach the Internet. */
typedef struct AttachDeviceRight {
    int32_t HostIndex;            /* host index, which selects the device of a query; 0 in a
                                     setting */
    char MAC[64];                 /* MAC address, which selects the device of a setting */
    char name[64];                /* its host name */
    char InternetAccessRight[64]; /* whether the device may reach the Internet */
} AttachDeviceRight;

/* Fills info for the device with the host index. Any result other than 0 is a failure: the device
 * is left out of the list. */
int32_t devapi_get_attach_device_right(AttachDeviceRight *info);

/* Applies the right of the device with the MAC address. Any result other than 0 is a failure. */
int32_t devapi_set_attach_device_right(const AttachDeviceRight *info);

/* The switch of the firewall. */
typedef struct FirewallSwitch {
    char Enable[16]; /* whether the firewall is on, 1 or 0 */
} FirewallSwitch;

/* Switches the firewall. Any result other than 0 is a failure. */
int32_t devapi_set_firewall_switch(const FirewallSwitch *info);

/* ---- Parental control (green-net) ----------------------------------------------------------- */

/* The devices under parental control are in a separate table, numbered by a host index from 1 to
 * GREENNET_MAX_HOSTS, which is not the host index of the attached devices. An entry keeps its
 * number; numbers in between may be unused. */
#define GREENNET_MAX_HOSTS 64

/* Size of the texts for the switch, in bytes, terminator included. */
#define GREENNET_SWITCH_SIZE 256

/* Writes the switch of parental control to enable. enable has room for GREENNET_SWITCH_SIZE bytes.
 * Any result other than 0 is a failure, after which enable is not read. */
int32_t devapi_get_greennet_enable(char *enable);

/* Switches parental control on or off, as given by the text. enable is shorter than
 * GREENNET_SWITCH_SIZE bytes. Any result other than 0 is a failure. */
int32_t devapi_set_greennet_enable(const char *enable);

/* Sets *count to the number of entries in the table. *count is 0 before the call. Any result other
 * than 0 is a failure, after which *count is not read. */
int32_t devapi_get_greennet_num(int32_t *count);

/* One device under parental control. */
typedef struct GreenHostInfo {
    char HostIndex[8];     /* host index in the table, decimal, which selects the entry */
    char Mac[64];          /* MAC address */
    char Name[64];         /* name given by the user */
    char NotifyEnable[8];  /* whether notices about the device are wanted, 1 or 0 */
    char ProtectEnable[8]; /* whether it is protected, 1 or 0; set by devapi_set_protect_enable() */
    char NewEntry[8];      /* in a setting, "1" when the entry has just been added, else "0" */
} GreenHostInfo;

/* Fills info for the entry with the host index; one whose Mac is empty or "NULL" is not listed. Any
 * result other than 0 is a failure: there is no such entry. */
int32_t devapi_get_green_net_info(GreenHostInfo *info);

/* Stores Mac, Name and NotifyEnable of the entry with the host index. Any result other than 0 is a
 * failure. */
int32_t devapi_set_green_net_info(const GreenHostInfo *info);

/* Stores NotifyEnable of the entry with the host index. Any result other than 0 is a failure. */
int32_t devapi_set_green_net_notify(const GreenHostInfo *info);

/* Sets *index to the host index of the entry for the MAC address, and to 0 when there is none. mac
 * is shorter than 64 bytes; *index is 0 before the call. 1 means that there is an entry, 0 that
 * there is none. A negative result is a failure. Callers that need an entry check the result; the
 * one that adds missing entries checks *index. */
int32_t devapi_get_greennet_index_by_mac(const char *mac, int32_t *index);

/* Adds an entry for the MAC address and sets *index to its host index. mac is shorter than 64
 * bytes; *index is 0 before the call. Any result other than 0 is a failure, after which *index is
 * not read. A full table is such a failure. */
int32_t devapi_add_greennet_mac(const char *mac, int32_t *index);

/* Removes all entries except those whose MAC addresses are in the list, each followed by a comma;
 * removes all entries if the list is NULL. The list has 20 bytes per device: if a request has
 * longer addresses, the list is cut, and a last address without a comma is incomplete. list may
 * have any length. Any result other than 0 is a failure. */
int32_t devapi_del_green_net_info_by_maclist(const char *list);

/* Switches the access restriction on (1) or off (0). Any result other than 0 is a failure. */
int32_t devapi_set_greenaccess_enable(int32_t enable);

/* A period in which the access of a device is restricted. */
typedef struct ProtectPeriodInfo {
    int32_t HostIndex;  /* host index in the table of parental control */
    int32_t PeriodNum;  /* number of the period, from 1 */
    char StartTime[8];  /* beginning, HH:MM */
    char EndTime[8];    /* end, HH:MM */
    char Enable[8];     /* whether the period is in force, 1 or 0 */
    char DaysOfWeek[8]; /* days on which it begins, such as 12345 */
} ProtectPeriodInfo;

/* Sets *count to the number of periods of the entry. *count is 0 before the call. The result
 * is ignored: *count is used as the call leaves it. */
int32_t devapi_get_duration_num_by_index(int32_t index, int32_t *count);

/* Fills the texts for host index and number of the period. Any result other than 0 is a failure,
 * after which info is not read. */
int32_t devapi_get_protect_period_info(ProtectPeriodInfo *info);

/* Removes all periods of the entry. Any result other than 0 is a failure. */
int32_t devapi_del_all_duration(int32_t index);

/* Adds an empty period to the entry and sets *number to its number. *number is 0 before the call.
 * Any result other than 0 is a failure, after which *number is not read. */
int32_t devapi_add_greennet_duration(int32_t index, int32_t *number);

/* Stores the texts of the period with the host index and number. Any result other than 0 is a
 * failure. */
int32_t devapi_set_protect_period_info(const ProtectPeriodInfo *info);

/* Switches the protection of the entry on (1) or off (0). Any result other than 0 is a failure. */
int32_t devapi_set_protect_enable(int32_t enable, int32_t index);

/* ---- Update schedule and log upload --------------------------------------------------------- */

/* The time of day at which the router may update itself. */
typedef struct UpdateSchedule {
    char Enable[2];      /* whether it may update itself, 1 or 0 */
    char StartHour[8];   /* hour of the start */
    char StartMinute[8]; /* minute of the start */
    char EndHour[8];     /* hour of the end */
    char EndMinute[8];   /* minute of the end */
} UpdateSchedule;

/* Fills schedule. Any result other than 0 is a failure, after which schedule is not read. */
int32_t devapi_get_update_schedule(UpdateSchedule *schedule);

/* Applies the schedule. Only -1 is a failure. */
int32_t devapi_set_update_schedule(const UpdateSchedule *schedule);

/*
 * Sends the router's log to a URL. The reply is delayed until this function returns: a library that
 * needs long for sending does it on a separate thread.
 *
 * url:      the URL, unchanged from the request, of any length.
 * log_type: which log, by the name that the platform gives it.
 * mac:      the router's MAC address without colons; shorter than 24 bytes.
 *
 * The result is ignored.
 */
int32_t devapi_get_hg_log(const char *url, const char *log_type, const char *mac);

/* ---- Mesh: routers and stations ------------------------------------------------------------- */

/* The largest numbers of entries in the reports of a mesh. */
#define MESH_MAX_CHILD_ROUTERS 8 /* child routers */
#define MESH_MAX_STATIONS 64     /* stations of a child router */
#define MESH_MAX_LINKS 8         /* mesh links of a router */
#define MESH_MAX_CHILDREN 32     /* children of a child router */

/* The child routers of the mesh. */
typedef struct ChildRouterList {
    int32_t identifiers[MESH_MAX_CHILD_ROUTERS]; /* identifiers for the other functions */
    int32_t count;                               /* number of entries */
} ChildRouterList;

/* Fills list. The result is ignored: list is used as the call leaves it. */
int32_t devapi_get_childrouter_list(ChildRouterList *list);

/* A link from a router to another one. */
typedef struct MeshLink {
    char nexthopMAC[32]; /* MAC address of the other router */
    char interface[24];  /* network interface */
    char dbm[16];        /* signal strength, dBm */
} MeshLink;

/* Fills the link between the main router and the child router. Any result other than 0 is
 * a failure: the child router is left out. */
int32_t devapi_get_router_mesh_info(MeshLink *link, int32_t identifier);

/* A child router. */
typedef struct ChildRouterInfo {
    char RouterDeviceID[32];        /* identifier of the router */
    char Name[64];                  /* its name */
    char Mac[64];                   /* MAC address, which selects its stations */
    char NetStatus[8];              /* whether it is online, 1 or 0 */
    char ChildRouterAccessType[8];  /* how it reaches its parent */
    char UpSpeed[16];               /* current upstream rate, kbit/s */
    char DownSpeed[16];             /* current downstream rate, kbit/s */
    char ip[32];                    /* IP address */
    char FWVersion[32];             /* firmware version */
    char FWDATA[32];                /* date of the firmware, YYYY-MM-DD */
    char UpTime[16];                /* time since it started, s */
    char DeviceType[32];            /* type of device */
    char AreaCode[16];              /* code of the operator's area */
    char HWVersion[16];             /* hardware version */
    char Wlan1Mac[32];              /* MAC address of the second wireless interface */
    char Wlan0Mac[32];              /* MAC address of the first wireless interface */
    char ParentMac[32];             /* MAC address of its parent router */
    char dbm[8];                    /* signal strength, dBm */
    MeshLink links[MESH_MAX_LINKS]; /* the mesh links */
    int32_t link_count;             /* number of entries */
    char Reserved[16];              /* not used */
    char LinkSpeed[16];             /* speed of its link to the parent, Mbit/s; only filled for a
                                       path of the parameter tree */
} ChildRouterInfo;

/* Fills info for a child router, given by its identifier or its host index. For GET_UPDATE_STATUS
 * and GET_TSLINK_TOPOLOGY_INFO any result other than 0 is a failure, after which info is not read;
 * for json_get_child_router_info the result is ignored: info is used as the call leaves it. On
 * failure, the child router is left out. */
int32_t devapi_get_childrouter_info(ChildRouterInfo *info, int32_t identifier);

/* Position of a child router in the mesh. */
typedef struct ChildMeshInfo {
    char Mac[32];       /* MAC address of the mesh interface */
    char ChildMac[32];  /* MAC address of the child router */
    char ParentMac[32]; /* MAC address of its parent router */
    char Reserved[104]; /* not used */
} ChildMeshInfo;

/* Fills info for the identifier of a child router. Any result other than 0 is a failure: the child
 * router is left out. */
int32_t devapi_get_child_mesh_info(ChildMeshInfo *info, int32_t identifier);

/* The routers attached to a child router. */
typedef struct ChildMeshList {
    int32_t count;                             /* number of entries */
    ChildMeshInfo children[MESH_MAX_CHILDREN]; /* only Mac of each one is read */
} ChildMeshList;

/* Fills list for the child router with the MAC address. mac is shorter than 64 bytes. The result
 * is ignored: list is used as the call leaves it. */
int32_t devapi_get_child_mesh_info_bynewmethod(const char *mac, ChildMeshList *list);

/* The stations of a child router. */
typedef struct ChildStationList {
    int32_t indexes[MESH_MAX_STATIONS]; /* indexes for devapi_get_childsta_base_info() */
    int32_t count;                      /* number of entries */
} ChildStationList;

/* Fills list for the child router with the MAC address. mac is shorter than 64 bytes. The result
 * is ignored: list is used as the call leaves it. */
int32_t devapi_get_childsta_list(ChildStationList *list, const char *mac);

/* Fills info for the station with the index in HostIndex. Any result other than 0 is a failure:
 * there is no such station. */
int32_t devapi_get_childsta_base_info(AdBaseInfo *info);

/* Sets *count to the number of entries in the table of attached devices, including those without a
 * device, for which devapi_get_ad_base_info() returns 1000. argument is 0 for
 * GET_TSLINK_TOPOLOGY_INFO, otherwise the argument of put_to_json(), a number as wide as a pointer.
 * The plug-in reads all entries, regardless of how many there are. *count is 0 before the call. Any
 * result other than 0 is a failure, after which *count is not read. */
int32_t devapi_get_dev_tol_num(int32_t *count, intptr_t argument);

/* Writes the model of the router to model. With the model "QX2040B", GET_TSLINK_TOPOLOGY_INFO
 * reports the links between routers. model has room for size + 1 bytes. The result is ignored:
 * model is used as the call leaves it. */
int32_t devapi_get_devicemodel(char *model, int32_t size);

/* Writes the code of the operator's area to code. It selects variants of three reports:
 * json_get_main_router_info() and the stations of json_get_topo_router_info() have fewer keys if it
 * contains "TH_OLV", and the child routers of json_get_topo_router_info() if it contains "OLV",
 * both ignoring case; json_get_topo_router_agent_info_bynewmethod() reports the links between
 * routers if it contains "ARVEN", "KOLM" or "SEDRANO". code has room for size bytes. The result
 * is ignored: code is used as the call leaves it. */
int32_t devapi_get_basic_area_code(char *code, int32_t size);

/* Result: the type of mesh; 2 is a mesh in which child routers may be attached to each other. */
int32_t devapi_get_mesh_type(void);

/* Makes the mesh measure the speed of its links again. Any result other than 0 is a failure: it is
 * logged and the report continues. */
int32_t devapi_call_tslink_set_topo_speed(void);

/* Sets *hours to the number of hours by which the router's clock, as returned by time(), is ahead
 * of the times that the device library returns in local time. *hours is 0 before the call. The
 * result is ignored: *hours is used as the call leaves it. */
int32_t devapi_get_local_timezone(int32_t *hours);

/* Result: 1 when the times in the table of attached devices are local times; otherwise they are
 * times of the router's clock. The times of the stations of child routers are always local
 * times. */
int32_t devapi_get_systerm_timetype(void);

/* The load of the router. */
typedef struct DevStatusInfo {
    char Reserved[64]; /* not used */
    char Cpu[32];      /* CPU load, % */
    char Memory[32];   /* memory load, % */
} DevStatusInfo;

/* Fills info. Any result other than 0 is a failure, after which info is taken as empty. */
int32_t devapi_get_dev_status_info(DevStatusInfo *info);

/* ---- Mesh: the topology as a list of relations ---------------------------------------------- */

/* Size of the text of devapi_get_topo_relation_ship(), in bytes. */
#define TOPO_RELATION_SIZE 256

/* Writes the relations of the mesh, as a text for devapi_handle_topo_struct(), to text. text has
 * room for size + 1 bytes. Any result other than 0 is a failure, after which text is not read. */
int32_t devapi_get_topo_relation_ship(char *text, int32_t size);

/* Sets *count to the number of relations. *count is 0 before the call. Any result other than 0 is a
 * failure, after which *count is not read. */
int32_t devapi_get_topo_relation_num(int32_t *count);

/* A router of the topology, as a node of a list. */
typedef struct TopoNode {
    int32_t level;         /* number of steps from the Internet: 1 for the main router, more for
                              child routers */
    int32_t Reserved[2];   /* used only by the device library */
    struct TopoNode *next; /* NULL at the end */
} TopoNode;

/* Converts the relations to a list: fills first, which the plug-in has allocated with calloc(), and
 * appends further nodes. relations is shorter than TOPO_RELATION_SIZE bytes. Any result other than
 * 0 is a failure: devapi_topo_xml_info_list() is not called, and the list is used as the call
 * leaves it. */
int32_t devapi_handle_topo_struct(const char *relations, TopoNode *first);

/* Completes the list for the number of relations from devapi_get_topo_relation_num(), which is
 * passed unchecked. The result is ignored: first is used as the call leaves it. */
int32_t devapi_topo_xml_info_list(int32_t count, TopoNode *first);

/* Frees the whole list, including first, with free(). */
void devapi_free_topo_list(TopoNode *first);

/* A router of the topology. */
typedef struct NodeDevInfo {
    char Mac[64];       /* MAC address */
    char ip[32];        /* IP address */
    char AccessType[8]; /* how it reaches its parent */
    char dbm[8];        /* signal strength, dBm */
    char FWVersion[64]; /* firmware version */
    char LinkSpeed[16]; /* speed of its link, Mbit/s */
} NodeDevInfo;

/* Fills info for the node. Any result other than 0 is a failure: the node is left out. */
int32_t devapi_get_node_dev_info(const TopoNode *node, NodeDevInfo *info);

/* A device attached to a router of the topology, as a node of a list. */
typedef struct NodeBaseInfo {
    int32_t Kind;              /* 1 for the first node of the list, which is not a device */
    char Mac[96];              /* MAC address */
    struct NodeBaseInfo *next; /* NULL at the end */
} NodeBaseInfo;

/* Appends the devices attached to the node's router to the list that begins with first. The plug-in
 * frees every node with free(), also after a failure, so each node has to be allocated separately
 * with malloc(). Any result other than 0 is a failure, after which first is not read. */
int32_t devapi_get_node_baseinfo(const TopoNode *node, NodeBaseInfo *first);

/* Size of the text of devapi_get_viewmac_by_mac(), in bytes. */
#define VIEW_MAC_SIZE 32

/* Writes a router's MAC address, in the form that is shown to users, to view. mac is shorter than
 * 64 bytes; view has room for VIEW_MAC_SIZE bytes. Any result other than 0 is a failure, after
 * which view is not read. */
int32_t devapi_get_viewmac_by_mac(const char *mac, char *view);

/* Sets *index to the host index of the device with the MAC address. mac is shorter than 96 bytes;
 * *index is 0 before the call. 1 means that there is such a device. For json_get_child_router_info
 * any result other than 1 is a failure, after which *index is not read; for
 * json_get_child_router_baseinfo the result is ignored: *index is used as the call leaves it. */
int32_t devapi_get_hostindex_by_mac(const char *mac, int32_t *index);

/* ---- Mesh: the topology as a parameter tree ------------------------------------------------- */

/* Size of the values of the parameter tree, in bytes. */
#define TOPO_VALUE_SIZE 32

/* Writes the value of a parameter, such as
 * "InternetGatewayDevice.WiFi.MultiAP.APDevice.1.X_TS_Active", to value. The parameter
 * "APDeviceNumberOfEntries" determines how many routers the plug-in reads. path is shorter than 128
 * bytes; value has room for TOPO_VALUE_SIZE bytes. Any result other than 0 is a failure: the report
 * ends. */
int32_t devapi_topo_xml_getinfo(const char *path, char *value);

/* Fills info for a router by its path, such as "InternetGatewayDevice.WiFi.MultiAP.APDevice.1.".
 * path is shorter than 128 bytes. The result is ignored: info is used as the call leaves it. */
int32_t devapi_get_node_dev_info_by_newmetod(const char *path, ChildRouterInfo *info);

/* The stations of a router. */
typedef struct StationList {
    int32_t count;                          /* number of entries, of which the first 32 are
                                               reported */
    AdBaseInfo stations[MESH_MAX_STATIONS]; /* the stations */
} StationList;

/* Fills list for a router by its path. path is shorter than 128 bytes. The result is ignored: list
 * is used as the call leaves it. */
int32_t devapi_get_node_sta_info_by_newmetod(StationList *list, const char *path);

/* ---- Child routers: relay of commands ------------------------------------------------------- */

/*
 * Sends a command to the child router given by its "DeviceID", without waiting for a reply.
 *
 * text:   the command object as formatted JSON text, of any length.
 * length: its length in bytes, without the NUL.
 *
 * Any result other than 0 is a failure.
 */
int32_t devapi_cmdstring_sendto_tslink(const char *text, int32_t length);

/* Size of the method's text, in bytes. */
#define RELAY_METHOD_SIZE 64

/*
 * Sends a command to the child router given by its "DeviceID", and waits for the reply.
 *
 * text:   the command object as formatted JSON text, of any length.
 * method: the requested method, such as "get_childrouter_host_info", padded with zero bytes;
 *         shorter than RELAY_METHOD_SIZE bytes.
 * answer: NULL before the call; set to the child router's reply, a JSON text allocated with
 *         malloc(), which the plug-in frees with free(), also after a failure. Its content is
 *         validated.
 *
 * Any result other than 0 is a failure, after which answer is not read. A reply that is still NULL
 * is also a failure.
 */
int32_t devapi_cmdstring_sendto_tslink_with_retinfo(const char *text, const char *method,
                                                    char **answer);

/* ---- Mesh control --------------------------------------------------------------------------- */

/* Sets the mesh up (1) or takes it down (0). The result is ignored. */
int32_t devapi_setup_mesh(int32_t enable);

/* Sets the interval at which the agent reports to the platform. heartbeat may have any length. Any
 * result other than 0 is a failure. */
int32_t devapi_set_kaa_heartbeat(const char *heartbeat);

/* The switch and the mode of the mesh. */
typedef struct MeshStatus {
    char MeshEnable[8]; /* whether the mesh is on, 1 or 0 */
    char MeshMode[8];   /* mode of the mesh */
} MeshStatus;

/* Fills status. Any result other than 0 is a failure, after which status is not read. */
int32_t devapi_get_mesh_status(MeshStatus *status);

/* Results of devapi_set_mesh_status() for which clients get separate reasons, named like the
 * constants. The numbers in the names are reversed: existing clients rely on that. */
#define MESH_BUSY_1 3 /* the reason "MESH_BUSY_1" */
#define MESH_BUSY_0 4 /* the reason "MESH_BUSY_0" */

/* Applies the status. Any result other than 0 is a failure. */
int32_t devapi_set_mesh_status(const MeshStatus *status);

/* The period in which new routers may join the mesh. */
typedef struct PairStatus {
    char Enable[8]; /* whether routers may join from now on, 1 or 0 */
    char Time[8];   /* how long it stays open, s */
} PairStatus;

/* Result of devapi_set_pair_status() for which clients get the reason "WIFI_SET_NOT_SUPPORT". */
#define MESH_PAIRING_NOT_SUPPORTED 2

/* Opens or closes the period. Any result other than 0 is a failure. */
int32_t devapi_set_pair_status(const PairStatus *status);

/* A WPS action of a radio. */
typedef struct WpsState {
    char Radio[8];  /* the radio */
    char Action[8]; /* the action */
} WpsState;

/* Starts or stops WPS. Any result other than 0 is a failure. */
int32_t devapi_set_wps_state(const WpsState *state);

/* The LEDs. */
typedef struct LedInfo {
    char LedSwitch[2]; /* whether the LEDs are on, 1 or 0 */
    char LedCoLor[8];  /* colour of the LEDs */
    char LedLight[10]; /* brightness of the LEDs, % */
} LedInfo;

/* Fills info. Only -1 is a failure, after which info is not read. */
int32_t devapi_get_led_info(LedInfo *info);

/* Applies the three texts of a request. A value in the request that is not a string is passed as
 * NULL; the function then returns -1. on, colour and light may have any length. Only -1 is a
 * failure. */
int32_t devapi_set_sta_led(const char *on, const char *colour, const char *light);

/* Sets *state to the state of the first configuration: 1 or more when it is done. *state is 0
 * before the call. Any result other than 0 is a failure, after which *state is not read. */
int32_t devapi_get_tslink_config(int32_t *state);

/* Stores the state of the first configuration. state may have any length. Only -1 is a failure. */
int32_t devapi_set_sta_tslink_config(const char *state);

/* Removes the attached device with the MAC address. mac may have any length. Only -1 is a
 * failure. */
int32_t devapi_del_device(const char *mac);

/* ---- Checks of channels, links and signals -------------------------------------------------- */

/* The number of access points on each channel of a WifiChannelList, in its order. */
typedef struct ChannelApNum {
    int32_t counts_24g[64]; /* numbers for the 2.4 GHz channels */
    int32_t counts_5g[64];  /* numbers for the 5 GHz channels */
} ChannelApNum;

/* Fills counts for the channels of the list, which is passed as devapi_get_all_wifi_channel_list()
 * left it, even if that failed. Only -1 is a failure, after which counts is not read. */
int32_t devapi_get_channel_ap_num(const WifiChannelList *channels, ChannelApNum *counts);

/* The result of a check of the links. */
typedef struct LinkInfo {
    char Wifi24Enable[8];       /* whether the 2.4 GHz radio is on, 1 or 0 */
    char Wifi24Channel[8];      /* channel of the 2.4 GHz radio */
    char Wifi24ChannelCheck[8]; /* quality of the 2.4 GHz channel */
    char Wifi58Enable[8];       /* whether the 5 GHz radio is on, 1 or 0 */
    char Wifi58ChannelCheck[8]; /* quality of the 5 GHz channel */
    char Wifi58Channel[8];      /* channel of the 5 GHz radio */
    char LanIP[32];             /* IP address on the LAN side */
    char WanIp[32];             /* IP address on the WAN side */
    char DnsCheck[8];           /* DNS state, 1 or 0; also reported as the DHCP state */
    char Reserved[56];          /* not used */
} LinkInfo;

/* Fills info. The result is ignored: info is used as the call leaves it. */
int32_t devapi_get_link_info(LinkInfo *info);

/* Pings an address. target may have any length. Any result other than 0 is a failure: there was no
 * reply. */
int32_t devapi_get_ping_check(const char *target);

/* Sets *dbm to the signal strength of the station with the IP address. *dbm is 0 before the call;
 * ip may have any length. Only -1 is a failure, after which *dbm is not read. */
int32_t devapi_get_sta_rssi_by_ip(const char *ip, int32_t *dbm);

/* ---- Quality of service --------------------------------------------------------------------- */

/* The largest number of each. */
#define QOS_MAX_APPLICATIONS 4 /* applications */
#define QOS_MAX_RULES 6        /* rules */
#define QOS_MAX_TYPES 3        /* types of a rule */

/* A type of traffic that a rule matches. */
typedef struct QosType {
    char Type[16];     /* field of the packets that is compared */
    char Min[64];      /* lowest value that matches */
    char Max[64];      /* highest value that matches */
    char Reserved[64]; /* not used; stays zero */
} QosType;

/* A rule that gives traffic a priority. */
typedef struct QosRule {
    char Id[8];                   /* its identifier */
    char Action[8];               /* in a setting: "1" adds the rule, "2" deletes it, anything else
                                     changes it */
    char Name[32];                /* its name */
    char PriorityLevel[8];        /* the priority */
    int32_t type_count;           /* number of types, at most 3; a negative number means none */
    QosType types[QOS_MAX_TYPES]; /* the types */
} QosRule;

/* An application that the router knows. */
typedef struct QosApplication {
    char Id[8];            /* its identifier */
    char Name[32];         /* its name */
    char PriorityLevel[8]; /* its priority */
} QosApplication;

/* Quality of service as a whole. */
typedef struct QosInfo {
    char Enable[8];                                    /* whether quality of service is on,
                                                          1 or 0 */
    int32_t application_count;                         /* number of applications, at most 4; a
                                                          negative number means none */
    QosApplication applications[QOS_MAX_APPLICATIONS]; /* the applications */
    int32_t rule_count;                                /* number of rules, at most 6; a negative
                                                          number means none */
    QosRule rules[QOS_MAX_RULES];                      /* the rules */
} QosInfo;

/* Fills info. Any result other than 0 is a failure, after which info is not read. */
int32_t devapi_get_uplink_qos_info(QosInfo *info);

/* Sets the switch of quality of service to the number at the start of the request's text, of which
 * 7 bytes are read. Any result other than 0 is a failure. */
int32_t devapi_set_qos_enable(int32_t enable);

/* Sets the priority of the application with the identifier. priority is shorter than 8 bytes. Any
 * result other than 0 is a failure. */
int32_t devapi_set_qos_app_info(int32_t identifier, const char *priority);

/* Adds, deletes or changes a rule, as given by its Action. To delete a rule, only Id and Action are
 * filled. For an added rule, the device writes its identifier to Id; whether it was added is read
 * from Action after the call. Any result other than 0 is a failure. */
int32_t devapi_set_qos_classification_info(QosRule *rule);

/* ---- Service switches ----------------------------------------------------------------------- */

/* Multiservice mode of the access point. */
typedef struct MultiserviceMode {
    char Mode[8]; /* the mode */
} MultiserviceMode;

/* Fills mode. Any result other than 0 is a failure, after which mode is not read. */
int32_t devapi_get_ap_multiservice_mode(MultiserviceMode *mode);

/* Applies the mode. Any result other than 0 is a failure. */
int32_t devapi_set_ap_multiservice_mode(const MultiserviceMode *mode);

/* The result of a speed test. */
typedef struct SpeedTest {
    char DownBandWidth[8]; /* download bandwidth, kbit/s */
    char UpBandWidth[8];   /* upload bandwidth, kbit/s */
    char Delay[8];         /* delay, ms */
} SpeedTest;

/* Runs a speed test, which takes a while, and fills test. Any result other than 0 is a failure,
 * after which test is not read. */
int32_t devapi_speedtest_request(SpeedTest *test);

/* NAT helpers (ALG) by protocol. */
typedef struct AlgAbility {
    char PPTP[8];  /* whether the helper for PPTP is on, 1 or 0 */
    char FTP[8];   /* whether the helper for FTP is on, 1 or 0 */
    char IPSEC[8]; /* whether the helper for IPsec is on, 1 or 0 */
    char L2TP[8];  /* whether the helper for L2TP is on, 1 or 0 */
    char RTSP[8];  /* whether the helper for RTSP is on, 1 or 0 */
    char H323[8];  /* whether the helper for H.323 is on, 1 or 0 */
    char SIP[8];   /* whether the helper for SIP is on, 1 or 0 */
} AlgAbility;

/* Fills ability. Any result other than 0 is a failure, after which ability is not read. */
int32_t devapi_get_ap_alg_ability(AlgAbility *ability);

/* Applies the switches. Any result other than 0 is a failure. */
int32_t devapi_set_ap_alg_ability(const AlgAbility *ability);

/* The switch of UPnP. */
typedef struct UpnpState {
    char Enable[8]; /* whether UPnP is on, 1 or 0 */
} UpnpState;

/* Fills state. Any result other than 0 is a failure, after which state is not read. */
int32_t devapi_get_upnp_state(UpnpState *state);

/* Applies the switch. Any result other than 0 is a failure. */
int32_t devapi_set_upnp_state(const UpnpState *state);

/* Writes the state of the manufacturer's configuration service to status. status has room for size
 * bytes. Any result other than 0 is a failure, after which status is not read. */
int32_t devapi_get_tsconf_status(char *status, int32_t size);

/* Sets *enable to the switch of WPS; at most 7 characters of the number, including its sign, are
 * reported. *enable is 0 before the call. Any result other than 0 is a failure, after which *enable
 * is not read. */
int32_t devapi_get_wps_enable(int32_t *enable);

/* Sets the switch of WPS to the number at the start of the request's text, of which 7 bytes are
 * read. Any result other than 0 is a failure. */
int32_t devapi_set_wps_enable(int32_t enable);

/* ---- Ports ---------------------------------------------------------------------------------- */

/* The traffic of a port. */
typedef struct PortStatistics {
    char Port[16];       /* name of the port */
    char tx_traffic[32]; /* bytes sent */
    char rx_traffic[32]; /* bytes received */
    char tx_packets[32]; /* packets sent */
    char rx_packets[32]; /* packets received */
} PortStatistics;

/* The traffic of all ports. */
typedef struct PortStatisticsInfo {
    int32_t count;           /* number of entries; a negative number means none */
    PortStatistics *entries; /* array allocated with malloc(), which the plug-in frees; NULL for
                                none */
} PortStatisticsInfo;

/* Fills info. If entries is set, it is also freed after a failure. Any result other than 0 is a
 * failure, after which info is not read. */
int32_t devapi_get_port_statistics_info(PortStatisticsInfo *info);

/* The ports that are bound to a WAN connection. */
typedef struct PortBinding {
    char Index[16];       /* number of the connection */
    char WANName[32];     /* its name */
    char BoundPorts[288]; /* the ports */
} PortBinding;

/* The largest number of bindings that are reported. */
#define PORT_MAX_BINDINGS 8

/* All bindings. */
typedef struct PortBindingInfo {
    int32_t count;                          /* number of bindings, at most 8; a negative number
                                               means none */
    PortBinding entries[PORT_MAX_BINDINGS]; /* the bindings */
} PortBindingInfo;

/* Fills info. Any result other than 0 is a failure, after which info is not read. */
int32_t devapi_get_port_binding_info(PortBindingInfo *info);

/* Binds ports to the connection with the given number. index is shorter than 8 bytes; ports is
 * shorter than 256 bytes. Any result other than 0 is a failure. */
int32_t devapi_set_port_binding(const char *index, const char *ports);

/* ---- Layout --------------------------------------------------------------------------------- */

/* The two sides are built by different vendors at different times, so a layout that differs must
 * not compile. */
#define DEVAPI_RECORD_SIZE(record, size)                                                           \
    static_assert(sizeof(record) == (size), #record " has to be " #size " bytes")
#define DEVAPI_RECORD_FIELD(record, field, offset, width)                                          \
    static_assert(offsetof(record, field) == (offset) && sizeof(((record *)0)->field) == (width),  \
                  #record "." #field " has to be " #width " bytes at " #offset)

/* The layout of a record with pointers is only checked on 32-bit processors, the targets. */
#define DEVAPI_RECORD_SIZE_32(record, size)                                                        \
    static_assert(sizeof(void *) != 4 || sizeof(record) == (size),                                 \
                  #record " has to be " #size " bytes")
#define DEVAPI_RECORD_OFFSET_32(record, field, offset)                                             \
    static_assert(sizeof(void *) != 4 || offsetof(record, field) == (offset),                      \
                  #record "." #field " has to be at " #offset)

DEVAPI_RECORD_SIZE(SnInfo, 328);
DEVAPI_RECORD_FIELD(SnInfo, MAC, 0, 64);
DEVAPI_RECORD_FIELD(SnInfo, tslinkstatus, 64, 8);
DEVAPI_RECORD_FIELD(SnInfo, DeviceType, 72, 256);

DEVAPI_RECORD_SIZE(SystemInfo, 1088);
DEVAPI_RECORD_FIELD(SystemInfo, SWVersion, 0, 64);
DEVAPI_RECORD_FIELD(SystemInfo, HDVersion, 64, 64);
DEVAPI_RECORD_FIELD(SystemInfo, ProductCLass, 128, 64);
DEVAPI_RECORD_FIELD(SystemInfo, CPUClass, 192, 64);
DEVAPI_RECORD_FIELD(SystemInfo, DEVType, 256, 64);
DEVAPI_RECORD_FIELD(SystemInfo, DEVType1, 320, 64);
DEVAPI_RECORD_FIELD(SystemInfo, Capability, 384, 64);
DEVAPI_RECORD_FIELD(SystemInfo, Card, 448, 64);
DEVAPI_RECORD_FIELD(SystemInfo, UPLink, 512, 64);
DEVAPI_RECORD_FIELD(SystemInfo, Cardno, 576, 64);
DEVAPI_RECORD_FIELD(SystemInfo, IPV6, 640, 64);
DEVAPI_RECORD_FIELD(SystemInfo, VLANbind, 704, 64);
DEVAPI_RECORD_FIELD(SystemInfo, LED, 768, 64);
DEVAPI_RECORD_FIELD(SystemInfo, NFC, 832, 64);
DEVAPI_RECORD_FIELD(SystemInfo, VLANCapability, 896, 192);

DEVAPI_RECORD_SIZE(HgBaseInfo, 856);
DEVAPI_RECORD_FIELD(HgBaseInfo, Name, 0, 64);
DEVAPI_RECORD_FIELD(HgBaseInfo, Mac, 64, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, NetStatus, 96, 16);
DEVAPI_RECORD_FIELD(HgBaseInfo, UpSpeed, 112, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, DownSpeed, 144, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, WiFiStatus1, 176, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, WiFiStatus2, 208, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, SSID1, 240, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, SSID2, 272, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, Wlan1Mac, 304, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, Wlan0Mac, 336, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, ip, 368, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, HWVersion, 400, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, FWVersion, 432, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, FWDATA, 464, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, UpTime, 496, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, WanUptime, 528, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, DeviceType, 560, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, AreaCode, 592, 32);
DEVAPI_RECORD_FIELD(HgBaseInfo, AddressType, 624, 16);
DEVAPI_RECORD_FIELD(HgBaseInfo, Cpu, 640, 8);
DEVAPI_RECORD_FIELD(HgBaseInfo, QQGameAcceleratorEnable, 648, 16);
DEVAPI_RECORD_FIELD(HgBaseInfo, QosAcceleratorEnable, 664, 16);
DEVAPI_RECORD_FIELD(HgBaseInfo, FireWallEnable, 680, 16);
DEVAPI_RECORD_FIELD(HgBaseInfo, LedLight, 696, 8);
DEVAPI_RECORD_FIELD(HgBaseInfo, LedSwitch, 704, 8);
DEVAPI_RECORD_FIELD(HgBaseInfo, Memory, 712, 8);
DEVAPI_RECORD_FIELD(HgBaseInfo, WanLinkMode, 720, 8);
DEVAPI_RECORD_FIELD(HgBaseInfo, ConfiguerStatus, 728, 128);

DEVAPI_RECORD_SIZE(LanIpInfo, 128);
DEVAPI_RECORD_FIELD(LanIpInfo, GatewayLanIP, 0, 32);
DEVAPI_RECORD_FIELD(LanIpInfo, SubnetMask, 32, 32);
DEVAPI_RECORD_FIELD(LanIpInfo, StartIp, 64, 32);
DEVAPI_RECORD_FIELD(LanIpInfo, EndIp, 96, 32);

DEVAPI_RECORD_SIZE(LanIpSetting, 192);
DEVAPI_RECORD_FIELD(LanIpSetting, info, 0, 128);
DEVAPI_RECORD_FIELD(LanIpSetting, FailReason, 128, 64);

DEVAPI_RECORD_SIZE(WanIpInfo, 163);
DEVAPI_RECORD_FIELD(WanIpInfo, ip, 0, 34);
DEVAPI_RECORD_FIELD(WanIpInfo, Dns, 34, 65);
DEVAPI_RECORD_FIELD(WanIpInfo, WanGateWay, 99, 32);
DEVAPI_RECORD_FIELD(WanIpInfo, ConnectionState, 131, 32);

DEVAPI_RECORD_SIZE(HomePageInfo, 408);
DEVAPI_RECORD_FIELD(HomePageInfo, Devname, 0, 64);
DEVAPI_RECORD_FIELD(HomePageInfo, UploadSpeed, 64, 64);
DEVAPI_RECORD_FIELD(HomePageInfo, DownloadSpeed, 128, 64);
DEVAPI_RECORD_FIELD(HomePageInfo, GameSpeed, 192, 8);
DEVAPI_RECORD_FIELD(HomePageInfo, GamePort, 200, 8);
DEVAPI_RECORD_FIELD(HomePageInfo, GameBand, 208, 8);
DEVAPI_RECORD_FIELD(HomePageInfo, CpuRate, 216, 64);
DEVAPI_RECORD_FIELD(HomePageInfo, MemRate, 280, 64);
DEVAPI_RECORD_FIELD(HomePageInfo, CpuTemperature, 344, 64);

DEVAPI_RECORD_SIZE(DhcpInfo, 208);
DEVAPI_RECORD_FIELD(DhcpInfo, Enable, 0, 16);
DEVAPI_RECORD_FIELD(DhcpInfo, IPAddress, 16, 64);
DEVAPI_RECORD_FIELD(DhcpInfo, SubNetMask, 80, 64);
DEVAPI_RECORD_FIELD(DhcpInfo, GateWay, 144, 64);

DEVAPI_RECORD_SIZE(DhcpSetting, 272);
DEVAPI_RECORD_FIELD(DhcpSetting, info, 0, 208);
DEVAPI_RECORD_FIELD(DhcpSetting, FailReason, 208, 64);

DEVAPI_RECORD_SIZE(PppoeInfo, 144);
DEVAPI_RECORD_FIELD(PppoeInfo, Account, 0, 64);
DEVAPI_RECORD_FIELD(PppoeInfo, Password, 64, 64);
DEVAPI_RECORD_FIELD(PppoeInfo, Enable, 128, 16);

DEVAPI_RECORD_SIZE(PppoeSetting, 208);
DEVAPI_RECORD_FIELD(PppoeSetting, info, 0, 144);
DEVAPI_RECORD_FIELD(PppoeSetting, FailReason, 144, 64);

DEVAPI_RECORD_SIZE(LoginInfo, 336);
DEVAPI_RECORD_FIELD(LoginInfo, WebLoginType, 0, 8);
DEVAPI_RECORD_FIELD(LoginInfo, Type, 8, 8);
DEVAPI_RECORD_FIELD(LoginInfo, Name, 16, 128);
DEVAPI_RECORD_FIELD(LoginInfo, Password, 144, 128);
DEVAPI_RECORD_FIELD(LoginInfo, WebLoginIp, 272, 64);

DEVAPI_RECORD_SIZE(RebootInfo, 32);
DEVAPI_RECORD_FIELD(RebootInfo, GatewayRebootEnable, 0, 8);
DEVAPI_RECORD_FIELD(RebootInfo, Time, 8, 8);
DEVAPI_RECORD_FIELD(RebootInfo, DaysOfWeek, 16, 16);

DEVAPI_RECORD_SIZE(HgSleepInfo, 40);
DEVAPI_RECORD_FIELD(HgSleepInfo, GatewaySleepEnable, 0, 8);
DEVAPI_RECORD_FIELD(HgSleepInfo, WiFiSleepEnable, 8, 8);
DEVAPI_RECORD_FIELD(HgSleepInfo, LedSleepEnable, 16, 8);
DEVAPI_RECORD_FIELD(HgSleepInfo, StartTime, 24, 8);
DEVAPI_RECORD_FIELD(HgSleepInfo, EndTime, 32, 8);

DEVAPI_RECORD_SIZE(NetInspectInfo, 1944);
DEVAPI_RECORD_FIELD(NetInspectInfo, reserved0, 0, 128);
DEVAPI_RECORD_FIELD(NetInspectInfo, WanStatus, 128, 64);
DEVAPI_RECORD_FIELD(NetInspectInfo, NetStatus, 192, 392);
DEVAPI_RECORD_FIELD(NetInspectInfo, WanIP, 584, 64);
DEVAPI_RECORD_FIELD(NetInspectInfo, NetMask, 648, 256);
DEVAPI_RECORD_FIELD(NetInspectInfo, DnsStatus, 904, 8);
DEVAPI_RECORD_FIELD(NetInspectInfo, NetQuality, 912, 1032);

DEVAPI_RECORD_SIZE(WifiInspectInfo, 44);
DEVAPI_RECORD_FIELD(WifiInspectInfo, WiFiDevNum, 0, 8);
DEVAPI_RECORD_FIELD(WifiInspectInfo, Security, 8, 8);
DEVAPI_RECORD_FIELD(WifiInspectInfo, Channel, 16, 8);
DEVAPI_RECORD_FIELD(WifiInspectInfo, Congestion, 24, 8);
DEVAPI_RECORD_FIELD(WifiInspectInfo, PowerLevel, 32, 8);
DEVAPI_RECORD_FIELD(WifiInspectInfo, FireWallEnable, 40, 4);

DEVAPI_RECORD_SIZE(FwInspectInfo, 1088);
DEVAPI_RECORD_FIELD(FwInspectInfo, FWVersion, 0, 1088);

DEVAPI_RECORD_SIZE(ResourceInfo, 32);
DEVAPI_RECORD_FIELD(ResourceInfo, CpuPercent, 0, 8);
DEVAPI_RECORD_FIELD(ResourceInfo, MemPercent, 8, 8);
DEVAPI_RECORD_FIELD(ResourceInfo, LanDevNum, 16, 8);
DEVAPI_RECORD_FIELD(ResourceInfo, ProtectedDevNum, 24, 8);

DEVAPI_RECORD_SIZE(SsidInfo, 292);
DEVAPI_RECORD_FIELD(SsidInfo, SSIDIndex, 0, 4);
DEVAPI_RECORD_FIELD(SsidInfo, SSID, 4, 64);
DEVAPI_RECORD_FIELD(SsidInfo, PWD, 68, 64);
DEVAPI_RECORD_FIELD(SsidInfo, ENCRYPT, 132, 8);
DEVAPI_RECORD_FIELD(SsidInfo, PowerLevel, 140, 64);
DEVAPI_RECORD_FIELD(SsidInfo, Channel, 204, 8);
DEVAPI_RECORD_FIELD(SsidInfo, UsedChannel, 212, 8);
DEVAPI_RECORD_FIELD(SsidInfo, Enable, 220, 8);
DEVAPI_RECORD_FIELD(SsidInfo, Bandwidth, 228, 16);
DEVAPI_RECORD_FIELD(SsidInfo, Type, 244, 16);
DEVAPI_RECORD_FIELD(SsidInfo, Mode, 260, 8);
DEVAPI_RECORD_FIELD(SsidInfo, AdvertisementEnable, 268, 8);
DEVAPI_RECORD_FIELD(SsidInfo, Beamforming, 276, 8);
DEVAPI_RECORD_FIELD(SsidInfo, PermissionProperty, 284, 8);

DEVAPI_RECORD_SIZE(WifiSleepInfo, 120);
DEVAPI_RECORD_FIELD(WifiSleepInfo, StartTimer, 0, 4);
DEVAPI_RECORD_FIELD(WifiSleepInfo, EndTimer, 4, 4);
DEVAPI_RECORD_FIELD(WifiSleepInfo, Enable, 8, 16);
DEVAPI_RECORD_FIELD(WifiSleepInfo, StartTime, 24, 32);
DEVAPI_RECORD_FIELD(WifiSleepInfo, EndTime, 56, 32);
DEVAPI_RECORD_FIELD(WifiSleepInfo, DaysOfWeek, 88, 32);

DEVAPI_RECORD_SIZE(ScanEntry, 448);
DEVAPI_RECORD_FIELD(ScanEntry, SSID, 0, 64);
DEVAPI_RECORD_FIELD(ScanEntry, PowerLevel, 64, 64);
DEVAPI_RECORD_FIELD(ScanEntry, ENCRYPT, 128, 64);
DEVAPI_RECORD_FIELD(ScanEntry, WPACypher, 192, 64);
DEVAPI_RECORD_FIELD(ScanEntry, WPA2Cypher, 256, 64);
DEVAPI_RECORD_FIELD(ScanEntry, Band, 320, 64);
DEVAPI_RECORD_FIELD(ScanEntry, Connected, 384, 64);

DEVAPI_RECORD_SIZE_32(ScanResult, 244);
DEVAPI_RECORD_FIELD(ScanResult, reserved0, 0, 4);
DEVAPI_RECORD_OFFSET_32(ScanResult, entries, 4);

DEVAPI_RECORD_SIZE(ChannelPower, 128);
DEVAPI_RECORD_FIELD(ChannelPower, name, 0, 64);
DEVAPI_RECORD_FIELD(ChannelPower, dbpower, 64, 64);

DEVAPI_RECORD_SIZE_32(ChannelPowerResult, 8);
DEVAPI_RECORD_FIELD(ChannelPowerResult, count, 0, 4);
DEVAPI_RECORD_OFFSET_32(ChannelPowerResult, entries, 4);

DEVAPI_RECORD_SIZE(WifiChannelList, 264);
DEVAPI_RECORD_FIELD(WifiChannelList, count_24g, 0, 4);
DEVAPI_RECORD_FIELD(WifiChannelList, count_5g, 4, 4);
DEVAPI_RECORD_FIELD(WifiChannelList, channels_24g, 8, 128);
DEVAPI_RECORD_FIELD(WifiChannelList, channels_5g, 136, 128);

DEVAPI_RECORD_SIZE(GuestWifiInfo, 260);
DEVAPI_RECORD_FIELD(GuestWifiInfo, reserved0, 0, 4);
DEVAPI_RECORD_FIELD(GuestWifiInfo, RadioEnable, 4, 8);
DEVAPI_RECORD_FIELD(GuestWifiInfo, Enable, 12, 16);
DEVAPI_RECORD_FIELD(GuestWifiInfo, SSID, 28, 64);
DEVAPI_RECORD_FIELD(GuestWifiInfo, Band, 92, 16);
DEVAPI_RECORD_FIELD(GuestWifiInfo, ContinueTime, 108, 8);
DEVAPI_RECORD_FIELD(GuestWifiInfo, HourTime, 116, 8);
DEVAPI_RECORD_FIELD(GuestWifiInfo, EndTimestamp, 124, 16);
DEVAPI_RECORD_FIELD(GuestWifiInfo, Remainingtime, 140, 16);
DEVAPI_RECORD_FIELD(GuestWifiInfo, PWD, 156, 64);
DEVAPI_RECORD_FIELD(GuestWifiInfo, ENCRYPT, 220, 16);
DEVAPI_RECORD_FIELD(GuestWifiInfo, Mode, 236, 8);
DEVAPI_RECORD_FIELD(GuestWifiInfo, AdvertisementEnable, 244, 8);
DEVAPI_RECORD_FIELD(GuestWifiInfo, PermissionProperty, 252, 8);

DEVAPI_RECORD_SIZE(UplinkWifiInfo, 448);
DEVAPI_RECORD_FIELD(UplinkWifiInfo, SSID, 0, 64);
DEVAPI_RECORD_FIELD(UplinkWifiInfo, PWD, 64, 64);
DEVAPI_RECORD_FIELD(UplinkWifiInfo, ENCRYPT, 128, 64);
DEVAPI_RECORD_FIELD(UplinkWifiInfo, WPACypher, 192, 64);
DEVAPI_RECORD_FIELD(UplinkWifiInfo, WPA2Cypher, 256, 64);
DEVAPI_RECORD_FIELD(UplinkWifiInfo, Band, 320, 128);

DEVAPI_RECORD_SIZE(UpdateStatusInfo, 360);
DEVAPI_RECORD_FIELD(UpdateStatusInfo, Name, 0, 64);
DEVAPI_RECORD_FIELD(UpdateStatusInfo, HWVersion, 64, 64);
DEVAPI_RECORD_FIELD(UpdateStatusInfo, FWVersion, 128, 64);
DEVAPI_RECORD_FIELD(UpdateStatusInfo, FWDATA, 192, 64);
DEVAPI_RECORD_FIELD(UpdateStatusInfo, DeviceType, 256, 64);
DEVAPI_RECORD_FIELD(UpdateStatusInfo, AreaCode, 320, 40);

DEVAPI_RECORD_SIZE(WanNum, 208);
DEVAPI_RECORD_FIELD(WanNum, NUM, 0, 8);
DEVAPI_RECORD_FIELD(WanNum, Description, 8, 200);

DEVAPI_RECORD_SIZE(WanInfo, 1944);
DEVAPI_RECORD_FIELD(WanInfo, INDEX, 0, 64);
DEVAPI_RECORD_FIELD(WanInfo, IFNAME, 64, 64);
DEVAPI_RECORD_FIELD(WanInfo, CONNECTIONSTATUS, 128, 64);
DEVAPI_RECORD_FIELD(WanInfo, Reserved1, 192, 8);
DEVAPI_RECORD_FIELD(WanInfo, CONNECTIONTYPE, 200, 64);
DEVAPI_RECORD_FIELD(WanInfo, PROTOCOL, 264, 64);
DEVAPI_RECORD_FIELD(WanInfo, UPLINKMODE, 328, 64);
DEVAPI_RECORD_FIELD(WanInfo, WANName, 392, 64);
DEVAPI_RECORD_FIELD(WanInfo, SERVICELIST, 456, 64);
DEVAPI_RECORD_FIELD(WanInfo, ADDRESSTYPE, 520, 64);
DEVAPI_RECORD_FIELD(WanInfo, IPADDRESS, 584, 64);
DEVAPI_RECORD_FIELD(WanInfo, SUBNETMASK, 648, 64);
DEVAPI_RECORD_FIELD(WanInfo, GATEWAY, 712, 64);
DEVAPI_RECORD_FIELD(WanInfo, DNS1, 776, 64);
DEVAPI_RECORD_FIELD(WanInfo, DNS2, 840, 64);
DEVAPI_RECORD_FIELD(WanInfo, Reserved2, 904, 16);
DEVAPI_RECORD_FIELD(WanInfo, IPV6_CONNECTIONSTATUS, 920, 64);
DEVAPI_RECORD_FIELD(WanInfo, IPV6_PRIFIX, 984, 64);
DEVAPI_RECORD_FIELD(WanInfo, IPV6_PREFIXLENGTH, 1048, 64);
DEVAPI_RECORD_FIELD(WanInfo, IPV6_IPADDRESS, 1112, 64);
DEVAPI_RECORD_FIELD(WanInfo, IPV6_GATEWAY, 1176, 64);
DEVAPI_RECORD_FIELD(WanInfo, IPV6_DNS1, 1240, 64);
DEVAPI_RECORD_FIELD(WanInfo, IPV6_DNS2, 1304, 64);
DEVAPI_RECORD_FIELD(WanInfo, PPPOE_USR_NAME, 1368, 64);
DEVAPI_RECORD_FIELD(WanInfo, PPPOE_PASSWORD, 1432, 64);
DEVAPI_RECORD_FIELD(WanInfo, PPPOE_PROXY, 1496, 64);
DEVAPI_RECORD_FIELD(WanInfo, PPPOE_SERVICENAME, 1560, 64);
DEVAPI_RECORD_FIELD(WanInfo, PPPOE_DIAL_MODE, 1624, 64);
DEVAPI_RECORD_FIELD(WanInfo, NATENABLE, 1688, 64);
DEVAPI_RECORD_FIELD(WanInfo, QOSENABLE, 1752, 64);
DEVAPI_RECORD_FIELD(WanInfo, VLANID, 1816, 64);
DEVAPI_RECORD_FIELD(WanInfo, VLANPRIORITY, 1880, 64);

DEVAPI_RECORD_SIZE(AdBaseInfo, 656);
DEVAPI_RECORD_FIELD(AdBaseInfo, Kind, 0, 4);
DEVAPI_RECORD_FIELD(AdBaseInfo, HostIndex, 4, 4);
DEVAPI_RECORD_FIELD(AdBaseInfo, Mac, 8, 32);
DEVAPI_RECORD_FIELD(AdBaseInfo, UID, 40, 32);
DEVAPI_RECORD_FIELD(AdBaseInfo, DevType, 72, 32);
DEVAPI_RECORD_FIELD(AdBaseInfo, DevFactory, 104, 32);
DEVAPI_RECORD_FIELD(AdBaseInfo, Name, 136, 32);
DEVAPI_RECORD_FIELD(AdBaseInfo, ByName, 168, 32);
DEVAPI_RECORD_FIELD(AdBaseInfo, OS, 200, 32);
DEVAPI_RECORD_FIELD(AdBaseInfo, Version, 232, 32);
DEVAPI_RECORD_FIELD(AdBaseInfo, NetStatus, 264, 8);
DEVAPI_RECORD_FIELD(AdBaseInfo, NetMonopoly, 272, 32);
DEVAPI_RECORD_FIELD(AdBaseInfo, AccessType, 304, 32);
DEVAPI_RECORD_FIELD(AdBaseInfo, AccessEnable, 336, 8);
DEVAPI_RECORD_FIELD(AdBaseInfo, AccessTime, 344, 32);
DEVAPI_RECORD_FIELD(AdBaseInfo, UpSpeed, 376, 32);
DEVAPI_RECORD_FIELD(AdBaseInfo, DownSpeed, 408, 32);
DEVAPI_RECORD_FIELD(AdBaseInfo, ip, 440, 64);
DEVAPI_RECORD_FIELD(AdBaseInfo, AccessCode, 504, 32);
DEVAPI_RECORD_FIELD(AdBaseInfo, SSIDIndex, 536, 48);
DEVAPI_RECORD_FIELD(AdBaseInfo, LinkStatus, 584, 8);
DEVAPI_RECORD_FIELD(AdBaseInfo, SpeedLimit, 592, 8);
DEVAPI_RECORD_FIELD(AdBaseInfo, DownLimit, 600, 16);
DEVAPI_RECORD_FIELD(AdBaseInfo, UpLimit, 616, 16);
DEVAPI_RECORD_FIELD(AdBaseInfo, GreennetProtectEnable, 632, 8);
DEVAPI_RECORD_FIELD(AdBaseInfo, Dbm, 640, 8);
DEVAPI_RECORD_FIELD(AdBaseInfo, StaticDhcpEnable, 648, 8);

DEVAPI_RECORD_SIZE(AdBaseSetting, 720);
DEVAPI_RECORD_FIELD(AdBaseSetting, info, 0, 656);
DEVAPI_RECORD_FIELD(AdBaseSetting, FailReason, 656, 64);

DEVAPI_RECORD_SIZE(AttachDeviceRight, 196);
DEVAPI_RECORD_FIELD(AttachDeviceRight, HostIndex, 0, 4);
DEVAPI_RECORD_FIELD(AttachDeviceRight, MAC, 4, 64);
DEVAPI_RECORD_FIELD(AttachDeviceRight, name, 68, 64);
DEVAPI_RECORD_FIELD(AttachDeviceRight, InternetAccessRight, 132, 64);

DEVAPI_RECORD_SIZE(FirewallSwitch, 16);
DEVAPI_RECORD_FIELD(FirewallSwitch, Enable, 0, 16);

DEVAPI_RECORD_SIZE(GreenHostInfo, 160);
DEVAPI_RECORD_FIELD(GreenHostInfo, HostIndex, 0, 8);
DEVAPI_RECORD_FIELD(GreenHostInfo, Mac, 8, 64);
DEVAPI_RECORD_FIELD(GreenHostInfo, Name, 72, 64);
DEVAPI_RECORD_FIELD(GreenHostInfo, NotifyEnable, 136, 8);
DEVAPI_RECORD_FIELD(GreenHostInfo, ProtectEnable, 144, 8);
DEVAPI_RECORD_FIELD(GreenHostInfo, NewEntry, 152, 8);

DEVAPI_RECORD_SIZE(ProtectPeriodInfo, 40);
DEVAPI_RECORD_FIELD(ProtectPeriodInfo, HostIndex, 0, 4);
DEVAPI_RECORD_FIELD(ProtectPeriodInfo, PeriodNum, 4, 4);
DEVAPI_RECORD_FIELD(ProtectPeriodInfo, StartTime, 8, 8);
DEVAPI_RECORD_FIELD(ProtectPeriodInfo, EndTime, 16, 8);
DEVAPI_RECORD_FIELD(ProtectPeriodInfo, Enable, 24, 8);
DEVAPI_RECORD_FIELD(ProtectPeriodInfo, DaysOfWeek, 32, 8);

DEVAPI_RECORD_SIZE(UpdateSchedule, 34);
DEVAPI_RECORD_FIELD(UpdateSchedule, Enable, 0, 2);
DEVAPI_RECORD_FIELD(UpdateSchedule, StartHour, 2, 8);
DEVAPI_RECORD_FIELD(UpdateSchedule, StartMinute, 10, 8);
DEVAPI_RECORD_FIELD(UpdateSchedule, EndHour, 18, 8);
DEVAPI_RECORD_FIELD(UpdateSchedule, EndMinute, 26, 8);

DEVAPI_RECORD_SIZE(ChildRouterList, 36);
DEVAPI_RECORD_FIELD(ChildRouterList, identifiers, 0, 32);
DEVAPI_RECORD_FIELD(ChildRouterList, count, 32, 4);

DEVAPI_RECORD_SIZE(MeshLink, 72);
DEVAPI_RECORD_FIELD(MeshLink, nexthopMAC, 0, 32);
DEVAPI_RECORD_FIELD(MeshLink, interface, 32, 24);
DEVAPI_RECORD_FIELD(MeshLink, dbm, 56, 16);

DEVAPI_RECORD_SIZE(ChildRouterInfo, 1100);
DEVAPI_RECORD_FIELD(ChildRouterInfo, RouterDeviceID, 0, 32);
DEVAPI_RECORD_FIELD(ChildRouterInfo, Name, 32, 64);
DEVAPI_RECORD_FIELD(ChildRouterInfo, Mac, 96, 64);
DEVAPI_RECORD_FIELD(ChildRouterInfo, NetStatus, 160, 8);
DEVAPI_RECORD_FIELD(ChildRouterInfo, ChildRouterAccessType, 168, 8);
DEVAPI_RECORD_FIELD(ChildRouterInfo, UpSpeed, 176, 16);
DEVAPI_RECORD_FIELD(ChildRouterInfo, DownSpeed, 192, 16);
DEVAPI_RECORD_FIELD(ChildRouterInfo, ip, 208, 32);
DEVAPI_RECORD_FIELD(ChildRouterInfo, FWVersion, 240, 32);
DEVAPI_RECORD_FIELD(ChildRouterInfo, FWDATA, 272, 32);
DEVAPI_RECORD_FIELD(ChildRouterInfo, UpTime, 304, 16);
DEVAPI_RECORD_FIELD(ChildRouterInfo, DeviceType, 320, 32);
DEVAPI_RECORD_FIELD(ChildRouterInfo, AreaCode, 352, 16);
DEVAPI_RECORD_FIELD(ChildRouterInfo, HWVersion, 368, 16);
DEVAPI_RECORD_FIELD(ChildRouterInfo, Wlan1Mac, 384, 32);
DEVAPI_RECORD_FIELD(ChildRouterInfo, Wlan0Mac, 416, 32);
DEVAPI_RECORD_FIELD(ChildRouterInfo, ParentMac, 448, 32);
DEVAPI_RECORD_FIELD(ChildRouterInfo, dbm, 480, 8);
DEVAPI_RECORD_FIELD(ChildRouterInfo, links, 488, 576);
DEVAPI_RECORD_FIELD(ChildRouterInfo, link_count, 1064, 4);
DEVAPI_RECORD_FIELD(ChildRouterInfo, Reserved, 1068, 16);
DEVAPI_RECORD_FIELD(ChildRouterInfo, LinkSpeed, 1084, 16);

DEVAPI_RECORD_SIZE(ChildMeshInfo, 200);
DEVAPI_RECORD_FIELD(ChildMeshInfo, Mac, 0, 32);
DEVAPI_RECORD_FIELD(ChildMeshInfo, ChildMac, 32, 32);
DEVAPI_RECORD_FIELD(ChildMeshInfo, ParentMac, 64, 32);
DEVAPI_RECORD_FIELD(ChildMeshInfo, Reserved, 96, 104);

DEVAPI_RECORD_SIZE(ChildMeshList, 6404);
DEVAPI_RECORD_FIELD(ChildMeshList, count, 0, 4);
DEVAPI_RECORD_FIELD(ChildMeshList, children, 4, 6400);

DEVAPI_RECORD_SIZE(ChildStationList, 260);
DEVAPI_RECORD_FIELD(ChildStationList, indexes, 0, 256);
DEVAPI_RECORD_FIELD(ChildStationList, count, 256, 4);

DEVAPI_RECORD_SIZE(DevStatusInfo, 128);
DEVAPI_RECORD_FIELD(DevStatusInfo, Reserved, 0, 64);
DEVAPI_RECORD_FIELD(DevStatusInfo, Cpu, 64, 32);
DEVAPI_RECORD_FIELD(DevStatusInfo, Memory, 96, 32);

DEVAPI_RECORD_SIZE_32(TopoNode, 16);
DEVAPI_RECORD_FIELD(TopoNode, level, 0, 4);
DEVAPI_RECORD_FIELD(TopoNode, Reserved, 4, 8);
DEVAPI_RECORD_OFFSET_32(TopoNode, next, 12);

DEVAPI_RECORD_SIZE(NodeDevInfo, 192);
DEVAPI_RECORD_FIELD(NodeDevInfo, Mac, 0, 64);
DEVAPI_RECORD_FIELD(NodeDevInfo, ip, 64, 32);
DEVAPI_RECORD_FIELD(NodeDevInfo, AccessType, 96, 8);
DEVAPI_RECORD_FIELD(NodeDevInfo, dbm, 104, 8);
DEVAPI_RECORD_FIELD(NodeDevInfo, FWVersion, 112, 64);
DEVAPI_RECORD_FIELD(NodeDevInfo, LinkSpeed, 176, 16);

DEVAPI_RECORD_SIZE_32(NodeBaseInfo, 104);
DEVAPI_RECORD_FIELD(NodeBaseInfo, Kind, 0, 4);
DEVAPI_RECORD_FIELD(NodeBaseInfo, Mac, 4, 96);
DEVAPI_RECORD_OFFSET_32(NodeBaseInfo, next, 100);

DEVAPI_RECORD_SIZE(StationList, 41988);
DEVAPI_RECORD_FIELD(StationList, count, 0, 4);
DEVAPI_RECORD_FIELD(StationList, stations, 4, 41984);

DEVAPI_RECORD_SIZE(MeshStatus, 16);
DEVAPI_RECORD_FIELD(MeshStatus, MeshEnable, 0, 8);
DEVAPI_RECORD_FIELD(MeshStatus, MeshMode, 8, 8);

DEVAPI_RECORD_SIZE(PairStatus, 16);
DEVAPI_RECORD_FIELD(PairStatus, Enable, 0, 8);
DEVAPI_RECORD_FIELD(PairStatus, Time, 8, 8);

DEVAPI_RECORD_SIZE(WpsState, 16);
DEVAPI_RECORD_FIELD(WpsState, Radio, 0, 8);
DEVAPI_RECORD_FIELD(WpsState, Action, 8, 8);

DEVAPI_RECORD_SIZE(LedInfo, 20);
DEVAPI_RECORD_FIELD(LedInfo, LedSwitch, 0, 2);
DEVAPI_RECORD_FIELD(LedInfo, LedCoLor, 2, 8);
DEVAPI_RECORD_FIELD(LedInfo, LedLight, 10, 10);

DEVAPI_RECORD_SIZE(ChannelApNum, 512);
DEVAPI_RECORD_FIELD(ChannelApNum, counts_24g, 0, 256);
DEVAPI_RECORD_FIELD(ChannelApNum, counts_5g, 256, 256);

DEVAPI_RECORD_SIZE(LinkInfo, 176);
DEVAPI_RECORD_FIELD(LinkInfo, Wifi24Enable, 0, 8);
DEVAPI_RECORD_FIELD(LinkInfo, Wifi24Channel, 8, 8);
DEVAPI_RECORD_FIELD(LinkInfo, Wifi24ChannelCheck, 16, 8);
DEVAPI_RECORD_FIELD(LinkInfo, Wifi58Enable, 24, 8);
DEVAPI_RECORD_FIELD(LinkInfo, Wifi58ChannelCheck, 32, 8);
DEVAPI_RECORD_FIELD(LinkInfo, Wifi58Channel, 40, 8);
DEVAPI_RECORD_FIELD(LinkInfo, LanIP, 48, 32);
DEVAPI_RECORD_FIELD(LinkInfo, WanIp, 80, 32);
DEVAPI_RECORD_FIELD(LinkInfo, DnsCheck, 112, 8);
DEVAPI_RECORD_FIELD(LinkInfo, Reserved, 120, 56);

DEVAPI_RECORD_SIZE(QosType, 208);
DEVAPI_RECORD_FIELD(QosType, Type, 0, 16);
DEVAPI_RECORD_FIELD(QosType, Min, 16, 64);
DEVAPI_RECORD_FIELD(QosType, Max, 80, 64);
DEVAPI_RECORD_FIELD(QosType, Reserved, 144, 64);

DEVAPI_RECORD_SIZE(QosRule, 684);
DEVAPI_RECORD_FIELD(QosRule, Id, 0, 8);
DEVAPI_RECORD_FIELD(QosRule, Action, 8, 8);
DEVAPI_RECORD_FIELD(QosRule, Name, 16, 32);
DEVAPI_RECORD_FIELD(QosRule, PriorityLevel, 48, 8);
DEVAPI_RECORD_FIELD(QosRule, type_count, 56, 4);
DEVAPI_RECORD_FIELD(QosRule, types, 60, 624);

DEVAPI_RECORD_SIZE(QosApplication, 48);
DEVAPI_RECORD_FIELD(QosApplication, Id, 0, 8);
DEVAPI_RECORD_FIELD(QosApplication, Name, 8, 32);
DEVAPI_RECORD_FIELD(QosApplication, PriorityLevel, 40, 8);

DEVAPI_RECORD_SIZE(QosInfo, 4312);
DEVAPI_RECORD_FIELD(QosInfo, Enable, 0, 8);
DEVAPI_RECORD_FIELD(QosInfo, application_count, 8, 4);
DEVAPI_RECORD_FIELD(QosInfo, applications, 12, 192);
DEVAPI_RECORD_FIELD(QosInfo, rule_count, 204, 4);
DEVAPI_RECORD_FIELD(QosInfo, rules, 208, 4104);

DEVAPI_RECORD_SIZE(MultiserviceMode, 8);
DEVAPI_RECORD_FIELD(MultiserviceMode, Mode, 0, 8);

DEVAPI_RECORD_SIZE(SpeedTest, 24);
DEVAPI_RECORD_FIELD(SpeedTest, DownBandWidth, 0, 8);
DEVAPI_RECORD_FIELD(SpeedTest, UpBandWidth, 8, 8);
DEVAPI_RECORD_FIELD(SpeedTest, Delay, 16, 8);

DEVAPI_RECORD_SIZE(AlgAbility, 56);
DEVAPI_RECORD_FIELD(AlgAbility, PPTP, 0, 8);
DEVAPI_RECORD_FIELD(AlgAbility, FTP, 8, 8);
DEVAPI_RECORD_FIELD(AlgAbility, IPSEC, 16, 8);
DEVAPI_RECORD_FIELD(AlgAbility, L2TP, 24, 8);
DEVAPI_RECORD_FIELD(AlgAbility, RTSP, 32, 8);
DEVAPI_RECORD_FIELD(AlgAbility, H323, 40, 8);
DEVAPI_RECORD_FIELD(AlgAbility, SIP, 48, 8);

DEVAPI_RECORD_SIZE(UpnpState, 8);
DEVAPI_RECORD_FIELD(UpnpState, Enable, 0, 8);

DEVAPI_RECORD_SIZE(PortStatistics, 144);
DEVAPI_RECORD_FIELD(PortStatistics, Port, 0, 16);
DEVAPI_RECORD_FIELD(PortStatistics, tx_traffic, 16, 32);
DEVAPI_RECORD_FIELD(PortStatistics, rx_traffic, 48, 32);
DEVAPI_RECORD_FIELD(PortStatistics, tx_packets, 80, 32);
DEVAPI_RECORD_FIELD(PortStatistics, rx_packets, 112, 32);

DEVAPI_RECORD_SIZE_32(PortStatisticsInfo, 8);
DEVAPI_RECORD_FIELD(PortStatisticsInfo, count, 0, 4);
DEVAPI_RECORD_OFFSET_32(PortStatisticsInfo, entries, 4);

DEVAPI_RECORD_SIZE(PortBinding, 336);
DEVAPI_RECORD_FIELD(PortBinding, Index, 0, 16);
DEVAPI_RECORD_FIELD(PortBinding, WANName, 16, 32);
DEVAPI_RECORD_FIELD(PortBinding, BoundPorts, 48, 288);

DEVAPI_RECORD_SIZE(PortBindingInfo, 2692);
DEVAPI_RECORD_FIELD(PortBindingInfo, count, 0, 4);
DEVAPI_RECORD_FIELD(PortBindingInfo, entries, 4, 2688);

#ifdef __cplusplus
}
#endif

#endif

/*
 * The plug-in as the management agent sees it.
 *
 * Conventions
 *
 * Objects: a command object is a cJSON object that belongs to the agent. The agent creates it from
 * the request, hands it in, and prints and deletes it afterwards. A handler adds its reply to that
 * same object and takes out the request keys that it has consumed; whatever it adds belongs to the
 * object. The keys that it adds and the text of "Status" are constants of this library, which
 * therefore stays in memory until the process ends, also after dlclose(). Their items can be
 * printed, copied, moved, replaced and deleted like all others; an agent that wants another text in
 * one replaces the item: the constant itself is neither written to nor freed. cJSON knows them by
 * cJSON_StringIsConst and cJSON_IsReference.
 *
 * Memory: the library and the agent must use the same cJSON library. When memory runs out, a
 * command answers with its failure text, or, when not even that can be allocated, adds nothing.
 *
 * Results: a failed command is not a failed call. Failures travel inside the object, as "Status"
 * "1", with a "FailReason" wherever the command has one. Some commands have answers of their own:
 * one says nothing of a key that it misses, some repeat a key. protocol/commands describes them
 * all.
 *
 * Threads: commands may be called from any thread, but one command object only by one thread at a
 * time. The library takes no lock around a command. Three write into variables that the agent
 * shares and that no lock guards. Neither of the first two may run beside itself, nor beside a
 * thread of the agent that reads what it writes: RESPONSE_ROUTER_VERSION writes into the buffer
 * behind info_wersion, GET_TSLINK_TOPOLOGY_INFO counts in g_dev_num and g_active_num.
 * SET_WIFI_INFO_LIST writes g_stactrl_enable and g_fastroaming_enable, which its worker reads about
 * six seconds long; beside itself or that worker it may apply a mixture of two switches.
 */
#ifndef SMART_ROUTER_SERVICE_PROCESSJSONABILITY_H
#define SMART_ROUTER_SERVICE_PROCESSJSONABILITY_H

#include "smart_router_service/device_access.h"

#include <cjson/cJSON.h>
#include <pthread.h>
#include <stdint.h>

#define SMART_ROUTER_API __attribute__((visibility("default")))

/*
 * The version of the library and of its interface: what it exports, what it needs (device_access.h,
 * host_agent.h), and what its commands take and reply. Semantic versioning: each number grows with
 * what stands beside it, and those below it begin again at 0.
 */
#define SMART_ROUTER_SERVICE_VERSION_MAJOR 0 /* what agents or device libraries have to follow */
#define SMART_ROUTER_SERVICE_VERSION_MINOR 2 /* additions; before 1.0.0 the former as well */
#define SMART_ROUTER_SERVICE_VERSION_PATCH 0 /* everything else */

#ifdef __cplusplus
extern "C" {
#endif

/* Result of hg_process_json_cmd() for a name that is not in the table of commands. */
#define HG_NO_SUCH_COMMAND (-3)

/* Width of the buffer behind info_wersion, in bytes, terminator included. */
#define HG_VERSION_INFO_SIZE 2048

/* Width of g_update_url, in bytes, terminator included. */
#define HG_UPDATE_URL_SIZE 256

/*
 * Runs one command.
 *
 * cmd: the command's name, compared byte for byte; NULL names no command.
 * obj: the command object: the request's keys on entry, the reply's on return. To anything but an
 *      object (NULL, an array, a text …) no reply can be added, and so nothing is changed for it.
 *
 * Result: 0 when the name was found and its handler was called, whatever the handler answered;
 * HG_NO_SUCH_COMMAND when there is no such command, and then obj is untouched.
 */
SMART_ROUTER_API int32_t hg_process_json_cmd(const char *cmd, cJSON *obj);

/* ---- Reports that the agent asks for by itself; no command leads to them ----------------------
 */

/*
 * Adds what a home page shows of the gateway: "Status" "0", then "Devname", "UploadSpeed",
 * "DownloadSpeed", "GameSpeed", "GamePort", "GameBand", "CpuRate", "MemRate" and "CpuTemperature",
 * all texts; or "Status" "1" and "FailReason" "get home page info failed". Result: that of the
 * device call, 0 on success.
 */
SMART_ROUTER_API int32_t json_get_home_page_info(cJSON *obj);

/*
 * Fills an SSID record from an object of the agent's own: SSIDIndex, SSID, PowerLevel, Channel,
 * Enable and PWD, all required, all texts. The record's other fields stay as they are, ENCRYPT
 * among them. Result: 0, or -1 when an argument is NULL or a key has no text, and then the record
 * is untouched.
 */
SMART_ROUTER_API int32_t parse_wifi_set_info_from_json(SsidInfo *record, cJSON *item);

/*
 * Adds what is known of the main router: "Status" "0" and its state, addresses and versions, at
 * length or, for an area code with "TH_OLV", in short; or "Status" "1" and "FailReason" "get base
 * info error!" when nothing is known at all. Result: 0, or -1 on failure.
 */
SMART_ROUTER_API int32_t json_get_main_router_info(cJSON *obj);

/* Adds "MainBaseInfo", an array of the devices attached to the main router that are online. Result:
 * 0, or -1, with obj untouched, when memory ran out. */
SMART_ROUTER_API int32_t json_get_main_router_baseinfo(cJSON *obj);

/* Adds "ChildRouter", an array of the child routers with their stations, from the topology's list
 * of relations; empty while the mesh is off or its relations are not known. Result: 0, or -1, with
 * obj untouched, when memory ran out. */
SMART_ROUTER_API int32_t json_get_topo_router_info(cJSON *obj);

/* The same from the tree of parameters. Result: 0, or -1, with obj untouched, when a parameter
 * could not be read or memory ran out. */
SMART_ROUTER_API int32_t json_get_topo_router_agent_info_bynewmethod(cJSON *obj);

/*
 * Adds the stations of one router in the tree of parameters, 32 at most.
 *
 * which: "main" adds them as "MainBaseInfo", anything else as "ChildBaseInfo".
 * path:  the router's, such as "InternetGatewayDevice.WiFi.MultiAP.APDevice.1.".
 *
 * Result: 0, or -1, with obj untouched, when memory ran out. Without a path there are none.
 */
SMART_ROUTER_API int32_t json_get_router_sta_info(cJSON *obj, const char *which, const char *path);

/* ---- Work that the agent starts by itself -----------------------------------------------------
 */

/*
 * Pushes a message to the phone app: wraps it in an envelope (the message in base64, its MD5
 * digest, the local time and the router's MAC address) and hands that to kaa_device_notice().
 *
 * message:     the text, of any length.
 * plugin_name: the part of the system that raises it.
 *
 * Result: 0 when the message was accepted; -1 when an argument is NULL or the envelope could not be
 * made, and then nothing was sent; else the result of kaa_device_notice(). May be called from any
 * thread.
 */
SMART_ROUTER_API int32_t json_msg_notice_to_app(const char *message, const char *plugin_name);

/*
 * Fetches the image from g_update_url and flashes it, without restarting the router: a thread entry
 * for pthread_create(). The agent takes downimagelock with a try-lock, fills g_update_url, and then
 * starts the thread, which releases the lock at its end, whatever came of it; failures are only
 * logged. When the thread cannot be started, the agent releases the lock itself. The thread does
 * not detach itself: the agent joins or detaches it.
 *
 * argument: not used. Result: NULL.
 */
SMART_ROUTER_API void *pthread_hg_image_upgrade(void *argument);

/* ---- State shared with the agent --------------------------------------------------------------
 */

/*
 * The agent's buffer of HG_VERSION_INFO_SIZE bytes for the last RESPONSE_ROUTER_VERSION, whatever
 * its status, as formatted JSON text. NULL, as at the start, when the agent wants no copy. The
 * agent sets it and keeps the buffer alive; the library writes into it during that command only,
 * and leaves it untouched when the text with its terminator would not fit. Not guarded: only one
 * such command may run at a time, and the agent reads the buffer, or sets another one, when none
 * does.
 */
extern SMART_ROUTER_API char *info_wersion;

/*
 * How many devices the last topology report came to. GET_TSLINK_TOPOLOGY_INFO sets it to 0 when it
 * begins to list devices, and counts; it ends at 33 where there were more than the 32 that are
 * reported. Not guarded.
 */
extern SMART_ROUTER_API int32_t g_dev_num;

/* How many of them are the main router's own; set to 0 and counted with it. */
extern SMART_ROUTER_API int32_t g_active_num;

/*
 * Held while an image is downloaded or flashed: by a worker of UPDATE_IMMEDIATE,
 * PLATEFORM_UPDATE_IMMEDIATE or IMAGE_DOWNLOAD, by pthread_hg_image_upgrade(), or within
 * HG_IMAGE_DOWNLOAD and IMAGE_UPDATE. A second one is refused meanwhile; only HG_IMAGE_UPDATE
 * flashes without it. The library only ever tries the lock. An agent that wants to end in peace
 * waits until it is free.
 */
extern SMART_ROUTER_API pthread_mutex_t downimagelock;

/*
 * The address for pthread_hg_image_upgrade(), a text; empty, as at the start, when there is none.
 * The agent writes it while it holds downimagelock; the library only reads it.
 */
extern SMART_ROUTER_API char g_update_url[HG_UPDATE_URL_SIZE];

/*
 * Held while a batch of SET_WIFI_INFO_LIST waits to be applied or is being applied by its worker,
 * for about six seconds. A second batch waits for it inside the command. An agent that wants to end
 * in peace takes and releases it first.
 */
extern SMART_ROUTER_API pthread_mutex_t setwifilistlock;

/* The number of records in the batch that is being applied; guarded by setwifilistlock. */
extern SMART_ROUTER_API int32_t g_set_wifi_array_size;

/* The last "StaCtrl" that was received. It is not guarded: a batch that arrives while another waits
 * changes what that one applies. */
extern SMART_ROUTER_API char g_stactrl_enable[8];

/* The last "FastRoaming" that was received and not empty; not guarded either. */
extern SMART_ROUTER_API char g_fastroaming_enable[8];

#ifdef __cplusplus
}
#endif

#endif

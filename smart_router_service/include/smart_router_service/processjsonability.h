/* SPDX-License-Identifier: MIT */
/*
 * The interface of the plug-in to the management agent.
 *
 * Conventions
 *
 * Objects: a command object is a cJSON object that belongs to the agent. The agent creates it from
 * the request, passes it to the command, and prints and deletes it afterwards. A handler adds its
 * reply to the same object and removes the request keys that it has processed; everything that it
 * adds belongs to the object. The keys that it adds and the text of "Status" are constants of this
 * library, which therefore stays in memory until the process ends, also after dlclose(). Their
 * items can be printed, copied, moved, replaced and deleted like all others. To change the text of
 * one, the agent replaces the item: the constant itself must be neither written to nor freed. cJSON
 * marks such items with cJSON_StringIsConst and cJSON_IsReference.
 *
 * Memory: the library and the agent must use the same cJSON library. When memory runs out, a
 * command replies with its failure text, or, when not even that can be allocated, adds nothing.
 *
 * Results: a failed command is not a failed call. Failures are reported in the object, as "Status"
 * "1", with a "FailReason" if the command has one. Some commands deviate: one does not reply when a
 * key is missing, some repeat a key. protocol/commands describes all of them.
 *
 * Threads: commands may be called from any thread, but a command object may be used by only one
 * thread at a time. The library takes no lock around a command. Three commands write to variables
 * that are shared with the agent and not guarded by a lock:
 * - RESPONSE_ROUTER_VERSION writes to the buffer that info_wersion points to, and
 *   GET_TSLINK_TOPOLOGY_INFO counts in g_dev_num and g_active_num. Neither may run concurrently
 *   with itself or with a thread of the agent that reads what it writes.
 * - SET_WIFI_INFO_LIST writes g_stactrl_enable and g_fastroaming_enable, which its worker reads for
 *   about six seconds. If it runs concurrently with itself or with that worker, a mixture of the
 *   switches of two batches may be applied.
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
 * host_agent.h), and what its commands take and reply. Semantic versioning: each number is
 * incremented for the changes named next to it, and the numbers below it are reset to 0.
 */
#define SMART_ROUTER_SERVICE_VERSION_MAJOR 0 /* agents or device libraries have to be changed */
#define SMART_ROUTER_SERVICE_VERSION_MINOR 2 /* additions; before 1.0.0 also the former */
#define SMART_ROUTER_SERVICE_VERSION_PATCH 0 /* everything else */

#ifdef __cplusplus
extern "C" {
#endif

/* Result of hg_process_json_cmd() for a name that is not in the table of commands. */
#define HG_NO_SUCH_COMMAND (-3)

/* Size of the buffer that info_wersion points to, in bytes, terminator included. */
#define HG_VERSION_INFO_SIZE 2048

/* Size of g_update_url, in bytes, terminator included. */
#define HG_UPDATE_URL_SIZE 256

/*
 * Runs one command.
 *
 * cmd: the command's name, compared byte for byte; NULL names no command.
 * obj: the command object: the request's keys on entry, the reply's on return. Anything but an
 *      object (NULL, an array, a string …) cannot take a reply, and the device is not changed.
 *
 * Result: 0 when the name was found and its handler was called, regardless of its reply;
 * HG_NO_SUCH_COMMAND when there is no such command, and then obj is unchanged.
 */
SMART_ROUTER_API int32_t hg_process_json_cmd(const char *cmd, cJSON *obj);

/* ---- Reports that the agent requests directly; they have no command ---------------------------
 */

/*
 * Adds what a home page shows of the gateway: "Status" "0", then "Devname", "UploadSpeed",
 * "DownloadSpeed", "GameSpeed", "GamePort", "GameBand", "CpuRate", "MemRate" and "CpuTemperature",
 * all strings; or "Status" "1" and "FailReason" "get home page info failed". Result: that of the
 * device call, 0 on success.
 */
SMART_ROUTER_API int32_t json_get_home_page_info(cJSON *obj);

/*
 * Fills an SSID record from an object of the agent: SSIDIndex, SSID, PowerLevel, Channel, Enable
 * and PWD, all required, all strings. The record's other fields, including ENCRYPT, are not
 * changed. Result: 0, or -1 when an argument is NULL, or a key is absent or not a string, and then
 * the record is unchanged.
 */
SMART_ROUTER_API int32_t parse_wifi_set_info_from_json(SsidInfo *record, cJSON *item);

/*
 * Adds what is known about the main router: "Status" "0" and its state, addresses and versions, in
 * full or, if the area code contains "TH_OLV", in short; or "Status" "1" and "FailReason" "get base
 * info error!" when nothing is known. Result: 0, or -1 on failure.
 */
SMART_ROUTER_API int32_t json_get_main_router_info(cJSON *obj);

/* Adds "MainBaseInfo", an array of the devices attached to the main router that are online. Result:
 * 0, or -1, with obj unchanged, when memory ran out. */
SMART_ROUTER_API int32_t json_get_main_router_baseinfo(cJSON *obj);

/* Adds "ChildRouter", an array of the child routers with their stations, from the topology's list
 * of relations; empty while the mesh is off or its relations are not known. Result: 0, or -1, with
 * obj unchanged, when memory ran out. */
SMART_ROUTER_API int32_t json_get_topo_router_info(cJSON *obj);

/* The same from the parameter tree. Result: 0, or -1, with obj unchanged, when a parameter could
 * not be read or memory ran out. */
SMART_ROUTER_API int32_t json_get_topo_router_agent_info_bynewmethod(cJSON *obj);

/*
 * Adds the stations of one router in the parameter tree, 32 at most.
 *
 * which: "main" adds them as "MainBaseInfo", anything else as "ChildBaseInfo".
 * path:  the router's path, such as "InternetGatewayDevice.WiFi.MultiAP.APDevice.1."; NULL adds an
 *        empty array.
 *
 * Result: 0, or -1, with obj unchanged, when memory ran out.
 */
SMART_ROUTER_API int32_t json_get_router_sta_info(cJSON *obj, const char *which, const char *path);

/* ---- Work that the agent starts directly ------------------------------------------------------
 */

/*
 * Pushes a message to the phone app: wraps it in an envelope (the message in base64, its MD5
 * digest, the local time and the router's MAC address) and passes that to kaa_device_notice().
 *
 * message:     the text, of any length.
 * plugin_name: the part of the system that sends it.
 *
 * Result: 0 when the message was accepted; -1 when an argument is NULL or the envelope could not be
 * built, and then nothing was sent; otherwise the result of kaa_device_notice(). May be called from
 * any thread.
 */
SMART_ROUTER_API int32_t json_msg_notice_to_app(const char *message, const char *plugin_name);

/*
 * Downloads the image from g_update_url and flashes it, without restarting the router: a thread
 * entry for pthread_create(). The agent takes downimagelock with a try-lock, fills g_update_url,
 * and then starts the thread, which releases the lock when it ends, also after a failure; failures
 * are only logged. When the thread cannot be started, the agent releases the lock itself. The
 * thread does not detach itself: the agent joins or detaches it.
 *
 * argument: not used. Result: NULL.
 */
SMART_ROUTER_API void *pthread_hg_image_upgrade(void *argument);

/* ---- State shared with the agent --------------------------------------------------------------
 */

/*
 * The agent's buffer of HG_VERSION_INFO_SIZE bytes for the last RESPONSE_ROUTER_VERSION, regardless
 * of its status, as formatted JSON text. NULL, the initial value, when the agent needs no copy. The
 * agent sets it and keeps the buffer alive; the library writes to the buffer only during that
 * command, and leaves it unchanged when the text with its terminator does not fit. Not guarded:
 * only one such command may run at a time, and the agent may read or replace the buffer only while
 * none is running.
 */
extern SMART_ROUTER_API char *info_wersion;

/*
 * The number of devices in the last topology report. GET_TSLINK_TOPOLOGY_INFO sets it to 0 when it
 * begins to list devices, and counts; the final value is 33 when there were more than the 32 that
 * are reported. Not guarded.
 */
extern SMART_ROUTER_API int32_t g_dev_num;

/* How many of them are attached to the main router itself; set to 0 and counted with g_dev_num. */
extern SMART_ROUTER_API int32_t g_active_num;

/*
 * Held while an image is downloaded or flashed: by a worker of UPDATE_IMMEDIATE,
 * PLATEFORM_UPDATE_IMMEDIATE or IMAGE_DOWNLOAD, by pthread_hg_image_upgrade(), or within
 * HG_IMAGE_DOWNLOAD and IMAGE_UPDATE. Meanwhile, a second one is refused; only HG_IMAGE_UPDATE
 * flashes without the lock. The library only uses pthread_mutex_trylock(). To shut down cleanly, an
 * agent waits until the lock is free.
 */
extern SMART_ROUTER_API pthread_mutex_t downimagelock;

/*
 * The URL for pthread_hg_image_upgrade(); initially empty, which means that there is none. The
 * agent writes it while it holds downimagelock; the library only reads it.
 */
extern SMART_ROUTER_API char g_update_url[HG_UPDATE_URL_SIZE];

/*
 * Held while a batch of SET_WIFI_INFO_LIST waits to be applied or is being applied by its worker,
 * for about six seconds. A second batch waits for it inside the command. To shut down cleanly, an
 * agent takes and releases it first.
 */
extern SMART_ROUTER_API pthread_mutex_t setwifilistlock;

/* The number of records in the batch that is being applied; guarded by setwifilistlock. */
extern SMART_ROUTER_API int32_t g_set_wifi_array_size;

/* The last "StaCtrl" that was received. Not guarded: a batch that arrives while another one waits
 * changes what the other one applies. */
extern SMART_ROUTER_API char g_stactrl_enable[8];

/* The last "FastRoaming" that was received and not empty. Not guarded either. */
extern SMART_ROUTER_API char g_fastroaming_enable[8];

#ifdef __cplusplus
}
#endif

#endif

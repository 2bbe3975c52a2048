/* SPDX-License-Identifier: MIT */
/*
 * Control of the simulated gateway: a device-access library whose device is a model of one home.
 *
 * The device functions themselves are those of smart_router_service/device_access.h. What is here
 * is for the host that loads the library: which home it simulates, where it keeps its state, which
 * calls it lets fail, and what it writes down of them.
 *
 * A host that knows nothing of this header gets a gateway all the same: the first device call opens
 * it with the settings of the environment.
 *
 *   SIMULATED_GATEWAY_SCENARIO      as scenario below
 *   SIMULATED_GATEWAY_STATE         as state_file below
 *   SIMULATED_GATEWAY_FAULTS        as faults below, separated by commas
 *   SIMULATED_GATEWAY_TRACE         as trace below
 *   SIMULATED_GATEWAY_SHOW_SECRETS  "1" as show_secrets below
 *   SIMULATED_GATEWAY_FIRMWARE_FOLDER  as firmware_folder below
 *   SIMULATED_GATEWAY_FIRMWARE_KEY     as firmware_key below
 *   SIMULATED_GATEWAY_TIME          a clock that stands still at so many seconds since 1970, for
 *                                   answers that are the same at every run; there is no option
 *
 * For fetching firmware there are, without options:
 *
 *   SIMULATED_GATEWAY_LARGEST_IMAGE    bytes that an image may have, its header included
 *   SIMULATED_GATEWAY_CONNECT_TIMEOUT  seconds that connecting to a server may take
 *   SIMULATED_GATEWAY_STALL_TIMEOUT    seconds after which a download that stands still is given up
 *   SIMULATED_GATEWAY_TRANSFER_TIMEOUT seconds that a download may take in all, redirects included
 *   SIMULATED_GATEWAY_CA_FILE          file with the certificates to trust in place of the system's
 *
 * If those do not hold, the reason goes to standard error and every device call fails with -1,
 * until the host opens a gateway itself.
 *
 * The plug-in restarts a router by system("sync;reboot"). The library has a system() that restarts
 * the model instead and passes every other command on. Where the process would call the C
 * library's, since it loaded this library later, devapi_flash_update_image fails with -1.
 *
 * All functions may be called at any time from any thread. docs/simulated_gateway.md has the forms
 * of scenarios, faults and the trace.
 */
#ifndef SIMULATED_GATEWAY_SIMULATED_GATEWAY_H
#define SIMULATED_GATEWAY_SIMULATED_GATEWAY_H

#include <stddef.h>
#include <stdint.h>

#define SIMULATED_GATEWAY_API __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* One home of many that start from the same scenario: they differ in addresses, names, devices and
 * habits. The same number and seed give the same home. */
typedef struct SimulatedGatewayHome {
    /* Of all homes that belong together. */
    uint64_t seed;
    /* Of the home among them. */
    uint32_t number;
} SimulatedGatewayHome;

/* Each setting may be left NULL (or 0); the environment then has its say, then the default. */
typedef struct SimulatedGatewayOptions {
    /* Name of a scenario that is built in, or the path of a scenario file (a text with a '/' or
     * ending in ".json"). Default: "three_storey_house", or the home in the state file. */
    const char *scenario;
    /* File that keeps the home's state between runs. It is made when it is missing. Default: the
     * state lives in memory and ends with the process. */
    const char *state_file;
    /* Fault plan, as an array that ends in NULL: "FUNCTION=RESULT[*COUNT][@DELAYms]" each. */
    const char *const *faults;
    /* File to which a line is appended for every device call; "-" is standard error. */
    const char *trace;
    /* Not 0: passwords and keys are written to the trace in clear instead of masked. */
    int32_t show_secrets;
    /* Folder whose files may be fetched as file:///FOLDER/NAME. Default: file:// is refused. */
    const char *firmware_folder;
    /* File with the public Ed25519 key, as PEM, by which every image has to be signed. Default: any
     * image is taken, and the trace warns of it. */
    const char *firmware_key;
    /* How long a reboot takes, in seconds of the machine's clock; there is no variable. 0: it is
     * over at once, as it always is while the gateway's clock stands still. */
    int32_t reboot_seconds;
    /* Which home to make of the scenario, unless the state file has one. Default: the home as the
     * scenario has it. */
    const SimulatedGatewayHome *home;
} SimulatedGatewayOptions;

/*
 * Opens the gateway; it must not be open already. options may be NULL. Result: 0, or -1 with a text
 * of one line in error (error_size bytes) that says what is wrong and where.
 */
SIMULATED_GATEWAY_API int32_t simulated_gateway_open(const SimulatedGatewayOptions *options,
                                                     char *error, size_t error_size);

/*
 * Reads a scenario, built in or a file, and keeps it for every later opening: for a process that
 * forks others, which then need not read it. No gateway is opened. Result: as for
 * simulated_gateway_open().
 */
SIMULATED_GATEWAY_API int32_t simulated_gateway_prepare(const char *scenario, char *error,
                                                        size_t error_size);

/*
 * Closes the gateway: its state is saved and its state file is free for others. Calls that are
 * under way end with a failure, a download too; the next device call would open another gateway. A
 * process that ends without closing loses nothing, since every change has been saved. Nothing
 * happens when no gateway is open.
 */
SIMULATED_GATEWAY_API void simulated_gateway_close(void);

/*
 * Lets downloads and uploads that are under way fail within about a second, and every later one
 * until the gateway is closed: for a host that has been told to end and cannot close the gateway
 * yet, because one of its threads is in a device call. Nothing happens when no gateway is open.
 */
SIMULATED_GATEWAY_API void simulated_gateway_end_transfers(void);

/*
 * Switches the gateway off and on again: its uptime starts at 0, and its state is saved. Nothing
 * happens when no gateway is open.
 */
SIMULATED_GATEWAY_API void simulated_gateway_power_cycle(void);

/*
 * The next functions change settings of the open gateway. Result: 0, or -1 with a text of one line
 * in error (error_size bytes), and then nothing has changed.
 *
 * Replaces the fault plan by an array as in the options; an empty one lifts it.
 */
SIMULATED_GATEWAY_API int32_t simulated_gateway_set_faults(const char *const *faults, char *error,
                                                           size_t error_size);

/*
 * Replaces the home by that of a scenario that is built in, in its first state, or resets it if it
 * is the current scenario. The state is saved. It fails while a device call is downloading or
 * uploading; the host has to make sure that no work of the plug-in is in between device calls.
 * A state file that was opened with a scenario before can still be opened with it.
 */
SIMULATED_GATEWAY_API int32_t simulated_gateway_load(const char *scenario, char *error,
                                                     size_t error_size);

/*
 * Sets the clock. "2026-01-01T00:00:00", in UTC: it stops at this time. "+3600": it moves
 * forward by so many seconds, up to ten years, and runs or is stopped as before. NULL: it follows
 * the machine's clock. It ends with the process and is not part of the state.
 */
SIMULATED_GATEWAY_API int32_t simulated_gateway_set_clock(const char *clock, char *error,
                                                          size_t error_size);

/*
 * Receives what simulated_gateway_show() shows, one text at a time:
 *
 *   scenario   the name of the current scenario
 *   scenarios  a scenario that is built in; repeated
 *   fault      a fault that is planned, with the calls that are left; repeated
 *   function   a device function that can fail; repeated
 *   clock      the clock as set: a time, or "+SECONDS"; only if it does not follow the machine's
 *   time       the time of the clock, in UTC
 */
typedef void (*SimulatedGatewayShown)(const char *name, const char *text, void *context);

/*
 * Calls report, with context, for the settings of the open gateway, on this thread. Nothing happens
 * when no gateway is open.
 */
SIMULATED_GATEWAY_API void simulated_gateway_show(SimulatedGatewayShown report, void *context);

/*
 * Receives device calls.
 *
 * function: its name, as devapi_set_upnp_state.
 * result:   what it returned.
 * line:     its line of the trace; secrets are masked.
 */
typedef void (*SimulatedGatewayCall)(const char *function, int32_t result, const char *line,
                                     void *context);

/*
 * Has report called, with context, after every device call; NULL ends that. It is called on the
 * thread of the call, without the gateway's lock, and by one thread at a time. It may call no
 * function of this library. Once this function has returned, the report set before is not called
 * any more. It may be called before the gateway is opened, and holds until it is called again.
 */
SIMULATED_GATEWAY_API void simulated_gateway_on_call(SimulatedGatewayCall report, void *context);

/*
 * What a host is told of work that takes its time.
 *
 * task:    "firmware" while an image is fetched.
 * percent: how much of it is done, 0 to 100, never less than before; 100 only once the image is
 *          whole and verified.
 */
typedef void (*SimulatedGatewayProgress)(const char *task, int32_t percent, void *context);

/*
 * Has report called, with context, whenever such a percentage changes; NULL ends that. It is called
 * on the thread whose device call does the work, without the gateway's lock, and by one thread at a
 * time. It may call device functions, but neither this function nor simulated_gateway_close().
 * Once this function has returned, the report set before is not called any more. It may be
 * called before the gateway is opened, and holds until it is called again.
 */
SIMULATED_GATEWAY_API void simulated_gateway_on_progress(SimulatedGatewayProgress report,
                                                         void *context);

/*
 * What a host is told of a device call that did not succeed and has a reason.
 *
 * function: its name, as devapi_set_upnp_state.
 * reason:   why, in one line, as the trace has it; "fault" where the fault plan had it fail.
 */
typedef void (*SimulatedGatewayRefusal)(const char *function, const char *reason, void *context);

/*
 * Has report called, with context, for every such call; NULL ends that. It is called on the thread
 * of the call, without the gateway's lock, and by one thread at a time. It may call no function of
 * this library. Once this function has returned, the report set before is not called any more. It
 * may be called before the gateway is opened, and holds until it is called again.
 */
SIMULATED_GATEWAY_API void simulated_gateway_on_refusal(SimulatedGatewayRefusal report,
                                                        void *context);

/*
 * What a host is told of a firmware update: that an image has been flashed, or that fetching or
 * flashing one has failed.
 *
 * version: of the image that was flashed, which runs from the next reboot on; NULL after a failure.
 * reason:  why it failed, in one line, as the trace has it; NULL after a success.
 */
typedef void (*SimulatedGatewayUpdate)(const char *version, const char *reason, void *context);

/*
 * Has report called, with context, for every such end; NULL ends that. It is called on the thread
 * of the device call, without the gateway's lock, and by one thread at a time. It may call no
 * function of this library. Once this function has returned, the report set before is not called
 * any more. It may be called before the gateway is opened, and holds until it is called again.
 */
SIMULATED_GATEWAY_API void simulated_gateway_on_update(SimulatedGatewayUpdate report,
                                                       void *context);

/*
 * What a host is told of a reboot: that it begins.
 *
 * seconds: how long it takes from now on, as reboot_seconds has it; 0: it is over already. The
 *          gateway goes on answering device calls: it is the host that keeps commands back.
 */
typedef void (*SimulatedGatewayReboot)(int32_t seconds, void *context);

/*
 * Has report called, with context, whenever the gateway reboots: by devapi_reboot(), by
 * devapi_recovery() or by simulated_gateway_power_cycle(). All else is as for
 * simulated_gateway_on_update().
 */
SIMULATED_GATEWAY_API void simulated_gateway_on_reboot(SimulatedGatewayReboot report,
                                                       void *context);

/*
 * Writes the MAC address of the router's LAN bridge into mac (size bytes, of which it takes 18), as
 * 3C:6A:D2:10:4F:20. Child routers name it as that of their parent when they hang from the main
 * router. Result: 0, or -1 when no gateway can be opened or there is no room; mac then holds an
 * empty text, unless size is 0.
 */
SIMULATED_GATEWAY_API int32_t simulated_gateway_bridge_mac(char *mac, size_t size);

#ifdef __cplusplus
}
#endif

#endif

/* SPDX-License-Identifier: MIT */
/*
 * Control of the simulated gateway: a device-access library whose device is a model of one home.
 *
 * The device functions themselves are those of smart_router_service/device_access.h. This header is
 * for the host that loads the library: which home it simulates, where its state is kept, which
 * calls fail, and what is recorded of them.
 *
 * A host does not need this header: without it, the first device call opens a gateway with the
 * settings of the environment.
 *
 *   SIMULATED_GATEWAY_SCENARIO      as scenario below
 *   SIMULATED_GATEWAY_STATE         as state_file below
 *   SIMULATED_GATEWAY_FAULTS        as faults below, separated by commas
 *   SIMULATED_GATEWAY_TRACE         as trace below
 *   SIMULATED_GATEWAY_SHOW_SECRETS  "1" as show_secrets below
 *   SIMULATED_GATEWAY_FIRMWARE_FOLDER  as firmware_folder below
 *   SIMULATED_GATEWAY_FIRMWARE_KEY     as firmware_key below
 *   SIMULATED_GATEWAY_TIME          stops the clock at this time, in seconds since 1970, for
 * replies that are the same in every run; there is no option
 *
 * For downloading firmware there are, without options:
 *
 *   SIMULATED_GATEWAY_LARGEST_IMAGE    maximum size of an image in bytes, with its header
 *   SIMULATED_GATEWAY_CONNECT_TIMEOUT  seconds that connecting to a server may take
 *   SIMULATED_GATEWAY_STALL_TIMEOUT    seconds after which a stalled download fails
 *   SIMULATED_GATEWAY_TRANSFER_TIMEOUT seconds that a download may take in all, redirects included
 *   SIMULATED_GATEWAY_CA_FILE          file with the certificates to trust in place of the system's
 *
 * If one of them is invalid, the reason is printed on standard error and every device call fails
 * with -1, until the host opens a gateway itself.
 *
 * The plug-in restarts a router with system("sync;reboot"). The library has its own system(), which
 * restarts the model instead and passes every other command on. If the process would call that of
 * the C library, because it loaded this library later, devapi_flash_update_image fails with -1.
 *
 * All functions may be called at any time from any thread. docs/simulated_gateway.md describes
 * scenarios, faults and the trace.
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
    /* The same for all homes of a set. */
    uint64_t seed;
    /* Different for each home of the set. */
    uint32_t number;
} SimulatedGatewayHome;

/* A setting that is NULL (or 0) is taken from the environment, otherwise the default. */
typedef struct SimulatedGatewayOptions {
    /* Name of a built-in scenario, or the path of a scenario file (a text with a '/' or ending in
     * ".json"). Default: the home in the state file, otherwise "three_storey_house". */
    const char *scenario;
    /* File that keeps the home's state between runs. It is created if it is missing. Default: the
     * state is in memory and is lost with the process. */
    const char *state_file;
    /* Fault plan, as an array of "FUNCTION=RESULT[*COUNT][@DELAYms]" that ends with NULL. */
    const char *const *faults;
    /* File to which a line is appended for every device call; "-" is standard error. */
    const char *trace;
    /* Not 0: passwords and keys are written to the trace in clear instead of masked. */
    int32_t show_secrets;
    /* Folder whose files may be downloaded as file:///FOLDER/NAME. Default: file:// is refused. */
    const char *firmware_folder;
    /* File with the public Ed25519 key, as PEM, by which every image has to be signed. Default: any
     * image is accepted, with a warning in the trace. */
    const char *firmware_key;
    /* How long a reboot takes, in seconds of the machine's clock; there is no variable. 0: it ends
     * at once, as it always does while the gateway's clock is stopped. */
    int32_t reboot_seconds;
    /* Which home to derive from the scenario, unless there is one in the state file. Default: the
     * home of the scenario, unchanged. */
    const SimulatedGatewayHome *home;
} SimulatedGatewayOptions;

/*
 * Opens the gateway, which must not be open. options may be NULL. Result: 0, or -1 with one line in
 * error (error_size bytes) that says what is wrong and where.
 */
SIMULATED_GATEWAY_API int32_t simulated_gateway_open(const SimulatedGatewayOptions *options,
                                                     char *error, size_t error_size);

/*
 * Reads a scenario, built in or a file, and keeps it for every later opening, for a process that
 * forks others: these then need not read it. No gateway is opened. Result: as for
 * simulated_gateway_open().
 */
SIMULATED_GATEWAY_API int32_t simulated_gateway_prepare(const char *scenario, char *error,
                                                        size_t error_size);

/*
 * Closes the gateway: its state is saved, and its state file is unlocked. Running calls fail, as do
 * downloads; the next device call would open another gateway. A process that ends without closing
 * loses nothing, since every change has been saved. Has no effect if no gateway is open.
 */
SIMULATED_GATEWAY_API void simulated_gateway_close(void);

/*
 * Makes running downloads and uploads fail within about a second, and every later one until the
 * gateway is closed: for a host that is to end and cannot close the gateway yet, because one of its
 * threads is in a device call. Has no effect if no gateway is open.
 */
SIMULATED_GATEWAY_API void simulated_gateway_end_transfers(void);

/*
 * Switches the gateway off and on again: its uptime starts at 0, and its state is saved. Has no
 * effect if no gateway is open.
 */
SIMULATED_GATEWAY_API void simulated_gateway_power_cycle(void);

/*
 * The next functions change settings of the open gateway. Result: 0, or -1 with one line in error
 * (error_size bytes), with nothing changed.
 *
 * Replaces the fault plan by an array as in the options; an empty one clears it.
 */
SIMULATED_GATEWAY_API int32_t simulated_gateway_set_faults(const char *const *faults, char *error,
                                                           size_t error_size);

/*
 * Replaces the home by the initial one of a built-in scenario; with the current scenario, resets
 * the home. The state is saved. Fails while a device call is downloading or uploading; the host has
 * to make sure that no work of the plug-in is between two device calls. The state file can still be
 * opened with the scenario that it was opened with before.
 */
SIMULATED_GATEWAY_API int32_t simulated_gateway_load(const char *scenario, char *error,
                                                     size_t error_size);

/*
 * Sets the clock. "2026-01-01T00:00:00", in UTC: it stops at this time. "+3600": it moves
 * forward by this many seconds, up to ten years, and runs or is stopped as before. NULL: it follows
 * the machine's clock. The setting is not part of the state and ends with the process.
 */
SIMULATED_GATEWAY_API int32_t simulated_gateway_set_clock(const char *clock, char *error,
                                                          size_t error_size);

/*
 * Receives what simulated_gateway_show() shows, one text at a time:
 *
 *   scenario   the name of the current scenario
 *   scenarios  a built-in scenario; repeated
 *   fault      a planned fault, with the calls that are left; repeated
 *   function   a device function that can fail; repeated
 *   clock      the clock as set: a time, or "+SECONDS"; only if it does not follow the machine's
 *   time       the time of the clock, in UTC
 */
typedef void (*SimulatedGatewayShown)(const char *name, const char *text, void *context);

/*
 * Calls report, with context, for the settings of the open gateway, on this thread. Has no effect
 * if no gateway is open.
 */
SIMULATED_GATEWAY_API void simulated_gateway_show(SimulatedGatewayShown report, void *context);

/*
 * Receives device calls.
 *
 * function: its name, such as devapi_set_upnp_state.
 * result:   what it returned.
 * line:     its line of the trace; secrets are masked.
 */
typedef void (*SimulatedGatewayCall)(const char *function, int32_t result, const char *line,
                                     void *context);

/*
 * Sets the function that is called, with context, after every device call; NULL for none. It is
 * called on the thread of the call, without the gateway's lock, by one thread at a time, and must
 * not call functions of this library. Once this function has returned, the previous report is no
 * longer called. It may be called before the gateway is opened, and is valid until the next time.
 */
SIMULATED_GATEWAY_API void simulated_gateway_on_call(SimulatedGatewayCall report, void *context);

/*
 * Receives the progress of long work.
 *
 * task:    "firmware" while an image is downloaded.
 * percent: the part that is done, 0 to 100, never less than before; 100 only once the image is
 *          complete and verified.
 */
typedef void (*SimulatedGatewayProgress)(const char *task, int32_t percent, void *context);

/*
 * Sets the function that is called, with context, whenever such a percentage changes. Unlike that
 * of simulated_gateway_on_call(), it may call device functions, but neither this function nor
 * simulated_gateway_close(); all else is the same.
 */
SIMULATED_GATEWAY_API void simulated_gateway_on_progress(SimulatedGatewayProgress report,
                                                         void *context);

/*
 * Receives device calls that failed for a known reason.
 *
 * function: its name, such as devapi_set_upnp_state.
 * reason:   one line, the same as in the trace; "fault" for a failure from the fault plan.
 */
typedef void (*SimulatedGatewayRefusal)(const char *function, const char *reason, void *context);

/*
 * Sets the function that is called, with context, for every such call. All else is as for
 * simulated_gateway_on_call().
 */
SIMULATED_GATEWAY_API void simulated_gateway_on_refusal(SimulatedGatewayRefusal report,
                                                        void *context);

/*
 * Receives the end of a firmware update: an image has been flashed, or downloading or flashing one
 * has failed.
 *
 * version: of the flashed image, which runs from the next reboot on; NULL after a failure.
 * reason:  why it failed: one line, the same as in the trace; NULL after a success.
 */
typedef void (*SimulatedGatewayUpdate)(const char *version, const char *reason, void *context);

/*
 * Sets the function that is called, with context, for every such end. All else is as for
 * simulated_gateway_on_call().
 */
SIMULATED_GATEWAY_API void simulated_gateway_on_update(SimulatedGatewayUpdate report,
                                                       void *context);

/*
 * Receives the start of a reboot.
 *
 * seconds: how long it takes from now on, as set by reboot_seconds; 0: it has already ended. The
 *          gateway still answers device calls: the host has to hold commands back.
 */
typedef void (*SimulatedGatewayReboot)(int32_t seconds, void *context);

/*
 * Sets the function that is called, with context, whenever the gateway reboots: through
 * devapi_reboot(), devapi_recovery() or simulated_gateway_power_cycle(). All else is as for
 * simulated_gateway_on_call().
 */
SIMULATED_GATEWAY_API void simulated_gateway_on_reboot(SimulatedGatewayReboot report,
                                                       void *context);

/*
 * Writes the MAC address of the router's LAN bridge into mac, as 3C:6A:D2:10:4F:20; it needs 18 of
 * the size bytes. Child routers that are attached to the main router report it as their parent's.
 * Result: 0, or -1 if no gateway can be opened or there is no room; mac is then an empty text,
 * unless size is 0.
 */
SIMULATED_GATEWAY_API int32_t simulated_gateway_bridge_mac(char *mac, size_t size);

#ifdef __cplusplus
}
#endif

#endif

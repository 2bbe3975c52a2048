/*
 * What the router's device-access library provides to the plug-in.
 *
 * A router maker implements these functions for the hardware at hand. The plug-in leaves them
 * undefined; they are bound when it is loaded, so the device-access library has to be in memory
 * first, with its symbols visible to the plug-in (dlopen() with RTLD_GLOBAL).
 *
 * Conventions
 *
 * Results: 0 is success. Which other results are failures is stated at each function.
 *
 * Records: a function exchanges a record, a plain structure at the address that it is given. The
 * record belongs to the plug-in, has been filled with zero bytes and, for a query, only its
 * selecting fields have been set. The library must not keep the address.
 *
 * Texts: every char field holds a text that ends in NUL within the field. The plug-in cuts longer
 * values from a request at the field's width less one, and reads no further than the field where
 * the library leaves no NUL. A field without a value holds the text "NULL" where the function says
 * so. The character set is UTF-8.
 *
 * Layout: the offsets and sizes are fixed and asserted below. Integers are 32 bits wide, signed, in
 * the processor's byte order.
 *
 * Threads: commands run on the agent's threads and on the plug-in's own workers, so every function
 * may be called at any time from several threads.
 */
#ifndef SMART_ROUTER_SERVICE_DEVICE_ACCESS_H
#define SMART_ROUTER_SERVICE_DEVICE_ACCESS_H

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

/* Both sides are built by different makers at different times: a layout that drifts must not
 * compile. */
#define DEVAPI_RECORD_SIZE(record, size)                                                           \
    static_assert(sizeof(record) == (size), #record " has to be " #size " bytes")
#define DEVAPI_RECORD_FIELD(record, field, offset, width)                                          \
    static_assert(offsetof(record, field) == (offset) && sizeof(((record *)0)->field) == (width),  \
                  #record "." #field " has to be " #width " bytes at " #offset)

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Device identity ------------------------------------------------------------------------ */

/* Serial number and kind of the router. */
typedef struct SnInfo {
    char MAC[64];         /* MAC address that serves as the serial number */
    char tslinkstatus[8]; /* state of the mesh link layer, "1" when it is up */
    char DeviceType[256]; /* kind of device, as the platform knows it */
} SnInfo;

DEVAPI_RECORD_SIZE(SnInfo, 328);
DEVAPI_RECORD_FIELD(SnInfo, MAC, 0, 64);
DEVAPI_RECORD_FIELD(SnInfo, tslinkstatus, 64, 8);
DEVAPI_RECORD_FIELD(SnInfo, DeviceType, 72, 256);

/* Fills info. Any result but 0 is a failure, and then info is not read. */
int32_t devapi_get_sn_info(SnInfo *info);

/* Description of the router and of what it can do. */
typedef struct SystemInfo {
    char SWVersion[64];       /* software version */
    char HDVersion[64];       /* hardware version */
    char ProductCLass[64];    /* product class */
    char CPUClass[64];        /* processor */
    char DEVType[64];         /* kind of device */
    char DEVType1[64];        /* second kind of device, for devices that are two things */
    char Capability[64];      /* list of abilities */
    char Card[64];            /* kind of smart card, when there is one */
    char UPLink[64];          /* kind of uplink */
    char Cardno[64];          /* number of the smart card */
    char IPV6[64];            /* whether IPv6 is supported */
    char VLANbind[64];        /* whether ports can be bound to VLANs */
    char LED[64];             /* whether the LEDs can be switched */
    char NFC[64];             /* whether there is an NFC tag */
    char VLANCapability[192]; /* kinds of VLAN handling that are supported */
} SystemInfo;

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

/* Fills info. Any result but 0 is a failure, and then info is not read. */
int32_t devapi_get_system_info(SystemInfo *info);

#ifdef __cplusplus
}
#endif

#endif

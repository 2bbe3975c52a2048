/* SPDX-License-Identifier: MIT */
/*
 * The functions that the management agent provides to the plug-in.
 *
 * They are undefined symbols in the plug-in; the agent's executable exports them, so they are
 * bound when the plug-in is loaded. All of them may be called from any thread of the process,
 * including the plug-in's workers.
 */
#ifndef SMART_ROUTER_SERVICE_HOST_AGENT_H
#define SMART_ROUTER_SERVICE_HOST_AGENT_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Writes one line to the agent's log.
 *
 * module: name of the part of the system that logs; the plug-in always passes "libtsiotAgtd".
 * level:  3 for errors, 7 for debug traces. The agent decides which levels it keeps.
 * format: a printf format with its arguments. Some of the texts end in a line feed and some do
 *         not; the agent adds one where it is missing.
 *
 * Lines of any level may contain passwords in clear text (SET_UPLINK_WIFI_INFO logs one at level
 * 3): an agent that stores them has to mask them.
 */
__attribute__((format(printf, 3, 4))) void ts_mod_log_printf(const char *module, int32_t level,
                                                             const char *format, ...);

/*
 * Encodes a text in base64, without line breaks, padded.
 *
 * Result: a newly allocated text that the caller releases with free() or free_str_buf(); NULL when
 * text is NULL or when memory runs out.
 */
char *base64_encode(const char *text);

/* Size of the buffer that getmd5() writes to, in bytes, terminator included. */
#define HG_MD5_TEXT_SIZE 33

/*
 * Writes the MD5 digest of a text to out, which has room for at least HG_MD5_TEXT_SIZE bytes: 32
 * hexadecimal digits in lower case and the terminator. Writes an empty text when text is NULL or
 * the digest cannot be computed.
 */
void getmd5(const char *text, char *out);

/* The forms of a MAC address that mac_form_translate() writes. */
#define HG_MAC_WITH_COLONS 0 /* "3C:6A:D2:10:4F:20" */
#define HG_MAC_BARE 1        /* "3C6AD2104F20" */

/* Size of the buffer that mac_form_translate() writes to, in bytes, terminator included. */
#define HG_MAC_TEXT_SIZE 18

/*
 * Writes a MAC address in another form to out, which has room for at least HG_MAC_TEXT_SIZE bytes.
 *
 * in:   the address with or without colons or dashes between its bytes, or with points between its
 *       pairs of bytes; upper or lower case.
 * form: HG_MAC_WITH_COLONS or HG_MAC_BARE; the digits are written in upper case.
 *
 * Writes an empty text when in is NULL or not a MAC address, or when there is no such form.
 */
void mac_form_translate(const char *in, int32_t form, char *out);

/* Size of the buffer that ts_sys_mgr_get_brmac() writes to, in bytes, terminator included. */
#define HG_BRIDGE_MAC_SIZE 32

/* Writes the MAC address of the router's LAN bridge to mac, HG_BRIDGE_MAC_SIZE bytes that the
 * caller has zeroed; leaves it empty when the address is not known. */
void ts_sys_mgr_get_brmac(char *mac);

/* Whether the device with the host index is to be left out of the topology report because another
 * entry of the report represents it. Result: 0 when it is to be reported. */
int32_t dev_is_exist(int32_t index);

/*
 * Passes a message to the part of the agent that is connected to the platform, which forwards it to
 * the app.
 *
 * text: the envelope, a formatted JSON object; it belongs to the caller.
 *
 * Result: 0 when the message was accepted. Any other result is a failure; the plug-in logs the
 * failure and returns the result to the caller of json_msg_notice_to_app().
 */
int32_t kaa_device_notice(const char *text);

/* Notifies the same part that the profile of the device has changed, so that it reports the profile
 * again. The result is ignored. */
int32_t kaa_update_profile_info(void);

/* Frees *text, if any, and sets it to NULL. text may be NULL. */
void free_str_buf(char **text);

#ifdef __cplusplus
}
#endif

#endif

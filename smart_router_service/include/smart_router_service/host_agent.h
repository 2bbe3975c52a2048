/*
 * What the management agent provides to the plug-in.
 *
 * The plug-in leaves these functions undefined; the agent's executable exports them, so they are
 * bound when the plug-in is loaded. All of them may be called from any thread of the process, also
 * from the plug-in's own workers.
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
 * module: name of the part of the system that logs; the plug-in always gives "libtsiotAgtd".
 * level:  3 for errors, 7 for debug traces. The agent decides which levels it keeps.
 * format: a printf format with its arguments. Some of the texts end in a line feed and some do
 *         not; the agent ends the line where the text does not.
 *
 * Lines of any level may carry passwords in clear (SET_UPLINK_WIFI_INFO logs one at level 3): an
 * agent that keeps them has to mask them.
 */
__attribute__((format(printf, 3, 4))) void ts_mod_log_printf(const char *module, int32_t level,
                                                             const char *format, ...);

/*
 * Encodes a text in base64, on one line, padded.
 *
 * Result: a newly allocated text that the caller releases with free() or free_str_buf(); NULL when
 * text is NULL or when memory runs out.
 */
char *base64_encode(const char *text);

/* Width of the buffer that getmd5() writes into, in bytes, terminator included. */
#define HG_MD5_TEXT_SIZE 33

/*
 * Writes the MD5 digest of a text into out, which is at least HG_MD5_TEXT_SIZE bytes wide: 32
 * hexadecimal digits in lower case and the terminator. The empty text when text is NULL or when the
 * digest cannot be made.
 */
void getmd5(const char *text, char *out);

/* The forms of a MAC address that mac_form_translate() writes. */
#define HG_MAC_WITH_COLONS 0 /* "3C:6A:D2:10:4F:20" */
#define HG_MAC_BARE 1        /* "3C6AD2104F20" */

/* Width of the buffer that mac_form_translate() writes into, in bytes, terminator included. */
#define HG_MAC_TEXT_SIZE 18

/*
 * Writes a MAC address in another form into out, which is at least HG_MAC_TEXT_SIZE bytes wide.
 *
 * in:   the address with or without colons or dashes between its bytes, or with points between its
 *       pairs of bytes; upper or lower case.
 * form: HG_MAC_WITH_COLONS or HG_MAC_BARE; the digits are written in upper case.
 *
 * The empty text when in is NULL or no MAC address, or when there is no such form.
 */
void mac_form_translate(const char *in, int32_t form, char *out);

/* Width of the buffer that ts_sys_mgr_get_brmac() writes into, in bytes, terminator included. */
#define HG_BRIDGE_MAC_SIZE 32

/* Writes the MAC address of the router's LAN bridge into mac, HG_BRIDGE_MAC_SIZE bytes wide and
 * zeroed before; it stays empty when the address is not known. */
void ts_sys_mgr_get_brmac(char *mac);

/* Whether the device with the host index is left out of the topology report, because something else
 * in the report stands for it: 0 when it is not. */
int32_t dev_is_exist(int32_t index);

/*
 * Hands a message to the part of the agent that speaks with the platform, which passes it on to the
 * app.
 *
 * text: the envelope, a formatted JSON object; it belongs to the caller.
 *
 * Result: 0 when the message was accepted. Any other result is a failure; the plug-in logs that it
 * failed and returns it to whoever raised the message.
 */
int32_t kaa_device_notice(const char *text);

/* Tells the same part that the profile of the device has changed, so that it reports it anew. The
 * result is not looked at. */
int32_t kaa_update_profile_info(void);

/* Releases the text that the pointer holds, if any, and sets the pointer to NULL. NULL is allowed.
 */
void free_str_buf(char **text);

#ifdef __cplusplus
}
#endif

#endif

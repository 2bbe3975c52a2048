/* SPDX-License-Identifier: MIT */
/*
 * The smallest agent for the plug-in: runs one command and prints the reply.
 *
 *   minimal_host COMMAND [JSON]
 *
 * It is linked with the plug-in and with a device-access library, so there is nothing to load; its
 * own functions have to be visible to them (-rdynamic). Exit status: 0 when there is such a
 * command.
 */
#include "smart_router_service/host_agent.h"
#include "smart_router_service/processjsonability.h"

#include <ctype.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* ---- What the plug-in requires from its agent -------------------------------------------------
 */

void ts_mod_log_printf(const char *module, int32_t level, const char *format, ...)
{
    if (level > 3) {
        return; /* traces */
    }
    /* For a user at a terminal. An agent that stores the lines has to mask passwords, which lines
     * of any level may contain. */
    va_list arguments;
    va_start(arguments, format);
    fprintf(stderr, "%s: ", module);
    vfprintf(stderr, format, arguments);
    fputc('\n', stderr);
    va_end(arguments);
}

/* This agent has no platform to push notices to, so it implements nothing for notices: to the
 * plug-in, that is the same as exhausted memory. */
int32_t kaa_device_notice(const char *text)
{
    (void)text;
    return -1;
}

char *base64_encode(const char *text)
{
    (void)text;
    return NULL;
}

void getmd5(const char *text, char *out)
{
    (void)text;
    *out = '\0';
}

int32_t kaa_update_profile_info(void)
{
    return 0;
}

/* For the addresses of a device library: two digits for each byte, with or without separators.
 */
void mac_form_translate(const char *in, int32_t form, char *out)
{
    char text[HG_MAC_TEXT_SIZE] = "";
    size_t digits = 0;
    size_t length = 0;
    for (; in != NULL && *in != '\0'; ++in) {
        if (!isxdigit((unsigned char)*in)) {
            continue;
        }
        if (digits == 12) {
            digits = 0; /* too many digits */
            break;
        }
        if (form == HG_MAC_WITH_COLONS && digits > 0 && digits % 2 == 0) {
            text[length++] = ':';
        }
        text[length++] = (char)toupper((unsigned char)*in);
        ++digits;
    }
    memcpy(out, digits == 12 ? text : "", digits == 12 ? length + 1 : 1);
}

/* The bridge is not known, and no entry represents a device in the topology report. */
void ts_sys_mgr_get_brmac(char *mac)
{
    *mac = '\0';
}

int32_t dev_is_exist(int32_t index)
{
    (void)index;
    return 0;
}

void free_str_buf(char **text)
{
    if (text != NULL) {
        free(*text);
        *text = NULL;
    }
}

/* ---- One command ------------------------------------------------------------------------------
 */

int main(int count, char **words)
{
    cJSON *object = count == 2 || count == 3 ? cJSON_Parse(count == 3 ? words[2] : "{}") : NULL;
    if (!cJSON_IsObject(object)) {
        fprintf(stderr, "usage: %s COMMAND [JSON object]\n", words[0]);
        cJSON_Delete(object);
        return 2;
    }
    const int32_t result = hg_process_json_cmd(words[1], object);
    if (result == HG_NO_SUCH_COMMAND) {
        fprintf(stderr, "%s: no such command\n", words[1]);
    } else {
        char *reply = cJSON_PrintUnformatted(object);
        printf("%s\n", reply != NULL ? reply : "");
        cJSON_free(reply);
    }
    cJSON_Delete(object);
    return result == 0 ? 0 : 1;
}

/* SPDX-License-Identifier: MIT */
/*
 * A plug-in that exercises what an agent provides for plug-ins. Its commands:
 *
 *   SYSTEM    runs "command" with system(); replies with the result, and whether the process has
 *             any child then
 *   SERVICES  replies with what the agent's services return for "text" and "mac"
 *   LOG       logs "text" in several formats
 *   PRINT     prints "text" to standard output
 *   NOTICE    passes "text" to kaa_device_notice(); replies with the result
 *   NOTICES   starts a thread that passes "text" "count" times, and does not wait for it
 *   STOP      raises SIGTERM
 *   DUMPABLE  replies with whether the kernel would write a core dump
 */
#include "smart_router_service/host_agent.h"
#include "smart_router_service/processjsonability.h"

#include <errno.h>
#include <pthread.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

SMART_ROUTER_API char *info_wersion;

static const char *text_of(cJSON *obj, const char *key)
{
    return cJSON_GetStringValue(cJSON_GetObjectItem(obj, key));
}

static void run_command(cJSON *obj)
{
    cJSON_AddNumberToObject(obj, "result", system(text_of(obj, "command")));
    const int none = waitpid(-1, NULL, WNOHANG) == -1 && errno == ECHILD;
    cJSON_AddStringToObject(obj, "children", none ? "none" : "some");
}

static void use_services(cJSON *obj)
{
    char md5[HG_MD5_TEXT_SIZE];
    char mac[HG_MAC_TEXT_SIZE];
    char *encoded = base64_encode(text_of(obj, "text"));
    getmd5(text_of(obj, "text"), md5);
    mac_form_translate(text_of(obj, "mac"), HG_MAC_BARE, mac);
    cJSON_AddStringToObject(obj, "base64", encoded);
    cJSON_AddStringToObject(obj, "md5", md5);
    cJSON_AddStringToObject(obj, "bare_mac", mac);
    free_str_buf(&encoded);
    cJSON_AddBoolToObject(obj, "freed", encoded == NULL);
    memset(info_wersion, 'x', HG_VERSION_INFO_SIZE);
}

static void log_text(cJSON *obj)
{
    const char *text = text_of(obj, "text");
    ts_mod_log_printf("probe", 3, "error %s", text);
    ts_mod_log_printf("probe", 3, "ended by itself %s\n", text);
    ts_mod_log_printf("probe", 7, "trace %s", text);
    ts_mod_log_printf("probe", 3, "Account:%s|Password:%s|Enable:%s", text, text, text);
}

static void send_notice(cJSON *obj)
{
    cJSON_AddNumberToObject(obj, "result", kaa_device_notice(text_of(obj, "text")));
}

static void *send_notices(void *notices)
{
    cJSON *obj = notices;
    const int count = atoi(text_of(obj, "count"));
    for (int done = 0; done < count; ++done) {
        kaa_device_notice(text_of(obj, "text"));
    }
    cJSON_Delete(obj);
    return NULL;
}

static void send_notices_from_a_thread(const cJSON *obj)
{
    pthread_t thread;
    pthread_create(&thread, NULL, send_notices, cJSON_Duplicate(obj, 1));
    pthread_detach(thread);
}

int32_t hg_process_json_cmd(const char *cmd, cJSON *obj)
{
    if (strcmp(cmd, "SYSTEM") == 0) {
        run_command(obj);
    } else if (strcmp(cmd, "SERVICES") == 0) {
        use_services(obj);
    } else if (strcmp(cmd, "LOG") == 0) {
        log_text(obj);
    } else if (strcmp(cmd, "PRINT") == 0) {
        puts(text_of(obj, "text"));
        fflush(stdout);
    } else if (strcmp(cmd, "NOTICE") == 0) {
        send_notice(obj);
    } else if (strcmp(cmd, "NOTICES") == 0) {
        send_notices_from_a_thread(obj);
    } else if (strcmp(cmd, "STOP") == 0) {
        kill(getpid(), SIGTERM);
    } else if (strcmp(cmd, "DUMPABLE") == 0) {
        cJSON_AddNumberToObject(obj, "dumpable", prctl(PR_GET_DUMPABLE));
    } else {
        return HG_NO_SUCH_COMMAND;
    }
    return 0;
}

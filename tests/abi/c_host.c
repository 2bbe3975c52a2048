/* SPDX-License-Identifier: MIT */
/* A host in C that loads the plug-in: the interface must not need C++. */
#include "smart_router_service/device_access.h"
#include "smart_router_service/host_agent.h"
#include "smart_router_service/processjsonability.h"

#include <dlfcn.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

int32_t devapi_get_sn_info(SnInfo *info)
{
    strcpy(info->MAC, "02:00:00:00:00:01");
    strcpy(info->tslinkstatus, "0");
    strcpy(info->DeviceType, "C");
    return 0;
}

void ts_mod_log_printf(const char *module, int32_t level, const char *format, ...)
{
    (void)module;
    (void)level;
    (void)format;
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

void mac_form_translate(const char *in, int32_t form, char *out)
{
    (void)in;
    (void)form;
    *out = '\0';
}

void ts_sys_mgr_get_brmac(char *mac)
{
    *mac = '\0';
}

int32_t dev_is_exist(int32_t index)
{
    (void)index;
    return 0;
}

int32_t kaa_device_notice(const char *text)
{
    (void)text;
    return -1;
}

void free_str_buf(char **text)
{
    free(*text);
    *text = NULL;
}

int32_t kaa_update_profile_info(void)
{
    return -1;
}

static int expect(int32_t (*process)(const char *, cJSON *), const char *command, int32_t result,
                  const char *reply)
{
    cJSON *object = cJSON_CreateObject();
    const int32_t given = process(command, object);
    char *text = cJSON_PrintUnformatted(object);
    const int wrong = given != result || strcmp(text, reply) != 0;
    if (wrong) {
        fprintf(stderr, "%s: %d %s\n", command, (int)given, text);
    }
    cJSON_free(text);
    cJSON_Delete(object);
    return wrong;
}

int main(int count, char **arguments)
{
    if (count != 2) {
        fprintf(stderr, "usage: %s PLUGIN\n", arguments[0]);
        return 2;
    }
    void *plugin = dlopen(arguments[1], RTLD_NOW);
    if (plugin == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    int32_t (*process)(const char *, cJSON *) = NULL;
    *(void **)&process = dlsym(plugin, "hg_process_json_cmd");
    char **version = (char **)dlsym(plugin, "info_wersion");
    if (process == NULL || version == NULL || *version != NULL) {
        fprintf(stderr, "the interface is not as declared\n");
        return 1;
    }
    char buffer[HG_VERSION_INFO_SIZE] = "";
    *version = buffer;

    int wrong = 0;
    wrong |= expect(process, "GET_SN_INFO", 0,
                    "{\"Status\":\"0\",\"MAC\":\"02:00:00:00:00:01\",\"tslinkstatus\":\"0\","
                    "\"DeviceType\":\"C\"}");
    wrong |= expect(process, "QUERY_SYSTEM_INFO", 0,
                    "{\"Status\":\"1\",\"FailReason\":\"Get System Info Failed From Gdbus\"}");
    wrong |= expect(process, "RESPONSE_ROUTER_VERSION", 0, "{\"Status\":\"1\"}");
    wrong |= expect(process, "NO_SUCH_COMMAND", HG_NO_SUCH_COMMAND, "{}");
    if (strcmp(buffer, "{\n\t\"Status\":\t\"1\"\n}") != 0) {
        fprintf(stderr, "kept: %s\n", buffer);
        wrong = 1;
    }

    /* An object created before the plug-in is closed still has its keys, which belong to the
     * plug-in. */
    cJSON *object = cJSON_CreateObject();
    process("GET_SN_INFO", object);
    dlclose(plugin);
    wrong |= cJSON_GetObjectItem(object, "Status") == NULL;
    cJSON_Delete(object);
    return wrong;
}

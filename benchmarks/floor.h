// SPDX-License-Identifier: MIT
// The hand-written baseline that the plug-in's handlers are compared with: the same commands,
// written with cJSON's ordinary calls, one key after the other. They make the same device calls
// with the same records and give the same replies.
#pragma once

#include <cjson/cJSON.h>
#include <cstring>

namespace baseline {

void get_sn_info(cJSON *obj);
void get_wifi_info(cJSON *obj);
void set_wifi_info(cJSON *obj);
void query_wan_info(cJSON *obj);
void set_wan_info(cJSON *obj);
void get_attach_dev_base_info(cJSON *obj);
void get_tsnk_topo_info(cJSON *obj);
void set_green_net_list(cJSON *obj);
void set_wifi_info_list(cJSON *obj);

inline void add(cJSON *object, const char *key, const char *value)
{
    cJSON_AddItemToObject(object, key, cJSON_CreateString(value));
}

inline void add_failure(cJSON *object, const char *reason)
{
    add(object, "Status", "1");
    add(object, "FailReason", reason);
}

// The text of the key; null when there is none.
inline const char *text(const cJSON *object, const char *key)
{
    const cJSON *item = cJSON_GetObjectItem(object, key);
    return cJSON_IsString(item) ? item->valuestring : nullptr;
}

template <size_t width> void copy(char (&field)[width], const char *value)
{
    strncpy(field, value, width - 1);
    field[width - 1] = '\0';
}

} // namespace baseline

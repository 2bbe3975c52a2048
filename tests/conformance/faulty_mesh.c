/* SPDX-License-Identifier: MIT */
/* The part of the faulty library that returns memory for the plug-in to free: lists and answers.
 */
#include "fault.h"
#include "smart_router_service/device_access.h"

#include <stdlib.h>
#include <string.h>

int32_t devapi_get_childrouter_list(ChildRouterList *list)
{
    list->identifiers[0] = 1;
    list->count = has("negative_count") ? -1 : 1;
    return 0;
}

int32_t devapi_get_childrouter_info(ChildRouterInfo *info, int32_t identifier)
{
    memcpy(info->RouterDeviceID, "child", sizeof "child");
    info->link_count = has("negative_inner_count") ? -identifier : 0;
    return 0;
}

int32_t devapi_cmdstring_sendto_tslink_with_retinfo(const char *text, const char *method,
                                                    char **answer)
{
    static char kept[] = "{}";
    (void)text;
    (void)method;
    *answer = has("foreign_answer") ? kept : has("no_answer") ? NULL : strdup("{\"BaseInfo\":[]}");
    return 0;
}

/* ---- The list of relations --------------------------------------------------------------------
 */

int32_t devapi_get_Multi_Ap_enable(int32_t *enable)
{
    *enable = 1;
    return 0;
}

/* An area whose routers only the topology reports. */
int32_t devapi_get_basic_area_code(char *code, int32_t size)
{
    strncpy(code, "TH_OLV", (size_t)size);
    return 0;
}

int32_t devapi_get_topo_relation_ship(char *text, int32_t size)
{
    memset(text, 'r', (size_t)size + (has("wide_relations") ? 2 : 0));
    return 0;
}

int32_t devapi_get_topo_relation_num(int32_t *count)
{
    *count = 1;
    return 0;
}

int32_t devapi_handle_topo_struct(const char *relations, TopoNode *first)
{
    static TopoNode kept = {2, {0}, NULL};
    (void)relations;
    first->level = 1;
    first->next = has("foreign_node") ? &kept : calloc(1, sizeof *first);
    first->next->level = 2;
    if (has("endless_list")) {
        first->next->next = first->next;
    }
    return 0;
}

int32_t devapi_topo_xml_info_list(int32_t count, TopoNode *first)
{
    (void)count;
    (void)first;
    return 0;
}

void devapi_free_topo_list(TopoNode *first)
{
    while (first != NULL) {
        TopoNode *next = first->next;
        free(first);
        first = next;
    }
}

int32_t devapi_get_node_dev_info(const TopoNode *node, NodeDevInfo *info)
{
    (void)node;
    info->Mac[0] = 'M';
    return 0;
}

int32_t devapi_get_viewmac_by_mac(const char *mac, char *view)
{
    (void)mac;
    memset(view, 'V', has("unterminated_view") ? VIEW_MAC_SIZE : VIEW_MAC_SIZE - 1);
    return 0;
}

int32_t devapi_get_node_baseinfo(const TopoNode *node, NodeBaseInfo *first)
{
    (void)node;
    first->next = calloc(1, sizeof *first);
    memset(first->next->Mac, 'M',
           has("unterminated_node") ? sizeof first->Mac : sizeof first->Mac - 1);
    return 0;
}

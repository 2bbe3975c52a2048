// SPDX-License-Identifier: MIT
#include "leeway.h"

namespace {

const Leeway kLeeways[] = {
    {.name = "GET_GREENNET_DEVICE_LIST",
     .why = "an entry without memory is skipped, and the log says so",
     .lists = {"DeviceList"},
     .logged = "cJSON_CreateObject error\n"},
    {.name = "GET_PORT_BINDING",
     .why = "an entry without memory is skipped",
     .lists = {"port_stat_list"}},
    {.name = "GET_PORT_STATISTICS",
     .why = "an entry without memory is skipped",
     .lists = {"port_stat_list"}},
    {.name = "GET_QOS_INFO",
     .why =
         "an application without memory is skipped; so is a rule, of which the reply tells; what "
         "stands before a list without memory stays",
     .lists = {"app_info_list", "classification_info_list"},
     .reported = {"classification_info_list"},
     .added = {"Status", "FailReason"},
     .before = {"Enable", "app_info_list"}},
    {.name = "GET_TSLINK_TOPOLOGY_INFO",
     .why = "its parts stand for themselves: a key that is missing, a reason in the place of the "
            "devices, a line in the log for a child router or a station",
     .keys = {"MeshInfo", "ChildInfo", "MainBaseInfo", "ChildRouter"},
     .lists = {"ChildRouter", "ChildBaseInfo"},
     .logged = "create child_",
     .added = {"FailReason"},
     .reasons = {"Create mainrouter json error"}},
    {.name = "GET_UPDATE_STATUS",
     .why = "the child routers' key is missing where there is no memory for the list",
     .keys = {"ChildRouter"}},
    {.name = "IMAGE_DOWNLOAD",
     .why = "an address that cannot be copied is none",
     .reasons = {"url is null"}},
    {.name = "PLATEFORM_UPDATE_IMMEDIATE",
     .why = "an address that cannot be copied is none",
     .reasons = {"url is null"}},
    {.name = "RESPONSE_ROUTER_VERSION",
     .why = "a report that cannot be printed is not kept for the agent",
     .keeps = false},
    {.name = "SET_GREENNET_DEVICE_LIST",
     .why = "restrictions are switched on before the list is made",
     .called = "devapi_set_greenaccess_enable"},
    {.name = "SET_GREENNET_DEVICE_LIST_of_none",
     .why = "that the device has refused the removal is put into words once it has",
     .called = "devapi_del_green_net_info_by_maclist"},
    {.name = "UPDATE_IMMEDIATE",
     .why = "an address that cannot be copied is none; the rules beside an image make up for it",
     .reasons = {"url is null"},
     .calls = false},
    {.name = "UPDATE_IMMEDIATE_of_an_image",
     .why = "an address that cannot be copied is none",
     .reasons = {"url is null"}},
    {.name = "json_get_topo_router_agent_info_bynewmethod",
     .why = "a router without memory for its stations is reported without them",
     .keys = {"ChildBaseInfo"}},
    {.name = "json_get_topo_router_agent_info_bynewmethod_of_operators",
     .why = "a router without memory for its stations is reported without them",
     .keys = {"ChildBaseInfo"}},
    {.name = "json_get_topo_router_info",
     .why = "a child router is left out whose list of children has no memory, and the log says so",
     .lists = {"ChildRouter"},
     .logged = "create childinfo_json err"},
};

} // namespace

const Leeway &leeway_of(const Subject &subject)
{
    static const Leeway kNone = {.name = "", .why = ""};
    for (const std::string &name : {subject.name, subject.command}) {
        for (const Leeway &row : kLeeways) {
            if (row.name == name) {
                return row;
            }
        }
    }
    return kNone;
}

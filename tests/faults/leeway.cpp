// SPDX-License-Identifier: MIT
#include "leeway.h"

namespace {

const Leeway kLeeways[] = {
    {.name = "GET_GREENNET_DEVICE_LIST",
     .why = "an entry without memory is skipped, and logged",
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
         "an application without memory is skipped; so is a rule, and the reply reports it; what "
         "precedes a list without memory stays",
     .lists = {"app_info_list", "classification_info_list"},
     .reported = {"classification_info_list"},
     .added = {"Status", "FailReason"},
     .before = {"Enable", "app_info_list"}},
    {.name = "GET_TSLINK_TOPOLOGY_INFO",
     .why =
         "each part fails separately: a missing key, a reason in place of the devices, a line in "
         "the log for a child router or a station",
     .keys = {"MeshInfo", "ChildInfo", "MainBaseInfo", "ChildRouter"},
     .lists = {"ChildRouter", "ChildBaseInfo"},
     .logged = "create child_",
     .added = {"FailReason"}},
    {.name = "GET_UPDATE_STATUS",
     .why = "the child routers' key is missing if there is no memory for the list",
     .keys = {"ChildRouter"}},
    {.name = "RESPONSE_ROUTER_VERSION",
     .why = "a report that cannot be printed is not kept for the agent",
     .keeps = false},
    {.name = "SET_GREENNET_DEVICE_LIST",
     .why = "restrictions are switched on before the list is made",
     .called = "devapi_set_greenaccess_enable"},
    {.name = "SET_GREENNET_DEVICE_LIST_of_none",
     .why = "the failure text is only allocated once the device has refused the removal",
     .called = "devapi_del_green_net_info_by_maclist"},
    {.name = "UPDATE_IMMEDIATE",
     .why = "Dpi and DpiHttp decide the result, even if the worker could not be started",
     .calls = false},
    {.name = "json_get_topo_router_agent_info_bynewmethod",
     .why = "a router without memory for its stations is reported without them",
     .keys = {"ChildBaseInfo"}},
    {.name = "json_get_topo_router_agent_info_bynewmethod_of_operators",
     .why = "a router without memory for its stations is reported without them",
     .keys = {"ChildBaseInfo"}},
    {.name = "json_get_topo_router_info",
     .why = "a child router without memory for its list of children is left out, and logged",
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

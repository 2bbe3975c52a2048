// The table of commands: every name that the plug-in answers to, with its handler.
//
// Everything that has to know all commands iterates this table: the dispatcher, the handlers'
// prototypes below, and the tests. The rows stand in the order of the protocol's own list of
// commands, which groups them by subject; a handler is found by searching for its name.
#pragma once

#include "smart_router_service/processjsonability.h"

#define SMART_ROUTER_COMMANDS(COMMAND)                                                             \
    COMMAND("GET_SN_INFO", json_get_sn_info)                                                       \
    COMMAND("QUERY_SYSTEM_INFO", json_query_sys_info)                                              \
    COMMAND("RESPONSE_ROUTER_VERSION", json_response_router_version)

// A handler reads its parameters from the command object and adds its reply to it. What it returns
// is for callers within the process; the dispatcher does not look at it.
#define SMART_ROUTER_DECLARE_HANDLER(name, handler) SMART_ROUTER_API int32_t handler(cJSON *obj);
extern "C" {
SMART_ROUTER_COMMANDS(SMART_ROUTER_DECLARE_HANDLER)
}
#undef SMART_ROUTER_DECLARE_HANDLER

// SPDX-License-Identifier: MIT
// The host's log, under the name of this module.
#pragma once

#include "smart_router_service/host_agent.h"

// The host knows two levels: 3 is an error, 7 is for debugging.
#define SMART_ROUTER_LOG_MODULE "libtsiotAgtd"
#define LOG_ERROR(...) ts_mod_log_printf(SMART_ROUTER_LOG_MODULE, 3, __VA_ARGS__)
#define LOG_DEBUG(...) ts_mod_log_printf(SMART_ROUTER_LOG_MODULE, 7, __VA_ARGS__)

namespace smart_router {

// For a text without arguments; a function call takes less code than the macros.
void log_error(const char *text);
void log_debug(const char *text);

} // namespace smart_router

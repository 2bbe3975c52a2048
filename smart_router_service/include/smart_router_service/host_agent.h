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
 * Debug traces may carry passwords in clear: an agent that keeps them has to mask them.
 */
__attribute__((format(printf, 3, 4))) void ts_mod_log_printf(const char *module, int32_t level,
                                                             const char *format, ...);

#ifdef __cplusplus
}
#endif

#endif

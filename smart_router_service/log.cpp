// SPDX-License-Identifier: MIT
#include "log.h"

namespace smart_router {

void log_error(const char *text)
{
    LOG_ERROR("%s", text);
}

void log_debug(const char *text)
{
    LOG_DEBUG("%s", text);
}

} // namespace smart_router

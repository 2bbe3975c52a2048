// SPDX-License-Identifier: MIT
// What the agent provides for notices to the app, where nobody takes any: the plug-in does without.
#include "smart_router_service/host_agent.h"

char *base64_encode(const char *)
{
    return nullptr;
}

void getmd5(const char *, char *out)
{
    *out = '\0';
}

int32_t kaa_device_notice(const char *)
{
    return -1;
}

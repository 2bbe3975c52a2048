// SPDX-License-Identifier: MIT
// Notices to the app.
#pragma once

#include "commands/options.h"
#include "host/plugin_host.h"
#include "protocol/requests.h"

namespace agent {

// Raises the notice through the plug-in. Result: 0 when it was accepted. Throws HostError.
int32_t raise_notice(const PluginHost &host, const Notice &notice);

// hgagent notice: raises one notice and prints it as received. Result: the exit status.
int run_notice(const Options &options);

} // namespace agent

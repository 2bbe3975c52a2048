// SPDX-License-Identifier: MIT
// hgagent report image-upgrade: the firmware upgrade that a router's agent starts without a
// command.
#pragma once

#include "commands/options.h"
#include "host/plugin_host.h"

#include <stdexcept>
#include <string>

namespace agent {

// The report's name.
constexpr char kImageUpgrade[] = "image-upgrade";

// Makes the plug-in start fetching and flashing the image at the URL. Throws BadRequest, Busy and
// HostError.
void start_image_upgrade(const PluginHost &host, const std::string &url);

// Makes the plug-in fetch and flash the image at the URL, and waits for it to finish. Result: the
// exit status.
int run_image_upgrade(const Options &options);

} // namespace agent

// SPDX-License-Identifier: MIT
// hgagent report image-upgrade: the upgrade that a router's agent starts by itself.
#pragma once

#include "commands/options.h"
#include "host/plugin_host.h"

#include <stdexcept>
#include <string>

namespace agent {

// The report's name.
constexpr char kImageUpgrade[] = "image-upgrade";

// Why an upgrade cannot begin now.
class Busy : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Lets the plug-in begin to fetch the image at the address and to flash it. Throws BadRequest, Busy
// and HostError.
void start_image_upgrade(const PluginHost &host, const std::string &url);

// Lets the plug-in fetch the image at the address and flash it, and waits for that. Result: the
// exit status.
int run_image_upgrade(const Options &options);

} // namespace agent

// hgagent report image-upgrade: the upgrade that a router's agent starts by itself.
#pragma once

#include "commands/options.h"

namespace agent {

// The report's name.
constexpr char kImageUpgrade[] = "image-upgrade";

// Lets the plug-in fetch the image at the address and flash it, and waits for that. Result: the
// exit status.
int run_image_upgrade(const Options &options);

} // namespace agent

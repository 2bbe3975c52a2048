// SPDX-License-Identifier: MIT
// hgagent mqtt-call: a command to gateways on a broker.
#pragma once

#include "commands/options.h"

namespace agent::service {

void add_mqtt_call(CLI::App &app, Options &options);

} // namespace agent::service

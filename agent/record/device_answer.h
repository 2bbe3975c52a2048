// SPDX-License-Identifier: MIT
// Answers device calls with what was recorded.
#pragma once

#include "host/device_layer.h"
#include "protocol/json.h"

namespace agent::record {

// What the call passes, as a recording has it. Before the call.
Json given_to(const DeviceCall &call);

// Sets the result and writes what the recorded call wrote into its arguments. Nothing is written
// beyond a field, regardless of what the line contains.
void answer_call(DeviceCall &call, const cJSON *line);

// The answer to a call that was not recorded: -1, with nothing written.
void refuse_call(DeviceCall &call);

} // namespace agent::record

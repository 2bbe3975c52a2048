// SPDX-License-Identifier: MIT
// Texts about devices in replies, as shown to people.
#pragma once

#include <cjson/cJSON.h>

#include <string>

namespace agent {

// The string under the key on one line; empty when there is none, and for a device's "NULL".
std::string text_of(const cJSON *item, const char *key);

// The name that the user gave to the device, otherwise the device's own.
std::string name_of(const cJSON *device);

} // namespace agent

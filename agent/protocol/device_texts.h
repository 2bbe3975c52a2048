// SPDX-License-Identifier: MIT
// What replies say of devices, as people are shown it.
#pragma once

#include <cjson/cJSON.h>

#include <string>

namespace agent {

// The text behind the key on one line; an empty one when there is none.
std::string text_of(const cJSON *item, const char *key);

// The name that the user gave to the device, else the device's own.
std::string name_of(const cJSON *device);

} // namespace agent

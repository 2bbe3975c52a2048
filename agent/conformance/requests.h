// SPDX-License-Identifier: MIT
// Requests that fit the device under test, built from the descriptions of the commands and from the
// device's replies.
#pragma once

#include "protocol/json.h"
#include "protocol/protocol.h"

#include <functional>
#include <string>
#include <vector>

namespace agent {

// Runs a command on a request. Result: the reply; null on failure.
using Ask = std::function<Json(const std::string &command, Json request)>;

// The requests for a command with the values that the device reports, the last one first: the last
// entries matter least in a home. If the device cannot report the values, the description's
// example; empty when the device reports that there are none.
std::vector<Json> requests_for(const Description &command, const Ask &ask);

// The current setting, as a request that sets it again; null when the device does not report all of
// it. selected: a request of the same command that provides the selecting keys.
Json setting_in_force(const Description &command, const cJSON *selected, const Ask &ask);

// The first key of a setting for which the device has no value; empty when it has all.
std::string key_without_value(const cJSON *setting);

// The setting with the change that the description specifies; null when it specifies none, or when
// other keys of the setting have no value.
Json changed_setting(const Description &command, const cJSON *setting);

// A readable description of the difference between the requested and the current setting; empty
// when they are equal.
std::string difference(const cJSON *made, const cJSON *in_force);

} // namespace agent

// SPDX-License-Identifier: MIT
// Requests that fit the device at hand: made from the descriptions of the commands, and from what
// the device tells.
#pragma once

#include "protocol/json.h"
#include "protocol/protocol.h"

#include <functional>
#include <string>
#include <vector>

namespace agent {

// Runs a command on a request. Result: the reply; null when it is no success.
using Ask = std::function<Json(const std::string &command, Json request)>;

// The requests that can be made of a command with the values that the device tells, the last one
// first: what comes last matters least in a home. Where the device cannot tell them, the example of
// the description; none when it tells that there are none.
std::vector<Json> requests_for(const Description &command, const Ask &ask);

// The setting that is in force, as a request that sets it again; null when the device does not tell
// all of it. selected: a request of the same command, of which the keys that select something are
// taken.
Json setting_in_force(const Description &command, const cJSON *selected, const Ask &ask);

// The first key of a setting for which the device has no value; empty when it has all.
std::string key_without_value(const cJSON *setting);

// The setting with the change that the description names; null when it names none, or when others
// of its keys have no value.
Json changed_setting(const Description &command, const cJSON *setting);

// What differs between a setting that was made and the one that is in force, for people; empty when
// nothing does.
std::string difference(const cJSON *made, const cJSON *in_force);

} // namespace agent

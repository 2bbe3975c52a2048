// SPDX-License-Identifier: MIT
// Checks a reply against the description of its command.
#pragma once

#include <cjson/cJSON.h>
#include <string>

namespace agent {

// Why the object is not one of the command's possible replies to the request; empty when it is.
std::string undescribed(const cJSON *description, const cJSON *request, const cJSON *object);

// The description of the reply in the object; null when there is none. Of two equal ones, the one
// that is not specific to the request.
const cJSON *reply_given(const cJSON *description, const cJSON *request, const cJSON *object);

// Whether the reply is specific to requests that lack one of their own keys, not an element's key.
bool is_of_request(const cJSON *reply);

// The request without the keys that this reply removes. The caller deletes it.
cJSON *left_of(const cJSON *description, const cJSON *reply, const cJSON *request);

} // namespace agent

// SPDX-License-Identifier: MIT
// Holds a reply against the description of its command.
#pragma once

#include <cjson/cJSON.h>
#include <string>

// Why the object is none of the replies that the command can give to the request; empty when it is
// one.
std::string undescribed(const cJSON *description, const cJSON *request, const cJSON *object);

// The described reply that the object is; null when it is none. Where two are alike, the one that
// does not answer the request alone.
const cJSON *reply_given(const cJSON *description, const cJSON *request, const cJSON *object);

// Whether the reply answers a request that lacks one of its own keys, and nothing else.
bool is_of_request(const cJSON *reply);

// The request without the keys that this reply removes. The caller deletes it.
cJSON *left_of(const cJSON *description, const cJSON *reply, const cJSON *request);

// SPDX-License-Identifier: MIT
// Guards for cJSON trees, and access to their strings.
#pragma once

#include <cjson/cJSON.h>

#include <memory>
#include <string>

namespace agent {

struct DeleteJson {
    void operator()(cJSON *item) const { cJSON_Delete(item); }
};
using Json = std::unique_ptr<cJSON, DeleteJson>;

// The string under the key; empty when there is none.
inline std::string string_at(const cJSON *object, const char *key)
{
    const char *text = cJSON_GetStringValue(cJSON_GetObjectItemCaseSensitive(object, key));
    return text != nullptr ? text : "";
}

} // namespace agent

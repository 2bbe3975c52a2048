// SPDX-License-Identifier: MIT
// Guards for cJSON trees.
#pragma once

#include <cjson/cJSON.h>

#include <memory>

namespace agent {

struct DeleteJson {
    void operator()(cJSON *item) const { cJSON_Delete(item); }
};
using Json = std::unique_ptr<cJSON, DeleteJson>;

} // namespace agent

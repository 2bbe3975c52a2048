// SPDX-License-Identifier: MIT
// The parsing of a classification rule, which is also exported.
#pragma once

#include "recipes.h"

extern "C" {

// Fills a zeroed rule from a command object. Result: 0; -1 when an argument is null or, with a line
// in the log, when a key is missing or has the wrong type, and then the rule is partly filled.
SMART_ROUTER_API int32_t parse_json_set_qos_cls_info(QosRule *rule, cJSON *obj);
}

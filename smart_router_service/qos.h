// The parsing of a classification rule, which is exported as well.
#pragma once

#include "recipes.h"

extern "C" {

// Fills a zeroed rule from a command object. Result: 0; -1 when an argument is null or, with a line
// in the log, when a key is missing or not what it has to be, and then the rule is filled up to
// there.
SMART_ROUTER_API int32_t parse_json_set_qos_cls_info(QosRule *rule, cJSON *obj);
}

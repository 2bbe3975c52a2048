// The topology report as one writes it with cJSON's ordinary calls: what the plug-in's handler is
// measured against.
#pragma once

#include <cjson/cJSON.h>

extern "C" void floor_topology_report(cJSON *reply);

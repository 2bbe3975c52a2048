// SPDX-License-Identifier: MIT
// hgagent topology: the mesh, for people.
#pragma once

#include "commands/options.h"
#include "host/plugin_host.h"

#include <cjson/cJSON.h>

#include <cstdint>

namespace agent {

// The report with all drawn data, as an object for clients that draw it themselves:
//   {"topology": reply of GET_TSLINK_TOPOLOGY_INFO,
//    "tree": report agent-topology, {} where this plug-in has none,
//    "devices": number of devices that the plug-in counted at the main router, if known}
constexpr char kMesh[] = "mesh";

// Builds it in an empty object. Result: 0, or 1 when the gateway does not report its topology.
// Throws HostError.
int32_t report_mesh(const PluginHost &host, cJSON *report);

// Draws the mesh as GET_TSLINK_TOPOLOGY_INFO reports it. Result: the exit status.
int run_topology(const Options &options);

} // namespace agent

// Builds the topology report of a crowded mesh once, by the plug-in's handler or by straight cJSON
// code, for a profiler that counts what each of them does.
#include "floor_topology.h"
#include "simulated_gateway/simulated_gateway.h"
#include "smart_router_service/processjsonability.h"

#include <cstdio>
#include <cstring>
#include <ctime>

extern "C" time_t __wrap_time(time_t *)
{
    return 1767225600; // both reports are made at the same moment
}

int main(int argc, char **argv)
{
    const bool straight = argc == 2 && strcmp(argv[1], "floor") == 0;
    char error[256];
    SimulatedGatewayOptions options = {};
    options.scenario = "crowded_mesh";
    if (simulated_gateway_open(&options, error, sizeof error) != 0) {
        fprintf(stderr, "%s\n", error);
        return 1;
    }
    cJSON *reply = cJSON_CreateObject();
    if (straight) {
        floor_topology_report(reply);
    } else {
        hg_process_json_cmd("GET_TSLINK_TOPOLOGY_INFO", reply);
    }
    char *text = cJSON_PrintUnformatted(reply);
    puts(text);
    cJSON_free(text);
    cJSON_Delete(reply);
    simulated_gateway_close();
    return 0;
}

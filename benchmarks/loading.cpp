// SPDX-License-Identifier: MIT
// Loads the plug-in as an agent does and sends it a million commands, to measure how long loading
// takes and how much memory the process keeps. Prints one JSON object.
#include "device.h"

#include "smart_router_service/processjsonability.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <iterator>
#include <unistd.h>
#include <valgrind/callgrind.h>

namespace {

struct Request {
    const char *command;
    const char *parameters;
};
constexpr Request kRequests[] = {
    {"GET_SN_INFO", "{}"},
    {"GET_WIFI_INFO", R"({"SSIDIndex":"1"})"},
    {"QUERY_WAN_INFO", R"({"WANName":"INTERNET"})"},
    {"GET_AD_BASE_INFO", "{}"},
    {"SET_WIFI_INFO", R"({"SSIDIndex":"2","SSID":"guests","PWD":"12345678","ENCRYPT":"WPA2",)"
                      R"("PowerLevel":"80","Channel":"6","Enable":"1"})"},
    {"GET_LED_STATUS", "{}"}, // which this device refuses
};

// The private memory of the process in KiB; reading it allocates none.
long private_memory()
{
    static char text[4096];
    const int file = open("/proc/self/smaps_rollup", O_RDONLY);
    const ssize_t length = read(file, text, sizeof text - 1);
    close(file);
    text[length > 0 ? length : 0] = '\0';
    long sum = 0;
    for (const char *key : {"Private_Clean:", "Private_Dirty:"}) {
        const char *line = strstr(text, key);
        sum += line != nullptr ? strtol(line + strlen(key), nullptr, 10) : 0;
    }
    return sum;
}

using Process = decltype(&hg_process_json_cmd);

void send(Process process, const Request &request)
{
    cJSON *obj = cJSON_Parse(request.parameters);
    process(request.command, obj);
    cJSON_free(cJSON_PrintUnformatted(obj));
    cJSON_Delete(obj);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        fprintf(stderr, "usage: %s PLUGIN COMMANDS\n", argv[0]);
        return 2;
    }
    const long commands = strtol(argv[2], nullptr, 10);
    benchmark_device::set_host_count(4);
    const long before = private_memory();
    const auto start = std::chrono::steady_clock::now();
    CALLGRIND_START_INSTRUMENTATION;
    void *plugin = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    CALLGRIND_STOP_INSTRUMENTATION;
    const std::chrono::duration<double, std::micro> passed =
        std::chrono::steady_clock::now() - start;
    CALLGRIND_DUMP_STATS_AT("loading");
    const long loaded = private_memory();
    if (plugin == nullptr) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    const auto process = reinterpret_cast<Process>(dlsym(plugin, "hg_process_json_cmd"));
    for (const Request &request : kRequests) {
        send(process, request);
    }
    const long first = private_memory();
    for (long sent = 0; sent < commands; ++sent) {
        send(process, kRequests[static_cast<size_t>(sent) % std::size(kRequests)]);
    }
    printf("{\"microseconds\":%.1f,\"before\":%ld,\"loaded\":%ld,\"first\":%ld,\"last\":%ld}\n",
           passed.count(), before, loaded, first, private_memory());
    return 0;
}

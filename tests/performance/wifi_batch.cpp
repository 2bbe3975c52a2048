// Handles one SET_WIFI_INFO_LIST with as many elements as the argument says, for a profiler that
// counts what the handler does. The worker is left out.
#include "handler_test.h"

#include <cstdio>
#include <cstdlib>

extern "C" {

// In the worker's stead: ends the batch as the worker would, with nothing applied.
int __wrap_pthread_create(pthread_t *, const pthread_attr_t *, void *(*)(void *), void *array)
{
    free(array);
    pthread_mutex_unlock(&setwifilistlock);
    return 0;
}
}

int main(int argc, char **argv)
{
    const int count = argc == 2 ? atoi(argv[1]) : 0;
    const Json element =
        parse(R"({"SSIDIndex":"1","SSID":"home","PWD":"correct horse","ENCRYPT":"WPA2",)"
              R"("PowerLevel":"80","Channel":"6","Enable":"1","Bandwidth":"20",)"
              R"("AdvertisementEnable":"1","Mode":"bgn","Beamforming":"1"})");
    const Json object = parse(R"({"WIFILIST":[],"StaCtrl":"1"})");
    for (int at = 0; at < count; ++at) {
        cJSON_AddItemToArray(object->child, cJSON_Duplicate(element.get(), 1));
    }

    hg_process_json_cmd("SET_WIFI_INFO_LIST", object.get());

    if (print(object.get()) != R"({"Status":"0"})" || recording_device::calls().size() != 2 ||
        !recording_host::log_lines().empty()) {
        fprintf(stderr, "the batch was not handled as it should be\n");
        return 1;
    }
    return 0;
}

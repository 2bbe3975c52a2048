// One SET_WIFI_INFO_LIST. The worker is left out.
#include "list_cost.h"

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
    return handle_list({"SET_WIFI_INFO_LIST", R"({"WIFILIST":[],"StaCtrl":"1"})",
                        R"({"SSIDIndex":"1","SSID":"home","PWD":"correct horse","ENCRYPT":"WPA2",)"
                        R"("PowerLevel":"80","Channel":"6","Enable":"1","Bandwidth":"20",)"
                        R"("AdvertisementEnable":"1","Mode":"bgn","Beamforming":"1"})",
                        2, 0},
                       argc, argv);
}

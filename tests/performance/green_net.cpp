// One SET_GREENNET_DEVICE_LIST with devices that have their entries already.
#include "list_cost.h"

int main(int argc, char **argv)
{
    recording_device::when<devapi_get_greennet_index_by_mac>([](const char *, int32_t *index) {
        *index = 1;
        return 1;
    });
    return handle_list({"SET_GREENNET_DEVICE_LIST", R"({"DeviceList":[]})",
                        R"({"Mac":"00:11:22:33:44:55","Name":"tablet","NotifyEnable":"1"})", 2, 2},
                       argc, argv);
}

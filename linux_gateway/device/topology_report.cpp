// SPDX-License-Identifier: MIT
// The topology report. There is no mesh: the gateway is the only router.
#include "core/device_call.h"
#include "system/load_meter.h"

#include "smart_router_service/device_access.h"

using namespace linux_gateway;

int32_t devapi_get_childrouter_list(ChildRouterList *list)
{
    list->count = 0;
    return 0;
}

int32_t devapi_get_mesh_type()
{
    return 0;
}

// There are no links to measure.
int32_t devapi_call_tslink_set_topo_speed()
{
    return 0;
}

int32_t devapi_get_dev_tol_num(int32_t *count, intptr_t)
{
    return query(__func__, [&](const View &view) {
        *count = static_cast<int32_t>(view.network->hosts.size());
        return 0;
    });
}

static int32_t put_code(const char *function, char *code, int32_t size,
                        const std::function<std::string(const View &)> &value)
{
    return query(function, [&](const View &view) {
        if (size <= 0) {
            throw Error("there is no room for the text");
        }
        put_text({code, static_cast<size_t>(size)}, value(view));
        return 0;
    });
}

int32_t devapi_get_devicemodel(char *model, int32_t size)
{
    return put_code(__func__, model, size, [](const View &view) { return view.machine.product; });
}

int32_t devapi_get_basic_area_code(char *code, int32_t size)
{
    return put_code(__func__, code, size,
                    [](const View &view) { return view.configuration.area_code; });
}

// The times of hosts are those of the clock.
int32_t devapi_get_local_timezone(int32_t *hours)
{
    *hours = 0;
    return 0;
}

int32_t devapi_get_systerm_timetype()
{
    return 0;
}

int32_t devapi_get_dev_status_info(DevStatusInfo *info)
{
    return query(__func__, [&](const View &view) {
        const std::shared_ptr<const Load> load = view.meter.load();
        put(info->Cpu, load->cpu_percent);
        put(info->Memory, load->memory_percent);
        return 0;
    });
}

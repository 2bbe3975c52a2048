// SPDX-License-Identifier: MIT
#include "mesh_report.h"

#include <time.h>

namespace smart_router {

namespace {

constexpr auto kMeshLink = Fields{
    FIELD(MeshLink, nexthopMAC),
    FIELD(MeshLink, dbm),
    FIELD(MeshLink, interface),
};

} // namespace

// cppcheck-suppress constParameter ; the device writes it
void read_model(Model &model)
{
    memset(model, 0, sizeof model);
    devapi_get_devicemodel(model, sizeof model - 1);
}

// cppcheck-suppress constParameter ; the device writes it
void read_area_code(AreaCode &code, int32_t size)
{
    memset(code, 0, sizeof code);
    devapi_get_basic_area_code(code, size);
}

bool wants_mesh_links(const AreaCode &code)
{
    return contains(code, "ARVEN") || contains(code, "KOLM") || contains(code, "SEDRANO");
}

// cppcheck-suppress constParameter ; the host writes it
void read_bridge_mac(BridgeMac &mac)
{
    memset(mac, 0, sizeof mac);
    ts_sys_mgr_get_brmac(mac);
}

cJSON *mesh_links_of(const ChildRouterInfo &router)
{
    JsonItem links(cJSON_CreateArray());
    if (links.get() == nullptr) {
        log_error("create mesh_json err");
        return nullptr;
    }
    for (size_t at = 0; at < clamped(router.link_count, MESH_MAX_LINKS); ++at) {
        cJSON *link = object_of(kMeshLink, &router.links[at]);
        if (link == nullptr) {
            return nullptr;
        }
        cJSON_AddItemToArray(links.get(), link);
    }
    return links.release();
}

void complete_station(ReportedDevice *station)
{
    copy_text(station->DevModle, "Tessaline");
    copy_text(station->info.OS, "3");
}

int32_t zone_hours()
{
    int32_t hours = 0;
    devapi_get_local_timezone(&hours);
    return hours;
}

void put_elapsed(AdBaseInfo *device, int32_t hours_ahead)
{
    // Unsigned, so that an invalid time from the device cannot overflow.
    const auto now = static_cast<uint64_t>(time(nullptr));
    const auto start =
        static_cast<uint64_t>(strtoll(Ended(device->AccessTime).text(), nullptr, 10));
    const uint64_t ahead = static_cast<uint64_t>(static_cast<int64_t>(hours_ahead) * 3600);
    put_number(device->AccessTime, static_cast<int32_t>(now - start - ahead));
}

} // namespace smart_router

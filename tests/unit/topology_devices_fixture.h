// SPDX-License-Identifier: MIT
// The devices attached to the main router in the topology report.
#pragma once

#include "mesh_fixture.h"
#include "topology_report.h"

inline const Names kDeviceKeys = {"Mac",
                                  "UID",
                                  "DevType",
                                  "DevFactory",
                                  "DevModle",
                                  "Name",
                                  "ByName",
                                  "OS",
                                  "Version",
                                  "NetStatus",
                                  "NetMonopoly",
                                  "AccessType",
                                  "AccessEnable",
                                  "AccessTime",
                                  "UpSpeed",
                                  "DownSpeed",
                                  "ip",
                                  "SpeedLimit",
                                  "DownLimit",
                                  "UpLimit",
                                  "GreennetProtectEnable",
                                  "dbm",
                                  "StaticDhcpEnable"};

class TopologyDevices : public MeshTest {
  protected:
    TopologyDevices()
    {
        g_dev_num = 0;
        g_active_num = 0;
        devices_are(1);
        recording_device::when<devapi_get_ad_base_info>([this](AdBaseInfo *info) {
            *info = device;
            return 0;
        });
    }

    static void devices_are(int32_t number)
    {
        recording_device::when<devapi_get_dev_tol_num>([number](int32_t *count, intptr_t) {
            EXPECT_EQ(*count, 0);
            *count = number;
            return 0;
        });
    }

    // The device as it is reported.
    static Request reported(std::string (*text)(const Place &) = value_of)
    {
        Places places = kAttachedDevice;
        places.push_back({"DevModle", 0, 32});
        return expected(select(places, kDeviceKeys), text)
            .with("DevType", R"("0")")
            .with("DevFactory", R"("unknow")")
            .with("DevModle", R"("3")")
            .with("OS", R"("3")")
            .with("NetStatus", R"("LinkSta")")
            .with("NetMonopoly", R"("0")")
            .with("AccessTime", R"("100")");
    }

    std::string devices(int32_t kind = 1)
    {
        return report([=](cJSON *array) { return put_to_json(&array, 5, kind); }, "[]");
    }

    // The one device's value under the key.
    std::string value(const char *key)
    {
        const Json array = parse(devices());
        const cJSON *item = cJSON_GetObjectItem(cJSON_GetArrayItem(array.get(), 0), key);
        return item != nullptr ? item->valuestring : "(none)";
    }

    AdBaseInfo device = attached_device();
};

// SPDX-License-Identifier: MIT
// A gateway's tree of parameters with child routers in it.
#pragma once

#include "mesh_fixture.h"
#include "router_info.h"

#include <map>

inline const std::string kTree = "InternetGatewayDevice.WiFi.MultiAP.APDevice";

class RouterTree : public MeshTest {
  protected:
    RouterTree()
    {
        bridge_mac_is("bridge");
        recording_device::when<devapi_topo_xml_getinfo>([this](const char *path, char *value) {
            EXPECT_EQ(std::string(value, 32), std::string(32, '\0'));
            const auto found = tree.find(path);
            EXPECT_NE(found, tree.end()) << path;
            if (found != tree.end()) {
                memcpy(value, found->second.c_str(),
                       std::min<size_t>(found->second.size() + 1, 32));
            }
            return path == failing ? failure_code : 0;
        });
        entries_are("1");
        entry_is(1);
        record_is(child_router());
    }

    void entries_are(const std::string &number) { tree[kTree + "NumberOfEntries"] = number; }
    void entry_is(int position, const std::string &parent = "parent",
                  const std::string &active = "1", const std::string &mac = "mac")
    {
        tree[parameter(position, "X_TS_ParentMACAddress")] = parent;
        tree[parameter(position, "X_TS_Active")] = active;
        tree[parameter(position, "MACAddress")] = mac;
    }
    static std::string parameter(int position, const std::string &name)
    {
        return kTree + "." + std::to_string(position) + "." + name;
    }
    static void record_is(const ChildRouterInfo &record)
    {
        recording_device::when<devapi_get_node_dev_info_by_newmetod>(
            [=](const char *, ChildRouterInfo *info) {
                *info = record;
                return 0;
            });
    }
    static void children_are(const std::string &mac, int32_t count, int32_t answer = 0)
    {
        recording_device::when<devapi_get_child_mesh_info_bynewmethod>(
            [=](const char *, ChildMeshList *list) {
                for (ChildMeshInfo &child : list->children) {
                    put(child.Mac, mac);
                    put(child.ChildMac, "not read");
                }
                list->count = count;
                return answer;
            });
    }

    // The child router as it is reported, with what it has of its mesh.
    static std::string reported(const std::string &mesh_key, const std::string &mesh,
                                std::string (*text)(const Place &) = value_of,
                                const std::string &parent = "ParentMac",
                                const std::string &stations = "[]")
    {
        const std::pair<const char *, const char *> keys[] = {
            {"Mac", "Mac"},
            {"ip", "ip"},
            {"AccessType", "ChildRouterAccessType"},
            {"LinkSpeed", "LinkSpeed"},
            {"dbm", "dbm"},
            {"FWVersion", "FWVersion"},
            {"RouterDeviceID", "RouterDeviceID"},
            {"Name", "Name"},
            {"NetStatus", "NetStatus"},
            {"ChildRouterAccessType", "ChildRouterAccessType"},
            {"UpSpeed", "UpSpeed"},
            {"DownSpeed", "DownSpeed"},
            {"FWDATA", "FWDATA"},
            {"HWVersion", "HWVersion"},
            {"AreaCode", "AreaCode"},
            {"UpTime", "UpTime"},
            {"DeviceType", "DeviceType"},
            {"Wlan0Mac", "Wlan0Mac"},
            {"Wlan1Mac", "Wlan1Mac"},
            {"ip", "ip"}, // a second time
        };
        Request::Keys list;
        for (const auto &[key, place] : keys) {
            list.emplace_back(key, quoted(text(select(kChildRouterRecord, {place})[0])));
        }
        list.emplace_back("ParentMacAddress", quoted(parent));
        list.emplace_back(mesh_key, mesh);
        list.emplace_back("ChildBaseInfo", stations);
        return Request(list).json();
    }
    static std::string list(const std::string &routers)
    {
        return R"({"ChildRouter":[)" + routers + "]}";
    }

    std::string routers() { return report(json_get_topo_router_agent_info_bynewmethod); }

    std::map<std::string, std::string> tree;
    std::string failing;
    int32_t failure_code = 0;
};

// SPDX-License-Identifier: MIT
// The mesh as each of its views shows it.
#pragma once

#include "gateway_fixture.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>

class MeshTest : public GatewayTest {
  protected:
    static constexpr int64_t kHour = 3600;
    static constexpr int64_t kDay = 24 * kHour;
    static constexpr int64_t kNoon = kTime + 12 * kHour;

    static constexpr char kMain[] = "3C:6A:D2:10:4F:20";
    static constexpr char kFirstFloor[] = "3C:6A:D2:22:81:40";
    static constexpr char kAttic[] = "3C:6A:D2:22:81:80";

    // Listed after the twelve hosts of the house.
    static constexpr int32_t kFirstFloorIndex = 13;
    static constexpr int32_t kAtticIndex = 14;

    // A new gateway, without a state file.
    std::string open_when(int64_t time, const std::string &scenario = {}) const
    {
        return open_at(time, {.scenario = scenario, .trace = path("trace")});
    }
    void SetUp() override { ASSERT_EQ(open_when(kTime), ""); }

    using Macs = std::vector<std::string>;

    // ---- The table of attached devices

    static int32_t host_count() { return reported_by(devapi_get_host_num); }
    static int32_t place_count()
    {
        int32_t count = 0;
        EXPECT_EQ(devapi_get_dev_tol_num(&count, 0), 0);
        return count;
    }
    static int32_t read_device(int32_t index, int32_t kind, AdBaseInfo &info)
    {
        info = {};
        info.Kind = kind;
        info.HostIndex = index;
        return devapi_get_ad_base_info(&info);
    }
    // All of them, or those of the main router.
    static Macs devices(int32_t kind = 0)
    {
        constexpr int32_t no_device = 1000;
        Macs macs;
        for (int32_t index = 1; index <= place_count(); ++index) {
            AdBaseInfo info;
            const int32_t result = read_device(index, kind, info);
            if (result == 0) {
                macs.push_back(info.Mac);
            } else {
                EXPECT_EQ(result, no_device);
            }
        }
        return macs;
    }
    static AdBaseInfo device(const std::string &mac)
    {
        AdBaseInfo info;
        EXPECT_EQ(read_device(index_of(mac), 0, info), 0) << mac;
        return info;
    }
    static int32_t index_of(const std::string &mac)
    {
        int32_t index = 0;
        EXPECT_EQ(devapi_get_hostindex_by_mac(mac.c_str(), &index), 1) << mac;
        return index;
    }

    // ---- The routers one by one

    static std::vector<int32_t> identifiers()
    {
        const ChildRouterList list = reported_by(devapi_get_childrouter_list);
        return {list.identifiers, list.identifiers + list.count};
    }
    static ChildRouterInfo router(int32_t identifier)
    {
        ChildRouterInfo info = {};
        EXPECT_EQ(devapi_get_childrouter_info(&info, identifier), 0) << identifier;
        return info;
    }
    static Macs stations(const std::string &mac)
    {
        ChildStationList list = {};
        EXPECT_EQ(devapi_get_childsta_list(&list, mac.c_str()), 0) << mac;
        Macs macs;
        for (int32_t at = 0; at < list.count; ++at) {
            macs.push_back(station(list.indexes[at]).Mac);
        }
        return macs;
    }
    static AdBaseInfo station(int32_t index)
    {
        AdBaseInfo info = {};
        info.HostIndex = index;
        EXPECT_EQ(devapi_get_childsta_base_info(&info), 0) << index;
        return info;
    }
    // The router at which a device is listed, as a child router's device or the main router's.
    static std::string router_of(const std::string &mac)
    {
        for (const int32_t identifier : identifiers()) {
            const std::string router_mac = router(identifier).Mac;
            if (holds(stations(router_mac), mac)) {
                return router_mac;
            }
        }
        return holds(devices(1), mac) ? "main" : "none";
    }
    static bool is_active(const ChildRouterInfo &info)
    {
        return info.NetStatus == std::string("1");
    }
    static bool holds(const Macs &macs, const std::string &mac)
    {
        return std::ranges::find(macs, mac) != macs.end();
    }

    // ---- The list of relations

    class Topology {
      public:
        Topology() : first_(static_cast<TopoNode *>(calloc(1, sizeof(TopoNode)))) {}
        ~Topology() { devapi_free_topo_list(first_); }
        Topology(const Topology &) = delete;
        Topology &operator=(const Topology &) = delete;
        TopoNode *first() { return first_; }
        std::vector<TopoNode *> nodes()
        {
            std::vector<TopoNode *> nodes;
            for (TopoNode *node = first_; node != nullptr; node = node->next) {
                nodes.push_back(node);
            }
            return nodes;
        }

      private:
        TopoNode *first_;
    };
    static std::string relations()
    {
        char text[TOPO_RELATION_SIZE] = "";
        EXPECT_EQ(devapi_get_topo_relation_ship(text, sizeof(text) - 1), 0);
        return text;
    }
    static int32_t relation_count() { return reported_by(devapi_get_topo_relation_num); }
    static NodeDevInfo node_info(const TopoNode &node)
    {
        NodeDevInfo info = {};
        EXPECT_EQ(devapi_get_node_dev_info(&node, &info), 0);
        return info;
    }
    static Macs attached(const TopoNode &node)
    {
        auto *first = static_cast<NodeBaseInfo *>(calloc(1, sizeof(NodeBaseInfo)));
        first->Kind = 1;
        EXPECT_EQ(devapi_get_node_baseinfo(&node, first), 0);
        Macs macs;
        while (first != nullptr) {
            NodeBaseInfo *next = first->next;
            if (first->Kind != 1) {
                macs.push_back(first->Mac);
            }
            free(first);
            first = next;
        }
        return macs;
    }

    // ---- The tree of parameters

    static std::string entry(size_t number, const std::string &name = {})
    {
        return "InternetGatewayDevice.WiFi.MultiAP.APDevice." + std::to_string(number) + "." + name;
    }
    // "fails" when there is no such parameter.
    static std::string parameter(const std::string &path)
    {
        char value[TOPO_VALUE_SIZE] = "";
        return devapi_topo_xml_getinfo(path.c_str(), value) == 0 ? value : "fails";
    }
    static ChildRouterInfo tree_router(size_t number)
    {
        ChildRouterInfo info = {};
        EXPECT_EQ(devapi_get_node_dev_info_by_newmetod(entry(number).c_str(), &info), 0) << number;
        return info;
    }
    static std::vector<AdBaseInfo> tree_stations(size_t number)
    {
        const auto list = std::make_unique<StationList>();
        EXPECT_EQ(devapi_get_node_sta_info_by_newmetod(list.get(), entry(number).c_str()), 0);
        return {list->stations, list->stations + list->count};
    }
    static Macs tree_children(const std::string &mac)
    {
        const auto list = std::make_unique<ChildMeshList>();
        EXPECT_EQ(devapi_get_child_mesh_info_bynewmethod(mac.c_str(), list.get()), 0) << mac;
        Macs macs;
        for (int32_t at = 0; at < list->count; ++at) {
            macs.push_back(list->children[at].Mac);
        }
        return macs;
    }

    static std::string bridge_mac()
    {
        char mac[32] = "";
        EXPECT_EQ(simulated_gateway_bridge_mac(mac, sizeof(mac)), 0);
        return mac;
    }
};

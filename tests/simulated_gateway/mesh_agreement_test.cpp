// SPDX-License-Identifier: MIT
// All views of the mesh agree, in every home and at every time.
#include "mesh_fixture.h"

namespace {

class MeshAgreementTest : public MeshTest {
  protected:
    struct Rates {
        int up = 0;
        int down = 0;
    };

    void expect_agreement()
    {
        routers_.clear();
        for (const int32_t identifier : identifiers()) {
            routers_.push_back(router(identifier));
        }
        expect_table();
        expect_stations();
        expect_relations();
        expect_tree();
        for (size_t at = 0; at < routers_.size(); ++at) {
            expect_links(routers_[at], identifiers()[at]);
        }
    }

  private:
    // Hosts first, then the child routers, which are listed there without being hosts.
    void expect_table() const
    {
        const Macs macs = devices();
        ASSERT_EQ(macs.size(), static_cast<size_t>(host_count()));
        for (size_t at = 0; at < macs.size(); ++at) {
            EXPECT_EQ(index_of(macs[at]), static_cast<int32_t>(at + 1));
        }
        for (size_t at = 0; at < routers_.size(); ++at) {
            const auto index = static_cast<int32_t>(macs.size() + at + 1);
            EXPECT_EQ(identifiers()[at], index);
            EXPECT_EQ(index_of(routers_[at].Mac), index);
        }
        EXPECT_EQ(place_count(), static_cast<int32_t>(macs.size() + routers_.size()));
    }

    // Every device is with one router, and is the same there as in the table.
    void expect_stations() const
    {
        Macs all = devices(1);
        std::map<std::string, Rates> rates;
        for (const ChildRouterInfo &info : routers_) {
            for (const std::string &mac : stations(info.Mac)) {
                all.push_back(mac);
                const AdBaseInfo shown = station(index_of(mac));
                expect_same(shown, device(mac));
                if (!is_active(info)) {
                    EXPECT_STREQ(shown.NetStatus, "0") << mac;
                }
                for (const ChildRouterInfo &above : path_to(info)) {
                    rates[above.Mac].up += std::stoi(shown.UpSpeed);
                    rates[above.Mac].down += std::stoi(shown.DownSpeed);
                }
            }
        }
        for (const ChildRouterInfo &info : routers_) {
            EXPECT_EQ(info.UpSpeed, std::to_string(rates[info.Mac].up));
            EXPECT_EQ(info.DownSpeed, std::to_string(rates[info.Mac].down));
        }
        Macs table = devices();
        std::ranges::sort(all);
        std::ranges::sort(table);
        EXPECT_EQ(all, table);
    }

    // Except for the access time, which the two functions give by different clocks.
    static void expect_same(const AdBaseInfo &shown, const AdBaseInfo &expected)
    {
        EXPECT_EQ(shown.HostIndex, expected.HostIndex);
        EXPECT_STREQ(shown.Mac, expected.Mac);
        EXPECT_STREQ(shown.Name, expected.Name);
        EXPECT_STREQ(shown.NetStatus, expected.NetStatus);
        EXPECT_STREQ(shown.LinkStatus, expected.LinkStatus);
        EXPECT_STREQ(shown.AccessType, expected.AccessType);
        EXPECT_STREQ(shown.UpSpeed, expected.UpSpeed);
        EXPECT_STREQ(shown.DownSpeed, expected.DownSpeed);
        EXPECT_STREQ(shown.ip, expected.ip);
        EXPECT_STREQ(shown.Dbm, expected.Dbm);
        EXPECT_EQ(shown.AccessTime == std::string("NULL"),
                  expected.AccessTime == std::string("NULL"));
    }

    // The router and its ancestors below the main router, the uppermost last.
    std::vector<ChildRouterInfo> path_to(const ChildRouterInfo &router) const
    {
        std::vector<ChildRouterInfo> path = {router};
        while (path.back().ParentMac != bridge_mac()) {
            const auto parent = std::ranges::find_if(routers_, [&](const ChildRouterInfo &it) {
                return it.Mac == std::string(path.back().ParentMac);
            });
            if (parent == routers_.end() || path.size() > routers_.size()) {
                ADD_FAILURE() << router.Mac << " is attached to no router";
                break;
            }
            path.push_back(*parent);
        }
        return path;
    }

    void expect_relations() const
    {
        Topology list;
        ASSERT_EQ(devapi_handle_topo_struct(relations().c_str(), list.first()), 0);
        ASSERT_EQ(devapi_topo_xml_info_list(relation_count(), list.first()), 0);
        const std::vector<TopoNode *> nodes = list.nodes();
        EXPECT_EQ(nodes.front()->level, 1);
        EXPECT_EQ(node_info(*nodes.front()).Mac, bridge_mac());
        EXPECT_EQ(attached(*nodes.front()), devices(1));
        std::map<std::string, const TopoNode *> listed;
        for (size_t at = 1; at < nodes.size(); ++at) {
            listed[node_info(*nodes[at]).Mac] = nodes[at];
        }
        EXPECT_EQ(listed.size() + 1, nodes.size());
        for (const ChildRouterInfo &info : routers_) {
            ASSERT_EQ(listed.count(info.Mac), is_active(info) ? 1u : 0u) << info.Mac;
            if (!is_active(info)) {
                continue;
            }
            const TopoNode &node = *listed[info.Mac];
            EXPECT_EQ(node.level, static_cast<int32_t>(path_to(info).size() + 1));
            const NodeDevInfo shown = node_info(node);
            EXPECT_STREQ(shown.ip, info.ip);
            EXPECT_STREQ(shown.AccessType, info.ChildRouterAccessType);
            EXPECT_STREQ(shown.dbm, info.dbm);
            EXPECT_STREQ(shown.FWVersion, info.FWVersion);
            EXPECT_EQ(attached(node), stations(info.Mac));
            listed.erase(info.Mac);
        }
        EXPECT_TRUE(listed.empty());
    }

    void expect_tree() const
    {
        const std::string entries = "InternetGatewayDevice.WiFi.MultiAP.APDeviceNumberOfEntries";
        EXPECT_EQ(parameter(entries), std::to_string(routers_.size() + 1));
        EXPECT_EQ(parameter(entry(1, "MACAddress")), bridge_mac());
        EXPECT_EQ(parameter(entry(1, "X_TS_ParentMACAddress")), "NULL");
        EXPECT_EQ(parameter(entry(1, "X_TS_Active")), "1");
        expect_tree_stations(1, devices(1));
        for (size_t at = 0; at < routers_.size(); ++at) {
            const ChildRouterInfo &info = routers_[at];
            EXPECT_EQ(parameter(entry(at + 2, "MACAddress")), info.Mac);
            EXPECT_EQ(parameter(entry(at + 2, "X_TS_ParentMACAddress")), info.ParentMac);
            EXPECT_EQ(parameter(entry(at + 2, "X_TS_Active")), info.NetStatus);
            ChildRouterInfo shown = tree_router(at + 2);
            EXPECT_STRNE(shown.LinkSpeed, "");
            std::ranges::fill(shown.LinkSpeed, '\0');
            EXPECT_EQ(std::memcmp(&shown, &info, sizeof(info)), 0) << info.Mac;
            expect_tree_stations(at + 2, stations(info.Mac));
        }
    }
    static void expect_tree_stations(size_t number, const Macs &expected)
    {
        Macs shown;
        for (const AdBaseInfo &info : tree_stations(number)) {
            shown.push_back(info.Mac);
            expect_same(info, device(info.Mac));
        }
        EXPECT_EQ(shown, expected);
    }

    // Its place in the mesh, its links to its neighbours, and their links to it.
    void expect_links(const ChildRouterInfo &info, int32_t identifier) const
    {
        ChildMeshInfo place = {};
        MeshLink first_hop = {};
        const int32_t result = is_active(info) ? 0 : -1;
        EXPECT_EQ(devapi_get_child_mesh_info(&place, identifier), result);
        EXPECT_EQ(devapi_get_router_mesh_info(&first_hop, identifier), result);
        Macs expected;
        if (is_active(info)) {
            EXPECT_STREQ(place.Mac, info.Mac);
            EXPECT_STREQ(place.ChildMac, info.Mac);
            EXPECT_STREQ(place.ParentMac, info.ParentMac);
            EXPECT_STREQ(first_hop.nexthopMAC, path_to(info).back().Mac);
            EXPECT_STREQ(first_hop.dbm, path_to(info).back().dbm);
            expected.push_back(info.ParentMac);
            EXPECT_STREQ(info.links[0].dbm, info.dbm);
        }
        Macs children;
        for (const ChildRouterInfo &other : routers_) {
            if (is_active(other) && other.ParentMac == std::string(info.Mac)) {
                children.push_back(other.Mac);
                expected.push_back(other.Mac);
                const MeshLink &down = info.links[expected.size() - 1];
                EXPECT_STREQ(down.dbm, other.dbm);
                EXPECT_STREQ(down.interface, other.links[0].interface);
            }
        }
        EXPECT_EQ(tree_children(info.Mac), children);
        Macs shown;
        for (int32_t at = 0; at < info.link_count; ++at) {
            shown.push_back(info.links[at].nexthopMAC);
        }
        EXPECT_EQ(shown, expected);
    }

    std::vector<ChildRouterInfo> routers_;
};

TEST_F(MeshAgreementTest, InEveryHomeThroughoutADay)
{
    for (const char *scenario :
         {"three_storey_house", "single_router", "operator_variant", "short_report"}) {
        for (int64_t minutes = 0; minutes < 24 * 60; minutes += 53) {
            ASSERT_EQ(open_when(kTime + minutes * 60, scenario), "");
            expect_agreement();
            ASSERT_FALSE(HasFailure()) << scenario << " after " << minutes << " minutes";
        }
    }
}

TEST_F(MeshAgreementTest, InACrowd)
{
    for (const int64_t hours : {0, 11}) {
        ASSERT_EQ(open_when(kTime + hours * kHour, "crowded_mesh"), "");
        expect_agreement();
    }
}

TEST_F(MeshAgreementTest, WithPartsOfTheMeshMissing)
{
    nlohmann::json one_band = house({{"/radios/1/enabled", false}});
    for (nlohmann::json &ssid : one_band["ssids"]) {
        ssid["enabled"] = ssid["band"] == "2.4GHz";
    }
    nlohmann::json no_routers = house({{"/mesh/child_routers", nlohmann::json::array()}});
    for (nlohmann::json &host : no_routers["hosts"]) {
        host["router"] = kMain;
    }
    for (const nlohmann::json &home :
         {house({{"/mesh/enabled", false}, {"/mesh/link_layer_up", false}}),
          house({{"/mesh/link_layer_up", false}}), house({{"/mesh/child_routers/0/offline", true}}),
          house({{"/mesh/child_routers/1/offline", true}}),
          house({{"/mesh/child_routers/1/parent", kMain}}), no_routers, one_band}) {
        for (const int64_t time : {kTime, kNoon, kNoon + 6 * kHour}) {
            ASSERT_EQ(open_home(home, time), "");
            expect_agreement();
            ASSERT_FALSE(HasFailure()) << home["mesh"] << " at " << time;
        }
    }
}

} // namespace

// SPDX-License-Identifier: MIT
// A topology of two child routers and more, as the device library knows it by its relations.
#pragma once

#include "mesh_fixture.h"
#include "router_info.h"

// A router of the topology.
inline const Places kNodeRecord = {{"Mac", 0, 64},  {"ip", 64, 32},         {"AccessType", 96, 8},
                                   {"dbm", 104, 8}, {"FWVersion", 112, 64}, {"LinkSpeed", 176, 16}};

// Differs from what a child router's record has under the same key.
inline std::string node_value_of(const Place &place)
{
    return ("node " + std::string(place.key)).substr(0, place.width - 1);
}

class RelationsTest : public MeshTest {
  protected:
    RelationsTest() { prepare(); }

    // A child router with everything, two devices attached to it, in a mesh of type 1.
    static void prepare()
    {
        when<devapi_get_Multi_Ap_enable>([](int32_t *on) {
            EXPECT_EQ(*on, 0);
            *on = 1;
            return 0;
        });
        when<devapi_get_topo_relation_num>([](int32_t *count) {
            EXPECT_EQ(*count, 0);
            *count = 5;
            return 0;
        });
        routers_are({2});
        NodeDevInfo node = {};
        fill_places(&node, kNodeRecord, node_value_of);
        node_is(node);
        when<devapi_get_viewmac_by_mac>([](const char *mac, char *view) {
            strcpy(view, ("view of " + std::string(mac)).substr(0, VIEW_MAC_SIZE - 1).c_str());
            return 0;
        });
        index_is(7);
        child_router_is(child_router());
        attached_are({"first", "second"});
        writes<devapi_get_childsta_base_info>(attached_device());
    }

    // Appends nodes of these levels to the list. The last one points back to the node with the
    // number back_to, of which 0 is the first of the list, if there is one.
    static void routers_are(const std::vector<int32_t> &levels, int32_t result = 0,
                            size_t back_to = SIZE_MAX)
    {
        when<devapi_handle_topo_struct>([=](const char *, TopoNode *first) {
            std::vector<TopoNode *> nodes = {first};
            for (const int32_t level : levels) {
                nodes.push_back(device_memory<TopoNode>());
                nodes.back()->level = level;
            }
            chain(nodes, back_to);
            return result;
        });
        when<devapi_free_topo_list>([](TopoNode *first) {
            while (first != nullptr) {
                TopoNode *next = first->next;
                free(first);
                first = next;
            }
        });
    }

    // The same for the devices attached to a router.
    static void attached_are(const Names &macs, int32_t result = 0, size_t back_to = SIZE_MAX,
                             int32_t kind = 0)
    {
        when<devapi_get_node_baseinfo>([=](const TopoNode *, NodeBaseInfo *first) {
            EXPECT_EQ(first->Kind, 1);
            EXPECT_STREQ(first->Mac, "");
            EXPECT_EQ(first->next, nullptr);
            std::vector<NodeBaseInfo *> nodes = {first};
            for (const std::string &mac : macs) {
                nodes.push_back(device_memory<NodeBaseInfo>());
                nodes.back()->Kind = kind;
                put(nodes.back()->Mac, mac);
            }
            chain(nodes, back_to);
            return result;
        });
    }

    static void node_is(const NodeDevInfo &node) { writes<devapi_get_node_dev_info>(node); }
    static void index_is(int32_t index, int32_t result = 1)
    {
        when<devapi_get_hostindex_by_mac>([=](const char *, int32_t *out) {
            EXPECT_EQ(*out, 0);
            *out = index;
            return result;
        });
    }

    // A device attached to a child router as it is reported, by its MAC address.
    static Request attached(const std::string &mac, std::string (*text)(const Place &) = value_of)
    {
        return in_brief(mac, text)
            .with("AccessTime", R"("100")")
            .with("UID", value("UID", text))
            .with("OS", R"("3")")
            .with("Version", value("Version", text))
            .with("GreennetProtectEnable", value("GreennetProtectEnable", text))
            .with("SpeedLimit", value("SpeedLimit", text))
            .with("DownLimit", value("DownLimit", text))
            .with("UpLimit", value("UpLimit", text));
    }
    static Request in_brief(const std::string &mac, std::string (*text)(const Place &) = value_of)
    {
        Request request({{"Mac", quoted(mac)}});
        for (const char *key :
             {"DevType", "DevFactory", "DevModle", "Name", "ByName", "NetStatus", "NetMonopoly",
              "AccessType", "AccessEnable", "UpSpeed", "DownSpeed", "ip", "dbm"}) {
            request = request.with(key, std::string(key) == "DevModle" ? R"("Tessaline")"
                                                                       : value(key, text));
        }
        return request.with("AccessTime", quoted(std::to_string(kNow - 100)));
    }

    // A child router as it is reported, with these devices.
    static Request router(const std::string &devices)
    {
        return known_to_the_topology()
            .with("RouterDeviceID", R"("RouterDeviceID")")
            .with("Name", R"("Name")")
            .with("NetStatus", R"("NetStat")")
            .with("ChildRouterAccessType", R"("ChildRo")")
            .with("UpSpeed", R"("UpSpeed")")
            .with("DownSpeed", R"("DownSpeed")")
            .with("FWDATA", R"("FWDATA")")
            .with("HWVersion", R"("HWVersion")")
            .with("AreaCode", R"("AreaCode")")
            .with("UpTime", R"("UpTime")")
            .with("DeviceType", R"("DeviceType")")
            .with("Wlan0Mac", R"("Wlan0Mac")")
            .with("Wlan1Mac", R"("Wlan1Mac")")
            .with("ParentMacAddress", R"("view of ParentMac")")
            .with("ChildBaseInfo", devices);
    }
    static Request known_to_the_topology()
    {
        return Request({{"Mac", R"("view of node Mac")"},
                        {"ip", R"("node ip")"},
                        {"AccessType", R"("node Ac")"},
                        {"LinkSpeed", R"("node LinkSpeed")"},
                        {"dbm", R"("node db")"},
                        {"FWVersion", R"("node FWVersion")"}});
    }
    static std::string both_devices()
    {
        return "[" + attached("first").json() + "," + attached("second").json() + "]";
    }

  private:
    static std::string value(const char *key, std::string (*text)(const Place &))
    {
        return quoted(text(select(kAttachedDevice, {key})[0]));
    }

    // Memory of the device library, not from calloc(), which tests make fail.
    template <class Node> static Node *device_memory() { return new (malloc(sizeof(Node))) Node(); }

    template <class Node> static void chain(const std::vector<Node *> &nodes, size_t back_to)
    {
        for (size_t at = 0; at + 1 < nodes.size(); ++at) {
            nodes[at]->next = nodes[at + 1];
        }
        nodes.back()->next = back_to < nodes.size() ? nodes[back_to] : nullptr;
    }
};

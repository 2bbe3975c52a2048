// SPDX-License-Identifier: MIT
// The topology of the mesh as a list of relations: the text, the list built from it, and
// information about the routers in the list and the hosts attached to them.
//
// The text has a relation for each active child router, PARENT>CHILD with MAC addresses without
// colons, parents before their children, separated by commas. With eight child routers it is 207
// bytes long.
#include "device/attached_device.h"
#include "device/child_router_record.h"
#include "simulation/host_activity.h"

#include <cstdlib>
#include <cstring>
#include <map>
#include <new>

using namespace simulated_gateway;

static void describe(RecordText &text, const TopoNode &node)
{
    text.field("level", node.level);
    text.field("identifier", node.Reserved[0]);
}

// ---- The text ----------------------------------------------------------------------------------

int32_t devapi_get_topo_relation_ship(char *text, int32_t size)
{
    return query(
        __func__, {reply_text("text", text), number("size", size)}, [&](const State &state) {
            std::string relations;
            for (const ChildRouter *router : active_routers(state.home)) {
                relations += (relations.empty() ? "" : ",") + identifier_of(router->parent) + ">" +
                             identifier_of(router->mac);
            }
            if (size <= static_cast<int64_t>(relations.size())) {
                throw Error("there is no room for the relations");
            }
            text[relations.copy(text, relations.size())] = '\0';
            return 0;
        });
}

int32_t devapi_get_topo_relation_num(int32_t *count)
{
    return query(__func__, {reply_number("count", count)}, [&](const State &state) {
        *count = static_cast<int32_t>(active_routers(state.home).size());
        return 0;
    });
}

// ---- The list ----------------------------------------------------------------------------------

// New nodes for a C list. This object owns them until they are appended.
template <class Node> class NewNodes {
  public:
    NewNodes() = default;
    ~NewNodes() { free_list(first_); }
    NewNodes(const NewNodes &) = delete;
    NewNodes &operator=(const NewNodes &) = delete;

    Node &add()
    {
        auto *node = static_cast<Node *>(calloc(1, sizeof(Node)));
        if (node == nullptr) {
            throw std::bad_alloc();
        }
        (last_ != nullptr ? last_->next : first_) = node;
        last_ = node;
        return *node;
    }
    void append_to(Node *list)
    {
        list->next = first_;
        first_ = nullptr;
    }

    static void free_list(Node *first)
    {
        while (first != nullptr) {
            Node *next = first->next;
            free(first);
            first = next;
        }
    }

  private:
    Node *first_ = nullptr;
    Node *last_ = nullptr;
};

// The child routers in the list so far, with their levels, and its last node. A node stores the
// identifier of its router, 0 for the main router.
struct Listed {
    std::map<const ChildRouter *, int32_t> levels;
    TopoNode *last;
};

static Listed listed(const Home &home, TopoNode *first)
{
    Listed list = {{}, first};
    for (; list.last->next != nullptr; list.last = list.last->next) {
        const TopoNode &node = *list.last->next;
        const ChildRouter &router = child_router_numbered(home, node.Reserved[0]);
        if (!list.levels.emplace(&router, node.level).second) {
            throw Error(router.mac + " is in the list twice");
        }
    }
    return list;
}

// Adds the child router one level below its parent.
static void add_router(NewNodes<TopoNode> &nodes, Listed &list, const Home &home,
                       const ChildRouter *parent, const ChildRouter &router)
{
    constexpr int32_t first_child_level = 2;
    const auto above = list.levels.find(parent);
    if (parent != nullptr && above == list.levels.end()) {
        throw Error(parent->mac + " is not in the list");
    }
    TopoNode &node = nodes.add();
    node.level = parent != nullptr ? above->second + 1 : first_child_level;
    node.Reserved[0] = index_of(home, router);
    if (!list.levels.emplace(&router, node.level).second) {
        throw Error(router.mac + " is in the list twice");
    }
}

static void add_relation(NewNodes<TopoNode> &nodes, Listed &list, const Home &home,
                         const std::string &relation)
{
    const size_t middle = relation.find('>');
    if (middle == std::string::npos) {
        throw Error(in_quotes(relation) + " is not a relation");
    }
    const std::string parent = relation.substr(0, middle);
    const std::string child = relation.substr(middle + 1);
    const bool is_main = parent == identifier_of(home.identity.mac);
    add_router(nodes, list, home, is_main ? nullptr : &child_router_named(home, parent.c_str()),
               child_router_named(home, child.c_str()));
}

int32_t devapi_handle_topo_struct(const char *relations, TopoNode *first)
{
    return query(__func__, {request_text("relations", relations), exchange("first", first)},
                 [&](const State &state) {
                     NewNodes<TopoNode> nodes;
                     Listed list = listed(state.home, first);
                     if (*relations != '\0') {
                         for (const std::string &relation : split_at_commas(relations)) {
                             add_relation(nodes, list, state.home, relation);
                         }
                     }
                     first->level = 1;
                     first->Reserved[0] = 0;
                     nodes.append_to(list.last);
                     return 0;
                 });
}

// Adds the active child routers that are missing in a text that was too short for all.
int32_t devapi_topo_xml_info_list(int32_t count, TopoNode *first)
{
    return query(__func__, {number("count", count), exchange("first", first)},
                 [&](const State &state) {
                     const Home &home = state.home;
                     NewNodes<TopoNode> nodes;
                     Listed list = listed(home, first);
                     for (const ChildRouter *router : active_routers(home)) {
                         if (!list.levels.contains(router)) {
                             add_router(nodes, list, home, parent_of(home, *router), *router);
                         }
                     }
                     if (count != static_cast<int32_t>(list.levels.size())) {
                         throw Error("there are " + std::to_string(list.levels.size()) +
                                     " relations, not " + std::to_string(count));
                     }
                     nodes.append_to(list.last);
                     return 0;
                 });
}

void devapi_free_topo_list(TopoNode *first)
{
    query(__func__, {exchange("first", first)}, [](const State &) { return 0; });
    // Also for a caller whose gateway has been closed.
    NewNodes<TopoNode>::free_list(first);
}

// ---- The routers in the list -------------------------------------------------------------------

// The router of a node; null for the main router.
static const ChildRouter *router_of(const Home &home, const TopoNode &node)
{
    return node.Reserved[0] == 0 ? nullptr : &child_router_numbered(home, node.Reserved[0]);
}

static void fill(NodeDevInfo &info, const State &state, const ChildRouter &router)
{
    if (!is_active(state.home, router)) {
        throw Error(router.mac + " is offline");
    }
    put(info.Mac, router.mac);
    put(info.ip, router.ip);
    put(info.AccessType, router.link.kind);
    put(info.dbm, link_dbm_text(state, router));
    put(info.FWVersion, router.software_version);
    put(info.LinkSpeed, link_speed_mbps(state, router));
}

static void fill_main_router(NodeDevInfo &info, const Home &home)
{
    put(info.Mac, home.identity.mac);
    put(info.ip, home.lan.ip);
    put(info.AccessType, "");
    put(info.dbm, "");
    put(info.FWVersion, home.identity.software_version);
    put(info.LinkSpeed, "");
}

int32_t devapi_get_node_dev_info(const TopoNode *node, NodeDevInfo *info)
{
    return query(__func__, {request("node", node), reply("info", info)}, [&](const State &state) {
        if (const ChildRouter *router = router_of(state.home, *node)) {
            fill(*info, state, *router);
        } else {
            fill_main_router(*info, state.home);
        }
        return 0;
    });
}

static void describe(RecordText &text, const NodeBaseInfo &info)
{
    int32_t count = 0;
    for (const NodeBaseInfo *node = info.next; node != nullptr; node = node->next) {
        ++count;
    }
    text.field("count", count);
}

int32_t devapi_get_node_baseinfo(const TopoNode *node, NodeBaseInfo *first)
{
    return query(__func__, {request("node", node), reply("first", first)}, [&](const State &state) {
        NewNodes<NodeBaseInfo> nodes;
        for (const Host *host : hosts_at(state.home, router_of(state.home, *node))) {
            put(nodes.add().Mac, host->mac);
        }
        NodeBaseInfo *last = first;
        while (last->next != nullptr) {
            last = last->next;
        }
        nodes.append_to(last);
        return 0;
    });
}

// ---- MAC addresses -----------------------------------------------------------------------------

// The label of a router shows its MAC address with dashes.
int32_t devapi_get_viewmac_by_mac(const char *mac, char *view)
{
    return query(__func__, {request_text("mac", mac), reply_text("view", view)},
                 [&](const State &state) {
                     std::string shown = parse_mac(mac).value_or("");
                     if (shown != state.home.identity.mac) {
                         shown = child_router_named(state.home, mac).mac;
                     }
                     std::ranges::replace(shown, ':', '-');
                     put_text({view, VIEW_MAC_SIZE}, shown);
                     return 0;
                 });
}

int32_t devapi_get_hostindex_by_mac(const char *mac, int32_t *index)
{
    constexpr int32_t found = 1;
    return query(__func__, {request_text("mac", mac), reply_number("index", index)},
                 [&](const State &state) {
                     const Home &home = state.home;
                     const std::string parsed = parse_mac(mac).value_or("");
                     if (const Host *host = host_with_mac(home, parsed)) {
                         *index = index_of(home, *host);
                     } else {
                         *index = index_of(home, child_router_named(home, mac));
                     }
                     return found;
                 });
}

// SPDX-License-Identifier: MIT
#include "commands/topology_routers.h"

#include "protocol/device_texts.h"
#include "smart_router_service/host_agent.h"

#include <map>

namespace agent {

namespace {

constexpr size_t kMainRouter = 0;

// The MAC address in a form that can be compared; empty when the value is not a MAC address.
std::string mac_of(const cJSON *item, const char *key)
{
    char mac[HG_MAC_TEXT_SIZE];
    mac_form_translate(cJSON_GetStringValue(cJSON_GetObjectItemCaseSensitive(item, key)),
                       HG_MAC_BARE, mac);
    return mac;
}

std::string link_state_of(const cJSON *item)
{
    const bool is_offline = text_of(item, "NetStatus") == "0";
    const bool is_blocked = text_of(item, "AccessEnable") == "0";
    if (is_offline) {
        return is_blocked ? "offline, blocked" : "offline";
    }
    return is_blocked ? "blocked" : "";
}

MeshNode node_of(const cJSON *item, const char *access_key)
{
    const std::string name = name_of(item);
    return {name.empty() ? text_of(item, "Mac") : name, text_of(item, access_key),
            text_of(item, "dbm"), link_state_of(item)};
}

std::vector<MeshNode> devices_of(const cJSON *list)
{
    std::vector<MeshNode> devices;
    const cJSON *device = nullptr;
    cJSON_ArrayForEach(device, list)
    {
        devices.push_back(node_of(device, "AccessType"));
    }
    return devices;
}

Router main_router_of(const cJSON *item)
{
    Router router = {node_of(item, ""),
                     devices_of(cJSON_GetObjectItemCaseSensitive(item, "MainBaseInfo"))};
    // For the main router the report gives the state of the Internet connection, not of a link.
    router.self.state = router.self.state.empty() ? "" : "no Internet";
    return router;
}

// Maps the MAC addresses of routers to those of their parents.
std::map<std::string, std::string> parents_in(const cJSON *tree)
{
    std::map<std::string, std::string> parents;
    const cJSON *item = nullptr;
    cJSON_ArrayForEach(item, cJSON_GetObjectItemCaseSensitive(tree, "ChildRouter"))
    {
        parents.emplace(mac_of(item, "Mac"), mac_of(item, "ParentMacAddress"));
    }
    return parents;
}

// Whether the chain of parents from the router ends at the main router.
bool is_reached(const std::vector<size_t> &parents, size_t router)
{
    for (size_t steps = 0; router != kMainRouter; ++steps) {
        if (steps == parents.size()) {
            return false;
        }
        router = parents[router];
    }
    return true;
}

// The index of each router's parent.
std::vector<size_t> parents_of(const std::vector<std::string> &macs, const cJSON *tree)
{
    std::map<std::string, size_t> places;
    for (size_t at = 0; at < macs.size(); ++at) {
        places.emplace(macs[at], at);
    }
    const std::map<std::string, std::string> known = parents_in(tree);
    std::vector<size_t> parents(macs.size(), kMainRouter);
    for (size_t at = 1; at < macs.size(); ++at) {
        const auto parent = known.find(macs[at]);
        const auto place = parent != known.end() ? places.find(parent->second) : places.end();
        parents[at] = place != places.end() ? place->second : kMainRouter;
    }
    for (size_t at = 1; at < macs.size(); ++at) {
        parents[at] = is_reached(parents, at) ? parents[at] : kMainRouter;
    }
    return parents;
}

} // namespace

std::vector<Router> routers_of(const cJSON *topology, const cJSON *tree)
{
    const cJSON *main_router = cJSON_GetObjectItemCaseSensitive(topology, "MainRouter");
    std::vector<Router> routers = {main_router_of(main_router)};
    std::vector<std::string> macs = {mac_of(main_router, "Mac")};
    const cJSON *item = nullptr;
    cJSON_ArrayForEach(item, cJSON_GetObjectItemCaseSensitive(topology, "ChildRouter"))
    {
        routers.push_back({node_of(item, "ChildRouterAccessType"),
                           devices_of(cJSON_GetObjectItemCaseSensitive(item, "ChildBaseInfo"))});
        macs.push_back(mac_of(item, "Mac"));
    }
    const std::vector<size_t> parents = parents_of(macs, tree);
    for (size_t at = 1; at < routers.size(); ++at) {
        routers[parents[at]].routers.push_back(at);
    }
    return routers;
}

} // namespace agent

// SPDX-License-Identifier: MIT
#include "model/consistency.h"

namespace simulated_gateway {

void check_signal(bool by_radio, int64_t signal_dbm, const std::string &path)
{
    if (by_radio && signal_dbm == 0) {
        refuse(path, "is missing, and the link is a radio link");
    }
    if (!by_radio && signal_dbm != 0) {
        refuse(path, "there is no radio link");
    }
}

const ChildRouter *child_router(const Mesh &mesh, const std::string &mac)
{
    const auto found = std::ranges::find(mesh.child_routers, mac, &ChildRouter::mac);
    return found != mesh.child_routers.end() ? &*found : nullptr;
}

static void check_child_router(const Home &home, const ChildRouter &router, const std::string &path,
                               Addresses &addresses)
{
    addresses.claim_mac(router.mac, path + "/mac");
    if (!router.mac_24ghz.empty()) {
        addresses.claim_mac(router.mac_24ghz, path + "/mac_24ghz");
    }
    if (!router.mac_5ghz.empty()) {
        addresses.claim_mac(router.mac_5ghz, path + "/mac_5ghz");
    }
    addresses.claim_lan_address(router.ip, path + "/ip");
    check_signal(router.link.kind != kCable, router.link.signal_dbm, path + "/link/signal_dbm");
    if (home.mesh.type == kStar && router.parent != home.identity.mac) {
        refuse(path + "/parent", "is not the main router, and the mesh is a star");
    }
}

void check_mesh(const Home &home, const std::string &path, Addresses &addresses)
{
    const Mesh &mesh = home.mesh;
    if (mesh.link_layer_up && !mesh.enabled) {
        refuse(path + "/link_layer_up", "the mesh is off");
    }
    const std::vector<ChildRouter> &children = mesh.child_routers;
    const std::string list = path + "/child_routers";
    for (size_t at = 0; at < children.size(); ++at) {
        check_child_router(home, children[at], item(list, at), addresses);
    }
    for (size_t at = 0; at < children.size(); ++at) {
        // Following the links upwards from any child router must reach the main router in at most
        // as many steps as there are child routers.
        const ChildRouter *router = &children[at];
        for (size_t step = 0; router->parent != home.identity.mac; ++step) {
            const ChildRouter *parent = child_router(mesh, router->parent);
            if (parent == nullptr) {
                refuse(item(list, at) + "/parent", "there is no router " + router->parent);
            }
            if (step == children.size()) {
                refuse(item(list, at) + "/parent", "the links form a loop");
            }
            router = parent;
        }
    }
}

} // namespace simulated_gateway

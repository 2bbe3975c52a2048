// SPDX-License-Identifier: MIT
// Whether the parts of a home are consistent with each other. The rules of their fields have been
// checked before: every address parses. Each check throws an Error that starts with the path of the
// invalid value.
#pragma once

#include "model/model.h"

#include <map>
#include <string>

namespace simulated_gateway {

[[noreturn]] void refuse(const std::string &path, const std::string &reason);

// The path of a list item.
std::string item(const std::string &list, size_t at);

// The addresses of the home: each may be used only once.
class Addresses {
  public:
    explicit Addresses(const Lan &lan) : lan_(lan) {}

    void require_in_lan(const std::string &ip, const std::string &path) const;
    void claim_lan_address(const std::string &ip, const std::string &path);
    void claim_mac(const std::string &mac, const std::string &path);

  private:
    const Lan &lan_;
    std::map<std::string, std::string> macs_;
    std::map<std::string, std::string> ips_;
};

// The whole home; path is its path. The addresses are those of the same home.
void check_consistency(const Home &home, const std::string &path, Addresses &addresses);

// Its parts.
void check_wans(const Home &home, const std::string &path);
void check_wifi(const Home &home, const std::string &path, Addresses &addresses);
void check_ssid_number(const Home &home, int64_t number, const std::string &path);
void check_mesh(const Home &home, const std::string &path, Addresses &addresses);
void check_hosts(const Home &home, const std::string &path, Addresses &addresses);
void check_services(const Home &home, const std::string &path);
void check_green_net(const GreenNet &green_net, const std::string &path);
void check_signal(bool by_radio, int64_t signal_dbm, const std::string &path);
void check_removed_hosts(const State &state, const std::string &path, Addresses &addresses);
const ChildRouter *child_router(const Mesh &mesh, const std::string &mac);

} // namespace simulated_gateway

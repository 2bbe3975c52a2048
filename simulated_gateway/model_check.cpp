#include "model_check.h"

#include <algorithm>
#include <map>

namespace simulated_gateway {
namespace {

[[noreturn]] void refuse(const std::string &path, const std::string &reason)
{
    throw Error(path + ": " + reason);
}

std::string item(const std::string &list, size_t at)
{
    return list + "/" + std::to_string(at);
}

// Holds every field against its rule.
class RuleChecker {
  public:
    explicit RuleChecker(std::string path) : path_(std::move(path)) {}

    template <class Value, class Rule>
    void field(const char *name, const Value &value, const Rule &rule)
    {
        if (rule.presence == Presence::kOptional && value == Value()) {
            return;
        }
        const std::string wrong = complaint(value, rule);
        if (!wrong.empty()) {
            refuse(path_ + "/" + name, wrong);
        }
    }
    template <class Struct> void object(const char *name, const Struct &value)
    {
        RuleChecker inner(path_ + "/" + name);
        Struct::describe(value, inner);
    }
    template <class Struct>
    void list(const char *name, const std::vector<Struct> &values, size_t most)
    {
        if (values.size() > most) {
            refuse(path_ + "/" + name, "holds more than " + std::to_string(most));
        }
        for (size_t at = 0; at < values.size(); ++at) {
            RuleChecker inner(item(path_ + "/" + name, at));
            Struct::describe(values[at], inner);
        }
    }

  private:
    std::string path_;
};

// Holds the parts of a home against each other. The rules hold already: every address parses.
class CoherenceChecker {
  public:
    CoherenceChecker(const Home &home, const std::string &path) : home_(home), path_(path) {}

    void check()
    {
        check_lan();
        check_wan();
        check_radios();
        check_ssids();
        check_child_routers();
        check_hosts();
    }

  private:
    static uint32_t number(const std::string &ip) { return *parse_ipv4(ip); }

    void check_lan()
    {
        const Lan &lan = home_.lan;
        const uint32_t host_bits = ~number(lan.subnet_mask);
        if ((host_bits & (host_bits + 1)) != 0 || host_bits < 3) {
            refuse(path_ + "/lan/subnet_mask", lan.subnet_mask + " is no mask of a LAN");
        }
        claim_lan_address(lan.ip, path_ + "/lan/ip");
        require_in_lan(lan.dhcp_pool.start, path_ + "/lan/dhcp_pool/start");
        require_in_lan(lan.dhcp_pool.end, path_ + "/lan/dhcp_pool/end");
        if (number(lan.dhcp_pool.end) < number(lan.dhcp_pool.start)) {
            refuse(path_ + "/lan/dhcp_pool/end",
                   lan.dhcp_pool.end + " lies before the start of the pool");
        }
        claim_mac(home_.identity.mac, path_ + "/identity/mac");
    }

    void check_wan()
    {
        const Wan &wan = home_.wan;
        if (wan.connected && (wan.ip.empty() || wan.gateway.empty() || wan.primary_dns.empty())) {
            refuse(path_ + "/wan/connected", "needs ip, gateway and primary_dns");
        }
        if (wan.mode == "PPPoE" && wan.pppoe_account.empty()) {
            refuse(path_ + "/wan/pppoe_account", "is missing, and the mode is PPPoE");
        }
    }

    void check_radios()
    {
        for (size_t at = 0; at < home_.radios.size(); ++at) {
            const Radio &radio = home_.radios[at];
            const std::string path = item(path_ + "/radios", at);
            if (radio_of(radio.band) != &radio) {
                refuse(path + "/band", "there is another radio for " + radio.band);
            }
            const bool low = radio.channel <= 14;
            if (low != (radio.band == "2.4GHz") || (!low && radio.channel < 36)) {
                refuse(path + "/channel",
                       std::to_string(radio.channel) + " is no channel of " + radio.band);
            }
            if (low && radio.bandwidth_mhz > 40) {
                refuse(path + "/bandwidth_mhz",
                       std::to_string(radio.bandwidth_mhz) + " is too wide for " + radio.band);
            }
            claim_mac(radio.mac, path + "/mac");
        }
    }

    void check_ssids()
    {
        for (size_t at = 0; at < home_.ssids.size(); ++at) {
            const Ssid &ssid = home_.ssids[at];
            const std::string path = item(path_ + "/ssids", at);
            if (radio_of(ssid.band) == nullptr) {
                refuse(path + "/band", "there is no radio for " + ssid.band);
            }
            if (ssid.encryption != "OPEN" && ssid.password.size() < 8) {
                refuse(path + "/password", "needs at least 8 characters");
            }
        }
    }

    void check_child_routers()
    {
        const std::vector<ChildRouter> &children = home_.mesh.child_routers;
        const std::string list = path_ + "/mesh/child_routers";
        for (size_t at = 0; at < children.size(); ++at) {
            claim_mac(children[at].mac, item(list, at) + "/mac");
            claim_lan_address(children[at].ip, item(list, at) + "/ip");
            check_signal(children[at].link.kind != "cable", children[at].link.signal_dbm,
                         item(list, at) + "/link/signal_dbm");
        }
        for (size_t at = 0; at < children.size(); ++at) {
            // Up the links from any child router, the main router has to come within as many steps
            // as there are child routers.
            const ChildRouter *router = &children[at];
            for (size_t step = 0; router->parent != home_.identity.mac; ++step) {
                const ChildRouter *parent = child_router(router->parent);
                if (parent == nullptr) {
                    refuse(item(list, at) + "/parent", "there is no router " + router->parent);
                }
                if (step == children.size()) {
                    refuse(item(list, at) + "/parent", "the links form a ring");
                }
                router = parent;
            }
        }
    }

    void check_hosts()
    {
        for (size_t at = 0; at < home_.hosts.size(); ++at) {
            const Host &host = home_.hosts[at];
            const std::string path = item(path_ + "/hosts", at);
            claim_mac(host.mac, path + "/mac");
            if (!host.ip.empty()) {
                claim_lan_address(host.ip, path + "/ip");
            } else if (host.online) {
                refuse(path + "/ip", "is missing, and the host is online");
            }
            if (host.router != home_.identity.mac && child_router(host.router) == nullptr) {
                refuse(path + "/router", "there is no router " + host.router);
            }
            if (host.ssid > static_cast<int64_t>(home_.ssids.size())) {
                refuse(path + "/ssid", "there is no SSID " + std::to_string(host.ssid));
            }
            check_signal(host.online && host.ssid != 0, host.signal_dbm, path + "/signal_dbm");
        }
    }

    static void check_signal(bool by_radio, int64_t signal_dbm, const std::string &path)
    {
        if (by_radio && signal_dbm == 0) {
            refuse(path, "is missing, and the link is by radio");
        }
        if (!by_radio && signal_dbm != 0) {
            refuse(path, "there is no link by radio");
        }
    }

    void require_in_lan(const std::string &ip, const std::string &path) const
    {
        const uint32_t mask = number(home_.lan.subnet_mask);
        const uint32_t subnet = number(home_.lan.ip) & mask;
        if ((number(ip) & mask) != subnet || number(ip) == subnet ||
            number(ip) == (subnet | ~mask)) {
            refuse(path, ip + " is no address of the LAN");
        }
    }

    void claim_lan_address(const std::string &ip, const std::string &path)
    {
        require_in_lan(ip, path);
        claim(ips_, ip, path);
    }

    void claim_mac(const std::string &mac, const std::string &path) { claim(macs_, mac, path); }

    static void claim(std::map<std::string, std::string> &owners, const std::string &address,
                      const std::string &path)
    {
        const auto [owner, is_new] = owners.emplace(address, path);
        if (!is_new) {
            refuse(path, address + " belongs to " + owner->second);
        }
    }

    const Radio *radio_of(const std::string &band) const
    {
        const auto found = std::ranges::find(home_.radios, band, &Radio::band);
        return found != home_.radios.end() ? &*found : nullptr;
    }

    const ChildRouter *child_router(const std::string &mac) const
    {
        const auto &children = home_.mesh.child_routers;
        const auto found = std::ranges::find(children, mac, &ChildRouter::mac);
        return found != children.end() ? &*found : nullptr;
    }

    const Home &home_;
    const std::string path_;
    std::map<std::string, std::string> macs_;
    std::map<std::string, std::string> ips_;
};

} // namespace

void check(const Home &home)
{
    RuleChecker rules("");
    Home::describe(home, rules);
    CoherenceChecker(home, "").check();
}

void check(const State &state)
{
    RuleChecker rules("");
    State::describe(state, rules);
    CoherenceChecker(state.home, "/home").check();
    CoherenceChecker(state.factory, "/factory").check();
}

} // namespace simulated_gateway

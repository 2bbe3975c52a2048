#include "model_check.h"

#include "radio_channels.h"

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
        check_schedules();
        check_lan();
        check_wan();
        check_radios();
        check_ssids();
        check_guest_networks();
        check_neighbours();
        check_repeater();
        check_mesh();
        check_child_routers();
        check_hosts();
    }

  private:
    static uint32_t number(const std::string &ip) { return *parse_ipv4(ip); }

    void check_schedules()
    {
        const RebootSchedule &reboot = home_.reboot_schedule;
        if (reboot.enabled && (reboot.time.empty() || reboot.days.empty())) {
            refuse(path_ + "/reboot_schedule", "needs time and days");
        }
        const SleepSchedule &sleep = home_.sleep;
        if (sleep.gateway || sleep.wifi || sleep.leds) {
            if (sleep.start.empty() || sleep.end.empty() || sleep.start == sleep.end) {
                refuse(path_ + "/sleep", "needs a start and another end");
            }
        }
        for (size_t at = 0; at < home_.wifi_sleep.size(); ++at) {
            if (home_.wifi_sleep[at].start == home_.wifi_sleep[at].end) {
                refuse(item(path_ + "/wifi_sleep", at), "ends when it starts");
            }
        }
    }

    void check_lan()
    {
        const Lan &lan = home_.lan;
        if (!is_lan_mask(number(lan.subnet_mask))) {
            refuse(path_ + "/lan/subnet_mask", lan.subnet_mask + " is no mask of a LAN");
        }
        claim_lan_address(lan.ip, path_ + "/lan/ip");
        require_in_lan(lan.dhcp_pool.start, path_ + "/lan/dhcp_pool/start");
        require_in_lan(lan.dhcp_pool.end, path_ + "/lan/dhcp_pool/end");
        if (number(lan.dhcp_pool.end) < number(lan.dhcp_pool.start)) {
            refuse(path_ + "/lan/dhcp_pool/end",
                   lan.dhcp_pool.end + " lies before the start of the pool");
        }
        if (number(lan.dhcp_pool.start) <= number(lan.ip) &&
            number(lan.ip) <= number(lan.dhcp_pool.end)) {
            refuse(path_ + "/lan/dhcp_pool", "holds the address of the router");
        }
        claim_mac(home_.identity.mac, path_ + "/identity/mac");
    }

    void check_wan()
    {
        const Wan &wan = home_.wan;
        if (wan.connected && (wan.ip.empty() || wan.gateway.empty() || wan.primary_dns.empty())) {
            refuse(path_ + "/wan/connected", "needs ip, gateway and primary_dns");
        }
        if (wan.connected != wan.fault.empty()) {
            refuse(path_ + "/wan/fault", wan.connected ? "stands beside a connection"
                                                       : "is missing, and there is no connection");
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
            if (radio_of(home_, radio.band) != &radio) {
                refuse(path + "/band", "there is another radio for " + radio.band);
            }
            const std::vector<int64_t> &channels = channels_of(radio.band);
            if (std::ranges::find(channels, radio.channel) == channels.end()) {
                refuse_channel(radio.band, radio.channel, path + "/channel");
            }
            const std::string wrong =
                complaint(radio.standard, radio.band == "2.4GHz" ? kStandards24 : kStandards5);
            if (!wrong.empty()) {
                refuse(path + "/standard", wrong);
            }
            if (radio.band == "2.4GHz" && radio.bandwidth_mhz > 40) {
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
            if (radio_of(home_, ssid.band) == nullptr) {
                refuse(path + "/band", "there is no radio for " + ssid.band);
            }
            check_password(ssid.encryption, ssid.password, path);
        }
    }

    void check_guest_networks()
    {
        std::map<std::string, std::string> bands;
        for (size_t at = 0; at < home_.guest_networks.size(); ++at) {
            const int64_t ssid = home_.guest_networks[at].ssid;
            const std::string path = item(path_ + "/guest_networks", at);
            check_ssid_number(ssid, path);
            const std::string &band = home_.ssids[static_cast<size_t>(ssid - 1)].band;
            if (!bands.emplace(band, path).second) {
                refuse(path + "/ssid", "there is another guest network for " + band);
            }
        }
    }

    void check_neighbours()
    {
        for (size_t at = 0; at < home_.neighbours.size(); ++at) {
            const Neighbour &neighbour = home_.neighbours[at];
            const std::string path = item(path_ + "/neighbours", at);
            if (band_of(neighbour.channel) != neighbour.band) {
                refuse_channel(neighbour.band, neighbour.channel, path + "/channel");
            }
            if (!neighbour.password.empty()) {
                check_password(neighbour.encryption, neighbour.password, path);
            }
        }
    }

    [[noreturn]] static void refuse_channel(const std::string &band, int64_t channel,
                                            const std::string &path)
    {
        refuse(path, std::to_string(channel) + " is no channel of " + band);
    }

    static void check_password(const std::string &encryption, const std::string &password,
                               const std::string &path)
    {
        if (encryption != kNoEncryption && password.size() < 8) {
            refuse(path + "/password", "needs at least 8 characters");
        }
    }

    void check_ssid_number(int64_t number, const std::string &path) const
    {
        if (number > static_cast<int64_t>(home_.ssids.size())) {
            refuse(path + "/ssid", "there is no SSID " + std::to_string(number));
        }
    }

    void check_repeater()
    {
        const Repeater &repeater = home_.repeater;
        if (repeater.neighbour > static_cast<int64_t>(home_.neighbours.size())) {
            refuse(path_ + "/repeater/neighbour",
                   "there is no neighbour " + std::to_string(repeater.neighbour));
        }
    }

    void check_mesh()
    {
        if (home_.mesh.link_layer_up && !home_.mesh.enabled) {
            refuse(path_ + "/mesh/link_layer_up", "the mesh is off");
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
            check_ssid_number(host.ssid, path);
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
    if (state.firmware.slot(state.firmware.running).version.empty()) {
        refuse("/firmware/slot_" + std::to_string(state.firmware.running) + "/version",
               "is missing, and it runs");
    }
    CoherenceChecker(state.home, "/home").check();
    CoherenceChecker(state.factory, "/factory").check();
}

} // namespace simulated_gateway

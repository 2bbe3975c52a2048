// SPDX-License-Identifier: MIT
#include "model/consistency.h"
#include "model/radio_channels.h"

namespace simulated_gateway {
namespace {

[[noreturn]] void refuse_channel(const std::string &band, int64_t channel, const std::string &path)
{
    refuse(path, std::to_string(channel) + " is not a channel of " + band);
}

void check_password(const std::string &encryption, const std::string &password,
                    const std::string &path)
{
    if (encryption != kNoEncryption && password.size() < 8) {
        refuse(path + "/password", "needs at least 8 characters");
    }
}

void check_radios(const Home &home, const std::string &path, Addresses &addresses)
{
    for (size_t at = 0; at < home.radios.size(); ++at) {
        const Radio &radio = home.radios[at];
        const std::string place = item(path + "/radios", at);
        if (radio_of(home, radio.band) != &radio) {
            refuse(place + "/band", "there is another radio for " + radio.band);
        }
        const std::vector<int64_t> &channels = channels_of(radio.band);
        if (std::ranges::find(channels, radio.channel) == channels.end()) {
            refuse_channel(radio.band, radio.channel, place + "/channel");
        }
        const std::string wrong =
            validation_error(radio.standard, radio.band == "2.4GHz" ? kStandards24 : kStandards5);
        if (!wrong.empty()) {
            refuse(place + "/standard", wrong);
        }
        if (radio.band == "2.4GHz" && radio.bandwidth_mhz > 40) {
            refuse(place + "/bandwidth_mhz",
                   std::to_string(radio.bandwidth_mhz) + " is too wide for " + radio.band);
        }
        addresses.claim_mac(radio.mac, place + "/mac");
    }
}

void check_ssids(const Home &home, const std::string &path)
{
    for (size_t at = 0; at < home.ssids.size(); ++at) {
        const Ssid &ssid = home.ssids[at];
        const std::string place = item(path + "/ssids", at);
        if (radio_of(home, ssid.band) == nullptr) {
            refuse(place + "/band", "there is no radio for " + ssid.band);
        }
        check_password(ssid.encryption, ssid.password, place);
    }
}

void check_guest_networks(const Home &home, const std::string &path)
{
    std::map<std::string, std::string> bands;
    for (size_t at = 0; at < home.guest_networks.size(); ++at) {
        const int64_t ssid = home.guest_networks[at].ssid;
        const std::string place = item(path + "/guest_networks", at);
        check_ssid_number(home, ssid, place);
        const std::string &band = home.ssids[static_cast<size_t>(ssid - 1)].band;
        if (!bands.emplace(band, place).second) {
            refuse(place + "/ssid", "there is another guest network for " + band);
        }
    }
}

void check_neighbours(const Home &home, const std::string &path)
{
    for (size_t at = 0; at < home.neighbours.size(); ++at) {
        const Neighbour &neighbour = home.neighbours[at];
        const std::string place = item(path + "/neighbours", at);
        if (band_of(neighbour.channel) != neighbour.band) {
            refuse_channel(neighbour.band, neighbour.channel, place + "/channel");
        }
        if (!neighbour.password.empty()) {
            check_password(neighbour.encryption, neighbour.password, place);
        }
    }
}

void check_repeater(const Home &home, const std::string &path)
{
    const Repeater &repeater = home.repeater;
    if (repeater.neighbour > static_cast<int64_t>(home.neighbours.size())) {
        refuse(path + "/repeater/neighbour",
               "there is no neighbour " + std::to_string(repeater.neighbour));
    }
}

} // namespace

void check_ssid_number(const Home &home, int64_t number, const std::string &path)
{
    if (number > static_cast<int64_t>(home.ssids.size())) {
        refuse(path + "/ssid", "there is no SSID " + std::to_string(number));
    }
}

void check_wifi(const Home &home, const std::string &path, Addresses &addresses)
{
    check_radios(home, path, addresses);
    check_ssids(home, path);
    check_guest_networks(home, path);
    check_neighbours(home, path);
    check_repeater(home, path);
}

} // namespace simulated_gateway

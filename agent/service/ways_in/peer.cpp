// SPDX-License-Identifier: MIT
#include "service/ways_in/peer.h"

#include <array>
#include <grp.h>
#include <pwd.h>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

namespace agent::service {

namespace {

constexpr size_t kEntrySize = 16384; // enough for a group with many members

std::optional<std::string> user_name(uid_t user)
{
    passwd entry = {};
    passwd *found = nullptr;
    std::vector<char> texts(kEntrySize);
    getpwuid_r(user, &entry, texts.data(), texts.size(), &found);
    return found != nullptr ? std::optional<std::string>(found->pw_name) : std::nullopt;
}

std::optional<std::string> group_name(gid_t group)
{
    struct group entry = {};
    struct group *found = nullptr;
    std::vector<char> texts(kEntrySize);
    getgrgid_r(group, &entry, texts.data(), texts.size(), &found);
    return found != nullptr ? std::optional<std::string>(found->gr_name) : std::nullopt;
}

std::vector<gid_t> groups_of(int socket, gid_t first)
{
    std::array<gid_t, 1024> others = {};
    socklen_t size = sizeof(others);
    std::vector<gid_t> groups = {first};
    if (getsockopt(socket, SOL_SOCKET, SO_PEERGROUPS, others.data(), &size) == 0) {
        for (size_t at = 0; at < size / sizeof(gid_t); ++at) {
            if (others[at] != first) {
                groups.push_back(others[at]);
            }
        }
    }
    return groups;
}

} // namespace

std::optional<Peer> peer_of(int socket)
{
    ucred peer = {};
    socklen_t size = sizeof(peer);
    if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) {
        return std::nullopt;
    }
    return Peer{peer.uid, groups_of(socket, peer.gid)};
}

Identity identity_of_peer(const Peer &peer)
{
    Identity who;
    who.way_in = "socket";
    const std::string number = "uid:" + std::to_string(peer.user);
    const auto user = user_name(peer.user);
    if (user) {
        who.principals.push_back("user:" + *user);
    }
    who.principals.push_back(number);
    who.name = who.principals.front();
    for (const gid_t group : peer.groups) {
        if (const auto name = group_name(group)) {
            who.principals.push_back("group:" + *name);
        }
        who.principals.push_back("gid:" + std::to_string(group));
    }
    who.is_owner = peer.user == geteuid();
    return who;
}

} // namespace agent::service

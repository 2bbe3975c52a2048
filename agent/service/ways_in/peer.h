// SPDX-License-Identifier: MIT
// Identity of the peer of a Unix socket.
#pragma once

#include "service/common/request.h"

#include <compare>
#include <optional>
#include <sys/types.h>
#include <vector>

namespace agent::service {

// According to the kernel. The client cannot choose any of it.
struct Peer {
    uid_t user = 0;
    std::vector<gid_t> groups;
    auto operator<=>(const Peer &) const = default;
};

// Nothing if the kernel does not know.
std::optional<Peer> peer_of(int socket);

// Looks up the names of the user and of the groups, which takes long where a directory server does
// not answer.
Identity identity_of_peer(const Peer &peer);

} // namespace agent::service

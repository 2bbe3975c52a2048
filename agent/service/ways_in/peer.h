// SPDX-License-Identifier: MIT
// Identity of the peer of a Unix socket.
#pragma once

#include "service/common/request.h"

namespace agent::service {

// According to the kernel. The client cannot choose any of it.
Identity identity_of_peer(int socket);

} // namespace agent::service

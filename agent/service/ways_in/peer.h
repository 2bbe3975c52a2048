// SPDX-License-Identifier: MIT
// Who is at the other end of a Unix socket.
#pragma once

#include "service/common/request.h"

namespace agent::service {

// As the kernel says. Nothing of it can be chosen by the client.
Identity identity_of_peer(int socket);

} // namespace agent::service

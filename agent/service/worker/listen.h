// SPDX-License-Identifier: MIT
// The worker's side of a worker that is a separate unit.
#pragma once

#include <string>

namespace agent::service {

// Waits at the address, unix:PATH, or at the socket passed by systemd, for the service to connect;
// the connection then becomes standard input and output. When the service disconnects, the process
// exits at once, even during a command; when the service only shuts down its sending side, that is
// the end of input. Throws std::runtime_error.
void wait_for_service(const std::string &address);

} // namespace agent::service

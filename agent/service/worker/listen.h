// SPDX-License-Identifier: MIT
// The worker's side of a worker that is a unit of its own.
#pragma once

#include <string>

namespace agent::service {

// Waits at the address, unix:PATH, or at the socket that systemd hands over, for the service to
// connect; its lines are standard input and output from then on. When it disconnects, the process
// ends at once, whatever it is at; when it only says no more, it is as the end of input. Throws
// std::runtime_error.
void wait_for_service(const std::string &address);

} // namespace agent::service

// SPDX-License-Identifier: MIT
// Uploaded firmware images: stored where the device library finds them by a file:// address.
#pragma once

#include "service/ways_in/http/connection.h"

#include <memory>

namespace agent::service {

// The login must have the right to update firmware.
std::unique_ptr<HttpHandler> make_firmware_upload(HttpConnection &connection);

} // namespace agent::service

// SPDX-License-Identifier: MIT
// What can be requested by HTTP: the console's files, and the paths below /api.
#pragma once

#include "service/ways_in/http/connection.h"

#include <memory>

namespace agent::service {

// The handler of a request whose header has been read; null: refused says why.
std::unique_ptr<HttpHandler> make_handler(HttpConnection &connection, HttpResponse &refused);

} // namespace agent::service

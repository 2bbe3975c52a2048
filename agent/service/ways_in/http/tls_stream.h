// SPDX-License-Identifier: MIT
#pragma once

#include "service/ways_in/http/security.h"
#include "service/ways_in/http/stream.h"

#include <memory>

namespace agent::service {

std::shared_ptr<HttpStream> make_tls_stream(boost::asio::io_context &loop,
                                            boost::asio::ip::tcp::socket socket,
                                            std::unique_ptr<TlsSession> session);

} // namespace agent::service

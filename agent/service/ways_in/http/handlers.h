// SPDX-License-Identifier: MIT
// The handlers of requests that are more than a look-up.
#pragma once

#include "service/ways_in/http/connection.h"

#include <functional>
#include <memory>
#include <string>

namespace agent::service {

// A handler that needs the whole body, at most so long.
class BodyHandler : public HttpHandler {
  public:
    BodyHandler(HttpConnection &connection, size_t most_body)
        : connection_(connection), most_body_(most_body)
    {
    }
    ~BodyHandler() override;
    BodyHandler(const BodyHandler &) = delete;
    BodyHandler &operator=(const BodyHandler &) = delete;

    size_t most_body() const override { return most_body_; }
    bool on_body(std::string_view part) override
    {
        body_ += part;
        return true;
    }

  protected:
    HttpConnection &connection_;
    const size_t most_body_;
    std::string body_; // wiped at the end: it may contain a password
};

// A response that is there at once.
std::unique_ptr<HttpHandler> make_simple(HttpConnection &connection,
                                         std::function<HttpResponse()> respond);

std::unique_ptr<HttpHandler> make_login(HttpConnection &connection);
// A command or a report.
std::unique_ptr<HttpHandler> make_request(HttpConnection &connection, Login login, Subject subject,
                                          std::string name);
// Server-sent events.
std::unique_ptr<HttpHandler> make_events(HttpConnection &connection, Login login);
std::unique_ptr<HttpHandler> make_socket(HttpConnection &connection, Login login);

} // namespace agent::service

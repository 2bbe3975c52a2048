// SPDX-License-Identifier: MIT
// Requests to a running service, and what it says by itself.
#pragma once

#include "client/socket_client.h"
#include "protocol/json.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace agent {

struct ServiceAnswer {
    int32_t result = 0;
    Json reply;        // null when there is none
    std::string error; // why there is no result, for people; empty when there is one
    std::string code;  // the same for programs
    std::string rule;  // which one denied the request
};

// What a request asks for, without its id; the parameters are the text of a JSON object.
std::string command_request(std::string_view name, std::string_view params);
std::string report_request(std::string_view name, std::string_view params);
std::string hello_request();
std::string subscribe_request(std::string_view pattern);
std::string unsubscribe_request(std::string_view pattern);

// A connection with one request at a time. A service that sends what is no JSON object is taken for
// none: everything here throws ServiceError then, and when the connection has ended.
class ServiceClient {
  public:
    using EventHandler = std::function<void(const std::string &name, const cJSON *data)>;

    explicit ServiceClient(const std::string &path, EventHandler on_event = nullptr);

    // To be polled before work() is called, where the caller has more to wait for.
    int descriptor() const { return socket_.descriptor(); }
    short wanted_events() const { return socket_.wanted_events(); }

    // Begins a request. An answer to the one before that is still to come is dropped.
    void begin(const std::string &request);

    // Sends and reads what goes without waiting, and hands events to the handler.
    void work();

    // The answer, once, when it has come.
    std::optional<ServiceAnswer> take_answer();

    // Sends a request and waits for its answer, as long as the service takes.
    ServiceAnswer ask(const std::string &request);

  private:
    void take(const std::string &line);

    SocketClient socket_;
    EventHandler on_event_;
    uint64_t last_id_ = 0;
    std::optional<ServiceAnswer> answer_;
};

} // namespace agent

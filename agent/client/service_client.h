// SPDX-License-Identifier: MIT
// Requests to a running service, and its events.
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
    Json reply;        // null if absent
    std::string error; // error message; empty if there is a result
    std::string code;  // the error's code for programs
    std::string rule;  // the policy rule that denied the request
};

// Throws BadRequest when the text is not a JSON object.
ServiceAnswer read_answer(std::string_view text);

// Requests without their id; the parameters are the text of a JSON object.
std::string command_request(std::string_view name, std::string_view params);
std::string report_request(std::string_view name, std::string_view params);
std::string hello_request();
std::string subscribe_request(std::string_view pattern);
std::string unsubscribe_request(std::string_view pattern);

// A connection with one request at a time. All functions throw ServiceError when the connection has
// ended, or when the peer sends a line that is not a JSON object.
class ServiceClient {
  public:
    using EventHandler = std::function<void(const std::string &name, const cJSON *data)>;

    explicit ServiceClient(const std::string &path, EventHandler on_event = nullptr);

    // For a caller's own poll(): call work() when it is ready.
    int descriptor() const { return socket_.descriptor(); }
    short wanted_events() const { return socket_.wanted_events(); }

    // Begins a request. An outstanding answer to the previous request is dropped.
    void begin(const std::string &request);

    // Sends and reads without blocking, and passes events to the handler.
    void work();

    // The answer when it has arrived; returned once.
    std::optional<ServiceAnswer> take_answer();

    // Sends a request and waits for its answer without a time limit.
    ServiceAnswer ask(const std::string &request);

  private:
    void take(const std::string &line);

    SocketClient socket_;
    EventHandler on_event_;
    uint64_t last_id_ = 0;
    std::optional<ServiceAnswer> answer_;
};

} // namespace agent

// SPDX-License-Identifier: MIT
// The gateway of a running service, for the subcommands with --socket.
#pragma once

#include "client/service_client.h"
#include "host/plugin_host.h"
#include "protocol/json.h"

#include <cjson/cJSON.h>

#include <cstdint>
#include <functional>
#include <string>

namespace agent {

// All functions throw HostError when the service cannot be reached, disconnects, or refuses the
// request.
class RemoteGateway {
  public:
    explicit RemoteGateway(const std::string &socket,
                           ServiceClient::EventHandler on_event = nullptr);

    struct Reply {
        int32_t result; // the plug-in's result code
        Json object;
    };
    // The params are an object. The order of its keys and repeated keys are preserved.
    Reply command(const std::string &name, const cJSON *params);
    Reply report(const std::string &name, const cJSON *params);
    // Result: 0 when it was accepted.
    int32_t notice(const std::string &plugin_name, const std::string &text);

    // Subscribes to matching events. Result: false when the service sends no events.
    bool subscribe(const std::string &pattern);
    // Waits for events until is_enough returns true.
    void await_events(const std::function<bool()> &is_enough);

  private:
    Reply ask(const std::string &request);

    ServiceClient client_;
};

} // namespace agent

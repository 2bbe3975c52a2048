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

// Everything here throws HostError: when the service cannot be reached or has gone, and when it
// refuses.
class RemoteGateway {
  public:
    explicit RemoteGateway(const std::string &socket,
                           ServiceClient::EventHandler on_event = nullptr);

    struct Reply {
        int32_t result; // as of the plug-in
        Json object;
    };
    // The params are an object, which keeps its order and its repeated keys.
    Reply command(const std::string &name, const cJSON *params);
    Reply report(const std::string &name, const cJSON *params);
    // Result: 0 when it was accepted.
    int32_t notice(const std::string &plugin_name, const std::string &text);

    // From now on such events are told. Result: false when the service tells none.
    bool subscribe(const std::string &pattern);
    // Waits for events until there is enough of them.
    void await_events(const std::function<bool()> &is_enough);

  private:
    Reply ask(const std::string &request);

    ServiceClient client_;
};

} // namespace agent

// What passes between a way in, the gate and the worker.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace agent::service {

// Who is at the other end of a connection. The way in says so, never a message.
struct Identity {
    std::string way_in; // "socket"
    std::string name;   // for the audit and for refusals: "user:alice"
    // What a policy can name, the most special first: "user:alice", "uid:1000", "group:staff",
    // "gid:50".
    std::vector<std::string> principals;
    bool is_owner = false; // the same user as the service's, on the local socket
};

// What a request asks for; its name says which.
enum class Subject { kCommand, kReport, kNotice, kControl, kSubscription };

constexpr std::string_view kHello = "hello"; // the only control there is

} // namespace agent::service

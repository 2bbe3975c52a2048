// SPDX-License-Identifier: MIT
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

// Why there is no result: the same for every way in.
enum class Code {
    kNone, // there is one
    kBadRequest,
    kDenied,
    kRateLimited,
    kBusy,
    kTimeout,
    kOutcomeUnknown,
    kTooLarge,
    kRebooting
};

// As it stands in answers: "bad-request".
std::string_view name_of(Code code);

// A line as `serve` takes it, with what the gate has to know of it. The worker is handed the line
// as it came: it is looked into for its outer keys only.
struct Request {
    std::string line;
    std::string id = "null"; // JSON text
    Subject subject = Subject::kCommand;
    // Of the command or report; the pattern of a subscription; who raises the notice.
    std::string name;
    bool is_unsubscribe = false; // of a subscription
    size_t params_begin = 0;     // in the line
    size_t params_size = 0;
    Code code = Code::kNone; // what is wrong with the line, and why
    std::string error;

    // JSON text; empty when there are none.
    std::string_view params() const
    {
        return std::string_view(line).substr(params_begin, params_size);
    }
};

// Never throws for what stands in the line: then the request says what is wrong with it.
Request read_request(std::string_view line);

// What a way in answers a line with that it had no room for.
std::string too_long_answer(size_t max_line);

// {"id": ID, "error": TEXT, "code": CODE}; rule is what a denial names beside it.
std::string error_answer(std::string_view id, Code code, std::string_view text,
                         std::string_view rule = "");

// The code in an answer that may be an error; its reply is not looked into.
Code code_in(std::string_view answer);

} // namespace agent::service

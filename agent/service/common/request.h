// SPDX-License-Identifier: MIT
// The data passed between a transport, the gate and the worker.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace agent::service {

// The identity of a connection's peer. It comes from the transport, never from a message.
struct Identity {
    std::string way_in; // "socket", "mqtt"
    std::string name;   // for the audit and for refusals: "user:alice"
    // The names by which a policy can refer to it, the most specific first: "user:alice",
    // "uid:1000", "group:staff", "gid:50".
    std::vector<std::string> principals;
    bool is_owner = false; // may do everything: the service's own user, on the local socket
    // Without a role it may query what is not secret: a local broker when there is no policy.
    bool is_guest = false;
};

// The type of a request; the request's name selects one of that type.
enum class Subject { kCommand, kReport, kNotice, kControl, kSubscription };

constexpr std::string_view kHello = "hello"; // the only control that the service answers itself

// Why there is no result: the same codes for all transports.
enum class Code {
    kNone, // there is a result
    kBadRequest,
    kDenied,
    kRateLimited,
    kBusy,
    kTimeout,
    kOutcomeUnknown,
    kTooLarge,
    kRebooting
};

// As in answers: "bad-request".
std::string_view name_of(Code code);

// A line for `serve`, with what the gate must know of it. Only its outer keys are parsed; the
// worker gets the line unchanged.
struct Request {
    std::string line;
    std::string id = "null"; // JSON text
    Subject subject = Subject::kCommand;
    // The name of the command, report or control; the pattern of a subscription; the source of the
    // notice.
    std::string name;
    bool is_unsubscribe = false; // of a subscription
    size_t params_begin = 0;     // in the line
    size_t params_size = 0;
    Code code = Code::kNone; // what is wrong with the line, and why
    std::string error;
    bool shows_secrets = false; // "secrets":"show" beside "command"

    // Set by transports whose clients repeat a request until it is answered.
    std::string repeat_key; // the same for each repetition of one request; empty: none
    std::string epoch;      // of the service that the client knows; empty: any
    // Nobody waits for the answer any longer: the request is dropped unless it is running.
    std::optional<std::chrono::steady_clock::time_point> expires;
    bool hide_secrets = false; // mask the reply even if the client may see secrets

    // JSON text; empty when there are none.
    std::string_view params() const
    {
        return std::string_view(line).substr(params_begin, params_size);
    }
};

// Never throws because of the line's contents: the request then contains the error.
Request read_request(std::string_view line);

// A transport's answer to a line that is too long.
std::string too_long_answer(size_t max_line);

// {"id": ID, "error": TEXT, "code": CODE}; rule is added to a denial.
std::string error_answer(std::string_view id, Code code, std::string_view text,
                         std::string_view rule = "");

// The code in an answer that may be an error; a reply in it is not parsed.
Code code_in(std::string_view answer);

} // namespace agent::service

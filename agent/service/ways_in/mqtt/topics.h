// SPDX-License-Identifier: MIT
// The topics of a gateway. ROOT/ID/command/NAME, report/NAME and request/CLIENT ask, state/get asks
// for the state; ROOT/ID/reply/..., event/NAME and state are what the gateway publishes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace agent::service {

// What is wrong with the names; empty if they are valid.
std::string problem_of_gateway_id(std::string_view id);
std::string problem_of_topic_root(std::string_view root);
// Both are valid, each by itself.
std::string problem_of_client_identifier(std::string_view root, std::string_view id);
// A topic that answers may go to, or a prefix of such topics, which ends in a slash.
std::string problem_of_response_topic(std::string_view topic);

constexpr char kDefaultRoot[] = "gateway";

// With which the gateway connects. Unique on a broker, where gateways with one id may have
// different roots: they would take each other's session.
std::string client_identifier(std::string_view root, std::string_view id);

class Topics {
  public:
    Topics(std::string_view root, std::string_view id, std::vector<std::string> response_topics);

    struct Target {
        enum class Kind { kNone, kCommand, kReport, kLine, kState };
        Kind kind = Kind::kNone;
        std::string_view name; // the last level
    };
    Target target_of(std::string_view topic) const;

    // Whether an answer may be published there. Only those below the gateway's reply/ and the
    // configured ones: otherwise a client could make the gateway publish where it may not itself.
    bool may_answer_at(std::string_view topic) const;

    std::vector<std::string> subscriptions() const;
    const std::string &state() const { return state_; }
    std::string event(std::string_view name) const;
    std::string reply(std::string_view client) const;

  private:
    const std::string base_; // with its slash
    const std::string reply_;
    const std::string state_;
    const std::vector<std::string> response_topics_;
};

} // namespace agent::service

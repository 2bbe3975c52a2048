// SPDX-License-Identifier: MIT
// Who may do what. A policy has roles; a role has members, rules, and perhaps a rate limit:
//
//   [roles.support]
//   members = ["group:staff", "user:alice"]
//   allow = ["GET_*", "subject:link_checks", "report:*", "event:update.*"]
//   deny = ["GET_WIFI_INFO"]
//   secrets = false
//   rate = 20
//   burst = 40
//
// A client without a role may do nothing, except for the service's owner, who may do everything,
// and, while there are no roles at all, for guests, who may query what is not secret.
// docs/service.md describes members, rules, and which rule decides.
#pragma once

#include "service/common/config_error.h"
#include "service/common/request.h"
#include "service/gate/rate_limit.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace agent::service {

// What a rule refers to. Selectors stand for all commands of a subject or of an effect.
struct Rule {
    enum class Kind {
        kName,
        kSelector,
        kPattern
    }; // a later kind decides only if no earlier one does
    Subject subject = Subject::kCommand;
    Kind kind = Kind::kName;
    std::string pattern;               // without the subject's prefix: "update.*"
    std::vector<std::string> commands; // of a selector, sorted
    bool allows = false;
    std::string place; // as shown in refusals: FILE:LINE: deny "event:update.*"

    // The number of characters that are not wildcards: the longer of two patterns decides.
    size_t length() const;
    bool matches(Subject asked, std::string_view name) const;
};

// A request in the notation of rules: "GET_SN_INFO", "report:topology", "event:update.*". Nothing
// when there is no such type of request.
struct AskedFor {
    Subject subject = Subject::kCommand;
    std::string name;
};
std::optional<AskedFor> read_asked_for(std::string_view text);

class Policy {
  public:
    // The policy of a file that contains only roles. Throws ConfigError with all problems.
    static Policy parse(std::string_view toml, const std::string &file);
    static Policy for_owner_only() { return {}; }
    bool has_roles() const { return !roles_.empty(); }

    struct Verdict {
        bool allowed = false;
        std::string role; // empty: none
        std::string rule; // reason: the file, the line and the rule as written, or a sentence
        bool sees_secrets = false;
    };
    // For a subscription, the name is the pattern subscribed to; it is allowed when a rule's
    // pattern matches it as a text. A wide subscription may match an event that another rule
    // denies, so each event is also checked by its own name before it is sent.
    Verdict decide(const Identity &who, Subject subject, std::string_view name) const;

    // The limits of the roles that have one. The owner has none.
    RateLimiter::Limits limits() const;
    std::optional<RateLimit> limit_of(std::string_view role) const;

  private:
    friend class PolicyReader;
    struct Role {
        std::string name;
        std::vector<Rule> rules; // in order of precedence
        bool secrets = false;
        std::optional<RateLimit> limit;
    };
    const Role *role_of(const Identity &who) const;

    std::vector<Role> roles_;
    std::map<std::string, size_t, std::less<>> role_of_member_;
};

} // namespace agent::service

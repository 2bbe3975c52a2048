// SPDX-License-Identifier: MIT
#include "service/gate/policy.h"

#include "protocol/json_text.h"
#include "protocol/requests.h"
#include "service/gate/pattern.h"
#include "service/gate/policy_names.h"
#include "service/gate/policy_reader.h"

#include <algorithm>
#include <iterator>

namespace agent::service {

namespace {

constexpr char kWildcards[] = "*?";
constexpr char kOwner[] = "owner";

Policy::Verdict decide_for_guest(const Identity &who, Subject subject, std::string_view name)
{
    const bool is_open =
        subject == Subject::kCommand && std::ranges::binary_search(open_queries(), name);
    if (is_open || (subject == Subject::kControl && name == kHello)) {
        return {true, "", "without a policy, a local broker may query what is not secret", false};
    }
    if (!is_known(subject, name)) {
        return {false, "", "no policy is given, and there is no such request to allow", false};
    }
    return {false, "",
            "no policy is given; add to one: [roles.NAME] members = [" +
                agent::quoted(who.principals.empty() ? who.name : who.principals.front()) +
                "], allow = [" + agent::quoted(rule_for(subject, name)) + "]",
            false};
}

} // namespace

size_t Rule::length() const
{
    return static_cast<size_t>(std::ranges::count_if(pattern, [](char letter) {
        return std::string_view(kWildcards).find(letter) == std::string_view::npos;
    }));
}

bool Rule::matches(Subject asked, std::string_view name) const
{
    if (asked != subject) {
        return false;
    }
    switch (kind) {
    case Kind::kName:
        return name == pattern;
    case Kind::kSelector:
        return std::ranges::binary_search(commands, name);
    case Kind::kPattern:
        return service::matches(pattern, name);
    }
    return false;
}

std::optional<AskedFor> read_asked_for(std::string_view text)
{
    const size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return AskedFor{Subject::kCommand, std::string(text)};
    }
    for (const SubjectWord &known : subject_words()) {
        if (text.substr(0, colon) == known.word) {
            return AskedFor{known.subject, std::string(text.substr(colon + 1))};
        }
    }
    return std::nullopt;
}

Policy Policy::parse(std::string_view toml, const std::string &file)
{
    const toml::table document = parse_toml(toml, file);
    std::vector<ConfigProblem> problems;
    TomlReader reader(document, file, "", problems);
    Policy policy;
    if (const toml::table *roles = reader.table("roles")) {
        policy = PolicyReader::read(*roles, file, problems);
    }
    reader.refuse_other_keys();
    if (!problems.empty()) {
        throw ConfigError(std::move(problems));
    }
    return policy;
}

const Policy::Role *Policy::role_of(const Identity &who) const
{
    const auto role_of_member = [&](std::string_view member) {
        const auto found = role_of_member_.find(member);
        return found != role_of_member_.end() ? &roles_[found->second] : nullptr;
    };
    for (const std::string &principal : who.principals) {
        if (const Role *role = role_of_member(principal)) {
            return role;
        }
    }
    return role_of_member("way-in:" + who.way_in);
}

Policy::Verdict Policy::decide(const Identity &who, Subject subject, std::string_view name) const
{
    const bool is_for_owner =
        subject == Subject::kControl && std::ranges::find(kControls, name) != std::end(kControls);
    if (is_for_owner && !(who.is_owner && who.way_in != "mqtt")) {
        const Role *role = role_of(who);
        return {false,
                who.is_owner      ? kOwner
                : role != nullptr ? role->name
                                  : "",
                "only the owner of the service controls the simulated gateway, and not by MQTT",
                false};
    }
    if (who.is_owner) {
        return {true, kOwner, "the owner of the service may do everything", true};
    }
    if (who.is_guest && roles_.empty()) {
        return decide_for_guest(who, subject, name);
    }
    const Role *role = role_of(who);
    if (role == nullptr) {
        return {false, "", "no role has this client as a member", false};
    }
    for (const Rule &rule : role->rules) {
        if (rule.matches(subject, name)) {
            return {rule.allows, role->name, rule.place, role->secrets};
        }
    }
    if (subject == Subject::kControl && name == kHello) {
        return {true, role->name, "every role may ask for \"hello\"", role->secrets};
    }
    return {false, role->name, "no rule of the role \"" + role->name + "\" allows it",
            role->secrets};
}

RateLimiter::Limits Policy::limits() const
{
    RateLimiter::Limits limits;
    for (const Role &role : roles_) {
        if (role.limit) {
            limits.emplace(role.name, *role.limit);
        }
    }
    return limits;
}

std::optional<RateLimit> Policy::limit_of(std::string_view role) const
{
    const auto found = std::ranges::find(roles_, role, &Role::name);
    return found != roles_.end() ? found->limit : std::nullopt;
}

} // namespace agent::service

// SPDX-License-Identifier: MIT
#include "service/gate/policy_reader.h"

#include "io/text.h"
#include "protocol/protocol.h"
#include "service/gate/policy_names.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>

namespace agent::service {

namespace {

constexpr size_t kMaxRoleName = 64;
constexpr double kMostPerSecond = 1e6;

constexpr std::array<std::string_view, 7> kKindsOfMembers = {
    "user", "uid", "group", "gid", "http-user", "topic-root", "way-in"};
constexpr std::array<std::string_view, 3> kWaysIn = {"socket", "http", "mqtt"};
constexpr std::array<std::string_view, 2> kSelectors = {"subject", "effect"};

bool is_role_name(std::string_view name)
{
    constexpr std::string_view kAllowed =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_";
    return !name.empty() && name.size() <= kMaxRoleName &&
           name.find_first_not_of(kAllowed) == std::string_view::npos;
}

// What is wrong with a member; empty when nothing is.
std::string problem_of_member(std::string_view member)
{
    const size_t colon = member.find(':');
    const std::string_view kind = member.substr(0, colon);
    if (colon == std::string_view::npos ||
        std::ranges::find(kKindsOfMembers, kind) == kKindsOfMembers.end()) {
        return in_message(member) + " is not user:NAME, uid:NUMBER, group:NAME, gid:NUMBER, "
                                    "http-user:NAME, topic-root:ROOT or way-in:NAME";
    }
    const std::string_view name = member.substr(colon + 1);
    if (name.empty()) {
        return in_message(member) + " names nobody";
    }
    if (kind == "uid" || kind == "gid") {
        const bool is_number = name.find_first_not_of("0123456789") == std::string_view::npos &&
                               (name == "0" || name.front() != '0');
        if (!is_number) {
            return in_message(member) + " has to have a number, without leading zeros";
        }
    }
    if (kind == "way-in" && std::ranges::find(kWaysIn, name) == kWaysIn.end()) {
        return in_message(member) + ": the ways in are \"socket\", \"http\" and \"mqtt\"";
    }
    return "";
}

bool has_wildcards(std::string_view text)
{
    return text.find_first_of("*?") != std::string_view::npos;
}

// Fills in the commands that a selector stands for. Result: what is wrong with it.
std::string read_selector(const std::string &key, const std::string &value, Rule &rule)
{
    std::vector<std::string> values;
    for (auto &[known, commands] : commands_by(key)) {
        if (known == value) {
            rule.commands = commands;
            return "";
        }
        values.push_back(known);
    }
    return "there is no " + key + " " + in_message(value) + "; there are " +
           list_of_names(values, true);
}

// A pattern that matches nothing is a problem, too: a misspelt denial would allow the request.
std::string problem_of_names(const Rule &rule, std::string_view written)
{
    if (rule.pattern.empty()) {
        return in_message(written) + " names nothing";
    }
    const std::vector<std::string> names = known_names(rule.subject);
    const bool matches = std::ranges::any_of(
        names, [&](const std::string &name) { return rule.matches(rule.subject, name); });
    if (matches || rule.subject == Subject::kNotice) {
        return "";
    }
    if (rule.kind == Rule::Kind::kPattern) {
        return in_message(written) + " matches nothing that there is";
    }
    return rule.subject == Subject::kCommand
               ? no_such_command(rule.pattern)
               : in_message(written) + " is not known; there are " + list_of_names(names, true);
}

// Fills in the rule's subject, kind and pattern. Result: what is wrong with it.
std::string read_rule(const std::string &written, Rule &rule)
{
    const size_t colon = written.find(':');
    const std::string word = written.substr(0, colon);
    if (colon != std::string::npos && std::ranges::find(kSelectors, word) != kSelectors.end()) {
        rule.kind = Rule::Kind::kSelector;
        rule.pattern = written;
        return read_selector(word, written.substr(colon + 1), rule);
    }
    const std::optional<AskedFor> asked_for = read_asked_for(written);
    if (!asked_for) {
        return in_message(written) +
               " is not the name of a command, a pattern, or one of these behind "
               "subject:, effect:, report:, notice:, event: or control:";
    }
    rule.subject = asked_for->subject;
    rule.pattern = asked_for->name;
    rule.kind = has_wildcards(rule.pattern) ? Rule::Kind::kPattern : Rule::Kind::kName;
    return problem_of_names(rule, written);
}

} // namespace

Policy PolicyReader::read(const toml::table &roles, const std::string &file,
                          std::vector<ConfigProblem> &problems)
{
    PolicyReader reader(file, problems);
    TomlReader tables(roles, file, "roles", problems);
    // Sorted by line, so that of two roles with the same member the later one is reported.
    std::vector<std::pair<size_t, std::string>> names;
    for (const auto &[key, node] : roles) {
        names.emplace_back(key.source().begin.line, key.str());
    }
    std::ranges::sort(names);
    for (const auto &[line, name] : names) {
        if (const toml::table *role = tables.table(name)) {
            reader.read_role(name, *role, line);
        }
    }
    return std::move(reader.policy_);
}

void PolicyReader::read_role(const std::string &name, const toml::table &table, size_t line)
{
    TomlReader reader(table, file_, "roles." + name, problems_);
    if (!is_role_name(name)) {
        problems_.push_back({file_, line, "roles." + name,
                             "a role's name has letters, digits, - and _, at most " +
                                 std::to_string(kMaxRoleName)});
    }
    if (name == "owner") {
        problems_.push_back({file_, line, "roles." + name,
                             "the owner of the service has this role, and may do everything"});
    }
    Policy::Role role;
    role.name = name;
    read_members(reader);
    const toml::node *members = table.get("members");
    if (members == nullptr || (members->is_array() && members->as_array()->empty())) {
        problems_.push_back({file_, line, "roles." + name, "the role has no members"});
    }
    read_rules(reader, "allow", true, role.rules);
    read_rules(reader, "deny", false, role.rules);
    std::ranges::stable_sort(role.rules, {}, [](const Rule &rule) {
        return std::tuple(rule.kind, ~rule.length(), rule.allows);
    });
    role.secrets = reader.flag("secrets").value_or(false);
    role.limit = read_limit(reader);
    reader.refuse_other_keys();
    policy_.roles_.push_back(std::move(role));
}

void PolicyReader::read_members(TomlReader &reader)
{
    for (const auto &[member, line] : reader.texts("members")) {
        const std::string problem = problem_of_member(member);
        if (!problem.empty()) {
            reader.add_problem(line, "members", problem);
            continue;
        }
        const auto [known, is_new] = line_of_member_.emplace(member, line);
        if (is_new) {
            policy_.role_of_member_.emplace(member, policy_.roles_.size());
        } else {
            reader.add_problem(line, "members",
                               in_message(member) + " is a member already, by line " +
                                   std::to_string(known->second));
        }
    }
}

void PolicyReader::read_rules(TomlReader &reader, const char *key, bool allows,
                              std::vector<Rule> &rules)
{
    for (const auto &[written, line] : reader.texts(key)) {
        Rule rule;
        rule.allows = allows;
        rule.place = file_ + ":" + std::to_string(line) + ": " + key + " \"" + written + "\"";
        const std::string problem = read_rule(written, rule);
        if (problem.empty()) {
            rules.push_back(std::move(rule));
        } else {
            reader.add_problem(line, key, problem);
        }
    }
}

std::optional<RateLimit> PolicyReader::read_limit(TomlReader &reader)
{
    const std::optional<double> rate = reader.number("rate");
    const std::optional<int64_t> burst = reader.whole_number("burst");
    if (rate && (*rate <= 0 || *rate > kMostPerSecond)) {
        reader.add_problem(reader.line_of("rate"), "rate",
                           "has to be more than 0 and at most 1000000 requests a second");
        return std::nullopt;
    }
    if (burst && (*burst < 1 || static_cast<double>(*burst) > kMostPerSecond)) {
        reader.add_problem(reader.line_of("burst"), "burst",
                           "has to be from 1 to 1000000 requests");
        return std::nullopt;
    }
    if (burst && !rate) {
        reader.add_problem(reader.line_of("burst"), "burst", "there is no rate beside it");
    }
    if (!rate) {
        return std::nullopt;
    }
    return RateLimit{*rate, burst ? static_cast<double>(*burst) : std::max(1.0, std::ceil(*rate))};
}

} // namespace agent::service

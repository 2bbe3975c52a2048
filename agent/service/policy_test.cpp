// SPDX-License-Identifier: MIT
#include "service/policy_test.h"

#include "io/exit_status.h"
#include "io/pages.h"
#include "io/text.h"
#include "protocol/protocol.h"
#include "protocol/requests.h"
#include "service/config.h"
#include "service/gate/policy_names.h"

#include <algorithm>
#include <grp.h>
#include <iterator>
#include <pwd.h>
#include <sstream>

namespace agent::service {

namespace {

constexpr char kOwnerPrincipal[] = "owner";
constexpr size_t kMaxEntry = 65536;

void add_once(std::vector<std::string> &principals, const std::string &principal)
{
    if (std::ranges::find(principals, principal) == principals.end()) {
        principals.push_back(principal);
    }
}

std::string name_of_group(gid_t number)
{
    group entry = {};
    group *found = nullptr;
    std::vector<char> texts(kMaxEntry);
    getgrgid_r(number, &entry, texts.data(), texts.size(), &found);
    return found != nullptr ? found->gr_name : "";
}

// The user's number and groups in the same order as from the socket.
void add_account(std::vector<std::string> &principals, const std::string &user)
{
    passwd entry = {};
    passwd *found = nullptr;
    std::vector<char> texts(kMaxEntry);
    getpwnam_r(user.c_str(), &entry, texts.data(), texts.size(), &found);
    if (found == nullptr) {
        return;
    }
    add_once(principals, "uid:" + std::to_string(found->pw_uid));
    std::vector<gid_t> groups(65536);
    auto count = static_cast<int>(groups.size());
    getgrouplist(user.c_str(), found->pw_gid, groups.data(), &count);
    groups.resize(static_cast<size_t>(std::max(count, 0)));
    for (const gid_t number : groups) {
        const std::string name = name_of_group(number);
        if (!name.empty()) {
            add_once(principals, "group:" + name);
        }
        add_once(principals, "gid:" + std::to_string(number));
    }
}

// What is wrong with the request; empty if it is valid.
std::string problem_of(const std::optional<AskedFor> &asked_for, const std::string &written)
{
    if (!asked_for) {
        return "there is no kind of request such as " + in_message(written);
    }
    std::vector<std::string> names = known_names(asked_for->subject);
    if (asked_for->subject == Subject::kControl) { // no rule can allow these
        names.insert(names.end(), std::begin(kControls), std::end(kControls));
    }
    const bool is_free = names.empty() || asked_for->subject == Subject::kSubscription;
    if (is_free || std::ranges::find(names, asked_for->name) != names.end()) {
        return "";
    }
    return asked_for->subject == Subject::kCommand
               ? no_such_command(asked_for->name)
               : in_message(written) + " is not known; there are " + list_of_names(names, true);
}

std::string rate_of(const Policy &policy, const std::string &role)
{
    const std::optional<RateLimit> limit = policy.limit_of(role);
    if (!limit) {
        return "no limit";
    }
    std::ostringstream text;
    text << limit->per_second << " requests a second, " << limit->burst << " at once";
    return text.str();
}

} // namespace

Identity identity_of(const std::vector<std::string> &principals)
{
    constexpr std::string_view kUser = "user:";
    Identity who;
    who.way_in = "socket";
    who.name = principals.front();
    for (const std::string &principal : principals) {
        who.is_owner = who.is_owner || principal == kOwnerPrincipal;
        add_once(who.principals, principal);
    }
    for (const std::string &principal : principals) {
        if (principal.starts_with(kUser)) {
            add_account(who.principals, principal.substr(kUser.size()));
        }
    }
    return who;
}

int test_policy(const PolicyQuestion &question)
{
    const std::optional<AskedFor> asked_for = read_asked_for(question.request);
    const std::string problem = problem_of(asked_for, question.request);
    if (!problem.empty()) {
        print_error(problem);
        return kUnknownCommand;
    }
    RunOptions options;
    options.config = question.file;
    Policy policy;
    try {
        policy = load_config(options).policy;
    } catch (const ConfigError &wrong) {
        return report_problems(wrong);
    }
    const Identity who = identity_of(question.principals);
    const Policy::Verdict verdict = policy.decide(who, asked_for->subject, asked_for->name);

    Table table;
    table.row({"verdict", verdict.allowed ? "allowed" : "denied"});
    table.row({"rule", verdict.rule});
    table.row({"client", list_of_names(who.principals, true)});
    if (!verdict.role.empty()) {
        table.row({"role", verdict.role});
        table.row({"secrets", verdict.sees_secrets ? "shown" : "masked"});
        table.row({"rate", rate_of(policy, verdict.role)});
    }
    std::ostringstream page;
    table.print(page, "");
    const int written = show(page.str());
    return written == kSuccess && !verdict.allowed ? kCommandFailed : written;
}

} // namespace agent::service

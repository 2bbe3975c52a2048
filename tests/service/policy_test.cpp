// SPDX-License-Identifier: MIT
// Roles, members and rules: what is allowed and by which rule, and what is wrong with a file.
#include "config_files.h"
#include "service/gate/policy.h"

#include <gmock/gmock.h>

namespace agent::service {

namespace {

using testing::StartsWith;

constexpr char kFile[] = "policy.toml";

Identity client(std::vector<std::string> principals)
{
    return {"socket", principals.empty() ? "nobody" : principals.front(), principals, false};
}

const Identity kAlice = client({"user:alice", "uid:1000", "group:staff", "gid:50"});

std::string policy_problems(const std::string &toml)
{
    return problems_of([&] { Policy::parse(toml, kFile); });
}

// A role of Alice's with these lines.
std::string role(const std::string &lines)
{
    return "[roles.support]\nmembers = [\"user:alice\"]\n" + lines + "\n";
}

// The decision on the request, as "allowed: RULE" or "denied: RULE".
std::string verdict(const std::string &toml, const std::string &request,
                    const Identity &who = kAlice)
{
    const auto asked_for = read_asked_for(request);
    if (!asked_for) {
        return "no such kind of request";
    }
    const auto verdict =
        Policy::parse(toml, kFile).decide(who, asked_for->subject, asked_for->name);
    return (verdict.allowed ? "allowed: " : "denied: ") + verdict.rule;
}

std::string role_of(const std::string &toml, const Identity &who)
{
    return Policy::parse(toml, kFile).decide(who, Subject::kCommand, "GET_SN_INFO").role;
}

} // namespace

TEST(Policy, LeavesTheControlOfTheGatewayToTheOwner)
{
    const std::string only_the_owner =
        "denied: only the owner of the service controls the simulated gateway, and not by MQTT";
    Identity owner = kAlice;
    owner.is_owner = true;
    Identity guest = client({});
    guest.is_guest = true;
    Identity broker = owner;
    broker.way_in = "mqtt";
    const std::string everything = role(R"(allow = ["*", "control:*"])");
    for (const char *name : {"faults", "scenario", "clock", "trace", "show"}) {
        const std::string request = std::string("control:") + name;
        EXPECT_EQ(verdict("", request, owner),
                  "allowed: the owner of the service may do everything");
        EXPECT_EQ(verdict("", request, broker), only_the_owner);
        EXPECT_EQ(verdict("", request, guest), only_the_owner);
        EXPECT_EQ(verdict("", request), only_the_owner);
        EXPECT_EQ(verdict(everything, request), only_the_owner);
        EXPECT_THAT(policy_problems(role("allow = [\"" + request + "\"]")),
                    testing::HasSubstr(request));
    }
    EXPECT_THAT(verdict(everything, "control:hello"), StartsWith("allowed"));
    EXPECT_THAT(verdict("", "control:hello", broker), StartsWith("allowed"));
    EXPECT_EQ(Policy::parse(everything, kFile).decide(kAlice, Subject::kControl, "clock").role,
              "support")
        << "whose rate limit applies";
}

TEST(Policy, AllowsNothingToOthersThanTheOwner)
{
    Identity owner = kAlice;
    owner.is_owner = true;
    for (const Policy &policy : {Policy::for_owner_only(), Policy::parse("", kFile)}) {
        const auto own = policy.decide(owner, Subject::kCommand, "SET_WIFI_INFO");
        EXPECT_TRUE(own.allowed);
        EXPECT_TRUE(own.sees_secrets);
        EXPECT_EQ(own.role, "owner");
        EXPECT_EQ(own.rule, "the owner of the service may do everything");
        for (const Subject subject : {Subject::kCommand, Subject::kReport, Subject::kNotice,
                                      Subject::kControl, Subject::kSubscription}) {
            const auto other = policy.decide(kAlice, subject, "hello");
            EXPECT_FALSE(other.allowed);
            EXPECT_FALSE(other.sees_secrets);
            EXPECT_EQ(other.role, "");
            EXPECT_EQ(other.rule, "no role has this client as a member");
        }
    }
}

TEST(Policy, TakesNoRightsFromTheOwner)
{
    Identity owner = kAlice;
    owner.is_owner = true;
    EXPECT_EQ(verdict(role("deny = [\"*\"]"), "GET_SN_INFO", owner),
              "allowed: the owner of the service may do everything");
}

TEST(Policy, NamesTheRuleByFileLineAndPattern)
{
    const std::string toml = role("allow = [\n  \"GET_SN_INFO\",\n  \"GET_*\",\n]\n"
                                  "deny = [\"GET_WIFI_*\"]");
    EXPECT_EQ(verdict(toml, "GET_SN_INFO"), "allowed: policy.toml:4: allow \"GET_SN_INFO\"");
    EXPECT_EQ(verdict(toml, "GET_LAN_NET_INFO"), "allowed: policy.toml:5: allow \"GET_*\"");
    EXPECT_EQ(verdict(toml, "GET_WIFI_INFO"), "denied: policy.toml:7: deny \"GET_WIFI_*\"");
    EXPECT_EQ(verdict(toml, "SET_WIFI_INFO"), "denied: no rule of the role \"support\" allows it");
}

TEST(Policy, PrefersNamesToSelectorsAndTheseToPatterns)
{
    const std::string toml =
        role("allow = [\"*\", \"GET_WIFI_INFO\"]\ndeny = [\"subject:wifi\", \"GET_WIFI_INF?\"]");
    EXPECT_EQ(verdict(toml, "GET_WIFI_INFO"), "allowed: policy.toml:3: allow \"GET_WIFI_INFO\"");
    EXPECT_EQ(verdict(toml, "SET_WIFI_INFO"), "denied: policy.toml:4: deny \"subject:wifi\"");
    EXPECT_EQ(verdict(toml, "GET_SN_INFO"), "allowed: policy.toml:3: allow \"*\"");
    EXPECT_EQ(
        verdict(role("allow = [\"subject:wifi\"]\ndeny = [\"GET_WIFI_INF*\"]"), "GET_WIFI_INFO"),
        "allowed: policy.toml:3: allow \"subject:wifi\"");
}

TEST(Policy, LetsTheLongestPatternDecide)
{
    const std::string toml = role("allow = [\"G*\", \"GET_WIFI_*\"]\ndeny = [\"GET_*\"]");
    EXPECT_EQ(verdict(toml, "GET_WIFI_INFO"), "allowed: policy.toml:3: allow \"GET_WIFI_*\"");
    EXPECT_EQ(verdict(toml, "GET_SN_INFO"), "denied: policy.toml:4: deny \"GET_*\"");
}

TEST(Policy, CountsNoWildcardsInAPatternsLength)
{
    EXPECT_EQ(verdict(role("allow = [\"GET_*\"]\ndeny = [\"G**????????*\"]"), "GET_SN_INFO"),
              "allowed: policy.toml:3: allow \"GET_*\"");
}

TEST(Policy, DeniesWhenRulesAreEquallyStrong)
{
    EXPECT_EQ(verdict(role("allow = [\"GET_SN_INFO\"]\ndeny = [\"GET_SN_INFO\"]"), "GET_SN_INFO"),
              "denied: policy.toml:4: deny \"GET_SN_INFO\"");
    EXPECT_EQ(verdict(role("deny = [\"*_SN_*\"]\nallow = [\"GET_*\"]"), "GET_SN_INFO"),
              "denied: policy.toml:3: deny \"*_SN_*\"");
    EXPECT_EQ(
        verdict(role("allow = [\"effect:none\"]\ndeny = [\"subject:wifi\"]"), "GET_WIFI_INFO"),
        "denied: policy.toml:4: deny \"subject:wifi\"");
}

TEST(Policy, SelectsCommandsByWhatTheProtocolSays)
{
    const std::string toml = role("allow = [\"effect:none\", \"subject:qos\"]");
    EXPECT_EQ(verdict(toml, "GET_SN_INFO"), "allowed: policy.toml:3: allow \"effect:none\"");
    EXPECT_EQ(verdict(toml, "SET_QOS_CLASSIFICATION_INFO"),
              "allowed: policy.toml:3: allow \"subject:qos\"");
    EXPECT_EQ(verdict(toml, "SET_WIFI_INFO"), "denied: no rule of the role \"support\" allows it");
    EXPECT_EQ(verdict(toml, "NO_SUCH_COMMAND"),
              "denied: no rule of the role \"support\" allows it");
}

TEST(Policy, KeepsKindsOfRequestsApart)
{
    const std::string toml = role("allow = [\"*\"]\ndeny = [\"report:topology\"]");
    EXPECT_EQ(verdict(toml, "GET_SN_INFO"), "allowed: policy.toml:3: allow \"*\"");
    for (const char *request : {"report:home-page", "notice:any", "event:notice"}) {
        EXPECT_EQ(verdict(toml, request), "denied: no rule of the role \"support\" allows it")
            << request;
    }
    const std::string others =
        role("allow = [\"report:*\", \"notice:parental*\", \"event:update.*\"]\ndeny = "
             "[\"event:update.failed\", \"control:hello\"]");
    EXPECT_EQ(verdict(others, "report:topology"), "allowed: policy.toml:3: allow \"report:*\"");
    EXPECT_EQ(verdict(others, "notice:parental_control"),
              "allowed: policy.toml:3: allow \"notice:parental*\"");
    EXPECT_EQ(verdict(others, "event:update.progress"),
              "allowed: policy.toml:3: allow \"event:update.*\"");
    EXPECT_EQ(verdict(others, "event:update.failed"),
              "denied: policy.toml:4: deny \"event:update.failed\"");
    EXPECT_EQ(verdict(others, "control:hello"), "denied: policy.toml:4: deny \"control:hello\"");
    EXPECT_EQ(verdict(others, "GET_SN_INFO"), "denied: no rule of the role \"support\" allows it");
}

TEST(Policy, LetsGuestsQueryWhatIsNotSecret)
{
    Identity guest = client({"topic-root:gateway"});
    guest.is_guest = true;
    constexpr char kReason[] = "without a policy, a local broker may query what is not secret";
    for (const char *request : {"GET_SN_INFO", "GET_GREENNET_DEVICE_LIST", "control:hello"}) {
        EXPECT_EQ(verdict("", request, guest), std::string("allowed: ") + kReason) << request;
    }
    EXPECT_FALSE(
        Policy::for_owner_only().decide(guest, Subject::kCommand, "GET_SN_INFO").sees_secrets);
    EXPECT_EQ(role_of("", guest), "");
}

TEST(Policy, ShowsGuestsTheRuleToAdd)
{
    Identity guest = client({"topic-root:gateway"});
    guest.is_guest = true;
    for (const char *request : {"SET_HG_BASE_INFO", "GET_WIFI_INFO", "GET_HG_PPPOE_INFO",
                                "report:topology", "event:update.*", "event:*", "notice:any"}) {
        const std::string denial = verdict("", request, guest);
        const std::string begin = "denied: no policy is given; add to one: ";
        EXPECT_EQ(denial, begin + R"([roles.NAME] members = ["topic-root:gateway"], allow = [")" +
                              request + "\"]");
    }
    for (const char *request :
         {"NO_SUCH_COMMAND", "GET_*", "*", "report:x", "event:nothing.*", "control:other"}) {
        EXPECT_EQ(verdict("", request, guest),
                  "denied: no policy is given, and there is no such request to allow");
    }
}

TEST(Policy, HasNoGuestsOnceItHasRoles)
{
    Identity guest = client({"topic-root:gateway"});
    guest.is_guest = true;
    EXPECT_EQ(verdict(role("allow = [\"*\"]"), "GET_SN_INFO", guest),
              "denied: no role has this client as a member");
    guest.principals = {"user:alice"};
    EXPECT_EQ(verdict(role("allow = [\"SET_*\"]"), "GET_SN_INFO", guest),
              "denied: no rule of the role \"support\" allows it");
}

TEST(Policy, LetsEveryRoleAskForHello)
{
    EXPECT_EQ(verdict(role(""), "control:hello"), "allowed: every role may ask for \"hello\"");
    EXPECT_EQ(verdict(role(R"(deny = ["control:hello"])"), "control:hello"),
              "denied: policy.toml:3: deny \"control:hello\"");
}

TEST(Policy, TakesTheRoleOfTheMostSpecialPrincipal)
{
    const std::string toml = "[roles.guests]\nmembers = [\"way-in:socket\"]\n"
                             "[roles.staff]\nmembers = [\"gid:50\", \"group:other\"]\n"
                             "[roles.alice]\nmembers = [\"user:alice\"]\n";
    EXPECT_EQ(role_of(toml, kAlice), "alice");
    EXPECT_EQ(role_of(toml, client({"user:bob", "uid:1001", "group:staff", "gid:50"})), "staff");
    EXPECT_EQ(role_of(toml, client({"user:eve"})), "guests");
    EXPECT_EQ(role_of(toml, {"other", "user:eve", {"user:eve"}, false}), "");
}

TEST(Policy, ShowsSecretsOnlyToARoleThatMaySeeThem)
{
    const auto secrets = [](const std::string &line) {
        return Policy::parse(role(line), kFile)
            .decide(kAlice, Subject::kCommand, "GET_WIFI_INFO")
            .sees_secrets;
    };
    EXPECT_FALSE(secrets("allow = [\"*\"]"));
    EXPECT_FALSE(secrets("secrets = false"));
    EXPECT_TRUE(secrets("secrets = true"));
}

TEST(Policy, HasTheLimitsOfItsRoles)
{
    const Policy policy =
        Policy::parse(role("rate = 2.5") + "[roles.slow]\nmembers = [\"uid:0\"]\nrate = 0.1\n"
                                           "[roles.two]\nmembers = [\"gid:0\"]\nrate = 1\nburst "
                                           "= 9\n[roles.none]\nmembers = [\"user:x\"]\n",
                      kFile);
    const RateLimiter::Limits expected = {
        {"support", {2.5, 3}}, {"slow", {0.1, 1}}, {"two", {1, 9}}};
    EXPECT_EQ(policy.limits(), expected);
    EXPECT_EQ(policy.limit_of("two"), (RateLimit{1, 9}));
    EXPECT_EQ(policy.limit_of("none"), std::nullopt);
    EXPECT_EQ(policy.limit_of("owner"), std::nullopt);
}

TEST(PolicyFile, ReportsUnknownKeysAndTables)
{
    EXPECT_EQ(policy_problems("[mqtt]\n" + role("alow = []") + "[[other]]\n"),
              "policy.toml:1: mqtt: there is no such key\n"
              "policy.toml:4: roles.support.alow: there is no such key\n"
              "policy.toml:5: other: there is no such key");
}

TEST(PolicyFile, ReportsWrongTypes)
{
    EXPECT_EQ(policy_problems("roles = 1"),
              "policy.toml:1: roles: has to be a table, and is a number");
    EXPECT_EQ(policy_problems("[roles]\nsupport = [\"user:alice\"]"),
              "policy.toml:2: roles.support: has to be a table, and is a list");
    EXPECT_EQ(policy_problems("[roles.a]\nmembers = \"user:alice\"\nallow = [1]\ndeny = {a = 1}\n"
                              "secrets = \"yes\"\nrate = true\nburst = 1.5"),
              "policy.toml:2: roles.a.members: has to be a list of texts, and is a text\n"
              "policy.toml:3: roles.a.allow: has to be a list of texts, and has a number\n"
              "policy.toml:4: roles.a.deny: has to be a list of texts, and is a table\n"
              "policy.toml:5: roles.a.secrets: has to be true or false, and is a text\n"
              "policy.toml:6: roles.a.rate: has to be a number, and is true or false\n"
              "policy.toml:7: roles.a.burst: has to be a whole number, and is a number");
    EXPECT_EQ(policy_problems(role("secrets = 2026-01-01")),
              "policy.toml:3: roles.support.secrets: has to be true or false, and is a date or a "
              "time");
}

TEST(PolicyFile, ReportsAMemberOfTwoRoles)
{
    EXPECT_EQ(policy_problems("[roles.b]\nmembers = [\"uid:0\", \"gid:0\", \"uid:0\"]\n"
                              "[roles.a]\nmembers = [\n\"gid:1\",\n\"gid:0\"]"),
              "policy.toml:2: roles.b.members: \"uid:0\" is a member already, by line 2\n"
              "policy.toml:6: roles.a.members: \"gid:0\" is a member already, by line 2");
}

TEST(PolicyFile, ReportsMembersThatNobodyCanBe)
{
    const auto problem = [](const std::string &member) {
        return policy_problems("[roles.a]\nmembers = ['" + member + "']");
    };
    const std::string place = "policy.toml:2: roles.a.members: ";
    const std::string form =
        " is not user:NAME, uid:NUMBER, group:NAME, gid:NUMBER, http-user:NAME, "
        "topic-root:ROOT or way-in:NAME";
    EXPECT_EQ(problem("alice"), place + "\"alice\"" + form);
    EXPECT_EQ(problem("usr:alice"), place + "\"usr:alice\"" + form);
    EXPECT_EQ(problem(""), place + "\"\"" + form);
    EXPECT_EQ(problem("user:"), place + "\"user:\" names nobody");
    for (const char *number : {"uid:alice", "gid:-1", "uid:007", "gid:0x10", "uid:1 "}) {
        EXPECT_EQ(problem(number),
                  place + "\"" + number + "\" has to have a number, without leading zeros");
    }
    EXPECT_EQ(problem("way-in:door"),
              place + "\"way-in:door\": the ways in are \"socket\", \"http\" and \"mqtt\"");
    EXPECT_EQ(problem("uid:0"), "");
}

TEST(PolicyFile, ReportsRolesWithoutMembers)
{
    EXPECT_EQ(policy_problems("[roles.a]\n[roles.b]\nmembers = []"),
              "policy.toml:1: roles.a: the role has no members\n"
              "policy.toml:2: roles.b: the role has no members");
}

TEST(PolicyFile, ReportsNamesThatRolesCannotHave)
{
    const std::string members = "\nmembers = [\"uid:0\"]";
    const std::string said = ": a role's name has letters, digits, - and _, at most 64";
    EXPECT_EQ(policy_problems("[roles.\"a b\"]" + members), "policy.toml:1: roles.a b" + said);
    EXPECT_EQ(policy_problems("[roles.\"\"]" + members), "policy.toml:1: roles." + said);
    const std::string longest(64, 'x');
    EXPECT_EQ(policy_problems("[roles." + longest + "]" + members), "");
    EXPECT_EQ(policy_problems("[roles." + longest + "x]" + members),
              "policy.toml:1: roles." + longest + "x" + said);
    EXPECT_EQ(policy_problems("[roles.owner]" + members),
              "policy.toml:1: roles.owner: the owner of the service has this role, and may do "
              "everything");
}

TEST(PolicyFile, ReportsRulesThatMatchNothing)
{
    const auto problem = [](const std::string &rule) {
        return policy_problems(role("deny = ['" + rule + "']"));
    };
    const std::string place = "policy.toml:3: roles.support.deny: ";
    EXPECT_THAT(problem("GET_SN_INF0"),
                StartsWith(place + "no command \"GET_SN_INF0\"; the nearest are GET_SN_INFO, "));
    EXPECT_EQ(problem("SETT_*"), place + "\"SETT_*\" matches nothing that there is");
    EXPECT_EQ(problem(""), place + "\"\" names nothing");
    EXPECT_EQ(problem("report:"), place + "\"report:\" names nothing");
    EXPECT_EQ(problem("report:topolgy"),
              place + "\"report:topolgy\" is not known; there are home-page, main-router, "
                      "main-base, topology, agent-topology, stations, mesh, image-upgrade");
    EXPECT_EQ(problem("report:x*"), place + "\"report:x*\" matches nothing that there is");
    EXPECT_EQ(problem("event:updates.*"),
              place + "\"event:updates.*\" matches nothing that there is");
    EXPECT_EQ(problem("control:helo"), place + "\"control:helo\" is not known; there are hello");
    EXPECT_THAT(problem("subject:wlan"),
                StartsWith(place + "there is no subject \"wlan\"; there are administration, "));
    EXPECT_THAT(problem("subject:*"), StartsWith(place + "there is no subject \"*\"; "));
    EXPECT_EQ(problem("effect:all"),
              place + "there is no effect \"all\"; there are lasting, none, setting");
    EXPECT_EQ(problem("command:GET_*"),
              place + "\"command:GET_*\" is not the name of a command, a pattern, or one of these "
                      "behind subject:, effect:, report:, notice:, event: or control:");
    EXPECT_EQ(problem("notice:any part"), "");
}

TEST(PolicyFile, ReportsRatesThatAreNone)
{
    const std::string rate = "policy.toml:3: roles.support.rate: ";
    for (const char *value : {"0", "-1", "0.0", "1000001"}) {
        EXPECT_EQ(policy_problems(role(std::string("rate = ") + value)),
                  rate + "has to be more than 0 and at most 1000000 requests a second")
            << value;
    }
    for (const char *value : {"inf", "-inf", "nan"}) {
        EXPECT_EQ(policy_problems(role(std::string("rate = ") + value)),
                  rate + "has to be a finite number")
            << value;
    }
    for (const char *value : {"0", "-1", "1000001"}) {
        EXPECT_EQ(policy_problems(role(std::string("rate = 1\nburst = ") + value)),
                  "policy.toml:4: roles.support.burst: has to be from 1 to 1000000 requests")
            << value;
    }
    EXPECT_EQ(policy_problems(role("burst = 1")),
              "policy.toml:3: roles.support.burst: there is no rate beside it");
}

// What the parser of TOML says is its own; where it is said of is not.
TEST(PolicyFile, ReportsWhatIsNoToml)
{
    for (const char *toml :
         {"\n[\nx = 1", "\n[[\n", "\n[#", "\n[=]", "\na = \u018a", "\n\u03b1 = 1", "\n[\u0416]",
          "[roles.a]\nx = ", "\n[roles", "\nroles.a = 1\nroles.a = 2",
          "\na = [[[[[[[[[[1]]]]]]]]]]", "\na = \"\x01\"", "\n\x7f\x45LF\x02\x01\x01",
          "\na = 99999999999999999999"}) {
        const std::string problem = policy_problems(toml);
        EXPECT_EQ(problem.find("policy.toml:"), 0U) << toml;
        EXPECT_GT(problem.size(), sizeof("policy.toml:2: ")) << toml;
        EXPECT_EQ(problem.find('\n'), std::string::npos) << problem;
    }
}

TEST(PolicyFile, ReportsWhatIsNotUtf8)
{
    EXPECT_EQ(policy_problems("# \xff\n"), "policy.toml:1: the line is not UTF-8");
    EXPECT_EQ(policy_problems("\n\na = \"\xc3\x28\""), "policy.toml:3: the line is not UTF-8");
    EXPECT_EQ(policy_problems("\xef\xbb\xbf" + role("")), "");
}

TEST(PolicyFile, ReportsAFileThatIsTooLong)
{
    EXPECT_EQ(policy_problems("#" + std::string(262143, 'x')), "");
    EXPECT_EQ(policy_problems("#" + std::string(262144, 'x')),
              "policy.toml: the file is longer than 262144 bytes");
}

// Nested tables are freed recursively.
TEST(PolicyFile, ReportsKeysThatAreTooDeep)
{
    std::string deep = "a";
    for (int depth = 0; depth < 200; ++depth) {
        deep += ".a";
    }
    EXPECT_EQ(policy_problems("\n" + deep + " = 1"), "policy.toml:2: a: there is no such key");
    EXPECT_EQ(policy_problems("\n" + deep + ".a = 1"),
              "policy.toml:2: the line has more than 200 dots");
    EXPECT_EQ(policy_problems("[" + deep + ".a]"),
              "policy.toml:1: the line has more than 200 dots");
}

TEST(PolicyFile, ShowsHostileNamesOnOneLine)
{
    const std::string problem =
        policy_problems("[roles.a]\nmembers = [\"\\u001b[2J\\nuid:0\"]\n\"\\n\\u202e\" = 1");
    EXPECT_EQ(problem.find('\x1b'), std::string::npos);
    EXPECT_EQ(std::count(problem.begin(), problem.end(), '\n'), 1) << problem;
    EXPECT_NE(problem.find("\\x1b"), std::string::npos) << problem;
    EXPECT_NE(problem.find("\\n\\x202e"), std::string::npos) << problem;
}

} // namespace agent::service

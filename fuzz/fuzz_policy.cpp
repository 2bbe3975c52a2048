// SPDX-License-Identifier: MIT
// Fuzzes the files of the service: the input is a configuration or a policy in TOML, or the mix of
// commands that a fleet is driven with.
//
// What is wrong with one is reported in lines of UTF-8 that begin with the file's name. A valid
// policy decides the same for the same client every time, gives a reason, and admits nobody without
// a role; a mix can be drawn from, and each of its requests can be sent.
#include "fleet/platform/mix.h"
#include "give_up.h"
#include "io/text.h"
#include "protocol/protocol.h"
#include "protocol/requests.h"
#include "request.h"
#include "service/config.h"

#include <cmath>

using namespace fuzz;
using namespace agent::service;

namespace {

constexpr char kFile[] = "input.toml";

void check(const ConfigError &wrong)
{
    if (wrong.problems().empty()) {
        give_up("an error without a problem");
    }
    for (const ConfigProblem &problem : wrong.problems()) {
        const std::string message = problem.message();
        if (!agent::is_valid_utf8(message) || message.find('\n') != std::string::npos ||
            problem.text.empty() || (problem.file == kFile && !message.starts_with(kFile))) {
            give_up("not a message", message);
        }
    }
}

void check(const Policy &policy)
{
    const Identity owner = {"socket", "user:root", {"user:root"}, true};
    const Identity stranger = {"other", "user:x", {"user:\x01"}, false};
    const Identity members = {"socket",
                              "user:alice",
                              {"user:alice", "uid:1000", "group:staff", "gid:50", "uid:0"},
                              false};
    for (const auto &[subject, name] :
         {std::pair(Subject::kCommand, "GET_WIFI_INFO"), std::pair(Subject::kCommand, "NO_SUCH"),
          std::pair(Subject::kReport, "topology"), std::pair(Subject::kNotice, "any"),
          std::pair(Subject::kControl, "hello"), std::pair(Subject::kControl, "faults"),
          std::pair(Subject::kSubscription, "update.*")}) {
        if (!policy.decide(owner, subject, name).allowed) {
            give_up("the owner is refused");
        }
        if (policy.decide(stranger, subject, name).allowed) {
            give_up("a stranger is let in");
        }
        const Policy::Verdict verdict = policy.decide(members, subject, name);
        const Policy::Verdict again = policy.decide(members, subject, name);
        if (verdict.rule.empty() || verdict.rule != again.rule ||
            (verdict.allowed && verdict.role.empty())) {
            give_up("a verdict without a reason", verdict.rule);
        }
    }
}

void check(const agent::fleet::platform::Mix &mix)
{
    double sum = 0;
    for (const agent::fleet::platform::MixEntry &entry : mix) {
        sum += entry.weight;
        if (entry.is_setting ? entry.values.empty() || entry.key.empty()
                             : agent::parse_object(entry.params) == nullptr) {
            give_up("a request that cannot be sent", entry.command);
        }
        if (entry.is_setting) {
            entry.value("gw{sequence}", UINT32_MAX);
        }
        if (!(entry.weight > 0)) {
            give_up("not a weight", entry.command);
        }
    }
    if (mix.empty() || !std::isfinite(sum)) {
        give_up("a mix that cannot be drawn from");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string text(text_of(data, size));
    try {
        check(Policy::parse(text, kFile));
    } catch (const ConfigError &wrong) {
        check(wrong);
    }
    try {
        const ServiceConfig config = parse_config(text, kFile);
        check(config.policy);
        worker_arguments(config);
        config.socket.mode_bits();
    } catch (const ConfigError &wrong) {
        check(wrong);
    }
    try {
        check(agent::fleet::platform::parse_mix(text, kFile));
    } catch (const ConfigError &wrong) {
        check(wrong);
    }
    return 0;
}

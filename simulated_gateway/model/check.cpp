// SPDX-License-Identifier: MIT
#include "model/check.h"

#include "model/consistency.h"

namespace simulated_gateway {
namespace {

// Checks every field against its rule.
class RuleChecker {
  public:
    explicit RuleChecker(std::string path) : path_(std::move(path)) {}

    template <class Value, class Rule>
    void field(const char *name, const Value &value, const Rule &rule)
    {
        if (rule.presence == Presence::kOptional && value == Value()) {
            return;
        }
        const std::string wrong = validation_error(value, rule);
        if (!wrong.empty()) {
            refuse(path_ + "/" + name, wrong);
        }
    }
    template <class Struct> void object(const char *name, const Struct &value)
    {
        RuleChecker inner(path_ + "/" + name);
        Struct::describe(value, inner);
    }
    template <class Struct>
    void list(const char *name, const std::vector<Struct> &values, size_t most)
    {
        if (values.size() > most) {
            refuse(path_ + "/" + name, "has more than " + std::to_string(most) + " items");
        }
        for (size_t at = 0; at < values.size(); ++at) {
            RuleChecker inner(item(path_ + "/" + name, at));
            Struct::describe(values[at], inner);
        }
    }

  private:
    std::string path_;
};

} // namespace

void check(const Home &home)
{
    RuleChecker rules("");
    Home::describe(home, rules);
    Addresses addresses(home.lan);
    check_consistency(home, "", addresses);
}

void check(const State &state)
{
    RuleChecker rules("");
    State::describe(state, rules);
    if (state.firmware.slot(state.firmware.running).version.empty()) {
        refuse("/firmware/slot_" + std::to_string(state.firmware.running) + "/version",
               "is missing, and it runs");
    }
    Addresses addresses(state.home.lan);
    check_consistency(state.home, "/home", addresses);
    check_removed_hosts(state, "/removed_hosts", addresses);
    Addresses factory_addresses(state.factory.lan);
    check_consistency(state.factory, "/factory", factory_addresses);
}

} // namespace simulated_gateway

// SPDX-License-Identifier: MIT
#include "fleet/platform/ledger.h"

#include "conformance/requests.h"
#include "protocol/json_text.h"

#include <algorithm>
#include <utility>

namespace agent::fleet::platform {

// ---- Reading ------------------------------------------------------------------------------------

Json Reading::setting(const MixEntry &entry, const cJSON *selected)
{
    missing_.reset();
    bool has_failed = false;
    const Ask ask = [&](const std::string &command, Json request) -> Json {
        Query query{command, print(request.get())};
        for (const Known &known : known_) {
            if (known.query.command == query.command && known.query.params == query.params) {
                has_failed = has_failed || known.reply == nullptr;
                return Json(cJSON_Duplicate(known.reply.get(), 1));
            }
        }
        missing_ = missing_ ? missing_ : std::move(query);
        return nullptr;
    };
    Json first;
    if (selected == nullptr) {
        // The first that the gateway lists: it is the least likely to go away.
        std::vector<Json> requests = requests_for(entry.description, ask);
        if (missing_ || has_failed || requests.empty()) {
            return nullptr; // an example is of no use
        }
        first = std::move(requests.back());
        selected = first.get();
    }
    return setting_in_force(entry.description, selected, ask);
}

void Reading::add(const Query &query, Json reply)
{
    known_.push_back({query, std::move(reply)});
}

// ---- Ledger -------------------------------------------------------------------------------------

Ledger::Ledger(const Mix &mix, size_t gateways) : mix_(mix), items_(gateways * mix.size()) {}

void Ledger::begin(GatewayNumber gateway, size_t entry, const cJSON *setting)
{
    const std::string &key = mix_[entry].key;
    if (setting == nullptr || cJSON_GetObjectItemCaseSensitive(setting, key.c_str()) == nullptr) {
        ++counts_.without;
        return;
    }
    Item &one = item(gateway, entry);
    one.base = print(setting);
    one.expected = {string_at(setting, key.c_str())};
    one.has_value = true;
    ++counts_.settings;
}

bool Ledger::is_free(GatewayNumber gateway, size_t entry) const
{
    const Item &one = item(gateway, entry);
    return one.has_value && !one.is_open;
}

Ledger::Change Ledger::change(GatewayNumber gateway, size_t entry, std::string_view id)
{
    Item &one = item(gateway, entry);
    const MixEntry &what = mix_[entry];
    counts_.touched += one.sequence == 0 ? 1 : 0;
    one.is_open = true;
    Change change;
    // A value that is in force already would not show whether it has been set; all that are given
    // may be the same.
    for (size_t tries = 0; tries < what.values.size(); ++tries) {
        change.value = what.value(id, ++one.sequence);
        if (one.expected.size() != 1 || change.value != one.expected.front()) {
            break;
        }
    }
    const Json request(cJSON_Parse(one.base.c_str()));
    cJSON_ReplaceItemInObjectCaseSensitive(request.get(), what.key.c_str(),
                                           cJSON_CreateString(change.value.c_str()));
    change.params = print(request.get());
    return change;
}

Ledger::Confirmed Ledger::end(GatewayNumber gateway, size_t entry, End end, Confirmed confirmed)
{
    Item &one = item(gateway, entry);
    one.is_open = false;
    switch (end) {
    case End::kConfirmed:
        ++counts_.confirmed;
        one.expected = {confirmed.value};
        one.repeated.clear();
        return std::exchange(one.last, std::move(confirmed));
    case End::kRefused:
        ++counts_.refused;
        break;
    case End::kUnknown:
        ++counts_.unknown;
        one.expected.push_back(std::move(confirmed.value));
        // Not followed by a comparison with the change before: it may be in force again.
        one.last = {};
        break;
    }
    return {};
}

void Ledger::repeat(GatewayNumber gateway, size_t entry, const std::string &value)
{
    ++counts_.repeated;
    Item &one = item(gateway, entry);
    one.repeated = value;
    one.is_open = true;
}

void Ledger::release(GatewayNumber gateway, size_t entry)
{
    item(gateway, entry).is_open = false;
}

uint32_t Ledger::version(GatewayNumber gateway, size_t entry) const
{
    const Item &one = item(gateway, entry);
    return one.is_open ? 0 : one.sequence;
}

bool Ledger::is_touched(GatewayNumber gateway, size_t entry) const
{
    return item(gateway, entry).sequence > 0;
}

bool Ledger::is_touched(GatewayNumber gateway) const
{
    for (size_t entry = 0; entry < mix_.size(); ++entry) {
        if (is_touched(gateway, entry)) {
            return true;
        }
    }
    return false;
}

const std::string &Ledger::base(GatewayNumber gateway, size_t entry) const
{
    return item(gateway, entry).base;
}

Ledger::Verdict Ledger::compare(GatewayNumber gateway, size_t entry, const cJSON *setting,
                                std::string *text)
{
    Item &one = item(gateway, entry);
    if (setting == nullptr) {
        return Verdict::kUnread;
    }
    const std::string found = string_at(setting, mix_[entry].key.c_str());
    const auto place = std::ranges::find(one.expected, found);
    if (place != one.expected.end()) {
        counts_.resolved += place != one.expected.begin() ? 1 : 0;
        one.expected = {found};
        return Verdict::kAsSet;
    }
    *text = mix_[entry].key + " was set to " + agent::quoted(one.expected.back()) + " and reads " +
            agent::quoted(found);
    one.expected = {found}; // counted once
    if (!one.repeated.empty() && found == one.repeated) {
        ++counts_.twice;
        return Verdict::kTwice;
    }
    ++counts_.lost;
    return Verdict::kLost;
}

nlohmann::ordered_json to_json(const Ledger::Counts &counts)
{
    return {{"settings", counts.settings},       {"without_value", counts.without},
            {"changed", counts.touched},         {"confirmed", counts.confirmed},
            {"refused", counts.refused},         {"unknown", counts.unknown},
            {"found_in_force", counts.resolved}, {"asked_again", counts.repeated},
            {"compared", counts.compared},       {"as_set", counts.as_set},
            {"not_read", counts.unread},         {"lost", counts.lost},
            {"executed_twice", counts.twice}};
}

} // namespace agent::fleet::platform

// SPDX-License-Identifier: MIT
// What has been set where: for each gateway and each setting of the mix the values that may be in
// force. A confirmed change leaves one; one whose outcome is unknown adds its own to those before.
#pragma once

#include "fleet/platform/mix.h"
#include "fleet/platform/platform.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

namespace agent::fleet::platform {

// Builds requests that set what is in force from a gateway's replies. Those that it needs are asked
// for by the caller, one after the other.
class Reading {
  public:
    struct Query {
        std::string command;
        std::string params;
    };

    // The setting in force as a request; null when `missing` has a query that has to be asked
    // first, or when the gateway does not report all of it. selected: has the keys that select one
    // of several; null: the first of those that the gateway reports.
    Json setting(const MixEntry &entry, const cJSON *selected);
    const std::optional<Query> &missing() const { return missing_; }
    // The reply to a query; null if there is none.
    void add(const Query &query, Json reply);

  private:
    struct Known {
        Query query;
        Json reply;
    };
    std::vector<Known> known_;
    std::optional<Query> missing_;
};

class Ledger {
  public:
    Ledger(const Mix &mix, size_t gateways);

    // A change under way.
    struct Change {
        std::string params;
        std::string value;
    };
    enum class End { kConfirmed, kRefused, kUnknown };
    // A confirmed change, which can be asked for again: the gateway must not execute it twice.
    struct Confirmed {
        uint64_t number = 0; // of its request; 0: none
        std::string params;
        std::string epoch;
        std::string payload; // of its answer
        std::string value;
        Clock::time_point time;
    };

    // Before the first change: the setting in force, as Reading reports it.
    void begin(GatewayNumber gateway, size_t entry, const cJSON *setting);
    // Whether the setting can be changed now: its values are known and no change is under way.
    bool is_free(GatewayNumber gateway, size_t entry) const;
    Change change(GatewayNumber gateway, size_t entry, std::string_view id);
    // Result: the change that was confirmed before this one, where there is one.
    Confirmed end(GatewayNumber gateway, size_t entry, End end, Confirmed confirmed);
    // An earlier change is asked for again, and is in force if it is executed again. Until the
    // release no other change can hide that.
    void repeat(GatewayNumber gateway, size_t entry, const std::string &value);
    void release(GatewayNumber gateway, size_t entry);

    // Counts the changes that have been begun; 0 while one is under way.
    uint32_t version(GatewayNumber gateway, size_t entry) const;
    bool is_touched(GatewayNumber gateway, size_t entry) const;
    bool is_touched(GatewayNumber gateway) const;
    // A request of the setting, which selects it; empty without one.
    const std::string &base(GatewayNumber gateway, size_t entry) const;

    // Compares with what the gateway reports. null: it does not.
    enum class Verdict { kAsSet, kLost, kTwice, kUnread };
    Verdict compare(GatewayNumber gateway, size_t entry, const cJSON *setting, std::string *text);

    struct Counts {
        uint64_t settings = 0; // with a known value
        uint64_t without = 0;  // that a gateway does not report
        uint64_t touched = 0;
        uint64_t confirmed = 0; // changes
        uint64_t refused = 0;
        uint64_t unknown = 0;
        uint64_t resolved = 0; // of the unknown ones, those that have been found to be in force
        uint64_t repeated = 0; // confirmed changes asked for again
        uint64_t compared = 0; // on the way
        uint64_t as_set = 0;   // at the end, as the next ones
        uint64_t unread = 0;
        uint64_t lost = 0; // at any time, as the next ones
        uint64_t twice = 0;
    };
    Counts &counts() { return counts_; }
    const Counts &counts() const { return counts_; }

  private:
    struct Item {
        std::string base;                  // request
        std::vector<std::string> expected; // values that may be in force
        std::string repeated;              // value of the change that was asked for again
        uint32_t sequence = 0;
        bool is_open = false;
        bool has_value = false;
        Confirmed last;
    };

    Item &item(GatewayNumber gateway, size_t entry)
    {
        return items_[gateway * mix_.size() + entry];
    }
    const Item &item(GatewayNumber gateway, size_t entry) const
    {
        return items_[gateway * mix_.size() + entry];
    }

    const Mix &mix_;
    std::vector<Item> items_;
    Counts counts_;
};

nlohmann::ordered_json to_json(const Ledger::Counts &counts);

} // namespace agent::fleet::platform

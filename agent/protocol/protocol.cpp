// SPDX-License-Identifier: MIT
#include "protocol/protocol.h"

#include "embedded/protocol_commands.h"
#include "embedded/protocol_events.h"
#include "io/text.h"
#include "protocol/json.h"

#include <algorithm>
#include <span>

namespace agent {

namespace {

constexpr size_t kMaxNearest = 3;
// No command's name is longer; comparing a longer hostile name would only waste time.
constexpr size_t kMaxCompared = 64;

constexpr std::chrono::seconds kUsualTime(30);

// Sorted by name, which is the value of the key.
class Descriptions {
  public:
    Descriptions(std::span<const embedded::Text> files, const char *key)
    {
        for (const embedded::Text &file : files) {
            trees_.emplace_back(cJSON_ParseWithLength(file.text.data(), file.text.size()));
            all_.emplace_back(trees_.back().get());
        }
        std::ranges::sort(all_, {}, [&](const Description &one) { return one[key].text(); });
        for (const Description &one : all_) {
            names_.push_back(one[key].text());
        }
    }

    const std::vector<Description> &all() const { return all_; }

    const Description *find(std::string_view name) const
    {
        const auto found = std::ranges::lower_bound(names_, name);
        return found != names_.end() && *found == name
                   ? &all_[static_cast<size_t>(found - names_.begin())]
                   : nullptr;
    }

  private:
    std::vector<Json> trees_; // the descriptions refer to parts of these
    std::vector<Description> all_;
    std::vector<std::string> names_; // in the same order
};

const Descriptions &known_commands()
{
    static const Descriptions all(embedded::protocol_commands(), "command");
    return all;
}

const Descriptions &known_events()
{
    static const Descriptions all(embedded::protocol_events(), "event");
    return all;
}

void collect_secret_keys(const Description &part, std::set<std::string> &keys)
{
    if (part["secret"].is_true() && part.contains("key")) {
        keys.insert(lower_case(part["key"].text()));
    }
    for (const Description &inner : part) {
        collect_secret_keys(inner, keys);
    }
}

} // namespace

const std::vector<Description> &descriptions()
{
    return known_commands().all();
}

const Description *find_description(std::string_view command)
{
    return known_commands().find(command);
}

std::chrono::seconds seconds_of(std::string_view command)
{
    const Description *description = find_description(command);
    return description != nullptr && description->contains("seconds")
               ? std::chrono::seconds((*description)["seconds"].number())
               : kUsualTime;
}

bool may_change(std::string_view command)
{
    const Description *description = find_description(command);
    return description == nullptr || (*description)["effect"] != "none";
}

const std::vector<Description> &events()
{
    return known_events().all();
}

const Description *find_event(std::string_view event)
{
    return known_events().find(event);
}

std::vector<std::string> nearest_commands(std::string_view name)
{
    const std::string wanted = lower_case(name.substr(0, kMaxCompared));
    std::vector<std::pair<size_t, std::string>> ranked;
    for (const Description &description : descriptions()) {
        const std::string command = description["command"].text();
        ranked.emplace_back(edit_distance(wanted, lower_case(command)), command);
    }
    std::sort(ranked.begin(), ranked.end());
    ranked.resize(std::min(ranked.size(), kMaxNearest));

    std::vector<std::string> names;
    names.reserve(ranked.size());
    for (const auto &[distance, command] : ranked) {
        names.push_back(command);
    }
    return names;
}

std::string no_such_command(std::string_view name)
{
    std::string message = "no command \"" + one_line(name, kMaxCompared) + "\"; the nearest are";
    const char *separator = " ";
    for (const std::string &command : nearest_commands(name)) {
        message += separator + command;
        separator = ", ";
    }
    return message;
}

const std::set<std::string> &secret_keys()
{
    static const std::set<std::string> all = [] {
        std::set<std::string> keys;
        for (const Description &description : descriptions()) {
            collect_secret_keys(description, keys);
        }
        return keys;
    }();
    return all;
}

} // namespace agent

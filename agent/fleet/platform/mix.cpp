// SPDX-License-Identifier: MIT
#include "fleet/platform/mix.h"

#include "embedded/fleet_mix.h"
#include "protocol/protocol.h"
#include "protocol/requests.h"
#include "service/common/toml_file.h"

#include <algorithm>

namespace agent::fleet::platform {

namespace {

using service::ConfigError;
using service::ConfigProblem;
using service::TomlReader;

constexpr double kMostWeight = 1e6; // a sum of weights has to be a number
constexpr std::string_view kSequence = "{sequence}";
constexpr std::string_view kGateway = "{gateway}";
// It would take back what the ledger says is set.
constexpr std::string_view kReset = "HG_LOCAL_RECOVERY";

void replace_all(std::string &text, std::string_view from, std::string_view with)
{
    for (size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + with.size())) {
        text.replace(at, from.size(), with);
    }
}

bool is_text_key(const Description &command, const std::string &name)
{
    for (const Description &key : command["request"]) {
        if (key["key"].text() == name) {
            return !key.contains("type") || key["type"] == "text";
        }
    }
    return false;
}

bool has_required_keys(const Description &command)
{
    for (const Description &key : command["request"]) {
        if (key["required"].is_true()) {
            return true;
        }
    }
    return false;
}

class MixReader {
  public:
    MixReader(std::string file) : file_(std::move(file)) {}

    Mix read(std::string_view text)
    {
        const toml::table table = service::parse_toml(text, file_);
        TomlReader reader(table, file_, "", problems_);
        read_entries(reader);
        reader.refuse_other_keys();
        if (!problems_.empty()) {
            throw ConfigError(problems_);
        }
        return std::move(mix_);
    }

  private:
    void read_entries(TomlReader &reader)
    {
        const toml::array *entries = reader.list("request");
        if (entries == nullptr || entries->empty()) {
            reader.add_problem(0, "request", "has to be given at least once, as [[request]]");
            return;
        }
        for (const toml::node &element : *entries) {
            if (const toml::table *entry = element.as_table()) {
                TomlReader one(*entry, file_, "request", problems_);
                read_entry(one, element.source().begin.line);
                one.refuse_other_keys();
            } else {
                reader.add_problem(element.source().begin.line, "request", "has to be a table");
            }
        }
    }

    void read_entry(TomlReader &reader, size_t line)
    {
        MixEntry entry;
        const std::string *command = reader.text("command");
        const auto weight = reader.number("weight");
        const std::string *params = reader.text("params");
        const std::string *value = reader.text("value");
        const auto values = reader.texts("values");
        const std::string *key = reader.text("key");
        if (weight && (*weight <= 0 || *weight > kMostWeight)) {
            reader.add_problem(reader.line_of("weight"), "weight",
                               "has to be above 0, and at most 1000000");
        }
        entry.weight = weight.value_or(1);
        if (command == nullptr) {
            reader.add_problem(line, "command", "has to be given");
            return;
        }
        const Description *description = find_description(*command);
        if (description == nullptr) {
            reader.add_problem(reader.line_of("command"), "command", no_such_command(*command));
            return;
        }
        if (*command == kReset) {
            reader.add_problem(reader.line_of("command"), "command",
                               "it would take back what the ledger says is set");
            return;
        }
        entry.command = *command;
        entry.description = *description;
        entry.tree.reset(cJSON_Parse(description->as_json().c_str()));
        entry.is_change = may_change(*command);
        entry.is_setting = (*description)["effect"] == "setting" && params == nullptr;
        if (entry.is_setting) {
            for (const auto &[text, at] : values) {
                entry.values.push_back(text);
            }
            if (value != nullptr) {
                entry.values.push_back(*value);
            }
            read_change(reader, line, entry, key);
        } else {
            for (const char *other : {"value", "values", "key"}) {
                if (reader.line_of(other) != 0) {
                    reader.add_problem(reader.line_of(other), other,
                                       "only a setting without params has one");
                }
            }
            read_params(reader, line, entry, params);
        }
        mix_.push_back(std::move(entry));
    }

    void read_change(TomlReader &reader, size_t line, MixEntry &entry, const std::string *key)
    {
        const Description change = entry.description["read_back"]["change"];
        entry.key = key != nullptr ? *key : change["key"].text();
        if (entry.values.empty() && entry.key == change["key"].text()) {
            entry.values = change["values"].texts();
        }
        if (!is_text_key(entry.description, entry.key)) {
            reader.add_problem(key != nullptr ? reader.line_of("key") : line, "key",
                               "has to be a key of the command with a text");
        } else if (entry.values.empty()) {
            reader.add_problem(line, "value", "has to be given for " + entry.command);
        }
        if (std::ranges::any_of(mix_, [&](const MixEntry &other) {
                return other.is_setting && other.command == entry.command;
            })) {
            reader.add_problem(line, "command", "the setting is given twice");
        }
    }

    void read_params(TomlReader &reader, size_t line, MixEntry &entry, const std::string *params)
    {
        if (params == nullptr) {
            if (has_required_keys(entry.description)) {
                reader.add_problem(line, "params", "has to be given for " + entry.command);
            }
            return;
        }
        try {
            parse_object(*params);
            entry.params = *params;
        } catch (const BadRequest &problem) {
            reader.add_problem(reader.line_of("params"), "params", problem.what());
        }
    }

    const std::string file_;
    std::vector<ConfigProblem> problems_;
    Mix mix_;
};

} // namespace

std::string MixEntry::value(std::string_view gateway, uint32_t sequence) const
{
    std::string text = values[sequence % values.size()];
    replace_all(text, kSequence, std::to_string(sequence));
    replace_all(text, kGateway, gateway);
    return text;
}

Mix parse_mix(std::string_view text, const std::string &file)
{
    return MixReader(file).read(text);
}

Mix read_mix(const std::string &path)
{
    return parse_mix(service::read_toml_file(path), path);
}

std::string_view default_mix()
{
    return embedded::fleet_mix().front().text;
}

} // namespace agent::fleet::platform

// SPDX-License-Identifier: MIT
#include "model/scenario.h"

#include "embedded/scenario_files.h"
#include "io/files.h"
#include "model/document.h"

#include <filesystem>
#include <map>
#include <mutex>

namespace simulated_gateway {

namespace {

// Never destroyed: other threads may open a gateway while the process ends.
struct Prepared {
    std::mutex mutex;
    std::map<std::string, Home> homes;
};
Prepared &prepared()
{
    static Prepared &only = *new Prepared;
    return only;
}

} // namespace

bool is_scenario_file(const std::string &name_or_file)
{
    return name_or_file.find('/') != std::string::npos || name_or_file.ends_with(".json");
}

std::vector<std::string> built_in_scenarios()
{
    std::vector<std::string> names;
    for (const embedded::Text &scenario : embedded::scenario_files()) {
        names.push_back(scenario_name(std::string(scenario.file_name)));
    }
    return names;
}

std::string scenario_name(const std::string &name_or_file)
{
    if (!is_scenario_file(name_or_file)) {
        return name_or_file;
    }
    return std::filesystem::path(name_or_file).stem().string();
}

namespace {

Home read_scenario(const std::string &name_or_file)
{
    if (is_scenario_file(name_or_file)) {
        return read_document<Home>(name_or_file, read_file(name_or_file), kScenarioFormat);
    }
    std::string names;
    for (const embedded::Text &scenario : embedded::scenario_files()) {
        const std::string name = scenario_name(std::string(scenario.file_name));
        if (name == name_or_file) {
            return read_document<Home>(name, scenario.text, kScenarioFormat);
        }
        names += (names.empty() ? "" : ", ") + name;
    }
    throw Error("there is no scenario " + in_quotes(name_or_file) + "; built in: " + names +
                "; a file is named with a '/' or ends in \".json\"");
}

} // namespace

Home load_scenario(const std::string &name_or_file)
{
    {
        const std::lock_guard lock(prepared().mutex);
        const auto found = prepared().homes.find(name_or_file);
        if (found != prepared().homes.end()) {
            return found->second;
        }
    }
    return read_scenario(name_or_file);
}

void prepare_scenario(const std::string &name_or_file)
{
    Home home = read_scenario(name_or_file);
    const std::lock_guard lock(prepared().mutex);
    prepared().homes.insert_or_assign(name_or_file, std::move(home));
}

} // namespace simulated_gateway

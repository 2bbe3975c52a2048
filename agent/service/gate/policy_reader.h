// SPDX-License-Identifier: MIT
// Reads a policy from the tables of a TOML file, either a separate file or a configuration.
#pragma once

#include "service/common/toml_file.h"
#include "service/gate/policy.h"

#include <map>
#include <string>
#include <vector>

namespace agent::service {

class PolicyReader {
  public:
    // Problems are appended to the list; if there are any, the policy must not be used.
    static Policy read(const toml::table &roles, const std::string &file,
                       std::vector<ConfigProblem> &problems);

  private:
    PolicyReader(const std::string &file, std::vector<ConfigProblem> &problems)
        : file_(file), problems_(problems)
    {
    }
    void read_role(const std::string &name, const toml::table &table, size_t line);
    void read_members(TomlReader &reader);
    void read_rules(TomlReader &reader, const char *key, bool allows, std::vector<Rule> &rules);
    std::optional<RateLimit> read_limit(TomlReader &reader);

    const std::string &file_;
    std::vector<ConfigProblem> &problems_;
    Policy policy_;
    std::map<std::string, size_t> line_of_member_;
};

} // namespace agent::service

// SPDX-License-Identifier: MIT
// TOML files for the service: of bounded size and depth, and every value with its line.
#pragma once

#include "service/common/config_error.h"
#include "toml_parser.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace agent::service {

// The file's text. Throws ConfigError, also if it is not a regular file: a pipe would block a
// running service.
std::string read_toml_file(const std::string &path);

// Throws ConfigError if the text is not TOML in UTF-8, too long or nested too deeply.
toml::table parse_toml(std::string_view text, const std::string &file);

// Reads the values of a table by their keys and collects validation errors. A key that was never
// read is an error as well.
class TomlReader {
  public:
    // The prefix names the table in messages: "limits".
    TomlReader(const toml::table &table, std::string file, std::string prefix,
               std::vector<ConfigProblem> &problems)
        : table_(table), file_(std::move(file)), prefix_(std::move(prefix)), problems_(problems)
    {
    }

    // Null, or nothing, if the key is absent or its value has another type.
    const toml::table *table(std::string_view key);
    const toml::array *list(std::string_view key);
    const std::string *text(std::string_view key);
    std::optional<int64_t> whole_number(std::string_view key);
    std::optional<double> number(std::string_view key);
    std::optional<bool> flag(std::string_view key);
    std::vector<std::pair<std::string, size_t>> texts(std::string_view key); // each with its line

    size_t line_of(std::string_view key) const;
    void add_problem(size_t line, std::string_view key, std::string text);
    // To be called when all keys have been read.
    void refuse_other_keys();

  private:
    const toml::node *find(std::string_view key);
    std::string full_key(std::string_view key) const;
    template <typename Value>
    const toml::value<Value> *value(std::string_view key, const char *expected);

    const toml::table &table_;
    const std::string file_;
    const std::string prefix_;
    std::vector<ConfigProblem> &problems_;
    std::vector<std::string> asked_;
};

} // namespace agent::service

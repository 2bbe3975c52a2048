// SPDX-License-Identifier: MIT
#include "service/common/config_error.h"

#include "io/exit_status.h"
#include "io/text.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace agent::service {

namespace {

constexpr size_t kMaxMessage = 1000;

std::vector<ConfigProblem> sorted(std::vector<ConfigProblem> problems)
{
    std::ranges::stable_sort(problems, {}, [](const ConfigProblem &one) {
        return std::tuple(std::string_view(one.file), one.line);
    });
    return problems;
}

std::string messages(const std::vector<ConfigProblem> &problems)
{
    std::string all;
    for (const ConfigProblem &problem : problems) {
        all += (all.empty() ? "" : "\n") + problem.message();
    }
    return all;
}

} // namespace

std::string in_message(std::string_view text)
{
    constexpr size_t kMaxShown = 64;
    return "\"" + one_line(text, kMaxShown) + "\"";
}

std::string ConfigProblem::message() const
{
    std::string place = file;
    if (line > 0) {
        place += ':' + std::to_string(line);
    }
    return one_line(place + ": " + (key.empty() ? "" : key + ": ") + text, kMaxMessage);
}

ConfigError::ConfigError(std::vector<ConfigProblem> problems)
    : std::runtime_error(messages(sorted(problems))), problems_(sorted(std::move(problems)))
{
}

int report_problems(const ConfigError &wrong)
{
    for (const ConfigProblem &problem : wrong.problems()) {
        print_error(problem.message());
    }
    return kWrongUsage;
}

} // namespace agent::service

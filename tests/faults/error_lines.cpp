// SPDX-License-Identifier: MIT
#include "error_lines.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>
#include <vector>

namespace {

constexpr int32_t kErrorLevel = 3;

// In one line. Numbers are results and positions, addresses and lines of the source.
std::string line_of(const std::string &text)
{
    static const std::regex number("-?[0-9]+");
    static const std::regex line_end("\n");
    static const std::regex carriage_return("\r");
    std::string line = std::regex_replace(text, number, "#");
    line = std::regex_replace(line, line_end, "\\n");
    return std::regex_replace(line, carriage_return, "\\r");
}

std::string listed(const std::string &title, const std::vector<std::string> &lines)
{
    std::string text;
    for (const std::string &line : lines) {
        text += title + line + '\n';
    }
    return text;
}

} // namespace

void add_error_lines(ErrorLines &lines, const Subject &subject, const SweepRun &run)
{
    for (const recording_host::LogLine &line : run.log) {
        if (line.level == kErrorLevel) {
            lines.insert(line_of(line.text));
        }
    }
    if (subject.builder != nullptr) {
        lines.insert("= " + std::to_string(run.result));
    }
}

std::string other_error_lines(const Subject &subject, const std::string &faults,
                              const ErrorLines &lines)
{
    const std::string start = subject.name + ' ' + faults + ": ";
    if (const char *file = getenv("ERROR_LINES")) {
        std::ofstream(file, std::ios::app) << listed(start, {lines.begin(), lines.end()});
        return "";
    }
    ErrorLines known;
    std::ifstream file(ERROR_LINES);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(start)) {
            known.insert(line.substr(start.size()));
        }
    }
    std::vector<std::string> added;
    std::vector<std::string> missing;
    std::set_difference(lines.begin(), lines.end(), known.begin(), known.end(),
                        back_inserter(added));
    std::set_difference(known.begin(), known.end(), lines.begin(), lines.end(),
                        back_inserter(missing));
    return listed("not in error_lines.txt: " + start, added) +
           listed("no longer logged: " + start, missing);
}

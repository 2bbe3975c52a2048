// SPDX-License-Identifier: MIT
#include "log_lines.h"

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

void add_lines(LinesLogged &lines, const SweepRun &run, bool are_errors)
{
    for (const recording_host::LogLine &line : run.log) {
        if ((line.level == kErrorLevel) == are_errors) {
            lines.insert(line_of(line.text));
        }
    }
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

void add_error_lines(LinesLogged &lines, const Subject &subject, const SweepRun &run)
{
    add_lines(lines, run, true);
    if (subject.builder != nullptr) {
        lines.insert("= " + std::to_string(run.result));
    }
}

void add_debug_lines(LinesLogged &lines, const SweepRun &run)
{
    add_lines(lines, run, false);
}

std::string other_log_lines(const Subject &subject, const std::string &kind,
                            const LinesLogged &lines)
{
    const std::string start = subject.name + ' ' + kind + ": ";
    if (const char *file = getenv("LOG_LINES")) {
        std::ofstream(file, std::ios::app) << listed(start, {lines.begin(), lines.end()});
        return "";
    }
    LinesLogged known;
    std::ifstream file(LOG_LINES);
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
    return listed("not in log_lines.txt: " + start, added) +
           listed("no longer logged: " + start, missing);
}

// SPDX-License-Identifier: MIT
#include "lines.h"

#include <algorithm>
#include <cstddef>

namespace fuzz {
namespace {

constexpr size_t kMost = 16;

} // namespace

std::vector<std::string> lines_of(std::string_view input)
{
    std::vector<std::string> lines;
    while (!input.empty() && lines.size() < kMost) {
        const size_t end = std::min(input.find('\n'), input.size());
        lines.emplace_back(input.substr(0, end));
        input.remove_prefix(std::min(end + 1, input.size()));
    }
    return lines;
}

std::string text_of(const std::vector<std::string> &lines)
{
    std::string text;
    for (const std::string &line : lines) {
        text += line + '\n';
    }
    return text;
}

void change_order(std::vector<std::string> &lines, Mutator &mutator)
{
    const size_t at = mutator.below(lines.size());
    const auto place = lines.begin() + static_cast<std::ptrdiff_t>(at);
    switch (mutator.below(3)) {
    case 0:
        lines.insert(place, std::string(lines[mutator.below(lines.size())]));
        break;
    case 1:
        lines.erase(place);
        break;
    default:
        std::swap(lines[at], lines[mutator.below(lines.size())]);
        break;
    }
}

std::vector<std::string> spliced(std::string_view first, std::string_view second, Mutator &mutator)
{
    std::vector<std::string> lines = lines_of(first);
    const std::vector<std::string> others = lines_of(second);
    lines.resize(mutator.below(lines.size() + 1));
    const size_t from = mutator.below(others.size() + 1);
    lines.insert(lines.end(), others.begin() + static_cast<std::ptrdiff_t>(from), others.end());
    return lines;
}

} // namespace fuzz

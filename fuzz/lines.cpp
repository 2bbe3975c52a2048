// SPDX-License-Identifier: MIT
#include "lines.h"

#include <algorithm>

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

} // namespace fuzz

extern "C" size_t LLVMFuzzerCustomCrossOver(const uint8_t *first, size_t first_size,
                                            const uint8_t *second, size_t second_size, uint8_t *out,
                                            size_t room, unsigned seed)
{
    fuzz::Mutator mutator(seed);
    const auto parts = fuzz::spliced(fuzz::lines_of(fuzz::text_of(first, first_size)),
                                     fuzz::lines_of(fuzz::text_of(second, second_size)), mutator);
    return fuzz::write_out(fuzz::text_of(parts), out, 0, room);
}

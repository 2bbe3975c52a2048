// SPDX-License-Identifier: MIT
// Changes to inputs that consist of parts: lines, or pieces.
#pragma once

#include "mutator.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace fuzz {

// Repeats a part, removes one, or swaps two. There has to be at least one.
template <class Part> void change_order(std::vector<Part> &parts, Mutator &mutator)
{
    const size_t at = mutator.below(parts.size());
    const auto place = parts.begin() + static_cast<std::ptrdiff_t>(at);
    switch (mutator.below(3)) {
    case 0:
        parts.insert(place, Part(parts[mutator.below(parts.size())]));
        break;
    case 1:
        parts.erase(place);
        break;
    default:
        std::swap(parts[at], parts[mutator.below(parts.size())]);
        break;
    }
}

// The start of one input and the end of another.
template <class Part>
std::vector<Part> spliced(std::vector<Part> parts, const std::vector<Part> &others,
                          Mutator &mutator)
{
    parts.resize(mutator.below(parts.size() + 1));
    const size_t from = mutator.below(others.size() + 1);
    parts.insert(parts.end(), others.begin() + static_cast<std::ptrdiff_t>(from), others.end());
    return parts;
}

} // namespace fuzz

// SPDX-License-Identifier: MIT
// For tests that do the same thing many times.
#pragma once

#include <cstdlib>

// The ordinary tests take each nth case, beginning at any; with WHOLE_TESTS in the environment, as
// tools/nightly.sh runs them, they take all.
inline int sample_of(int nth)
{
    return std::getenv("WHOLE_TESTS") != nullptr ? 1 : nth;
}

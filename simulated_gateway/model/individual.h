// SPDX-License-Identifier: MIT
// Many homes from one scenario: each differs in addresses, names, devices and habits.
#pragma once

#include "model/model.h"

#include <cstdint>

namespace simulated_gateway {

// Which of many homes.
struct HomeNumber {
    uint64_t seed = 0;
    uint32_t number = 0;
};

// Turns the home of a scenario into that of the number. The same number and seed give the same
// home; with the same seed, no two numbers have a MAC address in common.
void make_individual(Home &home, const HomeNumber &which);

} // namespace simulated_gateway

// SPDX-License-Identifier: MIT
// What quality-of-service rules match, and the ranges of its values.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

// What is wrong with the values of a type; empty if they are valid.
std::string validation_error(const Traffic &traffic);

} // namespace simulated_gateway

// What rules for quality of service compare, and between which values.
#pragma once

#include "model/model.h"

namespace simulated_gateway {

// What is wrong with the values of a type; nothing when they hold.
std::string complaint(const Traffic &traffic);

} // namespace simulated_gateway

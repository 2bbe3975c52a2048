// What the protocol says of commands, as pages for people.
#pragma once

#include "protocol/description.h"

#include <string>

namespace agent {

// Name and summary of the commands whose names contain the pattern or, where it has * ? or [, match
// it; upper or lower case is the same. Empty when there is none.
std::string list_page(const std::string &pattern);

// Everything that is described of one command.
std::string description_page(const Description &command);

} // namespace agent

// SPDX-License-Identifier: MIT
// A fast check for texts that are nearly always valid.
#pragma once

#include <string_view>

namespace agent {

// Whether the text is certainly JSON, in UTF-8 and without a NUL in its strings. false is
// inconclusive: a parser must decide whether it is JSON and report errors. Inconclusive are numbers
// with an exponent or of more than 63 characters, \u in strings, and more than 32 levels.
bool is_plain_json(std::string_view text);

} // namespace agent

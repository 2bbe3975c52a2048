// SPDX-License-Identifier: MIT
// A quick look at a text that is nearly always right.
#pragma once

#include <string_view>

namespace agent {

// Whether the text is JSON without doubt, in UTF-8 and without a NUL in its texts. false says
// nothing: a parser has to tell whether it is JSON, and what is wrong with it. In doubt are numbers
// with an exponent or of more than 63 characters, \u in texts, and more than 32 levels.
bool is_plain_json(std::string_view text);

} // namespace agent

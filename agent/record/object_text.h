// SPDX-License-Identifier: MIT
// Requests and replies as a recording has them.
#pragma once

#include "record/line_text.h"
#include "record/pseudonyms.h"

#include <cjson/cJSON.h>

#include <string_view>

namespace agent::record {

// Adds the object as a member of the line; the name gets the suffix _hex if the object is not
// UTF-8. Without pseudonyms, secrets are shown.
void add_object(LineText &line, std::string_view name, const cJSON *object,
                const Pseudonyms *pseudonyms);

// A text without its secrets as a JSON string, or as {"hex": ...}.
void add_shown(LineText &line, std::string_view text, const Pseudonyms *pseudonyms);

} // namespace agent::record

// SPDX-License-Identifier: MIT
// Members of the JSON objects of a recording.
#pragma once

#include "protocol/json.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace agent::record {

// Null if the object has none of this name, or is no object.
const cJSON *member(const cJSON *object, const char *name);

// A whole number that a double represents exactly. Nothing if the member is anything else.
std::optional<int64_t> number_in(const cJSON *object, const char *name);

// These take the value over and throw std::bad_alloc.
Json new_object();
void add_member(cJSON *object, const char *name, Json value);

// The bytes of a text of a recording. Nothing if it is not a text.
std::optional<std::string> decoded_text(const cJSON *text);
std::optional<std::string> bytes_of_hex(std::string_view digits);

// The inverse: a JSON string or, if it is not UTF-8 or contains a NUL, an object with the
// bytes in hexadecimal digits.
Json text_of_bytes(std::string_view bytes);

} // namespace agent::record

// SPDX-License-Identifier: MIT
#include "protocol/device_texts.h"

#include "io/text.h"

namespace agent {

namespace {

// The text of a device for a missing value.
constexpr char kNothing[] = "NULL";

} // namespace

std::string text_of(const cJSON *item, const char *key)
{
    const char *text = cJSON_GetStringValue(cJSON_GetObjectItemCaseSensitive(item, key));
    return text == nullptr || std::string(text) == kNothing ? "" : one_line(to_utf8(text));
}

std::string name_of(const cJSON *device)
{
    const std::string given = text_of(device, "ByName");
    return given.empty() ? text_of(device, "Name") : given;
}

} // namespace agent

// SPDX-License-Identifier: MIT
// Pseudonyms in a program that never makes any: it shows the values of a replay, which are
// pseudonyms already.
#include "record/pseudonyms.h"

namespace agent::record {

std::string Pseudonyms::text(std::string_view secret) const
{
    return std::string(secret);
}

std::string Pseudonyms::json(std::string_view value) const
{
    return std::string(value);
}

std::string Pseudonyms::without_secrets(std::string_view text) const
{
    return std::string(text);
}

bool may_contain_secrets(std::string_view /*text*/)
{
    return false;
}

} // namespace agent::record

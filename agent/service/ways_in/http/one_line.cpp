// SPDX-License-Identifier: MIT
#include "service/ways_in/http/one_line.h"

#include "io/text.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace agent::service {

std::optional<std::string> one_line_object(std::string_view text)
{
    const size_t begin = text.find_first_not_of(kSpace);
    if (begin == std::string_view::npos || text[begin] != '{' || !nlohmann::json::accept(text)) {
        return std::nullopt;
    }
    // In valid JSON, line ends are only between values.
    std::string line(text.substr(begin));
    std::ranges::replace(line, '\n', ' ');
    std::ranges::replace(line, '\r', ' ');
    return line;
}

} // namespace agent::service

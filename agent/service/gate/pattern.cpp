// SPDX-License-Identifier: MIT
#include "service/gate/pattern.h"

namespace agent::service {

bool matches(std::string_view pattern, std::string_view text)
{
    size_t at = 0;
    size_t read = 0;
    size_t star = std::string_view::npos; // position of the last star
    size_t taken = 0;                     // end of the text that it matches so far
    while (read < text.size()) {
        if (at < pattern.size() && pattern[at] == '*') {
            star = at++;
            taken = read;
        } else if (at < pattern.size() && (pattern[at] == '?' || pattern[at] == text[read])) {
            ++at;
            ++read;
        } else if (star != std::string_view::npos) {
            at = star + 1;
            read = ++taken;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

} // namespace agent::service

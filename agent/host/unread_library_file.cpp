// SPDX-License-Identifier: MIT
// Library files in builds that cannot read ELF: the loader reports what is wrong with one.
#include "host/library_file.h"

namespace agent {

bool is_cut_off(const std::string &)
{
    return false;
}

std::vector<std::string> missing_symbols(const std::string &)
{
    return {};
}

std::vector<std::string> needed_symbols(const std::string &)
{
    return {};
}

} // namespace agent

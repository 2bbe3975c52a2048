// SPDX-License-Identifier: MIT
// Checks of a shared library's file without loading it.
#pragma once

#include <string>
#include <vector>

namespace agent {

// Whether the file is shorter than its header says. Loading such a library would kill the process.
bool is_cut_off(const std::string &path);

// The library's undefined symbols that neither the loaded libraries nor the library's own
// dependencies provide. Empty when the file is not a library.
std::vector<std::string> missing_symbols(const std::string &path);

// The library's undefined symbols.
std::vector<std::string> needed_symbols(const std::string &path);

} // namespace agent

// SPDX-License-Identifier: MIT
// What can be said of a shared library's file without loading it.
#pragma once

#include <string>
#include <vector>

namespace agent {

// Whether the file ends before what its header says is in it. Loading such a library would kill the
// process.
bool is_cut_off(const std::string &path);

// The symbols that the library in the file leaves undefined and that nothing provides: neither what
// is loaded already nor the libraries that it needs itself. None when the file is no library.
std::vector<std::string> missing_symbols(const std::string &path);

// The symbols that the library in the file leaves undefined.
std::vector<std::string> needed_symbols(const std::string &path);

} // namespace agent

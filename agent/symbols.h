// What a shared library needs from the process that loads it.
#pragma once

#include <string>
#include <vector>

namespace agent
{

// The symbols that the library in the file leaves undefined and that nothing provides: neither what
// is loaded already nor the libraries that it needs itself. None when the file is no library.
std::vector<std::string> missing_symbols(const std::string &path);

} // namespace agent

// SPDX-License-Identifier: MIT
// Secrets in what is typed: the history must not keep them.
#pragma once

#include "shell/shell_line.h"

#include <span>
#include <string>
#include <string_view>

namespace agent {

// The line as the history keeps it: secret values, and what may be secret in addresses, are
// replaced by "***". Empty when that is not to be told from the rest.
std::string without_secrets(std::string_view line);

// Whether there is such a replacement among the words, where a secret belongs.
bool holds_mask(std::span<const ShellWord> words);

} // namespace agent

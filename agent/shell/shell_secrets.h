// SPDX-License-Identifier: MIT
// Masking of secrets in typed lines: the history must not keep them.
#pragma once

#include "shell/shell_line.h"

#include <span>
#include <string>
#include <string_view>

namespace agent {

// The line as the history keeps it: secret values, and parts of URLs that may be secret, are
// replaced by "***". Empty when secrets cannot be distinguished from the rest.
std::string without_secrets(std::string_view line);

// Whether any word contains such a replacement in place of a secret.
bool holds_mask(std::span<const ShellWord> words);

} // namespace agent

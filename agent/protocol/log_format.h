// SPDX-License-Identifier: MIT
// Renders printf formats for the log without secrets.
#pragma once

#include "protocol/secrets.h"

#include <cstdarg>
#include <string>

namespace agent {

// The text of a log call. Unless secrets are shown, an argument whose label in front of it names a
// secret is rendered as "***", regardless of its conversion, and JSON in a string argument is
// rendered with the values of its secret keys masked.
//
// Formats are trusted, their arguments are not. A format with an unsupported conversion (%n, %m,
// %ls, positions) is rendered without its arguments if it names a secret anywhere.
std::string format_log_text(bool show_secrets, const char *format, va_list arguments);

// The same with another mask for the secrets; null to show them.
std::string format_log_text(const SecretMask *mask, const char *format, va_list arguments);

} // namespace agent

// SPDX-License-Identifier: MIT
// Renders a printf format without what must not be in a log.
#pragma once

#include <cstdarg>
#include <string>

namespace agent {

// The text of a log call. Unless secrets are shown, an argument whose label in front of it names a
// secret is rendered as "***", whatever its conversion, and JSON in a text argument is rendered
// with the values of its secret keys masked.
//
// Formats are trusted, their arguments are not. A format with a conversion that is not understood
// (%n, %m, %ls, positions) is rendered without its arguments if it names a secret anywhere.
std::string format_log_text(bool show_secrets, const char *format, va_list arguments);

} // namespace agent

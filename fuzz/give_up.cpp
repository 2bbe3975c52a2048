// SPDX-License-Identifier: MIT
#include "give_up.h"

#include <cstdlib>
#include <unistd.h>

namespace fuzz {
namespace {

int error_output = STDERR_FILENO;

} // namespace

void keep_error_output()
{
    error_output = dup(STDERR_FILENO);
}

void give_up(const std::string &why, std::string_view text)
{
    const std::string message = why + (text.empty() ? "" : ": ") + std::string(text) + '\n';
    static_cast<void>(write(error_output, message.data(), message.size()));
    abort();
}

} // namespace fuzz

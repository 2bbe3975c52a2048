// SPDX-License-Identifier: MIT
// The user and the password for the broker.
#pragma once

#include <string>

namespace agent::service {

struct Credentials {
    std::string user;
    std::string password;
};

// A file with two lines, the user and the password; the second may be missing. Throws
// std::runtime_error, also if others than the file's owner may read it.
Credentials read_credentials(const std::string &path);

} // namespace agent::service

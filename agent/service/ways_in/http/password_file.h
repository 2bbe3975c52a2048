// SPDX-License-Identifier: MIT
// The users of the console: a file of lines USER:HASH, where HASH is as `argon2 -id -e` prints it.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace agent::service {

class PasswordFile {
  public:
    // Throws std::runtime_error, also when others than the file's owner may read it.
    static PasswordFile read(const std::string &path);
    // The same for a file's text. Throws std::runtime_error with the line.
    static PasswordFile parse(std::string_view text);

    // The user's hash. For an unknown user it is one that no password has, so that both take the
    // same time. Empty if there are no users at all.
    const std::string &hash_of(const std::string &user) const;
    bool has(const std::string &user) const { return hashes_.contains(user); }

  private:
    std::map<std::string, std::string, std::less<>> hashes_;
    std::string nobody_;
};

} // namespace agent::service

// SPDX-License-Identifier: MIT
// Who has logged in: the values of cookies. Only their digests are kept. The time is a parameter.
#pragma once

#include "service/common/request.h"

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace agent::service {

// 32 random bytes in hexadecimal.
std::string random_token();
// In a time that does not depend on where they differ.
bool is_same_secret(std::string_view left, std::string_view right);
std::string digest_of(std::string_view secret);
std::string in_hex(const unsigned char *bytes, size_t count);

struct Login {
    std::shared_ptr<const Identity> who;
    std::string id; // stands for the session in the gate; not the secret
};

class LoginSessions {
  public:
    using Time = std::chrono::steady_clock::time_point;

    void set_idle_time(std::chrono::seconds idle) { idle_ = idle; }

    // Result: the cookie's value.
    std::string open(std::shared_ptr<const Identity> who, Time now);
    // Nothing for an unknown or expired value.
    const Login *find(std::string_view value, Time now);
    // Whether the session still exists; it counts as used.
    bool touch(const std::string &id, Time now);
    void close(std::string_view value);
    // Closes those that the function selects.
    template <class Function> void close_if(Function is_over)
    {
        std::erase_if(sessions_, [&](const auto &one) { return is_over(one.second.login); });
    }
    size_t size() const { return sessions_.size(); }

  private:
    struct Session {
        Login login;
        Time begun;
        Time used;
    };
    bool is_over(const Session &session, Time now) const;

    std::chrono::seconds idle_{0};
    std::map<std::string, Session, std::less<>> sessions_; // by digest
};

} // namespace agent::service

// SPDX-License-Identifier: MIT
#include "service/ways_in/http/login_sessions.h"

#include <algorithm>
#include <array>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <stdexcept>
#include <sys/random.h>

namespace agent::service {

namespace {

constexpr size_t kMostSessions = 64;
constexpr std::chrono::hours kLongest(7 * 24);
constexpr size_t kTokenBytes = 32;

} // namespace

std::string in_hex(const unsigned char *bytes, size_t count)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (size_t at = 0; at < count; ++at) {
        text += kDigits[bytes[at] >> 4U];
        text += kDigits[bytes[at] & 15U];
    }
    return text;
}

std::string random_token()
{
    std::array<unsigned char, kTokenBytes> bytes = {};
    if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        throw std::runtime_error("the system has no random numbers");
    }
    return in_hex(bytes.data(), bytes.size());
}

bool is_same_secret(std::string_view left, std::string_view right)
{
    return left.size() == right.size() &&
           CRYPTO_memcmp(left.data(), right.data(), left.size()) == 0;
}

std::string digest_of(std::string_view secret)
{
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest = {};
    unsigned int size = 0;
    if (EVP_Digest(secret.data(), secret.size(), digest.data(), &size, EVP_sha256(), nullptr) !=
        1) {
        throw std::runtime_error("there is no SHA-256");
    }
    return in_hex(digest.data(), size);
}

bool LoginSessions::is_over(const Session &session, Time now) const
{
    return session.used + idle_ <= now || session.begun + kLongest <= now;
}

std::string LoginSessions::open(std::shared_ptr<const Identity> who, Time now)
{
    std::erase_if(sessions_, [&](const auto &one) { return is_over(one.second, now); });
    if (sessions_.size() >= kMostSessions) {
        sessions_.erase(std::ranges::min_element(sessions_, {},
                                                 [](const auto &one) { return one.second.used; }));
    }
    std::string value = random_token();
    std::string digest = digest_of(value);
    Session session{{std::move(who), digest}, now, now};
    sessions_.emplace(std::move(digest), std::move(session));
    return value;
}

const Login *LoginSessions::find(std::string_view value, Time now)
{
    const auto found = sessions_.find(digest_of(value));
    if (found == sessions_.end()) {
        return nullptr;
    }
    if (is_over(found->second, now)) {
        sessions_.erase(found);
        return nullptr;
    }
    found->second.used = now;
    return &found->second.login;
}

bool LoginSessions::touch(const std::string &id, Time now)
{
    const auto found = sessions_.find(id);
    if (found == sessions_.end() || is_over(found->second, now)) {
        return false;
    }
    found->second.used = now;
    return true;
}

void LoginSessions::close(std::string_view value)
{
    sessions_.erase(digest_of(value));
}

} // namespace agent::service

// SPDX-License-Identifier: MIT
// Which values are secret, and how they are masked in logs.
#pragma once

#include <string>
#include <string_view>

namespace agent {

constexpr char kMask[] = "***";

// Whether a value of this name is secret: the name ends in one of a short list of words such as
// "password", or the protocol's descriptions mark it as secret. Case is ignored.
bool is_secret_name(std::string_view name);

// Whether a reply of the command may contain a secret value, apart from those of its own request.
// Commands without a description are assumed to.
bool may_reply_secrets(std::string_view command);

// Whether the text labels what follows it as secret: its last word is a secret name, followed by
// nothing but punctuation ("Account:%s|Password:", "pwd = ").
bool labels_a_secret(std::string_view text);

// Disables core dumps of this process, regardless of their destination: secrets are in the
// simulated home, in JSON trees, on stacks and in libraries, so no part could safely be dumped.
void forbid_core_dumps();

// What a secret is replaced by.
class SecretMask {
  public:
    SecretMask() = default;
    virtual ~SecretMask() = default;
    SecretMask(const SecretMask &) = delete;
    SecretMask &operator=(const SecretMask &) = delete;

    // In place of a secret text.
    virtual std::string text(std::string_view secret) const = 0;
    // In place of a secret JSON value, which may be truncated.
    virtual std::string json(std::string_view value) const = 0;
};

// Replaces every secret by "***".
const SecretMask &stars();

// The text with the values of secret keys in every piece of JSON in it replaced, also in JSON
// within its strings; the rest is unchanged. Invalid or truncated JSON is masked as well.
std::string mask_json(std::string_view text, const SecretMask &mask = stars());

// A URL without the secrets that it may contain: its password, the values of its query, and its
// fragment after "#". The end of the password is ambiguous: the longest possible one is assumed.
std::string mask_address(std::string_view address, const SecretMask &mask = stars());

} // namespace agent

// SPDX-License-Identifier: MIT
// Pseudonyms in place of secrets: each character is a keyed digest of the secret up to there, so
// that a secret has the same pseudonym everywhere, of its length, and a truncated secret has a
// truncated pseudonym.
#pragma once

#include "protocol/secrets.h"

#include <array>
#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace agent::record {

using MaskKey = std::array<unsigned char, 16>;

MaskKey random_key();
// The key in the file, which is created with a random one if there is none. Throws
// std::system_error, and std::runtime_error if there is anything else in the file.
MaskKey key_of_file(const std::string &file);

class Pseudonyms : public SecretMask {
  public:
    explicit Pseudonyms(const MaskKey &key) : key_(key) {}

    // An empty text, "NULL" and "-1" stay: they stand for no value. So does "(null)" of the log.
    std::string text(std::string_view secret) const override;
    // The texts and numbers in the value have pseudonyms, with digits for digits of a number.
    std::string json(std::string_view value) const override;
    std::string number(std::string_view number) const;

    // The text without the secrets in JSON and in addresses in it.
    std::string without_secrets(std::string_view text) const;

    // A digest of the key.
    std::string key_digest() const;

  private:
    std::string made(std::string_view secret) const;

    const MaskKey key_;
    mutable std::mutex mutex_; // guards what follows
    mutable std::unordered_map<std::string, std::string> known_;
};

// Whether a text may contain secrets that without_secrets() replaces.
bool may_contain_secrets(std::string_view text);

// is_secret_name() at less cost for most names.
bool is_secret_member(std::string_view name);

} // namespace agent::record

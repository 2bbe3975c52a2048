// SPDX-License-Identifier: MIT
// Ed25519 signatures of firmware images, by keys in PEM files.
#pragma once

#include <memory>
#include <string>
#include <string_view>

struct evp_pkey_st;

namespace simulated_gateway {

constexpr size_t kSignatureSize = 64;

class SigningKey {
  public:
    // Reads an unencrypted private key. Throws an Error that names the file.
    explicit SigningKey(const std::string &file);

    // kSignatureSize bytes. Throws an Error.
    std::string sign(std::string_view bytes) const;

  private:
    std::shared_ptr<evp_pkey_st> key_;
};

class VerificationKey {
  public:
    // Reads a public key. Throws an Error that names the file.
    explicit VerificationKey(const std::string &file);

    bool verifies(std::string_view signature, std::string_view bytes) const;

  private:
    std::shared_ptr<evp_pkey_st> key_;
};

} // namespace simulated_gateway

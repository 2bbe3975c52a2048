// SPDX-License-Identifier: MIT
#include "io/sha256.h"

#include "io/text.h"

#include <openssl/evp.h>

namespace simulated_gateway {
namespace {

void require(bool success)
{
    if (!success) {
        throw Error("SHA-256 cannot be computed");
    }
}

} // namespace

Sha256::Sha256() : context_(EVP_MD_CTX_new(), EVP_MD_CTX_free)
{
    require(context_ != nullptr && EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr) == 1);
}

void Sha256::add(std::string_view bytes)
{
    require(EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()) == 1);
}

std::string Sha256::finish()
{
    unsigned char digest[kSize];
    require(EVP_DigestFinal_ex(context_.get(), digest, nullptr) == 1);
    return {digest, digest + kSize};
}

std::string hexadecimal(std::string_view bytes)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        text += digits[static_cast<unsigned char>(byte) >> 4];
        text += digits[static_cast<unsigned char>(byte) & 15];
    }
    return text;
}

} // namespace simulated_gateway

// SPDX-License-Identifier: MIT
#include "firmware/signature.h"

#include "io/files.h"
#include "io/text.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/pem.h>

namespace simulated_gateway {
namespace {

using Key = std::shared_ptr<EVP_PKEY>;
using Digest = std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX *)>;
using ReadKey = EVP_PKEY *(*)(BIO *, EVP_PKEY **, pem_password_cb *, void *);

// Replaces OpenSSL's own callback, which prompts at the terminal.
int no_password(char *, int, int, void *)
{
    return -1;
}

Key read_key(const std::string &file, ReadKey read, const char *kind)
{
    std::string text = read_file(file);
    const std::unique_ptr<BIO, void (*)(BIO *)> memory(
        BIO_new_mem_buf(text.data(), static_cast<int>(text.size())), BIO_free_all);
    Key key(memory ? read(memory.get(), nullptr, no_password, nullptr) : nullptr, EVP_PKEY_free);
    OPENSSL_cleanse(text.data(), text.size());
    if (key == nullptr || EVP_PKEY_get_id(key.get()) != EVP_PKEY_ED25519) {
        throw Error(file + ": is not " + kind + " Ed25519 key in PEM");
    }
    return key;
}

const unsigned char *bytes_of(std::string_view text)
{
    return reinterpret_cast<const unsigned char *>(text.data());
}

} // namespace

SigningKey::SigningKey(const std::string &file)
    : key_(read_key(file, PEM_read_bio_PrivateKey, "an unencrypted private"))
{
}

std::string SigningKey::sign(std::string_view bytes) const
{
    const Digest digest(EVP_MD_CTX_new(), EVP_MD_CTX_free);
    unsigned char signature[kSignatureSize];
    size_t size = sizeof(signature);
    if (digest == nullptr ||
        EVP_DigestSignInit(digest.get(), nullptr, nullptr, nullptr, key_.get()) != 1 ||
        EVP_DigestSign(digest.get(), signature, &size, bytes_of(bytes), bytes.size()) != 1) {
        throw Error("the image cannot be signed");
    }
    return {signature, signature + size};
}

VerificationKey::VerificationKey(const std::string &file)
    : key_(read_key(file, PEM_read_bio_PUBKEY, "a public"))
{
}

bool VerificationKey::verifies(std::string_view signature, std::string_view bytes) const
{
    const Digest digest(EVP_MD_CTX_new(), EVP_MD_CTX_free);
    return digest != nullptr &&
           EVP_DigestVerifyInit(digest.get(), nullptr, nullptr, nullptr, key_.get()) == 1 &&
           EVP_DigestVerify(digest.get(), bytes_of(signature), signature.size(), bytes_of(bytes),
                            bytes.size()) == 1;
}

} // namespace simulated_gateway

// SPDX-License-Identifier: MIT
// TLS by OpenSSL and Argon2 by its reference library, as a module.
#include "service/ways_in/http/security.h"

#include <argon2.h>
#include <array>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <stdexcept>

namespace agent::service {

namespace {

struct Deleter {
    void operator()(SSL *ssl) const { SSL_free(ssl); }
    void operator()(SSL_CTX *context) const { SSL_CTX_free(context); }
};

std::string first_error()
{
    std::array<char, 256> text = {};
    ERR_error_string_n(ERR_peek_error(), text.data(), text.size());
    ERR_clear_error();
    return text.data();
}

class OpenSslSession : public TlsSession {
  public:
    explicit OpenSslSession(SSL_CTX *context)
        : ssl_(SSL_new(context)), in_(BIO_new(BIO_s_mem())), out_(BIO_new(BIO_s_mem()))
    {
        if (ssl_ == nullptr || in_ == nullptr || out_ == nullptr) {
            throw std::bad_alloc();
        }
        SSL_set_bio(ssl_.get(), in_, out_); // which frees them
        SSL_set_accept_state(ssl_.get());
    }

    void receive(std::string_view encrypted) override
    {
        BIO_write(in_, encrypted.data(), static_cast<int>(encrypted.size()));
    }

    std::optional<size_t> read(char *buffer, size_t size) override
    {
        if (is_broken_) {
            return std::nullopt;
        }
        ERR_clear_error();
        size_t count = 0;
        const int result = SSL_read_ex(ssl_.get(), buffer, size, &count);
        if (result == 1) {
            return count;
        }
        return goes_on(result) ? std::optional<size_t>(0) : std::nullopt;
    }

    size_t write(std::string_view plain) override
    {
        if (is_broken_) {
            return 0;
        }
        ERR_clear_error();
        size_t count = 0;
        const int result = SSL_write_ex(ssl_.get(), plain.data(), plain.size(), &count);
        if (result != 1) {
            goes_on(result);
            return 0;
        }
        return count;
    }

    void end_output() override
    {
        if (!is_broken_ && SSL_is_init_finished(ssl_.get()) == 1) {
            SSL_shutdown(ssl_.get());
            ERR_clear_error();
        }
    }

    std::string take_output() override
    {
        std::string bytes(BIO_ctrl_pending(out_), '\0');
        if (!bytes.empty()) {
            BIO_read(out_, bytes.data(), static_cast<int>(bytes.size()));
        }
        return bytes;
    }

  private:
    // Whether the operation only lacks input.
    bool goes_on(int result)
    {
        const int reason = SSL_get_error(ssl_.get(), result);
        is_broken_ = reason == SSL_ERROR_SSL || reason == SSL_ERROR_SYSCALL;
        ERR_clear_error();
        return reason == SSL_ERROR_WANT_READ || reason == SSL_ERROR_WANT_WRITE;
    }

    std::unique_ptr<SSL, Deleter> ssl_;
    BIO *in_;
    BIO *out_;
    bool is_broken_ = false;
};

// Nothing but HTTP/1.1.
int choose_protocol(SSL *, const unsigned char **chosen, unsigned char *size,
                    const unsigned char *offered, unsigned int offered_size, void *)
{
    constexpr std::array<unsigned char, 9> kHttp = {8, 'h', 't', 't', 'p', '/', '1', '.', '1'};
    unsigned char *found = nullptr;
    if (SSL_select_next_proto(&found, size, kHttp.data(), kHttp.size(), offered, offered_size) !=
        OPENSSL_NPN_NEGOTIATED) {
        return SSL_TLSEXT_ERR_ALERT_FATAL;
    }
    *chosen = found;
    return SSL_TLSEXT_ERR_OK;
}

class OpenSslContext : public ServerTls {
  public:
    OpenSslContext(const std::string &certificate, const std::string &key)
        : context_(SSL_CTX_new(TLS_server_method()))
    {
        SSL_CTX *context = context_.get();
        if (context == nullptr) {
            throw std::bad_alloc();
        }
        SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION);
        SSL_CTX_set_options(context, SSL_OP_NO_RENEGOTIATION | SSL_OP_NO_COMPRESSION |
                                         SSL_OP_CIPHER_SERVER_PREFERENCE);
        SSL_CTX_set_mode(context, SSL_MODE_ENABLE_PARTIAL_WRITE |
                                      SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER |
                                      SSL_MODE_RELEASE_BUFFERS);
        SSL_CTX_set_session_cache_mode(context, SSL_SESS_CACHE_OFF);
        SSL_CTX_set_alpn_select_cb(context, choose_protocol, nullptr);
        // OpenSSL would ask for a pass phrase at the terminal, and the service would wait for it.
        SSL_CTX_set_default_passwd_cb(context, [](char *, int, int, void *) { return -1; });
        if (SSL_CTX_use_certificate_chain_file(context, certificate.c_str()) != 1) {
            throw std::runtime_error("cannot use the certificate " + certificate + ": " +
                                     first_error());
        }
        if (SSL_CTX_use_PrivateKey_file(context, key.c_str(), SSL_FILETYPE_PEM) != 1 ||
            SSL_CTX_check_private_key(context) != 1) {
            throw std::runtime_error("cannot use the key " + key + ": " + first_error());
        }
    }

    std::unique_ptr<TlsSession> accept() override
    {
        return std::make_unique<OpenSslSession>(context_.get());
    }

  private:
    std::unique_ptr<SSL_CTX, Deleter> context_;
};

class OwnSecurity : public Security {
  public:
    std::unique_ptr<ServerTls> make_context(const std::string &certificate_file,
                                            const std::string &key_file) const override
    {
        return std::make_unique<OpenSslContext>(certificate_file, key_file);
    }

    bool is_password(const std::string &argon2id_hash, std::string_view password) const override
    {
        return argon2id_verify(argon2id_hash.c_str(), password.data(), password.size()) ==
               ARGON2_OK;
    }
};

} // namespace

} // namespace agent::service

extern "C" __attribute__((visibility("default"))) const agent::service::Security *agent_security()
{
    static const agent::service::OwnSecurity security;
    return &security;
}

// SPDX-License-Identifier: MIT
#include "service/ways_in/mqtt/tls.h"

#include "service/ways_in/mqtt/broker_address.h"

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <stdexcept>

namespace agent::service {

struct TlsContext::State {
    SSL_CTX *context = nullptr;
    std::string name; // sent to the server; empty for an address
    std::string problem;

    State() = default;
    ~State() { SSL_CTX_free(context); }
    State(const State &) = delete;
    State &operator=(const State &) = delete;
};

namespace {

constexpr size_t kMaxAlpn = 255;

void require(bool is_good, const std::string &what)
{
    if (!is_good) {
        const unsigned long code = ERR_peek_last_error();
        const char *reason = code != 0 ? ERR_reason_error_string(code) : nullptr;
        ERR_clear_error();
        throw std::runtime_error(what + (reason != nullptr ? ": " + std::string(reason) : ""));
    }
}

void *state_of(const SSL *connection)
{
    return SSL_CTX_get_app_data(SSL_get_SSL_CTX(connection));
}

} // namespace

TlsContext::TlsContext(const TlsOptions &options, const std::string &host)
    : state_(std::make_unique<State>())
{
    ERR_clear_error();
    state_->context = SSL_CTX_new(TLS_client_method());
    SSL_CTX *const context = state_->context;
    require(context != nullptr && SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION) == 1,
            "cannot use TLS");
    if (options.ca.empty()) {
        require(SSL_CTX_set_default_verify_paths(context) == 1,
                "cannot read the certificates of the system");
    } else {
        require(SSL_CTX_load_verify_file(context, options.ca.c_str()) == 1,
                "cannot read " + options.ca);
    }
    // OpenSSL would ask for a pass phrase at the terminal, and the service would wait for it.
    SSL_CTX_set_default_passwd_cb(context, [](char *, int, int, void *) { return -1; });
    if (!options.certificate.empty()) {
        require(SSL_CTX_use_certificate_chain_file(context, options.certificate.c_str()) == 1,
                "cannot read " + options.certificate);
        require(SSL_CTX_use_PrivateKey_file(context, options.key.c_str(), SSL_FILETYPE_PEM) == 1,
                "cannot read " + options.key);
    }
    if (!options.alpn.empty()) {
        const std::string wire =
            static_cast<char>(std::min(options.alpn.size(), kMaxAlpn)) + options.alpn;
        require(SSL_CTX_set_alpn_protos(context,
                                        reinterpret_cast<const unsigned char *>(wire.data()),
                                        static_cast<unsigned>(wire.size())) == 0,
                "cannot use ALPN " + options.alpn);
    }
    const std::string &expected = options.server_name.empty() ? host : options.server_name;
    X509_VERIFY_PARAM *const check = SSL_CTX_get0_param(context);
    X509_VERIFY_PARAM_set_hostflags(check, X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
    if (is_address(expected)) {
        require(X509_VERIFY_PARAM_set1_ip_asc(check, expected.c_str()) == 1,
                "cannot check " + expected);
    } else {
        require(X509_VERIFY_PARAM_set1_host(check, expected.data(), expected.size()) == 1,
                "cannot check " + expected);
        state_->name = expected;
    }
    SSL_CTX_set_mode(context, SSL_MODE_RELEASE_BUFFERS);
    SSL_CTX_set_app_data(context, state_.get());
    SSL_CTX_set_verify(context, SSL_VERIFY_PEER, [](int is_good, X509_STORE_CTX *store) {
        if (is_good != 1) {
            const auto *connection = static_cast<SSL *>(
                X509_STORE_CTX_get_ex_data(store, SSL_get_ex_data_X509_STORE_CTX_idx()));
            static_cast<State *>(state_of(connection))->problem =
                X509_verify_cert_error_string(X509_STORE_CTX_get_error(store));
        }
        return is_good;
    });
    // libmosquitto has set the address as the server's name by then.
    SSL_CTX_set_info_callback(context, [](const SSL *connection, int where, int) {
        if ((where & SSL_CB_HANDSHAKE_START) != 0) {
            const std::string &name = static_cast<State *>(state_of(connection))->name;
            char *server = name.empty() ? nullptr : const_cast<char *>(name.c_str());
            SSL_set_tlsext_host_name(const_cast<SSL *>(connection), server);
        }
    });
}

TlsContext::~TlsContext() = default;

ssl_ctx_st *TlsContext::get() const
{
    return state_->context;
}

const std::string &TlsContext::problem() const
{
    return state_->problem;
}

} // namespace agent::service

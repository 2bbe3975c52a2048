// SPDX-License-Identifier: MIT
// TLS for connections to brokers. libmosquitto would check the certificate against the host that it
// connects to, which is an address here, because names are resolved elsewhere.
#pragma once

#include <memory>
#include <string>

struct ssl_ctx_st;

namespace agent::service {

struct TlsOptions {
    std::string ca;          // file; empty: the system's
    std::string certificate; // of this client; empty: none
    std::string key;
    std::string alpn;        // protocol's name; empty: none
    std::string server_name; // empty: the broker's host
};

class TlsContext {
  public:
    // The server's certificate has to be valid for the host. Reads the files; throws
    // std::runtime_error.
    TlsContext(const TlsOptions &options, const std::string &host);
    ~TlsContext();
    TlsContext(const TlsContext &) = delete;
    TlsContext &operator=(const TlsContext &) = delete;

    ssl_ctx_st *get() const;
    // Why the last certificate was rejected; empty if none was.
    const std::string &problem() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace agent::service

// SPDX-License-Identifier: MIT
// TLS and password hashes. Their libraries are in a module that is loaded when they are needed, so
// that other starts of the program do not pay for them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace agent::service {

// The server's end of a TLS connection, from bytes to bytes.
class TlsSession {
  public:
    TlsSession() = default;
    virtual ~TlsSession() = default;
    TlsSession(const TlsSession &) = delete;
    TlsSession &operator=(const TlsSession &) = delete;

    // Takes what the peer has sent.
    virtual void receive(std::string_view encrypted) = 0;
    // Result: how many bytes of plain text were written to the buffer, 0 if more has to be received
    // first; nothing: the peer has ended its output, or broken the protocol.
    virtual std::optional<size_t> read(char *buffer, size_t size) = 0;
    // Result: how many bytes were taken; 0 before the handshake is done, or after an error.
    virtual size_t write(std::string_view plain) = 0;
    virtual void end_output() = 0;
    // What is to be sent to the peer.
    virtual std::string take_output() = 0;
};

// A certificate and its key.
class ServerTls {
  public:
    ServerTls() = default;
    virtual ~ServerTls() = default;
    ServerTls(const ServerTls &) = delete;
    ServerTls &operator=(const ServerTls &) = delete;

    virtual std::unique_ptr<TlsSession> accept() = 0;
};

// What the module provides.
class Security {
  public:
    // Throws std::runtime_error when a file is not what it should be.
    virtual std::unique_ptr<ServerTls> make_context(const std::string &certificate_file,
                                                    const std::string &key_file) const = 0;
    // Takes long, on purpose. May be called from any thread.
    virtual bool is_password(const std::string &argon2id_hash, std::string_view password) const = 0;

  protected:
    ~Security() = default;
};

// The module. Throws std::runtime_error when it cannot be loaded.
const Security &load_security();

} // namespace agent::service

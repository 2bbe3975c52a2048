// SPDX-License-Identifier: MIT
// HTTP and WebSocket: the console in a browser, and programs. docs/service.md describes who may
// connect and what protects a client from pages of other sites.
#pragma once

#include "service/gate/gate.h"
#include "service/ways_in/http/login_limiter.h"
#include "service/ways_in/http/login_sessions.h"
#include "service/ways_in/http/origin.h"
#include "service/ways_in/http/password_checker.h"
#include "service/ways_in/http/password_file.h"
#include "service/ways_in/http/security.h"
#include "service/ways_in/http/static_files.h"
#include "service/ways_in/way_in.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace agent::service {

struct HttpOptions {
    // For TLS; without these only a loopback address can be served.
    std::string certificate;
    std::string key;
    std::string passwords;          // file of the users; empty: the token alone
    std::vector<std::string> names; // by which clients may call this host
    std::string folder;             // of the console; empty: the installed one
    size_t clients = 256;
    size_t body = 1024UL * 1024;           // bytes of a request's body or a message
    size_t pending = 4UL * 1024 * 1024;    // bytes that a client has not read
    std::chrono::seconds request_time{10}; // for a request to arrive, and for output to be read
    std::chrono::seconds idle_time{60};    // between two requests of a connection
    std::chrono::seconds session_time{12L * 3600}; // without a request
    bool is_simulated = false;                     // the device is the simulated gateway
    std::string uploads;                           // folder for firmware images
};

// A connection of either kind.
class HttpPeer {
  public:
    virtual ~HttpPeer() = default;
    virtual void close() = 0;
    // Closes once what is being answered has been written.
    virtual void close_when_done() = 0;
    // Since when it waits for a request; nothing while it is in use.
    virtual std::optional<std::chrono::steady_clock::time_point> idle_since() const = 0;
    // The login it depends on has ended.
    virtual void on_logout(const std::string &login) = 0;
};

class HttpServer : public WayIn {
  public:
    // address: ADDRESS:PORT; port 0 for any. Throws std::runtime_error.
    HttpServer(boost::asio::io_context &loop, Gate &gate, const std::string &address);
    ~HttpServer() override; // NOLINT(bugprone-exception-escape): as there

    // Before listen(), and while it is running. Throws std::runtime_error: the previous options
    // then stay in use.
    void set_options(HttpOptions options);
    // Throws std::runtime_error.
    void listen();

    // "http://127.0.0.1:8080/"
    std::string address() const;
    // Only the holders of the token can log in without a password; there is none on a network.
    bool has_token() const { return !token_.empty(); }
    std::string address_with_token() const { return address() + "#token=" + token_; }
    bool has_console() const { return files_.has_console(); }

    void stop_accepting() override;
    void on_empty(std::function<void()> done) override;

    // ---- For the connections.
    using Clock = std::chrono::steady_clock;
    boost::asio::io_context &loop() { return loop_; }
    Gate &gate() { return gate_; }
    const HttpOptions &options() const { return options_; }
    const StaticFiles &files() const { return files_; }
    const ListenAddress &listening() const { return listening_; }
    bool is_stopping() const { return is_stopping_; }
    int check_origin(const HttpRequest &request, const ListenAddress &local) const
    {
        return origins_.status(request, local);
    }
    // For Set-Cookie.
    std::string cookie(const std::string &value) const;
    // By its cookie or its bearer token; nothing: not logged in.
    std::optional<Login> login_of(const HttpRequest &request);
    bool is_login_open(const Login &login);
    bool is_token(std::string_view token) const;
    // Verifies the user's password and calls back later. Result: false when too many have tried.
    bool check_password(const std::string &address, const std::string &user, std::string password,
                        PasswordChecker::Done done);
    // One upload at a time. Result: whether it may begin.
    bool begin_upload() { return !std::exchange(is_uploading_, true); }
    void end_upload() { is_uploading_ = false; }
    // Result: the value of the cookie.
    std::string log_in(std::shared_ptr<const Identity> who);
    void log_out(const HttpRequest &request);
    std::shared_ptr<const Identity> token_holder() const { return token_holder_; }
    void add(const std::shared_ptr<HttpPeer> &peer) { peers_.insert(peer); }
    void remove(const std::shared_ptr<HttpPeer> &peer);

    // name: "http-user:alice".
    static std::shared_ptr<const Identity> identity_of(const std::string &name, bool is_owner);

  private:
    void end_logins_without(const PasswordFile &passwords);
    void report_logout(const std::string &login);
    void accept();
    void open(boost::asio::ip::tcp::socket socket);
    bool drop_an_idle_one();
    std::string cookie_name() const;
    std::string cookie_of(const HttpRequest &request) const;
    // The token or the session of a cookie or a bearer; empty if there is none.
    std::string secret_of(const HttpRequest &request) const;

    boost::asio::io_context &loop_;
    Gate &gate_;
    HttpOptions options_;
    StaticFiles files_;
    ListenAddress listening_;
    OriginCheck origins_{false, {}};
    std::string token_;
    std::shared_ptr<const Identity> token_holder_;
    LoginSessions logins_;
    std::unique_ptr<ServerTls> tls_;
    PasswordFile passwords_;
    LoginLimiter limiter_;
    std::optional<PasswordChecker> checker_;
    boost::asio::ip::tcp::acceptor acceptor_;
    boost::asio::steady_timer pause_;
    std::set<std::shared_ptr<HttpPeer>> peers_;
    bool is_uploading_ = false;
    bool is_stopping_ = false;
    std::function<void()> on_empty_;
};

} // namespace agent::service

// SPDX-License-Identifier: MIT
#include "service/ways_in/http/server.h"

#include "io/text.h"
#include "service/ways_in/http/connection.h"
#include "service/ways_in/http/tls_stream.h"

#include <algorithm>
#include <boost/asio/ip/v6_only.hpp>
#include <fcntl.h>
#include <stdexcept>
#include <utility>

namespace agent::service {

namespace {

using boost::asio::ip::tcp;
using boost::system::error_code;

constexpr std::chrono::milliseconds kAcceptAgain(100);
constexpr std::string_view kBearer = "bearer ";
constexpr char kTokenLogin[] = "token"; // of programs that send the token with each request

// A worker that inherits a connection would keep it open when the service closes it. Asio does not
// set the flag.
void keep_from_worker(int descriptor)
{
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
}

} // namespace

std::shared_ptr<const Identity> HttpServer::identity_of(const std::string &name, bool is_owner)
{
    auto who = std::make_shared<Identity>();
    who->way_in = "http";
    who->name = name;
    who->is_owner = is_owner;
    if (!is_owner) {
        who->principals.push_back(name);
    }
    return who;
}

HttpServer::HttpServer(boost::asio::io_context &loop, Gate &gate, const std::string &address)
    : loop_(loop), gate_(gate), listening_(ListenAddress::parse(address)), acceptor_(loop),
      pause_(loop)
{
    if (listening_.is_loopback) {
        token_ = random_token();
    }
    token_holder_ = identity_of("console", true);
}

// Closing fails only without memory, which ends the service.
HttpServer::~HttpServer() // NOLINT(bugprone-exception-escape)
{
    HttpServer::stop_accepting();
    on_empty_ = nullptr;
    for (const auto &peer : std::set(peers_)) {
        peer->close();
    }
}

void HttpServer::set_options(HttpOptions options)
{
    const bool has_tls = !options.certificate.empty();
    if (!listening_.is_loopback && (!has_tls || options.passwords.empty())) {
        throw std::runtime_error("other addresses than this host's own need a certificate, its key "
                                 "and passwords");
    }
    if (acceptor_.is_open() && has_tls != (tls_ != nullptr)) {
        throw std::runtime_error("only a restart turns TLS on or off");
    }
    // Everything that may fail comes before anything changes.
    std::unique_ptr<ServerTls> tls =
        has_tls ? load_security().make_context(options.certificate, options.key) : nullptr;
    PasswordFile passwords =
        options.passwords.empty() ? PasswordFile() : PasswordFile::read(options.passwords);
    StaticFiles files;
    files.load(options.folder.empty() ? default_console_folder() : options.folder);
    if (!options.passwords.empty() && !checker_) {
        checker_.emplace(loop_, load_security());
    }
    end_logins_without(passwords);
    tls_ = std::move(tls);
    passwords_ = std::move(passwords);
    files_ = std::move(files);
    origins_ = OriginCheck(has_tls, options.names);
    logins_.set_idle_time(options.session_time);
    options_ = std::move(options);
}

// A user who has been removed, or has another password, has to log in again.
void HttpServer::end_logins_without(const PasswordFile &passwords)
{
    std::vector<std::string> ended;
    logins_.close_if([&](const Login &login) {
        const std::string user = login.who->name.substr(login.who->name.find(':') + 1);
        const bool is_over =
            login.who != token_holder_ &&
            (!passwords.has(user) || passwords.hash_of(user) != passwords_.hash_of(user));
        if (is_over) {
            ended.push_back(login.id);
        }
        return is_over;
    });
    for (const std::string &login : ended) {
        report_logout(login);
    }
}

void HttpServer::listen()
{
    const tcp::endpoint place(boost::asio::ip::make_address(listening_.host), listening_.port);
    try {
        acceptor_.open(place.protocol());
        keep_from_worker(acceptor_.native_handle());
        acceptor_.set_option(tcp::acceptor::reuse_address(true));
        if (listening_.is_ipv6) {
            acceptor_.set_option(boost::asio::ip::v6_only(true));
        }
        acceptor_.bind(place);
        acceptor_.listen();
        listening_.port = acceptor_.local_endpoint().port();
    } catch (const boost::system::system_error &problem) {
        throw std::runtime_error("cannot listen at " + listening_.authority() + ": " +
                                 problem.code().message());
    }
    accept();
}

std::string HttpServer::address() const
{
    return (tls_ != nullptr ? "https://" : "http://") + listening_.authority() + "/";
}

void HttpServer::accept()
{
    acceptor_.async_accept([this](const error_code &problem, tcp::socket socket) {
        if (problem == boost::asio::error::operation_aborted || !acceptor_.is_open()) {
            return;
        }
        if (!problem) {
            open(std::move(socket));
            accept();
        } else if (drop_an_idle_one()) {
            accept();
        } else { // no descriptors left, and nothing to close for one
            pause_.expires_after(kAcceptAgain);
            pause_.async_wait([this](const error_code &cancelled) {
                if (!cancelled) {
                    accept();
                }
            });
        }
    });
}

void HttpServer::open(tcp::socket socket)
{
    keep_from_worker(socket.native_handle());
    if (peers_.size() >= options_.clients && !drop_an_idle_one()) {
        return; // closes the socket: everybody else is in use
    }
    error_code problem;
    socket.set_option(tcp::no_delay(true), problem);
    const tcp::endpoint own = socket.local_endpoint(problem);
    error_code unknown;
    const std::string peer = socket.remote_endpoint(unknown).address().to_string();
    if (problem || unknown) {
        return; // it has gone already
    }
    ListenAddress local;
    local.host = own.address().to_string();
    local.port = own.port();
    local.is_loopback = own.address().is_loopback();
    local.is_ipv6 = own.address().is_v6();
    auto stream = tls_ != nullptr ? make_tls_stream(loop_, std::move(socket), tls_->accept())
                                  : make_plain_stream(loop_, std::move(socket));
    const auto connection =
        std::make_shared<HttpConnection>(*this, std::move(stream), std::move(local), peer);
    peers_.insert(connection);
    connection->start();
}

// Closes the connection that has been waiting longest for a request, so that idle connections
// cannot keep others out.
bool HttpServer::drop_an_idle_one()
{
    std::shared_ptr<HttpPeer> oldest;
    for (const auto &peer : peers_) {
        if (peer->idle_since() &&
            (oldest == nullptr || *peer->idle_since() < *oldest->idle_since())) {
            oldest = peer;
        }
    }
    if (oldest == nullptr) {
        return false;
    }
    oldest->close();
    return true;
}

void HttpServer::remove(const std::shared_ptr<HttpPeer> &peer)
{
    peers_.erase(peer);
    if (peers_.empty() && on_empty_) {
        std::exchange(on_empty_, nullptr)();
    }
}

// All ports of a host share its cookies.
std::string HttpServer::cookie_name() const
{
    return "hgagent-" + std::to_string(listening_.port);
}

std::string HttpServer::cookie(const std::string &value) const
{
    return cookie_name() + "=" + value + "; HttpOnly; SameSite=Strict; Path=/" +
           (tls_ != nullptr ? "; Secure" : "");
}

std::string HttpServer::cookie_of(const HttpRequest &request) const
{
    const std::string begin = cookie_name() + "=";
    for (const auto &[name, value] : request.fields) {
        std::string_view rest = name == "cookie" ? std::string_view(value) : std::string_view();
        while (!rest.empty()) {
            const std::string_view pair = rest.substr(0, rest.find(';'));
            rest.remove_prefix(std::min(pair.size() + 1, rest.size()));
            const size_t start = std::min(pair.find_first_not_of(' '), pair.size());
            if (pair.substr(start).starts_with(begin)) {
                return std::string(pair.substr(start + begin.size()));
            }
        }
    }
    return "";
}

bool HttpServer::is_token(std::string_view token) const
{
    return has_token() && is_same_secret(token, token_);
}

bool HttpServer::check_password(const std::string &address, const std::string &user,
                                std::string password, PasswordChecker::Done done)
{
    if (!limiter_.take(address, Clock::now())) {
        return false;
    }
    if (!checker_) { // there are no users
        done(false);
        return true;
    }
    const std::string hash = passwords_.hash_of(user);
    // A reload may have removed the user or changed the password meanwhile.
    return checker_->check(hash, std::move(password),
                           [this, user, hash, done = std::move(done)](bool is_right) {
                               done(is_right && passwords_.hash_of(user) == hash);
                           });
}

std::string HttpServer::secret_of(const HttpRequest &request) const
{
    const std::string *given = request.find("authorization");
    if (given == nullptr) {
        return cookie_of(request);
    }
    const std::string_view text(*given);
    const bool is_bearer = same_text(text.substr(0, kBearer.size()), kBearer);
    return std::string(is_bearer ? text.substr(kBearer.size()) : std::string_view());
}

std::optional<Login> HttpServer::login_of(const HttpRequest &request)
{
    const std::string secret = secret_of(request);
    if (request.find("authorization") != nullptr && is_token(secret)) {
        return Login{token_holder_, kTokenLogin};
    }
    const Login *login = logins_.find(secret, Clock::now());
    return login != nullptr ? std::optional(*login) : std::nullopt;
}

bool HttpServer::is_login_open(const Login &login)
{
    return login.id == kTokenLogin || logins_.touch(login.id, Clock::now());
}

std::string HttpServer::log_in(std::shared_ptr<const Identity> who)
{
    return logins_.open(std::move(who), Clock::now());
}

void HttpServer::log_out(const HttpRequest &request)
{
    const std::string secret = secret_of(request);
    const Login *found = logins_.find(secret, Clock::now());
    if (found == nullptr) { // the console's token, which stays valid
        return;
    }
    const Login login = *found;
    logins_.close(secret);
    report_logout(login.id);
}

void HttpServer::report_logout(const std::string &login)
{
    for (const auto &peer : std::set(peers_)) {
        peer->on_logout(login);
    }
}

void HttpServer::stop_accepting()
{
    error_code ignored;
    acceptor_.close(ignored);
    pause_.cancel();
    is_stopping_ = true;
}

void HttpServer::on_empty(std::function<void()> done)
{
    on_empty_ = std::move(done);
    for (const auto &peer : std::set(peers_)) {
        peer->close_when_done();
    }
    if (peers_.empty() && on_empty_) {
        std::exchange(on_empty_, nullptr)();
    }
}

} // namespace agent::service

// SPDX-License-Identifier: MIT
// A WebSocket: its messages are the lines of `serve`.
#include "protocol/secrets.h"
#include "service/ways_in/http/handlers.h"
#include "service/ways_in/http/one_line.h"

#include <boost/asio/post.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/websocket/stream.hpp>

#include <deque>
#include <utility>

namespace agent::service {

namespace {

namespace websocket = boost::beast::websocket;
namespace http = boost::beast::http;
using boost::system::error_code;
using Clock = std::chrono::steady_clock;

constexpr int kPingFactor = 2;  // times the time for a request
constexpr int kMostSilence = 3; // pings without a sign of life

class WebSocket : public HttpPeer, public std::enable_shared_from_this<WebSocket>, Client {
  public:
    WebSocket(HttpServer &server, std::shared_ptr<HttpStream> stream, Login login)
        : server_(server), login_(std::move(login)), stream_(std::move(stream)),
          socket_(BeastStream(stream_)), ping_(server.loop())
    {
        websocket::stream_base::timeout times{};
        times.handshake_timeout = server.options().request_time;
        times.idle_timeout = websocket::stream_base::none();
        times.keep_alive_pings = false; // would end a socket that is not read from for a while
        socket_.set_option(times);
        socket_.read_message_max(server.options().body);
        socket_.text(true);
        socket_.control_callback(
            [this](websocket::frame_type, boost::beast::string_view) { silence_ = 0; });
    }

    void start(const HttpRequest &request)
    {
        auto handshake = std::make_shared<http::request<http::empty_body>>();
        handshake->method(http::verb::get);
        handshake->target(request.path);
        handshake->version(11);
        for (const auto &[name, value] : request.fields) {
            handshake->insert(name, value);
        }
        socket_.async_accept(*handshake,
                             [self = shared_from_this(), handshake](const error_code &problem) {
                                 if (problem) {
                                     self->close();
                                 } else if (self->is_open_) {
                                     self->begin();
                                 }
                             });
    }

    // Must not be called by the gate.
    void close() override
    {
        if (!is_open_) {
            return;
        }
        is_open_ = false;
        ping_.cancel();
        stream_->close();
        leave();
        server_.remove(shared_from_this());
    }

    void close_when_done() override { end_when_written(websocket::close_code::going_away); }
    std::optional<Clock::time_point> idle_since() const override { return std::nullopt; }

    void on_logout(const std::string &login) override
    {
        if (login == login_.id) {
            end(websocket::close_code::policy_error);
        }
    }

  private:
    void leave()
    {
        if (session_ != nullptr) {
            server_.gate().close(std::exchange(session_, nullptr));
        }
    }

    void begin()
    {
        session_ = server_.gate().open(login_.who, *this);
        arm_ping();
        read();
    }

    void end_when_written(websocket::close_code code)
    {
        last_code_ = code;
        if (out_.empty()) {
            end(code);
        }
    }

    void abort()
    {
        stream_->abort();
        close();
    }

    // Closes it with a close frame.
    void end(websocket::close_code code)
    {
        if (is_ending_ || !is_open_) {
            return;
        }
        is_ending_ = true;
        if (session_ == nullptr) {
            close(); // not accepted yet
            return;
        }
        arm_ping(); // a client that does not read would never see the close frame
        socket_.async_close(code,
                            [self = shared_from_this()](const error_code &) { self->close(); });
    }

    void read()
    {
        if (is_reading_ || !is_open_ || is_ending_ || !has_room() || Gate::is_full(*session_)) {
            return; // read() follows when there is room
        }
        is_reading_ = true;
        socket_.async_read(in_, [self = shared_from_this()](const error_code &problem, size_t) {
            self->is_reading_ = false;
            if (!self->is_open_ || self->is_ending_) {
                return;
            }
            if (problem) {
                // Beast has sent a close frame where that is possible.
                self->close();
                return;
            }
            self->take();
        });
    }

    void take()
    {
        silence_ = 0;
        if (!socket_.got_text()) {
            end(websocket::close_code::unknown_data);
            return;
        }
        const auto data = in_.data();
        submit({static_cast<const char *>(data.data()), data.size()});
        explicit_bzero(in_.data().data(), in_.size());
        in_.consume(in_.size());
        read();
    }

    void submit(std::string_view text)
    {
        Request request;
        if (text.find_first_of("\r\n") == std::string_view::npos) {
            request = read_request(text);
        } else if (const auto line = one_line_object(text)) {
            request = read_request(*line);
        } else {
            request.code = Code::kBadRequest;
            request.error = "the message is no JSON object";
        }
        request.hide_secrets = !request.shows_secrets;
        server_.gate().submit(*session_, std::move(request));
    }

    void on_answer(const Answer &answer) override { send(answer.line); }

    // Events cannot be held back like requests: a client that does not read them is disconnected.
    void on_event(std::string_view line) override
    {
        if (has_room()) {
            send(mask_json(line));
        } else {
            boost::asio::post(server_.loop(), [self = shared_from_this()] { self->abort(); });
        }
    }

    bool has_room() const override { return pending_ < server_.options().pending; }

    void on_less_full() override
    {
        boost::asio::post(server_.loop(), [self = shared_from_this()] { self->read(); });
    }

    void send(std::string_view text)
    {
        if (!is_open_ || is_ending_) {
            return;
        }
        pending_ += text.size();
        out_.emplace_back(text);
        if (out_.size() == 1) {
            // Deferred, because the gate may be delivering several answers.
            boost::asio::post(server_.loop(), [self = shared_from_this()] { self->write(); });
        }
    }

    void write()
    {
        if (!is_open_ || is_ending_ || out_.empty()) {
            return;
        }
        socket_.async_write(boost::asio::buffer(out_.front()),
                            [self = shared_from_this()](const error_code &problem, size_t) {
                                if (self->is_open_) {
                                    problem ? self->close() : self->on_written();
                                }
                            });
    }

    void on_written()
    {
        ++written_;
        pending_ -= out_.front().size();
        out_.pop_front();
        if (!out_.empty()) {
            write();
        } else if (last_code_) {
            end(*last_code_);
        } else if (session_ != nullptr) {
            server_.gate().resume(*session_);
            read();
        }
    }

    // Finds out whether the client is still there and still logged in.
    void arm_ping()
    {
        ping_.expires_after(server_.options().request_time * kPingFactor);
        ping_.async_wait([self = shared_from_this()](const error_code &problem) {
            if (problem || !self->is_open_) {
                return;
            }
            const bool is_stuck = !self->out_.empty() && self->written_before_ == self->written_;
            self->written_before_ = self->written_;
            if (self->is_ending_ || is_stuck ||
                (self->is_reading_ && ++self->silence_ > kMostSilence)) {
                self->abort();
                return;
            }
            if (!self->server_.is_login_open(self->login_)) {
                self->end(websocket::close_code::policy_error);
                return;
            }
            if (!self->is_pinging_) {
                self->is_pinging_ = true;
                self->socket_.async_ping({},
                                         [self](const error_code &) { self->is_pinging_ = false; });
            }
            self->arm_ping();
        });
    }

    HttpServer &server_;
    const Login login_;
    std::shared_ptr<HttpStream> stream_;
    websocket::stream<BeastStream, false> socket_;
    Session *session_ = nullptr;
    bool is_open_ = true;
    bool is_ending_ = false;
    bool is_reading_ = false;
    boost::beast::flat_buffer in_;
    std::deque<std::string> out_;
    size_t pending_ = 0;
    uint64_t written_ = 0;        // messages
    uint64_t written_before_ = 0; // at the previous ping
    bool is_pinging_ = false;
    int silence_ = 0;
    std::optional<websocket::close_code> last_code_; // when everything has been written
    boost::asio::steady_timer ping_;
};

class SocketHandler : public HttpHandler {
  public:
    SocketHandler(HttpConnection &connection, Login login)
        : connection_(connection), login_(std::move(login))
    {
    }

    size_t most_body() const override { return 0; }
    bool on_body(std::string_view) override { return true; }

    void run() override
    {
        HttpServer &server = connection_.server();
        // A client may send nothing before the handshake is done.
        if (!connection_.request().is_upgrade || connection_.has_input()) {
            connection_.respond(refusal(status::kBadRequest, "this is a WebSocket"));
            return;
        }
        const auto socket = std::make_shared<WebSocket>(server, connection_.release(), login_);
        server.add(socket);
        socket->start(connection_.request());
    }

  private:
    HttpConnection &connection_;
    const Login login_;
};

} // namespace

std::unique_ptr<HttpHandler> make_socket(HttpConnection &connection, Login login)
{
    return std::make_unique<SocketHandler>(connection, std::move(login));
}

} // namespace agent::service

// SPDX-License-Identifier: MIT
// A connection of HTTP/1.1: one request after the other.
#pragma once

#include "service/ways_in/http/gate_call.h"
#include "service/ways_in/http/request_reader.h"
#include "service/ways_in/http/response.h"
#include "service/ways_in/http/server.h"
#include "service/ways_in/http/stream.h"

#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace agent::service {

// What happens to a request after its header has been read.
class HttpHandler {
  public:
    virtual ~HttpHandler() = default;
    // How long the body may be.
    virtual size_t most_body() const = 0;
    // Whether only the pauses in the body are limited, not the time that all of it takes.
    virtual bool takes_long() const { return false; }
    // A part of the body. Result: false: the handler has already responded.
    virtual bool on_body(std::string_view part) = 0;
    // The request is complete. The handler responds now or later.
    virtual void run() = 0;
    // What an idle stream has to say from time to time; empty: nothing.
    virtual std::string heartbeat() const { return ""; }
    virtual void on_logout(const std::string &) {}
};

class HttpConnection : public HttpPeer, public std::enable_shared_from_this<HttpConnection> {
  public:
    HttpConnection(HttpServer &server, std::shared_ptr<HttpStream> stream, ListenAddress local,
                   std::string peer);

    void start();
    void close() override;
    void close_when_done() override;
    std::optional<std::chrono::steady_clock::time_point> idle_since() const override;
    void on_logout(const std::string &login) override;

    // ---- For the handlers. None of these calls back at once.
    HttpServer &server() { return server_; }
    const std::string &peer() const { return peer_; } // its address
    HttpRequest &request() { return reader_->request(); }
    void respond(HttpResponse response);
    // More of a response whose body has no end.
    void send(std::string text);
    size_t pending() const { return pending_; }
    // Closes it even if the client does not read.
    void abort();
    // Calls it from the loop, if the connection is still there then.
    template <class Function> void later(Function function)
    {
        boost::asio::post(server_.loop(), [self = shared_from_this(), function] {
            if (self->is_open_) {
                function(*self);
            }
        });
    }
    // Hands the stream over to a WebSocket; the connection is removed.
    std::shared_ptr<HttpStream> release();
    // Whether the client has sent, or may be sending, more than the request.
    bool has_input() const { return !in_.empty() || is_reading_; }

  private:
    enum class Phase {
        kWaiting, // for a request
        kReading, // one
        kRunning, // its handler
        kResponding,
        kStreaming, // a response without an end
        kEnding     // all is written; discards what the client still sends
    };

    void read();
    void on_read(const boost::system::error_code &problem, size_t count);
    void take();
    bool process();
    bool begin_request();
    void refuse(int status, std::string_view why);
    bool take_body();
    void write(std::string text);
    void write_next();
    void on_written();
    void end();
    void arm(std::chrono::milliseconds time);
    void on_deadline();
    void finish_request();

    HttpServer &server_;
    std::shared_ptr<HttpStream> stream_;
    const ListenAddress local_;
    const std::string peer_;
    bool is_open_ = true;
    bool is_last_ = false; // no request after this one
    bool is_gone_ = false; // the client has ended its output
    Phase phase_ = Phase::kWaiting;
    std::chrono::steady_clock::time_point since_;
    std::unique_ptr<RequestReader> reader_;
    std::unique_ptr<HttpHandler> handler_;
    bool has_header_ = false;
    size_t body_size_ = 0;
    std::string in_;
    std::string buffer_;
    bool is_reading_ = false;
    std::deque<std::shared_ptr<const std::string>> out_;
    size_t written_ = 0; // of the first one
    size_t pending_ = 0; // of all
    size_t discarded_ = 0;
    bool is_writing_ = false;
    bool keep_alive_ = false;
    boost::asio::steady_timer timer_;
};

} // namespace agent::service

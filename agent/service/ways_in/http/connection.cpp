// SPDX-License-Identifier: MIT
#include "service/ways_in/http/connection.h"

#include "service/ways_in/http/api.h"

#include <algorithm>
#include <boost/asio/post.hpp>

namespace agent::service {

namespace {

using Clock = std::chrono::steady_clock;
using boost::system::error_code;

constexpr size_t kReadSize = 16UL * 1024;
constexpr size_t kMostUnread = 64UL * 1024; // of a part that has to be read as a whole
constexpr size_t kMostDiscarded = 1024UL * 1024;
constexpr std::chrono::seconds kDiscardTime(2);
constexpr std::chrono::seconds kHeartbeat(15);

constexpr char kContinue[] = "HTTP/1.1 100 Continue\r\n\r\n";

} // namespace

HttpConnection::HttpConnection(HttpServer &server, std::shared_ptr<HttpStream> stream,
                               ListenAddress local, std::string peer)
    : server_(server), stream_(std::move(stream)), local_(std::move(local)), peer_(std::move(peer)),
      since_(Clock::now()), reader_(std::make_unique<RequestReader>()), buffer_(kReadSize, '\0'),
      timer_(server.loop())
{
}

void HttpConnection::start()
{
    arm(server_.options().request_time);
    read();
}

// Everything is dropped; an operation that is running keeps this object until it has ended. It must
// not be called by the handler or the gate, which later() is for.
void HttpConnection::close()
{
    if (!is_open_) {
        return;
    }
    is_open_ = false;
    timer_.cancel();
    handler_ = nullptr;
    stream_->close();
    out_.clear();
    pending_ = 0;
    server_.remove(shared_from_this());
}

void HttpConnection::abort()
{
    stream_->abort();
    close();
}

void HttpConnection::close_when_done()
{
    is_last_ = true;
    if (phase_ == Phase::kWaiting || phase_ == Phase::kReading || phase_ == Phase::kStreaming) {
        close();
    }
}

std::optional<Clock::time_point> HttpConnection::idle_since() const
{
    const bool is_uploading = handler_ != nullptr && handler_->takes_long();
    const bool is_idle = phase_ == Phase::kWaiting || (phase_ == Phase::kReading && !is_uploading);
    return is_idle ? std::optional(since_) : std::nullopt;
}

void HttpConnection::on_logout(const std::string &login)
{
    if (handler_ != nullptr) {
        handler_->on_logout(login);
    }
}

std::shared_ptr<HttpStream> HttpConnection::release()
{
    is_open_ = false;
    timer_.cancel();
    // It is the one that calls.
    boost::asio::post(server_.loop(), [self = shared_from_this()] { self->handler_ = nullptr; });
    server_.remove(shared_from_this());
    return stream_;
}

void HttpConnection::arm(std::chrono::milliseconds time)
{
    timer_.expires_after(time);
    timer_.async_wait([self = shared_from_this()](const error_code &problem) {
        if (!problem && self->is_open_) {
            self->on_deadline();
        }
    });
}

void HttpConnection::on_deadline()
{
    if (phase_ == Phase::kStreaming && !is_writing_) {
        const std::string beat = handler_->heartbeat();
        if (beat.empty()) {
            return;
        }
        send(beat);
    } else if (phase_ == Phase::kReading) {
        refuse(status::kRequestTimeout, "the request took too long to arrive");
    } else {
        is_writing_ ? abort() : close();
    }
}

void HttpConnection::read()
{
    if (is_reading_ || !is_open_) {
        return;
    }
    is_reading_ = true;
    stream_->read_some(boost::asio::buffer(buffer_),
                       [self = shared_from_this()](const error_code &problem, size_t count) {
                           self->is_reading_ = false;
                           if (self->is_open_) {
                               self->on_read(problem, count);
                           }
                       });
}

void HttpConnection::on_read(const error_code &problem, size_t count)
{
    if (problem) {
        is_gone_ = true;
        is_last_ = true;
        if (phase_ != Phase::kResponding) { // otherwise it may still read the response
            close();
        }
        return;
    }
    if (phase_ == Phase::kEnding || phase_ == Phase::kStreaming) {
        discarded_ += count;
        if (discarded_ > kMostDiscarded) {
            close();
        } else {
            read();
        }
        return;
    }
    in_.append(buffer_, 0, count);
    explicit_bzero(buffer_.data(), count); // it may contain a password
    if (phase_ == Phase::kWaiting || phase_ == Phase::kReading) {
        take();
    }
}

// Processes the bytes that have arrived, up to the end of a request.
void HttpConnection::take()
{
    using State = RequestReader::State;
    while (!in_.empty() && (phase_ == Phase::kWaiting || phase_ == Phase::kReading)) {
        if (phase_ == Phase::kWaiting) {
            phase_ = Phase::kReading;
            since_ = Clock::now();
            arm(server_.options().request_time);
        }
        const size_t taken = reader_->take(in_);
        const bool goes_on = process();
        in_.erase(0, taken);
        if (!goes_on) {
            return;
        }
        if (reader_->state() == State::kDone) {
            phase_ = Phase::kRunning;
            timer_.cancel();
            handler_->run();
            break; // reads on to notice when the client goes
        }
        if (taken == 0) {
            if (in_.size() > kMostUnread) {
                refuse(status::kBadRequest, "the request is malformed");
            }
            break;
        }
    }
    read();
}

// Processes what the reader has just taken. Result: false when there is a response already.
bool HttpConnection::process()
{
    if (reader_->state() == RequestReader::State::kBad) {
        refuse(reader_->problem_status(), "the request is malformed");
        return false;
    }
    if (reader_->state() == RequestReader::State::kHeader) {
        return true;
    }
    return has_header_ ? take_body() : begin_request();
}

// For requests after which the connection cannot be used again.
void HttpConnection::refuse(int status, std::string_view why)
{
    HttpResponse response = refusal(status, why);
    response.closes = true;
    respond(std::move(response));
}

// Result: whether the request's body is wanted.
bool HttpConnection::begin_request()
{
    has_header_ = true;
    keep_alive_ = request().keep_alive;
    const int problem = server_.check_origin(request(), local_);
    if (problem != 0) {
        refuse(problem, "the request is not meant for this server");
        return false;
    }
    HttpResponse refused;
    handler_ = make_handler(*this, refused);
    if (handler_ == nullptr) {
        respond(std::move(refused));
        return false;
    }
    if (reader_->announced_size() > handler_->most_body()) {
        respond(error_response(Code::kTooLarge, "the body is too long"));
        return false;
    }
    if (reader_->state() == RequestReader::State::kBody && request().is_http_11 &&
        request().has_word("expect", "100-continue")) {
        write(kContinue);
    }
    return true;
}

bool HttpConnection::take_body()
{
    const std::string_view part = reader_->body();
    body_size_ += part.size();
    if (!part.empty() && body_size_ > handler_->most_body()) {
        respond(error_response(Code::kTooLarge, "the body is too long"));
        return false;
    }
    if (!part.empty() && handler_->takes_long()) {
        arm(server_.options().request_time);
    }
    return part.empty() || handler_->on_body(part);
}

void HttpConnection::respond(HttpResponse response)
{
    if (!is_open_ || phase_ == Phase::kResponding || phase_ == Phase::kEnding) {
        return;
    }
    // A client that still sends its body has to stop.
    const bool is_whole = reader_->state() == RequestReader::State::kDone;
    keep_alive_ = keep_alive_ && is_whole && !response.closes && !is_last_ &&
                  !server_.is_stopping() && !response.is_stream;
    phase_ = response.is_stream ? Phase::kStreaming : Phase::kResponding;
    const bool has_body = response.body != nullptr && request().method != "HEAD" &&
                          response.status != status::kNotModified;
    write(header_of(response, keep_alive_, request().is_http_11));
    if (has_body && !response.body->empty()) {
        pending_ += response.body->size();
        out_.push_back(std::move(response.body));
    }
}

void HttpConnection::send(std::string text)
{
    if (is_open_ && phase_ == Phase::kStreaming) {
        write(std::move(text));
    }
}

void HttpConnection::write(std::string text)
{
    pending_ += text.size();
    out_.push_back(std::make_shared<const std::string>(std::move(text)));
    if (!is_writing_) {
        is_writing_ = true;
        later([](HttpConnection &self) { self.write_next(); });
    }
}

void HttpConnection::write_next()
{
    if (phase_ == Phase::kResponding) {
        handler_ = nullptr; // what it holds is free before the client has its response
    }
    if (phase_ == Phase::kResponding || phase_ == Phase::kStreaming) {
        arm(server_.options().request_time); // for each part, so that a long one may take longer
    }
    const auto text = out_.front();
    stream_->write_some(boost::asio::buffer(text->data() + written_, text->size() - written_),
                        [self = shared_from_this(), text](const error_code &problem, size_t count) {
                            if (!self->is_open_) {
                                return;
                            }
                            if (problem) {
                                self->close();
                                return;
                            }
                            self->written_ += count;
                            self->pending_ -= count;
                            if (self->written_ == text->size()) {
                                self->written_ = 0;
                                self->out_.pop_front();
                            }
                            if (!self->out_.empty()) {
                                self->write_next();
                                return;
                            }
                            self->is_writing_ = false;
                            self->on_written();
                        });
}

void HttpConnection::on_written()
{
    if (phase_ == Phase::kStreaming) {
        arm(kHeartbeat);
    } else if (phase_ == Phase::kResponding) {
        finish_request();
    }
}

void HttpConnection::finish_request()
{
    if (!keep_alive_ || is_last_) {
        end();
        return;
    }
    reader_ = std::make_unique<RequestReader>();
    has_header_ = false;
    body_size_ = 0;
    phase_ = Phase::kWaiting;
    since_ = Clock::now();
    arm(server_.options().idle_time);
    if (in_.empty()) {
        read();
    } else {
        take();
    }
}

// Closing at once, with input unread, could make the client lose the response.
void HttpConnection::end()
{
    stream_->end_output();
    if (is_gone_) {
        close();
        return;
    }
    phase_ = Phase::kEnding;
    arm(kDiscardTime);
    read();
}

} // namespace agent::service

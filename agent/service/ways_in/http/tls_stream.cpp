// SPDX-License-Identifier: MIT
#include "service/ways_in/http/tls_stream.h"

#include <boost/asio/error.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/write.hpp>

#include <string>
#include <utility>

namespace agent::service {

namespace {

using boost::asio::ip::tcp;
using boost::system::error_code;

constexpr size_t kRecord = 16UL * 1024;
// A client could demand answers of the protocol without reading them.
constexpr size_t kMostOutput = 128UL * 1024;

class TlsStream : public HttpStream, public std::enable_shared_from_this<TlsStream> {
  public:
    TlsStream(boost::asio::io_context &loop, tcp::socket socket,
              std::unique_ptr<TlsSession> session)
        : HttpStream(loop, std::move(socket)), session_(std::move(session)), raw_(kRecord, '\0')
    {
    }

    void read_some(boost::asio::mutable_buffer buffer, Done done) override
    {
        const auto count = session_->read(static_cast<char *>(buffer.data()), buffer.size());
        flush();
        if (!count) {
            finish(std::move(done), boost::asio::error::eof, 0);
        } else if (*count > 0) {
            finish(std::move(done), {}, *count);
        } else if (out_.size() > kMostOutput) {
            finish(std::move(done), boost::asio::error::no_buffer_space, 0);
        } else {
            receive(buffer, std::move(done));
        }
    }

    void write_some(boost::asio::const_buffer buffer, Done done) override
    {
        const size_t count = session_->write(
            {static_cast<const char *>(buffer.data()), std::min(buffer.size(), kRecord)});
        if (count == 0) {
            finish(std::move(done), boost::asio::error::broken_pipe, 0);
            return;
        }
        written_ = count;
        on_written_ = std::move(done);
        flush();
    }

    void end_output() override
    {
        session_->end_output();
        is_ending_ = true;
        flush();
    }

  private:
    void finish(Done done, error_code problem, size_t count)
    {
        boost::asio::post(loop_,
                          [done = std::move(done), problem, count] { done(problem, count); });
    }

    void receive(boost::asio::mutable_buffer buffer, Done done)
    {
        socket_.async_read_some(boost::asio::buffer(raw_),
                                [self = shared_from_this(), buffer,
                                 done = std::move(done)](const error_code &problem, size_t count) {
                                    if (problem) {
                                        done(problem, 0);
                                        return;
                                    }
                                    self->session_->receive({self->raw_.data(), count});
                                    self->read_some(buffer, done);
                                });
    }

    void flush()
    {
        out_ += session_->take_output();
        if (is_flushing_) {
            return;
        }
        if (out_.empty()) {
            if (is_ending_) {
                error_code ignored;
                socket_.shutdown(tcp::socket::shutdown_send, ignored);
            }
            if (on_written_) {
                finish(std::exchange(on_written_, nullptr), {}, written_);
            }
            return;
        }
        is_flushing_ = true;
        flushed_ = std::exchange(out_, {});
        boost::asio::async_write(socket_, boost::asio::buffer(flushed_),
                                 [self = shared_from_this()](const error_code &problem, size_t) {
                                     self->is_flushing_ = false;
                                     if (!problem) {
                                         self->flush();
                                     } else if (self->on_written_) {
                                         std::exchange(self->on_written_, nullptr)(problem, 0);
                                     }
                                 });
    }

    std::unique_ptr<TlsSession> session_;
    std::string raw_;
    std::string out_;
    std::string flushed_; // is being written
    bool is_flushing_ = false;
    bool is_ending_ = false;
    Done on_written_;
    size_t written_ = 0;
};

} // namespace

std::shared_ptr<HttpStream> make_tls_stream(boost::asio::io_context &loop, tcp::socket socket,
                                            std::unique_ptr<TlsSession> session)
{
    return std::make_shared<TlsStream>(loop, std::move(socket), std::move(session));
}

} // namespace agent::service

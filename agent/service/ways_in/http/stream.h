// SPDX-License-Identifier: MIT
// The bytes of a connection, with the interface that Beast requires of a stream. Its templates see
// only this class, whether the connection is encrypted or not.
#pragma once

#include <boost/asio/async_result.hpp>
#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core/role.hpp>

#include <functional>
#include <memory>
#include <utility>

namespace agent::service {

class HttpStream {
  public:
    using executor_type = boost::asio::io_context::executor_type;
    using Done = std::function<void(const boost::system::error_code &, size_t)>;

    virtual ~HttpStream() = default;
    HttpStream(const HttpStream &) = delete;
    HttpStream &operator=(const HttpStream &) = delete;

    // One of each at a time. The callback comes later, from the loop, and also after close().
    virtual void read_some(boost::asio::mutable_buffer buffer, Done done) = 0;
    virtual void write_some(boost::asio::const_buffer buffer, Done done) = 0;
    // Ends the output; the peer's input may still be read.
    virtual void end_output() = 0;
    void close();
    // Drops what the peer has not read; the system would keep it for minutes.
    void abort();

    executor_type get_executor() noexcept { return loop_.get_executor(); }

  protected:
    explicit HttpStream(boost::asio::io_context &loop, boost::asio::ip::tcp::socket socket)
        : loop_(loop), socket_(std::move(socket))
    {
    }

    boost::asio::io_context &loop_;
    boost::asio::ip::tcp::socket socket_;
};

// Without encryption.
std::shared_ptr<HttpStream> make_plain_stream(boost::asio::io_context &loop,
                                              boost::asio::ip::tcp::socket socket);

// The stream as Beast takes it.
class BeastStream {
  public:
    using executor_type = HttpStream::executor_type;

    explicit BeastStream(std::shared_ptr<HttpStream> stream) : stream_(std::move(stream)) {}

    executor_type get_executor() noexcept { return stream_->get_executor(); }
    HttpStream &base() { return *stream_; }

    template <class Buffers, class Handler>
    auto async_read_some(const Buffers &buffers, Handler &&handler)
    {
        return boost::asio::async_initiate<Handler, Signature>(
            [this](auto &&completion, boost::asio::mutable_buffer buffer) {
                stream_->read_some(buffer, shared(std::forward<decltype(completion)>(completion)));
            },
            handler, first<boost::asio::mutable_buffer>(buffers));
    }

    template <class Buffers, class Handler>
    auto async_write_some(const Buffers &buffers, Handler &&handler)
    {
        return boost::asio::async_initiate<Handler, Signature>(
            [this](auto &&completion, boost::asio::const_buffer buffer) {
                stream_->write_some(buffer, shared(std::forward<decltype(completion)>(completion)));
            },
            handler, first<boost::asio::const_buffer>(buffers));
    }

  private:
    using Signature = void(boost::system::error_code, size_t);

    template <class Buffer, class Buffers> static Buffer first(const Buffers &buffers)
    {
        for (auto at = boost::asio::buffer_sequence_begin(buffers);
             at != boost::asio::buffer_sequence_end(buffers); ++at) {
            const Buffer buffer = *at;
            if (buffer.size() > 0) {
                return buffer;
            }
        }
        return {};
    }

    // Completion handlers can only be moved, functions have to be copied.
    template <class Completion> static HttpStream::Done shared(Completion &&completion)
    {
        auto kept =
            std::make_shared<std::decay_t<Completion>>(std::forward<Completion>(completion));
        return [kept](const boost::system::error_code &problem, size_t count) {
            std::move (*kept)(problem, count);
        };
    }

    std::shared_ptr<HttpStream> stream_;
};

// Found by Beast through the type of the stream.
void beast_close_socket(BeastStream &stream);
void teardown(boost::beast::role_type role, BeastStream &stream,
              boost::system::error_code &problem);

template <class Handler>
void async_teardown(boost::beast::role_type, BeastStream &stream, Handler &&handler)
{
    stream.base().end_output();
    boost::asio::post(stream.get_executor(), [kept = std::make_shared<std::decay_t<Handler>>(
                                                  std::forward<Handler>(handler))] {
        std::move (*kept)(boost::system::error_code());
    });
}

} // namespace agent::service

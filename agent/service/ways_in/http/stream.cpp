// SPDX-License-Identifier: MIT
#include "service/ways_in/http/stream.h"

namespace agent::service {

namespace {

using boost::asio::ip::tcp;

class PlainStream : public HttpStream {
  public:
    PlainStream(boost::asio::io_context &loop, tcp::socket socket)
        : HttpStream(loop, std::move(socket))
    {
    }

    void read_some(boost::asio::mutable_buffer buffer, Done done) override
    {
        socket_.async_read_some(buffer, std::move(done));
    }

    void write_some(boost::asio::const_buffer buffer, Done done) override
    {
        socket_.async_write_some(buffer, std::move(done));
    }

    void end_output() override
    {
        boost::system::error_code ignored;
        socket_.shutdown(tcp::socket::shutdown_send, ignored);
    }
};

} // namespace

void HttpStream::close()
{
    boost::system::error_code ignored;
    socket_.close(ignored);
}

void HttpStream::abort()
{
    boost::system::error_code ignored;
    socket_.set_option(boost::asio::socket_base::linger(true, 0), ignored);
    close();
}

std::shared_ptr<HttpStream> make_plain_stream(boost::asio::io_context &loop, tcp::socket socket)
{
    return std::make_shared<PlainStream>(loop, std::move(socket));
}

void beast_close_socket(BeastStream &stream)
{
    stream.base().close();
}

void teardown(boost::beast::role_type, BeastStream &stream, boost::system::error_code &problem)
{
    stream.base().end_output();
    problem = {};
}

} // namespace agent::service

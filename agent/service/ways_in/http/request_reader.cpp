// SPDX-License-Identifier: MIT
#include "service/ways_in/http/request_reader.h"

#include "io/text.h"
#include "service/ways_in/http/response.h"

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/beast/http/basic_parser.hpp>
#include <boost/beast/http/error.hpp>
#include <boost/beast/http/rfc7230.hpp>
#include <limits>

namespace agent::service {

namespace {

namespace http = boost::beast::http;

constexpr uint32_t kMostHeader = 16U * 1024;
constexpr size_t kMostFields = 100;

int status_of(const boost::system::error_code &problem)
{
    if (problem == http::error::header_limit) {
        return status::kHeaderTooLarge;
    }
    return problem == http::error::bad_version ? status::kVersionNotSupported : status::kBadRequest;
}

int hex_digit(char letter)
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    const auto lower = static_cast<char>(letter >= 'A' && letter <= 'F' ? letter | 0x20 : letter);
    const size_t at = kDigits.find(lower);
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

} // namespace

const std::string *HttpRequest::find(std::string_view name) const
{
    const std::string *found = nullptr;
    for (const auto &[key, value] : fields) {
        if (key == name) {
            if (found != nullptr) {
                return nullptr;
            }
            found = &value;
        }
    }
    return found;
}

bool HttpRequest::has_word(std::string_view name, std::string_view word) const
{
    return std::ranges::any_of(fields, [&](const auto &field) {
        return field.first == name &&
               http::token_list(field.second).exists({word.data(), word.size()});
    });
}

std::string decoded(std::string_view text, bool plus_is_space)
{
    std::string plain;
    for (size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '%' && at + 2 < text.size() && hex_digit(text[at + 1]) >= 0 &&
            hex_digit(text[at + 2]) >= 0) {
            plain += static_cast<char>(hex_digit(text[at + 1]) * 16 + hex_digit(text[at + 2]));
            at += 2;
        } else {
            plain += text[at] == '+' && plus_is_space ? ' ' : text[at];
        }
    }
    return plain;
}

std::string HttpRequest::query_value(std::string_view key) const
{
    std::string_view rest = query;
    while (!rest.empty()) {
        const std::string_view pair = rest.substr(0, rest.find('&'));
        rest.remove_prefix(std::min(pair.size() + 1, rest.size()));
        const size_t equals = std::min(pair.find('='), pair.size());
        if (pair.substr(0, equals) == key) {
            return decoded(pair.substr(std::min(equals + 1, pair.size())), true);
        }
    }
    return "";
}

class RequestReader::Parser : public http::basic_parser<true> {
  public:
    Parser()
    {
        header_limit(kMostHeader);
        // It depends on the request, so the connection checks it.
        body_limit(std::numeric_limits<uint64_t>::max());
    }

    size_t take(std::string_view bytes)
    {
        body = {};
        if (problem_status != 0 || is_done()) {
            return 0;
        }
        boost::system::error_code problem;
        const size_t taken = put(boost::asio::buffer(bytes.data(), bytes.size()), problem);
        if (problem && problem != http::error::need_more) {
            problem_status = status_of(problem);
        }
        return taken;
    }

    HttpRequest request;
    std::string_view body;
    int problem_status = 0;

  private:
    using Error = boost::system::error_code;
    using Text = boost::beast::string_view;

    void on_request_impl(http::verb, Text method, Text target, int version, Error &problem) override
    {
        request.method.assign(method.data(), method.size());
        // Only the path of this server: no form for proxies, no fragment.
        if (target.empty() || target.front() != '/' || target.find('#') != Text::npos) {
            problem = http::error::bad_target;
            return;
        }
        const std::string_view text(target.data(), target.size());
        const size_t mark = std::min(text.find('?'), text.size());
        request.path = text.substr(0, mark);
        request.query = text.substr(std::min(mark + 1, text.size()));
        request.is_http_11 = version >= 11;
    }

    void on_response_impl(int, Text, int, Error &) override {}

    void on_field_impl(http::field name, Text name_text, Text value, Error &problem) override
    {
        if (request.fields.size() >= kMostFields) {
            problem = http::error::header_limit;
            return;
        }
        // With any other coding the body's end would be a matter of opinion.
        if (name == http::field::transfer_encoding &&
            (!boost::beast::iequals(value, "chunked") || !request.is_http_11)) {
            problem = http::error::bad_transfer_encoding;
            return;
        }
        request.fields.emplace_back(lower_case({name_text.data(), name_text.size()}),
                                    std::string(value.data(), value.size()));
    }

    void on_header_impl(Error &) override
    {
        request.keep_alive = keep_alive();
        request.is_upgrade = upgrade() && request.has_word("upgrade", "websocket");
    }

    void on_body_init_impl(const boost::optional<uint64_t> &, Error &) override {}

    size_t on_body_impl(Text bytes, Error &) override
    {
        body = {bytes.data(), bytes.size()};
        return bytes.size();
    }

    void on_chunk_header_impl(uint64_t, Text, Error &) override {}

    size_t on_chunk_body_impl(uint64_t, Text bytes, Error &) override
    {
        body = {bytes.data(), bytes.size()};
        return bytes.size();
    }

    void on_finish_impl(Error &) override {}
};

RequestReader::RequestReader() : parser_(std::make_unique<Parser>()) {}
RequestReader::~RequestReader() = default;

size_t RequestReader::take(std::string_view bytes)
{
    return parser_->take(bytes);
}

RequestReader::State RequestReader::state() const
{
    if (parser_->problem_status != 0) {
        return State::kBad;
    }
    if (parser_->is_done()) {
        return State::kDone;
    }
    return parser_->is_header_done() ? State::kBody : State::kHeader;
}

int RequestReader::problem_status() const
{
    return parser_->problem_status;
}

HttpRequest &RequestReader::request()
{
    return parser_->request;
}

size_t RequestReader::announced_size() const
{
    const auto size = parser_->content_length();
    return size ? static_cast<size_t>(*size) : 0;
}

std::string_view RequestReader::body() const
{
    return parser_->body;
}

} // namespace agent::service

// SPDX-License-Identifier: MIT
// Responses of HTTP/1.1.
#pragma once

#include "service/common/request.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace agent::service {

namespace status {
constexpr int kOk = 200;
constexpr int kNoContent = 204;
constexpr int kNotModified = 304;
constexpr int kBadRequest = 400;
constexpr int kUnauthorized = 401;
constexpr int kForbidden = 403;
constexpr int kNotFound = 404;
constexpr int kMethodNotAllowed = 405;
constexpr int kRequestTimeout = 408;
constexpr int kTooLarge = 413;
constexpr int kMisdirected = 421;
constexpr int kHeaderTooLarge = 431;
constexpr int kVersionNotSupported = 505;
constexpr int kNoStorage = 507;
} // namespace status

struct HttpResponse {
    int status = 200;
    std::vector<std::pair<std::string, std::string>> fields;
    std::shared_ptr<const std::string> body; // null: none
    bool is_stream = false;                  // the body has no end
    bool closes = false;                     // the connection, after it

    HttpResponse &add(std::string name, std::string value)
    {
        fields.emplace_back(std::move(name), std::move(value));
        return *this;
    }
};

HttpResponse empty_response(int status);
HttpResponse json_response(int status, std::string body);
// {"error": TEXT, "code": CODE}, with the status of the code.
HttpResponse error_response(Code code, std::string_view text);
// For errors of HTTP itself, which have no code.
HttpResponse refusal(int status, std::string_view text);
// The answer to a request of the gate, without its id.
HttpResponse answer_response(std::string_view line, Code code);

// The status line and the header, with the fields that every response has.
std::string header_of(const HttpResponse &response, bool keep_alive, bool is_http_11);

} // namespace agent::service

// SPDX-License-Identifier: MIT
#include "service/ways_in/http/response.h"

#include "protocol/json_text.h"

#include <algorithm>
#include <array>

namespace agent::service {

namespace {

struct Status {
    int number;
    const char *reason;
};

constexpr Status kStatuses[] = {
    {100, "Continue"},
    {200, "OK"},
    {201, "Created"},
    {204, "No Content"},
    {304, "Not Modified"},
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {408, "Request Timeout"},
    {413, "Content Too Large"},
    {421, "Misdirected Request"},
    {429, "Too Many Requests"},
    {431, "Request Header Fields Too Large"},
    {500, "Internal Server Error"},
    {502, "Bad Gateway"},
    {503, "Service Unavailable"},
    {504, "Gateway Timeout"},
    {505, "HTTP Version Not Supported"},
    {507, "Insufficient Storage"},
};

// In the order of Code.
constexpr std::array kStatusOfCode = {200, 400, 403, 429, 503, 504, 502, 413, 503};

constexpr char kBusySeconds[] = "1";
constexpr char kRebootSeconds[] = "5";

constexpr char kSecurityFields[] =
    "Content-Security-Policy: default-src 'none'; script-src 'self'; style-src 'self'; "
    "img-src 'self'; connect-src 'self'; base-uri 'none'; form-action 'none'; "
    "frame-ancestors 'none'\r\n"
    "X-Content-Type-Options: nosniff\r\n"
    "Referrer-Policy: no-referrer\r\n"
    "Cross-Origin-Opener-Policy: same-origin\r\n"
    "Cross-Origin-Resource-Policy: same-origin\r\n";

std::string_view reason_of(int status)
{
    const auto *found = std::ranges::find(kStatuses, status, &Status::number);
    return found != std::end(kStatuses) ? found->reason : "Error";
}

void add_retry(HttpResponse &response, Code code)
{
    if (code == Code::kRateLimited || code == Code::kBusy) {
        response.add("Retry-After", kBusySeconds);
    } else if (code == Code::kRebooting) {
        response.add("Retry-After", kRebootSeconds);
    }
}

bool has_field(const HttpResponse &response, std::string_view name)
{
    return std::ranges::any_of(response.fields,
                               [&](const auto &field) { return field.first == name; });
}

} // namespace

HttpResponse empty_response(int status)
{
    HttpResponse response;
    response.status = status;
    return response;
}

HttpResponse json_response(int status, std::string body)
{
    HttpResponse response = empty_response(status);
    response.add("Content-Type", "application/json");
    response.body = std::make_shared<const std::string>(std::move(body));
    return response;
}

HttpResponse error_response(Code code, std::string_view text)
{
    return answer_response(error_answer("null", code, text), code);
}

HttpResponse refusal(int status, std::string_view text)
{
    return json_response(status, R"({"error":)" + agent::quoted(text) + "}");
}

HttpResponse answer_response(std::string_view line, Code code)
{
    constexpr std::string_view kId = R"({"id":null,)";
    std::string body(line.starts_with(kId) ? line.substr(kId.size()) : line.substr(1));
    body.insert(body.begin(), '{');
    HttpResponse response =
        json_response(kStatusOfCode[static_cast<size_t>(code)], std::move(body));
    add_retry(response, code);
    return response;
}

std::string header_of(const HttpResponse &response, bool keep_alive, bool is_http_11)
{
    std::string text = is_http_11 ? "HTTP/1.1 " : "HTTP/1.0 ";
    text +=
        std::to_string(response.status) + " " + std::string(reason_of(response.status)) + "\r\n";
    for (const auto &[name, value] : response.fields) {
        text.append(name).append(": ").append(value).append("\r\n");
    }
    if (!response.is_stream && response.status != status::kNoContent &&
        response.status != status::kNotModified) {
        text += "Content-Length: " +
                std::to_string(response.body != nullptr ? response.body->size() : 0) + "\r\n";
    }
    if (!has_field(response, "Cache-Control")) {
        text += "Cache-Control: no-store\r\n";
    }
    text += keep_alive ? "Connection: keep-alive\r\n" : "Connection: close\r\n";
    return text + kSecurityFields + "\r\n";
}

} // namespace agent::service

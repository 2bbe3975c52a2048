// SPDX-License-Identifier: MIT
#include "service/ways_in/http/api.h"

#include "protocol/protocol.h"
#include "service/gate/policy_names.h"
#include "service/ways_in/http/documents.h"
#include "service/ways_in/http/firmware_upload.h"
#include "service/ways_in/http/handlers.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace agent::service {

namespace {

constexpr char kMetricsType[] = "text/plain; version=0.0.4; charset=utf-8";

using Made = std::unique_ptr<HttpHandler>;

// What the page needs to know of the client and of the service.
HttpResponse session_response(HttpConnection &connection, const Login &login)
{
    Gate &gate = connection.server().gate();
    const Policy &policy = gate.policy();
    const Identity &who = *login.who;
    const auto allowed = [&](Subject subject, const std::string &name) {
        return policy.decide(who, subject, name).allowed;
    };
    const auto verdict = policy.decide(who, Subject::kControl, kHello);
    nlohmann::ordered_json session = {
        {"who", who.name},
        {"role", verdict.role},
        {"secrets", verdict.sees_secrets},
        {"control", who.is_owner},
        {"commands", nlohmann::json::array()},
        {"reports", nlohmann::json::array()},
        {"service", HGAGENT_VERSION},
        {"protocol", kProtocolVersion},
        {"epoch", gate.epoch()},
        {"device", connection.server().options().is_simulated ? "simulated" : "other"}};
    for (const std::string &name : known_names(Subject::kCommand)) {
        if (allowed(Subject::kCommand, name)) {
            session["commands"].push_back(name);
        }
    }
    for (const std::string &name : known_names(Subject::kReport)) {
        if (allowed(Subject::kReport, name)) {
            session["reports"].push_back(name);
        }
    }
    return json_response(status::kOk, session.dump());
}

Made make_session(HttpConnection &connection, const Login &login, const std::string &)
{
    return make_simple(connection,
                       [&connection, login] { return session_response(connection, login); });
}

Made make_logout(HttpConnection &connection, const Login &, const std::string &)
{
    return make_simple(connection, [&connection] {
        HttpServer &server = connection.server();
        server.log_out(connection.request());
        HttpResponse response = empty_response(status::kNoContent);
        response.add("Set-Cookie", server.cookie("") + "; Max-Age=0");
        return response;
    });
}

Made make_command(HttpConnection &connection, const Login &login, const std::string &name)
{
    return make_request(connection, login, Subject::kCommand, name);
}

Made make_report(HttpConnection &connection, const Login &login, const std::string &name)
{
    return make_request(connection, login, Subject::kReport, name);
}

Made make_event_stream(HttpConnection &connection, const Login &login, const std::string &)
{
    return make_events(connection, login);
}

Made make_web_socket(HttpConnection &connection, const Login &login, const std::string &)
{
    return make_socket(connection, login);
}

Made make_protocol(HttpConnection &connection, const Login &, const std::string &)
{
    return make_simple(
        connection, [&connection] { return protocol_document().response(connection.request()); });
}

Made make_openapi(HttpConnection &connection, const Login &, const std::string &)
{
    return make_simple(connection,
                       [&connection] { return openapi_document().response(connection.request()); });
}

Made make_metrics(HttpConnection &connection, const Login &, const std::string &)
{
    return make_simple(connection, [&connection] {
        HttpResponse response = empty_response(status::kOk);
        response.add("Content-Type", kMetricsType);
        response.body = std::make_shared<const std::string>(connection.server().gate().metrics());
        return response;
    });
}

struct Route {
    std::string_view method;
    std::string_view path; // one that ends in "/" is followed by a name
    Made (*make)(HttpConnection &connection, const Login &login, const std::string &name);
};

constexpr Route kRoutes[] = {
    {"GET", "/api/session", make_session},
    {"POST", "/api/logout", make_logout},
    {"POST", "/api/command/", make_command},
    {"POST", "/api/report/", make_report},
    {"GET", "/api/events", make_event_stream},
    {"GET", "/api/socket", make_web_socket},
    {"GET", "/api/protocol.json", make_protocol},
    {"GET", "/api/openapi.json", make_openapi},
    {"GET", "/metrics", make_metrics},
};

bool matches(const Route &route, std::string_view path)
{
    return route.path.ends_with('/') ? path.starts_with(route.path) && path != route.path
                                     : path == route.path;
}

HttpResponse wrong_method(std::string_view allowed)
{
    HttpResponse response = refusal(status::kMethodNotAllowed, "the method is not allowed here");
    response.add("Allow", std::string(allowed));
    return response;
}

HttpResponse not_logged_in()
{
    HttpResponse response = refusal(status::kUnauthorized, "log in first");
    response.add("WWW-Authenticate", "Bearer");
    return response;
}

Made refuse(HttpResponse &refused, HttpResponse response)
{
    refused = std::move(response);
    return nullptr;
}

// Decided before the image is sent.
Made make_firmware(HttpConnection &connection, const Login &login, HttpResponse &refused)
{
    const Policy &policy = connection.server().gate().policy();
    auto verdict = policy.decide(*login.who, Subject::kCommand, "IMAGE_DOWNLOAD");
    if (!verdict.allowed) {
        verdict = policy.decide(*login.who, Subject::kCommand, "HG_IMAGE_UPDATE");
    }
    if (!verdict.allowed) {
        return refuse(refused,
                      answer_response(error_answer("null", Code::kDenied,
                                                   "the policy allows no update", verdict.rule),
                                      Code::kDenied));
    }
    return connection.server().begin_upload()
               ? make_firmware_upload(connection)
               : refuse(refused, error_response(Code::kBusy, "another image is being uploaded"));
}

} // namespace

Made make_handler(HttpConnection &connection, HttpResponse &refused)
{
    const HttpRequest &request = connection.request();
    if (const StaticFile *file = connection.server().files().find(request.path)) {
        return (request.method == "GET" || request.method == "HEAD")
                   ? make_simple(
                         connection,
                         // A copy: a reload replaces the files before the request is complete.
                         [&connection, copy = *file] {
                             return copy.response(connection.request());
                         })
                   : refuse(refused, wrong_method("GET, HEAD"));
    }
    if (request.path == "/api/login") {
        return request.method == "POST" ? make_login(connection)
                                        : refuse(refused, wrong_method("POST"));
    }
    // Without a login one does not learn what there is.
    const std::optional<Login> login = connection.server().login_of(request);
    if (!login) {
        return refuse(refused, not_logged_in());
    }
    if (request.path == "/api/firmware" && request.method == "PUT") {
        return make_firmware(connection, *login, refused);
    }
    const Route *found = nullptr;
    for (const Route &route : kRoutes) {
        if (matches(route, request.path)) {
            found = &route;
            if (request.method == route.method) {
                return route.make(connection, *login,
                                  decoded(request.path.substr(route.path.size()), false));
            }
        }
    }
    if (request.path == "/api/firmware") {
        return refuse(refused, wrong_method("PUT"));
    }
    return refuse(refused, found != nullptr ? wrong_method(found->method)
                                            : refusal(status::kNotFound, "there is no such path"));
}

} // namespace agent::service

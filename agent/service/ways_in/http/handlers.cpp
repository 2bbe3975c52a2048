// SPDX-License-Identifier: MIT
#include "service/ways_in/http/handlers.h"

#include "io/text.h"
#include "protocol/json_text.h"
#include "protocol/secrets.h"
#include "service/ways_in/http/one_line.h"

#include <boost/asio/post.hpp>
#include <nlohmann/json.hpp>
#include <utility>

namespace agent::service {

namespace {

constexpr size_t kMostLogin = 4096;
constexpr size_t kMostKey = 256;

class SimpleHandler : public HttpHandler {
  public:
    SimpleHandler(HttpConnection &connection, std::function<HttpResponse()> make)
        : connection_(connection), make_(std::move(make))
    {
    }

    size_t most_body() const override { return 0; }
    bool on_body(std::string_view) override { return true; }
    void run() override { connection_.respond(make_()); }

  private:
    HttpConnection &connection_;
    const std::function<HttpResponse()> make_;
};

// ---- Login --------------------------------------------------------------------------------------

// The text of a key in a JSON object; empty if there is none.
std::string text_in(const nlohmann::json &object, const char *key)
{
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

class LoginHandler : public BodyHandler {
  public:
    explicit LoginHandler(HttpConnection &connection) : BodyHandler(connection, kMostLogin) {}

    void run() override
    {
        const auto body = nlohmann::json::parse(body_, nullptr, false);
        if (!body.is_object()) {
            connection_.respond(error_response(Code::kBadRequest, "the body is no JSON object"));
            return;
        }
        HttpServer &server = connection_.server();
        if (body.contains("user")) {
            check_password(text_in(body, "user"), text_in(body, "password"));
        } else if (server.is_token(text_in(body, "token"))) {
            log_in(server.token_holder());
        } else {
            connection_.respond(refusal(status::kUnauthorized, "the token is wrong"));
        }
    }

  private:
    void check_password(const std::string &user, std::string password)
    {
        const bool is_checked = connection_.server().check_password(
            connection_.peer(), user, std::move(password),
            [this, user, alive = std::weak_ptr(alive_)](bool is_right) {
                if (alive.expired()) {
                    return; // the client has gone
                }
                if (is_right) {
                    log_in(HttpServer::identity_of("http-user:" + user, false));
                } else {
                    connection_.respond(
                        refusal(status::kUnauthorized, "the user or the password is wrong"));
                }
            });
        if (!is_checked) {
            HttpResponse response =
                error_response(Code::kRateLimited, "there have been too many logins");
            connection_.respond(std::move(response));
        }
    }

    void log_in(std::shared_ptr<const Identity> who)
    {
        HttpServer &server = connection_.server();
        HttpResponse response = empty_response(status::kNoContent);
        response.add("Set-Cookie", server.cookie(server.log_in(std::move(who))));
        connection_.respond(std::move(response));
    }

    const std::shared_ptr<int> alive_ = std::make_shared<int>();
};

// ---- Commands and reports -----------------------------------------------------------------------

class RequestHandler : public BodyHandler {
  public:
    RequestHandler(HttpConnection &connection, Login login, Subject subject, std::string name)
        : BodyHandler(connection, connection.server().options().body), login_(std::move(login)),
          subject_(subject), name_(std::move(name))
    {
    }

    void run() override
    {
        const auto params = one_line_object(body_.empty() ? "{}" : body_);
        if (!params) {
            connection_.respond(error_response(Code::kBadRequest, "the body is no JSON object"));
            return;
        }
        const std::string *key = connection_.request().find("idempotency-key");
        if (key != nullptr && key->size() > kMostKey) {
            connection_.respond(error_response(Code::kBadRequest, "Idempotency-Key is too long"));
            return;
        }
        Request request = read_request((subject_ == Subject::kCommand ? R"({"id":null,"command":)"
                                                                      : R"({"id":null,"report":)") +
                                       agent::quoted(name_) + R"(,"params":)" + *params + "}");
        request.hide_secrets = connection_.request().query_value("secrets") != "show";
        if (key != nullptr && !key->empty()) {
            request.repeat_key = login_.id + "\n" + *key;
        }
        call_.emplace(connection_.server().gate(), login_.who, [this](const Answer &answer) {
            connection_.respond(answer_response(answer.line, answer.code));
        });
        call_->submit(std::move(request));
    }

  private:
    const Login login_;
    const Subject subject_;
    const std::string name_;
    std::optional<GateCall> call_;
};

// ---- Server-sent events -------------------------------------------------------------------------

// The line of an event as {"event":NAME,"data":DATA}, in the form of an event stream.
std::string stream_event(std::string_view line)
{
    constexpr std::string_view kBegin = R"({"event":")";
    constexpr std::string_view kData = R"("data":)";
    const size_t name_end = agent::end_of_string(line, kBegin.size() - 1);
    const size_t data = line.find(kData, name_end);
    if (!line.starts_with(kBegin) || data == std::string_view::npos) {
        return "data: " + std::string(line) + "\n\n";
    }
    return "event: " + std::string(line.substr(kBegin.size(), name_end - 1 - kBegin.size())) +
           "\ndata: " +
           std::string(line.substr(data + kData.size(), line.size() - 1 - data - kData.size())) +
           "\n\n";
}

class EventsHandler : public HttpHandler, Client {
  public:
    EventsHandler(HttpConnection &connection, Login login)
        : connection_(connection), login_(std::move(login))
    {
    }
    ~EventsHandler() override
    {
        if (session_ != nullptr) {
            connection_.server().gate().close(session_);
        }
    }
    EventsHandler(const EventsHandler &) = delete;
    EventsHandler &operator=(const EventsHandler &) = delete;

    size_t most_body() const override { return 0; }
    bool on_body(std::string_view) override { return true; }

    void run() override
    {
        const std::string wanted = connection_.request().query_value("pattern");
        Gate &gate = connection_.server().gate();
        session_ = gate.open(login_.who, *this);
        gate.submit(*session_, read_request(R"({"id":null,"subscribe":)" +
                                            agent::quoted(wanted.empty() ? "*" : wanted) + "}"));
    }

    // A comment; also finds out whether the login has expired.
    std::string heartbeat() const override
    {
        if (connection_.server().is_login_open(login_)) {
            return ":\n\n";
        }
        close_soon();
        return "";
    }

    void on_logout(const std::string &login) override
    {
        if (login == login_.id) {
            close_soon();
        }
    }

  private:
    void on_answer(const Answer &answer) override
    {
        if (answer.code != Code::kNone) {
            connection_.respond(answer_response(answer.line, answer.code));
            return;
        }
        HttpResponse response;
        response.is_stream = true;
        response.add("Content-Type", "text/event-stream");
        connection_.respond(std::move(response));
    }

    void on_event(std::string_view line) override
    {
        if (has_room()) {
            connection_.send(stream_event(mask_json(line)));
        } else {
            close_soon();
        }
    }

    bool has_room() const override
    {
        return connection_.pending() < connection_.server().options().pending;
    }

    void on_less_full() override {}

    void close_soon() const
    {
        connection_.later([](HttpConnection &connection) { connection.abort(); });
    }

    HttpConnection &connection_;
    const Login login_;
    Session *session_ = nullptr;
};

} // namespace

BodyHandler::~BodyHandler()
{
    explicit_bzero(body_.data(), body_.size());
}

std::unique_ptr<HttpHandler> make_simple(HttpConnection &connection,
                                         std::function<HttpResponse()> respond)
{
    return std::make_unique<SimpleHandler>(connection, std::move(respond));
}

std::unique_ptr<HttpHandler> make_login(HttpConnection &connection)
{
    return std::make_unique<LoginHandler>(connection);
}

std::unique_ptr<HttpHandler> make_request(HttpConnection &connection, Login login, Subject subject,
                                          std::string name)
{
    return std::make_unique<RequestHandler>(connection, std::move(login), subject, std::move(name));
}

std::unique_ptr<HttpHandler> make_events(HttpConnection &connection, Login login)
{
    return std::make_unique<EventsHandler>(connection, std::move(login));
}

} // namespace agent::service

// SPDX-License-Identifier: MIT
#include "client/service_client.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <future>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace agent {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// The other end of the socket.
class ServiceClientTest : public testing::Test {
  protected:
    ServiceClientTest()
    {
        char name[] = "/tmp/service_client_XXXXXX";
        folder_ = mkdtemp(name);
        path_ = folder_ + "/socket";
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        strncpy(address.sun_path, path_.c_str(), sizeof(address.sun_path) - 1);
        listener_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        EXPECT_EQ(bind(listener_, reinterpret_cast<sockaddr *>(&address), sizeof(address)), 0);
        listen(listener_, 8);
    }
    ~ServiceClientTest() override
    {
        close(listener_);
        close(peer_);
        std::filesystem::remove_all(folder_);
    }

    void accept() { peer_ = ::accept(listener_, nullptr, nullptr); }
    void send(std::string_view text) const
    {
        EXPECT_EQ(write(peer_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    std::string read_line() const
    {
        std::string line(8UL * 1024 * 1024, '\0');
        size_t size = 0;
        ssize_t count = 1;
        while (count > 0 && (size == 0 || line[size - 1] != '\n')) {
            count = read(peer_, line.data() + size, line.size() - size);
            size += count > 0 ? static_cast<size_t>(count) : 0;
        }
        line.resize(line.find('\n'));
        return line;
    }

    // Answers one request with the text, and returns the request.
    std::future<std::string> answer_with(std::string text)
    {
        return std::async(std::launch::async, [this, text = std::move(text)] {
            std::string line = read_line();
            send(text);
            return line;
        });
    }

    std::string folder_;
    std::string path_;
    int listener_ = -1;
    int peer_ = -1;
};

std::string error_of(const std::function<void()> &act)
{
    try {
        act();
    } catch (const ServiceError &problem) {
        return problem.what();
    }
    return "";
}

TEST_F(ServiceClientTest, AsksAndIsAnswered)
{
    ServiceClient client(path_);
    accept();
    auto request = answer_with("{\"id\":1,\"result\":0,\"reply\":{\"Status\":\"0\"}}\n");
    const ServiceAnswer answer = client.ask(command_request("A\"B", "{\"k\":1}"));
    EXPECT_EQ(request.get(), R"({"id":1,"command":"A\"B","params":{"k":1}})");
    EXPECT_EQ(answer.result, 0);
    EXPECT_EQ(answer.error, "");
    EXPECT_STREQ(cJSON_GetStringValue(cJSON_GetObjectItem(answer.reply.get(), "Status")), "0");
    request = answer_with("{\"id\":2,\"error\":\"no\",\"code\":\"denied\",\"rule\":\"r\"}\n");
    const ServiceAnswer denied = client.ask(report_request("home-page", "{}"));
    EXPECT_EQ(request.get(), R"({"id":2,"report":"home-page","params":{}})");
    EXPECT_EQ(denied.error, "no");
    EXPECT_EQ(denied.code, "denied");
    EXPECT_EQ(denied.rule, "r");
    EXPECT_EQ(denied.reply, nullptr);
}

TEST_F(ServiceClientTest, PassesOverAnswersToOthersAndHandsOutEvents)
{
    std::vector<std::string> events;
    ServiceClient client(path_, [&](const std::string &name, const cJSON *data) {
        events.push_back(name + (data != nullptr ? "+" : "-"));
    });
    accept();
    auto request = answer_with("{\"id\":7,\"result\":5}\n{\"id\":\"1\",\"result\":6}\n"
                               "{\"event\":\"a.b\",\"data\":{}}\n{\"event\":\"c\"}\n{\"new\":1}\n"
                               "{\"id\":1,\"result\":-3}\n");
    EXPECT_EQ(client.ask(hello_request()).result, -3);
    EXPECT_EQ(request.get(), R"({"id":1,"hello":{}})");
    EXPECT_THAT(events, ElementsAre("a.b+", "c-"));
}

TEST_F(ServiceClientTest, DropsAnAnswerThatComesTooLate)
{
    ServiceClient client(path_);
    accept();
    client.begin(hello_request());
    client.begin(hello_request());
    send("{\"id\":1,\"result\":5}\n");
    client.work();
    EXPECT_FALSE(client.take_answer());
    send("{\"id\":2,\"result\":6}\n");
    client.work();
    EXPECT_EQ(client.take_answer().value().result, 6);
    EXPECT_FALSE(client.take_answer());
}

TEST_F(ServiceClientTest, TakesAnErrorWithoutAnId)
{
    ServiceClient client(path_);
    accept();
    auto request = answer_with("{\"id\":null,\"error\":\"too long\",\"code\":\"too-large\"}\n");
    EXPECT_EQ(client.ask(subscribe_request("*")).code, "too-large");
    EXPECT_EQ(request.get(), R"({"id":1,"subscribe":"*"})");
}

TEST_F(ServiceClientTest, SaysWhenAnAnswerIsNone)
{
    ServiceClient client(path_);
    accept();
    for (const std::string text :
         {R"({"id":1})", R"({"id":2,"result":"0"})", R"({"id":3,"error":7})"}) {
        auto request = answer_with(text + "\n");
        EXPECT_THAT(client.ask(unsubscribe_request("*")).error, HasSubstr("neither")) << text;
        request.get();
    }
}

TEST_F(ServiceClientTest, TakesWhatSendsNoJsonForNoService)
{
    for (const std::string_view text :
         {std::string_view("HTTP/1.1 400 Bad Request\r\n"), std::string_view("[]\n"),
          std::string_view("\n"), std::string_view("{\"id\":1,\n"), std::string_view("\0\n", 2),
          std::string_view("\xff\xfe\n"), std::string_view("\x1b[2J\n")}) {
        ServiceClient client(path_);
        accept();
        auto request = answer_with(std::string(text));
        const std::string error = error_of([&] { client.ask(hello_request()); });
        EXPECT_THAT(error, HasSubstr("the peer is not a service: ")) << text;
        request.get();
        close(peer_);
    }
}

TEST_F(ServiceClientTest, SaysThatTheServiceHasGone)
{
    ServiceClient client(path_);
    accept();
    auto end = std::async(std::launch::async, [this] {
        read_line();
        send("{\"id\":1,");
        shutdown(peer_, SHUT_RDWR);
    });
    EXPECT_THAT(error_of([&] { client.ask(hello_request()); }), HasSubstr("closed the connection"));
    end.get();
    EXPECT_NE(error_of([&] { client.ask(hello_request()); }), "");
}

TEST_F(ServiceClientTest, SaysWhyItCannotConnect)
{
    EXPECT_THAT(error_of([&] { ServiceClient client(folder_ + "/none"); }),
                HasSubstr("No such file"));
    EXPECT_THAT(error_of([&] { ServiceClient client(std::string(200, 'x')); }), HasSubstr("bytes"));
    EXPECT_THAT(error_of([&] { ServiceClient client(""); }), HasSubstr("bytes"));
    close(listener_);
    listener_ = -1;
    EXPECT_THAT(error_of([&] { ServiceClient client(path_); }), HasSubstr("refused"));
}

TEST_F(ServiceClientTest, RefusesALineWithoutEnd)
{
    SocketClient socket(path_, 1000);
    accept();
    send(std::string(1000, 'x') + "\n" + std::string(1001, 'y'));
    socket.work();
    std::string line;
    EXPECT_TRUE(socket.next(line));
    EXPECT_EQ(line.size(), 1000U);
    EXPECT_THAT(error_of([&] { socket.next(line); }), HasSubstr("more than 1000 bytes"));
}

TEST_F(ServiceClientTest, TakesLinesThatComeInPieces)
{
    SocketClient socket(path_);
    accept();
    std::string line;
    for (const std::string piece : {"a", "bc\nd", "", "e\n\nf\n"}) {
        send(piece);
        socket.work();
    }
    std::vector<std::string> lines;
    while (socket.next(line)) {
        lines.push_back(line);
    }
    EXPECT_THAT(lines, ElementsAre("abc", "de", "", "f"));
    socket.work(); // nothing has arrived, and it does not block
    EXPECT_FALSE(socket.next(line));
}

TEST_F(ServiceClientTest, KeepsWhatTheServiceDoesNotRead)
{
    SocketClient socket(path_);
    accept();
    const std::string big(4UL * 1024 * 1024, 'x');
    socket.send(big);
    socket.work();
    EXPECT_EQ(socket.wanted_events(), POLLIN | POLLOUT);
    auto reader = std::async(std::launch::async, [this] { return read_line().size(); });
    while ((socket.wanted_events() & POLLOUT) != 0) {
        pollfd ready = {socket.descriptor(), socket.wanted_events(), 0};
        poll(&ready, 1, -1);
        socket.work();
    }
    EXPECT_EQ(reader.get(), big.size());
}

TEST(DefaultSocketPath, IsInTheFolderOfTheSession)
{
    setenv("XDG_RUNTIME_DIR", "/run/user/7", 1);
    EXPECT_EQ(default_socket_path(), "/run/user/7/hgagent.sock");
    unsetenv("XDG_RUNTIME_DIR");
    EXPECT_THAT(error_of([] { default_socket_path(); }), HasSubstr("XDG_RUNTIME_DIR"));
}

} // namespace
} // namespace agent

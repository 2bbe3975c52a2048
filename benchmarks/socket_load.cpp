// SPDX-License-Identifier: MIT
// The two ends of a Unix socket with lines, for measurements of `hgagent run`:
//
//   socket_load respond PATH                 a bare responder: each line gets the same answer
//   socket_load ask PATH COUNT REQUEST       asks, waits for the answer, asks again
//   socket_load crowd PATH GOOD BAD COUNT    many clients at once, some of which misbehave
//
// ask prints its processor time for each request in nanoseconds; crowd prints the 99th percentile
// of the time to an answer of the good clients in microseconds, of COUNT answers.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::string_view kRequest = "{\"id\":1,\"command\":\"GET_SN_INFO\"}\n";
constexpr std::string_view kAnswer =
    "{\"id\":1,\"result\":0,\"reply\":{\"Status\":\"0\",\"MAC\":\"3C:6A:D2:10:4F:20\","
    "\"tslinkstatus\":\"1\",\"DeviceType\":\"HGU-AX3000\"}}\n";

int required(int result, const char *what)
{
    if (result < 0) {
        throw std::runtime_error(std::string(what) + ": " + strerror(errno));
    }
    return result;
}

sockaddr_un address_of(const std::string &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof(address.sun_path) - 1);
    return address;
}

int connect_to(const std::string &path)
{
    const sockaddr_un address = address_of(path);
    const int client = required(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket");
    required(connect(client, reinterpret_cast<const sockaddr *>(&address), sizeof(address)),
             "connect");
    return client;
}

void watch(int poller, int descriptor, uint64_t tag)
{
    epoll_event event = {};
    event.events = EPOLLIN;
    event.data.u64 = tag;
    required(epoll_ctl(poller, EPOLL_CTL_ADD, descriptor, &event), "epoll_ctl");
}

void respond(const std::string &path)
{
    const sockaddr_un address = address_of(path);
    const int listener = required(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket");
    required(bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof(address)), "bind");
    required(listen(listener, 10), "listen");
    const int poller = required(epoll_create1(EPOLL_CLOEXEC), "epoll_create1");
    watch(poller, listener, static_cast<uint64_t>(listener));
    std::array<char, 65536> buffer = {};
    for (;;) {
        epoll_event event = {};
        if (epoll_wait(poller, &event, 1, -1) < 1) {
            continue;
        }
        const int ready = static_cast<int>(event.data.u64);
        if (ready == listener) {
            const int client = required(accept(listener, nullptr, nullptr), "accept");
            watch(poller, client, static_cast<uint64_t>(client));
            continue;
        }
        const ssize_t count = read(ready, buffer.data(), buffer.size());
        if (count <= 0) {
            close(ready);
            continue;
        }
        for (auto left = std::count(buffer.data(), buffer.data() + count, '\n'); left > 0; --left) {
            required(static_cast<int>(write(ready, kAnswer.data(), kAnswer.size())), "write");
        }
    }
}

double processor_time()
{
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

void ask(const std::string &path, int count, const std::string &request)
{
    const int client = connect_to(path);
    const std::string line = request + "\n";
    std::vector<char> buffer(1UL << 20);
    const double before = processor_time();
    for (int left = count; left > 0; --left) {
        required(static_cast<int>(write(client, line.data(), line.size())), "write");
        ssize_t size = 0;
        do {
            size = read(client, buffer.data(), buffer.size());
            required(size > 0 ? 0 : -1, "read");
        } while (buffer[static_cast<size_t>(size) - 1] != '\n');
    }
    printf("%.0f\n", (processor_time() - before) / count);
}

// How a client misbehaves.
enum class Kind {
    kGood,
    kSilent,   // says nothing
    kGreedy,   // keeps its queue full
    kVanishing // leaves with a request unanswered and another half written, and returns
};

struct Client {
    int socket = -1;
    Kind kind = Kind::kGood;
    Clock::time_point asked;
};

void send_text(int client, std::string_view text)
{
    [[maybe_unused]] const ssize_t sent =
        send(client, text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
}

void crowd(const std::string &path, size_t good, size_t bad, size_t count)
{
    const int poller = required(epoll_create1(EPOLL_CLOEXEC), "epoll_create1");
    std::vector<Client> clients(good + bad);
    const auto begin = [&](Client &client) {
        const bool is_new = client.socket < 0;
        if (is_new) {
            client.socket = connect_to(path);
            watch(poller, client.socket, static_cast<uint64_t>(&client - clients.data()));
        }
        client.asked = Clock::now();
        if (client.kind == Kind::kGreedy) {
            for (int left = is_new ? 16 : 1; left > 0; --left) {
                send_text(client.socket, kRequest);
            }
        } else if (client.kind == Kind::kVanishing) {
            send_text(client.socket, kRequest);
            send_text(client.socket, kRequest);
            send_text(client.socket, kRequest.substr(0, 10));
        } else if (client.kind == Kind::kGood) {
            send_text(client.socket, kRequest);
        }
    };
    for (size_t number = 0; number < clients.size(); ++number) {
        clients[number].kind =
            number < good ? Kind::kGood : static_cast<Kind>(1 + (number - good) % 3);
        begin(clients[number]);
    }
    std::vector<double> times;
    std::array<char, 65536> buffer = {};
    while (times.size() < count) {
        std::array<epoll_event, 64> events = {};
        const int ready = epoll_wait(poller, events.data(), events.size(), -1);
        for (int at = 0; at < ready; ++at) {
            Client &client = clients[events[static_cast<size_t>(at)].data.u64];
            const ssize_t size = read(client.socket, buffer.data(), buffer.size());
            required(size > 0 ? 0 : -1, "a client was disconnected");
            if (client.kind == Kind::kGood) {
                const std::chrono::duration<double, std::micro> taken = Clock::now() - client.asked;
                times.push_back(taken.count());
            } else if (client.kind == Kind::kVanishing) {
                close(std::exchange(client.socket, -1));
            }
            begin(client);
        }
    }
    const auto place = static_cast<std::ptrdiff_t>(times.size() * 99 / 100);
    std::nth_element(times.begin(), times.begin() + place, times.end());
    printf("%.0f\n", times[static_cast<size_t>(place)]);
}

} // namespace

int main(int count, char **words)
{
    const std::vector<std::string> arguments(words + 1, words + count);
    try {
        if (arguments.size() == 2 && arguments[0] == "respond") {
            respond(arguments[1]);
        } else if (arguments.size() == 4 && arguments[0] == "ask") {
            ask(arguments[1], std::stoi(arguments[2]), arguments[3]);
        } else if (arguments.size() == 5 && arguments[0] == "crowd") {
            crowd(arguments[1], std::stoul(arguments[2]), std::stoul(arguments[3]),
                  std::stoul(arguments[4]));
        } else {
            fputs("socket_load respond|ask|crowd PATH ...\n", stderr);
            return 2;
        }
    } catch (const std::exception &problem) {
        fprintf(stderr, "socket_load: %s\n", problem.what());
        return 1;
    }
    return 0;
}

// SPDX-License-Identifier: MIT
// The platform's side of many gateways on a broker: their states, and requests to them. Each
// request is repeated with the same correlation data until it is answered, also over new
// connections, as clients are documented to do: so a change is executed at most once and its answer
// is not lost.
#pragma once

#include "fleet/platform/platform_options.h"
#include "protocol/json.h"
#include "service/mqtt_call/broker_session.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <queue>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace agent::fleet::platform {

using Clock = std::chrono::steady_clock;
using GatewayNumber = uint32_t; // its place in the list of those given

struct Gateway {
    std::string id;
    std::string epoch; // of its service; empty: not known yet
    bool is_up = false;
    uint32_t restarts = 0; // changes of the epoch
};

// How a request has ended.
struct Outcome {
    enum class Kind {
        kReply,    // of the plug-in
        kError,    // the service has refused it, or cannot know
        kInvalid,  // the answer is not valid
        kNoAnswer, // within the time
    };
    Kind kind = Kind::kNoAnswer;
    int32_t result = 0;  // of a reply
    Json reply;          // the same
    std::string code;    // of an error
    std::string text;    // what is wrong with an answer, or its error
    std::string payload; // of the answer
    Clock::duration time{};
    uint32_t sent = 0; // how often
};

// A request to a gateway.
struct Request {
    GatewayNumber gateway = 0;
    std::string command;
    std::string params = "{}";
    bool is_change = false;
    Clock::time_point intended;             // when it should be sent; its time counts from then
    std::optional<Clock::duration> timeout; // instead of that of all requests
    // What identifies an earlier request to the gateway that this one repeats; 0: none.
    uint64_t repeats = 0;
    std::string epoch; // of that one
    std::function<void(const Request &request, Outcome outcome)> done;
};

// Counted from the start.
struct PlatformCounts {
    uint64_t sent = 0;        // without repetitions
    uint64_t repetitions = 0; // sent
    uint64_t answered = 0;
    uint64_t unanswered = 0;
    uint64_t late = 0;          // answers that came twice, or after the time
    uint64_t states = 0;        // announcements of gateways that are up
    uint64_t interruptions = 0; // of connections to the broker
    std::map<std::string, uint64_t, std::less<>> refusals; // answers to be asked again, by code
};

class PlatformListener {
  public:
    virtual void on_connected(const std::string &broker) = 0;
    virtual void on_interruption(const std::string &why) = 0;
    virtual void on_no_broker(const std::string &why) = 0;
    virtual void on_event(GatewayNumber gateway, std::string_view name, std::string_view data) = 0;

  protected:
    ~PlatformListener() = default;
};

class Platform {
  public:
    // events: names of those that are to be subscribed.
    Platform(boost::asio::io_context &loop, const PlatformOptions &options,
             const std::vector<std::string> &events, PlatformListener &listener);
    ~Platform();
    Platform(const Platform &) = delete;
    Platform &operator=(const Platform &) = delete;

    void start();
    void stop();

    const std::vector<Gateway> &gateways() const { return gateways_; }
    size_t up() const { return up_; }
    // Gateways whose epoch is known.
    size_t known() const { return known_; }
    size_t restarted() const { return restarted_; }
    const PlatformCounts &counts() const { return counts_; }
    size_t open() const { return open_.size(); }

    // Asks all gateways that are not known to be up for their states.
    void ask_for_states();
    // Result: what identifies the request.
    uint64_t ask(Request request);

  private:
    class Connection;

    struct Open {
        Request request;
        Clock::time_point deadline;
        Clock::time_point next; // when it is to be checked again
        uint32_t sent = 0;
    };
    struct Due {
        Clock::time_point time;
        uint64_t number;
        bool operator>(const Due &other) const { return time > other.time; }
    };

    void on_connected(size_t connection, const std::string &broker);
    void on_interruption(size_t connection, const std::string &why);
    void on_message(size_t connection, const service::ReceivedMessage &message);
    void take_state(GatewayNumber gateway, const service::ReceivedMessage &message);
    void take_answer(GatewayNumber gateway, const service::ReceivedMessage &message);
    void set_up(Gateway &gateway, bool is_up);
    void send(uint64_t number, Open &open);
    void look_again(uint64_t number, Open &open, Clock::time_point time);
    void look_at_due();
    void finish(uint64_t number, Outcome outcome);
    void tick();
    void ask_next_for_states();
    size_t connection_of(GatewayNumber gateway) const { return gateway % connections_.size(); }
    std::string topic(const Gateway &gateway, std::string_view rest) const;
    Clock::duration random_part(Clock::duration time);

    boost::asio::io_context &loop_;
    const PlatformOptions &options_;
    PlatformListener &listener_;
    std::vector<Gateway> gateways_;
    std::unordered_map<std::string_view, GatewayNumber> numbers_;
    size_t up_ = 0;
    size_t known_ = 0;
    size_t restarted_ = 0;
    std::vector<std::unique_ptr<Connection>> connections_;
    PlatformCounts counts_;
    std::unordered_map<uint64_t, Open> open_;
    std::priority_queue<Due, std::vector<Due>, std::greater<>> due_;
    uint64_t last_number_ = 0;
    boost::asio::steady_timer timer_;
    GatewayNumber next_state_ = 0; // the first that has not been asked for its state
    std::minstd_rand random_{std::random_device{}()};
};

} // namespace agent::fleet::platform

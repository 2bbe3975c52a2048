// SPDX-License-Identifier: MIT
// MQTT 5: a gateway on a broker. docs/messages.md describes its topics.
#pragma once

#include "service/gate/gate.h"
#include "service/ways_in/mqtt/backoff.h"
#include "service/ways_in/mqtt/broker_connection.h"
#include "service/ways_in/mqtt/name_lookup.h"
#include "service/ways_in/mqtt/topics.h"
#include "service/ways_in/way_in.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace agent::service {

struct MqttLimits {
    size_t clients = 256;
    size_t request = 1024UL * 1024; // bytes of a payload
    size_t pending = 1024UL * 1024; // bytes of messages that the broker has not taken
};

// What has happened to the connection.
enum class ConnectionEvent {
    kConnected,
    kLost,
    kTakenOver, // lost to another client with the same name, as the broker says or as it seems
    kFailed,    // an attempt to connect has failed
};

struct MqttOptions {
    std::vector<std::string> brokers; // URLs; the first one that can be reached is used
    std::string id;
    std::string root;
    std::vector<std::string> response_topics;
    std::string credentials; // file; empty: none
    TlsOptions tls;
    std::chrono::seconds keep_alive{60};
    std::chrono::seconds session{3600}; // that the broker keeps requests for an absent gateway
    size_t max_packet = 0;              // of an answer, in bytes; 0: what the broker carries
    bool is_trusted = false;
    bool is_guest = false;
    // The pause before the first attempt to connect again is random and up to so long: all gateways
    // of a broker lose it at the same moment. 0: up to a second.
    std::chrono::milliseconds reconnect_spread{0};
    std::function<void(ConnectionEvent event, const std::string &why)>
        on_connection_event; // may be empty
};

class MqttClient;

class Mqtt : public WayIn, BrokerListener {
  public:
    Mqtt(boost::asio::io_context &loop, Gate &gate, const MqttLimits &limits);
    ~Mqtt() override;

    // Begins to connect. Throws std::runtime_error where files cannot be used.
    void start(MqttOptions options);
    void set_limits(const MqttLimits &limits) { limits_ = limits; }
    void set_guest(bool is_guest) { who_->is_guest = is_guest; }

    // As if the network had cut it.
    void drop_connection();

    // Requests that still arrive are answered `busy`.
    void stop_accepting() override;
    // Publishes that the gateway has gone, and disconnects.
    void on_empty(std::function<void()> done) override;

  private:
    friend class MqttClient;
    class EventClient;
    using Clock = std::chrono::steady_clock;

    struct Waiting {
        PublishedMessage message;
        std::optional<Clock::time_point> expires;
        int number = 0; // of the packet, once it is published
    };

    void on_connected() override;
    void on_message(const ReceivedMessage &message) override;
    void on_acknowledged(int number) override;
    void on_lost(const std::string &why) override;

    // Connecting, in this order.
    void try_next();
    void resolve();
    void on_addresses(std::vector<std::string> addresses, const std::string &problem);
    void connect();
    void give_up_attempt(const std::string &why);
    void connect_again();
    void resolve_after(std::chrono::milliseconds pause);
    double random_fraction();
    void report(ConnectionEvent event, const std::string &why) const;
    bool lower_will(Refusal refusal);
    const BrokerAddress &broker() const { return brokers_[broker_].address; }

    void submit(const ReceivedMessage &message, const Topics::Target &target,
                const std::string &response_topic);
    MqttClient *client_for(const std::string &response_topic);
    void close_idle();
    void schedule_look();
    void note(const std::string &text);

    void send(PublishedMessage message, std::optional<Clock::time_point> expires);
    void queue(Waiting waiting); // regardless of the room
    void forget_states();
    bool may_publish(const PublishedMessage &message) const;
    void publish(Waiting waiting);
    void publish_waiting();
    bool has_room() const { return pending_ < limits_.pending; }
    size_t max_packet() const;
    PublishedMessage state(bool is_online) const;
    void end_if_sent();

    boost::asio::io_context &loop_;
    Gate &gate_;
    MqttLimits limits_;
    MqttOptions options_;
    Credentials credentials_;
    std::optional<Topics> topics_;
    std::shared_ptr<Identity> who_ = std::make_shared<Identity>();

    struct Broker {
        BrokerAddress address;
        bool retains = true; // and what it accepts of a will
        int qos = 1;
        size_t max_packet = 0; // as it said last; 0: any
    };
    std::vector<Broker> brokers_;
    size_t broker_ = 0;                  // the one that is tried or connected
    size_t failures_ = 0;                // brokers that have failed one after the other
    std::vector<std::string> addresses_; // of the broker, not tried yet, in reverse order
    std::string problem_;                // the last one that was reported
    NameLookup lookup_;
    Backoff backoff_;
    size_t short_connections_ = 0; // of connections, one after the other
    std::minstd_rand random_{std::random_device{}()};
    boost::asio::steady_timer timer_; // the pause before an attempt, or its end
    std::optional<TlsContext> tls_;
    std::unique_ptr<BrokerConnection> connection_;
    bool is_online_ = false;
    Clock::time_point online_since_;

    size_t asked_ = 0;              // bytes of requests without an answer, of all clients
    std::list<MqttClient> clients_; // the last used first
    std::unordered_map<std::string_view, std::list<MqttClient>::iterator> client_of_topic_;
    std::unique_ptr<EventClient> events_;
    boost::asio::steady_timer look_;
    Clock::time_point noted_;

    std::deque<Waiting> waiting_;
    std::deque<Waiting> unacknowledged_;
    size_t pending_ = 0; // bytes of both
    bool was_full_ = false;
    std::string started_; // time, for the state

    bool is_stopping_ = false;
    std::function<void()> on_empty_;
};

} // namespace agent::service

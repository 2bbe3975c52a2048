// SPDX-License-Identifier: MIT
// One connection to a broker: libmosquitto, its socket on the event loop. A new connection is a new
// object, so that nothing that one broker has set applies to the next.
#pragma once

#include "service/ways_in/mqtt/broker_address.h"
#include "service/ways_in/mqtt/credentials.h"
#include "service/ways_in/mqtt/tls.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct mosquitto;
struct mosquitto_message;
struct mqtt5__property; // NOLINT(bugprone-reserved-identifier): the name in libmosquitto

namespace agent::service {

// What the broker has said about itself.
struct BrokerFeatures {
    uint32_t max_packet = 0; // bytes; 0: no limit
    uint16_t receive_maximum = UINT16_MAX;
    uint8_t max_qos = 2;
    bool retains = true;
};

struct PublishedMessage {
    std::string topic;
    std::string payload;
    std::string correlation; // empty: none
    int qos = 0;
    bool retain = false;
    bool is_gzip = false;

    // Of a request.
    std::string response_topic; // empty: none
    std::string epoch;          // the same
    bool wants_gzip = false;
    std::optional<std::chrono::seconds> expiry;
};

// The number of bytes of the message as a packet.
size_t packet_size(const PublishedMessage &message);

struct ReceivedMessage {
    std::string_view topic;
    std::string_view payload;
    int qos = 0;
    bool is_retained = false;
    std::string response_topic; // empty: none
    std::string correlation;    // the same
    std::string epoch;          // the same
    bool wants_gzip = false;
    bool is_gzip = false;
    std::optional<std::chrono::seconds> expiry;
};

// What of the will a broker has refused.
enum class Refusal { kOther, kRetain, kQos };

class BrokerListener {
  public:
    // The subscriptions are in force.
    virtual void on_connected() = 0;
    virtual void on_message(const ReceivedMessage &message) = 0;
    // A message of quality of service 1 has been acknowledged.
    virtual void on_acknowledged(int number) = 0;
    // The connection has ended, or could not be made. The object may not be destroyed from here.
    virtual void on_lost(const std::string &why) = 0;

  protected:
    ~BrokerListener() = default;
};

// Once for the process; otherwise the first connection does it.
void load_mqtt_library();

struct ConnectOptions {
    BrokerAddress broker;
    std::string address; // numeric, of the broker
    std::string id;
    Credentials credentials; // empty: none
    const TlsContext *tls = nullptr;
    std::chrono::seconds keep_alive{60};
    std::chrono::seconds session{0};
    uint32_t max_packet = 0; // that this client accepts
    PublishedMessage will;   // without a topic: none
    std::vector<std::string> subscriptions;
};

class BrokerConnection {
  public:
    BrokerConnection(boost::asio::io_context &loop, ConnectOptions options,
                     BrokerListener &listener);
    // Closes the connection; the broker publishes the will unless disconnect() has been called.
    ~BrokerConnection();
    BrokerConnection(const BrokerConnection &) = delete;
    BrokerConnection &operator=(const BrokerConnection &) = delete;

    // Calls back only later.
    void start();
    const BrokerFeatures &features() const { return features_; }
    Refusal refusal() const { return refusal_; }
    // Whether the broker has closed the connection because of another client with the same name.
    bool is_taken_over() const { return is_taken_over_; }
    const std::string &address() const { return options_.address; }
    // Result: the packet's number; 0 if the connection is broken, which is reported later; -1 if
    // the message cannot be published.
    int publish(const PublishedMessage &message);
    void disconnect();

  private:
    void open();
    void wait_for_input();
    void wait_for_output();
    void schedule_keep_alive();
    // After each call of libmosquitto that may have had callbacks.
    void after_call(int result);
    void lose(const std::string &why);
    void on_connack(int reason, const mqtt5__property *properties);
    void on_suback(const std::vector<int> &granted);
    void on_disconnected(int result);
    template <class Function> void guarded(Function function);
    void set_callbacks();

    boost::asio::io_context &loop_;
    const ConnectOptions options_;
    BrokerListener &listener_;
    mosquitto *client_ = nullptr;
    // A duplicate: libmosquitto closes its own descriptor while this one is still registered.
    boost::asio::posix::stream_descriptor socket_;
    boost::asio::steady_timer keep_alive_;
    bool is_waiting_to_write_ = false;
    bool is_in_callback_ = false;
    bool is_lost_ = false;
    bool is_disconnecting_ = false;
    bool is_taken_over_ = false;
    std::string error_; // the last one that the library has logged
    BrokerFeatures features_;
    Refusal refusal_ = Refusal::kOther;
    std::exception_ptr exception_; // from a callback: it must not pass through the library
    // Completions that are queued already cannot be cancelled: they may run after the destructor.
    std::shared_ptr<bool> is_alive_ = std::make_shared<bool>(true);
};

} // namespace agent::service

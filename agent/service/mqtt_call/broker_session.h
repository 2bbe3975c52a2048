// SPDX-License-Identifier: MIT
// A client's connection to the first of its brokers that answers, made again whenever it is lost.
#pragma once

#include "service/ways_in/mqtt/backoff.h"
#include "service/ways_in/mqtt/broker_connection.h"
#include "service/ways_in/mqtt/name_lookup.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace agent::service {

// A client's name that no other one has.
std::string random_client_name();

// Whether a gateway may have sent the text as its epoch. Another one could not be sent back.
bool is_epoch(std::string_view text);
// Whether an answer with the code says that the request has not been executed, and may be later.
bool is_to_be_repeated(std::string_view code);

struct BrokerSessionOptions {
    std::vector<BrokerAddress> brokers; // the first one that can be reached is used
    Credentials credentials;
    TlsOptions tls;
    std::string client; // its name on the broker
    std::vector<std::string> subscriptions;
    uint32_t max_packet = 0; // that it accepts
};

class BrokerSessionListener {
  public:
    // The subscriptions are in force.
    virtual void on_connected(const std::string &broker) = 0;
    virtual void on_message(const ReceivedMessage &message) = 0;
    // The connection is lost, and will be made again.
    virtual void on_interruption(const std::string &why) = 0;
    // None of the brokers can be reached, and none ever has been: the session has ended.
    virtual void on_no_broker(const std::string &why) = 0;

  protected:
    ~BrokerSessionListener() = default;
};

class BrokerSession : BrokerListener {
  public:
    BrokerSession(boost::asio::io_context &loop, BrokerSessionOptions options,
                  BrokerSessionListener &listener);

    void start();
    // Leaves the broker in order.
    void stop();
    bool is_connected() const { return is_connected_; }
    const std::string &client() const { return options_.client; }
    // The result is that of BrokerConnection; 0 without a connection.
    int publish(const PublishedMessage &message);

  private:
    void on_connected() override;
    void on_message(const ReceivedMessage &message) override;
    void on_acknowledged(int) override {}
    void on_lost(const std::string &why) override;

    void try_next(const std::string &why);
    void resolve();
    void connect();
    const BrokerAddress &broker() const { return options_.brokers[broker_]; }

    boost::asio::io_context &loop_;
    const BrokerSessionOptions options_;
    BrokerSessionListener &listener_;
    size_t broker_ = 0;
    std::vector<std::string> addresses_; // of the broker, not tried yet, in reverse order
    size_t failures_ = 0;                // brokers that have failed one after the other
    bool has_been_connected_ = false;
    bool is_connected_ = false;
    bool has_ended_ = false;
    NameLookup lookup_;
    Backoff backoff_;
    std::minstd_rand random_{std::random_device{}()};
    boost::asio::steady_timer attempt_; // the end of an attempt, or of the pause before one
    std::optional<TlsContext> tls_;
    std::unique_ptr<BrokerConnection> connection_;
};

} // namespace agent::service

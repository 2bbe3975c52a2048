// SPDX-License-Identifier: MIT
// The platform's side of gateways on a broker. It sends each gateway a request, and repeats it with
// the same correlation data until it is answered, also over new connections: so a change is
// executed at most once, and its answer does not get lost.
#pragma once

#include "service/mqtt_call/broker_arguments.h"
#include "service/mqtt_call/broker_session.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace agent::service {

struct MqttCallerOptions : BrokerAccess {
    std::vector<std::string> ids; // of the gateways
    std::string command;          // empty: none, events only
    std::string params;           // JSON object
    bool is_change = false;       // a restart of the gateway's service makes the outcome unknown
    bool has_events = false;
    bool follows = false; // continues with events when all answers are there
    std::chrono::seconds timeout{60};
    std::chrono::milliseconds repeat{5000};
};

class MqttCallerListener {
  public:
    virtual void on_connected(const std::string &broker) = 0;
    // The payload of the gateway's answer. Result: false when nothing has been executed, so that
    // the request is to be repeated.
    virtual bool on_answer(const std::string &gateway, const std::string &payload) = 0;
    // was_sent: the gateway may have executed the request. is_offline: as the broker says.
    virtual void on_no_answer(const std::string &gateway, bool was_sent, bool is_offline) = 0;
    virtual void on_event(const std::string &gateway, std::string_view name,
                          std::string_view data) = 0;
    virtual void on_interruption(const std::string &why) = 0;
    virtual void on_no_broker(const std::string &why) = 0;
    // All answers and non-answers have been passed on, and no events are to follow.
    virtual void on_end() = 0;

  protected:
    ~MqttCallerListener() = default;
};

class MqttCaller : BrokerSessionListener {
  public:
    MqttCaller(boost::asio::io_context &loop, MqttCallerOptions options,
               MqttCallerListener &listener);

    void start();
    // Leaves the broker in order.
    void stop();

  private:
    using Clock = std::chrono::steady_clock;

    struct Gateway {
        std::string id;
        std::string correlation;
        std::string epoch; // that the request is for; empty: not known yet
        Clock::time_point asked;
        bool is_awaited = false; // it counts towards those asked at the same time
        bool was_sent = false;
        bool is_offline = false;
        bool is_done = false;
    };

    void on_connected(const std::string &broker) override;
    void on_message(const ReceivedMessage &message) override;
    void on_interruption(const std::string &why) override { listener_.on_interruption(why); }
    void on_no_broker(const std::string &why) override { listener_.on_no_broker(why); }

    BrokerSessionOptions session_options() const;
    std::vector<std::string> subscriptions(const std::string &client) const;
    void begin_next();
    void ask(Gateway &gateway);
    void no_longer_await(Gateway &gateway);
    void take_state(Gateway &gateway, const ReceivedMessage &message);
    void take_answer(Gateway &gateway, const ReceivedMessage &message);
    void finish(Gateway &gateway);
    void schedule_repetitions();
    void on_timeout();
    void end_unless_following();
    std::string topic(const Gateway &gateway, std::string_view rest) const;

    boost::asio::io_context &loop_;
    const MqttCallerOptions options_;
    MqttCallerListener &listener_;
    std::vector<Gateway> gateways_;
    std::unordered_map<std::string_view, size_t> place_of_id_;
    std::vector<Gateway *> active_; // those that have been asked, and have not answered
    size_t awaited_ = 0;            // of the active ones
    size_t next_ = 0;               // the first one that has not been asked

    BrokerSession session_;
    Clock::time_point deadline_;
    boost::asio::steady_timer timeout_;
    boost::asio::steady_timer repeat_;
};

} // namespace agent::service

// SPDX-License-Identifier: MIT
#include "service/mqtt_call/mqtt_caller.h"

#include "protocol/json.h"
#include "service/common/gzip.h"

#include <boost/asio/post.hpp>

#include <algorithm>
#include <cjson/cJSON.h>
#include <cstdio>
#include <utility>

namespace agent::service {

namespace {

// Gateways that are asked at the same time: brokers drop what a client does not read fast enough.
constexpr size_t kMostAwaited = 100;
constexpr std::chrono::milliseconds kTick(100);
constexpr uint32_t kMaxAnswer = 16U * 1024 * 1024;
constexpr int kQosOfRequests = 1;

constexpr std::string_view kStateTopic = "state";
constexpr std::string_view kEventTopics = "event/";

std::string random_text()
{
    std::random_device device;
    char text[25];
    snprintf(text, sizeof(text), "%08x%08x%08x", device(), device(), device());
    return text;
}

} // namespace

MqttCaller::MqttCaller(boost::asio::io_context &loop, MqttCallerOptions options,
                       MqttCallerListener &listener)
    : loop_(loop), options_(std::move(options)), listener_(listener),
      session_(loop, session_options(), *this), timeout_(loop), repeat_(loop)
{
    for (const std::string &id : options_.ids) {
        gateways_.push_back({id, random_text(), "", {}});
    }
    for (size_t place = 0; place < gateways_.size(); ++place) {
        place_of_id_.emplace(gateways_[place].id, place);
    }
}

void MqttCaller::start()
{
    if (!options_.command.empty()) {
        deadline_ = Clock::now() + options_.timeout;
        timeout_.expires_at(deadline_);
        timeout_.async_wait([this](const boost::system::error_code &problem) {
            if (!problem) {
                on_timeout();
            }
        });
        schedule_repetitions();
    }
    session_.start();
}

void MqttCaller::stop()
{
    timeout_.cancel();
    repeat_.cancel();
    session_.stop();
}

BrokerSessionOptions MqttCaller::session_options() const
{
    BrokerSessionOptions options;
    options.brokers = options_.brokers;
    options.credentials = options_.credentials;
    options.tls = options_.tls;
    options.client = random_client_name();
    options.max_packet = kMaxAnswer;
    options.subscriptions = subscriptions(options.client);
    return options;
}

std::vector<std::string> MqttCaller::subscriptions(const std::string &client) const
{
    // Some brokers accept few subscriptions: several gateways share theirs.
    const std::string base =
        options_.root + "/" + (options_.ids.size() == 1 ? options_.ids.front() : "+") + "/";
    std::vector<std::string> topics;
    if (!options_.command.empty()) {
        topics.push_back(base + "reply/" + client);
        topics.push_back(base + std::string(kStateTopic));
    }
    if (options_.has_events) {
        topics.push_back(base + std::string(kEventTopics) + "+");
    }
    return topics;
}

void MqttCaller::on_connected(const std::string &broker)
{
    listener_.on_connected(broker);
    // What the last connection has carried may be lost.
    for (Gateway *gateway : active_) {
        ask(*gateway);
    }
    begin_next();
}

// ---- Requests -----------------------------------------------------------------------------------

std::string MqttCaller::topic(const Gateway &gateway, std::string_view rest) const
{
    return options_.root + "/" + gateway.id + "/" + std::string(rest);
}

void MqttCaller::begin_next()
{
    while (!options_.command.empty() && session_.is_connected() && awaited_ < kMostAwaited &&
           next_ < gateways_.size()) {
        Gateway &gateway = gateways_[next_++];
        active_.push_back(&gateway);
        gateway.is_awaited = !gateway.is_offline;
        awaited_ += gateway.is_awaited ? 1 : 0;
        ask(gateway);
    }
}

// One that may never answer must not keep others from being asked.
void MqttCaller::no_longer_await(Gateway &gateway)
{
    awaited_ -= std::exchange(gateway.is_awaited, false) ? 1 : 0;
}

// A change is sent when the epoch is known. Later repetitions name the same one: after a restart
// the service does not know whether it has executed the request.
void MqttCaller::ask(Gateway &gateway)
{
    if (!session_.is_connected()) {
        return;
    }
    const auto now = Clock::now();
    gateway.asked = now;
    PublishedMessage message;
    if (options_.is_change && gateway.epoch.empty()) {
        message.topic = topic(gateway, "state/get");
        session_.publish(message);
        return;
    }
    message.topic = topic(gateway, "command/" + options_.command);
    message.payload = options_.params;
    message.qos = kQosOfRequests;
    message.correlation = gateway.correlation;
    message.response_topic = topic(gateway, "reply/" + session_.client());
    message.epoch = gateway.epoch;
    message.wants_gzip = true;
    message.expiry =
        std::max(std::chrono::ceil<std::chrono::seconds>(deadline_ - now), std::chrono::seconds(1));
    gateway.was_sent = true;
    session_.publish(message);
}

void MqttCaller::schedule_repetitions()
{
    repeat_.expires_after(std::min(kTick, options_.repeat));
    repeat_.async_wait([this](const boost::system::error_code &problem) {
        if (problem) {
            return;
        }
        const auto now = Clock::now();
        for (Gateway *gateway : active_) {
            if (now - gateway->asked >= options_.repeat) {
                no_longer_await(*gateway);
                ask(*gateway);
            }
        }
        begin_next();
        schedule_repetitions();
    });
}

void MqttCaller::on_message(const ReceivedMessage &message)
{
    if (message.topic.size() <= options_.root.size() + 1) {
        return;
    }
    const std::string_view below = message.topic.substr(options_.root.size() + 1);
    const std::string_view id = below.substr(0, below.find('/'));
    const auto found = place_of_id_.find(id);
    if (found == place_of_id_.end() || id.size() == below.size()) {
        return; // of a gateway that was not requested
    }
    Gateway &gateway = gateways_[found->second];
    const std::string_view rest = below.substr(id.size() + 1);
    if (rest == kStateTopic) {
        take_state(gateway, message);
    } else if (rest.starts_with(kEventTopics)) {
        listener_.on_event(gateway.id, rest.substr(kEventTopics.size()), message.payload);
    } else {
        take_answer(gateway, message);
    }
}

void MqttCaller::take_state(Gateway &gateway, const ReceivedMessage &message)
{
    const Json state(cJSON_ParseWithLength(message.payload.data(), message.payload.size()));
    const cJSON *online = cJSON_GetObjectItemCaseSensitive(state.get(), "online");
    const char *epoch =
        cJSON_GetStringValue(cJSON_GetObjectItemCaseSensitive(state.get(), "epoch"));
    gateway.is_offline = cJSON_IsFalse(online) != 0;
    if (gateway.is_offline) {
        no_longer_await(gateway);
        begin_next();
    }
    // A retained state may be that of a service that has ended without the broker's knowledge.
    const bool is_waiting = options_.is_change && gateway.epoch.empty() && !gateway.is_done &&
                            gateway.asked != Clock::time_point();
    if (is_waiting && !message.is_retained && epoch != nullptr && is_epoch(epoch)) {
        gateway.epoch = epoch;
        ask(gateway);
    }
}

void MqttCaller::take_answer(Gateway &gateway, const ReceivedMessage &message)
{
    if (gateway.is_done || message.correlation != gateway.correlation) {
        return; // the answer to a repetition
    }
    std::string payload(message.payload);
    if (message.is_gzip) {
        payload = gunzip(message.payload, kMaxAnswer).value_or("");
    }
    if (listener_.on_answer(gateway.id, payload)) {
        gateway.is_done = true;
        finish(gateway);
    }
}

void MqttCaller::finish(Gateway &gateway)
{
    no_longer_await(gateway);
    std::erase(active_, &gateway);
    if (!active_.empty() || next_ < gateways_.size()) {
        begin_next();
        return;
    }
    timeout_.cancel();
    repeat_.cancel();
    end_unless_following();
}

// Deferred, because libmosquitto may be the caller.
void MqttCaller::end_unless_following()
{
    if (!options_.follows) {
        boost::asio::post(loop_, [this] {
            stop();
            listener_.on_end();
        });
    }
}

void MqttCaller::on_timeout()
{
    repeat_.cancel();
    active_.clear();
    next_ = gateways_.size();
    for (Gateway &gateway : gateways_) {
        if (!std::exchange(gateway.is_done, true)) {
            listener_.on_no_answer(gateway.id, gateway.was_sent, gateway.is_offline);
        }
    }
    end_unless_following();
}

} // namespace agent::service

// SPDX-License-Identifier: MIT
#include "fleet/platform/platform.h"

#include "client/service_client.h"
#include "protocol/protocol.h"
#include "protocol/requests.h"
#include "service/common/gzip.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace agent::fleet::platform {

namespace {

using service::BrokerSession;
using service::BrokerSessionListener;
using service::BrokerSessionOptions;
using service::PublishedMessage;
using service::ReceivedMessage;

constexpr uint32_t kMaxAnswer = 16U * 1024 * 1024;
constexpr int kQosOfRequests = 1;
constexpr std::chrono::milliseconds kTick(20);
// Requests for states, and repetitions after a new connection, are spread: brokers drop what a
// client does not read fast enough.
constexpr GatewayNumber kStatesPerTick = 40;
constexpr std::chrono::seconds kMoreTime(30); // above what the gateway allows for a command
constexpr std::string_view kStateTopic = "state";
constexpr std::string_view kEventTopics = "event/";
constexpr std::string_view kReplyTopics = "reply/";

Outcome read_outcome(std::string payload)
{
    Outcome outcome;
    outcome.payload = std::move(payload);
    try {
        ServiceAnswer answer = read_answer(outcome.payload);
        outcome.result = answer.result;
        outcome.code = std::move(answer.code);
        outcome.text = std::move(answer.error);
        if (!outcome.text.empty() || !outcome.code.empty()) {
            outcome.kind = Outcome::Kind::kError;
        } else if (answer.reply != nullptr) {
            outcome.kind = Outcome::Kind::kReply;
            outcome.reply = std::move(answer.reply);
        } else {
            outcome.kind = Outcome::Kind::kInvalid;
            outcome.text = "the answer has neither a reply nor an error";
        }
    } catch (const BadRequest &problem) {
        outcome.kind = Outcome::Kind::kInvalid;
        outcome.text = problem.what();
    }
    return outcome;
}

} // namespace

class Platform::Connection : BrokerSessionListener {
  public:
    Connection(Platform &platform, size_t number, BrokerSessionOptions options)
        : platform_(platform), number_(number), session_(platform.loop_, std::move(options), *this)
    {
    }
    BrokerSession &session() { return session_; }

  private:
    void on_connected(const std::string &broker) override
    {
        platform_.on_connected(number_, broker);
    }
    void on_message(const ReceivedMessage &message) override
    {
        platform_.on_message(number_, message);
    }
    void on_interruption(const std::string &why) override
    {
        platform_.on_interruption(number_, why);
    }
    void on_no_broker(const std::string &why) override { platform_.listener_.on_no_broker(why); }

    Platform &platform_;
    const size_t number_;
    BrokerSession session_;
};

Platform::Platform(boost::asio::io_context &loop, const PlatformOptions &options,
                   const std::vector<std::string> &events, PlatformListener &listener)
    : loop_(loop), options_(options), listener_(listener), timer_(loop)
{
    gateways_.reserve(options.ids.size());
    for (const std::string &id : options.ids) {
        gateways_.push_back({id, {}});
    }
    for (GatewayNumber number = 0; number < gateways_.size(); ++number) {
        numbers_.emplace(gateways_[number].id, number);
    }
    // Not all of these as separate subscriptions: some brokers accept few.
    const std::string all = options.root + "/+/";
    for (size_t number = 0; number < options.connections; ++number) {
        BrokerSessionOptions session;
        session.brokers = options.brokers;
        session.credentials = options.credentials;
        session.tls = options.tls;
        session.client = service::random_client_name();
        session.max_packet = kMaxAnswer;
        session.subscriptions.push_back(all + std::string(kReplyTopics) + session.client);
        if (number == 0) {
            session.subscriptions.push_back(all + std::string(kStateTopic));
            for (const std::string &event : events) {
                session.subscriptions.push_back(
                    std::string(all).append(kEventTopics).append(event));
            }
        }
        connections_.push_back(std::make_unique<Connection>(*this, number, std::move(session)));
    }
}

Platform::~Platform() = default;

void Platform::start()
{
    for (const auto &connection : connections_) {
        connection->session().start();
    }
    tick();
}

void Platform::stop()
{
    timer_.cancel();
    for (const auto &connection : connections_) {
        connection->session().stop();
    }
}

std::string Platform::topic(const Gateway &gateway, std::string_view rest) const
{
    return options_.root + "/" + gateway.id + "/" + std::string(rest);
}

Clock::duration Platform::random_part(Clock::duration time)
{
    return Clock::duration(std::uniform_int_distribution<Clock::rep>(0, time.count())(random_));
}

// ---- Connections --------------------------------------------------------------------------------

void Platform::on_connected(size_t connection, const std::string &broker)
{
    if (connection == 0) {
        ask_for_states();
        listener_.on_connected(broker);
    }
    // What the last connection has carried may be lost.
    for (auto &[number, open] : open_) {
        if (connection_of(open.request.gateway) == connection) {
            look_again(number, open, Clock::now() + random_part(options_.repeat));
        }
    }
}

void Platform::on_interruption(size_t connection, const std::string &why)
{
    ++counts_.interruptions;
    if (connection == 0) {
        // Their announcements would not be received.
        for (Gateway &gateway : gateways_) {
            set_up(gateway, false);
        }
    }
    listener_.on_interruption(why);
}

void Platform::on_message(size_t connection, const ReceivedMessage &message)
{
    const size_t begin = options_.root.size() + 1;
    if (message.topic.size() <= begin) {
        return;
    }
    const std::string_view below = message.topic.substr(begin);
    const std::string_view id = below.substr(0, below.find('/'));
    const auto found = numbers_.find(id);
    if (found == numbers_.end() || id.size() == below.size()) {
        return; // not one of the gateways
    }
    const std::string_view rest = below.substr(id.size() + 1);
    if (connection == 0 && rest == kStateTopic) {
        take_state(found->second, message);
    } else if (connection == 0 && rest.starts_with(kEventTopics)) {
        listener_.on_event(found->second, rest.substr(kEventTopics.size()), message.payload);
    } else if (rest.starts_with(kReplyTopics) &&
               rest.substr(kReplyTopics.size()) == connections_[connection]->session().client()) {
        take_answer(found->second, message);
    }
}

// ---- States -------------------------------------------------------------------------------------

void Platform::ask_for_states()
{
    next_state_ = 0;
}

void Platform::ask_next_for_states()
{
    if (!connections_.front()->session().is_connected()) {
        return;
    }
    for (GatewayNumber asked = 0; asked < kStatesPerTick && next_state_ < gateways_.size();
         ++next_state_) {
        const Gateway &gateway = gateways_[next_state_];
        if (!gateway.is_up) {
            PublishedMessage message;
            message.topic = topic(gateway, "state/get");
            connections_.front()->session().publish(message);
            ++asked;
        }
    }
}

void Platform::set_up(Gateway &gateway, bool is_up)
{
    if (gateway.is_up != is_up) {
        gateway.is_up = is_up;
        is_up ? ++up_ : --up_;
    }
}

void Platform::take_state(GatewayNumber number, const ReceivedMessage &message)
{
    Gateway &gateway = gateways_[number];
    const Json state(cJSON_ParseWithLength(message.payload.data(), message.payload.size()));
    const cJSON *online = cJSON_GetObjectItemCaseSensitive(state.get(), "online");
    const char *epoch =
        cJSON_GetStringValue(cJSON_GetObjectItemCaseSensitive(state.get(), "epoch"));
    if (cJSON_IsFalse(online) != 0) {
        set_up(gateway, false);
        return;
    }
    // A retained state may be that of a service that has ended without the broker's knowledge.
    if (message.is_retained || cJSON_IsTrue(online) == 0 || epoch == nullptr ||
        !service::is_epoch(epoch)) {
        return;
    }
    ++counts_.states;
    set_up(gateway, true);
    if (gateway.epoch.empty()) {
        ++known_;
    } else if (gateway.epoch != epoch) {
        restarted_ += gateway.restarts++ == 0 ? 1 : 0;
    }
    gateway.epoch = epoch;
}

// ---- Requests -----------------------------------------------------------------------------------

uint64_t Platform::ask(Request request)
{
    const auto now = Clock::now();
    const uint64_t number = request.repeats != 0 ? request.repeats : ++last_number_;
    const auto usual =
        std::max<Clock::duration>(options_.timeout, seconds_of(request.command) > kMoreTime
                                                        ? seconds_of(request.command) + kMoreTime
                                                        : std::chrono::seconds(0));
    const auto time = request.timeout.value_or(usual);
    ++counts_.sent;
    const auto [place, is_new] =
        open_.try_emplace(number, Open{std::move(request), now + time, now, 0});
    if (is_new) {
        send(number, place->second);
    }
    return number;
}

// A change is sent when the epoch is known. Later repetitions name the same one: after a restart
// the service does not know whether it has executed the request.
void Platform::send(uint64_t number, Open &open)
{
    Request &request = open.request;
    const Gateway &gateway = gateways_[request.gateway];
    const auto now = Clock::now();
    look_again(number, open, std::min(now + options_.repeat, open.deadline));
    if (request.is_change && request.epoch.empty()) {
        request.epoch = gateway.epoch;
    }
    if (request.is_change && request.epoch.empty()) {
        PublishedMessage message;
        message.topic = topic(gateway, "state/get");
        connections_.front()->session().publish(message);
        return;
    }
    BrokerSession &session = connections_[connection_of(request.gateway)]->session();
    if (!session.is_connected()) {
        return;
    }
    PublishedMessage message;
    message.topic = topic(gateway, "command/" + request.command);
    message.payload = request.params;
    message.qos = kQosOfRequests;
    message.correlation = std::to_string(number);
    message.response_topic = topic(gateway, std::string(kReplyTopics) + session.client());
    message.epoch = request.epoch;
    message.wants_gzip = true;
    message.expiry = std::max(std::chrono::ceil<std::chrono::seconds>(open.deadline - now),
                              std::chrono::seconds(1));
    counts_.repetitions += open.sent > 0 ? 1 : 0;
    ++open.sent;
    session.publish(message);
}

void Platform::look_again(uint64_t number, Open &open, Clock::time_point time)
{
    open.next = time;
    due_.push({time, number});
}

void Platform::look_at_due()
{
    const auto now = Clock::now();
    while (!due_.empty() && due_.top().time <= now) {
        const Due due = due_.top();
        due_.pop();
        const auto found = open_.find(due.number);
        if (found == open_.end() || found->second.next != due.time) {
            continue; // answered, or checked earlier
        }
        if (found->second.deadline <= now) {
            ++counts_.unanswered;
            finish(due.number, {});
        } else {
            send(due.number, found->second);
        }
    }
}

void Platform::take_answer(GatewayNumber gateway, const ReceivedMessage &message)
{
    uint64_t number = 0;
    const char *const end = message.correlation.data() + message.correlation.size();
    const auto [rest, error] = std::from_chars(message.correlation.data(), end, number);
    const auto found = open_.find(number);
    if (error != std::errc() || rest != end || found == open_.end() ||
        found->second.request.gateway != gateway) {
        ++counts_.late;
        return;
    }
    std::string payload(message.payload);
    if (message.is_gzip) {
        payload = service::gunzip(message.payload, kMaxAnswer).value_or("");
    }
    Outcome outcome = read_outcome(std::move(payload));
    if (service::is_to_be_repeated(outcome.code)) {
        ++counts_.refusals[outcome.code];
        return;
    }
    ++counts_.answered;
    finish(number, std::move(outcome));
}

// The callback may ask again.
void Platform::finish(uint64_t number, Outcome outcome)
{
    auto node = open_.extract(number);
    const Request &request = node.mapped().request;
    outcome.time = Clock::now() - request.intended;
    outcome.sent = node.mapped().sent;
    if (request.done) {
        request.done(request, std::move(outcome));
    }
}

void Platform::tick()
{
    timer_.expires_after(kTick);
    timer_.async_wait([this](const boost::system::error_code &problem) {
        if (!problem) {
            ask_next_for_states();
            look_at_due();
            tick();
        }
    });
}

} // namespace agent::fleet::platform

// SPDX-License-Identifier: MIT
#include "service/ways_in/mqtt/mqtt.h"

#include "io/error_output.h"
#include "io/text.h"
#include "protocol/json_text.h"
#include "protocol/protocol.h"
#include "service/common/gzip.h"
#include "service/ways_in/mqtt/requests.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <utility>

namespace agent::service {

namespace {

constexpr char kWayIn[] = "mqtt";
constexpr char kPrincipal[] = "topic-root:";
constexpr char kOffline[] = R"({"online":false})";
// All brokers accept that many unacknowledged messages.
constexpr size_t kMostUnacknowledged = 10;
constexpr int kQosOfEvents = 1;
constexpr std::chrono::seconds kAttempt(20); // for connection, TLS and subscriptions
constexpr std::chrono::seconds kStable(10);  // after it the pauses begin again with the shortest
constexpr size_t kManyShortConnections = 3; // connections that end before that, one after the other
constexpr std::chrono::seconds kIdle(60);   // after it a client is forgotten
constexpr std::chrono::seconds kLook(20);
constexpr std::chrono::seconds kNotes(10); // between two notes
// Of a packet that the broker may send: larger ones than a request may be, to be answered. What is
// larger still the broker drops.
constexpr size_t kLargestPacket = 16UL * 1024 * 1024;
constexpr size_t kRoomForProperties = 64UL * 1024;
// Bytes of requests that are not answered yet: a single peer may be many clients.
constexpr size_t kMostAsked = 32UL * 1024 * 1024;

std::string now_as_text()
{
    const std::time_t now = std::time(nullptr);
    std::tm parts = {};
    gmtime_r(&now, &parts);
    std::array<char, 32> text = {};
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text.data();
}

} // namespace

// Those who expect their answers at the same topic. For the gate it is one client.
class MqttClient final : Client {
  public:
    MqttClient(Mqtt &owner, std::string topic)
        : owner_(owner), topic_(std::move(topic)), session_(owner.gate_.open(owner.who_, *this))
    {
    }
    ~MqttClient() { owner_.gate_.close(session_); }
    MqttClient(const MqttClient &) = delete;
    MqttClient &operator=(const MqttClient &) = delete;

    const std::string &topic() const { return topic_; }
    bool is_full() const { return Gate::is_full(*session_); }
    bool is_idle() const { return Gate::is_idle(*session_); }
    bool is_idle_since(Mqtt::Clock::time_point time) const { return last_use_ < time && is_idle(); }
    void resume() { owner_.gate_.resume(*session_); }

    struct Asked {
        std::string id; // JSON text, of a line
        std::string correlation;
        int qos = 0;
        bool is_line = false; // the answer keeps its id
        bool wants_gzip = false;
        std::optional<Mqtt::Clock::time_point> expires;
        size_t bytes = 0; // of the request
    };

    void submit(Asked asked, Request request)
    {
        last_use_ = Mqtt::Clock::now();
        owner_.asked_ += asked.bytes;
        asked_.push_back(std::move(asked));
        owner_.gate_.submit(*session_, std::move(request));
    }

    // Without the gate.
    void answer(const Asked &asked, std::string_view line) const
    {
        if (topic_.empty()) {
            return; // nobody waits for it
        }
        PublishedMessage message;
        message.topic = topic_;
        message.correlation = asked.correlation;
        message.qos = asked.qos;
        message.payload = asked.is_line ? std::string(line) : answer_payload(line);
        if (asked.wants_gzip) {
            message.payload = gzip(message.payload);
            message.is_gzip = true;
        }
        const size_t limit = owner_.max_packet();
        if (packet_size(message) > limit) {
            message.payload = too_large(asked, packet_size(message), limit);
            message.is_gzip = false;
        }
        owner_.send(std::move(message), asked.expires);
    }

  private:
    static std::string too_large(const Asked &asked, size_t packet, size_t limit)
    {
        std::string text = "the answer makes a packet of " + std::to_string(packet) +
                           " bytes, and packets may have " + std::to_string(limit);
        if (!asked.wants_gzip) {
            text += "; with the user property accept-encoding: gzip it is smaller";
        }
        const std::string answer = error_answer(asked.id, Code::kTooLarge, text);
        return asked.is_line ? answer : answer_payload(answer);
    }

    void on_answer(const Answer &answered) override
    {
        last_use_ = Mqtt::Clock::now();
        const Asked asked = std::move(asked_.front());
        asked_.pop_front();
        owner_.asked_ -= asked.bytes;
        if (!answered.is_duplicate) { // a request that is repeated while it runs is answered once
            answer(asked, answered.line);
        }
    }

    void on_event(std::string_view) override {} // subscriptions are not passed on
    bool has_room() const override { return owner_.has_room(); }
    void on_less_full() override {}

    Mqtt &owner_;
    const std::string topic_; // empty: those who expect no answer
    Session *session_;
    std::deque<Asked> asked_;
    Mqtt::Clock::time_point last_use_ = Mqtt::Clock::now();
};

// Publishes the events that the policy allows.
class Mqtt::EventClient : Client {
  public:
    explicit EventClient(Mqtt &owner) : owner_(owner), session_(owner.gate_.open(owner.who_, *this))
    {
        owner_.gate_.follow_events(*session_);
    }
    ~EventClient() { owner_.gate_.close(session_); }
    EventClient(const EventClient &) = delete;
    EventClient &operator=(const EventClient &) = delete;

  private:
    void on_answer(const Answer &) override {}
    // While the broker is away, events must not take the room of answers.
    void on_event(std::string_view line) override
    {
        const EventParts event = parts_of_event(line);
        if (event.name.empty() || owner_.pending_ > owner_.limits_.pending / 2) {
            return;
        }
        PublishedMessage message;
        message.topic = owner_.topics_->event(event.name);
        message.payload = event.data;
        message.qos = kQosOfEvents;
        if (packet_size(message) <= owner_.max_packet()) {
            owner_.send(std::move(message), std::nullopt);
        }
    }
    bool has_room() const override { return true; }
    void on_less_full() override {}

    Mqtt &owner_;
    Session *session_;
};

Mqtt::Mqtt(boost::asio::io_context &loop, Gate &gate, const MqttLimits &limits)
    : loop_(loop), gate_(gate), limits_(limits), lookup_(loop), timer_(loop), look_(loop)
{
}

Mqtt::~Mqtt() = default;

void Mqtt::start(MqttOptions options)
{
    options_ = std::move(options);
    for (const std::string &url : options_.brokers) {
        brokers_.push_back({parse_broker(url)});
        if (brokers_.back().address.is_tls) {
            const TlsContext files_can_be_read(options_.tls, brokers_.back().address.host);
        }
    }
    if (!options_.credentials.empty()) {
        credentials_ = read_credentials(options_.credentials);
    }
    topics_.emplace(options_.root, options_.id, options_.response_topics);
    started_ = now_as_text();
    who_->way_in = kWayIn;
    who_->name = kPrincipal + options_.root;
    who_->principals = {who_->name};
    who_->is_owner = options_.is_trusted;
    who_->is_guest = options_.is_guest;
    events_ = std::make_unique<EventClient>(*this);
    resolve();
    schedule_look();
}

// ---- Connecting ---------------------------------------------------------------------------------

// The next address, or the next broker; after all brokers there is a pause.
void Mqtt::try_next()
{
    if (is_stopping_) {
        return;
    }
    if (!addresses_.empty()) {
        connect();
        return;
    }
    broker_ = (broker_ + 1) % brokers_.size();
    if (++failures_ < brokers_.size()) {
        resolve();
        return;
    }
    failures_ = 0;
    resolve_after(backoff_.next(random_fraction()));
}

double Mqtt::random_fraction()
{
    return std::uniform_real_distribution<>(0, 1)(random_);
}

void Mqtt::resolve_after(std::chrono::milliseconds pause)
{
    timer_.expires_after(pause);
    timer_.async_wait([this](const boost::system::error_code &problem) {
        if (!problem) {
            resolve();
        }
    });
}

void Mqtt::resolve()
{
    if (is_address(broker().host)) {
        on_addresses({broker().host}, "");
        return;
    }
    lookup_.start(broker().host,
                  [this](std::vector<std::string> found, const std::string &problem) {
                      on_addresses(std::move(found), problem);
                  });
}

void Mqtt::on_addresses(std::vector<std::string> addresses, const std::string &problem)
{
    if (is_stopping_) {
        return;
    }
    addresses_ = std::move(addresses);
    if (broker().is_local()) { // no other machine is meant, regardless of the resolver
        std::erase_if(addresses_,
                      [](const std::string &address) { return !is_loopback_address(address); });
    }
    std::ranges::reverse(addresses_);
    if (addresses_.empty()) {
        give_up_attempt(problem.empty() ? "it has no address" : problem);
    } else {
        connect();
    }
}

void Mqtt::connect()
{
    ConnectOptions options;
    options.broker = broker();
    options.address = std::move(addresses_.back());
    addresses_.pop_back();
    options.id = client_identifier(options_.root, options_.id);
    options.credentials = credentials_;
    options.keep_alive = options_.keep_alive;
    options.session = options_.session;
    options.max_packet =
        static_cast<uint32_t>(std::max(kLargestPacket, limits_.request + kRoomForProperties));
    options.will = state(false);
    options.will.retain = brokers_[broker_].retains;
    options.will.qos = brokers_[broker_].qos;
    options.subscriptions = topics_->subscriptions();
    tls_.reset();
    if (broker().is_tls) {
        try { // read for each connection, since certificates are renewed
            tls_.emplace(options_.tls, broker().host);
        } catch (const std::runtime_error &problem) {
            give_up_attempt(problem.what());
            return;
        }
        options.tls = &*tls_;
    }
    connection_ = std::make_unique<BrokerConnection>(loop_, std::move(options),
                                                     static_cast<BrokerListener &>(*this));
    timer_.expires_after(kAttempt);
    timer_.async_wait([this](const boost::system::error_code &problem) {
        // An expiry that is queued already cannot be cancelled.
        if (!problem && connection_ != nullptr && !is_online_) {
            on_lost("no answer within " + std::to_string(kAttempt.count()) + " seconds");
        }
    });
    connection_->start();
}

void Mqtt::give_up_attempt(const std::string &why)
{
    const std::string problem = "cannot connect to " + broker().url() + ": " + why;
    if (problem != problem_) { // once, rather than at each attempt
        problem_ = problem;
        print_error(problem);
    }
    report(ConnectionEvent::kFailed, problem);
    try_next();
}

// Some brokers refuse a will that is retained or has a quality of service. Result: whether the next
// attempt asks for less.
bool Mqtt::lower_will(Refusal refusal)
{
    Broker &current = brokers_[broker_];
    if (refusal == Refusal::kRetain) {
        return std::exchange(current.retains, false);
    }
    return std::exchange(current.qos, 0) > 0;
}

void Mqtt::on_connected()
{
    timer_.cancel();
    is_online_ = true;
    online_since_ = Clock::now();
    brokers_[broker_].max_packet = connection_->features().max_packet;
    failures_ = 0;
    addresses_.clear();
    problem_.clear();
    write_error_line("connected to " + broker().url() + " as " + options_.id);
    report(ConnectionEvent::kConnected, "");
    // What the last connection has not had acknowledged comes first.
    for (; !unacknowledged_.empty(); unacknowledged_.pop_back()) {
        waiting_.push_front(std::move(unacknowledged_.back()));
    }
    forget_states();
    // Even if the queue is full: the retained state would be that of the last connection's end.
    queue({state(true), std::nullopt});
    publish_waiting();
}

// Otherwise a broker that acknowledges nothing would add one with each connection.
void Mqtt::forget_states()
{
    std::erase_if(waiting_, [this](const Waiting &waiting) {
        const bool is_state = waiting.message.topic == topics_->state();
        pending_ -= is_state ? packet_size(waiting.message) : 0;
        return is_state;
    });
}

void Mqtt::on_lost(const std::string &why)
{
    timer_.cancel();
    const Refusal refusal = connection_->refusal();
    const std::string address = connection_->address();
    const bool is_taken_over = connection_->is_taken_over();
    connection_.reset();
    if (refusal != Refusal::kOther && !is_stopping_ && lower_will(refusal)) {
        addresses_.push_back(address);
        connect();
        return;
    }
    if (on_empty_) {
        std::exchange(on_empty_, nullptr)();
        return;
    }
    if (!std::exchange(is_online_, false)) {
        give_up_attempt(why);
        return;
    }
    // Two clients with the same name take the connection from each other for ever: each waits
    // longer every time. Not every broker says so when it closes the older connection.
    const bool is_short = is_taken_over || Clock::now() - online_since_ < kStable;
    if (!is_short) {
        backoff_.reset();
    }
    short_connections_ = is_short ? short_connections_ + 1 : 0;
    const bool seems_taken_over = is_taken_over || short_connections_ >= kManyShortConnections;
    std::string problem = "the connection to " + broker().url() + " is lost: " + why;
    if (short_connections_ >= kManyShortConnections) {
        problem += "; " + std::to_string(short_connections_) +
                   " times in a row soon after it was made: is there another client " +
                   client_identifier(options_.root, options_.id) + "?";
    }
    print_error(problem);
    report(seems_taken_over ? ConnectionEvent::kTakenOver : ConnectionEvent::kLost, problem);
    connect_again();
}

// First this broker again, after a pause: the whole fleet has lost it.
void Mqtt::connect_again()
{
    failures_ = 0;
    const auto spread = std::chrono::milliseconds(static_cast<int64_t>(
        static_cast<double>(options_.reconnect_spread.count()) * random_fraction()));
    resolve_after(std::max(backoff_.next(random_fraction()), spread));
}

void Mqtt::report(ConnectionEvent event, const std::string &why) const
{
    if (options_.on_connection_event) {
        options_.on_connection_event(event, why);
    }
}

void Mqtt::drop_connection()
{
    if (is_online_) {
        on_lost("cut");
    }
}

// ---- Requests -----------------------------------------------------------------------------------

void Mqtt::note(const std::string &text)
{
    const auto now = Clock::now();
    if (now - noted_ >= kNotes) {
        noted_ = now;
        print_error(text);
    }
}

void Mqtt::on_message(const ReceivedMessage &message)
{
    const Topics::Target target = topics_->target_of(message.topic);
    if (target.kind == Topics::Target::Kind::kNone) {
        note("there is no such topic: " + std::string(message.topic));
        return;
    }
    if (message.is_retained) { // it would be carried out again at each connection
        note("a retained request is not carried out: " + std::string(message.topic));
        return;
    }
    if (target.kind == Topics::Target::Kind::kState) {
        if (gate_.take_token(*who_)) {
            send(state(!is_stopping_), std::nullopt);
        } else {
            note("the state is not published again, because there are too many requests for it");
        }
        return;
    }
    const std::string response_topic = target.kind == Topics::Target::Kind::kLine
                                           ? topics_->reply(target.name)
                                           : message.response_topic;
    if (!response_topic.empty() && !topics_->may_answer_at(response_topic)) {
        note("a request is not carried out, because its response topic is not allowed: " +
             response_topic);
        return;
    }
    submit(message, target, response_topic);
}

void Mqtt::submit(const ReceivedMessage &message, const Topics::Target &target,
                  const std::string &response_topic)
{
    const bool is_line = target.kind == Topics::Target::Kind::kLine;
    MqttClient::Asked asked;
    asked.correlation = message.correlation;
    asked.qos = message.qos;
    asked.is_line = is_line;
    asked.wants_gzip = message.wants_gzip;
    asked.bytes = message.payload.size() + message.correlation.size() + message.epoch.size();
    if (message.expiry) {
        asked.expires = Clock::now() + *message.expiry;
    }
    MqttClient *client = client_for(response_topic);
    if (client == nullptr) {
        note("a request is not carried out, because there are " + std::to_string(limits_.clients) +
             " clients already");
        return;
    }
    Request request;
    if (message.payload.size() > limits_.request) {
        request.code = Code::kTooLarge;
        request.error = "the payload is longer than " + std::to_string(limits_.request) + " bytes";
    } else {
        request = request_of(target, message.payload);
    }
    asked.id = request.id;
    // The gate keeps the answers of a client in order, so there is an end to what it can refuse.
    // Not to read on would only move the queue to the broker, which drops what is too much.
    const bool is_full = client->is_full() || (asked_ > 0 && asked_ + asked.bytes > kMostAsked);
    if (is_full) {
        client->answer(
            asked, error_answer(asked.id, Code::kBusy, "too many requests are waiting already"));
        return;
    }
    const std::string &mark = is_line ? request.id : message.correlation;
    if (!response_topic.empty() && !mark.empty() && !(is_line && mark == "null")) {
        request.repeat_key = response_topic + "\n" + mark;
    }
    request.epoch = message.epoch;
    request.expires = asked.expires;
    client->submit(std::move(asked), std::move(request));
}

MqttClient *Mqtt::client_for(const std::string &response_topic)
{
    const auto found = client_of_topic_.find(response_topic);
    if (found != client_of_topic_.end()) {
        clients_.splice(clients_.begin(), clients_, found->second);
        return &clients_.front();
    }
    if (clients_.size() >= limits_.clients) {
        const auto idle = std::ranges::find_if(clients_.rbegin(), clients_.rend(),
                                               [](const MqttClient &one) { return one.is_idle(); });
        if (idle == clients_.rend()) {
            return nullptr;
        }
        client_of_topic_.erase(idle->topic());
        clients_.erase(std::prev(idle.base()));
    }
    MqttClient &client = clients_.emplace_front(*this, response_topic);
    client_of_topic_.emplace(client.topic(), clients_.begin());
    return &client;
}

void Mqtt::close_idle()
{
    const auto time = Clock::now() - kIdle;
    std::erase_if(clients_, [&](const MqttClient &client) {
        const bool is_idle = client.is_idle_since(time);
        if (is_idle) {
            client_of_topic_.erase(client.topic());
        }
        return is_idle;
    });
}

void Mqtt::schedule_look()
{
    look_.expires_after(kLook);
    look_.async_wait([this](const boost::system::error_code &problem) {
        if (!problem) {
            close_idle();
            schedule_look();
        }
    });
}

// ---- Messages to the broker ---------------------------------------------------------------------

size_t Mqtt::max_packet() const
{
    const size_t limit = options_.max_packet > 0 ? options_.max_packet : SIZE_MAX;
    const size_t of_broker = brokers_[broker_].max_packet;
    return of_broker > 0 ? std::min(limit, of_broker) : limit;
}

bool Mqtt::may_publish(const PublishedMessage &message) const
{
    return is_online_ &&
           (message.qos == 0 ||
            unacknowledged_.size() <
                std::min<size_t>(kMostUnacknowledged, connection_->features().receive_maximum));
}

void Mqtt::send(PublishedMessage message, std::optional<Clock::time_point> expires)
{
    Waiting waiting{std::move(message), expires};
    if (waiting_.empty() && may_publish(waiting.message)) {
        publish(std::move(waiting));
        return;
    }
    if (!has_room()) {
        note("answers are lost, because the broker does not take them");
        return;
    }
    queue(std::move(waiting));
}

void Mqtt::queue(Waiting waiting)
{
    pending_ += packet_size(waiting.message);
    waiting_.push_back(std::move(waiting));
    was_full_ = was_full_ || !has_room();
}

// pending_ does not contain the message.
void Mqtt::publish(Waiting waiting)
{
    const BrokerFeatures &features = connection_->features();
    waiting.message.qos = std::min<int>(waiting.message.qos, features.max_qos);
    waiting.message.retain = waiting.message.retain && features.retains;
    if (packet_size(waiting.message) > max_packet()) { // made for another broker
        note("an answer is lost, because the broker does not take packets of its size");
        return;
    }
    waiting.number = connection_->publish(waiting.message);
    // What a broken connection has not taken is kept for the next one.
    if (waiting.message.qos > 0 && waiting.number >= 0) {
        pending_ += packet_size(waiting.message);
        unacknowledged_.push_back(std::move(waiting));
        was_full_ = was_full_ || !has_room();
    }
}

void Mqtt::publish_waiting()
{
    while (!waiting_.empty() && may_publish(waiting_.front().message)) {
        Waiting next = std::move(waiting_.front());
        waiting_.pop_front();
        pending_ -= packet_size(next.message);
        if (!next.expires || *next.expires > Clock::now()) {
            publish(std::move(next));
        }
    }
    if (was_full_ && has_room()) {
        was_full_ = false;
        for (MqttClient &client : clients_) {
            client.resume();
        }
    }
    end_if_sent();
}

void Mqtt::on_acknowledged(int number)
{
    const auto found = std::ranges::find(unacknowledged_, number, &Waiting::number);
    if (found == unacknowledged_.end()) {
        return; // of quality of service 0
    }
    pending_ -= packet_size(found->message);
    unacknowledged_.erase(found);
    publish_waiting();
}

PublishedMessage Mqtt::state(bool is_online) const
{
    PublishedMessage message;
    message.topic = topics_->state();
    message.retain = true;
    message.qos = kQosOfEvents;
    message.payload = kOffline;
    if (is_online) {
        message.payload = R"({"online":true,"service":")" HGAGENT_VERSION R"(","protocol":)" +
                          agent::quoted(kProtocolVersion) + R"(,"epoch":)" +
                          agent::quoted(gate_.epoch()) + R"(,"since":")" + started_ + "\"}";
    }
    return message;
}

// ---- The end ------------------------------------------------------------------------------------

void Mqtt::stop_accepting()
{
    is_stopping_ = true;
    look_.cancel();
    if (!is_online_) {
        timer_.cancel();
    }
}

void Mqtt::on_empty(std::function<void()> done)
{
    on_empty_ = std::move(done);
    if (!is_online_) {
        connection_.reset();
        std::exchange(on_empty_, nullptr)();
        return;
    }
    queue({state(false), std::nullopt});
    publish_waiting();
    end_if_sent();
}

void Mqtt::end_if_sent()
{
    if (on_empty_ && is_online_ && waiting_.empty() && unacknowledged_.empty()) {
        is_online_ = false;
        connection_->disconnect();
    }
}

} // namespace agent::service

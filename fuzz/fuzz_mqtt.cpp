// SPDX-License-Identifier: MIT
// Fuzzes what a gateway on a broker receives. libmosquitto has read it, and is not part of this:
// the functions that would use the network are replaced. The input is in pieces (pieces.h):
//
//   @message TOPIC  a message; its properties are lines up to an empty one, and its payload
//   follows:
//       response TOPIC, correlation BYTES, epoch TEXT, expiry SECONDS, gzip, retain, qos 0
//   @hold, @go      from now on the worker keeps its answers, or no longer does
//   @deaf, @hear    from now on the broker acknowledges nothing, or does again
//
// As the first pieces @guest and @small are a gateway whose clients may only ask, and a broker that
// takes packets of at most 300 bytes.
//
// Answers go to topics for answers only, and each is a JSON object on one line. No message gets
// two, a change with its correlation data is executed once, and a message that is retained, or has
// a response topic that is not allowed, has no effect. If nobody holds anything up, each other
// message gets its answer.
#include "backend.h"
#include "pieces.h"
#include "protocol/protocol.h"
#include "request.h"
#include "service/ways_in/mqtt/mqtt.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <deque>
#include <functional>
#include <map>
#include <mosquitto.h>
#include <mqtt_protocol.h>
#include <set>
#include <sys/socket.h>
#include <unistd.h>
#include <zlib.h>

using namespace fuzz;
using namespace agent::service;

namespace {

using Kind = Topics::Target::Kind;

constexpr char kPolicy[] = R"([roles.guest]
members = ["topic-root:gateway"]
allow = ["effect:none"]
)";
constexpr char kElsewhere[] = "platform/";
constexpr uint32_t kSmall = 300;

// ---- The broker ---------------------------------------------------------------------------------

using ConnectCallback = void (*)(mosquitto *, void *, int, int, const mosquitto_property *);
using SubscribeCallback = void (*)(mosquitto *, void *, int, int, const int *,
                                   const mosquitto_property *);
using MessageCallback = void (*)(mosquitto *, void *, const mosquitto_message *,
                                 const mosquitto_property *);
using PublishCallback = void (*)(mosquitto *, void *, int, int, const mosquitto_property *);

class PropertyList {
  public:
    PropertyList() = default;
    ~PropertyList() { mosquitto_property_free_all(&list); }
    PropertyList(const PropertyList &) = delete;
    PropertyList &operator=(const PropertyList &) = delete;

    mosquitto_property *list = nullptr;
};

struct Broker {
    mosquitto *client = nullptr;
    ConnectCallback on_connect = nullptr;
    SubscribeCallback on_subscribe = nullptr;
    MessageCallback on_message = nullptr;
    PublishCallback on_publish = nullptr;

    std::deque<std::function<void()>> packets; // that have not been read
    int number = 0;                            // of the last message that was published
    std::deque<int> unacknowledged;
    size_t published = 0;
    // The answers by topic and correlation data.
    std::map<std::pair<std::string, std::string>, size_t> answers;
};

Broker broker;
// Of the connection. Only that something has arrived passes through it.
int near_end = -1;
int far_end = -1;

void send(std::function<void()> packet)
{
    broker.packets.push_back(std::move(packet));
    if (write(far_end, "", 1) != 1) {
        give_up("no socket");
    }
}

std::string unpacked(std::string_view bytes)
{
    constexpr int kGzip = 16 + MAX_WBITS;
    constexpr size_t kMost = 1024UL * 1024;
    std::string text(kMost, '\0');
    z_stream stream = {};
    inflateInit2(&stream, kGzip);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef *>(text.data());
    stream.avail_out = static_cast<uInt>(text.size());
    const int result = inflate(&stream, Z_FINISH);
    text.resize(stream.total_out);
    inflateEnd(&stream);
    if (result != Z_STREAM_END) {
        give_up("not gzip", bytes);
    }
    return text;
}

std::string correlation_in(const mosquitto_property *properties)
{
    void *bytes = nullptr;
    uint16_t size = 0;
    mosquitto_property_read_binary(properties, MQTT_PROP_CORRELATION_DATA, &bytes, &size, false);
    std::string copy(static_cast<const char *>(bytes), bytes != nullptr ? size : 0);
    free(bytes);
    return copy;
}

bool is_packed(const mosquitto_property *properties)
{
    char *name = nullptr;
    char *value = nullptr;
    const bool is_there = mosquitto_property_read_string_pair(properties, MQTT_PROP_USER_PROPERTY,
                                                              &name, &value, false) != nullptr;
    free(name);
    free(value);
    return is_there; // the only one that is ever sent
}

void take_published(std::string_view topic, std::string_view payload, int qos, bool is_retained,
                    const mosquitto_property *properties)
{
    ++broker.published;
    if (topic == "gateway/gw1/state" || topic.starts_with("gateway/gw1/event/")) {
        check_object(payload);
        return;
    }
    const bool is_for_answers =
        topic.starts_with("gateway/gw1/reply/") || topic.starts_with(kElsewhere);
    if (!is_for_answers || topic.ends_with('/') || topic.size() > 256 || is_retained || qos > 1 ||
        topic.find_first_of(std::string_view("+#\0\n", 4)) != std::string_view::npos) {
        give_up("an answer to a topic that is none for answers", topic);
    }
    check_object(is_packed(properties) ? unpacked(payload) : std::string(payload));
    ++broker.answers[{std::string(topic), correlation_in(properties)}];
}

// ---- The gateway --------------------------------------------------------------------------------

struct Message {
    std::string topic;
    std::string payload;
    std::string response_topic;
    std::string correlation;
    bool is_retained = false;
    int qos = 1;
    PropertyList properties;
};

// Invalid properties never reach a client: they are left out.
void read_property(std::string_view line, Message &message)
{
    const std::string word(line.substr(0, line.find(' ')));
    const std::string value(line.substr(std::min(word.size() + 1, line.size())));
    mosquitto_property **list = &message.properties.list;
    if (word == "response" && message.response_topic.empty()) {
        if (mosquitto_property_add_string(list, MQTT_PROP_RESPONSE_TOPIC, value.c_str()) ==
            MOSQ_ERR_SUCCESS) {
            message.response_topic = value.c_str();
        }
    } else if (word == "correlation" && message.correlation.empty()) {
        mosquitto_property_add_binary(list, MQTT_PROP_CORRELATION_DATA, value.data(),
                                      static_cast<uint16_t>(value.size()));
        message.correlation = value;
    } else if (word == "epoch" || word == "gzip") {
        const bool is_epoch = word == "epoch";
        mosquitto_property_add_string_pair(list, MQTT_PROP_USER_PROPERTY,
                                           is_epoch ? "epoch" : "accept-encoding",
                                           is_epoch ? value.c_str() : "gzip");
    } else if (word == "expiry") {
        uint32_t seconds = 0;
        std::from_chars(value.data(), value.data() + value.size(), seconds);
        mosquitto_property_add_int32(list, MQTT_PROP_MESSAGE_EXPIRY_INTERVAL, seconds);
    } else if (word == "retain") {
        message.is_retained = true;
    } else if (word == "qos") {
        message.qos = value == "0" ? 0 : 1;
    }
}

void read_message(const Piece &piece, Message &message)
{
    const std::string topic =
        piece.word.substr(std::min(piece.word.find(' ') + 1, piece.word.size()));
    message.topic = topic.c_str();
    std::string_view rest = piece.text;
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (line.empty()) {
            break;
        }
        read_property(line, message);
    }
    message.payload = rest;
}

class Gateway {
  public:
    Gateway(bool is_guest, bool is_small)
        : is_guest_(is_guest), backend_(is_guest ? kPolicy : ""),
          mqtt_(backend_.loop(), backend_.gate(), {}), is_held_up_(is_small)
    {
        broker = {};
        MqttOptions options;
        options.brokers = {"mqtt://127.0.0.1:1883"};
        options.id = "gw1";
        options.root = "gateway";
        options.response_topics = {kElsewhere};
        options.is_trusted = !is_guest;
        mqtt_.start(std::move(options));
        PropertyList features;
        if (is_small) {
            mosquitto_property_add_int32(&features.list, MQTT_PROP_MAXIMUM_PACKET_SIZE, kSmall);
        }
        send([&] { broker.on_connect(broker.client, userdata(), 0, 0, features.list); });
        send([] {
            constexpr int kGranted[] = {1, 1, 1, 1};
            broker.on_subscribe(broker.client, userdata(), 1, std::size(kGranted), kGranted,
                                nullptr);
        });
        settle();
        if (broker.published == 0) {
            give_up("the gateway has not published its state");
        }
    }

    void receive(const Piece &piece)
    {
        Message message;
        read_message(piece, message);
        const Topics::Target target = topics_.target_of(message.topic);
        const bool is_line = target.kind == Kind::kLine;
        const std::string response_topic =
            is_line ? topics_.reply(target.name) : message.response_topic;
        const bool is_request =
            is_line || target.kind == Kind::kCommand || target.kind == Kind::kReport;
        const bool is_accepted = is_request && !message.is_retained &&
                                 (response_topic.empty() || topics_.may_answer_at(response_topic));
        const size_t published = broker.published;
        const size_t given = backend_.given().size();

        mosquitto_message raw = {};
        raw.topic = message.topic.data();
        raw.payload = message.payload.empty() ? nullptr : message.payload.data();
        raw.payloadlen = static_cast<int>(message.payload.size());
        raw.qos = message.qos;
        raw.retain = message.is_retained;
        send([&] { broker.on_message(broker.client, userdata(), &raw, message.properties.list); });
        settle();
        const bool asks_state = target.kind == Kind::kState && !message.is_retained;
        if (!is_accepted && !asks_state &&
            (broker.published != published || backend_.given().size() != given)) {
            give_up("a message that is not accepted has an effect", message.topic);
        }
        if (is_accepted) {
            count(target, message, response_topic);
        }
    }

    void take(const std::vector<Piece> &pieces)
    {
        for (const Piece &piece : pieces) {
            if (piece.word.starts_with("message ")) {
                receive(piece);
            } else if (piece.word == "hold" || piece.word == "go") {
                backend_.hold(piece.word == "hold");
                is_held_up_ = true;
            } else if (piece.word == "deaf" || piece.word == "hear") {
                is_deaf_ = piece.word == "deaf";
                is_held_up_ = true;
            }
            settle();
        }
        backend_.hold(false);
        is_deaf_ = false;
        settle();
    }

    void check() const
    {
        for (const auto &[key, count] : broker.answers) {
            const auto expected = expected_.find(key);
            if (expected == expected_.end() || count > expected->second) {
                give_up("more answers than messages", key.first + ' ' + key.second);
            }
        }
        if (!is_held_up_ && !is_guest_ && broker.answers != expected_) {
            give_up("a message has no answer");
        }
        check_executions();
        if (is_guest_) {
            backend_.check_only_queries();
        }
    }

  private:
    static void *userdata() { return mosquitto_userdata(broker.client); }

    void count(const Topics::Target &target, const Message &message,
               const std::string &response_topic)
    {
        if (!response_topic.empty()) {
            ++expected_[{response_topic, message.correlation}];
        }
        if (target.kind == Kind::kLine) {
            ++other_changes_; // perhaps
        } else if (target.kind == Kind::kCommand && agent::may_change(target.name)) {
            if (response_topic.empty() || message.correlation.empty()) {
                ++other_changes_;
            } else {
                changes_.emplace(response_topic, message.correlation);
            }
        }
    }

    void check_executions() const
    {
        const auto executed = std::ranges::count_if(backend_.given(), [](const Given &given) {
            return given.is_valid && !given.command.empty() && agent::may_change(given.command);
        });
        if (static_cast<size_t>(executed) > changes_.size() + other_changes_) {
            give_up("a change is executed twice", backend_.given().back().line);
        }
    }

    void settle()
    {
        backend_.settle();
        while (!is_deaf_ && !broker.unacknowledged.empty()) {
            const int number = broker.unacknowledged.front();
            broker.unacknowledged.pop_front();
            send([number] { broker.on_publish(broker.client, userdata(), number, 0, nullptr); });
            backend_.settle();
        }
    }

    const bool is_guest_;
    const Topics topics_{"gateway", "gw1", {kElsewhere}};
    Backend backend_;
    Mqtt mqtt_;
    bool is_deaf_ = false;
    bool is_held_up_; // so that there may be less answers than messages
    std::map<std::pair<std::string, std::string>, size_t> expected_; // answers
    std::set<std::pair<std::string, std::string>> changes_;          // with correlation data
    size_t other_changes_ = 0;
};

// ---- Changes ------------------------------------------------------------------------------------

constexpr const char *kProperties[] = {
    "response gateway/gw1/reply/app",
    "response platform/x",
    "response gateway/gw1/command/REBOOT",
    "response gateway/gw1/reply/+",
    "correlation 1",
    "correlation 2",
    "epoch 0123456789abcdef",
    "expiry 0",
    "expiry 4294967295",
    "gzip",
    "retain",
    "qos 0",
};

constexpr const char *kWords[] = {"hold",
                                  "go",
                                  "deaf",
                                  "hear",
                                  "guest",
                                  "small",
                                  "message gateway/gw1/request/app",
                                  "message gateway/gw1/report/topology",
                                  "message gateway/gw1/state/get"};

void change_piece(Piece &piece, Mutator &mutator)
{
    switch (mutator.below(5)) {
    case 0:
        piece.word = mutator.one_in(2)
                         ? kWords[mutator.below(std::size(kWords))]
                         : "message gateway/gw1/command/" + mutator.another_request().command;
        break;
    case 1:
        piece.text.insert(0, std::string(kProperties[mutator.below(std::size(kProperties))]) +
                                 (piece.text.empty() ? "\n\n" : "\n"));
        break;
    case 2:
        piece.text = mutator.changed_bytes(piece.text, piece.text.size() + 64);
        break;
    default:
        change_json(piece.text, piece.word.substr(piece.word.rfind('/') + 1), mutator);
        break;
    }
}

} // namespace

// ---- What libmosquitto would do with the network ------------------------------------------------

extern "C" {

int __wrap_mosquitto_connect_async(mosquitto *client, const char *, int, int)
{
    broker.client = client;
    return MOSQ_ERR_SUCCESS;
}

int __wrap_mosquitto_socket(mosquitto *)
{
    return near_end;
}

bool __wrap_mosquitto_want_write(mosquitto *)
{
    return false;
}

int __wrap_mosquitto_loop_misc(mosquitto *)
{
    return MOSQ_ERR_SUCCESS;
}

int __wrap_mosquitto_loop_read(mosquitto *, int)
{
    char bytes[64];
    static_cast<void>(recv(near_end, bytes, sizeof bytes, MSG_DONTWAIT));
    while (!broker.packets.empty()) {
        const auto packet = std::move(broker.packets.front());
        broker.packets.pop_front();
        packet();
    }
    return MOSQ_ERR_SUCCESS;
}

int __wrap_mosquitto_subscribe_multiple(mosquitto *, int *, int, char *const *const, int, int,
                                        const mosquitto_property *)
{
    return MOSQ_ERR_SUCCESS;
}

int __wrap_mosquitto_publish_v5(mosquitto *, int *number, const char *topic, int size,
                                const void *payload, int qos, bool retain,
                                const mosquitto_property *properties)
{
    *number = ++broker.number;
    if (qos > 0) {
        broker.unacknowledged.push_back(*number);
    }
    take_published(topic, {static_cast<const char *>(payload), static_cast<size_t>(size)}, qos,
                   retain, properties);
    return MOSQ_ERR_SUCCESS;
}

void __wrap_mosquitto_connect_v5_callback_set(mosquitto *, ConnectCallback callback)
{
    broker.on_connect = callback;
}

void __wrap_mosquitto_subscribe_v5_callback_set(mosquitto *, SubscribeCallback callback)
{
    broker.on_subscribe = callback;
}

void __wrap_mosquitto_message_v5_callback_set(mosquitto *, MessageCallback callback)
{
    broker.on_message = callback;
}

void __wrap_mosquitto_publish_v5_callback_set(mosquitto *, PublishCallback callback)
{
    broker.on_publish = callback;
}

int LLVMFuzzerInitialize(int *, char ***)
{
    keep_error_output();
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        give_up("no socket");
    }
    near_end = ends[0];
    far_end = ends[1];
    return 0;
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    std::vector<Piece> pieces = pieces_of(text_of(data, size));
    bool is_guest = false;
    bool is_small = false;
    while (!pieces.empty() && (pieces.front().word == "guest" || pieces.front().word == "small")) {
        is_guest = is_guest || pieces.front().word == "guest";
        is_small = is_small || pieces.front().word == "small";
        pieces.erase(pieces.begin());
    }
    Gateway gateway(is_guest, is_small);
    gateway.take(pieces);
    gateway.check();
    return 0;
}

size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t room, unsigned seed)
{
    Mutator mutator(seed);
    std::vector<Piece> pieces = pieces_of(text_of(data, size));
    if (pieces.empty() || mutator.one_in(4)) {
        return LLVMFuzzerMutate(data, size, room);
    }
    if (mutator.one_in(4)) {
        change_order(pieces, mutator);
    } else {
        change_piece(pieces[mutator.below(pieces.size())], mutator);
    }
    return write_out(fuzz::text_of(pieces), data, size, room);
}
}

// SPDX-License-Identifier: MIT
#include "service/ways_in/mqtt/broker_connection.h"

#include "service/common/sockets.h"

#include <boost/asio/post.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <mosquitto.h>
#include <mqtt_protocol.h>
#include <new>
#include <stdexcept>
#include <utility>

namespace agent::service {

namespace {

using boost::asio::posix::stream_descriptor;

constexpr char kEpoch[] = "epoch";
constexpr char kAcceptEncoding[] = "accept-encoding";
constexpr char kContentEncoding[] = "content-encoding";
constexpr char kGzip[] = "gzip";
constexpr int kQos = 1; // of the subscriptions
constexpr std::chrono::seconds kShortestPause(1);
constexpr std::chrono::seconds kLongestPause(15);

// Once for the process.
class Library {
  public:
    Library() { mosquitto_lib_init(); }
    ~Library() { mosquitto_lib_cleanup(); }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;
};

class Properties {
  public:
    Properties() = default;
    ~Properties() { mosquitto_property_free_all(&list_); }
    Properties(const Properties &) = delete;
    Properties &operator=(const Properties &) = delete;

    void add_number(int identifier, uint32_t value)
    {
        check(mosquitto_property_add_int32(&list_, identifier, value));
    }
    void add_binary(int identifier, const std::string &value)
    {
        check(mosquitto_property_add_binary(&list_, identifier, value.data(),
                                            static_cast<uint16_t>(value.size())));
    }
    void add_text(int identifier, const char *value)
    {
        check(mosquitto_property_add_string(&list_, identifier, value));
    }
    void add_pair(const char *name, const char *value)
    {
        check(mosquitto_property_add_string_pair(&list_, MQTT_PROP_USER_PROPERTY, name, value));
    }
    const mosquitto_property *get() const { return list_; }

  private:
    static void check(int result)
    {
        if (result != MOSQ_ERR_SUCCESS) {
            throw std::bad_alloc();
        }
    }

    mosquitto_property *list_ = nullptr;
};

// Takes ownership of a text that the library has allocated.
std::string taken(char *text)
{
    std::string copy = text != nullptr ? text : "";
    free(text);
    return copy;
}

std::string binary_of(const mosquitto_property *property, int identifier)
{
    void *data = nullptr;
    uint16_t size = 0;
    mosquitto_property_read_binary(property, identifier, &data, &size, false);
    std::string copy(static_cast<const char *>(data), data != nullptr ? size : 0);
    free(data);
    return copy;
}

void read_user_property(const mosquitto_property *property, ReceivedMessage &message)
{
    char *raw_name = nullptr;
    char *raw_value = nullptr;
    mosquitto_property_read_string_pair(property, MQTT_PROP_USER_PROPERTY, &raw_name, &raw_value,
                                        false);
    const std::string name = taken(raw_name);
    const std::string value = taken(raw_value);
    if (name == kEpoch) {
        message.epoch = value;
    } else if (name == kAcceptEncoding) {
        message.wants_gzip = value == kGzip;
    } else if (name == kContentEncoding) {
        message.is_gzip = value == kGzip;
    }
}

ReceivedMessage read_message(const mosquitto_message &raw, const mosquitto_property *properties)
{
    ReceivedMessage message;
    message.topic = raw.topic;
    message.payload = {static_cast<const char *>(raw.payload), static_cast<size_t>(raw.payloadlen)};
    message.qos = raw.qos;
    message.is_retained = raw.retain;
    for (const auto *one = properties; one != nullptr; one = mosquitto_property_next(one)) {
        switch (mosquitto_property_identifier(one)) {
        case MQTT_PROP_RESPONSE_TOPIC: {
            char *topic = nullptr;
            mosquitto_property_read_string(one, MQTT_PROP_RESPONSE_TOPIC, &topic, false);
            message.response_topic = taken(topic);
            break;
        }
        case MQTT_PROP_CORRELATION_DATA:
            message.correlation = binary_of(one, MQTT_PROP_CORRELATION_DATA);
            break;
        case MQTT_PROP_MESSAGE_EXPIRY_INTERVAL: {
            uint32_t seconds = 0;
            mosquitto_property_read_int32(one, MQTT_PROP_MESSAGE_EXPIRY_INTERVAL, &seconds, false);
            message.expiry = std::chrono::seconds(seconds);
            break;
        }
        case MQTT_PROP_USER_PROPERTY:
            read_user_property(one, message);
            break;
        default:
            break;
        }
    }
    return message;
}

// The size of a length as MQTT writes it.
size_t size_of_length(size_t length)
{
    size_t bytes = 1;
    while (length >= 128) {
        length /= 128;
        ++bytes;
    }
    return bytes;
}

size_t size_of_text(std::string_view text)
{
    return text.empty() ? 0 : 3 + text.size();
}

size_t size_of_pair(std::string_view name, std::string_view value)
{
    return value.empty() ? 0 : 5 + name.size() + value.size();
}

size_t size_of_properties(const PublishedMessage &message)
{
    return size_of_text(message.correlation) + size_of_text(message.response_topic) +
           (message.expiry ? 5 : 0) + size_of_pair(kEpoch, message.epoch) +
           size_of_pair(kContentEncoding, message.is_gzip ? kGzip : "") +
           size_of_pair(kAcceptEncoding, message.wants_gzip ? kGzip : "");
}

BrokerConnection &connection_of(void *object)
{
    return *static_cast<BrokerConnection *>(object);
}

} // namespace

void load_mqtt_library()
{
    static const Library library;
}

size_t packet_size(const PublishedMessage &message)
{
    const size_t properties = size_of_properties(message);
    const size_t rest = 2 + message.topic.size() + (message.qos > 0 ? 2 : 0) +
                        size_of_length(properties) + properties + message.payload.size();
    return 1 + size_of_length(rest) + rest;
}

BrokerConnection::BrokerConnection(boost::asio::io_context &loop, ConnectOptions options,
                                   BrokerListener &listener)
    : loop_(loop), options_(std::move(options)), listener_(listener), socket_(loop),
      keep_alive_(loop)
{
    load_mqtt_library();
    client_ = mosquitto_new(options_.id.c_str(), false, this);
    if (client_ == nullptr) {
        throw std::bad_alloc();
    }
}

BrokerConnection::~BrokerConnection()
{
    *is_alive_ = false;
    boost::system::error_code ignored;
    socket_.close(ignored);
    mosquitto_destroy(client_);
}

// Exceptions must not pass through the library, which would stay locked.
template <class Function> void BrokerConnection::guarded(Function function)
{
    const bool is_nested = std::exchange(is_in_callback_, true);
    try {
        function();
    } catch (...) {
        exception_ = std::current_exception();
    }
    is_in_callback_ = is_nested;
}

void BrokerConnection::set_callbacks()
{
    mosquitto_connect_v5_callback_set(client_, [](mosquitto *, void *object, int reason, int,
                                                  const mosquitto_property *properties) {
        auto &self = connection_of(object);
        self.guarded([&] { self.on_connack(reason, properties); });
    });
    mosquitto_subscribe_v5_callback_set(client_, [](mosquitto *, void *object, int, int count,
                                                    const int *granted,
                                                    const mosquitto_property *) {
        auto &self = connection_of(object);
        self.guarded([&] { self.on_suback({granted, granted + count}); });
    });
    mosquitto_message_v5_callback_set(client_, [](mosquitto *, void *object,
                                                  const mosquitto_message *raw,
                                                  const mosquitto_property *properties) {
        auto &self = connection_of(object);
        self.guarded([&] { self.listener_.on_message(read_message(*raw, properties)); });
    });
    mosquitto_publish_v5_callback_set(
        client_, [](mosquitto *, void *object, int number, int, const mosquitto_property *) {
            auto &self = connection_of(object);
            self.guarded([&] { self.listener_.on_acknowledged(number); });
        });
    mosquitto_disconnect_v5_callback_set(
        client_, [](mosquitto *, void *object, int result, const mosquitto_property *) {
            auto &self = connection_of(object);
            self.guarded([&] { self.on_disconnected(result); });
        });
    mosquitto_log_callback_set(client_, [](mosquitto *, void *object, int level, const char *text) {
        auto &self = connection_of(object);
        if (level == MOSQ_LOG_ERR) {
            self.guarded([&] { self.error_ = text; });
        }
    });
}

void BrokerConnection::start()
{
    set_callbacks();
    mosquitto_int_option(client_, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V5);
    mosquitto_int_option(client_, MOSQ_OPT_TCP_NODELAY, 1);
    if (options_.tls != nullptr) {
        mosquitto_void_option(client_, MOSQ_OPT_SSL_CTX, options_.tls->get());
        mosquitto_int_option(client_, MOSQ_OPT_SSL_CTX_WITH_DEFAULTS, 0);
    }
    const Credentials &credentials = options_.credentials;
    if (!credentials.user.empty()) {
        mosquitto_username_pw_set(client_, credentials.user.c_str(),
                                  credentials.password.empty() ? nullptr
                                                               : credentials.password.c_str());
    }
    const PublishedMessage &will = options_.will;
    if (!will.topic.empty()) {
        mosquitto_will_set_v5(client_, will.topic.c_str(), static_cast<int>(will.payload.size()),
                              will.payload.data(), will.qos, will.retain, nullptr);
    }
    Properties properties;
    properties.add_number(MQTT_PROP_SESSION_EXPIRY_INTERVAL,
                          static_cast<uint32_t>(options_.session.count()));
    properties.add_number(MQTT_PROP_MAXIMUM_PACKET_SIZE, options_.max_packet);
    // Only the blocking function takes properties. It stores them before it rejects the port, and
    // the next one uses them.
    constexpr int kNoPort = -1;
    mosquitto_connect_bind_v5(client_, options_.address.c_str(), kNoPort,
                              static_cast<int>(options_.keep_alive.count()), nullptr,
                              properties.get());
    const int result =
        mosquitto_connect_async(client_, options_.address.c_str(), options_.broker.port,
                                static_cast<int>(options_.keep_alive.count()));
    if (result != MOSQ_ERR_SUCCESS) {
        on_disconnected(result);
        return;
    }
    open();
}

void BrokerConnection::open()
{
    const int socket = mosquitto_socket(client_);
    fcntl(socket, F_SETFD, FD_CLOEXEC); // a worker must not inherit it
    const int duplicate = fcntl(socket, F_DUPFD_CLOEXEC, 0);
    if (duplicate < 0) {
        lose(system_problem("cannot use the socket"));
        return;
    }
    socket_.assign(duplicate);
    wait_for_input();
    schedule_keep_alive();
    after_call(MOSQ_ERR_SUCCESS);
}

void BrokerConnection::wait_for_input()
{
    socket_.async_wait(stream_descriptor::wait_read,
                       [this, is_alive = is_alive_](const boost::system::error_code &problem) {
                           if (problem || !*is_alive || is_lost_) {
                               return;
                           }
                           after_call(mosquitto_loop_read(client_, 1));
                           if (!is_lost_) {
                               wait_for_input();
                           }
                       });
}

void BrokerConnection::wait_for_output()
{
    if (is_waiting_to_write_) {
        return;
    }
    is_waiting_to_write_ = true;
    socket_.async_wait(stream_descriptor::wait_write,
                       [this, is_alive = is_alive_](const boost::system::error_code &problem) {
                           if (problem || !*is_alive || is_lost_) {
                               return;
                           }
                           is_waiting_to_write_ = false;
                           after_call(mosquitto_loop_write(client_, 1));
                       });
}

// The library sends pings, and finds out that none is answered, when it is called.
void BrokerConnection::schedule_keep_alive()
{
    keep_alive_.expires_after(std::clamp(options_.keep_alive / 4, kShortestPause, kLongestPause));
    keep_alive_.async_wait([this, is_alive = is_alive_](const boost::system::error_code &problem) {
        if (problem || !*is_alive || is_lost_) {
            return;
        }
        after_call(mosquitto_loop_misc(client_));
        if (!is_lost_) {
            schedule_keep_alive();
        }
    });
}

void BrokerConnection::after_call(int result)
{
    if (is_in_callback_) {
        return; // the library would wait for itself
    }
    if (result == MOSQ_ERR_SUCCESS && !is_lost_ && !is_waiting_to_write_ &&
        mosquitto_want_write(client_)) {
        // What callbacks have published: the library only queues it.
        result = mosquitto_loop_write(client_, 1);
        if (result == MOSQ_ERR_SUCCESS && !is_lost_ && mosquitto_want_write(client_)) {
            wait_for_output();
        }
    }
    if (exception_) {
        std::rethrow_exception(std::exchange(exception_, nullptr));
    }
    if (result != MOSQ_ERR_SUCCESS) { // not every error leads to a callback
        on_disconnected(result);
    }
}

// Deferred, because the library, or the listener, may be the caller.
void BrokerConnection::lose(const std::string &why)
{
    if (is_lost_) {
        return;
    }
    is_lost_ = true;
    boost::system::error_code ignored;
    socket_.close(ignored);
    keep_alive_.cancel();
    boost::asio::post(loop_, [this, is_alive = is_alive_, why] {
        if (*is_alive) {
            listener_.on_lost(why);
        }
    });
}

void BrokerConnection::on_connack(int reason, const mqtt5__property *properties)
{
    if (reason != MQTT_RC_SUCCESS) {
        refusal_ = reason == MQTT_RC_RETAIN_NOT_SUPPORTED ? Refusal::kRetain
                   : reason == MQTT_RC_QOS_NOT_SUPPORTED  ? Refusal::kQos
                                                          : Refusal::kOther;
        lose(std::string("the broker refuses the connection: ") + mosquitto_reason_string(reason));
        return;
    }
    uint8_t retains = 1;
    mosquitto_property_read_byte(properties, MQTT_PROP_RETAIN_AVAILABLE, &retains, false);
    features_.retains = retains != 0;
    mosquitto_property_read_byte(properties, MQTT_PROP_MAXIMUM_QOS, &features_.max_qos, false);
    mosquitto_property_read_int16(properties, MQTT_PROP_RECEIVE_MAXIMUM, &features_.receive_maximum,
                                  false);
    mosquitto_property_read_int32(properties, MQTT_PROP_MAXIMUM_PACKET_SIZE, &features_.max_packet,
                                  false);
    std::vector<char *> topics;
    for (const std::string &topic : options_.subscriptions) {
        topics.push_back(const_cast<char *>(topic.c_str()));
    }
    const int result = mosquitto_subscribe_multiple(
        client_, nullptr, static_cast<int>(topics.size()), topics.data(), kQos, 0, nullptr);
    if (result != MOSQ_ERR_SUCCESS) {
        lose(mosquitto_strerror(result));
    }
}

void BrokerConnection::on_suback(const std::vector<int> &granted)
{
    constexpr int kRefused = 0x80;
    for (size_t at = 0; at < granted.size(); ++at) {
        if (granted[at] >= kRefused) {
            lose("the broker refuses the subscription to " +
                 (at < options_.subscriptions.size() ? options_.subscriptions[at] : ""));
            return;
        }
    }
    listener_.on_connected();
}

void BrokerConnection::on_disconnected(int result)
{
    is_taken_over_ = result == MQTT_RC_SESSION_TAKEN_OVER;
    if (is_disconnecting_) {
        lose("");
    } else if (is_taken_over_) {
        lose("another client has connected as " + options_.id);
    } else if (options_.tls != nullptr && !options_.tls->problem().empty()) {
        lose("the broker's certificate is not accepted: " + options_.tls->problem());
    } else if (result == MOSQ_ERR_ERRNO && errno != EPROTO) {
        lose(strerror(errno)); // NOLINT(concurrency-mt-unsafe): own text
    } else {
        lose(!error_.empty() ? error_ : mosquitto_strerror(result));
    }
}

int BrokerConnection::publish(const PublishedMessage &message)
{
    if (is_lost_) {
        return 0;
    }
    Properties properties;
    if (!message.correlation.empty()) {
        properties.add_binary(MQTT_PROP_CORRELATION_DATA, message.correlation);
    }
    if (message.is_gzip) {
        properties.add_pair(kContentEncoding, kGzip);
    }
    if (!message.response_topic.empty()) {
        properties.add_text(MQTT_PROP_RESPONSE_TOPIC, message.response_topic.c_str());
    }
    if (!message.epoch.empty()) {
        properties.add_pair(kEpoch, message.epoch.c_str());
    }
    if (message.wants_gzip) {
        properties.add_pair(kAcceptEncoding, kGzip);
    }
    if (message.expiry) {
        properties.add_number(MQTT_PROP_MESSAGE_EXPIRY_INTERVAL,
                              static_cast<uint32_t>(message.expiry->count()));
    }
    int number = 0;
    const int result = mosquitto_publish_v5(
        client_, &number, message.topic.c_str(), static_cast<int>(message.payload.size()),
        message.payload.data(), message.qos, message.retain, properties.get());
    after_call(MOSQ_ERR_SUCCESS);
    if (result == MOSQ_ERR_NOMEM) {
        throw std::bad_alloc();
    }
    const bool is_broken =
        result == MOSQ_ERR_NO_CONN || result == MOSQ_ERR_CONN_LOST || result == MOSQ_ERR_ERRNO;
    return result == MOSQ_ERR_SUCCESS ? number : (is_broken ? 0 : -1);
}

void BrokerConnection::disconnect()
{
    is_disconnecting_ = true;
    after_call(mosquitto_disconnect_v5(client_, MQTT_RC_NORMAL_DISCONNECTION, nullptr));
}

} // namespace agent::service

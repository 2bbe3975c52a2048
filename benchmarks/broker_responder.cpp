// SPDX-License-Identifier: MIT
// The least that answers requests on a broker, for comparison with the agent: libmosquitto alone,
// and the same answer to every request.
//
//   broker_responder PORT FILTER QOS REPLY [FILE]
//
// It answers what it receives below FILTER with REPLY, and appends the parameters to FILE, a line
// for each. It prints "connected", and ends by SIGTERM.
#include <mosquitto.h>
#include <mqtt_protocol.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace {

struct Responder {
    const char *filter;
    int qos;
    std::string reply;
    int executed = -1;
};

void answer(mosquitto *client, void *context, const mosquitto_message *request,
            const mosquitto_property *properties)
{
    const auto &responder = *static_cast<Responder *>(context);
    if (responder.executed >= 0) {
        const std::string line = std::string(static_cast<const char *>(request->payload),
                                             static_cast<size_t>(request->payloadlen)) +
                                 "\n";
        if (write(responder.executed, line.data(), line.size()) < 0) {
            std::perror("write");
        }
    }
    char *topic = nullptr;
    void *correlation = nullptr;
    uint16_t length = 0;
    mosquitto_property *reply = nullptr;
    mosquitto_property_read_string(properties, MQTT_PROP_RESPONSE_TOPIC, &topic, false);
    mosquitto_property_read_binary(properties, MQTT_PROP_CORRELATION_DATA, &correlation, &length,
                                   false);
    if (topic != nullptr) {
        if (correlation != nullptr) {
            mosquitto_property_add_binary(&reply, MQTT_PROP_CORRELATION_DATA, correlation, length);
        }
        mosquitto_publish_v5(client, nullptr, topic, static_cast<int>(responder.reply.size()),
                             responder.reply.data(), responder.qos, false, reply);
        mosquitto_property_free_all(&reply);
    }
    free(topic);       // NOLINT: libmosquitto allocates them with malloc()
    free(correlation); // NOLINT
}

void subscribe(mosquitto *client, void *context, int result)
{
    const auto &responder = *static_cast<Responder *>(context);
    if (result != 0) {
        std::fprintf(stderr, "%s\n", mosquitto_connack_string(result));
        std::exit(1);
    }
    mosquitto_subscribe(client, nullptr, responder.filter, responder.qos);
}

void report_connection(mosquitto * /*client*/, void * /*context*/, int /*id*/, int /*count*/,
                       const int * /*granted*/)
{
    std::puts("connected");
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 5) {
        std::fputs("usage: broker_responder PORT FILTER QOS REPLY [FILE]\n", stderr);
        return 2;
    }
    Responder responder{argv[2], std::atoi(argv[3]), argv[4]};
    if (argc > 5) {
        responder.executed = open(argv[5], O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    }
    mosquitto_lib_init();
    mosquitto *client = mosquitto_new("responder", false, &responder);
    mosquitto_int_option(client, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V5);
    mosquitto_int_option(client, MOSQ_OPT_TCP_NODELAY, 1);
    mosquitto_reconnect_delay_set(client, 1, 1, false);
    mosquitto_connect_callback_set(client, subscribe);
    mosquitto_subscribe_callback_set(client, report_connection);
    mosquitto_message_v5_callback_set(client, answer);
    mosquitto_property *session = nullptr;
    mosquitto_property_add_int32(&session, MQTT_PROP_SESSION_EXPIRY_INTERVAL, 600);
    if (mosquitto_connect_bind_v5(client, "127.0.0.1", std::atoi(argv[1]), 60, nullptr, session) !=
        MOSQ_ERR_SUCCESS) {
        std::perror("connect");
        return 1;
    }
    for (;;) {
        mosquitto_loop_forever(client, -1, 1); // returns when the broker has ended the connection
        sleep(1);
        mosquitto_reconnect(client);
    }
}

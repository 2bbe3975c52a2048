// SPDX-License-Identifier: MIT
// A client on a broker that does as little as possible: it sends the same small request again and
// again, and reports the processor time that it took itself.
//
//   broker_caller PORT COMMAND-TOPIC REPLY-TOPIC QOS IN-FLIGHT COUNT
//
// It prints the microseconds of processor time and of time that passed, both for each request.
#include <mosquitto.h>
#include <mqtt_protocol.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

struct Caller {
    const char *command;
    const char *reply;
    int qos;
    int in_flight;
    uint32_t count;
    uint32_t sent = 0;
    uint32_t answered = 0;
    double began = 0;
    double processor = 0;
};

double seconds(clockid_t clock)
{
    timespec now = {};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

void send(mosquitto *client, Caller &caller)
{
    mosquitto_property *properties = nullptr;
    mosquitto_property_add_string(&properties, MQTT_PROP_RESPONSE_TOPIC, caller.reply);
    mosquitto_property_add_binary(&properties, MQTT_PROP_CORRELATION_DATA, &caller.sent,
                                  sizeof(caller.sent));
    ++caller.sent;
    mosquitto_publish_v5(client, nullptr, caller.command, 2, "{}", caller.qos, false, properties);
    mosquitto_property_free_all(&properties);
}

void receive(mosquitto *client, void *context, const mosquitto_message * /*answer*/,
             const mosquitto_property * /*properties*/)
{
    auto &caller = *static_cast<Caller *>(context);
    ++caller.answered;
    if (caller.sent < caller.count) {
        send(client, caller);
    } else if (caller.answered == caller.count) {
        caller.began = seconds(CLOCK_MONOTONIC) - caller.began;
        caller.processor = seconds(CLOCK_PROCESS_CPUTIME_ID) - caller.processor;
        mosquitto_disconnect(client);
    }
}

void subscribe(mosquitto *client, void *context, int /*result*/)
{
    const auto &caller = *static_cast<Caller *>(context);
    mosquitto_subscribe(client, nullptr, caller.reply, caller.qos);
}

void begin(mosquitto *client, void *context, int /*id*/, int /*count*/, const int * /*granted*/)
{
    auto &caller = *static_cast<Caller *>(context);
    caller.began = seconds(CLOCK_MONOTONIC);
    caller.processor = seconds(CLOCK_PROCESS_CPUTIME_ID);
    for (int number = 0; number < caller.in_flight; ++number) {
        send(client, caller);
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 7) {
        std::fputs("usage: broker_caller PORT COMMAND-TOPIC REPLY-TOPIC QOS IN-FLIGHT COUNT\n",
                   stderr);
        return 2;
    }
    Caller caller{argv[2], argv[3], std::atoi(argv[4]), std::atoi(argv[5]),
                  static_cast<uint32_t>(std::atoi(argv[6]))};
    mosquitto_lib_init();
    mosquitto *client = mosquitto_new(nullptr, true, &caller);
    mosquitto_int_option(client, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V5);
    mosquitto_int_option(client, MOSQ_OPT_TCP_NODELAY, 1);
    mosquitto_connect_callback_set(client, subscribe);
    mosquitto_subscribe_callback_set(client, begin);
    mosquitto_message_v5_callback_set(client, receive);
    if (mosquitto_connect(client, "127.0.0.1", std::atoi(argv[1]), 60) != MOSQ_ERR_SUCCESS) {
        std::perror("connect");
        return 1;
    }
    mosquitto_loop_forever(client, -1, 1);
    if (caller.answered != caller.count) {
        std::fputs("the connection was lost\n", stderr);
        return 1;
    }
    std::printf("%.3f %.3f\n", caller.processor * 1e6 / caller.count,
                caller.began * 1e6 / caller.count);
    return 0;
}

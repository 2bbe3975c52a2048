# SPDX-License-Identifier: MIT
"""A platform that asks a gateway over a broker, with paho: with the rule of docs/brokers.md (repeat a request with the
same correlation until it is answered) or without it."""
import itertools
import json
import select
import socket
import time

import paho.mqtt.client as mqtt
from paho.mqtt.packettypes import PacketTypes
from paho.mqtt.properties import Properties

# Answers to requests that were not carried out: the rule repeats them.
NOT_CARRIED_OUT = ("busy", "rate-limited", "rebooting")
RECONNECT_SECONDS = 0.05


class Answer:
    """What came to the response topic."""

    def __init__(self, message):
        self.payload = message.payload
        self.topic = message.topic
        self.retained = message.retain
        properties = getattr(message, "properties", None)
        self.correlation = getattr(properties, "CorrelationData", b"") if properties else b""
        self.user = dict(getattr(properties, "UserProperty", [])) if properties else {}

    @property
    def body(self):
        return json.loads(self.payload)

    @property
    def code(self):
        return self.body.get("code")


class Request:
    def __init__(self, correlation, command, params, user=()):
        self.correlation = correlation
        self.command = command
        self.params = params
        self.user = list(user)
        self.sent = 0
        self.due = 0.0
        self.answers = []


class Caller:
    """One connection, to one of several brokers at a time. Everything happens in the thread that calls."""

    def __init__(self, ports, root="gateway", gateway="gw", name="caller", qos=1, credentials=None, session=True,
                 protocol=mqtt.MQTTv5):
        self.ports = itertools.cycle(ports)
        self.base = f"{root}/{gateway}"
        self.name = name
        self.reply = f"{self.base}/reply/{name}"
        self.qos = qos
        self.protocol = protocol
        self.client = mqtt.Client(name, protocol=protocol, **({} if protocol == mqtt.MQTTv5 else
                                                              {"clean_session": not session}))
        if credentials is not None:
            self.client.username_pw_set(*credentials)
        # All that a test sends at once goes out; the gateway has to cope with it.
        self.client.max_queued_messages_set(0)
        self.client.on_connect = self._connected
        self.client.on_subscribe = lambda *_: setattr(self, "subscribed", True)
        self.client.on_message = lambda _client, _data, message: self._received(message)
        self.session = session
        self.subscribed = False
        self.topics = [self.reply]
        self.ever_connected = False
        self.reconnects = 0
        self.messages = []
        self.requests = {}
        self.numbers = itertools.count()
        self.connect()

    def _connected(self, client, _data, _flags, reason, _properties=None):
        if reason != 0:
            raise RuntimeError(f"the broker refuses {self.name}: {reason}")
        self.reconnects += self.ever_connected
        self.ever_connected = True
        client.subscribe([(topic, self.qos) for topic in self.topics])

    def _received(self, message):
        answer = Answer(message)
        request = self.requests.get(answer.correlation) if message.topic == self.reply else None
        if request is None:
            self.messages.append(answer)
        else:
            request.answers.append(answer)

    def _try(self):
        properties = None
        if self.protocol == mqtt.MQTTv5:
            properties = Properties(PacketTypes.CONNECT)
            properties.SessionExpiryInterval = 600 if self.session else 0
        try:
            if self.protocol == mqtt.MQTTv5:
                self.client.connect("127.0.0.1", next(self.ports), clean_start=not self.ever_connected,
                                    properties=properties)
            else:
                self.client.connect("127.0.0.1", next(self.ports))
        except OSError:
            time.sleep(RECONNECT_SECONDS)
            return False
        self.client.socket().setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        return True

    def connect(self):
        """Returns when the subscriptions are acknowledged."""
        self.subscribed = False
        while not self.subscribed:
            self.turn()

    def turn(self, seconds=0.05):
        """Handles what comes within the time, or connects again."""
        client_socket = self.client.socket()
        if client_socket is None:
            self._try()
            return
        readable, writable, _ = select.select(
            [client_socket], [client_socket] if self.client.want_write() else [], [], seconds)
        result = mqtt.MQTT_ERR_SUCCESS
        if readable:
            result = self.client.loop_read()
        if result == mqtt.MQTT_ERR_SUCCESS and writable:
            self.client.loop_write()
        self.client.loop_misc()

    def await_message(self, wanted):
        """The next message for which wanted(message) holds; earlier ones are dropped."""
        while True:
            while self.messages:
                message = self.messages.pop(0)
                if wanted(message):
                    return message
            self.turn()

    def subscribe(self, *topics):
        self.topics += topics
        self.subscribed = False
        self.client.subscribe([(topic, self.qos) for topic in topics])
        while not self.subscribed:
            self.turn()

    def publish(self, topic, payload=b"", response=None, correlation=None, expiry=None, user=(), qos=None):
        properties = None
        if self.protocol == mqtt.MQTTv5:
            properties = Properties(PacketTypes.PUBLISH)
            if response is not None:
                properties.ResponseTopic = response
            if correlation is not None:
                properties.CorrelationData = correlation
            if expiry is not None:
                properties.MessageExpiryInterval = expiry
            if user:
                properties.UserProperty = list(user)
        return self.client.publish(topic, payload, self.qos if qos is None else qos, properties=properties)

    def send(self, request, expiry=None):
        request.sent += 1
        self.publish(f"{self.base}/command/{request.command}", json.dumps(request.params).encode(), self.reply,
                     request.correlation, expiry, request.user)

    def request(self, command, params=None, correlation=None, user=(), expiry=None):
        """Sends a request once; its answers arrive in it."""
        correlation = correlation if correlation is not None else f"{self.name}-{next(self.numbers)}".encode()
        request = self.requests.setdefault(correlation, Request(correlation, command, params or {}, user))
        self.send(request, expiry)
        return request

    def ask(self, command, params=None, **more):
        """Its first answer. The connection has to be in order."""
        request = self.request(command, params, **more)
        while not request.answers:
            self.turn()
        return request.answers[0]

    def ask_all(self, wanted, in_flight, repeat_seconds=None, patience=None, during=lambda answered: None):
        """Sends (command, params, user) of `wanted`, so many at a time. With repeat_seconds each is repeated after so
        many seconds until it is answered; without, each is sent once and forgotten after `patience` seconds.
        during(answered) is called again and again with the number of requests that have been answered."""
        waiting = {}
        answered = 0
        wanted = iter(wanted)
        done = False
        asked = []
        while True:
            while not done and len(waiting) < in_flight:
                following = next(wanted, None)
                if following is None:
                    done = True
                    break
                request = self.request(*following[:2], user=following[2] if len(following) > 2 else ())
                request.due = time.monotonic() + (repeat_seconds or patience)
                waiting[request.correlation] = request
                asked.append(request)
            if not waiting:
                return asked
            during(answered)
            self.turn()
            now = time.monotonic()
            for request in list(waiting.values()):
                if repeat_seconds is not None and request.answers and request.answers[-1].code in NOT_CARRIED_OUT:
                    request.answers.pop()
                if request.answers:
                    answered += 1
                    del waiting[request.correlation]
                elif now >= request.due and repeat_seconds is not None:
                    # While there is no connection paho keeps what was sent; a repetition would only fill its queue.
                    if self.client.is_connected():
                        self.send(request)
                    request.due = now + repeat_seconds
                elif now >= request.due:
                    del waiting[request.correlation]

    def close(self):
        self.client.disconnect()

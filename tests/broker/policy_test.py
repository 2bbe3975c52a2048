# SPDX-License-Identifier: MIT
"""Who may do what: the broker decides who publishes below a topic root, the policy what that root may."""
import pathlib
import subprocess

import case

ACL = pathlib.Path(__file__).resolve().parents[2] / "examples/service/mosquitto.acl"
POLICY = """\
[roles.platform]
members = ["topic-root:gateway"]
allow = ["effect:none"]

[roles.lab]
members = ["topic-root:lab"]
allow = ["*", "report:*", "event:*"]
secrets = true
"""
USERS = ("gw", "lab1", "other", "platform", "developer", "monitor")
SECRET = "GET_WIFI_INFO"
CHANGE = "SET_HG_BASE_INFO"


class PolicyTest(case.BrokerCase):
    def start_broker(self):
        passwords = self.folder / "passwords"
        passwords.touch(mode=0o600)
        for user in USERS:
            subprocess.run(["mosquitto_passwd", "-b", str(passwords), user, f"password of {user}"], check=True,
                           stderr=subprocess.DEVNULL)
        return self.mosquitto(f"acl_file {ACL}\npassword_file {passwords}", anonymous=False)

    def credentials(self, user):
        path = self.folder / f"credentials of {user}"
        path.write_text(f"{user}\npassword of {user}\n", encoding="ascii")
        path.chmod(0o600)
        return path

    def policy(self):
        path = self.folder / "policy.toml"
        path.write_text(POLICY, encoding="ascii")
        return path

    def gateway(self, broker, root, name="gw"):
        return self.service("--broker", broker.url, "--id", name, "--root", root, "--policy", self.policy(),
                            "--broker-credentials", self.credentials(name), name=f"service-{root}", device=False)

    def user(self, broker, user, root, **more):
        return self.caller(broker, root=root, name=user, credentials=(user, f"password of {user}"), **more)

    def test_roots_have_roles(self):
        broker = self.start_broker()
        self.gateway(broker, "gateway")
        self.gateway(broker, "lab", "lab1")
        platform = self.user(broker, "platform", "gateway")
        developer = self.user(broker, "developer", "lab", gateway="lab1")

        self.assertEqual(platform.ask("GET_SN_INFO").body["result"], 0)
        refused = platform.ask(CHANGE, {"Name": "x"})
        self.assertEqual(refused.code, "denied", refused.payload)
        masked = platform.ask(SECRET, {"SSIDIndex": "1"}).payload
        # Nothing in a message changes the role.
        self.assertEqual(platform.ask(CHANGE, {"Name": "x"}, user=[("role", "lab"), ("who", "uid:0")]).code, "denied")

        self.assertEqual(developer.ask(CHANGE, {"Name": "x"}).body["result"], 0)
        shown = developer.ask(SECRET, {"SSIDIndex": "1"}).payload
        self.assertNotEqual(masked, shown)
        self.assertIn(b"***", masked)
        self.assertNotIn(b"***", shown)

    def test_nobody_publishes_below_another_root(self):
        """Below "lab" everything is allowed, so that the broker alone protects it."""
        broker = self.start_broker()
        self.gateway(broker, "lab", "lab1")
        developer = self.user(broker, "developer", "lab", gateway="lab1")
        before = developer.ask("GET_HG_BASE_INFO").payload
        for user in ("platform", "monitor", "gw"):
            stranger = self.user(broker, user, "gateway")
            for _ in range(2):
                stranger.publish("lab/lab1/command/SET_HG_BASE_INFO", b'{"Name":"stolen"}', response=stranger.reply)
                stranger.publish("lab/lab1/request/developer",
                                 b'{"id":1,"command":"SET_HG_BASE_INFO","params":{"Name":"stolen"}}')
            stranger.publish("gateway/gw/event/mine", b"{}")
            while stranger.client.want_write() or stranger.client._out_messages:  # until all is acknowledged
                stranger.turn()
        self.assertEqual(developer.ask("GET_HG_BASE_INFO").payload, before)
        self.assertEqual(developer.messages, [])

    def test_gateways_cannot_take_each_others_topics(self):
        broker = self.start_broker()
        self.gateway(broker, "gateway")
        platform = self.user(broker, "platform", "gateway")
        platform.subscribe("gateway/+/state", "gateway/+/reply/#")
        platform.await_message(lambda message: message.topic == "gateway/gw/state")
        thief = self.user(broker, "other", "gateway", gateway="other")
        thief.publish("gateway/gw/state", b'{"online":false}')
        thief.publish("gateway/gw/reply/platform", b'{"result":0}', correlation=b"forged")
        thief.publish("gateway/other/state", b'{"online":true}')
        own = platform.await_message(lambda message: True)
        self.assertEqual(own.topic, "gateway/other/state")

    def test_monitor_reads_state(self):
        broker = self.start_broker()
        self.gateway(broker, "gateway")
        monitor = self.user(broker, "monitor", "gateway")
        monitor.subscribe("gateway/+/state")
        state = monitor.await_message(lambda message: message.topic == "gateway/gw/state")
        self.assertIs(state.body["online"], True)

    def test_without_a_policy(self):
        broker = self.mosquitto()
        self.service("--broker", broker.url, "--id", "gw", device=False)
        client = self.caller(broker)
        self.assertEqual(client.ask("GET_SN_INFO").body["result"], 0)
        for command, params in ((CHANGE, {"Name": "x"}), (SECRET, {"SSIDIndex": "1"})):
            refused = client.ask(command, params)
            self.assertEqual(refused.code, "denied", refused.payload)
            self.assertIn('members = ["topic-root:gateway"]', refused.body["rule"])
            self.assertIn(command, refused.body["rule"])

    def test_what_is_refused_at_the_start(self):
        credentials = self.credentials("gw")
        readable = self.credentials("other")
        readable.chmod(0o644)
        policy = ["--policy", self.policy()]
        for options, words in (
                (["--broker", "mqtt://192.0.2.1", *policy], "--insecure"),
                (["--broker", "mqtts://192.0.2.1"], "topic-root:gateway"),
                (["--broker", "mqtts://192.0.2.1", "--trust", *policy], "--trust"),
                (["--broker", "mqtts://192.0.2.1", "--trust"], "--trust"),
                (["--broker", "http://127.0.0.1", "--trust"], "mqtt://"),
                (["--broker", "mqtt://127.0.0.1:0", "--trust"], "the port has to be from 1"),
                (["--broker", "mqtt://127.0.0.1", "--id", "a/b"], "the id of a gateway"),
                (["--broker", "mqtt://127.0.0.1", "--id", "+"], "the id of a gateway"),
                (["--broker", "mqtt://127.0.0.1", "--root", "#"], "the root of the topics"),
                (["--broker", "mqtt://127.0.0.1", "--root", "$SYS"], "the root of the topics"),
                (["--broker", "mqtt://127.0.0.1", "--response-topic", "a/#"], "a topic without wildcards"),
                (["--broker", "mqtt://127.0.0.1", "--response-topic", "$a/"], "a topic without wildcards"),
                (["--broker", "mqtt://127.0.0.1", "--broker-credentials", readable], str(readable)),
                (["--broker", "mqtt://127.0.0.1", "--broker-credentials", credentials, "--broker-key", credentials],
                 "a certificate and its key are given together")):
            identity = [] if "--id" in options else ["--id", "gw"]
            with self.subTest(options=options):
                refused = subprocess.run([case.HGAGENT, "run", "--socket", str(self.folder / "s"),
                                          *map(str, options + identity)],
                                         capture_output=True, text=True, check=False)
                self.assertIn(refused.returncode, (2, 4), refused)
                self.assertIn(words, refused.stderr)
        no_id = subprocess.run([case.HGAGENT, "run", "--broker", "mqtt://127.0.0.1"], capture_output=True, text=True,
                               check=False)
        self.assertEqual(no_id.returncode, 2)
        self.assertIn("--id", no_id.stderr)


if __name__ == "__main__":
    case.main()

# SPDX-License-Identifier: MIT
"""`hgagent mqtt-call` with real brokers and services: its answers and exit statuses, and what it does when a broker or
a service fails."""
import json
import signal
import subprocess
import time

import case

CHANGE = "SET_HG_BASE_INFO"


def openssl(*words):
    subprocess.run(["openssl", *map(str, words)], check=True, capture_output=True)


class MqttCallTest(case.BrokerCase):
    def words(self, broker, *words):
        return [case.HGAGENT, "mqtt-call", "--broker", broker.url, *map(str, words)]

    def call(self, broker, *words, stdin=""):
        """Exit status, standard output and standard error."""
        done = subprocess.run(self.words(broker, *words), input=stdin, capture_output=True, text=True)
        return done.returncode, done.stdout, done.stderr

    def begin(self, broker, *words):
        """A call that has not ended."""
        process = subprocess.Popen(self.words(broker, *words), stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   text=True)

        def end():
            if process.poll() is None:
                process.kill()
            process.wait()
            process.stdout.close()
            process.stderr.close()
        self.addCleanup(end)
        return process

    def refused(self, broker, *words):
        """The exit status and the message of a call that prints no reply."""
        status, reply, message = self.call(broker, *words)
        self.assertEqual(reply, "")
        return status, message.removeprefix("hgagent: ").rstrip("\n")

    # ---- Answers --------------------------------------------------------------------------------------------------

    def test_reply(self):
        broker = self.mosquitto()
        self.trusted(broker, device=False)
        status, reply, message = self.call(broker, "--id", "gw", "GET_SN_INFO")
        self.assertEqual((status, message), (0, ""))
        self.assertEqual(json.loads(reply)["Status"], "0")
        # As parameters: KEY=VALUE, JSON, standard input, and a file.
        request = self.folder / "request"
        request.write_text('{"Enable": "0"}', encoding="ascii")
        for given, stdin in ((["Enable=1"], ""), (['{"Enable": "0"}'], ""), (["-"], '{"Enable": "1"}'),
                             (["--request-file", request], "")):
            status, reply, _ = self.call(broker, "--id", "gw", "SET_UPNP_STATE", *given, stdin=stdin)
            self.assertEqual((status, reply), (0, '{"Status":"0"}\n'), given)
        status, reply, _ = self.call(broker, "--id", "gw", "GET_UPNP_STATE")
        self.assertEqual(json.loads(reply)["Enable"], "0")

    def test_a_hostile_gateway_does_not_end_the_call(self):
        """An epoch that cannot be sent back: too long for a user property, or with a control character."""
        broker = self.mosquitto()
        self.trusted(broker)
        bad = self.caller(broker, gateway="bad")
        bad.subscribe("gateway/bad/state/get")
        for epoch in ("x" * 70000, "\x01"):
            process = self.begin(broker, "--id", "gw", "--id", "bad", "--timeout", "4", CHANGE)
            bad.await_message(lambda message: message.topic == "gateway/bad/state/get")
            bad.publish("gateway/bad/state", json.dumps({"online": True, "epoch": epoch}).encode())
            bad.turn()
            reply, _ = process.communicate()
            answers = {one["gateway"]: one for one in map(json.loads, reply.splitlines())}
            self.assertEqual(answers["gw"].get("result"), 0, reply)
            self.assertIn("no answer within 4 seconds", answers["bad"]["error"])

    def test_failure(self):
        broker = self.mosquitto()
        self.trusted(broker, device=False)
        status, reply, message = self.call(broker, "--id", "gw", "SET_UPNP_STATE", "Enable=up")
        self.assertEqual((status, json.loads(reply)["Status"]), (1, "1"))
        self.assertIn("hgagent describe SET_UPNP_STATE", message)
        for name in ("NO_SUCH_COMMAND", "no/topic"):
            status, message = self.refused(broker, "--id", "gw", name)
            self.assertEqual(status, 3)
            self.assertTrue(message.startswith(f'no command "{name}"'), message)

    def test_wrong_usage(self):
        broker = self.mosquitto()
        for words, expected in (
                (("GET_SN_INFO",), "no gateway is given: --id or --ids"),
                (("--id", "gw"), "neither a command nor --events is given"),
                (("--id", "a/b", "GET_SN_INFO"), '"a/b": the id of a gateway has letters, digits, - _ . and :'),
                (("--id", "gw", "--root", "#", "GET_SN_INFO"),
                 "the root of the topics has levels of letters, digits, - _ . and :"),
                (("--id", "gw", "--broker", "http://localhost", "GET_SN_INFO"),
                 '--broker: "http://localhost": it has to be mqtt://HOST[:PORT] or mqtts://HOST[:PORT]'),
                (("--id", "gw", "--broker", "mqtt://192.0.2.1", "GET_SN_INFO"),
                 "mqtt://192.0.2.1:1883 is on another machine: use mqtts://, or --insecure to do without TLS"),
                (("--id", "gw", "--broker-key", "x", "GET_SN_INFO"), "a certificate and its key are given together")):
            self.assertEqual(self.refused(broker, *words), (2, expected))
        for words in (("--id", "gw", "--follow", "GET_SN_INFO"), ("--id", "gw", "--timeout", "0", "GET_SN_INFO"),
                      ("--id", "gw", "GET_SN_INFO", "{")):
            self.assertEqual(self.refused(broker, *words)[0], 2, words)
        words = [case.HGAGENT, "--scenario", "short_report", *self.words(broker, "--id", "gw", "GET_SN_INFO")[1:]]
        self.assertEqual(subprocess.run(words, capture_output=True).returncode, 2)

    def test_no_broker(self):
        broker = self.mosquitto()
        broker.kill()
        status, message = self.refused(broker, "--id", "gw", "GET_SN_INFO")
        self.assertEqual((status, message), (4, f"cannot connect to {broker.url}: Connection refused"))
        other = self.mosquitto(name="other")
        self.trusted(other, device=False)
        self.assertEqual(self.call(broker, "--broker", other.url, "--id", "gw", "GET_SN_INFO")[0], 0)

    def test_denied(self):
        broker = self.mosquitto()
        self.service("--broker", broker.url, "--id", "gw")
        self.assertEqual(self.call(broker, "--id", "gw", "GET_SN_INFO")[0], 0)
        status, message = self.refused(broker, "--id", "gw", CHANGE, "Name=x")
        self.assertEqual(status, 1)
        self.assertEqual(message, f"the gateway refuses: the policy does not allow {CHANGE} to topic-root:gateway "
                         '(denied): no policy is given; add to one: [roles.NAME] members = '
                         f'["topic-root:gateway"], allow = ["{CHANGE}"]')

    def test_no_answer(self):
        broker = self.mosquitto()
        none = "the gateway gw: no answer within 1 seconds"
        for command in ("GET_SN_INFO", CHANGE):
            self.assertEqual(self.refused(broker, "--id", "gw", "--timeout", "1", command), (1, none))
        running = self.trusted(broker)
        running.end(signal.SIGTERM)
        for command in ("GET_SN_INFO", CHANGE):
            self.assertEqual(self.refused(broker, "--id", "gw", "--timeout", "1", command),
                             (1, none + "; it is offline"))

    def test_expired_request(self):
        """An expired request is not executed when the gateway comes back."""
        broker = self.mosquitto()
        running = self.trusted(broker)
        held = self.pipe()
        running.end()
        running.environment["HELD"] = str(held)
        running.start()
        running.await_broker()
        first = self.begin(broker, "--id", "gw", CHANGE, "Name=wait")
        while not running.executed():
            self.assertIsNone(first.poll())
        status, message = self.refused(broker, "--id", "gw", "--timeout", "1", CHANGE, "Name=late")
        self.assertEqual((status, message), (1, "the gateway gw: no answer within 1 seconds; whether the command has "
                                             "been executed is unknown"))
        time.sleep(2)  # the expiry is in whole seconds, at least one, from its arrival
        self.release(held)
        self.assertEqual(first.wait(), 0)
        self.assertEqual(self.call(broker, "--id", "gw", CHANGE, "Name=last")[0], 0)
        self.assertEqual(running.executed(), {"wait": 1, "last": 1})

    # ---- The connection --------------------------------------------------------------------------------------------

    def test_tls(self):
        for name in ("ours", "theirs"):
            openssl("req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-days", "2",
                    "-subj", f"/CN={name}", "-addext", "subjectAltName=DNS:localhost",
                    "-keyout", self.folder / f"{name}.key", "-out", self.folder / f"{name}.crt")
        broker = self.mosquitto(listener=f"certfile {self.folder}/ours.crt\nkeyfile {self.folder}/ours.key")
        url = f"mqtts://localhost:{broker.port.number}"
        ours, theirs = self.folder / "ours.crt", self.folder / "theirs.crt"
        self.service("--broker", url, "--id", "gw", "--trust", "--broker-ca", ours)

        def over_tls(host, *words):
            done = subprocess.run([case.HGAGENT, "mqtt-call", "--broker", f"mqtts://{host}:{broker.port.number}",
                                   "--id", "gw", *map(str, words), "GET_SN_INFO"], capture_output=True, text=True)
            return done.returncode, done.stderr
        self.assertEqual(over_tls("localhost", "--broker-ca", ours), (0, ""))
        self.assertEqual(over_tls("127.0.0.1", "--broker-ca", ours, "--broker-server-name", "localhost"), (0, ""))
        for host, authority in (("localhost", theirs), ("127.0.0.1", ours), ("localhost", self.folder / "none")):
            status, message = over_tls(host, "--broker-ca", authority)
            self.assertEqual(status, 4)
            self.assertIn("cannot connect to mqtts://", message)

    def test_credentials(self):
        passwords = self.folder / "passwords"
        passwords.touch(mode=0o600)
        subprocess.run(["mosquitto_passwd", "-b", str(passwords), "platform", "apfelbaum"], check=True,
                       stderr=subprocess.DEVNULL)
        broker = self.mosquitto(f"password_file {passwords}", anonymous=False)
        given = self.folder / "credentials"
        given.write_text("platform\napfelbaum\n", encoding="ascii")
        given.chmod(0o600)
        self.trusted(broker, "--broker-credentials", given)
        words = ("--id", "gw", "--broker-credentials", given, "GET_SN_INFO")
        self.assertEqual(self.call(broker, *words)[0], 0)
        status, message = self.refused(broker, "--id", "gw", "GET_SN_INFO")
        self.assertEqual(status, 4)
        self.assertIn("the broker refuses the connection", message)
        given.chmod(0o644)
        status, message = self.refused(broker, *words)
        self.assertEqual(status, 2)
        self.assertIn("others may read it", message)

    def test_broker_is_silent(self):
        broker = self.mosquitto()
        broker.suspend()
        self.addCleanup(broker.resume)
        status, message = self.refused(broker, "--id", "gw", "GET_SN_INFO")
        self.assertEqual((status, message), (4, f"cannot connect to {broker.url}: no answer within 10 seconds"))

    # ---- Several gateways, events ---------------------------------------------------------------------------------

    def test_several_gateways(self):
        broker = self.mosquitto()
        for name in ("a", "b"):
            self.service("--broker", broker.url, "--id", name, "--trust", name=name)
        names = self.folder / "names"
        names.write_text("# two\na\n\nb\n", encoding="ascii")
        status, lines, message = self.call(broker, "--ids", names, "--id", "a", CHANGE, "Name=x")
        self.assertEqual((status, message), (0, ""))
        answers = sorted(map(json.loads, lines.splitlines()), key=lambda line: line["gateway"])
        self.assertEqual(answers, [{"gateway": name, "result": 0, "reply": {"Status": "0"}} for name in ("a", "b")])
        self.assertTrue(lines.startswith('{"gateway":'))
        status, lines, _ = self.call(broker, "--ids", names, "--id", "c", "--timeout", "2", "GET_SN_INFO")
        self.assertEqual(status, 1)
        answers = {line["gateway"]: line for line in map(json.loads, lines.splitlines())}
        self.assertEqual(answers["c"], {"gateway": "c", "error": "no answer within 2 seconds"})
        self.assertEqual([answers[name]["result"] for name in ("a", "b")], [0, 0])

    def test_gateways_without_an_answer_do_not_delay_others(self):
        """More than are asked at the same time, and all of them before the one that answers."""
        broker = self.mosquitto()
        self.trusted(broker)
        names = self.folder / "names"
        names.write_text("".join(f"absent-{number}\n" for number in range(150)) + "gw\n", encoding="ascii")
        process = self.begin(broker, "--ids", names, "--timeout", "600", "--repeat", "0.2", CHANGE, "Name=x")
        self.assertEqual(json.loads(process.stdout.readline()),
                         {"gateway": "gw", "result": 0, "reply": {"Status": "0"}})

    def test_events(self):
        broker = self.mosquitto()
        running = self.trusted(broker, device=False)
        watcher = self.begin(broker, "--id", "gw", "--events", "not*")
        self.assertEqual(watcher.stderr.readline(), f"connected to {broker.url}\n")
        follower = self.begin(broker, "--id", "gw", "--events", "notice", "--follow", "GET_SN_INFO")
        self.assertEqual(json.loads(follower.stdout.readline())["Status"], "0")
        subprocess.run([case.HGAGENT, "notice", "--socket", running.socket, "--plugin-name", "parental_control",
                        "A new phone"], check=True, stdout=subprocess.DEVNULL)
        for one in (watcher, follower):
            event = json.loads(one.stdout.readline())
            self.assertEqual((event["event"], event["data"]["Plugin_Name"]), ("notice", "parental_control"))
            one.send_signal(signal.SIGTERM)
            self.assertEqual(one.wait(), 128 + signal.SIGTERM)

    # ---- Failures meanwhile ---------------------------------------------------------------------------------------

    def begin_held(self, broker):
        """A service, and a call whose command is running and waits on the pipe."""
        held = self.pipe()
        running = self.trusted(broker, environment={"HELD": str(held)})
        process = self.begin(broker, "--id", "gw", "--repeat", "0.2", CHANGE, "Name=wait")
        while not running.executed():
            self.assertIsNone(process.poll())
        return running, process, held

    def test_broker_is_restarted(self):
        broker = self.mosquitto()
        running, process, held = self.begin_held(broker)
        broker.kill()
        self.assertIn("is lost", process.stderr.readline())
        broker.start()
        running.await_broker()
        self.release(held)
        reply, message = process.communicate()
        self.assertEqual((process.returncode, reply), (0, '{"Status":"0"}\n'), message)
        self.assertEqual(running.executed(), {"wait": 1})

    def test_service_is_restarted(self):
        broker = self.mosquitto()
        running, process, _ = self.begin_held(broker)
        running.restart(signal.SIGKILL)
        reply, message = process.communicate()
        self.assertEqual((process.returncode, reply), (1, ""))
        self.assertIn("(outcome-unknown)", message)
        self.assertEqual(running.executed(), {"wait": 1})

    def test_worker_dies(self):
        broker = self.mosquitto()
        running = self.trusted(broker)
        status, message = self.refused(broker, "--id", "gw", "--repeat", "0.2", CHANGE, "Name=die")
        self.assertEqual(status, 1)
        self.assertIn("(outcome-unknown)", message)
        self.assertEqual(running.executed(), {"die": 1})

    def test_repetitions_are_executed_once(self):
        broker = self.mosquitto()
        running, process, held = self.begin_held(broker)
        subprocess.run(["mosquitto_sub", "-p", str(broker.port.number), "-t", f"gateway/gw/command/{CHANGE}", "-C", "3"],
                       check=True, stdout=subprocess.DEVNULL)
        self.release(held)
        reply, _ = process.communicate()
        self.assertEqual((process.returncode, reply), (0, '{"Status":"0"}\n'))
        self.assertEqual(running.executed(), {"wait": 1})

    def test_rebooting_gateway(self):
        """What has not been executed is repeated until it is."""
        broker = self.mosquitto()
        self.trusted(broker, "--reboot-seconds", "2", device=False)
        self.assertEqual(self.call(broker, "--id", "gw", "RP_HG_REBOOT")[0], 0)
        status, reply, _ = self.call(broker, "--id", "gw", "--repeat", "0.2", "SET_UPNP_STATE", "Enable=1")
        self.assertEqual((status, reply), (0, '{"Status":"0"}\n'))


if __name__ == "__main__":
    case.main()

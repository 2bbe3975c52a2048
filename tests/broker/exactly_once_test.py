# SPDX-License-Identifier: MIT
"""Commands that change the device are executed at most once and always answered, regardless of what fails, for clients
that repeat a request with the same correlation until it is answered.

REQUESTS and FAILURES in the environment are the numbers for each kind of failure, AWAY_SECONDS how long the broker is away.
"""
import os
import time

import brokers
import case
import trial

REQUESTS = int(os.environ.get("REQUESTS", "200"))
FAILURES = int(os.environ.get("FAILURES", "2"))
AWAY_SECONDS = float(os.environ.get("AWAY_SECONDS", "1"))


class ExactlyOnceTest(case.BrokerCase):
    def persistent_mosquitto(self, autosave=None):
        return self.mosquitto(brokers.persistence(self.folder / "broker", autosave))

    def judge(self, broker, running, fail):
        counted = trial.run(self.caller(broker), running.executed, REQUESTS, fail=fail, failures=FAILURES)
        self.assertTrue(counted.kept_promise(), counted)
        self.assertGreater(counted.failures, 0)
        return counted

    def check_broker(self, broker, end, seconds=0.0):
        running = self.trusted(broker)

        def fail():
            end()
            time.sleep(seconds)
            broker.start()
            running.await_broker()
        counted = self.judge(broker, running, fail)
        self.assertEqual((counted.once, counted.refused, counted.outcome_unknown), (REQUESTS, 0, 0), counted)
        self.assertGreaterEqual(counted.reconnects, counted.failures, counted)

    def test_broker_is_stopped(self):
        broker = self.persistent_mosquitto()
        self.check_broker(broker, broker.stop)

    def test_broker_is_killed_and_saves_every_second(self):
        broker = self.persistent_mosquitto(autosave=1)
        self.check_broker(broker, broker.kill)

    def test_broker_is_killed_and_hardly_ever_saves(self):
        broker = self.persistent_mosquitto()
        self.check_broker(broker, broker.kill)

    def test_broker_is_killed_and_keeps_no_sessions(self):
        broker = self.mosquitto()
        self.check_broker(broker, broker.kill)

    def test_broker_is_away(self):
        broker = self.persistent_mosquitto()
        running = self.trusted(broker)

        def fail():
            broker.kill()
            time.sleep(AWAY_SECONDS)
            self.assertEqual(running.ask('{"id":1,"command":"GET_SN_INFO"}')["result"], 0)
            broker.start()
            running.await_broker()
        self.judge(broker, running, fail)

    def test_worker_is_killed(self):
        broker = self.mosquitto()
        running = self.trusted(broker)
        self.judge(broker, running, running.kill_worker)

    def test_service_is_killed(self):
        """The clients name the epoch that they know: what was sent before is not executed again."""
        broker = self.persistent_mosquitto()
        running = self.trusted(broker)
        client = self.caller(broker)
        client.subscribe("gateway/gw/state")
        state = client.await_message(lambda message: message.topic.endswith("/state")).body
        self.assertIs(state["online"], True)

        def fail():
            running.restart()
            running.await_broker()
        counted = trial.run(client, running.executed, REQUESTS, fail=fail, failures=1,
                            user=lambda: [("epoch", state["epoch"])])
        self.assertEqual((counted.answered, counted.twice), (REQUESTS, 0), counted)
        self.assertGreater(counted.outcome_unknown, 0, counted)
        new = client.await_message(
            lambda message: message.topic.endswith("/state") and message.body.get("online")).body
        self.assertNotEqual(new["epoch"], state["epoch"])

    def test_a_thousand_requests_at_once(self):
        broker = self.mosquitto("max_queued_messages 0")
        running = self.trusted(broker)
        counted = trial.run(self.caller(broker), running.executed, 1000, in_flight=1000)
        self.assertTrue(counted.kept_promise(), counted)
        self.assertEqual(counted.once, 1000, counted)


if __name__ == "__main__":
    case.main()

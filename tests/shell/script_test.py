# SPDX-License-Identifier: MIT
"""The shell without a terminal: script_test.py HGAGENT [TEST...]"""
import json
import pathlib
import signal
import subprocess
import sys
import tempfile
import unittest

from stand_in_service import StandInService

HGAGENT = None


class ScriptTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = str(pathlib.Path(folder.name) / "service.sock")
        self.service = StandInService(HGAGENT, self.path)

    def start(self, **streams):
        return subprocess.Popen([HGAGENT, "shell", "--socket", self.path],
                                **{"stdin": subprocess.PIPE, "stdout": subprocess.PIPE, "stderr": subprocess.PIPE,
                                   **streams})

    def run_lines(self, *lines):
        """Exit status, lines of output, what standard error says."""
        with self.start() as shell:
            text = "".join(line + "\n" for line in lines)
            output, errors = shell.communicate(text.encode("utf-8", "surrogateescape"))
        return shell.returncode, output.decode().splitlines(), errors.decode()

    def test_replies_are_those_of_call(self):
        called = subprocess.run([HGAGENT, "call", "GET_SN_INFO"], check=True, stdout=subprocess.PIPE).stdout.decode()
        status, output, errors = self.run_lines("# a comment", "", "GET_SN_INFO", "call GET_SN_INFO")
        self.assertEqual((status, output, errors), (0, [called.rstrip()] * 2, ""))

    def test_the_last_line_needs_no_end(self):
        with self.start() as shell:
            output, _ = shell.communicate(b"GET_SN_INFO")
        self.assertIn(b"HGU-AX3000", output)

    def test_the_status_is_that_of_the_first_failure(self):
        self.service.answers["DENIED"] = b'"error":"no","code":"denied","rule":"policy.toml:7"'
        self.service.answers["BAD"] = b'"error":"no","code":"bad-request"'
        self.service.answers["failed"] = b'"result":-1,"reply":{}'
        for line, wanted, message in (
                ("SET_UPNP_STATE Enable=up", 1, ""),
                ("DENIED", 1, "hgagent: line 2: denied: no (policy.toml:7)\n"),
                ("BAD", 2, "hgagent: line 2: bad-request: no\n"),
                ("report failed", 1, ""),
                ("SET_UPNP_STATE up", 2, "hgagent: line 2: bad request: \"up\" has not the form KEY=VALUE\n"),
                ("NO_SUCH", 3, "hgagent: line 2: no command \"NO_SUCH\"; the nearest are "),
                ("help NO_SUCH", 3, "hgagent: line 2: no command"),
                ("list NO_SUCH", 1, "hgagent: line 2: no command matches"),
                ("x" * 2000000, 2, "hgagent: line 2: it is longer than 1048576 bytes\n")):
            status, output, errors = self.run_lines("GET_SN_INFO", line, "GET_SN_INFO", "NO_SUCH")
            self.assertEqual(status, wanted, line[:40])
            self.assertIn("HGU-AX3000", output[0])
            self.assertIn("HGU-AX3000", output[-1])
            self.assertTrue(errors.startswith(message), errors)

    def test_quit_ends_it(self):
        status, output, _ = self.run_lines("GET_SN_INFO", "quit", "GET_SN_INFO", "NO_SUCH")
        self.assertEqual((status, len(output)), (0, 1))

    def test_nothing_is_coloured_and_nothing_is_kept(self):
        _, output, _ = self.run_lines("GET_SN_INFO", "help", "help GET_SN_INFO", "status", "list SN_INFO")
        self.assertNotIn("\x1b", "".join(output))
        self.assertGreater(len(output), 20)

    def test_no_service(self):
        self.service.stop()
        status, output, errors = self.run_lines("GET_SN_INFO")
        self.assertEqual((status, output), (4, []))
        self.assertIn(f"cannot reach the service at unix:{self.path}: No such file or directory", errors)

    def test_a_service_that_goes_and_comes_back(self):
        with self.start() as shell:
            def line(text):
                shell.stdin.write(text)
                shell.stdin.flush()

            line(b"GET_SN_INFO\n")
            self.assertIn(b"HGU-AX3000", shell.stdout.readline())
            self.service.stop()
            self.assertRegex(shell.stderr.readline(), b"^hgagent: the service at .* has closed the connection")
            line(b"GET_SN_INFO\n")
            self.assertIn(b"line 2: cannot reach the service at ", shell.stderr.readline())
            self.service.start()
            line(b"GET_SN_INFO\n")
            self.assertIn(b"HGU-AX3000", shell.stdout.readline())
            shell.stdin.close()
            self.assertEqual(shell.wait(), 4)

    def test_events_stand_between_replies(self):
        with self.start() as shell:
            shell.stdin.write(b"events on update.*\nGET_AD_BASE_INFO\n")
            shell.stdin.flush()
            self.service.silent.add("GET_AD_BASE_INFO")
            asked = self.service.wait_for(lambda line: line.get("command") == "GET_AD_BASE_INFO")
            self.assertEqual(self.service.lines[0]["subscribe"], "update.*")
            self.service.send(b'{"event": "update.progress", "data": {"percent": 5}}\n'
                              b'{"id":%d,"result":0,"reply":{"Status":"0"}}\n' % asked["id"])
            output, _ = shell.communicate()
        lines = [json.loads(line) for line in output.splitlines()]
        self.assertEqual(lines, [{"event": "update.progress", "data": {"percent": 5}}, {"Status": "0"}])
        self.assertEqual(shell.returncode, 0)

    def test_events_come_between_lines(self):
        with self.start() as shell:
            shell.stdin.write(b"events on\n")
            shell.stdin.flush()
            self.service.wait_for(lambda line: "subscribe" in line)
            self.service.send(b'{"event": "reboot.begun", "data": {}}\n')
            self.assertEqual(json.loads(shell.stdout.readline()), {"event": "reboot.begun", "data": {}})
            shell.stdin.close()
            self.assertEqual(shell.wait(), 0)

    def test_a_signal_ends_it(self):
        self.service.silent.add("GET_SN_INFO")
        for number in (signal.SIGTERM, signal.SIGINT):
            for text in (b"", b"GET_SN_INFO\n"):
                self.service.lines.clear()
                with self.start() as shell:
                    shell.stdin.write(b"GET_AD_BASE_INFO\n" + text)
                    shell.stdin.flush()
                    self.service.wait_for(lambda line, first=not text: first or line["command"] == "GET_SN_INFO")
                    shell.stdout.readline()
                    shell.send_signal(number)
                    self.assertEqual(shell.wait(), 128 + number)

    def test_nobody_reads(self):
        with self.start() as shell:
            shell.stdout.close()
            shell.stdin.write(b"GET_SN_INFO\nGET_SN_INFO\n")
            shell.stdin.close()
            self.assertIn(b"nobody reads the replies", shell.stderr.read())
            self.assertEqual(shell.wait(), 5)

    def test_rubbish_is_no_reply(self):
        for rubbish in (b"HTTP/1.1 200 OK\r\n", b"\x1b]0;evil\x07\n", b"\0\n", b"[" * 100000 + b"\n",
                        b'{"id":1,"result":0,"reply":{"a":"\xff"}}\n'):
            self.service.greeting = rubbish
            status, output, errors = self.run_lines("GET_SN_INFO")
            self.assertEqual((status, output), (4, []))
            self.assertIn("the peer is not a service", errors)
            self.assertNotIn("\x1b", errors)
        self.service.greeting = b"x" * 20000000
        status, output, errors = self.run_lines("GET_SN_INFO")
        self.assertEqual((status, output), (4, []))
        self.assertIn("sent a line of more than 16777216 bytes", errors)


if __name__ == "__main__":
    HGAGENT = sys.argv.pop(1)
    unittest.main()

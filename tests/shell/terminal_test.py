# SPDX-License-Identifier: MIT
"""The shell at a terminal: terminal_test.py HGAGENT [TEST...]"""
import json
import os
import pathlib
import signal
import stat
import subprocess
import sys
import tempfile
import termios
import threading
import time
import unittest

import pexpect

from stand_in_service import StandInService

HGAGENT = None
PROMPT = "hgagent> "
KEPT_SECONDS = 10  # values for completion
# What a terminal must not get from a service: of these a reply, an event or an error is made.
HOSTILE = "\x1b]0;evil\x07\x1b[31mred\x1b[2J\x9b1m\r\n\x08\x7f\u202e\u200b\u0085"


class TerminalTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.path = str(self.folder / "service.sock")
        self.service = StandInService(HGAGENT, self.path)
        self.history = self.folder / "state/hgagent/history"

    def shell(self, **environment):
        environment = {**os.environ, "XDG_STATE_HOME": str(self.folder / "state"), "TERM": "xterm",
                       "LC_ALL": "C.UTF-8", "NO_COLOR": "", **environment}
        shell = pexpect.spawn(HGAGENT, ["shell", "--socket", self.path], env=environment, timeout=None,
                              dimensions=(40, 100), encoding="utf-8")
        self.addCleanup(shell.close, force=True)
        shell.expect_exact(PROMPT)
        return shell

    def run_line(self, shell, line):
        """What the line prints, without the line itself."""
        shell.sendline(line)
        shell.expect_exact("\n")  # the echo of the line
        shell.expect_exact(PROMPT)
        return shell.before

    def complete(self, shell, words, completion):
        """Presses Tab until it completes: the shell waits for the service for a moment only."""
        shell.send(words)
        shell.send("\t")
        while shell.expect_exact([completion, "\x07"]) != 0:
            shell.send("\t")

    def end(self, shell):
        # While a line is edited, Ctrl-D is a character; otherwise the terminal would swallow it.
        self.assertFalse(termios.tcgetattr(shell.fileno())[3] & termios.ICANON)
        shell.sendcontrol("d")
        shell.expect(pexpect.EOF)
        shell.close()
        self.assertEqual((shell.exitstatus, shell.signalstatus), (0, None), shell.before)
        return shell.before

    def assert_harmless(self, text):
        """Nothing of HOSTILE has come through raw."""
        for raw in ("\x1b]", "\x1b[31m", "\x1b[2J", "\x07red", "\x9b", "\u202e", "\u200b", "\u0085", "\x7f"):
            self.assertNotIn(raw, text)

    # ---- Commands ----------------------------------------------------------------------------------

    def test_replies_are_shown(self):
        shell = self.shell(NO_COLOR="1")
        text = self.run_line(shell, "GET_SN_INFO")
        self.assertEqual(json.loads(text)["MAC"], "3C:6A:D2:10:4F:20")
        self.assertNotIn("\x1b", text)
        text = self.run_line(shell, 'call RESPONSE_ROUTER_VERSION VersionInfo="app 5.2.0"')
        self.assertEqual(json.loads(text), {"VersionInfo": "app 5.2.0", "Status": "0"})
        text = self.run_line(shell, 'RESPONSE_ROUTER_VERSION {"VersionInfo": "a  b"}')
        self.assertEqual(json.loads(text)["VersionInfo"], "a  b")
        self.assertIn("bad request: ", self.run_line(shell, "GET_SN_INFO x"))
        self.assertIn('no command "GET_SN_INFOS"; the nearest are GET_SN_INFO', self.run_line(shell, "GET_SN_INFOS"))
        self.service.answers["home-page"] = b'"result":0,"reply":{"Devname":"Lindenhof"}'
        self.assertIn('"Lindenhof"', self.run_line(shell, "report home-page"))
        self.assertEqual(self.service.lines[-1]["report"], "home-page")
        self.service.answers["GET_SN_INFO"] = b'"error":"not allowed","code":"denied","rule":"policy.toml:7"'
        self.assertIn("hgagent: denied: not allowed (policy.toml:7)", self.run_line(shell, "GET_SN_INFO"))
        self.end(shell)

    def test_help(self):
        shell = self.shell(NO_COLOR="1")
        for word in ("report NAME", "events on", "status", "quit"):
            self.assertIn(word, self.run_line(shell, "help"))
        described = subprocess.run([HGAGENT, "describe", "GET_SN_INFO"], check=True, stdout=subprocess.PIPE,
                                   encoding="utf-8").stdout
        self.assertEqual(self.run_line(shell, "help GET_SN_INFO").replace("\r", ""), described)
        self.assertIn("events off", self.run_line(shell, "help events").replace("| off", "events off"))
        self.assertIn("no command", self.run_line(shell, "help NO_SUCH"))
        self.assertIn("GET_SN_INFO", self.run_line(shell, "list sn_info"))
        self.end(shell)

    def test_status(self):
        shell = self.shell()
        text = self.run_line(shell, "status")
        for part in (f"unix:{self.path}", "open", "0.2.0", "0000000000000001", "off"):
            self.assertIn(part, text)
        self.run_line(shell, "events on update.*")
        self.assertIn("on, update.*", self.run_line(shell, "status"))
        shell.sendline("quit")
        shell.expect(pexpect.EOF)
        shell.close()
        self.assertEqual(shell.exitstatus, 0)

    def test_no_service(self):
        self.service.stop()
        shell = pexpect.spawn(HGAGENT, ["shell", "--socket", self.path], timeout=None, encoding="utf-8")
        shell.expect(pexpect.EOF)
        shell.close()
        self.assertEqual(shell.exitstatus, 4)
        self.assertIn("No such file", shell.before)

    # ---- Completion --------------------------------------------------------------------------------

    def test_completion(self):
        shell = self.shell()
        shell.send("get_sn\t")
        shell.expect_exact("GET_SN_INFO ")
        shell.sendcontrol("u")
        shell.send("SET_UPNP_STATE \t")
        shell.expect_exact("Enable=")
        shell.sendcontrol("u")
        shell.send("GET_WIFI_INFO \t")
        shell.expect_exact("SSIDIndex=")
        shell.send("\t")
        shell.expect(r"1 +2")
        self.service.wait_for(lambda line: line.get("command") == "GET_WIFI_LIST_INFO")
        shell.sendcontrol("u")
        self.complete(shell, "DEL_LAN_DEVICE MAC=a4", "A4:BB:6D:31:07:5E")
        shell.send("\r")
        sent = self.service.wait_for(lambda line: line.get("command") == "DEL_LAN_DEVICE")
        self.assertEqual(sent["params"], {"MAC": "A4:BB:6D:31:07:5E"})
        shell.expect_exact(PROMPT)

        def asked():
            return len([line for line in self.service.lines if line.get("command") == "GET_AD_BASE_INFO"])

        before = time.monotonic()
        self.complete(shell, "DEL_LAN_DEVICE MAC=", "BE:27:15:F3:64:0A")
        shell.expect_exact(PROMPT)
        first = asked()
        self.assertGreaterEqual(first, 1)
        shell.sendcontrol("u")
        self.complete(shell, "DEL_LAN_DEVICE MAC=", "BE:27:15:F3:64:0A")
        shell.expect_exact(PROMPT)
        if time.monotonic() - before < KEPT_SECONDS:
            self.assertEqual(asked(), first)
        shell.sendcontrol("u")
        self.end(shell)

    def test_completion_without_an_answer(self):
        self.service.silent.add("GET_AD_BASE_INFO")
        shell = self.shell()
        shell.send("DEL_LAN_DEVICE MAC=\t")
        shell.expect_exact("\x07")
        shell.sendcontrol("u")
        self.assertIn("HGU-AX3000", self.run_line(shell, "GET_SN_INFO"))
        self.end(shell)

    # ---- History -----------------------------------------------------------------------------------

    def test_history(self):
        shell = self.shell(NO_COLOR="1")
        self.run_line(shell, "GET_SN_INFO")
        self.run_line(shell, "SET_WEB_LOGIN_INFO WebLoginType=1 Password='two words'")
        sent = self.service.wait_for(lambda line: line.get("command") == "SET_WEB_LOGIN_INFO")
        self.assertEqual(sent["params"]["Password"], "two words")
        self.run_line(shell, 'SET_WEB_LOGIN_INFO {"WebLoginType": "1", "Password": "in json"}')
        self.end(shell)
        self.assertEqual(stat.S_IMODE(self.history.stat().st_mode), 0o600)
        kept = self.history.read_text()
        self.assertEqual(kept, "GET_SN_INFO\nSET_WEB_LOGIN_INFO WebLoginType=1 Password=***\n"
                               'SET_WEB_LOGIN_INFO {"WebLoginType":"1","Password":"***"}\n')
        again = self.shell(NO_COLOR="1")
        again.send("\x1b[A\x1b[A")
        self.assertIn("the history does not keep", self.run_line(again, ""))
        again.send("\x1b[A\x1b[A\x1b[A\x1b[A")
        self.assertIn("HGU-AX3000", self.run_line(again, ""))
        self.end(again)
        commands = [line["command"] for line in self.service.lines if "command" in line]
        self.assertEqual(commands, ["GET_SN_INFO", "SET_WEB_LOGIN_INFO", "SET_WEB_LOGIN_INFO", "GET_SN_INFO"])

    def test_history_that_cannot_be_kept(self):
        (self.folder / "state").write_text("no folder")
        shell = self.shell()
        self.assertIn("HGU-AX3000", self.run_line(shell, "GET_SN_INFO"))
        self.end(shell)

    # ---- Colours -----------------------------------------------------------------------------------

    def test_colours(self):
        for environment, coloured in (({}, True), ({"NO_COLOR": "1"}, False), ({"NO_COLOR": ""}, True),
                                      ({"TERM": "dumb"}, False)):
            shell = self.shell(**environment)
            text = self.run_line(shell, "GET_SN_INFO")
            self.assertEqual("\x1b[32m" in text, coloured, environment)
            self.end(shell)

    # ---- Events ------------------------------------------------------------------------------------

    def test_events(self):
        shell = self.shell(NO_COLOR="1")
        self.service.send(b'{"event":"before.on"}\n')
        self.run_line(shell, "events on")
        self.assertEqual(self.service.lines[-1]["subscribe"], "*")
        shell.send("GET_SN")
        shell.expect_exact("GET_SN")
        self.service.send(b'{"event":"update.progress","data":{"percent":54}}\n')
        shell.expect_exact('* update.progress {"percent":54}')
        self.assertNotIn("before.on", shell.before)
        shell.expect_exact(PROMPT)  # and what was typed stands there again
        shell.expect_exact("GET_SN")
        self.assertIn("HGU-AX3000", self.run_line(shell, "_INFO"))
        self.run_line(shell, "events off")
        self.assertEqual(self.service.lines[-1]["unsubscribe"], "*")
        self.service.send(b'{"event":"after.off"}\n')
        self.assertNotIn("after.off", self.run_line(shell, "GET_SN_INFO") + self.end(shell))

    # ---- Signals -----------------------------------------------------------------------------------

    def test_interrupt_drops_the_line(self):
        shell = self.shell()
        shell.send("GET_SN_IN")
        shell.sendcontrol("c")
        shell.expect_exact(PROMPT)
        self.assertIn("HGU-AX3000", self.run_line(shell, "GET_SN_INFO"))
        self.end(shell)

    def test_interrupt_ends_the_wait(self):
        self.service.silent.add("GET_AD_BASE_INFO")
        shell = self.shell()
        shell.sendline("GET_AD_BASE_INFO")
        asked = self.service.wait_for(lambda line: line.get("command") == "GET_AD_BASE_INFO")
        shell.sendcontrol("c")
        shell.expect_exact("not waiting for the answer")
        shell.expect_exact(PROMPT)
        self.service.send(b'{"id":%d,"result":0,"reply":{"late":"answer"}}\n' % asked["id"])
        text = self.run_line(shell, "GET_SN_INFO")
        self.assertIn("HGU-AX3000", text)
        self.assertNotIn("late", text)
        self.end(shell)

    def test_an_end_leaves_the_terminal_as_it_was(self):
        shell = self.shell()
        self.assertFalse(termios.tcgetattr(shell.child_fd)[3] & termios.ICANON)
        shell.kill(signal.SIGTERM)
        while shell.isalive():
            time.sleep(0.05)
        self.assertEqual(shell.exitstatus, 128 + signal.SIGTERM)
        self.assertTrue(termios.tcgetattr(shell.child_fd)[3] & termios.ICANON)

    # ---- A service that goes away ------------------------------------------------------------------

    def test_connects_again(self):
        shell = self.shell()
        self.run_line(shell, "events on")
        shell.send("GET_SN")
        shell.expect_exact("GET_SN")
        self.service.stop()
        shell.expect_exact("has closed the connection; the shell will connect again")
        shell.expect_exact("GET_SN")
        self.service.epoch = 2
        self.service.lines.clear()
        self.service.start()
        shell.expect_exact("connected to the service again; it was restarted")
        self.service.wait_for(lambda line: line.get("subscribe") == "*")
        shell.expect_exact("GET_SN")
        self.assertIn("HGU-AX3000", self.run_line(shell, "_INFO"))
        self.service.stop()
        shell.expect_exact("has closed the connection")
        shell.expect_exact(PROMPT)
        self.assertIn("cannot reach the service", self.run_line(shell, "GET_SN_INFO"))
        self.service.start()
        text = self.run_line(shell, "GET_SN_INFO") + self.run_line(shell, "GET_SN_INFO")
        self.assertIn("HGU-AX3000", text)
        self.assertNotIn("restarted", text)  # it is the same as before
        self.end(shell)

    def test_goes_away_during_a_command(self):
        self.service.silent.add("GET_SN_INFO")
        shell = self.shell()
        shell.sendline("GET_SN_INFO")
        self.service.wait_for(lambda line: line.get("command") == "GET_SN_INFO")
        self.service.stop()
        shell.expect_exact("has closed the connection")
        shell.expect_exact(PROMPT)
        self.end(shell)

    # ---- A hostile service -------------------------------------------------------------------------

    def test_nothing_steers_the_terminal(self):
        text = json.dumps(HOSTILE, ensure_ascii=False).encode().replace(b"\\u001b", b"\\u001b")
        for answer in (b'"result":0,"reply":{%s:%s,"Status":%s}' % (text, text, text),
                       b'"error":%s,"code":%s,"rule":%s' % (text, text, text),
                       b'"result":0,"reply":{"a":"\xff\xfe\x9b1m"}'):
            self.service.answers["GET_SN_INFO"] = answer
            shell = self.shell()
            printed = self.run_line(shell, "GET_SN_INFO")
            self.assert_harmless(printed)
            self.run_line(shell, "events on")
            self.service.send(b'{"event":%s,"data":{%s:%s}}\n{"event":"last"}\n' % (text, text, text))
            shell.expect_exact("* last")
            self.assertIn("evil", shell.before)
            self.assert_harmless(shell.before)
            self.end(shell)

    def test_values_that_steer_are_not_offered(self):
        text = json.dumps(HOSTILE, ensure_ascii=False).encode()
        self.service.answers["GET_AD_BASE_INFO"] = (
            b'"result":0,"reply":{"BaseInfo":[{"Mac":%s},{"Mac":"A1:02"},{"Mac":"A1:03"}]}' % text)
        shell = self.shell()
        shell.send("DEL_LAN_DEVICE MAC=\t\t")
        shell.expect(r"A1:02 +A1:03")
        self.assertNotIn("evil", shell.before)
        shell.sendcontrol("u")
        self.assert_harmless(self.end(shell))

    def test_rubbish_and_endless_lines(self):
        for rubbish in (b"HTTP/1.1 200 OK\r\n", b"\x1b[2J\x1b]0;evil\x07\n", b"[[[[\n", b"\0\n", b"[" * 100000 + b"\n",
                        b"\xff" * 1000 + b"\n"):
            shell = self.shell()
            self.service.send(rubbish)
            shell.expect_exact("the peer is not a service")
            shell.expect_exact(PROMPT)
            self.assert_harmless(shell.before)
            shell.sendcontrol("u")
            self.end(shell)
        shell = self.shell()
        for _ in range(20):
            self.service.send(b"x" * 1000000)
        shell.expect_exact("sent a line of more than 16777216 bytes")
        shell.expect_exact(PROMPT)
        self.end(shell)

    def test_keys_come_before_a_flood_of_events(self):
        shell = self.shell()
        self.run_line(shell, "events on")
        connection = self.service.connections[-1]
        sent = []

        def flood():
            try:
                while True:
                    connection.sendall(b'{"event":"flood"}\n' * 100)
                    sent.append(1)
            except OSError:
                pass

        thread = threading.Thread(target=flood, daemon=True)
        thread.start()
        shell.expect_exact("* flood")
        shell.sendline("quit")
        shell.expect(pexpect.EOF)
        shell.close()
        self.assertEqual(shell.exitstatus, 0)
        thread.join()
        self.assertTrue(sent)


if __name__ == "__main__":
    HGAGENT = sys.argv.pop(1)
    unittest.main()

# SPDX-License-Identifier: MIT
"""The shell with `hgagent run`: running_service_test.py HGAGENT [TEST...]"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

import pexpect

HGAGENT = None
PROMPT = "hgagent> "


class RunningServiceTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.path = str(self.folder / "service.sock")
        self.environment = {**os.environ, "XDG_RUNTIME_DIR": folder.name, "XDG_STATE_HOME": folder.name,
                            "TERM": "xterm", "LC_ALL": "C.UTF-8", "NO_COLOR": "1"}
        self.service = self.start_service()
        self.addCleanup(self.end_service)

    def start_service(self):
        service = subprocess.Popen([HGAGENT, "run", "--socket", self.path], env=self.environment,
                                   stderr=subprocess.PIPE)
        line = b""
        while not line.startswith(b"listening on unix:"):
            line = service.stderr.readline()
            self.assertTrue(line, "the service has ended")
        return service

    def end_service(self):
        self.service.terminate()
        self.service.stderr.read()
        self.service.stderr.close()
        self.service.wait()

    def shell(self):
        shell = pexpect.spawn(HGAGENT, ["shell", "--socket", self.path], env=self.environment, timeout=None,
                              dimensions=(40, 100), encoding="utf-8")
        self.addCleanup(shell.close, force=True)
        shell.expect_exact(PROMPT)
        return shell

    def run_line(self, shell, line):
        shell.sendline(line)
        shell.expect_exact("\n")
        shell.expect_exact(PROMPT)
        return shell.before

    def test_commands_reports_and_refusals(self):
        script = "GET_SN_INFO\nreport home-page\nreport none\nNO_SUCH\nSET_UPNP_STATE Enable=up\nstatus\n"
        shell = subprocess.run([HGAGENT, "shell", "--socket", self.path], input=script.encode(),
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=self.environment, check=False)
        output = shell.stdout.decode().splitlines()
        self.assertEqual(json.loads(output[0])["DeviceType"], "HGU-AX3000")
        self.assertEqual(json.loads(output[1])["Devname"], "Lindenhof")
        self.assertEqual(json.loads(output[2])["Status"], "1")
        self.assertRegex(shell.stdout.decode(), r"Epoch +[0-9a-f]{4,}")
        errors = shell.stderr.decode().splitlines()
        self.assertTrue(errors[0].startswith("hgagent: line 3: bad-request: "), errors)
        self.assertTrue(errors[1].startswith("hgagent: line 4: no command"), errors)
        self.assertEqual(shell.returncode, 2)

    def test_values_events_and_a_new_start(self):
        shell = self.shell()
        shell.send("DEL_LAN_DEVICE MAC=a4\t")
        # The shell waits for the service for a moment only, then it rings the bell.
        while shell.expect_exact(["BB:6D:31:07:5E", "\x07"]) != 0:
            shell.send("\t")
        shell.sendcontrol("u")
        self.run_line(shell, "events on")
        subprocess.run([HGAGENT, "notice", "--socket", self.path, "--plugin-name", "parental_control", "A new phone"],
                       check=True, stdout=subprocess.DEVNULL, env=self.environment)
        shell.expect_exact('* notice {"RPCMethod":"Push","Plugin_Name":"parental_control"')
        self.service.kill()
        shell.expect_exact("has closed the connection")
        self.end_service()
        self.service = self.start_service()
        shell.expect_exact("connected to the service again; it was restarted")
        shell.expect_exact(PROMPT)
        self.assertIn("HGU-AX3000", self.run_line(shell, "GET_SN_INFO"))
        self.assertIn("on, *", self.run_line(shell, "status"))
        shell.sendline("quit")
        shell.expect(pexpect.EOF)
        shell.close()
        self.assertEqual(shell.exitstatus, 0)


if __name__ == "__main__":
    HGAGENT = sys.argv.pop(1)
    unittest.main()

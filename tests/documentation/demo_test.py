# SPDX-License-Identifier: MIT
"""scripts/demo.sh: its lines can be copied, it leaves the home as intended, its output can be piped, and is the one in
docs/demonstration.txt, which RENEW_GOLDEN_FILES=1 rewrites.

usage: demo_test.py BUILD_FOLDER
"""

import json
import os
import pathlib
import re
import socket
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = sys.argv.pop()
RECORDING = ROOT / "docs/demonstration.txt"
ENVIRONMENT = {**os.environ, "LC_ALL": "C.UTF-8", "ASAN_OPTIONS": "verify_asan_link_order=0:detect_leaks=0"}


def run(*command, **options):
    return subprocess.run(command, env=ENVIRONMENT, text=True, encoding="utf-8", stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False, **options)


def is_whole(command):
    """Whether a shell would run it, and not ask for another line."""
    checked = run("bash", "-n", "-c", command)
    return checked.returncode == 0 and not checked.stdout and not command.endswith("\\\n")


def shown_in(paragraphs):
    """Each command with what it printed."""
    shown = []
    for paragraph in paragraphs:
        lines = iter(paragraph.splitlines(keepends=True))
        for line in lines:
            if line.startswith("$ "):
                command = line[2:]
                while not is_whole(command):
                    command += next(lines)
                shown.append([command, ""])
            elif shown and not paragraph.startswith(line):
                shown[-1][1] += line
    return shown


def without_times(output):
    return re.sub(r" in \d+ us$", "", output, flags=re.M)


class DemoTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        demo = run(ROOT / "scripts/demo.sh", BUILD)
        cls.status, cls.output = demo.returncode, demo.stdout
        *story, cls.end = cls.output.split("\n\n")
        cls.shown = shown_in(text.lstrip("\n") + "\n" for text in story)

    def reply_of(self, command):
        return [json.loads(output) for shown, output in self.shown if command in shown]

    def test_runs_and_can_be_read_in_a_pipe(self):
        self.assertEqual(self.status, 0, self.output)
        self.assertNotIn("\x1b", self.output)
        self.assertNotIn("<3>", self.output)
        self.assertEqual(self.output.count("(exit status"), 1, "the one failure that is shown")

    def test_prints_what_the_documents_have(self):
        output = self.output.replace(os.path.relpath(BUILD, ROOT), "build/release")
        output = without_times(output.replace(str(ROOT), "/home/user/smart_router_service"))
        if "RENEW_GOLDEN_FILES" in os.environ:
            RECORDING.write_text(output, encoding="utf-8")
        self.assertEqual(RECORDING.read_text(encoding="utf-8"), output)

    def test_its_lines_can_be_copied(self):
        self.assertGreater(len(self.shown), 25)
        mark = "--- the next line ---\n"
        script = "".join(f"{command}status=$?; ((status)) && echo \"(exit status $status)\"; echo -n '{mark}'\n"
                         for command, _ in self.shown)
        with tempfile.TemporaryDirectory() as elsewhere:
            outputs = run("bash", "-c", f"export TMPDIR={elsewhere}\n{script}", cwd=elsewhere).stdout.split(mark)
        for (command, output), copied in zip(self.shown, outputs):
            self.assertEqual(without_times(copied), without_times(output), command)

    def test_no_device_leaves_parental_control(self):
        before, after = ({device["Mac"]: device["Name"] for device in reply["DeviceList"]}
                         for reply in self.reply_of("GET_GREENNET_DEVICE_LIST"))
        self.assertEqual(len(after), len(before) + 1)
        self.assertLessEqual(before.items(), after.items())

    def test_the_notice_carries_the_time_of_the_story(self):
        self.assertEqual(self.reply_of("hgagent notice")[0]["time"], "20260101210045")

    def test_ends_with_what_to_do_next(self):
        headline, *lines = self.end.splitlines()
        self.assertEqual(headline, "What to do next")
        self.assertLess(len(lines), 12)
        for line in lines[::2]:
            program, *words = line.split()
            self.assertTrue((ROOT / program).exists(), program)
            if words:
                self.assertEqual(run(ROOT / program, *words).returncode, 0, line)


@unittest.skipUnless((ROOT / BUILD / "console/index.html").exists(), "the build has no console")
class ConsoleDemoTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        demo = run(ROOT / "scripts/demo.sh", "--console", BUILD)
        cls.status, cls.output = demo.returncode, demo.stdout
        cls.shown = shown_in(text.lstrip("\n") + "\n" for text in cls.output.split("\n\n"))

    def test_each_step_succeeds(self):
        self.assertEqual(self.status, 0, self.output)
        self.assertNotIn("(exit status", self.output)
        statuses = [json.loads(output)["Status"] for command, output in self.shown if " call " in command]
        self.assertEqual(statuses, ["0"] * 8)

    def test_its_views_exist(self):
        page = (ROOT / "console/src/main.tsx").read_text(encoding="utf-8")
        views = re.findall(r": http://127\.0\.0\.1:\d+/#/(\w+)$", self.output, re.M)
        self.assertGreater(len(views), 8)
        for view in views:
            self.assertRegex(page, rf'\bid: "{view}"')

    def test_the_service_ends(self):
        port = int(re.search(r"http://127\.0\.0\.1:(\d+)/#token=", self.output)[1])
        with socket.socket() as connection:
            self.assertNotEqual(connection.connect_ex(("127.0.0.1", port)), 0)


unittest.main()

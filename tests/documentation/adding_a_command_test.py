# SPDX-License-Identifier: MIT
"""The code in docs/adding-a-command.md has to make a working command once it is inserted where the page says.

usage: adding_a_command_test.py BUILD_FOLDER

The project's tree is not changed: the steps are run in a copy of it.
"""

import json
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(sys.argv.pop())
FOLDERS = ("docs", "protocol", "simulated_gateway", "smart_router_service", "tests/protocol",
           "tests/support")
CODE = [(int(number), code)
        for number, step in re.findall(r"^### (\d)\. (.*?)(?=^###? )",
                                       (ROOT / "docs/adding-a-command.md").read_text(encoding="utf-8"), re.M | re.S)
        for code in re.findall(r"^```\w+\n(.*?)^```", step, re.M | re.S)]


def as_last_element(text, code):
    end = text.rindex("\n    ]")
    return f"{text[:end]},\n{code.rstrip()}{text[end:]}"


def at_the_end(text, code):
    return f"{text}\n{code}"


def as_last_row(text, code):
    end = text.index(")\n\n")
    return f"{text[:end]}) \\\n{code}{text[end + 2:]}"


def after(beginning):
    """Below the first statement that begins so."""
    def put(text, code):
        end = text.index(";\n", text.index(beginning)) + 2
        return f"{text[:end]}{code}{text[end:]}"
    return put


def as_file(_, code):
    return code


# Where each piece of code belongs, with its step.
PLACES = [
    (1, "protocol/device/device_identity.json", as_last_element),
    (2, "smart_router_service/device_identity.cpp", at_the_end),
    (3, "smart_router_service/commands.h", as_last_row),
    (4, "protocol/commands/GET_AREA_INFO.json", as_file),
    (4, "protocol/commands/SET_AREA_INFO.json", as_file),
    (5, "simulated_gateway/device/device_identity.cpp", at_the_end),
    (5, "simulated_gateway/model/model.h", after("    std::string vlan_capability")),
    (5, "simulated_gateway/model/model.h", after('        visit.field("vlan_capability"')),
]


def compile_entries():
    """The compiler's command for each source, also for those in unity builds."""
    entries = {}
    for entry in json.loads((BUILD / "compile_commands.json").read_text(encoding="utf-8")):
        source = pathlib.Path(entry["file"])
        together = source.parent.name == "Unity"
        for each in re.findall('#include "(.*)"', source.read_text()) if together else [str(source)]:
            entries[each] = dict(entry, command=entry["command"].replace(str(source), each))
    return entries


@unittest.skipIf((ROOT / PLACES[3][1]).exists(), "the page's example has been added to this tree")
class AddingACommandTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = pathlib.Path(folder.name)
        for name in FOLDERS:
            shutil.copytree(ROOT / name, self.tree / name, ignore=shutil.ignore_patterns("node_modules"))

    def take_steps(self, but=None):
        for (step, path, put), (_, code) in zip(PLACES, CODE):
            if step != but:
                file = self.tree / path
                text = file.read_text(encoding="utf-8") if file.exists() else ""
                file.write_text(put(text, code), encoding="utf-8")
                self.assertNotEqual(file.read_text(encoding="utf-8"), text, path)
        self.run_script("protocol/generate.py")

    def run_script(self, *command):
        run = subprocess.run([sys.executable, "-B", *command], cwd=self.tree, text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        return run.returncode, run.stdout

    def check_descriptions(self):
        return self.run_script("tests/protocol/check_descriptions.py")

    def test_the_page_has_the_places_of_this_test(self):
        self.assertEqual([step for step, _ in CODE], [step for step, _, _ in PLACES])

    def test_the_steps_make_a_command(self):
        self.take_steps()
        for check in ("check_descriptions.py", "check_device.py"):
            status, output = self.run_script(f"tests/protocol/{check}")
            self.assertEqual(status, 0, output)
        entries = compile_entries()
        for path in {path for _, path, _ in PLACES if path.endswith(".cpp")}:
            self.compile(entries[str(ROOT / path)])

    def compile(self, entry):
        line = entry["command"]
        for name in FOLDERS:
            line = line.replace(str(ROOT / name), str(self.tree / name))
        words = shlex.split(line)
        words[words.index("-o"):words.index("-o") + 2] = ["-fsyntax-only"]
        run = subprocess.run(words, cwd=entry["directory"], text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.assertEqual(run.returncode, 0, run.stdout)

    def test_a_forgotten_step_is_reported(self):
        for step, told in ((1, "protocol/device describes no devapi_get_area_info"),
                           (3, "GET_AREA_INFO is described but not in the table of commands"),
                           (4, "GET_AREA_INFO is in the table of commands but not described")):
            with self.subTest(step=step):
                self.setUp()
                self.take_steps(but=step)
                status, output = self.check_descriptions()
                self.assertEqual(status, 1)
                self.assertIn(told, output)


unittest.main()

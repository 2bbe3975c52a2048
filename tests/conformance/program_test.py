# SPDX-License-Identifier: MIT
"""hg-conformance as it runs on a router, natively or under an emulator:
program_test.py PROGRAM MINIMAL_DEVICE FAULTY_DEVICE READELF [EMULATOR...]. With a READELF other than "-" the
program and the device layer may need no libraries but cJSON, the C++ runtime and the C library."""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

PROGRAM, MINIMAL, FAULTY, READELF, *EMULATOR = sys.argv[1:]
RUNTIME = {"libcjson.so.1", "libstdc++.so.6", "libgcc_s.so.1", "libm.so.6", "libc.so.6", "ld.so.1"}


def run(*options, fault=""):
    return subprocess.run([*EMULATOR, PROGRAM, *options], env=os.environ | {"FAULT": fault},
                          capture_output=True, text=True, check=False)


def check(device, *options, fault=""):
    return run("--device", device, "--log-level", "0", *options, fault=fault)


def row(done, name):
    """The row of a check, with its continuation lines."""
    return re.search(rf"^{name} .*(\n +.*)*", done.stdout, re.M)[0]


class ProgramTest(unittest.TestCase):
    def test_it_checks_all_of_a_library(self):
        done = check(MINIMAL)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertRegex(row(done, "functions"), "passed")
        self.assertRegex(row(done, "GET_SN_INFO"), "passed")
        self.assertRegex(row(done, "QUERY_SYSTEM_INFO"), "not supported +devapi_get_system_info")
        self.assertRegex(row(done, "SET_UPNP_STATE"), "skipped +changes a setting: --allow-writes")
        counts = re.search(r"(\d+) checks: 2 passed, 0 failed, (\d+) not supported, (\d+) skipped$", done.stdout)
        self.assertEqual(int(counts[1]), 2 + int(counts[2]) + int(counts[3]))

    def test_it_changes_and_restores(self):
        writing = ("--allow-writes", "--command", "SET_UPNP_STATE")
        self.assertEqual(check(FAULTY, *writing).returncode, 0)
        done = check(FAULTY, *writing, fault="setting_does_not_stick")
        self.assertEqual(done.returncode, 1)
        self.assertIn('Enable was set to "0" and reads "1"', row(done, "SET_UPNP_STATE"))

    def test_it_names_faults_and_survives_them(self):
        for fault, detail in (("unterminated_text", "SnInfo.MAC does not end within its 64 bytes"),
                              ("crash", r"it crashes \((ABRT|6)\) in devapi_get_sn_info"),
                              ("writes_behind", "it writes behind what it is given")):
            done = check(FAULTY, "--command", "GET_SN_INFO", "--command", "GET_UPNP_STATE", fault=fault)
            self.assertEqual(done.returncode, 1)
            self.assertRegex(row(done, "GET_SN_INFO"), "failed")
            self.assertRegex(row(done, "GET_SN_INFO"), detail)
            self.assertRegex(row(done, "GET_UPNP_STATE"), "passed")
        done = check(FAULTY, "--command", "GET_SN_INFO", "--patience", "1", fault="hang")
        self.assertRegex(row(done, "GET_SN_INFO"), "does not end within 1 seconds, in devapi_get_sn_info")
        done = check(FAULTY, "--command", "GET_UPNP_STATE", fault="refused_command")
        self.assertIn('it calls system("upnpc --state"), which hg-conformance refuses', row(done, "GET_UPNP_STATE"))

    def test_it_warns(self):
        done = check(FAULTY, "--command", "GET_SN_INFO")
        self.assertEqual(done.returncode, 0)
        self.assertIn('warning: devapi_get_sn_info: empty, and not "NULL": SnInfo.tslinkstatus', done.stdout)

    def test_any_bytes_are_shown_in_ascii(self):
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder) / "junit.xml"
            done = check(FAULTY, "--allow-writes", "--command", "SET_UPNP_STATE", "--junit", file, fault="hostile_text")
            message = ElementTree.parse(file).getroot().find(".//failure").get("message")
        self.assertEqual(done.returncode, 1)
        self.assertTrue(done.stdout.isascii() and message.isascii(), (done.stdout, message))
        self.assertIn(r"\\x1b\\xef\\xbf\\xbf", message)  # escaped, and then quoted

    def test_it_refuses_a_library_of_another_version(self):
        done = check(FAULTY, fault="other_major_version")
        self.assertEqual((done.returncode, done.stdout), (4, ""))
        self.assertRegex(done.stderr, r"hg-conformance: the device library .* is built with version \d+\.\d+ of "
                                      r"device_access\.h, and this agent with version \d+\.\d+\n")

    def test_it_reports_what_it_cannot_do(self):
        for options in ((), ("--device", MINIMAL, "--patience", "0"), ("--device", MINIMAL, "--patience", "1s"),
                        ("--device", MINIMAL, "--log-level", "-1"), ("--device", MINIMAL, "GET_SN_INFO"),
                        ("--devices", MINIMAL)):
            done = run(*options)
            self.assertEqual((done.returncode, done.stdout), (2, ""), options)
            self.assertNotEqual(done.stderr, "")
        self.assertEqual(check("none.so").returncode, 4)
        done = check(MINIMAL, "--command", "GET_SN_INF")
        self.assertEqual(done.returncode, 3)
        self.assertIn("GET_SN_INFO", done.stderr)

    def test_it_has_help_and_a_version(self):
        self.assertRegex(run("--version").stdout, r"^hg-conformance \d+\.\d+\.\d+\n$")
        done = run("--help")
        self.assertEqual((done.returncode, done.stdout.startswith("usage: hg-conformance --device LIB")), (0, True))

    @unittest.skipIf(READELF == "-", "the sanitizers have libraries of their own")
    def test_it_needs_only_cjson_and_the_runtime(self):
        watch = pathlib.Path(PROGRAM).parent.parent / "lib/libdevice_layer.so"
        for file in (PROGRAM, watch):
            sections = subprocess.run([READELF, "-dW", file], capture_output=True, text=True, check=True).stdout
            needed = set(re.findall(r"\(NEEDED\).*\[(.*)\]", sections))
            self.assertTrue({"libc.so.6"} <= needed <= RUNTIME, needed)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])

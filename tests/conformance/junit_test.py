# SPDX-License-Identifier: MIT
"""The results of a device library in JUnit's format: junit_test.py HGAGENT DEVICE. They have to be XML,
for any output of the library, and to agree with the table."""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

AGENT, DEVICE = sys.argv[1:3]


def run(fault, *options):
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder) / "junit.xml"
        done = subprocess.run([AGENT, "--log-level", "0", "--device", DEVICE, "conformance",
                               "--junit", file, *options],
                              env=os.environ | {"FAULT": fault}, capture_output=True, check=False)
        return done.stdout.decode(), ElementTree.parse(file).getroot()


class JunitTest(unittest.TestCase):
    def test_it_agrees_with_the_table(self):
        table, root = run("undocumented_result", "--allow-writes")
        sums = {name: int(number)
                for number, name in re.findall(r"(\d+) (passed|failed|not supported|skipped)", table)}
        suite = root.find("testsuite")
        cases = suite.findall("testcase")
        self.assertEqual(suite.get("name"), DEVICE)
        self.assertEqual(int(suite.get("tests")), len(cases))
        self.assertEqual(len(cases), sum(sums.values()))
        self.assertEqual(int(suite.get("failures")), sums["failed"])
        self.assertEqual(len(suite.findall("testcase/failure")), sums["failed"])
        self.assertEqual(len(suite.findall("testcase/skipped")),
                         sums["not supported"] + sums["skipped"])
        self.assertEqual(len(suite.findall("testcase/system-out")),
                         int(re.search(r"(\d+) with warnings", table)[1]))
        self.assertIn('warning: devapi_get_sn_info: empty, and not "NULL": SnInfo.tslinkstatus',
                      suite.find("testcase[@name='GET_SN_INFO']/system-out").text)
        self.assertEqual(dict(root.items()) | {"name": DEVICE}, dict(suite.items()))

    def test_it_says_what_failed(self):
        _, root = run("undocumented_result")
        failed = {case.get("name"): case.find("failure").get("message")
                  for case in root.iter("testcase") if case.find("failure") is not None}
        self.assertEqual(failed, {
            "GET_LED_STATUS":
                "devapi_get_led_info: it answers 1, which the header does not know"})
        reasons = {case.get("name"): case.find("skipped").get("message")
                   for case in root.iter("testcase") if case.find("skipped") is not None}
        self.assertEqual(reasons["GET_WPS_ENABLE"], "not supported: devapi_get_wps_enable")
        self.assertEqual(reasons["SET_UPNP_STATE"], "changes a setting: --allow-writes")

    def test_any_text_of_the_library_is_valid_xml(self):
        _, root = run("hostile_text", "--allow-writes", "--command", "SET_UPNP_STATE")
        message = root.find("testsuite/testcase/failure").get("message")
        self.assertIn('reads "<&', message)
        self.assertIn("\\u001b", message)
        self.assertIn("\ufffd", message)


unittest.main(argv=sys.argv[:1])

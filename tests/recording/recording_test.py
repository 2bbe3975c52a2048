#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Records the commands of all scenarios, with hgagent and with other agents.

recording_test.py HGAGENT LIBHG_RECORD LOADING_HOST LINKED_HOST SLEEPLESS [TEST...]
"""

import base64
import json
import os
import pathlib
import random
import signal
import subprocess
import sys
import tempfile
import time
import unittest

import recording

AGENT, LIBRARY, LOADING_HOST, LINKED_HOST, SLEEPLESS = sys.argv[1:6]
COMMANDS = {path.stem: json.loads(path.read_text(encoding="utf-8"))
            for path in sorted((recording.ROOT / "protocol/complete").glob("*.json"))}
SCENARIOS = sorted((recording.ROOT / "simulated_gateway/scenarios").glob("*.json"))
REPORTS = ["home-page", "main-router", "main-base", "topology", "agent-topology", "stations"]
ENVIRONMENT = {**os.environ, "SIMULATED_GATEWAY_TIME": "1767225600",
               "ASAN_OPTIONS": "verify_asan_link_order=0:detect_leaks=0"}
KEEPS = {"", "NULL", "-1"}
KILLS = 12


def is_secret(key):
    return key.lower().endswith(("password", "passwd", "pwd", "passphrase", "psk"))


def secrets_in(value, name=""):
    """The secret texts in JSON."""
    if isinstance(value, dict):
        return {secret for key, inner in value.items() for secret in secrets_in(inner, key)}
    if isinstance(value, list):
        return {secret for inner in value for secret in secrets_in(inner, name)}
    return {value} - KEEPS if is_secret(name) and isinstance(value, str) else set()


def without_secrets(value, name=""):
    if isinstance(value, dict):
        return {key: without_secrets(inner, key) for key, inner in value.items()}
    if isinstance(value, list):
        return [without_secrets(inner, name) for inner in value]
    return len(value) if is_secret(name) and isinstance(value, str) else value


def example(keys, number):
    """A request with all keys; its secrets are like no other text."""
    request = {}
    for key in keys:
        kind = key.get("type", "text")
        if is_secret(key["key"]):
            request[key["key"]] = f"zaun-und-tor-{number}"[:key.get("max_bytes", 63)]
        elif kind == "array":
            request[key["key"]] = [example(key["items"], number)] if key.get("items") else []
        elif kind == "object":
            request[key["key"]] = example(key.get("items", []), number)
        elif kind == "number":
            request[key["key"]] = 1
        else:
            request[key["key"]] = str(key.get("example", "1"))
    return request


def requests():
    for number, (name, command) in enumerate(COMMANDS.items()):
        yield {"id": name, "command": name, "params": example(command["request"], number)}
        yield {"id": name, "command": name, "params": {}}
    for report in REPORTS:
        yield {"id": report, "report": report, "params": {}}
    yield {"id": "notice", "notice": {"plugin_name": "mesh", "text": '{"PWD":"zaun-und-tor-notice"}'}}
    yield {"id": "none", "command": "NO_SUCH_COMMAND", "params": {"Password": "zaun-und-tor-none", "n": 1e300}}


class Recording(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.file = self.folder / "recording.jsonl"

    def agent(self, *words, lines=(), status=0, **variables):
        result = subprocess.run([AGENT, *map(str, words)], input="".join(json.dumps(line) + "\n" for line in lines),
                                env={**ENVIRONMENT, **variables}, capture_output=True, text=True)
        self.assertEqual(result.returncode, status, result.stderr)
        return result

    def call(self, *words, **options):
        return self.agent("--record", self.file, "call", *words, **options)

    def lines(self):
        lines = recording.read(self.file)
        self.assertEqual(recording.problems(lines), [])
        return lines

    def assert_without(self, secrets):
        text = self.file.read_text(encoding="utf-8")
        for secret in secrets:
            for shown in (secret, secret.encode().hex(), base64.b64encode(secret.encode()).decode().strip("=")[:-1]):
                self.assertNotIn(shown, text)

    def test_has_all_that_happens_in_each_scenario_without_secrets(self):
        for scenario in SCENARIOS:
            with self.subTest(scenario.stem):
                self.file.unlink(missing_ok=True)
                asked = list(requests())
                result = self.agent("--scenario", scenario.stem, "--record", self.file, "serve", lines=asked,
                                    LD_PRELOAD=SLEEPLESS)
                answers = [line for line in map(json.loads, result.stdout.splitlines()) if "id" in line]
                self.assertEqual(len(answers), len(asked))
                lines = self.lines()
                kinds = [recording.kind_of(line) for line in lines]
                self.assertEqual(kinds.count("request"), len(asked))
                replies = [line for line in lines if recording.kind_of(line) == "reply"]
                self.assertEqual([line["result"] for line in replies], [answer["result"] for answer in answers])
                for answer, line in zip(answers, replies):
                    if "reply" in line:
                        self.assertEqual(without_secrets(line["reply"]), without_secrets(answer["reply"]))
                secrets = secrets_in(json.loads(scenario.read_text(encoding="utf-8"))) | secrets_in(asked) | \
                    secrets_in(answers) | {"zaun-und-tor"}
                self.assertGreater(len(secrets), 10)
                self.assert_without(secrets)

    def test_device_calls_have_their_arguments_before_and_after(self):
        self.call("GET_ATTACH_DEVICE_RIGHT", "MAC=F4:D4:88:5B:3F:72")
        self.call("GET_SN_INFO")
        calls = [line for line in self.lines() if "call" in line]
        self.assertEqual(calls[0]["arguments"], {"count": {"after": 12}})
        self.assertEqual(calls[1]["arguments"], {"info": {"before": {"HostIndex": 1}, "after": {
            "HostIndex": 1, "MAC": "A4:BB:6D:31:07:5E", "name": "workshop-pc", "InternetAccessRight": "ALLOW"}}})
        self.assertEqual(calls[-1]["arguments"], {"info": {"after": {
            "MAC": "3C:6A:D2:10:4F:20", "tslinkstatus": "1", "DeviceType": "HGU-AX3000"}}})
        self.assertEqual(calls[-1]["result"], 0)
        self.assertTrue(self.lines()[-1]["end"])

    def test_a_failed_call_has_its_result(self):
        self.agent("--fault", "devapi_get_sn_info=-7", "--record", self.file, "call", "GET_SN_INFO", status=1)
        call = next(line for line in self.lines() if "call" in line)
        self.assertEqual((call["result"], call["arguments"]), (-7, {"info": {}}))

    def test_bytes_that_are_not_utf_8_are_hexadecimal(self):
        request = {"WIFILIST": [{"SSIDIndex": "1", "SSID": "a", "PWD": "NULL", "ENCRYPT": "OPEN", "PowerLevel": "100",
                                 "Channel": "6", "Enable": "0", "Bandwidth": "20", "AdvertisementEnable": "1"}],
                   "StaCtrl": "1"}
        self.call("SET_WIFI_INFO_LIST", json.dumps(request), status=1, LD_PRELOAD=SLEEPLESS)
        reply = next(line for line in self.lines() if "reply_hex" in line)
        self.assertIn(b"\xc7\xeb\xcf\xc8", recording.text_of(reply, "reply"))

    def test_a_worker_of_the_plug_in_has_lines_of_its_own(self):
        request = {"WIFILIST": [], "StaCtrl": "1", "FastRoaming": "0"}
        self.call("SET_WIFI_INFO_LIST", json.dumps(request), LD_PRELOAD=SLEEPLESS)
        worker = [line for line in self.lines() if line.get("thread", 1) > 1]
        self.assertEqual([line.get("call", line.get("service")) for line in worker],
                         ["sleep", "devapi_set_wifi_stactrl", "sleep", "devapi_set_wifi_fastroaming"])
        self.assertEqual([line["arguments"] for line in worker],
                         [{"seconds": 1}, {"enable": "1"}, {"seconds": 5}, {"enable": "0"}])

    def test_the_clock_and_notices_are_those_that_the_plug_in_sees(self):
        self.agent("--record", self.file, "notice", "--plugin-name", "mesh", "hello")
        services = {line["service"]: line for line in self.lines() if "service" in line}
        self.assertEqual(services["localtime_r"]["arguments"]["time"], services["time"]["result"])
        self.assertEqual(services["localtime_r"]["arguments"]["local"]["after"]["tm_year"],
                         time.gmtime(services["time"]["result"]).tm_year - 1900)
        self.assertEqual(services["base64_encode"]["result"], "aGVsbG8=")
        self.assertEqual(services["kaa_device_notice"]["result"], 0)
        self.assertIn("aGVsbG8=", services["kaa_device_notice"]["arguments"]["text"])

    def test_secrets_are_shown_on_request(self):
        self.agent("--show-secrets", "--record", self.file, "call", "GET_WEB_LOGIN_INFO")
        self.assertEqual(self.lines()[-2]["reply"]["Password"], "kirschbluete-11")

    def test_a_mask_key_gives_the_same_pseudonyms_again(self):
        def pseudonym(password, *options):
            self.agent(*options, "--record", self.file, "call", "SET_HG_PPPOE_INFO", "Account=smith",
                       f"Password={password}", "Enable=0")
            head, request = [[line for line in self.lines() if kind in line][-1] for kind in ("recording", "command")]
            return head["key"], request["request"]["Password"]

        options = ["--mask-key", self.folder / "key"]
        key, whole = pseudonym("zaun-und-tor", *options)
        self.assertEqual(pseudonym("zaun-und-tor", *options), (key, whole))
        self.assertEqual(pseudonym("zaun-und", *options), (key, whole[:len("zaun-und")]))
        self.assertNotEqual(pseudonym("zaun-oder-tor", *options)[1][6:12], whole[6:])
        self.assertEqual(pseudonym("NULL", *options)[1], "NULL")
        self.assertEqual(len(whole), len("zaun-und-tor"))
        other = pseudonym("zaun-und-tor")
        self.assertNotEqual(other, (key, whole))
        self.assertEqual((self.folder / "key").stat().st_mode & 0o777, 0o600)
        (self.folder / "key").write_text("no key\n", encoding="utf-8")
        result = self.agent(*options, "--record", self.file, "call", "GET_SN_INFO", status=4)
        self.assertIn("not the key of a recording", result.stderr)

    def test_a_full_file_is_followed_by_another(self):
        limit = 65536
        lines = [{"id": at, "command": "GET_SN_INFO"} for at in range(1000)]
        self.agent("--record-limit", "64K", "--record", self.file, "serve", lines=lines)
        former = pathlib.Path(f"{self.file}.1")
        for file in (former, self.file):
            self.assertLessEqual(file.stat().st_size, limit)
            self.assertEqual(recording.problems(recording.read(file)), [])
        parts = [recording.read(file) for file in (former, self.file)]
        self.assertEqual(parts[0][0]["session"], parts[1][0]["session"])
        self.assertEqual(parts[1][0]["seq"], parts[0][-1]["seq"])
        self.assertIn("command", parts[1][1], "a file begins with a command")
        self.assertEqual(parts[1][-1]["seq"], 3 * len(lines) + 1)
        self.assertEqual(former.stat().st_mode & 0o777, 0o600)

    def test_a_line_that_no_reader_takes_ends_the_recording(self):
        request = self.folder / "request.json"
        request.write_text(json.dumps({"text": "x" * (4 << 20)}), encoding="ascii")
        result = self.agent("--record", self.file, "call", "GET_SN_INFO", "--request-file", request)
        self.assertIn('"Status":"0"', result.stdout)
        self.assertIn(f"{self.file}: a line would be longer than {4 << 20} bytes; the recording ends here", result.stderr)
        self.assertEqual(len(recording.read(self.file)), 1)

    def test_a_kill_leaves_a_file_that_ends_at_a_line(self):
        chosen = random.Random(1)
        lines = "".join(json.dumps({"id": 1, "command": name}) + "\n"
                        for name in ("GET_SN_INFO", "GET_LAN_IP_INFO", "GET_LED_STATUS", "GET_WIFI_LIST_INFO"))
        ends = 0
        for number in range(KILLS):
            with subprocess.Popen([AGENT, "--record", self.file, "serve"], env=ENVIRONMENT, stdin=subprocess.PIPE,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as process:
                self.addCleanup(process.kill)
                process.stdin.write(lines.encode() * 500)
                process.stdin.flush()
                time.sleep(chosen.random() / 10)
                process.send_signal(signal.SIGSEGV if number % 4 == 3 else signal.SIGKILL)
                process.wait()
            ends += len(recording.read(self.file)) > 1
        self.assertGreater(ends, KILLS / 2)
        lines = self.lines()
        self.assertGreater(len(lines), 2 * KILLS)

    def test_no_short_line_extends_over_a_page(self):
        self.agent("--record", self.file, "serve", lines=requests(), LD_PRELOAD=SLEEPLESS)
        at = 0
        short = 0
        for line in self.file.read_bytes().splitlines(keepends=True):
            if len(line) <= 4096:
                self.assertEqual(at // 4096, (at + len(line) - 1) // 4096, line)
                short += 1
            at += len(line)
        self.assertGreater(short, 500)

    def test_an_incomplete_last_line_is_removed(self):
        self.call("GET_SN_INFO")
        whole = self.file.read_bytes()
        with self.file.open("ab") as file:
            file.write(b'{"seq":4,"thr')
        self.call("GET_SN_INFO")
        self.assertTrue(self.file.read_bytes().startswith(whole))
        self.assertEqual(len(self.lines()), 10)

    def test_only_a_recording_is_appended_to(self):
        for text in (b"notes\nof mine", b"x", b'{"recording":2,"program":"hgagent"}\n'):
            self.file.write_bytes(text)
            self.assertIn("not a recording of this version", self.call("GET_SN_INFO", status=4).stderr)
            self.assertEqual(self.file.read_bytes(), text)
        for text in (b"", b'{"recor', bytes(9000)):
            self.file.write_bytes(text)
            self.call("GET_SN_INFO")
            self.assertEqual(len(self.lines()), 5)

    def test_only_one_process_records_into_a_file(self):
        with subprocess.Popen([AGENT, "--record", self.file, "serve"], env=ENVIRONMENT, text=True,
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE) as process:
            process.stdin.write('{"id":1,"hello":{}}\n')
            process.stdin.flush()
            process.stdout.readline()
            result = self.call("GET_SN_INFO", status=4)
            self.assertIn("another process records into this file", result.stderr)
            process.stdin.close()
        self.assertIn("not a regular file", self.agent("--record", "/dev/null", "call", "GET_SN_INFO", status=4).stderr)

    def test_a_full_disk_ends_the_recording_at_a_line(self):
        command = f'ulimit -f 16; exec "{AGENT}" --record "{self.file}" serve'
        lines = "".join(json.dumps({"id": at, "command": "GET_SN_INFO"}) + "\n" for at in range(300))
        result = subprocess.run(["bash", "-c", command], input=lines, env=ENVIRONMENT, capture_output=True, text=True)
        self.assertEqual(result.returncode, 0)
        self.assertEqual(len(result.stdout.splitlines()), 300)
        self.assertEqual(result.stderr.count("; the recording ends here"), 1)
        self.lines()

    def test_the_worker_of_a_service_records(self):
        socket = self.folder / "socket"
        with subprocess.Popen([AGENT, "--record", self.file, "run", "--socket", socket], env=ENVIRONMENT,
                              stderr=subprocess.PIPE, text=True) as service:
            self.addCleanup(service.kill)
            result = None
            while result is None or (result.returncode != 0 and service.poll() is None):
                result = subprocess.run([AGENT, "call", "--socket", socket, "GET_SN_INFO"], env=ENVIRONMENT,
                                        capture_output=True, text=True)
            service.terminate()
            service.wait()
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual([line["command"] for line in self.lines() if "command" in line], ["GET_SN_INFO"])

    def test_any_agent_is_recorded_by_the_library(self):
        for host in (LOADING_HOST, LINKED_HOST):
            with self.subTest(host):
                self.file.unlink(missing_ok=True)
                preloaded = {**ENVIRONMENT, "LD_PRELOAD": LIBRARY, "HGAGENT_RECORD": str(self.file)}
                words = [host, "SET_HG_PPPOE_INFO", '{"Account":"smith","Password":"zaun-und-tor","Enable":"1"}']
                plain = subprocess.run(words, env=ENVIRONMENT, capture_output=True, text=True, check=True)
                result = subprocess.run(words, env=preloaded, capture_output=True, text=True, check=True)
                self.assertEqual((result.stdout, result.stderr), (plain.stdout, plain.stderr))
                lines = self.lines()
                self.assertEqual([recording.kind_of(line) for line in lines[:2]], ["head", "request"])
                self.assertIn("devapi_set_hg_pppoe_info", [line.get("call") for line in lines])
                self.assertFalse(lines[0]["agent_services"])
                self.assertEqual(lines[-1]["result"], 0)
                self.assert_without({"zaun-und-tor"})

    def test_an_agent_with_its_functions_in_a_library_and_a_small_stack(self):
        """Then its log lines are recorded, too. The sanitizers themselves need more stack."""
        include = f"-I{recording.ROOT / 'smart_router_service/include'}"
        services, host = self.folder / "libservices.so", self.folder / "host"
        subprocess.run(["cc", "-shared", "-fPIC", "-Dmain=run_minimal_host", include,
                        recording.ROOT / "examples/minimal_host.c", "-o", services, "-lcjson"], check=True)
        subprocess.run(["cc", "-rdynamic", include, pathlib.Path(__file__).with_name("small_stack_host.c"), "-o", host,
                        services, "-lcjson", "-ldl", "-lpthread"], check=True)
        device, plugin = (pathlib.Path(LIBRARY).with_name(f"lib{name}.so")
                          for name in ("simulated_gateway", "smart_router_service"))
        stack = "1024" if b"__asan_init" in plugin.read_bytes() else "64"
        words = [host, stack, device, plugin, "SET_HG_PPPOE_INFO", '{"Account":"smith","Password":"zaun-und-tor","Enable":"1"}']
        result = subprocess.run(words, capture_output=True, text=True, check=True, env={
            **ENVIRONMENT, "LD_PRELOAD": LIBRARY, "HGAGENT_RECORD": str(self.file)})
        self.assertEqual((result.stdout, result.stderr), ('{"Status":"0"}\n', ""))
        lines = self.lines()
        self.assertNotIn("agent_services", lines[0])
        self.assertIn("ts_mod_log_printf", [line.get("service") for line in lines])
        self.assert_without({"zaun-und-tor"})

    def test_the_library_refuses_an_invalid_limit(self):
        for limit in ("64M", "-1", "65535", "1073741825", "99999999999999999999", " 65536"):
            variables = {**ENVIRONMENT, "LD_PRELOAD": LIBRARY, "HGAGENT_RECORD": str(self.file),
                         "HGAGENT_RECORD_LIMIT": limit}
            result = subprocess.run([LOADING_HOST, "GET_SN_INFO"], env=variables, capture_output=True, text=True,
                                    check=True)
            self.assertIn('"Status":"0"', result.stdout)
            self.assertEqual(result.stderr, "libhg_record.so: HGAGENT_RECORD_LIMIT: not a number of bytes from 65536 "
                                            "to 1073741824; nothing is recorded\n")
            self.assertFalse(self.file.exists())

    def test_the_library_without_a_file_changes_nothing(self):
        preloaded = {**ENVIRONMENT, "LD_PRELOAD": LIBRARY}
        for variables in (preloaded, {**preloaded, "HGAGENT_RECORD": "/dev/null"}):
            result = subprocess.run([LOADING_HOST, "GET_SN_INFO"], env=variables, capture_output=True, text=True,
                                    check=True)
            self.assertIn('"Status":"0"', result.stdout)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[6:]])

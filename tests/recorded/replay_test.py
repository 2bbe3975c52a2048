# SPDX-License-Identifier: MIT
"""Records commands and replays them, whole, cut and edited: replay_test.py HGAGENT SLEEPLESS [TEST...]"""
import copy
import json
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import time
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE.parent.parent / "tools"), str(HERE.parent / "recording")]
import recording  # noqa: E402
import recording_tour  # noqa: E402

HGAGENT = pathlib.Path(sys.argv[1]).resolve()
SLEEPLESS = pathlib.Path(sys.argv[2]).resolve()
SECRET = "zaun-und-tor"
MOST_LINE_BYTES = 4 << 20
LINES = [json.dumps({"command": command, "params": params}) for command, params in (
    ("GET_SN_INFO", {}),
    ("SET_HG_PPPOE_INFO", {"Account": "smith", "Password": SECRET, "Enable": "1"}),
    ("GET_HG_PPPOE_INFO", {}),
    ("GET_TSLINK_TOPOLOGY_INFO", {}),
    ("GET_PORT_STATISTICS", {}),
    ("NO_SUCH_COMMAND", {"a": [1, {"b": None}]}),
)]
BATCH = json.dumps({"command": "SET_WIFI_INFO_LIST", "params": {
    "WIFILIST": [{"SSIDIndex": "1", "SSID": "Oliventor", "PWD": SECRET, "ENCRYPT": "WPA2", "PowerLevel": "100",
                  "Channel": "6", "Enable": "1"}], "StaCtrl": "1", "FastRoaming": "1"}})


def hgagent(*arguments, **environment):
    return subprocess.run([HGAGENT, *arguments], env={**os.environ, **environment}, text=True,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)


def children_of(process):
    return pathlib.Path(f"/proc/{process}/task/{process}/children").read_text(encoding="ascii").split()


def threads_of_player(process):
    """Of the process that plays a session, a child of the given one."""
    try:
        player = children_of(process)
        return len(os.listdir(f"/proc/{player[0]}/task")) if player else 0
    except (FileNotFoundError, ProcessLookupError):
        return 0


class Recorded(unittest.TestCase):
    """Recordings in a folder that is removed at the end."""

    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.temporary.cleanup)
        cls.folder = pathlib.Path(cls.temporary.name)

    def recorded(self, lines, *options):
        path = self.folder / "made.jsonl"
        recording_tour.record(HGAGENT, path, lines, options, SLEEPLESS)
        return path.read_text(encoding="utf-8").splitlines()

    def written(self, lines, name="file.jsonl"):
        path = self.folder / name
        path.write_text("".join(f"{line}\n" for line in lines), encoding="utf-8")
        return path

    def replay(self, lines, *options):
        return hgagent("replay", *options, self.written(lines))

    def check_same(self, lines):
        result = self.replay(lines, "--all")
        self.assertIn(": no difference", result.stdout, result.stdout + result.stderr)
        self.assertEqual(result.returncode, 0)
        return result


class Replay(Recorded):
    def test_shows_no_difference_where_there_is_none(self):
        result = self.check_same(self.recorded(LINES))
        self.assertIn("6 commands", result.stdout)
        self.assertNotIn("has no end", result.stdout)

    def test_shows_no_difference_in_any_home(self):
        lines = list(recording_tour.requests())
        # Those of the other homes are in the tour of tools/replay_mutants.py.
        lines = random.Random(1).sample(lines, 120)
        for scenario in ("single_router", "crowded_mesh"):
            self.check_same(self.recorded(lines, "--scenario", scenario))

    def test_shows_no_difference_in_what_the_fuzzers_send(self):
        self.check_same(self.recorded(recording_tour.corpus()))

    def test_replays_a_worker_with_the_commands_meanwhile(self):
        lines = self.recorded([BATCH, *LINES])
        threads = {json.loads(line).get("thread") for line in lines}
        self.assertGreaterEqual(len(threads - {None}), 2)
        self.check_same(lines)

    def test_replays_a_thread_for_each_command(self):
        """Of an agent that starts a thread for each request: as many at once would be too many."""
        lines = [json.loads(line) for line in self.recorded(LINES[:1])]
        head, body, end = lines[0], lines[1:-1], lines[-1]
        many = [head]
        for thread in range(1, 101):
            many += [{**line, "seq": len(many) + at, "thread": thread} for at, line in enumerate(body)]
        many.append({**end, "seq": len(many)})
        with subprocess.Popen([HGAGENT, "replay", self.written(map(json.dumps, many))], text=True,
                              stdout=subprocess.PIPE) as replay:
            most = 0
            while replay.poll() is None:
                most = max(most, threads_of_player(replay.pid))
            self.assertIn("100 commands, 100 calls: no difference", replay.stdout.read())
        self.assertGreater(most, 10)
        self.assertLess(most, 50)

    def test_replays_several_sessions(self):
        self.check_same(self.recorded(LINES[:2]) + self.recorded(LINES[2:]))

    def test_feeds_pseudonyms(self):
        lines = self.recorded(LINES)
        self.assertNotIn(SECRET, "\n".join(lines))
        self.assertIn(SECRET, "\n".join(self.recorded(LINES, "--show-secrets")))

    def test_shows_the_first_difference_or_all(self):
        lines = self.recorded(LINES)
        place = next(at for at, line in enumerate(lines) if '"reply":{"Status":"0","MAC"' in line)
        edited = json.loads(lines[place])
        edited["reply"]["MAC"] = "02:00:00:00:00:01"
        edited["reply"]["DeviceType"] = "another"
        lines[place] = json.dumps(edited)
        first = self.replay(lines)
        self.assertEqual(first.returncode, 1)
        self.assertIn("difference in command 1, GET_SN_INFO", first.stdout)
        self.assertIn(f"file.jsonl:{place + 1}", first.stdout)
        self.assertRegex(first.stdout, r"  request   \{\}\n  call      reply\n  field     reply.MAC\n")
        self.assertIn('  expected  "02:00:00:00:00:01"\n  found     "3C:6A:D2:10:4F:20"\n', first.stdout)
        self.assertNotIn("another", first.stdout)
        self.assertIn("2 differences; --all shows every one", first.stdout)
        every = self.replay(lines, "--all")
        self.assertEqual(every.returncode, 1)
        self.assertIn('expected  "another"', every.stdout)

    def test_answers_an_unrecorded_call_with_a_failure(self):
        lines = [line for line in self.recorded(LINES) if '"devapi_get_sn_info"' not in line]
        result = self.replay(renumbered(lines), "--all")
        self.assertEqual(result.returncode, 1)
        self.assertIn("  call      devapi_get_sn_info\n  expected  nothing\n", result.stdout)
        self.assertIn('field     reply.Status\n  expected  "0"\n  found     "1"', result.stdout)
        self.assertNotIn("command 2", result.stdout) # resynchronised

    def test_reports_a_call_that_is_not_made(self):
        lines = self.recorded(LINES)
        place = next(at for at, line in enumerate(lines) if '"devapi_get_sn_info"' in line)
        additional = lines[place].replace("devapi_get_sn_info", "devapi_get_admin_info").replace(
            '"after"', '"unknown"')
        result = self.replay(renumbered(lines[:place] + [additional] + lines[place:]), "--all")
        self.assertEqual(result.returncode, 1)
        self.assertIn("  call      devapi_get_admin_info\n  expected  {}\n  found     nothing\n", result.stdout)
        self.assertIn(": 1 difference", result.stdout)

    def test_reports_threads_that_wait_for_each_other(self):
        lines = self.recorded([BATCH])
        worker = [line for line in lines if json.loads(line).get("thread", 1) != 1]
        lines = lines[:2] + worker[-1:] + lines[2:]  # before its command
        result = self.replay(renumbered(lines), "--all")
        self.assertEqual(result.returncode, 1)
        self.assertIn("  thread    2\n", result.stdout)

    def test_reports_a_command_that_does_not_return(self):
        """The second batch waits for the worker of the first, which waits for a turn that never comes."""
        lines = self.recorded([BATCH, BATCH, BATCH])
        lines = [line for line in lines if json.loads(line).get("thread", 1) == 1 and line.strip() != "{}"]
        result = self.replay(renumbered(lines), "--all")
        self.assertEqual(result.returncode, 1)
        self.assertRegex(result.stdout, r'difference in command 2, SET_WIFI_INFO_LIST \(\S+file\.jsonl:\d+\)\n'
                                        r'  request   .*\n  call      reply\n  expected  nothing\n'
                                        r'  found     "the command does not return"\n')
        self.assertNotIn("has no end", result.stdout)

    def test_ends_a_plug_in_that_never_stops_calling(self):
        """It asks for each of the devices that the gateway has counted."""
        lines = self.recorded([json.dumps({"report": "topology", "params": {}}), *LINES])
        place = next(at for at, line in enumerate(lines) if '"devapi_get_dev_tol_num"' in line)
        edited = json.loads(lines[place])
        edited["arguments"]["count"]["after"] = 2**31 - 1
        result = self.replay([*lines[:place], json.dumps(edited), *lines[place + 1:]])
        self.assertEqual(result.returncode, 1)
        self.assertRegex(result.stderr, r"more than 100000 calls that were not recorded, in command \d+, [\w]+\n$")

    def test_reports_a_plug_in_that_ends_the_process(self):
        lines = self.recorded(LINES[:2])
        source = self.folder / "fatal.c"
        source.write_text("#include <signal.h>\nint hg_process_json_cmd(void) { return raise(SIGKILL); }\n")
        library = self.folder / "fatal.so"
        subprocess.run(["cc", "-shared", "-fPIC", source, "-o", library], check=True)
        result = self.replay(lines, "--plugin", library)
        self.assertEqual(result.returncode, 1)
        self.assertIn("signal 9 ended the plug-in in command 1, GET_SN_INFO", result.stderr)
        self.assertEqual(self.replay(lines, "--plugin", "/dev/null").returncode, 4)
        self.assertEqual(hgagent("--plugin", "/dev/null", "replay", self.written(lines)).returncode, 4)

    def test_ends_with_its_parent(self):
        source = self.folder / "endless.c"
        source.write_text("int hg_process_json_cmd(void) { for (;;) { __asm__(\"\"); } }\n")
        library = self.folder / "endless.so"
        subprocess.run(["cc", "-shared", "-fPIC", source, "-o", library], check=True)
        with subprocess.Popen([HGAGENT, "replay", self.written(self.recorded(LINES[:1])), "--plugin", library]) as replay:
            while not (children := children_of(replay.pid)):
                self.assertIsNone(replay.poll())
            replay.kill()
        while pathlib.Path(f"/proc/{children[0]}/exe").exists():
            time.sleep(0.01)

    def test_is_in_colour_only_on_a_terminal(self):
        lines = self.recorded(LINES[:1])
        lines[-2] = lines[-2].replace("3C:6A", "3C:6B")
        self.assertNotIn("\x1b", self.replay(lines).stdout)
        shown = subprocess.run(["script", "-qec", f"{HGAGENT} replay {self.written(lines)}", "/dev/null"],
                               env={**os.environ, "NO_COLOR": ""}, text=True, stdin=subprocess.DEVNULL,
                               stdout=subprocess.PIPE, check=False).stdout
        self.assertIn("\x1b[31m", shown)


class Continued(Recorded):
    def test_leaves_out_what_belongs_to_an_earlier_file(self):
        head, *lines = renumbered(self.recorded(LINES[:3]))
        head = json.dumps({**json.loads(head), "seq": 1})
        sleep = {"seq": 0, "began": 1, "thread": 7, "time": 0, "took": 9, "service": "sleep",
                 "arguments": {"seconds": 1}, "result": 0}
        lines[5:5] = [json.dumps(sleep), json.dumps({**sleep, "began": 7})]
        lines = [json.dumps({**json.loads(line), "seq": seq}) for seq, line in enumerate(lines, 1)]
        result = self.check_same([head, *lines[1:]])
        self.assertIn("2 commands", result.stdout)

    def test_joins_the_files_of_a_session(self):
        lines = self.recorded(LINES)
        head = json.loads(lines[0])
        places = [place for place, line in enumerate(lines) if '"seq":' in line]
        for last in places[1:-1:7]:
            head["seq"] = json.loads(lines[last])["seq"]
            joined = [*lines[:last + 1], json.dumps(head, separators=(",", ":")), *lines[last + 1:]]
            self.assertIn("6 commands", self.check_same(joined).stdout)
        del joined[places[3]]
        self.assertIn("is missing", self.replay(joined).stderr)

    def parted(self, lines, last):
        """The lines as the two files that a full one leaves; the path of the second."""
        head = {**json.loads(lines[0]), "seq": json.loads(lines[last])["seq"]}
        self.written(lines[:last + 1], "parted.jsonl.1")
        return self.written([json.dumps(head, separators=(",", ":")), *lines[last + 1:]], "parted.jsonl")

    def test_reads_the_earlier_file_of_a_session_first(self):
        earlier = self.recorded(LINES[:1])
        lines = [line for line in self.recorded(LINES) if '"seq":' in line]
        whole = self.written(lines, "whole.jsonl")
        for last in range(1, len(lines) - 1, len(lines) // 3):
            path = self.parted(lines, last)
            result = hgagent("replay", "--all", path)
            self.assertIn("parted.jsonl: 6 commands", result.stdout, result.stderr)
            self.assertEqual((result.returncode, result.stderr), (0, ""))
            self.assertEqual(hgagent("diff", path, whole).returncode, 0)
            self.assertEqual(hgagent("make-test", path, "--command", "1").stdout,
                             hgagent("make-test", whole, "--command", "1").stdout)
            self.assertEqual(hgagent("--device-recording", path, "call", "GET_SN_INFO").returncode, 0)
            self.written([*earlier, *lines[:last + 1]], "parted.jsonl.1")
            self.assertIn("parted.jsonl: 7 commands", hgagent("replay", path).stdout)
        lines[3] = lines[3].replace('"result":0', '"result":1')
        self.assertRegex(hgagent("replay", self.parted(lines, last)).stdout, r"parted\.jsonl\.1:[34]\)")

    def test_leaves_out_a_file_that_only_has_the_name_of_an_earlier_one(self):
        lines = [line for line in self.recorded(LINES) if '"seq":' in line]
        last = next(at for at, line in enumerate(lines) if '"command":"GET_HG_PPPOE_INFO"' in line) - 1
        path = self.parted(lines, last)
        earlier = pathlib.Path(f"{path}.1")
        other = "".join(f"{line}\n" for line in self.recorded(LINES[:1]))
        for content in (other, "", "hello\n", other.replace('"recording":1', '"recording":2'), "x" * 5000000):
            earlier.write_text(content, encoding="utf-8")
            result = hgagent("replay", path)
            self.assertIn("parted.jsonl: 4 commands", result.stdout, result.stderr)
        earlier.unlink()
        for make in (os.mkfifo, os.mkdir):
            make(earlier)
            self.assertIn("parted.jsonl: 4 commands", hgagent("replay", path).stdout)
            os.rmdir(earlier) if earlier.is_dir() else earlier.unlink()


class Committed(Recorded):
    """The recordings next to this file. CTest replays each one."""

    def test_are_valid(self):
        files = sorted(HERE.glob("*.jsonl"))
        self.assertGreaterEqual(len(files), 10)
        for file in files:
            self.assertEqual(recording.problems(recording.read(file)), [], file.name)


class Cut(Recorded):
    def test_replays_what_is_whole(self):
        lines = self.recorded(LINES[:2])
        text = "".join(f"{line}\n" for line in lines).encode()
        head = len(lines[0]) + 1
        path = self.folder / "cut.jsonl"
        for size in [*range(0, len(text), 211), head - 1, head, head + 1, len(text) - 1]:
            path.write_bytes(text[:size])
            result = hgagent("replay", path)
            whole = size >= head
            self.assertEqual(result.returncode, 0 if whole else 2, f"{size}: {result.stdout}{result.stderr}")
            self.assertIn("no difference" if whole else "is not a recording", result.stdout + result.stderr)


class Refused(Recorded):
    def check_refused(self, lines, sentence):
        result = self.replay(lines)
        self.assertEqual(result.returncode, 2, result.stdout + result.stderr)
        self.assertIn(sentence, result.stderr)

    def test_other_versions(self):
        lines = self.recorded(LINES[:1])
        self.check_refused([lines[0].replace('{"recording":1', '{"recording":2')] + lines[1:],
                           "the recording has version 2 of the format, and this program reads version 1")
        self.check_refused([lines[0].replace('"interface":"', '"interface":"9')] + lines[1:],
                           "of device_access.h, and this program has version")

    def test_other_files(self):
        self.check_refused([], "is not a recording")
        self.check_refused(["hello"], "is not a recording")
        self.check_refused([json.dumps({"command": "GET_SN_INFO"})], "is not a recording")
        result = hgagent("replay", self.folder / "none.jsonl")
        self.assertEqual(result.returncode, 2)
        self.assertIn("none.jsonl: No such file or directory", result.stderr)
        self.assertIn(f"{self.folder}: Is a directory", hgagent("replay", self.folder).stderr)
        result = subprocess.run([HGAGENT, "replay", "/dev/stdin"], input="", capture_output=True, text=True, check=False)
        self.assertEqual((result.returncode, result.stderr), (2, "hgagent: /dev/stdin: not a regular file\n"))
        pipe = self.folder / "pipe"
        os.mkfifo(pipe)
        self.assertEqual(hgagent("replay", pipe).stderr, f"hgagent: {pipe}: not a regular file\n")

    def test_lines_that_are_none_or_are_missing(self):
        lines = self.recorded(LINES[:1])
        self.check_refused([*lines[:2], "[1]", *lines[2:]], "file.jsonl:3: not a line of a recording")
        self.check_refused([*lines[:2], '{"seq":2,"thread":1}', *lines[3:]], "file.jsonl:3: not a line")
        self.check_refused(lines[:2] + lines[3:], "file.jsonl:3: line 2 of the session is missing")

    def test_lines_that_are_too_long(self):
        lines = self.recorded(LINES[:1])
        for content in ("[" + "0," * MOST_LINE_BYTES, "[" + " " * MOST_LINE_BYTES, "{}" + " " * (MOST_LINE_BYTES - 1)):
            for place in (1, len(lines)):
                self.check_refused([*lines[:place], content, *lines[place:]],
                                   f"file.jsonl:{place + 1}: longer than a line of a recording may be, {MOST_LINE_BYTES} bytes")
        path = self.written([*lines, "[" * MOST_LINE_BYTES * 2], "long.jsonl")
        for words in (("diff", path, path), ("make-test", path), ("--device-recording", path, "call", "GET_SN_INFO")):
            self.assertIn(f"long.jsonl:{len(lines) + 1}: longer than", hgagent(*words).stderr)
        self.check_same([*lines[:2], "{}" + " " * (MOST_LINE_BYTES - 2), *lines[2:]])


class Edited(Recorded):
    """What a person or a fault in a file may have made of a recording."""

    def test_shows_a_difference_for_each_edited_field(self):
        lines = self.recorded(LINES[:2])
        for at, line in enumerate(lines[1:], 1):
            for path, value in leaves(json.loads(line)):
                if path[0] not in ("command", "request", "reply", "result", "call", "arguments"):
                    continue
                edited = json.loads(line)
                put(edited, path, f"{value}7" if isinstance(value, str) else value + 1)
                result = self.replay([*lines[:at], json.dumps(edited), *lines[at + 1:]])
                self.assertIn(result.returncode, (1, 2), f"{path} of line {at + 1}: {result.stdout}")

    def test_writes_beyond_no_field(self):
        lines = self.recorded(LINES + [json.dumps({"command": "GET_SCAN_CHANNEL_POWER", "params": {}})])
        hostile = ["x" * 70000, -1, 2**31 - 1, 2**31, 1e300, None, True, [], {}, {"hex": "ff" * 3000},
                   {"hex": "f"}, [{}] * 300, [None] * 300, {"after": {"count": 70000, "entries": [{}]}}]
        random.seed(1)
        places = [(at, path) for at, line in enumerate(lines[1:], 1) if '"call"' in line
                  for path, _ in branches(json.loads(line)) if path and path[0] == "arguments"]
        for at, path in random.sample(places, min(len(places), 40)):
            edited = json.loads(lines[at])
            put(edited, path, copy.deepcopy(random.choice(hostile)))
            result = self.replay([*lines[:at], json.dumps(edited), *lines[at + 1:]])
            self.assertIn(result.returncode, (0, 1, 2), f"{path} of line {at + 1}: {result.stderr}")
            self.assertNotIn("signal", result.stderr)
            self.assertNotIn("Sanitizer", result.stderr)


class Tools(Recorded):
    def test_diff_leaves_times_out(self):
        lines = [*LINES[:3], *LINES[4:]]  # the topology has times in its reply
        one = self.written(self.recorded(lines, "--show-secrets"), "one.jsonl")
        other = self.written(self.recorded(lines, "--show-secrets"), "other.jsonl")
        self.assertNotEqual(one.read_text(), other.read_text())
        result = hgagent("diff", one, other)
        self.assertEqual((result.returncode, result.stdout), (0, "5 commands: no difference\n"), result.stderr)

    def test_diff_leaves_the_clock_out(self):
        lines = self.recorded([LINES[3]])
        one = self.written(lines, "one.jsonl")
        clock = '"service":"time","result":'
        self.assertIn(clock, one.read_text())
        other = self.written([line.replace(clock, clock + "1") for line in lines], "other.jsonl")
        self.assertEqual(hgagent("diff", one, other).stdout, "1 command: no difference\n")

    def test_diff_compares_commands_and_calls(self):
        lines = self.recorded(LINES, "--show-secrets")
        one = self.written(lines, "one.jsonl")
        edited = [line.replace('"DeviceType":"HGU-AX3000"', '"DeviceType":"HGU-AX6000"') for line in lines]
        begin = next(at for at, line in enumerate(edited) if '"GET_HG_PPPOE_INFO"' in line)
        end = next(at for at in range(begin, len(edited)) if '"reply"' in edited[at])
        other = self.written(renumbered(edited[:begin] + edited[end + 1:]), "other.jsonl")
        result = hgagent("diff", one, other)
        self.assertEqual(result.returncode, 1)
        self.assertIn("  call     devapi_get_sn_info\n  field    arguments.info.after.DeviceType\n"
                      '  A        "HGU-AX3000"\n  B        "HGU-AX6000"\n', result.stdout)
        self.assertIn("GET_HG_PPPOE_INFO", result.stdout)
        self.assertTrue(result.stdout.endswith("6 commands: 5 differences\n"), result.stdout)
        with open("/dev/full", "w", encoding="ascii") as full:
            result = subprocess.run([HGAGENT, "diff", one, other], stdout=full, stderr=subprocess.PIPE, text=True, check=False)
        self.assertEqual((result.returncode, result.stderr), (5, "hgagent: cannot write to standard output\n"))

    def test_diff_of_what_has_nothing_in_common(self):
        """One has commands only, and in the other the same lines are those of a thread of the plug-in."""
        lines = [line for line in self.recorded(LINES[:3]) if '"seq":' in line]
        calls = [line for line in lines if '"call":' in line or '"recording":' in line]
        requests = [line for line in lines if '"call":' not in line]
        named = [line.replace("GET_SN_INFO", "a thread of the plug-in") for line in requests]
        other = self.written(renumbered(calls), "other.jsonl")
        for one in (requests, named):
            for pair in ((self.written(renumbered(one)), other), (other, self.written(renumbered(one)))):
                result = hgagent("diff", *pair)
                self.assertEqual((result.returncode, result.stderr), (1, ""))
                self.assertIn("4 commands: 4 differences", result.stdout)

    def test_diff_names_other_keys(self):
        one = self.written(self.recorded(LINES), "one.jsonl")
        other = self.written(self.recorded(LINES), "other.jsonl")
        self.assertIn("different keys", hgagent("diff", one, other).stderr)

    def test_make_test_prints_one_command(self):
        path = self.written(self.recorded([LINES[0], BATCH, *LINES[1:]]), "all.jsonl")
        for number, command in ((1, "GET_SN_INFO"), (2, "SET_WIFI_INFO_LIST"), (5, "GET_TSLINK_TOPOLOGY_INFO")):
            made = hgagent("make-test", path, "--command", str(number))
            self.assertEqual(made.returncode, 0, made.stderr)
            lines = made.stdout.splitlines()
            self.assertEqual([json.loads(line)["command"] for line in lines if '"command"' in line], [command])
            self.assertEqual([json.loads(line)["seq"] for line in lines], list(range(len(lines))))
            self.assertTrue(all(json.loads(line).get("time", 0) == 0 for line in lines))
            self.assertEqual(recording.problems([json.loads(line) for line in lines]), [])
            self.check_same(lines)
        self.assertIn('"thread":2', hgagent("make-test", path, "--command", "2").stdout)
        self.check_same(hgagent("make-test", path).stdout.splitlines())
        beyond = hgagent("make-test", path, "--command", "99")
        self.assertEqual((beyond.returncode, beyond.stdout), (2, ""))
        self.assertIn("has no command 99", beyond.stderr)
        none = hgagent("make-test", self.written(renumbered(path.read_text().splitlines()[:1]), "none.jsonl"))
        self.assertEqual((none.returncode, none.stderr), (2, f"hgagent: {self.folder}/none.jsonl has no commands\n"))

    def test_a_recording_is_a_device_library(self):
        path = self.written(self.recorded(LINES), "home.jsonl")
        device = ("--device-recording", path)
        self.assertEqual(hgagent(*device, "call", "GET_SN_INFO").stdout,
                         hgagent("call", "GET_SN_INFO", SIMULATED_GATEWAY_TIME="1767225600").stdout)
        self.assertEqual(hgagent(*device, "topology").returncode, 0)
        setting = hgagent(*device, "call", "SET_LED_STATUS", "LedSwitch=0", "LedCoLor=red", "LedLight=1")
        self.assertEqual(setting.returncode, 1)
        self.assertIn("a recording answers queries only: devapi_set", setting.stderr)
        self.assertIn("changes the device", setting.stderr)
        unknown = hgagent(*device, "call", "GET_QOS_INFO")
        self.assertEqual(unknown.returncode, 1)
        self.assertIn("the recording has no answer to devapi_get", unknown.stderr)
        for wrong in (("--device", "x"), ("--scenario", "single_router")):
            self.assertEqual(hgagent(*device, *wrong, "call", "GET_SN_INFO").returncode, 2)
        self.assertEqual(hgagent(*device, "conformance").returncode, 2)
        self.assertEqual(hgagent("--device-recording", "/dev/null", "call", "GET_SN_INFO").returncode, 4)


def renumbered(lines):
    result = [json.loads(line) for line in lines]
    for number, line in enumerate(result):
        line["seq"] = number
        line.pop("began", None)
    return [json.dumps(line) for line in result]


def leaves(value, path=()):
    return [(at, part) for at, part in branches(value, path) if isinstance(part, (str, int)) and at]


def branches(value, path=()):
    """Each part of a JSON value with its path."""
    yield path, value
    parts = value.items() if isinstance(value, dict) else enumerate(value) if isinstance(value, list) else ()
    for key, part in parts:
        yield from branches(part, (*path, key))


def put(value, path, new):
    for key in path[:-1]:
        value = value[key]
    value[path[-1]] = new


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])

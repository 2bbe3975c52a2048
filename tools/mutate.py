#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Changes the plug-in in thousands of small ways, one at a time, and checks whether its tests notice.

A mutant is killed when a test fails or crashes, uses far more time than all tests do, or never ends. What survives is run
once more under the address and undefined-behaviour sanitizers. A mutant is not counted when it does not compile or when
its code is the same, with or without optimisation.

Every survivor has to be in tests/mutation/survivors.json, with the reason why no test can or need notice it; a mutant in
that file has to survive. The sources are not changed: everything happens in build/mutation.
"""
import argparse
import hashlib
import json
import os
import pathlib
import queue
import random
import re
import shlex
import shutil
import subprocess
import sys
import threading
from collections import Counter, defaultdict
from concurrent.futures import ThreadPoolExecutor

import mutations

ROOT = pathlib.Path(__file__).resolve().parent.parent
PLUGIN = ROOT / "smart_router_service"
BUILD = ROOT / "build/mutation"
SURVIVORS = ROOT / "tests/mutation/survivors.json"
# What a verdict depends on.
SOURCES = (PLUGIN, *(ROOT / name for name in (
    "tests/unit", "tests/faults", "tests/support", "protocol", "agent/protocol/described_reply.cpp",
    "agent/protocol/described_reply.h", "tools/mutate.py", "tools/mutations.py")))
PROGRAMS = ("unit", "unit_mesh", "unit_threads", "faults")
# They notice nothing of the plug-in's that others do not, and take longest.
LEFT_OUT = "*NaughtyStrings*"
WORKERS = 2
DEMANDED_PERCENT = 97

# Thousands of times the programs are linked.
LINKER = "-fuse-ld=lld" if shutil.which("ld.lld") else "-fuse-ld=gold"
# They make no other use of memory, so that the sanitizers have nothing to say about them.
SAFE_KINDS = ("row", "text")
# What uninitialised memory holds must not depend on the machine.
PLAIN_FLAGS = ["-O0", "-ftrivial-auto-var-init=pattern"]
PRESET = {
    "plain": ["-DSMART_ROUTER_SANITIZERS=", "-DCMAKE_C_FLAGS_DEBUG=-O0", "-DCMAKE_CXX_FLAGS_DEBUG=-O0"],
    "sanitized": [],
}
# Seconds of processor time for one run of a program, and bytes; the sanitizers need more of both.
SECONDS = {"plain": 10, "sanitized": 60}
SECONDS_OF_FAULTS = {"plain": 60, "sanitized": 240}
LIMITS = {"plain": f"ulimit -v {4 << 20}", "sanitized": "true"}
# The one unit that reads the table. Of the others only prototypes change, which make no code.
TABLE, READER = "commands.h", "processjsonability.cpp"
# So often in a row all threads are found asleep, and no time used, before they count as stuck.
LOOKS, SECONDS_BETWEEN = 12, 0.25


class Variant:
    """The programs with their tests as one preset builds them, but for the plug-in."""

    def __init__(self, name):
        self.name = name
        self.folder = BUILD / name
        subprocess.run(["cmake", "--preset", "debug", "-B", self.folder, "-DSMART_ROUTER_HOST=OFF",
                        *PRESET[name]], cwd=ROOT, check=True, stdout=subprocess.DEVNULL)
        subprocess.run(["ninja", "-C", self.folder, "--quiet", f"-j{WORKERS}", *PROGRAMS], check=True)
        self.links = {program: self.link_command(program) for program in PROGRAMS}
        self.flags = self.plugin_flags()

    def link_command(self, program):
        commands = subprocess.run(["ninja", "-C", self.folder, "-t", "commands", program],
                                  check=True, stdout=subprocess.PIPE, text=True).stdout
        last = commands.splitlines()[-1]
        link = shlex.split(next(part for part in last.split(" && ") if f"-o bin/{program} " in part))
        at = link.index("-o")
        del link[at:at + 2]
        first = next(at for at, word in enumerate(link) if word.endswith(".o"))
        return link[:first], [word for word in link[first:] if "smart_router_service_static" not in word]

    def plugin_flags(self):
        """How the plug-in is compiled, but for where its sources are."""
        entries = json.loads((self.folder / "compile_commands.json").read_text())
        command = next(entry["command"] for entry in entries
                       if "smart_router_service_static" in entry["command"])
        words = shlex.split(command)
        words = words[:words.index("-o")]
        compiler = next(at for at, word in enumerate(words) if word.endswith("++"))
        return [word for word in words[compiler:]
                if not word.startswith(("-I", "-W", "-g", "-fmacro-prefix-map"))] + [
                    "-w", "-Werror=return-type", "-I", "smart_router_service",
                    "-I", "smart_router_service/include"]

    def link(self, program, objects, output):
        """The plug-in comes first: of an inline function the linker takes the first copy."""
        before, after = self.links[program]
        subprocess.run([*before, LINKER, "-o", output, *objects, *after], cwd=self.folder, check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def run(self, binary, tests=("*",)):
        """Why the program is not green, as the name of the test where there is one; else None."""
        seconds = SECONDS_OF_FAULTS if binary.suffix == ".faults" else SECONDS
        command = [binary, "--gtest_fail_fast", f"--gtest_filter={':'.join(sorted(tests))}-{LEFT_OUT}"]
        process = subprocess.Popen(
            ["sh", "-c", f'ulimit -t {seconds[self.name]}; {LIMITS[self.name]}; exec "$@"', "sh", *command], cwd=BUILD,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
            env=dict(os.environ, ASAN_OPTIONS="hard_rss_limit_mb=2000"))
        ended = threading.Event()
        watch = threading.Thread(target=kill_when_stuck, args=(process, ended))
        watch.start()
        output = process.stdout.read().decode(errors="replace")
        process.wait()
        ended.set()
        watch.join()
        begun = re.findall(r"^\[ RUN      \] (\S+)", output, re.M)
        failed = re.findall(r"^\[  FAILED  \] ([^\s,]+\.[^\s,]+)", output, re.M)
        if process.returncode == 0:
            return None
        return (failed or begun[-1:] or ["before the first test"])[0]


def kin_of(test):
    """A filter for the tests of the same suite, or of the same command where they are made for all."""
    suite, _, name = test.partition(".")
    return "*/" + name.partition("/")[2] if "/" in name else suite + ".*"


def kill_when_stuck(process, ended):
    """Kills a process whose threads all sleep, without any of them using time."""
    before, looks = None, 0
    while not ended.wait(SECONDS_BETWEEN):
        try:
            tasks = [path.read_text().rpartition(")")[2].split()
                     for path in pathlib.Path(f"/proc/{process.pid}/task").glob("*/stat")]
        except OSError:
            continue
        now = [(task[0], task[11], task[12]) for task in tasks]
        asleep = now and all(task[0] == "S" for task in now)
        looks = looks + 1 if asleep and now == before else 0
        before = now
        if looks == LOOKS:
            process.kill()


class Objects:
    """The plug-in's objects in one folder, which holds a copy of its sources as well."""

    def __init__(self, folder):
        self.folder = folder
        shutil.rmtree(folder / "smart_router_service", ignore_errors=True)
        shutil.copytree(PLUGIN, folder / "smart_router_service")

    def path(self, kind, unit):
        return self.folder / f"{kind}.{unit}.o"

    def compile(self, kind, unit, flags):
        result = subprocess.run(
            [*flags, "-MMD", "-c", f"smart_router_service/{unit}", "-o", self.path(kind, unit)],
            cwd=self.folder, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return result.returncode == 0


def digest_of_sources():
    digest = hashlib.sha256()
    for source in SOURCES:
        for path in sorted(source.rglob("*")) if source.is_dir() else [source]:
            if path.is_file() and "__pycache__" not in path.parts:
                digest.update(f"{path.relative_to(ROOT)}\0".encode() + path.read_bytes() + b"\0")
    return digest.hexdigest()


class Journal:
    """The verdicts so far, one a line after the digest of what they depend on."""

    def __init__(self):
        path = BUILD / "verdicts"
        BUILD.mkdir(parents=True, exist_ok=True)
        digest = digest_of_sources()
        # The last line may be incomplete.
        lines = path.read_text().split("\n")[:-1] if path.exists() else []
        is_current = lines[:1] == [digest]
        self.verdicts = {name: (verdict, killer) for name, verdict, killer in map(json.loads, lines[1:])
                         } if is_current else {}
        self.file = path.open("w")
        print(digest, file=self.file)
        for name, verdict in self.verdicts.items():
            self.add(name, verdict)

    def add(self, name, verdict):
        print(json.dumps([name, *verdict]), file=self.file, flush=True)


class Laboratory:
    def __init__(self, is_resumed, skipped):
        self.skipped = skipped
        self.journal = Journal()
        self.known = dict(self.journal.verdicts) if is_resumed else {}
        self.variants = {name: Variant(name) for name in PRESET}
        self.flags = {
            "plain": self.variants["plain"].flags + PLAIN_FLAGS,
            "optimised": self.variants["plain"].flags + ["-O2"],
            "sanitized": self.variants["sanitized"].flags,
        }
        self.units = sorted(path.name for path in PLUGIN.glob("*.cpp"))
        self.original = Objects(BUILD / "original")
        changed = max(path.stat().st_mtime for path in [pathlib.Path(__file__), *PLUGIN.rglob("*.*")])
        for kind, flags in self.flags.items():
            for unit in self.units:
                path = self.original.path(kind, unit)
                if path.exists() and path.stat().st_mtime > changed:
                    continue
                if not self.original.compile(kind, unit, flags):
                    sys.exit(f"{unit} does not compile")
        self.workers = queue.Queue()
        for number in range(WORKERS):
            self.workers.put(Objects(BUILD / f"worker{number}"))
        self.killers = defaultdict(lambda: defaultdict(Counter))  # by file and program: tests
        self.check_original()

    def check_original(self):
        worker = self.workers.get()
        for name in self.variants:
            red = self.any_red(name, worker, [])
            if red:
                sys.exit(f"red without any change, {name}: {' '.join(red)}")
        self.workers.put(worker)

    def users_of(self, file):
        """The units that a change of the file reaches."""
        if file.endswith(".cpp"):
            return [file]
        if file == TABLE:
            return [READER]
        name = f"smart_router_service/{file}"
        return [unit for unit in self.units
                if name in self.original.path("plain", unit).with_suffix(".d").read_text().split()]

    def run(self, name, program, worker, changed, tests=("*",)):
        binary = worker.folder / f"{name}.{program}"
        objects = [(worker if unit in changed else self.original).path(name, unit)
                   for unit in self.units]
        self.variants[name].link(program, objects, binary)
        return self.variants[name].run(binary, tests)

    def same(self, kind, worker, units):
        return all(worker.path(kind, unit).read_bytes() == self.original.path(kind, unit).read_bytes()
                   for unit in units)

    def first_red(self, worker, file, units):
        """What notices the change, of those tests that have noticed most in this file."""
        known = self.killers[file]
        for program in sorted(known, key=lambda name: -known[name].total()):
            tests = [test for test, _ in known[program].most_common(8)]
            red = self.run("plain", program, worker, units, tests)
            if red:
                return program, red
        return None

    def any_red(self, name, worker, units):
        for program in PROGRAMS:
            red = self.run(name, program, worker, units)
            if red:
                return program, red
        return None

    def verdict(self, mutation, text):
        """What became of the mutant, and the program and the test that killed it."""
        if describe(mutation, text) in self.skipped:
            return "survived", None
        verdict, killer = self.known.get(mutation.name) or self.tried(mutation, text)
        if mutation.name not in self.known:
            self.journal.add(mutation.name, (verdict, killer))
        if killer:
            program, test = killer
            self.killers[mutation.file][program][kin_of(test)] += 1
        return verdict, killer

    def tried(self, mutation, text):
        worker = self.workers.get()
        path = worker.folder / "smart_router_service" / mutation.file
        units = self.users_of(mutation.file)
        try:
            path.write_text(mutation.applied_to(text))
            if not all(worker.compile("plain", unit, self.flags["plain"]) for unit in units):
                return "does not compile", None
            if self.same("plain", worker, units):
                return "same", None
            killer = self.first_red(worker, mutation.file, units)
            if not killer:
                for unit in units:
                    worker.compile("optimised", unit, self.flags["optimised"])
                if self.same("optimised", worker, units):
                    return "same", None
                killer = self.any_red("plain", worker, units)
            if not killer and mutation.kind not in SAFE_KINDS:
                for unit in units:
                    worker.compile("sanitized", unit, self.flags["sanitized"])
                killer = self.any_red("sanitized", worker, units)
            return ("killed" if killer else "survived"), killer
        except subprocess.CalledProcessError:
            return "does not link", None
        finally:
            path.write_text(text)
            self.workers.put(worker)


def one_line(text):
    return " ".join(text.split())


def describe(mutation, text):
    """The mutant by what it changes, whatever line that has moved to."""
    line = text[text.rfind("\n", 0, mutation.start) + 1:].partition("\n")[0]
    change = f"{one_line(text[mutation.start:mutation.end])} -> {one_line(mutation.new)}"
    return mutation.file, one_line(line), f"{mutation.kind}: {change}"


def diff_of(mutation, text):
    begin = text.rfind("\n", 0, mutation.start) + 1
    end = text.find("\n", mutation.end)
    changed = text[begin:mutation.start] + mutation.new + text[mutation.end:end]
    return "\n".join([f"    - {line}" for line in text[begin:end].splitlines()] +
                     [f"    + {line}" for line in changed.splitlines()])


def chosen(options):
    """The mutants to try, by file."""
    paths = sorted([*PLUGIN.glob("*.cpp"), *PLUGIN.rglob("*.h")])
    texts = {str(path.relative_to(PLUGIN)): path.read_text() for path in paths}
    enums = mutations.enums_of(texts.values())
    found = {file: list(mutations.mutations_of(file, text, enums)) for file, text in texts.items()
             if not options.files or pathlib.Path(file).name in options.files}
    unknown = set(options.files or ()) - {pathlib.Path(file).name for file in texts}
    unknown |= set(options.only or ()) - {one.name for of_file in found.values() for one in of_file}
    if unknown:
        sys.exit(f"there is no {' '.join(sorted(unknown))}; --list names all mutants")
    if options.only:
        found = {file: [one for one in of_file if one.name in options.only]
                 for file, of_file in found.items()}
    if options.sample:
        everything = [one for of_file in found.values() for one in of_file]
        number = round(len(everything) * options.sample / 100)
        drawn = set(random.Random(options.seed).sample(everything, number))
        found = {file: [one for one in of_file if one in drawn] for file, of_file in found.items()}
    return texts, {file: of_file for file, of_file in found.items() if of_file}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--files", nargs="+", metavar="NAME", help="only the mutants of these files")
    parser.add_argument("--sample", type=float, metavar="PERCENT", help="only so many of all")
    parser.add_argument("--seed", type=int, metavar="N", default=1, help="chooses the sample, 1 unless given")
    parser.add_argument("--only", nargs="+", metavar="MUTANT", help="only these, by the names that --list prints")
    parser.add_argument("--skip-explained", action="store_true",
                        help="count survivors that have a reason without trying them: they take longest, since every test "
                             "runs twice")
    parser.add_argument("--resume", action="store_true",
                        help="do not try mutants again that an earlier run has tried, unless the plug-in or its tests have "
                             "changed since")
    parser.add_argument("--list", action="store_true", help="print the mutants instead")
    options = parser.parse_args()
    texts, found = chosen(options)
    if options.list:
        for file, of_file in found.items():
            for mutation in of_file:
                print(mutation.name, describe(mutation, texts[file])[2])
        return 0
    os.nice(15)
    explained = {tuple(mutant) for entry in json.loads(SURVIVORS.read_text())
                 for mutant in entry["mutants"]}
    laboratory = Laboratory(options.resume, explained if options.skip_explained else set())
    totals, unexplained, seen = Counter(), 0, set()
    for file, of_file in found.items():
        counts = Counter()
        with ThreadPoolExecutor(WORKERS) as pool:
            verdicts = pool.map(lambda one: laboratory.verdict(one, texts[one.file]), of_file)
            for mutation, (verdict, killer) in zip(of_file, verdicts):
                counts[verdict] += 1
                key = describe(mutation, texts[file])
                if options.only:
                    print(mutation.name, verdict, *killer or ())
                if verdict == "survived" and key in explained:
                    seen.add(key)
                elif verdict == "survived":
                    unexplained += 1
                    print(f"SURVIVED {PLUGIN.name}/{file}:{mutation.line}: {key[2]}\n"
                          f"{diff_of(mutation, texts[file])}\n"
                          f"    tools/mutate.py --only {mutation.name}", flush=True)
        counted = counts["killed"] + counts["survived"]
        print(f"{file}: {counts['killed']} of {counted} killed; not counted: "
              f"{counts['does not compile'] + counts['does not link']} that do not compile, "
              f"{counts['same']} of the same code",
              flush=True)
        totals += counts
    counted = totals["killed"] + totals["survived"]
    percent = 100 * totals["killed"] / counted if counted else 100
    print(f"{totals['killed']} of {counted} killed, {percent:.2f} %; {unexplained} survivors without "
          f"a reason, {totals['survived'] - unexplained} with one")
    stale = [] if options.sample or options.only else [
        key for key in explained if key[0] in found and key not in seen]
    for key in stale:
        print("has a reason to survive, but is killed or not there any more:", *key)
    return 1 if unexplained or stale or percent < DEMANDED_PERCENT else 0


if __name__ == "__main__":
    sys.exit(main())

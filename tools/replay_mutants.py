#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Measures which share of the changes of tools/mutate.py a replay of recordings notices.

Every command is recorded in every home, and what goes wrong in one of them (recording_tour.py). Then the plug-in
is built with one change at a time, and the recordings are replayed against it. A change is noticed when a replay
shows a difference, crashes or does not end.
"""
import argparse
import os
import pathlib
import random
import subprocess
import sys
from collections import Counter

import mutate
import recording_tour

BUILD = mutate.ROOT / "build/replay_mutants"
FLAGS = ["g++", "-std=c++17", "-O0", "-w", "-fPIC", "-fvisibility=hidden", "-fno-exceptions", "-fno-rtti",
         "-fno-threadsafe-statics", '-DSMART_ROUTER_PING_TARGET="8.8.8.8"',
         "-I", "smart_router_service", "-I", "smart_router_service/include"]
KIND = "plain"
# Seconds of processor time for all recordings of a home.
SECONDS = 60


def users_of(original, units, file):
    """The units that a change of the file reaches."""
    if file.endswith(".cpp"):
        return [file]
    name = f"smart_router_service/{file}"
    return [unit for unit in units
            if name in original.path(KIND, unit).with_suffix(".d").read_text().split()]


def link(objects, library):
    subprocess.run(["gcc", "-shared", "-o", library, *objects], check=True,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def first_different(hgagent, library, recordings):
    """The first recording whose replay shows a difference; None if none does."""
    limited = ["sh", "-c", f'ulimit -t {SECONDS}; exec "$@"', "sh", hgagent, "replay", "--plugin", library]
    return next((recording for recording in recordings
                 if subprocess.run([*limited, recording], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL).returncode != 0), None)


class Trial:
    def __init__(self, hgagent, recordings):
        self.hgagent, self.recordings = hgagent, recordings
        self.units = sorted(path.name for path in mutate.PLUGIN.glob("*.cpp"))
        BUILD.mkdir(parents=True, exist_ok=True)
        (BUILD / "original").mkdir(exist_ok=True)
        self.original = mutate.Objects(BUILD / "original")
        for unit in self.units:
            if not self.original.compile(KIND, unit, FLAGS):
                sys.exit(f"{unit} does not compile")
        library = BUILD / "original.so"
        link([self.original.path(KIND, unit) for unit in self.units], library)
        self.noticed_by = Counter()
        if different := first_different(hgagent, library, recordings):
            sys.exit(f"a replay of {different} shows a difference without any change")

    def verdict(self, worker, mutation, text):
        path = worker.folder / "smart_router_service" / mutation.file
        changed = users_of(self.original, self.units, mutation.file)
        try:
            path.write_text(mutation.applied_to(text))
            if not all(worker.compile(KIND, unit, FLAGS) for unit in changed):
                return "does not compile"
            if all(worker.path(KIND, unit).read_bytes() == self.original.path(KIND, unit).read_bytes()
                   for unit in changed):
                return "same"
            library = worker.folder / "mutant.so"
            link([(worker if unit in changed else self.original).path(KIND, unit) for unit in self.units],
                 library)
            recording = first_different(self.hgagent, library, self.recordings)
            if recording is None:
                return "not noticed"
            self.noticed_by[recording.stem] += 1
            return "noticed"
        except subprocess.CalledProcessError:
            return "does not compile"
        finally:
            path.write_text(text)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, metavar="N", default=200, help="changes to try, 200 unless given")
    parser.add_argument("--seed", type=int, metavar="N", default=1, help="chooses the changes, 1 unless given")
    parser.add_argument("--only", nargs="+", metavar="MUTANT", help="these changes; tools/mutate.py --list names all")
    parser.add_argument("--build", type=pathlib.Path, metavar="FOLDER", default=mutate.ROOT / "build/release")
    options = parser.parse_args()
    hgagent = (options.build / "bin/hgagent").resolve()
    sleepless = options.build.resolve() / "tests/end_to_end/libsleepless.so"
    recordings = recording_tour.record_tour(hgagent, BUILD / "recordings", sleepless)
    texts, found = mutate.chosen(argparse.Namespace(files=None, only=options.only, sample=None))
    everything = [mutation for of_file in found.values() for mutation in of_file]
    random.Random(options.seed).shuffle(everything)
    os.nice(15)
    trial = Trial(hgagent, recordings)
    (BUILD / "worker").mkdir(exist_ok=True)
    worker = mutate.Objects(BUILD / "worker")
    verdicts = Counter()
    kinds = Counter()
    for mutation in everything:
        verdict = trial.verdict(worker, mutation, texts[mutation.file])
        verdicts[verdict] += 1
        if verdict in ("noticed", "not noticed"):
            kinds[mutation.kind, verdict] += 1
        if verdict == "not noticed":
            print(mutation.name, mutate.describe(mutation, texts[mutation.file])[2], flush=True)
        if verdicts["noticed"] + verdicts["not noticed"] == options.count:
            break
    counted = verdicts["noticed"] + verdicts["not noticed"]
    for kind in sorted({kind for kind, _ in kinds}):
        print(f"{kind}: {kinds[kind, 'noticed']} of {kinds[kind, 'noticed'] + kinds[kind, 'not noticed']}")
    for recording, count in trial.noticed_by.items():
        print(f"first noticed by {recording}: {count}")
    print(f"{verdicts['noticed']} of {counted} noticed, {100 * verdicts['noticed'] / counted:.1f} %")
    return 0


if __name__ == "__main__":
    sys.exit(main())

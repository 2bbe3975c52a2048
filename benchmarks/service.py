# SPDX-License-Identifier: MIT
"""Measures `hgagent run` next to a bare responder on a Unix socket, client and server on one core. As a program it
prints the figures: service.py BUILD."""

import contextlib
import json
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile

SMALL = json.dumps({"id": 1, "command": "GET_SN_INFO"})
LIST = json.dumps({"id": 1, "command": "GET_AD_BASE_INFO"})
ROUNDS = 7  # of each measurement, in turn; the median counts
REQUESTS = 20_000
LIST_REQUESTS = 100
MANY_REQUESTS = 300_000
GOOD, BAD = 134, 66  # clients
CROWD_REQUESTS = 20_000
CROWD_ROUNDS = 5


def one_core():
    os.sched_setaffinity(0, {max(os.sched_getaffinity(0))})


def lines_of(path):
    return pathlib.Path(path).read_text().splitlines()


def with_children(process):
    children = pathlib.Path(f"/proc/{process}/task/{process}/children").read_text().split()
    return [process, *(int(child) for child in children)]


def used(process):
    """Nanoseconds of the processor for all threads of the process and of its children."""
    return sum(int(lines_of(task / "schedstat")[0].split()[0])
               for each in with_children(process) for task in pathlib.Path(f"/proc/{each}/task").iterdir())


def private_memory(process):
    """KiB."""
    fields = dict(line.split(":") for line in lines_of(f"/proc/{process}/smaps_rollup")[1:])
    return sum(int(fields[key].split()[0]) for key in ("Private_Clean", "Private_Dirty"))


class Server:
    """A process that listens at a socket of its own."""

    def __init__(self, stack, load, command):
        self.load = load
        folder = stack.enter_context(tempfile.TemporaryDirectory())
        self.socket = f"{folder}/socket"
        self.process = subprocess.Popen([str(word).replace("SOCKET", self.socket) for word in command],
                                        stderr=subprocess.DEVNULL)
        stack.callback(self.process.wait)
        stack.callback(self.process.terminate)
        while subprocess.run([load, "ask", self.socket, "100", SMALL], stdout=subprocess.DEVNULL,
                             stderr=subprocess.DEVNULL, check=False).returncode != 0:
            assert self.process.poll() is None

    def ask(self, count, request):
        """Nanoseconds of client and server for each request."""
        before = used(self.process.pid)
        client = float(subprocess.check_output([self.load, "ask", self.socket, str(count), request]))
        return client + (used(self.process.pid) - before) / count

    def crowd(self, bad):
        """Microseconds: the 99th percentile of the good clients."""
        return float(subprocess.check_output([self.load, "crowd", self.socket, str(GOOD), str(bad),
                                              str(CROWD_REQUESTS)]))

    def memory(self):
        """KiB of the service, and of its worker if that is another process."""
        return [private_memory(process) for process in with_children(self.process.pid)]


class Serve:
    """`hgagent serve`: the handler, its device and printing, with little around them."""

    def __init__(self, stack, command):
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0)
        stack.callback(self.process.wait)
        stack.callback(self.process.stdin.close)
        self.ask(1, LIST)

    def ask(self, count, request):
        """Nanoseconds of the server for each request."""
        before = used(self.process.pid)
        for _ in range(count):
            self.process.stdin.write(request.encode() + b"\n")
            while not os.read(self.process.stdout.fileno(), 1 << 20).endswith(b"\n"):
                pass
        return (used(self.process.pid) - before) / count


def medians(rounds, **measurements):
    """Alternates between the measurements, so that a busy moment of the machine hits all of them."""
    figures = {name: [] for name in measurements}
    for _ in range(rounds):
        for name, measure in measurements.items():
            figures[name].append(measure())
    return {name: statistics.median(values) for name, values in figures.items()}


def measure(build):
    """The figures by name: nanoseconds, microseconds for the crowd, KiB."""
    build = pathlib.Path(build).resolve()
    load, agent = build / "bin/socket_load", build / "bin/hgagent"
    run = ["run", "--socket=SOCKET"]
    before = os.sched_getaffinity(0)
    one_core()
    try:
        with contextlib.ExitStack() as stack:
            bare = Server(stack, load, [load, "respond", "SOCKET"])
            worker = Server(stack, load, [agent, *run])
            inside = Server(stack, load, [agent, *run, "--in-process"])
            idle = worker.memory(), inside.memory()
            figures = medians(ROUNDS, bare=lambda: bare.ask(REQUESTS, SMALL),
                              worker=lambda: worker.ask(REQUESTS, SMALL),
                              inside=lambda: inside.ask(REQUESTS, SMALL))
            figures |= medians(CROWD_ROUNDS, quiet=lambda: worker.crowd(0), crowd=lambda: worker.crowd(BAD))
            options = [agent, "--scenario=crowded_mesh"]
            mesh = Server(stack, load, [*options, *run, "--in-process"])
            serve = Serve(stack, [*options, "serve"])
            figures |= medians(ROUNDS, list=lambda: mesh.ask(LIST_REQUESTS, LIST),
                               serve=lambda: serve.ask(LIST_REQUESTS, LIST))
            worker.ask(MANY_REQUESTS, SMALL)
            inside.ask(MANY_REQUESTS, SMALL)
            return figures | {"idle": idle, "after": (worker.memory(), inside.memory())}
    finally:
        os.sched_setaffinity(0, before)


if __name__ == "__main__":
    print(json.dumps(measure(sys.argv[1]), indent=1))

# SPDX-License-Identifier: MIT
"""Runs every measurement and prints one Markdown table: table.py BUILD [DOCUMENT]. In the document, the table
between the two marks is replaced. Times are processor times."""

import json
import os
import pathlib
import platform
import re
import subprocess
import sys

import measure
import service

SIZES = [10, 100, 1_000, 10_000, 100_000]
COMMANDS = 1_000_000
REQUEST = b'{"id":1,"command":"GET_SN_INFO"}\n'
RUNS = 30  # of a process; the fastest counts, since slower runs were delayed by something else

COLUMNS = ["", "Instructions", "compared with", "ratio", "Allocations", "compared with", "ratio", "Time",
           "compared with", "Memory"]


def number(value):
    return f"{value:,.0f}"


def duration(nanoseconds):
    for unit, size in (("s", 1e9), ("ms", 1e6), ("µs", 1e3)):
        if nanoseconds >= size:
            return f"{nanoseconds / size:.3g} {unit}"
    return f"{nanoseconds:.0f} ns"


def compared(value, other):
    return [number(value), number(other), f"{value / other:.2f}"]


def row(name, instructions=None, allocations=None, times=None, memory=None):
    """instructions and allocations: a count, or a pair of the plug-in's and the one to compare with; times: the same
    in nanoseconds; memory: a text. A measurement fills the cells that it has figures for."""
    cells = [name]
    for counts in (instructions, allocations):
        if isinstance(counts, tuple):
            cells += compared(*counts)
        else:
            cells += [number(counts) if counts is not None else "", "", ""]
    times = times if isinstance(times, tuple) else (times, None)
    cells += [duration(value) if value is not None else "" for value in times]
    cells.append(memory or "")
    return cells


def times_of(build, *options):
    """Nanoseconds by the name of the benchmark."""
    output = subprocess.run([build / "bin/times", "--benchmark_format=json", *options], check=True,
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout
    nanoseconds = {}
    for run in json.loads(output)["benchmarks"]:
        name, _, manual = run["name"].partition("/")
        nanoseconds[name] = run["real_time" if manual else "cpu_time"]
    return nanoseconds


def handlers(build):
    """Each command, only the handler and the whole."""
    nanoseconds = times_of(build, "--benchmark_min_time=0.1")
    for which, title in (("handler", "{}"), ("whole", "{}, whole")):
        for case, (plugin, floor) in measure.count_sides(build / "bin/instructions", which, SIZES).items():
            yield row(title.format(case), (plugin.instructions, floor.instructions),
                      (plugin.allocations, floor.allocations),
                      (nanoseconds[f"{case}|plug-in|{which}"], nanoseconds[f"{case}|floor|{which}"]))


def dispatch(build):
    costs = {name: cost.instructions for name, cost in measure.count_parts(build / "bin/dispatch").items()}
    cheapest, dearest = min(costs, key=costs.get), max(costs, key=costs.get)
    yield row(f"Finding {dearest}; compared with {cheapest}", (costs[dearest], costs[cheapest]))


def loading(build):
    plugin = build / "lib/libsmart_router_service.so"
    instructions = measure.count_parts(build / "bin/loading", plugin, "0")["loading"]
    runs = [json.loads(subprocess.check_output([build / "bin/loading", plugin, "0"])) for _ in range(RUNS)]
    nanoseconds = 1000 * min(run["microseconds"] for run in runs)
    memory = json.loads(subprocess.check_output([build / "bin/loading", plugin, str(COMMANDS)]))
    yield row("Loading the plug-in", instructions.instructions, instructions.allocations, nanoseconds,
              f"{memory['loaded'] - memory['before']} KiB")
    yield row("After six commands", memory=f"{memory['first'] - memory['before']} KiB")
    yield row(f"After {number(COMMANDS)} commands", memory=f"{memory['last'] - memory['before']} KiB")


def processor_time(command):
    """Nanoseconds of the fastest run."""
    times = []
    for _ in range(RUNS):
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
        assert status == 0
        times.append(1e9 * (usage.ru_utime + usage.ru_stime))
    return min(times)


def processes(build):
    """A process that runs one command, and one that links the same libraries and does nothing."""
    commands = ([build / "bin/hgagent", "call", "GET_SN_INFO"], [build / "agent/link_check"])
    costs = [measure.count(command)[None] for command in commands]
    yield row("hgagent call GET_SN_INFO; compared with its libraries alone",
              tuple(cost.instructions for cost in costs), tuple(cost.allocations for cost in costs),
              tuple(processor_time(command) for command in commands))


def time_of_serving(server, requests):
    """The processor's, on one core, for a client that waits for each answer before it asks again."""
    def used():
        return int(pathlib.Path(f"/proc/{process.pid}/schedstat").read_text().split()[0])

    def ask(number):
        for _ in range(number):
            process.stdin.write(REQUEST)
            while not os.read(process.stdout.fileno(), 65_536).endswith(b"\n"):
                pass

    with subprocess.Popen(server, stdin=subprocess.PIPE, stdout=subprocess.PIPE, bufsize=0) as process:
        os.sched_setaffinity(process.pid, {min(os.sched_getaffinity(0))})
        ask(requests // 10)
        before = used()
        ask(requests)
        return (used() - before) / requests


def serving(build):
    """A request to hgagent serve, and the same command within a process."""
    agent = build / "bin/hgagent"
    within = times_of(build, "--benchmark_filter=^GET_SN_INFO.plug-in.whole")
    yield row("hgagent serve, for each GET_SN_INFO; compared with the same within the process",
              measure.count_serving_record(agent), times=(time_of_serving([agent, "serve"], 20_000), *within.values()))
    instructions, hosts = measure.count_serving_list(agent)
    yield row(f"hgagent serve, for each GET_AD_BASE_INFO, {hosts} hosts", instructions)


def services(build):
    """hgagent run, beside a bare responder; client and server on one core."""
    figures = service.measure(build)
    for name, key in (("with its worker", "worker"), ("in-process", "inside")):
        yield row(f"hgagent run {name}, client and service for each GET_SN_INFO; compared with a bare responder",
                  times=(figures[key], figures["bare"]))
    yield row("hgagent run in-process, client and service for each GET_AD_BASE_INFO, 552 hosts; compared with "
              "hgagent serve", times=(figures["list"], figures["serve"]))
    yield row(f"{service.GOOD} clients of hgagent run, their 99th percentile beside {service.BAD} that misbehave; "
              "compared with a quiet run", times=(1000 * figures["crowd"], 1000 * figures["quiet"]))
    for when, title in (("idle", "idle"), ("after", f"after {number(service.MANY_REQUESTS)} requests")):
        (run, worker), (inside,) = figures[when]
        yield row(f"hgagent run, {title}: service, worker; in-process", memory=f"{run}, {worker}; {inside} KiB")


MEASUREMENTS = [handlers, dispatch, loading, processes, serving, services]


def machine():
    model = re.search(r"^model name\s*: (.*)$", pathlib.Path("/proc/cpuinfo").read_text(), re.M)
    compiler = subprocess.run(["c++", "--version"], check=True, stdout=subprocess.PIPE, text=True).stdout
    return f"{model[1] if model else platform.machine()}, {platform.system()} {platform.release().partition('-')[0]}, " \
           f"{compiler.splitlines()[0]}"


def main(build, document=None):
    build = pathlib.Path(build)
    rows = [COLUMNS, ["---"] + ["---:"] * (len(COLUMNS) - 1)]
    for measurement in MEASUREMENTS:
        rows += measurement(build)
    table = f"{machine()}\n\n" + "\n".join("| " + " | ".join(cells) + " |" for cells in rows)
    print(table)
    if document is not None:
        path = pathlib.Path(document)
        begin, end = "<!-- measured -->\n", "\n<!-- /measured -->"
        before, rest = path.read_text(encoding="utf-8").split(begin)
        path.write_text(before + begin + table + end + rest.split(end)[1], encoding="utf-8")


main(*sys.argv[1:])

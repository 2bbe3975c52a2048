# SPDX-License-Identifier: MIT
"""What a small request on a broker costs, next to a bare responder: broker.py BUILD [DOCUMENT]. In the document, the
table between the two marks is replaced.

Processor times of client, gateway and broker, which share one core with nothing between them; the median of some runs.
"""
import os
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests/broker"))

import brokers  # noqa: E402
import service  # noqa: E402

COUNT = 5_000
RUNS = 5
CORE = max(os.sched_getaffinity(0))
REPLY = ('{"result":0,"reply":{"Status":"0","MAC":"02:00:5E:10:00:02","tslinkstatus":"0",'
         '"DeviceType":"COUNTING"}}')
MARKS = "<!-- broker -->\n", "\n<!-- /broker -->"


def processor_microseconds(processes):
    """All that the threads of the processes have used."""
    return sum(int(one.read_text(encoding="ascii").split()[0]) / 1000
               for process in processes for one in pathlib.Path(f"/proc/{process}/task").glob("*/schedstat"))


def private_kib(process):
    lines = pathlib.Path(f"/proc/{process}/smaps_rollup").read_text(encoding="ascii").splitlines()
    return sum(int(line.split()[1]) for line in lines if line.startswith("Private_"))


def pin(process):
    for task in os.listdir(f"/proc/{process}/task"):
        os.sched_setaffinity(int(task), {CORE})


class Bare:
    def __init__(self, build, broker, qos):
        self.process = subprocess.Popen([build / "bin/broker_responder", str(broker.port.number),
                                         "gateway/bare/command/+", str(qos), REPLY], stdout=subprocess.PIPE, text=True)
        self.process.stdout.readline()
        self.processes = [self.process.pid]

    def close(self):
        self.process.kill()
        self.process.wait()
        self.process.stdout.close()


class Agent:
    def __init__(self, build, broker, folder, name, options=(), on_broker=True):
        words = ["--broker", broker.url, "--id", name, "--trust"] if on_broker else []
        self.service = service.Service(build / "bin/hgagent", folder / name, [*words, *options],
                                       build / "tests/broker/counting_device.so")
        if on_broker:
            self.service.await_broker()
        self.processes = [self.service.process.pid]
        if "--in-process" not in options:
            self.processes.append(self.service.worker())

    def close(self):
        self.service.close()


def run(build, broker, name, gateway, qos, in_flight):
    """Microseconds of client, gateway and broker for each request."""
    for process in [broker.process.pid, *gateway.processes]:
        pin(process)
    processes = gateway.processes, [broker.process.pid]
    before = list(map(processor_microseconds, processes))
    output = subprocess.run(
        ["taskset", "--cpu-list", str(CORE), build / "bin/broker_caller", str(broker.port.number),
         f"gateway/{name}/command/GET_SN_INFO", f"gateway/{name}/reply/caller", str(qos), str(in_flight), str(COUNT)],
        check=True, stdout=subprocess.PIPE, text=True).stdout
    after = list(map(processor_microseconds, processes))
    return [float(output.split()[0]), *((end - begin) / COUNT for begin, end in zip(before, after))]


def table(build, folder):
    lines = ["| µs of processor time for each request | Client | Gateway | compared with the bare responder | Broker | "
             "A core is full at |", "| --- | ---: | ---: | ---: | ---: | ---: |"]
    broker = brokers.Mosquitto(folder / "broker")
    try:
        for qos in (0, 1):
            gateways = {"bare": ("bare responder", Bare(build, broker, qos)),
                        "within": ("worker in-process", Agent(build, broker, folder, "within", ["--in-process"])),
                        "child": ("worker as a child", Agent(build, broker, folder, "child"))}
            for in_flight in (1, 64):
                runs = {name: [] for name in gateways}
                for _ in range(RUNS):
                    # In turn, so that what else the machine does meets all of them.
                    for name, (_, gateway) in gateways.items():
                        runs[name].append(run(build, broker, name, gateway, qos, in_flight))
                for name, (title, _) in gateways.items():
                    client, own, other = (statistics.median(column) for column in zip(*runs[name]))
                    ratio = statistics.median(mine[1] / bare[1] for mine, bare in zip(runs[name], runs["bare"]))
                    lines.append(f"| QoS {qos}, {in_flight} at a time, {title} | {client:.1f} | {own:.1f} | "
                                 f"{ratio:.2f} | {other:.1f} | {1e6 / own:,.0f}/s |")
                    print(lines[-1], file=sys.stderr, flush=True)
            for _, gateway in gateways.values():
                gateway.close()
        lines += ["", *memory(build, broker, folder)]
    finally:
        broker.close()
    return "\n".join(lines) + "\n"


def memory(build, broker, folder):
    """Private memory of the service, by itself and with a broker."""
    figures = []
    for name, on_broker in (("without", False), ("with", True)):
        gateway = Agent(build, broker, folder, name, on_broker=on_broker)
        # While a worker is being started, the pages of the service are shared with it.
        gateway.service.ask('{"id":1,"command":"GET_SN_INFO"}')
        figures.append(private_kib(gateway.processes[0]))
        gateway.close()
    bare = Bare(build, broker, 1)
    figures.append(private_kib(bare.processes[0]))
    bare.close()
    return [f"Private memory of the service: {figures[0]:,} KiB, with a connection to a broker {figures[1]:,} KiB: "
            f"{figures[1] - figures[0]:,} KiB for the connection. The whole bare responder: {figures[2]:,} KiB."]


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory() as folder:
        made = table(build, pathlib.Path(folder))
    print(made, end="")
    if len(sys.argv) > 2:
        document = pathlib.Path(sys.argv[2])
        text = document.read_text(encoding="utf-8")
        pattern = re.escape(MARKS[0]) + ".*?" + re.escape(MARKS[1])
        document.write_text(re.sub(pattern, lambda _: MARKS[0] + "\n" + made + MARKS[1], text, flags=re.S),
                            encoding="utf-8")


if __name__ == "__main__":
    main()

# SPDX-License-Identifier: MIT
"""Measures the device library for Linux on a gateway in network namespaces, next to the usual tools that show and set the
same: linux_gateway.py BUILD prints the figures."""
import json
import pathlib
import resource
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path[:0] = [str(ROOT / "tests/linux_gateway"), str(ROOT / "benchmarks")]

import namespaces  # noqa: E402
import network  # noqa: E402
import service  # noqa: E402
from agent import Agent  # noqa: E402

NEW_SNAPSHOTS = 15
SNAPSHOT_SECONDS = 0.55
REPEATED = 200
SETTINGS = 40
WALKS = 15


def mac_of(number):
    return f"02:00:5e:30:{number >> 8:02x}:{number & 255:02x}"


def fill(home, leases, hosts):
    """So many hosts with a lease, a neighbour entry and one of the bridge."""
    end = int(time.time()) + 36000
    names, neighbours, entries = [], [], []
    for number in range(hosts):
        mac, address = mac_of(number), f"192.168.{8 + (number + 2) // 250}.{(number + 2) % 250 + 2}"
        names.append(f"{end} {mac} {address} host-{number} *\n")
        neighbours.append(f"neighbour replace {address} dev br-lan lladdr {mac} nud reachable")
        entries.append(f"fdb replace {mac} dev lan1 master dynamic")
    leases.write_text("".join(names), encoding="ascii")
    home.gateway.run("ip address replace 192.168.8.1/20 dev br-lan")
    for program, lines in (("ip", neighbours), ("bridge", entries)):
        home.gateway.run([program, "-batch", "-"], input="\n".join(lines))


class Used:
    """Processor time of a process, or of ended children, and elapsed time; in milliseconds."""

    def __init__(self, process=None):
        self.process = process

    def now(self):
        if self.process:
            return service.used(self.process) / 1e6
        children = resource.getrusage(resource.RUSAGE_CHILDREN)
        return (children.ru_utime + children.ru_stime) * 1000

    def of(self, work):
        processor, clock = self.now(), time.monotonic()
        work()
        return self.now() - processor, (time.monotonic() - clock) * 1000


def median(values):
    return statistics.median(values)


def measure(home, folder, hosts):
    leases = folder / f"leases{hosts}"
    fill(home, leases, hosts)
    agent = Agent(home, folder / f"agent{hosts}", {"lease_file": str(leases), "remove_at_exit": True})
    agent.call("GET_SN_INFO")
    used = Used(agent.process.pid)
    new, again, settings = [], [], []
    for _ in range(NEW_SNAPSHOTS):
        time.sleep(SNAPSHOT_SECONDS)
        new.append(used.of(lambda: agent.call("GET_AD_BASE_INFO"))[0])
    found = len(agent.hosts())
    for _ in range(REPEATED):
        again.append(used.of(lambda: agent.call("GET_AD_BASE_INFO"))[0])
    for number in range(SETTINGS):
        right = "DENY" if number % 2 == 0 else "ALLOW"
        settings.append(used.of(lambda: agent.call("SET_ATTACH_DEVICE_RIGHT", MAC=mac_of(number // 2),
                                                   InternetAccessRight=right)))
    memory = service.private_memory(agent.process.pid)
    tools = Used()
    shown = "ip -json neighbour show dev br-lan; bridge -json fdb show br br-lan; cat " + str(leases)
    # The shell and the namespace are entered once.
    walk = tools.of(lambda: home.gateway.run(["sh", "-c", f"for n in $(seq {WALKS}); do {shown}; done >/dev/null"]))
    table = ("add table inet other; add set inet other blocked {{ type ether_addr; }}; "
             "{} element inet other blocked {{ 02:00:5e:30:00:00 }}")
    home.gateway.run(["nft", table.format("add")])
    once = tools.of(lambda: home.gateway.run(["sh", "-c", f"for n in $(seq {WALKS}); do nft '{table.format('add')}'; done"]))
    home.gateway.run("nft delete table inet other")
    agent.close()
    return {"hosts": hosts, "found": found, "query, new snapshot": median(new), "query, same snapshot": median(again),
            "query, tools": walk[0] / WALKS, "setting": median([processor for processor, clock in settings]),
            "setting, elapsed": median([clock for processor, clock in settings]), "setting, tools": once[0] / WALKS,
            "memory": memory}


def memory_of(hgagent, *device):
    process = subprocess.Popen([str(hgagent), *device, "serve"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, text=True)
    process.stdin.write(json.dumps({"command": "GET_SN_INFO"}) + "\n")
    process.stdin.flush()
    json.loads(process.stdout.readline())
    memory = service.private_memory(process.pid)
    process.stdin.close()
    process.wait()
    process.stdout.close()
    return memory


def main(build):
    namespaces.enter()
    build = pathlib.Path(build).resolve()
    Agent.HGAGENT, Agent.DEVICE = build / "bin/hgagent", build / "lib/liblinux_gateway.so"
    Agent.SHIFTED_CLOCK = ""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        home = network.Network(folder, clients=1)
        home.gateway.run("sysctl -qw net.ipv4.neigh.default.gc_thresh3=16384", check=False)
        for hosts in (64, 500):
            for what, value in measure(home, folder, hosts).items():
                unit = "" if what in ("hosts", "found") else " KiB" if what == "memory" else " ms"
                print(f"{what:<22}{value:>10.3f}{unit}" if isinstance(value, float) else f"{what:<22}{value:>10}{unit}")
        memory = memory_of(build / "bin/hgagent", "--device", build / "lib/libminimal_device.so")
        print(f"{'memory, minimal device':<22}{memory:>10} KiB")
        home.close()


if __name__ == "__main__":
    main(*sys.argv[1:])

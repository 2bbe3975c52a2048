# SPDX-License-Identifier: MIT
"""A cluster of ejabberd nodes with MQTT, on loopback, each a process of the caller with separate files."""
import os
import pathlib
import re
import shutil
import signal
import subprocess
import time

from brokers import Port

CONFIGURATION = """\
loglevel: warning
hosts: ["localhost"]
auth_method: [anonymous]
anonymous_protocol: login_anon
allow_multiple_connections: true
listen:
  - port: {port}
    ip: "127.0.0.1"
    module: mod_mqtt
    backlog: 100
modules:
  mod_mqtt:
    session_expiry: 10 minutes
    max_queue: 10000
"""


class Cluster:
    """Nodes that have joined the first one. Erlang's port mapper is a process of the cluster's own as well."""

    def __init__(self, folder, count):
        self.folder = pathlib.Path(folder)
        self.mapper_port = Port()
        # It binds without SO_REUSEADDR, so the port has to be released first.
        self.mapper_port.close()
        self.environment = {
            **os.environ, "ERL_EPMD_PORT": str(self.mapper_port.number), "ERL_EPMD_ADDRESS": "127.0.0.1",
            "ERL_CRASH_DUMP_BYTES": "0", "HOME": str(self.folder),
            "ERL_LIBS": str(next(pathlib.Path("/usr/lib").glob("*/ejabberd-*")).parent)}
        self.folder.mkdir(parents=True, exist_ok=True)
        (self.folder / "inetrc").write_text(
            '{lookup, ["file"]}.\n{host, {127,0,0,1}, ["localhost"]}.\n', encoding="ascii")
        self.mapper = subprocess.Popen(
            [shutil.which("epmd"), "-port", str(self.mapper_port.number), "-address", "127.0.0.1"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=self.environment)
        self.nodes = []
        try:
            self.mapper_port.await_listener(self.mapper)
            for number in range(1, count + 1):
                self.nodes.append(Node(self, number))
                self.nodes[-1].start()
            for node in self.nodes[1:]:
                node.join(self.nodes[0])
        except BaseException:
            self.close()
            raise

    @property
    def ports(self):
        return [node.port.number for node in self.nodes]

    def close(self):
        for node in self.nodes:
            node.kill()
            node.port.close()
        self.mapper.terminate()
        self.mapper.wait()


class Node:
    def __init__(self, cluster, number):
        self.cluster = cluster
        self.name = f"node{number}_{os.getpid()}@localhost"
        self.folder = cluster.folder / f"node{number}"
        self.folder.mkdir()
        self.port = Port()
        configuration = self.folder / "ejabberd.yml"
        configuration.write_text(CONFIGURATION.format(port=self.port.number), encoding="ascii")
        self.environment = {
            **cluster.environment, "EJABBERD_CONFIG_PATH": str(configuration),
            "EJABBERD_LOG_PATH": str(self.folder / "ejabberd.log"), "EJABBERD_PID_PATH": str(self.folder / "pid"),
            "ERL_INETRC": str(cluster.folder / "inetrc"), "ERL_CRASH_DUMP": str(self.folder / "crash")}
        self.process = None

    def erl(self, name, *words):
        return [shutil.which("erl"), "-sname", name, "-setcookie", "trial", "-noinput",
                "-kernel", "inet_dist_use_interface", "{127,0,0,1}", *words]

    def start(self):
        with open(self.folder / "output", "ab") as output:
            self.process = subprocess.Popen(
                self.erl(self.name, "-mnesia", "dir", f'"{self.folder}/database"', "-s", "ejabberd"),
                stdout=output, stderr=output, env=self.environment)
        self.port.await_listener(self.process)

    def control(self, *words):
        """The output of a command of ejabberdctl."""
        words = self.erl(f"control_{os.getpid()}_{time.monotonic_ns()}@localhost", "-hidden", "-s", "ejabberd_ctl",
                         "-extra", self.name, *words)
        return subprocess.run(words, env=self.environment, check=True, capture_output=True, text=True).stdout

    def join(self, other):
        self.control("join_cluster", other.name)
        self.port.await_listener(self.process)
        while other.name not in self.control("list_cluster"):
            time.sleep(0.2)

    def kill(self):
        if self.process is not None:
            self.process.send_signal(signal.SIGKILL)
            self.process.wait()
            self.process = None

    def memory(self):
        """Its resident memory in MB."""
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text(encoding="ascii")
        return int(re.search(r"VmRSS:\s+(\d+)", status).group(1)) / 1024

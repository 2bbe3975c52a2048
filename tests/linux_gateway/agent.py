# SPDX-License-Identifier: MIT
"""The agent with the device library on the gateway of a test, as its unit runs it: a user without rights and the two
capabilities."""
import json
import os
import pathlib
import signal
import subprocess
import sys

import namespaces

sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from error_lines import ErrorLines  # noqa: E402  (in the folder that has just been added)

NOBODY = 65534
CAPABILITIES = "-all,+net_admin,+net_raw"
STANDARD_CONFIGURATION = {"lan_bridge": "br-lan", "wan_port": "wan0", "time_zone": "UTC"}


def without_rights():
    """Words before a command that take all rights away but those of the unit."""
    user = ([f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"] if namespaces.may_change_users()
            else ["--securebits=+noroot,+noroot_locked,+no_setuid_fixup,+no_setuid_fixup_locked"])
    return ["setpriv", *user, "--no-new-privs", f"--inh-caps={CAPABILITIES}", f"--ambient-caps={CAPABILITIES}",
            f"--bounding-set={CAPABILITIES}"]


class Agent:
    """`hgagent serve` on the gateway, with its log."""

    HGAGENT = DEVICE = SHIFTED_CLOCK = None

    def __init__(self, network, folder, configuration=None, environment=None, words=("serve", "--events", "--reasons"),
                 prefix=(), started=True):
        self.network = network
        self.folder = pathlib.Path(folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        self.state = self.folder / "state.json"
        self.clock = self.folder / "clock"
        self.clock.write_text("0", encoding="ascii")
        self.file = self.folder / "linux_gateway.toml"
        self.configure({**STANDARD_CONFIGURATION, "lease_file": str(network.leases),
                        "dnsmasq_configuration": str(network.configuration), "state": str(self.state),
                        **(configuration or {})})
        if namespaces.may_change_users():
            os.chown(self.folder, NOBODY, NOBODY)
        self.environment = {
            **os.environ, "LINUX_GATEWAY_CONFIG": str(self.file), "CLOCK_SHIFT": str(self.clock),
            "ASAN_OPTIONS": "verify_asan_link_order=0:" + os.environ.get("ASAN_OPTIONS", ""), **(environment or {})}
        self.words = words
        self.prefix = prefix
        self.process = None
        self.log = []
        self.errors = None
        self.events = []
        if started:
            self.start()

    def configure(self, values):
        self.file.write_text("".join(f"{key} = {json.dumps(value)}\n" for key, value in values.items()),
                             encoding="utf-8")

    def command(self, *words):
        """A command line of the agent in the gateway."""
        return self.network.gateway.words([
            *without_rights(), "env", f"LD_PRELOAD={self.SHIFTED_CLOCK}", *self.prefix, str(self.HGAGENT), "--device",
            str(self.DEVICE), *words])

    def start(self):
        # A group of its own: a signal reaches the agent behind the programs that start it, which end with it.
        self.process = subprocess.Popen(self.command(*self.words), env=self.environment, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, encoding="utf-8")
        self.errors = ErrorLines(self.process, self.log)

    def await_log(self, text):
        """The next line of the log that contains the text."""
        return self.errors.await_line(text)

    def ask(self, command, **parameters):
        """The whole answer."""
        self.send(command, parameters)
        return self.answer()

    def send(self, command, parameters=None):
        self.process.stdin.write(json.dumps({"id": 1, "command": command, "params": parameters or {}}) + "\n")
        self.process.stdin.flush()

    def answer(self):
        while line := self.process.stdout.readline():
            answer = json.loads(line)
            if "id" in answer:
                return answer
            self.events.append(answer)
        raise RuntimeError("the agent has ended: " + "\n".join(self.log[-20:]))

    def call(self, command, **parameters):
        """The reply to a command that succeeds."""
        answer = self.ask(command, **parameters)
        reply = answer["reply"]
        if reply.get("Status", "0") != "0":
            raise AssertionError(f"{command} {parameters}: {answer}, log: {self.log[-5:]}")
        return reply

    def refusal(self, command, **parameters):
        """The reasons why a command fails."""
        answer = self.ask(command, **parameters)
        if answer["reply"].get("Status") != "1":
            raise AssertionError(f"{command} {parameters} succeeds: {answer}")
        return "\n".join(answer["reasons"])

    def hosts(self):
        """The attached devices by MAC address."""
        return {host["Mac"]: host for host in self.call("GET_AD_BASE_INFO")["BaseInfo"]}

    def host(self, client):
        return self.hosts()[client.mac.upper()]

    def run(self, *words):
        """Another run of the agent, with its exit status."""
        return subprocess.run(self.command(*words), env=self.environment, capture_output=True, text=True, check=False)

    def shift_clock(self, seconds):
        """Moves the clock of the agent's process."""
        new = self.clock.with_suffix(".new")
        new.write_text(str(seconds), encoding="ascii")
        new.replace(self.clock)

    def kill(self):
        self.process.send_signal(signal.SIGKILL)
        self.close_pipes()

    def close_pipes(self):
        self.process.wait()
        self.process.stdin.close()
        self.process.stdout.close()

    def close(self):
        """Its exit status at the end of its input."""
        if self.process is None:
            return 0
        if self.process.poll() is None:
            self.process.stdin.close()
            self.process.wait()
        self.process.stdout.close()
        self.errors.finish()
        return self.process.returncode

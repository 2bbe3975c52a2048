# SPDX-License-Identifier: MIT
"""`hgagent fleet` as a process of a test."""
import os
import pathlib
import re
import signal
import subprocess
import sys
import time

sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from error_lines import ErrorLines  # noqa: E402  pylint: disable=wrong-import-position

PROMETHEUS = re.compile(r'^(\w+)(?:\{\w+="(\w+)"\})? (\S+)$')


class Fleet:
    """A fleet on the broker, with what it writes to standard error."""

    def __init__(self, hgagent, folder, broker, count, *options, before=(), metrics="metrics"):
        self.metrics_file = pathlib.Path(folder) / metrics
        self.log = pathlib.Path(folder) / "log"
        words = [hgagent, *before, "fleet", "--count", count, "--broker", broker.url, "--metrics", self.metrics_file,
                 "--log", self.log, *options]
        self.process = subprocess.Popen(list(map(str, words)), stderr=subprocess.PIPE, text=True)
        self.errors = ErrorLines(self.process)

    def await_line(self, text):
        return self.errors.await_line(text)

    def await_up(self):
        return self.await_line(" gateways are up")

    def gateways(self):
        """The processes of the gateways by their names; a name has at most 15 bytes."""
        processes = {}
        children = pathlib.Path(f"/proc/{self.process.pid}/task/{self.process.pid}/children")
        for process in children.read_text(encoding="ascii").split():
            try:
                name = pathlib.Path(f"/proc/{process}/comm").read_text(encoding="ascii").strip()
            except (FileNotFoundError, ProcessLookupError):
                continue
            processes[name] = int(process)
        return processes

    def metrics(self):
        values = {}
        for line in self.metrics_file.read_text(encoding="ascii").splitlines():
            if match := PROMETHEUS.match(line):
                name, label, value = match.groups()
                values[(name, label) if label else name] = float(value)
        return values

    def await_metric(self, name, value):
        while self.metrics().get(name) != value:
            time.sleep(0.05)

    def end(self, with_signal=signal.SIGTERM):
        self.process.send_signal(with_signal)
        return self.wait()

    def wait(self):
        self.errors.finish()
        return self.process.wait()

    def close(self):
        if self.process.poll() is None:
            self.end(signal.SIGKILL)


def has_gone(process):
    """Whether the process has ended; one that its parent has not waited for yet counts as ended."""
    try:
        os.kill(process, 0)
        stat = pathlib.Path(f"/proc/{process}/stat").read_text(encoding="ascii")
        return stat[stat.rindex(")") + 2] in "ZX"
    except (ProcessLookupError, FileNotFoundError):
        return True

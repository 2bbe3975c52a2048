# SPDX-License-Identifier: MIT
"""`hgagent run` as a process of a test, and what its device library has counted."""
import collections
import json
import os
import pathlib
import signal
import subprocess
import sys
import time

sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent / "support"))
from error_lines import ErrorLines  # noqa: E402  (in the folder that has just been added)


class Service:
    """A service that counts: its device library appends the name of every SET_HG_BASE_INFO to a file."""

    def __init__(self, hgagent, folder, options, device=None, environment=None, whole_options=()):
        self.folder = pathlib.Path(folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        self.socket = self.folder / "s.sock"
        self.counts = self.folder / "executed"
        self.counts.touch()
        self.words = [str(hgagent), *whole_options, *(["--device", str(device)] if device else []), "run",
                      "--socket", str(self.socket), *map(str, options)]
        self.environment = {**os.environ, "EXECUTED": str(self.counts), **(environment or {})}
        self.process = None
        self.lines = []
        self.errors = None
        try:
            self.start()
        except BaseException:
            self.close()
            raise

    def start(self):
        self.process = subprocess.Popen(self.words, env=self.environment, stderr=subprocess.PIPE, text=True)
        self.errors = ErrorLines(self.process, self.lines)
        self.await_line("listening on unix:")

    def await_line(self, text):
        """The next line of standard error that contains the text."""
        return self.errors.await_line(text)

    def await_broker(self):
        return self.await_line("connected to mqtt")

    def ask(self, line):
        """The answer to a line on the Unix socket."""
        socat = subprocess.run(["socat", "-t600", "-", f"UNIX-CONNECT:{self.socket}"], check=True, text=True,
                               input=line + "\n", capture_output=True)
        return json.loads(socat.stdout)

    def worker(self):
        """The process of the worker, as soon as there is one."""
        process = self.process.pid
        while True:
            children = pathlib.Path(f"/proc/{process}/task/{process}/children").read_text(encoding="ascii").split()
            if children:
                return int(children[0])
            time.sleep(0.01)

    def kill_worker(self):
        os.kill(self.worker(), signal.SIGKILL)

    def end(self, with_signal=signal.SIGTERM):
        """Its exit status."""
        self.process.send_signal(with_signal)
        self.errors.finish()
        return self.process.wait()

    def restart(self, with_signal=signal.SIGKILL):
        self.end(with_signal)
        self.start()

    def close(self):
        if self.process is not None and self.process.poll() is None:
            self.end(signal.SIGTERM)

    def executed(self):
        """How often the device has executed each name."""
        return collections.Counter(self.counts.read_text(encoding="utf-8").splitlines())

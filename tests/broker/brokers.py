# SPDX-License-Identifier: MIT
"""Brokers that a test starts on free ports of loopback, and ends by their process ids."""
import getpass
import pathlib
import shutil
import signal
import socket
import subprocess
import time


class Port:
    """A free port that stays the test's own while nothing listens on it. Otherwise the kernel could give it to another
    program, or to a client that connects to it: that one would then be connected with itself."""

    def __init__(self):
        self.socket = socket.socket()
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        self.socket.bind(("127.0.0.1", 0))
        self.number = self.socket.getsockname()[1]

    def close(self):
        self.socket.close()

    def await_listener(self, process):
        """Returns when the process listens on the port."""
        while True:
            try:
                socket.create_connection(("127.0.0.1", self.number)).close()
                return
            except ConnectionRefusedError:
                if process.poll() is not None:
                    raise RuntimeError(f"{process.args[0]} has ended with {process.returncode}") from None
                time.sleep(0.01)


class Mosquitto:
    """A mosquitto that listens on its port. `listener` are lines for the listener, `settings` lines for the broker."""

    def __init__(self, folder, settings="", listener="", anonymous=True):
        self.folder = pathlib.Path(folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        self.port = Port()
        self.process = None
        self.configuration = self.folder / "mosquitto.conf"
        self.configuration.write_text(
            f"user {getpass.getuser()}\n"
            f"log_dest file {self.folder}/mosquitto.log\n"
            "set_tcp_nodelay true\n"
            f"allow_anonymous {str(anonymous).lower()}\n"
            f"{settings}\n"
            f"listener {self.port.number} 127.0.0.1\n"
            f"{listener}\n", encoding="utf-8")
        try:
            self.start()
        except BaseException:
            self.close()
            raise

    @property
    def url(self):
        return f"mqtt://127.0.0.1:{self.port.number}"

    def start(self):
        program = shutil.which("mosquitto", path="/usr/sbin:/usr/local/sbin:/usr/bin:/usr/local/bin")
        if program is None:
            raise RuntimeError("mosquitto is not installed")
        self.process = subprocess.Popen([program, "-c", str(self.configuration)],
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.port.await_listener(self.process)

    def end(self, with_signal):
        if self.process is not None:
            self.process.send_signal(with_signal)
            self.process.wait()
            self.process = None

    def stop(self):
        self.end(signal.SIGTERM)

    def kill(self):
        self.end(signal.SIGKILL)

    def suspend(self):
        self.process.send_signal(signal.SIGSTOP)

    def resume(self):
        self.process.send_signal(signal.SIGCONT)

    def log(self):
        return (self.folder / "mosquitto.log").read_text(encoding="utf-8", errors="replace")

    def close(self):
        self.kill()
        self.port.close()


def persistence(folder, autosave=None):
    """Lines for a mosquitto that keeps its sessions and messages across restarts."""
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    lines = f"persistence true\npersistence_location {folder}/\n"
    return lines + (f"autosave_interval {autosave}\n" if autosave is not None else "")

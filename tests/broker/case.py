# SPDX-License-Identifier: MIT
"""What the tests with a broker have in common: NAME_test.py HGAGENT FOLDER [TEST...], where FOLDER has the libraries
that the tests load."""
import os
import pathlib
import sys
import tempfile
import unittest

import brokers
import caller
import service

HGAGENT = None
LIBRARIES = None


class BrokerCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def mosquitto(self, settings="", listener="", name="broker", **more):
        broker = brokers.Mosquitto(self.folder / name, settings, listener, **more)
        self.addCleanup(broker.close)
        return broker

    def service(self, *options, name="service", device=True, connected=True, whole_options=(), environment=None):
        """A service that counts, with these options of `run`; with device=False that of the simulated gateway."""
        started = service.Service(HGAGENT, self.folder / name, options,
                                  LIBRARIES / "counting_device.so" if device else None, environment, whole_options)
        self.addCleanup(started.close)
        if connected:
            started.await_broker()
        return started

    def trusted(self, broker, *options, **more):
        """A service whose broker is trusted."""
        return self.service("--broker", broker.url, "--id", "gw", "--trust", *options, **more)

    def caller(self, *the_brokers, **more):
        connection = caller.Caller([broker.port.number for broker in the_brokers], **more)
        self.addCleanup(connection.close)
        return connection

    def pipe(self):
        """A named pipe on which a command of the counting device waits, until open() of it."""
        path = self.folder / "held"
        os.mkfifo(path)
        return path

    def release(self, path):
        """Waits for the command that waits on the pipe, and lets it go on."""
        os.close(os.open(path, os.O_WRONLY))


def main():
    global HGAGENT, LIBRARIES
    HGAGENT = sys.argv.pop(1)
    LIBRARIES = pathlib.Path(sys.argv.pop(1))
    unittest.main(module="__main__")

# SPDX-License-Identifier: MIT
"""What the tests of the device library for Linux have in common: NAME_test.py HGAGENT LIBRARY SHIFTED_CLOCK
[TEST...]"""
import pathlib
import sys
import tempfile
import unittest

import namespaces
from agent import Agent
from network import Network


class GatewayCase(unittest.TestCase):
    """Tests with one network, and an agent for each test."""

    CLIENTS = 2

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = pathlib.Path(folder.name)
        cls.network = cls.make_network()
        cls.addClassCleanup(cls.network.close)

    @classmethod
    def make_network(cls):
        return Network(cls.folder, cls.CLIENTS)

    def setUp(self):
        folder = tempfile.TemporaryDirectory(dir=self.folder)
        self.addCleanup(folder.cleanup)
        self.own = pathlib.Path(folder.name)
        self.own.chmod(0o755)

    def agent(self, configuration=None, **more):
        """An agent that leaves nothing in the kernel."""
        started = Agent(self.network, self.own / "agent", {"remove_at_exit": True, **(configuration or {})}, **more)
        self.addCleanup(started.close)
        return started


def main(folders=("/etc",)):
    namespaces.enter(folders)
    Agent.HGAGENT, Agent.DEVICE, Agent.SHIFTED_CLOCK = (pathlib.Path(sys.argv.pop(1)).resolve() for _ in range(3))
    unittest.main(module="__main__")

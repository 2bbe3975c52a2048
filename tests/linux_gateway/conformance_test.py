# SPDX-License-Identifier: MIT
"""`hgagent conformance --allow-writes` on the gateway, compared with the table of commands in the documents."""
import json
import pathlib
import re

import case

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs/linux_gateway.md"


def documented():
    """What the page says of each command."""
    return dict(re.findall(r"^\| `([A-Z_]+)` \| (real|partly|not supported) \|", PAGE.read_text(encoding="utf-8"), re.M))


def functions():
    """The device functions that the library has."""
    return {name for source in (ROOT / "linux_gateway/device").glob("*.cpp")
            for name in re.findall(r"^\w[\w ]*\b(devapi_\w+)\(", source.read_text(encoding="utf-8"), re.M)}


class ConformanceTest(case.GatewayCase):
    def test_the_library_conforms_and_leaves_everything_as_it_was(self):
        agent = self.agent()
        agent.call("SET_HG_BASE_INFO", Name="Lindenhof")
        agent.call("SET_GREENNET_DEVICE_LIST", DeviceList=[
            {"Mac": self.network.clients[0].mac.upper(), "Name": "Jonas", "NotifyEnable": "1"}])
        agent.close()
        gateway = self.network.gateway
        before = gateway.run("nft -s list ruleset"), gateway.run("tc qdisc show"), json.loads(agent.state.read_text())
        run = agent.run("--log-level", "0", "conformance", "--allow-writes")
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        print(run.stdout.splitlines()[-1])
        results = dict(re.findall(r"^([A-Z_]{5,}) +(passed|not supported|skipped)", run.stdout, re.M))
        self.assertEqual(before, (gateway.run("nft -s list ruleset"), gateway.run("tc qdisc show"),
                                  json.loads(agent.state.read_text())))
        self.compare(results)

    def compare(self, results):
        page, known = documented(), functions()
        descriptions = [json.loads(path.read_text(encoding="utf-8")) for path in (ROOT / "protocol/commands").glob("*.json")]
        self.assertEqual(set(page), {description["command"] for description in descriptions},
                         f"docs/{PAGE.name} needs a row for each command")
        for description in descriptions:
            name = description["command"]
            # What cannot be undone is not tried: there, all functions of the command have to be there.
            works = (results[name] == "passed" if results.get(name) in ("passed", "not supported")
                     else known.issuperset(description["device_calls"]))
            with self.subTest(command=name, result=results.get(name)):
                self.assertEqual(page[name] != "not supported", works)


if __name__ == "__main__":
    case.main()

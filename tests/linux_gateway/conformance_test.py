# SPDX-License-Identifier: MIT
"""`hgagent conformance --allow-writes` on the gateway, compared with the table of commands in the documents."""
import pathlib
import re

import case

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs/linux_gateway.md"


def documented():
    """What the page says of each command."""
    return dict(re.findall(r"^\| `([A-Z0-9_]+)` \| (real|partly|not supported) \|", PAGE.read_text(encoding="utf-8"), re.M))


class ConformanceTest(case.GatewayCase):
    def test_the_library_conforms_and_leaves_everything_as_it_was(self):
        agent = self.agent(started=False)
        gateway = self.network.gateway
        before = gateway.run("nft -s list ruleset"), gateway.run("tc qdisc show")
        run = agent.run("--log-level", "0", "conformance", "--allow-writes")
        print(run.stdout)
        self.assertEqual(run.returncode, 0, run.stdout + run.stderr)
        results = dict(re.findall(r"^([A-Z0-9_]{3,}) +(passed|failed|not supported|skipped)", run.stdout, re.M))
        commands = {path.stem for path in (ROOT / "protocol/commands").glob("*.json")}
        self.assertEqual(set(documented()), commands)
        wrong = {name: (result, documented()[name]) for name, result in results.items() if name in commands and
                 (result == "passed") != (documented()[name] != "not supported") and result != "skipped"}
        self.assertEqual(wrong, {})
        self.assertEqual((gateway.run("nft -s list ruleset"), gateway.run("tc qdisc show")), before)


if __name__ == "__main__":
    case.main()

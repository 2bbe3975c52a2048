#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""A fleet past one process and one broker: three fleets with a range of numbers each, on three nodes of a cluster of
ejabberd, and the driver on the first node, whose requests reach the others through the cluster.

ejabberd is installed as tools/cluster.sh says."""
import argparse
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests" / "broker"))
import ejabberd  # noqa: E402  # pylint: disable=wrong-import-position

NODES = 3


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=pathlib.Path, metavar="FOLDER", default=ROOT / "build/release")
    parser.add_argument("--count", type=int, metavar="N", default=100, help="gateways in each fleet, 100 unless given")
    parser.add_argument("--rate", metavar="R", default="100", help="requests per second, 100 unless given")
    parser.add_argument("--for", dest="time", metavar="TIME", default="30s", help="30s unless given")
    parser.add_argument("--page", metavar="FILE", help="also write the report as a page")
    options = parser.parse_args()
    hgagent = options.build / "bin/hgagent"
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        credentials = folder / "credentials"
        credentials.touch(mode=0o600)
        credentials.write_text("fleet@localhost\nany\n", encoding="ascii")
        cluster = ejabberd.Cluster(folder / "cluster", NODES)
        fleets = []
        try:
            words = []
            for number, port in enumerate(cluster.ports):
                fleets.append(subprocess.Popen(
                    [hgagent, "fleet", "--count", str(options.count), "--first", str(1 + number * options.count),
                     "--broker", f"mqtt://127.0.0.1:{port}", "--broker-credentials", credentials,
                     "--states", folder / f"states{number}"]))
                words += ["--watch", f"fleet_{number + 1}={fleets[-1].pid}",
                          "--watch", f"node_{number + 1}={cluster.nodes[number].process.pid}"]
            if options.page:
                words += ["--page", options.page]
            return subprocess.run(
                [hgagent, "fleet", "drive", "--broker", f"mqtt://127.0.0.1:{cluster.ports[0]}", "--broker-credentials",
                 credentials, "--count", str(NODES * options.count), "--rate", options.rate, "--for", options.time,
                 *words], check=False).returncode
        finally:
            for fleet in fleets:
                fleet.terminate()
            for fleet in fleets:
                fleet.wait()
            cluster.close()


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Takes the picture of docs/linux_gateway.md: the console of a gateway in network namespaces, with three hosts of which
one is blocked. It needs Chromium and pngquant.
"""
import argparse
import os
import pathlib
import subprocess
import sys
import tempfile
import threading

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.append(str(ROOT / "tests/linux_gateway"))

import namespaces  # noqa: E402
import network  # noqa: E402
from network import until  # noqa: E402

NAMES = ("workshop-pc", "living-room-tv", "Jonas-Tablet")


def start_service(home, build, folder):
    """The address of the console, with its token."""
    configuration = folder / "linux_gateway.toml"
    configuration.write_text(f'lease_file = "{home.leases}"\ndnsmasq_configuration = "{home.configuration}"\n'
                             f'state = "{folder}/state.json"\n', encoding="ascii")
    environment = {**os.environ, "LINUX_GATEWAY_CONFIG": str(configuration), "XDG_RUNTIME_DIR": str(folder)}
    service = home.gateway.start([str(build / "bin/hgagent"), "--device", str(build / "lib/liblinux_gateway.so"), "run",
                                  "--socket", str(folder / "socket"), "--console", "127.0.0.1:8080"],
                                 env=environment, stderr=subprocess.PIPE, text=True)
    lines = []
    threading.Thread(target=lambda: lines.extend(service.stderr), daemon=True).start()
    address = until(lambda: next((line.split(" is in ")[1].strip() for line in lines if " is in " in line), None),
                    "the console")
    until(lambda: any("listening on unix:" in line for line in lines), "the socket")
    return pathlib.Path(address).read_text(encoding="ascii").strip()


def main(build, file):
    namespaces.enter()
    build = pathlib.Path(build).resolve()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        home = network.Network(folder, clients=len(NAMES))
        for client, host in zip(home.clients, NAMES):
            home.lease(client, host)
        address = start_service(home, build, folder)
        for command in (["SET_HG_BASE_INFO", "Name=Lindenhof"],
                        ["SET_ATTACH_DEVICE_RIGHT", f"MAC={home.clients[2].mac.upper()}", "InternetAccessRight=DENY"]):
            home.gateway.run([str(build / "bin/hgagent"), "call", "--socket", str(folder / "socket"), *command])
        home.gateway.run(["chromium", "--headless=new", "--no-sandbox", "--disable-gpu", f"--user-data-dir={folder}/browser",
                          "--hide-scrollbars", "--window-size=1280,710", "--virtual-time-budget=20000", f"--screenshot={folder}/shot.png",
                          address])
        subprocess.run(["pngquant", "--force", "--speed", "1", "--strip", "--output", file, "48", folder / "shot.png"],
                       check=True)
        home.close()


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", help="folder of a build")
    parser.add_argument("file", help="the picture, PNG")
    arguments = parser.parse_args()
    main(arguments.build, arguments.file)

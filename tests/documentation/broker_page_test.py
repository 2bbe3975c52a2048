# SPDX-License-Identifier: MIT
"""Does what the section "On a broker" shows, as it is written, on a broker of its own.

usage: broker_page_test.py PAGE HGAGENT

Only the port is another one than that of the page.
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests/broker"), str(ROOT / "tests/documentation")]

import brokers  # noqa: E402
from outputs_test import pattern_of  # noqa: E402

PAGE_PORT = "1883"


def shown_in(page):
    """Each command of the section, with the lines that it prints."""
    section = page.read_text(encoding="utf-8").split("\n## On a broker")[1].split("\n## ")[0]
    for block in re.findall(r"^```\n(.*?)^```", section, re.M | re.S):
        for part in re.split(r"^\$ ", block, flags=re.M)[1:]:
            command, *output = part.splitlines()
            yield command, output


def start_service(hgagent, command, output, folder, port):
    """The service, as soon as it has written what is shown."""
    command = command.replace("localhost", f"localhost:{port}")
    environment = {**os.environ, "XDG_RUNTIME_DIR": folder, "SIMULATED_GATEWAY_TIME": "1767225600"}
    service = subprocess.Popen([hgagent, *command.split()[1:]], stderr=subprocess.PIPE, text=True, env=environment)
    for line in output:
        wanted = line.replace("/run/user/1000", folder).replace(f":{PAGE_PORT}", f":{port}")
        read = service.stderr.readline().rstrip("\n")
        if read != wanted:
            service.terminate()
            service.wait()
            sys.exit(f"{command}\nprints\n{read}\ninstead of\n{wanted}")
    return service


def main(page, hgagent):
    wrong = number = 0
    service = None
    with tempfile.TemporaryDirectory() as folder:
        broker = brokers.Mosquitto(pathlib.Path(folder) / "broker")
        try:
            for command, output in shown_in(pathlib.Path(page)):
                if command.startswith("hgagent run --broker"):
                    service = start_service(hgagent, command, output, folder, broker.port.number)
                    number += 1
                elif command.startswith("mosquitto_"):
                    tool, rest = command.split(" ", 1)
                    run = subprocess.run(["bash", "-c", f"{tool} -p {broker.port.number} {rest}"], text=True,
                                         capture_output=True, check=False)
                    number += 1
                    printed = "".join(line + "\n" for line in run.stdout.splitlines() if line)
                    wanted = pattern_of(output) if output else re.compile("")
                    if run.returncode != 0 or not wanted.fullmatch(printed):
                        wrong += 1
                        print(f"{command}\nprints\n{printed}{run.stderr}instead of\n" + "\n".join(output))
        finally:
            if service is not None:
                service.terminate()
                service.wait()
                service.stderr.close()
            broker.close()
    print(f"{number} commands")
    return 1 if wrong or number < 5 else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))

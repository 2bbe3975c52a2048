#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The client in docs/socket.md, as written there, and socat talk to a service: documented_client_test.py PAGE HGAGENT"""
import pathlib
import re
import subprocess
import sys
import tempfile

page, hgagent = sys.argv[1:]
client = re.search(r"```python\n(.*?)```", pathlib.Path(page).read_text(), re.S).group(1)
assert len([line for line in client.splitlines() if line.strip()]) <= 10, "it is longer than ten lines"

with tempfile.TemporaryDirectory() as folder:
    path = folder + "/s.sock"
    service = subprocess.Popen([hgagent, "run", "--socket", path], stderr=subprocess.PIPE, text=True)
    try:
        assert service.stderr.readline() == f"listening on unix:{path}\n"
        told = subprocess.run([sys.executable, "-c", client, path, "GET_SN_INFO", "SET_WIFI_INFO", "GET_SN"],
                              capture_output=True, text=True, check=False)
        assert told.stdout == "GET_SN_INFO 0\nSET_WIFI_INFO 1\nGET_SN {'id': 2, 'result': -3, 'reply': {}}\n", told
        told = subprocess.run(["socat", "-t60", "-", "UNIX-CONNECT:" + path], check=True, text=True,
                              input='{"id":1,"command":"GET_SN_INFO"}\n', capture_output=True)
        assert told.stdout.startswith('{"id":1,"result":0,"reply":{"Status":"0"'), told
    finally:
        service.terminate()
        assert service.wait() == 0

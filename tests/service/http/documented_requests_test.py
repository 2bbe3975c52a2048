#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The requests in docs/console.md, as printed there: documented_requests_test.py HGAGENT PAGE"""
import os
import pathlib
import re
import subprocess
import sys
import unittest

from http_service import Service

PAGE = sys.argv.pop(1)


class Documented(unittest.TestCase):
    def test_requests_by_curl(self):
        text = pathlib.Path(PAGE).read_text(encoding="utf-8").split("## HTTP for programs")[1]
        script = re.search(r"```sh\n(.*?)```", text, re.S).group(1)
        service = Service()
        self.addCleanup(service.close)
        (service.folder / "hgagent.console").write_text((service.folder / "s.console").read_text())
        (service.folder / "image.bin").write_text("an image")
        begin, *requests = re.split(r"^(?=curl )", script, flags=re.M)
        answers = []
        for request in requests:
            ended = subprocess.run(["bash", "-c", begin + request], check=False, capture_output=True, text=True, cwd=service.folder,
                                   env={**os.environ, "XDG_RUNTIME_DIR": str(service.folder)})
            self.assertEqual(ended.returncode, 28 if "--max-time" in request else 0, request + ended.stderr)
            answers.append(ended.stdout)
        session, sn_info, wifi, changed, topology, image, metrics, events = answers
        self.assertIn('"role":"owner"', session)
        self.assertIn('"result":0,"reply":{"Status":"0","MAC"', sn_info)
        self.assertNotIn("***", wifi)
        for answer in (wifi, changed, topology):
            self.assertIn('"result":0', answer)
        self.assertIn('"Status":"0"', changed)
        self.assertIn('"size":8', image)
        self.assertIn('command="GET_SN_INFO",result="success"', metrics)
        self.assertEqual(events, "")


if __name__ == "__main__":
    unittest.main()

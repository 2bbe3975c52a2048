#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""hgagent fleet campaign: waves, and the end of a campaign that fails."""
import functools
import http.server
import pathlib
import subprocess
import sys
import threading

import fake_gateways
import platform_case

sys.path.insert(0, str(platform_case.PROJECT / "tests/fleet"))
import fleets  # noqa: E402  (in the folder that has just been added)


class QuietFiles(http.server.SimpleHTTPRequestHandler):
    def log_message(self, format, *args):  # pylint: disable=redefined-builtin
        """Nothing is logged."""


class CampaignTest(platform_case.PlatformCase):
    def campaign(self, broker, prefix, *words, **more):
        return self.start(broker, prefix, "campaign", "--url", "http://127.0.0.1:1/new.image", "--firmware",
                          fake_gateways.NEW_FIRMWARE, "--rate", "100", *words, count=20, **more)

    def test_waves(self):
        broker = self.broker()
        fakes = self.fakes(broker, "good", "broken", "lazy", count=20)
        running = [self.campaign(broker, "good"), self.campaign(broker, "lazy", "--waves", "100", "--repeat", "0.3"),
                   self.campaign(broker, "broken", "--waves", "20,100", "--stop-at", "20")]
        good, lazy, broken = (one.end() for one in running)
        self.assertEqual(good.status, 0, good.out + good.err)
        self.assertEqual([(wave["gateways"], wave["updated"], wave["failed"]) for wave in good.report["waves"]],
                         [(1, 1, 0), (1, 1, 0), (18, 18, 0)])
        self.assertIn("20 of 20 gateways run V9.9.9", good.out)
        self.assertEqual(lazy.status, 0, lazy.out + lazy.err)
        self.assertEqual(broken.status, 1, broken.out + broken.err)
        self.assertTrue(broken.report["stopped"])
        # Nobody beyond the wave that failed has been touched.
        begun = sum(wave["updated"] + wave["failed"] for wave in broken.report["waves"])
        self.assertEqual(broken.report["not_started"], 20 - begun)
        self.assertLess(begun, 20)
        self.assertEqual(broken.report["reasons"], {"the flash is full": broken.report["waves"][0]["failed"]})
        updated = sum(gateway.firmware == fake_gateways.NEW_FIRMWARE
                      for name, gateway in fakes.gateways.items() if name.startswith("broken-"))
        self.assertEqual(updated, broken.report["waves"][0]["updated"])

    @platform_case.long
    def test_simulated_gateways(self):
        """With an image that they download, check and install."""
        images = self.folder / "images"
        images.mkdir()
        subprocess.run([pathlib.Path(platform_case.HGAGENT).with_name("hg-mkimage"), "--product", "HGU-AX3000", "--version",
                        "V9.9.9", "--size", "200000", images / "new.image"], check=True, stdout=subprocess.DEVNULL)
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), functools.partial(QuietFiles, directory=str(images)))
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        broker = self.broker()
        fleet = fleets.Fleet(platform_case.HGAGENT, self.folder, broker, 20, "--states", self.folder / "states",
                             before=["--reboot-seconds", "1"])
        self.addCleanup(fleet.close)
        fleet.await_up()
        words = ["campaign", "--url", f"http://127.0.0.1:{server.server_port}/new.image", "--waves", "10,100"]
        good = self.start(broker, "home", *words, "--firmware", "V9.9.9", count=20).end()
        self.assertEqual(good.status, 0, good.out + good.err)
        self.assertEqual([(wave["gateways"], wave["updated"]) for wave in good.report["waves"]], [(2, 2), (18, 18)])
        # The image has another version than the campaign says.
        wrong = self.start(broker, "home", *words, "--firmware", "V9.9.8", "--within", "1s", count=20).end()
        self.assertEqual(wrong.status, 1, wrong.out + wrong.err)
        self.assertTrue(wrong.report["stopped"])

    @platform_case.long
    def test_version_that_never_runs(self):
        broker = self.broker()
        self.fakes(broker, "good", count=20)
        one = self.start(broker, "good", "campaign", "--url", "http://127.0.0.1:1/x", "--firmware", "V0", "--waves", "10",
                         "--within", "1s", count=20).end()
        self.assertEqual(one.status, 1, one.out + one.err)
        self.assertEqual(one.report["reasons"], {"the version does not run in time, although it is flashed": 2})

    def test_wrong_usage(self):
        good = ["--broker", "mqtt://127.0.0.1:1", "--count", "1", "--url", "http://127.0.0.1/", "--firmware", "V1"]
        for waves in ("", "0", "10,10", "10,5", "101", "a", "1,,2"):
            with self.subTest(waves):
                one = self.run_words("campaign", *good, "--waves", waves)
                self.assertEqual(one.status, 2, one.err)


if __name__ == "__main__":
    platform_case.main()

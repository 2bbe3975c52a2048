# SPDX-License-Identifier: MIT
"""TLS: which brokers the gateway talks to, and with which certificates."""
import subprocess

import brokers
import case


def openssl(*words):
    subprocess.run(["openssl", *map(str, words)], check=True, capture_output=True)


class TlsTest(case.BrokerCase):
    def authority(self, name):
        openssl("req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-days", "2",
                "-subj", f"/CN={name}", "-keyout", self.folder / f"{name}.key", "-out", self.folder / f"{name}.crt")
        return name

    def certificate(self, name, authority, names="DNS:localhost,IP:127.0.0.1", days=2):
        """A key and a certificate; negative days: it has expired."""
        key, request, made = (self.folder / f"{name}.{end}" for end in ("key", "csr", "crt"))
        extensions = self.folder / f"{name}.ext"
        extensions.write_text(f"subjectAltName={names}\n", encoding="ascii")
        openssl("req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes", "-subj", f"/CN={name}",
                "-keyout", key, "-out", request)
        openssl("x509", "-req", "-in", request, "-CA", self.folder / f"{authority}.crt", "-CAkey",
                self.folder / f"{authority}.key", "-set_serial", "1", "-days", days, "-extfile", extensions, "-out", made)
        return key, made

    def broker(self, key, certificate, *lines):
        return self.mosquitto(listener="\n".join([f"certfile {certificate}", f"keyfile {key}", *lines]))

    def secure(self, broker, *options, host="localhost", authority="ours", connected=True, **more):
        return self.service("--broker", f"mqtts://{host}:{broker.port.number}", "--id", "gw", "--trust",
                            "--broker-ca", self.folder / f"{authority}.crt", *options, connected=connected, **more)

    def check_refused(self, running, *words):
        """It reports why, goes on, and ends by SIGTERM."""
        line = running.await_line("cannot connect to mqtts://")
        self.assertTrue(not words or any(word in line for word in words), line)
        self.assertEqual(running.ask('{"id":1,"command":"GET_SN_INFO"}')["result"], 0)
        self.assertEqual(running.end(), 0)
        self.assertFalse([one for one in running.lines if one.startswith("connected to mqtt")])

    def test_trusted_authority(self):
        self.authority("ours")
        broker = self.broker(*self.certificate("broker", "ours"))
        self.secure(broker)
        self.assertIn("p5", broker.log())

    def test_expired_certificate(self):
        self.authority("ours")
        broker = self.broker(*self.certificate("broker", "ours", days=-1))
        self.check_refused(self.secure(broker, connected=False), "expired")

    def test_foreign_authority(self):
        self.authority("ours")
        self.authority("theirs")
        broker = self.broker(*self.certificate("broker", "theirs"))
        self.check_refused(self.secure(broker, connected=False), "certificate")

    def test_certificate_for_another_name(self):
        self.authority("ours")
        broker = self.broker(*self.certificate("broker", "ours", names="DNS:other.test"))
        self.check_refused(self.secure(broker, connected=False), "certificate", "name")

    def test_old_version_of_tls(self):
        self.authority("ours")
        key, certificate = self.certificate("broker", "ours")
        port = brokers.Port()
        self.addCleanup(port.close)
        server = subprocess.Popen(
            ["openssl", "s_server", "-accept", f"127.0.0.1:{port.number}", "-tls1_1", "-cipher", "DEFAULT@SECLEVEL=0",
             "-key", key, "-cert", certificate, "-quiet"],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

        def end():
            server.kill()
            server.wait()
        self.addCleanup(end)
        port.await_listener(server)
        self.check_refused(self.service("--broker", f"mqtts://localhost:{port.number}", "--id", "gw", "--trust",
                                        "--broker-ca", self.folder / "ours.crt", connected=False))

    def test_client_certificate(self):
        self.authority("ours")
        key, certificate = self.certificate("gateway", "ours")
        key.chmod(0o600)
        broker = self.broker(*self.certificate("broker", "ours"), f"cafile {self.folder}/ours.crt",
                             "require_certificate true", "use_identity_as_username true")
        self.secure(broker, "--broker-certificate", certificate, "--broker-key", key)
        self.assertIn("u'gateway'", broker.log())
        without = self.secure(broker, name="without", connected=False)
        self.check_refused(without)

    def test_no_pass_phrase_is_asked_for(self):
        """Without a terminal, OpenSSL would take it from standard input."""
        self.authority("ours")
        key, certificate = self.certificate("gateway", "ours")
        locked = self.folder / "locked.key"
        openssl("pkey", "-aes256", "-passout", "pass:secret", "-in", key, "-out", locked)
        with subprocess.Popen([case.HGAGENT, "run", "--socket", self.folder / "s", "--broker", "mqtts://localhost:1",
                               "--id", "gw", "--trust", "--broker-certificate", certificate, "--broker-key", locked],
                              stdin=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                              start_new_session=True) as process:
            process.stdin.write("secret\n")
            process.stdin.close()
            while "cannot" not in (line := process.stderr.readline()):
                self.assertTrue(line, "the service has ended")
            if not line.startswith(f"hgagent: cannot read {locked}"):
                process.kill()
        self.assertEqual(process.returncode, 4, line)


if __name__ == "__main__":
    case.main()

# SPDX-License-Identifier: MIT
"""Does what the page docs/linux_gateway.md shows, as it is written, on a machine with two ports: its files, its
commands and their outputs.

Two programs are stand-ins: systemctl, and apt-get, which takes the files of the build, or of the folder of packages that
PACKAGES names.
"""
import contextlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import case
import namespaces
import network
from agent import Agent
from network import until

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / "tests/documentation"))

from outputs_test import pattern_of  # noqa: E402

PAGE = ROOT / "docs/linux_gateway.md"
BROKER = "203.0.113.20"
HOSTS = (("laptop", "02:00:5e:10:00:01"), ("phone", "02:00:5e:10:00:02"))


def steps(section):
    """The files and commands of a section: ("file", path, text), or (prompt, command, lines of output)."""
    text = PAGE.read_text(encoding="utf-8").split(f"\n## {section}\n")[1].split("\n## ")[0]
    for path, block in re.findall(r"(?:^`(/[^`]+)`:\n\n)?^```\n(.*?)^```", text, re.M | re.S):
        if path:
            yield "file", path, block
            continue
        for part in re.split(r"^(?=[$#] )", block, flags=re.M)[1:]:
            command, *output = part.splitlines()
            yield command[0], command[2:], output


class PageTest(unittest.TestCase):
    def setUp(self):
        if not namespaces.may_change_users():
            self.skipTest("the page is for root, whose files it writes over, in a folder that every user may enter")
        self.stack = self.enterContext(contextlib.ExitStack())
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.folder.chmod(0o755)
        self.purge()
        self.machines = {}
        for name in ("gateway", "internet", "switch", *(name for name, mac in HOSTS)):
            self.machines[name] = network.Namespace(name)
            self.stack.callback(self.machines[name].close)
        # A switch that is no host itself.
        self.machines["switch"].run("sysctl -qw net.ipv6.conf.all.disable_ipv6=1 net.ipv6.conf.default.disable_ipv6=1")
        self.connect_machines()
        self.start_internet()
        self.install_stand_ins()

    def purge(self):
        """The page is for a machine that has not had the packages: what an earlier use of this one left goes, in what is
        mounted over its folders."""
        for package in ("linux-gateway", "hgagent"):
            subprocess.run([ROOT / "packaging/debian" / package / "postrm", "purge"], check=True,
                           env={**os.environ, "DPKG_ROOT": "/"})

    def connect_machines(self):
        self.cable("gateway", "enp1s0", "internet", "eth0")
        self.cable("gateway", "enp2s0", "switch", "uplink")
        switch = self.machines["switch"]
        # One that watches multicast joins a group, and is seen as a host.
        switch.run("ip link add sw type bridge forward_delay 0 mcast_snooping 0")
        switch.run("ip link set sw up")
        switch.run("ip link set uplink master sw")
        for name, mac in HOSTS:
            self.cable("switch", name, name, "eth0", mac)
            switch.run(f"ip link set {name} master sw")
        for machine, device in (("gateway", "enp1s0"), ("gateway", "enp2s0")):
            self.machines[machine].run(f"ip link set {device} down")

    def cable(self, first, device, second, other, mac=None):
        subprocess.run(["ip", "link", "add", device, "netns", first, "type", "veth", "peer", "name", other,
                        *(["address", mac] if mac else []), "netns", second], check=True)
        self.machines[first].run(f"ip link set {device} up")
        self.machines[second].run(f"ip link set {other} up")

    def start_internet(self):
        """Addresses for the uplink, names, a server, and the broker with TLS."""
        internet = self.machines["internet"]
        for address in (network.NAME_SERVER, network.SERVER, BROKER, network.PING_TARGET):
            internet.run(f"ip address add {address}/32 dev lo")
        internet.run(f"ip address add {network.WAN_GATEWAY}/24 dev eth0")
        folder = pathlib.Path("/etc/netns/internet")
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "resolv.conf").write_text(f"nameserver {network.NAME_SERVER}\n", encoding="ascii")
        with (self.folder / "internet.log").open("w", encoding="utf-8") as log:
            internet.start(["dnsmasq", "--keep-in-foreground", "--log-facility=-", "--user=root", "--group=",
                            "--conf-file=/dev/null", "--no-resolv", "--no-hosts", "--no-ping", "--dhcp-authoritative",
                            f"--pid-file={self.folder}/dnsmasq.pid", f"--dhcp-leasefile={self.folder}/internet.leases",
                            "--dhcp-range=198.51.100.50,198.51.100.99,1h",
                            f"--dhcp-option=option:dns-server,{network.NAME_SERVER}",
                            f"--address=/broker.example/{BROKER}"], stderr=log)
        self.make_certificates()
        (self.folder / "broker-password").write_text("home-17\nsecret of the gateway\n", encoding="ascii")
        (self.folder / "platform-password").write_text("platform\nsecret of the platform\n", encoding="ascii")
        for name in ("broker-password", "platform-password"):
            (self.folder / name).chmod(0o600)
        subprocess.run(["mosquitto_passwd", "-c", "-b", self.folder / "users", "home-17", "secret of the gateway"], check=True)
        subprocess.run(["mosquitto_passwd", "-b", self.folder / "users", "platform", "secret of the platform"], check=True)
        (self.folder / "mosquitto.conf").write_text(
            f"user root\nlistener 8883 {BROKER}\ncertfile {self.folder}/broker.pem\nkeyfile {self.folder}/broker.key\n"
            f"password_file {self.folder}/users\nallow_anonymous false\nset_tcp_nodelay true\n", encoding="ascii")
        with (self.folder / "mosquitto.log").open("w", encoding="utf-8") as log:
            internet.start(["mosquitto", "-c", str(self.folder / "mosquitto.conf")], stderr=log, stdout=log)

    def make_certificates(self):
        def openssl(*words):
            subprocess.run(["openssl", *words], cwd=self.folder, check=True, capture_output=True)

        key = ("-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256", "-nodes")
        openssl("req", "-x509", *key, "-keyout", "ca.key", "-out", "broker-ca.pem", "-subj", "/CN=authority", "-days", "9")
        openssl("req", *key, "-keyout", "broker.key", "-out", "broker.csr", "-subj", "/CN=broker.example")
        (self.folder / "names").write_text("subjectAltName=DNS:broker.example", encoding="ascii")
        openssl("x509", "-req", "-in", "broker.csr", "-CA", "broker-ca.pem", "-CAkey", "ca.key", "-CAcreateserial", "-days",
                "9", "-extfile", "names", "-out", "broker.pem")

    def install_stand_ins(self):
        subprocess.run(["hostname", "gateway"], check=True)
        self.stand_ins = self.folder / "stand_ins"
        self.stand_ins.mkdir()
        shutil.copy(ROOT / "tests/linux_gateway/systemctl.py", self.stand_ins / "systemctl")
        script = self.stand_ins / "apt-get"
        script.write_text(f"#!/bin/sh\nexec {sys.executable} -B {__file__} apt-get {Agent.HGAGENT} \"$@\"\n", encoding="ascii")
        script.chmod(0o755)
        for path in ("/etc/dnsmasq.d", "/var/lib/misc", "/var/lib/dhcp", "/run/network", "/etc/network"):
            pathlib.Path(path).mkdir(parents=True, exist_ok=True)
        for name in ("smart-router-service", "hgagent", "linux-gateway"):
            (self.folder / f"{name}_1_all.deb").touch()

    def follow(self, section):
        """Does what the section shows, and compares what it prints."""
        done = 0
        for kind, what, rest in steps(section):
            done += 1
            if kind == "file":
                path = pathlib.Path(what)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(rest, encoding="utf-8")
                continue
            machine = self.machines["gateway" if kind == "#" else "internet"]
            if "topology" in what:
                self.lease_all()
            if "mqtt-call" in what or "topology" in what:
                self.await_broker()
            ran = subprocess.run(machine.words(["bash", "-c", what]), cwd=self.folder, text=True, capture_output=True,
                                 check=False, env={**os.environ, "PATH": f"{self.stand_ins}:{os.environ['PATH']}",
                                                   "ASAN_OPTIONS": "verify_asan_link_order=0"})
            self.assertEqual(ran.returncode, 0, f"{what}\n{ran.stdout}{ran.stderr}{self.logs()}")
            if rest:
                self.assertRegex(ran.stdout, re.compile(rf"\A{pattern_of(rest).pattern}\Z"), f"{what}{self.logs()}")
        return done

    def logs(self):
        return "".join(f"\n{path}:\n{path.read_text(encoding='utf-8', errors='replace')[-3000:]}"
                       for path in [*pathlib.Path("/run").glob("*.log"), *self.folder.glob("*.log")])

    def lease_all(self):
        script = self.folder / "lease.sh"
        script.write_text(network.DHCP_SCRIPT, encoding="ascii")
        script.chmod(0o755)
        for name, mac in HOSTS:
            self.machines[name].run(["busybox", "udhcpc", "-q", "-n", "-f", "-t", "20", "-T", "1", "-i", "eth0", "-s",
                                     str(script), "-x", f"hostname:{name}"])

    def await_broker(self):
        log = pathlib.Path("/run/hgagent.log")
        until(lambda: log.exists() and "connected to mqtt" in log.read_text(encoding="utf-8", errors="replace"),
              f"the broker {self.logs()}")

    def kernel(self):
        gateway = self.machines["gateway"]
        return gateway.run("nft -s list ruleset"), gateway.run("tc qdisc show")

    def traces(self):
        """Files of the project, in what was written over the system's folders."""
        return sorted(str(path) for path in pathlib.Path("/run/changed").glob("*/upper/**/*")
                      if re.search(r"hgagent|linux.gateway|smart.router", str(path)) and not path.is_char_device())

    def call(self, command, **parameters):
        return self.machines["gateway"].run(["hgagent", "call", "--socket", "/run/hgagent.sock", command,
                                             *(f"{key}={value}" for key, value in parameters.items())])

    def test_the_page(self):
        self.assertEqual(self.traces(), [])
        done = self.follow("In twenty minutes")
        laptop, phone = (self.machines[name] for name, mac in HOSTS)
        self.assertTrue(laptop.reaches(network.SERVER))
        before = self.kernel()
        self.call("SET_ATTACH_DEVICE_RIGHT", MAC=HOSTS[0][1].upper(), InternetAccessRight="DENY")
        self.call("SET_AD_BASE_INFO", MAC=HOSTS[1][1].upper(), DevType="Phone", ByName="Anna", AccessEnable="1",
                  DownLimit="20000", SpeedLimit="1")
        self.assertTrue(laptop.misses(network.SERVER))
        self.assertTrue(phone.reaches(network.SERVER))
        self.assertNotEqual(self.kernel(), before)
        self.assertNotEqual(self.traces(), [])
        done += self.follow("Removing it")
        self.assertEqual(self.kernel(), before)
        self.assertTrue(laptop.reaches(network.SERVER))
        self.assertEqual(self.traces(), [])
        print(f"{done} steps")
        self.assertGreater(done, 15)


def build_folder(hgagent):
    return pathlib.Path(hgagent).parents[1]


def apt_get(hgagent, words):
    """Installs and removes the project's packages; those of Debian are there."""
    build = build_folder(hgagent)
    packages = os.environ.get("PACKAGES")
    names = ("smart-router-service", "hgagent", "linux-gateway")
    if "install" in words:
        if packages:
            subprocess.run(["dpkg", "--install", *(str(next(pathlib.Path(packages).glob(f"{name}_*.deb"))) for name in names)],
                           check=True)
            return
        for path, target in installed(build):
            path.parent.mkdir(parents=True, exist_ok=True)
            if target.name.endswith(".service"):
                text = re.sub(r"(?<==)/\S*/hgagent ", "/usr/bin/hgagent ", target.read_text(encoding="utf-8"))
                text = re.sub(r"(?<=--device=)\S*", str(build / "lib/liblinux_gateway.so"), text)
                path.write_text(re.sub(r"/\S*/etc/", "/etc/", text), encoding="utf-8")
            else:
                path.symlink_to(target)
    elif packages:
        subprocess.run(["dpkg", "--purge", *reversed(names)], check=True)
    else:
        scripts = ROOT / "packaging/debian/linux-gateway"
        subprocess.run([str(scripts / "prerm"), "remove"], check=True)
        for path, target in installed(build):
            path.unlink()
        pathlib.Path("/usr/share/doc/linux-gateway").rmdir()
        subprocess.run([str(scripts / "postrm"), "purge"], check=True)


def installed(build):
    yield pathlib.Path("/usr/bin/hgagent"), build / "bin/hgagent"
    for unit in ("hgagent.service", "hgagent.socket", "linux-gateway.service", "linux-gateway.socket"):
        yield pathlib.Path("/usr/lib/systemd/system", unit), build / "packaging/systemd" / unit
    yield pathlib.Path("/usr/lib/sysusers.d/hgagent.conf"), ROOT / "packaging/systemd/sysusers.conf"
    yield pathlib.Path("/usr/share/doc/linux-gateway/examples"), ROOT / "examples/linux_gateway"


if __name__ == "__main__":
    if sys.argv[1] == "apt-get":
        apt_get(sys.argv[2], sys.argv[3:])
    else:
        case.main(("/etc", "/usr", "/var"))

# SPDX-License-Identifier: MIT
"""A home and its uplink in network namespaces: a gateway with a bridge and dnsmasq, clients, and the Internet.

    client1 eth0 --- lan1 \
    client2 eth0 --- lan2 - br-lan  gateway  wan0 --- eth0 internet
"""
import contextlib
import pathlib
import re
import shlex
import subprocess
import time

BRIDGE = "br-lan"
WAN = "wan0"
LAN_ADDRESS, LAN_ADDRESS6 = "192.168.8.1", "2001:db8:8::1"
WAN_ADDRESS, WAN_ADDRESS6 = "198.51.100.2", "2001:db8:100::2"
WAN_GATEWAY, WAN_GATEWAY6 = "198.51.100.1", "2001:db8:100::1"
SERVER, SERVER6 = "203.0.113.10", "2001:db8:ff::10"  # somewhere in the Internet
NAME_SERVER = "203.0.113.53"
PING_TARGET = "8.8.8.8"  # of the plug-in
USERS_RULES = """
table ip nat {
    chain postrouting {
        type nat hook postrouting priority srcnat;
        oifname "wan0" masquerade
    }
}
"""
DNSMASQ = """interface={bridge}
bind-interfaces
except-interface=lo
no-resolv
no-hosts
no-ping
dhcp-authoritative
dhcp-leasefile={leases}
dhcp-range=192.168.8.100,192.168.8.249,255.255.255.0,1h
dhcp-range=::,constructor:{bridge},ra-only
"""
DHCP_SCRIPT = """#!/bin/sh
case $1 in
    bound|renew)
        ip -4 address flush dev "$interface" scope global
        ip address add "$ip/$mask" dev "$interface"
        ip route replace default via "${router%% *}"
        ;;
esac
"""


def until(condition, what, every=0.02):
    """Waits until the condition holds; CTest ends a test that waits in vain."""
    since = time.monotonic()
    said = False
    while not (result := condition()):
        if not said and time.monotonic() - since > 30:
            print(f"still waiting for {what}", flush=True)
            said = True
        time.sleep(every)
    return result


class Namespace:
    """A machine: a network namespace with its own processes."""

    def __init__(self, name, mac=None):
        self.name = name
        self.mac = mac
        self.started = []
        subprocess.run(["ip", "netns", "add", name], check=True)
        self.run("sysctl -qw net.ipv6.conf.default.accept_dad=0 net.ipv6.conf.default.router_solicitation_delay=0")
        self.run("ip link set lo up")

    def words(self, command):
        return ["ip", "netns", "exec", self.name, *(shlex.split(command) if isinstance(command, str) else command)]

    def run(self, command, check=True, **more):
        """What the command prints."""
        result = subprocess.run(self.words(command), stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                check=False, **more)
        if check and result.returncode != 0:
            raise RuntimeError(f"{self.name}: {command}: {result.stdout}{result.stderr}")
        return result.stdout

    def works(self, command):
        return subprocess.run(self.words(command), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              check=False).returncode == 0

    def start(self, command, **more):
        """A process that ends with the namespace at the latest."""
        process = subprocess.Popen(self.words(command), **more)
        self.started.append(process)
        return process

    def reaches(self, address):
        """Whether the address answers; the first of a few answers counts."""
        return self.works(f"ping -n -c 1 -w 5 {address}")

    def misses(self, address):
        """Whether the address does not answer at once, which is enough where a test waits for it."""
        return not self.works(f"ping -n -c 1 -W 0.3 {address}")

    def address(self, device="eth0", family=4):
        """Its global address, if it has one already."""
        found = re.search(r" inet6? ([0-9a-f.:]+)/",
                          self.run(f"ip -o -{family} address show dev {device} scope global -tentative"))
        return found and found[1]

    def close(self):
        for process in self.started:
            if process.poll() is None:
                process.kill()
            process.wait()
            for pipe in (process.stdin, process.stdout, process.stderr):
                if pipe is not None:
                    with contextlib.suppress(OSError):
                        pipe.close()
        subprocess.run(["ip", "netns", "delete", self.name], check=True)


class Network:
    def __init__(self, folder, clients=2, bridge=BRIDGE, rules=USERS_RULES, served=True):
        self.folder = pathlib.Path(folder)
        self.folder.chmod(0o755)
        self.bridge = bridge
        self.leases = self.folder / "dnsmasq.leases"
        self.configuration = self.folder / "dnsmasq.conf"
        self.stack = contextlib.ExitStack()
        try:
            # `ip netns exec` puts the files of this folder in the place of those in /etc.
            etc = pathlib.Path("/etc/netns/gateway")
            etc.mkdir(parents=True, exist_ok=True)
            (etc / "resolv.conf").write_text(f"nameserver {NAME_SERVER}\n", encoding="ascii")
            self.gateway = self.machine("gateway")
            self.internet = self.machine("internet")
            self.connect_internet()
            self.gateway.run(f"ip link add {bridge} type bridge forward_delay 0")
            self.gateway.run(f"ip address add {LAN_ADDRESS}/24 dev {bridge}")
            self.gateway.run(f"ip address add {LAN_ADDRESS6}/64 dev {bridge} nodad")
            self.gateway.run(f"ip link set {bridge} up")
            self.gateway.run("sysctl -qw net.ipv4.ip_forward=1 net.ipv6.conf.all.forwarding=1")
            if rules:
                self.gateway.run("nft -f -", input=rules)
            if served:
                self.start_dnsmasq()
            self.clients = [self.client(number) for number in range(1, clients + 1)]
            if served:
                for client in self.clients:
                    self.lease(client)
        except BaseException:
            self.close()
            raise

    def machine(self, name, mac=None):
        made = Namespace(name, mac)
        self.stack.callback(made.close)
        return made

    def connect_internet(self):
        self.connect(self.internet, "eth0", WAN)
        self.internet.run("ip link set eth0 up")
        for device, machine, address, address6 in ((WAN, self.gateway, WAN_ADDRESS, WAN_ADDRESS6),
                                                   ("eth0", self.internet, WAN_GATEWAY, WAN_GATEWAY6)):
            machine.run(f"ip address add {address}/24 dev {device}")
            machine.run(f"ip address add {address6}/64 dev {device}")
        self.restore_routes()
        for address in (SERVER, NAME_SERVER, PING_TARGET):
            self.internet.run(f"ip address add {address}/32 dev lo")
        self.internet.run(f"ip address add {SERVER6}/128 dev lo")
        self.internet.run(f"ip route add 2001:db8:8::/64 via {WAN_ADDRESS6}")

    def restore_routes(self):
        """The default routes, which go with an address of IPv6 when a cable is unplugged."""
        for gateway in (WAN_GATEWAY, WAN_GATEWAY6):
            self.gateway.run(f"ip route replace default via {gateway}")

    def connect(self, machine, device, port, mac=None):
        """A cable between the gateway and another machine, plugged in at the gateway's end only."""
        subprocess.run(["ip", "link", "add", port, "netns", "gateway", "type", "veth", "peer", "name", device,
                        *(["address", mac] if mac else []), "netns", machine.name], check=True)
        self.gateway.run(f"ip link set {port} up")

    def client(self, number):
        """A machine on port lanNUMBER, without an address yet."""
        mac = f"02:00:5e:10:00:{number:02x}"
        client = self.machine(f"client{number}", mac)
        self.connect(client, "eth0", f"lan{number}", mac)
        self.gateway.run(f"ip link set lan{number} master {self.bridge}")
        client.run("ip link set eth0 up")
        return client

    def start_dnsmasq(self):
        """The DHCP server of the gateway, and a name server in the Internet."""
        self.configuration.write_text(DNSMASQ.format(bridge=self.bridge, leases=self.leases), encoding="ascii")
        self.dnsmasq = self.dnsmasq_of(self.gateway, f"--conf-file={self.configuration}")
        self.dnsmasq_of(self.internet, "--conf-file=/dev/null", "--port=53", f"--listen-address={NAME_SERVER}",
                        "--bind-interfaces", "--no-resolv", "--no-hosts", f"--address=/#/{SERVER}")

    def dnsmasq_of(self, machine, *options):
        path = self.folder / f"dnsmasq.{machine.name}.log"
        with path.open("w", encoding="utf-8") as log:
            process = machine.start(["dnsmasq", "--keep-in-foreground", "--log-facility=-", "--user=root", "--group=",
                                     f"--pid-file={self.folder}/dnsmasq.{machine.name}.pid", *options], stderr=log)
        until(lambda: "started" in path.read_text(encoding="utf-8") or process.poll() is not None, "dnsmasq")
        if process.poll() is not None:
            raise RuntimeError(path.read_text(encoding="utf-8"))
        return process

    def lease(self, client, name=None):
        """A lease of the client under this name, and an address of IPv6 that the gateway announces."""
        script = self.folder / "lease.sh"
        script.write_text(DHCP_SCRIPT, encoding="ascii")
        script.chmod(0o755)
        client.run(["busybox", "udhcpc", "-q", "-n", "-f", "-t", "20", "-T", "1", "-i", "eth0", "-s", str(script), "-x",
                    f"hostname:{name or client.name}"])
        until(lambda: client.address(family=6), "an address of IPv6")
        return client.address()

    def close(self):
        self.stack.close()

#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""systemctl of a machine without systemd: starts what the page starts, as the units say: user, capabilities, sockets,
folders and credentials, without the restrictions that only systemd can set."""
import os
import pathlib
import shlex
import shutil
import signal
import socket
import subprocess
import sys
import time

UNITS = (pathlib.Path("/etc/systemd/system"), pathlib.Path("/usr/lib/systemd/system"),
         pathlib.Path("/usr/local/lib/systemd/system"))
RUNNING = pathlib.Path("/run/running_units")
NOBODY = 65534
HAS_USERS = int(pathlib.Path("/proc/self/uid_map").read_text(encoding="ascii").split()[2]) > NOBODY
# What Debian's own units of these names do.
OTHERS = {
    "networking": "ifdown --all 2>/dev/null; ifup --all",
    "nftables": "nft --file /etc/nftables.conf",
    "dnsmasq": "dnsmasq --user=root --group= --pid-file=/run/dnsmasq.pid --conf-file=/dev/null "
               "--conf-dir=/etc/dnsmasq.d --dhcp-leasefile=/var/lib/misc/dnsmasq.leases",
}


def unit_of(name):
    """Its sections: each key with its values in their order."""
    folder = next(folder for folder in UNITS if (folder / name).exists())
    files = [folder / name, *sorted((UNITS[0] / f"{name}.d").glob("*.conf"))]
    values = {}
    for file in files:
        for line in file.read_text(encoding="utf-8").splitlines():
            key, equals, value = line.partition("=")
            if equals and not line.startswith("#"):
                values.setdefault(key, []).append(value)
    return values


def give(path):
    if HAS_USERS:
        os.chown(path, NOBODY, NOBODY)


def folders(unit, environment):
    for key, parent, variable in (("StateDirectory", "/var/lib", "STATE_DIRECTORY"), ("RuntimeDirectory", "/run",
                                  "RUNTIME_DIRECTORY"), ("LogsDirectory", "/var/log", "LOGS_DIRECTORY")):
        for name in unit.get(key, []):
            path = pathlib.Path(parent, name)
            if key != "RuntimeDirectory" and unit.get("DynamicUser") == ["yes"]:
                real = pathlib.Path(parent, "private", name)
                real.mkdir(parents=True, exist_ok=True)
                real.parent.chmod(0o755)  # systemd mounts it in its place
                give(real)
                if not path.is_symlink():
                    path.symlink_to(f"private/{name}")
            else:
                path.mkdir(parents=True, exist_ok=True)
                give(path)
            environment[variable] = str(path)


def credentials(name, unit):
    for credential in unit.get("LoadCredential", []):
        key, source = credential.split(":")
        folder = pathlib.Path("/run/credentials", name)
        folder.mkdir(parents=True, exist_ok=True)
        copy = folder / key
        shutil.copyfile(source, copy)
        copy.chmod(0o400)
        give(copy)


def rights(unit):
    capabilities = "-all" + "".join(",+" + name.lower().removeprefix("cap_")
                                    for name in " ".join(unit.get("CapabilityBoundingSet", [])).split())
    user = ([f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"] if HAS_USERS
            else ["--securebits=+noroot,+noroot_locked,+no_setuid_fixup,+no_setuid_fixup_locked"])
    return ["setpriv", *user, "--no-new-privs", f"--inh-caps={capabilities}", f"--ambient-caps={capabilities}",
            f"--bounding-set={capabilities}"]


def start(name):
    base = name.split(".")[0]
    if base in OTHERS:
        stop(name)
        subprocess.run(["sh", "-c", OTHERS[base]], check=True)
        return
    socket_unit = f"{base}.socket"
    RUNNING.mkdir(exist_ok=True)
    if name.endswith(".socket"):
        (RUNNING / name).touch()
        if base != "hgagent":
            start(f"{base}.service")  # systemd does so with the first client
        return
    unit = unit_of(name)
    environment = {"PATH": os.environ["PATH"], "ASAN_OPTIONS": "verify_asan_link_order=0"}
    folders(unit, environment)
    credentials(name, unit)
    words = shlex.split(unit["ExecStart"][-1])
    words = [*rights(unit), *words]
    kept = ()
    if (RUNNING / socket_unit).exists():
        path = unit_of(socket_unit)["ListenStream"][0]
        pathlib.Path(path).unlink(missing_ok=True)
        listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        listener.bind(path)
        listener.listen(16)
        give(path)
        os.dup2(listener.fileno(), 3, inheritable=True)
        kept = (3,)
        environment["LISTEN_FDS"] = "1"
        words = ["sh", "-c", 'LISTEN_PID=$$ exec "$@"', "sh", *words]
    with open(f"/run/{base}.log", "ab") as log:
        process = subprocess.Popen(words, env=environment, stdin=subprocess.DEVNULL, stdout=log, stderr=log, pass_fds=kept,
                                   start_new_session=True)
    (RUNNING / name).write_text(str(process.pid), encoding="ascii")


def stop(name):
    running = RUNNING / name
    if name.split(".")[0] == "dnsmasq" and pathlib.Path("/run/dnsmasq.pid").exists():
        running = pathlib.Path("/run/dnsmasq.pid")
    if running.exists() and (number := running.read_text(encoding="ascii").strip()):
        process = pathlib.Path("/proc", number)
        if process.exists():
            os.kill(int(number), signal.SIGTERM)
            while process.exists() and ") Z " not in (process / "stat").read_text(encoding="utf-8"):
                time.sleep(0.02)
    running.unlink(missing_ok=True)


def main(words):
    names = [word for word in words if not word.startswith("-")]
    action, names = names[0], names[1:]
    if action == "daemon-reload":
        return
    if action in ("disable", "stop"):
        for name in names:
            stop(name)
        return
    if action not in ("enable", "start", "restart"):
        sys.exit(f"systemctl: {action} is not known here")
    for name in sorted(names, key=lambda name: not name.endswith(".socket")):
        if action == "restart":
            stop(name)
        start(name)


if __name__ == "__main__":
    main(sys.argv[1:])

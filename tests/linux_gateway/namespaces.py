# SPDX-License-Identifier: MIT
"""The namespaces of a test: everything that it mounts, connects and starts is gone with its process, also after
a kill."""
import os
import pathlib
import subprocess
import sys

SKIPPED = 77
INSIDE = "INSIDE_NAMESPACES"
# What the kernel has to offer.
TRIALS = (
    ("ip link add trial0 type veth peer name trial1", "pairs of network devices (veth)"),
    ("ip link add trial2 type bridge", "bridges"),
    ("nft add table inet trial", "nftables"),
    ("tc qdisc add dev trial0 root handle 1: htb", "HTB queueing"),
)


def skip(reason):
    print(f"skipped: {reason}")
    sys.exit(SKIPPED)


def run(*words, **more):
    return subprocess.run(words, capture_output=True, text=True, check=False, **more)


def enter(folders=("/etc",)):
    """Starts the script again in namespaces of its own, as root there, or skips the test where that is not
    allowed. What it writes to these folders, and to /run, is gone at its end."""
    if INSIDE in os.environ:
        prepare(folders)
        return
    unshare = ["unshare", *(["--user", "--map-root-user"] if os.geteuid() != 0 else []), "--mount", "--net", "--pid", "--uts",
               "--mount-proc", "--fork", "--kill-child"]
    trial = run(*unshare, "true")
    if trial.returncode != 0:
        skip("network namespaces are not allowed here: " + trial.stderr.strip())
    path = os.environ["PATH"] + ":/usr/sbin:/sbin"
    os.execvpe(unshare[0], [*unshare, sys.executable, "-B", *sys.argv], {**os.environ, INSIDE: "1", "PATH": path})


def prepare(folders):
    """Folders that the test may write to, in place of those of the system, and a trial of what it needs."""
    if run("mount", "-t", "tmpfs", "-o", "mode=755", "run", "/run").returncode != 0:
        skip("mounting is not allowed in a namespace here")
    for folder in map(pathlib.Path, folders):
        changed = pathlib.Path("/run/changed") / folder.name
        for name in ("upper", "work"):
            (changed / name).mkdir(parents=True)
        mounted = run("mount", "-t", "overlay", "-o",
                      f"lowerdir={folder},upperdir={changed}/upper,workdir={changed}/work", "overlay", str(folder))
        if mounted.returncode != 0:
            skip(f"the file system of {folder} cannot be put below another one: {mounted.stderr.strip()}")
    for command, what in TRIALS:
        trial = run(*command.split())
        if trial.returncode != 0:
            skip(f"the kernel offers no {what} in a namespace: {trial.stderr.strip()}")


def may_change_users():
    """Whether there are other users than root in the namespace, who may also enter the folder of the project: that of
    root is often closed to them."""
    has_users = int(pathlib.Path("/proc/self/uid_map").read_text(encoding="ascii").split()[2]) > 65534
    return has_users and all(folder.stat().st_mode & 0o001 for folder in pathlib.Path(__file__).resolve().parents)

#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The units under a systemd that runs: boots a bare Debian in namespaces, with the Debian packages, and does what
# docs/service.md shows for systemd.
#
#   boot_test.sh ROOT FOLDER
#
# ROOT is not changed. Needs root, a Debian mirror for the packages' dependencies, and control groups of version 2.
set -euo pipefail
bare=$1
packages=$2

root=$(mktemp -d)
group=$(findmnt --noheadings --list --output TARGET --types cgroup2 | head -n 1)/$(basename "$root")
machine=
end()
{
    if [ -n "$machine" ]; then
        kill -KILL "$machine" || true # and with it what it started; other signals unshare ignores
        wait "$machine" 2>/dev/null || true
    fi
    # The groups of the units, the innermost first. Each is free as soon as the kernel has ended its processes.
    while [ -d "$group" ] && ! find "$group" -depth -type d -exec rmdir {} + 2>/dev/null; do
        sleep 0.1
    done
    rm -rf "$root"
}
trap end EXIT
cp -a "$bare/." "$root"
chmod 755 "$root"
cp /etc/resolv.conf "$root/etc/resolv.conf"
mkdir "$root/new"
cp "$packages"/*.deb "$root/new"
environment=(/usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive)
for words in update 'install adduser libnss-systemd procps systemd-sysv /new/smart-router-service_*.deb /new/hgagent_*.deb'; do
    if ! unshare --mount --pid --fork --kill-child --mount-proc="$root/proc" chroot "$root" "${environment[@]}" \
        sh -c "apt-get --quiet=2 --yes --no-install-recommends -o Dpkg::Use-Pty=0 $words" >"$root/apt.log" 2>&1; then
        cat "$root/apt.log" >&2
        exit 1
    fi
done

# The machine. What systemd mounts for a unit has to reach it: the mounts are shared.
mkdir "$group"
# shellcheck disable=SC2016 # for the shells inside
(
    echo "$BASHPID" >"$group/cgroup.procs"
    exec unshare --mount --pid --ipc --uts --net --cgroup --fork --kill-child bash -ec '
        mount --make-rprivate /
        mount --bind "$1" "$1"
        cd "$1"
        mount -t proc proc proc
        mount -t sysfs sysfs sys
        mount -t tmpfs -o mode=755 tmpfs run
        mount -t tmpfs -o mode=755 tmpfs dev
        for device in null zero full random urandom tty; do
            touch "dev/$device"
            mount --bind "/dev/$device" "dev/$device"
        done
        mkdir dev/shm dev/pts old
        mount -t devpts -o newinstance,ptmxmode=0666 devpts dev/pts
        ln -s pts/ptmx dev/ptmx
        ln -s /proc/self/fd dev/fd
        pivot_root . old
        umount -l old
        mount --make-rshared /
        exec env -i container=boot_test /lib/systemd/systemd --log-target=journal >/dev/null 2>&1
    ' machine "$root"
) &
machine=$!
until init=$(pgrep --parent "$machine") && [ "$(cat "/proc/$init/comm")" = systemd ]; do
    kill -0 "$machine"
    sleep 0.1
done
inside() { nsenter --target "$init" --all --root="/proc/$init/root" --wd="/proc/$init/root" -- "${environment[@]}" "$@"; }
fail()
{
    inside journalctl --no-pager -n 40 >&2 || true
    echo "$1" >&2
    exit 1
}
# expect TEXT COMMAND...: the command succeeds, and prints the text
expect()
{
    local output
    output=$(inside "${@:2}" 2>&1) || fail "$output: ${*:2}"
    [[ $output == *"$1"* ]] || fail "$output, without $1: ${*:2}"
}
until inside systemctl is-system-running --wait >/dev/null 2>&1; do
    kill -0 "$machine"
    [ "$(inside systemctl is-system-running 2>/dev/null)" != degraded ] || fail 'a unit of Debian has failed'
    sleep 0.1
done

inside systemd-sysusers
inside sh -c 'mkdir -p /etc/hgagent && cp /usr/share/doc/hgagent/examples/*.toml /etc/hgagent'
inside useradd alice
inside adduser --quiet alice hgagent
expect '' systemctl --quiet enable --now hgagent.socket
ask=(setpriv --reuid alice --regid alice --init-groups hgagent call --socket /run/hgagent.sock GET_SN_INFO)
expect '"Status":"0"' "${ask[@]}"
expect hgagent-service stat --format=%U /var/lib/private/hgagent
expect '' systemctl reload hgagent.service
expect '"Status":"0"' "${ask[@]}"

# The password for a broker, which only the service may read.
inside sh -c 'printf "gw1\nsecret\n" >/etc/hgagent/broker-password; chmod 600 /etc/hgagent/broker-password
    mkdir /etc/systemd/system/hgagent.service.d
    printf "[Service]\nLoadCredential=broker:/etc/hgagent/broker-password\n" >/etc/systemd/system/hgagent.service.d/broker.conf
    sed -i "s|^\[mqtt\]|&\nbrokers = [\"mqtt://127.0.0.1\"]\nid = \"gw1\"\ncredentials = \"/run/credentials/hgagent.service/broker\"|" \
        /etc/hgagent/hgagent.toml'
# The worker in a unit of its own.
inside sed -i 's|^#* *kind = .*|kind = "unix:/run/hgagent-worker.sock"|' /etc/hgagent/hgagent.toml
inside systemctl daemon-reload
expect '' systemctl --quiet enable --now hgagent-worker.socket
expect '' systemctl restart hgagent.service
expect '"Status":"0"' "${ask[@]}"
expect active systemctl is-active hgagent.service hgagent-worker.service
expect hgagent-worker-service ps --no-headers -o user:30 -p "$(inside systemctl show --property MainPID --value hgagent-worker.service)"
inside systemctl kill --signal KILL hgagent-worker.service
until [ "$(inside "${ask[@]}" 2>/dev/null | head -c 12)" = '{"Status":"0' ]; do
    sleep 0.1
done
echo 'the units start, serve, reload, read their password and restart their worker'

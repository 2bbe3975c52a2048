#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The Debian packages in a bare Debian, with its own dpkg, apt and libraries: installs those of an earlier version, keeps
# a home, installs the current ones over them, runs the service as its documentation says, and purges everything.
#
#   upgrade_test.sh ROOT OLD_FOLDER NEW_FOLDER
#
# ROOT is not changed. Needs root, and a Debian mirror for the packages' dependencies. There is no systemd: the service is
# started as its unit would.
set -euo pipefail
bare=$1
old=$2
new=$3

root=$(mktemp -d)
service=
end()
{
    if [ -n "$service" ]; then # a test has failed
        cat "$root/service.log" >&2
        kill -KILL "$service" || true # and with it what it started; other signals unshare ignores
        wait "$service" || true
    fi
    rm -rf "$root"
}
trap end EXIT
cp -a "$bare/." "$root"
cp /etc/resolv.conf "$root/etc/resolv.conf"
mkdir "$root"/{old,new}
cp "$old"/*.deb "$root/old"
cp "$new"/*.deb "$root/new"
old_packages=("$root"/old/*.deb)
new_packages=("$root"/new/*.deb)
old_packages=("${old_packages[@]#"$root"}") # as they are called inside
new_packages=("${new_packages[@]#"$root"}")

# Processes in the root see only each other, and end with the first.
enter=(unshare --mount --pid --fork --kill-child --mount-proc="$root/proc" chroot "$root" /usr/bin/env -i
    PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive)
inside() { "${enter[@]}" "$@"; }
apt() { inside apt-get --quiet=2 --yes --no-install-recommends -o Dpkg::Use-Pty=0 "$@" >"$root/apt.log" 2>&1 ||
    { cat "$root/apt.log" >&2; return 1; }; }
# What a package may leave: its names in the logs and caches of the package manager.
files() { (cd "$root" && find . \( -path ./proc -o -path ./tmp -o -path ./var/lib/dpkg -o -path ./var/lib/apt -o \
    -path ./var/cache -o -path ./var/log/apt -o -path ./var/log/dpkg.log -o -path ./var/log/alternatives.log -o -name apt.log \) \
    -prune -o -print | sort; cat etc/group etc/passwd); }
expect()
{
    if [ "$2" != "$3" ]; then
        printf '%s:\n' "$1" >&2
        diff <(echo "$2") <(echo "$3") >&2 || true
        exit 1
    fi
}
name() { sed -n 's/.*"Name":"\([^"]*\)".*/\1/p'; }

apt update
# The dependencies of both versions stay, so that what is left afterwards is the packages' own. systemd brings the groups.
apt install systemd-standalone-sysusers "${old_packages[@]}"
apt install "${new_packages[@]}"
packages=(hgagent smart-router-service smart-router-service-dev)
apt purge "${packages[@]}"
before=$(files)

apt install "${old_packages[@]}"
old_version=$(inside hgagent --version)
# The scenario is that of the example's configuration.
inside hgagent --scenario short_report --state /var/lib/home.json call SET_HG_BASE_INFO Name=Attic >/dev/null
expect 'the state of the earlier version' "$(inside hgagent --state /var/lib/home.json call GET_HG_BASE_INFO | name)" Attic

apt install "${new_packages[@]}"
new_version=$(inside hgagent --version)
[ "$old_version" != "$new_version" ]
expect 'the state after the upgrade' "$(inside hgagent --state /var/lib/home.json call GET_HG_BASE_INFO | name)" Attic
inside getent group hgagent hgagent-worker >/dev/null

# As docs/service.md says, and what systemd does for the unit: the folders of a user without rights.
user=65533
inside install -d -o "$user" /run/hgagent /var/lib/private/hgagent /var/log/private/hgagent
inside ln -s private/hgagent /var/lib/hgagent
inside ln -s private/hgagent /var/log/hgagent
inside sh -c 'mkdir /etc/hgagent && cp /usr/share/doc/hgagent/examples/*.toml /etc/hgagent'
inside sh -c "mv /var/lib/home.json* /var/lib/private/hgagent && chown $user /var/lib/private/hgagent/*"
: >"$root/service.log"
as_user=(setpriv --reuid="$user" --regid="$user" --clear-groups)
"${enter[@]}" "${as_user[@]}" hgagent --state /var/lib/hgagent/home.json run --config /etc/hgagent/hgagent.toml \
    --socket /run/hgagent/hgagent.sock 2>"$root/service.log" &
service=$!
until grep -q '^listening on unix:' "$root/service.log"; do
    kill -0 "$service" || { cat "$root/service.log" >&2; exit 1; }
    sleep 0.1
done
ask() { inside "${as_user[@]}" hgagent call --socket /run/hgagent/hgagent.sock "$@"; }
expect 'the state in the service' "$(ask GET_HG_BASE_INFO | name)" Attic
ask SET_HG_BASE_INFO Name=Cellar >/dev/null
expect 'a change in the service' "$(ask GET_HG_BASE_INFO | name)" Cellar
kill "$(cat "/proc/$service/task/$service/children")"
wait "$service"
service=
rm "$root/service.log"

apt purge "${packages[@]}"
rm -rf "$root/run/hgagent"                              # which systemd removes when the service ends
rmdir "$root/var/lib/private" "$root/var/log/private"   # which are systemd's
expect 'left behind' "$(files)" "$before"
echo "from $old_version to $new_version: installed, upgraded, run and purged"

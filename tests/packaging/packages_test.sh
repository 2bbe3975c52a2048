#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the Debian packages of a folder into a separate root folder, tries their contents, and removes
# them again: packages_test.sh FOLDER
#
# There is no chroot: programs find their own libraries relative to themselves, and all others are this
# system's, which has to have the packages' dependencies.
set -euo pipefail
packages=$(realpath "$1")
here=$(realpath "$(dirname "$0")")

lintian --allow-root --fail-on error,warning "$packages"/*.deb

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir -p "$root"/var/lib/dpkg/{info,updates} "$root"/etc
cp /var/lib/dpkg/status "$root/var/lib/dpkg"
touch "$root/var/lib/dpkg/available"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    as_root=(fakeroot)
fi
in_root()
{
    local said
    if ! said=$("${as_root[@]}" dpkg --root="$root" --force-script-chrootless --log=/dev/null "$@" 2>&1); then
        grep -v 'files list file for package' <<<"$said" >&2
        return 1
    fi
}
installed() { (cd "$root" && find . -path ./var/lib/dpkg -prune -o -print | sort); }

# expect WHAT TEXT TEXT: the same
expect()
{
    if [ "$2" != "$3" ]; then
        printf '%s:\n' "$1" >&2
        diff <(echo "$2") <(echo "$3") >&2 || true
        exit 1
    fi
}

before=$(installed)

in_root --install "$packages"/*.deb
version=$(dpkg-deb --field "$packages"/hgagent_*.deb Version)
agent=$root/usr/bin/hgagent
expect version "$("$agent" --version)" "hgagent $version"
expect call "$("$agent" call GET_SN_INFO)" \
    '{"Status":"0","MAC":"3C:6A:D2:10:4F:20","tslinkstatus":"1","DeviceType":"HGU-AX3000"}'
"$agent" conformance --command GET_SN_INFO >/dev/null
# The service: its units, none of which is enabled, and a configuration to begin with.
for unit in hgagent.service hgagent.socket hgagent-worker.service hgagent-worker.socket; do
    grep -q '^Description=' "$root/usr/lib/systemd/system/$unit"
done
# The library for Linux answers, if only that this machine has no LAN bridge.
library=$(find "$root" -name liblinux_gateway.so)
answer=$("$agent" --device "$library" call GET_LAN_IP_INFO 2>/dev/null || true)
grep -q '"Status":"[01]"' <<<"$answer"
for file in linux_gateway.toml hgagent.toml broker.conf; do
    [ -s "$root/usr/share/doc/linux-gateway/examples/$file" ]
done
for unit in linux-gateway.service linux-gateway.socket; do
    grep -q '^Description=' "$root/usr/lib/systemd/system/$unit"
done
grep -qx 'g hgagent -' "$root/usr/lib/sysusers.d/hgagent.conf"
expect 'enabled units' "$(find "$root/etc" -name '*hgagent*')" ''
expect configuration "$("$agent" run --check-config --config "$root/usr/share/doc/hgagent/examples/hgagent.toml")" \
    'the configuration is valid'
"$root/usr/bin/hg-mkimage" --product HGU-AX3000 --version V3.0.0 "$root/image"
rm "$root/image"
for page in hgagent.1 hg-mkimage.1 hg-protocol.7; do
    found=$(man --manpath="$root/usr/share/man" --where "${page%.*}")
    expect "$page" "$found" "$root/usr/share/man/man${page##*.}/$page.gz"
done
bash -c "set -e; source '$root/usr/share/bash-completion/completions/hgagent'; complete -p hgagent" \
    >/dev/null
"$here/consumer_test.sh" "$root/usr" "$root/usr/share/doc/smart-router-service-dev/examples"

# What the page of the console and that of a fleet's report contain is named in the copyright, with its version.
while read -r bundled; do
    grep -q "^ .*$bundled" "$root/usr/share/doc/hgagent/copyright" || { echo "not in the copyright: $bundled" >&2; exit 1; }
done < <(grep -xhE '[a-z0-9@/-]+ [0-9.]+' "$root"/usr/share/hgagent/console/{licences.txt,fleet_report.html})

# What a service leaves behind, whose administrator enabled it.
mkdir -p "$root"/var/lib/private/hgagent "$root"/var/log/hgagent "$root"/etc/hgagent \
    "$root"/etc/systemd/system/{sockets.target.wants,hgagent-worker.service.d,linux-gateway.service.d}
ln -s /var/lib/private/hgagent "$root/var/lib/hgagent"
for unit in hgagent.socket linux-gateway.socket; do
    ln -s "/usr/lib/systemd/system/$unit" "$root/etc/systemd/system/sockets.target.wants/$unit"
done
touch "$root"/var/lib/private/hgagent/home.json "$root"/var/log/hgagent/audit "$root"/etc/hgagent/hgagent.toml \
    "$root"/etc/systemd/system/{hgagent-worker,linux-gateway}.service.d/override.conf
in_root --remove linux-gateway hgagent
test -e "$root/var/lib/private/hgagent/home.json"
test -e "$root/etc/hgagent/hgagent.toml"

in_root --purge linux-gateway hgagent smart-router-service-dev smart-router-service
rmdir "$root"/var/l{ib,og}/private "$root"/var/log "$root"/etc/systemd/{system/sockets.target.wants,system,} 2>/dev/null || true
expect 'left behind' "$(installed)" "$before"
echo "4 packages of version $version: checked, installed, tried and removed"

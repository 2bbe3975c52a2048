#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Checks systemd's units without a running systemd: the exposure of each, that systemd can read them, and that the
# agent makes no system call that they forbid.
#
# usage: units_test.sh HGAGENT FOLDER_OF_UNITS
set -euo pipefail
hgagent=$1
units=$2
if ! systemd-analyze --version >/dev/null 2>&1; then
    echo 'there is no systemd-analyze here (Debian package systemd)'
    exit 77
fi
home=$(mktemp -d)
# The first line of the trace is the service's own.
end()
{
    if [ -s "$home/trace" ]; then
        kill "$(sed -n '1 s/ .*//p' "$home/trace")" 2>/dev/null || true
        wait
    fi
    rm -rf "$home"
}
trap end EXIT
faults=0
fault()
{
    echo "$*" >&2
    faults=$((faults + 1))
}

# exposure UNIT: in tenths; 0 is best
exposure()
{
    systemd-analyze security --offline=true --no-pager "$1" |
        sed -n 's/.*Overall exposure level for .*: \([0-9]*\)\.\([0-9]\) .*/\1\2/p' | sed 's/^0*\(.\)/\1/'
}

# The highest exposure that each may have.
for promise in hgagent.service:15 hgagent-worker.service:20 linux-gateway.service:20; do
    unit=${promise%:*}
    [ -e "$units/$unit" ] || continue # the library for Linux may be left out
    if ! systemd-analyze security --offline=true --no-pager --threshold="${promise#*:}" "$units/$unit" \
        >"$home/security"; then
        cat "$home/security"
        fault "$unit has an exposure of more than ${promise#*:} tenths"
    fi
    echo "$unit: $(exposure "$units/$unit") tenths"
done
sed '/^NoNewPrivileges\|^Capability\|^System\|^Protect\|^Private\|^Restrict/d' "$units/hgagent.service" \
    >"$home/hgagent.service"
if systemd-analyze security --offline=true --no-pager --threshold=15 "$home/hgagent.service" >/dev/null; then
    fault 'a unit that protects nothing passes as well'
fi

# No dynamic user has the name of a group that exists: systemd would not start the unit.
for unit in "$units"/*.service; do
    grep -qx DynamicUser=yes "$unit" || continue
    user=$(sed -n 's/^User=//p' "$unit")
    if grep -qx "g ${user:-$(basename "$unit" .service)} -" "$(dirname "$0")/../../packaging/systemd/sysusers.conf"; then
        fault "$unit: the dynamic user has the name of a group"
    fi
done

# systemd reads them, with this agent in place of the installed one.
for unit in "$units"/*; do
    sed "s|=/[^ ]*/hgagent |=$hgagent |" "$unit" >"$home/$(basename "$unit")"
done
if ! systemd-analyze verify --man=no "$home"/*.service "$home"/*.socket 2>"$home/verify" ||
    grep -F "$home" "$home/verify"; then
    cat "$home/verify"
    fault 'systemd finds fault with the units'
fi

# calls SET: the names in a set of system calls, with the sets in it
calls()
{
    systemd-analyze --no-pager syscall-filter "$1" | sed -n 's/^ *\([-@a-z_0-9]*\)$/\1/p' | tail -n +2 |
        while read -r name; do
            case $name in
                @*) calls "$name" ;;
                *) echo "$name" ;;
            esac
        done | sort -u
}

for unit in hgagent hgagent-worker; do
    grep -qx 'SystemCallFilter=@system-service' "$units/$unit.service"
    grep -qx 'SystemCallFilter=~@privileged @resources' "$units/$unit.service"
done
comm -23 <(calls @system-service) <({ calls @privileged; calls @resources; } | sort -u) >"$home/allowed"
[ "$(wc -l <"$home/allowed")" -gt 100 ]
# The service under strace, with a client that queries and sets, until it is asked to end.
: >"$home/log"
strace -f -qq -e trace=all -e signal=none -o "$home/trace" "$hgagent" --state "$home/state" \
    run --socket "$home/socket" --audit "$home/audit" 2>"$home/log" &
service=$!
until grep -q '^listening on ' "$home/log"; do
    kill -0 "$service" || { cat "$home/log" >&2; exit 1; }
    sleep 0.1
done
"$hgagent" call --socket "$home/socket" GET_SN_INFO >/dev/null
"$hgagent" call --socket "$home/socket" SET_UPNP_STATE Enable=1 >/dev/null
[ "$(wc -l <"$home/audit")" -eq 2 ]
kill "$(sed -n '1 s/ .*//p' "$home/trace")"
wait "$service" || true
sed -n 's/^[0-9]* *\([a-z_0-9]*\)(.*/\1/p' "$home/trace" | sort -u >"$home/used"
[ "$(wc -l <"$home/used")" -gt 20 ]
# systemd allows these in every filter, to start the program; glibc asks for its limits by prlimit64.
comm -23 "$home/used" "$home/allowed" | grep -vx 'execve\|prlimit64' >"$home/forbidden" || true
if [ -s "$home/forbidden" ]; then
    fault "the agent makes system calls that its unit forbids: $(paste -s -d ' ' "$home/forbidden")"
fi

echo "$(wc -l <"$home/used") system calls, $faults faults"
[ "$faults" -eq 0 ]

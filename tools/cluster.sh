#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The gateway on a cluster of three brokers, of which one is killed: prints what was lost without the rule of repeating
# a request until it is answered, and fails if anything is lost or executed twice with it.
#
#   cluster.sh [--requests N] [--in-flight N] [--only TEXT]
#
# The brokers are ejabberd nodes on loopback with files of their own in a temporary folder. It needs Debian's package
# "ejabberd", which scripts/install-deps.sh does not install; its own service is not needed:
#
#   apt-get install --no-install-recommends ejabberd && systemctl disable --now ejabberd
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
cd "$(dirname "$0")/.."

options=()
while [ $# -gt 1 ] && [[ $1 =~ ^--(requests|in-flight|only)$ ]]; do
    options+=("$1" "$2")
    shift 2
done
if [ $# -gt 0 ]; then
    echo "usage: $0 [--requests N] [--in-flight N] [--only TEXT]" >&2
    exit 2
fi
for program in ejabberdctl erl epmd; do
    if ! command -v "$program" >/dev/null; then
        echo "$0: there is no $program; install the package ejabberd" >&2
        exit 1
    fi
done
scripts/install-deps.sh >&2
scripts/build.sh release --target hgagent smart_router_service counting_device >&2
exec /usr/bin/python3 -B tools/exactly_once.py --cluster "${options[@]}"

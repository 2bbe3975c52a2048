#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# A fleet of gateways under load: starts a broker, gateways with faults, and the platform's side, which checks every reply
# and at the end that nothing is lost and nothing is done twice.
#
#   fleet.sh [--count N] [--rate R] [--for TIME] [--scenario MIX] [--report FOLDER] [--build FOLDER]
#
# By default 200 gateways for one minute at 100 requests per second. The report, report.json and report.html, goes into the
# folder, where one is given. Another build is used with --build, such as build/debug.
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
cd "$(dirname "$0")/.."

count=200 rate=100 time=60s report='' build=''
scenario=three_storey_house=3,single_router=2,crowded_mesh=1
while [ $# -gt 1 ]; do
    case $1 in
        --count) count=$2 ;;
        --rate) rate=$2 ;;
        --for) time=$2 ;;
        --scenario) scenario=$2 ;;
        --report)
            mkdir -p "$2"
            report=$(realpath "$2")
            ;;
        --build) build=$2 ;;
        *) break ;;
    esac
    shift 2
done
if [ $# -gt 0 ]; then
    echo "usage: $0 [--count N] [--rate R] [--for TIME] [--scenario MIX] [--report FOLDER] [--build FOLDER]" >&2
    exit 2
fi
if [ -z "$build" ]; then
    build=build/release
    scripts/install-deps.sh
    scripts/build.sh release --target hgagent smart_router_service simulated_gateway
fi
hgagent=$(realpath "$build/bin/hgagent")
# The folder of states is on a memory file system where there is one: each setting is on the disk before its answer.
work=$(mktemp -d -p "$([ -w /dev/shm ] && echo /dev/shm || echo "${TMPDIR:-/tmp}")")
broker='' fleet='' driver=''
end() {
    for process in $driver $fleet $broker; do
        if kill "$process" 2>/dev/null; then
            wait "$process" || true
        fi
    done
    rm -rf "$work"
}
trap end EXIT

# A port that nobody uses; another program can take it before the broker does, which is then tried again.
PATH=$PATH:/usr/sbin
for _ in 1 2 3 4 5; do
    port=$(/usr/bin/python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
    printf '%s\n' "listener $port 127.0.0.1" 'allow_anonymous true' 'set_tcp_nodelay true' 'max_queued_messages 0' \
        'max_connections -1' "user $(id -un)" >"$work/mosquitto.conf"
    mosquitto -c "$work/mosquitto.conf" >"$work/mosquitto.log" 2>&1 &
    broker=$!
    until (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null || ! kill -0 "$broker" 2>/dev/null; do
        sleep 0.1
    done
    kill -0 "$broker" 2>/dev/null && break
    wait "$broker" || true
    broker=''
done
if [ -z "$broker" ]; then
    cat "$work/mosquitto.log" >&2
    exit 1
fi

ulimit -n "$(ulimit -H -n)"
# With this seed, four of 200 gateways lose their power within the first minute, connections are cut, and one gateway has
# a faulty device library.
seed=2374
"$hgagent" fleet --count "$count" --broker "mqtt://127.0.0.1:$port" --states "$work/states" --churn --seed "$seed" \
    --scenario "$scenario" --metrics "$work/fleet.prom" &
fleet=$!
words=()
if [ -n "$report" ]; then
    words=(--json "$report/report.json" --page "$report/report.html")
fi
"$hgagent" fleet drive --broker "mqtt://127.0.0.1:$port" --count "$count" --rate "$rate" --for "$time" --timeout 45 --churn --seed "$seed" \
    --watch "fleet=$fleet" --watch "broker=$broker" "${words[@]}" &
driver=$!
wait "$driver"

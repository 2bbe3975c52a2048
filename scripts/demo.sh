#!/usr/bin/env bash
# Builds the project and shows it at work: the agent loads the plug-in and a simulated gateway, sends
# commands and prints the replies.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release -- --quiet

state=$(mktemp -d)
trap 'rm -rf "$state"' EXIT
PATH=$PWD/build/release/bin:$PATH

say() { printf '\n\033[1m%s\033[0m\n' "$*"; }
show() {
    printf '$ %s\n' "$*"
    "$@" || printf '(exit status %d)\n' "$?"
}

say 'The commands that the plug-in answers'
show hgagent list

say 'Who is the router? One command, one reply'
show hgagent call GET_SN_INFO
show hgagent call QUERY_SYSTEM_INFO

say 'What the protocol says of a command'
show hgagent describe GET_SN_INFO

say 'The device fails; the reply says so'
show hgagent --fault devapi_get_sn_info=-1 call GET_SN_INFO

say 'What reaches the device'
show hgagent --trace - call GET_SN_INFO

say 'A home that keeps its state, served line by line; rubbish does no harm'
cat >"$state/requests" <<'REQUESTS'
{"id":1,"command":"QUERY_SYSTEM_INFO"}
rubbish
{"id":"two","command":"RESPONSE_ROUTER_VERSION","params":{"VersionInfo":"app 5.2.0"}}
{"id":3,"command":"GET_SN"}
REQUESTS
cat "$state/requests"
show hgagent --state "$state/home.json" serve <"$state/requests"

#!/usr/bin/env bash
# What takes too long for every change: each allocation and each system call of hgagent serve fails in
# turn. Samples of it belong to the ordinary tests.
#
#   tools/nightly.sh             everything
#   tools/nightly.sh 10          every tenth case
set -euo pipefail
cd "$(dirname "$0")/.."

every=${1:-1}
scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release --target hgagent failing_allocation -- --quiet

status=0
sweep=(python3 -B tests/agent_sweep/agent_sweep.py)
agent=build/release/bin/hgagent
echo "== each allocation of serve"
"${sweep[@]}" memory "$agent" --every "$every" \
    --library "$PWD/build/release/tests/agent_sweep/libfailing_allocation.so" || status=1
echo "== each system call of serve"
"${sweep[@]}" system_calls "$agent" --every "$every" || status=1
exit "$status"

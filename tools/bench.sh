#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Measures the plug-in and the agent as they ship and prints one Markdown table; takes some minutes.
#
#   --broker  measures the service on a broker instead, next to a bare responder
#   --keep    also writes the table to docs/performance.md
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
cd "$(dirname "$0")/.."

table=table.py
targets=(measurements hgagent link_check simulated_gateway)
document=()
for option in "$@"; do
    case $option in
        --broker)
            table=broker.py
            targets=(hgagent smart_router_service counting_device broker_caller broker_responder)
            ;;
        --keep)
            document=(docs/performance.md)
            ;;
        *)
            echo "usage: $0 [--broker] [--keep]" >&2
            exit 2
            ;;
    esac
done
scripts/install-deps.sh >&2
scripts/build.sh release --target "${targets[@]}" >&2
exec /usr/bin/python3 -B "benchmarks/$table" build/release "${document[@]}"

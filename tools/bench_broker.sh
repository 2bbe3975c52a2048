#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Measures the service on a broker next to a bare responder and prints a Markdown table; takes some minutes.
#
#   --keep    also writes the table to docs/performance.md
set -euo pipefail
cd "$(dirname "$0")/.."

document=()
if [ $# -gt 0 ]; then
    if [ "$*" != --keep ]; then
        echo "usage: $0 [--keep]" >&2
        exit 2
    fi
    document=(docs/performance.md)
fi
scripts/install-deps.sh >&2
scripts/build.sh release --target hgagent smart_router_service counting_device broker_caller broker_responder >&2
exec /usr/bin/python3 -B benchmarks/broker.py build/release "${document[@]}"

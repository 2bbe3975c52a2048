#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds everything and runs every test: natively under the address and undefined-behaviour
# sanitizers; tests with threads under the thread sanitizer; the plug-in's tests as 32-bit MIPS under
# qemu; and, in the release build, the tests that count instructions, use an installation, or make the
# agent's allocations and system calls fail.
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
if [ $# -gt 0 ]; then
    echo "usage: $0" >&2
    exit 2
fi
cd "$(dirname "$0")/.."

release_tests() {
    ctest --preset release --tests-regex '^(performance|packaging|agent_sweep)' --verbose | grep -v ^UpdateCTest
}

stages=(
    'packages that are missing'              'scripts/install-deps.sh --cross'
    'tsan: build'                            'scripts/build.sh tsan'
    'mipsel: build'                          'scripts/build.sh mipsel'
    'release: build'                         'scripts/build.sh release --target measurements product failing_allocation'
    'debug: build'                           'scripts/build.sh debug'
    'tsan: tests with threads'               'ctest --preset tsan'
    "mipsel: the plug-in's own tests"        'ctest --preset mipsel'
    'release: measurements, installation, faults' release_tests
    'debug: all tests'                       'ctest --preset debug'
)
# The time since $1 (in seconds), such as "2 min 5 s".
time_since() { echo "$(((SECONDS - $1) / 60)) min $(((SECONDS - $1) % 60)) s"; }

count=$((${#stages[@]} / 2))
for ((number = 1; number <= count; number++)); do
    began=$SECONDS
    echo "== $number/$count ${stages[2 * number - 2]}"
    read -ra command <<<"${stages[2 * number - 1]}"
    "${command[@]}"
    echo "== $number/$count took $(time_since "$began")"
done
echo "== all tests passed, in $(time_since 0)"

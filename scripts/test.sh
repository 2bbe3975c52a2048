#!/usr/bin/env bash
# Builds everything and runs every test: natively under the address and undefined-behaviour
# sanitizers, what uses threads under the thread sanitizer, the plug-in's own tests as 32-bit MIPS
# under qemu, and as it ships what counts instructions, what uses an installation, and what lets the agent's
# allocations and system calls fail.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh --cross

# build PRESET [OPTION...]
build() {
    echo "== $1: build"
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$@" -- --quiet
}

build tsan
build mipsel
build release --target measurements product failing_allocation
build debug
echo "== tsan: tests with threads"
ctest --preset tsan
echo "== mipsel: the plug-in's own tests"
ctest --preset mipsel
echo "== release: measurements, what is installed, and the agent with faults"
ctest --preset release --tests-regex '^(performance|packaging|agent_sweep)' --verbose | grep -v ^UpdateCTest
echo "== debug: all tests"
ctest --preset debug

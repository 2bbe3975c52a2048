#!/usr/bin/env bash
# Builds everything and runs every test: natively under the address and undefined-behaviour
# sanitizers, what uses threads under the thread sanitizer, and the plug-in's own tests as 32-bit
# MIPS under qemu.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh --cross

build() {
    echo "== $1: build"
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$1" -- --quiet
}

build tsan
build mipsel
build debug
echo "== tsan: tests with threads"
ctest --preset tsan
echo "== mipsel: the plug-in's own tests"
ctest --preset mipsel
echo "== debug: all tests"
ctest --preset debug

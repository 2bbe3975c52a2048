#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The plug-in alone needs CMake, a compiler and cJSON, and nothing else:
# plugin_alone_test.sh PROJECT C_COMPILER CXX_COMPILER MAKE_PROGRAM CJSON_INCLUDE_DIR CJSON_LIBRARY
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Only what the options name is found.
if ! { cmake -S "$1" -B "$work" -G Ninja -D SMART_ROUTER_HOST=OFF -D SMART_ROUTER_TESTS=OFF \
    -D CMAKE_IGNORE_PREFIX_PATH='/usr;/usr/local;/' -D CMAKE_IGNORE_PATH='/usr/bin;/bin;/usr/local/bin' \
    -D CMAKE_AR="$(command -v ar)" -D CMAKE_RANLIB="$(command -v ranlib)" \
    -D CMAKE_C_COMPILER="$2" -D CMAKE_CXX_COMPILER="$3" -D CMAKE_MAKE_PROGRAM="$4" \
    -D cJSON_INCLUDE_DIR="$5" -D cJSON_LIBRARY="$6" && cmake --build "$work"; } >"$work/log" 2>&1; then
    cat "$work/log" >&2
    exit 1
fi
test -f "$work/lib/libsmart_router_service.so"
echo 'the plug-in is built with CMake, a compiler and cJSON alone'

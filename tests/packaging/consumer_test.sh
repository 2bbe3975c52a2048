#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the example agent and device library outside of the project, with only what is installed under a
# prefix: with CMake and with pkg-config, as docs/installing.md describes.
# consumer_test.sh PREFIX EXAMPLES
set -euo pipefail
prefix=$1
examples=$2
here=$(realpath "$(dirname "$0")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
reply='{"Status":"0","MAC":"02:00:5E:10:00:01","tslinkstatus":"0","DeviceType":"EXAMPLE-1"}'

# expect_reply PROGRAM
expect_reply()
{
    local output
    output=$("$1" GET_SN_INFO)
    if [ "$output" != "$reply" ]; then
        echo "$1: $output" >&2
        exit 1
    fi
}

# A linker that drops libraries that only another library needs.
strict=(-fuse-ld=gold "-Wl,--as-needed")
LDFLAGS=${strict[*]} cmake -S "$here/consumer" -B "$work/cmake" -G Ninja -D "CMAKE_PREFIX_PATH=$prefix" \
    -D "EXAMPLES=$examples" >"$work/log" || { cat "$work/log"; exit 1; }
cmake --build "$work/cmake" >"$work/log" || { cat "$work/log"; exit 1; }
expect_reply "$work/cmake/host"
if cmake -S "$here/consumer" -B "$work/later" -G Ninja -D "CMAKE_PREFIX_PATH=$prefix" \
    -D "EXAMPLES=$examples" -D WANTED=99 >"$work/log" 2>&1; then
    echo 'another version was taken for a compatible one' >&2
    exit 1
fi

PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name smart_router_service.pc)")
export PKG_CONFIG_PATH
read -ra compile < <(pkg-config --cflags smart_router_service)
cc -std=gnu11 -fPIC -shared "${compile[@]}" "$examples"/minimal_device/*.c -o "$work/libmy_device.so"
# Linked with the plug-in; the user has to name only the folder of the own library.
read -ra flags < <(pkg-config --cflags --libs smart_router_service)
cc -std=gnu11 "${strict[@]}" "$examples/minimal_host.c" -o "$work/linked" "${flags[@]}" \
    -L"$work" "-Wl,-rpath,$work" -lmy_device
expect_reply "$work/linked"
# Loading it.
read -ra flags < <(pkg-config --cflags --libs smart_router_service_host)
cc -std=gnu11 -D "EXAMPLE=\"$examples/minimal_host.c\"" "$here/consumer/loading_host.c" -o "$work/loading" \
    "${flags[@]}"
PLUGIN=$(pkg-config --variable=plugin smart_router_service_host)
export PLUGIN DEVICE=$work/libmy_device.so
expect_reply "$work/loading"

# The types for clients of a gateway.
types=$prefix/share/smart_router_service/types
grep -q '^export interface Commands ' "$types/hg_protocol.d.ts"
PYTHONPATH=$types python3 -B -c 'from hg_protocol import CallCommand, GetSnInfoReply'
echo 'built by CMake and by pkg-config against what is installed'

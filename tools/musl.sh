#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the plug-in and the examples with the C library musl instead of glibc, compares the symbols that
# the plug-in needs with the reviewed list, and runs the examples. Debian has no cJSON for musl, so it is
# built from Debian's source package.
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
if [ $# -gt 0 ]; then
    echo "usage: $0" >&2
    exit 2
fi
cd "$(dirname "$0")/.."

scripts/install-deps.sh --musl
home=$PWD/build/musl
cjson=$home/cjson
mkdir -p "$cjson/lists" "$cjson/include/cjson"

if [ ! -d "$cjson/source" ]; then
    # The machine may have no entries for source packages.
    # shellcheck disable=SC2016 # they are apt's variables
    apt-get indextargets --format 'deb-src $(REPO_URI) $(SUITE) $(COMPONENT)' 'Created-By: Packages' |
        sort -u >"$cjson/sources.list"
    apt=(apt-get -qq -o "Dir::Etc::sourcelist=$cjson/sources.list" -o Dir::Etc::sourceparts=/dev/null
        -o "Dir::State::lists=$cjson/lists" -o APT::Sandbox::User=root)
    "${apt[@]}" update
    (cd "$cjson" && "${apt[@]}" source --download-only cjson)
    dpkg-source --no-check --extract "$cjson"/cjson_*.dsc "$cjson/source" >/dev/null
fi
cp "$cjson/source/cJSON.h" "$cjson/include/cjson"
musl-gcc -O2 -fPIC -shared -Wl,-soname,libcjson.so.1 -o "$cjson/libcjson.so.1" "$cjson/source/cJSON.c"

scripts/build.sh musl
/usr/bin/python3 -B tests/abi/check_symbols.py readelf smart_router_service/exports.map \
    smart_router_service/commands.h smart_router_service/needed.txt \
    "$home/lib/libsmart_router_service.so"

# expect COMMAND REPLY
expect()
{
    local reply
    reply=$("$home/bin/minimal_host" "$1")
    if [ "$reply" != "$2" ]; then
        echo "$1: $reply" >&2
        exit 1
    fi
}
file "$home/bin/minimal_host" | grep -q 'ld-musl'
expect GET_SN_INFO '{"Status":"0","MAC":"02:00:5E:10:00:01","tslinkstatus":"0","DeviceType":"EXAMPLE-1"}'
expect GET_UPNP_STATE '{"Status":"1","FailReason":"Get UPNP enable failed"}'
echo 'the plug-in runs with musl'

#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs the steps of the OpenWrt package with stand-ins for the makefiles of an SDK, and checks which files
# would be installed on the router, and their size.
#
# usage: openwrt_test.sh TOOLCHAIN_FILE READELF STRIP
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
project=$here/../..
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

make --no-print-directory -C "$project/packaging/openwrt/smart-router-service" \
    TOPDIR="$here/openwrt_sdk" BUILD_DIR="$work" TOOLCHAIN_FILE="$1"

cd "$work/root"
installed=$(find . -type f)
if [ "$installed" != ./usr/lib/libsmart_router_service.so ]; then
    echo "goes onto the router: $installed" >&2
    exit 1
fi
"$2" -h "$installed" | grep -q 'Machine: .*MIPS'
"$2" -dW "$installed" | grep -q 'NEEDED.*libcjson'
cd "$work"
test -f staging/usr/include/smart_router_service/processjsonability.h
version=$(sed -n 's/^#define SMART_ROUTER_SERVICE_VERSION_[A-Z]* \([0-9]*\).*/\1/p' \
    staging/usr/include/smart_router_service/processjsonability.h | paste -s -d .)
test -d "smart-router-service-$version"

# The SDK strips what it packs. Its hardening adds to the size that the plug-in guarantees.
"$3" "root/$installed"
size=$(stat -c %s "root/$installed")
compressed=$(xz -9e --stdout "root/$installed" | wc -c)
echo "$size bytes, $compressed compressed"
if [ "$size" -gt 102400 ] || [ "$compressed" -gt 32768 ]; then
    echo "more than 102400 bytes, or 32768 compressed" >&2
    exit 1
fi

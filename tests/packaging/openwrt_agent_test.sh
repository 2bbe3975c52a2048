#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The OpenWrt package of the agent, as far as it goes without an SDK: the sources that it copies and its options are
# configured with this machine's compiler, its files are taken from a build, and its dependencies are compared with
# what these files need.
#
# usage: openwrt_agent_test.sh BUILD_FOLDER READELF
set -euo pipefail
build=$1
readelf=$2
here=$(cd "$(dirname "$0")" && pwd)
package=$here/../../packaging/openwrt/smart-router-service
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# In place of what the SDK would build and install.
cmake --install "$build" --prefix "$work/native" --component agent >/dev/null
mkdir -p "$work/installed/usr/lib/smart_router_service"
mv "$work/native/bin" "$work/installed/usr"
find "$work/native" -name '*.so' -exec mv -t "$work/installed/usr/lib/smart_router_service" {} +

make --no-print-directory -C "$package" TOPDIR="$here/openwrt_sdk" BUILD_DIR="$work" \
    PKG_INSTALL_DIR="$work/installed" CONFIG_PACKAGE_hgagent=y hgagent >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }

cd "$work/root"
diff <(find . -type f | sort) <(
    cd "$work/installed"
    {
        printf '%s\n' ./etc/hgagent/hgagent.toml ./etc/init.d/hgagent ./usr/bin/hgagent
        find . -name '*.so'
    } | sort
)

# package_of SONAME: the OpenWrt package that has it; nothing for the C library, which is always there.
package_of()
{
    case $1 in
        libc.so.* | libm.so.* | libgcc_s.so.* | ld-linux*) ;;
        libcjson.so.*) ;; # of the plug-in's package, which the agent's depends on
        libcrypto.so.* | libssl.so.*) echo libopenssl ;;
        libmosquitto.so.*) echo libmosquitto-ssl ;;
        libstdc++.so.*) echo libstdcpp ;;
        libz.so.*) echo zlib ;;
        *) echo "${1%%.so*}" ;;
    esac
}
needed=$(find . -path './usr/*' -type f -exec "$readelf" -dW {} + | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | sort -u |
    while read -r library; do package_of "$library"; done | sort -u)
named=$(make --no-print-directory -s -C "$package" TOPDIR="$here/openwrt_sdk" BUILD_DIR="$work" depends_of_hgagent |
    tr ' ' '\n' | sed -n 's/^+//p' | grep -vx smart-router-service | sort -u)
diff <(echo "$needed") <(echo "$named")
echo 'configured, packed, and all dependencies named'

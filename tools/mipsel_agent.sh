#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the reference agent for 32-bit MIPS, and tests the example's device library with it under qemu.
# Its libraries are Debian's mipsel packages. They are unpacked into the build folder: installed, they
# would have to have the same versions as the native ones.
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
if [ $# -gt 0 ]; then
    echo "usage: $0" >&2
    exit 2
fi
cd "$(dirname "$0")/.."

scripts/install-deps.sh --cross
home=$PWD/build/mipsel_agent
root=$home/root
triplet=mipsel-linux-gnu
packages=(libatomic1 libcurl4 libcurl4-openssl-dev libelf-dev libelf1 libsodium-dev libssl-dev libssl3 zlib1g)

if [ ! -e "$root" ]; then
    mkdir -p "$home/packages"
    (cd "$home/packages" && apt-get -qq -o APT::Sandbox::User=root download "${packages[@]/%/:mipsel}")
    for package in "$home/packages"/*.deb; do
        dpkg-deb --extract "$package" "$root.new"
    done
    mv "$root.new" "$root"
fi

cmake -S . -B "$home" -G Ninja -D CMAKE_BUILD_TYPE=MinSizeRel \
    -D CMAKE_TOOLCHAIN_FILE=cmake/toolchains/$triplet.cmake \
    -D CMAKE_UNITY_BUILD=ON -D CMAKE_UNITY_BUILD_BATCH_SIZE=12 \
    -D SMART_ROUTER_HOST=ON -D SMART_ROUTER_CONFORMANCE=OFF -D SMART_ROUTER_TESTS=OFF \
    -D CMAKE_PREFIX_PATH="$root/usr" -D OPENSSL_ROOT_DIR="$root/usr" \
    -D CMAKE_CXX_FLAGS="-isystem $root/usr/include/$triplet" \
    -D CMAKE_EXE_LINKER_FLAGS="-Wl,-rpath-link,$root/lib/$triplet" >/dev/null
cmake --build "$home" --target hgagent smart_router_service minimal_device

# expect TEXT WORD...: runs the agent on the example, and expects the text in its output
expect()
{
    local text=$1 output
    shift
    output=$(qemu-mipsel -E "LD_LIBRARY_PATH=$root/usr/lib/$triplet:$root/lib/$triplet" "$home/bin/hgagent" \
        --log-level 0 --device "$home/lib/libminimal_device.so" "$@")
    if ! grep -qF -- "$text" <<<"$output"; then
        echo "$*: $output" >&2
        exit 1
    fi
}
$triplet-readelf --file-header "$home/bin/hgagent" | grep -q "Machine: .*MIPS"
expect '{"Status":"0","MAC":"02:00:5E:10:00:01","tslinkstatus":"0","DeviceType":"EXAMPLE-1"}' call GET_SN_INFO
expect ' checks: 2 passed, 0 failed, 55 not supported, 58 skipped' conformance
echo 'the agent runs as 32-bit MIPS'

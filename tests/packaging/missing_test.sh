#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# A configuration without presets names all missing dependencies at once, each with a package that
# scripts/install-deps.sh installs: missing_test.sh PROJECT C_COMPILER CXX_COMPILER MAKE_PROGRAM
set -euo pipefail
project=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Nothing is found but the given compilers. pkg-config would find some libraries nevertheless.
if cmake -S "$project" -B "$work" -G Ninja -D CMAKE_IGNORE_PREFIX_PATH='/usr;/usr/local;/' \
    -D CMAKE_IGNORE_PATH='/usr/bin;/bin;/usr/local/bin' -D PKG_CONFIG_EXECUTABLE=/bin/false \
    -D CMAKE_C_COMPILER="$2" -D CMAKE_CXX_COMPILER="$3" -D CMAKE_MAKE_PROGRAM="$4" >"$work/log" 2>&1; then
    echo 'configured without its libraries' >&2
    exit 1
fi
fail() { cat "$work/log" >&2; echo "$1" >&2; exit 1; }
grep -q 'scripts/install-deps.sh' "$work/log" || fail 'the script that installs them is not named'
mapfile -t packages < <(sed -n 's/^ *[A-Za-z0-9_/.-]* (\([a-z0-9-]*\))$/\1/p' "$work/log")
for package in libcjson-dev libcli11-dev libcurl4-openssl-dev libssl-dev libutfcpp-dev nlohmann-json3-dev \
    libelf-dev libtomlplusplus-dev libgtest-dev libbenchmark-dev valgrind; do
    [[ " ${packages[*]} " == *" $package "* ]] || fail "$package is not named"
done
for package in "${packages[@]}"; do
    grep -Eq "(^|[ (])$package( |\)|\$)" "$project/scripts/install-deps.sh" ||
        fail "scripts/install-deps.sh does not install $package"
done
echo "${#packages[@]} missing packages are named at once"

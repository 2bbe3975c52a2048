#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Compares the interface that the public headers declare with tests/abi/baseline, the interface for which
# the version was last raised: abi.sh BUILD_FOLDER [--update]
#
# The plug-in shows what it exports; the examples show what it needs of a device library and of an agent,
# since they define all of it.
set -euo pipefail
build=$1/abi
baseline=tests/abi/baseline
as_text=(--no-corpus-path --no-comp-dir-path --no-show-locs --no-parameter-names --no-architecture
    --no-elf-needed --exported-interfaces-only --drop-undefined-syms)

cmake -S . -B "$build" -G Ninja -D CMAKE_BUILD_TYPE=Debug -D SMART_ROUTER_HOST=OFF \
    -D SMART_ROUTER_TESTS=OFF >/dev/null
cmake --build "$build" --target smart_router_service minimal_device minimal_host >"$build/log" ||
    { cat "$build/log"; exit 1; }

changed=0
for seen_in in lib/libsmart_router_service.so lib/libminimal_device.so bin/minimal_host; do
    name=$(basename "$seen_in" .so)
    abidw "${as_text[@]}" --out-file "$build/$name.abi" "$build/$seen_in"
    # Paths relative to the project, regardless of its location and of the compiler's options.
    sed --in-place --regexp-extended "s#path='($PWD/|(\.\./)+)#path='#" "$build/$name.abi"
    if [ "${2-}" = --update ]; then
        cp "$build/$name.abi" "$baseline"
    elif ! abidiff "$baseline/$name.abi" "$build/$name.abi"; then
        changed=1
    fi
done
if [ "$changed" -ne 0 ]; then
    echo "The interface has changed. Raise the version in processjsonability.h as it says there, for device"
    echo "functions also that in protocol/device/interface.json, unless that has been done since the last release,"
    echo "and take the new baseline: tests/checks/abi.sh $1 --update"
fi
exit "$changed"

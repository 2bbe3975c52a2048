#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the Debian packages into build/package: the plug-in, its development files, and the reference
# agent with the simulated gateway.
#
#   package.sh [--test]   also checks them, installs them, tries them and removes them again
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
cd "$(dirname "$0")/.."

tests=false
case $* in
    '') ;;
    --test) tests=true ;;
    *)
        echo "usage: $0 [--test]" >&2
        exit 2
        ;;
esac

scripts/install-deps.sh --packages
scripts/build.sh release --target product
rm -rf build/package
if ! cpack --config build/release/CPackConfig.cmake -B build/package >build/package.log 2>&1; then
    cat build/package.log >&2
    exit 1
fi
rm -rf build/package/_CPack_Packages
ls build/package/*.deb
if $tests; then
    tests/packaging/packages_test.sh build/package
    # The page on the library for Linux with these packages; 77 where namespaces are not allowed.
    PACKAGES=$PWD/build/package /usr/bin/python3 -B tests/linux_gateway/page_test.py \
        build/release/bin/hgagent build/release/lib/liblinux_gateway.so /dev/null || [ $? -eq 77 ]
fi

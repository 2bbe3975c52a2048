#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes a bare Debian 12 in a folder, unless it is there.
#
#   bare_root.sh FOLDER
#
# Needs root, debootstrap and a Debian mirror: the one in DEBIAN_MIRROR, otherwise Debian's own.
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
if [ $# -ne 1 ] || [[ $1 = -* ]]; then
    echo "usage: $0 FOLDER" >&2
    exit 2
fi
folder=$1
if [ ! -e "$folder/made" ]; then
    rm -rf "$folder"
    mkdir -p "$folder"
    debootstrap --variant=minbase bookworm "$folder/root" "${DEBIAN_MIRROR:-http://deb.debian.org/debian}" >"$folder/log" ||
        { tail "$folder/log" >&2; exit 1; }
    rm -f "$folder/root"/var/cache/apt/archives/*.deb
    touch "$folder/made"
fi

#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Takes pictures of every view of the console, in light and dark, wide and narrow, into the build folder; with
# --documents those of the documents instead, docs/images/console-*.png.
#
#   console_pictures.sh [--documents] [BUILD_FOLDER]
#
# It needs Node.js and Chromium; the pictures of the documents are made smaller with pngquant.
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
cd "$(dirname "$0")/.."
documents=
if [ "${1-}" = --documents ]; then
    documents=--documents
    shift
fi
if [ $# -gt 1 ] || [[ ${1-} = -* ]]; then
    echo "usage: $0 [--documents] [BUILD_FOLDER]" >&2
    exit 2
fi
build=$(realpath "${1:-build/release}")
CHROMIUM=$(command -v chromium || command -v chromium-browser || command -v google-chrome)
export CHROMIUM HGAGENT=$build/bin/hgagent CONSOLE_WORK=$build/console_build/work
folder=$build/console_pictures
node tests/console/pictures.mjs "$folder" $documents
if [ -n "$documents" ]; then
    mkdir -p docs/images
    for picture in "$folder"/console-*.png; do
        pngquant --force --speed 1 --strip --output "docs/images/$(basename "$picture")" 48 "$picture"
    done
    folder=docs/images
fi
echo "the pictures are in $folder"

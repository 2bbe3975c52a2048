#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs a build under another prefix, and uses the installed files: install_test.sh BUILD_FOLDER EXAMPLES
set -euo pipefail
here=$(realpath "$(dirname "$0")")
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
cmake --install "$1" --prefix "$home/first" >"$home/log"
# Its output has to be short enough to be read.
grep -qx -e "-- Installed below $home/first" "$home/log"
[ "$(wc -l <"$home/log")" -le 2 ]

# The installation may be moved.
mv "$home/first" "$home/second"
"$home/second/bin/hgagent" call GET_SN_INFO
"$home/second/bin/hgagent" conformance --command GET_SN_INFO >/dev/null
# With the module that a transfer needs.
"$home/second/bin/hgagent" --trace "$home/trace" call GET_HG_LOG UploadUrl=http://127.0.0.1:1/ LogType=system MAC=3C6AD2104F20
grep -q "Couldn't connect" "$home/trace"
"$here/consumer_test.sh" "$home/second" "$2"

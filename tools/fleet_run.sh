#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The long run of a fleet that docs/fleet.md shows: 10,000 gateways, 2,000 requests a second for ten minutes, with faults.
# Takes about 13 minutes, two idle cores and 10 GB. The report and its picture go into the folder:
#
#   fleet_run.sh FOLDER [OPTION OF scripts/fleet.sh ...]
#
# It needs Chromium and pngquant for the picture.
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
if [ $# -lt 1 ] || [ "${1#-}" != "$1" ]; then
    echo "usage: $0 FOLDER [OPTION OF scripts/fleet.sh ...]" >&2
    exit 2
fi
mkdir -p "$1"
folder=$(realpath "$1")
shift
cd "$(dirname "$0")/.."
browser=$(command -v chromium || command -v chromium-browser || command -v google-chrome)
status=0
scripts/fleet.sh --count 10000 --rate 2000 --for 10m --scenario single_router=50,three_storey_house=49,crowded_mesh=1 \
    --report "$folder" "$@" || status=$?
profile=$(mktemp -d)
trap 'rm -rf "$profile"' EXIT
"$browser" --headless --no-sandbox --user-data-dir="$profile" --window-size=760,3580 --hide-scrollbars \
    --virtual-time-budget=5000 --screenshot="$folder/report.png" "file://$folder/report.html" 2>"$profile/log" ||
    cat "$profile/log" >&2
pngquant --force --speed 1 --strip --output "$folder/report.png" 32 "$folder/report.png"
exit "$status"

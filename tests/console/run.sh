#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs a test of the console, or skips it: run.sh WORK_FOLDER [--browser] COMMAND...
set -euo pipefail
work=$1
shift
skip()
{
    echo "skipped: $1"
    exit 77
}
[ "$(cat "$(dirname "$work")/built" 2>/dev/null)" = built ] || skip 'the console was not built'
if [ "$1" = --browser ]; then
    shift
    [ -x "$CHROMIUM" ] || skip 'there is no Chromium (Debian: chromium)'
fi
exec "$@"

#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Configures and builds a preset, and shows its progress: build.sh PRESET [OPTION of cmake --build...]
set -euo pipefail
if [ $# -eq 0 ] || [[ $1 = -* ]]; then
    echo "usage: $0 PRESET [OPTION of cmake --build...]" >&2
    exit 2
fi
cd "$(dirname "$0")/.."

cmake --preset "$1" >/dev/null
if [ -t 1 ]; then
    NINJA_STATUS='[%f/%t, %e s] ' cmake --build --preset "$@"
    exit
fi
# In a log, one line for each tenth of the steps is enough, in addition to the compiler's messages.
NINJA_STATUS='[%f/%t] ' cmake --build --preset "$@" | awk '
    BEGIN { shown = -1 }
    match($0, /^\[[0-9]+\/[0-9]+\] /) {
        split(substr($0, 2, RLENGTH - 3), step, "/")
        tenth = int(10 * step[1] / step[2])
        if (step[1] > 0 && tenth > shown) {
            print "  built " step[1] " of " step[2]
            fflush()
            shown = tenth
        }
        next
    }
    $0 != "ninja: no work to do."'

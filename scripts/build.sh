#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Configures and builds a preset, and shows its progress: build.sh PRESET [OPTION of cmake --build...]
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
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
# In a log, one line for each tenth of the steps is enough, in addition to the compiler's messages. Debian's awk would not
# show them before it has read 4096 bytes.
NINJA_STATUS='[%f/%t] ' cmake --build --preset "$@" | {
    shown=-1
    while IFS= read -r line; do
        if [[ $line =~ ^\[([0-9]+)/([0-9]+)\]\  ]]; then
            step=${BASH_REMATCH[1]} steps=${BASH_REMATCH[2]}
            if [ "$step" -gt 0 ] && [ $((10 * step / steps)) -gt "$shown" ]; then
                echo "  built $step of $steps"
                shown=$((10 * step / steps))
            fi
        elif [ "$line" != 'ninja: no work to do.' ]; then
            printf '%s\n' "$line"
        fi
    done
}

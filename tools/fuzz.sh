#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fuzzes the plug-in, the agent and the simulated gateway (docs/testing.md).
#
#   fuzz.sh [SECONDS [TARGET...]]   for this time, by default 600 seconds, all targets in parallel
#   fuzz.sh --short [TARGET...]     a few runs, the same every time
#   fuzz.sh --minimise [TARGET...]  adds inputs of long runs that reach more code to fuzz/corpus
#   fuzz.sh --coverage [TARGET...]  prints the lines that the corpora reach
#
# The targets are fuzz_request, fuzz_device, fuzz_session, fuzz_serve, fuzz_http, fuzz_mqtt, fuzz_policy,
# fuzz_recording, fuzz_linux and fuzz_state, by default all of them. When one finds something, the exit status
# is not 0, the input is in build/fuzz/findings, and the last line about the target says how to repeat it.
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
cd "$(dirname "$0")/.."

mode=long
seconds=600
case ${1-} in
    --short | --minimise | --coverage)
        mode=${1#--}
        shift
        ;;
    [0-9]*)
        seconds=$1
        shift
        ;;
esac
targets=("$@")
if [ $# -eq 0 ]; then
    targets=(fuzz_request fuzz_device fuzz_session fuzz_serve fuzz_http fuzz_mqtt fuzz_policy fuzz_recording
        fuzz_linux fuzz_state)
    # Its corpus is two states of version 0.1.0: hundreds of homes would be a megabyte.
    if [ "$mode" = minimise ]; then
        unset 'targets[-1]'
    fi
fi
for target in "${targets[@]}"; do
    if [ ! -f "fuzz/$target.cpp" ] || [[ $target != fuzz_* ]] || [[ $seconds = *[!0-9]* ]]; then
        sed -n 's/^#   \(fuzz.sh\)/usage: \1/p' "$0" >&2
        exit 2
    fi
done

# The build, corpora and findings of long runs.
home=build/fuzz
mkdir -p "$home/findings" "${targets[@]/#/fuzz/corpus/}" # git has no folder for an empty corpus
# There is no time limit for an input: on a busy or suspended machine it would report false findings.
limits=(-timeout=0 -rss_limit_mb=2560)
# The maximum size of an input; the agent's log is discarded.
# libFuzzer's choice of inputs by the features they have would take most of the time of HTTP and MQTT.
declare -A options=(
    [fuzz_request]="-max_len=4096" [fuzz_device]="-max_len=4096" [fuzz_session]="-max_len=4096"
    [fuzz_serve]="-max_len=4096 -close_fd_mask=2" [fuzz_state]="-max_len=16384"
    [fuzz_http]="-max_len=4096 -close_fd_mask=2 -entropic=0"
    [fuzz_mqtt]="-max_len=4096 -close_fd_mask=2 -entropic=0"
    [fuzz_policy]="-max_len=4096" [fuzz_recording]="-max_len=8192 -close_fd_mask=3" [fuzz_linux]="-max_len=4096"
)
# Short stack traces of allocations and a small quarantine, for speed.
export ASAN_OPTIONS=malloc_context_size=8:quarantine_size_mb=32

# build DIRECTORY [OPTION...]
build() {
    scripts/install-deps.sh --clang
    cmake --preset fuzz -B "$@" >/dev/null
    cmake --build "$1" --target "${targets[@]}" -- --quiet
}

# fuzz DIRECTORY TARGET OPTION... : runs a target and prints the result.
fuzz() {
    local program=$1/bin/$2 log=$1/$2.log
    local status=0
    local TIMEFORMAT='%U %S'
    # shellcheck disable=SC2086  # several options
    { time setarch --addr-no-randomize "$program" "${limits[@]}" ${options[$2]} -print_final_stats=1 \
        -dict="$1/seeds/protocol.dict" -artifact_prefix="$home/findings/$2-" "${@:3}" \
        >"$log" 2>&1 || status=$?; } 2>"$log.time"
    if [ "$status" -ne 0 ]; then
        cat "$log"
        sed -n "s|^.*Test unit written to |$2: repeat it with $program |p" "$log"
        return 1
    fi
    # After a thousand suspects without a leak, libFuzzer disables the leak detection and continues.
    if grep -q 'disabled leak detection' "$log"; then
        printf '%s: memory in use grows without leaks, so leak detection was disabled\n' "$2"
        return 1
    fi
    local runs
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    printf '%s: %s runs, %s per second, %s per second of processor time; %s\n' "$2" "$runs" \
        "$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")" \
        "$(awk -v runs="$runs" '{ printf "%d", runs / ($1 + $2 + 0.001) }' "$log.time")" \
        "$(sed -n 's/^#[0-9]*\tDONE *\(cov: [0-9]* ft: [0-9]*\).*/\1/p' "$log")"
}

# wait_for WORKER...: fails when one of them has failed.
wait_for() {
    local worker status=0
    for worker in "$@"; do
        wait "$worker" || status=1
    done
    return "$status"
}

long() {
    local target workers=()
    build "$home"
    for target in "${targets[@]}"; do
        mkdir -p "$home/corpus/$target"
        fuzz "$home" "$target" -max_total_time="$seconds" \
            "$home/corpus/$target" "fuzz/corpus/$target" "$home/seeds/$target" &
        workers+=($!)
    done
    wait_for "${workers[@]}"
}

# A fixed count, a fixed seed and no address randomisation, so that it is the same every time. Built
# without optimisation, which halves the build time, most of the total.
short() {
    local -A runs=(
        [fuzz_request]=10000 [fuzz_device]=6000 [fuzz_session]=240 [fuzz_serve]=2000 [fuzz_policy]=4000
        [fuzz_http]=400 [fuzz_mqtt]=400 [fuzz_recording]=600 [fuzz_linux]=4000 [fuzz_state]=400
    )
    local target workers=()
    build build/fuzz_short -D CMAKE_CXX_FLAGS_DEBUG="-O0 -g1"
    for target in "${targets[@]}"; do
        rm -rf "build/fuzz_short/corpus/$target"
        mkdir -p "build/fuzz_short/corpus/$target"
        fuzz build/fuzz_short "$target" -runs="${runs[$target]}" -seed=1 -reload=0 \
            "build/fuzz_short/corpus/$target" "fuzz/corpus/$target" \
            "build/fuzz_short/seeds/$target" &
        workers+=($!)
    done
    wait_for "${workers[@]}"
}

# Only inputs that reach code that the seeds, which every build generates, do not; hit counts do not
# matter.
minimise() {
    local target merged seed
    build "$home"
    for target in "${targets[@]}"; do
        merged=$home/minimised/$target
        rm -rf "$merged"
        mkdir -p "$merged" "$home/corpus/$target"
        cp "$home/seeds/$target"/* "$merged"
        # shellcheck disable=SC2086  # several options
        "$home/bin/$target" "${limits[@]}" ${options[$target]} -use_counters=0 -set_cover_merge=1 \
            "$merged" "fuzz/corpus/$target" "$home/corpus/$target" >"$home/$target.log" 2>&1
        for seed in "$home/seeds/$target"/*; do
            rm "$merged/$(basename "$seed")"
        done
        rm -rf "fuzz/corpus/$target"
        mv "$merged" "fuzz/corpus/$target"
        printf '%s: %s inputs, %s\n' "$target" "$(find "fuzz/corpus/$target" -type f | wc -l)" \
            "$(du -sh --apparent-size "fuzz/corpus/$target" | cut -f1)"
    done
}

coverage() {
    local target profile folders
    local there=build/fuzz_coverage
    build "$there" -D SMART_ROUTER_SANITIZERS= \
        -D CMAKE_CXX_FLAGS_DEBUG="-O0 -fprofile-instr-generate -fcoverage-mapping"
    for target in "${targets[@]}"; do
        profile=$there/$target.profile
        mkdir -p "$home/corpus/$target"
        # shellcheck disable=SC2086  # several options
        LLVM_PROFILE_FILE=$profile.raw "$there/bin/$target" ${options[$target]} -runs=0 \
            "$home/corpus/$target" "fuzz/corpus/$target" "$there/seeds/$target" 2>/dev/null
        llvm-profdata-14 merge -o "$profile" "$profile.raw"
        folders=(smart_router_service)
        case $target in
            fuzz_session) folders+=(simulated_gateway) ;;
            fuzz_serve) folders+=(agent) ;;
            fuzz_http | fuzz_mqtt | fuzz_policy | fuzz_recording) folders=(agent) ;;
            fuzz_linux) folders=(linux_gateway) ;;
            fuzz_state) folders=(simulated_gateway) ;;
        esac
        printf '== %s: lines of each file\n' "$target"
        llvm-cov-14 export -summary-only -instr-profile="$profile" "$there/bin/$target" |
            python3 fuzz/coverage_table.py "${folders[@]}"
    done
}

"$mode"

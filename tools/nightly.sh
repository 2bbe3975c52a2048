#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# What takes too long for every change (docs/testing.md). Each job is a function.
#
#   nightly.sh [JOB...]   these jobs, one after the other; all of them by default
#   nightly.sh --list     their names
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
cd "$(dirname "$0")/.."

# Another seed every day, so that the cases differ.
seed=$(date +%Y%m%d)

# build PRESET TARGET...
build() {
    cmake --preset "$1" >/dev/null
    cmake --build --preset "$1" --target "${@:2}" -- --quiet
}

# Two at a time, for half an hour each.
job_fuzzing() {
    local status=0
    tools/fuzz.sh 1800 fuzz_request fuzz_device || status=1
    tools/fuzz.sh 1800 fuzz_session fuzz_serve || status=1
    tools/fuzz.sh 1800 fuzz_http fuzz_mqtt || status=1
    tools/fuzz.sh 1800 fuzz_recording fuzz_linux || status=1
    tools/fuzz.sh 1800 fuzz_state fuzz_policy || status=1
    return "$status"
}

job_json_cases() {
    build debug hgagent smart_router_service simulated_gateway
    /usr/bin/python3 -B tests/hostile/json_cases_test.py build/debug/bin/hgagent 20000 "$seed"
}

# Races within the C library as well, which the thread sanitizer does not see.
job_helgrind() {
    build release unit_threads
    valgrind --quiet --tool=helgrind --error-limit=no --error-exitcode=1 \
        --suppressions=tests/support/helgrind.supp build/release/bin/unit_threads --gtest_brief=1
}

job_mipsel_agent() {
    tools/mipsel_agent.sh
}

# The first and the middle allocation of each call stack, and each system call, of hgagent serve and of call
# fail in turn; the ordinary tests take a sample.
job_agent_sweep() {
    local sweep=(python3 -B tests/agent_sweep/agent_sweep.py) status=0 which
    build release hgagent smart_router_service simulated_gateway failing_allocation
    for which in '' --call; do
        "${sweep[@]}" memory build/release/bin/hgagent $which \
            --library "$PWD/build/release/tests/agent_sweep/libfailing_allocation.so" || status=1
        "${sweep[@]}" system_calls build/release/bin/hgagent $which || status=1
    done
    return "$status"
}

# 10,000 settings to a service whose worker, or that itself, is killed at random moments.
job_service_kills() {
    build debug service
    SERVICE_SETTINGS=10000 build/debug/bin/service --gtest_filter=Run.KeepsTheHomeWholeWhateverIsKilledWhen
}

# 10,000 requests for each kind of failure of the broker, which is also away for a minute.
job_broker() {
    build debug hgagent smart_router_service simulated_gateway counting_device
    REQUESTS=10000 FAILURES=4 AWAY_SECONDS=60 /usr/bin/python3 -B tests/broker/exactly_once_test.py build/debug/bin/hgagent \
        build/debug/tests/broker
}

# What a gateway of a fleet takes, by the number of gateways: the figures of docs/performance.md.
job_fleet_figures() {
    build release hgagent smart_router_service simulated_gateway
    tools/fleet_figures.py 100 1000 4000 10000
}

# Ten minutes at 2,000 requests per second.
job_fleet_run() {
    build release hgagent smart_router_service simulated_gateway
    tools/fleet_run.sh build/fleet_run --build build/release
}

# version_at COMMIT HEADER
version_at() {
    git show "$1:$2" | sed -n 's/^#define SMART_ROUTER_SERVICE_VERSION_[A-Z]* \([0-9]*\).*/\1/p' | paste -s -d .
}

# The Debian packages of this version over those of the one before, in a bare Debian. Needs root, and a mirror of Debian.
job_upgrade() {
    local header=smart_router_service/include/smart_router_service/processjsonability.h commit version old
    scripts/install-deps.sh --packages --images
    version=$(version_at HEAD "$header")
    for commit in $(git log --format=%H -- "$header"); do
        [ "$(version_at "$commit^" "$header")" = "$version" ] || break
    done
    old=$PWD/build/upgrade/$commit
    if ! ls "$old"/build/package/*.deb >/dev/null 2>&1; then
        rm -rf "$old"
        mkdir -p "$old"
        git archive "$commit^" | tar -x -C "$old"
        "$old/scripts/package.sh"
    fi
    scripts/package.sh
    tools/bare_root.sh "$PWD/build/bare_root"
    tests/packaging/upgrade_test.sh build/bare_root/root "$old/build/package" build/package
}

# The units of the Debian packages under a systemd that runs, on a bare Debian in namespaces. Needs root, and a mirror of
# Debian.
job_boot() {
    scripts/install-deps.sh --packages --images
    scripts/package.sh
    tools/bare_root.sh "$PWD/build/bare_root"
    tests/packaging/boot_test.sh build/bare_root/root build/package
}

# The container's image, built from the packages on a bare Debian instead of on that of a registry, and run.
job_container() {
    scripts/install-deps.sh --packages --images
    scripts/package.sh
    tools/bare_root.sh "$PWD/build/bare_root"
    tests/packaging/container_test.sh build/bare_root/root
}

# All cases of the tests in network namespaces, with 100 kills; and the release under valgrind.
job_linux_gateway() {
    local targets=(hgagent smart_router_service device_layer agent_security linux_gateway shifted_clock) status=0
    build release "${targets[@]}"
    /usr/bin/python3 -B tests/linux_gateway/memory_test.py build/release/bin/hgagent build/release/lib/liblinux_gateway.so \
        build/release/tests/linux_gateway/shifted_clock.so || status=1
    build debug "${targets[@]}"
    WHOLE_TESTS=1 KILL_SEED=$seed ctest --preset debug --tests-regex '^linux_gateway\.(access|limits|many_hosts|periods|reading|recovery)' ||
        status=1
    return "$status"
}

# A million clients that connect and say nothing.
job_service_connects() {
    build debug service
    SERVICE_CONNECTS=1000000 build/debug/bin/service --gtest_filter=Run.TakesManyClientsThatSayNothing
}

# A recording of a million commands is replayed in the memory that a tenth of it needs.
job_long_replay() {
    build release hgagent smart_router_service simulated_gateway
    /usr/bin/python3 -B tests/recorded/memory_test.py build/release/bin/hgagent 1000000
}

# Which share of 200 changes of the plug-in a replay of all homes' recordings notices.
job_replay_mutants() {
    build release hgagent smart_router_service simulated_gateway sleepless
    tools/replay_mutants.py --count 200
}

# All cases of the tests of which the ordinary run takes a sample.
job_whole_tests() {
    build debug all
    WHOLE_TESTS=1 ctest --preset debug --tests-regex '^faults|^fleet|KillTest|StateFileTest' --fixture-exclude-any '.*'
}

jobs=()
for name in $(compgen -A function job_); do
    jobs+=("${name#job_}")
done
if [ "$*" = --list ]; then
    printf '%s\n' "${jobs[@]}"
    exit 0
fi
if [ $# -gt 0 ]; then
    jobs=("$@")
fi

failed=()
for job in "${jobs[@]}"; do
    if ! declare -F "job_$job" >/dev/null; then
        sed -n 's/^#   \(nightly.sh\)/usage: \1/p' "$0" >&2
        exit 2
    fi
done
for job in "${jobs[@]}"; do
    echo "== $job"
    # In a shell of its own, in which a failing line ends the job: as a condition it would not.
    set +e
    (
        set -e
        "job_$job"
    )
    status=$?
    set -e
    if [ "$status" -ne 0 ]; then
        failed+=("$job")
    fi
done
if [ ${#failed[@]} -gt 0 ]; then
    echo "failed: ${failed[*]}"
    exit 1
fi

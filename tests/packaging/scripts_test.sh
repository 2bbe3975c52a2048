#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The scripts' output to a user who waits, who may not install packages, or who mistypes an argument:
# scripts_test.sh PROJECT
#
# Programs that would build, test or install are replaced by stand-ins that do nothing, in a folder that is
# the only one in PATH.
set -euo pipefail
project=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin"
bash=$(command -v bash)
for program in cat date dirname env grep mktemp rm sed sleep; do
    ln -s "$(command -v "$program")" "$work/bin"
done
ln -s "$bash" "$work/bin/bash"

# stand_in NAME LINE: a program that runs this line of shell
stand_in() { printf '#!%s\n%s\n' "$bash" "$2" >"$work/bin/$1"; chmod +x "$work/bin/$1"; }
# run SCRIPT [OPTION...]: its output is in $said, its exit status in $status
run()
{
    status=0
    said=$(PATH=$work/bin "$bash" "$project/$1" "${@:2}" 2>&1) || status=$?
}
fail() { printf '%s\n-- %s\n' "$said" "$1" >&2; exit 1; }
expect() { grep -Eqx -e "$1" <<<"$said" || fail "no line is: $1"; }

run scripts/install-deps.sh
[ "$status" -eq 1 ] || fail 'ends without an error'
expect 'The packages are those of Debian 12, and there is no dpkg here.*'

stand_in id 'echo 1000'
# shellcheck disable=SC2016 # for the other shell
stand_in dpkg 'case $1 in --print-architecture) echo amd64 ;; --print-foreign-architectures) ;; esac'
stand_in dpkg-query 'exit 1'
stand_in apt-get "touch '$work/installed'"
run scripts/install-deps.sh --cross
[ "$status" -eq 1 ] || fail 'ends without an error'
expect 'missing packages: .* libcjson-dev .* libcjson-dev:mipsel .*'
expect 'Only root can install them, and there is no sudo. As root, run:'
expect '  dpkg --add-architecture mipsel'
expect '  apt-get update'
expect '  apt-get install .* libcjson-dev .* libcjson-dev:mipsel .*'
[ ! -e "$work/installed" ] || fail 'apt-get was run'
run scripts/install-deps.sh --all
# Packages that only one option installs.
for package in clang-format-14 libclang-rt-14-dev libgtest-dev:mipsel lintian musl-tools; do
    expect "missing packages: .* $package .*|missing packages: .* $package"
done

stand_in sudo 'echo "newcomer is not in the sudoers file"; exit 1'
run scripts/install-deps.sh
[ "$status" -eq 1 ] || fail 'ends without an error'
expect 'newcomer is not in the sudoers file'
expect '  apt-get install .* libcjson-dev .*'

# shellcheck disable=SC2016 # for the other shell
stand_in sudo 'exec "$@"'
stand_in apt-get 'printf "%s\n" dlstatus:1:50.0:x dlstatus:1:100.0:x pmstatus:a:60.0:x pmstatus:a:99.2:x'
run scripts/install-deps.sh
[ "$status" -eq 0 ] || fail 'ends with an error'
for line in 'fetched: 50 %' 'fetched: 100 %' 'installed: 50 %' 'installed: 75 %' 'installed: 100 %'; do
    expect "  $line"
done
stand_in apt-get 'echo pmstatus:a:99.2:x; exit 100'
run scripts/install-deps.sh
[ "$status" -eq 1 ] || fail 'ends without an error'
! grep -q '100 %' <<<"$said" || fail 'a failed installation is reported as complete'

stand_in dpkg-query 'printf "amd64 installed\nmipsel installed\n"'
run scripts/install-deps.sh --cross
[ "$status$said" = 0 ] || fail 'there was nothing to install'

# shellcheck disable=SC2016 # for the other shell
stand_in cmake 'for step in 1 2 30; do echo "[$step/30] Building"; done; echo "a warning"'
stand_in ctest 'echo tests'
run scripts/build.sh debug
expect '  built 1 of 30'
expect '  built 30 of 30'
expect 'a warning'
[ "$(grep -c built <<<"$said")" -eq 2 ] || fail 'prints more than one line for each tenth'
# Each line is there as soon as the step is done: this build waits for it.
stand_in cmake "case \$1 in --build) echo '[1/9] Building'; until grep -q built '$work/progress'; do sleep 0.1; done ;; esac"
: >"$work/progress"
PATH=$work/bin "$bash" "$project/scripts/build.sh" debug >"$work/progress"
run scripts/test.sh
[ "$status" -eq 0 ] || fail 'ends with an error'
for stage in 1 2 3 4 5 6 7 8 9; do
    expect "== $stage/9 [a-z].*"
    expect "== $stage/9 took [0-9]+ min [0-9]+ s"
done
expect '== all tests passed, in .*'
stand_in ctest 'exit 8'
run scripts/test.sh
[ "$status" -ne 0 ] || fail 'a failed stage is taken for success'
! grep -q 'all tests passed' <<<"$said" || fail 'a failed stage is taken for success'

# Nothing is started before the arguments are checked: of the stand-ins, each would end with another status.
for script in "$project"/scripts/*.sh "$project"/tools/*.sh "$project/.ci/run"; do
    run "${script#"$project/"}" --unknown
    [ "$status" -eq 2 ] || fail "$script --unknown ends with $status"
    expect 'usage: .*'
    run "${script#"$project/"}" --help
    [ "$status" -eq 0 ] || fail "$script --help ends with $status"
    [ "${said%%$'\n'*}" = "$(sed -n '3s/^# //p' "$script")" ] || fail "$script --help does not say what it does"
done
for program in "$project"/tools/*.py; do
    [[ $program != */mutations.py ]] || continue # no program
    status=0
    said=$(/usr/bin/python3 -B "$program" --unknown 2>&1) || status=$?
    [ "$status" -eq 2 ] || fail "$program --unknown ends with $status"
    expect 'usage: .*'
    said=$(/usr/bin/python3 -B "$program" --help 2>&1) || fail "$program --help fails"
    expect 'usage: .*'
done
echo 'the scripts report what they do'

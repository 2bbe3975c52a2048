#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# hgagent policy test and hgagent run --check-config: their output and exit status.
#
# usage: policy_command_test.sh HGAGENT EXAMPLES
set -euo pipefail
hgagent=$1
policy=$2/service/policy.toml
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
faults=0

# expect STATUS OUTPUT WORD...: both streams, with "..." for anything
expect()
{
    local status=0 wanted=$2 output
    output=$("$hgagent" "${@:3}" 2>&1) || status=$?
    # shellcheck disable=SC2053 # a pattern
    if [ "$status" -ne "$1" ] || [[ $output != ${wanted//.../*} ]]; then
        printf '%s: %s\n%s\n' "${*:3}" "$status" "$output" >&2
        faults=$((faults + 1))
    fi
}

expect 0 $'verdict  allowed\nrule     the owner of the service may do everything\n...secrets  shown\nrate     no limit' \
    policy test "$policy" --as owner SET_WIFI_INFO
expect 0 $'verdict  allowed\nrule     '"$policy"$':...: allow "effect:none"\nclient   group:hgagent\nrole     support\n...' \
    policy test "$policy" --as group:hgagent GET_WIFI_INFO
expect 0 $'verdict  allowed\n...rate     0.2 requests a second, 1 at once' \
    policy test "$policy" --as user:nobody 'event:update.*'
expect 1 $'verdict  denied\nrule     no rule of the role "support" allows it\n...' \
    policy test "$policy" --as group:hgagent --as uid:12345 SET_WIFI_INFO
expect 1 $'verdict  denied\nrule     no role has this client as a member\nclient   uid:12345' \
    policy test "$policy" --as uid:12345 GET_SN_INFO
# This system's own user of the number 0 is one of the administrators.
expect 0 $'verdict  allowed\n...client   user:root, uid:0,...role     admin\n...' \
    policy test "$policy" --as user:root SET_WIFI_INFO
expect 3 'hgagent: no command "GET_SN_INF0"; the nearest are GET_SN_INFO,...' \
    policy test "$policy" --as owner GET_SN_INF0
expect 3 'hgagent: "report:x" is not known; there are home-page,...' policy test "$policy" --as owner report:x
expect 3 'hgagent: there is no kind of request such as "subject:wifi"' \
    policy test "$policy" --as owner subject:wifi
expect 2 "hgagent: $home/none: cannot be opened: No such file or directory" \
    policy test "$home/none" --as owner GET_SN_INFO
expect 2 '--as is required...' policy test "$policy" GET_SN_INFO

expect 0 'the configuration is valid' run --check-config --config "$2/service/hgagent.toml"
printf '[limits]\nqueue = 0\n[roles.a]\nmembers = ["uid:0"]\nallow = ["NO_SUCH"]\nx = 1\n' >"$home/wrong"
expect 2 "hgagent: $home/wrong:2: limits.queue: has to be from 1 to 100000
hgagent: $home/wrong:5: roles.a.allow: no command \"NO_SUCH\"; ...
hgagent: $home/wrong:6: roles.a.x: there is no such key
hgagent: command line: --max-clients: \"x\" is not a whole number" \
    run --check-config --config "$home/wrong" --max-clients x
expect 0 'the configuration is valid' \
    --log-level 5 --fault devapi_get_sn_info=1 run --check-config --in-process --reasons --max-queue 3
expect 2 '...--worker excludes --in-process...' run --check-config --in-process --worker child
expect 2 '--log-level: Value 9 not in range 0 to 7...' --log-level 9 run --check-config

echo "$faults faults"
[ "$faults" -eq 0 ]

#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Completes command lines as bash does: completion_test.sh HGAGENT COMPLETION COMMANDS_FOLDER
set -euo pipefail
hgagent=$1
# shellcheck source=/dev/null
source "$2"
commands_folder=$3
faults=0

# completed WORD...: the completions of the last word
completed()
{
    COMP_WORDS=(hgagent "$@")
    COMP_CWORD=$#
    _hgagent
    printf '%s\n' "${COMPREPLY[@]}" | sort
}

# expect WHAT TEXT TEXT: the same lines in both
expect()
{
    if [ "$2" != "$3" ]; then
        echo "$1:"
        diff <(echo "$2") <(echo "$3") || true
        faults=$((faults + 1))
    fi
}

# What the agent's help lists, by a pattern for its lines.
in_help() { "$hgagent" "${@:2}" --help | sed -n "$1" | sort; }
options='s/^  \(-h,\)\?\(--[a-z-]*\).*/\2/p'

complete -p hgagent >/dev/null

names=$(basename -s .json "$commands_folder"/*.json | sort)
expect call "$(completed call '' | grep -v '^--')" "$names"
expect describe "$(completed describe '' | grep -v '^--')" \
    "$(basename -s .json "$commands_folder"/*.json "$commands_folder"/../events/*.json | sort)"
expect 'call GET_S' "$(completed call GET_S)" "$(grep ^GET_S <<<"$names")"
expect 'call behind options' GET_SN_INFO \
    "$(completed --log-level 7 --trace = call --fault call = '-1*2' @ 50ms --show-secrets call GET_SN_)"

expect 'call over a socket' GET_SN_INFO "$(completed call --socket call GET_SN_)"

expect 'mqtt-call' GET_SN_INFO "$(completed mqtt-call --broker mqtt : //call --id call --follow GET_SN_)"
expect 'a key of mqtt-call' Enable= "$(completed mqtt-call --id gw SET_UPNP_STATE En)"

# All keys of requests that may be strings; no lists, no objects, and no ignored keys.
for command in SET_UPNP_STATE SET_AD_BASE_INFO SET_WIFI_INFO_LIST GET_SN_INFO; do
    expect "keys of $command" "$(completed call "$command" '' | sed '/^$/d')" "$(sed -n \
        '/"request": \[/,/^    \]/ { /"type": "\(array\|object\)"\|not read/d; s/^        {"key": "\([^"]*\)".*/\1=/p }' \
        "$commands_folder/$command.json" | sort)"
done
expect 'a key that is begun' Enable= "$(completed call --reasons SET_UPNP_STATE En)"
expect 'a key that is given' "$(completed call SET_UPNP_STATE Enable = 1 '')" ''
expect 'the value of a key' "$(completed call SET_UPNP_STATE Enable = '')$(completed call SET_UPNP_STATE Enable =)" ''

expect subcommands "$(completed '' | grep -v '^-')" \
    "$(in_help '/^Subcommands/,/^$/ s/^  \([a-z-]*\) .*/\1/p')"
expect options "$(completed --)" "$(in_help "$options")"
for subcommand in $(completed '' | grep -v '^-'); do
    before=()
    [ "$subcommand" = report ] && before=(stations)
    expect "options of $subcommand" "$(completed "$subcommand" "${before[@]}" --)" \
        "$(in_help "$options" "$subcommand")"
done
expect 'options of policy test' "$(completed policy test FILE --)" "$(in_help "$options" policy test)"
for subcommand in drive campaign; do
    expect "options of fleet $subcommand" "$(completed fleet "$subcommand" --count 1 --)" \
        "$(in_help "$options" fleet "$subcommand")"
done
expect 'fleet' drive "$(completed fleet dr)"
expect 'what is tested' "$(completed policy test FILE GET_SN)" GET_SN_INFO
expect policy "$(completed policy te)" test
expect reports "$(completed report '' | grep -v '^--')" "$("$hgagent" report | sed 's/ .*//' | sort)"
expect 'no value is known' "$(completed --fault '')" ''

cd "$(mktemp -d)"
trap 'rm -rf "$PWD"' EXIT
touch operators_home.json
expect '--scenario op' "$(completed --scenario op)" $'operator_variant\noperators_home.json'
expect '--device op' "$(completed --device op)" operators_home.json
expect '--device=' "$(completed --device =)" operators_home.json
expect '--device=op' "$(completed --device = op)" operators_home.json

echo "$(wc -l <<<"$names") commands, $faults faults"
[ "$faults" -eq 0 ] && [ "$(wc -l <<<"$names")" -gt 1 ]

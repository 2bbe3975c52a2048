#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The manual page has to name every subcommand and option of the agent's own help, and every variable of
# the environment, and all pages in its folder have one date: man_page_test.sh HGAGENT PAGE CONTROL_HEADER
set -euo pipefail
hgagent=$1
page=$2
header=$3
checked=0
faults=0

# expect TEXT: the page contains it as a word
expect()
{
    checked=$((checked + 1))
    if ! grep -Eq -e "$1( |\$)" "$page"; then
        echo "${page##*/} has no line with: $1"
        faults=$((faults + 1))
    fi
}

subcommands=$("$hgagent" --help | sed -n '/^Subcommands/,/^$/ s/^  \([a-z-]*\) .*/\1/p')
for subcommand in '' $subcommands; do
    [ -z "$subcommand" ] || expect "^\\.It Ic $subcommand"
    for option in $("$hgagent" ${subcommand:+"$subcommand"} --help | sed -n 's/^  \(-h,\)\?-\(-[a-z-]*\).*/\2/p'); do
        expect "Fl $option"
    done
done
for subcommand in drive campaign; do
    expect "^\\.It Ic fleet $subcommand"
    for option in $("$hgagent" fleet "$subcommand" --help | sed -n 's/^  \(-h,\)\?-\(-[a-z-]*\).*/\2/p'); do
        expect "Fl $option"
    done
done
while read -r variable; do
    expect "$variable"
done < <(grep -Eo '^ \*   SIMULATED_GATEWAY_[A-Z_]+' "$header" | sed 's/.* //')

dates=$(sed -n 's/^\.Dd //p' "${page%/*}"/* | sort -u)
if [ "$(wc -l <<< "$dates")" -ne 1 ]; then
    echo "the pages have different dates: ${dates//$'\n'/; }"
    faults=$((faults + 1))
fi

echo "$checked names, $faults faults"
[ "$faults" -eq 0 ] && [ "$checked" -gt 30 ]

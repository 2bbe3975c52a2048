#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The hook that formats what is committed: hook_test.sh, in the folder of the project
set -euo pipefail
project=$PWD
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# shellcheck disable=SC2046 # several names
unset $(git rev-parse --local-env-vars)
export GIT_CONFIG_GLOBAL=/dev/null GIT_CONFIG_NOSYSTEM=1
export GIT_AUTHOR_NAME=a GIT_AUTHOR_EMAIL=a@example.org GIT_COMMITTER_NAME=a GIT_COMMITTER_EMAIL=a@example.org

git init --quiet --initial-branch=main "$work"
cd "$work"
git config core.hooksPath "$project/tools/hooks"
cp "$project/.clang-format" .

# expect TEXT COMMAND...: what the command prints
expect()
{
    local output
    output=$("${@:2}")
    if [ "$output" != "$1" ]; then
        printf '%s prints\n%s\nand not\n%s\n' "${*:2}" "$output" "$1" >&2
        exit 1
    fi
}
commit() { git commit --quiet --message=change "$@" >>output 2>&1; }

printf 'int  one;\n' >'with a space.c'
printf 'int  two;\n' >two.h
printf 'int  text;\n' >text.md
git add .clang-format ./*.c two.h text.md
printf 'int  three;\n' >>two.h
commit
expect 'int one;' git show 'HEAD:with a space.c'
expect 'int one;' cat 'with a space.c'
expect 'int  text;' git show HEAD:text.md
# Changes made after staging are neither committed nor formatted.
expect 'int two;' git show HEAD:two.h
expect $'int  two;\nint  three;' cat two.h

commit --all
expect $'int two;\nint three;' git show HEAD:two.h
expect $'int two;\nint three;' cat two.h
expect '' git status --short --untracked-files=no

printf 'int  four;\n' >>two.h
if commit two.h; then
    echo 'a file that is named is committed as it is' >&2
    exit 1
fi
expect $'int two;\nint three;' git show HEAD:two.h
grep -q '^not formatted: two.h; ' output

git rm --quiet --force two.h
commit
expect $'.clang-format\ntext.md\nwith a space.c' git ls-files
echo 'the hook formats what is staged'

#!/usr/bin/env bash
# The device library that docs/porting.md shows has to do what is shown:
# porting_test.sh HGAGENT CC SOURCE_FOLDER GENERATED_FOLDER
set -euo pipefail
hgagent=$1
compiler=$2
source=$3
generated=$4
page=$source/docs/porting.md

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
awk '/^```$/ { inside = 0 } inside; /^```c$/ { inside = 1 }' "$page" >"$folder/my_device.c"
"$compiler" -Wall -Wextra -Werror -shared -fPIC -I "$source/smart_router_service/include" -I "$generated" \
    -o "$folder/libmy_device.so" "$folder/my_device.c" "$source/tests/abi/c_device.c"

# Each command of the page with the line that follows it.
shown=0
while read -r command && read -r reply; do
    shown=$((shown + 1))
    given=$("$hgagent" --device "$folder/libmy_device.so" call "$command") || true
    if [ "$given" != "$reply" ]; then
        printf '%s\n  shown: %s\n  given: %s\n' "$command" "$reply" "$given"
        exit 1
    fi
done < <(sed -n 's/^\$ .*hgagent --device .* call //; T; p; n; p' "$page")
echo "$shown replies as shown"
[ "$shown" -gt 1 ]

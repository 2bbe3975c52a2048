#!/usr/bin/env bash
# Runs clang-tidy over the sources of the product: tidy.sh BUILD_FOLDER. The plug-in is built in
# several ways; each of its files is looked at once.
set -euo pipefail
build=$1
once=$build/tidy
mkdir -p "$once"
/usr/bin/python3 - "$build/compile_commands.json" "$once/compile_commands.json" <<'END'
import json
import sys

with open(sys.argv[1], encoding="utf-8") as file:
    by_file = {entry["file"]: entry for entry in json.load(file)}
with open(sys.argv[2], "w", encoding="utf-8") as file:
    json.dump(list(by_file.values()), file)
END
run-clang-tidy-14 -quiet -p "$once" "^$PWD/(smart_router_service|simulated_gateway|agent)/"

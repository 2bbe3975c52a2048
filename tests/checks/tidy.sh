#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs clang-tidy on the sources of the product: tidy.sh BUILD_FOLDER. The plug-in is built in several
# variants, and other sources in unity builds; each file is checked separately, once.
set -euo pipefail
build=$1
once=$build/tidy
mkdir -p "$once"
/usr/bin/python3 - "$build/compile_commands.json" "$once/compile_commands.json" <<'END'
import json
import pathlib
import re
import sys

by_file = {}
with open(sys.argv[1], encoding="utf-8") as file:
    for entry in json.load(file):
        source = pathlib.Path(entry["file"])
        together = source.parent.name == "Unity"
        for each in re.findall('#include "(.*)"', source.read_text()) if together else [str(source)]:
            command = entry["command"].replace(str(source), each)
            by_file.setdefault(each, dict(entry, file=each, command=command))
with open(sys.argv[2], "w", encoding="utf-8") as file:
    json.dump(list(by_file.values()), file)
END
run-clang-tidy-14 -quiet -p "$once" "^$PWD/(smart_router_service|line_output|simulated_gateway|linux_gateway|agent)/"

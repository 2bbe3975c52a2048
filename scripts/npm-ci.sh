#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the npm packages of a folder from its lock file, unless those of this lock file are installed. Their
# scripts are not run.
#
#   scripts/npm-ci.sh FOLDER
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
if [ $# -ne 1 ] || [[ $1 = -* ]]; then
    echo "usage: $0 FOLDER" >&2
    exit 2
fi
cd "$1"
installed=node_modules/.installed-package-lock.json
if cmp --silent package-lock.json "$installed"; then
    exit 0
fi
if ! command -v npm >/dev/null; then
    echo "npm is missing; scripts/install-deps.sh --checks installs it" >&2
    exit 1
fi
echo "installing the npm packages of $1"
npm ci --ignore-scripts --no-progress
cp package-lock.json "$installed"

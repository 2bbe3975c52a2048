#!/bin/sh
# SPDX-License-Identifier: MIT
# check_exports.sh NM LIBRARY: the library exports the device functions and their version, its control
# functions and the function that prevents a restart of the machine, nothing else. It does not link libcurl, which
# every process with the library would load.
set -eu
exports=$("$1" -D --defined-only "$2" | awk '{print $NF}')
foreign=$(echo "$exports" | grep -Ev '^((devapi|simulated_gateway)_[A-Za-z0-9_]+|device_access_version|system)$' || true)
if [ -n "$foreign" ]; then
    echo "exported, but not part of the interface:"
    echo "$foreign"
    exit 1
fi
echo "$exports" | grep -qx simulated_gateway_open
echo "$exports" | grep -qx system
if "$1" -D --undefined-only "$2" | grep ' curl_'; then
    echo "needed of libcurl, which is for the module"
    exit 1
fi

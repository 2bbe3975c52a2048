#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds and demonstrates the installed programs: an evening in one home. The agent loads the plug-in and
# a simulated gateway, sends commands and prints the replies.
#
#   demo.sh [--console] [FOLDER]   uses an existing build in the folder, such as build/debug
#
# With --console the evening is shown in the browser, a step each time Enter is pressed.

# shellcheck disable=SC2016 # lines are printed before the shell expands them
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"
cd "$(dirname "$0")/.."

in_browser=
if [ "${1-}" = --console ]; then
    in_browser=--console
    shift
fi
if [ $# -gt 1 ] || [[ ${1-} = -* ]]; then
    echo "usage: $0 [--console] [FOLDER]" >&2
    exit 2
fi
build=build/release
if [ $# -gt 0 ]; then
    build=$(realpath --relative-base="$PWD" "$1")
    if ! [ -e "$build/bin/hgagent" ]; then
        echo "$0: there is no build in $1" >&2
        exit 2
    fi
else
    scripts/install-deps.sh $in_browser
    echo 'building; the first time takes some minutes'
    scripts/build.sh release --target product standing_clock
fi

bold='' normal=''
if [ -t 1 ]; then
    bold=$'\033[1m' normal=$'\033[0m'
fi
say() { printf '\n%s%s%s\n' "$bold" "$*" "$normal"; }
# Prints and runs a command.
show() {
    printf '$ %s\n' "$1"
    eval "$1" || printf '(exit status %d)\n' "$?"
}

# Waits for Enter if there is a terminal, then names the next step and the view that shows it.
step() {
    if [ -t 0 ]; then
        read -rp "${bold}Enter continues.$normal "
    fi
    say "$2: ${address%%#*}#/$1"
}
# A service with the console, whose page follows what other clients change.
evening_in_the_browser() {
    if ! [ -e "$build/console/index.html" ]; then
        echo "$0: $build has no console, since it was built without Node.js (scripts/install-deps.sh --console" \
            'installs it), or the packages of npm could not be fetched: the output of the build says which' >&2
        exit 1
    fi
    unset "${!SIMULATED_GATEWAY_@}" # the home is a new one, and its clock runs
    PATH="$(realpath "$build")/bin:$PATH"
    DEMO=$(mktemp -d)
    service=
    trap '[ -z "$service" ] || { kill "$service" && wait "$service"; } || true; rm -rf "$DEMO"' EXIT
    hgagent --firmware-folder "$DEMO" run --console 127.0.0.1:0 --reboot-seconds 10 --socket "$DEMO/socket" \
        2>"$DEMO/log" &
    service=$!
    until grep -q '^listening on http' "$DEMO/log"; do
        if ! kill -0 "$service" 2>/dev/null; then
            cat "$DEMO/log" >&2
            exit 1
        fi
        sleep 0.1
    done
    address=$(cat "$DEMO/socket.console")
    say 'Open this address in a browser. The page follows each step:'
    echo "  $address"
    if [ -t 0 ] && [ -n "${DISPLAY-}${WAYLAND_DISPLAY-}" ] && command -v xdg-open >/dev/null; then
        xdg-open "$address" >/dev/null 2>&1 || true
    fi
    show "export PATH=\"$(realpath "$build")/bin:\$PATH\" DEMO=$DEMO"

    step home 'Three routers in a mesh, and the devices at this time of day. The router upstairs gets a name'
    show 'hgagent call --socket "$DEMO/socket" SET_CHILD_ROUTER_HG_BASE_INFO DeviceID=3C6AD2228140 Name=Studio'
    step devices 'The television gets a name'
    show "hgagent call --socket \"\$DEMO/socket\" SET_AD_BASE_INFO MAC=8C:79:F5:62:1A:09 DevType=TV \\
    ByName='Big screen' AccessEnable=1"
    step wifi 'Guests come: a network for a day'
    show "hgagent call --socket \"\$DEMO/socket\" SET_HG_GUEST_SSID Enable=1 SSID='Guests of the house' Band=5GHz \\
    PWD='come on in' ENCRYPT=WPA2 ContinueTime=1 HourTime=0"
    step parental 'Jonas has no Internet access from 8 p.m. on'
    show "hgagent call --socket \"\$DEMO/socket\" SET_GREENNET_PROTECT_PERIOD_LIST '{\"Mac\": \"72:9B:E0:46:D8:15\",
    \"Sleep\": [{\"StartTime\": \"20:00\", \"EndTime\": \"07:00\", \"Enable\": \"1\", \"DaysOfWeek\": \"1234567\"}]}'"
    step qos 'A priority rule for calls'
    show "hgagent call --socket \"\$DEMO/socket\" SET_QOS_CLASSIFICATION_INFO '{\"Id\": \"0\", \"Action\": \"1\",
    \"Name\": \"Calls\", \"PriorityLevel\": \"1\", \"type_list\": [{\"Type\": \"DSCP\", \"Min\": \"46\", \"Max\": \"46\"}]}'"
    step internet 'A second port for the television box'
    show 'hgagent call --socket "$DEMO/socket" SET_PORT_BINDING Index=2 BoundPorts=LAN3,LAN4'
    step notices 'A notice to the phone'
    show "hgagent notice --socket \"\$DEMO/socket\" --plugin-name firmware 'There is new firmware for your router'"
    step home 'The router upstairs restarts, which disconnects the attic for 45 seconds'
    show 'hgagent call --socket "$DEMO/socket" RP_CHILD_HG_REBOOT DeviceID=3C6AD2228140'
    step firmware 'New firmware: fetched, flashed, and started by a reboot of ten seconds'
    show 'hg-mkimage --product HGU-AX3000 --version V3.0.0 --date 2026-01-01 "$DEMO/new.image"'
    show 'hgagent call --socket "$DEMO/socket" UPDATE_IMMEDIATE \
    "{\"Image\": {\"UpdateUrl\": \"file://$DEMO/new.image\"}}"'
    step commands 'Each command as a form, with request, reply and device calls'
    if [ -t 0 ]; then
        read -rp "${bold}Enter ends the service.$normal "
    fi
}
if [ -n "$in_browser" ]; then
    evening_in_the_browser
    exit
fi

say 'You can type every line after "$ " yourself. First, the folders of the programs and the home.'
echo 'Each command runs a separate agent; settings are kept in the home from one to the next.'
show "cd $(printf %q "$PWD")"
show "export PATH=\"\$(realpath $(printf %q "$build")/bin):\$PATH\""
show 'export DEMO="$(mktemp -d)"'
trap 'rm -rf "$DEMO"' EXIT
show 'export SIMULATED_GATEWAY_STATE="$DEMO/home.json"'

say 'The clock of the home is stopped, so that the output is the same every time: 1 January 2026, 9 p.m.'
show 'export SIMULATED_GATEWAY_TIME=1767301200 TZ=UTC'

say 'Who is the router? One command, one reply'
show 'hgagent call GET_SN_INFO'

say 'The home: three routers in a mesh, and a dozen devices'
show 'hgagent topology'

say 'The television and the router upstairs get names'
show "hgagent call SET_AD_BASE_INFO MAC=8C:79:F5:62:1A:09 DevType=TV ByName='Big screen' AccessEnable=1"
show 'hgagent call SET_CHILD_ROUTER_HG_BASE_INFO DeviceID=3C6AD2228140 Name=Studio'

say 'Guests come: a network for a day'
show "hgagent call SET_HG_GUEST_SSID Enable=1 SSID='Guests of the house' Band=5GHz PWD='come on in' \\
    ENCRYPT=WPA2 ContinueTime=1 HourTime=0"
show 'hgagent call GET_HG_GUEST_SSID Band=5GHz'

say 'Parental control: who is in the list?'
show 'hgagent call GET_GREENNET_DEVICE_LIST'

say 'The television is added. The list is set as a whole, so it repeats the entries that are in it'
show "hgagent call SET_GREENNET_DEVICE_LIST '{\"DeviceList\": [
    {\"Mac\": \"72:9B:E0:46:D8:15\", \"Name\": \"Jonas\", \"NotifyEnable\": \"1\"},
    {\"Mac\": \"70:F0:88:2C:A6:93\", \"Name\": \"Console\", \"NotifyEnable\": \"0\"},
    {\"Mac\": \"8C:79:F5:62:1A:09\", \"Name\": \"Big screen\", \"NotifyEnable\": \"1\"}]}'"
show 'hgagent call GET_GREENNET_DEVICE_LIST'

say 'From 8 p.m. it has no Internet access'
show "hgagent call SET_GREENNET_PROTECT_PERIOD_LIST '{\"Mac\": \"8C:79:F5:62:1A:09\", \"Sleep\": [
    {\"StartTime\": \"20:00\", \"EndTime\": \"07:00\", \"Enable\": \"1\", \"DaysOfWeek\": \"1234567\"}]}'"

say 'Traffic: a priority rule for calls, and a second port for the television box'
show "hgagent call SET_QOS_CLASSIFICATION_INFO '{\"Id\": \"0\", \"Action\": \"1\", \"Name\": \"Calls\",
    \"PriorityLevel\": \"1\", \"type_list\": [{\"Type\": \"DSCP\", \"Min\": \"46\", \"Max\": \"46\"}]}'"
show 'hgagent call SET_PORT_BINDING Index=2 BoundPorts=LAN3,LAN4'

say 'The router upstairs restarts, which disconnects the attic for 45 seconds'
show 'hgagent call RP_CHILD_HG_REBOOT DeviceID=3C6AD2228140'
show 'hgagent topology'

say 'Is everything back? The names are kept, and the television is blocked'
show 'export SIMULATED_GATEWAY_TIME=1767301245'
show 'hgagent call LINK_CHECK'
show 'hgagent hosts'

say 'New firmware: fetched, flashed, and started by a reboot of the simulated gateway'
show 'hg-mkimage --product HGU-AX3000 --version V3.0.0 --date 2026-01-01 "$DEMO/new.image"'
show 'hgagent --firmware-folder "$DEMO" call UPDATE_IMMEDIATE \
    "{\"Image\": {\"UpdateUrl\": \"file://$DEMO/new.image\"}}"'
show 'hgagent call HG_GET_UPDATE_STATUS'

say "A notice to the phone. It contains the computer's time, which a preloaded library sets to that of the home"
show "LD_PRELOAD=\"\$(realpath $(printf %q "$build")/tests/end_to_end/libstanding_clock.so)\" \\
    hgagent notice --plugin-name firmware 'Your router has new firmware'"

say 'The device fails; the reply reports it'
show 'hgagent --fault devapi_get_sn_info=-1 call GET_SN_INFO'

say 'The calls of the device library'
show 'hgagent --trace - call GET_SN_INFO'

say 'For programs: requests and answers line by line; invalid lines are refused'
show 'hgagent serve <<REQUESTS
{"id":1,"command":"QUERY_SYSTEM_INFO"}
rubbish
{"id":"two","command":"RESPONSE_ROUTER_VERSION","params":{"VersionInfo":"app 5.2.0"}}
{"id":3,"command":"GET_SN"}
REQUESTS'

say 'What to do next'
cat <<NEXT
  $build/bin/hgagent list wifi
            all commands about Wi-Fi; without the word, all commands
  $build/bin/hgagent describe SET_WIFI_INFO
            the request and the replies of one command
  scripts/test.sh
      builds and runs the tests
  docs/porting.md
            how to run the plug-in on your own router; README.md lists the other documents
NEXT

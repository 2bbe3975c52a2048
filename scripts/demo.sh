#!/usr/bin/env bash
# Builds what is installed and shows it at work: an evening in one home. The agent loads the plug-in and a
# simulated gateway, sends commands and prints the replies.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release --target product -- --quiet

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
PATH=$PWD/build/release/bin:$PATH

# Each command runs an agent of its own; what one sets in the home the next one finds. The gateway's
# clock stands at nine in the evening, so that the story is always the same.
export SIMULATED_GATEWAY_STATE=$home/home.json
evening=1767301200
export SIMULATED_GATEWAY_TIME=$evening

say() { printf '\n\033[1m%s\033[0m\n' "$*"; }
show() {
    local word line='$'
    for word in "$@"; do
        case $word in
            *[!A-Za-z0-9_.,:/=-]*) line+=" '$word'" ;;
            *) line+=" $word" ;;
        esac
    done
    printf '%s\n' "$line"
    "$@" || printf '(exit status %d)\n' "$?"
}
call() { show hgagent call "$@"; }

say 'Who is the router? One command, one reply'
call GET_SN_INFO

say 'The home: three routers in a mesh, and a dozen devices'
show hgagent topology

say 'The television and the router upstairs get names'
call SET_AD_BASE_INFO MAC=8C:79:F5:62:1A:09 DevType=TV 'ByName=Big screen' AccessEnable=1
call SET_CHILD_ROUTER_HG_BASE_INFO DeviceID=3C6AD2228140 Name=Studio

say 'Guests come: a network for a day'
call SET_HG_GUEST_SSID Enable=1 'SSID=Guests of the house' Band=5GHz 'PWD=come on in' ENCRYPT=WPA2 \
    ContinueTime=1 HourTime=0
call GET_HG_GUEST_SSID Band=5GHz

say 'Parental control: from eight in the evening no Internet for the console'
call SET_GREENNET_DEVICE_LIST \
    '{"DeviceList": [{"Mac": "70:F0:88:2C:A6:93", "Name": "Console", "NotifyEnable": "1"}]}'
call SET_GREENNET_PROTECT_PERIOD_LIST '{"Mac": "70:F0:88:2C:A6:93", "Sleep":
    [{"StartTime": "20:00", "EndTime": "07:00", "Enable": "1", "DaysOfWeek": "1234567"}]}'

say 'What the traffic needs: a rule for calls, and a second port for the television box'
call SET_QOS_CLASSIFICATION_INFO '{"Id": "0", "Action": "1", "Name": "Calls", "PriorityLevel": "1",
    "type_list": [{"Type": "DSCP", "Min": "46", "Max": "46"}]}'
call SET_PORT_BINDING Index=2 BoundPorts=LAN3,LAN4

say 'The router upstairs restarts, and for 45 seconds takes the attic with it'
call RP_CHILD_HG_REBOOT DeviceID=3C6AD2228140
show hgagent topology
export SIMULATED_GATEWAY_TIME=$((evening + 45))

say 'Is everything all right again? The names have stayed, and the console is blocked'
call LINK_CHECK
show hgagent hosts

say 'New firmware: fetched, flashed, and started by a reboot'
show hg-mkimage --product HGU-AX3000 --version V3.0.0 --date 2026-01-01 "$home/new.image"
call UPDATE_IMMEDIATE "{\"Image\": {\"UpdateUrl\": \"file://$home/new.image\"}}"
call HG_GET_UPDATE_STATUS

say 'A message to the phone'
show hgagent notice --plugin-name firmware 'Your router has new firmware'

say 'The device fails; the reply says so'
show hgagent --fault devapi_get_sn_info=-1 call GET_SN_INFO

say 'What reaches the device'
show hgagent --trace - call GET_SN_INFO

say 'For programs: requests and answers line by line; rubbish does no harm'
cat >"$home/requests" <<'REQUESTS'
{"id":1,"command":"QUERY_SYSTEM_INFO"}
rubbish
{"id":"two","command":"RESPONSE_ROUTER_VERSION","params":{"VersionInfo":"app 5.2.0"}}
{"id":3,"command":"GET_SN"}
REQUESTS
cat "$home/requests"
show hgagent serve <"$home/requests"

say 'What it answers about Wi-Fi, and what one command takes'
show hgagent list wifi
show hgagent describe SET_AD_BASE_INFO

#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the container's image from build/package with a bare Debian as its base, and tries what docs/container.md
# promises: container_test.sh ROOT
#
# Needs root and podman. The containers have no network but their own loopback, and those of the compose file share one.
# PODMAN_OPTIONS and RUN_OPTIONS are further options of podman and of its run.
set -euo pipefail
bare=$1
here=$(realpath "$(dirname "$0")")
project=$here/../..
work=$(mktemp -d)
read -ra options <<<"${PODMAN_OPTIONS:-}"
read -ra run_options <<<"${RUN_OPTIONS:-}"
engine() { podman --root "$work/storage" --runroot "$work/run" --storage-driver vfs --cgroup-manager cgroupfs \
    --runtime runc --log-level fatal "${options[@]}" "$@"; }
started=()
end()
{
    for ((last = ${#started[@]} - 1; last >= 0; --last)); do # the first has the network of the others
        engine rm --force --time 1 "${started[last]}" >/dev/null || true
    done
    rm -rf "$work"
}
trap end EXIT

expect()
{
    if [ "$2" != "$3" ]; then
        printf '%s: %s\ninstead of: %s\n' "$1" "$2" "$3" >&2
        exit 1
    fi
}
# start NAME [OPTION of podman run]... IMAGE [WORD]...
start()
{
    local name=$1
    shift
    started+=("$name")
    engine run --detach --name "$name" "${run_options[@]}" "$@" >/dev/null
}
# await CONTAINER TEXT: until its log contains the text
await()
{
    until engine logs "$1" 2>&1 | grep -q "$2"; do
        [ "$(engine inspect --format '{{.State.Running}}' "$1")" = true ] || { engine logs "$1" >&2; exit 1; }
        sleep 0.2
    done
}
call() { engine exec "$1" hgagent call --socket /run/hgagent/hgagent.sock "${@:2}"; }
by_broker() { engine exec "$1" hgagent mqtt-call --broker mqtt://127.0.0.1 --id "$2" GET_SN_INFO; }
sn_info='{"Status":"0","MAC":"3C:6A:D2:10:4F:20","tslinkstatus":"1","DeviceType":"HGU-AX3000"}'

tar -C "$bare" -c . | engine import - localhost/bare >/dev/null 2>&1
engine build --quiet --format docker --isolation chroot --pull-never --build-arg BASE=localhost/bare --tag hgagent \
    --file "$project/packaging/container/Dockerfile" "$project" >/dev/null

# The service with console and broker, as an ordinary user, and healthy.
start alone --network none --cap-drop all --security-opt no-new-privileges --volume home:/var/lib/hgagent \
    hgagent --with-broker
await alone 'listening on https://'
await alone 'connected to mqtt://'
expect user "$(engine exec alone id --user)" 10001
expect 'by socket' "$(call alone GET_SN_INFO)" "$sn_info"
expect 'by broker' "$(by_broker alone gw1)" "$sn_info"
engine healthcheck run alone
# https METHOD PATH [BODY]: the answer of the console, whose certificate is its own
https()
{
    local body=${3-}
    printf '%s %s HTTP/1.1\r\nHost: localhost:8443\r\nConnection: close\r\nContent-Length: %d\r\n\r\n%s' "$1" "$2" "${#body}" \
        "$body" | engine exec --interactive alone openssl s_client -quiet -verify_quiet -verify_return_error \
        -CAfile /var/lib/hgagent/console.crt -connect localhost:8443 2>/dev/null | tr -d '\r'
}
https GET / >"$work/page"
grep -q '<title>' "$work/page"
password=$(engine logs alone 2>&1 | sed -n 's/.* with the password //p')
login() { https POST /api/login "{\"user\":\"admin\",\"password\":\"$1\"}" | sed -n '1p'; }
expect 'the right password' "$(login "$password")" 'HTTP/1.1 204 No Content'
expect 'a wrong password' "$(login "${password%?}x")" 'HTTP/1.1 401 Unauthorized'

# It ends by itself when it is asked to, and keeps home and password.
call alone SET_HG_BASE_INFO Name=Attic >/dev/null
begun=$EPOCHREALTIME
engine stop --time 60 alone >/dev/null
echo "stopped in $(((${EPOCHREALTIME/./} - ${begun/./}) / 1000)) ms"
expect 'exit status' "$(engine inspect --format '{{.State.ExitCode}}' alone)" 0
engine start alone >/dev/null
until call alone GET_HG_BASE_INFO 2>/dev/null | grep -q '"Name":"Attic"'; do
    expect 'running again' "$(engine inspect --format '{{.State.Running}}' alone)" true
    sleep 0.2
done
expect 'passwords given' "$(engine logs alone 2>&1 | grep -c ' with the password ')" 1
engine stop --time 60 alone >/dev/null

# A failing device is not healthy.
start ill --network none --env SIMULATED_GATEWAY_FAULTS=devapi_get_sn_info=-1 hgagent
await ill 'listening on https://'
if engine healthcheck run ill; then
    echo 'a gateway that does not answer is healthy' >&2
    exit 1
fi

# What "docker compose --profile fleet up" starts, with the words of its file. Here the containers share one loopback, which is the broker
# for them.
gateways=0
echo '127.0.0.1 localhost broker' >"$work/hosts"
while IFS='|' read -r name environment entry command; do
    read -ra words <<<"$environment $entry hgagent $command" # the image
    network=container:broker
    if [ "$name" = broker ]; then
        network=none
    fi
    start "$name" --network "$network" --volume "$work/hosts:/etc/hosts:ro" --cap-drop all --security-opt no-new-privileges "${words[@]}"
    case $name in
        gateway-*)
            await "$name" 'connected to mqtt://broker'
            by_broker "$name" "$name" | grep -q '"Status":"0"'
            gateways=$((gateways + 1))
            ;;
        fleet) # a request waits until its gateway is there
            for id in home-1 home-100; do
                by_broker "$name" "$id" | grep -q '"Status":"0"'
            done
            gateways=$((gateways + 100))
            ;;
    esac
done < <(/usr/bin/python3 - "$project/packaging/container/compose.yaml" <<'END'
import sys
import yaml
for name, service in yaml.safe_load(open(sys.argv[1], encoding="utf-8"))["services"].items():
    assert service["image"] == "hgagent" and service["cap_drop"] == ["ALL"], name
    environment = [word for key, value in service.get("environment", {}).items() for word in ("--env", f"{key}={value}")]
    entry, *words = service.get("entrypoint", [None])
    words += service.get("command", [])
    assert not any("|" in word or " " in word for word in environment + words), name
    print(name, " ".join(environment), f"--entrypoint {entry}" if entry else "", " ".join(words), sep="|")
END
)
expect gateways "$gateways" 103
echo 'the image was built, and what it starts was tried'

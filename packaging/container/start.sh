#!/bin/sh
# SPDX-License-Identifier: MIT
# Starts the service in a container: hgagent-container [--with-broker] [OPTION of hgagent run]...
#
# --with-broker also starts a broker on port 1883, and connects the gateway to it under the name in HGAGENT_ID.
set -eu
umask 077
home=/var/lib/hgagent

# A container is reached from other addresses than its own, so the console needs TLS and a password.
if [ ! -e "$home/console.crt" ]; then
    openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -noenc -days 3650 -subj /CN=hgagent \
        -addext subjectAltName=DNS:localhost,IP:127.0.0.1 -keyout "$home/console.key" -out "$home/console.crt" 2>/dev/null
fi
if [ ! -e "$home/passwords" ]; then
    password=$(openssl rand -hex 12)
    hash=$(printf %s "$password" | argon2 "$(openssl rand -hex 16)" -id -e -m 16 -t 3 -p 1)
    echo "admin:$hash" >"$home/passwords"
    echo "the console's user is admin, with the password $password" >&2
fi

if [ "${1-}" = --with-broker ]; then
    shift
    mosquitto -c /etc/hgagent/mosquitto.conf &
    set -- --broker mqtt://127.0.0.1 --id "${HGAGENT_ID:-gw1}" "$@"
fi
exec hgagent --state "$home/home.json" run --config /etc/hgagent/hgagent.toml "$@"

#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the missing ones of the Debian packages that the project needs, and prints their names and size.
# Without the permission to install, it prints the commands that root has to run.
#
#   --cross    also those that build and run the plug-in for 32-bit MIPS
#   --checks   also the formatter and the analysers
#   --clang    also the compiler that builds the fuzzers
#   --musl     also those that build the plug-in for the C library musl
#   --packages also those that build and check the Debian packages
#   --console  also those that build the console and test it in a browser
#   --images   also those that make a bare Debian and run a container, for two jobs of tools/nightly.sh; not part of --all
#   --all      all of these: everything that .ci/run and the other tools need
set -euo pipefail
[ "${1-}" != --help ] || exec sed -n '3,/^[^#]\|^$/s/^# \?//p' "$0"

packages=(
    cmake g++ make ninja-build
    libcjson-dev
    libargon2-dev libboost-dev libcli11-dev libcurl4-openssl-dev libedit-dev libelf-dev libmosquitto-dev libsodium-dev libssl-dev libsystemd-dev
    libtomlplusplus-dev libutfcpp-dev nlohmann-json3-dev zlib1g-dev
    libhowardhinnant-date-dev libmnl-dev libnftables-dev libnl-3-dev libnl-route-3-dev tzdata
    busybox dnsmasq-base ifupdown iperf3 iproute2 iputils-ping isc-dhcp-client nftables
    argon2 ca-certificates curl libbenchmark-dev libgmock-dev libgtest-dev mosquitto mosquitto-clients openssl pkgconf python3
    python3-jsonschema python3-paho-mqtt python3-pexpect python3-websocket socat strace systemd valgrind xz-utils
)
foreign=()
node=(nodejs)
# Builds of nodejs from elsewhere contain npm, and conflict with Debian's.
command -v npm >/dev/null || node+=(npm)
if [ "$*" = --all ]; then
    set -- --cross --checks --clang --musl --packages --console
fi
for option in "$@"; do
    case $option in
        --cross)
            packages+=(g++-mipsel-linux-gnu qemu-user)
            foreign+=(libcjson-dev:mipsel libgtest-dev:mipsel libstdc++6:mipsel)
            ;;
        --checks)
            packages+=(abigail-tools clang-format-14 clang-tidy-14 cppcheck doxygen git mandoc "${node[@]}" shellcheck)
            ;;
        --clang)
            packages+=(clang-14 libclang-rt-14-dev llvm-14)
            ;;
        --musl)
            packages+=(dpkg-dev file musl-tools)
            ;;
        --packages)
            packages+=(dpkg-dev fakeroot file lintian man-db)
            ;;
        --images)
            packages+=(debootstrap podman python3-yaml runc)
            ;;
        --console)
            packages+=(chromium "${node[@]}")
            ;;
        *)
            echo "usage: $0 [--cross] [--checks] [--clang] [--musl] [--packages] [--console] [--images] | --all" >&2
            exit 2
            ;;
    esac
done

if ! command -v dpkg >/dev/null; then
    echo 'The packages are those of Debian 12, and there is no dpkg here. docs/dependencies.md lists their purposes;' >&2
    echo '.devcontainer/Dockerfile builds a container with them.' >&2
    exit 1
fi
native=$(dpkg --print-architecture)
missing=()
for package in "${packages[@]}" "${foreign[@]}"; do
    case $package in
        *:*) architecture=${package#*:} ;;
        *) architecture="($native|all)" ;;
    esac
    known=$(dpkg-query --show --showformat='${Architecture} ${db:Status-Status}\n' "$package" 2>/dev/null) ||
        known=none
    if ! grep -Eqx "$architecture installed" <<<"$known"; then
        missing+=("$package")
    fi
done
if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi
add_mipsel=()
if [ ${#foreign[@]} -gt 0 ] && ! dpkg --print-foreign-architectures | grep -qx mipsel; then
    add_mipsel=(dpkg --add-architecture mipsel)
fi
install=(apt-get install --yes --no-install-recommends "${missing[@]}")

give_up()
{
    {
        echo "$1 As root, run:"
        [ ${#add_mipsel[@]} -eq 0 ] || echo "  ${add_mipsel[*]}"
        echo '  apt-get update'
        echo "  ${install[*]}"
    } >&2
    exit 1
}

echo "missing packages: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || give_up 'Only root can install them, and there is no sudo.'
    as_root=(sudo)
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT
quietly() {
    if ! "${as_root[@]}" "$@" >"$log" 2>&1; then
        cat "$log" >&2
        give_up 'They could not be installed.'
    fi
}
# Prints apt's progress; its other output goes into the log. apt seldom reports the end of an installation, so that is
# printed below.
progress() {
    local kind='' shown=0 line status percent
    while IFS= read -r line; do
        IFS=: read -r status _ percent _ <<<"$line"
        case $status in
            dlstatus) status=fetched ;;
            pmstatus) status=installed ;;
            *) printf '%s\n' "$line" >>"$log"; continue ;;
        esac
        [ "$status" = "$kind" ] || shown=0
        kind=$status percent=${percent%.*}
        # A package of another architecture has a colon in its name.
        [[ $percent =~ ^[0-9]+$ ]] || continue
        if [ $((percent / 25)) -gt "$shown" ] && [ "$status $percent" != 'installed 100' ]; then
            shown=$((percent / 25))
            echo "  $status: $((shown * 25)) %"
        fi
    done
}

[ ${#add_mipsel[@]} -eq 0 ] || quietly "${add_mipsel[@]}"
quietly apt-get update
# apt ends with 1 when the answer is not to continue.
{ LC_ALL=C "${install[@]/#--yes/--assume-no}" 2>/dev/null || true; } | sed -n \
    -e 's/^[0-9]* upgraded, \([0-9]*\) newly installed.*/installing \1 packages/p' \
    -e 's/^\(Need to get\|After this\)/  &/p'
if ! "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    "${install[@]}" -o APT::Status-Fd=1 2>&1 | progress; then
    cat "$log" >&2
    give_up 'They could not be installed.'
fi
echo '  installed: 100 %'

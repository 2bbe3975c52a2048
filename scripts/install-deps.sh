#!/usr/bin/env bash
# Installs the Debian packages that the project needs and that are missing; says which.
#
#   --cross    also what builds and runs the plug-in for 32-bit MIPS
#   --checks   also the formatter and the analysers
#   --clang    also the other compiler, which builds the fuzzers
#   --musl     also what builds the plug-in for another C library
#   --packages also what builds and checks the Debian packages
set -euo pipefail

packages=(
    cmake g++ ninja-build
    libcjson-dev
    libcli11-dev libcurl4-openssl-dev libelf-dev libssl-dev libutfcpp-dev nlohmann-json3-dev
    ca-certificates libbenchmark-dev libgmock-dev libgtest-dev openssl pkgconf python3 python3-jsonschema
    strace valgrind
)
foreign=()
for option in "$@"; do
    case $option in
        --cross)
            packages+=(g++-mipsel-linux-gnu make qemu-user)
            foreign+=(libcjson-dev:mipsel libgtest-dev:mipsel libstdc++6:mipsel)
            ;;
        --checks)
            packages+=(abigail-tools clang-format-14 clang-tidy-14 cppcheck doxygen git mandoc shellcheck)
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
        *)
            echo "usage: $0 [--cross] [--checks] [--clang] [--musl] [--packages]" >&2
            exit 2
            ;;
    esac
done

native=$(dpkg --print-architecture)
missing=()
for package in "${packages[@]}" "${foreign[@]}"; do
    case $package in
        *:*) architecture=${package#*:} ;;
        *) architecture="($native|all)" ;;
    esac
    if ! dpkg-query --show --showformat='${Architecture} ${db:Status-Status}\n' "$package" 2>/dev/null |
        grep -Eqx "$architecture installed"; then
        missing+=("$package")
    fi
done
if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

as_root=()
if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
fi
log=$(mktemp)
trap 'rm -f "$log"' EXIT
quietly() {
    if ! "${as_root[@]}" "$@" >"$log" 2>&1; then
        cat "$log" >&2
        exit 1
    fi
}

echo "installing ${missing[*]}"
if [ ${#foreign[@]} -gt 0 ] && ! dpkg --print-foreign-architectures | grep -qx mipsel; then
    quietly dpkg --add-architecture mipsel
fi
quietly apt-get update
quietly env DEBIAN_FRONTEND=noninteractive apt-get install --yes --no-install-recommends "${missing[@]}"

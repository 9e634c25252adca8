#!/bin/sh
# Installs the Debian packages that the project needs, those that are missing alone; says nothing when
# none is. usage: tools/install_packages.sh [lint|bench]     lint: also clang, clang-tidy and clang-format;
# bench: also the peers that the benchmarks measure themselves against, which do without them
set -eu

# openimageio-tools: CMake's description of libopenimageio-dev asks for its programs to be there.
build="cmake g++ make ninja-build nlohmann-json3-dev libbenchmark-dev libcli11-dev libembree-dev
       libfmt-dev libgtest-dev libopenimageio-dev libtbb-dev libtinyobjloader-dev
       openimageio-tools python3"
lint="clang clang-format clang-tidy"
bench="libnoise-dev"

wanted=$build
case "${1:-}" in
    "") ;;
    lint) wanted="$build $lint" ;;
    bench) wanted="$build $bench" ;;
    *)
        echo "usage: $0 [lint|bench]" >&2
        exit 2
        ;;
esac

if ! command -v dpkg-query >/dev/null 2>&1; then
    command -v cmake >/dev/null 2>&1 && exit 0 # another system: configuring tells what it lacks
    echo "error: this is no Debian system; install by hand what these packages hold:" $wanted >&2
    exit 1
fi

installed=$(dpkg-query -W -f='${Package} ${db:Status-Status}\n' $wanted 2>/dev/null |
            sed -n 's/ installed$//p' || true)
missing=
for package in $wanted; do
    echo "$installed" | grep -qx "$package" || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

as_root=
if [ "$(id -u)" != 0 ]; then
    if ! command -v sudo >/dev/null 2>&1; then
        echo "error: run this as root, there is no sudo: apt-get install --no-install-recommends$missing" >&2
        exit 1
    fi
    as_root="sudo"
fi

echo "Installing:$missing"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { $as_root apt-get update &&
       $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends $missing
     } >"$log" 2>&1; then
    tail -n 30 "$log" >&2
    echo "error: the packages could not be installed:$missing" >&2
    exit 1
fi

#!/usr/bin/env bash
# For any missing dependency, CMake names the package to install, and `scripts/setup` installs it: dependencies.sh
# SOURCE
set -Eeuo pipefail
shopt -s inherit_errexit
trap 'echo "dependencies.sh: failed: $BASH_COMMAND" >&2' ERR
source=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LC_ALL=C

expect() { # WHAT PACKAGE OPTION...
    local said
    said=$(cmake -S "$source" -B "$work/build" -G Ninja -U 'CMAKE_DISABLE_FIND_PACKAGE_*' -U GESTURE_API_TOOLS \
        -DGESTURE_API_BENCHMARKS=ON "${@:3}" 2>&1 | tr -s ' \n' ' ' || true)
    grep -qF "$1 is missing: install the Debian package $2 " <<<"$said" || { echo "without $1: $said" >&2; return 1; }
    grep -qE "[ (]$2( |\)|$)" "$source/scripts/setup" || { echo "scripts/setup does not install $2" >&2; return 1; }
}

packages=$(grep -hoP 'gesture_api_require\(\K[^)]*' "$source/CMakeLists.txt" "$source"/*/CMakeLists.txt \
    "$source"/tests/qml/CMakeLists.txt)
[ "$(wc -l <<<"$packages")" -gt 10 ]
while read -r name version package; do
    expect "$name $version" "$package" "-DCMAKE_DISABLE_FIND_PACKAGE_$name=ON"
done <<<"$packages"

# The host's libraries also need it without the tools.
expect 'RapidJSON 1.1' rapidjson-dev -DCMAKE_DISABLE_FIND_PACKAGE_RapidJSON=ON -DGESTURE_API_TOOLS=OFF

# Hides all programs of the path and of the system's directories.
for program in help2man ccache; do
    expect $program $program -U HELP2MAN -U GESTURE_API_LAUNCHER "-DCMAKE_CXX_COMPILER_LAUNCHER=${program/help2man/}" \
        -DGESTURE_API_BENCHMARKS=OFF -DCMAKE_FIND_USE_SYSTEM_ENVIRONMENT_PATH=OFF -DCMAKE_FIND_USE_CMAKE_SYSTEM_PATH=OFF
done

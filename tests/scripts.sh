#!/usr/bin/env bash
# Each script stops at the first command that fails, and names it: scripts.sh SOURCE
set -Eeuo pipefail
shopt -s inherit_errexit
trap 'echo "scripts.sh: failed: $BASH_COMMAND" >&2' ERR
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# The tree as after a checkout: what was built in it would be found before the tools that fail.
mkdir "$work/tree"
find "$(realpath "$1")" -mindepth 1 -maxdepth 1 ! -name build -exec ln -s -t "$work/tree" {} +
cd "$work/tree"

# A machine on which all packages are there, and every tool fails.
fake() { # STATUS TOOL...
    local tool
    for tool in "${@:2}"; do
        printf '#!/bin/sh\n[ %s != 0 ] || echo installed\nexit %s\n' "$1" "$1" >"$work/$tool"
        chmod +x "$work/$tool"
    done
}
fake 0 dpkg-query
fake 7 cmake doxygen shellcheck dpkg-parsechangelog mmdebstrap apt-get gesturectl

expect() { # SCRIPT COMMAND ARGUMENT...
    local said
    if said=$(PATH=$work:$PATH "scripts/$1" "${@:3}" 2>&1); then
        echo "scripts/$1 did not fail: $said" >&2
        return 1
    fi
    grep -qF -- "scripts/$1: failed: $2" <<<"$said" || { echo "scripts/$1 does not name '$2': $said" >&2; return 1; }
}

expect test scripts/lint
expect valgrind cmake
expect fuzz cmake
expect bench cmake
expect coverage cmake
expect doc doxygen
expect lint shellcheck
expect package 'version=$(dpkg-parsechangelog' "$work/packages"
expect arm '' armhf # where it stops depends on whether there is a root already
# Within a function.
fake 0 cmake
expect demo '"$@"'
# A package is missing that cannot be installed.
fake 1 dpkg-query
expect setup '"${as_root[@]}" apt-get' doc
# No script was forgotten.
[ "$(find scripts/ -type f | wc -l)" = 11 ]

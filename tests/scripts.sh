#!/usr/bin/env bash
# Each script stops at the first command that fails and names it. It rejects unknown arguments before it does anything:
# scripts.sh SOURCE
set -Eeuo pipefail
shopt -s inherit_errexit
trap 'echo "scripts.sh: failed: $BASH_COMMAND" >&2' ERR
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# The tree as after a checkout: a script would find built files before the failing tools.
mkdir "$work/tree"
find "$(realpath "$1")" -mindepth 1 -maxdepth 1 ! -name build -exec ln -s -t "$work/tree" {} +
cd "$work/tree"

# A machine with all packages, where every tool fails.
fake() { # STATUS TOOL...
    local tool
    for tool in "${@:2}"; do
        printf '#!/bin/sh\n[ %s != 0 ] || echo installed\nexit %s\n' "$1" "$1" >"$work/$tool"
        chmod +x "$work/$tool"
    done
}
fake 0 dpkg-query
fake 7 cmake doxygen shellcheck dpkg-parsechangelog mmdebstrap apt-get sudo gesturectl

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
expect arm '' armhf # the place depends on whether a root already exists
# Within a function.
fake 0 cmake
expect demo '"$@"'
# A missing package that cannot be installed.
fake 1 dpkg-query
expect setup '"${as_root[@]}" apt-get' doc

# Even if every tool fails, a script without an action must not fail.
fake 7 dpkg-query cmake
help() { # SCRIPT
    local said
    said=$(PATH=$work:$PATH "scripts/$1" --help 2>"$work/error")
    if [ "$(wc -l <<<"$said")" != 3 ] || [ -s "$work/error" ] || [[ $said != "usage: scripts/$1"* ]]; then
        echo "scripts/$1 --help says: $said $(cat "$work/error")" >&2
        return 1
    fi
}

refuse() { # SCRIPT ARGUMENT...
    local status=0
    PATH=$work:$PATH "scripts/$1" "${@:2}" >"$work/said" 2>"$work/error" || status=$?
    if [ $status != 2 ] || [ -s "$work/said" ] || ! grep -q "^usage: scripts/$1" "$work/error"; then
        echo "scripts/$*: status $status, says: $(cat "$work/said" "$work/error")" >&2
        return 1
    fi
}

scripts=0
for script in scripts/*; do
    [ "${script##*/}" != arguments.sh ] || continue
    help "${script##*/}"
    refuse "${script##*/}" --nosuch
    scripts=$((scripts + 1))
done
[ $scripts = 12 ]
refuse test --all more
refuse arm
refuse arm nosuch
refuse setup nosuch
refuse bench nosuch
refuse bench load --plot
refuse doc one two
refuse fuzz 0
refuse fuzz 2000
refuse fuzz 1000 nosuch
refuse fuzz 1000000 nosuch
refuse fuzz calls
refuse mutate --sample
refuse mutate --since nosuch
refuse mutate nosuch.cpp
for group in $(sed -n '/groups{$/,/^};$/p' benchmarks/bench.cpp | grep -oE '"[a-z]+"' | tr -d '"'); do
    grep -qE "takes .*['|]${group}['|]" scripts/bench || { echo "scripts/bench refuses the group $group" >&2; exit 1; }
done

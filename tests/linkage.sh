#!/usr/bin/env bash
# The shared object itself: linkage.sh LIBRARY
set -euo pipefail
trap 'echo "linkage.sh: failed: $BASH_COMMAND" >&2' ERR
library=$1

fail() { echo "$*" >&2; exit 1; }

dynamic=$(readelf -d "$library")
qt=$(grep -o 'libQt5[A-Za-z]*' <<<"$dynamic" | sort -u | tr '\n' ' ')
[ "$qt" = "libQt5Core " ] || fail "of Qt it needs: $qt"
grep -q 'SONAME.*\[libgesture_api\.so\.1\]' <<<"$dynamic" || fail "its name is not libgesture_api.so.1"
grep -q 'NODELETE' <<<"$dynamic" || fail "it can be unloaded under living objects"

# One export macro marks what is offered; a unique symbol would keep a library from unloading.
symbols=$(nm -DC --defined-only "$library")
grep -q ' T app_name()' <<<"$symbols" || fail "app_name() is not exported"
hidden=$(grep -E 'ActionReader|GestureIndex|writeAtomically|makeDirectoriesFor|indentText' <<<"$symbols" || true)
[ -z "$hidden" ] || fail "exported but internal: $hidden"
unique=$(awk '$2 == "u"' <<<"$symbols" | grep -v 'boost::\|std::' || true)
[ -z "$unique" ] || fail "unique symbols: $unique"

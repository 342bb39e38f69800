#!/usr/bin/env bash
# Checks the shared object itself, and the host's libraries if they are given: linkage.sh LIBRARY [HOST_LIBRARY...]
set -Eeuo pipefail
shopt -s inherit_errexit
trap 'echo "linkage.sh: failed: $BASH_COMMAND" >&2' ERR
library=$1

fail() { echo "$*" >&2; exit 1; }

dynamic=$(readelf -d "$library")
qt=$(grep -o 'libQt5[A-Za-z]*' <<<"$dynamic" | sort -u | tr '\n' ' ')
[ "$qt" = "libQt5Core " ] || fail "of Qt it needs: $qt"
grep -q 'SONAME.*\[libgesture_api\.so\.1\]' <<<"$dynamic" || fail "its name is not libgesture_api.so.1"
grep -q 'NODELETE' <<<"$dynamic" || fail "it can be unloaded under living objects"

# Exactly the exported classes and functions, and the classes of the one exception that may be thrown through it.
symbols=$(nm -DC --defined-only "$library" | cut -d' ' -f2-)
grep -qx 'T app_name()' <<<"$symbols" || fail "app_name() is not exported"
boost='boost::(bad_get|exception|exception_detail::clone_base|wrapexcept<boost::bad_get>)'
ours='(typeinfo|typeinfo name|vtable) for vellix::|(GestureSection|vellix(::gesture)?::[A-Z][A-Za-z]+)::'
other=$(grep -vE "^[A-Z] (app_name\(\)$|(typeinfo|typeinfo name|vtable) for $boost$|$ours|vellix::gesture::operator<<)" <<<"$symbols" || true)
[ -z "$other" ] || fail "exported, but not meant to be: $other"
hidden=$(grep -E 'ActionReader|GestureIndex|NewActions|Offer::|readGestures|writeAtomically|makeDirectoriesFor|indentText' <<<"$symbols" || true)
[ -z "$hidden" ] || fail "exported but internal: $hidden"

# <iostream> sets up all streams and locales of the process when a library is loaded.
for each in "$@"; do
    if [[ $(nm -DC --undefined-only "$each") == *'std::ios_base::Init::Init()'* ]]; then fail "$each includes <iostream>"; fi
done

# A start must not look up a library's own functions. (With a Qt that looks up its own, the build leaves it so.)
[ $# -gt 1 ] || exit 0
for each in "$@"; do
    own=$(nm -D --defined-only --format=posix "$each" | awk '$2 ~ /^[TW]$/ { print $1 }' | sort)
    called=$(readelf -rW "$each" | awk '$3 ~ /JUMP_SL/ { print $5 }' | sort)
    both=$(comm -12 <(echo "$own") <(echo "$called") | sed '/^$/d')
    [ -z "$both" ] || fail "$each looks up its own functions: $both"
done

# The host's reader of JSON consists of another library's headers, which a program may use, too.
for each in "$@"; do
    reader=$(nm -DC --defined-only "$each" | grep -iE 'rapidjson|readJson|readFile|StringCache' || true)
    [ -z "$reader" ] || fail "exported by $each, but internal: $reader"
done

#!/usr/bin/env bash
# Checks the shared objects themselves: linkage.sh LIBRARY COMPONENTS
set -Eeuo pipefail
shopt -s inherit_errexit
trap 'echo "linkage.sh: failed: $BASH_COMMAND" >&2' ERR
library=$1
components=$2

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
hidden=$(grep -E 'ActionReader|GestureIndex|writeAtomically|makeDirectoriesFor|indentText' <<<"$symbols" || true)
[ -z "$hidden" ] || fail "exported but internal: $hidden"

# The host's reader of JSON consists of another library's headers, which a program may use, too.
components_symbols=$(nm -DC --defined-only "$components")
grep -q 'VariantLoader::loadJson' <<<"$components_symbols" || fail "loadJson is not exported"
reader=$(grep -iE 'rapidjson|readJson|readFile|StringCache' <<<"$components_symbols" || true)
[ -z "$reader" ] || fail "exported by the components, but internal: $reader"

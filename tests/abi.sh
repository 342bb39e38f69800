#!/usr/bin/env bash
# Compares the exported interface with its description in the tree: abi.sh LIBRARY DESCRIPTION fails if a client of the
# described one could break; abi.sh --write LIBRARY DESCRIPTION updates the description after an intended change.
# abigail-tools does the comparison. This script adds the parts that its commands lack: the machine of the description,
# a library without debug information, and the rule that additions are no fault.
set -Eeuo pipefail
shopt -s inherit_errexit
trap 'echo "abi.sh: failed: $BASH_COMMAND" >&2' ERR
write=
if [ "$1" = --write ]; then
    write=1
    shift
fi
library=$1
description=$2
sections=$(readelf -S "$library")
grep -q '\.debug_info' <<<"$sections" || { echo "abi.sh: no debug information in $library" >&2; exit 1; }
if [ "$write" ]; then
    abidw --no-corpus-path --no-comp-dir-path --no-show-locs --exported-interfaces-only \
        --type-id-style hash --out-file "$description.new" "$library"
    mv "$description.new" "$description"
    exit
fi

header=$(readelf -h "$library")
if ! grep -q 'Machine:.*X86-64' <<<"$header"; then
    echo "not compared: the interface is described for x86_64"
    exit 77
fi
# Additions break no client.
status=0
abidiff --no-added-syms "$description" "$library" || status=$?
[ $status = 0 ] || { echo "abi.sh: the exported interface has changed (abidiff: status $status)" >&2; exit 1; }

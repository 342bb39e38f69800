#!/usr/bin/env bash
# Simulates a power cut: saves to a file system in an image, and copies the image as it is on disk at that moment. The
# copy must contain a complete save, the last one that was reported done or a later one: powercut.sh SAVELOOP [CUTS]
# Home-made: Debian 12 packages no tool that cuts the power of a file system.
set -Eeuo pipefail
shopt -s inherit_errexit
trap 'echo "powercut.sh: failed: $BASH_COMMAND" >&2' ERR
saveloop=$1
cuts=${2:-8}
work=$(mktemp -d)
saver=
cleanup() {
    [ -z "$saver" ] || { kill -KILL "$saver" && wait "$saver"; } 2>/dev/null || true
    umount "$work/disk" 2>/dev/null || true
    umount "$work/after" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

mkdir "$work/disk" "$work/after"
truncate -s 8M "$work/image"
mkfs.ext4 -q -F "$work/image"
# The file system must write nothing by itself: only the syncs of a save reach the disk.
if ! mount -o loop,commit=300 "$work/image" "$work/disk" 2>/dev/null; then
    echo "no file system can be mounted here: not tested"
    exit 77
fi
sync -f "$work/disk"

"$saveloop" "$work/disk/user/app/cfg.json" >"$work/done" &
saver=$!
# A first save: some machines start a program slowly.
until [ -s "$work/done" ]; do
    kill -0 "$saver"
    sleep 0.05
done
for cut in $(seq "$cuts"); do
    sleep "0.$((RANDOM % 3 + 1))"
    kill -STOP "$saver"
    acknowledged=$(tail -n 1 "$work/done")
    # Uses a new file each time: on a busy machine the previous device still exists, with its cache.
    cp "$work/image" "$work/copy$cut"
    kill -CONT "$saver"

    mount -o loop "$work/copy$cut" "$work/after"
    file=$work/after/user/app/cfg.json
    numbers=$(grep -o '"gesture[0-9]*": "[0-9]*"' "$file" | grep -o '[0-9]*"$' | tr -d '"' | sort -un)
    lines=$(grep -c '"gesture' "$file")
    umount "$work/after"
    rm "$work/copy$cut"
    echo "cut $cut: $acknowledged was done, $numbers is there"
    [ "$lines" = 20 ]
    [ "$(wc -w <<<"$numbers")" = 1 ]
    [ "$numbers" -ge "$acknowledged" ]
done
[ "$acknowledged" -gt 0 ]

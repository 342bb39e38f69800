#!/usr/bin/env bash
# Compares a dump of the module's types with the type file. A dump must not read or write files of applications:
# qmltypes.sh MODULE_PARENT_DIR SOURCE_QMLTYPES
set -Eeuo pipefail
shopt -s inherit_errexit
trap 'echo "qmltypes.sh: failed: $BASH_COMMAND" >&2' ERR
modules=$(cd "$1" && pwd)
committed=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() { echo "$*" >&2; exit 1; }

find_qmlplugindump() {
    local directory
    for directory in "$(qmake -query QT_INSTALL_BINS 2>/dev/null || true)" \
            "$(qtpaths --binaries-dir 2>/dev/null || true)" /usr/lib/qt5/bin; do
        [ ! -x "$directory/qmlplugindump" ] || { echo "$directory/qmlplugindump"; return; }
    done
    command -v qmlplugindump || true
}
dump=$(find_qmlplugindump)
[ -n "$dump" ] || fail "there is no qmlplugindump: install qtdeclarative5-dev-tools"
command -v strace >/dev/null || fail "there is no strace: what a dump opens can not be seen"

# Data directories with a configuration and choices for an application of the tool's name. Qt prints a line of its own
# if there is no runtime directory.
data=$work/data
config=$data/system/vellix/config/gestures
apps=/gestures/apps/
paths=$config/application_paths.json
mkdir -p "$config/apps/default/qmlplugindump" "$data/user/vellix/gestures/apps/current/qmlplugindump"
mkdir -m 700 "$work/runtime"
cat >"$config/apps/default/qmlplugindump/cfg.json" <<'END'
{"actions": [{"path": "a", "title": "A"}, {"path": "b", "title": "B"}],
 "gestures": [{"id": "tap", "kind": "tap", "zone": "whole", "availableActions": ["a", "b"], "defaultAction": "a"}]}
END
echo '{"actions": {"tap": "b"}, "version": 1}' >"$data/user/vellix/gestures/apps/current/qmlplugindump/cfg.json"
export XDG_DATA_DIRS=$data/system XDG_DATA_HOME=$data/user XDG_RUNTIME_DIR=$work/runtime QT_QPA_PLATFORM=offscreen
unset QML_IMPORT_PATH QML2_IMPORT_PATH QT_LOGGING_RULES QT_MESSAGE_PATTERN QT_DEBUG_PLUGINS

write_paths() { # PROHIBITED...
    cat >"$paths" <<END
{"current": "\${USERDATA}/gestures/apps/current", "default": "\${SYSTEMDATA}/config/gestures/apps/default",
 "filename": "cfg.json", "prohibitedApps": [$*]}
END
}

state() { find "$data" -printf '%p %y %s %i %T@ %C@\n' | sort; }

# Dumps to $work/types, with the output in $work/said and the named files in $work/trace.
run() {
    local before
    before=$(state)
    (cd "$modules" && strace -f -s 4096 -e trace=%file -o "$work/trace" \
        "$dump" -nonrelocatable Vellix.Gesture 1.0 . >"$work/types" 2>"$work/said") || fail "$(cat "$work/said")"
    [ "$(state)" = "$before" ] || fail "a dump changed the data directories: $(diff <(echo "$before") <(state))"
    # Only names below the data directories: the runtime directory and the fonts belong to Qt.
    grep -F "\"$data/" "$work/trace" >"$work/named" || fail "the trace does not show the paths file"
    grep -E 'O_WRONLY|O_RDWR|O_CREAT|O_TRUNC|O_TMPFILE' "$work/named" >"$work/written" || true
    local changing='creat|unlink|rename|mkdir|rmdir|link|symlink|mknod|truncate|f?chmod|[lf]?chown|f?utime|setxattr'
    grep -E " ($changing)[a-z0-9_]*\\(" "$work/named" >>"$work/written" || true
    [ ! -s "$work/written" ] || fail "a dump writes below the data directories: $(cat "$work/written")"
}

compare_types() {
    diff -u "$committed" "$work/types" >"$work/diff" || fail "$committed is not what the module dumps:
$(cat "$work/diff")
(cd $modules && QT_QPA_PLATFORM=offscreen $dump -nonrelocatable Vellix.Gesture 1.0 . 2>/dev/null) >$committed"
}

# The application of the tool is prohibited: one warning, and no access to its files.
write_paths '"qmlplugindump"'
run
compare_types
[ "$(wc -l <"$work/said")" = 1 ] || fail "not one line was said: $(cat "$work/said")"
grep -q "^\[warn\] .*app 'qmlplugindump' is prohibited" "$work/said" || fail "not the warning: $(cat "$work/said")"
grep -qE "openat?\(.*\"$paths\", O_RDONLY" "$work/named" || fail "the trace does not show the paths file"
! grep -F "$apps" "$work/named" || fail "a dump names files of applications"

# The built-in paths also prohibit it. The missing file is reported first, through the tool's own wide output; after
# that its standard error accepts no warning any more.
rm "$paths"
run
compare_types
[ "$(wc -l <"$work/said")" = 1 ] || fail "not one line was said: $(cat "$work/said")"
grep -qF "$paths" "$work/said" || fail "the missing paths file is not told: $(cat "$work/said")"
! grep -F "$apps" "$work/named" || fail "a dump without a paths file names files of applications"

# Without the prohibition this trace would show the access.
write_paths
run
compare_types
[ ! -s "$work/said" ] || fail "said: $(cat "$work/said")"
grep -qF "${apps}current/qmlplugindump" "$work/named" || fail "the trace does not show the files of applications"

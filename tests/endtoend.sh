#!/usr/bin/env bash
# Runs both example programs on one configuration, in real windows and with a real mouse: binds a gesture to another
# action in the first and uses it in the second. endtoend.sh SETTINGS READER DATA_DIRECTORY PICTURES
set -Eeuo pipefail
shopt -s inherit_errexit
trap 'echo "endtoend.sh: failed: $BASH_COMMAND" >&2' ERR
settings_program=$1
reader_program=$2
export XDG_DATA_DIRS=$3
pictures=$4

work=$(mktemp -d)
mkdir -p "$pictures"
finish() {
    local children
    mapfile -t children < <(jobs -p)
    [ ${#children[@]} = 0 ] || kill "${children[@]}" 2>/dev/null || true
    wait
    rm -rf "$work"
}
trap finish EXIT
mkdir -m 700 "$work/runtime"
export XDG_DATA_HOME=$work/user XDG_RUNTIME_DIR=$work/runtime
export QT_QPA_PLATFORM=xcb QT_QUICK_BACKEND=software LC_ALL=C.UTF-8

Xvfb -noreset -displayfd 3 -screen 0 1240x820x24 3>"$work/display" 2>/dev/null &
until_true() { # COMMAND...: waits a minute and more, which only a hanging program needs
    for ((try = 0; try < 1200; ++try)); do
        "$@" && return
        sleep 0.05
    done
    echo "never came true: $*" >&2
    return 1
}
until_true test -s "$work/display"
DISPLAY=:$(cat "$work/display")
export DISPLAY

"$reader_program" reader 2>"$work/reader.log" &
"$settings_program" reader 2>"$work/settings.log" &
window() { xdotool search --onlyvisible --name "$1" 2>/dev/null | head -1; }
has_window() { [ -n "$(window "$1")" ]; }
until_true has_window '^Gestures'
until_true has_window ', page '
settings=$(window '^Gestures')
reader=$(window ', page ')
xdotool windowmove "$reader" 620 0
is_drawn() { (($(import -window "$1" -depth 8 gray:- | tr -d '\0\377' | wc -c) > 0)); } # grey, like letters
until_true is_drawn "$settings"
until_true is_drawn "$reader"

look() { import -window "$1" -depth 8 rgb:- | sha256sum; }
looks_other() { # WINDOW BEFORE: and stays different
    local now
    now=$(look "$1")
    [ "$now" != "$2" ] && sleep 0.3 && [ "$(look "$1")" = "$now" ]
}
click() { # WINDOW X Y: a place that reacts
    local before
    before=$(look "$1")
    xdotool mousemove --window "$@" sleep 0.1 click 1
    until_true looks_other "$1" "$before"
}
key() { # WINDOW KEY: a key that causes a reaction
    local before
    before=$(look "$1")
    xdotool windowfocus --sync "$1" key "$2"
    until_true looks_other "$1" "$before"
}
picture() { # WINDOW NAME
    import -window "$1" "$pictures/$2.png"
}
reader_shows() { [[ $(xdotool getwindowname "$reader") == *", page $1 of "* ]]; }
saved() { grep -qs '"ReadingTapRightNoDirection": "page/forward"' "$work/user/vellix/gestures/apps/current/reader/cfg.json"; }

# A tap on the right turns one page.
until_true reader_shows 1
click "$reader" 540 400
until_true reader_shows 2

# In the settings: the third row is that tap; its menu opens at the pages, and the third entry there is ten pages
# forward.
click "$settings" 300 255
picture "$settings" settings-menu
click "$settings" 300 168
[ ! -e "$work/user" ] # nothing is written before Save
click "$settings" 86 776
until_true saved
picture "$settings" settings

# The next tap in the reader runs the new action.
click "$reader" 540 400
until_true reader_shows 12
picture "$reader" reader
key "$reader" z
picture "$reader" reader-zones

for log in "$work"/*.log; do
    [ ! -s "$log" ] || { cat "$log" >&2; exit 1; }
done

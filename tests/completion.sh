#!/usr/bin/env bash
# The completions of a plain bash for gesturectl's command lines: completion.sh PROGRAM COMPLETION SAMPLE
# Home-made: Debian 12 packages no tool that queries a completion.
set -o pipefail
program=$1
sample=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_DIRS=$work/none:$sample XDG_DATA_HOME=$work/user LC_ALL=C.UTF-8
cd "$work" || exit 1
mkdir "old files"
touch "old files/a" old.json other.json
# shellcheck source=/dev/null
source "$2"
failures=0

# Completes the last word as bash would; `expected` are the offered words in their order.
check() { # TITLE EXPECTED WORD...
    local title=$1 expected=$2 errors
    COMP_WORDS=(gesturectl "${@:3}")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMPREPLY=(stale)
    _gesturectl "$program" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}" >"$work/printed" 2>&1
    errors=$(cat "$work/printed")
    [[ "$(printf '%s|' "${COMPREPLY[@]}")" == "$expected|" && -z $errors ]] && return
    echo "$title: expected $expected, got $(printf '%s|' "${COMPREPLY[@]}") $errors"
    failures=$((failures + 1))
}

[[ $(complete -p gesturectl) == "complete -F _gesturectl gesturectl" ]] || { echo "not registered"; failures=1; }

verbs=$("$program" --help | sed -n '/^Verbs:$/,/^$/s/^  \([^ ]*\) .*/\1/p' | tr '\n' '|')
[[ $verbs == list\|*watch\|* ]] || { echo "no verbs: $verbs"; failures=1; }
check "all verbs" "${verbs%|}" ""
check "a verb" "find" "fi"
check "no such verb" "" dance
check "options of the program" "--help|--version" -
check "options of a verb" "--help|--app|--kind|--mode|--json" list --
check "options that are not given yet" "--help|--kind|--mode" list --app reader --json --
check "options where no argument is wanted" "--help|--app|--json" zones ""
check "an option of two names by its long one" "--help" zones --h
check "options of an unknown verb" "" dance --
check "kinds" "tap|hold|swipe|drag" list --kind ""
check "a kind" "swipe" list --app reader --kind s
check "directions" "toLeft|toRight|toTop|toBottom|no" find --direction ""
check "a direction after =" "toTop" find --direction = toT
check "directions right after =" "toLeft|toRight|toTop|toBottom|no" find --direction =
check "applications" "notes|reader" list --app ""
check "an application after =" "reader" list --app = r
check "modes of the application" "menu|reading|selecting" find --app reader --mode ""
check "modes of another application" "drawing|viewing" find --app notes --mode ""
check "modes without an application" "" find --mode ""
check "modes of no application" "" find --app none --mode ""
check "modes after other options" "menu|reading|selecting" list --app reader --kind tap --mode ""
check "a position" "" find --app reader --at ""
check "gestures" "Scrubbing|ScrubbingBack" bind --app reader Scrub
check "gestures without an application" "" bind ""
check "a gesture before the application is none" "--help" bind --app reader a b --h
check "actions of the gesture" "select/highlight|select/note|select/lookup|select/cancel" \
    bind --app reader SelectingTapWholeNoDirection ""
check "actions of the gesture, options after it" "select/note" \
    bind SelectingTapWholeNoDirection --app reader select/n
check "no third argument" "--help" bind --app reader SelectingTapWholeNoDirection select/note ""
check "the value of a flag is none" "--help|--mode" list --app reader --json --kind tap ""

# Other directories and other names, with blanks and quotes in them.
mkdir -p "$work/system/vellix/config/gestures" "$work/system/vellix/my apps/My App"
echo '{"current": "${USERDATA}/apps", "default": "${SYSTEMDATA}/my apps", "filename": "g.json"}' \
    >"$work/system/vellix/config/gestures/application_paths.json"
cat >"$work/system/vellix/my apps/My App/g.json" <<'JSON'
{"actions": [{"path": "page/next one", "titles": ["Page", "Next"]}],
 "gestures": [{"id": "the \"first\"", "modes": ["some mode"], "kind": "tap", "zone": "left",
               "availableActions": ["page/next one"], "defaultAction": "page/next one"},
              {"id": "the last", "kind": "tap", "zone": "right", "defaultAction": "page/next one"}]}
JSON
export XDG_DATA_DIRS=$work/system
check "an application with a blank" 'My\ App' list --app ""
check "an application with a blank, begun" 'My\ App' list --app 'My\ '
check "an application in quotes" 'My App' list --app '"My'
check "a mode with a blank" 'some\ mode' list --app 'My\ App' --mode ""
check "gestures with blanks and quotes" 'the\ \"first\"|the\ last' bind --app '"My App"' ""
check "an action with a blank" 'page/next\ one' bind --app 'My\ App' 'the\ \"first\"' ""
check "no action" "" bind --app "'My App'" 'the\ last' ""
check "actions of an unknown gesture" "" bind --app 'My\ App' gone ""
echo '{' >"$work/system/vellix/my apps/My App/g.json"
check "gestures that do not load" "" bind --app 'My\ App' ""
export XDG_DATA_DIRS=$work/none
check "no applications" "" list --app ""

# Verbs with file arguments.
cat >"$work/stub" <<'STUB'
#!/bin/sh
[ $# = 1 ] && echo "Verbs:
  draw      Draw" && exit
echo "Arguments:
  FILE                        A file, --or another

Options:
  --old TEXT                  The old one (required)
  -o, --output .svg or .png   Draw to this file, else --not
  -c, --count INT             How many
  -p, --paper {a4,a5}         How large
  --a-flag-as-long-as-fits  Two blanks before this
  --with-a-very-long-name {one,two}
                              On a line of its own, --really
"
STUB
chmod +x "$work/stub"
program=$work/stub
check "a file" "old files|old.json" draw --old old
check "a file with a blank" "old files/a" draw --old 'old\ files/'
check "a file after a short name" "other.json" draw -o oth
check "a file after the long name" "other.json" draw --output oth
check "a file after =" "other.json" draw --output = oth
check "a file as an argument" "other.json" draw --old old.json oth
check "a number" "" draw --count ""
check "a list on a long line" "one|two" draw --with-a-very-long-name ""
check "a list after a short name" "a4|a5" draw -p ""
check "a list after the long name" "a4|a5" draw --paper ""
check "an argument after a long flag" "other.json" draw --a-flag-as-long-as-fits oth
check "an argument after a long flag and no other" "--old|--output|--count|--paper|--with-a-very-long-name" draw --a-flag-as-long-as-fits x ""
check "names in descriptions are no options" "--old|--output|--count|--paper|--a-flag-as-long-as-fits|--with-a-very-long-name" draw -
program=$work/missing
check "no program" "" ""

exit "$failures"

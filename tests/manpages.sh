#!/usr/bin/env bash
# Checks the man pages made from a program's help, and makes them again in other circumstances: manpages.sh PROGRAM
# PAGES SCRIPT VERSION
set -Eeuo pipefail
shopt -s inherit_errexit
trap 'echo "manpages.sh: failed: $BASH_COMMAND" >&2' ERR
program=$1
pages=$2
script=$3
version=$4
name=$(basename "$program")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unset SOURCE_DATE_EPOCH

# Every verb has a page, and there are no other pages.
"$program" --help | sed -n '/^Verbs:$/,/^$/s/^  \([^ ]*\) .*/\1/p' >"$work/verbs"
[ "$(wc -l <"$work/verbs")" -ge 8 ]
{ echo "$name.1"; sed "s/.*/$name-&.1/" "$work/verbs"; } | sort >"$work/expected"
find "$pages" -type f -printf '%f\n' | sort | diff "$work/expected" -

# Sections in their order; only a verb with arguments has a section for them.
for page in "$pages"/*.1; do
    sections=$(sed -n 's/^\.SH //p' "$page" | tr -d '"' | tr '\n' ' ')
    case $page in
        */"$name.1") [ "$sections" = "NAME SYNOPSIS DESCRIPTION OPTIONS VERBS EXIT STATUS EXAMPLES SEE ALSO " ] ;;
        *) [ "${sections/ARGUMENTS /}" = "NAME SYNOPSIS DESCRIPTION OPTIONS EXIT STATUS EXAMPLES SEE ALSO " ] ;;
    esac
done
grep -q '^\.SH "ARGUMENTS"$' "$pages/$name-bind.1"

# One page in its final layout.
cat >"$work/find" <<'PAGE'
NAME
gesturectl-find - show the gesture that a touch matches, and its action
SYNOPSIS
gesturectl find [OPTIONS]
DESCRIPTION
Show the gesture that a touch matches, and its action
OPTIONS
-h, --help
Print this help message and exit
--app APP
The application, such as reader (required)
--mode MODE
The application's mode (required)
--kind {tap,hold,swipe,drag}
The kind of the touch (required)
--direction {toLeft,toRight,toTop,toBottom,no}
The direction of the touch (default: no)
--at X,Y
The start of the touch: X,Y from 0 to 1, x to the right, y down (required)
--json Print JSON
EXIT STATUS
0 done
1 no match, or problems found
2 usage error
3 a file cannot be loaded or written
EXAMPLES
$ gesturectl find --app reader --mode reading --kind tap --at 0.9,0.5
SEE ALSO
gesturectl(1)
PAGE
[ "$("$program" --version)" = "$name $version" ]

# The same pages in another place, at another time and in another language, with an emulator before the program, and for
# an option that CMake also has.
make_pages() { # DIRECTORY [EMULATOR;[ARGUMENT;]...]
    cmake -DHELP2MAN="$(command -v help2man)" "-DPROGRAM=${2:-}$program" "-DPAGES=$1" "-DVERSION=$version" -P "$script"
}
odd="$work/a 'quoted' place"
mkdir "$odd"
cat >"$odd/emulator" <<'EMULATOR'
#!/bin/sh
[ "$1:$2" = "-L:a root" ] || { echo "not what the emulator was given: $*" >&2; exit 1; }
shift 2
exec "$@"
EMULATOR
chmod +x "$odd/emulator"
LANG=de_DE.UTF-8 LC_ALL=de_DE.UTF-8 TZ=Asia/Tokyo make_pages "$odd/man1" "$odd/emulator;-L;a root;"
diff -r -I '^\.TH ' "$pages" "$odd/man1"
# A page shows a date only if the build sets one.
grep -q "^\.TH GESTURECTL-FIND \"1\" \"\" \"$name $version\" \"User Commands\"$" "$odd/man1/$name-find.1"
SOURCE_DATE_EPOCH=86400 make_pages "$work/dated"
grep -q '^\.TH GESTURECTL "1" "January 1970" ' "$work/dated/$name.1"


for page in "$pages"/*.1; do
    warnings=$(groff -man -ww -Tutf8 -z "$page" 2>&1)
    [ -z "$warnings" ] || { echo "$warnings"; exit 1; }
done
groff -man -Tascii -P-cbou -rLL=100n "$pages/$name-find.1" | sed '1d;$d' | sed 's/^ *//;s/  */ /g;/^$/d' |
    diff "$work/find" -

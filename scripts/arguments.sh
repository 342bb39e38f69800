# shellcheck shell=bash
# Sourced by every script: it answers --help and refuses what the script does not take, before anything is done. An
# interrupt ends a script, whatever the program that it has met made of it.

trap 'exit 130' INT

# about LINE LINE LINE -- ARGUMENT...: three lines that --help prints, the first of them how the script is called.
about() {
    about=("${@:1:3}")
    local argument
    for argument in "${@:5}"; do
        [ "$argument" != --help ] || { printf '%s\n' "${about[@]}"; exit 0; }
    done
}

refuse() { # REASON
    printf 'scripts/%s: %s\n%s\n' "${0##*/}" "$1" "${about[0]}" >&2
    exit 2
}

# takes COUNT PATTERN -- ARGUMENT...: so many arguments at most, each of which matches the regular expression.
takes() {
    local argument
    [ $(($# - 3)) -le "$1" ] || refuse "too many arguments"
    for argument in "${@:4}"; do
        [[ $argument =~ ^($2)$ ]] || refuse "unknown argument '$argument'"
    done
}

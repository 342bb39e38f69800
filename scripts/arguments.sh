# shellcheck shell=bash
# Sourced by every script: answers --help and rejects unknown arguments before the script does anything. An interrupt
# always ends a script, even if a program that it runs handles the signal.

trap 'exit 130' INT

# about LINE LINE LINE -- ARGUMENT...: --help prints the three lines; the first one is the usage.
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

# takes COUNT PATTERN -- ARGUMENT...: at most COUNT arguments, each of which matches the regular expression.
takes() {
    local argument
    [ $(($# - 3)) -le "$1" ] || refuse "too many arguments"
    for argument in "${@:4}"; do
        [[ $argument =~ ^($2)$ ]] || refuse "unknown argument '$argument'"
    done
}

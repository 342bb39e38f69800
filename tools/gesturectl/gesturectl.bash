# Completion of gesturectl for bash. It reads verbs, options and their values from the program's own help.

# The lines below a heading of a help text.
_gesturectl_below() { # HEADING HELP
    sed -n "/^$1:\$/,/^\$/s/^  //p" <<<"$2"
}

# The value of an option in a help text, such as APP or {tap,hold}; empty for a flag, fails if there is no such option.
_gesturectl_value() { # OPTION HELP
    local line names rest
    while IFS= read -r line; do
        [[ $line =~ ^((-[^ ]+, )*-[^ ]+)(.*)$ ]] || continue
        names=", ${BASH_REMATCH[1]},"
        rest=${BASH_REMATCH[3]}
        [[ $names == *", $1,"* ]] || continue
        [[ $rest == "  "* ]] && return
        rest=${rest# }
        echo "${rest%%  *}"
        return
    done < <(_gesturectl_below Options "$2")
    return 1
}

# The long names of the options that are still missing on the line.
_gesturectl_options() {
    local name
    _gesturectl_below Options "$help" | sed 's/  .*//' | grep -o -- '--[^ ,]*' | while IFS= read -r name; do
        [[ " ${given[*]} " == *" $name "* ]] || echo "$name"
    done
}

# A word of the command line without its quotes.
_gesturectl_plain() { # WORD
    local quote=${1:0:1} word=$1
    if [[ $quote == [\'\"] ]]; then
        word=${word#"$quote"}
        printf '%s' "${word%"$quote"}"
    else
        printf '%s' "${word//\\/}"
    fi
}

# The values of all strings with one name in indented JSON.
_gesturectl_strings() { # NAME
    sed -n "s/^ *\"$1\": \"\\(.*\\)\",\\{0,1\\}\$/\\1/p" | sed 's/\\\(["\\]\)/\1/g'
}

# Applications with a configuration at the paths that the paths file sets, or at the built-in ones.
_gesturectl_apps() {
    local directory system directories paths default name file
    IFS=: read -ra directories <<<"${XDG_DATA_DIRS:-/usr/local/share:/usr/share}"
    system=${directories[0]}/vellix
    for directory in "${directories[@]}"; do
        [[ -d $directory/vellix ]] && system=$directory/vellix && break
    done
    paths=$system/config/gestures/application_paths.json
    [[ -r $paths ]] && default=$(sed -n 's/.*"default" *: *"\([^"]*\)".*/\1/p' "$paths") &&
        name=$(sed -n 's/.*"filename" *: *"\([^"]*\)".*/\1/p' "$paths")
    default=${default:-'${SYSTEMDATA}/config/gestures/apps/default'}
    default=${default/'${SYSTEMDATA}'/"$system"}
    default=${default/'${USERDATA}'/"${XDG_DATA_HOME:-$HOME/.local/share}/vellix"}
    for file in "$default"/*/"${name:-cfg.json}"; do
        [[ -f $file ]] && file=${file%/*} && echo "${file##*/}"
    done
}

# Filters the input by the typed prefix.
_gesturectl_offer() {
    local candidate
    while IFS= read -r candidate; do
        [[ -n $candidate && $candidate == "$typed"* ]] || continue
        [[ $cur == [\'\"]* ]] || printf -v candidate %q "$candidate"
        COMPREPLY+=("$candidate")
    done
}

_gesturectl_offer_files() {
    local file
    compopt -o filenames 2>/dev/null
    while IFS= read -r file; do
        COMPREPLY+=("$file")
    done < <(compgen -f -- "$typed")
}

# The values of an option or an argument.
_gesturectl_offer_values() { # VALUE
    case $1 in
        '{'*'}') _gesturectl_offer < <(tr -d '{}' <<<"$1" | tr , '\n') ;;
        APP) _gesturectl_offer < <(_gesturectl_apps) ;;
        MODE) _gesturectl_offer < <("$program" list --app "$app" --json 2>/dev/null |
            sed -n '/"modes": \[/,/\]/s/^ *"\(.*\)",\{0,1\}$/\1/p' | sort -u) ;;
        GESTURE) _gesturectl_offer < <("$program" list --app "$app" --json 2>/dev/null | _gesturectl_strings id) ;;
        ACTION) _gesturectl_offer < <("$program" actions --app "$app" "$gesture" --json 2>/dev/null |
            _gesturectl_strings action) ;;
        X,Y | INT) ;;
        *) _gesturectl_offer_files ;;
    esac
}

_gesturectl() {
    local program=${1/#\~/$HOME} cur=${COMP_WORDS[COMP_CWORD]} typed word verb help value option app gesture
    local -a given=() arguments=() wanted=()
    COMPREPLY=()
    # Bash splits "--app=X" into three words.
    [[ $cur == = ]] && cur=
    typed=$(_gesturectl_plain "$cur")

    help=$("$program" --help 2>/dev/null) || return 0
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        word=$(_gesturectl_plain "$word")
        if [[ $word == = ]]; then
            continue
        elif [[ $option ]]; then
            [[ $option == --app ]] && app=$word
            option=
        elif [[ $word == -* ]]; then
            given+=("$word")
            value=$(_gesturectl_value "$word" "$help") && [[ $value ]] && option=$word
        elif [[ ! $verb ]]; then
            verb=$word
            _gesturectl_below Verbs "$help" | sed 's/ .*//' | grep -qxF -- "$verb" || return 0
            help=$("$program" "$verb" --help 2>/dev/null) || return 0
        else
            arguments+=("$word")
        fi
    done

    if [[ $option ]]; then
        _gesturectl_offer_values "$value"
        return 0
    fi
    if [[ $typed == -* ]]; then
        _gesturectl_offer < <(_gesturectl_options)
        return 0
    fi
    if [[ ! $verb ]]; then
        _gesturectl_offer < <(_gesturectl_below Verbs "$help" | sed 's/ .*//')
        return 0
    fi
    mapfile -t wanted < <(_gesturectl_below Arguments "$help" | sed 's/ .*//')
    gesture=${arguments[0]}
    value=${wanted[${#arguments[@]}]}
    if [[ $value ]]; then
        _gesturectl_offer_values "$value"
    else
        _gesturectl_offer < <(_gesturectl_options)
    fi
}

complete -F _gesturectl gesturectl

#!/usr/bin/env bash
# For any missing dependency, CMake names the package to install, and `scripts/setup` installs it. The same for every
# import of QML, which is also a dependency of our own package: dependencies.sh SOURCE
set -Eeuo pipefail
shopt -s inherit_errexit
trap 'echo "dependencies.sh: failed: $BASH_COMMAND" >&2' ERR
source=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LC_ALL=C

installs() { # PACKAGE
    grep -qE "[ (]$1( |\)|$)" "$source/scripts/setup" || { echo "scripts/setup does not install $1" >&2; return 1; }
}

expect() { # WHAT PACKAGE OPTION...
    local said
    said=$(cmake -S "$source" -B "$work/build" -G Ninja -U 'CMAKE_DISABLE_FIND_PACKAGE_*' -U GESTURE_API_TOOLS \
        -DGESTURE_API_BENCHMARKS=ON "${@:3}" 2>&1 | tr -s ' \n' ' ' || true)
    grep -qF "$1 is missing: install the Debian package $2 " <<<"$said" || { echo "without $1: $said" >&2; return 1; }
    installs "$2"
}

packages=$(grep -hoP 'gesture_api_require\(\K[^)]*' "$source/CMakeLists.txt" "$source"/*/CMakeLists.txt \
    "$source"/tests/qml/CMakeLists.txt)
[ "$(wc -l <<<"$packages")" -gt 10 ]
while read -r name version package; do
    expect "$name $version" "$package" "-DCMAKE_DISABLE_FIND_PACKAGE_$name=ON"
done <<<"$packages"

# The host's libraries also need it without the tools.
expect 'RapidJSON 1.1' rapidjson-dev -DCMAKE_DISABLE_FIND_PACKAGE_RapidJSON=ON -DGESTURE_API_TOOLS=OFF

# Hides all programs of the path and of the system's directories. In the reverse order of their search: one that is not
# found is also missing in the next run.
while read -r program package variable launcher; do
    expect "$program" "$package" -U "$variable" "-DCMAKE_CXX_COMPILER_LAUNCHER=$launcher" \
        -DGESTURE_API_BENCHMARKS=OFF -DCMAKE_FIND_USE_SYSTEM_ENVIRONMENT_PATH=OFF -DCMAKE_FIND_USE_CMAKE_SYSTEM_PATH=OFF
done <<'END'
lupdate qttools5-dev-tools GESTURE_API_LUPDATE
lrelease qttools5-dev-tools GESTURE_API_LRELEASE
help2man help2man HELP2MAN
ccache ccache GESTURE_API_LAUNCHER ccache
END

imports() { # PACKAGE FILE...
    local module file package
    for module in $(sed -n 's/^import \(Qt[A-Za-z.]*\) .*/\1/p' "${@:2}" | sort -u | tr . /); do
        file=$(qmake -query QT_INSTALL_QML)/$module
        [ ! -e "$file.2" ] || file=$file.2
        package=$(dpkg -S "$(realpath "$file/qmldir")" | cut -d: -f1)
        installs "$package"
        sed "1,/^Package: $1\$/d; /^Description/,\$d" "$source/packaging/debian/control" | grep -qE " $package,?$" ||
            { echo "$1 does not depend on $package" >&2; return 1; }
    done
}
imports qml-module-vellix-gesture "$source"/qml/controls/*.qml
imports gesture-api-examples "$source"/examples/*/*.qml

#!/usr/bin/env bash
# Installs the build to a prefix, compiles an outside project against it, and builds the library again, against
# the installed host libraries as if they were the device's: install.sh SOURCE BUILD
set -Eeuo pipefail
shopt -s inherit_errexit
trap 'echo "install.sh: failed: $BASH_COMMAND" >&2' ERR
source=$1
build=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)

# A toolchain for a device only looks for libraries below the roots.
configure() { # SOURCE BUILD OPTION...
    cmake -S "$1" -B "$2" -G Ninja "${launcher[@]}" "-DCMAKE_FIND_ROOT_PATH=$work" "${@:3}" >"$work/log" 2>&1 ||
        { cat "$work/log"; return 1; }
    cmake --build "$2" >"$work/log" 2>&1 || { cat "$work/log"; return 1; }
}

# The client of the prefix without CMake: build_with_pkg_config PREFIX PROGRAM OPTION...
build_with_pkg_config() {
    PKG_CONFIG_PATH=$(dirname "$(find "$1" -name gesture_api.pc)")
    export PKG_CONFIG_PATH
    mapfile -t flags < <(pkg-config --cflags --libs gesture_api | xargs printf '%s\n') # the prefix may have blanks
    g++ -std=c++17 -fPIC "$client/client.cpp" -o "$2" "${flags[@]}" \
        "-Wl,-rpath,$(dirname "$PKG_CONFIG_PATH")" "${@:3}" # pkg-config would quote the blanks of its libdir
}

# The projects in the documentation are the outside projects, first of all the README's own client.
projects=$("$source/tests/docs/docs.py" projects "$source" "$work/projects")
client=$work/projects/README_1

cmake --install "$build" --prefix "$work/host" >/dev/null
diff -r "$source/examples/data" "$work/host/share/gesture_api/sample"
export XDG_DATA_DIRS=$work/host/share/gesture_api/sample XDG_DATA_HOME=$work/user

for project in $projects; do
    configure "$work/projects/$project" "$work/$project-host" "-DCMAKE_PREFIX_PATH=$work/host"
done
[ "$("$work/README_1-host/client")" = page/next ]

build_with_pkg_config "$work/host" "$work/client-pc"
[ "$("$work/client-pc")" = page/next ]

# The installed tool finds its libraries by itself.
[ "$("$work/host/bin/gesturectl" zones | wc -l)" = 13 ]

# The files for an editor, a reader and a shell.
for file in share/gesture_api/schemas/gesture-config.schema.json share/man/man1/gesturectl-check.1 \
        share/bash-completion/completions/gesturectl; do
    [ -s "$work/host/$file" ]
done
"$work/host/bin/gesturectl" schema bindings | diff - "$work/host/share/gesture_api/schemas/bindings.schema.json"

# The QML modules also do, and speak the language of the user.
module=$(dirname "$(find "$work/host" -name plugins.qmltypes)")
cat >"$work/tst_module.qml" <<'QML'
import QtQuick 2.15
import QtTest 1.15
import Vellix.Gesture 1.0
import Vellix.Gesture.Controls 1.0

Item {
    width: 600
    height: 800
    GestureServiceProvider { id: provider; appId: "reader" }
    GestureSettingsPage { id: page; anchors.fill: parent; appId: "reader" }
    TestCase {
        when: windowShown
        function test_module() {
            compare(provider.service.gestures.rowCount(), 22)
            compare(page.editor.gesture("ReadingTapRightNoDirection").currentAction.path, "page/next")
            compare(Gestures.kindTitle(Gesture.Tap), "Tippen")
        }
    }
}
QML
LC_ALL=de_DE.UTF-8 LANGUAGE='' QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software \
    "$(qmake -query QT_INSTALL_BINS)/qmltestrunner" -import "${module%/Vellix/Gesture}" \
    -input "$work/tst_module.qml" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }

# The example programs find their libraries and the module: they still run at the end of their time.
for program in reader settings; do
    status=0
    QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=$work timeout 3 "$(find "$work/host" -path "*/examples/$program")" \
        >"$work/log" 2>&1 || status=$?
    [ "$status:$(cat "$work/log")" = 124: ] || { echo "$program: status $status"; cat "$work/log"; exit 1; }
done

# A device's root has the four libraries and nothing else of ours. Only the library is built against them, with none of
# the packages that other parts need. Without optimisation: half the time.
mkdir -p "$work/device/lib"
for library in baseutil vxcomponents devcaps slateview; do
    find "$work/host" -name "lib$library.so*" -exec cp -P {} "$work/device/lib/" \;
done
without=()
for package in CLI11 RapidJSON Qt5Svg Qt5Quick Qt5Test Qt5QuickTest KF5Config; do
    without+=("-DCMAKE_DISABLE_FIND_PACKAGE_$package=ON")
done
configure "$source" "$work/build-device" -DGESTURE_API_PLATFORM=device "-DCMAKE_PREFIX_PATH=$work/device" \
    -DCMAKE_BUILD_TYPE=None -DGESTURE_API_TOOLS=OFF -DGESTURE_API_QML=OFF -DBUILD_TESTING=OFF "${without[@]}"
built=$(cd "$work/build-device" && find . -name '*.so.1' | sort)
[ "$built" = ./gesture_api/libgesture_api.so.1 ]
needed=$(ldd "$work/build-device/gesture_api/libgesture_api.so")
grep -q "$work/device/lib/libvxcomponents.so.1" <<<"$needed"

# The installed device build also serves clients, and contains nothing of the host.
cmake --install "$work/build-device" --prefix "$work/installed" >/dev/null
[ -z "$(find "$work/installed" -name host.h)" ]
configure "$client" "$work/client-device" "-DCMAKE_PREFIX_PATH=$work/installed;$work/device"
[ "$(LD_LIBRARY_PATH=$work/device/lib "$work/client-device/client")" = page/next ]
build_with_pkg_config "$work/installed" "$work/client-device-pc" "-L$work/device/lib" "-Wl,-rpath-link,$work/device/lib"
[ "$(LD_LIBRARY_PATH=$work/device/lib "$work/client-device-pc")" = page/next ]

# If a device lacks libraries, CMake names the missing one.
if cmake -S "$source" -B "$work/build-none" -G Ninja -DGESTURE_API_PLATFORM=device -DBUILD_TESTING=OFF \
        >"$work/log" 2>&1; then
    echo "configured without the device's libraries" >&2
    exit 1
fi
grep -q baseutil "$work/log"

#!/usr/bin/env bash
# Installs the build to a prefix, compiles an outside project against it, and builds the library anew
# against the installed host libraries as if they were the device's: install.sh SOURCE BUILD
set -euo pipefail
trap 'echo "failed: $BASH_COMMAND" >&2' ERR
source=$1
build=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)

# A toolchain for a device looks for libraries below the roots alone.
configure() { # SOURCE BUILD OPTION...
    cmake -S "$1" -B "$2" -G Ninja "${launcher[@]}" "-DCMAKE_FIND_ROOT_PATH=$work" "${@:3}" >"$work/log" 2>&1 || { cat "$work/log"; return 1; }
    cmake --build "$2" >"$work/log" 2>&1 || { cat "$work/log"; return 1; }
}

export XDG_DATA_DIRS=$source/examples/data XDG_DATA_HOME=$work/user

# The README's own client and project file are the outside project.
mkdir "$work/client"
sed -n '/^```cpp$/,/^```$/p' "$source/README.md" | sed '1d;$d' >"$work/client/client.cpp"
sed -n '/^```cmake$/,/^```$/p' "$source/README.md" | sed '1d;$d' >"$work/client/CMakeLists.txt"

cmake --install "$build" --prefix "$work/host" >/dev/null
configure "$work/client" "$work/client-host" "-DCMAKE_PREFIX_PATH=$work/host"
[ "$("$work/client-host/client")" = page/next ]

export PKG_CONFIG_PATH=$(dirname "$(find "$work/host" -name gesture_api.pc)")
g++ -std=c++17 -fPIC "$work/client/client.cpp" -o "$work/client-pc" $(pkg-config --cflags --libs gesture_api) \
    "-Wl,-rpath,$(pkg-config --variable=libdir gesture_api)"
[ "$("$work/client-pc")" = page/next ]

# The installed tool finds its libraries by itself.
[ "$("$work/host/bin/gesturectl" zones | wc -l)" = 13 ]

# What an editor, a reader and a shell look for.
for file in share/gesture_api/schemas/gesture-config.schema.json share/man/man1/gesturectl-check.1 \
        share/bash-completion/completions/gesturectl; do
    [ -s "$work/host/$file" ]
done
"$work/host/bin/gesturectl" schema bindings | diff - "$work/host/share/gesture_api/schemas/bindings.schema.json"

# So does the QML module.
module=$(dirname "$(find "$work/host" -name plugins.qmltypes)")
cat >"$work/tst_module.qml" <<'QML'
import QtTest 1.15
import Vellix.Gesture 1.0

TestCase {
    GestureServiceProvider { id: provider; appId: "reader" }
    function test_module() {
        compare(provider.service.gestures.rowCount(), 22)
    }
}
QML
QT_QPA_PLATFORM=offscreen "$(qmake -query QT_INSTALL_BINS)/qmltestrunner" -import "${module%/Vellix/Gesture}" \
    -input "$work/tst_module.qml" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }

# A device's root has the four libraries and nothing else of ours. Without optimisation: half the time.
mkdir -p "$work/device/lib"
for library in baseutil vxcomponents devcaps slateview; do
    find "$work/host" -name "lib$library.so*" -exec cp -P {} "$work/device/lib/" \;
done
configure "$source" "$work/build-device" -DGESTURE_API_PLATFORM=device "-DCMAKE_PREFIX_PATH=$work/device" \
    -DCMAKE_BUILD_TYPE=None -DGESTURE_API_QML=OFF
built=$(find "$work/build-device" -name 'libbaseutil*' -o -name 'libvxcomponents*' -o -name 'libdevcaps*' -o -name 'libslateview*')
[ -z "$built" ]
ldd "$work/build-device/tools/gesturectl" | grep -q "$work/device/lib/libvxcomponents.so.1"
touch=(find --app reader --mode reading --kind tap --at 0.9,0.5)
[ "$("$work/build-device/tools/gesturectl" "${touch[@]}")" = "ReadingTapRightNoDirection page/next" ]

# What the device build installs serves clients, too, and has nothing of the host.
cmake --install "$work/build-device" --prefix "$work/installed" >/dev/null
[ -z "$(find "$work/installed" -name host.h)" ]
configure "$work/client" "$work/client-device" "-DCMAKE_PREFIX_PATH=$work/installed;$work/device"
[ "$(LD_LIBRARY_PATH=$work/device/lib "$work/client-device/client")" = page/next ]

# A device whose libraries are not there is told which one is missing.
if cmake -S "$source" -B "$work/build-none" -G Ninja -DGESTURE_API_PLATFORM=device -DBUILD_TESTING=OFF \
        >"$work/log" 2>&1; then
    echo "configured without the device's libraries" >&2
    exit 1
fi
grep -q baseutil "$work/log"

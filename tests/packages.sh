#!/usr/bin/env bash
# Tests the Debian packages as a user gets them: builds them twice, installs them in a fresh bookworm, uses, upgrades
# and removes them without a trace. Each run creates a new root; its base is kept in build/packages-root.tar.
# Home-made: piuparts installs, upgrades and removes, but neither builds twice nor uses the installed programs in
# between; autopkgtest only uses them.
# Lists of packages are split into words on purpose.
# shellcheck disable=SC2046,SC2086
set -Eeuo pipefail
shopt -s inherit_errexit
trap 'echo "packages.sh: failed: $BASH_COMMAND" >&2' ERR
cd "$(dirname "$0")/.."

step() { printf '\n== %s\n' "$*"; }
fail() { echo "packages.sh: $*" >&2; exit 1; }

[ "$(id -u)" = 0 ] || fail "only root can make a root and change into it"

step "Built twice, in two places, with other settings: the same bytes"
scripts/package
rm -rf build/packages-again
(umask 027; TZ=Pacific/Auckland LC_ALL=C scripts/package build/packages-again >/dev/null)
for package in build/packages/*.deb; do
    cmp "$package" "build/packages-again/${package##*/}"
done
rm -r build/packages-again

step "A fresh root"
base=build/packages-root.tar
if [ ! -e "$base" ]; then
    # Adds Debian's own sources to the machine's.
    apt-get -qq update
    apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian' |
        mmdebstrap --quiet --variant=minbase --format=tar bookworm "$base.new"
    mv "$base.new" "$base"
fi
root=$(mktemp -d)
cleanup() {
    ! mountpoint -q "$root/proc" || umount "$root/proc"
    rm -rf --one-file-system "$root"
}
trap cleanup EXIT
tar --extract --file "$base" --directory "$root"
mount -t proc proc "$root/proc"
cp /etc/resolv.conf "$root/etc/"

clean=(env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive)
[ -z "${http_proxy:-}" ] || clean+=("http_proxy=$http_proxy")

inside() { chroot "$root" "${clean[@]}" "$@"; }

# Runs as a user with a home directory and a virtual screen.
as_user() {
    chroot --userspec=reader:reader "$root" "${clean[@]}" HOME=/home/reader XDG_RUNTIME_DIR=/home/reader/run \
        XDG_DATA_DIRS=/usr/share/gesture_api/sample:/usr/local/share:/usr/share QT_QPA_PLATFORM=offscreen "$@"
}

apt() { # VERB ARGUMENT...
    inside apt-get -qq -y --no-install-recommends "$@" >"$root/log" 2>&1 || { cat "$root/log"; return 1; }
}

# The packages in one kind of line of apt's simulation.
would() { # Inst|Remv ARGUMENT...
    inside apt-get -s --no-install-recommends "${@:2}" | sed -n "s/^$1 \([^ ]*\) .*/\1/p" | sort
}

expect() { # WHAT EXPECTED SEEN
    [ "$2" = "$3" ] || fail "$1: expected '$2', seen '$3'"
}

useradd --root "$root" --create-home reader
as_user mkdir -m 700 /home/reader/run
mkdir "$root/packages"
cp build/packages/*.deb "$root/packages/"
rm "$root"/packages/*-dbgsym_*.deb
ours=$(cd "$root/packages" && printf '%s\n' *.deb | sed 's/_.*//' | sort)
of() { # DIRECTORY PACKAGE...
    for package in "${@:2}"; do (cd "$root" && printf '/%s ' "$1/$package"_*.deb); done
}
all=$(of packages $ours)
inside apt-get -qq update

step "The library alone: neither Gui nor Qml"
would Inst install $(of packages libgesture-api1 libgesture-api-host1)
others=$(would Inst install $(of packages libgesture-api1 libgesture-api-host1) | grep '^libqt' | tr '\n' ' ')
expect "Qt that the library brings along" "libqt5core5a " "$others"

step "Everything that all packages need, and what a client is compiled with"
apt install $(would Inst install $all | grep -vxF "$ours") g++ cmake ninja-build pkg-config qml-module-qttest

# The content of the root: the files, and the packages with their state, without the files of the user and of this test.
state() {
    (cd "$root" && find . -xdev \( -path ./proc -o -path ./home/reader -o -path ./packages -o -path ./upgrade -o \
        -path ./device -o -path ./log \) -prune -o -print | sort)
    inside dpkg-query -W -f '${Package} ${Version} ${db:Status-Abbrev}\n'
}
state >"$root/packages/before"
! grep -iE 'gesture[-_]api|vellix' "$root/packages/before" || fail "the root is not fresh"

step "Installed"
apt install $all
inside dpkg-query -W -f '${db:Status-Abbrev} ${Package} ${Version} ${Installed-Size} KiB\n' $ours
state >"$root/packages/installed"
for file in /usr/share/man/man1/gesturectl.1.gz /usr/share/man/man1/gesturectl-check.1.gz \
        /usr/share/bash-completion/completions/gesturectl /usr/share/gesture_api/schemas/gesture-config.schema.json; do
    [ -s "$root$file" ] || fail "$file is missing"
done
inside bash -c 'source /usr/share/bash-completion/completions/gesturectl; complete -p gesturectl'

step "The demo"
mkdir "$root/home/reader/scripts"
cp scripts/demo "$root/home/reader/scripts/"
as_user /home/reader/scripts/demo --installed | tee "$root/home/reader/demo"
grep -q '^the watching process: ReadingTapRightNoDirection: page/next -> view/bookmark$' "$root/home/reader/demo"
expect "the last touch" "ReadingTapRightNoDirection page/next" \
    "$(grep '^ReadingTapRightNoDirection [a-z]*/[a-z]*$' "$root/home/reader/demo" | tail -1)"

step "The two programs, and the modules where Qt looks for them"
for program in settings reader; do
    said=$(as_user bash -c "timeout 5 /usr/lib/*/gesture_api/examples/$program 2>&1; echo status \$?")
    expect "$program for five seconds" "status 124" "$said"
done
cat >"$root/home/reader/tst_module.qml" <<'QML'
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
as_user env LC_ALL=de_DE.UTF-8 QT_QUICK_BACKEND=software \
    /usr/lib/qt5/bin/qmltestrunner -input /home/reader/tst_module.qml

step "The README's client, with CMake and with pkg-config"
client=$root/home/reader/client
tests/docs/docs.py projects . "$root/projects" >/dev/null
mv "$root/projects/README_1" "$client"
rm -r "$root/projects"
chmod a+w "$client"
as_user bash -c 'cd ~/client && cmake -S . -B build -G Ninja && cmake --build build' >"$root/log" 2>&1 ||
    { cat "$root/log"; exit 1; }
expect "the client with CMake" page/next "$(as_user /home/reader/client/build/client)"
as_user bash -c 'cd ~/client && g++ client.cpp -o client-pc -fPIC $(pkg-config --cflags --libs gesture_api)'
expect "the client with pkg-config" page/next "$(as_user /home/reader/client/client-pc)"

step "Installed over itself: the same files, whole"
apt install --reinstall $all
inside dpkg --verify $ours
state | diff "$root/packages/installed" -

# Builds a package again, with another control file.
remake() { # PACKAGE DIRECTORY SED-EXPRESSION...
    local work=$root/packages/work expressions=()
    for expression in "${@:3}"; do expressions+=(-e "$expression"); done
    mkdir -p "$root/$2"
    dpkg-deb --raw-extract "$root$(of packages "$1" | tr -d ' ')" "$work"
    sed -i "${expressions[@]}" "$work/DEBIAN/control"
    dpkg-deb --root-owner-group --build "$work" "$root/$2/" >/dev/null
    rm -r "$work"
}

step "Upgraded: all together, or not at all"
version=$(dpkg-deb --field "$root$(of packages libgesture-api1 | tr -d ' ')" Version)
later=$version+later
for package in $ours; do
    remake "$package" upgrade "s/^Version: .*/Version: $later/" "s/(= $version)/(= $later)/g"
done
apt install $(of upgrade $ours)
expect "the versions" "$later" "$(inside dpkg-query -W -f '${Version}\n' $ours | sort -u)"
expect "a lookup" "ReadingTapRightNoDirection page/next" \
    "$(as_user gesturectl find --app reader --mode reading --kind tap --at 0.9,0.5)"
! apt install --allow-downgrades $(of packages libgesture-api1) --no-remove >/dev/null ||
    fail "the library of another version was installed beside its tools"

step "A device's own package in place of the host's libraries"
expect "what goes with the host's libraries" "$ours" "$(would Remv remove libgesture-api-host1)"
remake libgesture-api-host1 device 's/^Package: .*/Package: device-libraries/' 's/^Source: .*/Source: device/' \
    's/^Version: .*/Version: 7.1/'
apt install $(of device device-libraries)
expect "what had to go" "libgesture-api-dev libgesture-api-host1 " \
    "$(comm -13 <(inside dpkg-query -W -f '${Package}\n' | sort) <(echo "$ours") | tr '\n' ' ')"
expect "a lookup" "ReadingTapRightNoDirection page/next" \
    "$(as_user gesturectl find --app reader --mode reading --kind tap --at 0.9,0.5)"

step "Removed without a trace"
apt purge device-libraries $(inside dpkg-query -W -f '${Package}\n' | grep -xF "$ours")
state | diff "$root/packages/before" -
echo "no file and no package is left"

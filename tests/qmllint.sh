#!/usr/bin/env bash
# Runs qmllint on every QML file of the tree, also for unqualified names: qmllint.sh SOURCE_DIR IMPORT_PATH
set -Eeuo pipefail
shopt -s inherit_errexit
trap 'echo "qmllint.sh: failed: $BASH_COMMAND" >&2' ERR
cd "$1"
import_path=$2

lint=$(command -v qmllint || echo /usr/lib/qt5/bin/qmllint)
qt_modules=$(${QMAKE:-qmake} -query QT_INSTALL_QML)
mapfile -t files < <(find examples qml tests -name '*.qml')
[ ${#files[@]} -gt 0 ]

status=0
for file in "${files[@]}"; do
    said=$("$lint" -U -I "$qt_modules" -I "$import_path" -i tests/qml/test.qmltypes -i tests/qml/accessible.qmltypes \
        "$file" 2>&1) && [ -z "$said" ] && continue
    printf '%s:\n%s\n' "$file" "$said" >&2
    status=1
done
exit $status

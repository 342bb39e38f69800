#!/usr/bin/env python3
"""Checks docs/guarantees.md against the tests: guarantees.py SOURCE

Each row of a table there is a promise and names its tests: a test function as `test:function`, a test script as `test`,
or a file of the tree. Each name must exist.

Home-made: packaged checkers of pages check links and files, but not the functions of tests.
"""
import re
import sys
from pathlib import Path

root = Path(sys.argv[1])
declared = (root / "tests/CMakeLists.txt").read_text() + (root / "tests/qml/CMakeLists.txt").read_text()
failures = []


def exists(name):
    test, _, function = name.partition(":")
    if not function:
        return re.search(r"\b%s\b" % re.escape(test), declared) or (root / test.split()[0]).exists()
    source = root / ("tests/qml/tst_%s.qml" % test[4:] if test.startswith("qml-") else "tests/tst_%s.cpp" % test)
    return source.exists() and re.search(r"\b(?:void|function) %s\(" % re.escape(function), source.read_text())


promises = 0
for number, line in enumerate((root / "docs/guarantees.md").read_text().splitlines(), 1):
    cells = [cell.strip() for cell in re.split(r"(?<!\\)\|", line)[1:-1]]
    if len(cells) != 2 or cells[0] in ("Promise", "---"):
        continue
    promises += 1
    names = re.findall("`([^`]+)`", cells[1])
    if not names:
        failures.append("%d: nothing holds it: %s" % (number, cells[0]))
    failures += ["%d: there is no %s" % (number, name) for name in names if not exists(name)]

if not promises:
    failures.append("no promise found")
for failure in failures:
    print("docs/guarantees.md:" + failure)
sys.exit(bool(failures))

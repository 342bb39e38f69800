#!/usr/bin/env python3
"""Compares the table of build options in docs/porting.md with the CMake files: options.py SOURCE

Each option of the build must have one row with its default; a computed default is described in words.
"""
import re
import sys
from pathlib import Path

root = Path(sys.argv[1])
OPTION = re.compile(r'^\s*(?:option\((\w+)\s+"[^"]*"\s+(\S+)\)|set\((\w+)\s+(\S+)\s+CACHE\b)', re.M)

declared = {"BUILD_TESTING": "`ON`"}  # CTest's own
for directory in ("", "benchmarks", "examples", "fuzz", "gesture_api", "platform", "qml", "schemas", "tests", "tools"):
    for file in (root / directory).glob("**/CMakeLists.txt" if directory else "CMakeLists.txt"):
        for option, switch, name, value in OPTION.findall(file.read_text()):
            declared[option or name] = "" if "$" in value else "`%s`" % (switch or value)

rows = re.findall(r"^\| `([A-Z_]+)` \| (.*?) \|", (root / "docs/porting.md").read_text(), re.M)
described = dict(rows)
failures = ["%s has no row" % name for name in declared.keys() - described.keys()]
failures += ["there is no option %s" % name for name in described.keys() - declared.keys()]
failures += ["%s has two rows" % name for name in described if sum(row[0] == name for row in rows) > 1]
failures += ["%s is %s" % (name, declared[name]) for name in declared.keys() & described.keys()
             if declared[name] != (described[name] if "`" in described[name] else "")]
for failure in sorted(failures):
    print("docs/porting.md: " + failure)
sys.exit(bool(failures))

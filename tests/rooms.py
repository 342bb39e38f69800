#!/usr/bin/env python3
"""Checks the order of the library's includes: rooms.py SOURCE

The table in docs/architecture.md names all sources of gesture_api. Each may include only sources above it there.

Home-made: packaged checkers of includes report which headers a source needs, not which ones it may include.
"""
import re
import sys
from pathlib import Path

root = Path(sys.argv[1])
page = (root / "docs/architecture.md").read_text().partition("\n## Inside the library\n")[2].partition("\n## ")[0]
order = re.findall(r"^\| `(\w+)` \|", page, re.M)
files = [path for folder in ("include/gesture_api", "src") for path in sorted((root / "gesture_api" / folder).iterdir())]
failures = ["docs/architecture.md: not a source, or named twice: " + name for name in order
            if order.count(name) > 1 or name not in [path.stem for path in files]]
for path in files:
    before = order[:order.index(path.stem) + 1] if path.stem in order else []
    if not before:
        failures.append("docs/architecture.md: no row for %s" % path.name)
    for number, line in enumerate(path.read_text().splitlines(), 1):
        included = re.match(r'\s*#\s*include\s*["<](?:.*/)?(\w+)\.h[">]', line)
        if included and included[1] in order and included[1] not in before:
            failures.append("%s:%d: stands before %s" % (path.relative_to(root), number, included[1]))
print("\n".join(failures), end="\n" if failures else "")
sys.exit(bool(failures) or not order)

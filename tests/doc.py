#!/usr/bin/env python3
"""Builds the site of scripts/doc and follows every link in it: doc.py SOURCE OUT

The site and its search must have all pages of the tree, and each link and picture must lead to an existing file and
anchor of the site. scripts/doc itself fails on a warning.
"""
import html.parser
import subprocess
import sys
import urllib.parse
from pathlib import Path

source, out = (Path(argument).resolve() for argument in sys.argv[1:])


class Page(html.parser.HTMLParser):
    def __init__(self, file):
        super().__init__()
        self.places, self.targets, self.text = {""}, set(), ""
        self.feed(file.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name == "id" or tag == "a" and name == "name":
                self.places.add(value)
            elif name in ("href", "src", "data") and value:
                self.targets.add(value)

    def handle_data(self, data):
        self.text += data


subprocess.run([source / "scripts/doc", out], check=True)
pages = {file.name: Page(file) for file in out.glob("*.html")}
failures = []
for name, page in pages.items():
    if "@ref " in page.text or "|---" in page.text:
        failures.append("%s: a link or a table that is none" % name)
    for target in page.targets:
        link = urllib.parse.urlsplit(target)
        file = urllib.parse.unquote(link.path) or name
        if link.scheme:
            continue
        if not (out / file).exists():
            failures.append("%s: no file %s" % (name, target))
        elif file in pages and link.fragment not in pages[file].places:
            failures.append("%s: no place %s" % (name, target))

found = "".join(file.read_text(encoding="utf-8") for file in out.glob("search/*.js"))
for file in [*source.glob("*.md"), *source.glob("docs/*.md")]:
    title = file.read_text(encoding="utf-8").split("\n")[0].removeprefix("# ")
    if not any(title in page.text for page in pages.values()):
        failures.append("%s is not there" % file.name)
    if title not in found and file != source / "README.md":  # every page links to the main page
        failures.append("%s is not found by the search" % file.name)

for failure in sorted(failures):
    print(failure)
sys.exit(bool(failures))

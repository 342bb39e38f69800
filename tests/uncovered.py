#!/usr/bin/env python3
"""Compares the lines that no test runs with a list of known ones: uncovered.py REPORT LIST

A line of the list is the file and the text of a source line, `path: text`; a comment above a group gives the reason.

Home-made: gcovr counts the lines, but excludes known ones by marks in the sources, which also hide lines that run, or
by a minimum share, with which a new line can replace a known one.
"""
import collections
import json
import sys


def uncovered_lines(report):
    """The lines that did not run, in the form of the list, with their places; and the lines run and in all, by room."""
    missing = collections.defaultdict(list)
    ran = collections.Counter()
    known = collections.Counter()
    for file in report["files"]:
        path = file["file"]
        room = "the tools" if path.startswith("tools/") else "the library"
        with open(path, encoding="utf-8") as source:
            texts = source.read().splitlines()
        for line in file["lines"]:
            if line.get("gcovr/noncode"):
                continue
            known[room] += 1
            if line["count"] > 0:
                ran[room] += 1
            elif room == "the library":
                number = line["line_number"]
                missing[f"{path}: {texts[number - 1].strip()}"].append(f"{path}:{number}")
    return missing, {room: (ran[room], known[room]) for room in known}


def explained_lines(path):
    with open(path, encoding="utf-8") as lines:
        return collections.Counter(line.rstrip("\n") for line in lines if line.strip() and not line.startswith("#"))


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        missing, shares = uncovered_lines(json.load(file))
    explained = explained_lines(sys.argv[2])
    for room, (ran, known) in sorted(shares.items()):
        print(f"of {room} {ran} of {known} lines run: {100 * ran / known:.1f} %")

    status = 0
    for line, places in sorted(missing.items()):
        text = line.split(": ", 1)[1]
        for place in places:
            print(f"{place}: {text}")
        if len(places) > explained[line]:
            print(f"  not in {sys.argv[2]}: let a test run it, or add `{line}` with the reason")
            status = 1
    for line, count in sorted(explained.items()):
        if count > len(missing.get(line, ())):
            print(f"{sys.argv[2]}: `{line}` runs, or is no line any more: take it out")
            status = 1
    return status


if __name__ == "__main__":
    sys.exit(main())

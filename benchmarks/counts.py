#!/usr/bin/env python3
"""Counts instructions with callgrind and compares them: counts.py PROGRAMS KNOWN [--write]

PROGRAMS is the directory of the built benchmarks. KNOWN is the file of the known counts, which --write writes. Unlike
times, counts do not depend on the other work of the machine, but on its kind, the compiler and Qt: on another machine
only the ratios are compared.

Home-made: no packaged tool compares parts of one run with each other.
"""
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

programs, known_file = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
sizes = [50, 500, 5000, 50000]
names = {50: "S", 500: "M", 5000: "L", 50000: "XL"}
grow = ["load", "first lookup", "lookups", "save", "clone", "destruction", "trees", "filter", "rebuild"]
# Functions that are counted within a piece.
within = {"bytes": ("save", ["bindingsOf", "bindingsText"])}


def output(*command):
    return subprocess.run([str(part) for part in command], check=True, stdout=subprocess.PIPE, text=True).stdout


def callgrind(folder, options, *command, **environment):
    """Runs a command and returns the parts of the count."""
    subprocess.run(["valgrind", "--quiet", "--tool=callgrind", *options, "--callgrind-out-file=%s/out" % folder]
                   + [str(part) for part in command], check=True, stdout=subprocess.DEVNULL,
                   env={**os.environ, "QT_HASH_SEED": "0", **environment})
    return list(Path(folder).glob("out*"))


def total(part):
    return int(re.findall(r"^(?:totals|summary): (\d+)", part.read_text(), re.M)[-1])


def inclusive(part, functions):
    lines = output("callgrind_annotate", "--inclusive=yes", "--threshold=100", part)
    found = [re.search(r"^ *([\d,]+) .*[:.]%s\(" % re.escape(function), lines, re.M) for function in functions]
    return sum(int(match[1].replace(",", "")) for match in found)


def pieces(gestures, group):
    """The pieces of a group of counts.cpp and their instructions."""
    with tempfile.TemporaryDirectory() as folder:
        parts = callgrind(folder, ["--instr-atstart=no"], programs / "counts", gestures, group, LD_BIND_NOW="1")
        triggers = {re.search("^desc: Trigger: (?:Client Request: )?(.*)", part.read_text(), re.M)[1]: part
                    for part in parts}
        found = {name: total(part) for name, part in triggers.items() if name != "Program termination"}
        for name, (piece, functions) in within.items():
            if piece in triggers:
                found[name] = inclusive(triggers[piece], functions)
        return found


def start():
    """A process up to its first lookup, without what a program that does nothing needs."""
    with tempfile.TemporaryDirectory() as folder:
        output(programs / "bench", "--tree", folder)
        data = {"XDG_DATA_DIRS": folder + "/system", "XDG_DATA_HOME": folder + "/user"}
        counts = []
        for program in ["start_lookup", "start_bare"]:
            with tempfile.TemporaryDirectory() as out:
                counts.append(sum(total(part) for part in callgrind(out, [], programs / program, **data)))
        return counts[0] - counts[1]


def machine():
    return "# %s, g++ %s, Qt %s" % (os.uname().machine, output("g++", "-dumpfullversion").strip(),
                                    output("dpkg-query", "-W", "-f=${Version}", "libqt5core5a"))


def row(what, ours, beside, goal, failing=1.0):
    """Prints one line; returns whether it fails: by being this many times over its goal."""
    value = ours / beside
    verdict = "FAILED" if value > goal * failing else "missed" if value > goal else "met"
    print("%-52s %12d %12d %11.3f %11.2f  %s" % (what, ours, beside, value, goal, verdict))
    return verdict == "FAILED"


os.environ.pop("LD_BIND_NOW", None)
runs = [(size, group) for size in sizes for group in ["parse", "load", "library", "service", "rebuild"]]
counted = {(name, size): count for size, group in runs + [(50, "refusal")]
           for name, count in sorted(pieces(size, group).items())}
counted["start", 50] = start()
if sys.argv[3:] == ["--write"]:
    lines = [machine()] + ["%s: %d %d" % (name, size, count) for (name, size), count in counted.items()]
    known_file.write_text("\n".join(lines) + "\n")
    print("\n".join(lines))
    sys.exit()

print("%-52s %12s %12s %11s %11s" % ("instructions of / beside", "ours", "beside", "ratio", "goal"))
failures = []
for size, first_goal in [(50, 0.85), (500, 0.75), (5000, 0.95)]:
    parse = counted["parse", size]
    failures += [row("load at %s / read, parse, toVariant" % names[size], counted["load", size], parse, 0.63),
                 row("load and first lookup at %s / the same" % names[size], counted["first lookup", size], parse,
                     first_goal),
                 row("bytes of a save at %s / written directly" % names[size], counted["bytes", size],
                     counted["bytes by hand", size], 1.5)]
for size, goal in [(50, 600000), (500, 4200000)]:
    failures.append(row("the library's part of a load at %s / goal" % names[size], counted["library", size], goal, 1, 1.02))
for refusal in ["cut off", "first action", "last gesture"]:
    failures.append(row("refusal, %s / parse of the whole" % refusal, counted["refusal, " + refusal, 50],
                        counted["parse to refuse", 50], 1.1))
failures.append(row("a start beside a bare QCoreApplication / goal", counted["start", 50], 2600000, 1, 1.15))
for name in grow:
    for small, large in zip(sizes, sizes[1:]):
        # All lookups are of the same number of touches.
        share = 1 if name == "lookups" else large // small
        failures.append(row("%s per gesture at %s / at %s" % (name, names[large], names[small]),
                            counted[name, large] // share, counted[name, small], 1.3))

lines = known_file.read_text().splitlines()
if lines[0] != machine():
    print("the known counts are of another machine (%s): not compared" % lines[0])
else:
    for line in lines[1:]:
        name, size, count = re.fullmatch(r"(.*): (\d+) (\d+)", line).groups()
        failures.append(row("%s at %s / known" % (name, names[int(size)]), counted[name, int(size)], int(count), 1.02))
sys.exit(any(failures))

#!/usr/bin/env python3
"""Compares docs/messages.md with the sources, in both directions: messages.py SOURCE

Each row of its tables must consist of literals of one source; words in capitals are placeholders. Each literal that
looks like a message must be in a row: an argument of a sink or a stream, a literal of several words in the library, or
the result of a check of the command line. Ignores blanks and quotes around literals, because streams add some.

Home-made: this tree has its own definition of a message and its own form of rows and places. Packaged checkers compare
symbols or texts that are marked for translation.
"""
import itertools
import re
import sys
from collections import namedtuple
from pathlib import Path

PARTS = {"message": ("gesture_api", "common", "platform"), "error of gesturectl": ("tools/gesturectl",)}
SINKS = "fail|Failure|SaveFailure|printError|qDebug|qInfo|qWarning|qCritical|qFatal"
LITERAL = re.compile(r'''//.*|/\*[\s\S]*?\*/|#include.*|(?P<text>(?:"(?:\\.|[^"\\])*"\s*)+|(?<!\w)'(?:\\.|[^'\\])+')''')
Literal = namedtuple("Literal", "line text place pieces isMessage")
Row = namedtuple("Row", "line text places")


def pieces(text):
    """The parts between placeholders, colours and line ends."""
    return {each.strip(' \\"') for each in re.split(r"[A-Z]{2,}|%\d|\\[nt]|\\033\[[\d;]*m", text)} - {""}


def numbers(statements):
    return {int(number) for statement in statements for number in re.findall(r'"(\d+)"', statement)}


def literals(source, isLibrary):
    """All literals of a source. Numbers replace them in the code, so that each `;` in it ends a statement."""
    found, count = [match for match in LITERAL.finditer(source) if match["text"]], itertools.count()
    texts = [re.sub(r'"\s*"', "", match["text"].strip())[1:-1] for match in found]
    code = LITERAL.sub(lambda match: '"%d"' % next(count) if match["text"] else "", source)
    wrappers = re.findall(r"(\w+) = \[[^]]*\]\([^)]*\) \{\s*return (?:Left\()?(?:%s)\b" % SINKS, code)
    calls = re.findall(r"\b(?:%s)[({](?!int |const )[^;]*;" % "|".join([SINKS, *wrappers]), code)
    if isLibrary:
        messages = numbers(calls + re.findall("<<[^;]*;", code))
        messages |= {number for number, text in enumerate(texts) if re.search(r"\w\W* \W*\w", text)}
    else:
        given = "|".join(re.findall(r"\w+", " ".join([SINKS, *calls])))
        # The declaration of a verb or an option contains its help.
        returned = re.findall(r'\breturn (?!(?:verb|text|flag)\("\d+",)[^;>]*;', code)
        returned = re.sub(r'\w+\("\d+"\)', "", " ".join(returned))
        messages = numbers(calls + re.findall(r"\b(?:%s) = [^;]*;" % given, code))
        messages |= {number for number in numbers([returned]) if " " in texts[number]}
    family = [texts[int(number)].split("/")[-1] for number in re.findall(r'Error\(\{"(\d+)", line\}', code)]
    places = {number: re.sub(r"\w+.(\d*)[^;]*;", family[0] + r":\1", call).rstrip(":")
              for call in calls if family for number in numbers([call])}
    lines = [source.count("\n", 0, match.start()) + 1 for match in found]
    return [Literal(line, text, places.get(number), pieces(text), number in messages)
            for number, (line, text) in enumerate(zip(lines, texts))]


def rowsOf(page, heading):
    """The rows of the tables with this first heading."""
    table = None
    for number, line in enumerate(page.splitlines(), 1):
        cells = [cell.strip() for cell in line.strip("|").split("|")] if line.startswith("|") else None
        if table and cells and table[0] == heading and cells[0].strip("-"):
            places = re.findall("`([^`]*)`", cells[1]) if table[1] == "place" else ()
            yield Row(number, re.sub(r"^(`+) ?(.*?) ?\1$", r"\2", cells[0]), set(places))
        table = cells and (table or cells)


def uses(rows, sources):
    """Yields each row that consists of pieces of one source, with the source and the pieces."""
    for name, some in sources.items():
        every = {piece for literal in some for piece in literal.pieces}
        known = "|".join(map(re.escape, sorted(every, key=len, reverse=True)))
        for row in rows:
            if pieces(row.text) and all(re.fullmatch('(?:(?:%s)[ "]*)+' % known, piece) for piece in pieces(row.text)):
                yield row, name, {each for piece in pieces(row.text) for each in re.findall(known, piece)}


def faults(rows, sources):
    used = list(uses(rows, sources))
    for row in rows:
        its = [(name, some) for each, name, some in used if each is row]
        made = {literal.place for name, some in its for literal in sources[name] if literal.pieces & some}
        for place in sorted(row.places - made) if its else [""]:
            yield "docs/messages.md:%d: not made in %s: %s" % (row.line, place or "the sources", row.text)
    for name, literal in [(name, literal) for name in sources for literal in sources[name] if literal.isMessage]:
        its = [(row, some) for row, each, some in used if each == name and literal.pieces & some]
        words = {piece for piece in literal.pieces if re.search("[A-Za-z]", piece)}
        if not words <= {piece for _, some in its for piece in some}:
            yield "%s:%d: no row in docs/messages.md: %s" % (name, literal.line, literal.text)
        elif its and literal.place and not any(literal.place in row.places for row, _ in its):
            yield "%s:%d: its row has not the place %s: %s" % (name, literal.line, literal.place, literal.text)


root = Path(sys.argv[1])
page, either = [(root / name).read_text("utf-8") for name in ("docs/messages.md", "common/include/vellix/either.h")]
fixed = re.findall(r"constexpr int getOr\w+Line = (\d+);", either) or ["none found"]
found = ["no place of a log line in docs/messages.md: " + line for line in fixed if "either.h:%s`" % line not in page]
for heading, rooms in PARTS.items():
    paths = [path for room in rooms for path in sorted((root / room).rglob("*")) if path.suffix in (".cpp", ".h")]
    rows = list(rowsOf(page, heading))
    sources = {str(path.relative_to(root)): literals(path.read_text("utf-8"), heading == "message") for path in paths}
    found += faults(rows, sources) if rows and sources else ["nothing found for tables of '%s'" % heading]
sys.exit("\n".join(found) or 0)

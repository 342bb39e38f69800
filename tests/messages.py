#!/usr/bin/env python3
"""Holds docs/messages.md to the sources: messages.py SOURCE

Each text that the library prints, logs or returns as an error has a row in a table of that page, and each row has its
text in the sources; the same for the errors of gesturectl. A word in capitals stands for what is only known when the
program runs. A message is what is given to a sink, put into a stream, or reads like prose.
"""
import re
import sys
from collections import namedtuple
from pathlib import Path

QT_LOG = {"qDebug": 0, "qInfo": 0, "qWarning": 0, "qCritical": 0, "qFatal": 0}
# By the first heading of its tables: where the sources are, and which argument of which call is a message.
PARTS = {
    "message": (["gesture_api", "common", "platform"], {"fail": -1, "SaveFailure": -1, **QT_LOG}),
    "error of gesturectl": (["tools/gesturectl"], {"Failure": -1, "printError": 0, **QT_LOG}),
}
TEXT = {"QStringLiteral", "QLatin1String", "QLatin1Char", "QByteArrayLiteral"}
HOLE = "\0"
TOKEN = re.compile(r'''(?P<skip>\s+|//[^\n]*|/\*.*?\*/|\#\s*(?:include|pragma)[^\n]*)
    |(?:u8|[uUL])?(?P<string>"(?:\\.|[^"\\])*")|(?P<char>(?<![0-9A-Za-z_])'(?:\\.|[^'\\])+')
    |(?P<word>[A-Za-z_]\w*)|(?P<number>\d[\w.']*)|(?P<mark><<=|>>=|<<|->|::|[+]=|[+][+]|==|&&|[|][|]|.)''', re.S | re.X)
ESCAPES = {"n": "\n", "t": "\t", "0": "\0", "\\": "\\", '"': '"', "'": "'"}

Group = namedtuple("Group", "open inner line")
Token = namedtuple("Token", "kind text line")
Message = namedtuple("Message", "text isStreamed source place")


def literal(text):
    text = re.sub(r"\\(033|x1b)\[[0-9;]*m", "", text[1:-1])  # colours
    return re.sub(r"\\(.)", lambda match: ESCAPES[match[1]], text)


def tokens(source):
    line = 1
    for match in TOKEN.finditer(source):
        if match.lastgroup != "skip":
            kind = match.lastgroup
            text = literal(match[kind]) if kind in ("string", "char") else match[kind]
            yield Token("string" if kind == "char" else kind, text, line)
        line += match[0].count("\n")


def tree(stream, closing=None):
    """The tokens with every pair of brackets as one group."""
    nodes = []
    for token in stream:
        if token.kind == "mark" and token.text == closing:
            break
        if token.kind == "mark" and token.text in "([{":
            inner = tree(stream, {"(": ")", "[": "]", "{": "}"}[token.text])
            nodes.append(Group(token.text, inner, token.line))
        elif token.kind == "string" and nodes and getattr(nodes[-1], "kind", "") == "string":
            nodes[-1] = Token("string", nodes[-1].text + token.text, nodes[-1].line)
        else:
            nodes.append(token)
    return nodes


def isMark(node, text):
    return isinstance(node, Token) and node.kind == "mark" and node.text == text


def split(nodes, mark):
    parts = [[]]
    for node in nodes:
        if isMark(node, mark):
            parts.append([])
        else:
            parts[-1].append(node)
    return parts


def word(node):
    return node.text if isinstance(node, Token) and node.kind == "word" else ""


def withArguments(texts, arguments):
    """QString::arg: the lowest numbers are replaced."""
    for argument in split(arguments, ","):
        numbers = [int(number) for text in texts for number in re.findall(r"%(\d)", text)]
        if not numbers:
            return texts
        texts = [text.replace("%%%d" % min(numbers), value) for text in texts for value in values(argument)]
    return texts


def values(nodes):
    """The texts that an expression may have, with holes for what is only known when it runs."""
    for i, node in enumerate(nodes):
        if isMark(node, "?"):
            colon = next(j for j in range(i, len(nodes)) if isMark(nodes[j], ":"))
            return values(nodes[i + 1:colon]) + values(nodes[colon + 1:])
    terms = split(nodes, "+")
    if len(terms) > 1:
        texts = [""]
        for term in terms:
            texts = [text + value for text in texts for value in values(term)]
        return texts
    start, texts = 0, [HOLE]
    if nodes and isinstance(nodes[0], Token) and nodes[0].kind == "string":
        start, texts = 1, [nodes[0].text]
    elif len(nodes) > 1 and word(nodes[0]) in TEXT and isinstance(nodes[1], Group):
        start, texts = 2, values(nodes[1].inner)
    elif len(nodes) == 1 and isinstance(nodes[0], Group) and nodes[0].open == "(":
        start, texts = 1, values(nodes[0].inner)
    elif len(nodes) == 1 and word(nodes[0]):
        return [HOLE + word(nodes[0]) + HOLE]
    while start + 2 < len(nodes) and isMark(nodes[start], ".") and word(nodes[start + 1]) == "arg":
        texts = withArguments(texts, nodes[start + 2].inner)
        start += 3
    return texts if start >= len(nodes) else [HOLE]


def isProse(text):
    return re.search("[A-Za-z" + HOLE + r"][^\sA-Za-z]{0,3} ['`(]?[A-Za-z]", text) is not None


def hasText(nodes):
    return any(getattr(node, "kind", "") == "string" and isProse(node.text) for node in nodes)


def calls(group):
    """The calls within, with their arguments."""
    for before, node in zip([None] + group.inner, group.inner):
        if isinstance(node, Group):
            yield word(before), split(node.inner, ",")
            yield from calls(node)


class Reader:
    """Collects the messages of one part."""

    def __init__(self, sinks, isLibrary):
        self.sinks = sinks
        self.isLibrary = isLibrary
        self.messages = []

    def read(self, path, name):
        source = path.read_text(encoding="utf-8")
        family = re.search(r'fail\(int line.*?Error\(\{"[^"]*?(\w+)", line\}', source, re.S)
        self.family = family[1] if family else None
        self.name = name
        self.wrappers = {}
        self.variables = {}
        self.statements(tree(tokens(source)))

    def statements(self, nodes):
        for statement in split(nodes, ";"):
            self.segment(statement)

    def segment(self, nodes, isSink=False, place=None):
        """A statement or an argument: the text that it is, and whatever stands in its brackets."""
        if any(isMark(node, "<<") for node in nodes):
            isMessage = self.stream(nodes)
        else:
            isMessage = self.expression(nodes, isSink, place)
        self.wrapper(nodes)
        for before, node in zip([None] + nodes, nodes):
            callee = word(before)
            if not isinstance(node, Group) or callee in TEXT or callee == "arg":
                continue
            if node.open == "{" and callee not in self.sinks:
                self.statements(node.inner)
            elif not (isMessage and node.open == "(" and not callee): # a part of the expression
                self.call(callee, node)

    def call(self, callee, group):
        arguments = split(group.inner, ",")
        if callee in self.wrappers:
            parameters, texts = self.wrappers[callee]
            for parameter, argument in zip(parameters, arguments):
                texts = [text.replace(HOLE + parameter + HOLE, value) for text in texts for value in values(argument)]
            for text in texts:
                self.add(text, group.line, place=self.family)
            return
        place = None
        if callee == "fail" and arguments[0]:
            line = arguments[0][0].text
            place = self.family if line in ("__LINE__", "line") else "%s:%s" % (self.family, line)
        for number, argument in enumerate(arguments):
            isSink = callee in self.sinks and number == self.sinks[callee] % len(arguments)
            self.segment(argument, isSink, place)

    def wrapper(self, nodes):
        """A lambda around a sink is a sink of its own: NAME = [...](...) { ... fail(...); }"""
        equals = next((i for i, node in enumerate(nodes) if isMark(node, "=")), 0)
        groups = [node for node in nodes[equals:] if isinstance(node, Group)]
        if not equals or [group.open for group in groups] != ["[", "(", "{"]:
            return
        parameters = [word(parameter[-1]) for parameter in split(groups[1].inner, ",") if parameter]
        for callee, arguments in calls(groups[2]):
            if callee in self.sinks:
                self.wrappers[word(nodes[equals - 1])] = (parameters, values(arguments[self.sinks[callee]]))

    def expression(self, nodes, isSink, place):
        start = max([0] + [i + 1 for i, node in enumerate(nodes) if word(node) == "return" or isMark(node, "=")])
        if not nodes[start:]:
            return False
        texts = values(nodes[start:])
        isMessage = isSink or any(isProse(text) for text in texts)
        if not isMessage and hasText(nodes): # a form of expression that is not known here: its words at least
            isMessage, texts = True, [HOLE.join(node.text for node in nodes if getattr(node, "kind", "") == "string")]
        if isMessage and start and isMark(nodes[start - 1], "="):
            self.variables[word(nodes[start - 2])] = texts[0]
        # In the tool prose is mostly help and output. What checks an argument returns plain strings.
        isReturned = any(word(node) == "return" for node in nodes) and TEXT.isdisjoint(
            callee for callee, arguments in calls(Group("", nodes, 0)))
        if isSink or isMessage and (self.isLibrary or isReturned):
            for text in texts:
                self.add(text, nodes[start].line, place=place)
        return isMessage

    def stream(self, nodes):
        if not self.isLibrary:
            return False
        texts = [""]
        for part in split(nodes, "<<")[1:]:
            if part and not any(word(node) in ("constData", "endl", "flush") for node in part):
                texts = [text + " " + value for text in texts for value in values(part)]
        for line in "\n".join(texts).split("\n"):
            self.add(line, nodes[0].line, isStreamed=True)
        return True

    def add(self, text, line, place=None, isStreamed=False):
        text = re.sub(HOLE + r"(\w+)" + HOLE, lambda hole: self.variables.get(hole[1], HOLE), text)
        if re.search("[A-Za-z]", text):
            self.messages.append(Message(key(text, isStreamed), isStreamed, "%s:%d" % (self.name, line), place))


def key(text, isStreamed):
    """What is compared. A stream may put blanks and quotes around what it is given."""
    text = re.sub("[A-Z]{2,}", HOLE, text)
    return re.sub(r"(\s*%s\s*)+" % HOLE, HOLE, text.replace('"', "")).strip() if isStreamed else text


def shown(text):
    return text.replace(HOLE, "...")


Row = namedtuple("Row", "text places line")


def rowsOf(page, heading):
    """The rows of the tables with this first heading."""
    rows = []
    table = None
    for number, line in enumerate(page.splitlines(), 1):
        cells = [cell.strip() for cell in line.strip("|").split("|")] if line.startswith("|") else None
        if cells is None or table is None:
            table = cells
            continue
        if table[0] != heading or set(line) <= set("|- "):
            continue
        code = re.fullmatch(r"(`+)(.*?)\1", cells[0])
        if not code:
            sys.exit("docs/messages.md:%d: a row starts with a message in backquotes" % number)
        text = code[2][1:-1] if code[2].startswith(" ") else code[2]
        places = set(re.findall("`([^`]*)`", cells[1])) if table[1] == "place" else set()
        rows.append(Row(text, places, number))
    return rows


def faultsOf(messages, rows):
    for message in messages:
        meant = [row for row in rows if key(row.text, message.isStreamed) == message.text]
        if not meant:
            yield "%s: no row in docs/messages.md: %s" % (message.source, shown(message.text))
        elif message.place and not any(message.place in row.places for row in meant):
            yield "%s: its row has not the place %s: %s" % (message.source, message.place, shown(message.text))
    for row in rows:
        same = [message for message in messages if key(row.text, message.isStreamed) == message.text]
        if not same:
            yield "docs/messages.md:%d: not in the sources: %s" % (row.line, row.text)
            continue
        for place in sorted(row.places - {message.place for message in same}):
            yield "docs/messages.md:%d: not made in %s: %s" % (row.line, place, row.text)


def main():
    source = Path(sys.argv[1])
    page = (source / "docs/messages.md").read_text(encoding="utf-8")
    either = (source / "common/include/vellix/either.h").read_text(encoding="utf-8")
    faults = ["either.h: the page does not name the place of a log line: %s" % line
              for line in re.findall(r"constexpr int getOr\w+Line = (\d+);", either) if "either.h:%s`" % line not in page]
    for heading, (directories, sinks) in PARTS.items():
        reader = Reader(sinks, heading == "message")
        for directory in directories:
            for path in sorted((source / directory).rglob("*")):
                if path.suffix in (".cpp", ".h"):
                    reader.read(path, str(path.relative_to(source)))
        rows = rowsOf(page, heading)
        if not rows or not reader.messages:
            faults.append("nothing found for tables of '%s'" % heading)
        faults += faultsOf(reader.messages, rows)
    print("\n".join(faults), end="\n" if faults else "")
    sys.exit(1 if faults else 0)


main()

#!/usr/bin/env python3
"""Checks that every text on the screen has its translations: translations.py [--write] SOURCE LUPDATE

With --write, it brings the files of translations up to date with the sources instead.

- The files have exactly the texts of the sources, each in the context in which a program looks for it.
- Each translation is finished, has all place markers (%1, %n) of its text, and all plural forms of its language.
- A literal that QML shows, or that looks like a text, is marked for translation.
- No text is added to another with a plus: other languages have another order.

Home-made: lupdate finds marked texts only, and lrelease accepts any translation.
"""
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml
from pathlib import Path

# The files without _LANGUAGE.ts, and the directory of their sources.
CATALOGUES = {"qml/translations/vellix_gesture": "qml", "examples/translations/examples": "examples"}
# The number of plural forms, and how many of these, the first ones, are for a single number and may leave it out.
LANGUAGES = {"ar": (6, 3), "de": (2, 1), "en": (2, 1), "ja": (1, 0)}
SHOWN = ("text", "title", "placeholderText", "Accessible.name", "Accessible.description")
MARKED = ("qsTr", "qsTranslate", "QT_TR_NOOP", "QT_TRANSLATE_NOOP", "tr", "translate")
# Calls that talk to developers.
LOGGED = ("fprintf", "log", "qmlRegisterUncreatableType", "qWarning", "warn")
# Literals in these files or properties are no texts of the program, each with the reason.
ALLOWED_FILES = {"examples/reader/book.js": "the sample book, as an author wrote it"}
ALLOWED_PROPERTIES = {"font.family": "the name of a font", "objectName": "for tests"}

MARKER = re.compile(r"%L?(?:\d+|n)")
TOKEN = re.compile(r"""
    (?P<comment>//[^\n]*|/\*[\s\S]*?\*/|^[ \t]*(?:\#|import\b|\.import\b|\.pragma\b)[^\n]*)
  | (?P<literal>"(?:\\.|[^"\\\n])*"|'(?:\\.|[^'\\\n])*'|`(?:\\.|[^`\\])*`)
  | (?P<open>(?:(?P<callee>[\w.:]+)(?:<[^<>()]*>)?\s*)?\(|[\[{])
  | (?P<close>[)\]}])
  | (?P<end>;)
  | (?P<property>(?:(?<=^)|(?<=[{;,]))[ \t]*(?:(?:readonly|required|default)[ ]+)*(?:property[ ]+[\w.<>]+[ ]+)?
        (?P<name>[A-Za-z][\w.]*)[ \t]*:(?!:))
""", re.X | re.M)


CALL = r"\b(?:qsTr|tr|translate)\("
GLUED = re.compile(r"""\+\s*(?:\w+(?:\.|::))*%s|%s(?:"(?:\\.|[^"\\])*"|[^()"])*\)\s*\+""" % (CALL, CALL))


def update(lupdate, root, base, sources, language, file):
    """Runs lupdate. Returns its complaints about the sources."""
    # English only needs its plurals.
    plurals = ["-pluralonly"] if language == "en" else []
    said = subprocess.run([lupdate, "-silent", "-no-obsolete", "-locations", "none", "-source-language", "en",
                           "-target-language", language, *plurals, sources, "-ts", file],
                          cwd=root, check=True, capture_output=True, text=True)
    return (said.stdout + said.stderr).strip()


def staleness(lupdate, root, base, sources, language):
    file = root / (base + "_%s.ts" % language)
    if not file.exists():
        return ["is missing"]
    with tempfile.TemporaryDirectory() as directory:
        copy = Path(directory) / file.name
        copy.write_bytes(file.read_bytes())
        complaints = update(lupdate, root, base, sources, language, copy)
        stale = copy.read_bytes() != file.read_bytes()
    return (["is not up to date: build the target update-translations"] if stale else []) + complaints.splitlines()


def translationFaults(language, message):
    source = message.findtext("source")
    translation = message.find("translation")
    forms = [form.text or "" for form in translation.findall("numerusform")]
    plurals, single = LANGUAGES[language]
    if message.get("numerus") != "yes":
        forms = [translation.text or ""]
        single = 0
    elif len(forms) != plurals:
        yield "has %d plural forms of %d" % (len(forms), plurals)
    if translation.get("type"):
        yield "is " + translation.get("type")
    for number, form in enumerate(forms):
        # An L asks for the digits of the language.
        wanted, markers = [{marker.replace("L", "") for marker in MARKER.findall(text)} for text in (source, form)]
        if number < single:
            wanted -= {"%n"} - markers
        if not form.strip():
            yield "is empty"
        elif markers != wanted:
            yield "must have %s: “%s”" % (", ".join(sorted(wanted)) or "no place marker", form)


def catalogueFaults(root, base, language):
    tree = xml.parse(root / (base + "_%s.ts" % language))
    for context in tree.iter("context"):
        for message in context.iter("message"):
            for fault in translationFaults(language, message):
                yield "%s: “%s” %s" % (context.findtext("name"), message.findtext("source"), fault)


def isText(content, isQml):
    """Has two words. A single one with a capital letter could be a type in C++."""
    return bool(re.search(r"[A-Za-z]{2,}[,.;:]? [A-Za-z]", content) or isQml and re.match(r"\W*[A-Z][a-z]", content))


def isShown(content, name, code, start, end, callee):
    """Whether a literal without two words is a part of a shown expression, and no key in it."""
    if name not in SHOWN or not re.search(r"[^\W\d_]", re.sub(r"\\u[0-9a-fA-F]{4}|\\.", "", content)):
        return False
    compared = re.search(r"[=!]==?\s*$", code[:start]) or re.match(r"\s*[=!]==?", code[end:])
    key = re.search(r"[\w\])]\[\s*$", code[:start]) or callee
    return not compared and not key


def unmarked(code, isQml):
    """The lines and contents of literals that a user would see, but that nobody can translate."""
    calls, names = [], [""]
    for token in TOKEN.finditer(code):
        if token["open"]:
            calls.append(token["callee"] or "")
            names.append("" if token["open"] == "{" else names[-1])
        elif token["close"] and calls:
            calls.pop()
            names.pop()
        elif token["end"]:
            names[-1] = ""
        elif token["property"]:
            names[-1] = token["name"]
        elif token["literal"]:
            content, around = token["literal"][1:-1], {call.split("::")[-1].split(".")[-1] for call in calls}
            known = around & {*MARKED, *LOGGED} or names[-1] in ALLOWED_PROPERTIES
            shown = isQml and isShown(content, names[-1], code, token.start(), token.end(), calls and calls[-1])
            if not known and (isText(content, isQml) or shown):
                yield code.count("\n", 0, token.start()) + 1, content


def main(arguments):
    write = arguments[:1] == ["--write"]
    root, lupdate = Path(arguments[-2]).resolve(), arguments[-1]
    failures = []
    for base, sources in CATALOGUES.items():
        for language in LANGUAGES:
            name = base + "_%s.ts" % language
            if write:
                print(update(lupdate, root, base, sources, language, root / name), end="")
                continue
            failures += ["%s: %s" % (name, fault) for fault in staleness(lupdate, root, base, sources, language)]
            if (root / name).exists():
                failures += ["%s: %s" % (name, fault) for fault in catalogueFaults(root, base, language)]
        for file in sorted((root / sources).rglob("*.*")):
            place = str(file.relative_to(root))
            if write or file.suffix not in (".qml", ".js", ".cpp", ".h") or place in ALLOWED_FILES:
                continue
            code = file.read_text()
            failures += ["%s:%d: “%s” cannot be translated" % (place, line, content)
                         for line, content in unmarked(code, file.suffix in (".qml", ".js"))]
            failures += ["%s:%d: a text is added to another" % (place, code.count("\n", 0, match.start()) + 1)
                         for match in GLUED.finditer(code)]
    for failure in dict.fromkeys(failures):
        print(failure)
    return bool(failures)


sys.exit(main(sys.argv[1:]))

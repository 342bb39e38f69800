#!/usr/bin/python3
"""Compiles, loads or runs every code block of the documentation (*.md of the root, docs/**/*.md).

    docs.py extract SOURCE OUT     writes the C++ and QML blocks to OUT, where the build compiles them and the test
                                   `readme` loads the QML; prints the names of the programs
    docs.py projects SOURCE OUT    writes the CMake blocks as projects to OUT/NAME, which the test `install` builds
                                   against an installed library; prints the names
    docs.py run SOURCE BUILD OUT   runs the programs that BUILD made of OUT, and all other blocks; fails on a block of
                                   another language

Home-made: no tool supports all these languages. Debian's cram compares the output of shell commands, but in its own
format (indented, `$` before each command) and without a wildcard for lines: a converter would be as long as judge().

A block is fenced and has one of these languages; all others are faults. A block within an HTML comment is treated like
any other, so that a page can hide preparations.

    cpp     A program: compiled with all warnings, linked, and run.
    qml     A whole document; loading it must not print a warning.
    json    One of the three files is checked by gesturectl; anything else must be JSON.
    cmake   A whole project, or the rest of one after add_executable(app ...). A source that it names is the block
            marked with this file name, else the nearest program above it.
    sh      Run by bash -euo pipefail in a copy of the tree with the programs in PATH, each block in its own shell. All
            blocks of a page share a copy and a home directory. The sample is the system's configuration.
    text    A picture. Directly after `sh` or a program, its expected output, standard error included; a line `...`
            stands for any number of lines. Verbs and options in lines that begin with `gesturectl` must exist.

Marks are HTML comments of one line right above a block:

    <!-- not run: REASON -->      sh: only checks that its programs and gesturectl's options exist; a program is
                                  only compiled and linked; cmake is not built
    <!-- exits: N -->             sh, a program: expects this exit status instead of 0
    <!-- file: NAME -->           the block is also written to NAME in the copy of the tree
    <!-- device: no features -->  sh: compares the output only on machines without front light and speech
"""
import dataclasses
import difflib
import json
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile

LANGUAGES = ("cpp", "qml", "json", "cmake", "sh", "text")
MARKS = {"not run": ("sh", "cpp", "cmake"), "exits": ("sh", "cpp"), "file": LANGUAGES, "device": ("sh",)}


@dataclasses.dataclass
class Block:
    page: str
    line: int  # the line number of its first line of code
    language: str
    text: str
    marks: dict
    end: int = 0  # the line after it
    output: str = None  # the text directly after it

    @property
    def place(self):
        return f"{self.page}:{self.line}"


class Faults(Exception):
    """All faults, one per line."""


# --- reading pages


def parse(page, text):
    """The blocks of a page and its faults."""
    blocks, faults, marks = [], [], {}
    lines = text.split("\n")
    list_indent, blank, at = 0, True, 0
    while at < len(lines):
        line = lines[at]
        fence = re.match(r"( *)(`{3,}|~{3,})\s*(.*?)\s*$", line)
        mark = re.match(r"\s*<!--\s*(.*?)\s*-->\s*$", line)
        indent = len(line) - len(line.lstrip(" "))
        if fence and len(fence[1]) < list_indent + 4:
            close = re.compile(rf"\s*{fence[2][0]}{{{len(fence[2])},}}\s*$")
            end = next((i for i in range(at + 1, len(lines)) if close.match(lines[i])), None)
            if end is None:
                faults.append(f"{page}:{at + 1}: a block without an end")
                break
            code = "".join(re.sub(f"^ {{0,{len(fence[1])}}}", "", code) + "\n" for code in lines[at + 1:end])
            block = Block(page, at + 2, fence[3], code, marks, end + 1)
            if block.language not in LANGUAGES:
                faults.append(f"{page}:{at + 1}: a block that nobody runs (language '{block.language}')")
            for name in marks:
                if block.language not in MARKS.get(name, ()):
                    faults.append(f"{page}:{at + 1}: unknown mark '{name}' of a block of '{block.language}'")
            if block.language == "cpp" and not re.search(r"\bint\s+main\s*\(", code):
                faults.append(f"{page}:{at + 1}: C++ that is no program")
            before = blocks[-1] if blocks else None
            if block.language == "text" and before and not "".join(lines[before.end:at]).strip():
                before.output = code
            blocks.append(block)
            marks, blank, at = {}, False, end + 1
            continue
        if mark:
            name, _, value = mark[1].partition(":")
            marks[name.strip()] = value.strip()
        else:
            marks = {}
        if blank and line.strip() and indent >= list_indent + 4:
            faults.append(f"{page}:{at + 1}: a block that nobody runs (indented: fence it and name its language)")
            while at < len(lines) and (not lines[at].strip() or lines[at].startswith(" " * (list_indent + 4))):
                at += 1
            continue
        item = re.match(r" *(?:[-*+]|\d+[.)]) +", line)
        if item:
            list_indent = len(item[0])
        elif blank and line.strip() and indent < list_indent:
            list_indent = 0
        blank = not line.strip()
        at += 1
    return blocks, faults


def read(source):
    """The pages, each a list of blocks, and their faults."""
    pages, faults = {}, []
    for path in sorted(source.glob("*.md")) + sorted(source.glob("docs/**/*.md")):
        name = path.relative_to(source).as_posix()
        pages[name], wrong = parse(name, path.read_text(encoding="utf-8"))
        faults += wrong
    return pages, faults


def named(blocks):
    """Each block with a name for a file: PAGE_N, the N-th of its kind in the page."""
    count = 0
    for block in blocks:
        count += 1
        yield re.sub(r"\W", "_", block.page.removesuffix(".md")) + f"_{count}", block


# --- C++ and QML


def programs(pages):
    for blocks in pages.values():
        yield from named(block for block in blocks if block.language == "cpp")


def sources(pages):
    """What `extract` writes: file name to content."""
    files = {f"{name}.cpp": f'#line {block.line} "{block.page}"\n{block.text}' for name, block in programs(pages)}
    for blocks in pages.values():
        for name, block in named(block for block in blocks if block.language == "qml"):
            files[f"{name}.qml"] = block.text
    return files


def write(path, text):
    """Writes a file unless it already has this content: an unchanged file is not compiled again."""
    if not path.exists() or path.read_text(encoding="utf-8") != text:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")


def extract(source, out):
    pages, _ = read(source)
    files = sources(pages)
    out.mkdir(parents=True, exist_ok=True)
    for old in [*out.glob("*.cpp"), *out.glob("*.qml")]:
        if old.name not in files:
            old.unlink()
    for name, text in files.items():
        write(out / name, text)
    print(";".join(name for name, _ in programs(pages)), end="")


# --- CMake


def projects(source, out):
    pages, _ = read(source)
    for blocks in pages.values():
        for name, block in named(block for block in blocks if block.language == "cmake"):
            if "not run" in block.marks:
                continue
            text = block.text
            if not re.search(r"^\s*project\s*\(", text, re.M):
                text = ("cmake_minimum_required(VERSION 3.25)\nproject(app CXX)\n"
                        + ("" if "GestureApi " in text else "find_package(GestureApi 1.0 REQUIRED)\n")
                        + ("" if "add_executable" in text else "add_executable(app app.cpp)\n") + text)
                write(out / name / "app.cpp", "int main() {}\n")
            write(out / name / "CMakeLists.txt", text)
            known = {other.marks["file"]: other.text for other in blocks if "file" in other.marks}
            above = [other for other in blocks if other.language == "cpp" and other.line < block.line]
            for file in re.findall(r"[\w./-]+\.cpp\b", block.text):
                if file not in known and not above:
                    raise Faults(f"{block.place}: no block of the page is {file}")
                write(out / name / file, known.get(file) or above[-1].text)
            print(name)


# --- running


class Runner:
    def __init__(self, source, build, work):
        self.source, self.build, self.work = source, build, work
        self.tree, self.env, self.helps = None, None, {}
        self.has_features = None

    def enter(self, page):
        """Creates a copy of the tree and a home directory for this page."""
        folder = self.work / re.sub(r"\W", "_", page)
        self.tree = folder / "tree"
        shutil.copytree(self.source, self.tree, symlinks=True, ignore=shutil.ignore_patterns("build", ".git"))
        (self.tree / "build").mkdir()
        for preset in ("release", "dev", "asan"):
            (self.tree / "build" / preset).symlink_to(self.build)
        home = folder / "home"
        home.mkdir()
        self.env = {**os.environ, "HOME": str(home), "XDG_DATA_HOME": f"{home}/.local/share",
                    "XDG_DATA_DIRS": str(self.tree / "examples/data"), "LC_ALL": "C.UTF-8",
                    "QT_QPA_PLATFORM": "offscreen", "PATH": f"{self.build}/tools:{os.environ['PATH']}"}

    def call(self, command):
        try:
            done = subprocess.run(command, cwd=self.tree, env=self.env, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=600)
        except subprocess.TimeoutExpired:
            return None, "not done after ten minutes\n"
        except OSError as error:
            return None, f"{error}\n"
        return done.returncode, done.stdout.decode("utf-8", "replace")

    def judge(self, block, command):
        """Runs a block and returns its fault, or None."""
        wanted = int(block.marks.get("exits", 0))
        status, printed = self.call(command)
        if status != wanted:
            return f"exit status {status}, not {wanted}\n{printed}"
        if block.output is None or "device" in block.marks and self.machine_has_features():
            return None
        pattern = "".join(r"(?:.*\n)*?" if line.strip() == "..." else re.escape(line) + r"\n"
                          for line in block.output.splitlines())
        if re.fullmatch(pattern, printed if printed.endswith("\n") or not printed else printed + "\n"):
            return None
        return "prints something else\n" + "".join(
            difflib.unified_diff(block.output.splitlines(True), printed.splitlines(True), "the page", "printed"))

    def machine_has_features(self):
        """Whether a group of the sample keeps one of its two actions that need light or speech."""
        if self.has_features is None:
            _, offered = self.call(["gesturectl", "actions", "--app", "reader", "ReadingTapLeftNoDirection"])
            if "page/next" not in offered:
                raise Faults(f"gesturectl actions: {offered}")
            self.has_features = "speech/toggle" in offered or "light/toggle" in offered
        return self.has_features

    def gesturectl_faults(self, words):
        """The verb or the options among these words that gesturectl does not have."""
        verb = next((word for word in words[1:] if not word.startswith("-")), "")
        options = [word.partition("=")[0] for word in words if re.match(r"--?[a-z]", word)]
        if verb not in self.helps:
            status, text = self.call(["gesturectl", *([verb] if verb else []), "--help"])
            self.helps[verb] = text if status == 0 else None
        if self.helps[verb] is None:
            return [f"gesturectl has no verb '{verb}'"]
        return [f"gesturectl {verb} has no option '{option}'" for option in options
                if not re.search(rf"(?<![\w-]){re.escape(option)}(?![\w-])", self.helps[verb])]

    def command_faults(self, text):
        """The missing programs of a block. Does not check absolute paths: they are those of other machines."""
        faults = []
        for line in re.sub(r"\$\([^()]*\)", "/", text.replace("\\\n", " ")).split("\n"):
            lexer = shlex.shlex(line, posix=True, punctuation_chars=True)
            lexer.whitespace_split = True
            commands, words = [], []
            for word in [*lexer, ";"]:
                if set(word) <= set("();|&"):
                    commands.append(words)
                    words = []
                else:
                    words.append(word)
            for command in commands:
                while command and (re.match(r"\w+=", command[0]) or command[0] in ("sudo", "env", "time")):
                    command = command[1:]
                if not command or command[0].startswith(("/", "$")):
                    continue
                if command[0].endswith("gesturectl"):
                    faults += self.gesturectl_faults(command)
                status, _ = self.call(["bash", "-c", 'type -- "$1" >/dev/null', "bash", command[0]])
                if status != 0:
                    faults.append(f"there is no '{command[0]}'")
        return faults

    def check_json(self, block):
        try:
            document = json.loads(block.text)
        except ValueError as error:
            return f"no JSON: {error}"
        keys = set(document) if isinstance(document, dict) else set()
        if keys & {"current", "default", "filename", "prohibitedApps"}:
            kind = "--paths"
        elif keys & {"version"} and keys & {"actions"}:
            kind = "--bindings"
        elif keys & {"gestures", "zones", "actionGroups"} and "touch" not in keys:
            kind = "--config"
        else:
            return None
        file = self.work / "block.json"
        file.write_text(block.text, encoding="utf-8")
        status, printed = self.call(["gesturectl", "check", kind, str(file)])
        return f"gesturectl check {kind}\n{printed}" if status != 0 else None

    def check(self, block, program):
        """The faults of one block."""
        if "file" in block.marks:
            write(self.tree / block.marks["file"], block.text)
        if block.language == "json":
            return [self.check_json(block)]
        if block.language == "text":
            lines = [line for line in block.text.split("\n") if re.match(r"(\$ )?gesturectl ", line)]
            return [fault for line in lines for fault in self.gesturectl_faults(
                [word.strip("[],") for word in line.removeprefix("$ ").split() if word.strip("[],|")])]
        if "not run" in block.marks:
            return self.command_faults(block.text) if block.language == "sh" else []
        if block.language == "sh":
            return [self.judge(block, ["bash", "-euo", "pipefail", "-c", block.text])]
        if block.language == "cpp":
            return [self.judge(block, [str(program)])]
        return []  # the tests `readme` and `install` load or build these


def run(source, build, out):
    pages, faults = read(source)
    for name, text in sources(pages).items():
        if not (out / name).exists() or (out / name).read_text(encoding="utf-8") != text:
            faults.append(f"{name} is older than its page: build first")
    compiled = {block.place: build / "tests" / f"docs_{name}" for name, block in programs(pages)}
    with tempfile.TemporaryDirectory() as work:
        runner = Runner(source, build, pathlib.Path(work).resolve())
        for page, blocks in pages.items():
            if blocks:
                runner.enter(page)
            for block in blocks:
                found = [fault for fault in runner.check(block, compiled.get(block.place)) if fault]
                faults += [f"{block.place}: {fault}" for fault in found]
                if "not run" in block.marks:
                    print(f"{block.place}: not run: {block.marks['not run']}")
                if "device" in block.marks and runner.machine_has_features():
                    print(f"{block.place}: not compared: this machine has features")
    print(f"{sum(map(len, pages.values()))} blocks in {len(pages)} pages")
    if faults:
        raise Faults("\n".join(faults))


def main(command, *paths):
    paths = [pathlib.Path(path).resolve() for path in paths]
    try:
        {"extract": extract, "projects": projects, "run": run}[command](*paths)
    except Faults as faults:
        sys.exit(str(faults))


if __name__ == "__main__":
    main(*sys.argv[1:])

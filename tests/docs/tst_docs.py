#!/usr/bin/python3
"""docs.py reports invalid blocks and accepts valid ones."""
import contextlib
import io
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True # the source tree stays unchanged
import docs

# A gesturectl with one verb and one option. It accepts each configuration without the text 'bad'.
GESTURECTL = """#!/bin/sh
case $1 in
    list) [ "$2" != --help ] || echo "  --app APP" ;;
    check) ! grep bad "$3" ;;
    --help) ;;
    *) exit 2 ;;
esac
"""


def fenced(language, code):
    return f"```{language}\n{code}\n```\n"


class Docs(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        root = pathlib.Path(folder.name)
        self.source, self.build, self.out = root / "source", root / "build", root / "out"
        for directory in (self.source / "docs/more", self.build / "tools", self.build / "tests"):
            directory.mkdir(parents=True)
        tool = self.build / "tools/gesturectl"
        tool.write_text(GESTURECTL)
        tool.chmod(0o755)

    def docs(self, command, *paths):
        """The output of a command, and the faults that it reports."""
        printed, faults = io.StringIO(), ""
        with contextlib.redirect_stdout(printed):
            try:
                command(*paths)
            except docs.Faults as wrong:
                faults = str(wrong)
        return printed.getvalue(), faults

    def run_page(self, text, page="README.md"):
        """The output of a run on a page, and the faults that it reports."""
        (self.source / page).write_text(text)
        self.docs(docs.extract, self.source, self.out)
        return self.docs(docs.run, self.source, self.build, self.out)

    def refuses(self, text, *parts, page="README.md"):
        _, faults = self.run_page(text, page)
        for part in parts or ("a block that nobody runs",):
            self.assertIn(part, faults)

    def takes(self, text):
        self.assertEqual(self.run_page(text)[1], "")

    def test_language(self):
        self.refuses("# Title\n\n" + fenced("", "ls"), "README.md:3: a block that nobody runs (language '')")
        self.refuses(fenced("bash", "ls"))
        self.refuses(fenced("sh x", "ls"))
        self.refuses("~~~\nls\n~~~\n")
        self.refuses("1. Item:\n\n   " + fenced("c", "   ls").replace("\n```", "\n   ```"))
        self.refuses("<!--\n" + fenced("", "ls") + "-->\n")
        self.refuses("```sh\nls\n", "README.md:1: a block without an end")
        self.refuses(fenced("", "ls"), "docs/more/page.md:1", page="docs/more/page.md")

    def test_indented(self):
        self.refuses("Text\n\n    ls\n", "README.md:3: a block that nobody runs (indented")
        self.refuses("- item\n\n      ls\n")
        self.refuses("- item\n\nText\n\n    ls\n")
        self.takes("Text\n    goes on\n\n- item\n\n  goes on\n    so\n\n1. one\n   - two\n")

    def test_marks(self):
        self.refuses("<!-- norun: so -->\n" + fenced("sh", "false"), "unknown mark 'norun'")
        self.refuses("<!-- not run: so -->\n" + fenced("json", "{"), "unknown mark 'not run'")
        self.takes("<!-- a comment -->\n\n" + fenced("sh", "true"))

    def test_sh(self):
        self.refuses(fenced("sh", "true\nfalse\ntrue"), "README.md:2: exit status 1, not 0")
        self.refuses(fenced("sh", "echo $unset"), "unbound variable")
        self.refuses(fenced("sh", "false | true"), "exit status 1")
        self.takes("<!-- exits: 3 -->\n" + fenced("sh", "exit 3"))
        self.refuses("<!-- exits: 3 -->\n" + fenced("sh", "exit 0"), "exit status 0, not 3")
        self.takes(fenced("sh", "echo a >file") + fenced("sh", "cat file README.md >both; test -s both"))
        self.assertFalse((self.source / "file").exists())

    def test_output(self):
        self.takes(fenced("sh", "echo a; echo b >&2") + fenced("text", "a\nb"))
        self.refuses(fenced("sh", "echo a") + "\n" + fenced("text", "b"), "prints something else", "-b\n+a")
        self.refuses(fenced("sh", "echo a; echo b") + fenced("text", "a"), "prints something else")
        self.takes(fenced("sh", "seq 5") + fenced("text", "1\n...\n4\n5"))
        self.refuses(fenced("sh", "seq 5") + fenced("text", "1\n...\n4"), "prints something else")
        self.refuses(fenced("sh", "echo axb") + fenced("text", "a.b"), "prints something else")
        self.takes(fenced("sh", "echo a") + "Text.\n" + fenced("text", "b"))

    def test_not_run(self):
        told, faults = self.run_page("<!-- not run: slow -->\n" + fenced("sh", "A=1 sudo ls \\\n  -l | cat; false # x"))
        self.assertEqual(faults, "")
        self.assertIn("README.md:3: not run: slow", told)
        self.refuses("<!-- not run: slow -->\n" + fenced("sh", "ls | nosuchprogram"), "there is no 'nosuchprogram'")
        self.refuses("<!-- not run: slow -->\n" + fenced("sh", "scripts/none"), "there is no 'scripts/none'")
        self.takes("<!-- not run: slow -->\n" + fenced("sh", "/opt/$(uname -m)/device\n$PROGRAM"))
        self.takes("<!-- not run: slow -->\n" + fenced("sh", "gesturectl list --app=x"))
        self.refuses("<!-- not run: slow -->\n" + fenced("sh", "gesturectl list --ap x"), "no option '--ap'")
        self.refuses("<!-- not run: slow -->\n" + fenced("sh", "gesturectl dance"), "no verb 'dance'")

    def test_text(self):
        self.takes(fenced("text", "gesturectl list [--app X]    all"))
        self.refuses(fenced("text", "gesturectl list [--kind X]"), "no option '--kind'")

    def test_json(self):
        self.takes(fenced("json", '["bad"]') + fenced("json", '{"touch": "bad", "gestures": []}'))
        self.refuses(fenced("json", "{"), "README.md:2: no JSON")
        self.refuses(fenced("json", '{"gestures": "bad"}'), "gesturectl check --config")
        self.refuses(fenced("json", '{"actions": "bad", "version": 1}'), "gesturectl check --bindings")
        self.refuses(fenced("json", '{"filename": "bad"}'), "gesturectl check --paths")
        self.takes("<!-- file: a.json -->\n" + fenced("json", "[1]") + fenced("sh", "cat a.json") + fenced("text", "[1]"))

    def test_program(self):
        page = fenced("cpp", "int main()\n{\n}") + fenced("text", "a")
        self.refuses(page, "docs_README_1")
        program = self.build / "tests/docs_README_1"
        program.write_text("#!/bin/sh\necho a\n")
        program.chmod(0o755)
        self.takes(page)
        program.write_text("#!/bin/sh\necho b\n")
        self.refuses(page, "README.md:2: prints something else")
        program.write_text("#!/bin/sh\necho a\nexit 1\n")
        self.refuses(page, "exit status 1, not 0")
        (self.out / "README_1.cpp").write_text("")
        self.assertIn("build first", self.docs(docs.run, self.source, self.build, self.out)[1])

    def test_status(self):
        (self.source / "README.md").write_text(fenced("", "ls"))
        paths = [self.source, self.build, self.out]
        self.docs(docs.extract, self.source, self.out)
        done = subprocess.run([docs.__file__, "run", *paths], capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stderr), (1, "README.md:1: a block that nobody runs (language '')\n"))
        (self.source / "README.md").write_text(fenced("sh", "true"))
        done = subprocess.run([docs.__file__, "run", *paths], capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "1 blocks in 1 pages\n", ""))

    def test_cpp(self):
        self.refuses("\n" + fenced("cpp", "int maintain(int n);"), "README.md:2: C++ that is no program")
        self.takes("<!-- not run: slow -->\n" + fenced("cpp", "int main() { return 1; }"))
        self.assertEqual((self.out / "README_1.cpp").read_text(), '#line 3 "README.md"\nint main() { return 1; }\n')

    def test_extract(self):
        (self.source / "docs/a-page.md").write_text(fenced("cpp", "int main() {}") + fenced("qml", "Item {}"))
        self.assertEqual(self.docs(docs.extract, self.source, self.out)[0], "docs_a_page_1")
        self.assertEqual((self.out / "docs_a_page_1.qml").read_text(), "Item {}\n")
        program = self.out / "docs_a_page_1.cpp"
        os.utime(program, (1, 1))
        self.docs(docs.extract, self.source, self.out)
        self.assertEqual(program.stat().st_mtime, 1)
        (self.source / "docs/a-page.md").write_text("")
        self.docs(docs.extract, self.source, self.out)
        self.assertEqual(list(self.out.iterdir()), [])

    def test_projects(self):
        main = "int main() { return %s; }"
        (self.source / "README.md").write_text(
            fenced("cpp", main % 1) + "<!-- file: b.cpp -->\n" + fenced("cpp", main % 2)
            + fenced("cmake", "project(p CXX)\nadd_executable(p b.cpp)\nadd_executable(q c.cpp)")
            + fenced("cmake", "target_link_libraries(app GestureApi::gesture_api)"))
        self.assertEqual(self.docs(docs.projects, self.source, self.out)[0], "README_1\nREADME_2\n")
        self.assertEqual((self.out / "README_1/b.cpp").read_text(), main % 2 + "\n")
        self.assertEqual((self.out / "README_1/c.cpp").read_text(), main % 2 + "\n")
        self.assertIn("add_executable(app app.cpp)", (self.out / "README_2/CMakeLists.txt").read_text())
        (self.source / "README.md").write_text(fenced("cmake", "add_executable(app a.cpp)"))
        self.assertIn("README.md:2: no block of the page is a.cpp", self.docs(docs.projects, self.source, self.out)[1])


unittest.main()

"""The faults that can be injected into a C++ source, found in clang's syntax tree.

Home-made, like mutate.py; the parser is Debian's python3-clang-14.
"""
import re
from collections import namedtuple

from clang.cindex import Config, CursorKind as Kind, Index, TypeKind

Config.set_library_file("/usr/lib/llvm-14/lib/libclang-14.so.1")
RESOURCES = "/usr/lib/llvm-14/lib/clang/14.0.6"

# An edit replaces `length` bytes at an offset by a text. At the same offset, closing edits come first, and more deeply
# nested ones are closer to the text that they enclose.
Edit = namedtuple("Edit", "offset length text isEnd depth")
Fault = namedtuple("Fault", "line what edits")  # edits: a function of the fault's number

FUNCTIONS = {"<": "less", "<=": "lessOrEqual", ">": "greater", ">=": "greaterOrEqual", "+": "plus", "-": "minus"}
NUMBERS = {TypeKind.BOOL, TypeKind.CHAR_S, TypeKind.UCHAR, TypeKind.USHORT, TypeKind.UINT, TypeKind.ULONG,
           TypeKind.ULONGLONG, TypeKind.SHORT, TypeKind.INT, TypeKind.LONG, TypeKind.LONGLONG, TypeKind.FLOAT,
           TypeKind.DOUBLE}


def isNumber(node):
    return node.type.get_canonical().kind in NUMBERS


def isBool(node):
    return node.type.get_canonical().kind == TypeKind.BOOL


def around(node, depth, before, after):
    start, end = node.extent.start.offset, node.extent.end.offset
    return lambda number: [Edit(start, 0, before % number, False, depth), Edit(end, 0, after, True, depth)]


def negated(node, depth):
    return around(node, depth, "(mutation::on(%d) != bool(", "))")


class Finder:
    def __init__(self, path, arguments):
        self.path = path
        self.text = open(path, "rb").read()
        self.unit = Index.create().parse(path, args=arguments + ["-resource-dir", RESOURCES])
        self.faults = []

    def all(self):
        self.walk(self.unit.cursor, None, 0, False)
        return self.faults

    def isHere(self, node):
        start, end = node.extent.start, node.extent.end
        return start.file and start.file.name == self.path and end.file and end.file.name == self.path

    def source(self, node):
        return self.text[node.extent.start.offset:node.extent.end.offset].decode(errors="replace")

    def add(self, node, what, edits):
        """Names a fault by its source line with the place marked: line numbers change too often."""
        first, last = node.extent.start.offset, node.extent.end.offset
        begin, end = self.text.rfind(b"\n", 0, first) + 1, self.text.find(b"\n", last)
        line = b"%s[[%s]]%s" % (self.text[begin:first], self.text[first:last], self.text[last:end])
        text = " ".join(re.sub(r" //.*", "", line.decode(errors="replace")).split())
        self.faults.append(Fault(node.extent.start.line, "%s: %s" % (what, text), edits))

    def walk(self, node, parent, depth, isInFunction):
        if parent is not None and not self.isHere(node):
            return
        if node.kind in (Kind.ENUM_DECL, Kind.TEMPLATE_REF, Kind.CASE_STMT, Kind.STATIC_ASSERT):
            if node.kind == Kind.CASE_STMT:
                for child in list(node.get_children())[1:]:
                    self.walk(child, node, depth + 1, isInFunction)
            return
        isInFunction = isInFunction or node.kind == Kind.COMPOUND_STMT
        if isInFunction:
            self.look(node, parent, depth)
        for child in node.get_children():
            self.walk(child, node, depth + 1, isInFunction)

    def look(self, node, parent, depth):
        if parent is not None and parent.kind == Kind.COMPOUND_STMT and node.kind.is_expression():
            self.statement(node, depth)
        children = list(node.get_children())
        if node.kind in (Kind.IF_STMT, Kind.WHILE_STMT, Kind.CONDITIONAL_OPERATOR) and children:
            if children[0].kind.is_expression():
                self.add(children[0], "negated", negated(children[0], depth))
        elif node.kind == Kind.RETURN_STMT and children and isBool(children[0]):
            self.add(children[0], "negated", negated(children[0], depth))
        elif node.kind == Kind.BINARY_OPERATOR and len(children) == 2:
            self.operator(node, children, depth)
        elif node.kind == Kind.INTEGER_LITERAL and self.source(node)[:1].isdigit():
            self.add(node, "plus one", around(node, depth, "(mutation::on(%d) + ", ")"))
        elif node.kind == Kind.CXX_BOOL_LITERAL_EXPR and self.source(node) in ("true", "false"):
            self.add(node, "negated", negated(node, depth))
        elif node.kind == Kind.CALL_EXPR:
            self.swapped(node, depth)

    def statement(self, node, depth):
        end = self.text.find(b";", node.extent.end.offset)
        if end < 0 or self.text[node.extent.end.offset:end].strip():
            return
        start = node.extent.start.offset
        if re.search(rb"[.>]reserve\(", self.text[start:end]):
            return # only makes a list faster
        self.add(node, "dropped", lambda number: [
            Edit(start, 0, "{ if (!mutation::on(%d)) " % number, False, depth), Edit(end + 1, 0, " }", True, depth)])

    def operator(self, node, operands, depth):
        begin, end = operands[0].extent.end.offset, operands[1].extent.start.offset
        name = self.text[begin:end].decode(errors="replace").strip()
        if name in ("&&", "||"):
            before = "(mutation::on(%d) || bool(" if name == "&&" else "(!mutation::on(%d) && bool("
            for operand in operands:
                self.add(operand, "left out of %s" % name, around(operand, depth, before, "))"))
        elif name in ("==", "!="):
            self.add(node, "negated", negated(node, depth))
        elif name in FUNCTIONS and isNumber(operands[0]) and isNumber(operands[1]):
            at = begin + self.text[begin:end].find(name.encode())
            first, last = node.extent.start.offset, node.extent.end.offset
            self.add(node, "other than %s" % name, lambda number: [
                Edit(first, 0, "mutation::%s(%d, " % (FUNCTIONS[name], number), False, depth),
                Edit(at, len(name), ",", False, depth), Edit(last, 0, ")", True, depth)])

    def swapped(self, node, depth):
        if node.spelling in ("operator==", "operator!="):
            return # swapping changes nothing
        given = list(node.get_arguments())
        for one, two in zip(given, given[1:]):
            names = [self.source(each) for each in (one, two)]
            if all(name.isidentifier() for name in names) and names[0] != names[1] \
                    and one.type.get_canonical().spelling == two.type.get_canonical().spelling:
                first = around(one, depth, "(mutation::on(%d) ? " + names[1] + " : ", ")")
                second = around(two, depth, "(mutation::on(%d) ? " + names[0] + " : ", ")")
                self.add(node, "swapped %s and %s" % tuple(names),
                         lambda number, first=first, second=second: first(number) + second(number))


def applied(text, numbered):
    """The source with these faults, each enabled by its number."""
    edits = [edit for number, fault in numbered for edit in fault.edits(number)]
    edits.sort(key=lambda edit: (edit.offset, not edit.isEnd, -edit.depth if edit.isEnd else edit.depth))
    pieces, at = [], 0
    for edit in edits:
        if edit.offset < at:
            raise ValueError("edits overlap")
        pieces += [text[at:edit.offset], edit.text.encode()]
        at = edit.offset + edit.length
    return b"".join(pieces + [text[at:]])

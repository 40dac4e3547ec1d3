"""Rewrites sources so that each holds all its mutants at once, switched by VLCLIENTUI_MUTANT in the environment.

Reads the tree of each source from Clang. A mutant is a place and a change: a comparison, a condition, a constant, a text,
a statement that is left out, two statements in the other order. In the rewritten source it is a choice at run time:
`(mutant::on(7) ? a <= b : a < b)`.
"""

import dataclasses
import hashlib
import json
import pathlib
import re

from clang import cindex

Kind = cindex.CursorKind

OTHER_OPERATOR = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||", "||": "&&", "+": "-", "-": "+",
    "*": "/", "/": "*",
}
# A change that cannot be told at run time would not compile.
FIXED_PLACES = {
    Kind.ENUM_DECL, Kind.CASE_STMT, Kind.STATIC_ASSERT, Kind.TEMPLATE_TYPE_PARAMETER, Kind.TEMPLATE_NON_TYPE_PARAMETER,
}
STEPS = {Kind.CALL_EXPR, Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR, Kind.UNARY_OPERATOR}


@dataclasses.dataclass
class Mutant:
    kind: str
    file: str
    line: int
    code: str
    change: str

    def key(self):
        """Stays the same while other lines change: what survives is listed by it."""
        words = " ".join((self.kind, self.file, self.code, self.change))
        return hashlib.sha1(words.encode()).hexdigest()[:10]


class Rewriter:
    """Makes one source with its mutants. An edit is a place, its end and the new text."""

    def __init__(self, path, name, first, without):
        self.text = path.read_bytes()
        self.lines = self.text.decode().splitlines()
        self.path, self.name, self.first, self.without = str(path), name, first, without
        self.mutants = []

    def rewritten(self, unit):
        body = self.spliced(0, len(self.text), self.edits_of_children(unit, False))
        return f'#include "mutant_switch.h"\n#line 1 "{self.path}"\n{body}'

    def piece(self, cursor):
        begin, end = span(cursor)
        return self.text[begin:end].decode()

    def spliced(self, begin, end, edits):
        out, place = [], begin
        for at, until, text in sorted(edits):
            if at < place or until > end:
                continue
            out += [self.text[place:at].decode(), text]
            place = until
        return "".join(out) + self.text[place:end].decode()

    def number(self, kind, cursor, change):
        """The number of a new mutant; None for one that does not compile."""
        line = cursor.extent.start.line
        mutant = Mutant(kind, self.name, line, self.lines[line - 1].strip(), change)
        if (kind, line) in self.without:
            return None
        self.mutants.append(mutant)
        return self.first + len(self.mutants) - 1

    def edits_of_children(self, cursor, fixed):
        return [edit for child in cursor.get_children() for edit in self.edits(child, fixed)]

    def edits(self, cursor, fixed=False):
        place = cursor.extent.start
        if kind_of(cursor) != Kind.TRANSLATION_UNIT and (place.file is None or place.file.name != self.path):
            return []
        fixed = fixed or is_fixed(cursor, self.piece(cursor)[:60])
        begin, end = span(cursor)
        if fixed or end <= begin:
            return []
        if kind_of(cursor) == Kind.COMPOUND_STMT:
            return self.steps(cursor)
        inner = self.edits_of_children(cursor, fixed)
        if kind_of(cursor) == Kind.IF_STMT:
            return self.condition(cursor, inner)
        change = self.change(cursor)
        number = change and self.number(change[0], cursor, change[2])
        if number is None:
            return inner
        normal = self.spliced(begin, end, inner)
        return [(begin, end, f"(mutant::on({number}) ? ({change[1]}) : ({normal}))")]

    def change(self, cursor):
        """Kind, mutated code and words of the change of an expression; nothing where there is none."""
        word = self.piece(cursor)
        if kind_of(cursor) == Kind.BINARY_OPERATOR:
            return self.operator(cursor)
        if kind_of(cursor) == Kind.CXX_BOOL_LITERAL_EXPR and word in ("true", "false"):
            other = "false" if word == "true" else "true"
            return "constant", other, other
        if kind_of(cursor) in (Kind.INTEGER_LITERAL, Kind.FLOATING_LITERAL) and re.fullmatch("[0-9.]+", word):
            return "constant", f"{word} + 1", f"{word} + 1"
        if kind_of(cursor) == Kind.STRING_LITERAL and re.fullmatch(r'"[^"\\\n]+"', word):
            return "message", word[:-1] + '~"', word[:-1] + '~"'
        return None

    def operator(self, cursor):
        left, right = list(cursor.get_children())
        between = self.text[span(left)[1]:span(right)[0]].decode()
        found = between.strip()
        if found not in OTHER_OPERATOR or is_text(left) or is_text(right):
            return None
        other = OTHER_OPERATOR[found]
        kind = "arithmetic" if found in "+-*/" else "comparison"
        return kind, self.piece(left) + between.replace(found, other) + self.piece(right), f"{found} becomes {other}"

    def condition(self, cursor, inner):
        condition = next(cursor.get_children())
        begin, end = span(condition)
        if not is_expression(condition) or kind_of(condition) == Kind.BINARY_OPERATOR:
            return inner
        number = self.number("condition", condition, "not")
        if number is None:
            return inner
        text = f"(mutant::on({number}) != bool({self.spliced(begin, end, inner)}))"
        return [edit for edit in inner if not begin <= edit[0] < end] + [(begin, end, text)]

    def steps(self, cursor):
        """Statements of a block: each may be left out, or change places with the one before."""
        edits, before = [], None
        for child in cursor.get_children():
            begin, end = span(child)
            if not is_step(child) or self.text[end:end + 1] != b";":
                edits += self.edits(child)
                before = None
                continue
            text = self.spliced(begin, end, self.edits(child))
            left_out = self.number("statement", child, "left out")
            if left_out is not None:
                text = f"if (!mutant::on({left_out})) {text}"
            swap = self.number("order", child, "before the one above") if before else None
            if swap is not None:
                at, until, former = edits.pop()
                edits.append((at, until, f"if (mutant::on({swap})) {self.piece(child)}; else {{ {former} }}"))
                text = f"if (mutant::on({swap})) {self.piece(before)}; else {{ {text}; }}"
                edits.append((begin, end + 1, text))
            else:
                edits.append((begin, end + 1, f"{text};"))
            before = child
        return edits


def kind_of(cursor):
    """Nothing for kinds that the module does not know."""
    try:
        return cursor.kind
    except ValueError:
        return None


def is_expression(cursor):
    kind = kind_of(cursor)
    return kind is not None and kind.is_expression()


def span(cursor):
    return cursor.extent.start.offset, cursor.extent.end.offset


def is_text(cursor):
    return any(kind_of(child) == Kind.STRING_LITERAL for child in cursor.walk_preorder())


def is_fixed(cursor, words):
    if kind_of(cursor) in FIXED_PLACES:
        return True
    if kind_of(cursor) in (Kind.VAR_DECL, Kind.FUNCTION_DECL, Kind.CXX_METHOD, Kind.FIELD_DECL, Kind.CONSTRUCTOR):
        return "[" in cursor.type.spelling or "constexpr" in words
    return False


def is_step(cursor):
    """A statement of its own: a call, an assignment."""
    if kind_of(cursor) == Kind.UNEXPOSED_EXPR:
        return any(kind_of(child) in STEPS for child in cursor.get_children())
    return kind_of(cursor) in STEPS


def compile_arguments(database):
    arguments = {}
    for entry in json.loads(pathlib.Path(database).read_text()):
        words = entry["command"].split()
        arguments[entry["file"]] = [word for word in words if word.startswith(("-I", "-D", "-std", "-isystem"))]
    return arguments


def rewrite(path, name, arguments, first, without):
    """The mutants of a source, counted from `first`, and the source that holds them."""
    unit = cindex.Index.create().parse(str(path), args=arguments)
    rewriter = Rewriter(path, name, first, without)
    return rewriter.mutants, rewriter.rewritten(unit.cursor)

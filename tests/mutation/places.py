"""Finds what may be changed in C++ sources, with libclang.

A Mutant is one small change: a negated condition, a comparison or a constant that is off by one, a
dropped statement, && for ||, true for false.
"""

from __future__ import annotations

import dataclasses
import pathlib
import re
from collections.abc import Iterator

from clang.cindex import Config, Cursor, CursorKind, Index, TranslationUnit, TypeKind

Config.set_library_file("libclang-14.so.1")

BOUNDS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">"}
NEGATIONS = {"==": "!=", "!=": "==", "<": ">=", "<=": ">", ">": "<=", ">=": "<"}
LOGIC = {"&&": "||", "||": "&&"}

# Not mutated, because no test may depend on it:
#   hints about memory     how much room a container sets aside, and the tests that only lead there
#   amounts of memory      constants that say how much is read or set aside at once
#   times                  how long something waits
HINTS = {"reserve", "shrink_to_fit"}
HINT_CONSTANTS = re.compile(r"k\w*(Chunk|Spare|Room|Smallest|Large|Milliseconds)\w*")

FUNCTIONS = {
    CursorKind.FUNCTION_DECL,
    CursorKind.CXX_METHOD,
    CursorKind.CONSTRUCTOR,
    CursorKind.DESTRUCTOR,
    CursorKind.CONVERSION_FUNCTION,
    CursorKind.FUNCTION_TEMPLATE,
}
CALLS = {CursorKind.CALL_EXPR, CursorKind.BINARY_OPERATOR}
INTEGER = re.compile(r"(0[xX][0-9a-fA-F']+|[0-9][0-9']*)[uUlLzZ]*")


@dataclasses.dataclass(frozen=True)
class Mutant:
    """One change of one file.

    The range [start, end) of the file, in bytes, is what changes. The operator that changes has its own
    range within it; a constant has the range of the expression around it there. `constant` tells a change
    in what the compiler computes: it cannot be switched on at run time.
    """

    file: str
    line: int
    start: int
    end: int
    kind: str  # negate, bound, logic, plus, minus, flip or drop
    operator_start: int = 0
    operator_end: int = 0
    constant: bool = False

    def edits(self, source: bytes) -> list[tuple[int, int, str]]:
        """The change as replacements (start, end, text) in the file itself."""
        text = source[self.start : self.end].decode()
        operator = source[self.operator_start : self.operator_end].decode()
        if self.kind == "negate":
            return [(self.start, self.start, "!("), (self.end, self.end, ")")]
        if self.kind == "bound":
            return [(self.operator_start, self.operator_end, BOUNDS[operator])]
        if self.kind == "logic":
            return [
                (self.start, self.start, "(("),
                (self.operator_start, self.operator_end, ") " + LOGIC[operator] + " ("),
                (self.end, self.end, "))"),
            ]
        if self.kind in ("plus", "minus"):
            return [(self.start, self.end, f"({text} {'+' if self.kind == 'plus' else '-'} 1)")]
        if self.kind == "flip":
            return [(self.start, self.end, "false" if text == "true" else "true")]
        return [(self.start, self.end, "/* dropped */")]

    def description(self, source: bytes) -> str:
        """The change in words of the source, on one line; the same wherever the code moves to."""
        text = " ".join(source[self.start : self.end].decode().split())
        operator = source[self.operator_start : self.operator_end].decode()
        if self.kind == "negate" and operator:
            return f"{operator} becomes {NEGATIONS[operator]} in: {text}"
        if self.kind == "bound":
            return f"{operator} becomes {BOUNDS[operator]} in: {text}"
        if self.kind == "logic":
            return f"{operator} becomes {LOGIC[operator]} in: {text}"
        if self.kind in ("plus", "minus"):
            around = " ".join(operator.split())[:100]
            return f"{text} becomes {text} {'+' if self.kind == 'plus' else '-'} 1 in: {around}"
        what = {"negate": "negated", "flip": "flipped", "drop": "dropped"}[self.kind]
        return f"{what}: {text}"


class _Walk:
    """One walk over a translation unit; keeps mutants of files below one folder."""

    def __init__(self, folder: pathlib.Path) -> None:
        self._folder = folder
        self._sources: dict[str, bytes] = {}
        self.found: dict[tuple[str, int, int, str], Mutant] = {}

    def walk_unit(self, unit: TranslationUnit) -> None:
        for cursor in unit.cursor.get_children():
            file = cursor.location.file
            if file is not None and pathlib.Path(file.name).is_relative_to(self._folder):
                self._source = self._read(file.name)
                self._file = file.name
                self._walk(cursor, [])

    def _read(self, name: str) -> bytes:
        if name not in self._sources:
            self._sources[name] = pathlib.Path(name).read_bytes()
        return self._sources[name]

    def _walk(self, cursor: Cursor, above: list[Cursor]) -> None:
        if self._is_hint(cursor):
            return
        self._look_at(cursor, above)
        above.append(cursor)
        for child in cursor.get_children():
            self._walk(child, above)
        above.pop()

    def _look_at(self, cursor: Cursor, above: list[Cursor]) -> None:
        children = list(cursor.get_children())
        kind = cursor.kind
        if kind in CALLS and len(children) >= 2:
            self._operator(cursor, children[0], children[-1], above)
        elif kind == CursorKind.CONDITIONAL_OPERATOR and children:
            self._condition(children[0], above)
        elif kind == CursorKind.RETURN_STMT and children:
            if _is_bool(children[0]):
                self._condition(children[0], above)
        elif kind == CursorKind.VAR_DECL and children and _is_bool(cursor):
            if self._before(children[-1]) == "=":
                self._condition(children[-1], above)
        elif kind == CursorKind.INTEGER_LITERAL:
            self._integer(cursor, above)
        elif kind == CursorKind.CXX_BOOL_LITERAL_EXPR:
            if self._text(cursor) in ("true", "false"):
                self._keep(cursor, "flip", above)
        if kind in (CursorKind.IF_STMT, CursorKind.WHILE_STMT, CursorKind.DO_STMT, CursorKind.FOR_STMT):
            self._conditions_of(cursor, children, above)
        if kind in (CursorKind.COMPOUND_STMT, CursorKind.CASE_STMT, CursorKind.DEFAULT_STMT):
            for child in children:
                self._statement(child, [*above, cursor])

    def _conditions_of(self, cursor: Cursor, children: list[Cursor], above: list[Cursor]) -> None:
        around = (";", ";") if cursor.kind == CursorKind.FOR_STMT else ("(;", ")")
        if cursor.kind == CursorKind.IF_STMT and "constexpr" in self._text(cursor)[:14]:
            return
        for child in children:
            if child.kind.is_expression() and self._before(child) in around[0] and self._behind(child) == around[1]:
                self._condition(child, above)

    def _condition(self, cursor: Cursor, above: list[Cursor]) -> None:
        """Negates what is no comparison: these are negated as such."""
        text = self._text(cursor)
        children = list(cursor.get_children())
        if text in ("true", "false"):
            return
        while cursor.kind in (CursorKind.UNEXPOSED_EXPR, CursorKind.PAREN_EXPR) and len(children) == 1:
            cursor = children[0]
            children = list(cursor.get_children())
        if cursor.kind in CALLS and len(children) >= 2:
            if self._operator_between(children[0], children[-1])[2] in NEGATIONS:
                return
        self._keep(cursor, "negate", above)

    def _operator(self, cursor: Cursor, left: Cursor, right: Cursor, above: list[Cursor]) -> None:
        start, end, operator = self._operator_between(left, right)
        if not self._is_written(cursor):
            return
        if operator in NEGATIONS:
            self._keep(cursor, "negate", above, start, end)
        if operator in BOUNDS:
            self._keep(cursor, "bound", above, start, end)
        if operator in LOGIC:
            self._keep(cursor, "logic", above, start, end)
            for side in (left, right):
                if self._text(side) and self._operator_in(side) not in LOGIC:
                    self._condition(side, above)

    def _operator_in(self, cursor: Cursor) -> str:
        children = list(cursor.get_children())
        while cursor.kind in (CursorKind.UNEXPOSED_EXPR, CursorKind.PAREN_EXPR) and len(children) == 1:
            cursor = children[0]
            children = list(cursor.get_children())
        if cursor.kind in CALLS and len(children) >= 2:
            return self._operator_between(children[0], children[-1])[2]
        return ""

    def _operator_between(self, left: Cursor, right: Cursor) -> tuple[int, int, str]:
        start, end = left.extent.end.offset, right.extent.start.offset
        between = self._source[start:end].decode(errors="replace")
        operator = between.strip()
        start += len(between) - len(between.lstrip())
        return start, start + len(operator), operator

    def _integer(self, cursor: Cursor, above: list[Cursor]) -> None:
        if not INTEGER.fullmatch(self._text(cursor)):
            return
        behind = self._source[cursor.extent.end.offset : cursor.extent.end.offset + 1]
        # The arguments of templates and the bounds of arrays belong to a type.
        if behind == b">" or (behind == b"]" and above[-1].kind in (CursorKind.VAR_DECL, CursorKind.FIELD_DECL)):
            return
        around = above[-1].extent
        for outer in reversed(above):
            if self._text(outer) != self._text(cursor):
                around = outer.extent
                break
        for kind in ("plus", "minus"):
            self._keep(cursor, kind, above, around.start.offset, around.end.offset)

    def _statement(self, cursor: Cursor, above: list[Cursor]) -> None:
        is_jump = cursor.kind in (CursorKind.BREAK_STMT, CursorKind.CONTINUE_STMT)
        is_return = cursor.kind == CursorKind.RETURN_STMT and not list(cursor.get_children())
        if not (is_jump or is_return or cursor.kind.is_expression()):
            return
        if self._text(cursor).startswith(("(void)", "static_cast<void>")) or self._is_hint(cursor):
            return
        if cursor.kind == CursorKind.BREAK_STMT and self._ends_switch(cursor, above):
            return
        if self._behind(cursor) == ";" and self._before(cursor) in ";{}:)":
            self._keep(cursor, "drop", above)

    def _ends_switch(self, cursor: Cursor, above: list[Cursor]) -> bool:
        """Whether it is the last break of a switch, which does nothing."""
        block = max(at for at, outer in enumerate(above) if outer.kind == CursorKind.COMPOUND_STMT)
        rest = self._source[cursor.extent.end.offset :].lstrip(b"; \n")
        return above[block - 1].kind == CursorKind.SWITCH_STMT and rest.startswith(b"}")

    def _keep(
        self, cursor: Cursor, kind: str, above: list[Cursor], operator_start: int = 0, operator_end: int = 0
    ) -> None:
        if not self._is_written(cursor):
            return
        start, end = cursor.extent.start, cursor.extent.end
        constant = False
        path = [*above, cursor]
        for outer, inner in zip(path, path[1:]):
            if outer.kind in (CursorKind.STATIC_ASSERT, CursorKind.ENUM_DECL):
                return
            if outer.kind == CursorKind.VAR_DECL and HINT_CONSTANTS.fullmatch(outer.spelling):
                return
            constant = constant or self._is_constant(outer, inner)
        # The compiler may compute a variable that is made before the program begins.
        if not any(outer.kind in FUNCTIONS for outer in path):
            constant = constant or any(outer.kind == CursorKind.VAR_DECL for outer in path)
        key = (self._file, start.offset, end.offset, kind)
        if key not in self.found:
            self.found[key] = Mutant(
                str(pathlib.Path(self._file).relative_to(self._folder.parent)),
                start.line,
                start.offset,
                end.offset,
                kind,
                operator_start,
                operator_end,
                constant,
            )

    def _is_constant(self, outer: Cursor, inner: Cursor) -> bool:
        """Whether the compiler computes what is in it, or at least in its child."""
        if outer.kind == CursorKind.VAR_DECL or outer.kind in FUNCTIONS:
            head = self._text(outer).split("=" if outer.kind == CursorKind.VAR_DECL else "{")[0]
            return re.search(r"\b(constexpr|consteval|constinit)\b", head) is not None
        return outer.kind == CursorKind.CASE_STMT and inner == next(outer.get_children())

    def _is_hint(self, cursor: Cursor) -> bool:
        """Whether it is a hint about memory, or an if around nothing else."""
        if cursor.kind == CursorKind.CALL_EXPR:
            return cursor.spelling in HINTS
        if cursor.kind == CursorKind.UNEXPOSED_EXPR:
            children = list(cursor.get_children())
            return len(children) == 1 and self._is_hint(children[0])
        if cursor.kind == CursorKind.IF_STMT:
            body = list(cursor.get_children())[-1]
            statements = list(body.get_children())
            return body.kind == CursorKind.COMPOUND_STMT and len(statements) == 1 and self._is_hint(statements[0])
        return False

    def _is_written(self, cursor: Cursor) -> bool:
        """Whether it stands in this file as it is, not in a macro."""
        start, end = cursor.extent.start, cursor.extent.end
        if start.file is None or start.file.name != self._file or start.offset >= end.offset:
            return False
        tokens = cursor.get_tokens()
        first = next(iter(tokens), None)
        text = self._text(cursor)
        if first is None or not text.startswith(first.spelling) or text.count("(") != text.count(")"):
            return False
        # A comparison that the compiler has rewritten (a == b for a != b) may begin in its middle.
        return first.spelling not in NEGATIONS

    def _text(self, cursor: Cursor) -> str:
        return self._source[cursor.extent.start.offset : cursor.extent.end.offset].decode(errors="replace")

    def _before(self, cursor: Cursor) -> str:
        """The last character before it that is no blank and not in a comment; empty at the start."""
        text = self._source[max(0, cursor.extent.start.offset - 2000) : cursor.extent.start.offset]
        kept = re.sub(rb"//[^\n]*|/\*.*?\*/", b"", text, flags=re.DOTALL).rstrip()
        return kept[-1:].decode(errors="replace")

    def _behind(self, cursor: Cursor) -> str:
        offset = cursor.extent.end.offset
        return self._source[offset : offset + 200].lstrip()[:1].decode(errors="replace")


def _is_bool(cursor: Cursor) -> bool:
    return cursor.type.get_canonical().kind == TypeKind.BOOL


def find(sources: dict[pathlib.Path, list[str]], folder: pathlib.Path) -> Iterator[Mutant]:
    """All mutants of files below a folder that these sources, each with its compiler's arguments, see.

    Files are named from the folder's parent. The order is that of the text, whatever that of the sources.
    """
    walk = _Walk(folder)
    index = Index.create()
    for source, arguments in sources.items():
        unit = index.parse(str(source), args=arguments)
        errors = [str(problem) for problem in unit.diagnostics if problem.severity >= 3]
        if errors:
            raise RuntimeError("\n".join([f"libclang cannot read {source}:", *errors]))
        walk.walk_unit(unit)
    yield from sorted(walk.found.values(), key=lambda one: (one.file, one.start, one.end, one.kind))

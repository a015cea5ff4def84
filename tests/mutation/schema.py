"""Puts many mutants into one source, each switched on by its number (Mutant.h)."""

from __future__ import annotations

from places import Mutant

ON = "::CorvelMutation::On"
COMPARISONS = {"<": "Less", "<=": "LessOrEqual", ">": "Greater", ">=": "GreaterOrEqual"}


def _pieces(mutant: Mutant, number: int, source: bytes) -> tuple[str, str, str, str]:
    """What goes before it, its operator and what replaces that (empty when it stays), what goes behind it."""
    operator = source[mutant.operator_start : mutant.operator_end].decode()
    on = f"{ON}({number})"
    if mutant.kind == "negate":
        return f"({on} != bool(", "", "", "))"
    if mutant.kind == "bound":
        return f"::CorvelMutation::{COMPARISONS[operator]}({number}, ", operator, ",", ")"
    if mutant.kind == "logic":
        # a || b is !(!a && !b): all is negated while the mutant is on.
        return f"({on} != (({on} != bool(", operator, f")) {operator} ({on} != bool(", "))))"
    if mutant.kind == "plus":
        return "(", "", "", f" + {on})"
    if mutant.kind == "minus":
        return "(", "", "", f" - {on})"
    if mutant.kind == "flip":
        return f"({on} != ", "", "", ")"
    return f"if ({on}) {{}} else ", "", "", ""


def with_mutants(source: bytes, mutants: dict[int, Mutant]) -> bytes:
    """The source with these mutants in it. No line is added or taken away."""
    edits: list[tuple[tuple[int, int, int, int], int, int, str]] = []
    for number, mutant in mutants.items():
        before, operator, middle, behind = _pieces(mutant, number, source)
        # What leaves the operator in the middle alone goes around what replaces it.
        size = 2 * (mutant.end - mutant.start) + (mutant.kind in ("negate", "drop"))
        # At one place: first what ends there, the inner before the outer, then what begins there, the
        # outer before the inner.
        edits.append(((mutant.start, 1, -size, number), mutant.start, mutant.start, before))
        edits.append(((mutant.end, 0, size, -number), mutant.end, mutant.end, behind))
        if operator:
            edits.append(
                ((mutant.operator_start, 0, 0, number), mutant.operator_start, mutant.operator_end, middle)
            )
    return _replace(source, [(start, end, text) for _, start, end, text in sorted(edits)])


def with_one(source: bytes, mutant: Mutant) -> bytes:
    """The source changed by this mutant."""
    return _replace(source, mutant.edits(source))


def _replace(source: bytes, edits: list[tuple[int, int, str]]) -> bytes:
    """The source with ranges replaced, which are in order and do not overlap."""
    pieces = []
    position = 0
    for start, end, text in edits:
        pieces += [source[position:start], text.encode()]
        position = end
    return b"".join([*pieces, source[position:]])

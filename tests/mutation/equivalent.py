"""Mutants that no test can kill, each examined by hand."""

from __future__ import annotations

import pathlib

from build import MutantTree
from places import Mutant


class StaleError(Exception):
    """An entry names no mutant of the sources, or more than one."""


class Equivalents:
    """The reviewed list. An entry is three lines, and blank lines or comments (#) between entries:

        <file>: <the source line; where it holds nothing but a jump, with the line before it>
        <the change, as scripts/mutate describes it>
        <why nobody can tell the difference>

    It stands for the one mutant with that file, line and change.
    """

    def __init__(self, path: pathlib.Path, mutants: list[Mutant], tree: MutantTree) -> None:
        lines = [line.strip() for line in path.read_text(encoding="utf-8").splitlines()]
        lines = [line for line in lines if line and not line.startswith("#")]
        found: dict[tuple[str, str], list[Mutant]] = {}
        for one in mutants:
            found.setdefault(self._key(one, tree), []).append(one)
        entries = [(lines[at], lines[at + 1]) for at in range(0, len(lines), 3)]
        wrong = [entry for entry in entries if len(found.get(entry, [])) != 1]
        if wrong:
            raise StaleError("\n".join(f"{path}: no such mutant, or several: {' / '.join(entry)}" for entry in wrong))
        self._mutants = {found[entry][0] for entry in entries}

    def __contains__(self, mutant: Mutant) -> bool:
        return mutant in self._mutants

    @staticmethod
    def _key(mutant: Mutant, tree: MutantTree) -> tuple[str, str]:
        source = tree.original(mutant.file)
        lines = [line.decode().strip() for line in source.splitlines()]
        line = lines[mutant.line - 1]
        if line in ("break;", "continue;", "return;"):
            line = f"{lines[mutant.line - 2]} {line}"
        return f"{mutant.file}: {line}", mutant.description(source)

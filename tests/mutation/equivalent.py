"""Mutants that no test can kill, each examined by hand."""

from __future__ import annotations

import pathlib

from build import MutantTree
from places import Mutant


class StaleError(Exception):
    """An entry names no mutant of the sources."""


class Equivalents:
    """The reviewed list. An entry is three lines, and blank lines or comments (#) between entries:

        <file>: <the source line, blanks at its ends aside>
        <the change, as scripts/mutate describes it>
        <why nobody can tell the difference>

    It stands for every mutant with that file, line and change.
    """

    def __init__(self, path: pathlib.Path, mutants: list[Mutant], tree: MutantTree) -> None:
        lines = [line.strip() for line in path.read_text(encoding="utf-8").splitlines()]
        lines = [line for line in lines if line and not line.startswith("#")]
        entries = {(lines[at], lines[at + 1]) for at in range(0, len(lines), 3)}
        self._mutants = {one for one in mutants if self._key(one, tree) in entries}
        stale = entries - {self._key(one, tree) for one in self._mutants}
        if stale:
            raise StaleError("\n".join(f"{path}: no such mutant: {' / '.join(entry)}" for entry in sorted(stale)))

    def __contains__(self, mutant: Mutant) -> bool:
        return mutant in self._mutants

    @staticmethod
    def _key(mutant: Mutant, tree: MutantTree) -> tuple[str, str]:
        source = tree.original(mutant.file)
        line = source.splitlines()[mutant.line - 1].decode().strip()
        return f"{mutant.file}: {line}", mutant.description(source)

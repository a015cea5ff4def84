"""Samples mutants of corvel/ and tells how many of them the tests kill; scripts/mutate runs it."""

from __future__ import annotations

import argparse
import concurrent.futures
import dataclasses
import datetime
import hashlib
import json
import pathlib
import random
import re
import subprocess
import sys

import places
from build import MutantTree
from equivalent import Equivalents
from places import Mutant
from trials import WORKERS, Trials, Where, find_tests

PROJECT = pathlib.Path(__file__).resolve().parents[2]
WORK = PROJECT / "build/mutate"

# Where a mutant that lives could become a hole, and what share of all in hundredths must die.
GROUPS = {
    "quoting": (
        95,
        r"corvel/autocli/plugins/(Shell(?!Command\.)\w*|CommandTemplate|ConditionalRemoval|TemplateText)\.(cpp|h)",
    ),
    "options": (95, r"corvel/autocli/(Option\w*|LineWords|SecretPrompt)\.(cpp|h)"),
    "children": (
        95,
        r"corvel/(platform/(ChildProcess|Nukuser|Pipe|FileDescriptor)|autocli/plugins/(ShellCommand|Panic))\.(cpp|h)",
    ),
}
EVERYTHING = "everything"
GOALS = {EVERYTHING: 85, **{name: goal for name, (goal, _) in GROUPS.items()}}


@dataclasses.dataclass
class Result:
    number: int
    name: str
    mutant: Mutant
    outcome: str = ""  # killed, timed out, survived, equivalent or no program
    by: str = ""


def is_in(mutant: Mutant, group: str) -> bool:
    return group == EVERYTHING or re.fullmatch(GROUPS[group][1], mutant.file) is not None


def all_places(tree: MutantTree) -> list[Mutant]:
    """Every mutant there is; kept until a file of the library or what finds them changes."""
    digest = hashlib.sha256((PROJECT / "tests/mutation/places.py").read_bytes())
    for source in sorted((tree.tree / "corvel").rglob("*")):
        if source.is_file():
            digest.update(str(source).encode() + b"\0" + source.read_bytes())
    kept = WORK / f"places-{digest.hexdigest()[:16]}.json"
    if kept.exists():
        return [Mutant(**fields) for fields in json.loads(kept.read_text())]
    tree.restore()
    found = list(places.find(tree.sources(), tree.tree / "corvel"))
    kept.write_text(json.dumps([dataclasses.asdict(one) for one in found]))
    return found


def name_all(mutants: list[Mutant], tree: MutantTree) -> dict[str, Mutant]:
    """Gives every mutant a name that says nothing about where in its file it is."""
    named: dict[str, Mutant] = {}
    for one in mutants:
        name = f"{one.file} {one.description(tree.original(one.file))}"
        while name in named:
            name += " again"
        named[name] = one
    return named


def sample(named: dict[str, Mutant], size: int, seed: int, group: str) -> list[str]:
    """So many mutants of one group; or, of everything, three fifths from everywhere and the rest in equal
    parts from the other groups.

    Each mutant has its place in the order of a seed whatever the others are, so that a sample hardly changes
    when the library does.
    """
    rest = sorted(named, key=lambda name: hashlib.sha256(f"{seed} {name}".encode()).digest())
    if group != EVERYTHING:
        return [name for name in rest if is_in(named[name], group)][:size]
    chosen = rest[: size * 3 // 5]
    for at, other in enumerate(GROUPS):
        taken = set(chosen)
        want = (size - len(chosen)) // (len(GROUPS) - at)
        chosen += [name for name in rest if name not in taken and is_in(named[name], other)][:want]
    return chosen


class Session:
    """One sample, tried."""

    def __init__(self, tree: MutantTree, results: list[Result], seed: int) -> None:
        self._tree = tree
        self._results = results
        self._seed = seed

    def run(self) -> None:
        switched = [one for one in self._waiting() if not one.mutant.constant]
        print(f"Building {len(switched)} mutants", flush=True)
        refused = self._tree.build_with({one.number: one.mutant for one in switched})
        trials = Trials(WORK, find_tests(self._tree.build))
        print("Running every test without a mutant", flush=True)
        for reason in trials.control():
            print(f"Left out: {reason}", flush=True)
        self._run_switched(trials, [one for one in switched if one.number not in refused])
        self._run_alone(trials)

    def _run_switched(self, trials: Trials, switched: list[Result]) -> None:
        """The mutants that one build holds together."""
        # What no test reaches is tried alone, too: the compiler may have computed the variable it is in.
        reached = trials.reached()
        pending = [one for one in switched if one.number in reached]
        for where in Where:
            print(f"Trying {len(pending)} mutants on {where.value}", flush=True)
            with concurrent.futures.ThreadPoolExecutor(WORKERS) as pool:
                verdicts = pool.map(lambda one: trials.verdict(one.number, one.mutant, where), pending)
                for result, (outcome, by) in zip(pending, verdicts):
                    if outcome == "survived" and where == Where.NEAR:
                        print(f"Lives so far: {describe(result.mutant, self._tree)}", flush=True)
                    else:
                        self._conclude(result, outcome, by)
            pending = [one for one in pending if not one.outcome]

    def _run_alone(self, trials: Trials) -> None:
        """Those that the compiler computes with, or that do not compile with a switch: one build each."""
        waiting = self._waiting()
        print(f"Building {len(waiting)} mutants one by one", flush=True)
        for result in waiting:
            if not self._tree.build_with_one(result.mutant):
                self._conclude(result, "no program", "it does not compile")
                continue
            for where in Where:
                outcome, by = trials.verdict(result.number, result.mutant, where, everywhere=True)
                if outcome != "survived":
                    break
            self._conclude(result, outcome, by)
        self._tree.restore()

    def _waiting(self) -> list[Result]:
        return [one for one in self._results if not one.outcome]

    def _conclude(self, result: Result, outcome: str, by: str) -> None:
        result.outcome, result.by = outcome, by
        left = len(self._waiting())
        keep(self._results, self._seed)
        if outcome in ("survived", "timed out"):
            print(f"{outcome} ({by}; {left} left): {describe(result.mutant, self._tree)}", flush=True)


def describe(mutant: Mutant, tree: MutantTree) -> str:
    return f"{mutant.file}:{mutant.line}: {mutant.description(tree.original(mutant.file))}"


@dataclasses.dataclass
class Summary:
    """What a group's mutants came to."""

    group: str
    killed: int
    timed_out: int
    survived: int
    equivalent: int

    @classmethod
    def of(cls, group: str, results: list[Result]) -> Summary:
        outcomes = [one.outcome for one in results if is_in(one.mutant, group)]
        return cls(group, *(outcomes.count(name) for name in ("killed", "timed out", "survived", "equivalent")))

    @property
    def counted(self) -> int:
        return self.killed + self.timed_out + self.survived

    @property
    def share(self) -> float:
        return 100 * (self.killed + self.timed_out) / self.counted if self.counted else 100

    def text(self) -> str:
        return (
            f"{self.group:<10} {self.counted:4} mutants: {self.killed} killed, {self.timed_out} timed out, "
            f"{self.survived} survived ({self.share:.1f} %, wanted {GOALS[self.group]} %); "
            f"{self.equivalent} equivalent"
        )

    def row(self, seed: int) -> str:
        commit = subprocess.run(
            ["git", "rev-parse", "--short", "HEAD"], cwd=PROJECT, stdout=subprocess.PIPE, check=True, text=True
        ).stdout.strip()
        date = datetime.datetime.now(datetime.timezone.utc).date()
        return (
            f"| {date} | {commit} | {seed} | {self.group} | {self.counted} | {self.killed} | {self.timed_out} "
            f"| {self.survived} | {self.share:.1f} % | {self.equivalent} |\n"
        )


def record(summaries: list[Summary], seed: int) -> None:
    """Adds a row for each group to the table of mutants."""
    document = PROJECT / "docs/soak.md"
    lines = document.read_text(encoding="utf-8").splitlines(keepends=True)
    at = next(at for at in range(lines.index("## Mutants\n"), len(lines)) if lines[at].startswith("|"))
    while at < len(lines) and lines[at].startswith("|"):
        at += 1
    lines[at:at] = [one.row(seed) for one in summaries]
    document.write_text("".join(lines), encoding="utf-8")


def parse_arguments(words: list[str]) -> argparse.Namespace:
    parser = argparse.ArgumentParser(add_help=False)
    parser.add_argument("--sample", type=int, default=300)
    parser.add_argument("--seed", type=int, default=random.SystemRandom().randrange(1, 1 << 30))
    parser.add_argument("--group", choices=list(GOALS), default=EVERYTHING)
    parser.add_argument("--list", action="store_true")
    parser.add_argument("--survivors", action="store_true")
    parser.add_argument("--record", action="store_true")
    return parser.parse_args(words)


def keep(results: list[Result], seed: int) -> None:
    """What is known so far, for --survivors and for whoever ends the run before its time."""
    outcomes = {one.name: [one.outcome, one.by] for one in results}
    (WORK / "results.json").write_text(json.dumps({"seed": seed, "outcomes": outcomes}, indent=1))


def load(named: dict[str, Mutant]) -> tuple[int, list[Result]]:
    """The seed and the results of the last run; who survived is to be tried again."""
    kept = json.loads((WORK / "results.json").read_text())
    results = []
    for name, (outcome, by) in kept["outcomes"].items():
        if name in named:
            tried = outcome in ("killed", "timed out", "no program")
            results.append(Result(len(results) + 1, name, named[name], outcome if tried else "", by))
    return kept["seed"], results


def main() -> int:
    arguments = parse_arguments(sys.argv[1:])
    WORK.mkdir(parents=True, exist_ok=True)
    tree = MutantTree(PROJECT, WORK)
    everything = all_places(tree)
    named = name_all(everything, tree)
    equivalents = Equivalents(PROJECT / "tests/mutation/equivalent", everything, tree)
    seed = arguments.seed
    if arguments.survivors:
        seed, results = load(named)
    else:
        chosen = sample(named, arguments.sample, seed, arguments.group)
        results = [Result(number, name, named[name]) for number, name in enumerate(chosen, 1)]
    print(f"Seed {seed}: {len(results)} of {len(everything)} mutants", flush=True)
    if arguments.list:
        print("\n".join(describe(one.mutant, tree) for one in results))
        return 0
    for result in results:
        if result.mutant in equivalents:
            result.outcome = "equivalent"
    Session(tree, results, seed).run()

    keep(results, seed)
    print("Survivors:")
    for result in results:
        if result.outcome == "survived":
            print(f"  {describe(result.mutant, tree)} ({result.by})")
    print(f"No program: {sum(one.outcome == 'no program' for one in results)}")
    groups = GOALS if arguments.group == EVERYTHING else {arguments.group: 0}
    summaries = [Summary.of(name, results) for name in groups]
    print("\n".join(one.text() for one in summaries))
    if arguments.record:
        record(summaries, seed)
    return 0 if all(one.share >= GOALS[one.group] for one in summaries) else 1


if __name__ == "__main__":
    sys.exit(main())

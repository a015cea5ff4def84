"""Runs the project's tests: once with no mutant, which tells what each test reaches, then for each mutant
those that reach it, until one fails."""

from __future__ import annotations

import concurrent.futures
import dataclasses
import enum
import json
import os
import pathlib
import shutil
import signal
import subprocess
import time
from collections.abc import Iterable

from places import Mutant

MOST_MUTANTS = 1 << 16  # as in Mutant.h
WORKERS = os.cpu_count() or 1

# Tests of the tree, of its installation and of the tests' own tools see no mutant. Those that attack real
# shells take minutes; so does what takes longer than the limit, in seconds of processor time. What is left
# out could only kill more.
LEFT_OUT = ("checks.", "package.", "support_test.", "guard_test.Slices/Injection", "guard_test.Shells/Canary")
LONGEST_TEST = 5.0

# What a mutant may do goes no further than its processes: they die together, and neither memory nor
# files grow without end.
CAGE = ["unshare", "--pid", "--fork", "--mount-proc", "--kill-child",
        "prlimit", f"--as={16 << 30}", f"--fsize={3 << 30}"]  # fmt: skip
FIRST_PROCESS = ["sh", "-c", '"$@"; exit $?', "sh"]
OUT_OF_TIME = 128 + signal.SIGXCPU


class ControlError(Exception):
    """Too many tests fail without any mutant."""


class Where(enum.Enum):
    """Tests are near that are named like a mutant's file or belong to its folder."""

    NEAR = "the tests of its folder"
    FAR = "all others"


@dataclasses.dataclass
class Test:
    """One test, and what its run without a mutant came to."""

    program: str
    name: str  # of GoogleTest; empty for a program that has no such tests
    command: list[str]
    folder: str
    seconds: float = 0.0  # of processor time
    reached: frozenset[int] = frozenset()


def find_tests(build: pathlib.Path) -> list[Test]:
    """All tests of a build but those of the tree and of its installation, which see no mutant."""
    listed = subprocess.run(
        ["ctest", "--show-only=json-v1"], cwd=build, stdout=subprocess.PIPE, check=True, text=True
    )
    tests = []
    for entry in json.loads(listed.stdout)["tests"]:
        if entry["name"].startswith(LEFT_OUT):
            continue
        folder = next(one["value"] for one in entry["properties"] if one["name"] == "WORKING_DIRECTORY")
        command = entry["command"]
        marks = [word for word in command if word.startswith("--gtest_filter=")]
        name = marks[0].split("=", 1)[1] if marks else ""
        tests.append(Test(pathlib.Path(command[0]).name, name, command if not marks else command[:1], folder))
    return tests


class Trials:
    def __init__(self, work: pathlib.Path, tests: list[Test]) -> None:
        self._scratch = work / "scratch"
        shutil.rmtree(self._scratch, ignore_errors=True)
        self._scratch.mkdir(parents=True)
        self._tests = tests
        self._runs = 0

    def control(self) -> list[str]:
        """Runs every test without a mutant, and notes what it reaches.

        @return the tests that are left out, and why: they take too long, or fail in the cage even so.
        """
        with concurrent.futures.ThreadPoolExecutor(WORKERS) as pool:
            reasons = dict(zip(map(id, self._tests), pool.map(self._control_one, self._tests)))
        left_out = [f"{test.program} {test.name} {reasons[id(test)]}" for test in self._tests if reasons[id(test)]]
        self._tests = [test for test in self._tests if not reasons[id(test)]]
        if len(left_out) > len(self._tests) // 10:
            raise ControlError("\n".join(left_out))
        return left_out

    def _control_one(self, test: Test) -> str:
        reached = self._scratch / f"reached-{id(test)}"
        reached.write_bytes(bytes(MOST_MUTANTS))
        outcome, test.seconds = self._run([test], {"CORVEL_MUTANTS_REACHED": str(reached)}, 100)
        test.reached = frozenset(number for number, byte in enumerate(reached.read_bytes()) if byte)
        reached.unlink()
        if outcome != "survived":
            return f"is {outcome} without a mutant"
        return f"takes {test.seconds:.0f} s" if test.seconds > LONGEST_TEST else ""

    def reached(self) -> set[int]:
        """The mutants that any test reaches."""
        return set().union(*(test.reached for test in self._tests))

    def verdict(
        self, number: int, mutant: Mutant, where: Where, everywhere: bool = False
    ) -> tuple[str, str]:
        """Runs the tests there that reach a mutant.

        @param everywhere  the mutant is in the build whatever its number: every test reaches it.
        @return killed, timed out or survived; and by which tests.
        """
        tests = [test for test in self._tests if everywhere or number in test.reached]
        for batch in _batches(tests, mutant, where):
            normal = sum(test.seconds for test in batch)
            outcome, _ = self._run(batch, {"CORVEL_MUTANT": str(number)}, 10 + 10 * normal)
            if outcome != "survived":
                return outcome, batch[0].program
        return "survived", f"{len(tests)} tests"

    def _run(self, batch: list[Test], environment: dict[str, str], limit: float) -> tuple[str, float]:
        """Runs tests of one program in one process.

        @param limit  in seconds of processor time; it may sleep longer, as others may use the processors.
        @return killed, timed out or survived; and how much processor time it took.
        """
        self._runs += 1
        folder = self._scratch / f"run-{self._runs}-{id(batch)}"
        folder.mkdir()
        names = ":".join(test.name for test in batch)
        variables = {**os.environ, **environment, "TMPDIR": str(folder)}
        if names:
            variables |= {"GTEST_FILTER": names, "GTEST_FAIL_FAST": "1", "GTEST_BRIEF": "1"}
        with open(folder / "output", "wb") as output:
            process = subprocess.Popen(  # pylint: disable=consider-using-with
                [*CAGE, f"--cpu={int(limit) + 1}", *FIRST_PROCESS, *batch[0].command],
                cwd=batch[0].folder,
                env=variables,
                stdin=subprocess.DEVNULL,
                stdout=output,
                stderr=subprocess.STDOUT,
                start_new_session=True,
            )
            status, seconds = _wait(process, 60 + 6 * limit)
        shutil.rmtree(folder, ignore_errors=True)
        outcome = "survived" if status == 0 else "timed out" if status in (None, OUT_OF_TIME) else "killed"
        return outcome, seconds


def _wait(process: subprocess.Popen[bytes], limit: float) -> tuple[int | None, float]:
    """@return its exit status, None when it had to be ended, and the processor time of its processes."""
    deadline = time.monotonic() + limit
    while time.monotonic() < deadline:
        pid, status, used = os.wait4(process.pid, os.WNOHANG)
        if pid != 0:
            process.returncode = os.waitstatus_to_exitcode(status)
            return process.returncode, used.ru_utime + used.ru_stime
        time.sleep(0.01)
    process.kill()
    process.wait()
    return None, limit


def _batches(tests: list[Test], mutant: Mutant, where: Where) -> Iterable[list[Test]]:
    """Tests in the order in which they are tried: those named like the file before the others of the folder,
    what takes a second or more at the end, by itself."""
    path = pathlib.PurePath(mutant.file)

    def distance(test: Test) -> int:
        if path.stem in test.name:
            return 0
        return 1 if test.program.startswith(path.parent.name) else 2

    for wanted in (0, 1) if where == Where.NEAR else (2,):
        group = [test for test in tests if distance(test) == wanted]
        quick: dict[str, list[Test]] = {}
        for test in group:
            if test.name and test.seconds < 1:
                quick.setdefault(test.program, []).append(test)
        yield from sorted(quick.values(), key=lambda batch: sum(test.seconds for test in batch))
        alone = [test for test in group if not test.name or test.seconds >= 1]
        yield from ([test] for test in sorted(alone, key=lambda test: test.seconds))

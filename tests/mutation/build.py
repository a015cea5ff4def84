"""A copy of the project in which mutants are built."""

from __future__ import annotations

import json
import os
import pathlib
import re
import shlex
import subprocess

import schema
from places import Mutant

# libclang reads sources with these of the compiler's arguments.
KEPT_ARGUMENTS = ("-I", "-D", "-std=", "-isystem")


class BuildError(Exception):
    """The project, without any mutant, does not build."""


class MutantTree:
    """The project's files in work/tree, built there with the preset debug."""

    def __init__(self, project: pathlib.Path, work: pathlib.Path) -> None:
        self.tree = work / "tree"
        self.build = self.tree / "build/debug"
        self._originals: dict[str, bytes] = {}
        self._header = project / "tests/mutation/Mutant.h"
        self._environment = {**os.environ, "CCACHE_BASEDIR": str(self.tree), "CCACHE_NOHASHDIR": "1"}
        self._copy(project)
        launcher = project / "tests/mutation/compile"
        self._run(
            "cmake", "--preset", "debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0", f"-DCMAKE_CXX_COMPILER_LAUNCHER={launcher}"
        )

    def original(self, file: str) -> bytes:
        """What a file of the tree is without mutants."""
        return self._originals[file]

    def sources(self) -> dict[pathlib.Path, list[str]]:
        """The library's sources, each with the arguments that a compiler needs to read it."""
        found = {}
        for entry in json.loads((self.build / "compile_commands.json").read_text()):
            source = pathlib.Path(entry["file"])
            if source.is_relative_to(self.tree / "corvel"):
                words = shlex.split(entry["command"])
                arguments = [word for word in words if word.startswith(KEPT_ARGUMENTS)]
                for at, word in enumerate(words):
                    if word == "-isystem":
                        arguments[arguments.index(word)] += words[at + 1]
                found[source] = arguments
        return found

    def restore(self) -> None:
        """Takes every mutant out."""
        for file, content in self._originals.items():
            self._write(file, content)

    def build_with(self, mutants: dict[int, Mutant]) -> set[int]:
        """Builds with these mutants, to be switched on by number.

        @return the numbers of those that do not compile this way; they are not in the build.
        """
        refused: set[int] = set()
        while True:
            kept = {number: one for number, one in mutants.items() if number not in refused}
            self._write_with(kept)
            output = self._make()
            if output is None:
                return refused
            named = self._refused_by(output, kept)
            if not named:
                raise BuildError("\n".join(line for line in output.splitlines() if "error:" in line)[:5000])
            refused |= named

    def build_with_one(self, mutant: Mutant) -> bool:
        """Builds with this mutant alone, which needs no switch. @return whether it compiles."""
        self.restore()
        self._write(mutant.file, schema.with_one(self.original(mutant.file), mutant))
        return self._make() is None

    def _write_with(self, mutants: dict[int, Mutant]) -> None:
        of_file: dict[str, dict[int, Mutant]] = {}
        for number, mutant in mutants.items():
            of_file.setdefault(mutant.file, {})[number] = mutant
        for file, content in self._originals.items():
            if file in of_file:
                # Messages of the compiler name the lines that they have in the project.
                head = f'#include "{self._header}"\n#line 1 "{file}"\n'
                content = head.encode() + schema.with_mutants(content, of_file[file])
            self._write(file, content)

    def _refused_by(self, output: str, mutants: dict[int, Mutant]) -> set[int]:
        """The mutants on lines that the compiler names; those of whole files where it names others."""
        lines = set()
        for path, line in re.findall(r"^([^\s:]+):(\d+):\d+: (?:fatal )?error: ", output, flags=re.MULTILINE):
            lines.add((path, int(line)))
        named = set()
        for number, mutant in mutants.items():
            extent = self.original(mutant.file)[mutant.start : mutant.end].count(b"\n")
            if any((mutant.file, mutant.line + more) in lines for more in range(extent + 1)):
                named.add(number)
        if named:
            return named
        files = set(re.findall(r"([^\s:]+):\d+:\d+", output))
        return {number for number, mutant in mutants.items() if mutant.file in files}

    def _make(self) -> str | None:
        """@return what the build says when it fails."""
        done = self._run("ninja", "-C", str(self.build), "-k0", f"-j{os.cpu_count()}", check=False)
        return None if done.returncode == 0 else done.stdout

    def _run(self, *command: str, check: bool = True) -> subprocess.CompletedProcess[str]:
        return subprocess.run(
            command,
            cwd=self.tree,
            env=self._environment,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            text=True,
            check=check,
        )

    def _write(self, file: str, content: bytes) -> None:
        path = self.tree / file
        if not path.exists() or path.read_bytes() != content:
            path.write_bytes(content)

    def _copy(self, project: pathlib.Path) -> None:
        listed = subprocess.run(
            ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
            cwd=project,
            stdout=subprocess.PIPE,
            check=True,
        )
        names = {name for name in listed.stdout.decode().split("\0") if (project / name).is_file()}
        for name in sorted(names):
            content = (project / name).read_bytes()
            if name.startswith("corvel/") and name.endswith((".cpp", ".h")):
                self._originals[name] = content
            path = self.tree / name
            path.parent.mkdir(parents=True, exist_ok=True)
            self._write(name, content)
            path.chmod((project / name).stat().st_mode)
        for path in self.tree.rglob("*"):
            name = str(path.relative_to(self.tree))
            if path.is_file() and name not in names and not name.startswith("build/"):
                path.unlink()

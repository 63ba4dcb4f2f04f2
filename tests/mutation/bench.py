"""Builds the library with one mutant at a time, in a copy of the project, and lets its tests judge it."""

import json
import resource
import subprocess
from collections.abc import Iterable
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

from mutants import Mutant

PROGRAMS = ("module_tests", "internals_tests", "unloading_tests")
SOURCES = Path("MultiEntity.Native/Src")
CONFIGURATION = (
    "-DCMAKE_BUILD_TYPE=Debug",
    "-DCMAKE_CXX_FLAGS=-O0 -w",
    "-DCMAKE_CXX_FLAGS_DEBUG=",
    "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
    "-DMULTIENTITY_BUILD_STANDALONE=OFF",
    "-DMULTIENTITY_UNITE_TESTS=ON",
)
# A case takes milliseconds; one that takes this long has lost its way.
SECONDS_PER_CASE = 20
# A mutant that allocates without end is stopped before it hurts the machine.
BYTES_PER_PROCESS = 4 << 30


class BenchError(Exception):
    pass


def succeeds(command: list[str | Path], seconds: float | None = None) -> bool:
    done = subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=seconds)
    return done.returncode == 0


@dataclass(frozen=True)
class Case:
    program: Path
    name: str
    file: str  # the test file's name

    def passes(self) -> bool:
        try:
            return succeeds([self.program, f"--gtest_filter={self.name}"], SECONDS_PER_CASE)
        except subprocess.TimeoutExpired:
            return False


class Bench:
    def __init__(self, project: Path, folder: Path, jobs: int):
        self._project = project
        self._source = folder / "source"
        self._build = folder / "build"
        self._jobs = jobs
        self._cases: list[Case] = []
        self._killers: dict[str, list[Case]] = {}

    def prepare(self) -> int:
        """Builds the copy as it is; its tests, which must pass, are counted."""
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        resource.setrlimit(resource.RLIMIT_AS, (BYTES_PER_PROCESS, BYTES_PER_PROCESS))
        self._copy()
        self._run(["cmake", "-S", self._source, "-B", self._build, "-G", "Ninja", *CONFIGURATION])
        self._run(self._build_command())
        self._cases = [case for program in PROGRAMS for case in self._list(program)]
        failing = self._first_failure(self._cases)
        if failing is not None:
            raise BenchError(f"{failing.name} fails without any mutant.")
        return len(self._cases)

    def sources(self) -> dict[str, str]:
        """The module's sources by their names below Src."""
        folder = self._project / SOURCES
        paths = sorted(path for path in folder.rglob("*") if path.suffix in (".cpp", ".h"))
        return {path.relative_to(folder).as_posix(): path.read_text() for path in paths}

    def compile(self, mutant: Mutant) -> bool:
        self._path(mutant).write_text(mutant.source)
        return succeeds(self._build_command())

    def killer(self, mutant: Mutant) -> Case | None:
        """The case that fails with the mutant that was compiled last, or none."""
        recent = self._killers.setdefault(mutant.file, [])
        stem = Path(mutant.file).stem
        likely = [case for case in self._cases if stem in case.file]
        found = self._first_failure(dict.fromkeys([*recent, *likely, *self._cases]))
        if found is not None:
            self._killers[mutant.file] = list(dict.fromkeys([found, *recent]))
        return found

    def restore(self, mutant: Mutant) -> None:
        self._path(mutant).write_text((self._project / SOURCES / mutant.file).read_text())

    def _path(self, mutant: Mutant) -> Path:
        return self._source / SOURCES / mutant.file

    def _copy(self) -> None:
        list_files = ["git", "-C", self._project, "ls-files", "-z", "--cached", "--others", "--exclude-standard"]
        for name in self._run(list_files).rstrip("\0").split("\0"):
            original, copy = self._project / name, self._source / name
            if not original.is_file():
                continue
            content = original.read_bytes()
            if not copy.exists() or copy.read_bytes() != content:
                copy.parent.mkdir(parents=True, exist_ok=True)
                copy.write_bytes(content)

    def _build_command(self) -> list[str | Path]:
        return ["cmake", "--build", self._build, "-j", str(self._jobs), "--target", *PROGRAMS]

    def _list(self, program: str) -> list[Case]:
        path = self._build / "bin" / program
        output = self._build / f"{program}.json"
        self._run([path, "--gtest_list_tests", f"--gtest_output=json:{output}"])
        return [
            Case(path, f"{suite['name']}.{case['name']}", Path(case["file"]).name)
            for suite in json.loads(output.read_text())["testsuites"]
            for case in suite["testsuite"]
        ]

    def _first_failure(self, cases: Iterable[Case]) -> Case | None:
        remaining = iter(list(cases))
        with ThreadPoolExecutor(self._jobs) as pool:
            while batch := [case for _, case in zip(range(4 * self._jobs), remaining)]:
                for case, passed in zip(batch, pool.map(Case.passes, batch)):
                    if not passed:
                        return case
        return None

    @staticmethod
    def _run(command: list[str | Path]) -> str:
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if done.returncode != 0:
            raise BenchError(f"{' '.join(map(str, command))} failed:\n{done.stdout}")
        return done.stdout

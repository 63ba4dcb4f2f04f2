#!/usr/bin/env python3
"""Adds up the instructions in callgrind's profiles that the named programs and libraries ran themselves.

Prints "count<tab>name" for each profile of a folder, in the order in which they were written. Instructions belong to
the file that their function is in, not to who called it.
"""

import argparse
import re
import sys
from collections import Counter
from collections.abc import Iterable
from dataclasses import dataclass
from pathlib import Path

TITLE = "desc: Trigger: Client Request: "
TOTAL = "totals: "
# A profile spells a name out where it comes first, which may be where the file is called, and then has its number only.
OBJECT = re.compile(r"(c?ob)=\((\d+)\)(?: (.+))?")
COST = re.compile(r"(?:[-+]?\d+|\*) (\d+)")


class ProfileError(Exception):
    pass


@dataclass(frozen=True)
class Profile:
    name: str
    instructions: Counter[str]
    """By the file that they are in."""

    def of(self, files: Iterable[str]) -> int:
        return sum(self.instructions[file] for file in files)


def read_profile(text: str) -> Profile:
    name = ""
    total = 0
    objects: dict[str, str] = {}
    running = ""
    instructions: Counter[str] = Counter()
    lines = iter(text.splitlines())
    for line in lines:
        if line.startswith("calls="):
            # The next line has the instructions of what was called, which count where that is.
            next(lines)
        elif cost := COST.fullmatch(line):
            instructions[running] += int(cost[1])
        elif found := OBJECT.fullmatch(line):
            key, number, path = found.groups()
            if path:
                objects[number] = Path(path).name
            if key == "ob":
                running = objects[number]
        elif line.startswith(TITLE):
            name = line.removeprefix(TITLE)
        elif line.startswith(TOTAL):
            total = int(line.removeprefix(TOTAL))
    if instructions.total() != total:
        raise ProfileError(f"{name}: {instructions.total()} instructions were read, but callgrind counted {total}.")
    return Profile(name, instructions)


def files_of(wanted: list[str], profiles: list[Profile]) -> set[str]:
    """The files with these names, which may be followed by a version."""
    files: set[str] = set()
    for name in wanted:
        found = {
            file for profile in profiles for file in profile.instructions if file == name or file.startswith(name + ".")
        }
        if not found:
            raise ProfileError(f"No profile has instructions of {name}.")
        files |= found
    return files


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=Path, help="has profile.1, profile.2, ...")
    parser.add_argument("name", nargs="+", help="such as libsqlite3.so")
    arguments = parser.parse_args()
    try:
        paths = sorted(arguments.folder.glob("profile.*"), key=lambda path: int(path.suffix[1:]))
        profiles = [read_profile(path.read_text()) for path in paths]
        files = files_of(arguments.name, profiles)
    except ProfileError as error:
        print(error, file=sys.stderr)
        return 1
    for profile in profiles:
        print(profile.of(files), profile.name, sep="\t")
    return 0


if __name__ == "__main__":
    sys.exit(main())

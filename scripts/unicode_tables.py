#!/usr/bin/env python3
"""Writes what the program knows of Unicode's characters as a C++ header, from the files of Unicode's data base.

python3 scripts/unicode_tables.py FOLDER HEADER, where FOLDER is the one that Debian's package unicode-data fills.
"""

import sys
from collections.abc import Iterable, Iterator
from pathlib import Path

SOFT_HYPHEN = 0xAD
# Vowels and final consonants are drawn into the syllable that a leading consonant begins.
HANGUL_JOINED = ("V", "T")
# The forms of characters that read as those do of which they are forms: accented letters, blanks that do not break,
# wide and narrow letters, ligatures, and those that Arabic letters take within a word.
READ_THE_SAME = ("", "noBreak", "wide", "narrow", "compat", "initial", "medial", "final", "isolated")


def fields_of(file: Path) -> Iterator[list[str]]:
    """The fields of each line that has any, without what is remarked behind them."""
    for line in file.read_text(encoding="utf-8").splitlines():
        told = line.partition("#")[0].strip()
        if told:
            yield [field.strip() for field in told.split(";")]


def numbers_of(text: str) -> range:
    """The characters that "1100" or "1100..1112" names."""
    first, _, last = text.partition("..")
    return range(int(first, 16), int(last or first, 16) + 1)


def having(file: Path, *values: str) -> set[int]:
    """The characters whose property in the file is one of the values."""
    return {number for fields in fields_of(file) if fields[1] in values for number in numbers_of(fields[0])}


def unseen(data: Path) -> set[int]:
    """The characters that stand between others and are not drawn."""
    formats = having(data / "extracted" / "DerivedGeneralCategory.txt", "Cf")
    return formats - having(data / "PropList.txt", "Prepended_Concatenation_Mark")


def without_a_cell(data: Path) -> set[int]:
    """The characters that a terminal draws onto their neighbour, or not at all."""
    marks = having(data / "extracted" / "DerivedGeneralCategory.txt", "Mn", "Me", "Cf")
    spaced = having(data / "PropList.txt", "Prepended_Concatenation_Mark") | {SOFT_HYPHEN}
    return (marks | having(data / "HangulSyllableType.txt", *HANGUL_JOINED)) - spaced


def with_two_cells(data: Path) -> set[int]:
    return having(data / "EastAsianWidth.txt", "W", "F") - without_a_cell(data)


def decompositions_of(data: Path) -> dict[int, list[int]]:
    """Each character that consists of others, or reads like them, with these, none of which does so itself; nothing for
    one that nobody sees. Without Hangul's syllables, which follow from their numbers."""
    once: dict[int, list[int]] = {number: [] for number in unseen(data)}
    for fields in fields_of(data / "UnicodeData.txt"):
        form, parts = fields[5].rpartition("> ")[::2]
        if parts and form.removeprefix("<") in READ_THE_SAME:
            once[int(fields[0], 16)] = [int(part, 16) for part in parts.split()]

    def whole(number: int) -> list[int]:
        return [part for first in once[number] for part in whole(first)] if number in once else [number]

    return {number: whole(number) for number in once}


def full_foldings(data: Path, decompositions: dict[int, list[int]]) -> dict[int, list[int]]:
    """What each character is without its case, decomposed."""
    foldings: dict[int, list[int]] = {}
    for fields in fields_of(data / "CaseFolding.txt"):
        if fields[1] in ("C", "F"):
            folded = [int(part, 16) for part in fields[2].split()]
            foldings[int(fields[0], 16)] = [part for one in folded for part in decompositions.get(one, [one])]
    return foldings


def combining_classes(data: Path) -> dict[int, int]:
    """Those that are not 0."""
    classes: dict[int, int] = {}
    for fields in fields_of(data / "extracted" / "DerivedCombiningClass.txt"):
        if fields[1] != "0":
            classes.update(dict.fromkeys(numbers_of(fields[0]), int(fields[1])))
    return classes


def ranges_of(numbers: Iterable[int]) -> list[tuple[int, int]]:
    ranges: list[tuple[int, int]] = []
    for number in sorted(numbers):
        if ranges and ranges[-1][1] == number - 1:
            ranges[-1] = (ranges[-1][0], number)
        else:
            ranges.append((number, number))
    return ranges


def range_table(name: str, numbers: Iterable[int]) -> str:
    ranges = ranges_of(numbers)
    rows = "".join(f"    {{0x{first:04X}, 0x{last:04X}}},\n" for first, last in ranges)
    return f"inline constexpr std::array<CharacterRange, {len(ranges)}> {name}{{{{\n{rows}}}}};\n"


def mapping_table(name: str, mappings: dict[int, list[int]]) -> str:
    pool = [part for _, to in sorted(mappings.items()) for part in to]
    rows, first = "", 0
    for number, to in sorted(mappings.items()):
        rows += f"    {{0x{number:04X}, {first}, {len(to)}}},\n"
        first += len(to)
    parts = ", ".join(f"0x{part:04X}" for part in pool)
    return (
        f"inline constexpr std::array<CharacterMapping, {len(mappings)}> {name}{{{{\n{rows}}}}};\n"
        f"inline constexpr std::array<char32_t, {len(pool)}> {name}To{{{{{parts}}}}};\n"
    )


def class_table(name: str, classes: dict[int, int]) -> str:
    rows = "".join(f"    {{0x{number:04X}, {value}}},\n" for number, value in sorted(classes.items()))
    return f"inline constexpr std::array<CharacterClass, {len(classes)}> {name}{{{{\n{rows}}}}};\n"


def header(data: Path) -> str:
    decompositions = decompositions_of(data)
    tables = [
        range_table("kWithoutACell", without_a_cell(data)),
        range_table("kWithTwoCells", with_two_cells(data)),
        mapping_table("kDecompositions", decompositions),
        mapping_table("kFoldings", full_foldings(data, decompositions)),
        class_table("kCombiningClasses", combining_classes(data)),
    ]
    return (
        "#pragma once\n\n#include <array>\n#include <cstdint>\n\nnamespace standalone {\n\n"
        "struct CharacterRange {\n  char32_t first;\n  char32_t last;\n};\n\n"
        "// What stands for a character: so many of those of its table's ...To, from that one on.\n"
        "struct CharacterMapping {\n  char32_t character;\n  std::uint16_t first;\n  std::uint8_t count;\n};\n\n"
        "struct CharacterClass {\n  char32_t character;\n  std::uint8_t number;\n};\n\n"
        "// Each from the smallest number up.\n" + "\n".join(tables) + "\n}  // namespace standalone\n"
    )


def main() -> int:
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    Path(sys.argv[2]).write_text(header(Path(sys.argv[1])), encoding="utf-8")
    return 0


if __name__ == "__main__":
    sys.exit(main())

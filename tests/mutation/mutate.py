#!/usr/bin/env python3
"""Puts small faults into the module's sources, one at a time, and lets the module's tests judge each.

Fails when a mutant that compiles passes all tests and is not explained in alive.toml, when too few of all mutants are
killed, and when an explanation has lost its mutant.
"""

import argparse
import os
import random
import sys
import tomllib
from collections import Counter
from pathlib import Path

from bench import Bench, BenchError
from mutants import Identity, Mutant, mutants_of

PROJECT = Path(__file__).resolve().parents[2]
ALIVE = Path(__file__).with_name("alive.toml")
LEAST_KILLED = 0.95


def parse_arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--list", action="store_true", help="print the mutants instead of judging them")
    parser.add_argument("--file", action="append", metavar="F", help="only mutants of this source, such as Gates.cpp")
    parser.add_argument("--sample", type=int, metavar="N", help="only N mutants, chosen by --seed")
    parser.add_argument("--seed", type=int, default=1, metavar="S")
    parser.add_argument("--jobs", type=int, default=os.cpu_count() or 1, metavar="J")
    parser.add_argument("--build", type=Path, default=PROJECT / "build" / "mutation", metavar="FOLDER")
    return parser.parse_args()


def select(mutants: list[Mutant], arguments: argparse.Namespace) -> list[Mutant]:
    wanted = arguments.file or [""]
    selected = [mutant for mutant in mutants if any(mutant.file.endswith(name) for name in wanted)]
    if not selected:
        raise BenchError(f"No source with mutants is named {' or '.join(wanted)}.")
    if arguments.sample is None or arguments.sample >= len(selected):
        return selected
    chosen = random.Random(arguments.seed).sample(range(len(selected)), arguments.sample)
    return [selected[index] for index in sorted(chosen)]


def read_explanations(mutants: list[Mutant]) -> set[Identity]:
    entries = tomllib.loads(ALIVE.read_text()).get("alive", [])
    explained = {(entry["file"], entry["function"], entry["before"], entry["after"]) for entry in entries}
    lost = sorted(explained - {mutant.identity for mutant in mutants})
    if lost:
        raise BenchError("\n".join(f"{ALIVE.name} explains a mutant that there is not: {' | '.join(one)}" for one in lost))
    return explained


def judge(bench: Bench, mutants: list[Mutant], explained: set[Identity]) -> Counter[str]:
    outcomes: Counter[str] = Counter()
    for mutant in mutants:
        try:
            outcome = outcome_of(bench, mutant, explained)
        finally:
            bench.restore(mutant)
        outcomes[outcome] += 1
        if outcome in ("alive", "killed although explained"):
            print(f"{outcome}: {mutant}", flush=True)
    return outcomes


def outcome_of(bench: Bench, mutant: Mutant, explained: set[Identity]) -> str:
    if not bench.compile(mutant):
        return "not compiled"
    if bench.killer(mutant) is not None:
        return "killed although explained" if mutant.identity in explained else "killed"
    return "explained" if mutant.identity in explained else "alive"


def report(outcomes: Counter[str], whole: bool) -> bool:
    compiled = outcomes.total() - outcomes["not compiled"]
    killed = outcomes["killed"] + outcomes["killed although explained"]
    share = killed / compiled if compiled else 1.0
    print(
        f"{outcomes.total()} mutants, of which {compiled} compile: {killed} killed ({share:.1%}), "
        f"{outcomes['explained']} alive and explained, {outcomes['alive']} alive and not explained"
    )
    return not outcomes["alive"] and (share >= LEAST_KILLED or not whole)


def main() -> int:
    arguments = parse_arguments()
    bench = Bench(PROJECT, arguments.build.resolve(), arguments.jobs)
    try:
        every = [mutant for file, source in bench.sources().items() for mutant in mutants_of(file, source)]
        mutants = select(every, arguments)
        if arguments.list:
            print(*mutants, sep="\n")
            return 0
        explained = read_explanations(every)
        print(f"{bench.prepare()} tests pass without a mutant.", flush=True)
        outcomes = judge(bench, mutants, explained)
    except BenchError as error:
        print(error, file=sys.stderr)
        return 2
    return 0 if report(outcomes, whole=mutants == every) else 1


if __name__ == "__main__":
    sys.exit(main())

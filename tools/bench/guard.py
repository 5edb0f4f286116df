#!/usr/bin/env python3
"""Whether the program is still as fast as kept: what continuous integration holds.

Usage: guard.py ratio|instructions BUILD WORK. Ends with 1 when it is slower, and says how a reviewed change is
accepted; with 77 when there is nothing to hold it against, and says why.

ratio          how many times as long as DuckDB a comparison takes. The machine may have other work: the best of a few
               attempts counts, and what is allowed is generous.
instructions   how many instructions a comparison and the start of the program execute.
"""

import sys
import time
from pathlib import Path

import instructions
import kept
from contestants import WrongAnswer
from inputs import generated
from limits import COMMANDS, INSTRUCTIONS_ALLOWED, RATIO_ALLOWED, RATIO_ROWS
from measuring import Trouble
from race import race
from shapes import shape_named

RATIO_RUNS = 3  # of each in an attempt
RATIO_ATTEMPTS = 5
RATIO_SECONDS = 25  # after which there is no third attempt, nor a further one

WELL, SLOWER, SKIPPED = 0, 1, 77
ACCEPT = "If that was reviewed and is accepted, keep the new figures: ./dev bench --keep guard"


def main():
    kind, build, work = sys.argv[1], Path(sys.argv[2]).resolve(), Path(sys.argv[3]).resolve()
    try:
        status, said = {"ratio": guarded_ratio, "instructions": guarded_instructions}[kind](build, work)
    except (Trouble, WrongAnswer) as trouble:
        status, said = SLOWER, str(trouble)
    print(said)
    return status


# --- The ratio to DuckDB ----------------------------------------------------------------------------------------------


def measured_ratio(build, work, runs=RATIO_RUNS):
    return race(generated(shape_named("million"), RATIO_ROWS, 1, build, work), build, runs).ratio


def guarded_ratio(build, work):
    kept_ratio = kept.read()["guard"].get("ratio")
    if kept_ratio is None:
        return SKIPPED, "skipped: no ratio to DuckDB is kept yet (./dev bench --keep guard)"
    ratios, started = [], time.monotonic()
    while True:
        ratios.append(measured_ratio(build, work))
        status, said = verdict_on_ratio(ratios, kept_ratio)
        is_late = len(ratios) > 1 and time.monotonic() - started > RATIO_SECONDS
        if status == WELL or is_late or len(ratios) == RATIO_ATTEMPTS:
            return status, said


def verdict_on_ratio(ratios, kept_ratio):
    limit = kept_ratio * RATIO_ALLOWED
    said = (
        f"The comparison of {RATIO_ROWS:,} cases takes {min(ratios):.2f} times as long as DuckDB "
        f"(attempts: {', '.join(f'{ratio:.2f}' for ratio in ratios)}); kept: {kept_ratio:.2f}, allowed: {limit:.2f}."
    )
    return (WELL, said) if min(ratios) <= limit else (SLOWER, f"{said}\n{ACCEPT}")


# --- Instructions -----------------------------------------------------------------------------------------------------


def guarded_instructions(build, work):
    tools = instructions.toolchain(build)
    if tools is None:
        return SKIPPED, "skipped: instructions are counted by valgrind, which is not installed"
    kept_counts = kept.read()["guard"].get("instructions", {})
    if tools not in kept_counts:
        return SKIPPED, (
            f"skipped: no counts of instructions are kept for {tools}, only for {'; '.join(kept_counts) or 'nothing'} "
            "(./dev bench --keep guard adds them)"
        )
    return verdict_on_instructions(instructions.counted(build, work), kept_counts[tools])


def verdict_on_instructions(counts, kept_counts):
    lines, status = [], WELL
    for command, what in COMMANDS.items():
        share = counts[command] / kept_counts[command] - 1
        line = f"{what}: {counts[command]:,} instructions, kept: {kept_counts[command]:,} ({share:+.1%})"
        if counts[command] > kept_counts[command] * INSTRUCTIONS_ALLOWED:
            status = SLOWER
            line += f", allowed: {INSTRUCTIONS_ALLOWED - 1:+.0%}"
        lines.append(line)
    if status == SLOWER:
        lines.append(ACCEPT)
    return status, "\n".join(lines)


# --- What is kept -----------------------------------------------------------------------------------------------------


def figures_to_keep(build, work):
    """Of this machine and its tools, as they are now."""
    figures = {"ratio": round(measured_ratio(build, work, runs=4 * RATIO_RUNS), 3)}
    tools = instructions.toolchain(build)
    if tools is None:
        raise Trouble("Instructions are counted by valgrind, which is not installed.")
    return {**figures, "instructions": {tools: instructions.counted(build, work)}}


if __name__ == "__main__":
    sys.exit(main())

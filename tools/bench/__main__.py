"""Measures this program and DuckDB side by side on generated files. ./dev bench runs it and tells how it is used."""

import argparse
import dataclasses
import datetime
import sys
from pathlib import Path

import kept
from contestants import WrongAnswer
from guard import figures_to_keep
from inputs import generated
from machine import commit, machine
from measuring import Trouble
from race import check_answers, race
from report import closing, heading, line
from shapes import SHAPES, shape_named

GUARD = "guard"  # stands among the shapes when only the guard's figures are to be kept


def main():
    options = parsed_options()
    try:
        if options.check:
            check(options)
        else:
            measure(options)
    except (Trouble, WrongAnswer) as trouble:
        sys.exit(str(trouble))


def parsed_options():
    shapes = "\n".join(f"  {shape.name:14}{shape.rows:>10,} x {shape.variables:<6,} {shape.what}" for shape in SHAPES)
    parser = argparse.ArgumentParser(
        prog="./dev bench",
        description=__doc__,
        epilog=f"shapes (cases x variables):\n{shapes}",
        formatter_class=argparse.RawDescriptionHelpFormatter,
    )
    parser.add_argument("shape", nargs="*", help="what to measure; by default "
                        + ", ".join(shape.name for shape in SHAPES if shape.is_default))  # fmt: skip
    parser.add_argument("--all", action="store_true", help="measure every shape")
    parser.add_argument("--rows", type=int, help="cases, in the place of those of the shape")
    parser.add_argument("--runs", type=int, default=5, help="runs of each after the one to warm up (default: 5)")
    parser.add_argument("--seed", type=int, default=1, help="what the random numbers begin with (default: 1)")
    parser.add_argument("--keep", action="store_true", help="write bench/kept.json and the tables of "
                        "docs/performance.md: of every shape and the guard, or of the named ones only (guard: its "
                        "figures)")  # fmt: skip
    parser.add_argument("--check", action="store_true", help="only see that both give the right answers")
    parser.add_argument("--build", type=Path, default=Path("build/release"), help="the build folder")
    parser.add_argument("--work", type=Path, default=Path("build/bench"), help="where the files go")
    options = parser.parse_args()
    unknown = set(options.shape) - {shape.name for shape in SHAPES} - ({GUARD} if options.keep else set())
    if unknown:
        parser.error(f"there is no shape {', '.join(sorted(unknown))}")
    if options.keep and (options.rows is not None or options.seed != 1):
        parser.error("figures are kept of the shapes as they are")
    options.build, options.work = options.build.resolve(), options.work.resolve()
    return options


def chosen_shapes(options):
    if options.all or (options.keep and not options.shape):
        return SHAPES
    if options.shape:
        return tuple(shape_named(name) for name in options.shape if name != GUARD)
    return tuple(shape for shape in SHAPES if shape.is_default)


def files_of(shape, options):
    return generated(shape, options.rows or shape.rows, options.seed, options.build, options.work)


def check(options):
    for shape in chosen_shapes(options):
        check_answers(files_of(shape, options), options.build)
        print(f"{shape.name}: both answers are the truth", flush=True)


def measure(options):
    rows, shapes = [], chosen_shapes(options)
    if shapes:
        print(heading())
    for shape in shapes:
        files = files_of(shape, options)
        rows.append(row_of(files, race(files, options.build, options.runs), options.runs))
        print(line(rows[-1]), flush=True)
    if shapes:
        print("", *closing(rows), sep="\n")
    if options.keep:
        is_guard_wanted = options.all or not options.shape or GUARD in options.shape
        guard = figures_to_keep(options.build, options.work) if is_guard_wanted else {}
        kept.keep(rows, guard)  # of a run that breaks off nothing is kept
        print(f"written: {kept.FILE.relative_to(kept.ROOT)}, {kept.PAGE.relative_to(kept.ROOT)}")


def row_of(files, result, runs):
    """As it is kept; times in seconds, memory in bytes."""
    return {
        "shape": files.shape.name,
        "cases": files.rows,
        "variables": files.shape.variables,
        "ours": rounded(dataclasses.asdict(result.ours)),
        "duckdb": rounded(dataclasses.asdict(result.duckdb)),
        "ratio": round(result.ratio, 3),
        "processorRatio": round(result.processor_ratio, 3),
        "target": files.shape.target,
        "runs": runs,
        "otherWork": round(result.other_work, 2),
        "date": str(datetime.date.today()),
        "commit": commit(),
        "machine": machine(),
    }


def rounded(figures):
    return {name: round(figure, 4) if isinstance(figure, float) else figure for name, figure in figures.items()}


if __name__ == "__main__":
    main()

#!/usr/bin/env python3
"""The comparison of two large files by this program, beside the same question asked of DuckDB in SQL.

Generates the files, then runs both in turn, after one warm-up each. Prints the median times, their ratio and the
highest resident memory of each, and holds every single answer against the truth. ./dev bench runs it.
"""

import argparse
import json
import os
import pathlib
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]


def main():
    options = parsed_options()
    work = pathlib.Path(options.work).resolve()
    build = pathlib.Path(options.build).resolve()
    truth = generated(build, work, options.rows, options.seed)
    contestants = {
        "DuckDB (SQL)": ([build / "bin/bench_duckdb_join", ROOT / "bench/full_outer_join.sql", "2"], (0,), sql_answer),
        "compare-datasets": (
            [build / "bin/compare-datasets", "compare", "a.csv", "b.csv", "--id", "id", "--format", "json"]
            + ["-o", "results.json"],
            (0, 1),
            document_answer,
        ),
    }
    chosen = {name: what for name, what in contestants.items() if options.only in (None, name)}

    runs = {name: [] for name in chosen}
    for turn in range(options.runs + 1):
        for name, (command, good_statuses, answer) in chosen.items():
            seconds, kilobytes = measured(command, good_statuses, work)
            check(name, answer(work), truth)
            if turn > 0:
                runs[name].append((seconds, kilobytes))
    report(runs, truth)


def parsed_options():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", default=ROOT / "build/release", help="the build folder")
    parser.add_argument("--work", default=ROOT / "build/bench", help="where the files go")
    parser.add_argument("--rows", type=int, default=1_000_000)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--only", help="run one contestant alone")
    return parser.parse_args()


def generated(build, work, rows, seed):
    """The truth about the files in the work folder, which are made unless they are there already."""
    work.mkdir(parents=True, exist_ok=True)
    path = work / "truth.json"
    truth = json.loads(path.read_text()) if path.exists() else {}
    if (truth.get("rows"), truth.get("seed")) != (rows, seed):
        path.unlink(missing_ok=True)
        command = [build / "bin/bench_generate", f"--rows={rows}", f"--seed={seed}", f"--folder={work}"]
        subprocess.run(command, check=True)
        truth = json.loads(path.read_text())
    return truth


def measured(command, good_statuses, work):
    """Runs the command with its standard output in a file; its time and its highest resident memory."""
    with open(work / "output.txt", "w") as output:
        started = time.perf_counter()
        process = subprocess.Popen([str(part) for part in command], cwd=work, stdout=output)
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - started
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode not in good_statuses:
        sys.exit(f"{command[0].name} ended with status {process.returncode}.")
    return seconds, usage.ru_maxrss


def sql_answer(work):
    row = json.loads((work / "output.txt").read_text())
    answer = {key: row.pop(key) for key in ("pairs", "differingPairs", "onlyInFirst", "onlyInSecond")}
    return {**answer, "mismatches": row}


def document_answer(work):
    document = json.loads((work / "results.json").read_text())
    tables = {item["key"]: cells_of(item) for command in document["commands"] for item in command["items"]
              if item["item"] == "table" and item["cells"]}  # fmt: skip
    matched = tables["CD_MatchedSummaryTableName"]
    by_cases = tables["CD_MismatchedByCasesTableName"]
    by_variables = tables["CD_MismatchedByVarsTableName"]
    return {
        "pairs": matched["CD_CasesCompared", "CD_Count", "CD_Active"],
        "differingPairs": by_cases["CD_CasesContainingMismatches", "CD_Count"],
        "onlyInFirst": matched["CD_CasesNotCompared", "CD_Count", "CD_Active"],
        "onlyInSecond": matched["CD_CasesNotCompared", "CD_Count", "CD_Comparison"],
        "mismatches": {name: count for (name, kind), count in by_variables.items() if kind == "CD_Count" and (name, count) != ("id", 0)},
    }


def cells_of(table):
    """The numbers of a table by the keys (or variable names) of their categories, one per dimension."""
    leaves = [list(leaf_titles(dimension["categories"])) for dimension in table["dimensions"]]
    return {
        tuple(titles[at] for titles, at in zip(leaves, cell["at"])): cell["content"].get("value") for cell in table["cells"]
    }


def leaf_titles(categories):
    for category in categories:
        if category.get("group"):
            yield from leaf_titles(category["categories"])
        else:
            title = category["title"]
            yield title["name"] if title["kind"] == "variable" else title.get("key")


def check(name, answer, truth):
    wrong = {key: (answer[key], truth[key]) for key in answer if answer[key] != truth[key]}
    if wrong:
        sys.exit(f"{name} gives another answer than the truth (answer, truth): {wrong}")


def report(runs, truth):
    print(f"{truth['rows']:,} cases x {truth['variables']} variables in each file, {truth['differingPairs']:,} pairs differ;")
    print("every answer of every run is the truth.\n")
    print(f"{'':20}{'median':>9}{'fastest':>9}{'slowest':>9}{'memory':>11}")
    medians = []
    for name, results in runs.items():
        seconds = [result[0] for result in results]
        medians.append(statistics.median(seconds))
        memory = max(result[1] for result in results) / 1024
        print(f"{name:20}{medians[-1]:8.2f}s{min(seconds):8.2f}s{max(seconds):8.2f}s{memory:8.0f} MiB")
    if len(medians) == 2:
        print(f"\ncompare-datasets takes {medians[1] / medians[0]:.2f} times as long as DuckDB.")


if __name__ == "__main__":
    main()

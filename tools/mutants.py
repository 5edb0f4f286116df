#!/usr/bin/env python3
"""Breaks the plug-in on purpose, one small change at a time, and sees whether a test notices.

The changes stand in tools/mutants/mutants.txt. Each is made in a copy of the sources under build/mutants, built, and
held against the unit tests of the plug-in and the tests that load it; the first test that fails has killed it. Tests
over random data are left out: what they find today they may miss tomorrow. Writes what came out into docs/mutants.md,
unless only some mutants were picked, and fails when one survived, did not apply or did not build. ./dev check --mutants
runs it.
"""

import argparse
import collections
import datetime
import os
import pathlib
import queue
import re
import shutil
import subprocess
import sys
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
LIST = ROOT / "tools/mutants/mutants.txt"
PAGE = ROOT / "docs/mutants.md"
WORK = ROOT / "build/mutants"

FOLDERS = ["driver", "syntax", "engine", "tables"]
LOADS_THE_PLUGIN = "procedure_test"
# A change may make a test run for ever or take all memory there is.
SECONDS_PER_PROGRAM = 60
BYTES_PER_PROGRAM = 4 << 30

Mutant = collections.namedtuple("Mutant", "number file wrong before after")
# What became of a mutant: one of the words below, which test broke or what went wrong, and where its line stands.
Result = collections.namedtuple("Result", "outcome detail line")
KILLED, TIMEOUT, SURVIVED, NOT_BUILT, NOT_APPLIED = "killed", "timeout", "survived", "does not build", "does not apply"
Run = collections.namedtuple("Run", "failed detail")


def main():
    options = parsed_options()
    everything = read_mutants(LIST)
    chosen = [mutant for mutant in everything if not options.number or mutant.number in options.number]
    unknown = set(options.number) - {mutant.number for mutant in chosen}
    if unknown:
        sys.exit(f"There is no mutant {', '.join(map(str, sorted(unknown)))}.")
    if options.applies:
        lost = [mutant for mutant in chosen if mutated((ROOT / mutant.file).read_text(), mutant) is None]
        for mutant in lost:
            print(f"{mutant.number}: its lines are not in {mutant.file} just once")
        sys.exit(bool(lost))
    started = time.monotonic()
    results = tried(chosen, options.jobs)
    report(chosen, results, time.monotonic() - started)
    if len(chosen) == len(everything):
        PAGE.write_text(page(everything, results))
        print(f"written: {PAGE.relative_to(ROOT)}")
    sys.exit(any(result.outcome not in (KILLED, TIMEOUT) for result in results.values()))


def parsed_options():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("number", type=int, nargs="*", help="only these mutants (their results are shown, not written)")
    parser.add_argument("--applies", action="store_true", help="only see whether every change finds its lines")
    parser.add_argument("--jobs", type=int, default=1, help="mutants at a time, each in a copy of its own")
    return parser.parse_args()


# --- The list ---------------------------------------------------------------------------------------------------------


def read_mutants(path):
    """The mutants of a list; ends the program where the list is none."""
    mutants, file = [], None
    for place, line in enumerate(path.read_text().splitlines(), 1):
        heading = re.fullmatch(r"(\d+) (.+\.)", line)
        if line.startswith("= "):
            file = line[2:]
        elif heading:
            mutants.append(Mutant(int(heading[1]), file, heading[2], [], []))
        elif line[:1] in (" ", "-", "+") and mutants:
            if line[0] in " -":
                mutants[-1].before.append(line[1:])
            if line[0] in " +":
                mutants[-1].after.append(line[1:])
        elif line and not line.startswith("#"):
            sys.exit(f"{path}:{place}: neither a file, a mutant nor a line of one")
    numbers = [mutant.number for mutant in mutants]
    if len(set(numbers)) != len(numbers):
        sys.exit(f"{path}: a number is given twice")
    for mutant in mutants:
        if mutant.file is None or mutant.before == mutant.after:
            sys.exit(f"{path}: mutant {mutant.number} changes nothing")
    return mutants


def mutated(text, mutant):
    """The changed text and the number of the first line that differs; None unless the lines are there exactly once."""
    lines, size = text.split("\n"), len(mutant.before)
    places = [at for at in range(len(lines) - size + 1) if lines[at : at + size] == mutant.before]
    if size == 0 or len(places) != 1:
        return None
    [at] = places
    same = 0
    while mutant.before[same] == (mutant.after + [None])[same]:
        same += 1
    return "\n".join(lines[:at] + mutant.after + lines[at + size :]), at + same + 1


# --- Trying them ------------------------------------------------------------------------------------------------------


def tried(mutants, jobs):
    """What became of each mutant. Requires: the tests pass without any."""
    results, waiting, problems = {}, queue.Queue(), []
    for mutant in mutants:
        waiting.put(mutant)

    def work(number):
        try:
            tree = prepared_tree(number)
            while not problems:
                mutant = waiting.get_nowait()
                results[mutant.number] = outcome(tree, mutant)
                announce(mutant, results[mutant.number])
        except queue.Empty:
            pass
        except Exception as problem:  # for the main thread to end with
            problems.append(problem)

    workers = [threading.Thread(target=work, args=(number,), daemon=True) for number in range(1, jobs + 1)]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    if problems:
        sys.exit(f"mutants.py: {problems[0]}")
    return results


def outcome(tree, mutant):
    file = tree / mutant.file
    original = file.read_text() if file.exists() else ""
    change = mutated(original, mutant)
    if change is None:
        return Result(NOT_APPLIED, "its lines do not stand there once", None)
    text, line = change
    file.write_text(text)
    try:
        return Result(*first_failure(tree, mutant), line)
    finally:
        file.write_text(original)


def first_failure(tree, mutant):
    for program in programs(mutant.file):
        log = built(tree, [program])
        if log is not None:
            return NOT_BUILT, first_error(log)
        run = run_tests(tree, program)
        if run.failed:
            return (KILLED if run.detail else TIMEOUT), run.detail or f"{program} did not end"
    return SURVIVED, "no test broke"


def programs(file):
    """The test programs, those first that are quick and most likely break."""
    folder = file.split("/")[0]
    others = [f"{name}_test" for name in FOLDERS if name != folder]
    return [f"{folder}_test", LOADS_THE_PLUGIN, *others]


def run_tests(tree, program, *more):
    """Whether a test failed, and the first one that did; no name when the program did not end."""
    limits = ["prlimit", f"--data={BYTES_PER_PROGRAM}", "--core=0"]
    # RapidCheck looks at no random sample then.
    surroundings = {**os.environ, "RC_PARAMS": "max_success=0"}
    command = [*limits, tree / "build/release/bin" / program, "--gtest_brief=1", "--gtest_fail_fast", *more]
    try:
        ended = subprocess.run(command, cwd=tree, env=surroundings, timeout=SECONDS_PER_PROGRAM, text=True,
                               errors="replace", stdout=subprocess.PIPE, stderr=subprocess.STDOUT)  # fmt: skip
    except subprocess.TimeoutExpired:
        return Run(True, "")
    if ended.returncode == 0:
        return Run(False, "")
    failed = re.search(r"^\[  FAILED  \] ([^\s,]+)", ended.stdout, re.MULTILINE)
    if failed:
        return Run(True, failed[1])
    started = re.findall(r"^\[ RUN      \] (\S+)", ended.stdout, re.MULTILINE)
    if started:
        return Run(True, f"{started[-1]} (the program crashed)")
    # It crashed before it could name the test: once more, with every test told when it starts.
    return Run(True, f"{program} crashed") if more else run_tests(tree, program, "--gtest_brief=0")


# --- The copy of the sources ------------------------------------------------------------------------------------------


def prepared_tree(number):
    """A copy of the sources as they stand, built, in which all tests pass."""
    tree = WORK / f"tree-{number}"
    copy_sources(tree)
    configure = ["cmake", "--preset", "release", f"-DTEST_FOLDERS={';'.join([*FOLDERS, 'procedure'])}"]
    configured = subprocess.run(configure, cwd=tree, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    if configured.returncode != 0:
        raise RuntimeError(f"the sources cannot be configured\n{configured.stdout}")
    everything = programs(FOLDERS[0])
    log = built(tree, everything)
    if log is not None:
        raise RuntimeError(f"the sources do not build without a mutant\n{log}")
    for program in everything:
        run = run_tests(tree, program)
        if run.failed:
            raise RuntimeError(f"without a mutant {program} fails: {run.detail or 'it does not end'}")
    return tree


def copy_sources(tree):
    """What git knows or would take, as it stands. What is the same already keeps its time, so that little is built."""
    listed = ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"]
    names = {name for name in subprocess.check_output(listed, cwd=ROOT, text=True).split("\0") if name}
    names = {name for name in names if (ROOT / name).is_file()}
    for name in names:
        source, target = ROOT / name, tree / name
        if not target.exists() or target.read_bytes() != source.read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, target)
    for target in tree.rglob("*"):
        name = target.relative_to(tree)
        if name.parts[0] != "build" and target.is_file() and str(name) not in names:
            target.unlink()
    packages = tree / "build/npm"
    packages.parent.mkdir(exist_ok=True)
    if not packages.exists() and (ROOT / "build/npm").exists():
        packages.symlink_to(ROOT / "build/npm")


def built(tree, targets):
    """Nothing when the targets were built, else what was said."""
    command = ["cmake", "--build", "build/release", "--target", *targets]
    ended = subprocess.run(command, cwd=tree, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return None if ended.returncode == 0 else ended.stdout


def first_error(log):
    errors = re.findall(r"error: (.*)", log)
    return errors[0] if errors else "the build failed"


# --- What is said of it -----------------------------------------------------------------------------------------------


def announce(mutant, result):
    place = f"{mutant.file}:{result.line}" if result.line else mutant.file
    print(f"{mutant.number:4}  {result.outcome:14}  {place:36}  {result.detail}", flush=True)


def report(mutants, results, seconds):
    counts = collections.Counter(result.outcome for result in results.values())
    summary = ", ".join(f"{count} {outcome}" for outcome, count in counts.items())
    print(f"\n{len(results)} mutants in {seconds:.0f} s: {summary}")
    for mutant in mutants:
        result = results[mutant.number]
        if result.outcome not in (KILLED, TIMEOUT):
            print(f"{mutant.number}: {result.outcome}. {mutant.file}: {mutant.wrong} ({result.detail})")


def page(mutants, results):
    killed = sum(result.outcome in (KILLED, TIMEOUT) for result in results.values())
    commit = git("rev-parse", "--short", "HEAD")
    if git("status", "--porcelain", "--", *FOLDERS, "host", "workbench", "tests"):
        commit += " with changes that were not committed"
    lines = [
        "# Mutants",
        "",
        f"{killed} of {len(mutants)} small wrong changes of the plug-in break a test. Written by",
        f"`./dev check --mutants` on {datetime.date.today()}, at commit {commit}.",
        "",
        "Each change of `tools/mutants/mutants.txt` was made by itself in a copy of the sources. Then the plug-in's unit",
        "tests and the tests that load it were run until one failed; tests over random data were left out.",
        "",
        "| | where | what is wrong then | the test that broke |",
        "|---|---|---|---|",
    ]
    for mutant in mutants:
        result = results[mutant.number]
        place = f"`{mutant.file}`" if result.line is None else f"`{mutant.file}:{result.line}`"
        broke = result.detail if result.outcome == KILLED else f"**{result.outcome}**: {result.detail}"
        lines.append(f"| {mutant.number} | {place} | {mutant.wrong} | {broke} |")
    return "\n".join(lines) + "\n"


def git(*arguments):
    return subprocess.check_output(["git", *arguments], cwd=ROOT, text=True).strip()


if __name__ == "__main__":
    main()

"""Two functions of the procedure leave something behind on purpose; nothing else may.

leaks_test.py PROGRAM SUPPRESSIONS: runs the program, built with the leak sanitizer, with and without the suppressions.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

OPTIONS, COMPARISON = "makeOptionsThatStay", "compdatas::openComparison"
OPEN = "OPEN DATA FILE='b.csv' NAME=b.\nOPEN DATA FILE='a.csv' NAME=a.\n"
JOBS = {  # what is run, the functions that leave something behind then
    "a comparison": (OPEN + "COMPARE DATASETS /COMPDATASET=b /VARIABLES=ALL /CASEID=id.\n", {OPTIONS}),
    "a comparison with a file": (OPEN + "COMPARE DATASETS /COMPDATASET='b.csv' /VARIABLES=ALL /CASEID=id.\n", {OPTIONS}),
    "case IDs of an open dataset that do not match": (
        OPEN + "COMPARE DATASETS /COMPDATASET=b /VARIABLES=ALL /CASEID=only.\n", {OPTIONS, COMPARISON}),
    "case IDs of a file that do not match": (
        OPEN + "COMPARE DATASETS /COMPDATASET='b.csv' /VARIABLES=ALL /CASEID=only.\n", {OPTIONS, COMPARISON}),
    "a refused name": (OPEN + "COMPARE DATASETS /COMPDATASET=a /VARIABLES=ALL.\n", {OPTIONS}),
    "a syntax error": (OPEN + "COMPARE DATASETS /NOTHING.\n", {OPTIONS}),
    "no comparison": (OPEN + "DESCRIBE DATA.\n", set()),
}  # fmt: skip


def main():
    program, suppressions = sys.argv[1], pathlib.Path(sys.argv[2])
    named = set(re.findall(r"^leak:(\S+)$", suppressions.read_text(), re.M))
    expect("the suppressions", named, {OPTIONS, COMPARISON})
    with tempfile.TemporaryDirectory() as folder:
        pathlib.Path(folder, "a.csv").write_text("id,x,only\n1,2,3\n2,3,4\n")
        pathlib.Path(folder, "b.csv").write_text("id,x\n1,2\n2,4\n")
        for name, (job, leaving) in JOBS.items():
            expect(name, leaks(program, folder, job, ""), leaving)
            expect(name + ", suppressed", leaks(program, folder, job, f"suppressions={suppressions}"), set())


def leaks(program, folder, job, options):
    """The functions that the direct leaks of a run come from; other leaks by the top of their stacks."""
    environment = {**os.environ, "LSAN_OPTIONS": options, "ASAN_OPTIONS": "detect_leaks=1"}
    run = subprocess.run([program, "run", "-", "-q"], input=job, capture_output=True, text=True, cwd=folder,
                         env=environment)  # fmt: skip
    found = set()
    for stack in re.findall(r"^Direct leak of .*?(?=\n\n)", run.stderr, re.M | re.S):
        frames = [function for function in (OPTIONS, COMPARISON) if function in stack]
        found.add(frames[0] if frames else stack)
    return found


def expect(what, found, wanted):
    if found != wanted:
        sys.exit(f"{what}: found {sorted(found)}, expected {sorted(wanted)}")


if __name__ == "__main__":
    main()

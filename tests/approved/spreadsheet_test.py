#!/usr/bin/env python3
"""LibreOffice reads every cell of our workbooks as it is written.

Usage: spreadsheet_test.py PROGRAM ROOT. Ends with 77, which ctest takes for skipped, where there is no LibreOffice.
"""

import csv
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

# Comma, quote, UTF-8, from the first line, no formats, no language, quotes where needed, values as they are and not as
# shown, no formulas, blanks kept, all sheets.
EXPORT = "csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,false,false,false,false,-1"
COMPARISONS = {
    "demo": ("examples", ["entry1.csv", "entry2.csv", "--id", "id", "--limit", "20"]),
    "hostile": ("tests/approved/hostile", ["a.csv", "b.csv", "--id", "id"]),
}


def cells_written(root, workbook):
    reader = root / "tests/support/xlsx_text.py"
    run = subprocess.run([sys.executable, "-B", reader, "--cells", workbook], check=True, capture_output=True, text=True)
    return json.loads(run.stdout)


def cells_shown(folder, workbook):
    """Per sheet the rows that LibreOffice exports."""
    out = folder / "csv"
    profile = f"-env:UserInstallation=file://{folder}/profile"
    command = ["soffice", profile, "--headless", "--convert-to", EXPORT, "--outdir", out, workbook]
    subprocess.run(command, check=True, capture_output=True, timeout=300)
    sheets = {}
    for file in out.iterdir():
        with open(file, encoding="utf-8", newline="") as lines:
            sheets[file.stem.removeprefix(workbook.stem + "-")] = list(csv.reader(lines))
    return sheets


def place(name):
    letters, row = re.fullmatch(r"([A-Z]+)(\d+)", name).groups()
    column = 0
    for letter in letters:
        column = column * 26 + ord(letter) - ord("A") + 1
    return int(row) - 1, column - 1


def is_same(written, shown):
    if isinstance(written, str):
        return written == shown
    share = 100 if shown.endswith("%") else 1
    try:
        return abs(float(shown.removesuffix("%")) / share - written) <= 1e-12 * max(1.0, abs(written))
    except ValueError:
        return False


def compare(program, root, name, folder):
    data, arguments = COMPARISONS[name]
    workbook = folder / f"{name}.xlsx"
    run = subprocess.run([program, "compare", *arguments, "--lang", "en", "-o", workbook], cwd=root / data, capture_output=True)
    assert run.returncode == 1, run.stderr
    written, shown = cells_written(root, workbook), cells_shown(folder, workbook)
    assert len(written) == len(shown), (list(written), list(shown))
    cells = problems = 0
    for (sheet, expected), rows in ((one, shown_sheet(shown, one[0])) for one in written.items()):
        for at, value in expected.items():
            row, column = place(at)
            there = rows[row][column] if row < len(rows) and column < len(rows[row]) else ""
            cells += 1
            if not is_same(value, there):
                problems += 1
                print(f"{name}: {sheet}!{at}: {value!r} is written, {there!r} is shown")
    assert cells > 50, cells
    print(f"{name}: {cells} cells on {len(written)} sheets")
    return problems


def shown_sheet(shown, name):
    """Names of files may lack what a folder cannot hold."""
    return shown[name] if name in shown else shown[name.replace("/", "_")]


def main():
    program, root = sys.argv[1], pathlib.Path(sys.argv[2])
    if shutil.which("soffice") is None:
        print("skipped: LibreOffice is not installed")
        return 77
    problems = 0
    for name in COMPARISONS:
        with tempfile.TemporaryDirectory(prefix="compare-datasets-test-") as folder:
            problems += compare(program, root, name, pathlib.Path(folder))
    return 1 if problems else 0


sys.exit(main())

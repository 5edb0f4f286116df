"""The figures that are kept in the repository: bench/kept.json, and the tables of docs/performance.md made of it."""

import json

from machine import ROOT
from report import guard_lines, shape_lines
from shapes import SHAPES

FILE = ROOT / "bench/kept.json"
PAGE = ROOT / "docs/performance.md"
BEGIN, END = "<!-- figures: written by ./dev bench --keep -->", "<!-- end of figures -->"


def read():
    return json.loads(FILE.read_text()) if FILE.exists() else {"shapes": [], "guard": {}}


def keep(rows, guard):
    """Puts the rows and the guard's figures in the place of those of the same shapes and tools."""
    kept = read()
    measured = {row["shape"]: row for row in [*kept["shapes"], *rows]}
    kept["shapes"] = [measured[shape.name] for shape in SHAPES if shape.name in measured]
    if "ratio" in guard:
        kept["guard"]["ratio"] = guard["ratio"]
    kept["guard"].setdefault("instructions", {}).update(guard.get("instructions", {}))
    FILE.write_text(json.dumps(kept, indent=2, ensure_ascii=False) + "\n")
    PAGE.write_text(page(PAGE.read_text(), kept))


def page(text, kept):
    """The page with the kept figures between its two marks."""
    before, rest = text.split(BEGIN)
    _, after = rest.split(END)
    lines = ["", *shape_lines(kept["shapes"]), "", *guard_lines(kept["guard"]), ""]
    return "\n".join([before + BEGIN, *lines, END + after])

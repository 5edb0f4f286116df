"""The generated files: made when they are first needed, and again when they would turn out otherwise."""

import hashlib
import json
import subprocess
from dataclasses import dataclass
from pathlib import Path

from shapes import Shape

SIDES = ("a", "b")


@dataclass(frozen=True)
class Input:
    """Two files a.csv and b.csv in a folder of their own, and what is true of them."""

    shape: Shape
    rows: int
    folder: Path
    truth: dict

    @property
    def differs(self):
        return any(self.truth[kind] != 0 for kind in ("differingPairs", "onlyInFirst", "onlyInSecond"))


def generated(shape, rows, seed, build, work):
    """The files of a shape; rows and seed are part of what their folder is called."""
    generator = build / "bin/bench_generate"
    options = [f"--rows={rows}", f"--variables={shape.variables}", f"--seed={seed}", *shape.generator]
    folder = work / f"{shape.name}-{rows}-{seed}"
    # Another program may make other files of the same options.
    making = {"options": options, "generator": hashlib.sha256(generator.read_bytes()).hexdigest(),
              "storage": shape.storage.making}  # fmt: skip
    mark = folder / "made.json"
    if not mark.exists() or json.loads(mark.read_text()) != making:
        folder.mkdir(parents=True, exist_ok=True)
        mark.unlink(missing_ok=True)
        subprocess.run([generator, *options, f"--folder={folder}"], check=True)
        if shape.storage.file:
            for side in SIDES:
                store(shape.storage, side, build, folder)
        mark.write_text(json.dumps(making))
    return Input(shape, rows, folder, json.loads((folder / "truth.json").read_text()))


def store(storage, side, build, folder):
    """Makes what is kept otherwise of a text file, which goes then."""
    (folder / storage.file.replace("SIDE", side)).unlink(missing_ok=True)
    statement = folder / "store.sql"
    statement.write_text(storage.making.replace("SIDE", side))
    subprocess.run([build / "bin/bench_duckdb_join", statement], check=True, cwd=folder, stdout=subprocess.DEVNULL)
    (folder / f"{side}.csv").unlink()

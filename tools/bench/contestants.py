"""Who says what differs between two files: this program, and DuckDB. Both answers are held against the truth."""

import json
import re
from dataclasses import dataclass
from pathlib import Path
from typing import Callable

from inputs import SIDES
from shapes import TEXT

SQL = Path(__file__).resolve().parents[2] / "bench/sql"
DUCKDB_THREADS = 2


class WrongAnswer(Exception):
    pass


@dataclass(frozen=True)
class Contestant:
    """A command that is run in the folder of the files, its standard output in output.txt, its notes in notes.txt."""

    name: str
    command: list
    status: int  # the only good one
    answer: Callable  # of the folder, after a run

    def check(self, files):
        answer, truth = self.answer(files.folder), files.truth
        wrong = {key: (answer[key], truth[key]) for key in answer if answer[key] != truth[key]}
        if wrong:
            raise WrongAnswer(f"{self.name} gives another answer than the truth (answer, truth): {wrong}")


def contestants(files, build):
    """This program, then DuckDB."""
    return ours(files, build), duckdb(files, build)


# --- This program -----------------------------------------------------------------------------------------------------


def ours(files, build):
    # By default it brings cases into the order of their IDs where that is needed.
    pairing = ["--id", "id"] if files.shape.has_key else []
    data = [files.shape.storage.data.replace("SIDE", side) for side in SIDES]
    command = [build / "bin/compare-datasets", "compare", *data, *pairing, "--format", "json"]
    command += ["-o", "results.json"]
    return Contestant("compare-datasets", command, 1 if files.differs else 0, document_answer)


def document_answer(folder):
    document = json.loads((folder / "results.json").read_text())
    tables = {item["key"]: cells_of(item) for command in document["commands"] for item in command["items"]
              if item["item"] == "table" and item["cells"]}  # fmt: skip
    matched = tables["CD_MatchedSummaryTableName"]
    answer = {
        "pairs": matched["CD_CasesCompared", "CD_Count", "CD_Active"],
        "onlyInFirst": matched["CD_CasesNotCompared", "CD_Count", "CD_Active"],
        "onlyInSecond": matched["CD_CasesNotCompared", "CD_Count", "CD_Comparison"],
    }
    if document["verdict"] == "same":  # then there are no tables of mismatches
        return {**answer, "differingPairs": 0}
    by_cases = tables["CD_MismatchedByCasesTableName"]
    by_variables = tables["CD_MismatchedByVarsTableName"]
    counts = {name: count for (name, kind), count in by_variables.items() if kind == "CD_Count"}
    if counts.get("id") == 0:  # the truth is about the variables beside the ID
        del counts["id"]
    return {**answer, "differingPairs": by_cases["CD_CasesContainingMismatches", "CD_Count"], "mismatches": counts}


def cells_of(table):
    """The numbers of a table by the keys (or variable names) of their categories, one per dimension."""
    leaves = [list(leaf_titles(dimension["categories"])) for dimension in table["dimensions"]]
    return {
        tuple(titles[at] for titles, at in zip(leaves, cell["at"])): cell["content"].get("value")
        for cell in table["cells"]
    }


def leaf_titles(categories):
    for category in categories:
        if category.get("group"):
            yield from leaf_titles(category["categories"])
        else:
            title = category["title"]
            yield title["name"] if title["kind"] == "variable" else title.get("key")


# --- DuckDB -----------------------------------------------------------------------------------------------------------


def duckdb(files, build):
    query = files.folder / "query.sql"
    template = stored((SQL / files.shape.query).read_text(), files.shape.storage)
    query.write_text(filled(template, list(files.truth["mismatches"])))
    return Contestant("DuckDB", [build / "bin/bench_duckdb_join", query, DUCKDB_THREADS], 0, sql_answer)


def stored(template, storage):
    """The template with the tables as they are stored."""
    for side in SIDES:
        template = template.replace(TEXT.table.replace("SIDE", side), storage.table.replace("SIDE", side))
    return "\n".join([storage.before.replace("SIDE", side) for side in SIDES if storage.before] + [template])


def filled(template, variables):
    """The template with its marked parts repeated for each of the variables, or for the numeric ones: n1, n2, ..."""
    names = {"variable": variables, "number": [variable for variable in variables if variable.startswith("n")]}

    def repeated(part):
        kind, joint, text = part.groups()
        return joint.join(text.replace("VARIABLE", name) for name in names[kind])

    return re.sub(r'/\* each (variable|number), "([^"]+)" \*/(.*?)/\* end \*/', repeated, template, flags=re.DOTALL)


def sql_answer(folder):
    row = json.loads((folder / "output.txt").read_text())
    answer = {key: row.pop(key) for key in ("pairs", "differingPairs", "onlyInFirst", "onlyInSecond")}
    return {**answer, "mismatches": row}

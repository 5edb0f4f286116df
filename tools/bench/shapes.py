"""The shapes of input that are measured."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Shape:
    name: str
    what: str
    rows: int
    variables: int = 10  # the ID is one of them
    target: float = 1.0  # the time of this program in times of DuckDB's that is not to be exceeded
    generator: tuple = ()  # further options of bench_generate
    has_key: bool = True  # whether cases are paired by their IDs
    query: str = "by_key.sql"  # what is asked of DuckDB: a template of bench/sql
    is_default: bool = False  # whether ./dev bench measures it unless told otherwise


SHAPES = (
    Shape("million", "many cases", 1_000_000, is_default=True),
    # With fewer strings, so that a line has the length that files of so many variables use to have.
    Shape("wide", "200 variables", 100_000, 200, generator=("--strings=40",), is_default=True),
    Shape("ten-million", "very many cases", 10_000_000),
    Shape("unsorted", "both sides in any order", 1_000_000, generator=("--shuffled",), is_default=True),
    Shape("string-key", "an ID of 12 letters", 200_000, generator=("--key=string",)),
    Shape("by-position", "no ID", 200_000, generator=("--key=none",), has_key=False, query="by_position.sql"),
    Shape("all-different", "every pair differs", 200_000, generator=("--differing=100",)),
    Shape("same", "nothing differs", 200_000, generator=("--differing=0", "--unpaired=0")),
    Shape("strings", "strings only, beside the ID", 200_000, generator=("--strings=9",)),
    Shape("notations", "1.50 here and 15e-1 there", 200_000, generator=("--varied-notation",),
          query="by_key_with_types.sql"),  # fmt: skip
    Shape("very-wide", "2,000 variables", 5_000, 2_000),
)


def shape_named(name):
    return next(shape for shape in SHAPES if shape.name == name)

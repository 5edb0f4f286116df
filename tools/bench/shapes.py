"""The shapes of input that are measured."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Storage:
    """What the cases are kept in, and how SQL makes it of a text file and reads it; SIDE is a or b."""

    data: str  # as this program names it
    file: str = ""  # that has to be made of SIDE.csv; none for the text files themselves
    making: str = ""
    before: str = ""  # the query
    table: str = ""


TEXT = Storage("SIDE.csv", table="read_csv('SIDE.csv')")
PARQUET = Storage("SIDE.parquet", "SIDE.parquet", table="read_parquet('SIDE.parquet')",
                  making="COPY (FROM read_csv('SIDE.csv')) TO 'SIDE.parquet'")  # fmt: skip
DUCKDB = Storage("SIDE.duckdb#cases", "SIDE.duckdb", before="ATTACH 'SIDE.duckdb' AS of_SIDE (READ_ONLY);",
                 table="of_SIDE.cases",
                 making="ATTACH 'SIDE.duckdb' AS of_SIDE;"
                        "CREATE TABLE of_SIDE.cases AS FROM read_csv('SIDE.csv')")  # fmt: skip


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
    storage: Storage = TEXT
    is_default: bool = False  # whether ./dev bench measures it unless told otherwise


SHAPES = (
    Shape("million", "many cases", 1_000_000, target=0.40, is_default=True),
    # With fewer strings, so that a line has the length that files of so many variables use to have.
    Shape("wide", "200 variables", 100_000, 200, target=0.30, generator=("--strings=40",), is_default=True),
    Shape("ten-million", "very many cases", 10_000_000, target=0.45),
    Shape("unsorted", "both sides in any order", 1_000_000, target=0.90, generator=("--shuffled",), is_default=True),
    Shape("string-key", "an ID of 12 letters", 200_000, generator=("--key=string",)),
    Shape("by-position", "no ID", 200_000, generator=("--key=none",), has_key=False, query="by_position.sql"),
    Shape("all-different", "every pair differs", 200_000, generator=("--differing=100",)),
    Shape("same", "nothing differs", 200_000, generator=("--differing=0", "--unpaired=0")),
    Shape("strings", "strings only, beside the ID", 200_000, generator=("--strings=9",)),
    Shape("notations", "1.50 here and 15e-1 there", 200_000, target=0.40, generator=("--varied-notation",),
          query="by_key_with_types.sql"),  # fmt: skip
    Shape("very-wide", "2,000 variables", 5_000, 2_000),
    Shape("parquet", "from Parquet files", 1_000_000, target=0.60, storage=PARQUET),
    Shape("duckdb", "from tables of DuckDB databases", 1_000_000, storage=DUCKDB),
    Shape("large-parquet", "Parquet files of 20 million cases", 20_000_000, 20, storage=PARQUET),
)


def shape_named(name):
    return next(shape for shape in SHAPES if shape.name == name)

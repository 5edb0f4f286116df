"""The table of what was measured: a line per shape, on the terminal and on the page."""

from limits import COMMANDS, INSTRUCTIONS_ALLOWED, RATIO_ALLOWED, RATIO_ROWS

DISTURBED = 0.1  # processors that are busy with something else: from there on figures are not to be relied on
COLUMNS = (
    ("shape", "<13"),
    ("cases x variables", ">18"),
    ("compare-datasets", ">25"),
    ("DuckDB", ">25"),
    ("ratio", ">6"),
    ("target", ">7"),
    ("", "<7"),
    ("memory", ">9"),
    ("DuckDB's", ">9"),
)


def heading():
    return "".join(f"{title:{layout}}" for title, layout in COLUMNS)


def line(row):
    return "".join(f"{text:{layout}}" for text, (_, layout) in zip(texts(row), COLUMNS)).rstrip()


def texts(row):
    """The cells of one line; the row is one of kept.json."""
    return (
        row["shape"],
        f"{row['cases']:,} x {row['variables']:,}",
        time_text(row["ours"]),
        time_text(row["duckdb"]),
        f"{row['ratio']:.2f}",
        f"{row['target']:.2f}",
        "  met" if is_met(row) else "  missed",
        memory_text(row["ours"]),
        memory_text(row["duckdb"]),
    )


def is_met(row):
    return row["ratio"] <= row["target"]


def time_text(figures):
    return f"{figures['median']:.2f} s ({figures['fastest']:.2f}–{figures['slowest']:.2f})"


def memory_text(figures):
    return f"{figures['memory'] / 2**20:.0f} MiB"


def closing(rows):
    """What is to be known of the rows, below the table."""
    yield "Median (fastest to slowest) of the runs; every answer of every run was the truth."
    yield "Memory: the highest of all runs, looked at every 2 ms, without pages of files."
    for row in rows:
        if row["otherWork"] >= DISTURBED:
            yield (
                f"{row['shape']}: not to be relied on, other work kept {row['otherWork']:.1f} processors busy "
                f"(ratio of processor times: {row['processorRatio']:.2f})."
            )


# --- The page ---------------------------------------------------------------------------------------------------------


def shape_lines(rows):
    """The table in Markdown."""
    yield "| shape | cases × variables | compare-datasets | DuckDB | ratio | target | | memory | DuckDB's | measured |"
    yield "|---|--:|--:|--:|--:|--:|---|--:|--:|---|"
    for row in rows:
        cells = [cell.strip() for cell in texts(row)]
        cells[0] = f"`{cells[0]}`"
        cells[1] = cells[1].replace(" x ", " × ")
        cells.append(row["date"] + (" *" if row["otherWork"] >= DISTURBED else ""))
        yield "| " + " | ".join(cells) + " |"
    yield ""
    for where in sorted({row["machine"] for row in rows}):
        yield f"Measured on: {where}."
    for row in rows:
        if row["otherWork"] >= DISTURBED:
            yield ""
            yield (
                f"\\* `{row['shape']}`: other work kept {row['otherWork']:.1f} processors busy meanwhile; the ratio of "
                f"processor times is {row['processorRatio']:.2f}."
            )


def guard_lines(guard):
    """What the guard holds, in Markdown."""
    yield "| the guard holds | kept | allowed |"
    yield "|---|--:|--:|"
    if "ratio" in guard:
        ratio = guard["ratio"]
        yield f"| times as long as DuckDB, {RATIO_ROWS:,} cases | {ratio:.2f} | {ratio * RATIO_ALLOWED:.2f} |"
    for tools, counts in guard.get("instructions", {}).items():
        for command, count in counts.items():
            yield (
                f"| instructions, {COMMANDS[command]}; {tools} | {count:,} | {count * INSTRUCTIONS_ALLOWED:,.0f} |"
            )

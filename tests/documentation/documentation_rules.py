"""What the documentation shows and names is there.

Usage: documentation_rules.py excerpts|names ROOT PAGE..., documentation_rules.py transcripts ROOT BUILD PAGE..., or
documentation_rules.py members SCHEMA PAGE. Prints every place that breaks the rule; 1 when there is one.

A block of code on a page is one of three:

  ```cpp examples/missing_counts/missing_counts.cpp     lines as they stand, one after the other, in that file
  ```text                                               a transcript: its first line is a command, the lines below are
  $ ../build/release/bin/compare-datasets ...           printed by it, one after the other, when it is run in examples/
  ```json more                                          further lines that the last command printed
"""

import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
from dataclasses import dataclass

PROGRAM = "../build/release/bin/compare-datasets"
# Where the names stand that pages put between backticks.
NAMED_IN = ("host", "examples/missing_counts", "plugin", "driver", "procedures", "tests/program", "tests/procedure", "workbench/app", "bench")
FOLDERS = ("host", "examples", "plugin", "procedures", "driver", "syntax", "engine", "tables", "tests", "workbench", "cmake", "docs",
           "bench", "tools")  # fmt: skip


@dataclass
class Block:
    place: str  # page:line
    info: list  # the words behind the fence
    lines: list


def blocks_of(page):
    block = None
    for number, line in enumerate(page.read_text(encoding="utf-8").splitlines(), 1):
        if block is None and line.startswith("```"):
            block = Block(f"{page.name}:{number}", line[3:].split(), [])
        elif block is not None and line == "```":
            yield block
            block = None
        elif block is not None:
            block.lines.append(line)
    if block is not None:
        yield Block(block.place, ["never", "closed"], [])


def is_transcript(block):
    return len(block.info) == 1 and bool(block.lines) and block.lines[0].startswith("$ ")


def is_more(block):
    return len(block.info) == 2 and block.info[1] == "more"


def stands_in(lines, text):
    """Whether the lines stand in the text, whole and one after the other."""
    return bool(lines) and "\n" + "\n".join(lines) + "\n" in "\n" + text + "\n"


def broken_excerpts(root, pages):
    found = 0
    for block in (block for page in pages for block in blocks_of(page)):
        if is_transcript(block) or is_more(block):
            continue
        if len(block.info) != 2:
            yield f"{block.place}: a block that names no file and is no transcript"
            continue
        found += 1
        file = root / block.info[1]
        if not file.is_file():
            yield f"{block.place}: there is no file {block.info[1]}"
        elif not stands_in(block.lines, file.read_text(encoding="utf-8")):
            yield f"{block.place}: this does not stand in {block.info[1]}"
    if found == 0:
        yield "no excerpt was found on any page"


def broken_transcripts(root, build, pages):
    found = 0
    for page in pages:
        printed = None
        for block in blocks_of(page):
            if is_transcript(block):
                found += 1
                printed = printed_by(block.lines[0][2:], root, build)
                lines = block.lines[1:]
            elif is_more(block):
                lines = block.lines
            else:
                continue
            if printed is None:
                yield f"{block.place}: there is no command of the program before it"
            elif not stands_in(lines, printed):
                yield f"{block.place}: the command does not print this; it prints\n{printed}"
    if found == 0:
        yield "no transcript was found on any page"


def printed_by(command, root, build):
    """Both streams; None when it is another program's command."""
    words = shlex.split(command)
    if words[0] != PROGRAM:
        return None
    words = [re.sub(r"^\.\./build/release/", str(build) + "/", word) for word in words]
    environment = {name: value for name, value in os.environ.items() if name not in ("COLUMNS", "LANG", "LC_MESSAGES")}
    run = subprocess.run(words, cwd=root / "examples", env={**environment, "LC_ALL": "C.UTF-8"},
                         stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8")  # fmt: skip
    return run.stdout


def unknown_names(root, pages):
    known = set()
    for folder in NAMED_IN:
        for file in sorted((root / folder).rglob("*")):
            if file.is_file():
                known.update(re.findall(r"\w+", file.read_text(encoding="utf-8", errors="replace")))
    found = 0
    for page in pages:
        for place, span in spans_of(page):
            if re.fullmatch(r"[\w.-]+(/[\w.-]+)+/?|[\w-]+\.(md|json|py|cpp|h|txt|job)", span):
                found += 1
                beside = (page.parent / span, root / span)
                if span.split("/")[0] in FOLDERS + (span,) and not any(path.exists() for path in beside):
                    yield f"{place}: there is no {span}"
            elif re.fullmatch(r"[A-Za-z_]\w*(::\w+)*(\(\))?", span) and re.search(r"[A-Z_(:]", span):
                found += 1
                name = re.findall(r"\w+", span)[-1]
                if name not in known:
                    yield f"{place}: no source names {name}"
        for place, target in links_of(page):
            if not (page.parent / target).exists():
                yield f"{place}: a link to {target}, which is not there"
    if found == 0:
        yield "no name was found on any page"


def text_lines(page):
    """The lines outside of blocks."""
    inside = False
    for number, line in enumerate(page.read_text(encoding="utf-8").splitlines(), 1):
        if line.startswith("```"):
            inside = not inside
        elif not inside:
            yield f"{page.name}:{number}", line


def spans_of(page):
    for place, line in text_lines(page):
        for span in re.findall(r"`([^`]+)`", line):
            yield place, span


def links_of(page):
    for place, line in text_lines(page):
        for target in re.findall(r"\]\(([^)#]+)(?:#[^)]*)?\)", line):
            yield place, target


def unnamed_members(schema_file, page):
    """The members and the words of the schema that the page does not name between backticks."""
    schema = json.loads(schema_file.read_text(encoding="utf-8"))
    wanted = set()

    def gather(part):
        if isinstance(part, list):
            for one in part:
                gather(one)
        if not isinstance(part, dict):
            return
        wanted.update(part.get("properties", {}))
        wanted.update(word for word in part.get("enum", []) + [part.get("const")] if isinstance(word, str))
        for one in part.values():
            gather(one)

    gather(schema)
    named = {word for _, span in spans_of(page) for word in re.findall(r"[\w.-]+", span)}
    if not wanted:
        yield "the schema names nothing"
    for word in sorted(wanted - named):
        yield f"{page.name}: {word} is not explained"


if __name__ == "__main__":
    rule, *arguments = sys.argv[1:]
    paths = [pathlib.Path(argument).resolve() for argument in arguments]
    if rule == "excerpts":
        breaches = list(broken_excerpts(paths[0], paths[1:]))
    elif rule == "transcripts":
        breaches = list(broken_transcripts(paths[0], paths[1], paths[2:]))
    elif rule == "names":
        breaches = list(unknown_names(paths[0], paths[1:]))
    else:
        breaches = list(unnamed_members(paths[0], paths[1]))
    print("\n".join(breaches))
    sys.exit(1 if breaches else 0)

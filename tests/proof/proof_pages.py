"""The pages under docs/proof/ as the sources bear them out: what they name is there.

Usage: proof_pages.py ROOT. Prints every row that names a test, a file or a function that does not exist, every row
without one, every page that the index leaves out and every source file of the plug-in that no row names; 1 when it
printed any.

A row is `| behaviour | code | tests |`. Code: a file in backticks, behind it the names in it, each in backticks. Tests:
names in backticks, Suite.Name, with /Instance behind it where one instance of a parametrised test is meant.
"""

import pathlib
import re
import sys

PLUGIN_FOLDERS = ("driver", "syntax", "engine", "tables")
TICKED = re.compile(r"`([^`]+)`")


def broken(root):
    pages = sorted((root / "docs/proof").glob("*.md"))
    tests = Tests(root)
    named_files = set()
    for page in pages:
        if page.name == "README.md":
            continue
        rows = list(rows_of(page))
        if not rows:
            yield f"{page.name}: there is no row"
        for number, cells in rows:
            for fault in faults_of(root, cells, tests, named_files):
                yield f"{page.name}:{number}: {fault}"
    yield from missing_in_index(pages)
    for folder in PLUGIN_FOLDERS:
        for source in sorted((root / folder).glob("*.cpp")):
            if str(source.relative_to(root)) not in named_files:
                yield f"no row names {source.relative_to(root)}"


def rows_of(page):
    """Number and cells of every row but a table's first two lines."""
    before = ""
    for number, line in enumerate(page.read_text().splitlines(), 1):
        is_row = line.startswith("|")
        is_head = is_row and not before.startswith("|")
        if is_row and not is_head and not re.fullmatch(r"[|\s:-]+", line):
            yield number, [cell.strip() for cell in re.split(r"(?<!\\)\|", line)[1:-1]]
        before = line


def faults_of(root, cells, tests, named_files):
    if len(cells) != 3:
        yield f"{len(cells)} cells instead of behaviour, code and tests"
        return
    behaviour, code, proof = cells
    if not behaviour:
        yield "a row without a behaviour"
    yield from faults_of_code(root, code, named_files)
    names = TICKED.findall(proof)
    if not names:
        yield "a row without a test"
    for name in names:
        if not tests.has(name):
            yield f"there is no test {name}"
    for name in {name for name in names if names.count(name) > 1}:
        yield f"{name} is named twice"


def faults_of_code(root, code, named_files):
    text, names, file = None, 0, ""
    for ticked in TICKED.findall(code) + ["/"]:
        if "/" not in ticked:
            names += 1
            if text is None:
                yield f"{ticked} stands before any file"
            elif not is_defined(ticked, text, file.endswith(".h")):
                yield f"there is no {ticked} in {file}"
            continue
        if text and not names and re.search(r"\.(cpp|h)$", file):
            yield f"{file} without a name in it"
        if ticked == "/":
            break
        file, names = ticked, 0
        named_files.add(file)
        if (root / file).is_file():
            text = re.sub(r"//[^\n]*", "", (root / file).read_text())
        else:
            text = ""
            yield f"there is no file {file}"
    if not file:
        yield "a row without code"


def is_defined(name, text, in_header):
    """Whether a source (without comments) defines, or a header declares, that function, type, alias or constant."""
    bare = re.escape(name.split("::")[-1])
    if re.search(rf"\b(struct|class|enum|enum class)\s+(\w+\s+)?{bare}\b[^;()]*\{{", text):
        return True
    if re.search(rf"\busing\s+{bare}\s*=", text):
        return True
    if re.search(rf"^[^\n/]*\b(constexpr|const|static)\b[^\n=;]*\b{bare}\b(\[\])?\s*[={{]", text, re.M):
        return True
    called = re.escape(name) if "::" in name else rf"(?<![\w.>]){bare}"
    for found in re.finditer(rf"{called}\s*\(", text):
        behind = text[end_of_brackets(text, found.end() - 1) :]
        if re.match(r"\s*(const|noexcept|override|final|\s)*(->[\w:<>\s&*]+)?\s*(= 0;|= default;|\{)", behind):
            return True
        if in_header and re.match(r"\s*(const|noexcept|override|\s)*;", behind):
            return True
        if re.match(r"\s*:\s*\w+[_\w]*[({]", behind):  # what a constructor initialises
            return True
    return False


def end_of_brackets(text, begin):
    depth = 0
    for place in range(begin, len(text)):
        depth += {"(": 1, ")": -1}.get(text[place], 0)
        if depth == 0:
            return place + 1
    return len(text)


def missing_in_index(pages):
    index = [page for page in pages if page.name == "README.md"]
    if not index:
        yield "there is no index: docs/proof/README.md"
        return
    text = index[0].read_text()
    for page in pages:
        if page.name != "README.md" and f"({page.name})" not in text:
            yield f"README.md does not lead to {page.name}"
    for name in re.findall(r"\]\((\w[\w-]*\.md)\)", text):
        if not (index[0].parent / name).is_file():
            yield f"README.md leads to {name}, which is not there"


class Tests:
    """The names of all tests, as their sources give them."""

    TEST = re.compile(r"^(?:TEST|TEST_F|TEST_P|RC_GTEST_PROP|RC_GTEST_FIXTURE_PROP)\(\s*(\w+)\s*,\s*(\w+)", re.M)
    ADDED = re.compile(r"add_test\(\s*NAME\s+([\w.]+)")
    BOUNDARY = re.compile(r"^\s*boundary_test\((\w+)\s", re.M)

    def __init__(self, root):
        self.sources = {}  # of each test, the text of the file it stands in
        for path in sorted((root / "tests").rglob("*.cpp")):
            text = path.read_text()
            for suite, name in self.TEST.findall(text):
                self.sources.setdefault(f"{suite}.{name}", []).append(text)
        for path in sorted((root / "tests").rglob("CMakeLists.txt")):
            text = path.read_text()
            for name in self.ADDED.findall(text) + ["Boundary." + name for name in self.BOUNDARY.findall(text)]:
                self.sources.setdefault(name, []).append(text)

    def has(self, name):
        test, _, instance = name.partition("/")
        texts = self.sources.get(test, [])
        return bool(texts) and (not instance or any(f'"{instance}"' in text for text in texts))


def main():
    faults = list(broken(pathlib.Path(sys.argv[1])))
    for fault in faults:
        print(fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())

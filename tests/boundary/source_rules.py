"""The boundary as the sources show it: who includes whom, and who knows which words.

Usage: source_rules.py includes|knowledge|export-list ROOT. Prints every line that breaks the rule; 1 when there is one.
"""

import pathlib
import re
import sys

import host_declarations

PLUGIN_FOLDERS = ("driver", "syntax", "engine", "tables")

STANDARD_HEADERS = set(
    """algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes climits
    clocale cmath codecvt compare complex concepts condition_variable coroutine csetjmp csignal cstdarg cstddef cstdint
    cstdio cstdlib cstring ctime cuchar cwchar cwctype deque exception execution filesystem format forward_list fstream
    functional future initializer_list iomanip ios iosfwd iostream istream iterator latch limits list locale map memory
    memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator semaphore
    set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string string_view strstream
    syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility valarray
    variant vector version""".split()
)

# Where in the workbench the procedures' own words may stand.
KEYS_ALLOWED = re.compile(r"workbench/(text/|app/verdict(_\w+)?\.)")
NAMES_ALLOWED = re.compile(r"workbench/(text/|app/verdict(_\w+)?\.|app/compare_job\.)")


def source_files(root, folder):
    return sorted(path for path in (root / folder).rglob("*") if path.suffix in (".h", ".cpp"))


def broken_includes(root):
    for folder in PLUGIN_FOLDERS:
        yield from foreign_includes(root, folder, ("host",) + PLUGIN_FOLDERS)
    # Plug-ins share nothing but host/: each folder of procedures/ is one of them.
    for folder in sorted((root / "procedures").glob("*")):
        own = f"procedures/{folder.name}"
        yield from foreign_includes(root, own, ("host", own))
    yield from foreign_includes(root, "examples", ("host", "examples"))
    yield from foreign_includes(root, "host", ("host",))
    for path, number, quoted, name in includes(root, "workbench"):
        if name.split("/")[0] in PLUGIN_FOLDERS + ("procedures",):
            yield f"{path}:{number}: the workbench includes {name} of the plug-in"


def foreign_includes(root, folder, friends):
    for path, number, quoted, name in includes(root, folder):
        if quoted and not any(name.startswith(f"{friend}/") for friend in friends):
            yield f'{path}:{number}: "{name}" lies outside {", ".join(friends)}'
        if not quoted and name not in STANDARD_HEADERS:
            yield f"{path}:{number}: <{name}> is no header of the standard library"


def includes(root, folder):
    for path in source_files(root, folder):
        for number, line in enumerate(path.read_text().splitlines(), 1):
            if match := re.match(r'\s*#\s*include\s*([<"])([^>"]+)[>"]', line):
                yield path.relative_to(root), number, match[1] == '"', match[2]


def words_out_of_place(root):
    for path in sorted((root / "workbench").rglob("*")):
        if not path.is_file():
            continue
        shown = path.relative_to(root).as_posix()
        for number, line in enumerate(path.read_text(errors="replace").splitlines(), 1):
            if re.search(r"\b[CP]D_", line) and not KEYS_ALLOWED.match(shown):
                yield f"{shown}:{number}: a key of the procedure"
            if re.search(r"COMPDATAS|COMPARE DATASETS|PROFDIFF|PROFILE DIFFERENCES", line) and not NAMES_ALLOWED.match(shown):
                yield f"{shown}:{number}: a name of the procedure"


def outdated_export_list(root):
    wanted = host_declarations.export_list(host_declarations.declarations_of(root / "host"))
    if (root / "cmake/host_exports.map").read_text() != wanted:
        yield "cmake/host_exports.map is not what host/*.h declares: run tests/boundary/host_declarations.py"


RULES = {"includes": broken_includes, "knowledge": words_out_of_place, "export-list": outdated_export_list}

if __name__ == "__main__":
    breaches = list(RULES[sys.argv[1]](pathlib.Path(sys.argv[2])))
    print("\n".join(breaches))
    sys.exit(1 if breaches else 0)

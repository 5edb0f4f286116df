"""The boundary as the linked files show it.

Usage: binary_rules.py plugin-libraries|plugin-threads FILE, plugin-exports FILE NAME, or executable-exports FILE ROOT.
Prints every name that breaks the rule; 1 when there is one.
"""

import pathlib
import re
import subprocess
import sys

import host_declarations

STANDARD_LIBRARY = re.compile(r"(libstdc\+\+|libm|libgcc_s|libc|ld-linux[\w-]*)\.so\.\d+$")


def output_of(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()


def foreign_libraries(plugin):
    needed = [match[1] for line in output_of("readelf", "-dW", plugin) if (match := re.search(r"NEEDED.*\[(.*)\]", line))]
    if not needed:
        yield "the plug-in names no library at all, not even the standard library"
    for library in needed:
        if not STANDARD_LIBRARY.match(library):
            yield f"the plug-in needs {library}"


def further_plugin_exports(plugin, entry_point):
    exported = [line.split()[-1] for line in output_of("nm", "-D", "--defined-only", plugin)]
    if exported != [entry_point]:
        yield f"the plug-in exports {', '.join(exported) or 'nothing'} where {entry_point} alone is meant"


def thread_starts(plugin):
    for line in output_of("nm", "-DC", "--undefined-only", plugin):
        if re.search(r"pthread_create|thrd_create|std::thread::_M_start_thread|\bclone\b", line):
            yield "the plug-in starts threads: " + line.split(maxsplit=1)[1]


def wrong_executable_exports(executable, root):
    declared = host_declarations.declarations_of(pathlib.Path(root) / "host")
    exported = {line.split(maxsplit=2)[2] for line in output_of("nm", "-DC", "--defined-only", executable)}
    yield from wrong_exports(exported, declared)


def wrong_exports(exported, declared):
    functions = {function_name(symbol) for symbol in exported}
    for symbol in sorted(exported):
        if symbol not in declared.symbols_of_classes() and function_name(symbol) not in declared.functions:
            yield f"exported, but not declared by host/: {symbol}"
    for name in sorted(set(declared.functions) - functions):
        yield f"declared by host/, but not exported: {name}"
    for symbol in sorted(set(declared.symbols_of_classes()) - exported):
        yield f"declared by host/, but not exported: {symbol}"


def function_name(symbol):
    """The qualified name of a demangled function, without its parameters."""
    return re.sub(r"(\[abi:\w+\])?\(.*", "", symbol)


RULES = {
    "plugin-libraries": foreign_libraries,
    "plugin-exports": further_plugin_exports,
    "plugin-threads": thread_starts,
    "executable-exports": wrong_executable_exports,
}

if __name__ == "__main__":
    breaches = list(RULES[sys.argv[1]](*sys.argv[2:]))
    print("\n".join(breaches))
    sys.exit(1 if breaches else 0)

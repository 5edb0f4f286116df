"""What host/*.h declares for export: the functions and classes marked HOST_API.

The headers are regular (clang-format keeps them so), which is why a small reader of braces and semicolons is enough.
Run as a program it writes cmake/host_exports.map.
"""

import pathlib
import re
import sys
from dataclasses import dataclass, field

# What stands behind a name in a demangled symbol: "(" or "[abi:cxx11]", never a further letter.
NAME_ENDS = "[!a-zA-Z0-9_]*"


@dataclass
class Declarations:
    functions: dict = field(default_factory=dict)  # qualified name -> [(parameters, " const" or "")]
    polymorphic: list = field(default_factory=list)  # classes with a table of virtual functions

    def symbols_of_classes(self):
        kinds = ("vtable for", "typeinfo for", "typeinfo name for")
        return [f"{kind} {name}" for name in self.polymorphic for kind in kinds]


def declarations_of(host_folder):
    found = Declarations()
    for header in sorted(pathlib.Path(host_folder).glob("*.h")):
        read_header(code_only(header.read_text()), found)
    return found


def code_only(text):
    text = re.sub(r"/\*.*?\*/", "", text, flags=re.S)
    text = re.sub(r"//[^\n]*", "", text)
    return re.sub(r"^\s*#[^\n]*(\\\n[^\n]*)*", "", text, flags=re.M)


def statements(text):
    """The statements of one level: (what stands before its body or semicolon, its body or None)."""
    start = position = 0
    while position < len(text):
        sign = text[position]
        if sign == ";":
            yield text[start:position].strip(), None
            start = position + 1
        elif sign == "{":
            end = closing_brace(text, position)
            yield text[start:position].strip(), text[position + 1 : end]
            position = end
            start = end + 1
        position += 1


def closing_brace(text, position):
    depth = 0
    for index in range(position, len(text)):
        depth += {"{": 1, "}": -1}.get(text[index], 0)
        if depth == 0:
            return index
    raise ValueError("a brace of a header is never closed")


def read_header(text, found):
    for head, body in statements(text):
        if re.match(r"(inline )?namespace\b", head) and body is not None:
            read_header(body, found)
        elif match := re.match(r"class HOST_API (\w+)( final)?\s*(:.*)?$", head, re.S):
            if body is not None:
                read_class(match[1], match[3] or "", body, found)
        elif head.startswith("HOST_API") and body is None:
            add_function("", head, found)


def read_class(name, bases, body, found):
    body = re.sub(r"\b(public|protected|private)\s*:(?!:)", "", body)
    is_polymorphic = "std::exception" in bases or any(base in bases for base in found.polymorphic)
    for head, inner in statements(body):
        is_polymorphic |= head.startswith("virtual")
        is_inline = inner is not None
        if is_inline or "(" not in head or re.search(r"=\s*(0|default|delete)$", head):
            continue
        if head.startswith("friend"):
            add_function("", head, found)
        else:
            add_function(name + "::", head, found)
    if is_polymorphic:
        found.polymorphic.append(name)


def add_function(scope, head, found):
    match = re.search(r"(operator\W+?|~?\w+)\s*\((.*)\)(\s*const)?", head, re.S)
    parameters = " ".join(match[2].split())
    found.functions.setdefault(scope + match[1], []).append((parameters, " const" if match[3] else ""))


def export_list(found):
    """The list as a version script of the linker: quoted lines are exact names, the others are patterns."""
    lines = []
    for name, overloads in found.functions.items():
        if "operator" in name:
            for parameters, constness in overloads:
                types = [re.sub(r"const (\w+)&.*|(\w+)&&.*", as_demangled, part) for part in parameters.split(", ")]
                lines.append(f'"{name}({", ".join(types)}){constness}"')
        elif "~" in name:
            lines.append(f'"{name}()"')
        else:
            lines.append(name + NAME_ENDS)
    lines += [f'"{symbol}"' for symbol in found.symbols_of_classes()]
    listed = "".join(f"      {line};\n" for line in sorted(lines, key=lambda line: line.strip('"')))
    return (
        "# What an executable exports that hosts plug-ins: exactly what host/*.h declares with HOST_API.\n"
        "# Written by tests/boundary/host_declarations.py; a test says when it is out of date.\n"
        '{\n  global:\n    extern "C++" {\n' + listed + "    };\n  local: *;\n};\n"
    )


def as_demangled(match):
    return f"{match[1]} const&" if match[1] else f"{match[2]}&&"


if __name__ == "__main__":
    root = pathlib.Path(__file__).resolve().parents[2]
    (root / "cmake/host_exports.map").write_text(export_list(declarations_of(root / "host")))
    sys.exit(0)

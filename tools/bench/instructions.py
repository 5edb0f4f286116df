"""How many instructions the program executes, counted by valgrind: a figure that other work of the machine spares.

It depends on what made the program and on the processor, because libraries choose their code by it: figures are kept
per toolchain(). valgrind itself shows a program one of few processors, the newest of them with AVX2, whatever newer one
there is. Threads run one at a time under it; from run to run the counts of a comparison differ by less than 0.1 %.
"""

import json
import os
import re
import shutil
import subprocess

from contestants import ours
from inputs import generated
from limits import INSTRUCTION_ROWS
from measuring import Trouble
from shapes import shape_named


def toolchain(build):
    """Such as "GNU 12.2.0 Release, glibc 2.36, valgrind 3.19.0, x86_64 with avx2"; nothing without valgrind."""
    if shutil.which("valgrind") is None:
        return None
    made = json.loads((build / "bench/made_by.json").read_text())
    compiler = " ".join(made[part] for part in ("compiler", "version", "type", "flags") if made[part])
    valgrind = subprocess.run(["valgrind", "--version"], check=True, capture_output=True, text=True).stdout
    processor = f"{os.uname().machine} {'with' if has_avx2() else 'without'} avx2"
    return f"{compiler}, {os.confstr('CS_GNU_LIBC_VERSION')}, {valgrind.strip().replace('-', ' ')}, {processor}"


def has_avx2():
    with open("/proc/cpuinfo", encoding="utf-8") as file:
        return re.search(r"^flags\s*:.*\bavx2\b", file.read(), re.MULTILINE) is not None


def counted(build, work):
    """The instructions of each of limits.COMMANDS; the answer is checked. Raises WrongAnswer or Trouble."""
    files = generated(shape_named("million"), INSTRUCTION_ROWS, 1, build, work)
    comparison = ours(files, build)
    counts = {"comparison": instructions(comparison.command, comparison.status, files.folder)}
    comparison.check(files)
    counts["start"] = instructions([build / "bin/compare-datasets", "--version"], 0, files.folder)
    return counts


def instructions(command, status, folder):
    log = folder / "valgrind.txt"
    valgrind = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", f"--log-file={log}"]
    # Always the same surroundings: their size moves what lies in memory.
    surroundings = {"LC_ALL": "C.UTF-8", "PATH": os.environ["PATH"], "HOME": "/nonexistent"}
    run = subprocess.run([*valgrind, *command], cwd=folder, env=surroundings, stdout=subprocess.PIPE,
                         stderr=subprocess.STDOUT, text=True, errors="replace")  # fmt: skip
    count = re.search(r"Collected : (\d+)", log.read_text(errors="replace"))
    if run.returncode != status or count is None:
        raise Trouble(f"{command[0].name} ended with status {run.returncode} under valgrind.\n{run.stdout}")
    return int(count[1])

"""What figures depend on: the machine, the sources, and what else the machine did."""

import os
import platform
import subprocess
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def machine():
    """Such as "2 cores, 24 GiB, x86_64"."""
    gibibytes = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    return f"{os.cpu_count()} cores, {gibibytes:.0f} GiB, {platform.machine()}"


def commit():
    """The commit that is checked out, and whether the program's sources differ from it; nothing without git."""
    try:
        name = git("rev-parse", "--short", "HEAD").strip()
        folders = ("host", "driver", "syntax", "engine", "tables", "plugin", "workbench")
        is_changed = git("status", "--porcelain", "--untracked-files=no", "--", *folders) != ""
    except (OSError, subprocess.CalledProcessError):
        return None
    return name + (" with changes" if is_changed else "")


def git(*arguments):
    return subprocess.run(["git", *arguments], cwd=ROOT, check=True, capture_output=True, text=True).stdout


class OtherWork:
    """How many processors were busy, on the average since it was made, with what is no child of ours."""

    def __init__(self):
        self._started = time.monotonic()
        self._before = busy_seconds() - own_seconds()

    def processors(self):
        return max(0.0, busy_seconds() - own_seconds() - self._before) / (time.monotonic() - self._started)


def busy_seconds():
    """Of all processors, since the machine was started; what was taken from a virtual one is busy, too."""
    with open("/proc/stat", encoding="ascii") as file:
        user, nice, system, _idle, _waiting, interrupts, soft, stolen = map(int, file.readline().split()[1:9])
    return (user + nice + system + interrupts + soft + stolen) / os.sysconf("SC_CLK_TCK")


def own_seconds():
    """Of this process and of those of its children that have ended."""
    return sum(os.times()[:4])

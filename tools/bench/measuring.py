"""How long a command takes and how much memory it holds at most.

Memory is what the process alone occupies: RssAnon and RssShmem of /proc/PID/status, without the pages of files that it
reads or maps, which the system may drop at any time. (The highest resident size that the system itself keeps has these
among it.) Nothing keeps the peak of the two, so they are looked at every 2 ms: what is taken and given back in between
is missed. To look takes some 20 microseconds, a hundredth of one processor, from both contestants alike.
"""

import os
import re
import subprocess
import threading
import time
from dataclasses import dataclass

SECONDS_BETWEEN_LOOKS = 0.002


class Trouble(Exception):
    pass


@dataclass(frozen=True)
class Run:
    seconds: float
    processor_seconds: float  # of all threads
    memory: int  # bytes


def measured(contestant, files):
    """Runs the contestant once in the folder of the files, and checks its answer."""
    command = [str(word) for word in contestant.command]
    with open(files.folder / "output.txt", "wb") as output, open(files.folder / "notes.txt", "wb") as notes:
        started = time.perf_counter()
        process = subprocess.Popen(command, cwd=files.folder, stdout=output, stderr=notes)
        watch = MemoryWatch(process.pid)
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - started
    process.returncode = os.waitstatus_to_exitcode(status)
    memory = watch.highest()
    if process.returncode != contestant.status:
        notes = (files.folder / "notes.txt").read_text(errors="replace")
        raise Trouble(f"{contestant.name} ended with status {process.returncode}, not {contestant.status}.\n{notes}")
    contestant.check(files)
    return Run(seconds, usage.ru_utime + usage.ru_stime, memory)


class MemoryWatch:
    """Looks at the memory of a process until it has ended."""

    def __init__(self, pid):
        self._highest = 0
        self._status = os.open(f"/proc/{pid}/status", os.O_RDONLY)
        self._thread = threading.Thread(target=self._look, daemon=True)
        self._thread.start()

    def highest(self):
        """In bytes. Requires: the process has ended."""
        self._thread.join()
        os.close(self._status)
        return self._highest

    def _look(self):
        while True:
            try:
                memory = memory_in(os.pread(self._status, 8192, 0))
            except ProcessLookupError:
                return
            if memory is None:  # it has ended, and nobody has been told yet
                return
            self._highest = max(self._highest, memory)
            time.sleep(SECONDS_BETWEEN_LOOKS)


def memory_in(status):
    """Nothing when the process has no memory any more."""
    parts = re.findall(rb"^Rss(?:Anon|Shmem):\s+(\d+) kB$", status, re.MULTILINE)
    return sum(map(int, parts)) * 1024 if parts else None

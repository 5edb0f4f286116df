"""Runs the program in a folder of its own, and asks it which kinds of data it knows."""

import json
import os
import re
import subprocess
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path


class Failed(AssertionError):
    pass


class Program:
    def __init__(self, executable, folder):
        self.executable = str(executable)
        self.folder = Path(folder)

    def run(self, *arguments, statuses=(0,)):
        """Gives what it said; raises when its exit status is another one."""
        done = subprocess.run([self.executable, *map(str, arguments)], cwd=self.folder, capture_output=True, text=True)
        if done.returncode not in statuses:
            raise Failed(f"{' '.join(map(str, arguments))}: status {done.returncode}\n{done.stdout[-2000:]}{done.stderr}")
        return done

    def convert(self, source, target):
        self.run("convert", source, target)

    def expect_same(self, first, second, *options):
        self.run("compare", first, second, "--no-case-table", *options)

    def results(self, *arguments):
        return json.loads(self.run("compare", *arguments, "--format", "json", statuses=(0, 1)).stdout)

    def endings(self):
        """Those of all kinds that are read: the program names them when it is asked to write something else."""
        (self.folder / "kinds.csv").write_text("a\n1\n")
        said = self.said("convert", "kinds.csv", "kinds.unknown")
        endings = re.search(r"Useoneofthese:(.*)\.$", said).group(1).split(",")
        if ".csv" not in endings or ".parquet" not in endings:
            raise Failed(f"the kinds are not among what was said: {said}")
        return endings

    def written_endings(self):
        return [ending for ending in self.endings() if "onlyread" not in self.said("convert", "kinds.csv", f"a{ending}")]

    def said(self, *arguments):
        """What stands on standard error, without blanks: the terminal's lines may break anywhere."""
        return re.sub(r"\s", "", self.run(*arguments, statuses=(0, 2)).stderr)


def for_all(things, do):
    """Does it with all of them, several at a time; raises what the first one raised that failed."""
    with ThreadPoolExecutor(os.cpu_count()) as workers:
        return list(workers.map(do, things))

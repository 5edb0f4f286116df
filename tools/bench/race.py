"""This program and DuckDB on the same files, in turn: one run of each to warm up, then as many as are wanted."""

import statistics
from dataclasses import dataclass

from contestants import contestants
from machine import OtherWork
from measuring import measured


@dataclass(frozen=True)
class Figures:
    """Of several runs of one contestant; seconds, and bytes of memory."""

    median: float
    fastest: float
    slowest: float
    processor: float  # the median of the time of all threads together
    memory: int  # the highest of all runs, the one to warm up among them


@dataclass(frozen=True)
class Result:
    ours: Figures
    duckdb: Figures
    other_work: float  # processors that were busy with something else meanwhile

    @property
    def ratio(self):
        return self.ours.median / self.duckdb.median

    @property
    def processor_ratio(self):
        return self.ours.processor / self.duckdb.processor


def race(files, build, runs):
    """Every answer of every run is held against the truth. Raises WrongAnswer or Trouble."""
    racing = contestants(files, build)
    results = {contestant.name: [] for contestant in racing}
    other_work = OtherWork()
    for turn in range(runs + 1):
        # The one who goes first alternates, so that neither always finds what the other left in the caches.
        for contestant in racing if turn % 2 == 0 else reversed(racing):
            results[contestant.name].append(measured(contestant, files))
    return Result(*(figures(results[contestant.name]) for contestant in racing), other_work.processors())


def check_answers(files, build):
    """One run of each, for its answer alone."""
    for contestant in contestants(files, build):
        measured(contestant, files)


def figures(results):
    seconds = [result.seconds for result in results[1:]]
    return Figures(
        median=statistics.median(seconds),
        fastest=min(seconds),
        slowest=max(seconds),
        processor=statistics.median(result.processor_seconds for result in results[1:]),
        memory=max(result.memory for result in results),
    )

"""The instrument of ./dev bench asks the right question, sees wrong answers, memory and slowness, and keeps figures."""

import contextlib
import io
import json
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools/bench"))

import contestants
import guard
import inputs
import instructions
import kept
import measuring
import race
import report
from shapes import SHAPES, shape_named

TRUTH = {"pairs": 9, "differingPairs": 2, "onlyInFirst": 1, "onlyInSecond": 1, "mismatches": {"n1": 1, "s1": 2}}


class WithFolder(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.files = inputs.Input(shape_named("million"), 10, self.folder, TRUTH)

    def program(self, script):
        """A contestant that is this script in Python; its answer is always the truth."""
        return contestants.Contestant("A script", [sys.executable, "-c", script], 0, lambda folder: TRUTH)


class TheQuestionInSql(unittest.TestCase):
    def test_repeats_what_is_marked_for_each_variable_or_number(self):
        template = 'a /* each variable, " OR " */"VARIABLE"/* end */ b /* each number, ", " */VARIABLE: x/* end */ c'
        self.assertEqual(contestants.filled(template, ["n1", "n2", "s1"]), 'a "n1" OR "n2" OR "s1" b n1: x, n2: x c')

    def test_leaves_no_mark_in_the_query_of_any_shape(self):
        for shape in SHAPES:
            query = contestants.filled((contestants.SQL / shape.query).read_text(), ["n1", "s1"])
            statement = query[query.index("SELECT") :]
            self.assertNotIn("/*", statement, shape.name)
            self.assertNotIn("VARIABLE", statement, shape.name)


class Answers(WithFolder):
    def answered(self, answer):
        (self.folder / "output.txt").write_text(json.dumps(answer))
        contestants.Contestant("DuckDB", [], 0, contestants.sql_answer).check(self.files)

    def test_that_are_the_truth_pass(self):
        self.answered({"pairs": 9, "differingPairs": 2, "onlyInFirst": 1, "onlyInSecond": 1, "n1": 1, "s1": 2})

    def test_that_differ_in_a_count_or_a_variable_are_refused(self):
        right = {"pairs": 9, "differingPairs": 2, "onlyInFirst": 1, "onlyInSecond": 1, "n1": 1, "s1": 2}
        for wrong in ({"pairs": 8}, {"differingPairs": 3}, {"onlyInSecond": 0}, {"n1": 0}, {"n2": 0}):
            with self.assertRaisesRegex(contestants.WrongAnswer, "DuckDB gives another answer", msg=wrong):
                self.answered({**right, **wrong})


class Measuring(WithFolder):
    def measured(self, script):
        return measuring.measured(self.program(script), self.files)

    def test_sees_memory_that_is_held_for_a_moment_only(self):
        run = self.measured("import time; x = bytes(range(256)) * 2**18; time.sleep(0.05)")
        self.assertGreater(run.memory, 64 * 2**20)
        self.assertLess(run.memory, 96 * 2**20)

    def test_leaves_out_the_pages_of_files(self):
        (self.folder / "large").write_bytes(bytes(64 * 2**20))
        script = "import mmap; file = open('large', 'rb'); pages = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)"
        run = self.measured(f"{script}; sum(pages[at] for at in range(0, len(pages), 4096))")
        self.assertLess(run.memory, 32 * 2**20)

    def test_tells_time_that_passes_from_time_of_the_processor(self):
        run = self.measured("import time; time.sleep(0.3)")
        self.assertGreater(run.seconds, 0.3)
        self.assertLess(run.processor_seconds, 0.25)

    def test_ends_with_the_notes_of_a_program_that_fails(self):
        with self.assertRaisesRegex(measuring.Trouble, r"(?s)A script ended with status 3, not 0.*no such thing"):
            self.measured("import sys; print('no such thing', file=sys.stderr); sys.exit(3)")

    def test_counts_every_run_but_the_one_to_warm_up(self):
        runs = [measuring.Run(9, 9, 5), *(measuring.Run(seconds, 2 * seconds, 1) for seconds in (3, 1, 2))]
        self.assertEqual(race.figures(runs), race.Figures(median=2, fastest=1, slowest=3, processor=4, memory=5))


class GeneratedFiles(WithFolder):
    def setUp(self):
        super().setUp()
        (self.folder / "bin").mkdir()
        self.put_generator("#!/bin/sh\n")

    def put_generator(self, head):
        folder = "for word; do folder=${word#--folder=}; done\n"
        generator = self.folder / "bin/bench_generate"
        generator.write_text(head + folder + 'echo x >>"$folder/runs"\necho "{}" >"$folder/truth.json"\n')
        generator.chmod(0o755)

    def times_made(self, rows=100, seed=1):
        files = inputs.generated(shape_named("million"), rows, seed, self.folder, self.folder / "work")
        return len((files.folder / "runs").read_text().splitlines())

    def test_are_made_once(self):
        self.assertEqual([self.times_made(), self.times_made()], [1, 1])

    def test_are_others_for_other_rows_and_seeds(self):
        self.assertEqual([self.times_made(), self.times_made(rows=200), self.times_made(seed=2)], [1, 1, 1])

    def test_are_made_again_by_another_generator(self):
        self.assertEqual(self.times_made(), 1)
        self.put_generator("#!/bin/sh\n# another one\n")
        self.assertEqual(self.times_made(), 2)


class TheGuard(WithFolder):
    def setUp(self):
        super().setUp()
        figures = {"shapes": [], "guard": {"ratio": 1.0, "instructions": {"g++": {"comparison": 1000, "start": 100}}}}
        (self.folder / "kept.json").write_text(json.dumps(figures))
        self.replace(kept, "FILE", self.folder / "kept.json")

    def replace(self, module, name, value):
        patch = mock.patch.object(module, name, value)
        patch.start()
        self.addCleanup(patch.stop)

    def guarded(self, kind):
        said = io.StringIO()
        self.replace(sys, "argv", ["guard.py", kind, "build", "work"])
        with contextlib.redirect_stdout(said):
            status = guard.main()
        return status, said.getvalue()

    def ratio_guarded(self, *attempts):
        self.attempts = list(attempts)
        self.replace(guard, "measured_ratio", lambda *_: self.attempts.pop(0))
        return self.guarded("ratio")

    def instructions_guarded(self, counts, tools="g++"):
        self.replace(instructions, "toolchain", lambda _: tools)
        self.replace(instructions, "counted", lambda *_: counts)
        return self.guarded("instructions")

    def test_passes_a_ratio_within_what_is_allowed(self):
        self.assertEqual(self.ratio_guarded(1.29)[0], guard.WELL)

    def test_tries_again_before_it_holds_a_ratio_for_too_high(self):
        self.assertEqual(self.ratio_guarded(2.0, 2.0, 1.1, 9.9)[0], guard.WELL)
        self.assertEqual(self.attempts, [9.9])

    def test_fails_when_the_ratio_is_too_high_each_time(self):
        status, said = self.ratio_guarded(2.0, 1.5, 1.4, 1.6, 1.7)
        self.assertEqual(status, guard.SLOWER)
        self.assertIn("1.40 times as long as DuckDB (attempts: 2.00, 1.50, 1.40, 1.60, 1.70)", said)
        self.assertIn("kept: 1.00, allowed: 1.30", said)
        self.assertIn("./dev bench --keep guard", said)

    def test_fails_when_an_answer_is_wrong(self):
        def wrong(*_):
            raise contestants.WrongAnswer("wrong")

        self.replace(guard, "measured_ratio", wrong)
        self.assertEqual(self.guarded("ratio"), (guard.SLOWER, "wrong\n"))

    def test_passes_some_more_instructions_and_any_fewer(self):
        for counts in ({"comparison": 1050, "start": 105}, {"comparison": 1, "start": 1}):
            self.assertEqual(self.instructions_guarded(counts)[0], guard.WELL, counts)

    def test_fails_when_either_command_executes_too_many_instructions(self):
        for counts in ({"comparison": 1051, "start": 100}, {"comparison": 1000, "start": 106}):
            status, said = self.instructions_guarded(counts)
            self.assertEqual(status, guard.SLOWER, counts)
            self.assertIn("allowed: +5%", said)
            self.assertIn("./dev bench --keep guard", said)

    def test_says_that_it_skips_what_is_made_by_other_tools(self):
        status, said = self.instructions_guarded({}, tools="clang++")
        self.assertEqual(status, guard.SKIPPED)
        self.assertTrue(said.startswith("skipped: no counts of instructions are kept for clang++, only for g++"), said)

    def test_says_that_it_skips_without_valgrind(self):
        status, said = self.instructions_guarded({}, tools=None)
        self.assertEqual(status, guard.SKIPPED)
        self.assertTrue(said.startswith("skipped: "), said)


class KeptFigures(WithFolder):
    def setUp(self):
        super().setUp()
        for name, path in (("FILE", self.folder / "kept.json"), ("PAGE", self.folder / "performance.md")):
            patch = mock.patch.object(kept, name, path)
            patch.start()
            self.addCleanup(patch.stop)
        kept.PAGE.write_text(f"before\n{kept.BEGIN}\noutdated\n{kept.END}\nafter\n")

    def row(self, shape, ratio=1.0, other_work=0.0):
        figures = {"median": ratio, "fastest": ratio, "slowest": ratio, "processor": 1.0, "memory": 2**20}
        return {"shape": shape, "cases": 1000, "variables": 10, "ours": figures, "duckdb": figures, "ratio": ratio,
                "processorRatio": 1.5, "target": 1.0, "otherWork": other_work, "date": "2026-01-01",
                "machine": "2 cores"}  # fmt: skip

    def kept_ratios(self):
        return {row["shape"]: row["ratio"] for row in kept.read()["shapes"]}

    def test_take_the_place_of_those_of_the_same_shape_alone(self):
        kept.keep([self.row("same"), self.row("million")], {"ratio": 2.0, "instructions": {"g++": {"start": 1}}})
        kept.keep([self.row("million", 3.0)], {"instructions": {"clang++": {"start": 2}}})
        self.assertEqual(list(self.kept_ratios().items()), [("million", 3.0), ("same", 1.0)])
        self.assertEqual(kept.read()["guard"],
                         {"ratio": 2.0, "instructions": {"g++": {"start": 1}, "clang++": {"start": 2}}})  # fmt: skip

    def test_stand_on_the_page_between_its_marks(self):
        guarded = {"ratio": 0.5, "instructions": {"g++": {"start": 1000}}}
        kept.keep([self.row("million", 0.5), self.row("same", 1.01)], guarded)
        page = kept.PAGE.read_text()
        self.assertTrue(page.startswith(f"before\n{kept.BEGIN}\n") and page.endswith(f"\n{kept.END}\nafter\n"), page)
        self.assertNotIn("outdated", page)
        self.assertRegex(page, r"\| `million` \| 1,000 × 10 \| 0\.50 s .* \| 0\.50 \| 1\.00 \| met \| 1 MiB \|")
        self.assertRegex(page, r"\| `same` .* \| 1\.01 \| 1\.00 \| missed \|")
        self.assertIn("200,000 cases | 0.50 | 0.65 |", page)
        self.assertIn("; g++ | 1,000 | 1,050 |", page)

    def test_say_when_the_machine_had_other_work(self):
        self.assertFalse(any("other work" in line for line in report.shape_lines([self.row("million")])))
        disturbed = "\n".join(report.shape_lines([self.row("million", other_work=0.7)]))
        self.assertIn("other work kept 0.7 processors busy", disturbed)
        self.assertIn("ratio of processor times is 1.50", disturbed)


class ThePage(unittest.TestCase):
    def test_shows_what_is_kept(self):
        page = kept.PAGE.read_text()
        self.assertEqual(page, kept.page(page, kept.read()))


if __name__ == "__main__":
    unittest.main()
